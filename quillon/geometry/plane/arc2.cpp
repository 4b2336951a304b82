#include "quillon/geometry/plane/arc2.h"

#include <cmath>

#include "quillon/geometry/plane/angles.h"
#include "quillon/geometry/plane/line2.h"

namespace quillon {

Arc2& Arc2::set(const Circle2& c, double startAngle, double sweepAngle) {
    circle = c;
    start = startAngle;
    sweep = sweepAngle;
    valid = true;
    return *this;
}

Arc2& Arc2::set(const Circle2& c, const Point2& p, const Point2& /*q*/, double sweepAngle) {
    return set(c, (p - c.center).angle(), sweepAngle);
}

Arc2& Arc2::setAOB(const Point2& a, const Point2& o, const Point2& b, bool clockwise) {
    const Vector2 oa = a - o;
    circle.set(o, oa.length());
    start = oa.angle();
    sweep = oa.angle(b - o);
    if ((sweep < 0.0) != clockwise) sweep = clockwise ? sweep - kTwoPi : kTwoPi + sweep;
    valid = true;
    return *this;
}

Arc2& Arc2::setABC(const Point2& a, const Point2& b, const Point2& c) {
    const Vector2 ac = c - a;
    const Vector2 cb = b - c;
    const Line2 bis1((a + c) / 2.0, Vector2(ac.y, -ac.x));
    const Line2 bis2((c + b) / 2.0, Vector2(cb.y, -cb.x));
    const auto centre = bis1.intersection(bis2);
    if (!centre.second) {
        valid = false;
        return *this;
    }
    const Vector2 ra = a - centre.first;
    circle.set(centre.first, ra.length());
    start = ra.angle();
    sweep = ra.angle(b - centre.first);
    if (sweep < 0.0) sweep += kTwoPi;
    double through = ra.angle(c - centre.first);
    if (through < 0.0) through += kTwoPi;
    // C not met on the counter-clockwise way from A to B: the arc runs clockwise.
    if (through > sweep) sweep -= kTwoPi;
    valid = true;
    return *this;
}

Point2 Arc2::get_begin() const { return circle.center + Vector2().set2(circle.radius, start); }

Point2 Arc2::get_end() const {
    return circle.center + Vector2().set2(circle.radius, start + sweep);
}

}  // namespace quillon
