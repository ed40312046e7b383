// Shared plumbing of the talvo command-line tool: exit codes, diagnostics on
// standard error, line-by-line reading of files or standard input with a
// progress line for large inputs, and number parsing that reports what it
// cannot read instead of taking it as 0.
//
// Every reader holds one growing line buffer, so memory stays bounded by the
// longest line whatever the size of the input.
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

namespace talvo_tool {

// Exit statuses: success, a failed check or no match, bad usage or an
// unreadable input.
constexpr int ExitSuccess = 0;
constexpr int ExitFailure = 1;
constexpr int ExitTrouble = 2;

// Writes "talvo: " and the printf-formatted message, then a newline, on
// standard error.
void reportProblem(const char* format, ...) __attribute__((format(printf, 1, 2)));

// The operands of a command: standard input ("-") when none is given.
std::vector<std::string> inputsOrStandardInput(const std::vector<std::string>& files);

// Declares that the command writes results while it reads (grep, sub,
// split), so that a progress line is not drawn over them on a shared terminal.
void setResultsWrittenWhileReading(bool writtenWhileReading);

// A progress line on standard error for an input larger than the threshold,
// shown only when standard error is a terminal. Erased when done.
class ProgressLine {
public:
    ProgressLine();
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    // Starts following `file` (named `name`) when it is a regular file over
    // the threshold and standard error is a terminal (and, for a command that
    // writes while it reads, standard output is not); otherwise stays silent.
    void follow(FILE* file, const std::string& name);
    // Called once per line read; looks at the file position now and then.
    void tick() {
        if (active && ++linesSinceCheck >= LinesBetweenChecks)
            update();
    }
    // Erases the progress line, if one was shown.
    void finish();

private:
    static constexpr long LinesBetweenChecks = 65536;

    void update();

    FILE* file;
    std::string name;
    long long totalBytes;
    int shownPercent;
    long linesSinceCheck;
    bool active;
};

// Reads a file, or standard input for "-", one line at a time. A line may be
// of any length: it is read into a buffer that grows as needed.
class LineReader {
public:
    // Opens `name`; on failure isOpen() is false and the reason has been
    // reported as "talvo: NAME: reason".
    explicit LineReader(const std::string& name);
    ~LineReader();
    LineReader(const LineReader&) = delete;
    LineReader& operator=(const LineReader&) = delete;

    bool isOpen() const { return file != nullptr; }
    // The name used in diagnostics: the file name, or "(standard input)".
    const std::string& displayName() const { return shownName; }
    // The next line, without its line end (a trailing "\r" is kept), as a
    // modifiable zero-terminated buffer valid until the next call; null at
    // the end of the input. `length` receives the number of bytes.
    char* nextLine(std::size_t& length);
    // Number of the line returned last (1 for the first).
    long getLineNumber() const { return lineNumber; }
    // True when reading stopped on an error rather than at the end (reported).
    bool failed() const { return readError; }

private:
    FILE* file;
    bool ownsFile;
    std::string shownName;
    char* buffer;
    std::size_t capacity;
    long lineNumber;
    bool readError;
    ProgressLine progress;
};

// Number parsing for stats and chrono: blank-separated decimal numbers, a '#'
// starting a comment that runs to the end of the line. Malformed numbers are
// reported with their line number (the first few in full, then only counted)
// and skipped.
class NumberScanner {
public:
    explicit NumberScanner(LineReader& reader);
    // Reads the numbers of the next line into `numbers` (emptied first);
    // false at the end of the input. A line with a malformed number gives the
    // numbers that could be read and sets lineHadMalformedNumber().
    bool nextLineOfNumbers(std::vector<double>& numbers);
    bool lineHadMalformedNumber() const { return malformedOnLine; }
    // The text of the line read last.
    const char* currentLine() const { return line; }
    // Reports a problem with the current line as
    // "talvo: NAME:LINE: message 'text', skipped", counted with the malformed
    // numbers.
    void reportLineProblem(const char* message, const char* text);
    // Reports how many problems went unreported; call at the end.
    void finish();

private:
    static constexpr long ReportedProblems = 10;

    LineReader& reader;
    const char* line;
    long problems;
    bool malformedOnLine;
};

// Parses a whole token as a finite decimal number (an optional sign, digits,
// a fraction and an exponent). False for anything else, "nan" and "inf" included.
bool parseNumber(const char* begin, const char* end, double& value);

}  // namespace talvo_tool
