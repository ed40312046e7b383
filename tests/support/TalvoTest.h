// Test support shared by every test program.
//
// Include this header instead of <gtest/gtest.h>. It redefines TEST so that
// every test case
//   - runs in a scratch directory of its own (the library writes talvo.dmp,
//     trace.txt and the allocation trace into the current directory, and
//     ctest runs test cases in parallel), and
//   - fails when it does not leave the allocation balance where it found it.
#pragma once

#define GTEST_DONT_DEFINE_TEST 1
#include <gtest/gtest.h>

#include <string>

namespace talvo_test {

class BalancedTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

private:
    long balanceAtStart_ = 0;
    std::string previousDirectory_;
};

// The whole content of a file, or "<missing>" when it cannot be read.
std::string readFile(const char* path);

// Writes `content` to `path`, replacing the file.
void writeFile(const char* path, const std::string& content);

// The text of talvo.dmp with every "Talvo version D8 <date>" banner line
// replaced by "[banner]\n", so that tests can compare it exactly.
std::string readDumpWithoutDates();

}  // namespace talvo_test

#define TEST(test_suite_name, test_name)                      \
    GTEST_TEST_(test_suite_name, test_name,                   \
                ::talvo_test::BalancedTest,                   \
                ::testing::internal::GetTypeId<::talvo_test::BalancedTest>())
