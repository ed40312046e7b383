#include "ToolSupport.h"

#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace talvo_tool {

namespace {

// Inputs above this size get a progress line (when standard error is a terminal).
constexpr long long ProgressThresholdBytes = 100LL * 1000 * 1000;
constexpr const char* StandardInputName = "(standard input)";

bool resultsWrittenWhileReading = false;

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\f' || c == '\v'; }

}  // namespace

void reportProblem(const char* format, ...) {
    std::fflush(stdout);  // keep results and diagnostics in order on a shared terminal
    std::fputs("talvo: ", stderr);
    va_list arguments;
    va_start(arguments, format);
    std::vfprintf(stderr, format, arguments);
    va_end(arguments);
    std::fputc('\n', stderr);
}

void setResultsWrittenWhileReading(bool writtenWhileReading) { resultsWrittenWhileReading = writtenWhileReading; }

std::vector<std::string> inputsOrStandardInput(const std::vector<std::string>& files) {
    if (files.empty())
        return {"-"};
    return files;
}

// ---- ProgressLine

ProgressLine::ProgressLine()
    : file(nullptr), totalBytes(0), shownPercent(-1), linesSinceCheck(0), active(false) {}

ProgressLine::~ProgressLine() { finish(); }

void ProgressLine::follow(FILE* followed, const std::string& followedName) {
    struct stat status;
    if (!isatty(STDERR_FILENO) || (resultsWrittenWhileReading && isatty(STDOUT_FILENO)) || fstat(fileno(followed), &status) != 0 || !S_ISREG(status.st_mode)
        || status.st_size <= ProgressThresholdBytes)
        return;
    file = followed;
    name = followedName;
    totalBytes = status.st_size;
    active = true;
    update();
}

void ProgressLine::update() {
    linesSinceCheck = 0;
    long long position = ftello(file);
    if (position < 0)
        return;
    int percent = static_cast<int>(position * 100 / totalBytes);
    if (percent == shownPercent)
        return;
    shownPercent = percent;
    std::fprintf(stderr, "\rtalvo: %s: %d%%", name.c_str(), percent);
    std::fflush(stderr);
}

void ProgressLine::finish() {
    if (!active)
        return;
    active = false;
    // Blank out "\rtalvo: NAME: 100%" so that the next diagnostic starts clean.
    std::fprintf(stderr, "\r%*s\r", static_cast<int>(name.size() + 14), "");
    std::fflush(stderr);
}

// ---- LineReader

LineReader::LineReader(const std::string& name)
    : file(nullptr), ownsFile(false), shownName(name == "-" ? StandardInputName : name),
      buffer(nullptr), capacity(0), lineNumber(0), readError(false) {
    FILE* opened = name == "-" ? stdin : std::fopen(name.c_str(), "rb");
    if (!opened) {
        reportProblem("%s: %s", name.c_str(), std::strerror(errno));
        return;
    }
    struct stat status;
    if (fstat(fileno(opened), &status) == 0 && S_ISDIR(status.st_mode)) {
        reportProblem("%s: %s", name.c_str(), std::strerror(EISDIR));
        if (opened != stdin)
            std::fclose(opened);
        return;
    }
    file = opened;
    ownsFile = opened != stdin;
    progress.follow(file, shownName);
}

LineReader::~LineReader() {
    progress.finish();
    std::free(buffer);
    if (ownsFile)
        std::fclose(file);
}

char* LineReader::nextLine(std::size_t& length) {
    if (!file)
        return nullptr;
    errno = 0;
    ssize_t read = getline(&buffer, &capacity, file);
    if (read < 0) {
        if (std::ferror(file) && !readError) {
            readError = true;
            progress.finish();
            reportProblem("%s: %s", shownName.c_str(), std::strerror(errno ? errno : EIO));
        }
        return nullptr;
    }
    ++lineNumber;
    progress.tick();
    if (read > 0 && buffer[read - 1] == '\n')
        buffer[--read] = '\0';
    length = static_cast<std::size_t>(read);
    return buffer;
}

// ---- numbers

bool parseNumber(const char* begin, const char* end, double& value) {
    // from_chars takes no leading '+'.
    if (begin < end && *begin == '+' && end - begin > 1 && begin[1] != '-')
        ++begin;
    if (begin == end)
        return false;
    std::from_chars_result result = std::from_chars(begin, end, value, std::chars_format::general);
    return result.ec == std::errc() && result.ptr == end && std::isfinite(value);
}

NumberScanner::NumberScanner(LineReader& reader)
    : reader(reader), line(""), problems(0), malformedOnLine(false) {}

bool NumberScanner::nextLineOfNumbers(std::vector<double>& numbers) {
    std::size_t length = 0;
    line = reader.nextLine(length);
    numbers.clear();
    malformedOnLine = false;
    if (!line) {
        line = "";
        return false;
    }
    const char* p = line;
    const char* end = line + length;
    for (;;) {
        while (p < end && isBlank(*p))
            ++p;
        if (p == end || *p == '#')
            break;
        const char* token = p;
        while (p < end && !isBlank(*p))
            ++p;
        double value;
        if (parseNumber(token, p, value)) {
            numbers.push_back(value);
        } else {
            malformedOnLine = true;
            reportLineProblem("malformed number", std::string(token, p).c_str());
        }
    }
    return true;
}

void NumberScanner::reportLineProblem(const char* message, const char* text) {
    ++problems;
    if (problems <= ReportedProblems)
        reportProblem("%s:%ld: %s '%s', skipped", reader.displayName().c_str(), reader.getLineNumber(),
                      message, text);
    else if (problems == ReportedProblems + 1)
        reportProblem("%s: further problems are only counted", reader.displayName().c_str());
}

void NumberScanner::finish() {
    if (problems > ReportedProblems)
        reportProblem("%s: %ld lines or numbers skipped in all", reader.displayName().c_str(), problems);
}

}  // namespace talvo_tool
