/// @file
/// TalvoMemoryManager: the process-wide allocation balance and diagnostics.
///
/// Every object of the library is allocated zero-filled by `newCell` and
/// reported with its class name to `traceNew` / `traceDelete`; the balance
/// (allocations minus releases) is one atomic counter, so distinct objects may
/// be created and destroyed from distinct threads. Optionally each allocation
/// and release is written as a line to the trace file. Fatal and suspicious
/// conditions are appended to the dump file "talvo.dmp" in the current
/// directory, each entry opened by a dated banner.
///
/// Only the balance is thread-safe: the trace flags and the trace file name
/// are plain globals meant to be set once, and the files are opened and closed
/// on every write.
#pragma once

#include <talvo/foundation/TalvoExport.h>

#include <atomic>
#include <cstddef>
#include <cstdint>

/// The allocation balance, the trace file and the dump file; all static.
class TALVO_API TalvoMemoryManager {
public:
    /// Traced allocations minus traced releases (signed 32-bit).
    static std::atomic<std::int32_t> _AllocationBalance;
    /// When true, every traced allocation and release writes a trace line.
    static bool _TraceAllocations;
    /// When true, releasing a null pointer writes a message to the dump file.
    static bool _TraceNullPointerDeletions;
    /// Name of the trace file, relative to the current directory.
    static char* _TraceFileName;

    /// Assigns nothing: the class has no instance state.
    TalvoMemoryManager& operator=(const TalvoMemoryManager&) { return *this; }

    /// Resets the balance to 0 and switches allocation tracing off.
    static void start();
    /// Writes "Stop memory manager" to the trace file when tracing, then reports
    /// a non-zero balance on standard error and in the dump file. Frees nothing.
    static void stop();

    /// A zero-filled block of `size` bytes, or null after writing
    /// "Memory overflow.\n" to the dump file. Does not touch the balance.
    static void* newCell(std::size_t size) noexcept;
    /// Releases a block from `newCell`. A null pointer is reported to the dump
    /// file when the null-deletion flag is set. Does not touch the balance.
    static void deleteCell(void* pointer) noexcept;

    /// Sets _TraceNullPointerDeletions.
    static void setTraceNullPointerDeletionsFlag(bool flag);
    /// Sets _TraceAllocations.
    static void setTraceAllocationsFlag(bool flag);

    /// The current allocation balance.
    static long getAllocationBalance();

    /// Counts one allocation of `className` (also for a null pointer), writing
    /// a trace line first when tracing.
    static void traceNew(const void* pointer, const char* className) {
        // Inline, like traceDelete: with tracing off (the common case) counting
        // an object costs one test and the atomic update where it is made.
        if (_TraceAllocations)
            _writeNewLine(_address(pointer), className);
        _AllocationBalance.fetch_add(1, std::memory_order_relaxed);
    }
    /// Counts one release. A negative balance is written to the dump file and
    /// ends the process with exit status 1.
    static void traceDelete(const void* pointer, const char* className) {
        long balance = static_cast<long>(_AllocationBalance.fetch_sub(1, std::memory_order_relaxed)) - 1;
        if (_TraceAllocations || balance < 0)
            _reportDelete(_address(pointer), className, balance);
    }
    /// Writes "point :: " and the label to the trace file when tracing.
    static void traceAllocationDebugPoint(const char* label);
    /// Always writes the label and the balance to the trace file.
    static void traceAllocationBalance(const char* label);

    /// Appends a dated banner and `message` to "talvo.dmp"; silent when the
    /// file cannot be opened. "%%" in the message writes one "%".
    static void dump(const char* message);

    /// Appends `value` formatted with "%d" to the file at `path`. A null or
    /// unopenable path writes to standard error instead, which is then closed
    /// as the file would have been (kept on purpose).
    static void trace(const char* path, int value);
    /// Appends `value` formatted with "%g" to the file at `path`; a null or
    /// unopenable path writes to standard error, as above.
    static void trace(const char* path, double value);
    /// Appends formatted text to the file at `path`; a null or unopenable path
    /// writes to standard error, as above. The format understands "%c", "%s",
    /// "%d", "%l", "%f", "%g" and the escapes `\t`, `\n` and `\\`; any other character after
    /// "%" is dropped with it ("%%" writes nothing).
    static void trace(const char* path, const char* format, ...);

private:
    /// The decimal value of a pointer as the trace lines show it. Passing the
    /// value rather than the pointer keeps compilers from taking the object,
    /// not yet constructed when it is counted, for one that is read.
    static long _address(const void* pointer) {
        return static_cast<long>(reinterpret_cast<std::intptr_t>(pointer));
    }
    /// The trace line of traceNew, showing the balance before the allocation.
    static void _writeNewLine(long address, const char* className);
    /// The rest of traceDelete once the balance is `balance`: its trace line,
    /// then the dump and exit when the balance is negative.
    static void _reportDelete(long address, const char* className, long balance);
};
