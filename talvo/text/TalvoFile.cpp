#include <talvo/text/TalvoFile.h>

#include <talvo/foundation/TalvoRawString.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// The status a failed rm or mv exits with.
const int kCommandFailed = 1;
// The mode bits the predicates test (the values of the classic stat layout).
const unsigned kDirectoryBit = 0x4000;
const unsigned kRegularFileBit = 0x8000;
// Room for the executable's path.
const int kProgramPathSize = 1024;
// Bytes moved per read when copying across file systems.
const int kCopyChunkSize = 16384;

bool statOf(const char* path, struct stat* info) {
    return path && ::stat(path, info) == 0;
}

bool isSeparator(char c) {
    return c == '/' || c == '\\';
}

// Writes all `count` bytes of `bytes` to `fd`.
bool writeAll(int fd, const char* bytes, ssize_t count) {
    while (count > 0) {
        ssize_t written = ::write(fd, bytes, static_cast<std::size_t>(count));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        bytes += written;
        count -= written;
    }
    return true;
}

// Copies the bytes of `from` into `to` (created or truncated, with the mode
// bits of `from`).
bool copyContents(const char* from, const char* to, mode_t mode) {
    int in = ::open(from, O_RDONLY);
    if (in < 0)
        return false;
    int out = ::open(to, O_WRONLY | O_CREAT | O_TRUNC, mode & 07777);
    if (out < 0) {
        ::close(in);
        return false;
    }
    char chunk[kCopyChunkSize];
    bool ok = true;
    for (;;) {
        ssize_t got = ::read(in, chunk, sizeof chunk);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0) {
            ok = got == 0;
            break;
        }
        if (!writeAll(out, chunk, got)) {
            ok = false;
            break;
        }
    }
    ::close(in);
    if (::close(out) != 0)
        ok = false;
    return ok;
}

// A regular file moved to another file system: copy, then unlink the original.
int moveAcrossFileSystems(const char* from, const char* to) {
    struct stat info;
    if (!statOf(from, &info) || !S_ISREG(info.st_mode))
        return kCommandFailed;
    if (!copyContents(from, to, info.st_mode)) {
        ::unlink(to);
        return kCommandFailed;
    }
    return ::unlink(from) == 0 ? 0 : kCommandFailed;
}

// `to`, or `to`/<last component of `from`> when `to` is a directory, as mv
// reads its target. New raw string.
char* targetPath(const char* from, const char* to) {
    struct stat info;
    if (!statOf(to, &info) || !S_ISDIR(info.st_mode))
        return TalvoRawString::copy(to);
    std::size_t end = std::strlen(from);
    while (end > 1 && from[end - 1] == '/')
        --end;  // "dir/" names the same entry as "dir"
    std::size_t start = end;
    while (start > 0 && from[start - 1] != '/')
        --start;
    char* base = TalvoRawString::allocate(static_cast<int>(end - start + 1));
    if (!base)
        return nullptr;
    std::memcpy(base, from + start, end - start);
    char* result = TalvoRawString::concat(to, "/", base);
    TalvoRawString::free(base);
    return result;
}

}  // namespace

FILE* TalvoFile::open(const char* path, const char* mode) {
    return path && mode ? std::fopen(path, mode) : nullptr;
}

int TalvoFile::close(FILE* file) {
    return file ? std::fclose(file) : EOF;
}

int TalvoFile::remove(const char* path) {
    // As rm without options: files and links only, never a directory.
    return path && ::unlink(path) == 0 ? 0 : kCommandFailed;
}

int TalvoFile::rename(const char* from, const char* to) {
    if (!from || !to)
        return kCommandFailed;
    char* target = targetPath(from, to);
    if (!target)
        return kCommandFailed;
    int status = 0;
    if (::rename(from, target) != 0)
        status = errno == EXDEV ? moveAcrossFileSystems(from, target) : kCommandFailed;
    TalvoRawString::free(target);
    return status;
}

bool TalvoFile::exists(const char* path) {
    struct stat info;
    return statOf(path, &info);
}

bool TalvoFile::isEmpty(const char* path) {
    struct stat info;
    return !statOf(path, &info) || info.st_size == 0;
}

int TalvoFile::getSize(const char* path) {
    struct stat info;
    if (!statOf(path, &info))
        return -1;
    return static_cast<int>(static_cast<std::uint32_t>(info.st_size));
}

bool TalvoFile::isDirectory(const char* path) {
    struct stat info;
    return !statOf(path, &info) || (info.st_mode & kDirectoryBit) != 0;
}

bool TalvoFile::isFile(const char* path) {
    struct stat info;
    return !statOf(path, &info) || (info.st_mode & kRegularFileBit) != 0;
}

char* TalvoFile::getProgramPath(const char*) {
    char path[kProgramPathSize];
    ssize_t length = ::readlink("/proc/self/exe", path, sizeof path - 1);
    if (length < 0)
        length = 0;
    path[length] = '\0';
    if (length >= 2) {
        // Back from the last character, stopping at index 1 at the latest.
        ssize_t i = length - 1;
        while (i > 1 && !isSeparator(path[i]))
            --i;
        if (isSeparator(path[i]))
            path[i + 1] = '\0';
    }
    return TalvoRawString::copy(path);
}
