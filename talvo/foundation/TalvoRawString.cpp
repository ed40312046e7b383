#include <talvo/foundation/TalvoRawString.h>

#include <talvo/foundation/TalvoMemoryManager.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

const char* const kLabel = "TalvoRawString";

const char* orEmpty(const char* s) { return s ? s : ""; }

// -1, 0 or 1 by unsigned bytes; null sorts first.
int compareStrings(const char* a, const char* b) {
    if (!a || !b)
        return (a ? 1 : 0) - (b ? 1 : 0);
    int order = std::strcmp(a, b);  // strcmp compares as unsigned char
    return order < 0 ? -1 : (order > 0 ? 1 : 0);
}

char* newStringOfLength(std::size_t length) {
    return TalvoRawString::allocate(static_cast<int>(length + 1));
}

}  // namespace

char* TalvoRawString::allocate(int size) {
    char* block = static_cast<char*>(TalvoMemoryManager::newCell(size < 1 ? 1 : size));
    TalvoMemoryManager::traceNew(block, kLabel);
    return block;
}

void TalvoRawString::free(void* string) {
    TalvoMemoryManager::traceDelete(string, kLabel);
    TalvoMemoryManager::deleteCell(string);
}

char* TalvoRawString::copy(const char* string) {
    if (!string)
        return nullptr;
    std::size_t length = std::strlen(string);
    char* result = newStringOfLength(length);
    if (result)
        std::memcpy(result, string, length);
    return result;
}

char* TalvoRawString::concat(const char* a, const char* b) {
    return concat(a, b, "");
}

char* TalvoRawString::concat(const char* a, const char* b, const char* c) {
    const char* parts[] = {orEmpty(a), orEmpty(b), orEmpty(c)};
    std::size_t lengths[3];
    std::size_t total = 0;
    for (int i = 0; i < 3; ++i)
        total += lengths[i] = std::strlen(parts[i]);
    char* result = newStringOfLength(total);
    if (!result)
        return nullptr;
    char* end = result;
    for (int i = 0; i < 3; ++i) {
        std::memcpy(end, parts[i], lengths[i]);
        end += lengths[i];
    }
    return result;
}

int TalvoRawString::getLength(const char* string) {
    return string ? static_cast<int>(std::strlen(string)) : 0;
}

void TalvoRawString::overwrite(char* destination, const char* source) {
    if (destination && source)
        std::memmove(destination, source, std::strlen(source) + 1);
}

char* TalvoRawString::toString(int value) {
    char text[16];
    std::snprintf(text, sizeof text, "%d", value);
    return copy(text);
}

char* TalvoRawString::toString(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%g", value);
    return copy(text);
}

int TalvoRawString::toInt(const char* string) {
    if (!string)
        return 0;
    long value = std::strtol(string, nullptr, 10);
    if (value > INT_MAX)
        return INT_MAX;
    if (value < INT_MIN)
        return INT_MIN;
    return static_cast<int>(value);
}

bool TalvoRawString::isInt(const char* string) {
    if (!string)
        return false;
    char text[16];
    std::snprintf(text, sizeof text, "%d", toInt(string));
    return std::strcmp(text, string) == 0;
}

double TalvoRawString::toDouble(const char* string) {
    return string ? std::atof(string) : 0.0;
}

bool TalvoRawString::isDouble(const char* string) {
    if (!string)
        return false;
    if (toDouble(string) != 0.0)  // also true for not-a-number
        return true;
    return std::strcmp(string, "0") == 0 || std::strcmp(string, "0.0") == 0 ||
           std::strcmp(string, "0.00") == 0;
}

int TalvoRawString::compare(void* a, void* b) {
    return compareStrings(static_cast<const char*>(a), static_cast<const char*>(b));
}

int TalvoRawString::reverseCompare(void* a, void* b) {
    return compare(b, a);
}

int TalvoRawString::compareNumerically(void* a, void* b) {
    double x = toDouble(static_cast<const char*>(a));
    double y = toDouble(static_cast<const char*>(b));
    if (x > y)
        return 1;
    return x == y ? 0 : -1;
}

int TalvoRawString::reverseCompareNumerically(void* a, void* b) {
    return compareNumerically(b, a);
}

bool TalvoRawString::isEqual(const char* a, const char* b) {
    return compareStrings(a, b) == 0;
}

bool TalvoRawString::isDifferent(const char* a, const char* b) {
    return compareStrings(a, b) != 0;
}

bool TalvoRawString::isLessThan(const char* a, const char* b) {
    return compareStrings(a, b) < 0;
}

bool TalvoRawString::isLessOrEqual(const char* a, const char* b) {
    return compareStrings(a, b) <= 0;
}

bool TalvoRawString::isGreaterThan(const char* a, const char* b) {
    return compareStrings(a, b) > 0;
}

bool TalvoRawString::isGreaterOrEqual(const char* a, const char* b) {
    return compareStrings(a, b) >= 0;
}

bool TalvoRawString::isPrefix(const char* prefix, const char* string) {
    if (!prefix || !string)
        return false;
    return std::strncmp(prefix, string, std::strlen(prefix)) == 0;
}

bool TalvoRawString::isSuffix(const char* suffix, const char* string) {
    if (!suffix || !string)
        return false;
    std::size_t suffixLength = std::strlen(suffix);
    std::size_t length = std::strlen(string);
    if (suffixLength > length)
        return false;
    return std::memcmp(string + length - suffixLength, suffix, suffixLength) == 0;
}
