#include "support/TalvoTest.h"

#include "RegexTestHelpers.h"

#include <string>
#include <utility>
#include <vector>

using regex_test::dump;
using regex_test::slot;
using regex_test::take;
using regex_test::takeList;

namespace {

std::string compileDump(const std::string& pattern, std::string* out = nullptr, std::string* err = nullptr) {
    TalvoRegexManager manager(pattern.c_str());
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    EXPECT_EQ(manager.compilePattern(), 0) << pattern;
    std::string o = testing::internal::GetCapturedStdout(), e = testing::internal::GetCapturedStderr();
    if (out != nullptr) *out = o;
    if (err != nullptr) *err = e;
    return manager.getTopRegex() == nullptr ? "no tree" : dump(manager.getTopRegex());
}

struct Parse { const char* pattern; const char* tree; };
struct Search { const char* pattern; const char* subject; int start; const char* whole; };

void expectSearches(const std::vector<Search>& table) {
    for (const Search& s : table) {
        TalvoRegexManager manager(s.pattern);
        EXPECT_EQ(manager.matchPattern(s.subject), s.start) << s.pattern << " on " << s.subject;
        EXPECT_EQ(slot(&manager, 0), s.whole) << s.pattern << " on " << s.subject;
    }
}

}  // namespace

TEST(TalvoRegexManager, CompilePattern_BuildsTreeOfEveryRule) {
    const Parse table[] = {
        {"abc", "cat(cat(a,b),c)"},
        {"ab|cd", "alt(cat(a,b),cat(c,d))"},
        {"(a(b|c))(d)", "cat(group1(cat(a,group2(alt(b,c)))),group3(d))"},
        {"[a\\]", "class([a\\])"},
        {"a\\007", "cat(a,ref7)"},
        {"\\1", "ref0"},  // the root's number is set to 0
        {"\\?", "opt(\\)"}, {"\\a", "cat(\\,a)"}, {"a*?", "opt(star(a))"},
        {"\\t", "esc(\t)"},
    };
    for (const Parse& p : table) EXPECT_EQ(compileDump(p.pattern), p.tree) << p.pattern;
    std::string out;  // a newline is echoed and ignored
    EXPECT_EQ(compileDump("a\nb", &out), "cat(a,b)");
    EXPECT_EQ(out, "\n");
    EXPECT_EQ(compileDump("[a\nb]", &out), "no tree");  // a newline ends no class
    EXPECT_EQ(out, "\n");  // newlines after the error are still read and echoed
}

TEST(TalvoRegexManager, CompilePattern_MalformedPatternsReportSyntaxErrorOnce) {
    const char* table[] = {
        "", "a|", "|a", "()", "*a", "a)", "(a", "[a", "[]", "[^]]", "a]", "[a\\]b]", "\n",
    };
    for (const char* pattern : table) {
        std::string err;
        EXPECT_EQ(compileDump(pattern, nullptr, &err), "no tree") << pattern;
        EXPECT_EQ(err, "syntax error") << pattern;
    }
}

TEST(TalvoRegexManager, TextOperations_FailAfterSyntaxErrorAndRememberIt) {
    TalvoRegexManager manager("a(");
    testing::internal::CaptureStderr();
    EXPECT_EQ(manager.matchPattern("a("), -1);
    EXPECT_TRUE(takeList(manager.splitWithPattern("a(b")).empty());
    EXPECT_EQ(take(manager.substitutePatterns("a(", "x")), "<null>");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "syntax error");
    TalvoRegexManager twice("ab");  // a second compile finds nothing left to scan
    EXPECT_EQ(twice.compilePattern(), 0);
    testing::internal::CaptureStderr();
    EXPECT_EQ(twice.compilePattern(), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "syntax error");
    EXPECT_EQ(twice.matchPattern("xab"), 1);
}

TEST(TalvoRegexManager, PrintTopRegex_WritesPatternSyntax) {
    const Parse table[] = {{"(ab)*c|[^a-z]x?", "(ab)*c|[^a-z]x?"}, {"\\t\\.", "\\\t\\."}, {"\\1", "\\0"}};
    for (const Parse& p : table) {
        TalvoRegexManager manager(p.pattern);
        manager.compilePattern();
        EXPECT_EQ(regex_test::printed(manager.getTopRegex()), p.tree) << p.pattern;
    }
}

TEST(TalvoRegexManager, MatchPattern_SearchRules) {
    expectSearches({
        {"a|ab", "ab", 0, "a"},            // left alternative first, not the longest
        {"a*", "", -1, "<null>"},          // an empty text is never matched
        {"xy|abc", "ab", -1, "<null>"},    // the text ends inside the run
        {"a+ab", "ab", 0, "ab"},           // a plus falls back before its iteration only
        {"(a|ab)*c", "abc", 2, "c"},       // an iteration is never revised
        {"(a*)*a", "aaa", 0, "a"},         // the iteration keeps aaa; fallbacks shorten
        {"(a*|b)*c", "abbac", 3, "ac"},    // a* always wins with "" where no a stands
        {"$", "abc", -1, "<null>"},
        {"(a$)", "a", -1, "<null>"},       // the group's closing step still follows
        {"a$*", "a", 0, "a"},              // the iteration alone has nothing after it
        {"^*a", "ba", 1, "a"},             // a star over ^ may take zero iterations
        {"^ab|b", "xab", 2, "b"},
        {"\\1(a)", "aa", -1, "<null>"},       // group 1 has not completed yet
        {"a\\0", "aa", -1, "<null>"},          // slot 0 is empty in a new manager
        {"[\\\\]", "\\", -1, "<null>"},       // a backslash only lets the next byte through
    });
    TalvoRegexManager manager("^a(b)c");   // an attempt that records a group is still made
    EXPECT_EQ(manager.matchPattern("abd"), -1);
    EXPECT_EQ(slot(&manager, 1), "b");
}

TEST(TalvoRegexManager, MatchPattern_SlotsAfterASearch) {
    struct Slots { const char *pattern, *subject; int start; std::vector<std::pair<int, const char*>> slots; };
    const Slots table[] = {
        {"(a)x|ab", "ab", 0, {{1, "a"}}},  // captures from abandoned paths stay
        {"(a*)*", "aab", 0, {{0, "aa"}, {1, ""}}},  // the last completed iteration matched nothing
    };
    for (const Slots& t : table) {
        TalvoRegexManager manager(t.pattern);
        EXPECT_EQ(manager.matchPattern(t.subject), t.start) << t.pattern << " on " << t.subject;
        for (const auto& expected : t.slots)
            EXPECT_EQ(slot(&manager, expected.first), expected.second) << t.pattern << " slot " << expected.first;
    }
}

TEST(TalvoRegexManager, Captures_PersistBetweenOperations) {
    TalvoRegexManager manager("(b+)");
    EXPECT_EQ(take(manager.substitutePatterns("abc", "[\\0]")), "a[]c");  // no search yet: slot 0 empty
    EXPECT_EQ(take(manager.substitutePatterns("b", nullptr)), "<null>");
    EXPECT_EQ(manager.matchPattern("abba"), 1);
    EXPECT_EQ(take(manager.substitutePatterns("xbx", "[\\0\\1]")), "x[bbb]x");
    EXPECT_EQ(slot(&manager, 0), "bb");  // substitution leaves slot 0 alone
    EXPECT_EQ(slot(&manager, 1), "b");
    manager.setBackReference(-1, "none");
    EXPECT_EQ(manager.getBackReference(-1), nullptr);
    EXPECT_EQ(manager.getBackReference(100000), nullptr);
}

TEST(TalvoRegexManager, SplitWithPattern_PiecesBetweenMatches) {
    struct Split { const char* pattern; const char* subject; std::vector<std::string> pieces; };
    const Split table[] = {
        {",", ",a,,b,", {"", "a", "", "b"}},
        {",", "", {}},
        {"x*", "abc", {"", "a", "b", "c"}},   // empty matches: step one byte
        {"^a", "aaa", {"", "aa"}},
    };
    for (const Split& s : table) {
        TalvoRegexManager manager(s.pattern);
        EXPECT_EQ(takeList(manager.splitWithPattern(s.subject)), s.pieces) << s.pattern << " on " << s.subject;
    }
}

TEST(TalvoRegexManager, Substitute_FirstAndEveryMatch) {
    struct Substitution { const char *pattern, *subject, *replacement, *first, *all; };
    const Substitution table[] = {
        {"(a)", "banana", "<\\1>", "b<a>nana", "b<a>n<a>n<a>"},
        {"a", "a", "\\\\1", "\\", "\\"},    // the first backslash is copied, \1 is empty
        {"a", "aaa", "", "aa", "<null>"},    // nothing written at all gives null
        {"a*", "baaac", "-", "-baaac", "-b--c"},   // an empty match copies the next byte
        {"b+", "abbcb", "[&]", "a[&]cb", "a[&]c[&]"},
    };
    for (const Substitution& s : table) {
        TalvoRegexManager one(s.pattern);
        EXPECT_EQ(take(one.substitutePattern(s.subject, s.replacement)), s.first) << s.pattern << " on " << s.subject;
        TalvoRegexManager every(s.pattern);
        EXPECT_EQ(take(every.substitutePatterns(s.subject, s.replacement)), s.all) << s.pattern << " on " << s.subject;
    }
}

TEST(TalvoRegexManager, NewRegex_CyclicTreeNeverMatches) {
    TalvoRegexManager manager("unused");
    TalvoRegex* cat = manager.newRegex(TalvoRegex::TYPE_CONCATENATION);
    cat->setLeftArgument(manager.newRegex(TalvoRegex::TYPE_DOT));
    cat->setRightArgument(cat);
    manager.setTopRegex(cat);
    EXPECT_EQ(manager.matchPattern("aaa"), -1);
}

// Found by the regex fuzz target: a back reference inside its own group reads
// the capture left by the previous call, so a second call on the same manager
// matches earlier than the first. The fuzz check now compares on a fresh manager.
TEST(TalvoRegexManager, CapturesLeftByOneCallMoveTheNextMatch) {
    TalvoRegexManager manager("(a\\n*\\1*)\xff");
    const char* subject = "aa\xff\xff";
    EXPECT_EQ(manager.matchPattern(subject), 1);
    EXPECT_EQ(take(manager.extractPattern(subject)), "aa\xff");  // \1 reads the "a" the last call left
    EXPECT_EQ(manager.matchPattern(subject), 1);
}
