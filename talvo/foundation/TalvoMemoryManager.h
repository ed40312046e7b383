// TalvoMemoryManager: the process-wide allocation balance and diagnostics.
//
// Every object of the library is allocated zero-filled by `newCell` and
// reported with its class name to `traceNew` / `traceDelete`; the balance
// (allocations minus releases) may be changed from distinct threads. Each
// thread counts into a share of its own (no locked instruction on the hot
// path); reading the balance sums the shares. A thread's share never goes
// below zero: a release it cannot cover, and every count made after the
// thread's exit, goes to the common part `_AllocationBalance`, which also
// receives the share of a thread that ends. Optionally each allocation
// and release is written as a line to the trace file. Fatal and suspicious
// conditions are appended to the dump file "talvo.dmp" in the current
// directory, each entry opened by a dated banner.
//
// Only the balance is thread-safe: the trace flags and the trace file name
// are plain globals meant to be set once, and the files are opened and closed
// on every write.
#pragma once

#include <talvo/foundation/TalvoExport.h>

#include <atomic>
#include <cstddef>
#include <cstdint>

class TALVO_API TalvoMemoryManager {
public:
    // The common part of the balance (signed 32-bit, wrapping): counts of
    // ended threads and releases not covered by the releasing thread's share.
    static std::atomic<std::int32_t> _AllocationBalance;
    // When true, every traced allocation and release writes a trace line.
    static bool _TraceAllocations;
    // When true, releasing a null pointer writes a message to the dump file.
    static bool _TraceNullPointerDeletions;
    // Name of the trace file, relative to the current directory.
    static char* _TraceFileName;

    TalvoMemoryManager& operator=(const TalvoMemoryManager&) { return *this; }

    // Resets the balance to 0 and switches allocation tracing off.
    static void start();
    // Writes "Stop memory manager" to the trace file when tracing, then reports
    // a non-zero balance on standard error and in the dump file. Frees nothing.
    static void stop();

    // A zero-filled block of `size` bytes, or null after writing
    // "Memory overflow.\n" to the dump file. Does not touch the balance.
    static void* newCell(std::size_t size) noexcept;
    // Releases a block from `newCell`. A null pointer is reported to the dump
    // file when the null-deletion flag is set. Does not touch the balance.
    static void deleteCell(void* pointer) noexcept;

    static void setTraceNullPointerDeletionsFlag(bool flag);
    static void setTraceAllocationsFlag(bool flag);

    // The current allocation balance: traced allocations minus traced
    // releases of every thread (signed 32-bit, wrapping). O(threads).
    static long getAllocationBalance();

    // Counts one allocation of `className` (also for a null pointer), writing
    // a trace line first when tracing.
    static void traceNew(const void* pointer, const char* className);
    // Counts one release. A negative balance is written to the dump file and
    // ends the process with exit status 1 (detected exactly unless releases
    // from several threads race with the one that goes below zero).
    static void traceDelete(const void* pointer, const char* className);
    // Writes "point :: <label>" to the trace file when tracing.
    static void traceAllocationDebugPoint(const char* label);
    // Always writes the label and the balance to the trace file.
    static void traceAllocationBalance(const char* label);

    // Appends a dated banner and `message` to "talvo.dmp"; silent when the
    // file cannot be opened. "%%" in the message writes one "%".
    static void dump(const char* message);

    // Append a value ("%d" / "%g") or formatted text to the file at `path`.
    // A null or unopenable path writes to standard error instead, which is
    // then closed as the file would have been (kept on purpose).
    static void trace(const char* path, int value);
    static void trace(const char* path, double value);
    // The format understands %c %s %d %l %f %g and the escapes \t \n \\;
    // any other character after "%" is dropped with it ("%%" writes nothing).
    static void trace(const char* path, const char* format, ...);
};
