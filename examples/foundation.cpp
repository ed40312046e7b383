// Raw strings, boxed numbers and the allocation balance.
#include <talvo/talvo.h>

#include <cstdio>

static void showRawStrings() {
    char* greeting = TalvoRawString::concat("hello", ", ", "world");
    char* number = TalvoRawString::toString(0.1 + 0.2);
    std::printf("concat:          %s\n", greeting);
    std::printf("toString(0.1+0.2): %s\n", number);
    std::printf("isInt(\"-5\"):     %s\n", TalvoRawString::isInt("-5") ? "true" : "false");
    std::printf("isInt(\"007\"):    %s\n", TalvoRawString::isInt("007") ? "true" : "false");
    std::printf("isDouble(\"5 apples\"): %s\n", TalvoRawString::isDouble("5 apples") ? "true" : "false");
    std::printf("compare(ab, abc): %d\n", TalvoRawString::compare((void*)"ab", (void*)"abc"));
    TalvoRawString::free(greeting);
    TalvoRawString::free(number);
}

static void showBoxedNumbers() {
    int* three = TalvoInteger::allocate(3);
    int* five = TalvoInteger::allocate(5);
    std::printf("TalvoInteger::geq(3, 5): %d\n", TalvoInteger::geq(three, five));
    TalvoInteger::free(three);
    TalvoInteger::free(five);
    std::printf("gammaln(1.0):    %.6f\n", TalvoMath::gammaln(1.0));
}

int main() {
    TalvoMemoryManager::start();
    showRawStrings();
    showBoxedNumbers();
    std::printf("allocation balance: %ld\n", TalvoMemoryManager::getAllocationBalance());
    TalvoMemoryManager::stop();
    return TalvoMemoryManager::getAllocationBalance() == 0 ? 0 : 1;
}
