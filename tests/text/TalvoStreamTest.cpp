#include "support/TalvoTest.h"

#include <talvo/text/TalvoFileStream.h>
#include <talvo/text/TalvoStream.h>

#include <cstdio>
#include <fcntl.h>
#include <string>
#include <unistd.h>

namespace {

class RecordingStream : public TalvoStream {
public:
    void put(char c) override { text += c; }
    void flush() override { ++flushes; }
    std::string text;
    int flushes = 0;
};

// What `write` on a writing file stream puts in a fresh file.
template <class Write>
std::string written(Write write) {
    FILE* file = std::fopen("out.txt", "wb");
    TalvoFileStream stream(false, file);
    write(stream);
    stream.close();
    return talvo_test::readFile("out.txt");
}

// A reading file stream over a file holding `content`, closed (maybe again) at the end.
struct Reader : TalvoFileStream {
    explicit Reader(const std::string& content) : TalvoFileStream(true, nullptr) {
        talvo_test::writeFile("in.txt", content);
        setFile(std::fopen("in.txt", "rb"));
    }
    ~Reader() override { close(); }
};

}  // namespace

TEST(TalvoStream, BareStream_ReadsAsEndedAndSwallowsWrites) {
    TalvoStream stream;
    EXPECT_EQ(stream.isAtEnd(), 1);
    EXPECT_EQ(stream.getChar(), -1);
    EXPECT_EQ(stream.getFile(), nullptr);
    stream.unGetChar('x');
    stream.putln("abc");
    stream.put(5L);
    stream.close();
    EXPECT_EQ(stream.getLineNumber(), 0);
    TalvoFileStream out(false, stdout);  // closing spares the standard streams
    out.close();
    EXPECT_NE(fcntl(fileno(stdout), F_GETFD), -1);
}

TEST(TalvoStream, PutString_InterpretsEachEscape) {
    struct Case { const char* input; const char* output; } cases[] = {
        {"a\\nb", "a\nb"}, {"a\\qb", "a\\qb"}, {"\\\\n", "\\n"}, {"ab\\", "ab\\"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(written([&](TalvoStream& s) { s.put(c.input); }), c.output) << c.input;
}

TEST(TalvoStream, PutNumbers_UseFixedFormatsAndPrecision) {
    struct Case { void (*write)(TalvoStream& s); const char* expected; } cases[] = {
        {[](TalvoStream& s) { s.put(0.1); }, "0.1"},
        {[](TalvoStream& s) { s.put(1234567.0); }, "1.23457e+06"},
        {[](TalvoStream& s) { s.put("[%5.2f]\\n", 3.14159); }, "[ 3.14]\n"},
        {[](TalvoStream& s) { s.setSignificantDigitNumber(3); s.put(2.71828f); }, "2.72"},
        {[](TalvoStream& s) { s.setSignificantDigitNumber(1); s.putln(0.25); }, "0.2\n"},
    };
    for (const Case& c : cases) EXPECT_EQ(written(c.write), c.expected);
    std::string huge = written([](TalvoStream& s) { s.put("%f", 1e300); });  // no fixed buffer cuts it
    EXPECT_EQ(huge.size(), 301u + 7u);
}

TEST(TalvoStream, Putln_WritesNewlineAndFlushesFileAndTrace) {
    FILE* file = std::fopen("out.txt", "wb");
    TalvoFileStream stream(false, file);
    RecordingStream trace;
    stream.setTraceStream(&trace);
    stream.putln(3);
    EXPECT_EQ(talvo_test::readFile("out.txt"), "3\n");  // on disk before close
    EXPECT_EQ(trace.flushes, 1);
    stream.close();
}

TEST(TalvoStream, GetChar_CountsLinesAcrossGiveBacksReadLastInFirstOut) {
    Reader stream("x\ny");
    while (stream.getChar() != -1) {}
    stream.unGetChar('y');
    stream.unGetChar('\n');
    EXPECT_EQ(stream.getLineNumber(), 0);
    stream.unGetChar('a');
    EXPECT_EQ(stream.getChar(), 'a');
    EXPECT_EQ(stream.getChar(), '\n');
    EXPECT_EQ(stream.getLineNumber(), 1);
    Reader ended(std::string("a\xff" "b"));  // isAtEnd does not consume, and byte FF reads as the end
    EXPECT_EQ(ended.isAtEnd(), 0);
    EXPECT_EQ(ended.getChar(), 'a');
    EXPECT_NE(ended.isAtEnd(), 0);
}

// The trace gets every character read or given back while set; close keeps it.
TEST(TalvoStream, TraceStream_EchoesWhileSet) {
    Reader stream("uvw\n");
    RecordingStream readTrace;
    stream.getChar();
    stream.setTraceStream(&readTrace);
    stream.getChar();
    stream.unGetChar('v');
    stream.getChar();
    EXPECT_EQ(stream.isAtEnd(), 0);
    stream.resetTraceStream();
    while (stream.getChar() != -1) {}
    EXPECT_EQ(readTrace.text, "vvvww");
    stream.setTraceStream(&readTrace);
    stream.close();
    EXPECT_EQ(stream.getTraceStream(), &readTrace);
}

TEST(TalvoStream, WrongDirectionOrNoFile_GivesNeutralAnswers) {
    EXPECT_EQ(written([](TalvoStream& s) {
                  EXPECT_EQ(s.getChar(), -1);
                  s.unGetChar('\n');
                  EXPECT_EQ(s.getLineNumber(), 0);
                  s.put("ok");
              }),
              "ok");
}
