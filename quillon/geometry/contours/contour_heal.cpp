#include "quillon/geometry/contours/contour_heal.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace quillon {

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kTwoPi = 2.0 * std::numbers::pi;

bool Finite(const Point2& p) { return std::isfinite(p.x) && std::isfinite(p.y); }

// The arc from its start through `next`, or false when that would not be the same arc.
bool Rebuild(LAEdge& e, const Point2& next, double eps, double tolerance) {
    const Point2 s = e.start;
    const Vector2 d = next - s;
    const double chord = d.length();
    if (chord <= eps) {
        if (std::fabs(e.angle) > kPi) {
            e.angle = e.angle > 0.0 ? kTwoPi : -kTwoPi;
        } else {
            e = LAEdge(s);
        }
        return true;
    }
    const Point2 m((s.x + next.x) / 2.0, (s.y + next.y) / 2.0);
    const Vector2 u(-d.y / chord, d.x / chord);
    const Point2 c = m + u * ((e.centre - m) * u);
    const double turn = (s - c).angle(next - c);
    const double k = std::round((e.angle - turn) / kTwoPi);
    const double sweep = turn + kTwoPi * k;
    if (!(sweep != 0.0) || (sweep > 0.0) != (e.angle > 0.0) || std::fabs(sweep) > kTwoPi)
        return false;
    LAEdge rebuilt(s, c, sweep);
    if (rebuilt.mid_arc().distance(e.mid_arc()) > tolerance) return false;
    if (rebuilt.end_arc().distance(next) > eps) return false;
    e = rebuilt;
    return true;
}

}  // namespace

int HealLAContour(LAContour& contour, double eps, double tolerance) {
    if (!(eps >= 0.0)) eps = 1e-10;
    int changed = 0;
    for (std::size_t i = 0; i < contour.size(); ++i) {
        LAEdge& e = contour[i];
        if (e.type != 1 || !Finite(e.start) || !Finite(e.centre) || !std::isfinite(e.angle))
            continue;
        const Point2 next = contour[(i + 1) % contour.size()].start;
        if (!Finite(next)) continue;
        const Point2 end = e.end_arc();
        const double miss = end.distance(next);
        if (miss <= eps) continue;
        ++changed;
        if (miss <= tolerance && Rebuild(e, next, eps, tolerance)) continue;
        // `e` is not used past this point: the insertion may move the edges.
        contour.insert(contour.begin() + static_cast<std::ptrdiff_t>(i) + 1, LAEdge(end));
        ++i;
    }
    return changed;
}

int HealComplexContour(ProComplexContour& shape, double eps, double tolerance) {
    int changed = 0;
    for (unsigned long i = 0; i < shape.ChildrenCount(); ++i) {
        ProSolidContour* s = shape.SolidChild(i);
        if (s == nullptr) continue;
        changed += HealLAContour(s->GetLAContour(), eps, tolerance);
        for (unsigned long j = 0; j < s->ChildrenCount(); ++j)
            if (ProClosedContour* h = s->ClosedChild(j))
                changed += HealLAContour(h->GetLAContour(), eps, tolerance);
    }
    return changed;
}

double TextRoundingTolerance(const ProComplexContour& shape) {
    double radius = 0.0, extent = 0.0;
    const auto scan = [&radius, &extent](const LAContour& c) {
        for (const LAEdge& e : c) {
            if (!Finite(e.start)) continue;
            extent = std::max({extent, std::fabs(e.start.x), std::fabs(e.start.y)});
            if (e.type == 1 && Finite(e.centre)) radius = std::max(radius, e.rad_arc());
        }
    };
    for (unsigned long i = 0; i < shape.ChildrenCount(); ++i) {
        const ProSolidContour* s = shape.SolidChild(i);
        if (s == nullptr) continue;
        scan(*s);
        for (unsigned long j = 0; j < s->ChildrenCount(); ++j)
            if (const ProClosedContour* h = s->ClosedChild(j)) scan(*h);
    }
    return 3e-6 + 2e-6 * radius + 8.0 * extent * 2.220446049250313e-16;
}

}  // namespace quillon
