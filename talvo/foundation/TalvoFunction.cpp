#include <talvo/foundation/TalvoFunction.h>

#include <cstdint>
#include <cstdio>

void* TalvoFunction::selfAccess(void* item, void*) {
    return item;
}

int TalvoFunction::compareAddress(void* a, void* b) {
    std::uintptr_t x = reinterpret_cast<std::uintptr_t>(a);
    std::uintptr_t y = reinterpret_cast<std::uintptr_t>(b);
    return x < y ? -1 : (x > y ? 1 : 0);
}

void TalvoFunction::doNothing(void*) {}

void TalvoFunction::traceMessage(const char* text) {
    std::FILE* file = std::fopen("trace.txt", "a");
    if (!file)
        return;
    if (text)
        std::fprintf(file, "%s", text);
    std::fclose(file);
}
