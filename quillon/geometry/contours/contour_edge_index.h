// Boundary pieces of structured contours and the indexes over them that keep checks near-linear
// on large shapes: a grid of pieces (the pairs that come within epsilon of each other, the pieces
// near a point), bands of each contour's pieces (its winding number about a point) and a grid of
// contour boxes (the contours that may wind about a point).
//
// A piece is a straight segment a -> b or a circular arc from a about c by a signed sweep that
// ends at b. For an arc, b is the point where the next piece starts, which may lie up to epsilon
// from the exact end of the circle: keeping the chain of pieces closed exactly is what makes the
// ray cast count every vertex once. Contacts go through Solver2d, so they agree with the solver's
// own idea of touching within epsilon. Nothing here throws.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "quillon/geometry/contours/solver2d.h"
#include "quillon/geometry/plane/plane_types.h"

namespace quillon::contour_index {

// An axis-aligned box; `Empty()` boxes hold nothing.
struct Box {
    double x0 = 1.0, y0 = 1.0, x1 = -1.0, y1 = -1.0;

    bool Empty() const { return !(x0 <= x1 && y0 <= y1); }
    void Add(const Point2& p);
    void Add(const Box& b);
    Box Grown(double d) const { return {x0 - d, y0 - d, x1 + d, y1 + d}; }
};

struct Curve {
    int type = 0;  // 0 straight, 1 arc
    Point2 a, b, c;
    double sweep = 0.0;
    double r = 0.0;
    int contour = -1;  // owner, as numbered by the caller
    int edge = -1;     // the owner's edge it comes from
    Box box;           // exact extent (arcs through their axis-extreme points)

    static Curve Line(const Point2& a, const Point2& b);
    // Sweeps beyond a full turn are the caller's to refuse; a full turn is a whole circle.
    static Curve Arc(const Point2& a, const Point2& b, const Point2& c, double sweep);
    double Length() const;
};

// Distance from p to the curve.
double Distance(const Curve& k, const Point2& p);
// Parameter in [0, 1] of the point of the curve nearest to p (arcs: by angle).
double Param(const Curve& k, const Point2& p);
// The point at parameter t (arcs: start turned by t·sweep); t = 1 gives b exactly.
Point2 PointAt(const Curve& k, double t);

// The direction in which a curve leaves a point, for ordering curves round a vertex: the tangent's
// angle in [0, 2π) and the signed curvature (positive when the curve turns left, 0 for a line).
struct Heading {
    double angle = 0.0;
    double curvature = 0.0;
};
// Leaving its start forwards, or leaving its end backwards.
Heading Leaving(const Curve& k, bool atStart);
// Equal within 1e-9 in angle and relative curvature: the two curves run along each other there.
bool SameHeading(const Heading& h, const Heading& g);
// Counter-clockwise order of headings round their point; ties in angle go by curvature.
bool HeadingBefore(const Heading& h, const Heading& g);

// Contacts of two curves within the relations object's epsilon (out is cleared first).
void Contacts(const Solver2d& rel, const Curve& p, const Curve& q, std::vector<Point2>& out);

// Where the horizontal line through y meets the curve, with +1 where the curve runs upwards and
// -1 downwards. Each piece counts the lower end of its y-range and not the upper one, so a closed
// chain counts every vertex once and the sum right of a point is its winding number.
void RayCrossings(const Curve& k, double y, std::vector<std::pair<double, int>>& out);

// A uniform grid over the curves' boxes grown by epsilon, sized by the typical box so that most
// curves fall in a few cells.
class CurveGrid {
public:
    // `curves` must outlive the grid and stay unchanged.
    CurveGrid(const std::vector<Curve>& curves, double eps);

    // Calls f(i, j) once for every pair i < j of curves whose grown boxes overlap.
    template <typename F>
    void ForEachPair(F&& f) const;

    // Indices of the curves whose grown boxes reach within d of p.
    void Near(const Point2& p, double d, std::vector<int>& out);

private:
    int Col(double x) const;
    int Row(double y) const;
    std::size_t Cell(int i, int j) const {
        return static_cast<std::size_t>(j) * static_cast<std::size_t>(nx) +
               static_cast<std::size_t>(i);
    }

    const std::vector<Curve>& curves;
    double eps;
    Box ext;
    int nx = 1, ny = 1;
    double cw = 1.0, ch = 1.0;
    std::vector<std::size_t> first;  // per cell, where its items start in `items` (one extra)
    std::vector<int> items;
    std::vector<std::uint32_t> stamp;  // per curve: the last query that listed it
    std::uint32_t query = 0;
};

// The winding number of one closed chain of curves (curves[first, first + count)) about points:
// the ray from the point towards +x meets only the curves of the point's band of the chain's
// y-range, and there are about a quarter as many bands as curves.
class ChainWinding {
public:
    ChainWinding() = default;
    ChainWinding(const std::vector<Curve>& curves, int first, int count);

    // Exact for a point farther than rounding from the chain; 0 outside its box.
    int Winding(const Point2& p) const;
    const Box& Bounds() const { return bounds; }

private:
    int Band(double y) const;

    const std::vector<Curve>* curves = nullptr;
    Box bounds;
    double h = 1.0;
    int bandCount = 0;
    std::vector<std::size_t> start;  // per band, where its curves start in `ids` (one extra)
    std::vector<int> ids;
};

// The boxes that hold a point, through a uniform grid over them.
class BoxIndex {
public:
    explicit BoxIndex(const std::vector<Box>& boxes);

    // Indices of the boxes holding p (boundary included), in increasing order.
    void Holding(const Point2& p, std::vector<int>& out) const;

private:
    const std::vector<Box>& boxes;
    Box ext;
    int nx = 1, ny = 1;
    double cw = 1.0, ch = 1.0;
    std::vector<std::size_t> first;
    std::vector<int> items;
};

template <typename F>
void CurveGrid::ForEachPair(F&& f) const {
    for (int j = 0; j < ny; ++j)
        for (int i = 0; i < nx; ++i) {
            const std::size_t cell = Cell(i, j);
            for (std::size_t p = first[cell]; p < first[cell + 1]; ++p)
                for (std::size_t q = p + 1; q < first[cell + 1]; ++q) {
                    const int u = items[p], v = items[q];
                    const Box bu = curves[static_cast<std::size_t>(u)].box.Grown(eps);
                    const Box bv = curves[static_cast<std::size_t>(v)].box.Grown(eps);
                    const double x0 = bu.x0 > bv.x0 ? bu.x0 : bv.x0;
                    const double y0 = bu.y0 > bv.y0 ? bu.y0 : bv.y0;
                    if (x0 > (bu.x1 < bv.x1 ? bu.x1 : bv.x1) ||
                        y0 > (bu.y1 < bv.y1 ? bu.y1 : bv.y1))
                        continue;
                    // The pair is reported only by the cell holding the lower-left corner of the
                    // boxes' overlap, which both curves are registered in.
                    if (Col(x0) != i || Row(y0) != j) continue;
                    if (u < v)
                        f(u, v);
                    else
                        f(v, u);
                }
        }
}

}  // namespace quillon::contour_index
