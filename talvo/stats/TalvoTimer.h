/// @file
/// TalvoTimer: a named stopwatch over any number of start/stop intervals.
///
/// Every interval is measured twice: in wall-clock seconds (calendar time, one
/// second resolution) and in processor clock ticks. A tick is one millisecond
/// of processor time here, whatever the platform's clock rate, because the
/// text rendering reads ticks as thousandths of a second.
///
/// Fields: the owned name (may be null), the two totals over completed
/// intervals, and the two marks taken by the last start or reset. The marks
/// are not set until then; `stop` never moves them.
#pragma once

#include <talvo/foundation/TalvoObject.h>

#include <cstdint>
#include <ctime>

/// A named stopwatch totalling wall-clock seconds and processor ticks.
class TALVO_API TalvoTimer : public TalvoObject<TalvoTimer> {
public:
    static constexpr const char* ClassName = "TalvoTimer";  ///< Name in the allocation trace.

    /// No name, both totals 0, no marks.
    TalvoTimer();
    /// Releases the name.
    ~TalvoTimer();
    /// Copies every field. The name is copied rather than shared, since each
    /// timer releases its own name.
    TalvoTimer& operator=(const TalvoTimer& other);
    /// Not copy-constructible: use operator=.
    TalvoTimer(const TalvoTimer&) = delete;
    /// Deletes a timer (free call-back); nothing for null.
    static void free(void* timer);

    /// Replaces the name by a copy of `name` (null allowed).
    void setName(const char* name);
    /// The timer's own name (not a copy); null when none.
    const char* getName();

    /// -1, 0 or 1 by unsigned bytes; a null name sorts first, two nulls are equal.
    int compareName(const char* name);
    /// compareName(timer's name); a null timer reads as a null name.
    int compareNames(TalvoTimer* timer);
    /// Compare call-back: a timer against a name. A null timer reads as a
    /// null name.
    static int compareName(void* timer, void* name);
    /// Compare call-back: two timers by name. A null timer reads as a null name.
    static int compareNames(void* a, void* b);

    /// Marks now as the start and sets both totals to 0.
    void reset();
    /// Marks now as the start; the totals are kept.
    void start();
    /// Adds the seconds and ticks elapsed since the start marks to the totals.
    /// The marks stay, so two stops without a start count the interval twice.
    void stop();

    /// The wall-clock seconds totalled by stop.
    double getAccumulatedSeconds();
    /// The processor ticks (milliseconds) totalled by stop.
    long getAccumulatedTicks();

    /// The total in seconds, as a new string owned by the caller (release with
    /// TalvoRawString::free). From 60 wall-clock seconds on: the seconds with
    /// "%g"; below that the ticks as milliseconds, with two decimals truncated
    /// ("3.45" for 3,456 ticks, "3.05" for 3,050, "0.00" for none).
    char* toStringOfTimeInSeconds();

protected:
    // The clock behind start, stop and reset, so that a derived class (tests)
    // can drive the timer with readings of its own: calendar seconds and
    // processor milliseconds.

    /// reset() with the given readings as now.
    void _resetAt(std::int64_t time, long ticks);
    /// start() with the given readings as now.
    void _startAt(std::int64_t time, long ticks);
    /// stop() with the given readings as now.
    void _stopAt(std::int64_t time, long ticks);
    /// Processor clock readings converted to milliseconds.
    static long _toMilliseconds(std::clock_t clockTicks);

private:
    char* _name;
    double _accumulatedSeconds;
    long _accumulatedTicks;
    std::int64_t _startTime;
    long _startTicks;

    void _freeName();
    static std::int64_t _readCalendarTime();
    static long _readProcessorTicks();
};
