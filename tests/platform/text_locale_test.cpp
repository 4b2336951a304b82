#include <gtest/gtest.h>

#include <climits>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <string>

#include "quillon/platform/locale.h"
#include "quillon/platform/text.h"

namespace quillon::platform {
namespace {

TEST(Text, Utf8RoundTripsAndRepairsBadBytes) {
    const std::wstring text = L"M\u00fcnchen \u20ac 5 \u00b2";
    EXPECT_EQ(ToUtf8(text), "M\xc3\xbcnchen \xe2\x82\xac 5 \xc2\xb2");
    EXPECT_EQ(FromUtf8(ToUtf8(text)), text);
    EXPECT_EQ(FromUtf8("a\xff"
                       "b"),
              L"a\ufffdb");
    EXPECT_EQ(FromUtf8("\xe2\x82"), L"\ufffd");        // cut-off sequence
    EXPECT_EQ(FromUtf8("\xc0\xaf"), L"\ufffd\ufffd");  // overlong form refused
    EXPECT_EQ(FromUtf8("\xed\xa0\x80x"), L"\ufffdx");  // encoded surrogate refused
    // The smallest code point of each width is no overlong form.
    EXPECT_EQ(FromUtf8("\xc2\x80\xe0\xa0\x80"), L"\u0080\u0800");
    const std::string astral = "\xf0\x9f\x98\x80";
    const std::wstring wide = FromUtf8(astral);
    EXPECT_EQ(ToUtf8(wide), astral);
    EXPECT_EQ(wide.size(), sizeof(wchar_t) == 2 ? 2u : 1u);
    // A high surrogate at the end of a view is lone, whatever follows it in memory.
    const std::wstring pair = L"a\xD83D\xDE00";
    EXPECT_EQ(ToUtf8(std::wstring_view(pair).substr(0, 2)), "a\xef\xbf\xbd");
    EXPECT_EQ(ToUtf8(pair), "a" + astral);  // a pair is one code point, also where wchar_t is wider
    // Only a high surrogate opens a pair, and only a low one closes it.
    EXPECT_EQ(ToUtf8(std::wstring{0xDC00, 0xDC00}), "\xef\xbf\xbd\xef\xbf\xbd");
    EXPECT_EQ(ToUtf8(std::wstring{0xD800, 'a'}),
              "\xef\xbf\xbd"
              "a");
    EXPECT_EQ(ToUtf8(std::wstring{0xD800, 0xDC00}), "\xf0\x90\x80\x80");
}

TEST(Text, LeadingNumberRule) {
    // An exponent without digits is not part of the number; "." is the only decimal point.
    const std::pair<const wchar_t*, double> numbers[] = {
        {L"  12.5kN", 12.5}, {L"-3e2x", -300.0}, {L"+.5", 0.5},   {L"7.", 7.0}, {L"2e", 2.0},
        {L"2e+", 2.0},       {L"1,5", 1.0},      {L"abc", 0.0},   {L".", 0.0},  {L"-", 0.0},
        {L"", 0.0},          {nullptr, 0.0},     {L"1e-999", 0.0}};
    for (const auto& [text, value] : numbers)
        EXPECT_EQ(_wtof(text), value) << (text ? ToUtf8(text) : "null");
    EXPECT_EQ(_wtof(L"1e999"), HUGE_VAL);
    EXPECT_EQ(_wtof(L"-1e999"), -HUGE_VAL);
    EXPECT_EQ(_wtof(std::wstring(L"0.1")), 0.1);

    EXPECT_EQ(_wtoi(L" 42 apples"), 42);
    EXPECT_EQ(_wtoi(L"-17.9"), -17);
    EXPECT_EQ(_wtoi(L"x1"), 0);
    EXPECT_EQ(_wtoi(L"99999999999999999999"), INT_MAX);
    EXPECT_EQ(_wtoi(L"-99999999999999999999"), INT_MIN);
    EXPECT_EQ(_wtol(L"123456"), 123456L);
    EXPECT_EQ(_wtol(L"99999999999999999999"), LONG_MAX);  // beyond 64 bits too
    EXPECT_EQ(_wtol(L"-99999999999999999999"), LONG_MIN);

    std::size_t used = 0;
    EXPECT_EQ(LeadingDouble("3.25 m", &used), 3.25);
    EXPECT_EQ(used, 4u);
    EXPECT_EQ(LeadingDouble(std::string_view("5.5").substr(0, 1), &used), 5.0);  // only the view
    EXPECT_EQ(used, 1u);
    EXPECT_EQ(LeadingDouble("-m", &used), 0.0);  // a sign alone is no number
    EXPECT_EQ(used, 0u);
}

TEST(Text, FormattingAlwaysWritesAPoint) {
    EXPECT_EQ(FormatC("(%s %lf %lf)", "L", 1.5, -2.0), "(L 1.500000 -2.000000)");
    EXPECT_EQ(FormatW(L"%ls=%g", L"x", 0.25), L"x=0.25");
    EXPECT_EQ(FormatW(L"%d", 7), L"7");
    EXPECT_EQ(FormatW(L"%ls", std::wstring(5000, L'a').c_str()).size(), 5000u);
    // Under a comma locale, when the machine has one.
    const char* previous = std::setlocale(LC_NUMERIC, nullptr);
    const std::string saved = previous ? previous : "C";
    if (!std::setlocale(LC_NUMERIC, "de_DE.UTF-8") && !std::setlocale(LC_NUMERIC, "de_DE")) {
        GTEST_SKIP() << "no comma locale installed";
    }
    EXPECT_EQ(FormatC("%.2f", 1.5), "1.50");
    EXPECT_EQ(FormatW(L"%.1f", 2.5), L"2.5");
    std::setlocale(LC_NUMERIC, saved.c_str());
}

TEST(Locale, OverrideWinsUntilCleared) {
    const LocaleTexts fixed{L",", L",", L".", L"\u20ac"};
    SetLocaleOverride(fixed);
    EXPECT_EQ(CurrentLocaleTexts(), fixed);
    ClearLocaleOverride();
    const LocaleTexts environment = CurrentLocaleTexts();
    EXPECT_NE(environment, fixed);
    EXPECT_EQ(environment, CurrentLocaleTexts());  // read anew, and the same while nothing changed
}

#if !defined(_WIN32)
// The texts follow the environment: a changed locale variable is seen on the next call.
TEST(Locale, EnvironmentChangesAreSeenAtOnce) {
    const char* saved = std::getenv("LC_ALL");
    const std::string before = saved ? saved : "";
    ::setenv("LC_ALL", "C", 1);
    EXPECT_EQ(CurrentLocaleTexts().decimal, L".");
    if (::setenv("LC_ALL", "de_DE.UTF-8", 1) == 0 && CurrentLocaleTexts().decimal == L",") {
        EXPECT_EQ(CurrentLocaleTexts().monetaryDecimal, L",");
        EXPECT_EQ(CurrentLocaleTexts().currencySymbol, L"\u20ac");
    }
    ::setenv("LC_ALL", "C", 1);
    EXPECT_EQ(CurrentLocaleTexts().decimal, L".");
    if (saved) {
        ::setenv("LC_ALL", before.c_str(), 1);
    } else {
        ::unsetenv("LC_ALL");
    }
}
#endif

}  // namespace
}  // namespace quillon::platform
