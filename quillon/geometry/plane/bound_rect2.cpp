#include "quillon/geometry/plane/bound_rect2.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace quillon {

namespace {

constexpr double kQuarter = std::numbers::pi / 2.0;
// Never more quadrant steps than this per arc (see arc_90).
constexpr int kMaxQuadrantSteps = 5;

}  // namespace

bool BoundRect2::get_rect(Point2& LB, Point2& RT) const {
    if (!valid) return false;
    LB = lb;
    RT = rt;
    return true;
}

BoundRect2& BoundRect2::point(double x, double y) {
    if (!valid) {
        lb.set(x, y);
        rt.set(x, y);
        valid = true;
        return *this;
    }
    lb.x = std::min(lb.x, x);
    rt.x = std::max(rt.x, x);
    lb.y = std::min(lb.y, y);
    rt.y = std::max(rt.y, y);
    return *this;
}

BoundRect2& BoundRect2::circle(const Point2& c, double r) {
    point(c + Vector2(r, 0.0));
    point(c + Vector2(0.0, r));
    point(c - Vector2(r, 0.0));
    point(c - Vector2(0.0, r));
    return *this;
}

BoundRect2& BoundRect2::arc(const Point2& c, const Point2& start_point, double sweep) {
    const Vector2 r = start_point - c;
    const double cs = std::cos(sweep), sn = std::sin(sweep);
    point(start_point);
    point(c + Vector2(r.x * cs - r.y * sn, r.x * sn + r.y * cs));
    return arc_90(c, r.length(), r.angle(), sweep);
}

BoundRect2& BoundRect2::arc(const Point2& c, double r, double start, double sweep) {
    point(c + Vector2().set2(r, start));
    point(c + Vector2().set2(r, start + sweep));
    return arc_90(c, r, start, sweep);
}

BoundRect2& BoundRect2::arc_90(const Point2& c, double r, double a0, double sweep) {
    double q = a0 - std::fmod(a0, kQuarter);
    const double a1 = a0 + sweep;
    if (sweep > 0.0) {
        q -= kQuarter;
        for (int step = 0; step < kMaxQuadrantSteps && q < a1; ++step) {
            if (q > a0) point(c + Vector2().set2(r, q));
            q += kQuarter;
        }
    } else {
        for (int step = 0; step < kMaxQuadrantSteps && q > a1; ++step) {
            if (q < a0) point(c + Vector2().set2(r, q));
            q -= kQuarter;
        }
    }
    return *this;
}

BoundRect2& BoundRect2::operator+=(const BoundRect2& o) {
    if (!o.valid) return *this;
    if (!valid) return *this = o;
    point(o.lb);
    point(o.rt);
    return *this;
}

BoundRect2& BoundRect2::move_by(const Vector2& v) {
    lb += v;
    rt += v;
    return *this;
}

}  // namespace quillon
