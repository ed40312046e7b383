#include <talvo/foundation/TalvoMemoryManager.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>

namespace {

const char* const kDumpFileName = "talvo.dmp";
char kDefaultTraceFileName[] = "talvo-allocations.txt";

// printf-style formatting into a string of any length.
std::string formatted(const char* format, ...) {
    va_list args;
    va_start(args, format);
    va_list copy;
    va_copy(copy, args);
    int length = std::vsnprintf(nullptr, 0, format, copy);
    va_end(copy);
    std::string text(length > 0 ? static_cast<std::size_t>(length) : 0, '\0');
    if (length > 0)
        std::vsnprintf(&text[0], text.size() + 1, format, args);
    va_end(args);
    return text;
}

// Writes a message that was meant as a format without arguments: "%%" gives
// one "%", any other conversion is written as it stands (there is no argument
// to give it).
void writeArgumentlessFormat(std::FILE* file, const char* message) {
    for (const char* c = message; *c; ++c) {
        if (c[0] == '%' && c[1] == '%')
            ++c;
        std::fputc(*c, file);
    }
}

// Opens `path` for appending, or falls back to standard error.
std::FILE* openTraceOutput(const char* path) {
    std::FILE* file = path ? std::fopen(path, "a") : nullptr;
    return file ? file : stderr;
}

// Flushes and closes the trace output; standard error is closed too when it
// stood in for the file, which is the library's long-standing behaviour.
void closeTraceOutput(std::FILE* file) {
    std::fflush(file);
    std::fclose(file);
}

// Writes "%x" where x is a conversion letter, taking its argument from
// `args`. Without arguments (a line already formatted by the library, which
// may carry a caller's "%") a conversion writes nothing.
void writeConversion(std::FILE* file, char conversion, va_list* args) {
    if (!args)
        return;
    switch (conversion) {
    case 'c': std::fputc(va_arg(*args, int), file); break;
    case 's': {
        const char* text = va_arg(*args, const char*);
        std::fputs(text ? text : "(null)", file);
        break;
    }
    case 'd': std::fprintf(file, "%d", va_arg(*args, int)); break;
    case 'l': (void)va_arg(*args, int); break;  // an incomplete "%l" prints nothing
    case 'f': std::fprintf(file, "%f", va_arg(*args, double)); break;
    case 'g': std::fprintf(file, "%g", va_arg(*args, double)); break;
    default: break;  // not a conversion: dropped with its "%"
    }
}

void writeEscape(std::FILE* file, char escaped) {
    switch (escaped) {
    case 't': std::fputc('\t', file); break;
    case 'n': std::fputc('\n', file); break;
    case '\\': std::fputc('\\', file); break;
    default:
        std::fputc('\\', file);
        if (escaped)
            std::fputc(escaped, file);
        break;
    }
}

void writeInterpreted(std::FILE* file, const char* format, va_list* args) {
    for (const char* c = format; *c; ++c) {
        if (*c == '%') {
            if (!c[1])
                break;
            writeConversion(file, *++c, args);
        } else if (*c == '\\') {
            writeEscape(file, c[1]);
            if (!c[1])
                break;
            ++c;
        } else {
            std::fputc(*c, file);
        }
    }
}

void traceInterpreted(const char* path, const char* format, va_list* args) {
    std::FILE* file = openTraceOutput(path);
    writeInterpreted(file, format ? format : "", args);
    closeTraceOutput(file);
}

// The library's own trace lines go through the format interpreter like any
// other trace text, with no arguments behind them.
void traceLine(const std::string& line) {
    traceInterpreted(TalvoMemoryManager::_TraceFileName, line.c_str(), nullptr);
}

}  // namespace

std::atomic<std::int32_t> TalvoMemoryManager::_AllocationBalance{0};
bool TalvoMemoryManager::_TraceAllocations = false;
bool TalvoMemoryManager::_TraceNullPointerDeletions = true;
char* TalvoMemoryManager::_TraceFileName = kDefaultTraceFileName;

void TalvoMemoryManager::start() {
    _AllocationBalance.store(0, std::memory_order_relaxed);
    _TraceAllocations = false;
}

void TalvoMemoryManager::stop() {
    if (_TraceAllocations)
        traceLine("Stop memory manager\n");
    long balance = getAllocationBalance();
    if (balance != 0) {
        std::string message = formatted("TalvoMemoryManager: bug! #allocations=%ld\n", balance);
        std::fputs(message.c_str(), stderr);
        std::fflush(stderr);
        dump(message.c_str());
    }
}

void* TalvoMemoryManager::newCell(std::size_t size) noexcept {
    void* cell = std::calloc(1, size ? size : 1);
    if (!cell)
        dump("Memory overflow.\n");
    return cell;
}

void TalvoMemoryManager::deleteCell(void* pointer) noexcept {
    if (pointer) {
        std::free(pointer);
    } else if (_TraceNullPointerDeletions) {
        dump("Attempt to free a NULL pointer.\n");
    }
}

void TalvoMemoryManager::setTraceNullPointerDeletionsFlag(bool flag) {
    _TraceNullPointerDeletions = flag;
}

void TalvoMemoryManager::setTraceAllocationsFlag(bool flag) {
    _TraceAllocations = flag;
}

long TalvoMemoryManager::getAllocationBalance() {
    return _AllocationBalance.load(std::memory_order_relaxed);
}

void TalvoMemoryManager::_writeNewLine(long address, const char* className) {
    traceLine(formatted("%ld :: new %s [%ld]\n", address, className, getAllocationBalance()));
}

void TalvoMemoryManager::_reportDelete(long address, const char* className, long balance) {
    if (_TraceAllocations)
        traceLine(formatted("%ld :: delete %s [%ld]\n", address, className, balance));
    if (balance < 0) {
        dump(formatted("Negative allocation balance (%ld): delete %s at %ld.\n", balance, className,
                       address)
                 .c_str());
        std::exit(1);
    }
}

void TalvoMemoryManager::traceAllocationDebugPoint(const char* label) {
    if (_TraceAllocations)
        traceLine(formatted("point :: %s\n", label));
}

void TalvoMemoryManager::traceAllocationBalance(const char* label) {
    const char* format = _TraceAllocations ? "%s: allocation balance = %ld (traced)\n"
                                           : "%s: allocation balance = %ld\n";
    traceLine(formatted(format, label, getAllocationBalance()));
}

void TalvoMemoryManager::dump(const char* message) {
    std::FILE* file = std::fopen(kDumpFileName, "a");
    if (!file)
        return;
    std::time_t now = std::time(nullptr);
    std::fprintf(file, "Talvo version D8 %s", std::asctime(std::localtime(&now)));
    writeArgumentlessFormat(file, message ? message : "");
    std::fflush(file);
    std::fclose(file);
}

void TalvoMemoryManager::trace(const char* path, int value) {
    std::FILE* file = openTraceOutput(path);
    std::fprintf(file, "%d", value);
    closeTraceOutput(file);
}

void TalvoMemoryManager::trace(const char* path, double value) {
    std::FILE* file = openTraceOutput(path);
    std::fprintf(file, "%g", value);
    closeTraceOutput(file);
}

void TalvoMemoryManager::trace(const char* path, const char* format, ...) {
    va_list args;
    va_start(args, format);
    traceInterpreted(path, format, &args);
    va_end(args);
}
