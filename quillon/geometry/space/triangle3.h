// Triangles of space over three caller-owned points.
//
// A Triangle3 refers to its corners (it does not copy them): they must outlive it, and binding a
// temporary point is a mistake. Its tests run in the triangle's own frame LocalPlane(p1, p2, p3),
// where the plane polygon tests of Triangle2 decide, with the triangle's tolerance `tol` as an
// absolute length (a negative one means 1e-10). A degenerate triangle (undefined frame) is treated
// as its three edges. Nothing throws.
#pragma once

#include <utility>

#include "quillon/geometry/space/sector3.h"
#include "quillon/geometry/space/vector3.h"

namespace quillon {

class Plane3;
class LocalPlane;

class Triangle3 {
public:
    const Point3& p1;
    const Point3& p2;
    const Point3& p3;
    double tol;

    Triangle3(const Point3& a, const Point3& b, const Point3& c, double t = -1.0)
        : p1(a), p2(b), p3(c), tol(t < 0.0 ? 1e-10 : t) {}
    Triangle3(const Triangle3&) = default;
    Triangle3& operator=(const Triangle3&) = delete;

    // (p2 − p1) × (p3 − p2), not normalised: it points to the side from which the corners run
    // counter-clockwise.
    Vector3 Normal() const { return (p2 - p1) % (p3 - p2); }
    double Area() const { return Normal().length() / 2.0; }
    Point3 GravityCentre() const { return (p1 + p2 + p3) / 3.0; }

    // Closer than tol to the triangle's plane and contained by Triangle2::Contains in it, so that
    // a point on an edge is not contained (its orientation there is 0). A degenerate triangle
    // contains the points on its edges.
    bool Contains(const Point3& p) const;
    // On one of the edges p1p2, p2p3, p3p1 (inclusive, tolerance tol).
    bool IsOnEdge(const Point3& p) const;
    bool IsInside(const Point3& p) const { return Contains(p) && !IsOnEdge(p); }
    // Closer than tol to the triangle's plane; false for a degenerate triangle.
    bool Coplanar(const Point3& p) const;
    // Whether the segment ab meets the triangle (boundary included). a and b are taken as lying
    // in the triangle's plane: their distances from it are not looked at (use Coplanar). In the
    // plane the segment meets the triangle when an end is inside or on the boundary, or when it
    // touches or crosses an edge (Segment2 contact with tolerance tol). A degenerate triangle is
    // met when the segment meets one of its edges within tol.
    bool CoplanarIntersects(const Point3& a, const Point3& b) const;
    // The plane cut with the edges p1p2, p2p3, p3p1 in that order, each hit kept when the edge
    // contains it (tolerance tol, the exclusive rule given). Two hits are kept; a third is taken
    // when only one was, and, when two were and the test is inclusive, it replaces the first if
    // (second − third)·(second − first) > 0 and else the second whenever it lies outside the
    // segment between them, so the segment spans the extreme hits. (at least two hits,
    // Sector3(first, second)); points not found are (0, 0, 0).
    std::pair<bool, Sector3> Intersects(const Plane3& pl, bool exclusive) const;
    // The centre of the circumscribed circle (Triangle2::CircleCentre in the triangle's frame);
    // false, `out` untouched, when the triangle is degenerate.
    bool CircleCentre(Point3& out) const;
};

}  // namespace quillon
