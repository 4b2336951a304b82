#include "quillon/sections/section_figures.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>
#include <vector>

namespace quillon {
namespace {

MPoly Rect(double x0, double y0, double x1, double y1) {
    return MPoly{{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}};
}

MPoly Transformed(const MPoly& p, double angle, double dx, double dy) {
    const double c = std::cos(angle), s = std::sin(angle);
    std::vector<Point2> v;
    for (const Point2& q : p) v.push_back({q.x * c - q.y * s + dx, q.x * s + q.y * c + dy});
    return MPoly(v);
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
