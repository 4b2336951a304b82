#include "quillon/sections/contour_props.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <initializer_list>
#include <memory>
#include <numbers>

#include "quillon/geometry/contours/contour_validate.h"

namespace quillon {
namespace {

constexpr double kPi = std::numbers::pi;

// The seven fields of M_SECT_PROPStr in their order: area, perimeter, Sx, Sy, Ix, Iy, Ixy.
using Fields = std::array<double, 7>;

Fields F(const M_SECT_PROPStr& p) { return {p.area, p.perimeter, p.Sx, p.Sy, p.Ix, p.Iy, p.Ixy}; }

// Closed forms; b - h is the rectangle with the hole h taken out (perimeters add).
Fields Rect(double x0, double y0, double x1, double y1) {
    const double w = x1 - x0, h = y1 - y0, sx = (y1 * y1 - y0 * y0) / 2,
                 sy = (x1 * x1 - x0 * x0) / 2;
    return {w * h,
            2 * (w + h),
            w * sx,
            h * sy,
            w * (y1 * y1 * y1 - y0 * y0 * y0) / 3,
            h * (x1 * x1 * x1 - x0 * x0 * x0) / 3,
            sx * sy};
}
Fields Disc(double cx, double cy, double r) {
    const double a = kPi * r * r, i = a * r * r / 4;
    return {a, 2 * kPi * r, cy * a, cx * a, cy * cy * a + i, cx * cx * a + i, cx * cy * a};
}
Fields operator-(Fields b, const Fields& h) {
    for (std::size_t k = 0; k < 7; ++k) b[k] += k == 1 ? h[k] : -h[k];
    return b;
}

// One arc edge sweeping a whole turn, starting off the axes.
LAContour Circle(double cx, double cy, double r, bool ccw = true) {
    const Point2 start(cx + r * std::cos(0.3), cy + r * std::sin(0.3));
    return LAContour{LAEdge(start, Point2(cx, cy), ccw ? 2 * kPi : -2 * kPi)};
}

// The rectangle [x0, x1] x [y0, y1], counter-clockwise or clockwise.
LAContour Box(double x0, double y0, double x1, double y1, bool ccw = true) {
    const Point2 p[] = {{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}};
    LAContour c;
    for (int i = 0; i < 4; ++i) c.push_back(LAEdge(p[ccw ? i : 3 - i]));
    return c;
}

std::unique_ptr<ProComplexContour> Shape(const LAContour& solid,
                                         std::initializer_list<LAContour> holes = {}) {
    auto shape = std::make_unique<ProComplexContour>();
    ProSolidContour* s = shape->Attach(new ProSolidContour(solid));
    for (const LAContour& h : holes) s->Attach(new ProEmptyContour(h));
    return shape;
}

// Every field within tol times the scale of the field's kind (length^k); signed integrals * sign.
void ExpectProps(const M_SECT_PROPStr& got, const Fields& want, double len, double tol,
                 double sign = 1.0) {
    const int power[7] = {2, 1, 3, 3, 4, 4, 4};
    for (std::size_t k = 0; k < 7; ++k)
        EXPECT_NEAR(F(got)[k], (k == 1 ? 1 : sign) * want[k], tol * std::pow(len, power[k])) << k;
}

TEST(ContourProps, DiscIsExactWhateverArcsMakeIt) {
    const double r = 2.0;
    ExpectProps(CalcContourProps(Circle(5, -3, r, false)), Disc(5, -3, r), 6, 1e-15, -1.0);
    // Four quarter arcs, and the former's circle: two clockwise half arcs and a zero-length edge.
    LAContour quarters, formed;
    for (int k = 0; k < 4; ++k)
        quarters.push_back(
            LAEdge(Point2(5, -3) + Vector2().set2(r, k * kPi / 2), {5, -3}, kPi / 2));
    ExpectProps(CalcContourProps(quarters), Disc(5, -3, r), 6, 1e-15);
    LAContourFormer former(formed, nullptr, 2, 1e-9);
    former.arc_point(Point2(5, -3), r);
    ASSERT_TRUE(former.close());
    ExpectProps(CalcProps(*Shape(formed)), Disc(5, -3, r), 6, 1e-15);
    // Extents pass through the quadrant points although the arc starts between them.
    const SectionFigures f = CalcSectionFigures(*Shape(Circle(5, -3, r)));
    EXPECT_NEAR(f.Ixc, kPi * r * r * r * r / 4, 4e-14);
    EXPECT_NEAR(f.Wx, kPi * r * r * r / 4, 1e-14);
    EXPECT_NEAR(f.Wy_right, kPi * r * r * r / 4, 1e-14);
}

TEST(ContourProps, HolesSubtractWhateverTheirOrientation) {
    for (int turns = 0; turns < 4; ++turns)  // solid and hole each either way round
        ExpectProps(CalcProps(*Shape(Circle(1, 2, 3, turns & 1), {Circle(1, 2, 1.25, turns & 2)})),
                    Disc(1, 2, 3) - Disc(1, 2, 1.25), 5, 1e-15);
    // A square with a square hole and an off-centre circular hole, either way round; a lone
    // clockwise outline has every signed integral negated and its length kept.
    for (bool ccw : {false, true}) {
        ExpectProps(CalcProps(*Shape(Box(0, 0, 10, 10, ccw),
                                     {Box(1, 1, 3, 4, !ccw), Circle(6.5, 6, 2, ccw)})),
                    Rect(0, 0, 10, 10) - Rect(1, 1, 3, 4) - Disc(6.5, 6, 2), 10, 1e-15);
        ExpectProps(CalcContourProps(Box(1, 1, 3, 4, ccw)), Rect(1, 1, 3, 4), 4, 1e-15,
                    ccw ? 1.0 : -1.0);
    }
}

TEST(ContourProps, GapAfterAnArcIsClosedByAStraightEdge) {
    // A lone half-turn arc ends on the far side of its start: the diameter closes the half disc.
    const LAContour half{LAEdge(Point2(2, 0), Point2(0, 0), kPi)};
    const Fields want = {2 * kPi, 2 * kPi + 4, 16 / 3.0, 0, 2 * kPi, 2 * kPi, 0};
    ExpectProps(CalcContourProps(half), want, 2, 2e-15);
    // Its extents reach the top quadrant point only. Clockwise from the bottom through the left
    // to the top: below -pi the quadrants wrap.
    const Rect2 box = ContourExtents(*Shape(half));
    EXPECT_NEAR(box.pnt1().distance({-2, 0}) + box.pnt2().distance({2, 2}), 0.0, 1e-15);
    const Rect2 left = ContourExtents(*Shape({LAEdge(Point2(0, -2), Point2(0, 0), -kPi)}));
    EXPECT_NEAR(left.pnt1().distance({-2, -2}) + left.pnt2().distance({0, 2}), 0.0, 1e-15);
}

TEST(ContourProps, ThinSegmentsKeepTheirRelativePrecision) {
    // The sliver between a chord of half length c and an arc of radius R: at this flatness its
    // integrals match the parabolic segment's to 1e-8 (half sweep squared).
    const double R = 1e4, c = 1, d = std::sqrt(R * R - c * c), h = c * c / (R + d);
    const M_SECT_PROPStr p = CalcContourProps(
        {LAEdge(Point2(c, 0), Point2(0, -d), 2 * std::asin(c / R)), LAEdge(Point2(-c, 0))});
    EXPECT_NEAR(p.area / (4 * h * c / 3), 1, 1e-6);
    EXPECT_NEAR(p.Sx / (8 * h * h * c / 15), 1, 1e-6);
    EXPECT_NEAR(p.Ix / (32 * h * h * h * c / 105), 1, 1e-6);
    EXPECT_NEAR(p.Iy / (4 * h * c * c * c / 15), 1, 1e-6);
}

TEST(ContourProps, CentroidalFiguresAreTranslationInvariant) {
    const auto home = Shape(Box(0, 0, 6, 4), {Circle(4, 2.5, 0.8, false)});
    const auto away = Shape(Box(0, 0, 6, 4), {Circle(4, 2.5, 0.8, false)});
    const Vector2 v(3e6, -7e5);
    away->Move(v);
    const SectionFigures a = CalcSectionFigures(*home), b = CalcSectionFigures(*away);
    EXPECT_NEAR(b.centroid.distance(a.centroid + v), 0.0, 3e-9);
    const double fa[] = {a.Ixc, a.Iyc, a.Ixyc, a.I1, a.alpha, a.Wy_left};
    const double fb[] = {b.Ixc, b.Iyc, b.Ixyc, b.I1, b.alpha, b.Wy_left};
    for (int k = 0; k < 6; ++k) EXPECT_NEAR(fa[k], fb[k], 1e-9 * (1 + std::fabs(fa[k]))) << k;
    // The raw integrals move by the parallel-axis rules, up to the rounding of the moved
    // coordinates (half an ulp of 3e6 is 2.3e-10, i.e. 4e-11 of the shape's size).
    const Fields got = F(CalcProps(*away)), want = F(TranslateProps(CalcProps(*home), v));
    for (std::size_t k = 0; k < 7; ++k) EXPECT_NEAR(got[k], want[k], 1e-9 * std::fabs(want[k]));
}

// The largest coordinates a valid contour may hold still give finite section figures; beyond them
// the validation refuses the shape before any figure overflows.
TEST(ContourProps, ValidShapesAtTheCoordinateLimitHaveFiniteFigures) {
    auto triangle = [](double l) {
        return Shape({LAEdge(Point2(-l, -l)), LAEdge(Point2(l, -l)), LAEdge(Point2(-l, l))});
    };
    const auto big = triangle(kMaxContourCoordinate);
    ASSERT_TRUE(ValidateComplexContour(*big, 1e-7).IsValid());
    const SectionFigures g = CalcSectionFigures(*big);
    ASSERT_TRUE(g.valid);
    for (double v : {g.area, g.centroid.x, g.centroid.y, g.Ixc, g.Iyc, g.Ixyc, g.I1, g.I2, g.alpha,
                     g.rx, g.ry, g.r1, g.r2, g.Wx, g.Wy})
        EXPECT_TRUE(std::isfinite(v)) << v;
    EXPECT_DOUBLE_EQ(g.area, 2.0 * kMaxContourCoordinate * kMaxContourCoordinate);
    for (double l : {1e100, 1e308}) {
        const ContourValidation v = ValidateComplexContour(*triangle(l), 1e-7);
        ASSERT_EQ(v.problems.size(), 1u);
        EXPECT_EQ(v.problems[0].kind, ContourProblemKind::Overflow);
    }
}

}  // namespace
}  // namespace quillon
