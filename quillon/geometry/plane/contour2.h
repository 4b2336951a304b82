// Polygon contours of the plane: Contour2 (a closed polygon with a working tolerance), Segment2
// (a segment carrying its own tolerance) and Triangle2 (a triangle over three caller-owned points).
//
// Conventions:
//   - a contour is implicitly closed: the last vertex joins the first, which is not repeated;
//   - signed areas are positive for counter-clockwise vertex order, but orientation codes are -1
//     for counter-clockwise and 1 for clockwise (0 undecidable): two conventions, both relied on;
//   - tolerances are absolute lengths; a negative tolerance given to a constructor means 1e-10;
//   - segment contact codes: 0 no contact, 1 one proper crossing (or a degenerate segment),
//     2 a shared end point, 3 touching or collinear overlap;
//   - `PointOnEdge` (and so `PointInside` and `InContour` on the other contour) grows the
//     contour's tolerance a hundredfold per call until it reaches 0.002, and stores it back: a
//     persistent side effect that callers rely on. Those operations are therefore not const;
//     `IsOnEdge` and `Contains` leave the tolerance alone;
//   - nothing throws; undecidable configurations answer 0 / false.
//
// A Contour2 holds its own copy of the vertices (`Points()`); a Triangle2 holds references to its
// corners, which must outlive it.
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "quillon/geometry/plane/mvector.h"
#include "quillon/geometry/plane/plane_types.h"

namespace quillon {

class Segment2 {
public:
    Point2 first;
    Point2 second;
    double tol = 1e-10;

    // How far the segment reaches for `Distance`, `Contains` and `Intersects`.
    enum LineMode : short { segment = 0, ray = 1, line = 2 };

    Segment2() = default;
    // A negative tolerance means 1e-10.
    Segment2(const Point2& p, const Point2& q, double t = -1.0);

    double Length() const { return first.distance(second); }
    // Distance from p to the segment (to the ray or line in those modes). The tolerance snaps
    // distances not above it to 0.0; a negative tolerance means this segment's own.
    double Distance(const Point2& p, double t = -1.0) const;
    // Whether p lies on the segment within `tol`. A point within `tol` of an end counts as that
    // end: contained unless `exclude_ends`. A segment shorter than `tol` contains no other point.
    bool Contains(const Point2& p, bool exclude_ends) const;
    // Whether the two segments have any contact (`SegmentIntersection` code other than 0, with
    // this segment's tolerance). In ray and line mode: whether the other segment reaches this
    // segment's ray or line within `tol`.
    bool Intersects(const Segment2& s) const;
    // Whether the two segments lie on one line within `tol` (both ends of `s` on this line); with
    // `overlap` they must also share more than a point.
    bool Collinear(const Segment2& s, bool overlap) const;
    // 0 segment (the default), 1 ray from `first` through `second`, 2 infinite line.
    void SetLine(short mode) { lineMode = mode < 0 || mode > 2 ? short(0) : mode; }
    short GetLine() const { return lineMode; }

    // The contact code of the two segments (see the header) and the contact point in x. The
    // tolerance is this segment's. The segment mode plays no part here.
    short SegmentIntersection(const Segment2& s, Point2& x) const;

private:
    short lineMode = segment;
};

struct Contour2Region;

class Contour2 {
public:
    double tol = 1e-10;

    Contour2() = default;
    // A negative tolerance means 1e-10.
    Contour2(const std::vector<Point2>& points, double t);
    Contour2(std::vector<Point2>&& points, double t);

    short Length() const { return static_cast<short>(pts.size()); }
    std::size_t Count() const { return pts.size(); }
    const std::vector<Point2>& Points() const { return pts; }
    std::vector<Point2>& Points() { return pts; }
    const Point2& operator[](std::size_t i) const { return pts[i]; }

    // Positive for counter-clockwise vertices; 0 below three vertices.
    double SignedArea() const;
    double Area() const;
    // The bounding box of the vertices; false (arguments untouched) for an empty contour.
    bool Rect(Point2& min, Point2& max) const;
    // -1 counter-clockwise, 1 clockwise, 0 undecidable: the signed area over the larger side of
    // the bounding box, compared with `tol`.
    short Orientation() const;
    double Perimeter() const;

    // Highest contact code of s with the edges (see the header). `count` is set to the number of
    // counted contacts (a proper crossing within `tol` of an edge's first vertex is left to the
    // edge ending there) and reset to 0 when the highest code is 2 or more; `points`, when given,
    // is cleared and receives the counted contact points.
    short SegmentIntersection(const Segment2& s, short& count, Mvector<Point2>* points) const;

    // 1 when p is within `tol` of an edge, else 0. Grows `tol` first (see the header).
    short PointOnEdge(const Point2& p);
    // 1 strictly inside, 0 outside or on the boundary or undecidable (probe re-aimed up to ten
    // times when it meets a vertex or runs along an edge).
    short PointInside(const Point2& p);
    // Whether p lies on an edge or on a vertex within `tol`; the tolerance is left unchanged.
    bool IsOnEdge(const Point2& p) const;
    // Crossing-parity inside test with the probe aimed at the top right corner beyond the box;
    // a boundary point counts as inside unless `exclude_boundary`.
    bool Contains(const Point2& p, bool exclude_boundary) const;
    // Whether every point of s is in the contour (boundary included unless `exclude_boundary`,
    // in which case s must not touch the boundary at all).
    bool Contains(const Segment2& s, bool exclude_boundary) const;
    // Whether every edge of c is in this contour, as `Contains(Segment2, exclude_boundary)`.
    bool Contains(const Contour2& c, bool exclude_boundary) const;
    // 1 when this contour lies inside c without touching its boundary, else 0. Calls
    // c.PointInside and so may grow c's tolerance.
    short InContour(Contour2& c) const;

    // Whether s touches or crosses the boundary (some edge gives a code other than 0).
    bool Intersects(const Segment2& s) const;
    // Whether the two boundaries touch or cross (this contour's tolerance); a contour lying
    // wholly inside the other without contact does not intersect it.
    bool Intersects(const Contour2& c) const;

    // Indices of the leftmost, bottom, rightmost and top vertices, in that order (the first in
    // vertex order wins a tie); empty for an empty contour.
    Mvector<std::size_t> ExtremalNodesIndexes() const;
    // Indices of the convex hull's corners, counter-clockwise from the lowest of the leftmost
    // vertices. Vertices within `tol` of a hull edge, and repeated vertices, are left out.
    Mvector<std::size_t> ConvexHullIndexList() const;
    // The convex hull as a counter-clockwise contour with this contour's tolerance.
    Contour2 ConvexHull() const;

    // Triangles over this contour's vertices as rows of three vertex indices, each triangle
    // turning the same way as the contour. Repeated vertices and vertices in collinear runs may be
    // left unused; the triangles cover the polygon exactly and do not overlap. False (and no rows)
    // when the contour has fewer than three distinct vertices or no area.
    bool Triangulate(Mmatrix<std::size_t>& triangles) const;
    // As Triangulate, for this contour with the given holes (either orientation, lying inside it
    // and not crossing each other). Indices count this contour's vertices first, then each hole's
    // in order, as one list. Holes with no area are ignored.
    bool TriangulateWithHoles(const Mvector<Contour2>& holes,
                              Mmatrix<std::size_t>& triangles) const;

    // Removes vertices that repeat their predecessor within `tol` (the last is compared with the
    // first as well; squared distances up to 2^-46 always count as zero). Returns how many went.
    std::size_t RemoveDuplicates();
    // A point strictly inside the contour, away from its boundary where possible: the centroid of
    // the largest triangle of its triangulation. False when the contour has no interior.
    std::pair<Point2, bool> GetMiddleUniquePoint() const;

    // Boolean operations with another polygon, computed by the contour solver (the library's one
    // boolean engine): a list of disjoint regions, each an outer polygon (counter-clockwise) with
    // its holes (clockwise). Defined with the solver, in quillon/geometry/contours/
    // contour2_boolean.h, which states the tolerance rule; programs that call them link the whole
    // library.
    std::vector<Contour2Region> Intersection(const Contour2& other) const;
    std::vector<Contour2Region> Difference(const Contour2& other) const;  // this minus other
    std::vector<Contour2Region> Union(const Contour2& other) const;

private:
    std::vector<Point2> pts;
};

// One region of a polygon boolean: an outer polygon and the holes in it.
struct Contour2Region {
    Contour2 outer;
    std::vector<Contour2> holes;
};

// Makes the two contours share a vertex wherever their boundaries meet: every contact point of
// an edge of one with an edge of the other that is not already within `tol` of a vertex of that
// edge is inserted into the edge, in order along it. `tol` < 0 means the first contour's tolerance.
// Returns the number of vertices inserted into both.
std::size_t MATH_AddIntersectionPoints(Contour2& first, Contour2& second, double tol = -1.0);

class Triangle2 {
public:
    Point2& A;
    Point2& B;
    Point2& C;
    double tol;

    // Refers to the caller's points, which must outlive the triangle.
    Triangle2(Point2& a, Point2& b, Point2& c, double t) : A(a), B(b), C(c), tol(t) {}
    Triangle2(const Triangle2&) = default;
    // Copies the other triangle's corner values into the points this triangle refers to (writing
    // through the references) and its tolerance.
    Triangle2& operator=(const Triangle2& o) {
        if (this != &o) {
            const Point2 a = o.A, b = o.B, c = o.C;
            A = a;
            B = b;
            C = c;
            tol = o.tol;
        }
        return *this;
    }

    double SignedArea() const {
        return (A.x * (B.y - C.y) + B.x * (C.y - A.y) + C.x * (A.y - B.y)) / 2.0;
    }
    double Area() const;
    // -1 counter-clockwise, 1 clockwise, 0 when the height over the longest side is within tol.
    short Orientation() const;
    bool Contains(const Point2& p) const;
    bool IsOnEdge(const Point2& p) const;
    bool IsInside(const Point2& p) const { return Contains(p) && !IsOnEdge(p); }
    bool CircleCentre(Point2& out) const;
    Point2 GravityCentre() const;
    Point2 InscribedCircleCenter() const;
};

}  // namespace quillon
