// Raw strings on arbitrary bytes: building, conversions, predicates and
// compares, each checked against a direct reading of the bytes.
#include "FuzzSupport.h"

#include <talvo/foundation/TalvoRawString.h>

#include <cstring>

namespace {

const std::size_t kMaxPartLength = 256;

// The sign of an unsigned byte-wise comparison, null first.
int modelCompare(const char* a, const char* b) {
    if (!a || !b)
        return (a ? 1 : 0) - (b ? 1 : 0);
    int order = std::strcmp(a, b);
    return order < 0 ? -1 : (order > 0 ? 1 : 0);
}

void check(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "raw string check failed: %s\n", what);
        std::abort();
    }
}

// Every predicate and compare call-back on one pair, either side maybe null.
void checkPair(const char* a, const char* b) {
    int order = modelCompare(a, b);
    void* x = const_cast<char*>(a);
    void* y = const_cast<char*>(b);
    check(TalvoRawString::compare(x, y) == order, "compare");
    check(TalvoRawString::reverseCompare(x, y) == -order, "reverseCompare");
    check(TalvoRawString::isEqual(a, b) == (order == 0), "isEqual");
    check(TalvoRawString::isDifferent(a, b) == (order != 0), "isDifferent");
    check(TalvoRawString::isLessThan(a, b) == (order < 0), "isLessThan");
    check(TalvoRawString::isLessOrEqual(a, b) == (order <= 0), "isLessOrEqual");
    check(TalvoRawString::isGreaterThan(a, b) == (order > 0), "isGreaterThan");
    check(TalvoRawString::isGreaterOrEqual(a, b) == (order >= 0), "isGreaterOrEqual");
    if (!a || !b)
        return;
    int numeric = TalvoRawString::compareNumerically(x, y);
    check(numeric >= -1 && numeric <= 1, "compareNumerically range");
    check(TalvoRawString::reverseCompareNumerically(y, x) == numeric, "reverseCompareNumerically");
    std::size_t la = std::strlen(a), lb = std::strlen(b);
    check(TalvoRawString::isPrefix(a, b) == (la <= lb && std::memcmp(a, b, la) == 0), "isPrefix");
    check(TalvoRawString::isSuffix(a, b) == (la <= lb && std::memcmp(b + lb - la, a, la) == 0),
          "isSuffix");
}

// Conversions of one string, and the strings they build.
void checkConversions(const char* s) {
    int value = TalvoRawString::toInt(s);
    char* text = TalvoRawString::toString(value);
    check(TalvoRawString::isInt(s) == (std::strcmp(text, s) == 0), "isInt");
    check(TalvoRawString::toInt(text) == value, "toInt of toString");
    TalvoRawString::free(text);

    double number = TalvoRawString::toDouble(s);
    TalvoRawString::isDouble(s);
    char* printed = TalvoRawString::toString(number);
    check(TalvoRawString::getLength(printed) > 0, "toString(double)");
    TalvoRawString::free(printed);
}

// Building: copy, concatenations, overwrite, allocate.
void checkBuilding(const char* a, const char* b, const char* c) {
    std::size_t la = std::strlen(a), lb = std::strlen(b), lc = std::strlen(c);
    char* copied = TalvoRawString::copy(a);
    check(std::strcmp(copied, a) == 0, "copy");
    char* two = TalvoRawString::concat(a, b);
    check(TalvoRawString::getLength(two) == static_cast<int>(la + lb), "concat length");
    check(TalvoRawString::isPrefix(a, two) && TalvoRawString::isSuffix(b, two), "concat parts");
    char* three = TalvoRawString::concat(a, nullptr, c);
    check(TalvoRawString::getLength(three) == static_cast<int>(la + lc), "concat with null");
    char* room = TalvoRawString::allocate(static_cast<int>(lb + 1));
    TalvoRawString::overwrite(room, b);
    check(std::strcmp(room, b) == 0, "overwrite");
    TalvoRawString::overwrite(room, nullptr);
    TalvoRawString::overwrite(nullptr, b);
    checkPair(copied, two);
    TalvoRawString::free(copied);
    TalvoRawString::free(two);
    TalvoRawString::free(three);
    TalvoRawString::free(room);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    long start = TalvoMemoryManager::getAllocationBalance();
    FuzzedDataProvider input(data, size);
    std::string a = talvo_fuzz::takeText(input, kMaxPartLength);
    std::string b = talvo_fuzz::takeText(input, kMaxPartLength);
    std::string c = talvo_fuzz::takeRestAsText(input);

    checkPair(a.c_str(), b.c_str());
    checkPair(b.c_str(), a.c_str());
    checkPair(a.c_str(), a.c_str());
    checkPair(nullptr, a.c_str());
    checkPair(a.c_str(), nullptr);
    checkPair(nullptr, nullptr);
    checkConversions(a.c_str());
    checkConversions(b.c_str());
    checkConversions(c.c_str());
    checkBuilding(a.c_str(), b.c_str(), c.c_str());
    check(TalvoRawString::getLength(nullptr) == 0 && TalvoRawString::copy(nullptr) == nullptr, "null");

    talvo_fuzz::requireBalance(start, "raw string operations");
    return 0;
}
