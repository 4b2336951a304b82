#include "quillon/sections/mpoly.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>
#include <vector>

#include "quillon/sections/section_figures.h"

namespace quillon {
namespace {

MPoly Rect(double x0, double y0, double x1, double y1) {
    return MPoly{{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}};
}

MPoly Reversed(const MPoly& p) {
    return MPoly(std::vector<Point2>(p.points().rbegin(), p.points().rend()));
}

// Turned by angle about the origin, then moved by (dx, dy).
MPoly Transformed(const MPoly& p, double angle, double dx, double dy) {
    const double c = std::cos(angle), s = std::sin(angle);
    std::vector<Point2> v;
    for (const Point2& q : p) v.push_back({q.x * c - q.y * s + dx, q.x * s + q.y * c + dy});
    return MPoly(v);
}

M_SECT_PROPStr Props(const MPolySet& s) {
    M_SECT_PROPStr p;
    s.CalcProps(p);
    return p;
}

// A random star-shaped (simple) counter-clockwise polygon.
MPoly RandomStar(std::mt19937& rng, int n, double cx, double cy) {
    std::uniform_real_distribution<double> r(0.5, 2.0);
    MPoly p;
    for (int i = 0; i < n; ++i) {
        const double t = 2.0 * std::numbers::pi * i / n;
        const double rad = r(rng);
        p.Add({cx + rad * std::cos(t), cy + rad * std::sin(t)});
    }
    return p;
}

TEST(CLine2, SidesDistanceAndCrossing) {
    const CLine2 l(Point2(0, 0), Point2(2, 0));  // positive on the left of p -> q
    EXPECT_EQ(l.side({1, 1}), 1);
    EXPECT_EQ(l.side({1, -1}), -1);
    EXPECT_EQ(l.side({5, 0}), 0);
    EXPECT_DOUBLE_EQ(l.dist({1, -3}), 3.0);
    const CLine2 none(0.0, 0.0, 1.0);
    EXPECT_FALSE(none);
    EXPECT_EQ(none.dist({1, 1}), 0.0);
    // Angle form: t gives the normal (-cos t, -sin t); the value at p is the offset.
    const CLine2 horizontal(Point2(1, 5), std::numbers::pi / 2, 2.0);
    EXPECT_NEAR(horizontal.dist({-4, 7}), 0.0, 1e-15);
    EXPECT_NEAR(horizontal.a * 1 + horizontal.b * 5 + horizontal.c, 2.0, 1e-15);

    Point2 p(9, 9);
    EXPECT_EQ(LineCross(l, CLine2(Point2(1, -1), Point2(1, 1)), p), 0);
    EXPECT_NEAR(p.x, 1.0, 1e-15);
    EXPECT_NEAR(p.y, 0.0, 1e-15);
    p.set(9, 9);
    EXPECT_EQ(LineCross(l, CLine2(Point2(0, 1), Point2(3, 1)), p), -1);  // parallel
    EXPECT_EQ(p.x, 9.0);
    // The parallel test bounds the raw determinant: tiny coefficients count as parallel.
    EXPECT_EQ(LineCross(CLine2(1e-4, 0, 0), CLine2(0, 1e-4, 0), p), -1);
    EXPECT_EQ(LineCross(CLine2(1, 0, 0), CLine2(0, 1, 0), p), 0);
}

TEST(CPoly, PushBackStraightnessMeasureUsesSquaredLengths) {
    CPoly p;
    p.push_back({0, 0});
    p.push_back({1e-8, 0});  // duplicate
    p.push_back({1, 0});
    p.push_back({2, 0});  // straight continuation replaces (1, 0)
    EXPECT_EQ(p.size(), 2u);
    EXPECT_EQ(p.point(1).x, 2.0);
    p.push_back({1, 0});  // turns back along the same line: kept
    EXPECT_EQ(p.size(), 3u);
    // A degenerate last edge (possible through the copying constructor) makes push_back drop p.
    CPoly q{{0, 0}, {1e-8, 0}};
    q.push_back({1, 1});
    EXPECT_EQ(q.size(), 2u);
    // The same shape merges at one scale and not at another, because the cross product is divided
    // by the product of the squared lengths.
    for (double s : {1.0, 10.0}) {
        CPoly r{{0, 0}, {s, 0}};
        r.push_back({2 * s, s * 1e-3});
        EXPECT_EQ(r.size(), s == 1.0 ? 3u : 2u) << s;
    }
}

TEST(CPoly, MeasuresOfSimplePolygons) {
    const CPoly r{{1, 1}, {4, 1}, {4, 3}, {1, 3}};
    // Integer coordinates: every measure is exact. Signed area of the rectangle and its reverse,
    // open length, perimeter, width, height, top of the extents.
    EXPECT_EQ((std::vector<double>{r.surface(), Reversed(r).surface(), r.length(), r.perimeter(),
                                   r.width(), r.height(), r.extents().pnt2().y}),
              (std::vector<double>{6, -6, 8, 10, 3, 2, 3}));
    Point2 c;
    EXPECT_EQ(r.centre(&c), 0);
    EXPECT_DOUBLE_EQ(c.x, 2.5);
    EXPECT_DOUBLE_EQ(c.y, 2.0);
    // Triangle centre far from the origin: the mean of the vertices.
    const CPoly t{{1e6, 1e6}, {1e6 + 3, 1e6}, {1e6, 1e6 + 6}};
    EXPECT_EQ(t.centre(&c), 0);
    EXPECT_NEAR(c.x, 1e6 + 1, 1e-9);
    EXPECT_NEAR(c.y, 1e6 + 2, 1e-9);
    // Degenerate ones.
    c.set(5, 5);
    EXPECT_EQ(CPoly({{0, 0}, {1, 1}, {2, 2}}).centre(&c), -1);
    EXPECT_EQ(c.x, 0.0);
    EXPECT_EQ(CPoly({{0, 0}, {1, 1}}).surface(), 0.0);
    EXPECT_EQ(CPoly().width(), 0.0);
}

TEST(CPoly, ClosedCountAndPoints) {
    const CPoly open{{0, 0}, {1, 0}, {1, 1}, {0, 1}};  // last differs from first in y only
    const CPoly closed{{0, 0}, {1, 0}, {1, 1}, {0, 1e-8}};
    EXPECT_EQ(open.polygon_points(), 5);
    EXPECT_EQ(closed.polygon_points(), 4);  // last within the single-precision epsilon of first
    Point2 p;
    EXPECT_TRUE(open.polygon_point(4, p));
    EXPECT_EQ(p.y, 0.0);
    EXPECT_FALSE(closed.polygon_point(4, p));
    EXPECT_EQ(CPoly({{3, 3}}).polygon_points(), 1);
    MPoly m = Rect(0, 0, 1, 1);
    EXPECT_EQ(m.get_point(2, p), 0);
    EXPECT_EQ(p.y, 1.0);
    EXPECT_EQ(m.get_point(4, p), 1);
    EXPECT_EQ(p.y, 0.0);
}

TEST(CPoly, EqualsAnyStartEitherDirection) {
    const CPoly a{{0, 0}, {2, 0}, {2, 1}, {0, 1}};
    EXPECT_TRUE(a.Equals(CPoly({{2, 1}, {0, 1}, {0, 0}, {2, 0}}), 1e-9));    // rotated
    EXPECT_TRUE(a.Equals(CPoly({{2, 0}, {0, 0}, {0, 1}, {2, 1}}), 1e-9));    // reversed
    EXPECT_TRUE(a.Equals(CPoly({{0, 0}, {2, 0}, {2, 1.05}, {0, 1}}), 0.1));  // within tol
    EXPECT_FALSE(a.Equals(CPoly({{0, 0}, {2, 0}, {2, 1.05}, {0, 1}}), 0.01));
    EXPECT_FALSE(a.Equals(CPoly({{0, 0}, {2, 1}, {2, 0}, {0, 1}}), 1e-9));  // other order
    EXPECT_FALSE(a.Equals(CPoly({{0, 0}, {2, 0}, {2, 1}}), 1e-9));
    EXPECT_FALSE(CPoly().Equals(CPoly(), 1.0));
}

TEST(CPoly, CompressDropsStraightVertices) {
    CPoly p{{0, 0}, {1, 0}, {2, 0}, {3, 0}, {3, 1}, {3, 2}, {0, 2}, {1, 2}};
    p.compress();
    // (1,0), (2,0) and (3,1) lie on straight runs; (0,2) -> (1,2) turns back and stays.
    EXPECT_TRUE(p.Equals(CPoly({{0, 0}, {3, 0}, {3, 2}, {0, 2}, {1, 2}}), 0.0));
}

TEST(MPolySet, RectangleIntegralsAndPerimeterRules) {
    MPolySet s(Rect(0, 0, 2, 1));
    M_SECT_PROPStr p = Props(s);
    EXPECT_DOUBLE_EQ(p.area, 2.0);
    EXPECT_DOUBLE_EQ(p.perimeter, 6.0);
    EXPECT_DOUBLE_EQ(p.Sx, 1.0);
    EXPECT_DOUBLE_EQ(p.Sy, 2.0);
    EXPECT_DOUBLE_EQ(p.Ix, 2.0 / 3.0);
    EXPECT_DOUBLE_EQ(p.Iy, 8.0 / 3.0);
    EXPECT_DOUBLE_EQ(p.Ixy, 1.0);

    // Clockwise outline: same integrals, no perimeter (kept asymmetry).
    const M_SECT_PROPStr cw = Props(MPolySet(Reversed(Rect(0, 0, 2, 1))));
    EXPECT_DOUBLE_EQ(cw.area, 2.0);
    EXPECT_EQ(cw.perimeter, 0.0);

    // Holes subtract whatever their orientation; only a clockwise one adds its perimeter.
    MPolySet ring(Rect(0, 0, 4, 4));
    ring.holes.push_back(Rect(1, 1, 3, 3));
    p = Props(ring);
    EXPECT_DOUBLE_EQ(p.area, 12.0);
    EXPECT_DOUBLE_EQ(p.perimeter, 16.0);
    EXPECT_DOUBLE_EQ(p.Ix, (std::pow(4, 4) - std::pow(2, 4)) / 12 + 12.0 * 4.0);
    ring.holes[0] = Reversed(ring.holes[0]);
    const M_SECT_PROPStr q = Props(ring);
    EXPECT_DOUBLE_EQ(q.area, 12.0);
    EXPECT_DOUBLE_EQ(q.Ix, p.Ix);
    EXPECT_DOUBLE_EQ(q.perimeter, 24.0);

    // Polygons without area contribute nothing, not even their length.
    ring.outlines.push_back(MPoly{{10, 10}, {20, 30}, {30, 50}});
    EXPECT_DOUBLE_EQ(Props(ring).area, 12.0);
    EXPECT_DOUBLE_EQ(Props(ring).perimeter, 24.0);
}

TEST(MPolySet, MomentsInvariantUnderVertexRotationAndParallelAxisOnTranslation) {
    std::mt19937 rng(7);
    for (int trial = 0; trial < 20; ++trial) {
        const MPoly poly = RandomStar(rng, 5 + trial, 0.3, -0.2);
        const M_SECT_PROPStr a = Props(MPolySet(poly));
        // Start the vertex list elsewhere.
        std::vector<Point2> rot(poly.points());
        std::rotate(rot.begin(), rot.begin() + 3, rot.end());
        const M_SECT_PROPStr b = Props(MPolySet(MPoly(rot)));
        EXPECT_NEAR(a.area, b.area, 1e-12);
        EXPECT_NEAR(a.Ix, b.Ix, 1e-12);
        EXPECT_NEAR(a.Ixy, b.Ixy, 1e-12);
        // Shift by (dx, dy): S and I follow the parallel-axis rule.
        const double dx = 3.5, dy = -1.25;
        const M_SECT_PROPStr c = Props(MPolySet(Transformed(poly, 0.0, dx, dy)));
        EXPECT_NEAR(c.area, a.area, 1e-12);
        EXPECT_NEAR(c.Sx, a.Sx + dy * a.area, 1e-11);
        EXPECT_NEAR(c.Ix, a.Ix + 2 * dy * a.Sx + dy * dy * a.area, 1e-10);
        EXPECT_NEAR(c.Ixy, a.Ixy + dx * a.Sx + dy * a.Sy + dx * dy * a.area, 1e-10);
    }
}

TEST(MPolySet, CutByDiagonalKeepsVerticesOnTheLine) {
    const MPolySet sq(Rect(0, 0, 1, 1));
    const CLine2 diag(Point2(0, 0), Point2(1, 1));
    MPolySet out;
    sq.CutByLine(diag, -1, out);  // right of the diagonal: the lower triangle
    ASSERT_EQ(out.outlines.size(), 1u);
    EXPECT_TRUE(out.outlines[0].Equals(CPoly({{0, 0}, {1, 0}, {1, 1}}), 1e-15));
    sq.CutByLine(diag, 1, out);
    ASSERT_EQ(out.outlines.size(), 1u);
    EXPECT_TRUE(out.outlines[0].Equals(CPoly({{1, 1}, {0, 1}, {0, 0}}), 1e-15));
    // Wholly on one side: copied or dropped; side 0 keeps nothing.
    sq.CutByLine(CLine2(Point2(5, 0), Point2(5, 1)), 1, out);
    ASSERT_EQ(out.outlines.size(), 1u);
    EXPECT_TRUE(out.outlines[0].Equals(sq.outlines[0], 0.0));
    sq.CutByLine(CLine2(Point2(5, 0), Point2(5, 1)), -1, out);
    EXPECT_TRUE(out.outlines.empty());
    sq.CutByLine(diag, 0, out);
    EXPECT_TRUE(out.outlines.empty());
}

// Integrals with each polygon's own orientation (outlines +, holes -), no absolute weighting.
M_SECT_PROPStr OrientedProps(const MPolySet& s) {
    M_SECT_PROPStr acc;
    for (int sign : {1, -1}) {
        for (const MPoly& p : sign > 0 ? s.outlines : s.holes) {
            M_SECT_PROPStr one;
            for (int i = 0; i < p.num_point(); ++i) {
                AddEdgeProps(one, p.point(size_t(i)), p.point(size_t((i + 1) % p.num_point())));
            }
            acc.area += sign * one.area;
            acc.Sx += sign * one.Sx;
            acc.Iy += sign * one.Iy;
            acc.Ixy += sign * one.Ixy;
        }
    }
    return acc;
}

TEST(MPolySet, CutPiecesAddUpToTheWhole) {
    // A comb (non-convex, several pieces per cut) with a hole, cut by random lines: the pieces of
    // both sides give back the whole, and the out set may be the cut set itself.
    MPoly comb{{0, 0}, {7, 0}, {7, 3}, {6, 3}, {6, 1}, {5, 1}, {5, 3}, {4, 3},
               {4, 1}, {3, 1}, {3, 3}, {2, 3}, {2, 1}, {1, 1}, {1, 3}, {0, 3}};
    MPolySet s(comb);
    s.holes.push_back(Rect(0.2, 0.2, 6.8, 0.6));
    MPolySet convex(MPoly{{0, 0}, {4, -1}, {6, 1}, {5, 4}, {1, 3.5}});
    convex.holes.push_back(Rect(2, 0.5, 3, 2));
    const M_SECT_PROPStr whole = OrientedProps(s), whole_convex = Props(convex);
    std::mt19937 rng(11);
    std::uniform_real_distribution<double> u(-0.5, 7.5);
    int multi = 0;
    for (int trial = 0; trial < 200; ++trial) {
        const CLine2 line(Point2(u(rng), u(rng) * 0.4), Point2(u(rng), u(rng) * 0.4));
        MPolySet left, right = s;
        s.CutByLine(line, 1, left);
        right.CutByLine(line, -1, right);
        if (left.outlines.size() > 1) ++multi;
        const M_SECT_PROPStr l = OrientedProps(left), r = OrientedProps(right);
        EXPECT_NEAR(l.area + r.area, whole.area, 1e-9);
        EXPECT_NEAR(l.Sx + r.Sx, whole.Sx, 1e-9);
        EXPECT_NEAR(l.Iy + r.Iy, whole.Iy, 1e-8);
        EXPECT_NEAR(l.Ixy + r.Ixy, whole.Ixy, 1e-8);
        for (const MPoly& p : left.outlines) {
            for (const Point2& v : p) EXPECT_TRUE(line.side(v) >= 0 || line.dist(v) < 1e-9);
        }
        // Convex polygons give one properly oriented piece per side: CalcProps adds up too.
        convex.CutByLine(line, 1, left);
        convex.CutByLine(line, -1, right);
        const M_SECT_PROPStr cl = Props(left), cr = Props(right);
        EXPECT_NEAR(cl.area + cr.area, whole_convex.area, 1e-9);
        EXPECT_NEAR(cl.Ix + cr.Ix, whole_convex.Ix, 1e-8);
        EXPECT_NEAR(cl.Ixy + cr.Ixy, whole_convex.Ixy, 1e-8);
    }
    EXPECT_GT(multi, 10);  // the tracing of several pieces was exercised
}

TEST(MPolySet, CutTracesEachKeptRunAsAPieceOfItsOwn) {
    // A channel open to the right, cut by x = 0.5 keeping the web side: the polygon runs twice
    // through the kept side, and each run is closed by its own chord. The inner run encloses the
    // channel's void and comes out clockwise.
    const MPolySet channel(
        MPoly{{0, 0}, {2, 0}, {2, 0.2}, {0.2, 0.2}, {0.2, 1.8}, {2, 1.8}, {2, 2}, {0, 2}});
    MPolySet out;
    channel.CutByLine(CLine2(Point2(0.5, 0), Point2(0.5, 1)), 1, out);
    ASSERT_EQ(out.outlines.size(), 2u);
    double total = 0.0;
    int clockwise = 0;
    for (const MPoly& p : out.outlines) {
        total += p.surface();
        clockwise += p.surface() < 0.0;
    }
    EXPECT_EQ(clockwise, 1);
    EXPECT_NEAR(total, 0.5 * 2 - 0.3 * 1.6, 1e-12);  // the signed areas add up to the kept part
}

TEST(MPolySet, CutFallsBackToTheEdgeMidpoint) {
    // The edge (0,-2e-7) -> (1e-7,6e-7) crosses y = 0, but with the line's small coefficients the
    // raw determinant is below the parallel threshold, so the crossing is the edge's midpoint.
    const MPolySet s(MPoly{{-1, -1}, {0, -2e-7}, {1e-7, 6e-7}, {1e-7, 1}, {-1, 1}});
    MPolySet out;
    s.CutByLine(CLine2(0.0, 0.1, 0.0), 1, out);
    ASSERT_EQ(out.outlines.size(), 1u);
    EXPECT_NEAR(out.outlines[0].point(0).x, 5e-8, 1e-20);
    EXPECT_NEAR(out.outlines[0].point(0).y, 2e-7, 1e-20);
    s.CutByLine(CLine2(0.0, 1.0, 0.0), 1, out);  // same line, ordinary crossing
    EXPECT_NEAR(out.outlines[0].point(0).x, 2.5e-8, 1e-20);
    EXPECT_NEAR(out.outlines[0].point(0).y, 0.0, 1e-20);
}

TEST(MPolySet, ToLocalMovesEveryVertexIntoTheFrame) {
    MPolySet s(Rect(1, 1, 4, 3));
    s.holes.push_back(Rect(2, 1.5, 3, 2.5));
    const MPolySet before = s;
    const Local2 frame(Point2(2.5, 2), 0.7);
    s.ToLocal(frame);
    for (size_t i = 0; i < 4; ++i) {
        const Point2 back = s.holes[0].point(i) * frame;  // holes move too
        EXPECT_NEAR(back.distance(before.holes[0].point(i)), 0.0, 1e-14);
    }
    const M_SECT_PROPStr b = Props(s);  // the frame sits at the centroid
    EXPECT_NEAR(b.Sx, 0.0, 1e-12);
    EXPECT_NEAR(b.Sy, 0.0, 1e-12);
}

TEST(SectionFigures, RectangleOffsetFromTheOrigin) {
    const double b = 2.0, h = 5.0;
    const SectionFigures f = CalcSectionFigures(MPolySet(Rect(3, -1, 3 + b, -1 + h)));
    ASSERT_TRUE(f.valid);
    EXPECT_DOUBLE_EQ(f.area, b * h);
    EXPECT_NEAR(f.centroid.x, 4.0, 1e-14);
    EXPECT_NEAR(f.centroid.y, 1.5, 1e-14);
    EXPECT_NEAR(f.Ixc, b * h * h * h / 12, 1e-12);
    EXPECT_NEAR(f.Iyc, h * b * b * b / 12, 1e-12);
    EXPECT_NEAR(f.Ixyc, 0.0, 1e-12);
    EXPECT_NEAR(f.I1, f.Ixc, 1e-12);  // the tall rectangle is stiffest about x
    EXPECT_NEAR(f.alpha, 0.0, 1e-12);
    EXPECT_NEAR(f.rx, h / std::sqrt(12.0), 1e-12);
    EXPECT_NEAR(f.Wx_top, b * h * h / 6, 1e-12);
    EXPECT_NEAR(f.Wy, h * b * b / 6, 1e-12);
    // Lying flat, the major axis is vertical: alpha = +pi/2 (the upper end of the range).
    const SectionFigures g = CalcSectionFigures(MPolySet(Rect(0, 0, h, b)));
    EXPECT_NEAR(g.alpha, std::numbers::pi / 2, 1e-12);
    EXPECT_NEAR(g.I1, b * h * h * h / 12, 1e-12);
}

TEST(SectionFigures, ISectionChannelAndHollowSquare) {
    // I-section: flanges B x tf, web tw, overall height H, centred on the origin.
    const double B = 0.2, H = 0.4, tf = 0.02, tw = 0.01, hw = H / 2 - tf;
    const MPoly ibeam{{-B / 2, -H / 2}, {B / 2, -H / 2}, {B / 2, -hw},   {tw / 2, -hw},
                      {tw / 2, hw},     {B / 2, hw},     {B / 2, H / 2}, {-B / 2, H / 2},
                      {-B / 2, hw},     {-tw / 2, hw},   {-tw / 2, -hw}, {-B / 2, -hw}};
    const SectionFigures f = CalcSectionFigures(MPolySet(ibeam));
    const double Ix = (B * H * H * H - (B - tw) * std::pow(H - 2 * tf, 3)) / 12;
    const double Iy = (2 * tf * B * B * B + (H - 2 * tf) * tw * tw * tw) / 12;
    EXPECT_NEAR(f.area, 2 * B * tf + (H - 2 * tf) * tw, 1e-15);
    EXPECT_NEAR(f.Ixc, Ix, 1e-15);
    EXPECT_NEAR(f.Iyc, Iy, 1e-15);
    EXPECT_NEAR(f.Wx, 2 * Ix / H, 1e-14);
    EXPECT_NEAR(f.Wy, 2 * Iy / B, 1e-14);

    // Channel open to the right: web 0..tw, flanges to b; asymmetric about y.
    const double b = 0.1, h = 0.3, t = 0.01;
    const MPoly channel{{0, 0}, {b, 0}, {b, t}, {t, t}, {t, h - t}, {b, h - t}, {b, h}, {0, h}};
    const SectionFigures c = CalcSectionFigures(MPolySet(channel));
    const double A = 2 * b * t + (h - 2 * t) * t;
    const double xc = (2 * b * t * b / 2 + (h - 2 * t) * t * t / 2) / A;
    const double Iyc = 2 * (t * b * b * b / 12 + b * t * std::pow(b / 2 - xc, 2)) +
                       (h - 2 * t) * t * t * t / 12 + (h - 2 * t) * t * std::pow(t / 2 - xc, 2);
    EXPECT_NEAR(c.centroid.x, xc, 1e-15);
    EXPECT_NEAR(c.centroid.y, h / 2, 1e-15);
    EXPECT_NEAR(c.Iyc, Iyc, 1e-16);
    EXPECT_NEAR(c.Wy_left, Iyc / xc, 1e-14);
    EXPECT_NEAR(c.Wy_right, Iyc / (b - xc), 1e-14);
    EXPECT_DOUBLE_EQ(c.Wy, c.Wy_right);

    // Hollow square: the hole's moments come off; the extents are the outline's.
    MPolySet box(Rect(-2, -2, 2, 2));
    box.holes.push_back(Rect(-1.5, -1.5, 1.5, 1.5));
    const SectionFigures q = CalcSectionFigures(box);
    EXPECT_NEAR(q.Ixc, (std::pow(4, 4) - std::pow(3, 4)) / 12, 1e-12);
    EXPECT_NEAR(q.Wx_top, q.Ixc / 2, 1e-12);
    EXPECT_NEAR(q.I1 - q.I2, 0.0, 1e-12);
}

TEST(SectionFigures, RotatedRightTriangleRecoversItsPrincipalAxes) {
    // Triangle (0,0), (b,0), (0,h): centroidal Ix = bh^3/36, Iy = hb^3/36, Ixy = -b^2h^2/72.
    const double b = 3.0, h = 2.0;
    const MPoly tri{{0, 0}, {b, 0}, {0, h}};
    const SectionFigures f = CalcSectionFigures(MPolySet(tri));
    EXPECT_NEAR(f.centroid.x, b / 3, 1e-14);
    EXPECT_NEAR(f.Ixc, b * h * h * h / 36, 1e-13);
    EXPECT_NEAR(f.Iyc, h * b * b * b / 36, 1e-13);
    EXPECT_NEAR(f.Ixyc, -b * b * h * h / 72, 1e-13);
    // The moment about the major axis is I1, about the minor I2, and there is no product moment.
    const double c = std::cos(f.alpha), s = std::sin(f.alpha);
    EXPECT_NEAR(f.Ixc * c * c + f.Iyc * s * s - 2 * f.Ixyc * s * c, f.I1, 1e-12);
    EXPECT_NEAR(f.Ixc * s * s + f.Iyc * c * c + 2 * f.Ixyc * s * c, f.I2, 1e-12);
    EXPECT_NEAR(f.I1 + f.I2, f.Ixc + f.Iyc, 1e-12);

    // A rectangle turned by theta has its major axis at theta; moving it changes no centroidal
    // figure.
    std::mt19937 rng(3);
    std::uniform_real_distribution<double> u(-1.4, 1.5);
    for (int i = 0; i < 20; ++i) {
        const double theta = u(rng);
        const SectionFigures r =
            CalcSectionFigures(MPolySet(Transformed(Rect(-1, -3, 1, 3), theta, 50 * u(rng), 7)));
        EXPECT_NEAR(r.alpha, theta, 1e-9);
        EXPECT_NEAR(r.I1, 2.0 * 216 / 12, 1e-9);
        EXPECT_NEAR(r.I2, 6.0 * 8 / 12, 1e-9);
        const SectionFigures t =
            CalcSectionFigures(MPolySet(Transformed(tri, 0.0, 40 * u(rng), -9)));
        EXPECT_NEAR(t.Ixc, f.Ixc, 1e-10);
        EXPECT_NEAR(t.Wx_top, f.Wx_top, 1e-10);
        EXPECT_NEAR(t.Wy_left, f.Wy_left, 1e-10);
    }
}

TEST(SectionFigures, NoFiguresWithoutPositiveArea) {
    EXPECT_FALSE(CalcSectionFigures(MPolySet()).valid);
    MPolySet only_hole;
    only_hole.holes.push_back(Rect(0, 0, 1, 1));
    const SectionFigures f = CalcSectionFigures(only_hole);
    EXPECT_FALSE(f.valid);
    EXPECT_EQ(f.Ixc, 0.0);
}

}  // namespace
}  // namespace quillon

namespace quillon {
namespace {

// Rounding leaves a symmetric section a product moment of either sign; the major axis of a tall
// section must still read +90 degrees, as the range (-90, 90] promises.
TEST(SectionFigures, RoundingNoiseInTheProductMomentDoesNotTurnTheAxis) {
    const Rect2 box(-1, -1, 1, 1);
    for (const double noise : {1e-14, -1e-14, 0.0}) {
        M_SECT_PROPStr p;
        p.area = 1.0;
        p.Ix = 1.0;
        p.Iy = 2.0;
        p.Ixy = noise;
        EXPECT_EQ(CalcSectionFigures(p, box).alpha, std::numbers::pi / 2) << noise;
    }
    M_SECT_PROPStr real;  // a product moment that matters still turns the axis
    real.area = 1.0;
    real.Ix = 1.0;
    real.Iy = 2.0;
    real.Ixy = 0.1;
    EXPECT_LT(CalcSectionFigures(real, box).alpha, std::numbers::pi / 2 - 0.05);
}

}  // namespace
}  // namespace quillon
