#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <sstream>
#include <string>

#include "quillon/units/vunit.h"

namespace quillon::munit {
namespace {

std::wstring Text(const VUnit& v) {
    std::wostringstream out;
    out << v;
    return out.str();
}

TEST(VUnitTypes, EveryNamedTypeMapsBackToItselfMomentAndEnergyShareExponents) {
    // The exponents (m, kg, s) of the named types 1 to 14, written out by hand. Moment and energy
    // share theirs; the lookup finds moment, the first of the two.
    const int exponents[14][3] = {{0, 0, 0},  {1, 0, 0},   {2, 0, 0},  {3, 0, 0},  {0, 1, 0},
                                  {0, 0, 1},  {1, 0, -1},  {1, 0, -2}, {1, 1, -2}, {2, 1, -2},
                                  {0, 0, -1}, {-1, 1, -2}, {2, 1, -2}, {2, 1, -3}};
    for (int t = 1; t <= 14; ++t) {
        const auto type = static_cast<SUnit::Type>(t);
        const int* e = exponents[t - 1];
        EXPECT_EQ(SUnit(type), SUnit(e[0], e[1], e[2])) << t;
        EXPECT_EQ(SUnit(e[0], e[1], e[2]).type(), t == SUnit::energy ? SUnit::moment : type) << t;
        const VUnit v(2.0, type);
        EXPECT_TRUE(v.is_valid() && v.unit() == SUnit(type) && v.to_mks() == 2.0) << t;
    }
    EXPECT_EQ(SUnit(-3, 1, 0).type(), SUnit::none);
    EXPECT_EQ(SUnit(0, 0, 2).type(), SUnit::none);
    EXPECT_TRUE(SUnit(static_cast<SUnit::Type>(15)) == SUnit() && SUnit(SUnit::none) == SUnit());
    for (int t : {0, -1, 15, 101})
        EXPECT_FALSE(VUnit(1.0, static_cast<SUnit::Type>(t)).is_valid()) << t;
    SUnit u(1, 2, 3);
    u.set();
    EXPECT_EQ(u.type(), SUnit::dimensionless);
    EXPECT_EQ(VUnit(L"J").type(), SUnit::moment);
}

TEST(VUnitArithmetic, ValuesMultiplyAndExponentsAdd) {
    const VUnit force(L"3 kN"), arm(L"2 m");
    EXPECT_EQ((force * arm).to_mks(), 6000.0);
    EXPECT_EQ((force * arm).type(), SUnit::moment);
    EXPECT_TRUE((2.0 * arm).to_mks() == 4.0 && (arm * 2.0).unit() == arm.unit());
    EXPECT_EQ((arm / 4.0).to_mks(), 0.5);
    EXPECT_EQ((1.0 / VUnit(L"s")).type(), SUnit::frequency);
    VUnit v(L"kN");
    v *= 2.0;
    v /= VUnit(L"mm2");
    EXPECT_DOUBLE_EQ(v.to_mks(), 2e9);
    EXPECT_EQ(v.type(), SUnit::stress);

    std::mt19937 random(5);
    std::uniform_int_distribution<int> exps(-4, 4);
    std::uniform_real_distribution<double> values(0.1, 10.0);
    for (int i = 0; i < 300; ++i) {
        const VUnit a(values(random), exps(random), exps(random), exps(random));
        const VUnit b(values(random), exps(random), exps(random), exps(random));
        const int n = exps(random);
        // (a b)^n = a^n b^n, exponents exactly, values to rounding.
        const VUnit left = (a * b).pow(n);
        const VUnit right = a.pow(n) * b.pow(n);
        EXPECT_EQ(left.unit(), right.unit());
        EXPECT_NEAR(left.to_mks(), right.to_mks(), 1e-9 * std::fabs(right.to_mks()));
        // a b / b = a.
        const VUnit back = a * b / b;
        EXPECT_EQ(back.unit(), a.unit());
        EXPECT_NEAR(back.to_mks(), a.to_mks(), 1e-12 * a.to_mks());
    }
}

TEST(VUnitArithmetic, PowersAndErrorFlags) {
    const VUnit mm(L"mm");
    EXPECT_EQ(mm.pow(2).to_mks(), 0.001 * 0.001);  // the square is a product
    EXPECT_EQ(mm.pow(2).type(), SUnit::area);
    EXPECT_TRUE(mm.pow(0).to_mks() == 1.0 && mm.pow(0).type() == SUnit::dimensionless);
    EXPECT_DOUBLE_EQ(mm.pow(-3).to_mks(), 1e9);
    VUnit v(L"s");
    v ^= -1;
    EXPECT_EQ(v.type(), SUnit::frequency);

    const VUnit bad(L"(m)");
    for (const VUnit& r : {bad, bad * mm, mm * bad, mm / bad, 2.0 / bad, bad.pow(2)})
        EXPECT_FALSE(r.is_valid());
    VUnit reset(L"kN");
    reset.seterr();
    EXPECT_TRUE(!reset.is_valid() && reset.to_mks() == 1.0 && reset.unit() == SUnit());
    // Exponents that would leave 32 bits give an invalid quantity.
    const VUnit huge(1.0, 2147483647, 0, 0);
    for (const VUnit& r :
         {huge * VUnit(L"m"), huge.pow(2), VUnit(1.0, 0, 0, -2147483647 - 1) / VUnit(L"s")})
        EXPECT_FALSE(r.is_valid());
}

TEST(VUnitText, PositiveExponentsAfterAStarNegativeOnesAfterASlash) {
    // clang-format off
    const std::pair<VUnit, const wchar_t*> cases[] = {
        {VUnit(1000, 1, 1, -2), L"1000*m*kg/s^2"}, {VUnit(1, 1, 0, 0), L"m"}, {VUnit(5.0), L"5"},
        {VUnit(1, 0, 0, -1), L"1/s"}, {VUnit(1, -3, 1, 0), L"kg/m^3"}, {VUnit(L"(m)"), L"[BAD-UNIT]"},
        {VUnit(2, -1, 0, -2), L"2/m*s^2"}, {VUnit(2.5, 2, 0, 0), L"2.5*m^2"},
        {VUnit(1, 0, 0, -2147483647 - 1), L"1/s^2147483648"}};
    // clang-format on
    for (const auto& [v, text] : cases) EXPECT_EQ(Text(v), text);
    EXPECT_EQ(SUnit(1, 1, -2).ToString() + L" " + SUnit().ToString(), L"m*kg/s^2 1");

    // What is printed reads back as the same quantity.
    std::mt19937 random(9);
    std::uniform_int_distribution<int> exps(-3, 3);
    const double values[] = {1.0, 2.0, -4.0, 0.25, 1500.0, 2.5e6, 1e-5};
    for (int i = 0; i < 400; ++i) {
        const VUnit v(values[random() % std::size(values)], exps(random), exps(random),
                      exps(random));
        const std::wstring text = Text(v);
        SCOPED_TRACE(testing::PrintToString(text));
        const VUnit back(text.c_str());
        ASSERT_TRUE(back.is_valid());
        EXPECT_EQ(back.unit(), v.unit());
        EXPECT_DOUBLE_EQ(back.to_mks(), v.to_mks());
    }
}

}  // namespace
}  // namespace quillon::munit
