#include "support/TalvoTest.h"

#include <talvo/text/TalvoRawStringStream.h>

#include <cstring>
#include <string>
#include <vector>

namespace {

class RecordingStream : public TalvoStream {
public:
    void put(char c) override { text += c; }
    std::string text;
};

// Call-back state: chunks still to hand out, refills made, text drained.
std::vector<std::string> chunks;
int refills = 0;
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

// Unlike a file stream's close, this close also clears the trace stream.
TEST(TalvoRawStringStream, LineNumberAndTrace_FollowReadsAndGiveBacksUntilClose) {
    char text[] = "a\nb\n";
    TalvoRawStringStream stream(true, text, 4);
    RecordingStream trace;
    stream.setTraceStream(&trace);
    while (stream.getChar() != 0) {
    }
    stream.unGetChar('\n');
    EXPECT_EQ(stream.getLineNumber(), 1);
    EXPECT_EQ(trace.text, "a\nb\n\n");
    stream.close();
    EXPECT_EQ(stream.getTraceStream(), nullptr);
    EXPECT_EQ(stream.getChar(), -1);
}

TEST(TalvoRawStringStream, GetChar_RefillCallBackFeedsNextChunks) {
    chunks = {"cd", "e"};
    refills = 0;
    char buffer[8] = "ab";
    TalvoRawStringStream stream(true, buffer, 7, [](char** buffer, int*) {
        ++refills;
        std::string next = chunks.empty() ? std::string() : chunks.front();
        if (!chunks.empty())
            chunks.erase(chunks.begin());
        std::memcpy(*buffer, next.c_str(), next.size() + 1);
    });
    std::string read;
    for (char c = stream.getChar(); c != 0; c = stream.getChar())
        read += c;
    EXPECT_EQ(read, "abcde");
    EXPECT_EQ(refills, 3);  // the third call found nothing more
}

// Without a call-back a full buffer keeps its first size characters, and a
// flush leaves the stream where it was.
TEST(TalvoRawStringStream, Put_WithoutCallBackKeepsFirstSizeCharacters) {
    char buffer[9];
    std::memset(buffer, 'X', sizeof buffer);
    TalvoRawStringStream stream(false, buffer, 8);
    stream.putln(2.5);
    stream.put("xyz123");
    stream.flush();
    EXPECT_STREQ(buffer, "2.5\nxyz1");
    EXPECT_EQ(stream.getChar(), -1);
}

TEST(TalvoRawStringStream, Put_FullBufferIsDrainedByCallBack) {
    drained.clear();
    char buffer[4];
    TalvoRawStringStream stream(false, buffer, 3, [](char** buffer, int*) { drained += *buffer; });
    stream.put("hello, world");
    stream.flush();
    EXPECT_EQ(drained, "hello, world");
}

TEST(TalvoRawStringStream, Put_DroppedWhenCallBackLeavesNoRoom) {
    char buffer[3] = {};
    RecordingStream trace;
    TalvoRawStringStream stream(false, buffer, 2, [](char**, int* size) { *size = 0; });
    stream.setTraceStream(&trace);
    stream.put("abc");
    EXPECT_EQ(trace.text, "ab");
    EXPECT_STREQ(buffer, "ab");
}

TEST(TalvoRawStringStream, NullBuffer_GivesNeutralAnswers) {
    TalvoRawStringStream reader(true, nullptr, 0);
    EXPECT_EQ(reader.getChar(), -1);
    EXPECT_EQ(reader.isAtEnd(), -1);
    TalvoRawStringStream writer(false, nullptr, 10);
    writer.put("abc");
    writer.flush();
}
