#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "space_test_support.h"

namespace quillon {
namespace {

using space_test::ExpectNear;
using space_test::Random;
constexpr double kPi = std::numbers::pi;

TEST(Triangle3, PointTestsAndCircleCentreInTheTrianglesFrame) {
    Random rnd(41);
    for (int i = 0; i < 100; ++i) {
        const LocalPlane f(rnd.point(), rnd.point(), rnd.point());
        const Point3 a = Point3(0, 0, 0) * f, b = Point3(3, 0, 0) * f, c = Point3(0, 3, 0) * f;
        const Triangle3 t(a, b, c, 1e-9);
        EXPECT_TRUE(t.IsInside(Point3(1, 1, 0) * f));
        EXPECT_FALSE(t.Contains(Point3(1, 1, 1e-6) * f)) << "off the plane";
        EXPECT_TRUE(t.Coplanar(Point3(9, 9, 1e-10) * f));
        EXPECT_FALSE(t.Contains(Point3(2, 2, 0) * f));
        EXPECT_TRUE(t.IsOnEdge(Point3(1.5, 1.5, 0) * f));
        EXPECT_FALSE(t.IsInside(Point3(1.5, 0, 0) * f));
        Point3 centre;
        ASSERT_TRUE(t.CircleCentre(centre));
        ExpectNear(centre, Point3(1.5, 1.5, 0) * f, 1e-11);
        ExpectNear(t.Normal().get_normalized(), f.get_dir_z());
        EXPECT_NEAR(t.Area(), 4.5, 1e-12);

        // A coplanar segment meets the triangle when it crosses, touches or lies inside.
        EXPECT_TRUE(t.CoplanarIntersects(Point3(-1, 1, 0) * f, Point3(1, 1, 0) * f));
        EXPECT_TRUE(t.CoplanarIntersects(Point3(0.5, 0.5, 0) * f, Point3(1, 1, 0) * f));
        EXPECT_TRUE(t.CoplanarIntersects(Point3(-1, 4, 0) * f, Point3(4, -1, 0) * f));
        EXPECT_FALSE(t.CoplanarIntersects(Point3(-1, 0.5, 0) * f, Point3(-0.5, 3, 0) * f));
    }
    // A degenerate triangle is its edges.
    const Point3 p(0, 0, 0), q(1, 1, 1), r(2, 2, 2);  // held by reference
    const Triangle3 flat(p, q, r);
    EXPECT_TRUE(flat.Contains(Point3(1.5, 1.5, 1.5)));
    EXPECT_FALSE(flat.Contains(Point3(1.5, 1.5, 1.6)) || flat.Coplanar(Point3(1, 1, 1)));
    Point3 untouched(7, 7, 7);
    EXPECT_FALSE(flat.CircleCentre(untouched));
    EXPECT_EQ(untouched.x, 7.0);
    EXPECT_TRUE(flat.CoplanarIntersects(Point3(1, 0, 1), Point3(1, 2, 1)));
}

TEST(Triangle3, PlaneCutKeepsTheExtremeHits) {
    // A plane through one vertex and across the opposite edge: that vertex and the edge point.
    const Point3 a(0, 0, 0), b(4, 0, 0), c(0, 4, 0);
    const Triangle3 t(a, b, c);
    const auto [cut, seg] = t.Intersects(Plane3(a, Vector3(1, -1, 0)), false);
    ASSERT_TRUE(cut);
    ExpectNear(seg.get_beg(), a);
    ExpectNear(seg.get_end(), Point3(2, 2, 0));
    EXPECT_FALSE(t.Intersects(Plane3(Point3(0, 0, 1), Vector3(0, 0, 1)), false).first);
    EXPECT_FALSE(t.Intersects(Plane3(Point3(0, 0, 0), Vector3(0, 0, 1)), false).first)
        << "the triangle's own plane cuts no edge";

    // A plane grazing a corner within the tolerance hits all three edges; the third hit lies
    // outside the first two and replaces the first (then, with the corners relabelled, the
    // second), so that the segment spans the extreme hits.
    const Plane3 graze(Vector3(1, -1, 0), -0.0005);  // x − y = 0.0005
    const Point3 o(0, 0, 0), x(1, 0, 0), y(0, 1, 0);
    const Point3 onY(0, -0.0005, 0), far(0.50025, 0.49975, 0);  // and (0.0005, 0, 0) on o-x
    const auto [first, s1] = Triangle3(o, x, y, 1e-3).Intersects(graze, false);
    ASSERT_TRUE(first);  // edges o-x, x-y, y-o give onX, far, onY
    ExpectNear(s1.get_beg(), onY, 1e-15);
    ExpectNear(s1.get_end(), far, 1e-15);
    const auto [second, s2] = Triangle3(y, o, x, 1e-3).Intersects(graze, false);
    ASSERT_TRUE(second);  // edges y-o, o-x, x-y give onY, onX, far
    ExpectNear(s2.get_beg(), onY, 1e-15);
    ExpectNear(s2.get_end(), far, 1e-15);
    EXPECT_FALSE(Triangle3(o, x, y, 1e-3).Intersects(graze, true).first)
        << "exclusive: the hits near the corner do not count";
}

// An arc through three random points, with a frame to place points relative to it.
struct RandomArc {
    Arc3 arc;
    LocalPlane frame;
    double r, sweep;
    explicit RandomArc(Random& rnd) {
        frame = LocalPlane(rnd.point(), rnd.point(), rnd.point());
        r = rnd(0.5, 3.0);
        sweep = rnd(0.3, 2 * kPi - 0.3);
        const double m = rnd(0.1, 0.9) * sweep;
        EXPECT_TRUE(arc.Set(at(0), at(m), at(sweep)));
    }
    Point3 at(double a, double dr = 0.0, double z = 0.0) const {
        return Point3((r + dr) * std::cos(a), (r + dr) * std::sin(a), z) * frame;
    }
};

TEST(Arc3, ArcPassesThroughItsThreePointsAndReportsItsShape) {
    Random rnd(43);
    for (int i = 0; i < 200; ++i) {
        const RandomArc ra(rnd);
        const Arc3& arc = ra.arc;
        ASSERT_TRUE(arc.IsArc());
        EXPECT_NEAR(arc.GetRadius(), ra.r, 1e-9);
        EXPECT_NEAR(arc.GetSweep(), ra.sweep, 1e-9);
        ExpectNear(arc.GetCenter(), ra.frame.zero(), 1e-9);
        const Vector3 n = arc.GetNormal();  // the base surface: through the centre, facing n
        EXPECT_NEAR(arc.GetBaseSurface().signed_distance(arc.GetCenter() + n), n.length(), 1e-9);
        // The frame's z is the triangle normal, so the middle point lies on the arc.
        ExpectNear(arc.GetLocalPlane().get_dir_z(), arc.GetNormal().get_normalized());
        EXPECT_TRUE(arc.Contains(arc.GetMiddle(), true));
        const double tm = arc.GetBetweenOff(arc.GetMiddle());
        EXPECT_TRUE(tm > 0.0 && tm < 1.0) << tm;
        ExpectNear(arc.GetBetween(tm), arc.GetMiddle(), 1e-9);
        ExpectNear(arc.GetBetween(1.0), arc.GetEnd(), 1e-9);
        EXPECT_TRUE(arc.Contains(arc.GetEnd(), false));
        EXPECT_FALSE(arc.Contains(arc.GetEnd(), true));
        EXPECT_FALSE(arc.Contains(ra.at(ra.sweep + 0.1)));
        EXPECT_FALSE(arc.Contains(ra.at(ra.sweep / 2, 1e-6)));
        EXPECT_FALSE(arc.Contains(ra.at(ra.sweep / 2, 0, 1e-6)));

        // The bounding box holds every point of the arc and is reached by them.
        Point3 lo, hi;
        ASSERT_TRUE(arc.GetExtents(lo, hi));
        Point3 slo = arc.GetBegin(), shi = arc.GetBegin();
        for (int k = 0; k <= 2000; ++k) {
            const Point3 p = arc.GetBetween(k / 2000.0);
            for (int j = 0; j < 3; ++j) {
                EXPECT_GE(p.tab()[j], lo.tab()[j] - 1e-9);
                EXPECT_LE(p.tab()[j], hi.tab()[j] + 1e-9);
                slo.tab()[j] = std::min(slo.tab()[j], p.tab()[j]);
                shi.tab()[j] = std::max(shi.tab()[j], p.tab()[j]);
            }
        }
        ExpectNear(slo, lo, 1e-5);
        ExpectNear(shi, hi, 1e-5);
    }
    Arc3 line;
    EXPECT_FALSE(line.Set(Point3(0, 0, 0), Point3(1, 1, 1), Point3(2, 2, 2)) || line.IsArc() ||
                 line.Contains(Point3(1, 1, 1)) || line.GetBaseSurface().is_plane());
    EXPECT_EQ(line.GetRadius() + line.GetSweep(), 0.0);
    // Bowed by 8e-11: the points span a plane, but their triangle is too thin for a circumcircle.
    EXPECT_FALSE(Arc3().Set(Point3(0, 0, 0), Point3(1, 8e-11, 0), Point3(2, 0, 0)));
    // A plane through three points 1e-11 off the z axis is degenerate and meets nothing.
    const Plane3 thin(Point3(0, 0, 0), Point3(0, 0, 1), Point3(0, 1e-11, 0.5));
    EXPECT_EQ(Arc3(Point3(1, 0, 0), Point3(0, 1, 0), Point3(-1, 0, 0)).Intersection(thin).second,
              0);
    EXPECT_EQ(line.GetBetweenOff(Point3(1, 1, 1)), 0.0);
    EXPECT_EQ(line.Intersection(Plane3(Point3(), Vector3(1, 0, 0))).second, 0);
    ExpectNear(line.GetBetween(0.5), Point3(0, 0, 0), 0.0);  // no arc: its begin
    Point3 untouched(5, 5, 5);
    EXPECT_FALSE(line.GetExtents(untouched, untouched));
    // A half circle in z = 0: its top lies between the ends, on an axis of the frame.
    ASSERT_TRUE(
        Arc3(Point3(1, 0, 0), Point3(0, 1, 0), Point3(-1, 0, 0)).GetExtents(untouched, untouched));
    EXPECT_NEAR(untouched.y, 1.0, 1e-12);
}

TEST(Arc3, ToleranceIsBothALengthAndAFractionOfTheSweep) {
    // A quarter circle of radius 1000 about the origin, from +x to +y, default tolerance.
    const double r = 1000.0, e = Arc3::eps;
    const Arc3 arc(Point3(r, 0, 0), Point3(r * std::sqrt(0.5), r * std::sqrt(0.5), 0),
                   Point3(0, r, 0));
    ASSERT_EQ(arc.tol, 1.1920928955078125e-7);
    auto onCircle = [&](double a, double dr = 0.0) {
        return Point3((r + dr) * std::cos(a), (r + dr) * std::sin(a), 0.0);
    };
    // As a length: the distance from the circle and from the plane.
    for (const double k : {0.5, 2.0}) {
        EXPECT_EQ(arc.Contains(onCircle(0.5, k * e)), k < 1);
        EXPECT_EQ(arc.Contains(onCircle(0.5) + Vector3(0, 0, k * e)), k < 1);
    }
    // As a fraction of the sweep: past the end by half the tolerance of the quarter turn, which
    // at this radius is a length of about 1e-4, far above the tolerance.
    const Point3 past = onCircle(kPi / 2 * (1 + 0.5 * e));
    EXPECT_GT(past.distance(arc.GetEnd()), 1e-5);
    EXPECT_TRUE(arc.Contains(past, false));
    EXPECT_FALSE(arc.Contains(past, true));
    EXPECT_FALSE(arc.Contains(onCircle(kPi / 2 * (1 + 2 * e)), false));
    EXPECT_TRUE(arc.Contains(onCircle(-kPi / 2 * 0.5 * e), false)) << "before the begin";
    EXPECT_FALSE(arc.Contains(onCircle(-kPi / 2 * 2 * e), false));
}

TEST(Arc3, MeetingPointsLieOnBothOperands) {
    Random rnd(47);
    for (int i = 0; i < 200; ++i) {
        const RandomArc ra(rnd);
        const Arc3& arc = ra.arc;
        // A plane through a point of the arc: its hits lie on the plane and the arc, and their
        // count is the number of sign changes along the arc.
        const Plane3 pl(ra.at(ra.sweep * rnd(0.05, 0.95)), rnd.vector());
        const auto [pts, count] = arc.Intersection(pl);
        int changes = 0, prev = pl.side(arc.GetBetween(0));
        for (int k = 1; k <= 4000; ++k) {
            const int s = pl.side(arc.GetBetween(k / 4000.0));
            changes += s != prev;
            prev = s;
        }
        EXPECT_EQ(count, changes);
        for (int k = 0; k < count; ++k) {
            const Point3& p = k == 0 ? pts.first : pts.second;
            EXPECT_NEAR(pl.distance(p), 0.0, 1e-9);
            EXPECT_TRUE(arc.Contains(p));
        }

        // A segment through an arc point across the plane meets it there; a chord at its ends.
        const Point3 at = ra.at(ra.sweep * 0.3);
        const Vector3 d = rnd.vector() + ra.frame.get_dir_z();
        const auto cross = arc.Intersection(Sector3(at - d, at + d));
        ASSERT_EQ(cross.second, 1);
        ExpectNear(cross.first.first, at, 1e-9);
        EXPECT_EQ(arc.Intersection(Sector3(ra.at(ra.sweep * 0.2), ra.at(ra.sweep * 0.7))).second,
                  2);

        // An arc in another plane through that point meets this one there.
        const Arc3 tilted(at - d, at, at + d.get_normalized() % ra.frame.get_dir_x());
        const auto [tp, tn] = arc.Intersection(tilted);
        ASSERT_GE(tn, 1);
        EXPECT_TRUE(tp.first.distance(at) < 1e-9 || tp.second.distance(at) < 1e-9);
    }

    // Arcs of one plane: crossing circles, shared ends on one circle, tangency, apart.
    const double h = std::sqrt(0.5);
    const Arc3 q1(Point3(1, 0, 0), Point3(h, h, 0), Point3(0, 1, 0));
    const auto [ab, n2] = q1.Intersection(
        Arc3(Point3(0.2, 1, 0), Point3(1 - 0.8 * h, 1 - 0.8 * h, 0), Point3(1, 0.2, 0)));
    ASSERT_EQ(n2, 2);  // a circle about (1, 1) of radius 0.8 crosses both arcs twice
    for (const Point3& p : {ab.first, ab.second})
        EXPECT_NEAR(p.distance() + p.distance(Point3(1, 1, 0)), 1.8, 1e-12);
    EXPECT_GT(ab.first.distance(ab.second), 1.0);
    const Arc3 q2(Point3(0, 1, 0), Point3(-h, h, 0), Point3(-1, 0, 0));
    const auto [shared, n] = q1.Intersection(q2);
    ASSERT_EQ(n, 1);
    ExpectNear(shared.first, Point3(0, 1, 0), 0.0);
    EXPECT_EQ(q1.Intersection(q2, true).second, 0);
    EXPECT_EQ(q1.Intersection(Arc3(Point3(0, -1, 0), Point3(1, 0, 0), Point3(0, 1, 0))).second, 2);
    // Circles apart by half the tolerance touch midway.
    const double g = 0.5 * Arc3::eps;
    const auto [touch, nt] =
        q1.Intersection(Arc3(Point3(1 + g, 0, 0), Point3(2 + g, -1, 0), Point3(3 + g, 0, 0)));
    EXPECT_EQ(nt, 1);
    ExpectNear(touch.first, Point3(1 + g / 2, 0, 0), 1e-12);
    EXPECT_EQ(q1.Intersection(Arc3(Point3(4, 0, 0), Point3(5, -1, 0), Point3(6, 0, 0))).second, 0);
    // A plane tangent to the arc touches it once, at the foot of the centre.
    const auto [foot, once] = q1.Intersection(Plane3(Point3(h, h, 0), Vector3(1, 1, 0)));
    EXPECT_EQ(once, 1);
    ExpectNear(foot.first, Point3(h, h, 0), 1e-12);
}

TEST(SpaceRelations, CollinearCoplanarAndPolygonNormals) {
    EXPECT_TRUE(Collinear(Point3(0, 0, 0), Point3(5e-11, 0, 0), Point3(3, 4, 5)))
        << "two points closer than eps";
    EXPECT_TRUE(Collinear(Point3(0, 0, 0), Point3(1, 0, 0), Point3(3, 0.5e-10, 0)));
    EXPECT_FALSE(Collinear(Point3(0, 0, 0), Point3(1, 0, 0), Point3(3, 4e-10, 0)))
        << "the height of the middle point over the longest side, 4e-10 / 3, counts";
    EXPECT_TRUE(Collinear(Point3(0, 0, 0), Point3(1, 0, 0), Point3(3, 0.01, 0), 0.011));
    const Point3 row[] = {{0, 0, 0}, {1, 1, 0}, {4, 4, 0}, {2, 2, 1e-11}, {-1, -1, 0}, {2, 2.1, 0}};
    EXPECT_TRUE(Collinear(row, 5) && Collinear(nullptr, 5) && Collinear(row, 1));
    EXPECT_FALSE(Collinear(row, 6));
    // Measured from the line to the farthest point, not to the last far one.
    const Point3 zigzag[] = {{0, 0, 0}, {100, 0, 0}, {5, -0.009, 0}, {10, 0.009, 0}};
    EXPECT_TRUE(Collinear(zigzag, 4, 0.01));

    const Point3 a(0, 0, 0), b(2, 0, 0), c(0, 2, 0);
    EXPECT_TRUE(Coplanar(a, b, c, Point3(1, 1, 5e-11)));
    EXPECT_FALSE(Coplanar(a, b, c, Point3(1, 1, 1e-9)));
    EXPECT_TRUE(Coplanar(a, b, c, Point3(1, 1, 0.05), 0.06));
    EXPECT_TRUE(Coplanar(a, b, Point3(4, 0, 0), Point3(1, 1, 7))) << "three collinear points";

    // The normal follows the polygon's turning sense in its own plane, also when the first three
    // vertices turn the other way (a reflex corner at vertex 1).
    Random rnd(53);
    for (int i = 0; i < 50; ++i) {
        const LocalPlane f(rnd.point(), rnd.point(), rnd.point());
        Mvector<Point3> ell;
        for (const Point2& q :
             {Point2(1, 0), Point2(1, 1), Point2(2, 1), Point2(2, 2), Point2(0, 2), Point2(0, 0)})
            ell.Add(Point3(q) * f);  // counter-clockwise, reflex at vertex 1
        ExpectNear(PolyNormal(ell), f.get_dir_z());
        ell.Reverse();
        ExpectNear(PolyNormal(ell), -f.get_dir_z());
    }
    ExpectNear(PolyNormal(Mvector<Point3>{a, b}), Vector3(), 0.0);
    ExpectNear(PolyNormal(Mvector<Point3>{a, b, Point3(4, 0, 0), Point3(7, 0, 0)}), Vector3(), 0.0);

    const auto [centre, ok] = MATH_CircleCenter(Point3(1, 0, 3), Point3(0, 1, 3), Point3(-1, 0, 3));
    EXPECT_TRUE(ok);
    ExpectNear(centre, Point3(0, 0, 3), 1e-12);
    EXPECT_FALSE(MATH_CircleCenter(a, b, Point3(4, 0, 0)).second);
}

}  // namespace
}  // namespace quillon
