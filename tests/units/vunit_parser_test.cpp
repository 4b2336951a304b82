#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <thread>
#include <vector>

#include "quillon/units/vunit.h"

namespace quillon::munit {
namespace {

struct Case {
    const wchar_t* text;
    double value;
    int m, kg, s;
};

void ExpectQuantity(const Case& c) {
    SCOPED_TRACE(testing::PrintToString(std::wstring(c.text)));
    const VUnit v(c.text);
    ASSERT_TRUE(v.is_valid());
    EXPECT_NEAR(v.to_mks(), c.value, 1e-12 * std::fabs(c.value));
    EXPECT_EQ(v.unit(), SUnit(c.m, c.kg, c.s));
}

void ExpectInvalid(const wchar_t* text) {
    const VUnit v(text);
    EXPECT_FALSE(v.is_valid() || static_cast<bool>(v))
        << testing::PrintToString(std::wstring(text));
}

class UnitText : public ::testing::Test {
protected:
    void TearDown() override { VUnit::YaccTrace(false); }
};

TEST_F(UnitText, EveryGrammarRuleGivesItsQuantity) {
    // Rows go through the rules in turn: empty and blank texts (1), bare numbers (3, 16-19, "e"
    // makes a real number), number and unit with or without a blank (4), "*" and "/" between them
    // (5, 6: the whole product is divided), units and products (7-13; the denominator of "/" is a
    // product), integer exponents glued or after a blank (14) and after "^" (15), 0 and 1 powers.
    // clang-format off
    const Case cases[] = {
        {L"", 1, 0, 0, 0}, {L" \t ", 1, 0, 0, 0}, {L"5", 5, 0, 0, 0}, {L"-3", -3, 0, 0, 0},
        {L"2.5", 2.5, 0, 0, 0}, {L"1e3", 1000, 0, 0, 0}, {L"3 kN*m", 3000, 2, 1, -2},
        {L"2 kN/m", 2000, 0, 1, -2}, {L"2m", 2, 1, 0, 0}, {L"2e3m", 2000, 1, 0, 0},
        {L"-2 m", -2, 1, 0, 0}, {L"2*m", 2, 1, 0, 0}, {L"2 * kN / m", 2000, 0, 1, -2},
        {L"1/s", 1, 0, 0, -1}, {L"2/kN*m", 0.002, -2, -1, 2}, {L"kN", 1000, 1, 1, -2},
        {L"kN/m*s", 1000, 0, 1, -3}, {L"kN m", 1000, 2, 1, -2}, {L"kN m s", 1000, 2, 1, -1},
        {L"m2", 1, 2, 0, 0}, {L"m 3", 1, 3, 0, 0}, {L"m2 2", 1, 4, 0, 0}, {L"cm2", 1e-4, 2, 0, 0},
        {L"m^2", 1, 2, 0, 0}, {L"s^-2", 1, 0, 0, -2}, {L"mm^-2^2", 1e12, -4, 0, 0},
        {L"m^0", 1, 0, 0, 0}, {L"kN0", 1, 0, 0, 0}, {L"kN^1", 1000, 1, 1, -2},
        {L"km^3", 1e9, 3, 0, 0}, {L"2.5 MPa", 2.5e6, -1, 1, -2}, {L"kg/m^3", 1, -3, 1, 0},
        {L"1000*m*kg/s^2", 1000, 1, 1, -2}};
    // clang-format on
    for (const Case& c : cases) ExpectQuantity(c);
}

TEST_F(UnitText, GrammarErrorsAndUnknownWordsGiveAnInvalidQuantity) {
    const wchar_t* bad[] = {L"kN/m/s",  // a second quotient
                            L"1/s/m", L"2/kN/m", L"(m)", L"m)", L"2 3", L"2 3 m", L"3/2", L"/m",
                            L"m/", L"*m", L"m*", L"m**m", L"m*2", L"2**m", L"m^", L"m^2.5", L"m^m",
                            L"m -2", L"m2.5", L"-", L"--2", L"- 2", L"1.5.2", L"m,", L".5 m",
                            L"2 m 3 /", L"kN//m", L"m^+2", L"2 + m", L"2em",
                            // unknown words and characters
                            L"foo", L"x", L"pa", L"kn", L"d", L"da", L"2 e", L"mx", L"kN·m",
                            L"m\u00b2", L"\u00b5m", L"K", L"2 % m", L"m_", L"m m^"};
    for (const wchar_t* text : bad) ExpectInvalid(text);
    ExpectInvalid(nullptr);
}

TEST_F(UnitText, PrefixesTakeTheFirstMatchThenABaseUnit) {
    // "m" alone falls back to the base metre, "da" is tried before "d", words match by their
    // beginning ("mmm" is "mm" then "m", "kNm" is "kN" then "m"), and when no prefix fits the
    // rest ("min") the base "m" is taken, then "in".
    // clang-format off
    const Case cases[] = {
        {L"mm", 0.001, 1, 0, 0}, {L"m", 1, 1, 0, 0}, {L"dm", 0.1, 1, 0, 0}, {L"daN", 10, 1, 1, -2},
        {L"dam", 10, 1, 0, 0}, {L"hPa", 100, -1, 1, -2}, {L"uN", 1e-6, 1, 1, -2},
        {L"g", 0.001, 0, 1, 0}, {L"kG", 9.80665, 1, 1, -2}, {L"MW", 1e6, 2, 1, -3},
        {L"mmm", 0.001, 2, 0, 0}, {L"kNm", 1000, 2, 1, -2}, {L"min", 0.0254, 2, 0, 0}};
    // clang-format on
    for (const Case& c : cases) ExpectQuantity(c);
}

TEST_F(UnitText, WholeUnitsComeFirstWithTheirKeptRows) {
    // Kept: "ton" carries a length and "T" is a force. "kip" is found before the prefix "k", and
    // "kips" is "kip" then "s".
    // clang-format off
    const Case cases[] = {
        {L"5 ton", 4535.92511, 1, 0, 0}, {L"T", 9806.65, 1, 1, -2}, {L"Ton", 8896.446, 1, 1, -2},
        {L"t", 1000, 0, 1, 0}, {L"inch", 0.0254, 1, 0, 0}, {L"ft-in", 0.3048, 1, 0, 0},
        {L"kips", 4448.223, 1, 1, -1}, {L"ksi", 6894759.439518879, -1, 1, -2},
        {L"lb/ft", 4.448223 / 0.3048, 0, 1, -2}, {L"2 yard", 1.8288, 1, 0, 0},
        {L"foot", 0.3048, 1, 0, 0}, {L"psi", 6894.759439518879, -1, 1, -2}};
    // clang-format on
    for (const Case& c : cases) ExpectQuantity(c);
}

TEST_F(UnitText, ExponentsBeyondTheirRangeMakeTheTextInvalid) {
    EXPECT_EQ(VUnit(L"m^2147483647").unit(), SUnit(2147483647, 0, 0));
    EXPECT_EQ(VUnit(L"m^99999999999").unit(), SUnit(2147483647, 0, 0));  // saturates
    for (const wchar_t* text :
         {L"m^2147483647 m", L"m^-2147483648 / m", L"m2 1073741824", L"s^-1^-2147483648"})
        ExpectInvalid(text);
    EXPECT_TRUE(VUnit(L"m^100000 m^-100000").is_valid());
}

TEST_F(UnitText, VsetFormatsOnlyWhenTheTextHoldsAPercentSign) {
    VUnit v;
    EXPECT_TRUE(v.vset(L"%g kN*m", 2.5) && v.to_mks() == 2500 && v.type() == SUnit::moment);
    EXPECT_TRUE(v.vset(L"%d %ls/%ls", 3, L"kN", L"m^2") && v.type() == SUnit::stress);
    EXPECT_DOUBLE_EQ(v.to_mks(), 3000);
    EXPECT_TRUE(v.vset(L"kN") && v.to_mks() == 1000);
    EXPECT_FALSE(v.vset(L"%ls", L"(m)") || v.vset(nullptr));
    // Blanks parse as the empty text, so only the buffer's limit makes these invalid.
    const std::wstring blanks(4095, L' ');
    EXPECT_TRUE(v.vset(L"%ls", blanks.c_str()));
    EXPECT_FALSE(v.vset(L"%ls ", blanks.c_str()));
}

TEST_F(UnitText, ParsesOnSeveralThreadsDoNotInterfere) {
    const Case cases[] = {
        {L"2.5 kN*m", 2500, 2, 1, -2}, {L"kg/m^3", 1, -3, 1, 0}, {L"1/s", 1, 0, 0, -1}};
    std::vector<int> failures(3, 0);
    std::vector<std::thread> threads;
    for (int t = 0; t < 3; ++t) {
        threads.emplace_back([&, t] {
            for (int i = 0; i < 2000; ++i) {
                const Case& c = cases[(t + i) % 3];
                const VUnit v(c.text);
                failures[t] += !v || v.to_mks() != c.value || !(v.unit() == SUnit(c.m, c.kg, c.s));
            }
        });
    }
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(failures, std::vector<int>(3, 0));
}

TEST_F(UnitText, TraceShowsTokensAndReductions) {
    EXPECT_FALSE(VUnit::YaccTrace());
    VUnit::YaccTrace(true);
    testing::internal::CaptureStderr();
    for (const wchar_t* text : {L"2 kN/m", L"m*s", L"2/s", L"kN/m/s"}) (void)VUnit(text);
    const std::string trace = testing::internal::GetCapturedStderr();
    EXPECT_TRUE(VUnit::YaccTrace());
    for (const char* part :
         {"UNIT \"kN\"", "rule 9", "rule 4", "rule 6", "rule 12", "syntax error"})
        EXPECT_NE(trace.find(part), std::string::npos) << part << "\n" << trace;
    VUnit::YaccTrace(false);
    testing::internal::CaptureStderr();
    (void)VUnit(L"kN");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
}  // namespace quillon::munit
