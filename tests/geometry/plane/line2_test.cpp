#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>

#include "quillon/geometry/plane/plane_types.h"
#include "tests/support/checks.h"

namespace quillon {
namespace {

constexpr double kPi = std::numbers::pi;

using test_support::ExpectNear;

TEST(Vector2Angle, SignedZerosAndAxesNeverGiveMinusPi) {
    const std::pair<Vector2, double> axes[] = {{{0.0, -0.0}, 0.0},        {{-0.0, 0.0}, 0.0},
                                               {{-1.0, -0.0}, kPi},       {{-1.0, 0.0}, kPi},
                                               {{0.0, -2.0}, -kPi / 2.0}, {{-0.0, 3.0}, kPi / 2.0}};
    for (const auto& [v, want] : axes) EXPECT_EQ(v.angle(), want) << v.x << " " << v.y;
    EXPECT_LT(Vector2(-1.0, -1e-300).angle(), 0.0);
    // The turn across the ±pi seam is the short one, in either direction.
    EXPECT_NEAR(Vector2(-1.0, 0.1).angle(Vector2(-1.0, -0.1)), 2.0 * std::atan(0.1), 1e-15);
    EXPECT_NEAR(Vector2(-1.0, -0.1).angle(Vector2(-1.0, 0.1)), -2.0 * std::atan(0.1), 1e-15);
    EXPECT_EQ(Vector2(1.0, 0.0).angle(Vector2(-1.0, -0.0)), kPi);

    std::mt19937 gen(7);
    std::uniform_real_distribution<double> u(-10.0, 10.0);
    for (int i = 0; i < 200; ++i) {
        const Vector2 v(u(gen), u(gen)), w(u(gen), u(gen));
        const double turn = v.angle(w);
        ASSERT_LE(std::fabs(turn), kPi);
        // v turned by the angle points along w.
        ExpectNear((v.get_normalized() << Rotate2(turn)).pnt(), w.get_normalized().pnt());
    }
    Vector2 z;
    EXPECT_EQ(z.normalize().length(), 0.0);  // left unchanged, no NaN
}

TEST(Line2, OffsetsMoveLeftOfTheDirection) {
    // The three offset forms agree: their points lie at signed distance -offset from the base line.
    std::mt19937 gen(11);
    std::uniform_real_distribution<double> u(-5.0, 5.0);
    for (int i = 0; i < 100; ++i) {
        const Point2 p(u(gen), u(gen));
        const double ang = u(gen), off = u(gen), len = 1.0 + std::fabs(u(gen));
        const Vector2 dir = Vector2().set2(len, ang);
        for (const Line2& f : {Line2(p, p + dir, off), Line2(p, dir, off), Line2(p, ang, off)}) {
            ASSERT_TRUE(f.is_line());
            const Point2 on = f.projection(Point2(u(gen), u(gen))).first;
            EXPECT_NEAR(f.signed_distance(on), 0.0, 1e-9);
            EXPECT_NEAR(Line2(p, dir).signed_distance(on), -off, 1e-9);
        }
    }
}

// Without a known norm the side test compares squares, never taking a root; near the band's
// edges both branches must draw it at the same place.
TEST(Line2, SideAgreesWithAndWithoutKnownNormAndNeverTakesARoot) {
    std::mt19937 gen(3);
    std::uniform_real_distribution<double> u(-100.0, 100.0);
    const double tol = 1e-3;
    for (int i = 0; i < 300; ++i) {
        const double scale = std::pow(10.0, u(gen) / 25.0);  // un-normalised coefficients
        const Line2 fresh(Point2(u(gen), u(gen)), Vector2(u(gen), u(gen)) * scale);
        const Line2 known = fresh;
        ASSERT_GT(known._dsqrt(), 0.0);
        const Point2 foot = known.projection(Point2(u(gen), u(gen))).first;
        const Vector2 n = Vector2(known.a, known.b).get_normalized();
        for (double k : {-2.0, -0.5, 0.5, 2.0}) {
            const Point2 q = foot + n * (k * tol);
            const int want = k < -1.0 ? -1 : (k > 1.0 ? 1 : 0);
            EXPECT_EQ(Line2(fresh.a, fresh.b, fresh.c).side(q, tol), want);
            EXPECT_EQ(fresh.side(q, tol), want);
            EXPECT_EQ(known.side(q, tol), want);
        }
        EXPECT_FALSE(fresh.norm_known);
    }
    // Negative tolerance is the default 1e-10.
    const Line2 x(Point2(0, 0), Point2(1, 0));
    EXPECT_EQ(x.side(Point2(0.5, 5e-11), -1.0), 0);
    EXPECT_EQ(x.side(Point2(0.5, 5e-10), -1.0), -1);
}

TEST(Line2, CachedNormsStayRightThroughDerivedLines) {
    Line2 l(Point2(0, 0), Point2(3, 4));
    EXPECT_EQ(l.side(Point2(1, 0)), 1);
    EXPECT_EQ(l.signed_distance2(Point2(0, 5)), -9.0);  // left of the direction: negative
    EXPECT_EQ(l.distance(Point2(0, 5)), 3.0);           // the cached norm is right
    // Parallel, perpendicular and reverse keep a² + b², so the caches stay right.
    l.set_parallel(Point2(1, 1)).set_perpendicular(Point2(2, 0)).set_reverse();
    EXPECT_EQ(l.signed_distance(Point2(2, 5)), -4.0);
    ExpectNear(l.direction().pnt(), Point2(4, -3));  // (3,4) turned to (-4,3), then reversed
    l.set_normalize();
    EXPECT_DOUBLE_EQ(l.a * l.a + l.b * l.b, 1.0);
    EXPECT_NEAR(l.signed_distance(Point2(2, 5)), -4.0, 1e-15);
}

TEST(Line2, DegenerateLinesFailEverywhere) {
    const Point2 p(2.0, 3.0), q(7, 1);
    const Line2 good(Point2(0, 0), Point2(1e3, 1e3));  // large coefficients: det > tol
    for (const Line2& l : {Line2(p, p), Line2(p, Vector2(0, 0)), Line2(1e-11, 0, 5), Line2()}) {
        EXPECT_TRUE(!l.is_line() && l.state == -1 && !static_cast<bool>(l));
        EXPECT_EQ(l.signed_distance(q) + l.distance(q) + l.signed_distance2(q) + l.distance2(q) +
                      l._dsqrt(),
                  0.0);
        EXPECT_EQ(l.side(q), 0);
        EXPECT_FALSE(l.projection(q).second || l.vprojection(q).second);
        EXPECT_FALSE(l.intersection(good).second || good.intersection(l).second);
        EXPECT_FALSE(l.intersection(Sector2(Point2(-1, 0), Point2(1, 0))));
        EXPECT_FALSE(l.get_normalize().is_line() || l.get_bisector(good, true).is_line() ||
                     good.get_bisector(l, true).is_line());
        // The reflection in a degenerate line is refused: the transform stays as it was.
        Isometry2 m(Rotate2(0.3));
        m.set(l);
        EXPECT_EQ(m.rotate().sin, Rotate2(0.3).sin);
    }
    const Ray2 r(p, Vector2(0, 0));
    EXPECT_FALSE(r.is_ray() || r.intersection(good).second);
    EXPECT_FALSE(Ray2(Point2(0, 1), Point2(1, 0)).intersection(r).second);
    const Sector2 s(p, p);
    EXPECT_FALSE(s.has_length() || s.intersection(good).second);
    EXPECT_FALSE(s.intersection(Sector2(Point2(0, 0), Point2(5, 5))).second);
    EXPECT_FALSE(s.intersection(Ray2(Point2(0, 0), Point2(5, 5))).second);
    // The single point is its own end (unless ends are excluded); anything else is outside.
    EXPECT_TRUE(s.contains(p) && !s.contains(p, -1.0, true) && !s.contains(Point2(2.5, 3.0)));
}

TEST(Line2, IntersectionToleranceAppliesToRawDeterminant) {
    // Two perpendicular lines with tiny coefficients: det = 1e-12 counts as parallel.
    const Line2 h(0.0, 1e-6, -1e-6), v(1e-6, 0.0, -2e-6);
    EXPECT_FALSE(h.intersection(v).second);
    const auto x = h.get_normalize().intersection(v.get_normalize());
    ASSERT_TRUE(x.second);
    ExpectNear(x.first, Point2(2, 1));
    EXPECT_TRUE(h.intersection(v, 1e-13).second);
    // Parallel lines never meet.
    EXPECT_FALSE(
        Line2(Point2(0, 0), Point2(1, 1)).intersection(Line2(Point2(0, 1), Point2(2, 3))).second);
    // A vertical line has no vertical projection; others put P.x on the line.
    EXPECT_FALSE(Line2(Point2(1, 0), Point2(1, 5)).vprojection(Point2(3, 3)).second);
    const auto vp = Line2(Point2(0, 1), Point2(2, 2)).vprojection(Point2(4, 0));
    EXPECT_TRUE(vp.second && vp.first.y == 3.0);
}

TEST(Line2, ColinearityComparesRawCoefficients) {
    const Line2 l(Point2(0, 0), Point2(2, 1));
    EXPECT_FALSE(
        l.isColinear(l.get_reverse()));  // opposite directions are deliberately not colinear
    EXPECT_FALSE(l.isColinear(l.get_normalize()));  // scaled coefficients differ until normalised
    EXPECT_TRUE(l.get_normalize().isColinear(Line2(Point2(4, 2), Point2(6, 3)).get_normalize()));
    EXPECT_TRUE(l.isColinear(Line2(l.a + 5e-11, l.b, l.c - 5e-11)));
    EXPECT_FALSE(l.isColinear(Line2(l.a, l.b, l.c + 1e-9)));
}

TEST(Line2, BisectorsAreEquidistantWithTheConventionalSigns) {
    std::mt19937 gen(5);
    std::uniform_real_distribution<double> u(-3.0, 3.0);
    for (int i = 0; i < 100; ++i) {
        const Line2 l1(Point2(u(gen), u(gen)), Point2(u(gen), u(gen)));
        const Line2 l2(Point2(u(gen), u(gen)), Point2(u(gen), u(gen)));
        if (std::fabs(l1.get_normalize().direction() % l2.get_normalize().direction()) < 1e-3)
            continue;
        const Line2 sum = l1.get_bisector(l2, true), diff = l1.get_bisector(l2, false);
        for (const Line2* b : {&sum, &diff}) {
            if (!b->is_line()) continue;
            const Point2 p = b->projection(Point2(u(gen), u(gen))).first;
            // On the sum the distances cancel, on the difference they are equal.
            const double d1 = l1.signed_distance(p), d2 = l2.signed_distance(p);
            EXPECT_NEAR(b == &sum ? d1 + d2 : d1 - d2, 0.0, 1e-9);
        }
    }
    // The sum bisects the angle between the directions.
    const Line2 ox(Point2(0, 0), Point2(1, 0)), oy(Point2(0, 0), Point2(0, 1));
    EXPECT_NEAR(ox.get_bisector(oy, true).angle(), kPi / 4.0, 1e-15);
    EXPECT_FALSE(ox.get_bisector(ox, false).is_line());
}

TEST(Sector2, ContainsAndProjectionAtTheEnds) {
    const Sector2 s(Point2(0, 0), Point2(4, 0));
    const double tol = 1e-3;
    EXPECT_TRUE(s.contains(Point2(4, 0), tol, false));
    EXPECT_FALSE(s.contains(Point2(4, 0), tol, true));
    EXPECT_TRUE(s.contains(Point2(4.0005, 0), tol, false));  // within tol of the end: the end
    EXPECT_FALSE(s.contains(Point2(4.0005, 0), tol, true));
    EXPECT_FALSE(s.contains(Point2(4.002, 0), tol, false));
    EXPECT_TRUE(s.contains(Point2(2, 0.0009), tol, true));
    EXPECT_FALSE(s.contains(Point2(2, 0.002), tol, false));

    EXPECT_TRUE(s.projection(Point2(4, 3)).second);  // the end is inside the closed segment
    const auto out = s.projection(Point2(5, 3));
    EXPECT_FALSE(out.second);
    EXPECT_EQ(out.first.x, 5.0);  // the foot comes back anyway
    const Sector2 m = s.get_move(Vector2(1, 1)).get_reverse();
    EXPECT_EQ(m.get_beg().x, 5.0);
    EXPECT_EQ(m.line().direction().x, -4.0);  // rebuilt from the new begin to the new end
}

TEST(Sector2, LineFormUsesTolSegmentFormUsesTolSquared) {
    const Sector2 s(Point2(0, 0), Point2(1, 0));
    const double delta = 1e-3, tol = 1e-2;
    const Sector2 cross(Point2(1 + delta, -1), Point2(1 + delta, 1));
    // The crossing lies delta beyond the end: (X-b)·(e-X) ≈ -1e-3, between -tol and -tol².
    EXPECT_TRUE(s.intersection(cross.line(), tol).second);
    EXPECT_FALSE(s.intersection(cross, tol).second);
    EXPECT_TRUE(s.intersection(cross, 0.04).second);

    // Segments that share only an end point meet exactly there.
    const Sector2 a(Point2(0, 0), Point2(1, 0)), b(Point2(1, 0), Point2(1, 1));
    const auto x = a.intersection(b);
    EXPECT_TRUE(x.second && x.first.x == 1.0 && x.first.y == 0.0);
    EXPECT_TRUE(b.intersection(a).second);
    EXPECT_FALSE(a.intersection(Sector2(Point2(1 + 1e-9, 0), Point2(1 + 1e-9, 1))).second);

    // Segment and ray: both ranges are closed at their ends, exactly.
    EXPECT_FALSE(a.intersection(Ray2(Point2(0.5, 1e-12), Vector2(0, 1))).second);
    EXPECT_TRUE(a.intersection(Ray2(Point2(1, 1), Vector2(0, -1))).second);
    EXPECT_FALSE(a.intersection(Ray2(Point2(1 + 1e-9, 1), Vector2(0, -1))).second);

    // The line tests the side of each end; strict excludes touching.
    const Line2 y(Point2(1, -5), Point2(1, 5));
    EXPECT_TRUE(y.intersection(a, false));
    EXPECT_FALSE(y.intersection(a, true));
    EXPECT_TRUE(y.intersection(Sector2(Point2(0, 0), Point2(2, 1)), true));
    EXPECT_FALSE(y.intersection(Sector2(Point2(2, 0), Point2(3, 1)), false));
}

TEST(Ray2, RangeRulesAndAsymmetricRayRayRule) {
    const Ray2 r(Point2(0, 0), Vector2(1, 0));
    EXPECT_FALSE(r.projection(Point2(-2, 3)).second);
    EXPECT_TRUE(r.projection(Point2(0, 3)).second);  // the start itself is on the ray
    EXPECT_TRUE(r.intersection(Line2(Point2(0, -1), Point2(0, 1))).second);
    EXPECT_FALSE(r.intersection(Line2(Point2(-1e-9, -1), Point2(-1e-9, 1))).second);

    // Crossing in both interiors: refused.
    const Ray2 up(Point2(2, -1), Vector2(0, 1));
    EXPECT_FALSE(r.intersection(up).second);
    // Crossing at the other ray's start: accepted.
    const Ray2 fromStart(Point2(2, 0), Vector2(1, 1));
    const auto x = r.intersection(fromStart);
    EXPECT_TRUE(x.second && x.first.x == 2.0);
    // Swapped, the crossing is interior to the second ray: refused.
    EXPECT_FALSE(fromStart.intersection(r).second);
    // At the other ray's start but behind this ray's start: refused.
    EXPECT_FALSE(r.intersection(Ray2(Point2(-2, 0), Vector2(1, 1))).second);

    // Sine/cosine form, moving the start keeps the direction, reversing turns it.
    Ray2 sc(Point2(1, 1), 0.6, 0.8);
    sc.start(Point2(5, 5));
    EXPECT_NEAR(sc.line().signed_distance(Point2(5.8, 5.6)), 0.0, 1e-15);
    const Ray2 back = sc.get_move(Vector2(1, 0)).get_reverse();
    EXPECT_TRUE(back.start().x == 6.0 && back.direction().x == -0.8 && back.direction().y == -0.6);
}

TEST(Collinear, ShortSidesOrDistanceFromTheLongestSide) {
    const double tol = 1e-3;
    EXPECT_TRUE(
        Collinear(Point2(0, 0), Point2(0, 5e-4), Point2(3, 7), tol));  // two points coincide
    EXPECT_TRUE(Collinear(Point2(0, 0), Point2(10, 0), Point2(5, 9e-4), tol));
    EXPECT_FALSE(Collinear(Point2(0, 0), Point2(10, 0), Point2(5, 1.1e-3), tol));
    // The order of the points does not matter: the longest side is the base.
    EXPECT_TRUE(Collinear(Point2(5, 9e-4), Point2(0, 0), Point2(10, 0), tol));
    EXPECT_TRUE(Collinear(Point2(0, 0), Point2(5, 9e-4), Point2(10, 0), tol));
    EXPECT_FALSE(Collinear(Point2(0, 0), Point2(1, 0), Point2(0, 1), -1.0));
}

}  // namespace
}  // namespace quillon
