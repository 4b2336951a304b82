// Circles and circular arcs of the plane.
//
// An arc is a circle, a start angle and a signed sweep (radians; positive = counter-clockwise,
// negative = clockwise) with a valid flag. A construction that cannot be made leaves the arc
// invalid and never throws.
#pragma once

#include "quillon/geometry/plane/vector2.h"

namespace quillon {

struct Circle2 {
    Point2 center;
    double radius = 0.0;

    Circle2() = default;
    Circle2(const Point2& c, double r) : center(c), radius(r) {}

    Circle2& set(const Point2& c, double r) {
        center = c;
        radius = r;
        return *this;
    }
    const Point2& get_center() const { return center; }
    double get_radius() const { return radius; }
};

struct Arc2 {
    Circle2 circle;
    double start = 0.0;  // start angle
    double sweep = 0.0;  // signed sweep
    bool valid = false;

    Arc2() = default;
    Arc2(const Circle2& c, double startAngle, double sweepAngle) { set(c, startAngle, sweepAngle); }
    Arc2(const Circle2& c, const Point2& p, const Point2& q, double sweepAngle) {
        set(c, p, q, sweepAngle);
    }
    Arc2(const Point2& a, const Point2& o, const Point2& b, bool clockwise) {
        setAOB(a, o, b, clockwise);
    }
    Arc2(const Point2& a, const Point2& b, const Point2& c) { setABC(a, b, c); }

    Arc2& set(const Circle2& c, double startAngle, double sweepAngle);
    // Starts at the angle of p; q is not used, the sweep alone fixes the end (kept as it always
    // was).
    Arc2& set(const Circle2& c, const Point2& p, const Point2& q, double sweepAngle);
    // Centre o, from a to b the requested way round (the long way if need be).
    Arc2& setAOB(const Point2& a, const Point2& o, const Point2& b, bool clockwise);
    // From a to b through c; invalid (and otherwise untouched) when the three points are collinear.
    Arc2& setABC(const Point2& a, const Point2& b, const Point2& c);

    bool is_valid() const { return valid; }
    explicit operator bool() const { return valid; }
    const Circle2& get_circle() const { return circle; }
    double get_startAngle() const { return start; }
    double get_angle() const { return sweep; }
    Point2 get_begin() const;
    Point2 get_end() const;
};

}  // namespace quillon
