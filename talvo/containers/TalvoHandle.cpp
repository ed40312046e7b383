#include <talvo/containers/TalvoHandle.h>

#include <talvo/foundation/TalvoRawString.h>

#include <cstddef>
#include <cstring>
#include <type_traits>

namespace {

// Releases a key; a null one goes only through the memory manager's
// null-pointer report, since no allocation was counted for it.
void releaseKey(char* key) {
    if (key)
        TalvoRawString::free(key);
    else
        TalvoMemoryManager::deleteCell(nullptr);
}

// The key rule. Kept local (and inlined) since it runs on every step of a
// tree search; the public compareKeyStrings forwards here.
inline int compareStrings(const char* a, const char* b) {
    if (!a || !b)
        return (a ? 1 : 0) - (b ? 1 : 0);
    int order = std::strcmp(a, b);  // strcmp compares bytes as unsigned char
    return order < 0 ? -1 : (order > 0 ? 1 : 0);
}

// A handle and an attribute are standard-layout classes (their only bases are
// the empty tracing bases) whose first non-static member is the key string. A
// pointer to such an object is pointer-interconvertible with a pointer to its
// first member, so the static_cast from the untyped item to char** designates
// that member itself and reading through it is well defined.
inline char* firstMember(void* keyed) { return keyed ? *static_cast<char**>(keyed) : nullptr; }

}  // namespace

TalvoHandle::TalvoHandle(const char* key, void* item) : _key(TalvoRawString::copy(key)), _item(item) {}

TalvoHandle::~TalvoHandle() { releaseKey(_key); }

void TalvoHandle::free(void* handle) {
    if (handle)
        delete static_cast<TalvoHandle*>(handle);
}

void TalvoHandle::setKey(const char* key) {
    char* copy = TalvoRawString::copy(key);  // before releasing: `key` may be our own
    releaseKey(_key);
    _key = copy;
}

int TalvoHandle::compareKeyStrings(const char* a, const char* b) { return compareStrings(a, b); }

char* TalvoHandle::keyOf(void* keyed) {
    static_assert(std::is_standard_layout<TalvoHandle>::value, "the key must be readable as the first member");
    static_assert(offsetof(TalvoHandle, _key) == 0, "the key must be the first member");
    return firstMember(keyed);
}

int TalvoHandle::compareKey(const char* key) const { return compareStrings(_key, key); }

int TalvoHandle::compareKey(void* keyed, void* key) {
    return compareStrings(firstMember(keyed), static_cast<const char*>(key));
}

int TalvoHandle::compareKeys(void* keyed1, void* keyed2) {
    return compareStrings(firstMember(keyed1), firstMember(keyed2));
}

int TalvoHandle::reverseCompareKeys(const TalvoHandle* other) const {
    return compareStrings(other ? other->_key : nullptr, _key);
}

int TalvoHandle::reverseCompareKeys(void* keyed1, void* keyed2) {
    return compareStrings(firstMember(keyed2), firstMember(keyed1));
}

int TalvoHandle::compareNumericallyKeys(const TalvoHandle* other) const {
    return TalvoRawString::compareNumerically(_key, other ? other->_key : nullptr);
}

int TalvoHandle::compareNumericallyKeys(void* keyed1, void* keyed2) {
    return TalvoRawString::compareNumerically(firstMember(keyed1), firstMember(keyed2));
}

int TalvoHandle::reverseCompareNumericallyKeys(const TalvoHandle* other) const {
    return TalvoRawString::compareNumerically(other ? other->_key : nullptr, _key);
}

int TalvoHandle::reverseCompareNumericallyKeys(void* keyed1, void* keyed2) {
    return TalvoRawString::compareNumerically(firstMember(keyed2), firstMember(keyed1));
}
