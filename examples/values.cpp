// Dynamic values, attribute lists and dictionaries.
#include <talvo/talvo.h>

#include <cstdio>

int main() {
    TalvoMemoryManager::start();
    {
        TalvoConstant a(7), b(0.5), sum;
        sum.add(&a, &b);  // a double: int + double gives double
        TalvoFileStream out(false, stdout);
        out.put("7 + 0.5 = ");
        sum.dump(&out);
        out.putln("");

        TalvoAttributeList attributes;
        attributes.incrementValueOfAttribute("hits", 1);  // created with the amount itself
        attributes.incrementValueOfAttribute("hits", 1);
        std::printf("hits = %d\n", attributes.getValueOfAttributeAsInt("hits", 0));

        TalvoDictionary words;
        words.setEntry("talvo", "library");
        words.setEntry("cursor", "a position in a container");
        TalvoDictionaryCursor* c = words.newCursor();
        for (c->resetOnFirstItem(); !c->isAfterLastItem(); c->increment())
            std::printf("%s = %s\n", c->getKey(), c->getDefinition());
        delete c;
    }
    TalvoMemoryManager::stop();
    return TalvoMemoryManager::getAllocationBalance() == 0 ? 0 : 1;
}
