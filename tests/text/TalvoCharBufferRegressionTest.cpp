// Regressions found by fuzzing the character buffer.
#include "support/TalvoTest.h"

#include <talvo/foundation/TalvoRawString.h>
#include <talvo/text/TalvoCharBuffer.h>

#include <cstring>

// popChar leaves the popped byte in place: the text is the first getLength() bytes.
TEST(TalvoCharBufferRegression, Compare_AfterPopChar_GoesByLength) {
    TalvoCharBuffer buffer("ab");
    buffer.popChar();
    TalvoCharBuffer* copy = buffer.copy();
    EXPECT_EQ(buffer.compare(copy), 0);
    EXPECT_EQ(copy->compare(&buffer), 0);
    EXPECT_STREQ(buffer.getString(), "ab");  // the terminator itself is not moved
    delete copy;
}

TEST(TalvoCharBufferRegression, Compare_PrefixAfterPopSortsFirst) {
    TalvoCharBuffer popped("abc");
    popped.popChar();
    popped.popChar();
    TalvoCharBuffer ab("ab");
    EXPECT_EQ(popped.compare(&ab), -1);
    EXPECT_EQ(ab.compare(&popped), 1);
}

TEST(TalvoCharBufferRegression, CopyString_AfterPopChar_HoldsTheText) {
    TalvoCharBuffer buffer("xyz");
    buffer.popChar();
    char* text = buffer.copyString();
    EXPECT_STREQ(text, "xy");
    TalvoRawString::free(text);
}
