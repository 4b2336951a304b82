#include "quillon/data/clause.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace quillon::clv;

// Appends the items named by the words of 'text': "(", ")", "AND", "OR", "NOT", "null", and
// single letters for the terms a, b, c, ...
void Build(clause& c, const std::string& text, std::vector<expr>& terms) {
    // clang-format off
    static const std::map<std::string, void (clause::*)()> kItems = {
        {"(", &clause::leftBracket}, {")", &clause::rightBracket}, {"AND", &clause::and_},
        {"OR", &clause::or_}, {"NOT", &clause::not_}};
    // clang-format on
    std::istringstream words(text);
    for (std::string w; words >> w;) {
        const auto item = kItems.find(w);
        item != kItems.end()
            ? (c.*item->second)()
            : c.expr(w == "null" ? nullptr : &terms.at(static_cast<std::size_t>(w[0] - 'a')));
    }
}

void SetBits(std::vector<expr>& terms, int bits) {
    for (std::size_t k = 0; k < terms.size(); ++k) terms[k] = ((bits >> k) & 1) != 0;
}

// A term that counts how often its value is asked.
class CountingTerm : public expr {
public:
    explicit CountingTerm(bool v) : expr(v) {}
    bool value() const override {
        ++asked;
        return expr::value();
    }
    mutable int asked = 0;
};

TEST(Clause, OperatorsShortCircuitAndTermsStartFalse) {
    // AND stops at a false first operand, OR at a true one.
    CountingTerm f(false), tr(true);
    EXPECT_FALSE(opr_and().value(&f, &tr));
    EXPECT_TRUE(opr_or().value(&tr, &f));
    EXPECT_EQ(tr.asked + f.asked, 2);
    EXPECT_TRUE(opr_not().value(&f, nullptr));
    EXPECT_FALSE(expr().value());
}

TEST(Clause, NoPrecedenceRightGroupingTruthTables) {
    std::vector<expr> t(3);
    // Truth columns for (a, b, c) = 000, 100, 010, 110, 001, 101, 011, 111, worked out by hand.
    const std::pair<std::string, std::string> cases[] = {
        {"a OR b AND c", "01010111"},      // a OR (b AND c)
        {"a AND b OR c", "00010101"},      // a AND (b OR c)
        {"NOT a OR b", "10001000"},        // NOT (a OR b)
        {"NOT a AND b", "11101110"},       // NOT (a AND b)
        {"( a AND b ) OR c", "00011111"},  // as written
        {"( NOT a ) AND b OR NOT c", "10100010"},
    };
    for (const auto& [text, column] : cases) {
        clause c;
        Build(c, text, t);
        ASSERT_TRUE(c.IsValid() && c.IsWellFormed()) << text;
        std::string got;
        for (int bits = 0; bits < 8; ++bits) {
            SetBits(t, bits);
            got += c.evaluate() ? '1' : '0';
        }
        EXPECT_EQ(got, column) << text;
    }
}

TEST(Clause, TextsAndRpnAccumulateAfterClear) {
    std::vector<expr> t(4);
    clause c;
    Build(c, "( a AND b ) OR NOT c", t);
    EXPECT_EQ(c.GetClauseString() + " | " + c.GetRPNString(),
              "( exp AND exp ) OR NOT exp | exp exp AND exp NOT OR");
    EXPECT_TRUE(c.evaluate());                              // all false: NOT c is true
    EXPECT_EQ(c.GetRPNString(), "exp exp AND exp NOT OR");  // no change, no rebuild

    c.clear();
    EXPECT_TRUE(c.evaluate());  // empty again
    Build(c, "a AND d", t);
    EXPECT_EQ(c.GetClauseString() + " | " + c.GetRPNString(),
              "exp AND exp | exp exp AND exp NOT OR exp exp AND");
    EXPECT_FALSE(c.evaluate());
    t[0] = true, t[3] = true;
    EXPECT_TRUE(c.evaluate());  // the current contents decide
    Build(c, "OR b", t);        // an appended item rebuilds once more, after all that came before
    EXPECT_EQ(c.GetRPNString(), "exp exp AND exp NOT OR exp exp AND exp exp exp OR AND");
    EXPECT_TRUE(c.evaluate());

    // An improper earlier content stays in the sequence without spoiling the current one.
    clause k;
    Build(k, "a AND", t);
    EXPECT_FALSE(k.evaluate());
    k.clear();
    Build(k, "a", t);
    EXPECT_TRUE(k.evaluate() && k.GetRPNString() == "exp AND exp");
}

TEST(Clause, CopyAndAssignmentOwnTheirSharedItems) {
    std::vector<expr> t(2);
    t[0] = true;
    auto original = std::make_unique<clause>();
    Build(*original, "( a OR b ) AND NOT b", t);
    clause copy(*original), assigned;
    Build(assigned, "b", t);
    assigned = *original;
    assigned = *&assigned;  // self-assignment keeps the contents
    original.reset();       // the copies must not point at its shared items
    for (clause* c : {&copy, &assigned}) {
        EXPECT_EQ(c->GetClauseString() + " | " + c->GetRPNString(),
                  "( exp OR exp ) AND NOT exp | exp exp OR exp NOT AND");
        EXPECT_TRUE(c->evaluate());
        t[1] = true;
        EXPECT_FALSE(c->evaluate());
        t[1] = false;
        c->or_();  // the copies change independently
    }
    EXPECT_EQ(copy.GetClauseString(), "( exp OR exp ) AND NOT exp OR");
}

// Each makes the stack run short or leaves a bracket unpaired; only a null term or unequal bracket
// counts make a clause invalid. (Their values are the random test's part.)
TEST(Clause, ValidityCountsOnlyAndIllFormedClausesAnswerFalse) {
    std::vector<expr> t(2);
    for (const std::string text :
         {"AND", "NOT", "a OR", "OR a", ") a", "a )", "( a", "a AND b )", ") ) ( (", "a OR ( b",
          "null", "a AND null", ") a (", "( a AND ) b"}) {
        clause k;
        Build(k, text, t);
        const bool balanced =
            std::count(text.begin(), text.end(), '(') == std::count(text.begin(), text.end(), ')');
        EXPECT_EQ(k.IsValid(), balanced && text.find("null") == std::string::npos) << text;
        EXPECT_FALSE(k.IsWellFormed() || k.evaluate()) << text;
        EXPECT_TRUE(text != "a AND null" || k.GetClauseString() == "exp AND null");
    }
}

// The conversion and the stack walk read literally, on the words of a clause; nothing where the
// walk would starve (a null, a closing bracket with no opening one, an empty stack, a bracket taken
// for an operand, nothing left).
std::optional<bool> LiteralWalk(const std::string& text, const std::vector<expr>& terms) {
    if (text.find_first_not_of(' ') == std::string::npos) return true;  // empty: true at once
    std::vector<std::string> rpn, ops;
    std::istringstream words(text);
    for (std::string w; words >> w;) {
        if (w == "null") return std::nullopt;
        if (w == ")") {
            for (; !ops.empty() && ops.back() != "("; ops.pop_back()) rpn.push_back(ops.back());
            if (ops.empty()) return std::nullopt;
            ops.pop_back();
        } else if (w == "(" || w == "AND" || w == "OR" || w == "NOT") {
            ops.push_back(w);
        } else {
            rpn.push_back(w);
        }
    }
    rpn.insert(rpn.end(), ops.rbegin(), ops.rend());
    std::vector<bool> stack;
    for (const std::string& w : rpn) {
        const std::size_t need = w == "NOT" ? 1 : (w == "AND" || w == "OR") ? 2 : 0;
        if (w == "(" || stack.size() < need) return std::nullopt;
        if (need == 0) {
            stack.push_back(terms.at(static_cast<std::size_t>(w[0] - 'a')).value());
        } else if (need == 1) {
            stack.back() = !stack.back();
        } else {
            const bool later = stack.back();
            stack.pop_back();
            stack.back() = w == "AND" ? later && stack.back() : later || stack.back();
        }
    }
    if (stack.empty()) return std::nullopt;
    return stack.back();
}

// Random clauses, well-formed ones grown from the grammar and loose item sequences (terms side by
// side among them: the later one decides): each gives what the literal walk gives, and false where
// that walk would starve.
TEST(Clause, RandomClausesMatchTheLiteralWalkOrAnswerFalse) {
    std::mt19937 rng(20240611);
    std::vector<expr> t(6);
    const char* items[] = {"(", ")", "AND", "OR", "NOT", "null", "a", "b"};
    const char* grow[] = {"( x ) ", "NOT x ", "x AND x ", "x OR x "};
    for (int round = 0; round < 2000; ++round) {
        std::string text;
        if (round % 2 == 0) {  // grown from "x" by the grammar's rules, then terms for the x
            text = "x ";
            for (unsigned k = rng() % 10; k > 0; --k) {
                const std::size_t at = text.find('x', rng() % text.size());
                text.replace(at == std::string::npos ? text.find('x') : at, 2, grow[rng() % 4]);
            }
            for (char& ch : text) ch = ch == 'x' ? static_cast<char>('a' + rng() % 6) : ch;
        } else {
            for (unsigned n = rng() % 12; n > 0; --n) text += std::string(items[rng() % 8]) + " ";
        }
        clause c;
        Build(c, text, t);
        const bool proper = c.IsWellFormed();
        ASSERT_TRUE(round % 2 != 0 || (proper && c.IsValid())) << text;
        for (int bits = 0; bits < 64; bits += 1 + static_cast<int>(rng() % 9)) {
            SetBits(t, bits);
            const bool v = c.evaluate();
            const std::optional<bool> walk = LiteralWalk(text, t);
            ASSERT_TRUE(!proper || walk.has_value()) << text;
            ASSERT_EQ(v, walk.value_or(false)) << text;
        }
    }
}

}  // namespace
