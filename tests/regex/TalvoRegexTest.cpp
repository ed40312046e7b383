#include "support/TalvoTest.h"

#include "RegexTestHelpers.h"

#include <talvo/containers/TalvoList.h>
#include <talvo/text/TalvoFileStream.h>

#include <string>
#include <thread>

namespace {

struct Membership { const char* cls; const char* members; const char* others; };

}  // namespace

TEST(TalvoRegex, IsCharacterInClass_WalksBracketExpressions) {
    const Membership table[] = {
        {"[abc]", "abc", "d]["},
        {"[^abc]", "d]^", "abc"},
        {"[]a]", "]a", "b["},
        {"[^]a]", "b[^", "]a"},
        {"[a-]", "a-", "b"},
        {"[-a]", "-a", "b"},
        {"[z-a]", "z-a", "m"},
        {"[a-a]", "a-", "b"},
        {"[a-Z]", "a-Z", "bM"},
        {"[0-z]", "0-z", "5a"},
        {"[a-cx-z0-2]", "abcxyz012", "dw3-"},
        {"[\\n\\t\\r]", "\n\t\r", "ntr\\"},
        {"[\\-]", "-", "\\"},
        {"[\\.]", ".", "\\a"},
        {"[\\\\]", "", "\\]"},  // a backslash never is a member
        {"[\\]", "", "\\]"},
        {"[^\\n]", "an\\", "\n"},
        {"[a-c-e]", "abc-e", "d"},
        {"[^^]", "a", "^"},
    };
    TalvoRegex node(nullptr, TalvoRegex::TYPE_CHARCLASS);
    for (const Membership& m : table) {
        node.setCharacterClass(m.cls);
        for (const char* c = m.members; *c; c++) EXPECT_EQ(node.isCharacterInClass(*c), 1) << m.cls << " " << *c;
        for (const char* c = m.others; *c; c++) EXPECT_EQ(node.isCharacterInClass(*c), 0) << m.cls << " " << *c;
    }
    node.setCharacterClass("[a-z]");
    EXPECT_EQ(node.isCharacterInClass(static_cast<char>(200)), 0);  // ranges compare signed bytes
    node.setCharacterClass("[^a]");
    EXPECT_EQ(node.isCharacterInClass(static_cast<char>(200)), 1);
}

TEST(TalvoRegex, IsCharacterInClass_CharacterNodeComparesItsByte) {
    TalvoRegex bracket(nullptr, TalvoRegex::TYPE_ESCAPEDCHAR);
    bracket.setCharacterClass("[");
    EXPECT_EQ(bracket.isCharacterInClass('['), 1);
    EXPECT_EQ(bracket.isCharacterInClass('a'), 0);
    TalvoRegex plain(nullptr, TalvoRegex::TYPE_CHAR);
    EXPECT_EQ(plain.isCharacterInClass('a'), 0);  // no class text
    TalvoRegex unterminated(nullptr, TalvoRegex::TYPE_CHARCLASS);
    unterminated.setCharacterClass("[ab");  // only by hand: the walk stops at the end
    EXPECT_EQ(unterminated.isCharacterInClass('b'), 1);
    EXPECT_EQ(unterminated.isCharacterInClass('c'), 0);
    unterminated.setCharacterClass("[a\\");
    EXPECT_EQ(unterminated.isCharacterInClass('c'), 0);
}

TEST(TalvoRegex, Constructor_AndSetCharacterClassKeepsACopy) {
    TalvoRegex node(nullptr, TalvoRegex::TYPE_GROUP);
    EXPECT_EQ(node.getBackReferenceNumber(), -1);
    EXPECT_TRUE(!node.getLeftArgument() && !node.getRightArgument() && !node.getCharacterClass());
    EXPECT_EQ(node.getGroupState() + node.getGroupIndex(), 0);
    char text[] = "a";
    node.setCharacterClass(text);
    text[0] = 'b';
    EXPECT_STREQ(node.getCharacterClass(), "a");
    node.setCharacterClass(nullptr);
    EXPECT_EQ(node.getCharacterClass(), nullptr);
}

TEST(TalvoRegex, OperatorAssign_SharesTheClassText) {
    TalvoRegex* a = new TalvoRegex(nullptr, TalvoRegex::TYPE_CHAR);
    a->setCharacterClass("q");
    TalvoRegex* b = new TalvoRegex(nullptr, TalvoRegex::TYPE_DOT);
    *b = *a;
    EXPECT_EQ(b->getType(), TalvoRegex::TYPE_CHAR);
    EXPECT_EQ(b->getCharacterClass(), a->getCharacterClass());
    a->setCharacterClass(nullptr);  // b's pointer now dangles: drop it unread
    TalvoRegex empty(nullptr, TalvoRegex::TYPE_DOT);
    *b = empty;
    TalvoRegex::free(a);
    TalvoRegex::free(b);
    TalvoRegex::free(nullptr);
}

TEST(TalvoRegex, DefineBackReferenceNumbers_ByOpeningParenthesis) {
    TalvoRegexManager manager("((a)|(b))*(c(d))");
    manager.compilePattern();
    EXPECT_EQ(regex_test::dump(manager.getTopRegex()),
              "cat(star(group1(alt(group2(a),group3(b)))),group4(cat(c,group5(d))))");
    int next = 10;
    manager.getTopRegex()->defineBackReferenceNumbers(&next);
    EXPECT_EQ(next, 15);
    manager.getTopRegex()->defineBackReferenceNumbers(nullptr);
}

TEST(TalvoRegex, Print_AddsNoParentheses) {
    TalvoRegexManager manager("x");
    TalvoRegex* a = manager.newRegex(TalvoRegex::TYPE_CHAR);
    a->setCharacterClass("a");
    TalvoRegex* b = manager.newRegex(TalvoRegex::TYPE_CHAR);
    b->setCharacterClass("b");
    TalvoRegex* cat = manager.newRegex(TalvoRegex::TYPE_CONCATENATION);
    cat->setLeftArgument(a);
    cat->setRightArgument(b);
    TalvoRegex* star = manager.newRegex(TalvoRegex::TYPE_STAR);
    star->setLeftArgument(cat);
    EXPECT_EQ(regex_test::printed(star), "ab*");
    TalvoRegex* ref = manager.newRegex(TalvoRegex::TYPE_BACKREFERENCE);
    ref->setBackReferenceNumber(12);
    EXPECT_EQ(regex_test::printed(ref), "\\12");
    star->print(static_cast<FILE*>(nullptr));
}

TEST(TalvoRegex, Match_ContinuesWithTheStackAndLeavesItAsFound) {
    TalvoRegexManager manager("x");
    TalvoRegex* a = manager.newRegex(TalvoRegex::TYPE_CHAR);
    a->setCharacterClass("a");
    TalvoRegex* plus = manager.newRegex(TalvoRegex::TYPE_PLUS);
    plus->setLeftArgument(a);
    TalvoRegex* b = manager.newRegex(TalvoRegex::TYPE_CHAR);
    b->setCharacterClass("b");
    TalvoRegex* dollar = manager.newRegex(TalvoRegex::TYPE_DOLLAR);
    TalvoList stack;
    EXPECT_EQ(plus->match("aab", 0, &stack), 2);
    stack.insertItemLast(b);
    EXPECT_EQ(plus->match("aab", 0, &stack), 3);
    EXPECT_EQ(plus->match("aac", 0, &stack), -1);
    stack.insertItemLast(dollar);
    EXPECT_EQ(plus->match("aab", 0, &stack), 3);
    EXPECT_EQ(plus->match("aabb", 0, &stack), -1);
    EXPECT_EQ(stack.getTop(), b);
    EXPECT_EQ(stack.getLastItem(), dollar);
    EXPECT_EQ(dollar->match("ab", 2, nullptr), 2);
    EXPECT_EQ(plus->match(nullptr, 0, nullptr), -1);
    EXPECT_EQ(plus->match("a", -1, nullptr), -1);
    EXPECT_EQ(plus->match("a", 2, nullptr), -1);
}

TEST(TalvoRegex, Match_GroupsRecordIntoTheManager) {
    TalvoRegexManager manager("(b+)");
    manager.compilePattern();
    TalvoRegex* group = manager.getTopRegex();
    EXPECT_EQ(group->match("abbc", 1, nullptr), 3);
    EXPECT_EQ(regex_test::slot(&manager, 1), "bb");
    EXPECT_EQ(group->getGroupState(), 0);
    EXPECT_EQ(group->getGroupIndex(), 0);
}

// No state is shared between managers.
TEST(TalvoRegexManager, TwoManagersMatchInTwoThreadsAtOnce) {
    auto work = [](const char* pattern, std::string subject, int expected) {
        for (int i = 0; i < 300; i++) EXPECT_EQ(TalvoRegexManager(pattern).matchPattern(subject.c_str()), expected);
    };
    std::thread one(work, "ne+dle", std::string(5000, 'x') + "needle", 5000);
    std::thread two(work, "(ab)*c", std::string(3000, 'y') + "ababc", 3000);
    one.join();
    two.join();
}

TEST(TalvoRegex, Print_ThroughAStreamWritesTheSameBytes) {
    TalvoRegexManager manager("(a|\\.)*[^x]\\2\\t$");
    manager.compilePattern();
    FILE* file = std::tmpfile();
    TalvoFileStream* stream = new TalvoFileStream(false, file);
    manager.printTopRegex(stream);
    delete stream;
    EXPECT_EQ(regex_test::readAndClose(file), "(a|\\.)*[^x]\\2\\\t$");
    manager.printTopRegex(static_cast<TalvoStream*>(nullptr));
}
