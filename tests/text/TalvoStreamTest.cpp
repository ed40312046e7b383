#include "support/TalvoTest.h"

#include <talvo/text/TalvoFileStream.h>
#include <talvo/text/TalvoStream.h>

#include <cstdio>
#include <fcntl.h>
#include <string>
#include <unistd.h>

namespace {

// A trace target that records what it is sent.
class RecordingStream : public TalvoStream {
public:
    void put(char c) override { text += c; }
    void flush() override { ++flushes; }
    std::string text;
    int flushes = 0;
};

// Runs `write` on a writing file stream over a fresh file and returns what
// reached the file.
template <class Write>
std::string written(Write write) {
    FILE* file = std::fopen("out.txt", "wb");
    TalvoFileStream stream(false, file);
    write(stream);
    stream.close();
    return talvo_test::readFile("out.txt");
}

}  // namespace

TEST(TalvoStream, BareStream_ReadsAsEndedAndSwallowsWrites) {
    TalvoStream stream;
    EXPECT_EQ(stream.getFile(), nullptr);
    EXPECT_EQ(stream.getChar(), -1);
    EXPECT_EQ(stream.isAtEnd(), 1);
    stream.unGetChar('x');
    stream.put("abc");
    stream.putln(3);
    stream.flush();
    stream.close();
    EXPECT_EQ(stream.getLineNumber(), 0);
}

TEST(TalvoStream, PutString_InterpretsEachEscape) {
    struct Case {
        const char* input;
        const char* output;
    } cases[] = {
        {"a\\nb", "a\nb"},     {"a\\tb", "a\tb"},   {"a\\\\b", "a\\b"},
        {"a\\\"b", "a\"b"},    {"a\\qb", "a\\qb"},  {"\\\\n", "\\n"},
        {"", ""},              {"plain", "plain"},  {"ab\\", "ab\\"},
        {"\\", "\\"},          {"x\\\\\\", "x\\\\"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(written([&](TalvoStream& s) { s.put(c.input); }), c.output) << c.input;
}

TEST(TalvoStream, PutNumbers_UseFixedFormats) {
    EXPECT_EQ(written([](TalvoStream& s) { s.put(-7); }), "-7");
    EXPECT_EQ(written([](TalvoStream& s) { s.put(1234567890123L); }), "1234567890123");
    EXPECT_EQ(written([](TalvoStream& s) { s.put(0.1); }), "0.1");
    EXPECT_EQ(written([](TalvoStream& s) { s.put(0.1f); }), "0.1");
    EXPECT_EQ(written([](TalvoStream& s) { s.put(1e20); }), "1e+20");
    EXPECT_EQ(written([](TalvoStream& s) { s.put(1234567.0); }), "1.23457e+06");
    EXPECT_EQ(written([](TalvoStream& s) { s.put('q'); }), "q");
    int value = 0;
    char expected[64];
    std::snprintf(expected, sizeof expected, "%p", static_cast<void*>(&value));
    EXPECT_EQ(written([&](TalvoStream& s) { s.put(&value); }), expected);
}

TEST(TalvoStream, PutWithFormat_WritesThroughEscapes) {
    EXPECT_EQ(written([](TalvoStream& s) { s.put("[%5.2f]\\n", 3.14159); }), "[ 3.14]\n");
    EXPECT_EQ(written([](TalvoStream& s) { s.put("%.1f", 2.25f); }), "2.2");
    std::string huge = written([](TalvoStream& s) { s.put("%f", 1e300); });
    EXPECT_EQ(huge.size(), 301u + 7u);
    EXPECT_EQ(huge.substr(0, 3), "100");
}

TEST(TalvoStream, SetSignificantDigitNumber_ChangesFloatAndDoublePrecision) {
    EXPECT_EQ(written([](TalvoStream& s) {
                  s.setSignificantDigitNumber(3);
                  s.put(3.14159);
                  s.put(' ');
                  s.put(2.71828f);
                  s.put(' ');
                  s.setSignificantDigitNumber(10);
                  s.put(1.0 / 3.0);
                  s.put(' ');
                  s.setSignificantDigitNumber(1);
                  s.putln(0.25);
              }),
              "3.14 2.72 0.3333333333 0.2\n");
    TalvoFileStream stream(false, nullptr);
    EXPECT_EQ(stream.getSignificantDigitNumber(), 6);
}

TEST(TalvoStream, Putln_WritesNewlineAndFlushesFileAndTrace) {
    FILE* file = std::fopen("out.txt", "wb");
    TalvoFileStream stream(false, file);
    RecordingStream trace;
    stream.setTraceStream(&trace);
    stream.putln(3);
    EXPECT_EQ(talvo_test::readFile("out.txt"), "3\n");  // on disk before close
    EXPECT_EQ(trace.text, "3\n");
    EXPECT_EQ(trace.flushes, 1);
    stream.putln();
    stream.putln('c');
    stream.putln(4L);
    stream.putln("s\\t");
    stream.putln("%.1f", 7.0);
    EXPECT_EQ(talvo_test::readFile("out.txt"), "3\n\nc\n4\ns\t\n7.0\n");
    EXPECT_EQ(trace.flushes, 6);
    stream.close();
}

TEST(TalvoStream, GetChar_CountsLinesAcrossGiveBacks) {
    talvo_test::writeFile("in.txt", "x\ny");
    FILE* file = std::fopen("in.txt", "rb");
    TalvoFileStream stream(true, file);
    EXPECT_EQ(stream.getChar(), 'x');
    EXPECT_EQ(stream.getChar(), '\n');
    EXPECT_EQ(stream.getChar(), 'y');
    EXPECT_EQ(stream.getLineNumber(), 1);
    stream.unGetChar('y');
    stream.unGetChar('\n');
    EXPECT_EQ(stream.getLineNumber(), 0);
    EXPECT_EQ(stream.getChar(), '\n');
    EXPECT_EQ(stream.getLineNumber(), 1);
    EXPECT_EQ(stream.getChar(), 'y');
    EXPECT_EQ(stream.getChar(), -1);
    stream.resetLineNumber();
    EXPECT_EQ(stream.getLineNumber(), 0);
    stream.close();
}

TEST(TalvoStream, GetChar_GiveBacksComeBackLastInFirstOut) {
    talvo_test::writeFile("in.txt", "z");
    TalvoFileStream stream(true, std::fopen("in.txt", "rb"));
    stream.unGetChar('a');
    stream.unGetChar('b');
    EXPECT_EQ(stream.getChar(), 'b');
    EXPECT_EQ(stream.getChar(), 'a');
    EXPECT_EQ(stream.getChar(), 'z');
    stream.close();
}

TEST(TalvoStream, TraceStream_EchoesReadsGiveBacksAndWrites) {
    talvo_test::writeFile("in.txt", "ab");
    TalvoFileStream stream(true, std::fopen("in.txt", "rb"));
    RecordingStream trace;
    stream.setTraceStream(&trace);
    EXPECT_EQ(stream.getTraceStream(), &trace);
    stream.getChar();
    stream.unGetChar('a');
    stream.getChar();
    EXPECT_EQ(stream.isAtEnd(), 0);  // reads 'b' and gives it back: two echoes
    EXPECT_EQ(trace.text, "aaabb");
    stream.close();
    EXPECT_EQ(stream.getTraceStream(), &trace);  // close keeps the trace stream
    stream.resetTraceStream();
    EXPECT_EQ(stream.getTraceStream(), nullptr);

    RecordingStream writeTrace;
    written([&](TalvoStream& s) {
        s.setTraceStream(&writeTrace);
        s.put("h\\ti");
    });
    EXPECT_EQ(writeTrace.text, "h\ti");
}

TEST(TalvoStream, IsAtEnd_DoesNotConsumeAndTreatsByteFFAsEnd) {
    talvo_test::writeFile("in.txt", std::string("a\xff" "b"));
    TalvoFileStream stream(true, std::fopen("in.txt", "rb"));
    EXPECT_EQ(stream.isAtEnd(), 0);
    EXPECT_EQ(stream.getChar(), 'a');
    EXPECT_NE(stream.isAtEnd(), 0);
    stream.close();

    talvo_test::writeFile("empty.txt", "");
    TalvoFileStream empty(true, std::fopen("empty.txt", "rb"));
    EXPECT_NE(empty.isAtEnd(), 0);
    EXPECT_NE(empty.isAtEnd(), 0);
    EXPECT_EQ(empty.getChar(), -1);
    empty.close();
}

TEST(TalvoStream, WrongDirectionOrNoFile_GivesNeutralAnswers) {
    TalvoFileStream none(true, nullptr);
    EXPECT_EQ(none.getChar(), -1);
    EXPECT_EQ(none.isAtEnd(), 1);
    none.unGetChar('\n');
    EXPECT_EQ(none.getLineNumber(), 0);
    none.close();

    EXPECT_EQ(written([](TalvoStream& s) {
                  EXPECT_EQ(s.getChar(), -1);
                  EXPECT_EQ(s.isAtEnd(), 1);
                  s.unGetChar('\n');
                  EXPECT_EQ(s.getLineNumber(), 0);
                  s.put("ok");
              }),
              "ok");

    talvo_test::writeFile("in.txt", "data");
    TalvoFileStream reader(true, std::fopen("in.txt", "rb"));
    reader.put("nothing");
    reader.put(1);
    reader.put(2.0);
    reader.put('c');
    reader.close();
    EXPECT_EQ(talvo_test::readFile("in.txt"), "data");
}

TEST(TalvoStream, Close_ForgetsFileGiveBacksAndLineNumber) {
    talvo_test::writeFile("in.txt", "\n\n");
    TalvoFileStream stream(true, std::fopen("in.txt", "rb"));
    stream.getChar();
    stream.getChar();
    stream.unGetChar('q');
    stream.close();
    EXPECT_EQ(stream.getFile(), nullptr);
    EXPECT_EQ(stream.getLineNumber(), 0);
    stream.setFile(std::fopen("in.txt", "rb"));
    EXPECT_EQ(stream.getChar(), '\n');  // the 'q' given back before is gone
    stream.close();
    stream.close();  // a second close does nothing
}

TEST(TalvoStream, Close_SparesStandardStreams) {
    TalvoFileStream stream(false, stdout);
    stream.close();
    EXPECT_EQ(stream.getFile(), nullptr);
    EXPECT_NE(fcntl(fileno(stdout), F_GETFD), -1);
    EXPECT_EQ(std::fflush(stdout), 0);
}

TEST(TalvoStream, TraceStream_SwitchedMidStreamKeepsByteOrder) {
    RecordingStream trace;
    EXPECT_EQ(written([&](TalvoStream& s) {
                  s.put("ab");
                  s.setTraceStream(&trace);
                  s.put("cd");
                  s.resetTraceStream();
                  s.put("ef");
              }),
              "abcdef");
    EXPECT_EQ(trace.text, "cd");

    talvo_test::writeFile("in.txt", "uvwxyz\n");
    TalvoFileStream stream(true, std::fopen("in.txt", "rb"));
    RecordingStream readTrace;
    std::string read;
    read += stream.getChar();
    read += stream.getChar();
    stream.setTraceStream(&readTrace);
    read += stream.getChar();
    stream.resetTraceStream();
    for (char c = stream.getChar(); c != -1; c = stream.getChar())
        read += c;
    EXPECT_EQ(read, "uvwxyz\n");
    EXPECT_EQ(readTrace.text, "w");
    EXPECT_EQ(stream.getLineNumber(), 1);
    stream.close();
}
