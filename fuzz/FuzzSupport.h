// Helpers shared by the fuzz targets.
//
// Each target checks that one input leaves the allocation balance where it
// found it: a missed release is reported as a crash with the input that
// caused it, even when the block itself was freed outside the library.
#pragma once

#include <talvo/foundation/TalvoMemoryManager.h>

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace talvo_fuzz {

// Aborts, naming `what`, unless the balance is back at `start`.
inline void requireBalance(long start, const char* what) {
    long now = TalvoMemoryManager::getAllocationBalance();
    if (now != start) {
        std::fprintf(stderr, "allocation balance %ld after %s, expected %ld\n", now, what, start);
        std::abort();
    }
}

// Up to `maxLength` bytes of the input with NUL bytes kept out, so the
// library sees the whole string; the result is owned by the std::string.
inline std::string takeText(FuzzedDataProvider& input, std::size_t maxLength) {
    std::string text = input.ConsumeRandomLengthString(maxLength);
    for (char& c : text)
        if (c == '\0')
            c = ' ';
    return text;
}

// The rest of the input as text, NUL bytes replaced as above.
inline std::string takeRestAsText(FuzzedDataProvider& input) {
    std::string text = input.ConsumeRemainingBytesAsString();
    for (char& c : text)
        if (c == '\0')
            c = ' ';
    return text;
}

}  // namespace talvo_fuzz
