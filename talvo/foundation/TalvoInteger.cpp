#include <talvo/foundation/TalvoInteger.h>

#include <talvo/foundation/TalvoMemoryManager.h>

#include <cstdint>

namespace {

const char* const kIntegerLabel = "TalvoInteger";
const char* const kDoubleLabel = "TalvoDouble";

// a - b in two's complement, without signed overflow.
int wrappingDifference(int a, int b) {
    return static_cast<int>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}

template <class Number>
Number* allocateBox(Number value, const char* label) {
    Number* box = static_cast<Number*>(TalvoMemoryManager::newCell(sizeof(Number)));
    TalvoMemoryManager::traceNew(box, label);
    if (box)
        *box = value;
    return box;
}

void freeBox(void* box, const char* label) {
    TalvoMemoryManager::traceDelete(box, label);
    TalvoMemoryManager::deleteCell(box);
}

// A null box reads as 0, so a compare call-back never dereferences null.
int intOf(void* box) { return box ? *static_cast<int*>(box) : 0; }
double doubleOf(void* box) { return box ? *static_cast<double*>(box) : 0.0; }

}  // namespace

int* TalvoInteger::allocate(int value) {
    return allocateBox(value, kIntegerLabel);
}

void TalvoInteger::free(void* box) {
    freeBox(box, kIntegerLabel);
}

void* TalvoInteger::copy(void* box) {
    return box ? allocate(intOf(box)) : nullptr;
}

int TalvoInteger::geq(void* a, void* b) {
    return wrappingDifference(intOf(a), intOf(b));
}

int TalvoInteger::leq(void* a, void* b) {
    return wrappingDifference(intOf(b), intOf(a));
}

double* TalvoDouble::allocate(double value) {
    return allocateBox(value, kDoubleLabel);
}

void TalvoDouble::free(void* box) {
    freeBox(box, kDoubleLabel);
}

void* TalvoDouble::copy(void* box) {
    return box ? allocate(doubleOf(box)) : nullptr;
}

int TalvoDouble::geq(void* a, void* b) {
    double x = doubleOf(a), y = doubleOf(b);
    return x < y ? 1 : (x > y ? -1 : 0);
}

int TalvoDouble::leq(void* a, void* b) {
    double x = doubleOf(a), y = doubleOf(b);
    return x < y ? -1 : (x > y ? 1 : 0);
}
