#include "support/TalvoTest.h"

#include <talvo/containers/TalvoHandle.h>
#include <talvo/values/TalvoAttribute.h>

TEST(TalvoHandle, CompareKeys_NullFirstThenUnsignedBytes) {
    struct {
        const char* a;
        const char* b;
        int expected;
    } cases[] = {
        {nullptr, nullptr, 0}, {nullptr, "", -1}, {"", nullptr, 1}, {"a", "ab", -1},
        {"\xE9", "z", 1},  // 0xE9 above 0x7A: bytes are unsigned
    };
    for (const auto& c : cases) {
        TalvoHandle a(c.a, nullptr), b(c.b, nullptr);
        EXPECT_EQ(TalvoHandle::compareKeys(&a, &b), c.expected) << (c.a ? c.a : "null") << " vs " << (c.b ? c.b : "null");
        EXPECT_EQ(TalvoHandle::reverseCompareKeys(&b, &a), c.expected);
        EXPECT_EQ(a.reverseCompareKeys(&b), -c.expected);
        EXPECT_EQ(a.compareKey(c.b), c.expected);
        EXPECT_EQ(TalvoHandle::compareKey(&a, const_cast<char*>(c.b)), c.expected);
    }
}

// The numeric comparisons read the keys as numbers; every comparison also
// reads an attribute's name, the first field of both.
TEST(TalvoHandle, KeyComparisonsAndSetKeyCopiesEvenItsOwnKey) {
    TalvoHandle ten("10", nullptr), nine("9", nullptr), handle("b", nullptr);
    EXPECT_EQ(TalvoHandle::compareKeys(&ten, &nine), -1);  // bytewise "1" < "9"
    EXPECT_EQ(TalvoHandle::compareNumericallyKeys(&ten, &nine), 1);
    EXPECT_EQ(ten.compareNumericallyKeys(&nine), 1);
    EXPECT_EQ(TalvoHandle::reverseCompareNumericallyKeys(&ten, &nine), -1);
    EXPECT_EQ(nine.reverseCompareNumericallyKeys(&ten), 1);
    TalvoAttribute attribute("a", 5);
    EXPECT_EQ(TalvoHandle::compareKeys(&attribute, &handle), -1);
    EXPECT_EQ(TalvoHandle::compareKey(&attribute, const_cast<char*>("a")), 0);
    EXPECT_STREQ(TalvoHandle::keyOf(&attribute), "a");
    EXPECT_EQ(TalvoHandle::keyOf(nullptr), nullptr);
    char key[] = "first";
    TalvoHandle* owned = new TalvoHandle(key, nullptr);
    key[0] = 'x';
    owned->setKey(owned->getKey());
    EXPECT_STREQ(owned->getKey(), "first");
    owned->setKey(nullptr);
    EXPECT_EQ(owned->getKey(), nullptr);
    TalvoHandle::free(owned);
    TalvoHandle::free(nullptr);
}
