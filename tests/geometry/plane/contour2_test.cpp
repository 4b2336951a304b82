#include "quillon/geometry/plane/contour2.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

namespace quillon {
namespace {

std::vector<Point2> Square(double x0, double y0, double size) {
    return {{x0, y0}, {x0 + size, y0}, {x0 + size, y0 + size}, {x0, y0 + size}};
}

bool SamePoint(const Point2& p, const Point2& q, double tol = 1e-12) {
    return p.distance(q) <= tol;
}

// A star-shaped polygon round c with n vertices at radii in [r0, r1).
std::vector<Point2> Star(std::mt19937& rng, int n, const Point2& c, double r0, double r1) {
    std::uniform_real_distribution<double> radius(r0, r1), jitter(-0.3, 0.3);
    std::vector<Point2> v;
    for (int i = 0; i < n; ++i) {
        const double a = 2.0 * std::numbers::pi * (i + 0.5 + jitter(rng)) / n;
        v.push_back(c + Vector2().set2(radius(rng), a));
    }
    return v;
}

TEST(Contour2, SignedAreaIsPositiveButOrientationIsMinusOneForCounterClockwise) {
    Contour2 ccw(Square(0, 0, 1), 1e-10);
    EXPECT_DOUBLE_EQ(ccw.SignedArea(), 1.0);
    EXPECT_EQ(ccw.Orientation(), -1);
    std::vector<Point2> rev = Square(0, 0, 1);
    std::reverse(rev.begin(), rev.end());
    Contour2 cw(rev, 1e-10);
    EXPECT_DOUBLE_EQ(cw.SignedArea(), -1.0);
    EXPECT_DOUBLE_EQ(cw.Area(), 1.0);
    EXPECT_EQ(cw.Orientation(), 1);
    EXPECT_DOUBLE_EQ(cw.Perimeter(), 4.0);
    EXPECT_EQ(Contour2({{0, 0}, {1, 1}}, 1e-10).SignedArea(), 0.0);
    EXPECT_EQ(Contour2({{1, 1}, {1, 1}, {1, 1}}, 1e-10).Orientation(), 0);  // no extent
    // Area over the larger side within tol: undecided.
    EXPECT_EQ(Contour2({{0, 0}, {10, 0}, {10, 1e-3}}, 1e-3).Orientation(), 0);
}

TEST(Segment2, ContactCodesAndPoints) {
    Point2 x;
    const Segment2 s({0, 0}, {2, 0}, 1e-9);
    EXPECT_EQ(s.SegmentIntersection(Segment2({1, -1}, {1, 1}), x), 1);
    EXPECT_TRUE(SamePoint(x, {1, 0}));
    EXPECT_EQ(s.SegmentIntersection(Segment2({2, 0}, {3, 5}), x), 2);  // shared end point
    EXPECT_TRUE(SamePoint(x, {2, 0}));
    EXPECT_EQ(s.SegmentIntersection(Segment2({1, 0}, {1, 3}), x), 3);  // touching
    EXPECT_TRUE(SamePoint(x, {1, 0}));
    EXPECT_EQ(s.SegmentIntersection(Segment2({1, 0}, {5, 0}), x), 3);   // collinear overlap
    EXPECT_TRUE(SamePoint(x, {2, 0}));                                  // this.second found last
    EXPECT_EQ(s.SegmentIntersection(Segment2({3, 0}, {5, 0}), x), 0);   // collinear, apart
    EXPECT_EQ(s.SegmentIntersection(Segment2({0, 1}, {2, 1}), x), 0);   // parallel
    EXPECT_EQ(s.SegmentIntersection(Segment2({3, -1}, {3, 1}), x), 0);  // lines cross outside
    EXPECT_EQ(s.SegmentIntersection(Segment2({5, 5}, {5, 5}), x), 1);   // degenerate
    EXPECT_TRUE(SamePoint(x, {5, 5}));

    EXPECT_TRUE(s.Contains({2, 0}, false));
    EXPECT_FALSE(s.Contains({2, 0}, true));
    EXPECT_TRUE(s.Contains({1, 1e-10}, true));
    EXPECT_FALSE(s.Contains({3, 0}, false));
    EXPECT_DOUBLE_EQ(s.Distance({3, 4}), std::sqrt(17.0));
    Segment2 l = s;
    l.SetLine(Segment2::line);
    EXPECT_DOUBLE_EQ(l.Distance({3, 4}), 4.0);
    EXPECT_TRUE(l.Contains({-7, 0}, true));
    EXPECT_TRUE(l.Intersects(Segment2({-5, -1}, {-5, 1})));
    l.SetLine(Segment2::ray);
    EXPECT_FALSE(l.Intersects(Segment2({-5, -1}, {-5, 1})));
    EXPECT_TRUE(l.Intersects(Segment2({50, -1}, {50, 1})));
    EXPECT_TRUE(s.Collinear(Segment2({5, 0}, {6, 0}), false));
    EXPECT_FALSE(s.Collinear(Segment2({5, 0}, {6, 0}), true));
    EXPECT_TRUE(s.Collinear(Segment2({1, 0}, {6, 0}), true));
}

TEST(Contour2, SegmentTestCountsEachCrossingOnce) {
    const Contour2 sq(Square(0, 0, 2), 1e-9);
    short count = -1;
    Mvector<Point2> pts;
    pts.Add(Point2(9, 9));  // cleared first
    EXPECT_EQ(sq.SegmentIntersection(Segment2({-1, 1}, {3, 1.5}, 1e-9), count, &pts), 1);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(pts.Count(), 2u);
    // Through a vertex: a highest code of 2 or more resets the count.
    EXPECT_GE(sq.SegmentIntersection(Segment2({-1, -1}, {3, 3}, 1e-9), count, nullptr), 2);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(sq.SegmentIntersection(Segment2({5, 5}, {6, 7}, 1e-9), count, nullptr), 0);
    EXPECT_EQ(count, 0);
}

// The contour's segment test must answer exactly as the plain walk over every edge.
TEST(Contour2, SegmentTestMatchesTheWalkOverEveryEdge) {
    auto walk = [](const Contour2& c, const Segment2& s, short& count) {
        short highest = 0;
        count = 0;
        for (std::size_t i = 0; i < c.Count(); ++i) {
            const Point2& a = c[i == 0 ? c.Count() - 1 : i - 1];
            Point2 x;
            const short code = s.SegmentIntersection(Segment2(a, c[i], s.tol), x);
            highest = std::max(highest, code);
            if (code != 0 && !(code == 1 && x.distance(a) <= c.tol)) ++count;
        }
        if (highest >= 2) count = 0;
        return highest;
    };
    // A crossing point may lie up to tol beyond both boxes: this edge ends left of the segment's
    // widened box and still touches it.
    const Contour2 hook({{-0.11, 0.01}, {-0.3, 0.03}, {-0.3, 5}}, 1e-10);
    const Segment2 far({0, 0}, {100, 0}, 0.1);
    short count = 0, expected = 0;
    EXPECT_EQ(hook.SegmentIntersection(far, count, nullptr), 3);
    EXPECT_EQ(walk(hook, far, expected), 3);
    // A degenerate segment answers 1 against every edge, wherever it lies.
    Contour2 sq(Square(0, 0, 10), 1e-10);
    EXPECT_EQ(sq.SegmentIntersection(Segment2({5, 5}, {5, 5}), count, nullptr), 1);
    EXPECT_EQ(count, 4);
    // So a guest with a repeated vertex is never in another contour.
    EXPECT_EQ(Contour2({{2, 2}, {4, 2}, {4, 2}, {4, 4}}, 1e-10).InContour(sq), 0);

    std::mt19937 rng(7);
    std::uniform_real_distribution<double> coord(-1.0, 11.0), tol(0.0, 0.5);
    for (int trial = 0; trial < 2000; ++trial) {
        const Contour2 star(Star(rng, 7, {5, 5}, 1.0, 6.0), 1e-10);
        const Point2 p(coord(rng), coord(rng));
        const Point2 q = trial % 5 == 0 ? p : Point2(coord(rng), coord(rng));
        const Segment2 s(p, q, tol(rng));
        EXPECT_EQ(star.SegmentIntersection(s, count, nullptr), walk(star, s, expected));
        EXPECT_EQ(count, expected);
    }
}

TEST(Contour2, PointOnEdgeGrowsTheContourToleranceDeliberately) {
    Contour2 c(Square(0, 0, 1), 1e-10);
    const double expected[] = {1e-8, 1e-6, 1e-4, 1e-2, 1e-2, 1e-2};
    for (double e : expected) {
        c.PointOnEdge({0.5, 0.5});
        EXPECT_NEAR(c.tol, e, e * 1e-9);
    }
    // The grown tolerance is what later tests use: 0.005 off the edge now counts as on it.
    EXPECT_EQ(c.PointOnEdge({0.5, 0.005}), 1);
    EXPECT_EQ(c.PointInside({0.5, 0.005}), 0);
    // IsOnEdge leaves the tolerance alone.
    Contour2 d(Square(0, 0, 1), 1e-10);
    EXPECT_TRUE(d.IsOnEdge({1, 0.5}));
    EXPECT_TRUE(d.IsOnEdge({1, 1}));
    EXPECT_FALSE(d.IsOnEdge({0.5, 0.5}));
    EXPECT_EQ(d.tol, 1e-10);
}

TEST(Contour2, PointInsideAndContainsOnSimpleCases) {
    EXPECT_EQ(Contour2().PointInside({0, 0}), 0);
    // Repeated vertices (zero-length edges) change neither test.
    const Contour2 sq(Square(0, 0, 2), 1e-10),
        rep({{0, 0}, {2, 0}, {2, 0}, {2, 2}, {0, 2}, {0, 2}}, 1e-10);
    for (Contour2 c : {sq, rep}) {
        EXPECT_TRUE(c.Contains({2, 1}, false));
        EXPECT_FALSE(c.Contains({2, 1}, true));
        EXPECT_TRUE(c.Contains({1, 0.7}, true));
        EXPECT_FALSE(c.Contains({-1, 0.7}, false));
        EXPECT_FALSE(c.Contains({1, 2.0000001}, false));
        // These may grow the tolerance (see above), so they come last.
        EXPECT_EQ(c.PointInside({1, 0.7}), 1);
        EXPECT_EQ(c.PointInside({2, 1}), 0);  // on an edge
        EXPECT_EQ(c.PointInside({3, 1}), 0);
        EXPECT_EQ(c.PointOnEdge({2, 1}), 1);
    }
}

TEST(Contour2, PointInsideReaimsTheProbeWhenItMeetsAVertex) {
    // A notch whose tip (0.5, 1) lies exactly on the first probe from (1, 1): counting that probe
    // would give two contacts (even, "outside"); the re-aimed probe crosses once.
    Contour2 notch({{0, 0}, {2, 0}, {2, 2}, {0, 2}, {0.5, 1}}, 1e-10);
    EXPECT_EQ(notch.PointInside({1, 1}), 1);
    EXPECT_TRUE(notch.Contains({1, 1}, true));
    EXPECT_EQ(notch.PointInside({0.2, 1}), 0);
    EXPECT_FALSE(notch.Contains({0.2, 1}, false));
}

// A box [0, 10] x [0, 1] whose left side zigzags so that a vertex lies on each of the first
// `spikes` probes from p (probe k aims at (-10, 1 - 2^-k)).
Contour2 Zigzag(const Point2& p, int spikes) {
    std::vector<Point2> v{{0, 0}, {10, 0}, {10, 1}, {0, 1}};
    for (int k = spikes; k >= 1; --k) {
        const double yk = 1.0 - std::ldexp(1.0, -k);
        const double x = 0.5;
        const double u = (p.x - x) / (p.x + 10.0);
        v.push_back({x, p.y + u * (yk - p.y)});
        const double ylow = k > 1 ? 1.0 - std::ldexp(1.0, -(k - 1)) : 0.0;
        const double yk_prev = k > 1 ? p.y + u * (ylow - p.y) : 0.0;
        v.push_back({0.0, (v.back().y + yk_prev) / 2.0});
    }
    return Contour2(v, 1e-10);
}

TEST(Contour2, PointInsideGivesUpAfterTenRetries) {
    const Point2 p(5, 0.3);
    Contour2 ten = Zigzag(p, 10);
    EXPECT_EQ(ten.PointInside(p), 1);  // the eleventh try is clean
    Contour2 eleven = Zigzag(p, 11);
    EXPECT_EQ(eleven.PointInside(p), 0);  // every try met a vertex
    EXPECT_TRUE(eleven.Contains(p, true));
}

TEST(Contour2, ContainsSkipsRunsOnItsProbe) {
    // A U shape; the point in the notch at the top's height sends the probe along the top edge
    // (3,2)-(2,2): the run is skipped and the boundary returns below, so the contact cancels.
    Contour2 u({{0, 0}, {3, 0}, {3, 2}, {2, 2}, {2, 1}, {1, 1}, {1, 2}, {0, 2}}, 1e-10);
    EXPECT_FALSE(u.Contains({1.5, 2}, false));
    EXPECT_FALSE(u.Contains({1.5, 1.5}, false));
    EXPECT_TRUE(u.Contains({0.5, 1.5}, true));
    EXPECT_TRUE(u.Contains({2.5, 2}, false));  // on the boundary
    EXPECT_FALSE(u.Contains({2.5, 2}, true));
}

TEST(Contour2, TwoInsideTestsAgreeAwayFromTheBoundary) {
    std::mt19937 rng(3);
    std::uniform_real_distribution<double> u(-2.2, 2.2);
    for (int round = 0; round < 20; ++round) {
        const Contour2 star(Star(rng, 5 + round, Point2(0, 0), 0.5, 2.0), 1e-10);
        for (int i = 0; i < 200; ++i) {
            const Point2 p(u(rng), u(rng));
            Contour2 probe_copy = star;  // keep the tolerance small for the comparison
            const short inside = probe_copy.PointInside(p);
            EXPECT_EQ(inside == 1, star.Contains(p, true)) << p.x << " " << p.y;
        }
    }
}

TEST(Contour2, InContourRejectsAnyContactWithTheBoundary) {
    Contour2 big(Square(0, 0, 10), 1e-10);
    EXPECT_EQ(Contour2(Square(2, 2, 3), 1e-10).InContour(big), 1);
    EXPECT_EQ(Contour2(Square(0, 0, 3), 1e-10).InContour(big), 0);   // shared vertex
    EXPECT_EQ(Contour2(Square(8, 8, 3), 1e-10).InContour(big), 0);   // sticks out
    EXPECT_EQ(Contour2(Square(20, 2, 1), 1e-10).InContour(big), 0);  // apart
    EXPECT_EQ(big.InContour(big), 0);
    // A concave host: the guest's box fits, but an edge crosses the notch.
    Contour2 u({{0, 0}, {3, 0}, {3, 3}, {2, 3}, {2, 1}, {1, 1}, {1, 3}, {0, 3}}, 1e-10);
    EXPECT_EQ(Contour2({{0.5, 2}, {2.5, 2}, {2.5, 2.5}, {0.5, 2.5}}, 1e-10).InContour(u), 0);
    EXPECT_EQ(Contour2({{0.2, 0.2}, {2.8, 0.2}, {2.8, 0.8}}, 1e-10).InContour(u), 1);
}

TEST(Triangle2, CornersAreReferencesAndAssignmentWritesThroughThem) {
    Point2 a(0, 0), b(4, 0), c(0, 3);
    Triangle2 t(a, b, c, 1e-10);
    EXPECT_DOUBLE_EQ(t.SignedArea(), 6.0);
    EXPECT_EQ(t.Orientation(), -1);
    b.x = 8;  // the triangle sees the caller's change
    EXPECT_DOUBLE_EQ(t.Area(), 12.0);
    Point2 p(1, 1), q(1, 2), r(2, 1);
    Triangle2 u(p, q, r, 0.5);
    EXPECT_EQ(u.Orientation(), 1);
    t = u;
    EXPECT_TRUE(SamePoint(a, {1, 1}));
    EXPECT_TRUE(SamePoint(b, {1, 2}));
    EXPECT_TRUE(SamePoint(c, {2, 1}));
    EXPECT_EQ(t.tol, 0.5);
    EXPECT_EQ(u.Orientation(), 1);  // the source is untouched
}

TEST(Triangle2, PointTestsAndCentres) {
    Point2 a(0, 0), b(4, 0), c(1, 3);
    const Triangle2 t(a, b, c, 1e-9);
    EXPECT_TRUE(t.Contains({1, 1}));
    EXPECT_TRUE(t.IsInside({1, 1}));
    EXPECT_FALSE(t.Contains({2, 0}));  // on an edge: that edge gives 0
    EXPECT_TRUE(t.IsOnEdge({2, 0}));
    EXPECT_FALSE(t.IsInside({2, 0}));
    EXPECT_FALSE(t.Contains({5, 5}));
    Point2 o;
    Point2 p(1, 2), q(5, -1), s(3, 7);  // no zero coordinate hides a term
    ASSERT_TRUE(Triangle2(p, q, s, 1e-9).CircleCentre(o));
    EXPECT_NEAR(o.distance(p), o.distance(q), 1e-12);
    EXPECT_NEAR(o.distance(p), o.distance(s), 1e-12);
    const Point2 g = t.GravityCentre();
    EXPECT_TRUE(SamePoint(g, {5.0 / 3.0, 1.0}));
    const Point2 ic = t.InscribedCircleCenter();
    const double d1 = Segment2(a, b).Distance(ic), d2 = Segment2(b, c).Distance(ic),
                 d3 = Segment2(c, a).Distance(ic);
    EXPECT_NEAR(d1, d2, 1e-12);
    EXPECT_NEAR(d1, d3, 1e-12);
    Point2 d(2, 0);
    const Triangle2 flat(a, b, d, 1e-9);
    EXPECT_FALSE(flat.CircleCentre(o));
    EXPECT_EQ(flat.Orientation(), 0);
}

TEST(Contour2, HullExtremesAndCleanUp) {
    std::mt19937 rng(5);
    std::uniform_real_distribution<double> u(-5, 5);
    for (int round = 0; round < 30; ++round) {
        std::vector<Point2> v;
        for (int i = 0; i < 40; ++i) v.push_back({u(rng), u(rng)});
        v.push_back(v[3]);  // a repeat
        const Contour2 cloud(v, 1e-10);
        const Contour2 hull = cloud.ConvexHull();
        EXPECT_EQ(hull.Orientation(), -1);
        const auto& h = hull.Points();
        for (std::size_t i = 0; i < h.size(); ++i) {
            const Point2& p = h[i];
            const Point2& q = h[(i + 1) % h.size()];
            for (const Point2& x : v) EXPECT_GE((q - p) % (x - p), -1e-9);  // all on the left
        }
        const auto ext = cloud.ExtremalNodesIndexes();
        ASSERT_EQ(ext.Count(), 4u);
        for (const Point2& x : v) {
            EXPECT_LE(v[ext[0]].x, x.x);
            EXPECT_LE(v[ext[1]].y, x.y);
            EXPECT_GE(v[ext[2]].x, x.x);
            EXPECT_GE(v[ext[3]].y, x.y);
        }
    }
    // Collinear points on the hull's edges are left out.
    const Contour2 ring({{0, 0}, {1, 0}, {2, 0}, {2, 2}, {1, 1}, {0, 2}}, 1e-10);
    const auto idx = ring.ConvexHullIndexList();
    EXPECT_EQ(idx, (std::vector<std::size_t>{0, 2, 3, 5}));

    Contour2 dup({{0, 0}, {0, 0}, {1, 0}, {1, 1e-12}, {1, 1}, {0, 1}, {0, 0}}, 1e-9);
    EXPECT_EQ(dup.RemoveDuplicates(), 3u);
    EXPECT_EQ(dup.Length(), 4);
    EXPECT_DOUBLE_EQ(dup.Area(), 1.0);
}

TEST(Contour2, SegmentAndContourContainmentAndContact) {
    const Contour2 u({{0, 0}, {3, 0}, {3, 3}, {2, 3}, {2, 1}, {1, 1}, {1, 3}, {0, 3}}, 1e-10);
    EXPECT_TRUE(u.Contains(Segment2({0.5, 0.5}, {2.5, 0.5}), true));
    EXPECT_FALSE(u.Contains(Segment2({0.5, 2}, {2.5, 2}), false));  // crosses the notch
    EXPECT_TRUE(u.Contains(Segment2({0, 0}, {3, 0}), false));       // along the boundary
    EXPECT_FALSE(u.Contains(Segment2({0, 0}, {3, 0}), true));
    EXPECT_TRUE(u.Contains(Segment2({0.5, 1}, {2.5, 1}), false));  // touches the notch bottom
    EXPECT_TRUE(u.Contains(Contour2(Square(0.2, 0.2, 0.5), 1e-10), true));
    EXPECT_FALSE(u.Contains(Contour2(Square(0.5, 0.5, 2), 1e-10), false));

    EXPECT_TRUE(u.Intersects(Segment2({-1, 2}, {0.5, 2})));
    EXPECT_FALSE(u.Intersects(Segment2({1.2, 2}, {1.8, 2})));
    EXPECT_TRUE(u.Intersects(Contour2(Square(2.5, 2.5, 1), 1e-10)));
    EXPECT_FALSE(u.Intersects(Contour2(Square(0.2, 0.2, 0.5), 1e-10)));
    EXPECT_TRUE(u.Intersects(Contour2(Square(3, 3, 1), 1e-10)));  // corner contact
}

TEST(Contour2, AddIntersectionPointsSharesContactVertices) {
    Contour2 a(Square(0, 0, 2), 1e-10), b(Square(1, 1, 2), 1e-10);
    EXPECT_EQ(MATH_AddIntersectionPoints(a, b), 4u);
    EXPECT_EQ(a.Length(), 6);
    EXPECT_EQ(b.Length(), 6);
    EXPECT_DOUBLE_EQ(a.Area(), 4.0);
    EXPECT_DOUBLE_EQ(b.Area(), 4.0);
    for (const Point2 x : {Point2(2, 1), Point2(1, 2)}) {
        bool in_a = false, in_b = false;
        for (const Point2& p : a.Points()) in_a = in_a || SamePoint(p, x);
        for (const Point2& p : b.Points()) in_b = in_b || SamePoint(p, x);
        EXPECT_TRUE(in_a && in_b);
    }
    EXPECT_EQ(MATH_AddIntersectionPoints(a, b), 0u);  // nothing left to add
    // Overlapping edges: the ends of each inside the other are shared.
    Contour2 c(Square(0, 0, 4), 1e-10), d({{1, 4}, {3, 4}, {3, 6}, {1, 6}}, 1e-10);
    EXPECT_EQ(MATH_AddIntersectionPoints(c, d), 2u);
    EXPECT_EQ(c.Length(), 6);
    EXPECT_EQ(d.Length(), 4);
    // Edges whose boxes meet without crossing come first: the search goes on past them.
    Contour2 e({{0, 0}, {4, 0}, {0, 4}}, 1e-10), g(Square(1, 1, 1.5), 1e-10);
    EXPECT_EQ(MATH_AddIntersectionPoints(e, g), 4u);
}

struct Face {
    Contour2 outer;
    Mvector<Contour2> holes;
    std::vector<Point2> all;  // outer then holes, the index space of the triangles
};

double TriArea(const Point2& a, const Point2& b, const Point2& c) {
    return ((b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x)) / 2.0;
}

bool ProperCross(const Point2& a, const Point2& b, const Point2& c, const Point2& d) {
    const double eps = 1e-9;
    const double d1 = TriArea(a, b, c), d2 = TriArea(a, b, d);
    const double d3 = TriArea(c, d, a), d4 = TriArea(c, d, b);
    return ((d1 > eps && d2 < -eps) || (d1 < -eps && d2 > eps)) &&
           ((d3 > eps && d4 < -eps) || (d3 < -eps && d4 > eps));
}

// Checks that the triangles tile the face: their areas add up to the face's area, each turns
// like the outline, none has its centroid outside the face, and no two edges properly cross.
void ExpectTiling(const Face& f, const Mmatrix<std::size_t>& tris) {
    double expect = f.outer.Area();
    for (const Contour2& h : f.holes) expect -= h.Area();
    const double sign = f.outer.SignedArea() > 0.0 ? 1.0 : -1.0;
    double sum = 0.0;
    for (const auto& t : tris) {
        ASSERT_EQ(t.Count(), 3u);
        for (std::size_t i : t) ASSERT_LT(i, f.all.size());
        const Point2 &a = f.all[t[0]], &b = f.all[t[1]], &c = f.all[t[2]];
        const double area = TriArea(a, b, c);
        EXPECT_GE(sign * area, -1e-12);
        sum += std::fabs(area);
        const Point2 g((a.x + b.x + c.x) / 3.0, (a.y + b.y + c.y) / 3.0);
        if (std::fabs(area) > 1e-9) {
            EXPECT_TRUE(f.outer.Contains(g, false));
            for (const Contour2& h : f.holes) EXPECT_FALSE(h.Contains(g, true));
        }
    }
    EXPECT_NEAR(sum, expect, 1e-9 * std::max(1.0, expect));
    for (std::size_t i = 0; i < tris.size(); ++i) {
        for (std::size_t j = i + 1; j < tris.size(); ++j) {
            for (int e = 0; e < 3; ++e) {
                for (int k = 0; k < 3; ++k) {
                    EXPECT_FALSE(ProperCross(f.all[tris[i][e]], f.all[tris[i][(e + 1) % 3]],
                                             f.all[tris[j][k]], f.all[tris[j][(k + 1) % 3]]))
                        << "triangles " << i << " and " << j;
                }
            }
        }
    }
}

Face MakeFace(std::vector<Point2> outer, std::vector<std::vector<Point2>> holes) {
    Face f{Contour2(outer, 1e-10), {}, outer};
    for (auto& h : holes) {
        f.all.insert(f.all.end(), h.begin(), h.end());
        f.holes.Add(Contour2(h, 1e-10));
    }
    return f;
}

TEST(Contour2Triangulate, ConcaveClockwiseCollinearRepeatedAndHoles) {
    using Poly = std::vector<Point2>;
    const Poly u{{0, 0}, {3, 0}, {3, 3}, {2, 3}, {2, 1}, {1, 1}, {1, 3}, {0, 3}};
    const Poly runs{{0, 0}, {1, 0}, {2, 0},   {2, 0}, {3, 0}, {3, 1},
                    {3, 2}, {3, 3}, {1.5, 3}, {0, 3}, {0, 3}, {0, 1.5}};
    const Poly box{{0, 0}, {10, 0}, {10, 10}, {0, 10}};
    const Poly h1{{1, 1}, {2, 1}, {2, 2}, {1, 2}};
    const Poly h2{{5, 5}, {5, 7}, {7, 7}, {7, 5}};  // clockwise
    const Poly h3{{3, 1}, {4, 1}, {4, 1}};          // no area: ignored
    struct Case {
        Poly outer;
        std::vector<Poly> holes;
        std::size_t count;  // 0: not fixed
    };
    auto small = [](Poly p) {  // the same shapes a thousand times smaller
        for (Point2& v : p) v = Point2(v.x * 1e-3, v.y * 1e-3);
        return p;
    };
    const Case cases[] = {{u, {}, 6},        {Poly(u.rbegin(), u.rend()), {}, 6},
                          {runs, {}, 0},     {box, {h1, h2, h3}, 0},
                          {small(u), {}, 6}, {small(box), {small(h1), small(h2)}, 0}};
    for (const Case& k : cases) {
        const Face f = MakeFace(k.outer, k.holes);
        Mmatrix<std::size_t> tris;
        ASSERT_TRUE(k.holes.empty() ? f.outer.Triangulate(tris)
                                    : f.outer.TriangulateWithHoles(f.holes, tris));
        EXPECT_EQ(tris.Count(), k.count ? k.count : tris.Count());
        ExpectTiling(f, tris);
    }
    Mmatrix<std::size_t> tris;
    EXPECT_FALSE(Contour2({{0, 0}, {1, 1}, {2, 2}}, 1e-10).Triangulate(tris));
    EXPECT_TRUE(tris.empty());
    EXPECT_FALSE(Contour2({{0, 0}, {1, 1}}, 1e-10).Triangulate(tris));
}

TEST(Contour2Triangulate, RandomStarsWithHolesAreTiledExactly) {
    std::mt19937 rng(2024);
    for (int round = 0; round < 40; ++round) {
        std::vector<Point2> outer = Star(rng, 6 + round % 25, Point2(0, 0), 2.5, 6.0);
        if (round % 2 == 1) std::reverse(outer.begin(), outer.end());
        // Holes in the disc of radius 2 (always inside the star), one per quadrant cell.
        std::vector<std::vector<Point2>> holes;
        for (int h = 0; h < round % 4; ++h) {
            const Point2 c(h % 2 == 0 ? -0.7 : 0.7, h < 2 ? -0.7 : 0.7);
            holes.push_back(Star(rng, 3 + static_cast<int>(rng() % 5), c, 0.2, 0.5));
            if (rng() % 2) std::reverse(holes.back().begin(), holes.back().end());
        }
        const Face f = MakeFace(outer, holes);
        Mmatrix<std::size_t> tris;
        ASSERT_TRUE(f.outer.TriangulateWithHoles(f.holes, tris)) << round;
        ExpectTiling(f, tris);
    }
}

TEST(Contour2Triangulate, LargeContourAndMiddlePoint) {
    std::vector<Point2> comb;  // a comb with 400 teeth: many reflex vertices
    for (int i = 0; i < 400; ++i) {
        comb.push_back({i * 1.0, 0});
        comb.push_back({i + 0.5, 5});
    }
    comb.push_back({400, 0});
    comb.push_back({400, -1});
    comb.push_back({0, -1});
    const Face f = MakeFace(comb, {});
    Mmatrix<std::size_t> tris;
    ASSERT_TRUE(f.outer.Triangulate(tris));
    ExpectTiling(f, tris);
    const auto mid = f.outer.GetMiddleUniquePoint();
    ASSERT_TRUE(mid.second);
    EXPECT_TRUE(f.outer.Contains(mid.first, true));
    EXPECT_FALSE(Contour2({{0, 0}, {1, 0}, {2, 0}}, 1e-10).GetMiddleUniquePoint().second);
}

}  // namespace
}  // namespace quillon
