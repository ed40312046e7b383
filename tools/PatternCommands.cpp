// talvo grep|sub|split: the library's regular expressions over lines of text.
// Each line is matched without its line end; memory stays that of the
// longest line.
#include "Commands.h"
#include "ToolSupport.h"

#include <talvo/containers/TalvoList.h>
#include <talvo/foundation/TalvoRawString.h>
#include <talvo/regex/TalvoRegex.h>
#include <talvo/regex/TalvoRegexManager.h>

#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace talvo_tool {

namespace {

// Compiles `pattern` in `manager`. The compiler writes "syntax error" to
// standard error by itself; that bare text is kept off the terminal and one
// "talvo: " diagnostic naming the pattern is written instead.
bool compileQuietly(TalvoRegexManager& manager, const std::string& pattern) {
    std::fflush(stderr);
    int savedError = dup(STDERR_FILENO);
    int sink = open("/dev/null", O_WRONLY);
    if (savedError >= 0 && sink >= 0)
        dup2(sink, STDERR_FILENO);
    manager.compilePattern();
    std::fflush(stderr);
    if (savedError >= 0 && sink >= 0)
        dup2(savedError, STDERR_FILENO);
    if (sink >= 0)
        close(sink);
    if (savedError >= 0)
        close(savedError);
    if (manager.getTopRegex())
        return true;
    reportProblem("invalid pattern '%s'", pattern.c_str());
    return false;
}

void writeLine(const char* text, std::size_t length) {
    std::fwrite(text, 1, length, stdout);
    std::putc('\n', stdout);
}

void writePrefix(const char* fileName, long lineNumber) {
    if (fileName)
        std::printf("%s:", fileName);
    if (lineNumber > 0)
        std::printf("%ld:", lineNumber);
}

// Prints every match of the line, left to right: the first as the manager
// finds it, the next ones by matching the tree at each later position, so an
// anchored "^" still means the start of the line. An empty match moves on
// one byte.
void printMatches(TalvoRegexManager& manager, const char* line, const char* fileName, long lineNumber) {
    int length = static_cast<int>(std::strlen(line));
    int start = manager.matchPattern(line);
    const char* first = manager.getBackReference(0);
    int end = start + static_cast<int>(first ? std::strlen(first) : 0);
    TalvoRegex* top = manager.getTopRegex();
    while (start >= 0) {
        if (end > start) {
            writePrefix(fileName, lineNumber);
            writeLine(line + start, static_cast<std::size_t>(end - start));
        }
        int position = end > start ? end : start + 1;
        start = -1;
        for (; position < length; ++position) {
            end = top->match(line, position, nullptr);
            if (end >= 0) {
                start = position;
                break;
            }
        }
    }
}

struct GrepTally {
    long selected = 0;
};

void grepInput(TalvoRegexManager& manager, const GrepOptions& o, LineReader& reader, const char* fileName,
               GrepTally& tally) {
    long selectedHere = 0;
    std::size_t length = 0;
    while (char* line = reader.nextLine(length)) {
        bool matched = manager.matchPattern(line) >= 0;
        if (matched == o.invert)
            continue;
        ++selectedHere;
        if (o.count)
            continue;
        long number = o.lineNumbers ? reader.getLineNumber() : 0;
        if (!o.onlyMatching) {
            writePrefix(fileName, number);
            writeLine(line, length);
        } else if (!o.invert) {
            printMatches(manager, line, fileName, number);
        }
    }
    if (o.count) {
        writePrefix(fileName, 0);
        std::printf("%ld\n", selectedHere);
    }
    tally.selected += selectedHere;
}

// Runs `perLine` over every line of every input; returns an exit status.
template <class PerLine>
int forEachLine(const std::vector<std::string>& files, PerLine perLine) {
    int status = ExitSuccess;
    for (const std::string& name : inputsOrStandardInput(files)) {
        LineReader reader(name);
        if (!reader.isOpen()) {
            status = ExitTrouble;
            continue;
        }
        std::size_t length = 0;
        while (char* line = reader.nextLine(length))
            perLine(line, length);
        if (reader.failed())
            status = ExitTrouble;
    }
    return status;
}

}  // namespace

int runGrep(const GrepOptions& o) {
    TalvoRegexManager manager(o.pattern.c_str());
    if (!compileQuietly(manager, o.pattern))
        return ExitTrouble;
    setResultsWrittenWhileReading(true);
    std::vector<std::string> inputs = inputsOrStandardInput(o.files);
    bool nameLines = inputs.size() > 1;
    int status = ExitSuccess;
    GrepTally tally;
    for (const std::string& name : inputs) {
        LineReader reader(name);
        if (!reader.isOpen()) {
            status = ExitTrouble;
            continue;
        }
        grepInput(manager, o, reader, nameLines ? reader.displayName().c_str() : nullptr, tally);
        if (reader.failed())
            status = ExitTrouble;
    }
    if (status == ExitTrouble)
        return status;
    return tally.selected > 0 ? ExitSuccess : ExitFailure;
}

int runSub(const SubOptions& o) {
    TalvoRegexManager manager(o.pattern.c_str());
    if (!compileQuietly(manager, o.pattern))
        return ExitTrouble;
    setResultsWrittenWhileReading(true);
    const char* replacement = o.replacement.c_str();
    return forEachLine(o.files, [&](char* line, std::size_t) {
        char* result = o.global ? manager.substitutePatterns(line, replacement)
                                : manager.substitutePattern(line, replacement);
        // No result means nothing was left of the line.
        std::fputs(result ? result : "", stdout);
        std::putc('\n', stdout);
        if (result)
            TalvoRawString::free(result);
    });
}

int runSplit(const SplitOptions& o) {
    TalvoRegexManager manager(o.pattern.c_str());
    if (!compileQuietly(manager, o.pattern))
        return ExitTrouble;
    setResultsWrittenWhileReading(true);
    return forEachLine(o.files, [&](char* line, std::size_t) {
        TalvoList* pieces = manager.splitWithPattern(line);
        if (!pieces)
            return;
        TalvoListCursor* cursor = pieces->newCursor();
        for (cursor->resetOnFirstItem(); !cursor->isAfterLastItem(); cursor->increment()) {
            std::fputs(static_cast<const char*>(cursor->getItem()), stdout);
            std::putc('\n', stdout);
        }
        delete cursor;
        pieces->deleteWithItems(TalvoRawString::free);
    });
}

}  // namespace talvo_tool
