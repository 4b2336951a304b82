// Rectangles and bounding rectangles of the plane.
//
// Rect2 is two corners as given (not normalised). BoundRect2 grows to hold the points, circles and
// arcs added to it; an empty one is invalid and contributes nothing to a union.
#pragma once

#include "quillon/geometry/plane/vector2.h"

namespace quillon {

class Rect2 {
public:
    Rect2() = default;
    Rect2(double x1, double y1, double x2, double y2) : p1(x1, y1), p2(x2, y2) {}
    Rect2(const Point2& q1, const Point2& q2) : p1(q1), p2(q2) {}

    Rect2& set(const Point2& q1, const Point2& q2) {
        p1 = q1;
        p2 = q2;
        return *this;
    }
    Point2& pnt1() { return p1; }
    const Point2& pnt1() const { return p1; }
    Point2& pnt2() { return p2; }
    const Point2& pnt2() const { return p2; }

private:
    Point2 p1;
    Point2 p2;
};

class BoundRect2 {
public:
    BoundRect2() = default;

    BoundRect2& reset() {
        valid = false;
        lb.zero();
        rt.zero();
        return *this;
    }
    bool is_valid() const { return valid; }
    explicit operator bool() const { return valid; }
    const Point2& get_LB() const { return lb; }
    const Point2& get_RT() const { return rt; }
    // False (and the arguments untouched) when empty.
    bool get_rect(Point2& LB, Point2& RT) const;
    Vector2 get_size() const { return rt - lb; }

    BoundRect2& point(double x, double y);
    BoundRect2& point(const Point2& p) { return point(p.x, p.y); }
    BoundRect2& operator<<(const Point2& p) { return point(p.x, p.y); }
    // The four axis-extreme points of the circle.
    BoundRect2& circle(const Point2& c, double r);
    // The arc about c from start_point, sweeping by sweep.
    BoundRect2& arc(const Point2& c, const Point2& start_point, double sweep);
    BoundRect2& arc(const Point2& c, double r, double start, double sweep);
    // Adds the quadrant points strictly inside the arc, at most five steps of 90°; the positive
    // branch starts one quadrant back. Kept as it always was: stored bounds depend on it. End
    // points are the callers' to add.
    BoundRect2& arc_90(const Point2& c, double r, double a0, double sweep);

    BoundRect2& operator+=(const BoundRect2& o);
    BoundRect2 operator+(const BoundRect2& o) const { return BoundRect2(*this) += o; }
    BoundRect2& move_by(const Vector2& v);

private:
    bool valid = false;
    Point2 lb;
    Point2 rt;
};

}  // namespace quillon
