#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>

#include "quillon/platform/locale.h"
#include "quillon/units/mmoney.h"

namespace quillon::munit {
namespace {

// Fixes the user's separators for a test and gives back the environment's afterwards.
class MoneyLocale : public ::testing::Test {
protected:
    void SetUp() override { Use(L".", L","); }
    void TearDown() override { platform::ClearLocaleOverride(); }
    static void Use(const wchar_t* decimal, const wchar_t* thousands,
                    const wchar_t* symbol = L"$") {
        platform::SetLocaleOverride({L".", decimal, thousands, symbol});
    }
};

TEST_F(MoneyLocale, RoundingTakesHalvesAwayFromZero) {
    EXPECT_DOUBLE_EQ(MMoney::RoundDouble(0.125), 0.13);
    EXPECT_DOUBLE_EQ(MMoney::RoundDouble(-0.125), -0.13);
    // Every assignment rounds, and rounding is idempotent.
    std::mt19937 random(7);
    std::uniform_real_distribution<double> amounts(-1e6, 1e6);
    for (int i = 0; i < 500; ++i) {
        const double x = amounts(random);
        const double r = MMoney::RoundDouble(x);
        EXPECT_LE(std::fabs(r - x), 0.005 + 1e-9);
        EXPECT_EQ(MMoney::RoundDouble(r), r);
        MMoney m;
        m = x;
        EXPECT_EQ(m.GetVal(), r);
        m += 0.004;  // below half a hundredth: no change survives the rounding
        EXPECT_EQ(static_cast<double>(m), r);
    }
    MMoney sum(0.1);
    sum += MMoney(0.2);
    sum -= 0.005;
    EXPECT_DOUBLE_EQ(sum.GetVal(), 0.3);  // 0.295 rounds away from zero
    sum -= MMoney(0.5);
    EXPECT_DOUBLE_EQ(sum.GetVal(), -0.2);
    EXPECT_DOUBLE_EQ((-MMoney(1.234)).GetVal(), -1.23);
}

TEST_F(MoneyLocale, FixedTextIs24CharactersPaddedLeftOfTheSign) {
    EXPECT_EQ(MMoney(-5).ToZStr(), std::wstring(19, L'0') + L"-5.00");
    EXPECT_EQ(MMoney(12.5).ToStr(), std::wstring(19, L' ') + L"12.50");
    EXPECT_EQ(MMoney(1e30).ToStr().size(), 34u);  // wider amounts are not cut
}

TEST_F(MoneyLocale, TextOrderingOfNegativeAmountsIsKept) {
    // Pairs in the order of their fixed texts: a longer negative text has its minus sign further
    // left, every negative comes before every non-negative; 1.004 and 1.0 are equal once rounded.
    const std::pair<double, double> ordered[] = {{2.5, 10},  {-3, -5},   {-30, -5},
                                                 {-30, -40}, {-1000, 0}, {-0.01, 0}};
    for (const auto& [a, b] : ordered) {
        EXPECT_TRUE(MMoney(a) < MMoney(b) && MMoney(a) <= MMoney(b) && MMoney(a) != MMoney(b)) << a;
        EXPECT_TRUE(MMoney(b) > MMoney(a) && MMoney(b) >= MMoney(a) && !(MMoney(b) == MMoney(a)));
    }
    EXPECT_TRUE(MMoney(1.004) == MMoney(1.0) && MMoney(3) <= MMoney(3) && MMoney(3) >= MMoney(3));
    // Mixed with numbers: the number is made an amount first.
    EXPECT_TRUE(MMoney(-5) > -3 && 4 < MMoney(5) && MMoney(2.001) == 2.0);
    // For amounts >= 0 the order is the numeric one.
    std::mt19937 random(11);
    std::uniform_real_distribution<double> amounts(0.0, 1e9);
    for (int i = 0; i < 300; ++i) {
        const MMoney a(amounts(random)), b(amounts(random));
        EXPECT_EQ(a < b, a.GetVal() < b.GetVal());
        EXPECT_EQ(a == b, a.GetVal() == b.GetVal());
    }
}

TEST_F(MoneyLocale, FormatGroupsThousandsWithTheMonetarySeparators) {
    const std::pair<double, const wchar_t*> cases[] = {
        {-1234.5, L"-1,234.50"},      {123456, L"123,456.00"}, {-123456, L"-123,456.00"},
        {1234567.5, L"1,234,567.50"}, {0.5, L"0.50"},          {-0.5, L"-0.50"}};
    for (const auto& [amount, text] : cases) EXPECT_EQ(MMoney(amount).Format(), text);
    Use(L",", L"\u00a0");
    EXPECT_EQ(MMoney(-1234567.5).Format(), L"-1\u00a0234\u00a0567,50");
    Use(L",", L"'.'");  // multi-character separators are inserted whole
    EXPECT_EQ(MMoney(1234).Format(), L"1'.'234,00");
    Use(L"", L"");  // no separators: nothing is inserted
    EXPECT_EQ(MMoney(1234.5).Format(), L"123450");
}

TEST_F(MoneyLocale, ParseReadsWhatFormatWrites) {
    const std::pair<const wchar_t*, double> texts[] = {
        {L"1,234.56", 1234.56}, {L"abc", 0.0}, {nullptr, 0.0}, {L"  -7.125 EUR", -7.13}};
    for (const auto& [text, value] : texts) {
        double out = -1;
        EXPECT_TRUE(MMoney::Parse(text, out));
        EXPECT_DOUBLE_EQ(out, value);
    }
    EXPECT_DOUBLE_EQ(MMoney(L"12.345").GetVal(), 12.35);
    MMoney m;
    m = std::wstring(L"2,000");
    EXPECT_DOUBLE_EQ(m.GetVal(), 2000);

    const wchar_t* separators[][2] = {{L".", L","}, {L",", L"."}, {L",", L" "}, {L".", L"'"}};
    std::mt19937 random(3);
    std::uniform_real_distribution<double> amounts(-1e8, 1e8);
    for (const auto& pair : separators) {
        Use(pair[0], pair[1]);
        for (int i = 0; i < 200; ++i) {
            const MMoney a(amounts(random));
            double out = 0;
            ASSERT_TRUE(MMoney::Parse(a.Format().c_str(), out));
            EXPECT_EQ(MMoney(out), a);
        }
    }
}

TEST_F(MoneyLocale, SeparatorsFollowTheLocaleOnEveryCall) {
    Use(L",", L".", L"\u20ac");
    EXPECT_EQ(MMoney::GetDecimalSeparator() + MMoney::GetThousandSeparator(), L",.");
    EXPECT_EQ(MMoney::GetCurrencySymbol(), L"\u20ac");
    EXPECT_EQ(MMoney(L"1.234,5").GetVal(), 1234.5);
    Use(L".", L",", L"0123456789");  // longer than the locale fields take
    EXPECT_EQ(MMoney::GetCurrencySymbol(), L"");
    EXPECT_EQ(MMoney::GetDecimalSeparator(), L".");
}

}  // namespace
}  // namespace quillon::munit
