#include "support/TalvoTest.h"

#include <talvo/text/TalvoRawStringStream.h>

#include <cstring>
#include <string>
#include <vector>

namespace {

class RecordingStream : public TalvoStream {
public:
    void put(char c) override { text += c; }
    void flush() override { ++flushes; }
    std::string text;
    int flushes = 0;
};

// Refill call-back state: the chunks still to hand out, one per call.
std::vector<std::string> chunks;
int refills = 0;

void refill(char** buffer, int* size) {
    ++refills;
    std::string next = chunks.empty() ? std::string() : chunks.front();
    if (!chunks.empty())
        chunks.erase(chunks.begin());
    std::memcpy(*buffer, next.c_str(), next.size() + 1);
    (void)size;
}

// Drain call-back state: everything drained so far.
std::string drained;

void drain(char** buffer, int*) {
    drained += *buffer;
}

// Replaces a full buffer by a larger one.
char replacement[16];

void replaceBuffer(char** buffer, int* size) {
    *buffer = replacement;
    *size = 8;
}

// Gives the stream no room at all.
void shrinkToNothing(char**, int* size) {
    *size = 0;
}

}  // namespace

TEST(TalvoRawStringStream, GetChar_ReturnsZeroAtEndNotMinusOne) {
    char text[] = "ab";
    TalvoRawStringStream stream(true, text, 2);
    EXPECT_EQ(stream.isAtEnd(), 0);
    EXPECT_EQ(stream.getChar(), 'a');
    EXPECT_EQ(stream.getChar(), 'b');
    EXPECT_EQ(stream.getChar(), 0);
    EXPECT_NE(stream.isAtEnd(), 0);
    EXPECT_EQ(stream.getChar(), 0);
}

TEST(TalvoRawStringStream, GetChar_AfterGiveBackSkipsNextBufferCharacter) {
    char text[] = "abc";
    TalvoRawStringStream stream(true, text, 3);
    EXPECT_EQ(stream.getChar(), 'a');
    stream.unGetChar('a');
    EXPECT_EQ(stream.getChar(), 'a');
    EXPECT_EQ(stream.getChar(), 'c');  // 'b' was skipped
    stream.unGetChar('z');
    EXPECT_EQ(stream.getChar(), 'z');  // at the end: nothing left to skip
    EXPECT_EQ(stream.getChar(), 0);
}

TEST(TalvoRawStringStream, LineNumber_CountsReadsAndGiveBacks) {
    char text[] = "a\nb\n";
    TalvoRawStringStream stream(true, text, 4);
    RecordingStream trace;
    stream.setTraceStream(&trace);
    while (stream.getChar() != 0) {
    }
    EXPECT_EQ(stream.getLineNumber(), 2);
    stream.unGetChar('\n');
    EXPECT_EQ(stream.getLineNumber(), 1);
    EXPECT_EQ(trace.text, "a\nb\n\n");
}

TEST(TalvoRawStringStream, GetChar_RefillCallBackFeedsNextChunks) {
    chunks = {"cd", "e"};
    refills = 0;
    char buffer[8] = "ab";
    TalvoRawStringStream stream(true, buffer, 7, refill);
    std::string read;
    for (char c = stream.getChar(); c != 0; c = stream.getChar())
        read += c;
    EXPECT_EQ(read, "abcde");
    EXPECT_EQ(refills, 3);  // the third call found nothing more
    EXPECT_NE(stream.isAtEnd(), 0);
}

TEST(TalvoRawStringStream, Put_WithoutCallBackKeepsFirstSizeCharacters) {
    char buffer[5];
    std::memset(buffer, 'X', sizeof buffer);
    TalvoRawStringStream stream(false, buffer, 4);
    stream.put("abcde");
    stream.flush();
    EXPECT_STREQ(buffer, "abcd");
    EXPECT_EQ(stream.isAtEnd(), -1);
    EXPECT_EQ(stream.getChar(), -1);
}

TEST(TalvoRawStringStream, Putln_WithoutCallBackAccumulatesLines) {
    char buffer[32] = {};
    TalvoRawStringStream stream(false, buffer, 31);
    stream.putln(1);
    stream.putln(2.5);
    stream.put("x");
    stream.flush();
    EXPECT_STREQ(buffer, "1\n2.5\nx");
}

TEST(TalvoRawStringStream, Put_FullBufferIsDrainedByCallBack) {
    drained.clear();
    char buffer[4];
    TalvoRawStringStream stream(false, buffer, 3, drain);
    stream.put("hello, world");
    stream.flush();
    EXPECT_EQ(drained, "hello, world");
}

TEST(TalvoRawStringStream, Flush_CallBackMayReplaceBuffer) {
    char buffer[3];
    std::memset(replacement, 0, sizeof replacement);
    TalvoRawStringStream stream(false, buffer, 2, replaceBuffer);
    stream.put("abcdef");
    EXPECT_EQ(std::string(buffer, 2), "ab");
    EXPECT_EQ(buffer[2], '\0');
    EXPECT_STREQ(replacement, "cdef");
    stream.close();
}

TEST(TalvoRawStringStream, Put_DroppedWhenCallBackLeavesNoRoom) {
    char buffer[3] = {};
    RecordingStream trace;
    TalvoRawStringStream stream(false, buffer, 2, shrinkToNothing);
    stream.setTraceStream(&trace);
    stream.put("abc");
    EXPECT_EQ(trace.text, "ab");
    EXPECT_STREQ(buffer, "ab");
}

TEST(TalvoRawStringStream, Close_ForgetsBufferAndClearsTraceStream) {
    char text[] = "a\nb";
    TalvoRawStringStream stream(true, text, 3);
    RecordingStream trace;
    stream.setTraceStream(&trace);
    stream.getChar();
    stream.getChar();
    stream.close();
    EXPECT_EQ(stream.getTraceStream(), nullptr);
    EXPECT_EQ(stream.getLineNumber(), 0);
    EXPECT_EQ(stream.getChar(), -1);
    EXPECT_EQ(stream.isAtEnd(), -1);
    EXPECT_EQ(trace.flushes, 1);
}

TEST(TalvoRawStringStream, NullBuffer_GivesNeutralAnswers) {
    TalvoRawStringStream reader(true, nullptr, 0);
    EXPECT_EQ(reader.getChar(), -1);
    EXPECT_EQ(reader.isAtEnd(), -1);
    TalvoRawStringStream writer(false, nullptr, 10);
    writer.put("abc");
    writer.flush();
    writer.close();
}
