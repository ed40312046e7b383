#include <talvo/foundation/TalvoComparator.h>

#include <cstdint>

TalvoComparator::~TalvoComparator() = default;

int TalvoComparator::compareItems(void* a, void* b) {
    std::uint32_t x = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(a));
    std::uint32_t y = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(b));
    return static_cast<int>(x - y);
}
