// Cross-checks the matcher against a recursive transcription of the rules.
#include "support/TalvoTest.h"

#include "RegexTestHelpers.h"

#include <map>
#include <random>
#include <string>
#include <vector>

using regex_test::slot;
using regex_test::take;

namespace {

typedef std::vector<const TalvoRegex*> Stack;
const long kUnbounded = 2147483647L;

// Unbounded: empty iterations are cut after kEmptyDepth levels (captures
// have settled by then); a small `maximum` follows every level.
class ReferenceMatcher {
public:
    std::map<int, std::string> captures;
    long steps = 0;
    long maximum = kUnbounded;
    static constexpr long kStepLimit = 2000000;
    static constexpr int kEmptyDepth = 40;

    int match(const TalvoRegex* node, const char* text, int position) {
        text_ = text;
        Stack stack;
        return m(node, position, stack);
    }
    bool exhausted() const { return steps > kStepLimit; }

private:
    const char* text_ = nullptr;
    std::map<const TalvoRegex*, std::pair<int, int>> groups_;  // state, index

    int next(int position, Stack& stack) {
        if (stack.empty()) return position;
        const TalvoRegex* node = stack.back();
        stack.pop_back();
        int r = m(node, position, stack);
        stack.push_back(node);
        return r;
    }

    int range(const TalvoRegex* node, int position, Stack& stack, long minimum, long most, int emptyLevels) {
        if (most < 1) return next(position, stack);
        Stack alone;
        int e = m(node->getLeftArgument(), position, alone);
        if (e == -1) return minimum > 0 ? -1 : next(position, stack);
        int r = e == position && emptyLevels >= kEmptyDepth && maximum == kUnbounded
                    ? next(e, stack)
                    : range(node, e, stack, minimum - 1, most - 1, e == position ? emptyLevels + 1 : 0);
        return r != -1 ? r : next(position, stack);
    }

    int m(const TalvoRegex* node, int position, Stack& stack) {
        if (++steps > kStepLimit) return -1;
        char c = text_[position];
        switch (node->getType()) {
        case TalvoRegex::TYPE_DOT: return c == 0 ? -1 : next(position + 1, stack);
        case TalvoRegex::TYPE_CHAR:
        case TalvoRegex::TYPE_ESCAPEDCHAR:
        case TalvoRegex::TYPE_CHARCLASS:
            return (c == 0 || !node->isCharacterInClass(c)) ? -1 : next(position + 1, stack);
        case TalvoRegex::TYPE_ALTERNATION: {
            int r = m(node->getLeftArgument(), position, stack);
            return r != -1 ? r : m(node->getRightArgument(), position, stack);
        }
        case TalvoRegex::TYPE_CONCATENATION: {
            stack.push_back(node->getRightArgument());
            int r = m(node->getLeftArgument(), position, stack);
            stack.pop_back();
            return r;
        }
        case TalvoRegex::TYPE_STAR: return range(node, position, stack, 0, maximum, 0);
        case TalvoRegex::TYPE_PLUS: return range(node, position, stack, 1, maximum, 0);
        case TalvoRegex::TYPE_QMARK: return range(node, position, stack, 0, 1, 0);
        case TalvoRegex::TYPE_DOLLAR: return (c == 0 && stack.empty()) ? position : -1;
        case TalvoRegex::TYPE_CARET: return position == 0 ? next(position, stack) : -1;
        case TalvoRegex::TYPE_GROUP: {
            auto& state = groups_[node];
            if (state.first == 1) {
                captures[node->getBackReferenceNumber()] = std::string(text_ + state.second, position - state.second);
                return next(position, stack);
            }
            state = {1, position};
            stack.push_back(node);
            int r = m(node->getLeftArgument(), position, stack);
            stack.pop_back();
            groups_[node] = {0, 0};
            return r;
        }
        case TalvoRegex::TYPE_BACKREFERENCE: {
            auto found = captures.find(node->getBackReferenceNumber());
            if (found == captures.end()) return -1;
            const std::string& s = found->second;
            if (std::string(text_ + position).compare(0, s.size(), s) != 0) return -1;
            return next(position + static_cast<int>(s.size()), stack);
        }
        }
        return -1;
    }
};

class PatternMaker {
public:
    explicit PatternMaker(unsigned seed) : random_(seed) {}
    std::string make() {
        groups_ = 0;
        return alternation(3);
    }

private:
    std::mt19937 random_;
    int groups_ = 0;

    int pick(int n) { return static_cast<int>(random_() % static_cast<unsigned>(n)); }
    std::string alternation(int depth) {
        std::string s = sequence(depth);
        return pick(4) == 0 ? s + "|" + sequence(depth) : s;
    }
    std::string sequence(int depth) {
        std::string s;
        for (int n = 1 + pick(3); n > 0; n--) s += postfix(depth);
        return s;
    }
    std::string postfix(int depth) {
        static const char* operators[] = {"", "", "", "*", "+", "?"};
        std::string s = atom(depth);
        s += operators[pick(6)];
        return pick(12) == 0 ? s + "*" : s;
    }
    std::string atom(int depth) {
        static const char* atoms[] = {"a", "b", "a", "b", ".", "[ab]", "[^a]", "^", "$", "c"};
        int k = pick(depth > 0 ? 14 : 10);
        if (k < 10) return atoms[k];
        if (k < 13) {
            groups_++;
            return "(" + alternation(depth - 1) + ")";
        }
        return groups_ == 0 ? "a" : "\\" + std::to_string(1 + pick(groups_));
    }
};

int referenceSearch(ReferenceMatcher& reference, const TalvoRegex* top, const std::string& subject) {
    for (int start = 0; start < static_cast<int>(subject.size()); start++) {
        int end = reference.match(top, subject.c_str(), start);
        if (end != -1) {
            reference.captures[0] = subject.substr(start, end - start);
            return start;
        }
    }
    return -1;
}

std::string referenceSubstitute(ReferenceMatcher& reference, const TalvoRegex* top, const std::string& subject) {
    std::string out;
    for (std::size_t position = 0; position < subject.size();) {
        int end = reference.match(top, subject.c_str(), static_cast<int>(position));
        if (end != -1) out += "<" + (reference.captures.count(1) ? reference.captures[1] : std::string()) + ">";
        if (end == -1 || end == static_cast<int>(position)) out += subject[position++];
        else position = end;
    }
    return out.empty() ? "<null>" : out;
}

std::string capturesText(TalvoRegexManager* manager, ReferenceMatcher* reference, int groups) {
    std::string s;
    for (int n = 0; n <= groups; n++)
        s += "[" + (manager ? slot(manager, n) : reference->captures.count(n) ? reference->captures[n] : "<null>") + "]";
    return s;
}

int compareGenerated(unsigned seed, int cases, int maximum) {
    PatternMaker maker(seed);
    std::mt19937 random(seed + 1);
    int compared = 0;
    for (int i = 0; i < cases; i++) {
        std::string pattern = maker.make();
        int groups = 0;
        for (char c : pattern) groups += c == '(';
        for (int j = 0; j < 4; j++) {
            std::string subject;
            for (int n = static_cast<int>(random() % 7); n > 0; n--) subject += "abc"[random() % 3];
            TalvoRegexManager manager(pattern.c_str());
            ReferenceMatcher reference;
            if (maximum > 0) manager._setRepetitionMaximum(maximum);
            reference.maximum = maximum > 0 ? maximum : kUnbounded;
            int start = manager.matchPattern(subject.c_str());
            if (manager.getTopRegex() == nullptr) {
                ADD_FAILURE() << pattern;
                return compared;
            }
            int expected = referenceSearch(reference, manager.getTopRegex(), subject);
            std::string substituted = take(manager.substitutePatterns(subject.c_str(), "<\\1>"));
            std::string expectedSubstitution = referenceSubstitute(reference, manager.getTopRegex(), subject);
            if (reference.exhausted()) continue;
            compared++;
            EXPECT_EQ(std::to_string(start) + substituted + capturesText(&manager, nullptr, groups),
                      std::to_string(expected) + expectedSubstitution + capturesText(nullptr, &reference, groups))
                << pattern << " on " << subject;
        }
    }
    return compared;
}

}  // namespace

TEST(TalvoRegexManager, MatchPattern_AgreesWithTheRulesOnGeneratedCases) {
    EXPECT_GT(compareGenerated(12345, 3000, 0), 10000);
    EXPECT_GT(compareGenerated(777, 1500, 3), 5000);  // every level of the repetitions followed
}

TEST(TalvoRegexManager, MatchPattern_CyclingCapturesFinish) {
    // Empty iterations while group 2 alternates: the count decides the stop.
    TalvoRegexManager manager("((a\\2*)*c)*+*");
    EXPECT_EQ(take(manager.substitutePatterns("aa", "<\\1>")), "<>a<>a");
    for (int maximum : {3, 4, 5}) {
        TalvoRegexManager limited("((a\\2*)*c)*+*");
        limited._setRepetitionMaximum(maximum);
        ReferenceMatcher reference;
        reference.maximum = maximum;
        EXPECT_EQ(limited.matchPattern("aa"), 0);
        ASSERT_EQ(referenceSearch(reference, limited.getTopRegex(), "aa"), 0);
        EXPECT_EQ(capturesText(&limited, nullptr, 2), capturesText(nullptr, &reference, 2)) << maximum;
    }
}

TEST(TalvoRegexManager, MatchPattern_LongRunsAndBacktracking) {
    std::string as(16 * 1024 * 1024, 'a');
    TalvoRegexManager manager("a*b");
    EXPECT_EQ(manager.matchPattern((as + "b").c_str()), 0);
    EXPECT_EQ(manager.matchPattern(as.c_str()), -1);
}
