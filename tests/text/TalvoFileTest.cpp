#include "support/TalvoTest.h"

#include <talvo/foundation/TalvoRawString.h>
#include <talvo/text/TalvoFile.h>
#include <talvo/text/TalvoFileStream.h>

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

// "exists isEmpty isDirectory isFile size" for `path`, no size for a directory.
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
    EXPECT_NE(TalvoFile::remove("folder"), 0);
    EXPECT_NE(TalvoFile::remove(nullptr), 0);
}

TEST(TalvoFile, RemoveAndRename_TakeAwkwardPathsLiterally) {
    const char* name = "a b;touch pwned;$(touch pwned).txt";  // a shell would split, run, expand
    talvo_test::writeFile(name, "data");
    ASSERT_TRUE(freshDirectory("dir"));
    EXPECT_EQ(TalvoFile::rename(name, "dir"), 0);  // into an existing directory
    EXPECT_EQ(talvo_test::readFile((std::string("dir/") + name).c_str()), "data");
    EXPECT_EQ(TalvoFile::remove((std::string("dir/") + name).c_str()), 0);
    EXPECT_FALSE(TalvoFile::exists("pwned"));
    EXPECT_NE(TalvoFile::rename(nullptr, "x"), 0);
}

TEST(TalvoFile, Rename_MovesAcrossFileSystems) {
    struct stat here, shm;
    if (stat(".", &here) != 0 || stat("/dev/shm", &shm) != 0 || here.st_dev == shm.st_dev)
        GTEST_SKIP() << "no second file system at /dev/shm";
    std::string target = "/dev/shm/talvo-move-" + std::to_string(getpid()) + " x.txt";
    talvo_test::writeFile("source file.txt", "across");
    ASSERT_EQ(TalvoFile::rename("source file.txt", target.c_str()), 0);
    EXPECT_FALSE(TalvoFile::exists("source file.txt"));
    ASSERT_EQ(TalvoFile::rename(target.c_str(), "back.txt"), 0);
    EXPECT_EQ(talvo_test::readFile("back.txt"), "across");
}

// A stream writes to the file that open gave; TalvoFile::close ends it.
TEST(TalvoFile, OpenAndClose_WrapTheRuntime) {
    EXPECT_EQ(TalvoFile::open("no/such/dir/x.txt", "r"), nullptr);
    EXPECT_EQ(TalvoFile::close(nullptr), EOF);
    FILE* file = TalvoFile::open("t.txt", "w");
    TalvoFileStream stream(false, file);
    EXPECT_EQ(stream.getFile(), file);
    stream.put("hi");
    stream.flush();
    EXPECT_EQ(TalvoFile::close(file), 0);
    EXPECT_EQ(talvo_test::readFile("t.txt"), "hi");
}

TEST(TalvoFile, GetProgramPath_IsDirectoryOfRunningExecutable) {
    char* path = TalvoFile::getProgramPath(nullptr);
    ASSERT_NE(path, nullptr);
    std::string directory = path;
    TalvoRawString::free(path);
    char self[1024] = {};
    ASSERT_GT(readlink("/proc/self/exe", self, sizeof self - 1), 0);
    EXPECT_EQ(std::string(self).substr(0, std::string(self).rfind('/') + 1), directory);
}
