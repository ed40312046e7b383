#include "support/TalvoTest.h"

#include <talvo/foundation/TalvoRawString.h>
#include <talvo/stats/TalvoTimer.h>

#include <ctime>
#include <string>

namespace {

// A timer driven by readings the test chooses: calendar seconds and
// processor milliseconds.
class SetTimer : public TalvoTimer {
public:
    void resetAt(std::int64_t seconds, long ticks) { _resetAt(seconds, ticks); }
    void startAt(std::int64_t seconds, long ticks) { _startAt(seconds, ticks); }
    void stopAt(std::int64_t seconds, long ticks) { _stopAt(seconds, ticks); }
    static long toMilliseconds(std::clock_t clockTicks) { return _toMilliseconds(clockTicks); }
};

std::string text(TalvoTimer& timer) {
    char* s = timer.toStringOfTimeInSeconds();
    std::string result = s ? s : "<null>";
    TalvoRawString::free(s);
    return result;
}

}  // namespace

TEST(TalvoTimer, TextOfTicksAndSeconds) {
    struct Case {
        std::int64_t seconds;
        long ticks;
        const char* expected;
    } cases[] = {
        {59, 3456, "3.45"}, {0, 9, "0.00"}, {0, 61000, "61.00"},  // below 60 s the ticks rule
        {60, 1200, "60"},   {3600, 5, "3600"},
    };
    for (const Case& c : cases) {
        SetTimer timer;
        timer.resetAt(1000, 500);
        timer.stopAt(1000 + c.seconds, 500 + c.ticks);
        SCOPED_TRACE(c.expected);
        EXPECT_EQ(c.expected, text(timer));
    }
}

TEST(TalvoTimer, TwoIntervalsAccumulate) {
    SetTimer timer;
    timer.resetAt(0, 0);
    timer.stopAt(1, 1200);
    timer.startAt(10, 5000);
    timer.stopAt(11, 6200);
    EXPECT_EQ(2400, timer.getAccumulatedTicks());
    EXPECT_EQ(2.0, timer.getAccumulatedSeconds());
    SetTimer twice;  // stopping twice counts the interval twice
    twice.resetAt(0, 0);
    twice.stopAt(0, 100);
    twice.stopAt(0, 100);
    EXPECT_EQ(200, twice.getAccumulatedTicks());
}

// Names compare by unsigned bytes, null first; assignment copies every field.
TEST(TalvoTimer, NamesCompareAndAssignmentCopies) {
    SetTimer* a = new SetTimer();
    TalvoTimer unnamed;
    a->setName("run");
    EXPECT_EQ(1, a->compareNames(&unnamed));
    EXPECT_EQ(-1, a->compareName("\xe9"));
    EXPECT_EQ(1, a->compareName(nullptr));
    a->resetAt(0, 0);
    a->stopAt(2, 1234);
    SetTimer b;
    b = *a;
    EXPECT_EQ(0, b.compareName("run"));
    EXPECT_EQ(1234, b.getAccumulatedTicks());
    delete a;  // b keeps a name of its own
    EXPECT_EQ(0, b.compareName("run"));
}

// The real clock: totals never negative and never shrinking.
TEST(TalvoTimer, RealClockSmoke) {
    TalvoTimer timer;
    timer.setName("real");
    EXPECT_STREQ("real", timer.getName());
    timer.reset();
    timer.stop();
    long ticks = timer.getAccumulatedTicks();
    timer.start();
    timer.stop();
    EXPECT_GE(timer.getAccumulatedTicks(), ticks);
    EXPECT_GE(ticks, 0);
    EXPECT_GE(timer.getAccumulatedSeconds(), 0.0);
}
