#include "quillon/sections/contour_props.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <initializer_list>
#include <memory>
#include <numbers>
#include <utility>

namespace quillon {
namespace {

constexpr double kPi = std::numbers::pi;

// The seven fields of M_SECT_PROPStr in their order: area, perimeter, Sx, Sy, Ix, Iy, Ixy.
using Fields = std::array<double, 7>;

Fields F(const M_SECT_PROPStr& p) { return {p.area, p.perimeter, p.Sx, p.Sy, p.Ix, p.Iy, p.Ixy}; }

// Weighted sum of closed forms; perimeters add unweighted.
Fields Sum(std::initializer_list<std::pair<double, Fields>> parts) {
    Fields s{};
    for (const auto& [w, p] : parts)
        for (std::size_t k = 0; k < 7; ++k) s[k] += (k == 1 ? 1.0 : w) * p[k];
    return s;
}

// Independent closed forms of the pieces the shapes below are made of.
Fields RectForm(double x0, double y0, double x1, double y1) {
    const double w = x1 - x0, h = y1 - y0;
    return {w * h,
            2 * (w + h),
            w * (y1 * y1 - y0 * y0) / 2,
            h * (x1 * x1 - x0 * x0) / 2,
            w * (y1 * y1 * y1 - y0 * y0 * y0) / 3,
            h * (x1 * x1 * x1 - x0 * x0 * x0) / 3,
            (x1 * x1 - x0 * x0) * (y1 * y1 - y0 * y0) / 4};
}

// The quarter of the disc (cx, cy, r) in the quadrant of signs (sx, sy).
Fields QuarterDiscForm(double cx, double cy, double r, double sx, double sy) {
    const double a = kPi * r * r / 4, m = r * r * r / 3, i = kPi * r * r * r * r / 16;
    return {a,
            kPi * r / 2,
            cy * a + sy * m,
            cx * a + sx * m,
            cy * cy * a + 2 * cy * sy * m + i,
            cx * cx * a + 2 * cx * sx * m + i,
            cx * cy * a + (cx * sy + cy * sx) * m + sx * sy * r * r * r * r / 8};
}

Fields DiscForm(double cx, double cy, double r) {
    return Sum({{1, QuarterDiscForm(cx, cy, r, 1, 1)},
                {1, QuarterDiscForm(cx, cy, r, -1, 1)},
                {1, QuarterDiscForm(cx, cy, r, -1, -1)},
                {1, QuarterDiscForm(cx, cy, r, 1, -1)}});
}

Fields Negated(const Fields& p) { return Sum({{-1, p}}); }

Fields RoundedRectForm(double x0, double y0, double x1, double y1, double r) {
    Fields s = Sum({{1, RectForm(x0, y0 + r, x1, y1 - r)},
                    {1, RectForm(x0 + r, y0, x1 - r, y0 + r)},
                    {1, RectForm(x0 + r, y1 - r, x1 - r, y1)},
                    {1, QuarterDiscForm(x1 - r, y1 - r, r, 1, 1)},
                    {1, QuarterDiscForm(x0 + r, y1 - r, r, -1, 1)},
                    {1, QuarterDiscForm(x0 + r, y0 + r, r, -1, -1)},
                    {1, QuarterDiscForm(x1 - r, y0 + r, r, 1, -1)}});
    s[1] = 2 * (x1 - x0 + y1 - y0) - 8 * r + 2 * kPi * r;
    return s;
}

// One arc edge sweeping a whole turn, starting off the axes.
LAContour Circle(double cx, double cy, double r, bool ccw = true) {
    LAContour c;
    c.push_back(LAEdge(Point2(cx + r * std::cos(0.3), cy + r * std::sin(0.3)), Point2(cx, cy),
                       ccw ? 2 * kPi : -2 * kPi));
    return c;
}

LAContour RoundedRect(double x0, double y0, double x1, double y1, double r) {
    LAContour c;
    const double q = kPi / 2;
    c.push_back(LAEdge(Point2(x0 + r, y0)));
    c.push_back(LAEdge(Point2(x1 - r, y0), Point2(x1 - r, y0 + r), q));
    c.push_back(LAEdge(Point2(x1, y0 + r)));
    c.push_back(LAEdge(Point2(x1, y1 - r), Point2(x1 - r, y1 - r), q));
    c.push_back(LAEdge(Point2(x1 - r, y1)));
    c.push_back(LAEdge(Point2(x0 + r, y1), Point2(x0 + r, y1 - r), q));
    c.push_back(LAEdge(Point2(x0, y1 - r)));
    c.push_back(LAEdge(Point2(x0, y0 + r), Point2(x0 + r, y0 + r), q));
    return c;
}

// The same outline run the other way round.
LAContour Reversed(const LAContour& c) {
    LAContour r;
    for (std::size_t i = c.size(); i-- > 0;) {
        const Point2 end = c[(i + 1) % c.size()].start;
        r.push_back(c[i].type == 1 ? LAEdge(end, c[i].centre, -c[i].angle) : LAEdge(end));
    }
    return r;
}

std::unique_ptr<ProComplexContour> Shape(const LAContour& solid,
                                         std::initializer_list<LAContour> holes = {}) {
    auto shape = std::make_unique<ProComplexContour>();
    ProSolidContour* s = shape->Attach(new ProSolidContour(solid));
    for (const LAContour& h : holes) s->Attach(new ProEmptyContour(h));
    return shape;
}

// Every field within tol times the scale of the field's kind (length^k).
void ExpectProps(const M_SECT_PROPStr& got, const Fields& want, double len, double tol) {
    const Fields g = F(got);
    const int power[7] = {2, 1, 3, 3, 4, 4, 4};
    for (std::size_t k = 0; k < 7; ++k)
        EXPECT_NEAR(g[k], want[k], tol * std::pow(len, power[k])) << "field " << k;
}

TEST(ContourProps, DiscIsExactAtTheCentreAndAtAnOffset) {
    const double r = 2.0;
    const M_SECT_PROPStr d = CalcContourProps(Circle(0, 0, r));
    EXPECT_NEAR(d.perimeter, 2 * kPi * r, 1e-15);
    ExpectProps(d, DiscForm(0, 0, r), r, 1e-15);  // the form gives πr² and πr⁴/4 exactly here
    ExpectProps(CalcContourProps(Circle(5, -3, r)), DiscForm(5, -3, r), 6, 1e-15);
    ExpectProps(CalcContourProps(Circle(5, -3, r, false)), Negated(DiscForm(5, -3, r)), 6, 1e-15);
    // The former's circle: two clockwise half arcs and a zero-length straight edge.
    LAContour formed;
    LAContourFormer former(formed, nullptr, 2, 1e-9);
    former.arc_point(Point2(5, -3), r);
    ASSERT_TRUE(former.close());
    ExpectProps(CalcContourProps(formed), Negated(DiscForm(5, -3, r)), 6, 1e-15);
    ExpectProps(CalcProps(*Shape(formed)), DiscForm(5, -3, r), 6, 1e-15);
    // Extents pass through the quadrant points although the arc starts between them.
    const SectionFigures f = CalcSectionFigures(*Shape(Circle(5, -3, r)));
    ASSERT_TRUE(f.valid);
    EXPECT_NEAR(f.centroid.x, 5, 1e-15);
    EXPECT_NEAR(f.Ixc, kPi * r * r * r * r / 4, 4e-14);
    EXPECT_NEAR(f.Wx, kPi * r * r * r / 4, 1e-14);
    EXPECT_NEAR(f.Wy_right, kPi * r * r * r / 4, 1e-14);
}

TEST(ContourProps, HolesSubtractWhateverTheirOrientation) {
    const double R = 3, r = 1.25;
    const Fields annulus = Sum({{1, DiscForm(1, 2, R)}, {-1, DiscForm(1, 2, r)}});
    for (bool solid_ccw : {true, false})
        for (bool hole_ccw : {true, false})
            ExpectProps(CalcProps(*Shape(Circle(1, 2, R, solid_ccw), {Circle(1, 2, r, hole_ccw)})),
                        annulus, 5, 1e-15);
    // A square with a square hole and an off-centre circular hole, either way round.
    const Fields holed =
        Sum({{1, RectForm(0, 0, 10, 10)}, {-1, RectForm(1, 1, 3, 4)}, {-1, DiscForm(6.5, 6, 2)}});
    const LAContour square = RoundedRect(0, 0, 10, 10, 0), hole = RoundedRect(1, 1, 3, 4, 0);
    for (bool rev : {false, true})
        ExpectProps(CalcProps(*Shape(rev ? Reversed(square) : square,
                                     {rev ? hole : Reversed(hole), Circle(6.5, 6, 2, rev)})),
                    holed, 10, 1e-15);
}

TEST(ContourProps, RoundedRectangleMatchesItsClosedForm) {
    const LAContour c = RoundedRect(-1, 2, 5, 6, 0.75);
    const Fields want = RoundedRectForm(-1, 2, 5, 6, 0.75);
    ExpectProps(CalcContourProps(c), want, 6, 1e-15);
    // Reversing the outline negates every signed integral and keeps the length.
    ExpectProps(CalcContourProps(Reversed(c)), Negated(want), 6, 1e-15);
    ExpectProps(CalcProps(*Shape(Reversed(c))), want, 6, 1e-15);
}

TEST(ContourProps, GapAfterAnArcIsClosedByAStraightEdge) {
    // A lone half-turn arc ends on the far side of its start: the diameter closes the half disc.
    LAContour half;
    half.push_back(LAEdge(Point2(2, 0), Point2(0, 0), kPi));
    const M_SECT_PROPStr p = CalcContourProps(half);
    EXPECT_NEAR(p.area, 2 * kPi, 1e-15);
    EXPECT_NEAR(p.Sx, 2 * 8 / 3.0, 1e-14);
    EXPECT_NEAR(p.Sy, 0, 1e-14);
    EXPECT_NEAR(p.Ix, kPi * 16 / 8, 1e-14);
    EXPECT_NEAR(p.perimeter, 2 * kPi + 4, 1e-14);
    // Its extents reach the top quadrant point only.
    const Rect2 box = ContourExtents(*Shape(half));
    EXPECT_EQ(box.pnt1().y, 0.0);
    EXPECT_EQ(box.pnt2().y, 2.0);
    EXPECT_EQ(box.pnt1().x, -2.0);
    // Clockwise from the bottom through the left to the top: below -pi the quadrants wrap.
    LAContour left;
    left.push_back(LAEdge(Point2(0, -2), Point2(0, 0), -kPi));
    const Rect2 lbox = ContourExtents(*Shape(left));
    EXPECT_EQ(lbox.pnt1().x, -2.0);
    EXPECT_EQ(lbox.pnt2().y, 2.0);
}

TEST(ContourProps, ThinSegmentsKeepTheirRelativePrecision) {
    // The sliver between a chord of half length c and an arc of radius R: at this flatness its
    // integrals match the parabolic segment's to 1e-8 (half sweep squared).
    const double R = 1e4, c = 1, d = std::sqrt(R * R - c * c), h = c * c / (R + d);
    LAContour sliver;
    sliver.push_back(LAEdge(Point2(c, 0), Point2(0, -d), 2 * std::asin(c / R)));
    sliver.push_back(LAEdge(Point2(-c, 0)));
    const M_SECT_PROPStr p = CalcContourProps(sliver);
    EXPECT_NEAR(p.area / (4 * h * c / 3), 1, 1e-6);
    EXPECT_NEAR(p.Sx / (8 * h * h * c / 15), 1, 1e-6);
    EXPECT_NEAR(p.Ix / (32 * h * h * h * c / 105), 1, 1e-6);
    EXPECT_NEAR(p.Iy / (4 * h * c * c * c / 15), 1, 1e-6);
}

TEST(ContourProps, CentroidalFiguresAreTranslationInvariant) {
    const auto home = Shape(RoundedRect(0, 0, 6, 4, 1), {Circle(4, 2.5, 0.8, false)});
    const auto away = Shape(RoundedRect(0, 0, 6, 4, 1), {Circle(4, 2.5, 0.8, false)});
    const Vector2 v(3e6, -7e5);
    away->Move(v);
    const SectionFigures a = CalcSectionFigures(*home), b = CalcSectionFigures(*away);
    ASSERT_TRUE(a.valid && b.valid);
    EXPECT_NEAR(b.centroid.x - v.x, a.centroid.x, 2e-9);
    EXPECT_NEAR(b.centroid.y - v.y, a.centroid.y, 2e-9);
    const std::initializer_list<std::pair<double, double>> same = {
        {a.Ixc, b.Ixc}, {a.Iyc, b.Iyc},     {a.Ixyc, b.Ixyc}, {a.I1, b.I1},
        {a.I2, b.I2},   {a.alpha, b.alpha}, {a.Wx, b.Wx},     {a.Wy_left, b.Wy_left}};
    for (const auto& [x, y] : same) EXPECT_NEAR(x, y, 1e-9 * (1 + std::fabs(x)));
    // The raw integrals move by the parallel-axis rules, up to the rounding of the moved
    // coordinates (half an ulp of 3e6 is 2.3e-10, i.e. 4e-11 of the shape's size).
    const Fields got = F(CalcProps(*away)), want = F(TranslateProps(CalcProps(*home), v));
    for (std::size_t k = 0; k < 7; ++k)
        EXPECT_NEAR(got[k], want[k], 1e-9 * std::fabs(want[k])) << k;
}

TEST(ContourProps, ChordApproximationsConvergeQuadratically) {
    // A rounded rectangle (quarter arcs, split at limit / small_steps) and a disc missing a quarter
    // (a 270° arc, split at 2π / circle_steps).
    LAContour pacman;
    pacman.push_back(LAEdge(Point2(3, 3)));
    pacman.push_back(LAEdge(Point2(5, 3), Point2(3, 3), 1.5 * kPi));
    pacman.push_back(LAEdge(Point2(3, 1)));
    struct Case {
        LAContour c;
        bool large;
    };
    for (const Case& k : {Case{RoundedRect(1, 2, 7, 6, 0.75), false}, Case{pacman, true}}) {
        const Fields exact = F(CalcContourProps(k.c));
        double prev[6] = {}, prev_n = 0;
        for (int steps = 40; steps <= 320; steps *= 2) {
            LAContour poly;
            k.c.approximate(poly, k.large ? steps : 36, k.large ? 1 : steps, 2.0);
            const double n = k.large ? std::trunc((1.5 * kPi + kPi / 180) / (2 * kPi / steps))
                                     : std::trunc(kPi / 2 / (2.0 / steps));
            M_SECT_PROPStr chords;
            for (std::size_t i = 0; i < poly.size(); ++i)
                AddEdgeProps(chords, poly[i].start, poly[(i + 1) % poly.size()].start);
            for (std::size_t f = 0; f < 6; ++f) {  // Ixy left out
                const double err = exact[f] - F(chords)[f];
                EXPECT_GT(err, 0) << f;  // chords cut inside convex arcs and are shorter
                if (prev_n > 0) {
                    EXPECT_NEAR(prev[f] / err, (n / prev_n) * (n / prev_n), 0.3) << f;
                }
                prev[f] = err;
            }
            prev_n = n;
        }
        EXPECT_LT(prev[0], 1e-3);
    }
}

}  // namespace
}  // namespace quillon
