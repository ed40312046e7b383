// Regular expressions: matching, captures, substitution and splitting.
#include <talvo/talvo.h>

#include <cstdio>

int main() {
    TalvoMemoryManager::start();

    TalvoRegexManager* address = new TalvoRegexManager("([a-z]+)@([a-z.]+)");
    int at = address->matchPattern("mail bob@example.org now");
    std::printf("match at %d, host %s\n", at, address->getBackReference(2));
    char* spelled = address->substitutePatterns("bob@x.org, ann@y.net", "\\1 at \\2");
    std::printf("%s\n", spelled);
    TalvoRawString::free(spelled);
    delete address;

    TalvoList* parts = TalvoRawString::splitWithPattern("a, b,c", ", *");
    TalvoListCursor* c = parts->newCursor();
    for (c->resetOnFirstItem(); !c->isAfterLastItem(); c->increment()) {
        const char* piece = static_cast<const char*>(c->getItem());
        std::printf("[%s]", piece ? piece : "");
    }
    std::printf("\n");
    delete c;
    parts->deleteWithItems(TalvoRawString::free);

    TalvoMemoryManager::stop();
    return TalvoMemoryManager::getAllocationBalance() == 0 ? 0 : 1;
}
