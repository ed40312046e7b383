#include "support/TalvoTest.h"

#include <talvo/foundation/TalvoMemoryManager.h>
#include <talvo/text/TalvoUTF8String.h>

#include <cstring>
#include <new>
#include <string>

namespace {

std::string textOf(const TalvoUTF8String& s) {
    std::string text;
    for (int i = 0; i < s.getLength(); ++i)
        for (int b = 0; b < s.getChar(i).getNumberOfBytes(); ++b) text += static_cast<char>(s.getChar(i).getByte(b));
    return text;
}

// Gives up by hand a share that an assignment kept, so the test ends balanced.
void releaseKeptShare(const TalvoUTF8String& holder) {
    alignas(TalvoUTF8String) unsigned char ghost[sizeof(TalvoUTF8String)];
    std::memcpy(ghost, static_cast<const void*>(&holder), sizeof holder);
    TalvoMemoryManager::traceNew(ghost, TalvoUTF8String::ClassName);
    reinterpret_cast<TalvoUTF8String*>(ghost)->~TalvoUTF8String();
}

}  // namespace

// A copy shares the buffer until any edit, even one that changes nothing.
TEST(TalvoUTF8String, EachEdit_PrivatizesSharedBuffer) {
    struct Edit { const char* name; void (*apply)(TalvoUTF8String&); const char* result; } edits[] = {
        {"append", [](TalvoUTF8String& s) { s.append("z"); }, "abz"},
        {"out-of-range remove", [](TalvoUTF8String& s) { s.remove(7); }, "ab"},
        {"insert", [](TalvoUTF8String& s) { s.insert(1, 'x'); }, "axb"},
        {"clear", [](TalvoUTF8String& s) { s.clear(); }, ""},
    };
    for (const Edit& e : edits) {
        TalvoUTF8String original;
        original.append("ab");
        TalvoUTF8String copy(original);
        e.apply(copy);
        EXPECT_EQ(textOf(copy), e.result) << e.name;
        EXPECT_EQ(textOf(original), "ab") << e.name;
        EXPECT_EQ(copy.getReferenceCounter(), 1) << e.name;
        EXPECT_EQ(original.getReferenceCounter(), 1) << e.name;
    }
}

// Bytes 0x80 and above are Latin-1 characters of two bytes each; an insert
// beyond the length changes nothing, one at the length appends.
TEST(TalvoUTF8String, InsertAndAppendForms) {
    TalvoUTF8String s;
    EXPECT_TRUE(s.isEmpty());
    s.append('\xe9').append(TalvoUTF8Char('A')).insert(0, "b\xe9").insert(1, 'x').insert(9, 'z');
    s.insert(5, TalvoUTF8Char('!'));
    EXPECT_EQ(textOf(s), "bx\xc3\xa9\xc3\xa9" "A!");
    TalvoUTF8String t;
    t.append("<").append(s);
    s.clear();
    EXPECT_TRUE(s.isEmpty());
    EXPECT_EQ(t.getLength(), 7);
    EXPECT_EQ(textOf(t), "<bx\xc3\xa9\xc3\xa9" "A!");
}

TEST(TalvoUTF8String, Assignment_KeepsShareHeldBefore) {
    TalvoUTF8String first, other;
    first.append("first");
    other.append("other");
    TalvoUTF8String target(first);
    target = other;
    EXPECT_EQ(textOf(target), "other");
    EXPECT_EQ(other.getReferenceCounter(), 2);
    EXPECT_EQ(first.getReferenceCounter(), 2);  // the share target held is not given up
    releaseKeptShare(first);
    EXPECT_EQ(first.getReferenceCounter(), 1);
    TalvoUTF8String sole;  // a sole share given up by assignment does not leak
    sole.append("alone");
    sole = other;
    sole = sole;
    EXPECT_EQ(other.getReferenceCounter(), 4);  // self-assignment counts once more too
    releaseKeptShare(other);
}
