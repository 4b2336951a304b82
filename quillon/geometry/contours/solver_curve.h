// SolverCurve: a straight or circular piece between two exact end points, the form in which the
// contour solver hands its elements and contour edges to Solver2d. Ends are kept as given (never
// rebuilt from a radius and an angle), so the points the solver merged stay the points it asks
// about. A plain value: what the curve touches, crosses or encloses is Solver2d's to decide.
#pragma once

#include <cmath>

#include "quillon/geometry/plane/angles.h"
#include "quillon/geometry/plane/vector2.h"

namespace quillon {

struct SolverCurve {
    int type = 0;  // 0 straight from a to b; 1 circular from a about c by `sweep`, ending at b
    Point2 a, b, c;
    double sweep = 0.0;  // signed, radians, counter-clockwise positive
    double r = 0.0;      // |a - c| for an arc

    static SolverCurve Line(const Point2& from, const Point2& to) {
        SolverCurve k;
        k.a = from;
        k.b = to;
        return k;
    }
    static SolverCurve Arc(const Point2& from, const Point2& to, const Point2& centre,
                           double sweepAngle) {
        SolverCurve k;
        k.type = 1;
        k.a = from;
        k.b = to;
        k.c = centre;
        k.sweep = sweepAngle;
        const double dx = from.x - centre.x, dy = from.y - centre.y;
        k.r = std::sqrt(dx * dx + dy * dy);
        return k;
    }
    // A sweep of a whole turn or more: the whole circle (b == a).
    bool IsFullCircle() const { return type == 1 && std::fabs(sweep) >= kTwoPi - 1e-12; }
};

}  // namespace quillon
