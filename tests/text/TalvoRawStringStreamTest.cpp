#include "support/TalvoTest.h"

#include <talvo/text/TalvoRawStringStream.h>

#include <cstdio>
#include <cstring>
#include <string>

namespace {

class RecordingStream : public TalvoStream {
public:
    void put(char c) override { text += c; }
    void flush() override { ++flushes; }
    std::string text;
    int flushes = 0;
};

int refills = 0;  // call-back states
std::string drained;

}  // namespace

TEST(TalvoRawStringStream, GetChar_AfterGiveBackSkipsNextBufferCharacter) {
    char text[] = "abc";
    TalvoRawStringStream stream(true, text, 3);
    EXPECT_EQ(stream.getChar(), 'a');
    stream.unGetChar('a');
    EXPECT_EQ(stream.getChar(), 'a');
    EXPECT_EQ(stream.getChar(), 'c');  // 'b' was skipped
    stream.unGetChar('z');
    EXPECT_EQ(stream.getChar(), 'z');  // at the end: nothing left to skip
    EXPECT_EQ(stream.getChar(), 0);    // the end reads as 0, not -1
    EXPECT_NE(stream.isAtEnd(), 0);
}

TEST(TalvoRawStringStream, GetChar_RefillCallBackFeedsNextChunks) {
    refills = 0;
    char buffer[8] = "ab";
    TalvoRawStringStream stream(true, buffer, 7, [](char** buffer, int*) {
        ++refills;
        std::strcpy(*buffer, refills == 1 ? "cd" : refills == 2 ? "e" : "");
    });
    std::string read;
    for (char c = stream.getChar(); c != 0; c = stream.getChar()) read += c;
    EXPECT_EQ(read, "abcde");
    EXPECT_EQ(refills, 3);  // the third call found nothing more
}

// A full buffer: without a call-back it keeps its first size characters; a call-back
// drains it; one that leaves no room makes the rest dropped.
TEST(TalvoRawStringStream, Put_FullBuffer) {
    char kept[9] = "XXXXXXXX", drainedBuffer[4], dropped[3] = {};
    TalvoRawStringStream keeper(false, kept, 8);
    keeper.putln(2.5);
    keeper.put("xyz123");
    keeper.flush();
    EXPECT_STREQ(kept, "2.5\nxyz1");
    EXPECT_EQ(keeper.getChar(), -1);
    drained.clear();
    TalvoRawStringStream drainer(false, drainedBuffer, 3, [](char** buffer, int*) { drained += *buffer; });
    drainer.put("hello, world");
    drainer.flush();
    EXPECT_EQ(drained, "hello, world");
    RecordingStream trace;
    TalvoRawStringStream dropper(false, dropped, 2, [](char**, int* size) { *size = 0; });
    dropper.setTraceStream(&trace);
    dropper.put("abc");
    EXPECT_EQ(trace.text, "ab");
    EXPECT_STREQ(dropped, "ab");
}

// Unlike a file stream's close, this close also clears the trace stream.
TEST(TalvoRawStringStream, NullBufferOrClosed_GivesNeutralAnswers) {
    TalvoRawStringStream reader(true, nullptr, 0);
    EXPECT_EQ(reader.getChar(), -1);
    EXPECT_EQ(reader.isAtEnd(), -1);
    char text[] = "a";
    TalvoRawStringStream closed(true, text, 1);
    RecordingStream trace;
    closed.setTraceStream(&trace);
    closed.close();
    EXPECT_EQ(closed.getTraceStream(), nullptr);
    EXPECT_EQ(closed.getChar(), -1);
    TalvoRawStringStream writer(false, nullptr, 10);
    writer.put("abc");
    writer.flush();
}

// Every put and putln form; each putln flushes once, and without a call-back
// a flush keeps the place.
TEST(TalvoRawStringStream, PutAndPutlnForms) {
    static int x;
    char buffer[128] = {}, pointer[32];
    std::snprintf(pointer, sizeof pointer, "%p\n", static_cast<void*>(&x));
    TalvoRawStringStream stream(false, buffer, 127);
    RecordingStream trace;
    stream.setTraceStream(&trace);
    stream.put(4000000000L);
    stream.put(-3);
    stream.put(3.14159f);
    stream.put("|%.2f", 0.5f);
    stream.putln('c');
    stream.putln(-7L);
    stream.putln(1.5f);
    stream.putln("a\\tb");
    stream.putln("%.1f", 2.5f);
    stream.putln("%e", 1.0);
    stream.putln();
    stream.putln(&x);
    EXPECT_EQ(trace.flushes, 8);
    EXPECT_EQ(trace.text, "4000000000-33.14159|0.50c\n-7\n1.5\na\tb\n2.5\n1.000000e+00\n\n" + std::string(pointer));
    EXPECT_EQ(trace.text, buffer);
}
