#pragma once

#include <talvo/containers/TalvoList.h>

#include <vector>

namespace containertest {

// Items are the addresses of these ints: the containers compare them by identity.
inline int v[10] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
inline void* I(int i) { return &v[i]; }

inline int compareInts(void* a, void* b) { return *static_cast<int*>(a) - *static_cast<int*>(b); }
// The tens digit as the key, so 21 and 25 are equals.
inline int compareTens(void* a, void* b) { return *static_cast<int*>(a) / 10 - *static_cast<int*>(b) / 10; }

inline std::vector<void*> forward(TalvoList* list) {
    std::vector<void*> items;
    TalvoListCursor cursor(list);
    for (cursor.resetOnFirstItem(); !cursor.isAfterLastItem(); cursor.increment())
        items.push_back(cursor.getItem());
    return items;
}

inline std::vector<void*> backward(TalvoList* list) {
    std::vector<void*> items;
    TalvoListCursor cursor(list);
    for (cursor.resetOnLastItem(); !cursor.isBeforeFirstItem(); cursor.decrement())
        items.insert(items.begin(), cursor.getItem());
    return items;
}

}  // namespace containertest
