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
    std::vector<Point2> sq = Square(0, 0, 1);
    EXPECT_EQ(Contour2(sq, 1e-10).Orientation(), -1);
    std::reverse(sq.begin(), sq.end());
    const Contour2 cw(sq, 1e-10);
    EXPECT_EQ((std::vector<double>{cw.SignedArea(), cw.Area(), cw.Perimeter()}),
              (std::vector<double>{-1, 1, 4}));
    EXPECT_EQ(cw.Orientation(), 1);
    EXPECT_EQ(Contour2({{1, 1}, {1, 1}, {1, 1}}, 1e-10).Orientation(), 0);  // no extent
    // Area over the larger side within tol: undecided.
    EXPECT_EQ(Contour2({{0, 0}, {10, 0}, {10, 1e-3}}, 1e-3).Orientation(), 0);
}

TEST(Segment2, ContactCodesAndPoints) {
    const Segment2 s({0, 0}, {2, 0}, 1e-9);
    struct Case {
        Segment2 other;
        short code;
        Point2 x;  // checked when code != 0
    };
    const Case cases[] = {
        {Segment2({1, -1}, {1, 1}), 1, {1, 0}},
        {Segment2({2, 0}, {3, 5}), 2, {2, 0}},  // end shared
        {Segment2({1, 0}, {1, 3}), 3, {1, 0}},  // touching
        {Segment2({1, 0}, {5, 0}), 3, {2, 0}},  // collinear overlap: this.second found last
        {Segment2({3, 0}, {5, 0}), 0, {}},
        {Segment2({0, 1}, {2, 1}), 0, {}},
        {Segment2({3, -1}, {3, 1}), 0, {}},
        {Segment2({5, 5}, {5, 5}), 1, {5, 5}},  // degenerate
    };
    for (const Case& k : cases) {
        Point2 x(7, 7);
        EXPECT_EQ(s.SegmentIntersection(k.other, x), k.code) << k.other.first.x;
        EXPECT_TRUE(k.code == 0 || SamePoint(x, k.x)) << k.other.first.x;
    }
    EXPECT_TRUE(s.Contains({2, 0}, false));
    EXPECT_FALSE(s.Contains({2, 0}, true));
    EXPECT_TRUE(s.Contains({1, 1e-10}, true));
    EXPECT_FALSE(s.Contains({3, 0}, false));
    EXPECT_DOUBLE_EQ(s.Distance({3, 4}), std::sqrt(17.0));
    EXPECT_EQ(s.Distance({1, 1e-10}), 0.0);
    EXPECT_EQ(s.Distance({1, 1e-10}, 0.0), 1e-10);  // an explicit zero tolerance is exact
    // As a line or a ray: the second point is an inner point, and the ray's start is not at the
    // origin, so a sign slip in the behind-the-start test shows.
    Segment2 l({10, 0}, {12, 0}, 1e-9);
    l.SetLine(Segment2::line);
    EXPECT_DOUBLE_EQ(l.Distance({5, 4}), 4.0);
    EXPECT_TRUE(l.Contains({-7, 0}, true) && l.Contains({12, 0}, true));
    EXPECT_TRUE(l.Intersects(Segment2({5, -1}, {5, 1})));
    l.SetLine(Segment2::ray);
    EXPECT_TRUE(l.Contains({12, 0}, true));
    EXPECT_FALSE(l.Intersects(Segment2({5, -1}, {5, 1})));
    EXPECT_TRUE(l.Intersects(Segment2({50, -1}, {50, 1})));
    EXPECT_TRUE(s.Collinear(Segment2({5, 0}, {6, 0}), false));
    EXPECT_FALSE(s.Collinear(Segment2({5, 0}, {6, 0}), true));
    EXPECT_TRUE(s.Collinear(Segment2({1, 0}, {6, 0}), true));
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
        if (highest >= 2) count = 0;  // a highest code of 2 or more resets the count
        return highest;
    };
    // Each crossing counted once, its points handed back (the list is cleared first).
    Contour2 sq(Square(0, 0, 10), 1e-10);
    short count = -1, expected = 0;
    Mvector<Point2> pts;
    pts.Add(Point2(9, 9));
    EXPECT_EQ(sq.SegmentIntersection(Segment2({-1, 1}, {13, 3}, 1e-9), count, &pts), 1);
    EXPECT_EQ(count * 10 + static_cast<int>(pts.Count()), 22);
    // A crossing point may lie up to tol beyond both boxes: this edge ends left of the segment's
    // widened box and still touches it.
    const Contour2 hook({{-0.11, 0.01}, {-0.3, 0.03}, {-0.3, 5}}, 1e-10);
    const Segment2 far({0, 0}, {100, 0}, 0.1);
    EXPECT_EQ(hook.SegmentIntersection(far, count, nullptr), 3);
    // A degenerate segment answers 1 against every edge, wherever it lies, so a guest with a
    // repeated vertex is never in another contour.
    EXPECT_EQ(sq.SegmentIntersection(Segment2({5, 5}, {5, 5}), count, nullptr), 1);
    EXPECT_EQ(count, 4);
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
    for (double e : {1e-8, 1e-6, 1e-4, 1e-2, 1e-2}) {
        c.PointOnEdge({0.5, 0.5});
        EXPECT_NEAR(c.tol, e, e * 1e-9);
    }
    // The grown tolerance is what later tests use: 0.005 off the edge now counts as on it.
    EXPECT_EQ(c.PointOnEdge({0.5, 0.005}), 1);
    EXPECT_EQ(c.PointInside({0.5, 0.005}), 0);
    // IsOnEdge leaves the tolerance alone.
    Contour2 d(Square(0, 0, 1), 1e-10);
    EXPECT_TRUE(d.IsOnEdge({1, 0.5}) && d.IsOnEdge({1, 1}));
    EXPECT_FALSE(d.IsOnEdge({0.5, 0.5}));
    EXPECT_EQ(d.tol, 1e-10);
}

// Each point: 0 outside, 1 on the boundary, 2 inside. PointInside answers 1 only inside.
TEST(Contour2, PointTestsSurviveRepeatedVerticesAndProbesThroughVerticesOrAlongEdges) {
    using Poly = std::vector<Point2>;
    const Poly rep{{0, 0}, {2, 0}, {2, 0}, {2, 2}, {0, 2}, {0, 2}};
    // The notch's tip (0.5, 1) lies on the first probe from (1, 1): counting that probe would
    // give two contacts; the re-aimed probe crosses once.
    const Poly notch{{0, 0}, {2, 0}, {2, 2}, {0, 2}, {0.5, 1}};
    // From the notch at the top's height the probe runs along the top edge (3,2)-(2,2): the run
    // is skipped and the boundary returns below, so the contact cancels.
    const Poly u{{0, 0}, {3, 0}, {3, 2}, {2, 2}, {2, 1}, {1, 1}, {1, 2}, {0, 2}};
    const std::tuple<const Poly*, Point2, int> cases[] = {
        {&rep, {2, 1}, 1},   {&rep, {1, 0.7}, 2},   {&rep, {1, 2.0000001}, 0}, {&rep, {3, 1}, 0},
        {&notch, {1, 1}, 2}, {&notch, {0.2, 1}, 0}, {&u, {1.5, 2}, 0},         {&u, {1.5, 1.5}, 0},
        {&u, {0.5, 1.5}, 2}, {&u, {2.5, 2}, 1},
    };
    for (const auto& [poly, p, want] : cases) {
        Contour2 c(*poly, 1e-10);
        SCOPED_TRACE(testing::Message() << p.x << " " << p.y);
        EXPECT_EQ(c.Contains(p, false), want >= 1);
        EXPECT_EQ(c.Contains(p, true), want == 2);
        EXPECT_EQ(c.PointInside(p), want == 2 ? 1 : 0);  // may grow the tolerance: last
    }
    EXPECT_EQ(Contour2().PointInside({0, 0}), 0);
}

// A box [0, 10] x [0, 1] whose left side zigzags so that a vertex lies on each of the first
// `spikes` probes from p (probe k aims at (-10, 1 - 2^-k)).
Contour2 Zigzag(const Point2& p, int spikes) {
    std::vector<Point2> v{{0, 0}, {10, 0}, {10, 1}, {0, 1}};
    const double u = (p.x - 0.5) / (p.x + 10.0);
    for (int k = spikes; k >= 1; --k) {
        const double yk = 1.0 - std::ldexp(1.0, -k);
        v.push_back({0.5, p.y + u * (yk - p.y)});
        const double ylow = k > 1 ? 1.0 - std::ldexp(1.0, -(k - 1)) : 0.0;
        const double yk_prev = k > 1 ? p.y + u * (ylow - p.y) : 0.0;
        v.push_back({0.0, (v.back().y + yk_prev) / 2.0});
    }
    return Contour2(v, 1e-10);
}

TEST(Contour2, PointInsideGivesUpAfterTenRetries) {
    const Point2 p(5, 0.3);
    EXPECT_EQ(Zigzag(p, 10).PointInside(p), 1);  // the eleventh try is clean
    Contour2 eleven = Zigzag(p, 11);
    EXPECT_EQ(eleven.PointInside(p), 0);  // every try met a vertex
    EXPECT_TRUE(eleven.Contains(p, true));
}

TEST(Contour2, InContourRejectsAnyContactWithTheBoundary) {
    Contour2 big(Square(0, 0, 10), 1e-10);
    EXPECT_EQ(Contour2(Square(2, 2, 3), 1e-10).InContour(big), 1);
    for (const Point2 at :
         {Point2(0, 0), Point2(8, 8), Point2(20, 2)})  // shared vertex, out, apart
        EXPECT_EQ(Contour2(Square(at.x, at.y, 3), 1e-10).InContour(big), 0);
    EXPECT_EQ(big.InContour(big), 0);
    // A concave host: the guest's box fits, but an edge crosses the notch.
    Contour2 u({{0, 0}, {3, 0}, {3, 3}, {2, 3}, {2, 1}, {1, 1}, {1, 3}, {0, 3}}, 1e-10);
    EXPECT_EQ(Contour2({{0.5, 2}, {2.5, 2}, {2.5, 2.5}, {0.5, 2.5}}, 1e-10).InContour(u), 0);
    EXPECT_EQ(Contour2({{0.2, 0.2}, {2.8, 0.2}, {2.8, 0.8}}, 1e-10).InContour(u), 1);
}

TEST(Triangle2, CornersAreReferencesAndAssignmentWritesThroughThem) {
    Point2 a(0, 0), b(4, 0), c(1, 3);
    Triangle2 t(a, b, c, 1e-9);
    EXPECT_TRUE(t.Contains({1, 1}) && t.IsInside({1, 1}));
    EXPECT_FALSE(t.Contains({2, 0}) || t.IsInside({2, 0}));  // on an edge: that edge gives 0
    EXPECT_TRUE(t.IsOnEdge({2, 0}));
    EXPECT_FALSE(t.Contains({5, 5}));
    EXPECT_TRUE(SamePoint(t.GravityCentre(), {5.0 / 3.0, 1.0}));
    const Point2 ic = t.InscribedCircleCenter();
    const double d1 = Segment2(a, b).Distance(ic);
    EXPECT_NEAR(Segment2(b, c).Distance(ic) - d1, 0.0, 1e-12);
    EXPECT_NEAR(Segment2(c, a).Distance(ic) - d1, 0.0, 1e-12);
    Point2 o, p(1, 2), q(3, 7), s(5, -1);  // clockwise; no zero coordinate hides a term
    Triangle2 u(p, q, s, 0.5);
    ASSERT_TRUE(u.CircleCentre(o));
    EXPECT_NEAR(o.distance(p) - o.distance(q), 0.0, 1e-12);
    EXPECT_NEAR(o.distance(p) - o.distance(s), 0.0, 1e-12);
    b.x = 8;  // the triangle sees the caller's change
    EXPECT_DOUBLE_EQ(t.SignedArea(), 12.0);
    EXPECT_EQ(t.Orientation(), -1);
    t = u;
    EXPECT_TRUE(SamePoint(a, p) && SamePoint(b, q) && SamePoint(c, s) && t.tol == 0.5);
    EXPECT_EQ(u.Orientation(), 1);
    Point2 e(0, 0), f(4, 0), g(2, 0);
    const Triangle2 flat(e, f, g, 1e-9);
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
            const Point2 &p = h[i], &q = h[(i + 1) % h.size()];
            for (const Point2& x : v) EXPECT_GE((q - p) % (x - p), -1e-9);  // all on the left
        }
        const auto ext = cloud.ExtremalNodesIndexes();
        ASSERT_EQ(ext.Count(), 4u);
        for (const Point2& x : v) {
            EXPECT_TRUE(v[ext[0]].x <= x.x && v[ext[1]].y <= x.y);
            EXPECT_TRUE(v[ext[2]].x >= x.x && v[ext[3]].y >= x.y);
        }
    }
    // Collinear points on the hull's edges are left out, with no tolerance too; the hull of one
    // point is that point.
    const Contour2 ring({{0, 0}, {1, 0}, {2, 0}, {2, 2}, {1, 1}, {0, 2}}, 0.0);
    EXPECT_EQ(ring.ConvexHullIndexList(), (std::vector<std::size_t>{0, 2, 3, 5}));
    EXPECT_EQ(Contour2({{1, 1}, {1, 1}}, 0.0).ConvexHullIndexList().size(), 1u);
    // A vertex less than tol outside a hull edge is left out too.
    EXPECT_EQ(Contour2({{0, 0}, {5, -0.3}, {10, 0}, {5, 5}}, 0.5).ConvexHullIndexList(),
              (std::vector<std::size_t>{0, 2, 3}));
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
    EXPECT_FALSE(Contour2({{0, 0}, {3, 0}}, 1e-10).Contains(Segment2({0, 0}, {3, 0}), false));
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
    // The crossings (2, 1) and (1, 2) are now vertices of both, in edge order.
    EXPECT_TRUE(SamePoint(a[2], {2, 1}) && SamePoint(a[4], {1, 2}));
    EXPECT_TRUE(SamePoint(b[1], {2, 1}) && SamePoint(b[5], {1, 2}));
    EXPECT_EQ(a.Length() + b.Length(), 12);
    EXPECT_EQ(MATH_AddIntersectionPoints(a, b), 0u);  // nothing left to add
    Contour2 dot({{1, 0}}, 1e-10);
    EXPECT_EQ(MATH_AddIntersectionPoints(a, dot), 0u);  // no edge to meet
    // Overlapping edges: the ends of each inside the other are shared.
    Contour2 c(Square(0, 0, 4), 1e-10), d({{1, 4}, {3, 4}, {3, 6}, {1, 6}}, 1e-10);
    EXPECT_EQ(MATH_AddIntersectionPoints(c, d), 2u);
    EXPECT_EQ(c.Length() * 10 + d.Length(), 64);
    // Edges whose boxes meet without crossing come first: the search goes on past them.
    Contour2 e({{0, 0}, {4, 0}, {0, 4}}, 1e-10), g(Square(1, 1, 1.5), 1e-10);
    EXPECT_EQ(MATH_AddIntersectionPoints(e, g), 4u);
}

double TriArea(const Point2& a, const Point2& b, const Point2& c) {
    return (b - a) % (c - a) / 2.0;
}

// Triangulates outer with its holes and checks that the triangles tile the face: their areas add
// up to the face's area, each turns like the outline and none has its centroid outside the face.
// Returns the number of triangles.
std::size_t ExpectTiling(const std::vector<Point2>& outer,
                         const std::vector<std::vector<Point2>>& hole_points) {
    const Contour2 face(outer, 1e-10);
    Mvector<Contour2> holes;
    std::vector<Point2> all = outer;  // the index space of the triangles
    double expect = face.Area();
    for (const auto& h : hole_points) {
        all.insert(all.end(), h.begin(), h.end());
        holes.Add(Contour2(h, 1e-10));
        expect -= holes.Back().Area();
    }
    Mmatrix<std::size_t> tris;
    EXPECT_TRUE(holes.empty() ? face.Triangulate(tris) : face.TriangulateWithHoles(holes, tris));
    const double sign = face.SignedArea() > 0.0 ? 1.0 : -1.0;
    double sum = 0.0;
    for (const auto& t : tris) {
        const Point2 &a = all.at(t.at(0)), &b = all.at(t.at(1)), &c = all.at(t.at(2));
        const double area = TriArea(a, b, c);
        EXPECT_GT(sign * area, 0.0);  // no sliver from a collinear or repeated point
        sum += std::fabs(area);
        const Point2 g((a.x + b.x + c.x) / 3.0, (a.y + b.y + c.y) / 3.0);
        if (std::fabs(area) > 1e-9) {
            EXPECT_TRUE(face.Contains(g, false));
            for (const Contour2& h : holes) EXPECT_FALSE(h.Contains(g, true));
        }
    }
    EXPECT_NEAR(sum, expect, 1e-9 * std::max(1.0, expect));
    return tris.size();
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
    EXPECT_EQ(ExpectTiling(u, {}), 6u);
    ExpectTiling(runs, {});
    ExpectTiling(box, {h1, h2, h3});
    // Holes touching the outline at one vertex: the ring meets itself there.
    ExpectTiling({{4, 0}, {6, 2}, {7, 4}, {2, 7}, {3, 5}}, {{{4.5, 5}, {4, 2}, {6, 2}}});
    ExpectTiling({{0, 0}, {3, 0}, {2, 3}, {1, 3}, {0, 3}}, {{{1, 3}, {2, 1.5}, {1, 1}}});
    ExpectTiling({{0, 2}, {1, 0}, {3, 0}, {3, 3}, {1, 4}, {1, 3}}, {{{2, 3}, {1, 4}, {1, 1.5}}});
    Mmatrix<std::size_t> tris;
    EXPECT_FALSE(Contour2({{0, 0}, {1, 1}, {2, 2}}, 1e-10).Triangulate(tris));
    EXPECT_TRUE(tris.empty());
    EXPECT_FALSE(Contour2({{0, 0}, {1, 1}}, 1e-10).Triangulate(tris));
}

TEST(Contour2Triangulate, RandomStarsWithHolesAreTiledExactly) {
    std::mt19937 rng(2024);
    for (int round = 0; round < 40; ++round) {
        const double k = round % 3 == 0 ? 1e-3 : 1.0;  // areas far below 1 as well
        std::vector<Point2> outer = Star(rng, 6 + round % 25, Point2(0, 0), 2.5 * k, 6.0 * k);
        if (round % 2 == 1) std::reverse(outer.begin(), outer.end());
        // Holes in the disc of radius 2 (always inside the star), one per quadrant cell.
        std::vector<std::vector<Point2>> holes;
        for (int h = 0; h < round % 4; ++h) {
            const Point2 c(h % 2 == 0 ? -0.7 * k : 0.7 * k, h < 2 ? -0.7 * k : 0.7 * k);
            holes.push_back(Star(rng, 3 + static_cast<int>(rng() % 5), c, 0.2 * k, 0.5 * k));
            if (rng() % 2) std::reverse(holes.back().begin(), holes.back().end());
        }
        SCOPED_TRACE(round);
        ExpectTiling(outer, holes);
    }
}

TEST(Contour2Triangulate, LargeContourAndMiddlePoint) {
    std::vector<Point2> comb;  // a comb with 400 teeth: many reflex vertices
    for (int i = 0; i < 400; ++i) {
        comb.push_back({i * 1.0, 0});
        comb.push_back({i + 0.5, 5});
    }
    for (const Point2 p : {Point2(400, 0), Point2(400, -1), Point2(0, -1)}) comb.push_back(p);
    ExpectTiling(comb, {});
    const Contour2 outer(comb, 1e-10);
    const auto mid = outer.GetMiddleUniquePoint();
    ASSERT_TRUE(mid.second);
    EXPECT_TRUE(outer.Contains(mid.first, true));
    EXPECT_FALSE(Contour2({{0, 0}, {1, 0}, {2, 0}}, 1e-10).GetMiddleUniquePoint().second);
    const Contour2 small(Square(1, 1, 0.5), 1e-10);  // small areas too
    EXPECT_TRUE(small.Contains(small.GetMiddleUniquePoint().first, true));
}

}  // namespace
}  // namespace quillon
