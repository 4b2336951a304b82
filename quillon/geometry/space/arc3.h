// Circular arcs of space through three points.
//
// An Arc3 runs from its begin through its middle to its end. `Check` derives the centre (the
// circumcentre of the three points), the radius, the frame (origin the centre, x towards the
// begin, z along the normal of begin → middle → end, so the arc turns counter-clockwise about z)
// and the sweep in [0, 2π) measured in that frame.
//
// The arc's tolerance defaults to 1.1920928955078125e-7 (Arc3::eps, the single-precision epsilon;
// coarser than the lines' 1e-10 on purpose) and is used both as a length (distance from the plane
// and from the circle) and as a fraction of the sweep (how far past an end a point may lie): a
// deliberate economy of the design. Nothing throws; an arc that cannot be built is not an arc and
// answers 0, false or zero points.
#pragma once

#include <utility>

#include "quillon/geometry/space/local3.h"
#include "quillon/geometry/space/plane3.h"
#include "quillon/geometry/space/sector3.h"
#include "quillon/geometry/space/vector3.h"

namespace quillon {

class Arc3 {
public:
    static constexpr double eps = 1.1920928955078125e-7;

    // Up to two meeting points and their count (0, 1 or 2); points not found are (0, 0, 0).
    using Hits = std::pair<std::pair<Point3, Point3>, int>;

    // Kept in this order: the three points, tolerance, validity, then the derived fields.
    Point3 beg;
    Point3 mid;
    Point3 end;
    double tol = eps;
    bool valid = false;
    Point3 centre;
    double sweep = 0.0;  // radians, [0, 2π)
    double radius = 0.0;
    LocalPlane frame;

    // Not an arc.
    Arc3() = default;
    Arc3(const Point3& b, const Point3& m, const Point3& e, double t = -1.0) { Set(b, m, e, t); }

    // Resets, stores the points and the tolerance (t < 0: Arc3::eps) and runs Check.
    bool Set(const Point3& b, const Point3& m, const Point3& e, double t = -1.0);
    // Not an arc: every field zero, global frame.
    void Reset();
    // Derives centre, frame, sweep and radius; false (not an arc) when the three points span no
    // plane or have no circumcircle.
    bool Check();

    bool IsArc() const { return valid; }
    const Point3& GetBegin() const { return beg; }
    const Point3& GetMiddle() const { return mid; }
    const Point3& GetEnd() const { return end; }
    const Point3& GetCenter() const { return centre; }
    double GetRadius() const { return radius; }
    double GetSweep() const { return sweep; }
    const LocalPlane& GetLocalPlane() const { return frame; }
    // The arc's plane through the centre with the unit normal z (degenerate when not an arc).
    Plane3 GetBaseSurface() const;
    // (middle − begin) × (end − middle), not normalised; the zero vector when not an arc.
    Vector3 GetNormal() const;
    // The exact bounding box: both ends and every point where the arc reaches furthest along a
    // coordinate axis. False, arguments untouched, when not an arc.
    bool GetExtents(Point3& min, Point3& max) const;

    // Where p lies along the arc as a fraction of the sweep: 0 at the begin, 1 at the end. The
    // polar angle a of p in the frame, plus 2π when a < −tol, over the sweep; 0 when not an arc.
    double GetBetweenOff(const Point3& p) const;
    // The point at fraction t of the sweep (the begin when not an arc).
    Point3 GetBetween(double t) const;
    // Within tol of the plane and of the circle, and with t = GetBetweenOff(p) strictly between
    // tol and 1 − tol (exclusive) or −tol and 1 + tol (inclusive).
    bool Contains(const Point3& p, bool exclusive = false) const;

    // The meeting points with another arc, a segment or a plane; the bool is the exclusive rule of
    // the containment tests. Every point found is checked by both operands' tests (the segment's
    // with this arc's tolerance). A segment or plane lying in the arc's plane is cut with the arc's
    // circle in that plane; a segment crossing the plane meets it in one point at most. Two arcs
    // in one plane meet where their circles do (circles closer than tol touch at one point); arcs
    // on one circle meet at those of the four end points that lie on both, at most two. Arcs in
    // different planes meet on the common line of the planes. A plane containing the arc gives 0.
    Hits Intersection(const Arc3& a, bool exclusive = false) const;
    Hits Intersection(const Sector3& s, bool exclusive = false) const;
    Hits Intersection(const Plane3& pl, bool exclusive = false) const;
};

}  // namespace quillon
