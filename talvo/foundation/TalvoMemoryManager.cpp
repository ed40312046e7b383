#include <talvo/foundation/TalvoMemoryManager.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <mutex>
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

// The decimal value of a pointer as the trace lines show it.
long pointerValue(const void* pointer) {
    return static_cast<long>(reinterpret_cast<std::intptr_t>(pointer));
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

// ---------------------------------------------------------------- per-thread shares

// 32-bit two's-complement sum, computed without overflow.
std::int32_t wrappedSum(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}

// One thread's part of the balance. Only its own thread changes `value`, by a
// plain load and store; other threads read it (and start() zeroes it) while
// holding gSharesLock, which also guards the list links.
struct ThreadShare {
    std::atomic<std::int32_t> value{0};
    ThreadShare* next = nullptr;
    ThreadShare* previous = nullptr;
    enum State : unsigned char { Unlisted, Listed, Ended } state = Unlisted;
};

std::mutex gSharesLock;
ThreadShare* gShares = nullptr;

// Constant-initialised and trivially destructible, so reaching it costs no
// guard; initial-exec keeps the access a plain thread-pointer offset.
#if defined(__GNUC__)
__attribute__((tls_model("initial-exec")))
#endif
thread_local ThreadShare tShare;

// Folds the ending thread's share into the common part and unlists it.
struct ShareRetirer {
    ShareRetirer() = default;
    ShareRetirer(const ShareRetirer&) = delete;
    ShareRetirer& operator=(const ShareRetirer&) = delete;
    ~ShareRetirer() {
        std::lock_guard<std::mutex> hold(gSharesLock);
        TalvoMemoryManager::_AllocationBalance.fetch_add(tShare.value.load(std::memory_order_relaxed),
                                                        std::memory_order_relaxed);
        tShare.value.store(0, std::memory_order_relaxed);
        if (tShare.previous)
            tShare.previous->next = tShare.next;
        else
            gShares = tShare.next;
        if (tShare.next)
            tShare.next->previous = tShare.previous;
        tShare.state = ThreadShare::Ended;
    }
};

ThreadShare* listShare() {
    std::lock_guard<std::mutex> hold(gSharesLock);
    tShare.next = gShares;
    if (gShares)
        gShares->previous = &tShare;
    gShares = &tShare;
    tShare.state = ThreadShare::Listed;
    static thread_local ShareRetirer retirer;  // its destructor runs at thread exit
    return &tShare;
}

// The calling thread's share, listed on first use; null once the thread is
// ending (its counts then go to the common part).
inline ThreadShare* myShare() {
    if (tShare.state == ThreadShare::Listed)
        return &tShare;
    return tShare.state == ThreadShare::Ended ? nullptr : listShare();
}

// The common part plus every listed share; gSharesLock must be held.
std::int32_t sumOfShares() {
    std::int32_t sum = TalvoMemoryManager::_AllocationBalance.load(std::memory_order_relaxed);
    for (ThreadShare* share = gShares; share; share = share->next)
        sum = wrappedSum(sum, share->value.load(std::memory_order_relaxed));
    return sum;
}

// Adds `delta` to the share when given, else to the common part.
void addToShare(ThreadShare* share, std::int32_t delta) {
    if (share)
        share->value.store(wrappedSum(share->value.load(std::memory_order_relaxed), delta),
                           std::memory_order_relaxed);
    else
        TalvoMemoryManager::_AllocationBalance.fetch_add(delta, std::memory_order_relaxed);
}

}  // namespace

std::atomic<std::int32_t> TalvoMemoryManager::_AllocationBalance{0};
bool TalvoMemoryManager::_TraceAllocations = false;
bool TalvoMemoryManager::_TraceNullPointerDeletions = true;
char* TalvoMemoryManager::_TraceFileName = kDefaultTraceFileName;

void TalvoMemoryManager::start() {
    {
        std::lock_guard<std::mutex> hold(gSharesLock);
        _AllocationBalance.store(0, std::memory_order_relaxed);
        for (ThreadShare* share = gShares; share; share = share->next)
            share->value.store(0, std::memory_order_relaxed);
    }
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
    std::lock_guard<std::mutex> hold(gSharesLock);
    return sumOfShares();
}

void TalvoMemoryManager::traceNew(const void* pointer, const char* className) {
    if (_TraceAllocations)
        traceLine(formatted("%ld :: new %s [%ld]\n", pointerValue(pointer), className,
                            getAllocationBalance()));
    addToShare(myShare(), 1);
}

// While the thread's share is positive and the common part not negative, the
// balance stays >= 0 after the release (no share is ever negative), so the
// release needs neither the lock nor the sum.
void TalvoMemoryManager::traceDelete(const void* pointer, const char* className) {
    ThreadShare* share = myShare();
    if (share && !_TraceAllocations && share->value.load(std::memory_order_relaxed) > 0 &&
        _AllocationBalance.load(std::memory_order_relaxed) >= 0) {
        addToShare(share, -1);
        return;
    }
    long balance;
    {
        std::lock_guard<std::mutex> hold(gSharesLock);
        bool covered = share && share->value.load(std::memory_order_relaxed) > 0;
        addToShare(covered ? share : nullptr, -1);
        balance = sumOfShares();
    }
    if (_TraceAllocations)
        traceLine(formatted("%ld :: delete %s [%ld]\n", pointerValue(pointer), className, balance));
    if (balance < 0) {
        dump(formatted("Negative allocation balance (%ld): delete %s at %ld.\n", balance, className,
                       pointerValue(pointer))
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
