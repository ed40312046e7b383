// The pattern operations of TalvoRawString: each makes a one-shot
// TalvoRegexManager for the pattern, makes one call on it and deletes it.
#include <talvo/foundation/TalvoRawString.h>

#include <talvo/containers/TalvoList.h>
#include <talvo/regex/TalvoRegexManager.h>

int TalvoRawString::matchPattern(const char* string, const char* pattern) {
    TalvoRegexManager* manager = new TalvoRegexManager(pattern);
    if (manager == nullptr) return -1;
    int result = manager->matchPattern(string);
    delete manager;
    return result;
}

char* TalvoRawString::extractPattern(const char* string, const char* pattern) {
    TalvoRegexManager* manager = new TalvoRegexManager(pattern);
    if (manager == nullptr) return nullptr;
    char* result = manager->extractPattern(string);
    delete manager;
    return result;
}

TalvoList* TalvoRawString::splitWithPattern(const char* string, const char* pattern) {
    TalvoRegexManager* manager = new TalvoRegexManager(pattern);
    if (manager == nullptr) return new TalvoList();
    TalvoList* result = manager->splitWithPattern(string);
    delete manager;
    return result;
}

char* TalvoRawString::substitutePattern(const char* string, const char* pattern, const char* replacement) {
    TalvoRegexManager* manager = new TalvoRegexManager(pattern);
    if (manager == nullptr) return nullptr;
    char* result = manager->substitutePattern(string, replacement);
    delete manager;
    return result;
}

char* TalvoRawString::substitutePatterns(const char* string, const char* pattern, const char* replacement) {
    TalvoRegexManager* manager = new TalvoRegexManager(pattern);
    if (manager == nullptr) return nullptr;
    char* result = manager->substitutePatterns(string, replacement);
    delete manager;
    return result;
}
