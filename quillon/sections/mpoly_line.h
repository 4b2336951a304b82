// The implicit straight line a*x + b*y + c = 0 by which sections are cut.
//
// Built from two points p -> q, (a, b) is the direction turned counter-clockwise, so the value
// a*x + b*y + c is POSITIVE on the left of p -> q and negative on its right. A line whose a and b
// are both 0 is invalid: its distance is 0 and it crosses nothing. Side tests are exact (no
// tolerance); the callers decide what counts as "on the line" with dist().
#pragma once

#include "quillon/geometry/plane/plane_types.h"

namespace quillon {

class CLine2 {
public:
    double a = 0.0;
    double b = 0.0;
    double c = 0.0;

    CLine2() = default;
    CLine2(const Point2& p, const Point2& q);
    CLine2(double la, double lb, double lc) { create(la, lb, lc); }
    // The line with normal (a, b) = (-cos t, -sin t), so its direction is t + pi/2, placed so that
    // its value at p is d (p lies at distance |d| from it; d = 0 puts it through p).
    CLine2(const Point2& p, double t, double d);

    CLine2& create(double la, double lb, double lc);
    CLine2& set_a(double la) { return create(la, b, c); }
    CLine2& set_b(double lb) { return create(a, lb, c); }
    CLine2& set_c(double lc) { return create(a, b, lc); }

    bool is_valid() const { return valid; }
    explicit operator bool() const { return valid; }

    // 1 when a*x + b*y + c > 0, -1 when < 0, 0 when exactly 0.
    short side(const Point2& p) const;
    // Unsigned distance; 0 for an invalid line.
    double dist(const Point2& p) const;

private:
    bool valid = false;
};

// Tolerance of the point-on-line and parallel tests of polygon and section code (the
// single-precision epsilon).
inline constexpr double kSectionEps = 1.1920928955078125e-7;

// Crossing of two lines into p: 0 on success; -1 (p untouched) when either line is invalid or the
// raw determinant a1*b2 - a2*b1 is below kSectionEps in magnitude (parallel). The determinant is
// not normalised, so the test depends on the coefficients' scale, as callers expect.
short LineCross(const CLine2& l1, const CLine2& l2, Point2& p);

}  // namespace quillon
