/// @file
/// TalvoFile: static file-system helpers (no instances).
///
/// Files are opened and closed with the C runtime; `remove` and `rename` call
/// the C library directly and never a shell, so any path (blanks, quotes,
/// semicolons) names just that path. The predicates read one `stat` of the
/// path; isEmpty, isDirectory and isFile answer true for a path that cannot
/// be read (test `exists` first).
#pragma once

#include <talvo/foundation/TalvoExport.h>

#include <cstdio>

/// Static file-system helpers.
class TALVO_API TalvoFile {
public:
    /// Assigns nothing: the class has no state.
    TalvoFile& operator=(const TalvoFile&) { return *this; }

    /// fopen of `path` with `mode`; null when it fails or either is null.
    static FILE* open(const char* path, const char* mode);
    /// fclose of `file`: 0 on success, EOF on failure or for null.
    static int close(FILE* file);
    /// Removes the file (not a directory) at `path`: 0 on success, 1 otherwise.
    static int remove(const char* path);
    /// Moves `from` to `to` as mv does: into `to` when that is an existing
    /// directory, replacing a file there, and across file systems by copying a
    /// regular file and then removing the original. 0 on success, 1 otherwise
    /// (a failed copy leaves the original and no partial target). O(size)
    /// across file systems.
    static int rename(const char* from, const char* to);
    /// True when `path` can be read by stat.
    static bool exists(const char* path);
    /// True when the size is 0, or when stat fails.
    static bool isEmpty(const char* path);
    /// Size in bytes, wrapped to int; -1 when stat fails.
    static int getSize(const char* path);
    /// The directory bit (0x4000) of the mode; true when stat fails.
    static bool isDirectory(const char* path);
    /// The regular-file bit (0x8000) of the mode; true when stat fails.
    static bool isFile(const char* path);
    /// The directory of the running executable with its final separator, as a
    /// new raw string owned by the caller (release with TalvoRawString::free);
    /// the whole path when it holds no separator after its first character,
    /// "" when the platform cannot tell. The argument is ignored.
    static char* getProgramPath(const char* ignored);
};
