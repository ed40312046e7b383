#include "support/TalvoTest.h"

#include <talvo/foundation/TalvoRawString.h>
#include <talvo/text/TalvoFile.h>

#include <dirent.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Makes an empty directory `name`, clearing one left by an earlier run.
bool freshDirectory(const char* name) {
    if (DIR* dir = opendir(name)) {
        while (dirent* entry = readdir(dir))
            unlink((std::string(name) + "/" + entry->d_name).c_str());
        closedir(dir);
        rmdir(name);
    }
    return mkdir(name, 0755) == 0;
}

// Paths a shell would split, expand or run something from.
const char* const kAwkwardNames[] = {
    "with blank.txt",
    "it's \"quoted\".txt",
    "semi;touch pwned.txt",
    "$(touch pwned).txt",
    "star*and?.txt",
};

// "exists isEmpty isDirectory isFile size" for `path`; the size of an
// existing directory depends on the file system and is left out.
std::string answersFor(const char* path) {
    std::string answers = std::to_string(TalvoFile::exists(path)) + " " + std::to_string(TalvoFile::isEmpty(path)) +
                          " " + std::to_string(TalvoFile::isDirectory(path)) + " " +
                          std::to_string(TalvoFile::isFile(path));
    if (!TalvoFile::exists(path) || !TalvoFile::isDirectory(path))
        answers += " " + std::to_string(TalvoFile::getSize(path));
    return answers;
}

}  // namespace

TEST(TalvoFile, Predicates_OnFileDirectoryAndMissingPath) {
    talvo_test::writeFile("five.txt", "12345");
    talvo_test::writeFile("empty.txt", "");
    ASSERT_TRUE(freshDirectory("folder"));
    EXPECT_EQ(answersFor("five.txt"), "1 0 0 1 5");
    EXPECT_EQ(answersFor("empty.txt"), "1 1 0 1 0");
    EXPECT_EQ(answersFor("folder"), "1 0 1 0");
    EXPECT_EQ(answersFor("missing"), "0 1 1 1 -1");  // true answers: stat failed
    EXPECT_EQ(answersFor(nullptr), "0 1 1 1 -1");
}

TEST(TalvoFile, OpenAndClose_WrapTheRuntime) {
    FILE* file = TalvoFile::open("new.txt", "w");
    ASSERT_NE(file, nullptr);
    std::fputs("hi", file);
    EXPECT_EQ(TalvoFile::close(file), 0);
    EXPECT_EQ(talvo_test::readFile("new.txt"), "hi");
    EXPECT_EQ(TalvoFile::open("missing/new.txt", "r"), nullptr);
    EXPECT_EQ(TalvoFile::open(nullptr, "r"), nullptr);
    EXPECT_NE(TalvoFile::close(nullptr), 0);
}

TEST(TalvoFile, Remove_FailsOnMissingPathDirectoryAndNull) {
    EXPECT_NE(TalvoFile::remove("gone.txt"), 0);
    ASSERT_TRUE(freshDirectory("folder"));
    EXPECT_NE(TalvoFile::remove("folder"), 0);
    EXPECT_TRUE(TalvoFile::exists("folder"));
    EXPECT_NE(TalvoFile::remove(nullptr), 0);
}

TEST(TalvoFile, RemoveAndRename_TakeAwkwardPathsLiterally) {
    for (const char* name : kAwkwardNames) {
        talvo_test::writeFile(name, "data");
        std::string moved = std::string("moved ") + name;
        EXPECT_EQ(TalvoFile::rename(name, moved.c_str()), 0) << name;
        EXPECT_FALSE(TalvoFile::exists(name)) << name;
        EXPECT_EQ(talvo_test::readFile(moved.c_str()), "data") << name;
        EXPECT_EQ(TalvoFile::remove(moved.c_str()), 0) << name;
        EXPECT_FALSE(TalvoFile::exists(moved.c_str())) << name;
    }
    EXPECT_FALSE(TalvoFile::exists("pwned"));
    EXPECT_FALSE(TalvoFile::exists("pwned.txt"));
}

TEST(TalvoFile, Rename_IntoExistingDirectoryAndOverExistingFile) {
    talvo_test::writeFile("a.txt", "A");
    talvo_test::writeFile("b.txt", "B");
    ASSERT_TRUE(freshDirectory("dir"));
    EXPECT_EQ(TalvoFile::rename("a.txt", "dir"), 0);
    EXPECT_EQ(talvo_test::readFile("dir/a.txt"), "A");
    EXPECT_EQ(TalvoFile::rename("b.txt", "dir/a.txt"), 0);
    EXPECT_EQ(talvo_test::readFile("dir/a.txt"), "B");
    EXPECT_NE(TalvoFile::rename("missing", "dir"), 0);
    EXPECT_NE(TalvoFile::rename(nullptr, "x"), 0);
    EXPECT_NE(TalvoFile::rename("dir/a.txt", nullptr), 0);
}

TEST(TalvoFile, Rename_MovesAcrossFileSystems) {
    struct stat here, shm;
    if (stat(".", &here) != 0 || stat("/dev/shm", &shm) != 0 || here.st_dev == shm.st_dev)
        GTEST_SKIP() << "no second file system at /dev/shm";
    std::string target = "/dev/shm/talvo-move-" + std::to_string(getpid()) + " x.txt";
    talvo_test::writeFile("source file.txt", "across");
    chmod("source file.txt", 0640);
    ASSERT_EQ(TalvoFile::rename("source file.txt", target.c_str()), 0);
    EXPECT_FALSE(TalvoFile::exists("source file.txt"));
    EXPECT_EQ(talvo_test::readFile(target.c_str()), "across");
    struct stat info;
    ASSERT_EQ(stat(target.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0640u);
    ASSERT_EQ(TalvoFile::rename(target.c_str(), "back.txt"), 0);
    EXPECT_EQ(talvo_test::readFile("back.txt"), "across");
    EXPECT_FALSE(TalvoFile::exists(target.c_str()));
}

TEST(TalvoFile, GetProgramPath_IsDirectoryOfRunningExecutable) {
    char* path = TalvoFile::getProgramPath(nullptr);
    ASSERT_NE(path, nullptr);
    std::string directory = path;
    TalvoRawString::free(path);
    ASSERT_TRUE(!directory.empty() && directory.back() == '/') << directory;
    char self[1024];
    ssize_t length = readlink("/proc/self/exe", self, sizeof self - 1);
    ASSERT_GT(length, 0);
    std::string executable(self, static_cast<std::size_t>(length));
    EXPECT_EQ(executable.substr(0, directory.size()), directory);
    EXPECT_EQ(executable.find('/', directory.size()), std::string::npos);
}
