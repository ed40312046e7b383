#include "support/TalvoTest.h"

#include <talvo/foundation/TalvoInteger.h>
#include <talvo/foundation/TalvoMemoryManager.h>
#include <talvo/foundation/TalvoObject.h>

#include <cstdio>
#include <cstdlib>
#include <string>

using talvo_test::readDumpWithoutDates;
using talvo_test::readFile;

namespace {

const void* const kPointer = reinterpret_cast<const void*>(4096);

std::string traceFile() { return readFile("talvo-allocations.txt"); }

class Base : public TalvoObject<Base> {
public:
    static constexpr const char* ClassName = "Base";
    virtual ~Base() = default;
    int values[4];
};

class Derived : public Base, public TalvoTracedAs<Derived> {
public:
    static constexpr const char* ClassName = "Derived";
};

}  // namespace

// The balance line is written whether tracing is on or not, marked when it is.
TEST(TalvoMemoryManager, TraceLinesShowPointerNameAndBalance) {
    std::string b = std::to_string(TalvoMemoryManager::getAllocationBalance());
    TalvoMemoryManager::traceAllocationBalance("plain");
    TalvoMemoryManager::setTraceAllocationsFlag(true);
    TalvoMemoryManager::traceNew(kPointer, "Thing");
    TalvoMemoryManager::traceAllocationDebugPoint("middle");
    TalvoMemoryManager::traceDelete(kPointer, "Thing");
    TalvoMemoryManager::traceAllocationBalance("traced");
    TalvoMemoryManager::setTraceAllocationsFlag(false);
    EXPECT_EQ(traceFile(), "plain: allocation balance = " + b + "\n" + "4096 :: new Thing [" + b + "]\n" +
                               "point :: middle\n" + "4096 :: delete Thing [" + b + "]\n" +
                               "traced: allocation balance = " + b + " (traced)\n");
}

TEST(TalvoMemoryManager, SecondDeleteEndsProcessWithNegativeBalance) {
    EXPECT_EXIT(
        {
            TalvoMemoryManager::start();
            TalvoMemoryManager::traceNew(kPointer, "Thing");
            TalvoMemoryManager::traceDelete(kPointer, "Thing");
            TalvoMemoryManager::traceDelete(kPointer, "Thing");
        },
        ::testing::ExitedWithCode(1), "");
    EXPECT_EQ(readDumpWithoutDates(),
              "[banner]\nNegative allocation balance (-1): delete Thing at 4096.\n");
}

TEST(TalvoMemoryManager, DumpOpensEachEntryWithDatedBanner) {
    TalvoMemoryManager::dump("100%% sure\n");
    std::string dump = readFile("talvo.dmp");
    ASSERT_EQ(dump.compare(0, 17, "Talvo version D8 "), 0) << dump;
    // The asctime date: "Sun Nov 22 03:55:35 2026\n", 25 characters.
    EXPECT_EQ(dump.find('\n'), 17u + 24u) << dump;
    EXPECT_EQ(readDumpWithoutDates(), "[banner]\n100% sure\n");
}

TEST(TalvoMemoryManager, StopReportsLeakOnStandardErrorAndDump) {
    TalvoMemoryManager::traceNew(kPointer, "Leak");
    long balance = TalvoMemoryManager::getAllocationBalance();
    ::testing::internal::CaptureStderr();
    TalvoMemoryManager::stop();
    std::string err = ::testing::internal::GetCapturedStderr();
    TalvoMemoryManager::traceDelete(kPointer, "Leak");
    std::string message = "TalvoMemoryManager: bug! #allocations=" + std::to_string(balance) + "\n";
    EXPECT_EQ(err, message);
    EXPECT_EQ(readDumpWithoutDates(), "[banner]\n" + message);
}

// The flag only silences the report; a boxed number's free traces before its null test.
TEST(TalvoMemoryManager, NullPointerDeletionReportFollowsItsFlag) {
    TalvoMemoryManager::setTraceNullPointerDeletionsFlag(false);
    TalvoMemoryManager::deleteCell(nullptr);
    EXPECT_EQ(readDumpWithoutDates(), "<missing>");
    TalvoMemoryManager::setTraceNullPointerDeletionsFlag(true);
    long before = TalvoMemoryManager::getAllocationBalance();
    TalvoMemoryManager::traceNew(nullptr, "TalvoDouble");
    TalvoDouble::free(nullptr);
    EXPECT_EQ(TalvoMemoryManager::getAllocationBalance(), before);
    EXPECT_EQ(readDumpWithoutDates(), "[banner]\nAttempt to free a NULL pointer.\n");
}

TEST(TalvoMemoryManager, FormatInterpreterHandlesConversionsAndEscapesValueTracesAppend) {
    // Each format is given the same arguments: 'Z', "str", 42, 7, 1.5, 2.5.
    const struct {
        const char* format;
        const char* expected;
    } cases[] = {
        {"a\\tb%%c", "a\tbc"},
        {"%c|%s|%d", "Z|str|42"},
        {"x\\ny\\\\z\\q", "x\ny\\z\\q"},
        {"%q%d", "90"},  // "%q" is dropped and consumes nothing: %d reads 'Z' as an int
        {"end%", "end"},
    };
    for (const auto& c : cases) {
        std::remove("fmt.txt");
        TalvoMemoryManager::trace("fmt.txt", c.format, 'Z', "str", 42, 7, 1.5, 2.5);
        EXPECT_EQ(readFile("fmt.txt"), c.expected) << "format: " << c.format;
    }
    TalvoMemoryManager::trace("values.txt", 12);  // value traces append
    TalvoMemoryManager::trace("values.txt", 1e20);
    TalvoMemoryManager::trace("values.txt", "%f %g [%l]", 1.5, 0.1 + 0.2, 99);
    EXPECT_EQ(readFile("values.txt"), "121e+201.500000 0.3 []");
}

TEST(TalvoMemoryManager, UnopenableTraceFileFallsBackToStandardErrorAndClosesIt) {
    EXPECT_EXIT(
        {
            TalvoMemoryManager::trace("no-such-dir/file.txt", "to stderr");
            // Standard error is closed now: writing to it fails.
            std::exit(std::fputs("more", stderr) == EOF ? 0 : 3);
        },
        ::testing::ExitedWithCode(0), "to stderr");
}

TEST(TalvoObject, NewTracesClassNameAndDeleteBalances) {
    long before = TalvoMemoryManager::getAllocationBalance();
    TalvoMemoryManager::setTraceAllocationsFlag(true);
    Base* sample = new Base;
    EXPECT_EQ(sample->values[0] | sample->values[3], 0);  // storage is zero-filled
    delete sample;
    TalvoMemoryManager::setTraceAllocationsFlag(false);
    std::string p = std::to_string(reinterpret_cast<std::intptr_t>(sample));
    std::string b = std::to_string(before);
    EXPECT_EQ(traceFile(), p + " :: new Base [" + b + "]\n" + p + " :: delete Base [" + b + "]\n");
    Base* object = new Derived;  // counted once per traced level
    EXPECT_EQ(TalvoMemoryManager::getAllocationBalance(), before + 2);
    delete object;
}
