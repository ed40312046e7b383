// Regular expressions on arbitrary patterns and subjects.
//
// The input is a pattern, a replacement and a subject separated by NUL bytes
// (so the dictionary's tokens need no escaping). A manager compiles
// the pattern and runs every text operation on the subject; the raw-string
// pattern functions, which make a manager per call, run as well and must
// agree with it. Results are checked for consistency and released.
#include "FuzzSupport.h"

#include <talvo/containers/TalvoList.h>
#include <talvo/foundation/TalvoRawString.h>
#include <talvo/regex/TalvoRegexManager.h>

#include <cstring>

namespace {

const std::size_t kMaxPatternLength = 48;
const std::size_t kMaxReplacementLength = 24;
const std::size_t kMaxSubjectLength = 256;

void check(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "regex check failed: %s\n", what);
        std::abort();
    }
}

bool sameText(const char* a, const char* b) {
    return (!a && !b) || (a && b && std::strcmp(a, b) == 0);
}

void deleteStrings(TalvoList* list) {
    if (list)
        list->deleteWithItems(TalvoRawString::free);
}

// The bytes from *at up to the next NUL (or the end), at most `maxLength`
// of them; *at moves past the NUL.
std::string nextPart(const std::uint8_t* data, std::size_t size, std::size_t* at, std::size_t maxLength) {
    std::size_t begin = *at;
    std::size_t end = begin;
    while (end < size && data[end] != 0)
        ++end;
    *at = end < size ? end + 1 : end;
    std::size_t length = end - begin < maxLength ? end - begin : maxLength;
    return std::string(reinterpret_cast<const char*>(data) + begin, length);
}

// The manager's operations on one subject.
void runManager(const char* pattern, const char* subject, const char* replacement) {
    TalvoRegexManager* manager = new TalvoRegexManager(pattern);
    int position = manager->matchPattern(subject);
    check(position >= -1 && position < static_cast<int>(std::strlen(subject)) + 1, "match position");
    // Captures persist between calls of one manager, even those of failed
    // attempts, and back references read them: the same call on the same
    // manager may match elsewhere the second time. Extraction and splitting
    // are therefore compared on managers in the first call's state.
    TalvoRegexManager* twin = new TalvoRegexManager(pattern);
    char* extracted = twin->extractPattern(subject);
    delete twin;
    check((position < 0) == (extracted == nullptr), "extract agrees with match");
    if (extracted)
        check(std::strstr(subject + position, extracted) == subject + position, "extract is the match");
    twin = new TalvoRegexManager(pattern);
    TalvoList* pieces = twin->splitWithPattern(subject);
    delete twin;
    check(pieces != nullptr, "split gives a list");
    char* first = manager->substitutePattern(subject, replacement);
    char* every = manager->substitutePatterns(subject, replacement);
    if (position < 0) {
        check(pieces->getNumberOfItems() <= 1, "no match, one piece at most");
    }
    if (extracted)
        TalvoRawString::free(extracted);
    deleteStrings(pieces);
    if (first)
        TalvoRawString::free(first);
    if (every)
        TalvoRawString::free(every);
    delete manager;
}

// The one-shot raw-string functions, compared with a fresh manager each.
void runRawStringFunctions(const char* pattern, const char* subject, const char* replacement) {
    TalvoRegexManager* manager = new TalvoRegexManager(pattern);
    int position = TalvoRawString::matchPattern(subject, pattern);
    check(position == manager->matchPattern(subject), "matchPattern agrees with the manager");
    delete manager;

    char* extracted = TalvoRawString::extractPattern(subject, pattern);
    check((position < 0) == (extracted == nullptr), "extractPattern agrees with matchPattern");
    if (extracted)
        TalvoRawString::free(extracted);
    deleteStrings(TalvoRawString::splitWithPattern(subject, pattern));
    char* first = TalvoRawString::substitutePattern(subject, pattern, replacement);
    char* every = TalvoRawString::substitutePatterns(subject, pattern, replacement);
    if (position < 0)
        check(sameText(first, every), "without a match both substitutions agree");
    if (first)
        TalvoRawString::free(first);
    if (every)
        TalvoRawString::free(every);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    long start = TalvoMemoryManager::getAllocationBalance();
    std::size_t at = 0;
    std::string pattern = nextPart(data, size, &at, kMaxPatternLength);
    std::string replacement = nextPart(data, size, &at, kMaxReplacementLength);
    std::string subject = nextPart(data, size, &at, kMaxSubjectLength);

    runManager(pattern.c_str(), subject.c_str(), replacement.c_str());
    runRawStringFunctions(pattern.c_str(), subject.c_str(), replacement.c_str());
    talvo_fuzz::requireBalance(start, "regex operations");
    return 0;
}
