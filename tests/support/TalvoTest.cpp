#include "support/TalvoTest.h"

#include <talvo/foundation/TalvoMemoryManager.h>

#include <filesystem>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>
#include <unistd.h>

namespace talvo_test {
namespace {

std::string currentDirectory() {
    char buffer[4096];
    return getcwd(buffer, sizeof buffer) ? std::string(buffer) : std::string(".");
}

// The directory the test program was started in; each test gets a folder below it.
const std::string& baseDirectory() {
    static const std::string base = currentDirectory();
    return base;
}

std::string scratchDirectoryFor(const ::testing::TestInfo& info) {
    std::string leaf = std::string(info.test_suite_name()) + "." + info.name();
    for (char& c : leaf)
        if (c == '/')
            c = '_';  // parameterised tests carry slashes in their names
    return baseDirectory() + "/" + leaf;
}

}  // namespace

void BalancedTest::SetUp() {
    previousDirectory_ = currentDirectory();
    std::string dir = scratchDirectoryFor(*::testing::UnitTest::GetInstance()->current_test_info());
    // Start from an empty directory: files of an earlier run would be appended to.
    std::error_code error;
    std::filesystem::remove_all(dir, error);
    if (!std::filesystem::create_directories(dir, error))
        FAIL() << "cannot create scratch directory " << dir << ": " << error.message();
    ASSERT_EQ(chdir(dir.c_str()), 0) << dir;
    balanceAtStart_ = TalvoMemoryManager::getAllocationBalance();
}

void BalancedTest::TearDown() {
    EXPECT_EQ(TalvoMemoryManager::getAllocationBalance(), balanceAtStart_)
        << "the test changed the allocation balance";
    if (chdir(previousDirectory_.c_str()) != 0)
        ADD_FAILURE() << "cannot return to " << previousDirectory_;
}

std::string readFile(const char* path) {
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return "<missing>";
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

void writeFile(const char* path, const std::string& content) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << content;
}

std::string readDumpWithoutDates() {
    std::string dump = readFile("talvo.dmp");
    if (dump == "<missing>")
        return dump;
    static const std::string banner = "Talvo version D8 ";
    std::string result;
    std::size_t pos = 0;
    while (pos < dump.size()) {
        if (dump.compare(pos, banner.size(), banner) == 0) {
            std::size_t end = dump.find('\n', pos);
            result += "[banner]\n";
            pos = end == std::string::npos ? dump.size() : end + 1;
        } else {
            std::size_t next = dump.find(banner, pos);
            if (next == std::string::npos)
                next = dump.size();
            result += dump.substr(pos, next - pos);
            pos = next;
        }
    }
    return result;
}

}  // namespace talvo_test
