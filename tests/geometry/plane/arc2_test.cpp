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

TEST(Arc2, AobGoesTheRequestedWayInAllFourTurningCases) {
    const Point2 o(3.0, -2.0);
    const Point2 east = o + Vector2(2, 0), north = o + Vector2(0, 2);
    struct Case {
        Point2 a, b;
        bool clockwise;
        double sweep;
    };
    const Case cases[] = {
        {east, north, false, kPi / 2.0},        // counter-clockwise, short way
        {north, east, false, 3.0 * kPi / 2.0},  // counter-clockwise, long way
        {north, east, true, -kPi / 2.0},        // clockwise, short way
        {east, north, true, -3.0 * kPi / 2.0},  // clockwise, long way
    };
    for (const Case& c : cases) {
        const Arc2 arc(c.a, o, c.b, c.clockwise);
        ASSERT_TRUE(arc.is_valid());
        EXPECT_NEAR(arc.get_angle(), c.sweep, 1e-15);
        EXPECT_EQ(arc.get_circle().get_radius(), 2.0);
        ExpectNear(arc.get_begin(), c.a);
        ExpectNear(arc.get_end(), c.b);
    }
    // The same point asked clockwise is a full clockwise turn.
    EXPECT_NEAR(Arc2(east, o, east, true).get_angle(), -2.0 * kPi, 1e-15);
    EXPECT_EQ(Arc2(east, o, east, false).get_angle(), 0.0);
}

TEST(Arc2, AbcPassesThroughTheMiddlePointInAllFourTurningCases) {
    const Point2 o(-1.0, 4.0);
    const double r = 3.0;
    auto at = [&](double ang) { return o + Vector2().set2(r, ang); };
    struct Case {
        double a, c, b, sweep;
    };
    const Case cases[] = {
        {0.0, kPi / 4.0, kPi / 2.0, kPi / 2.0},     // counter-clockwise, short
        {0.0, 0.2, 0.5, 0.5},                       // counter-clockwise, under a radian
        {0.0, kPi, -kPi / 2.0, 3.0 * kPi / 2.0},    // counter-clockwise, long
        {0.0, -kPi / 4.0, -kPi / 2.0, -kPi / 2.0},  // clockwise, short
        {0.0, kPi, kPi / 2.0, -3.0 * kPi / 2.0},    // clockwise, long
    };
    for (const Case& c : cases) {
        const Arc2 arc(at(c.a), at(c.b), at(c.c));
        ASSERT_TRUE(arc.is_valid());
        ExpectNear(arc.get_circle().get_center(), o, 1e-12);
        EXPECT_NEAR(arc.get_circle().get_radius(), r, 1e-12);
        EXPECT_NEAR(arc.get_angle(), c.sweep, 1e-12);
        ExpectNear(arc.get_end(), at(c.b), 1e-12);
    }
    // Collinear points: invalid, and the arc keeps what it had.
    Arc2 arc(at(0.0), at(1.0), at(2.0));
    arc.setABC(Point2(0, 0), Point2(2, 2), Point2(1, 1));
    EXPECT_FALSE(arc.is_valid());
    ExpectNear(arc.get_circle().get_center(), o, 1e-12);

    // The two-point form takes the start from P; Q is ignored, the sweep fixes the end.
    const Arc2 pq(Circle2(o, r), at(1.0), at(2.5), 0.5);
    EXPECT_TRUE(pq.is_valid());
    EXPECT_NEAR(pq.get_startAngle(), 1.0, 1e-14);
    ExpectNear(pq.get_end(), at(1.5), 1e-12);
    EXPECT_FALSE(Arc2().is_valid());
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
