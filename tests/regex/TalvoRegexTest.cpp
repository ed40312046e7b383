#include "support/TalvoTest.h"

#include "RegexTestHelpers.h"

#include <talvo/containers/TalvoList.h>

#include <string>

struct Membership { const char* cls; const char* members; const char* others; };

TEST(TalvoRegex, IsCharacterInClass_WalksBracketExpressions) {
    const Membership table[] = {
        {"[^abc]", "d]^", "abc"},
        {"[]a]", "]a", "b["},
        {"[z-a]", "z-a", "m"},
        {"[a-cx-z0-2]", "abcxyz012", "dw3-"},
        {"[\\n\\t\\r]", "\n\t\r", "ntr\\"},
        {"[\\\\]", "", "\\]"},  // a backslash never is a member
    };
    TalvoRegex node(nullptr, TalvoRegex::TYPE_CHARCLASS);
    for (const Membership& m : table) {
        node.setCharacterClass(m.cls);
        for (const char* c = m.members; *c; c++) EXPECT_EQ(node.isCharacterInClass(*c), 1) << m.cls << " " << *c;
        for (const char* c = m.others; *c; c++) EXPECT_EQ(node.isCharacterInClass(*c), 0) << m.cls << " " << *c;
    }
    node.setCharacterClass("[a-z]");
    EXPECT_EQ(node.isCharacterInClass(static_cast<char>(200)), 0);  // ranges compare signed bytes
    node.setCharacterClass("[ab");  // only by hand: the walk stops at the end
    EXPECT_EQ(node.isCharacterInClass('c'), 0);
    TalvoRegex plain(nullptr, TalvoRegex::TYPE_CHAR);
    EXPECT_EQ(plain.isCharacterInClass('a'), 0);  // no class text
}

TEST(TalvoRegex, OperatorAssign_SharesTheClassText) {
    TalvoRegex* a = new TalvoRegex(nullptr, TalvoRegex::TYPE_CHAR);
    a->setCharacterClass("q");
    TalvoRegex* b = new TalvoRegex(nullptr, TalvoRegex::TYPE_DOT);
    *b = *a;
    EXPECT_EQ(b->getCharacterClass(), a->getCharacterClass());
    a->setCharacterClass(nullptr);  // b's pointer now dangles: drop it unread
    TalvoRegex empty(nullptr, TalvoRegex::TYPE_DOT);
    *b = empty;
    TalvoRegex::free(a);
    TalvoRegex::free(b);
}

TEST(TalvoRegex, HandBuiltTree_PrintsWithoutParenthesesAndMatchesWithTheStack) {
    TalvoRegexManager manager("x");
    TalvoRegex *a = manager.newRegex(TalvoRegex::TYPE_CHAR), *b = manager.newRegex(TalvoRegex::TYPE_CHAR);
    a->setCharacterClass("a");
    b->setCharacterClass("b");
    TalvoRegex* cat = manager.newRegex(TalvoRegex::TYPE_CONCATENATION);
    cat->setLeftArgument(a);
    cat->setRightArgument(b);
    TalvoRegex* star = manager.newRegex(TalvoRegex::TYPE_STAR);
    star->setLeftArgument(cat);
    EXPECT_EQ(regex_test::printed(star), "ab*");
    TalvoList stack;
    stack.insertItemLast(b);
    EXPECT_EQ(star->match("abb", 0, &stack), 3);
    EXPECT_EQ(stack.getTop(), b);  // left as found
    EXPECT_EQ(star->match(nullptr, 0, nullptr), -1);
    EXPECT_EQ(star->match("a", -1, nullptr), -1);
}
