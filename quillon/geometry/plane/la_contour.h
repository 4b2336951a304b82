// Line-arc contours: closed plane outlines of straight and circular-arc edges, the shape in which
// sections and plates travel between the contour solver, structured contours and the text format.
//
// Conventions:
//   - an edge runs from its `start` to the start of the next edge; the last edge closes onto the
//     first, whose start is not repeated;
//   - an arc edge (type 1) turns about `centre` by `angle` radians, counter-clockwise positive;
//   - `orientation()` answers -1 for a counter-clockwise contour and 1 for a clockwise one (the
//     polygon convention), while `surface()` is always non-negative;
//   - nothing throws; operations on an empty contour do nothing and answer false / 0.
//
// LAContourFormer builds a contour from corner points, rounding the marked corners with arcs.
#pragma once

#include <vector>

#include "quillon/geometry/plane/mvector.h"
#include "quillon/geometry/plane/plane_types.h"

namespace quillon {

struct LAEdge {
    int type = 0;  // 0 straight, 1 arc
    Point2 start;
    Point2 centre;
    double angle = 0.0;

    // A straight edge at (0, 0).
    LAEdge() = default;
    // A straight edge starting at p.
    explicit LAEdge(const Point2& p) : start(p) {}
    // An arc edge from p about c, sweeping by a.
    LAEdge(const Point2& p, const Point2& c, double a) : type(1), start(p), centre(c), angle(a) {}
    // The fillet (or circle) marker of LAContourFormer: an arc edge with centre (p.x + r, p.y)
    // and angle 0, carrying the radius as the distance from start to centre.
    LAEdge(const Point2& p, double r) : type(1), start(p), centre(p.x + r, p.y), angle(0.0) {}

    double rad_arc() const { return start.distance(centre); }
    // The arc's end point: start turned about the centre by angle.
    Point2 end_arc() const;
    // The arc's middle point: start turned about the centre by angle / 2.
    Point2 mid_arc() const;
};

class LAContour : public Mvector<LAEdge> {
public:
    using Mvector<LAEdge>::Mvector;
    LAContour() = default;

    void clear() { Mvector<LAEdge>::clear(); }
    // Translates every start point and arc centre.
    void move(const Vector2& v);
    // Turns every start point and arc centre counter-clockwise about the origin; angles stay.
    void rotate(const Rotate2& r);
    // Maps every start point and arc centre through t; a reflection (det < 0) negates every arc
    // angle, so the arcs keep running between the mapped end points.
    void transform(const Isometry2& t);

    // Start points of straight edges and the full extent of arcs (ends and quadrant points);
    // false for an empty contour.
    bool get_bound_rect(BoundRect2& b) const;
    BoundRect2 get_bound_rect() const;

    // -1 counter-clockwise, 1 clockwise, 0 undecidable, decided on the polygon of start points with
    // each arc's middle point added after its start.
    int orientation() const;

    // The enclosed area, non-negative. Arcs sweeping 0.001 rad or less are left out entirely,
    // chord included (kept: stored section areas were computed so); an arc sweeping a full turn
    // contributes its triangle terms only.
    double surface() const;

    // Replaces every arc by straight edges in `out` (emptied first). limit: largest sweep (at most
    // 135°) treated as a small arc, split into pieces of limit / small_steps; larger arcs are
    // split at 2π / circle_steps. circle_steps is clamped to [4, 360], small_steps to [1, 360].
    // Arcs wider than the contour's reference radius (bounding-box diagonal / 2π) get at least
    // three pieces at no less than 36 per full turn. A large arc is split into at most 100000
    // pieces, which only a sweep of hundreds of turns reaches.
    void approximate(LAContour& out, int circle_steps, int small_steps, double limit) const;
};

// Builds a contour from corner points. `line_point` adds a plain corner, `arc_point` a corner to
// be rounded with radius r (or, as the only point, a full circle about it). `close` resolves the
// fillets: each rounded corner's arc centre lies on the corner's bisector at r / sin(|t| / 2)
// from the corner (t the turn at the corner), and the arc runs between the feet of the centre
// on the two sides, so it is tangent to both. At right-angle corners the arc radius is r; at
// other corners it is r·cot(|t| / 2). A failed `close` leaves the contour empty and removes the
// points it appended to `points`.
class LAContourFormer {
public:
    LAContour& contour;
    std::vector<Point2>* points;
    int mark = 0;
    int status = -1;  // -1 forming, 0 failed, 1 closed
    int arc_points = 2;
    double tol = 0.0;

    LAContourFormer(LAContour& target, std::vector<Point2>* pts, int arc_pts, double gap_tol);

    void reset_contour();
    void line_point(const Point2& p);
    void line_point(double x, double y) { line_point(Point2(x, y)); }
    void arc_point(const Point2& p, double r);
    void arc_point(double x, double y, double r) { arc_point(Point2(x, y), r); }
    bool close();

private:
    bool failure();
    void arc_polyline(const Point2& from, const Point2& centre, double step, int count);
};

}  // namespace quillon
