// Geometry kernel of the contour solver: one curve type for straight and circular pieces, their
// distances, crossings and splits, a winding-number inside test that treats arcs exactly, and a
// uniform grid over boxes that lets the solver and the relation tests skip far-apart pairs.
//
// Everything here works with one absolute distance tolerance `eps`: two points closer than or as
// close as eps are one point, a point within eps of a curve lies on it. Crossing reports are built
// so that a reported point always lies within eps of both curves; the grids rely on that to prune
// pairs without changing any answer.
#pragma once

#include <cstdint>
#include <vector>

#include "quillon/geometry/plane/la_contour.h"
#include "quillon/geometry/plane/plane_types.h"

namespace quillon::las_detail {

// An axis-aligned box; `Empty()` boxes hold nothing.
struct Box {
    double x0 = 1.0, y0 = 1.0, x1 = -1.0, y1 = -1.0;

    bool Empty() const { return !(x0 <= x1 && y0 <= y1); }
    void Add(const Point2& p);
    void Add(const Box& b);
    Box Grown(double d) const { return {x0 - d, y0 - d, x1 + d, y1 + d}; }
    bool Overlaps(const Box& b) const {
        return !Empty() && !b.Empty() && x0 <= b.x1 && b.x0 <= x1 && y0 <= b.y1 && b.y0 <= y1;
    }
};

// A straight piece a -> b (type 0) or a circular piece (type 1) from a about c by the signed
// sweep, ending at b; r is |a - c|. A sweep of magnitude 2π or more is a whole circle (b == a).
struct Curve {
    int type = 0;
    Point2 a, b, c;
    double sweep = 0.0;
    double r = 0.0;

    static Curve Line(const Point2& a, const Point2& b);
    static Curve Arc(const Point2& a, const Point2& b, const Point2& c, double sweep);
    bool IsFullCircle() const;
};

constexpr double kTwoPi = 6.283185307179586;

// Angle of p about the arc's centre measured from a in the sweep's own sense, in [0, 2π).
double ArcParam(const Curve& arc, const Point2& p);
// The point of the curve at fraction t of its length (arcs: of the sweep).
Point2 CurvePoint(const Curve& k, double t);
// Parameter in [0, 1] of the point of the curve nearest to p (arcs: by angle, clamped to the ends).
double CurveParam(const Curve& k, const Point2& p);
Point2 CurveMid(const Curve& k);
double Distance(const Curve& k, const Point2& p);
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

// A uniform grid of cells over a fixed extent; each item is registered in the cells its box
// overlaps. Queries give the candidates whose cells meet the box, each once, in no fixed order.
class BoxGrid {
public:
    // itemSize: the typical width of an item's box (0 when unknown).
    void Build(const Box& extent, std::size_t expected, double itemSize = 0.0);
    bool Valid() const { return !cells.empty(); }
    void Clear() {
        cells.clear();
        stamp.clear();
    }
    // False when the box is not inside the extent (the item is then not registered).
    bool Insert(int id, const Box& b);
    void Remove(int id, const Box& b);
    void Query(const Box& b, std::vector<int>& out);

private:
    void Range(const Box& b, int& i0, int& j0, int& i1, int& j1) const;

    Box ext;
    int nx = 0, ny = 0;
    double cw = 1.0, ch = 1.0;
    std::vector<std::vector<int>> cells;
    std::vector<std::uint32_t> stamp;  // per id: last query that returned it
    std::uint32_t query = 0;
};

// A closed contour prepared for many queries: its curves, a grid over them and the tolerance.
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

private:
    std::vector<Curve> curves;
    std::vector<Box> boxes;
    Box bounds;
    double eps;
    BoxGrid grid;
    std::vector<int> scratch;
    std::vector<Point2> pts;
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
