// Plane point tests on the polygons of the solid booleans' faces: the outline and hole loops of a
// face carried into its plane frame. The tests are those of the plane polygon contours (a point
// within the tolerance of an edge is on the boundary; otherwise the parity of the edges a ray
// crosses decides), written for the booleans' hot loops: squared distances, no square roots, and
// a bounding box per ring that settles most far points at once.
#pragma once

#include <vector>

#include "quillon/geometry/plane/vector2.h"

namespace quillon::detail {

class Ring2 {
public:
    Ring2() = default;
    explicit Ring2(std::vector<Point2> points);

    const std::vector<Point2>& points() const { return pts; }
    // Whether q lies within tol of an edge (end points included).
    bool onBoundary(const Point2& q, double tol) const;
    // Whether q lies inside by the parity of edge crossings; meaningful for points off the
    // boundary (callers test onBoundary first).
    bool inside(const Point2& q) const;
    // Whether the box of the ring, grown by tol, holds q.
    bool near(const Point2& q, double tol) const {
        return q.x >= lo.x - tol && q.x <= hi.x + tol && q.y >= lo.y - tol && q.y <= hi.y + tol;
    }

private:
    std::vector<Point2> pts;
    Point2 lo, hi;
};

}  // namespace quillon::detail
