#include "quillon/sections/mpoly.h"

#include <gtest/gtest.h>

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

M_SECT_PROPStr Props(const MPolySet& s) {
    M_SECT_PROPStr p;
    s.CalcProps(p);
    return p;
}

TEST(CLine2, SidesDistanceValidityAndTheAngleForm) {
    // Crossings are exercised by the cuts below; there the distance is only compared to a
    // tolerance and sides are asked far from the line.
    const CLine2 l(Point2(0, 0), Point2(1, 1));  // positive on the left of p -> q
    EXPECT_EQ((std::vector<int>{l.side({0, 0.5}), l.side({0.5, 0}), l.side({2, 2})}),
              (std::vector<int>{1, -1, 0}));
    EXPECT_DOUBLE_EQ(l.dist({1, -1}), std::sqrt(2.0));
    EXPECT_TRUE(!CLine2(0.0, 0.0, 1.0) && CLine2(0.0, 0.0, 1.0).dist({1, 1}) == 0.0);
    // Angle form: t gives the normal (-cos t, -sin t); the value at p is the offset.
    const CLine2 horizontal(Point2(1, 5), std::numbers::pi / 2, 2.0);
    EXPECT_NEAR(horizontal.dist({-4, 7}), 0.0, 1e-15);
    EXPECT_NEAR(horizontal.a * 1 + horizontal.b * 5 + horizontal.c, 2.0, 1e-15);
    Point2 p;  // the parallel test is strict: a determinant of exactly the tolerance still crosses
    EXPECT_EQ(LineCross(CLine2(kSectionEps, 0, 0), CLine2(0, 1, 0), p), 0);
}

TEST(CPoly, PushBackStraightnessMeasureUsesSquaredLengths) {
    CPoly p;
    for (const Point2& q : {Point2(0, 0), Point2(1e-8, 0), Point2(1, 0), Point2(2, 0)})
        p.push_back(q);
    EXPECT_TRUE(p.Equals(CPoly({{0, 0}, {2, 0}}), 0.0));  // duplicate dropped, run straightened
    p.push_back({1, 0});                                  // turns back along the same line: kept
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

TEST(CPoly, MeasuresClosingAndIndexedPoints) {
    const CPoly r{{1, 1}, {4, 1}, {4, 3}, {1, 3}};
    // Integer coordinates: every measure is exact.
    EXPECT_EQ((std::vector<double>{r.surface(), r.length(), r.perimeter(), r.width(), r.height(),
                                   r.extents().pnt2().y}),
              (std::vector<double>{6, 8, 10, 3, 2, 3}));
    Point2 c;
    EXPECT_EQ(CPoly({{1e6, 1e6}, {1e6 + 3, 1e6}, {1e6, 1e6 + 6}}).centre(&c), 0);
    EXPECT_NEAR(c.distance({1e6 + 1, 1e6 + 2}), 0.0, 1e-9);  // far from the origin
    // Closed when the last point is within the single-precision epsilon of the first (in y too).
    const CPoly open{{0, 0}, {1, 0}, {1, 1}, {0, 1}}, closed{{0, 0}, {1, 0}, {1, 1}, {0, 1e-8}};
    EXPECT_EQ(open.polygon_points(), 5);
    EXPECT_EQ(closed.polygon_points(), 4);
    EXPECT_EQ(CPoly({{0, 0}, {1, 0}, {0, kSectionEps}}).polygon_points(), 4);  // at eps: open
    EXPECT_TRUE(open.polygon_point(4, c) && c.y == 0.0);
    EXPECT_FALSE(closed.polygon_point(4, c));
    // get_point: 0 and the vertex inside the range, 1 and (0, 0) outside it.
    const MPoly m = Rect(3, 4, 5, 6);
    const std::pair<int, Point2> asked[] = {{-1, {0, 0}}, {0, {3, 4}}, {3, {3, 6}}, {4, {0, 0}}};
    for (const auto& [i, want] : asked) {
        Point2 p(9, 9);
        EXPECT_EQ(m.get_point(i, p), i < 0 || i > 3 ? 1 : 0) << i;
        EXPECT_EQ(p.distance(want), 0.0) << i;
    }
}

TEST(CPoly, EqualsAnyStartEitherDirectionAndCompress) {
    const CPoly a{{0, 0}, {2, 0}, {2, 1}, {0, 1}};
    EXPECT_TRUE(a.Equals(CPoly({{2, 1}, {0, 1}, {0, 0}, {2, 0}}), 1e-9));    // rotated
    EXPECT_TRUE(a.Equals(CPoly({{2, 0}, {0, 0}, {0, 1}, {2, 1}}), 1e-9));    // reversed
    EXPECT_TRUE(a.Equals(CPoly({{0, 0}, {2, 0}, {2, 1.05}, {0, 1}}), 0.1));  // within tol
    EXPECT_FALSE(a.Equals(CPoly({{0, 0}, {2, 0}, {2, 1.05}, {0, 1}}), 0.01));
    EXPECT_FALSE(a.Equals(CPoly({{0, 0}, {2, 1}, {2, 0}, {0, 1}}), 1e-9));  // other order
    EXPECT_FALSE(a.Equals(CPoly({{0, 0}, {2, 0}, {2, 1}}), 1e-9));
    EXPECT_FALSE(CPoly().Equals(CPoly(), 1.0));
    CPoly p{{0, 0}, {1, 0}, {2, 0}, {3, 0}, {3, 1}, {3, 2}, {0, 2}, {1, 2}};
    p.compress();  // straight runs go; (0,2) -> (1,2) turns back and stays
    EXPECT_TRUE(p.Equals(CPoly({{0, 0}, {3, 0}, {3, 2}, {0, 2}, {1, 2}}), 0.0));
}

TEST(MPolySet, RectangleIntegralsAndPerimeterRules) {
    const std::vector<double> rect{2, 6, 1, 2, 2.0 / 3, 8.0 / 3, 1};  // [0,2] x [0,1]
    const M_SECT_PROPStr p = Props(MPolySet(Rect(0, 0, 2, 1)));
    const std::vector<double> got{p.area, p.perimeter, p.Sx, p.Sy, p.Ix, p.Iy, p.Ixy};
    for (std::size_t k = 0; k < 7; ++k) EXPECT_NEAR(got[k], rect[k], 1e-15) << k;
    // A clockwise outline counts without its perimeter (kept asymmetry).
    EXPECT_EQ(Props(MPolySet(Reversed(Rect(0, 0, 2, 1)))).perimeter, 0.0);
    // Holes subtract whatever their orientation; only a clockwise one adds its perimeter. Polygons
    // without area contribute nothing, not even their length.
    MPolySet ring(Rect(0, 0, 4, 4));
    ring.outlines.push_back(MPoly{{10, 10}, {20, 30}, {30, 50}});
    for (bool cw_hole : {false, true}) {
        ring.holes = {cw_hole ? Reversed(Rect(1, 1, 3, 3)) : Rect(1, 1, 3, 3)};
        const M_SECT_PROPStr q = Props(ring);
        EXPECT_DOUBLE_EQ(q.area, 12.0);
        EXPECT_DOUBLE_EQ(q.Ix, (std::pow(4, 4) - std::pow(2, 4)) / 12 + 12.0 * 4.0);
        EXPECT_DOUBLE_EQ(q.perimeter, cw_hole ? 24.0 : 16.0);
    }
}

// Signed area with each polygon's own orientation (outlines +, holes -), no absolute weighting.
double OrientedArea(const MPolySet& s) {
    double a = 0.0;
    for (const MPoly& p : s.outlines) a += p.surface();
    for (const MPoly& p : s.holes) a -= p.surface();
    return a;
}

TEST(MPolySet, CutPiecesAddUpToTheWhole) {
    // A comb (non-convex, several pieces per cut) with a hole, cut by random lines: the pieces of
    // both sides give back the whole, and the out set may be the cut set itself.
    MPolySet s(MPoly{{0, 0},
                     {7, 0},
                     {7, 3},
                     {6, 3},
                     {6, 1},
                     {5, 1},
                     {5, 3},
                     {4, 3},
                     {4, 1},
                     {3, 1},
                     {3, 3},
                     {2, 3},
                     {2, 1},
                     {1, 1},
                     {1, 3},
                     {0, 3}});
    s.holes.push_back(Rect(0.2, 0.2, 6.8, 0.6));
    std::mt19937 rng(11);
    std::uniform_real_distribution<double> u(-0.5, 7.5);
    int multi = 0;
    for (int trial = 0; trial < 200; ++trial) {
        const CLine2 line(Point2(u(rng), u(rng) * 0.4), Point2(u(rng), u(rng) * 0.4));
        MPolySet left, right = s;
        s.CutByLine(line, 1, left);
        right.CutByLine(line, -1, right);
        multi += left.outlines.size() > 1;
        EXPECT_NEAR(OrientedArea(left) + OrientedArea(right), OrientedArea(s), 1e-9);
        for (const MPoly& p : left.outlines) {
            for (const Point2& v : p) EXPECT_TRUE(line.side(v) >= 0 || line.dist(v) < 1e-9);
        }
    }
    EXPECT_GT(multi, 10);  // the tracing of several pieces was exercised
}

TEST(MPolySet, CutTracesEachKeptRunAndFallsBackToTheEdgeMidpoint) {
    // A channel open to the right, cut by x = 0.5 keeping the web side: the polygon runs twice
    // through the kept side, and each run is closed by its own chord. The inner run encloses the
    // channel's void and comes out clockwise.
    const MPolySet channel(
        MPoly{{0, 0}, {2, 0}, {2, 0.2}, {0.2, 0.2}, {0.2, 1.8}, {2, 1.8}, {2, 2}, {0, 2}});
    MPolySet out;
    channel.CutByLine(CLine2(Point2(0.5, 0), Point2(0.5, 1)), 1, out);
    ASSERT_EQ(out.outlines.size(), 2u);
    const double a0 = out.outlines[0].surface(), a1 = out.outlines[1].surface();
    EXPECT_LT(a0 * a1, 0.0);                           // one of them clockwise
    EXPECT_NEAR(a0 + a1, 0.5 * 2 - 0.3 * 1.6, 1e-12);  // adding up to the kept part
    // Vertices on the line are kept as they are; side 0 keeps nothing.
    const MPolySet sq(Rect(0, 0, 1, 1));
    sq.CutByLine(CLine2(Point2(0, 0), Point2(1, 1)), -1, out);  // right of it: the lower triangle
    ASSERT_EQ(out.outlines.size(), 1u);
    EXPECT_TRUE(out.outlines[0].Equals(CPoly({{0, 0}, {1, 0}, {1, 1}}), 1e-15));
    sq.CutByLine(CLine2(Point2(0, 0), Point2(1, 1)), 0, out);
    EXPECT_TRUE(out.outlines.empty());
    MPolySet(MPoly{{0, 0}, {2, 0}, {1, 0}}).CutByLine(CLine2(0.0, 1.0, 0.0), 1, out);
    EXPECT_TRUE(out.outlines.empty());  // lying on the line: on neither side
    // The edge (0,-2e-7) -> (1e-7,6e-7) crosses y = 0, but with the line's small coefficients the
    // raw determinant is below the parallel threshold, so the crossing is the edge's midpoint.
    const MPolySet s(MPoly{{-1, -1}, {0, -2e-7}, {1e-7, 6e-7}, {1e-7, 1}, {-1, 1}});
    s.CutByLine(CLine2(0.0, 0.1, 0.0), 1, out);
    ASSERT_EQ(out.outlines.size(), 1u);
    EXPECT_NEAR(out.outlines[0].point(0).distance({5e-8, 2e-7}), 0.0, 1e-20);
    s.CutByLine(CLine2(0.0, 1.0, 0.0), 1, out);  // same line, ordinary crossing
    EXPECT_NEAR(out.outlines[0].point(0).distance({2.5e-8, 0.0}), 0.0, 1e-20);
}

TEST(MPolySet, ToLocalMovesOutlinesAndHolesIntoTheFrame) {
    MPolySet s(Rect(1, 1, 4, 3));
    s.holes.push_back(Rect(2, 1.5, 3, 2.5));
    s.ToLocal(Local2(Point2(2.5, 2), 0.7));  // at the common centroid
    const M_SECT_PROPStr p = Props(s);
    EXPECT_NEAR(std::hypot(p.Sx, p.Sy) + std::fabs(p.area - 5.0), 0.0, 1e-12);
}

TEST(SectionFigures, RectangleOffsetFromTheOriginAndRightTriangleAxes) {
    const double b = 2.0, h = 5.0;
    const SectionFigures f = CalcSectionFigures(MPolySet(Rect(3, -1, 3 + b, -1 + h)));
    ASSERT_TRUE(f.valid);
    EXPECT_NEAR(f.centroid.distance({4.0, 1.5}), 0.0, 1e-14);
    const double got[] = {f.Ixc, f.Iyc, f.Ixyc, f.I1, f.alpha, f.rx, f.Wx_top, f.Wy};
    const double want[] = {
        b * h * h * h / 12, h * b * b * b / 12, 0, b * h * h * h / 12, 0, h / std::sqrt(12.0),
        b * h * h / 6,      h * b * b / 6};
    for (int k = 0; k < 8; ++k) EXPECT_NEAR(got[k], want[k], 1e-12) << k;
    // Lying flat, the major axis is vertical: alpha = +pi/2 (the upper end of the range).
    EXPECT_NEAR(CalcSectionFigures(MPolySet(Rect(0, 0, h, b))).alpha, std::numbers::pi / 2, 1e-12);
    // Triangle (0,0), (b,0), (0,h): centroidal Ix = bh^3/36, Iy = hb^3/36, Ixy = -b^2h^2/72.
    const double tb = 3.0, th = 2.0;
    const SectionFigures t = CalcSectionFigures(MPolySet(MPoly{{0, 0}, {tb, 0}, {0, th}}));
    EXPECT_NEAR(t.centroid.x, tb / 3, 1e-14);
    EXPECT_NEAR(t.Ixc, tb * th * th * th / 36, 1e-13);
    EXPECT_NEAR(t.Iyc, th * tb * tb * tb / 36, 1e-13);
    EXPECT_NEAR(t.Ixyc, -tb * tb * th * th / 72, 1e-13);
    // The moment about the major axis is I1, about the minor I2.
    const double c = std::cos(t.alpha), s = std::sin(t.alpha);
    EXPECT_NEAR(t.Ixc * c * c + t.Iyc * s * s - 2 * t.Ixyc * s * c, t.I1, 1e-12);
    EXPECT_NEAR(t.Ixc * s * s + t.Iyc * c * c + 2 * t.Ixyc * s * c, t.I2, 1e-12);
    // The fibres right of the centroid are twice as far as those left of it; the least modulus
    // is the one reported.
    EXPECT_NEAR(t.Wy_left, 2 * t.Wy_right, 1e-12);
    EXPECT_NEAR(t.Wx_bottom, 2 * t.Wx_top, 1e-12);
    EXPECT_NEAR(t.Wy_right * 2 * tb / 3, t.Iyc, 1e-12);
    EXPECT_EQ(t.Wy, t.Wy_right);
}

// Rounding leaves a symmetric section a product moment of either sign; the major axis of a tall
// section must still read +90 degrees, as the range (-90, 90] promises. No positive area, no
// figures.
TEST(SectionFigures, RoundingNoiseInTheProductMomentDoesNotTurnTheAxis) {
    const Rect2 box(-1, -1, 1, 1);
    for (const double noise : {1e-14, -1e-14, 0.0}) {
        const M_SECT_PROPStr p{.area = 1.0, .Ix = 1.0, .Iy = 2.0, .Ixy = noise};
        EXPECT_EQ(CalcSectionFigures(p, box).alpha, std::numbers::pi / 2) << noise;
    }
    EXPECT_FALSE(CalcSectionFigures(MPolySet()).valid);
    MPolySet only_hole;
    only_hole.holes.push_back(Rect(0, 0, 1, 1));
    EXPECT_FALSE(CalcSectionFigures(only_hole).valid);
}

}  // namespace
}  // namespace quillon
