// Uses the installed library: builds a string, checks the allocation balance.
#include <talvo/talvo.h>

#include <cstdio>

int main() {
    TalvoMemoryManager::start();
    char* text = TalvoRawString::concat("installed ", "talvo");
    std::printf("%s\n", text);
    TalvoRawString::free(text);
    TalvoMemoryManager::stop();
    return TalvoMemoryManager::getAllocationBalance() == 0 ? 0 : 1;
}
