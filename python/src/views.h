// The values quillon._core hands to Python besides shapes: edges, contours and polylines as
// read-only copies, and the loose elements of a drawing. Points cross as (x, y) pairs.
#pragma once

#include <pybind11/numpy.h>

#include <array>
#include <limits>
#include <vector>

#include "quillon/geometry/plane/la_contour.h"
#include "quillon/geometry/plane/plane_types.h"

namespace quillon::python {

using XY = std::array<double, 2>;
using Bounds = std::array<double, 4>;  // xmin, ymin, xmax, ymax

inline XY ToXY(const Point2& p) { return {p.x, p.y}; }
inline Point2 ToPoint(const XY& p) { return Point2(p[0], p[1]); }
inline Bounds ToBounds(double x0, double y0, double x1, double y1) { return {x0, y0, x1, y1}; }
inline constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// An edge as Python sees it: where it starts and ends, and for an arc its centre and sweep.
struct EdgeView {
    LAEdge edge;
    Point2 end;
};

// A closed contour of a shape, or an open free polyline of a solved drawing.
struct ContourView {
    LAContour geometry;
};
struct PolylineView {
    LAContour geometry;  // the last entry marks the end point
};

// Loose elements of a drawing, for solve().
struct LineElement {
    Point2 begin, end;
};
struct ArcElement {
    Point2 begin, end, centre;
    double sweep = 0.0;
};

// Points as an (n, 2) float array.
pybind11::array_t<double> PointArray(const std::vector<Point2>& points);

inline constexpr const char* kApproximateDoc =
    "Points along the boundary: straight edges as they are, arcs split into pieces. An arc\n"
    "sweeping more than small_limit radians is split into pieces of 2*pi/circle_steps; a\n"
    "smaller one into pieces of small_limit/small_steps. circle_steps is clamped to [4, 360],\n"
    "small_steps to [1, 360], small_limit to at most 3*pi/4.";

}  // namespace quillon::python
