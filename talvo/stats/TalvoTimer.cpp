#include <talvo/stats/TalvoTimer.h>

#include <talvo/foundation/TalvoRawString.h>

#include <cstdio>

namespace {

// The rendering reads ticks as milliseconds.
const long kTicksPerSecond = 1000;
const long kTicksPerHundredth = kTicksPerSecond / 100;
const double kSecondsForWallClock = 60.0;
const long kHundredthsPerSecond = 100;
// Two decimals below ten need a leading zero: "3.05", not "3.5".
const long kFirstTwoDigitHundredth = 10;

// a + b - c in two's complement, so that odd clock readings cannot overflow.
long wrappingAddDifference(long a, long b, long c) {
    unsigned long sum = static_cast<unsigned long>(a) + static_cast<unsigned long>(b) - static_cast<unsigned long>(c);
    return static_cast<long>(sum);
}

}  // namespace

TalvoTimer::TalvoTimer()
    : _name(nullptr), _accumulatedSeconds(0.0), _accumulatedTicks(0), _startTime(0), _startTicks(0) {}

TalvoTimer::~TalvoTimer() {
    _freeName();
}

TalvoTimer& TalvoTimer::operator=(const TalvoTimer& other) {
    if (this == &other)
        return *this;
    setName(other._name);
    _accumulatedSeconds = other._accumulatedSeconds;
    _accumulatedTicks = other._accumulatedTicks;
    _startTime = other._startTime;
    _startTicks = other._startTicks;
    return *this;
}

void TalvoTimer::free(void* timer) {
    delete static_cast<TalvoTimer*>(timer);
}

void TalvoTimer::setName(const char* name) {
    char* copy = TalvoRawString::copy(name);
    _freeName();
    _name = copy;
}

// Raw-string release counts even a null string, so only a real name is freed.
void TalvoTimer::_freeName() {
    if (_name)
        TalvoRawString::free(_name);
    _name = nullptr;
}

const char* TalvoTimer::getName() {
    return _name;
}

int TalvoTimer::compareName(const char* name) {
    return TalvoRawString::compare(const_cast<char*>(_name), const_cast<char*>(name));
}

int TalvoTimer::compareNames(TalvoTimer* timer) {
    return compareName(timer ? timer->_name : nullptr);
}

int TalvoTimer::compareName(void* timer, void* name) {
    TalvoTimer* t = static_cast<TalvoTimer*>(timer);
    return TalvoRawString::compare(t ? t->_name : nullptr, name);
}

int TalvoTimer::compareNames(void* a, void* b) {
    TalvoTimer* other = static_cast<TalvoTimer*>(b);
    return compareName(a, other ? other->_name : nullptr);
}

void TalvoTimer::reset() {
    _resetAt(_readCalendarTime(), _readProcessorTicks());
}

void TalvoTimer::start() {
    _startAt(_readCalendarTime(), _readProcessorTicks());
}

void TalvoTimer::stop() {
    _stopAt(_readCalendarTime(), _readProcessorTicks());
}

double TalvoTimer::getAccumulatedSeconds() {
    return _accumulatedSeconds;
}

long TalvoTimer::getAccumulatedTicks() {
    return _accumulatedTicks;
}

char* TalvoTimer::toStringOfTimeInSeconds() {
    char text[64];
    if (_accumulatedSeconds >= kSecondsForWallClock) {
        std::snprintf(text, sizeof text, "%g", _accumulatedSeconds);
    } else {
        long seconds = _accumulatedTicks / kTicksPerSecond;
        // (ticks * 100 / 1000) % 100, without the multiplication's overflow.
        long hundredths = (_accumulatedTicks / kTicksPerHundredth) % kHundredthsPerSecond;
        const char* format = hundredths < kFirstTwoDigitHundredth ? "%ld.0%ld" : "%ld.%ld";
        std::snprintf(text, sizeof text, format, seconds, hundredths);
    }
    return TalvoRawString::copy(text);
}

void TalvoTimer::_resetAt(std::int64_t time, long ticks) {
    _startAt(time, ticks);
    _accumulatedSeconds = 0.0;
    _accumulatedTicks = 0;
}

void TalvoTimer::_startAt(std::int64_t time, long ticks) {
    _startTime = time;
    _startTicks = ticks;
}

void TalvoTimer::_stopAt(std::int64_t time, long ticks) {
    _accumulatedSeconds += std::difftime(static_cast<std::time_t>(time), static_cast<std::time_t>(_startTime));
    _accumulatedTicks = wrappingAddDifference(_accumulatedTicks, ticks, _startTicks);
}

long TalvoTimer::_toMilliseconds(std::clock_t clockTicks) {
    // Divide before multiplying where the rate allows it, so that long
    // processor times do not overflow.
    if (CLOCKS_PER_SEC % kTicksPerSecond == 0)
        return static_cast<long>(clockTicks / (CLOCKS_PER_SEC / kTicksPerSecond));
    return static_cast<long>(static_cast<double>(clockTicks) * kTicksPerSecond / CLOCKS_PER_SEC);
}

std::int64_t TalvoTimer::_readCalendarTime() {
    return static_cast<std::int64_t>(std::time(nullptr));
}

long TalvoTimer::_readProcessorTicks() {
    return _toMilliseconds(std::clock());
}
