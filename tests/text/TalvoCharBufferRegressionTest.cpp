// Regressions found by fuzzing the character buffer.
#include "support/TalvoTest.h"

#include <talvo/foundation/TalvoRawString.h>
#include <talvo/text/TalvoCharBuffer.h>

#include <cstring>

// popChar leaves the popped byte in place: the text is the first getLength() bytes,
// for compare, copy and copyString alike.
TEST(TalvoCharBufferRegression, AfterPopChar_TheTextGoesByLength) {
    TalvoCharBuffer buffer("ab"), popped("abc"), ab("ab");
    buffer.popChar();
    TalvoCharBuffer* copy = buffer.copy();
    EXPECT_EQ(buffer.compare(copy), 0);
    EXPECT_EQ(copy->compare(&buffer), 0);
    EXPECT_STREQ(buffer.getString(), "ab");  // the terminator itself is not moved
    delete copy;
    popped.popChar();
    char* text = popped.copyString();
    EXPECT_STREQ(text, "ab");
    TalvoRawString::free(text);
    popped.popChar();  // a prefix sorts first
    EXPECT_EQ(popped.compare(&ab), -1);
    EXPECT_EQ(ab.compare(&popped), 1);
}
