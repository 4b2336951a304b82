#include "quillon/sections/section_figures.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace quillon {

namespace {

double Radius(double inertia, double area) { return std::sqrt(std::max(inertia, 0.0) / area); }

double Modulus(double inertia, double fibre) { return fibre > 0.0 ? inertia / fibre : 0.0; }

}  // namespace

SectionFigures CalcSectionFigures(const M_SECT_PROPStr& props, const Rect2& extents) {
    SectionFigures f;
    const double a = props.area;
    if (!(a > 0.0) || !std::isfinite(a)) return f;
    f.valid = true;
    f.area = a;
    const double xc = props.Sy / a;
    const double yc = props.Sx / a;
    f.centroid.set(xc, yc);
    // Parallel-axis rule, written with the first moments so no centroid is squared separately.
    f.Ixc = props.Ix - props.Sx * yc;
    f.Iyc = props.Iy - props.Sy * xc;
    f.Ixyc = props.Ixy - props.Sy * yc;

    const double mean = 0.5 * (f.Ixc + f.Iyc);
    const double half = 0.5 * (f.Ixc - f.Iyc);
    const double radius = std::hypot(half, f.Ixyc);
    f.I1 = mean + radius;
    f.I2 = mean - radius;
    // The moment about an axis at angle t is mean + half*cos 2t - Ixyc*sin 2t; its maximum.
    // A product moment at the rounding level of the moments is taken as zero, so a symmetric
    // section reports its axis exactly (+90 degrees, never -90 by the sign of the noise).
    const double scale = std::fabs(f.Ixc) + std::fabs(f.Iyc);
    const double product = std::fabs(f.Ixyc) <= 1e-12 * scale ? 0.0 : f.Ixyc;
    double t = 0.5 * std::atan2(-product, half);
    if (t <= -std::numbers::pi / 2.0) t += std::numbers::pi;
    f.alpha = t;

    f.rx = Radius(f.Ixc, a);
    f.ry = Radius(f.Iyc, a);
    f.r1 = Radius(f.I1, a);
    f.r2 = Radius(f.I2, a);

    const Point2& p1 = extents.pnt1();
    const Point2& p2 = extents.pnt2();
    const double xmin = std::min(p1.x, p2.x), xmax = std::max(p1.x, p2.x);
    const double ymin = std::min(p1.y, p2.y), ymax = std::max(p1.y, p2.y);
    f.Wx_top = Modulus(f.Ixc, ymax - yc);
    f.Wx_bottom = Modulus(f.Ixc, yc - ymin);
    f.Wy_right = Modulus(f.Iyc, xmax - xc);
    f.Wy_left = Modulus(f.Iyc, xc - xmin);
    f.Wx = Modulus(f.Ixc, std::max(ymax - yc, yc - ymin));
    f.Wy = Modulus(f.Iyc, std::max(xmax - xc, xc - xmin));
    return f;
}

Rect2 SectionExtents(const MPolySet& section) {
    bool any = false;
    Point2 lo;
    Point2 hi;
    for (const MPoly& poly : section.outlines) {
        for (const Point2& p : poly) {
            if (!any) {
                lo = hi = p;
                any = true;
                continue;
            }
            lo.x = std::min(lo.x, p.x);
            lo.y = std::min(lo.y, p.y);
            hi.x = std::max(hi.x, p.x);
            hi.y = std::max(hi.y, p.y);
        }
    }
    return Rect2(lo, hi);
}

SectionFigures CalcSectionFigures(const MPolySet& section) {
    M_SECT_PROPStr props;
    section.CalcProps(props);
    return CalcSectionFigures(props, SectionExtents(section));
}

}  // namespace quillon
