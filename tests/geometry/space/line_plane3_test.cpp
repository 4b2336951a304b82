#include <gtest/gtest.h>

#include <cmath>

#include "space_test_support.h"

namespace quillon {
namespace {

using space_test::ExpectNear;
using space_test::Random;

TEST(Plane3, SideAgreesWithAndWithoutTheCachedRoot) {
    Random rnd(29);
    for (int i = 0; i < 500; ++i) {
        const Plane3 pl(rnd.point(), rnd.vector(3.0));
        const Point3 p = i % 5 == 0 ? pl.projection(rnd.point()).first : rnd.point();
        Plane3 fresh = pl;
        const int before = fresh.side(p);
        EXPECT_FALSE(fresh.root_known) << "the side test takes no root";
        fresh.denom_s();
        ASSERT_TRUE(fresh.root_known);
        EXPECT_EQ(fresh.side(p), before);
        const double s = pl.signed_distance(p);
        EXPECT_EQ(before, s > 1e-10 ? 1 : (s < -1e-10 ? -1 : 0));
        EXPECT_NEAR(pl.signed_distance2(p), s * std::fabs(s), 1e-12);
    }
    // Points straddling the 1e-10 band decide the same way in both branches.
    for (double off : {0.9e-10, 1.1e-10, -0.9e-10, -1.1e-10}) {
        Plane3 pl(Point3(0, 0, 1), Vector3(0, 0, 3));
        const int noRoot = pl.side(Point3(5, 5, 1 + off));
        pl.denom_s();
        EXPECT_EQ(pl.side(Point3(5, 5, 1 + off)), noRoot) << off;
        EXPECT_EQ(noRoot, std::fabs(off) > 1e-10 ? (off > 0 ? 1 : -1) : 0) << off;
    }
}

TEST(Plane3, DegeneratePlanesAnswerZeroAndFalse) {
    // Three collinear points.
    const Plane3 flat(Point3(0, 0, 0), Point3(1, 1, 1), Point3(2, 2, 2));
    EXPECT_EQ(flat.side(Point3(5, 0, 0)) + flat.distance(Point3(5, 0, 0)), 0.0);
    EXPECT_FALSE(flat.is_plane() || flat.get(nullptr, static_cast<Point3*>(nullptr)) ||
                 flat.projection(Point3(1, 0, 0)).second ||
                 flat.intersection(Plane3(Point3(), Vector3(0, 0, 1))).second ||
                 Line3(Point3(), Vector3(0, 0, 1)).intersection(flat).second);
}

TEST(Plane3, SetNormalizeKeepsTheOffsetUnscaled) {
    Plane3 pl(Vector3(0, 0, 2), -4.0);  // z = 2
    pl.set_normalize();
    ExpectNear(pl.normal(), Vector3(0, 0, 1), 0.0);
    EXPECT_EQ(pl.d, -4.0) << "the offset deliberately stays: the plane moves to z = 4";
    EXPECT_EQ(pl.denom_2(), 1.0);
    EXPECT_EQ(pl.side(Point3(0, 0, 4)), 0);
    Point3 foot;
    ASSERT_TRUE(pl.get(nullptr, &foot));
    ExpectNear(foot, Point3(0, 0, 4));
}

TEST(Plane3, BothPlaneIntersectionsLieInBothPlanes) {
    Random rnd(31);
    for (int i = 0; i < 300; ++i) {
        const Plane3 a(rnd.point(), rnd.vector()), b(rnd.point(), rnd.vector());
        const auto [l1, ok1] = a.intersection(b);
        const auto [l2, ok2] = a.intersectionEx(b);
        ASSERT_TRUE(ok1 && ok2);
        for (const Line3& l : {l1, l2}) {
            for (double t : {0.0, 1.0, -3.0}) {
                const Point3 p = l.origin() + l.direction() * t;
                EXPECT_NEAR(a.distance(p), 0.0, 1e-9);
                EXPECT_NEAR(b.distance(p), 0.0, 1e-9);
            }
        }
        EXPECT_NEAR(l1.direction().get_normalized() * l2.direction().get_normalized(), 1.0, 1e-12);
        // The first origin is the line's point nearest to the global origin.
        EXPECT_NEAR(l1.origin().vec() * l1.direction(), 0.0, 1e-9);
        EXPECT_NEAR(l1.distance(Point3::_OO), l1.origin().distance(), 1e-9);
    }
    // Cramer's rule drops the coordinate of the smallest determinant; ties keep xy, then xz.
    const Plane3 x1(Vector3(1, 0, 0), -1.0), yz2(Vector3(0, 1, 1), -2.0);
    EXPECT_EQ(x1.intersectionEx(yz2).first.origin().z, 0.0);  // |Dxy| = |Dxz| = 1
    const Plane3 xy1(Vector3(1, 1, 0), -1.0), z3(Vector3(0, 0, 1), -3.0);
    ExpectNear(xy1.intersectionEx(z3).first.origin(), Point3(1, 0, 3), 0.0);  // |Dxz| = |Dyz|
    ExpectNear(xy1.intersection(z3).first.origin(), Point3(0.5, 0.5, 3));
    const Plane3 y2(Vector3(0, 1, 0), -2.0), xz3(Vector3(1, 0, 1), -3.0);
    ExpectNear(y2.intersectionEx(xz3).first.origin(), Point3(3, 2, 0), 0.0);  // |Dxy| = |Dyz|

    // Parallel planes give a degenerate line and false in both routines.
    const Plane3 p1(Point3(0, 0, 1), Vector3(1, 2, 3)), p2(Point3(0, 0, 5), Vector3(-2, -4, -6));
    for (const auto& [l, ok] : {p1.intersection(p2), p1.intersectionEx(p2)})
        EXPECT_FALSE(ok || l.is_line());
}

TEST(Line3, PlaneCutsAndProjections) {
    const Plane3 z0(Point3(0, 0, 0), Vector3(0, 0, 2));
    const Line3 slant(Point3(1, 1, 1), Vector3(1, 0, -1));
    ExpectNear(slant.intersection(z0).first, Point3(2, 1, 0));
    // A line lying in the plane gives its origin with false; parallel and apart gives zeros.
    const Line3 inside(Point3(3, 4, 0), Vector3(1, 1, 0));
    const auto [at, lies] = inside.intersection(z0);
    EXPECT_FALSE(lies);
    ExpectNear(at, Point3(3, 4, 0), 0.0);
    EXPECT_TRUE(z0.contains(inside));
    const auto [apart, hit] = Line3(Point3(3, 4, 1), Vector3(1, 1, 0)).intersection(z0);
    EXPECT_FALSE(hit);
    ExpectNear(apart, Point3::_OO, 0.0);
    EXPECT_FALSE(z0.contains(Line3(Point3(3, 4, 1e-9), Vector3(1, 1, 0))));
    EXPECT_TRUE(z0.contains(Line3(Point3(3, 4, 0.005), Vector3(1, 1, 0)), 0.01));
    EXPECT_TRUE(Line3(Point3(), Vector3(1, 0, 1e-11)).is_parallel_to(z0));
    EXPECT_FALSE(Line3(Point3(), Vector3(1, 0, 1e-11)).is_parallel_to(z0, 0.0)) << "taken as given";
    EXPECT_FALSE(Line3(Point3(), Vector3(1, 0, 1e-9)).is_parallel_to(z0));
    // A zero direction is parallel to nothing; a line shorter than its tolerance lies in no plane.
    EXPECT_FALSE(Line3(Point3(), Vector3()).is_parallel_to(z0) ||
                 z0.contains(Line3(Point3(), Vector3(1e-12, 0, 0))));

    const Line3 proj = z0.projection(slant).first;
    ExpectNear(proj.origin(), Point3(1, 1, 0));
    ExpectNear(proj.direction(), Vector3(1, 0, 0));
    EXPECT_FALSE(z0.projection(Line3(Point3(), Vector3(0, 0, 1))).second);
    ExpectNear(z0.projection(Vector3(1, 0, -1), Point3(1, 1, 1)).first, Point3(2, 1, 0));

    EXPECT_NEAR(slant.distance(Point3(3, 1, 1)), std::sqrt(2.0), 1e-15);
    Line2 xy;
    ASSERT_TRUE(slant.get_xy(xy));
    EXPECT_EQ(xy.side(Point2(5, 1)), 0);
    EXPECT_TRUE(slant.get_xz(xy));
    EXPECT_FALSE(Line3(Point3(), Vector3(0, 0, 1)).get_xy(xy)) << "perpendicular to z = 0";

    // The line's own tolerance decides its validity, lazily.
    Line3 l(Point3(), Vector3(3, 4, 0), 1e-3);
    l.set_normalize();
    ExpectNear(l.direction(), Vector3(0.6, 0.8, 0));
    ExpectNear(l.projection(Point3(1.4, 0.2, 0)).first, Point3(0.6, 0.8, 0));
    l.set(Point3(), Vector3(0, 0, 9e-4));
    EXPECT_EQ(l.state, 0);
    EXPECT_FALSE(l.is_line()) << "shorter than the line's own tolerance";
    EXPECT_EQ(l.state, -1);
    EXPECT_TRUE(slant.get(nullptr, nullptr));
    EXPECT_EQ(l.distance(Point3(1, 1, 1)), 0.0);
    EXPECT_FALSE(l.get(nullptr, nullptr) || l.projection(Point3(1, 1, 1)).second);
}

TEST(Line3, DistanceBetweenLinesIsTheCommonNormalLength) {
    Random rnd(37);
    for (int i = 0; i < 200; ++i) {
        // Two lines of known distance h, placed by a random rigid motion.
        const LocalPlane f(rnd.point(), rnd.point(), rnd.point());
        const double h = rnd(0.0, 3.0), a = rnd(0.05, 3.0);
        const Vector3 along = Vector3(std::cos(a), std::sin(a), 0) * f;
        const Line3 l1(Point3(rnd(), 0, 0) * f, Vector3(rnd(0.5, 2), 0, 0) * f);
        const Line3 l2(Point3(rnd(), rnd(), h) * f, along * rnd(0.5, 2));
        EXPECT_NEAR(l1.distance(l2), h, 1e-12);
        EXPECT_NEAR(l2.distance(l1), h, 1e-12);
        // Parallel lines: the distance of one origin from the other line.
        const Line3 par(Point3(rnd(), 0, h) * f, Vector3(-1, 0, 0) * f);
        EXPECT_NEAR(l1.distance(par), h, 1e-12);
    }
    EXPECT_EQ(Line3().distance(Line3(Point3(), Vector3(1, 0, 0))), 0.0);
}

TEST(Sector3, ContainmentDistanceAndMeetingPoints) {
    // An end counts inclusively only, and exclusively so does its neighbourhood; a segment
    // shorter than the tolerance has no interior and contains what lies near either end.
    const Sector3 s(Point3(0, 0, 0), Point3(2, 0, 0));
    const Sector3 dot(Point3(1, 1, 1), Point3(1, 1, 1 + 1e-4));
    const struct {
        const Sector3& sector;
        Point3 p;
        double e;
        bool exclusive, in;
    } cases[] = {
        {s, {2, 0, 0}, -1, false, true},           {s, {2, 0, 0}, -1, true, false},
        {s, {2 + 5e-11, 0, 0}, -1, false, true},   {s, {2 + 2e-10, 0, 0}, -1, false, false},
        {s, {1, 5e-11, 0}, -1, true, true},        {s, {1, 2e-10, 0}, -1, true, false},
        {s, {1.9995, 0, 0}, 1e-3, true, false},    {dot, {1, 1.0005, 1}, 1e-3, false, true},
        {dot, {1, 1, 1.00102}, 1e-3, false, true}, {dot, {1, 1, 1}, 1e-3, true, false}};
    for (const auto& c : cases)
        EXPECT_EQ(c.sector.contains(c.p, c.e, c.exclusive), c.in) << c.p.x << " " << c.p.y;

    bool interior = false;
    Point3 nearest;
    EXPECT_NEAR(s.distance(Point3(1, 0.3, 0.4), -1, &interior, &nearest), 0.5, 1e-15);
    EXPECT_TRUE(interior);
    ExpectNear(nearest, Point3(1, 0, 0), 0.0);
    // The foot is taken only inside the sphere on the segment as diameter, as the rule reads:
    // beside the middle but farther out the nearer end is measured (a tie goes to the end).
    EXPECT_NEAR(s.distance(Point3(1, 3, 4), -1, &interior, &nearest), std::sqrt(26.0), 1e-15);
    EXPECT_FALSE(interior);
    ExpectNear(nearest, s.end, 0.0);
    EXPECT_NEAR(s.distance(Point3(-3, 4, 0), -1, &interior, &nearest), 5.0, 1e-15);
    ExpectNear(nearest, s.beg, 0.0);
    s.distance(Point3(1, 0.1, 0), 5.0, &interior, &nearest);  // shorter than the tolerance
    EXPECT_FALSE(interior);

    const Plane3 x1(Point3(1, 0, 0), Vector3(1, 0, 0)), x2(Point3(2, 0, 0), Vector3(1, 0, 0));
    ExpectNear(s.intersection(x1).first, Point3(1, 0, 0));
    EXPECT_TRUE(s.intersection(x2, -1, false).second);
    EXPECT_FALSE(s.intersection(x2, -1, true).second);

    // Crossing, skew, apart, collinear touching.
    const auto cross = s.intersection(Sector3(Point3(1, -1, 0), Point3(1, 1, 0)));
    EXPECT_TRUE(cross.second);
    ExpectNear(cross.first, Point3(1, 0, 0));
    EXPECT_FALSE(s.intersection(Sector3(Point3(1, -1, 1e-6), Point3(1, 1, 1e-6))).second);
    EXPECT_TRUE(s.intersection(Sector3(Point3(1, -1, 1e-6), Point3(1, 1, 1e-6)), 1e-5).second);
    EXPECT_FALSE(s.intersection(Sector3(Point3(1, -1, 1e-12), Point3(1, 1, 1e-12)), 0.0).second)
        << "a tolerance of zero is taken as given";
    EXPECT_FALSE(s.intersection(Sector3(Point3(3, -1, 0), Point3(3, 1, 0))).second);
    const auto touch = s.intersection(Sector3(Point3(2, 0, 0), Point3(5, 0, 0)));
    EXPECT_TRUE(touch.second);
    ExpectNear(touch.first, s.end, 0.0);
    EXPECT_FALSE(s.intersection(Sector3(Point3(2, 0, 0), Point3(5, 0, 0)), -1, true).second);
}

}  // namespace
}  // namespace quillon
