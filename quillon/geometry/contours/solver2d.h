// Solver2d: the plane-relations object through which the contour solver makes every geometric
// decision. It holds one absolute distance tolerance, epsilon: two points are one point when they
// are not farther apart than epsilon, and a point lies on a curve when it is within epsilon of it.
//
// Conventions: angles in radians, counter-clockwise positive from +x; arc sweeps signed (positive
// counter-clockwise). Crossing operations clear their output list first and return its size. A
// reported crossing point always lies within epsilon of both curves. Nothing here throws.
//
// The solver's own pieces are asked about as SolverCurve values (exact end points); the kernel
// that answers lies behind this class (detail/), so the tolerance is applied in one place.
#pragma once

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

#include "quillon/geometry/contours/las_box_grid.h"
#include "quillon/geometry/contours/pro_contour.h"
#include "quillon/geometry/contours/solver_curve.h"
#include "quillon/geometry/plane/angles.h"
#include "quillon/geometry/plane/la_contour.h"
#include "quillon/geometry/plane/plane_types.h"

namespace quillon {

namespace las_detail {
class CurveSet;
}

class Solver2d {
public:
    // Relation of a second contour to a first one (GetRelation).
    enum Relation {
        Inside = 0,            // the second lies inside the first (it may run along its edges)
        Encloses = 1,          // the second lies outside the first and encloses it
        Crossing = 2,          // the boundaries cross
        Disjoint = 3,          // each lies outside the other (touching at points allowed)
        PartlyOnBoundary = 5,  // the second lies partly on the first's boundary, partly outside
    };

    // A negative epsilon asks for the default 1e-10.
    explicit Solver2d(double epsilon = 1e-10) { SetEpsilon(epsilon); }
    void SetEpsilon(double epsilon) { eps = epsilon < 0.0 ? 1e-10 : epsilon; }
    double GetEpsilon() const { return eps; }

    // True when |p - q| <= epsilon.
    bool AreEqual(const Point2& p, const Point2& q) const { return p.distance(q) <= eps; }

    // True when the sweep is a whole turn within epsilon (kept: the sweep is compared with the
    // distance tolerance, as stored drawings expect).
    bool IsFullTurn(double sweep) const { return std::fabs(std::fabs(sweep) - kTwoPi) <= eps; }
    // True when the directions from `node` towards a and towards b, given also by their clock
    // angles, are one direction: the angles agree within 1e-11 rad (the rounding noise of the arcs'
    // tangent construction) and, at the nearer of the two points, the directions lie within
    // epsilon of each other (long slender wedges turn by less than that angle and still are two
    // directions).
    bool IsSameDirection(const Point2& node, const Point2& a, double clockA, const Point2& b,
                         double clockB) const {
        constexpr double kClockTie = 1e-11;
        const double gap = std::fabs(clockA - clockB);
        if (gap > kClockTie) return false;
        return !(gap * std::min(a.distance(node), b.distance(node)) > eps);
    }

    // Angle of v from +x in [0, 2π). Within epsilon of an axis the exact axis angle is given:
    // |x| < eps gives 3π/2 (y < 0), π/2 (y > 0) or 0; otherwise |y| < eps gives π (x < 0) or 0.
    // With a zero epsilon nothing snaps, and an axis direction still gets its own angle (−x is π,
    // −y is 3π/2), not the angle of the quadrant before it.
    double FindAngle_0x(const Vector2& v) const;

    // Relation code of `second` with respect to `first` (see Relation). Decided by splitting the
    // second's edges where they meet the first's boundary and placing every piece: inside, outside
    // or along the boundary (within epsilon). Pieces inside and outside: Crossing. Some inside and
    // none outside: Inside. All along the boundary: Inside when a point inside the second lies
    // inside the first (the same outline), else PartlyOnBoundary (a region outside the first that
    // its edges close off). Some along the boundary, the rest outside: PartlyOnBoundary. All
    // outside: Encloses when the first lies inside the second, else Disjoint. A null or empty
    // contour gives Disjoint.
    Relation GetRelation(const LAContour* first, const LAContour* second) const;

    // Contacts of two segments: the ends of each lying within epsilon of the other (touchings,
    // T-junctions, and the two ends of the overlap of collinear segments), then, for segments not
    // on one line, their proper crossing. Points closer than epsilon to one already listed are
    // left out, so an end point wins over a computed crossing next to it.
    int FindLineCrossPoint(const Sector2& a, const Sector2& b, std::vector<Point2>& points) const;
    // Contacts of a segment and an arc: ends within epsilon of the other curve first, then the
    // crossings of the segment's line with the circle that lie on both; a line whose distance from
    // the centre is within epsilon of the radius is tangent and gives the foot point alone.
    int FindLineArcCrossPoint(const Sector2& a, const Arc2& b, std::vector<Point2>& points) const;
    // Contacts of two arcs: ends within epsilon of the other arc first (for co-circular arcs,
    // centres and radii within epsilon, these are the overlap's ends and nothing else is
    // reported), then the circle crossings lying on both arcs; circles whose gap is within epsilon
    // touch at one point.
    int FindArcCrossPoint(const Arc2& a, const Arc2& b, std::vector<Point2>& points) const;
    // Crossings of two full circles: none (apart, nested, or concentric), one when the two
    // crossings would be closer than epsilon (tangency), else two, the first on the left of the
    // direction from a's centre to b's.
    int FindCircleCrossPoint(const Circle2& a, const Circle2& b, std::vector<Point2>& points) const;

    // Splits the segment at p. Two pieces (begin -> p, p -> end) when p lies within epsilon of the
    // segment and farther than epsilon from both ends; otherwise the segment itself alone.
    // Returns the number of pieces.
    int SplitLine(const Sector2& s, const Point2& p, std::vector<Sector2>& pieces) const;
    // Splits the arc at the point of its circle in the direction of p, under the same conditions;
    // the pieces keep the circle and the sense of the sweep.
    int SplitArc(const Arc2& a, const Point2& p, std::vector<Arc2>& pieces) const;
    // The point halfway along the arc.
    Point2 GetMiddleArc(const Arc2& a) const;

    // True when p lies inside the solid's outer contour or on it, and not strictly inside one of
    // its holes (closed children).
    bool IsPointInSolidContour(const Point2& p, const ProSolidContour* solid) const;
    // True when p lies strictly inside the closed contour (winding number not zero, farther than
    // epsilon from the boundary).
    bool IsPointInContour(const Point2& p, const LAContour* c) const;
    // True when p lies within epsilon of the contour's boundary.
    bool IsPointOnContour(const Point2& p, const LAContour* c) const;
    // True when the whole segment (arc) runs along the contour's boundary within epsilon.
    bool IsLineOnContour(const Sector2& s, const LAContour* c) const;
    bool IsArcOnContour(const Arc2& a, const LAContour* c) const;

    // ---- The solver's own pieces, with exact end points ---------------------------------------
    // The curves of a closed line-arc contour, in edge order; an edge runs to the next edge's
    // start. Zero-length straight edges, zero sweeps and edges that are not finite are left out.
    static std::vector<SolverCurve> CurvesOf(const LAContour& c);
    // Contacts of two curves, as FindLineCrossPoint and its twins report them.
    int FindCrossPoints(const SolverCurve& a, const SolverCurve& b,
                        std::vector<Point2>& points) const;
    // A box that holds every point within epsilon of the curve, with room for the rounding of
    // coordinates far from the origin: pieces whose boxes stay apart cannot touch.
    las_index::Box ContactBox(const SolverCurve& k) const;
    // The point at fraction t of the curve (arcs: of the sweep); t <= 0 and t >= 1 give the ends
    // exactly.
    static Point2 PointAlong(const SolverCurve& k, double t);
    // Angle of p about the arc's centre from its start, in the sweep's own sense, in [0, 2π).
    static double AngleAlong(const SolverCurve& arc, const Point2& p);

    // ---- Contours prepared for many relation tests ----------------------------------------------
    // A closed contour's curves and bounds, made once (Prepare) and asked many times; the search
    // structure for tests against it is built when it is first asked as the outer contour. The
    // answers are those of GetRelation on the contour itself.
    class PreparedContour {
    public:
        PreparedContour();
        PreparedContour(PreparedContour&&) noexcept;
        PreparedContour& operator=(PreparedContour&&) noexcept;
        ~PreparedContour();
        bool Empty() const;

    private:
        friend class Solver2d;
        const std::vector<SolverCurve>& Curves() const;

        // The curves, moved into `set` when the contour is first tested against (as the outer one).
        std::vector<SolverCurve> curves;
        std::unique_ptr<las_detail::CurveSet> set;
        // Bounds of the curves themselves (not grown), made when first needed.
        mutable las_index::Box box;
        mutable bool boxKnown = false;
    };
    PreparedContour Prepare(const LAContour& c) const;
    Relation GetRelation(PreparedContour& first, const LAContour& second) const;
    // True when `inner` lies inside `outer` (relation Inside) and its bounds inside outer's (a
    // contour that reaches beyond the outer's box is taken as not inside without further tests).
    bool IsInside(PreparedContour& outer, const PreparedContour& inner) const;

    // The pieces of the segment inside the complex contour (boundary included), in order from the
    // segment's begin, touching pieces joined. Returns their number.
    int GetSectorsInContour(const ProComplexContour* c, const Sector2& s,
                            std::vector<Sector2>& out) const;

private:
    double eps = 1e-10;
};

}  // namespace quillon
