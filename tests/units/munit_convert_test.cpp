// Conversion between SI and the user's units, display texts and comparison as displayed.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <set>
#include <tuple>

#include "munit_fixture.h"
#include "quillon/platform/text.h"

namespace quillon::munit::testing {
namespace {

class ConvertTest : public MUnitFixture {
protected:
    void SetUp() override {
        MUnitFixture::SetUp();
        MUnit mu;
        ASSERT_EQ(mu.SetTypeUnit(T(7), 2, L"cm", L"", L"", false), 0);
        ASSERT_EQ(mu.SetTypeUnit(T(10), 2, L"m", L"", L"", false), 0);
        ASSERT_EQ(mu.SetTypeUnit(T(14), 3, L"kN", L"m", L"", false), 0);
        ASSERT_EQ(mu.SetTypeUnit(T(15), 2, L"kN", L"cm", L"", true), 0);
        ASSERT_EQ(mu.UpDateUnit(), 0);
    }
};

TEST_F(ConvertTest, CnvUnitSILeavesOutUntouchedWithoutAFactor) {
    MUnit mu;
    TypeUnit zero = mu.GetTypeUnit(T(10));
    zero.coefficient = 0.0;
    ASSERT_EQ(mu.ModifyTypeUnit(zero), 0);
    // 8 is absent; a factor of 0 (10) converts to SI, giving 0, but not from SI; any direction
    // but 0 is from SI. 'out' is preset to -1 and every call answers 0.
    const std::tuple<int, double, int, double> cases[] = {
        {8, 5.0, BASIC_TO_SI, -1.0}, {8, 5.0, BASIC_FROM_SI, -1.0},  {7, 250.0, BASIC_TO_SI, 2.5},
        {7, 2.5, 7, 250.0},          {10, 4.0, BASIC_FROM_SI, -1.0}, {10, 4.0, BASIC_TO_SI, 0.0}};
    for (const auto& [id, value, direction, expected] : cases) {
        double out = -1.0;
        EXPECT_EQ(mu.CnvUnitSI(out, T(id), value, static_cast<BASIC_UNIT>(direction)), 0);
        EXPECT_DOUBLE_EQ(out, expected) << id << " " << direction;
    }
}

TEST_F(ConvertTest, CnvUnitWithUnitTexts) {
    struct Case {
        int id;
        const wchar_t* unit;
        double value;
        BASIC_UNIT direction;
        int code;
        double out;  // what 'out' holds afterwards (it is preset to -1)
    };
    const BASIC_UNIT to = BASIC_TO_SI, from = BASIC_FROM_SI;
    // clang-format off
    const Case cases[] = {
        {14, L"kN*m", 2.0, to, 0, 2000.0}, {14, L"kN cm", 2000.0, from, 0, 200.0},
        {29, L"kN/cm2", 1.0, to, 0, 1e7}, {28, L"kN/mm", 1.0, to, 0, 1e6},
        {33, L"mm3", 1.0, to, 0, 1e-9}, {30, L"cm4", 1.0, to, 0, 1e-8},
        {19, L"T", 2.0, to, 1, 0.0},  // a force, not a mass
        {102, L"kN*m/cm", 1.0, to, 0, 1e5}, {7, L"furlong", 1.0, to, 1, 0.0},
        // A divisor unit without a factor fails instead of giving an infinite factor.
        {28, L"kN/furlong", 1.0, to, 1, 0.0},
        // A second unit without a factor makes the moment factor 0: fine to SI, not from SI.
        {14, L"kN", 5.0, to, 0, 0.0}, {14, L"kN", 5.0, from, 1, 0.0}};
    // clang-format on
    MUnit mu;
    for (const Case& c : cases) {
        double out = -1.0;
        EXPECT_EQ(mu.CnvUnit(out, T(c.id), c.unit, c.value, c.direction), c.code) << c.id;
        EXPECT_DOUBLE_EQ(out, c.out) << c.id << " " << platform::ToUtf8(c.unit);
    }
    GetMInit()->SetCorrectQuantity(false);  // unknown names now convert with factor 1
    double out = -1.0;
    EXPECT_TRUE(mu.CnvUnit(out, T(14), L"kN", 5.0, BASIC_FROM_SI) == 0 && out == 0.005);

    // Exactly these types convert with a text of their own kinds (20's kind has no units).
    const std::set<int> converting = {7,  8,  9,  10, 11, 12, 13, 14, 16, 17, 18,
                                      19, 22, 25, 28, 29, 30, 31, 33, 34, 102};
    const wchar_t* names[] = {L"", L"m", L"N", L"kg", L"Rad", L"Hz"};  // by kind
    GetMInit()->SetCorrectQuantity(true);
    for (int id = -2; id <= 120; ++id) {
        MUNIT_T kinds[3];
        MUnit::GetTypeMunit(T(id), kinds[0], kinds[1], kinds[2]);
        std::wstring text = id == 102 ? L"N*m/m" : L"";
        for (int i = 0; i < 3 && kinds[i] != MUNIT_NONE; ++i)
            text += std::wstring(i ? L"*" : L"") + names[kinds[i]];
        EXPECT_EQ(mu.CnvUnit(out, T(id), text, 2.0, BASIC_TO_SI) == 0, converting.count(id) == 1)
            << id;
    }
    EXPECT_EQ(MUnit::GetNameUnit1(L"kN2*m/cm3") + L"|" + MUnit::GetNameUnit2(L"kN2*m/cm3") + L"|" +
                  MUnit::GetNameUnit3(L"kN2*m/cm3") + L"|" + MUnit::GetNameUnit3(L"a/b/c*d1"),
              L"kN|m|cm|c*d");
    EXPECT_EQ(MUnit::GetNameUnit2(L"m") + MUnit::GetNameUnit1(L" m"), L"");
}

TEST_F(ConvertTest, FormatFollowsPrecisionNotationAndRounding) {
    MUnit mu;
    ASSERT_EQ(mu.ModifyTypeUnit(T(3), 4, L"", L"", L"", false), 0);  // made by UpDateUnit
    struct Case {
        int id;
        double value;
        const wchar_t* plain;    // as formatted
        const wchar_t* rounded;  // with rounding on: halves away from zero, never "-0"
    };
    // Type 8 is absent and type 3 unitless: both "%g".
    const Case cases[] = {{7, 1.5, L"1.50", L"1.50"},      {15, 1234.5, L"1.23e+03", L"1.23e+03"},
                          {8, 0.1, L"0.1", L"0.1"},        {3, 2.5, L"2.5", L"2.5"},
                          {7, -0.001, L"-0.00", L"0.00"},  {7, 0.125, L"0.12", L"0.13"},
                          {7, -0.125, L"-0.12", L"-0.13"}, {7, -0.0, L"-0.00", L"0.00"}};
    for (bool round : {false, true}) {
        GetMInit()->SetRoundFormattedValues(round);
        for (const Case& c : cases)
            EXPECT_EQ(mu.FormatUnit(T(c.id), c.value), round ? c.rounded : c.plain) << c.value;
    }
    // Precisions outside 0-30 are held to that range.
    TypeUnit t = mu.GetTypeUnit(T(10));
    t.precision = -4;
    ASSERT_EQ(mu.ModifyTypeUnit(t), 0);
    EXPECT_EQ(mu.FormatUnit(T(10), 2.5), L"3");
    t.precision = 1 << 30;
    ASSERT_EQ(mu.ModifyTypeUnit(t), 0);
    EXPECT_EQ(mu.FormatUnit(T(10), 0.5).size(), 32u);
}

TEST_F(ConvertTest, LocaleSeparatorInTextsAndParsing) {
    MUnit mu;
    SetDecimal(L",");
    EXPECT_EQ(MUnit::CnvSeparator(L"1.5 + 2.25", SEPARATOR_TO_LOCALE), L"1,5 + 2,25");
    EXPECT_EQ(MUnit::CnvSeparator(L"1,5", SEPARATOR_TO_POINT) +
                  MUnit::CnvSeparator(nullptr, SEPARATOR_TO_POINT),
              L"1.5");
    EXPECT_EQ(mu.CnvUnitSIToText(T(7), 0.015, BASIC_FROM_SI, SEPARATOR_TO_LOCALE), L"1,50");
    EXPECT_EQ(mu.CnvUnitSIToText(T(7), 0.015, BASIC_FROM_SI, SEPARATOR_TO_POINT), L"1.50");
    // 'out' is preset to -1; 8 is absent.
    const std::tuple<int, const wchar_t*, double> texts[] = {
        {7, L"12,5 cm", 0.125}, {7, L"abc", 0.0}, {8, L"3", 0.0}};
    for (const auto& [id, text, value] : texts) {
        double out = -1.0;
        EXPECT_EQ(mu.CnvUnitSIToDouble(out, T(id), text, BASIC_TO_SI), 0);
        EXPECT_DOUBLE_EQ(out, value);
    }
    // The locale item is read into 12 characters: a longer separator is not read at all, and an
    // unknown separator leaves texts alone rather than dropping their points.
    for (const std::wstring& sep :
         {std::wstring(), std::wstring(L"<>"), std::wstring(11, L'_'), std::wstring(12, L'_')}) {
        SetDecimal(sep);
        const std::wstring read = sep.size() < 12 ? sep : L"";
        EXPECT_EQ(MUnit::GetDecimalSep(), read);
        std::wstring text = L"3.25";
        MUnit::CnvSeparatorEx(text, SEPARATOR_TO_LOCALE);
        EXPECT_EQ(text, read.empty() ? L"3.25" : L"3" + read + L"25");
        MUnit::CnvSeparatorEx(text, SEPARATOR_TO_POINT);
        EXPECT_EQ(text, L"3.25");
        EXPECT_DOUBLE_EQ(mu.applyUnit(0.0123456, T(7)), 0.0123);
    }
}

TEST_F(ConvertTest, ComparisonsAsDisplayedAroundZero) {
    MUnit mu;
    const MUNIT_TYPES m = T(10);  // metres, two decimals
    // -0.00 and 0.00 are one; -0.006 shows as -0.01.
    EXPECT_TRUE(mu.eqUnit(-0.001, 0.0, m) && mu.eqUnit(0.0, -0.004, m) &&
                mu.eqUnit(-0.001, 0.001, m));
    EXPECT_FALSE(mu.eqUnit(-0.01, 0.01, m) || mu.eqUnit(-0.006, 0.0, m));
    EXPECT_TRUE(mu.eqUnit(1.004, 1.001, m) && !mu.eqUnit(1.004, 1.006, m));
    EXPECT_EQ(mu.cmpUnit(-0.01, 0.01, m), -1);  // the direction; the rest follows below
    // A value that is not a number is neither greater nor less than another.
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(mu.gtUnit(nan, 1.0, m) || mu.lsUnit(nan, 1.0, m) || mu.gtUnit(1.0, nan, m) ||
                 mu.lsUnit(1.0, nan, m));

    // Exactly one of less, equal, greater holds, and the six functions agree with it.
    std::mt19937 rng(11);
    std::uniform_real_distribution<double> value(-0.05, 0.05);
    int equal = 0;
    for (int i = 0; i < 2000; ++i) {
        const double a = value(rng), b = value(rng);
        const bool eq = mu.eqUnit(a, b, m), gt = mu.gtUnit(a, b, m), ls = mu.lsUnit(a, b, m);
        ASSERT_EQ(eq + gt + ls, 1) << a << " " << b;
        ASSERT_EQ(mu.cmpUnit(a, b, m), eq ? 0 : (ls ? -1 : 1));
        ASSERT_TRUE(mu.gtEqUnit(a, b, m) == (eq || gt) && mu.lsEqUnit(a, b, m) == (eq || ls));
        ASSERT_EQ(eq, mu.eqUnit(b, a, m));
        // Equal values show the same text once "-0.00" and "0.00" are taken as one.
        ASSERT_EQ(eq, mu.applyUnit(a, m) == mu.applyUnit(b, m));
        equal += eq;
    }
    EXPECT_GT(equal, 0);
}

}  // namespace
}  // namespace quillon::munit::testing
