// The polygons from which the geometric items build their prisms, and the constants they share.
//
// Every item approximates its line-arc contours the same way (48 pieces per full turn, arcs up to
// 1 rad in 24 pieces), so that an outline extruded, bounded or cut gives the same polygon wherever
// it is used. A contour lies in the xy plane of a frame: (x, y) is the point (x, y, 0) · frame.
#pragma once

#include "quillon/geometry/plane/la_contour.h"
#include "quillon/geometry/plane/mvector.h"
#include "quillon/geometry/space/space_matrix.h"
#include "quillon/geometry/space/vector3.h"

namespace quillon::detail {

// The size of the finite models of half-spaces: the depth of a half-space box and of a bounded
// half-space's prism, and half the side of a half-space box.
inline constexpr double kItemModelSize = 1000.0;
// Below this a direction counts as lying in a plane (the single-precision epsilon).
inline constexpr double kItemAxisEps = 1.1920928955078125e-7;

// A contour as the polygon of its approximation: the corners in order, and its orientation as
// LAContour::orientation gives it (-1 counter-clockwise, 1 clockwise, 0 undecidable).
struct ContourRing {
    Mvector<Point2> points;
    int orientation = 0;

    // Fewer than three corners or no orientation: nothing to build from.
    bool degenerate() const { return points.size() < 3 || orientation == 0; }
};

// Degenerate (empty) when an arc sweeps more than a full turn: such a contour runs over itself.
ContourRing ApproximateRing(const LAContour& contour);

// The ring's corners as points of space, (x, y, 0) · frame.
Mvector<Point3> PlaceRing(const ContourRing& ring, const Matrix4x3& frame);

}  // namespace quillon::detail
