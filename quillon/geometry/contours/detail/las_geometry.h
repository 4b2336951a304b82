// Geometry kernel of the contour solver, included by Solver2d's sources alone (the solver and its
// graph ask Solver2d, which holds the tolerance). Implemented in solver2d_kernel.cpp.
//
// Distances, crossings and splits of straight and circular pieces (SolverCurve), a winding-number
// inside test that treats arcs exactly, and contours prepared for many queries over a box grid.
//
// Everything here works with one absolute distance tolerance `eps`: two points closer than or as
// close as eps are one point, a point within eps of a curve lies on it. Crossing reports are built
// so that a reported point always lies within eps of both curves; the grids rely on that to prune
// pairs without changing any answer.
#pragma once

#include <cstdint>
#include <vector>

#include "quillon/geometry/contours/las_box_grid.h"
#include "quillon/geometry/contours/solver_curve.h"
#include "quillon/geometry/plane/la_contour.h"

namespace quillon::las_detail {

using Curve = SolverCurve;
using las_index::Box;
using las_index::BoxGrid;

// Angle of p about the arc's centre measured from a in the sweep's own sense, in [0, 2π).
double ArcParam(const Curve& arc, const Point2& p);
// The point of the curve at fraction t of its length (arcs: of the sweep).
Point2 CurvePoint(const Curve& k, double t);
// Parameter in [0, 1] of the point of the curve nearest to p (arcs: by angle, clamped to the ends).
double CurveParam(const Curve& k, const Point2& p);
Point2 CurveMid(const Curve& k);
double Distance(const Curve& k, const Point2& p);
// Distance(k, p) <= eps, answered without the angle of p where p lies clearly off an arc.
bool Near(const Curve& k, const Point2& p, double eps);
Box CurveBox(const Curve& k);

// Crossing points of two circles: none, one (tangent within eps) or two; concentric circles have
// none. With two points the first lies left of the direction c1 -> c2.
void CircleCross(const Point2& c1, double r1, const Point2& c2, double r2, double eps,
                 std::vector<Point2>& out);

// Contacts of two curves (out is cleared first). Reported, in this order and without repeats
// (points within eps of one already reported are dropped):
//   1. the ends of `p` that lie within eps of `q`, then the ends of `q` within eps of `p`:
//   touchings,
//      T-junctions and, for overlapping collinear segments or co-circular arcs, the overlap's ends;
//   2. unless the two run along one line or circle: the proper crossings and the tangencies within
//      eps (a near-tangency gives the single foot point, so no sliver thinner than eps is made).
// Every reported point lies within eps of both curves.
void CrossCurves(const Curve& p, const Curve& q, double eps, std::vector<Point2>& out);

// The curve's turning contribution seen from p (p not on the curve): its winding angle.
double WindingAngle(const Curve& k, const Point2& p);

// Curves of a closed line-arc contour, in edge order; an edge runs to the next edge's start.
// Straight edges of zero length and arcs of zero sweep between equal points are left out.
std::vector<Curve> CurvesOf(const LAContour& c);

// A closed contour prepared for many queries: its curves, a grid over them (built on the first
// query that needs it) and the tolerance.
class CurveSet {
public:
    CurveSet(std::vector<Curve> curves, double eps);

    const std::vector<Curve>& Curves() const { return curves; }
    const Box& Bounds() const { return bounds; }
    bool OnBoundary(const Point2& p);
    // Winding number of the contour about p (p off the boundary).
    int Winding(const Point2& p) const;
    // Contacts of k with the contour's curves, as parameters along k strictly between its ends
    // (points within eps of k's ends are left out), sorted and without repeats.
    void SplitParams(const Curve& k, std::vector<double>& params);
    // True when the contour holds a curve with k's two end points (in either order) and, for an
    // arc, k's centre and sweep (negated when reversed), near enough to k that every point of k
    // lies within eps of it with a wide margin over rounding: then k's ends and every piece of it
    // lie on the boundary, which the relation tests need not check point by point.
    bool HasCurve(const Curve& k);

private:
    void EnsureGrid();
    void EnsureEnds();

    std::vector<Curve> curves;
    std::vector<Box> boxes;
    Box bounds;
    double eps;
    BoxGrid grid;
    std::vector<int> scratch;
    std::vector<Point2> pts;
    // Curves by their unordered end points (hash table of index + 1, 0 for an empty slot);
    // built on the first HasCurve.
    std::vector<int> ends;
    bool endsBuilt = false;
};

// How the pieces of `second` lie with respect to the closed contour `first`.
struct SideFlags {
    bool in = false, out = false, on = false;
};
SideFlags Classify(CurveSet& first, const std::vector<Curve>& second, double eps);

// The relation code of `second` to the prepared contour `first` (see Solver2d::GetRelation):
// 0 inside, 1 encloses, 2 crossing, 3 disjoint, 5 partly on the boundary and partly outside.
int Relate(CurveSet& first, const std::vector<Curve>& second, double eps);

}  // namespace quillon::las_detail
