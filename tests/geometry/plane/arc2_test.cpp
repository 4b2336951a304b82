#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

#include "quillon/geometry/plane/plane_types.h"
#include "tests/support/checks.h"

namespace quillon {
namespace {

constexpr double kPi = std::numbers::pi;

using test_support::ExpectNear;

void ExpectBox(const BoundRect2& b, const Point2& lb, const Point2& rt, double tol = 1e-12) {
    ExpectNear(b.get_LB(), lb, tol);
    ExpectNear(b.get_RT(), rt, tol);
}

TEST(Arc2, EveryFormGoesTheRequestedWayInEveryTurningCase) {
    const Point2 o(3.0, -2.0);
    const double r = 2.0;
    auto at = [&](double ang) { return o + Vector2().set2(r, ang); };
    struct Case {
        Arc2 arc;
        double start, sweep;
    };
    const Case cases[] = {
        // From A about O to B, the way asked: short and long, both ways; the same point asked
        // clockwise is a full clockwise turn.
        {Arc2(at(0.0), o, at(kPi / 2.0), false), 0.0, kPi / 2.0},
        {Arc2(at(kPi / 2.0), o, at(0.0), false), kPi / 2.0, 3.0 * kPi / 2.0},
        {Arc2(at(kPi / 2.0), o, at(0.0), true), kPi / 2.0, -kPi / 2.0},
        {Arc2(at(0.0), o, at(kPi / 2.0), true), 0.0, -3.0 * kPi / 2.0},
        {Arc2(at(0.0), o, at(0.0), true), 0.0, -2.0 * kPi},
        {Arc2(at(0.0), o, at(0.0), false), 0.0, 0.0},
        // From A to B through the third point, in all four turning cases and under a radian.
        {Arc2(at(0.0), at(kPi / 2.0), at(kPi / 4.0)), 0.0, kPi / 2.0},
        {Arc2(at(0.0), at(0.5), at(0.2)), 0.0, 0.5},
        {Arc2(at(0.0), at(-kPi / 2.0), at(kPi)), 0.0, 3.0 * kPi / 2.0},
        {Arc2(at(0.0), at(-kPi / 2.0), at(-kPi / 4.0)), 0.0, -kPi / 2.0},
        {Arc2(at(0.0), at(kPi / 2.0), at(kPi)), 0.0, -3.0 * kPi / 2.0},
        // The start from P; Q is ignored, the sweep fixes the end.
        {Arc2(Circle2(o, r), at(1.0), at(2.5), 0.5), 1.0, 0.5},
    };
    for (const Case& k : cases) {
        SCOPED_TRACE(testing::Message() << k.start << " " << k.sweep);
        ASSERT_TRUE(k.arc.is_valid());
        ExpectNear(k.arc.get_circle().get_center(), o);
        EXPECT_NEAR(k.arc.get_circle().get_radius(), r, 1e-12);
        EXPECT_NEAR(k.arc.get_angle(), k.sweep, 1e-12);
        ExpectNear(k.arc.get_begin(), at(k.start));
        ExpectNear(k.arc.get_end(), at(k.start + k.sweep));
    }
    // Collinear points: invalid, and the arc keeps what it had.
    Arc2 arc = cases[0].arc;
    arc.setABC(Point2(0, 0), Point2(2, 2), Point2(1, 1));
    EXPECT_FALSE(arc.is_valid() || Arc2().is_valid());
    ExpectNear(arc.get_circle().get_center(), o);
}

// The bounding box of a densely sampled arc.
BoundRect2 Sampled(const Point2& c, double r, double a0, double sweep) {
    BoundRect2 b;
    const int n = 20000;
    for (int i = 0; i <= n; ++i) b << c + Vector2().set2(r, a0 + sweep * i / n);
    return b;
}

TEST(BoundRect2, ArcBoundsMatchSampling) {
    std::mt19937 gen(17);
    std::uniform_real_distribution<double> u(-1.0, 1.0);
    for (int i = 0; i < 300; ++i) {
        const Point2 c(5 * u(gen), 5 * u(gen));
        const double r = 1.0 + std::fabs(u(gen));
        const double a0 = kPi * u(gen);
        const double sweep = 1.5 * kPi * u(gen);  // the five-step cap never bites below 3π/2
        BoundRect2 b, p;
        b.arc(c, r, a0, sweep);
        const BoundRect2 s = Sampled(c, r, a0, sweep);
        ExpectBox(b, s.get_LB(), s.get_RT(), r * 1e-7);  // sampling misses extremes by this much
        p.arc(c, c + Vector2().set2(r, a0), sweep);      // the start-point form agrees
        ExpectBox(p, b.get_LB(), b.get_RT());
    }
}

TEST(BoundRect2, Arc90FiveStepCapAndAsymmetricStart) {
    const Point2 c(10, 20);
    // Full circle from 0: arc_90 itself adds π/2, π and 3π/2; the end point (2π) comes from arc.
    BoundRect2 q, full, pos, neg, quarter, half;
    q.arc_90(c, 1.0, 0.0, 2.0 * kPi);
    ExpectBox(q, Point2(9, 19), Point2(10, 21));
    EXPECT_FALSE(BoundRect2().arc_90(c, 1.0, 0.0, -kPi / 2.0).is_valid());  // no inner quadrant
    full.arc(c, 1.0, 0.0, 2.0 * kPi);
    ExpectBox(full, Point2(9, 19), Point2(11, 21));
    // Full circle from 0.3: the positive branch steps back first and runs out of steps before
    // the +x extreme; the negative branch starts where it is and reaches all four.
    pos.arc(c, 1.0, 0.3, 2.0 * kPi);
    neg.arc(c, 1.0, 0.3, -2.0 * kPi);
    EXPECT_NEAR(pos.get_RT().x, 10.0 + std::cos(0.3), 1e-12);
    ExpectBox(neg, Point2(9, 19), Point2(11, 21));
    // Negative sweeps: a clockwise quarter stays in its quadrant, a clockwise half crosses -y.
    quarter.arc(c, 1.0, 0.0, -kPi / 2.0);
    ExpectBox(quarter, Point2(10, 19), Point2(11, 20));
    half.arc(c, 1.0, kPi / 2.0, -kPi);
    ExpectBox(half, Point2(10, 19), Point2(11, 21));
}

TEST(BoundRect2, PointsUnionsAndEmptiness) {
    BoundRect2 b, empty, other;
    Point2 lb(7, 7), rt(7, 7);
    EXPECT_FALSE(b.get_rect(lb, rt) || static_cast<bool>(empty + empty));
    EXPECT_EQ(lb.x, 7.0);
    b.point(-2, 8).point(Point2(4, -1)) << Point2(1, 5);
    EXPECT_TRUE(b.get_rect(lb, rt) && lb.x == -2.0 && rt.y == 8.0);
    other.circle(Point2(10, 0), 0.5);
    ExpectBox(other, Point2(9.5, -0.5), Point2(10.5, 0.5));
    BoundRect2 all = empty + b + other + empty;
    all.move_by(Vector2(1, 1));
    ExpectBox(all, Point2(-1, 0), Point2(11.5, 9));
    EXPECT_EQ(all.get_size().y, 9.0);
    all.reset();
    EXPECT_FALSE(all.is_valid());
}

}  // namespace
}  // namespace quillon
