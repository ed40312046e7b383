// Helpers shared by the regex tests: tree dumps, printing, owned results.
#pragma once

#include "support/TalvoTest.h"

#include <talvo/containers/TalvoList.h>
#include <talvo/foundation/TalvoRawString.h>
#include <talvo/regex/TalvoRegex.h>
#include <talvo/regex/TalvoRegexManager.h>

#include <cstdio>
#include <string>
#include <vector>

namespace regex_test {

// A structural dump of a tree: cat(l,r) alt(l,r) star(x) plus(x) opt(x)
// groupN(x) refN any ^ $ class([..]) esc(c) and plain bytes.
inline std::string dump(const TalvoRegex* node) {
    if (node == nullptr) return "null";
    const char* s = node->getCharacterClass();
    switch (node->getType()) {
    case TalvoRegex::TYPE_DOT: return "any";
    case TalvoRegex::TYPE_CHAR: return std::string(1, s[0]);
    case TalvoRegex::TYPE_ESCAPEDCHAR: return "esc(" + std::string(1, s[0]) + ")";
    case TalvoRegex::TYPE_CHARCLASS: return std::string("class(") + s + ")";
    case TalvoRegex::TYPE_ALTERNATION: return "alt(" + dump(node->getLeftArgument()) + "," + dump(node->getRightArgument()) + ")";
    case TalvoRegex::TYPE_CONCATENATION: return "cat(" + dump(node->getLeftArgument()) + "," + dump(node->getRightArgument()) + ")";
    case TalvoRegex::TYPE_STAR: return "star(" + dump(node->getLeftArgument()) + ")";
    case TalvoRegex::TYPE_PLUS: return "plus(" + dump(node->getLeftArgument()) + ")";
    case TalvoRegex::TYPE_QMARK: return "opt(" + dump(node->getLeftArgument()) + ")";
    case TalvoRegex::TYPE_DOLLAR: return "$";
    case TalvoRegex::TYPE_CARET: return "^";
    case TalvoRegex::TYPE_GROUP: return "group" + std::to_string(node->getBackReferenceNumber()) + "(" + dump(node->getLeftArgument()) + ")";
    case TalvoRegex::TYPE_BACKREFERENCE: return "ref" + std::to_string(node->getBackReferenceNumber());
    }
    return "?";
}

// What print writes for a tree.
inline std::string printed(const TalvoRegex* node) {
    FILE* file = std::fopen("printed.txt", "wb");
    node->print(file);
    std::fclose(file);
    return talvo_test::readFile("printed.txt");
}

// A returned raw string as std::string ("<null>" for null), freed.
inline std::string take(char* s) {
    if (s == nullptr) return "<null>";
    std::string text(s);
    TalvoRawString::free(s);
    return text;
}

// A returned list of raw strings as a vector, list and strings freed.
inline std::vector<std::string> takeList(TalvoList* list) {
    std::vector<std::string> pieces;
    if (list == nullptr) return {"<null list>"};
    TalvoListCursor* cursor = list->newCursor();
    for (cursor->resetOnFirstItem(); !cursor->isAfterLastItem(); cursor->increment())
        pieces.push_back(static_cast<char*>(cursor->getItem()));
    delete cursor;
    list->deleteWithItems(TalvoRawString::free);
    return pieces;
}

// Stored capture n as text ("<null>" when empty).
inline std::string slot(TalvoRegexManager* manager, int n) {
    const char* s = manager->getBackReference(n);
    return s == nullptr ? "<null>" : s;
}

}  // namespace regex_test
