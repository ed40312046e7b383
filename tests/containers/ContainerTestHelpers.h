#pragma once

#include <talvo/containers/TalvoList.h>

#include <vector>

// Shared by the list and list cursor tests.
namespace containertest {

// Items are the addresses of these ints: the list compares them by identity.
inline int v[10] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
inline void* I(int i) { return &v[i]; }

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
