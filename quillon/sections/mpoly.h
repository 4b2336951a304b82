// Section properties of straight-sided cross-sections.
//
// A section is an MPolySet: outer outlines and holes, each a vertex polygon (MPoly) closed
// implicitly. CalcProps() integrates it into an M_SECT_PROPStr: net area, perimeter and the first
// and second moments about the ORIGIN and AXES OF THE GIVEN COORDINATES (not about the centroid;
// section_figures.h derives the centroidal and principal figures). CutByLine() keeps the part of a
// section on one side of a CLine2, ToLocal() moves it into a local frame.
//
// Orientation: signed areas are positive counter-clockwise. Outlines add and holes subtract
// whatever their orientation, but the perimeter counts only counter-clockwise outlines and
// clockwise holes (see AddPolygonProps). Tolerances: kSectionEps (single-precision epsilon) for
// point-on-line and parallel tests, kPolyZero2 (2^-46) for squared lengths and areas.
// Everything is a value type; nothing throws.
#pragma once

#include <cmath>
#include <utility>
#include <vector>

#include "quillon/geometry/plane/plane_types.h"
#include "quillon/sections/mpoly_cpoly.h"
#include "quillon/sections/mpoly_line.h"

namespace quillon {

// Raw area integrals of a section, about the origin and axes of its coordinates. The order of the
// fields is part of the interface.
struct M_SECT_PROPStr {
    double area = 0.0;       // net area, outlines minus holes
    double perimeter = 0.0;  // of the polygons that count positively
    double Sx = 0.0;         // integral of y dA
    double Sy = 0.0;         // integral of x dA
    double Ix = 0.0;         // integral of y*y dA
    double Iy = 0.0;         // integral of x*x dA
    double Ixy = 0.0;        // integral of x*y dA
};

// Adds the integrals of the edge p1 -> p2 (its share of a counter-clockwise polygon) to acc.
inline void AddEdgeProps(M_SECT_PROPStr& acc, const Point2& p1, const Point2& p2) {
    const double x1 = p1.x, y1 = p1.y, x2 = p2.x, y2 = p2.y;
    const double t = 0.5 * (x1 * y2 - x2 * y1);
    const double dx = x1 - x2, dy = y1 - y2;
    const double l2 = dx * dx + dy * dy;
    acc.area += t;
    acc.perimeter += l2 > 0.0 ? std::sqrt(l2) : 0.0;
    acc.Sx += t * (y1 + y2) / 3.0;
    acc.Sy += t * (x1 + x2) / 3.0;
    acc.Ix += t * (y1 * y1 + y2 * y2 + y1 * y2) / 6.0;
    acc.Iy += t * (x1 * x1 + x2 * x2 + x1 * x2) / 6.0;
    acc.Ixy += t * (x1 * y1 + x2 * y2 + 0.5 * (x1 * y2 + x2 * y1)) / 6.0;
}

// Integrates one closed polygon (edges i -> i+1 mod n) and adds it to acc with the weight
// w = s when its own area is > 0, else -s (s = +1 outline, -1 hole): area and moments are added
// times w, the perimeter unweighted and only when w > 0. So an outline adds its perimeter only when
// counter-clockwise and a hole only when clockwise; callers rely on this asymmetry to leave shared
// or internal boundaries out of the perimeter. Fewer than 3 vertices (or pts null) add nothing.
void AddPolygonProps(const Point2* pts, int n, double s, M_SECT_PROPStr& acc);

class MPoly : public CPoly {
public:
    using CPoly::CPoly;
    MPoly() = default;
    MPoly(const CPoly& p) : CPoly(p) {}

    const Point2* tab_point() const { return points().data(); }
    Point2* tab_point() { return storage().data(); }
    int num_point() const { return static_cast<int>(size()); }
    // Vertex i and 0; (0, 0) and 1 when i is out of range.
    short get_point(int i, Point2& p) const;
    // Appends with push_back's merging of duplicates and straight runs.
    void Add(const Point2& p) { push_back(p); }
    void Erase() { erase(); }
    // Replaces every vertex by its coordinates in the frame.
    void ToLocal(const Local2& frame);
};

class MPolySet {
public:
    std::vector<MPoly> outlines;  // outer outlines, counted positively
    std::vector<MPoly> holes;     // holes, counted negatively

    MPolySet() = default;
    // The polygon becomes the single outline.
    explicit MPolySet(const MPoly& outline) : outlines{outline} {}
    explicit MPolySet(MPoly&& outline) { outlines.push_back(std::move(outline)); }

    // Zeroes props, then adds every outline (s = +1) and every hole (s = -1) in order.
    void CalcProps(M_SECT_PROPStr& props) const;

    // The part of the section on the given side of the line (side > 0: where line.side() is 1,
    // side < 0: where it is -1; side 0 keeps nothing). out is emptied first and may be this set.
    // Outlines are cut into out's outlines, holes into its holes. A polygon with no vertex on the
    // kept side gives nothing, one with none on the other side is copied whole, any other is traced
    // into pieces that follow the polygon's orientation; vertices within kSectionEps of the line
    // count as on it and belong to the pieces. Polygons of fewer than 3 vertices are dropped.
    // Each run of a polygon through the kept side becomes a piece of its own, closed by its chord
    // along the line. A run that turns back (the inside faces of a channel cut across both
    // flanges) therefore gives a clockwise piece: the pieces' signed areas add up to the kept part,
    // but CalcProps, which counts outlines positively whatever their orientation, does not see such
    // a piece as negative. A convex polygon always gives one piece of its own orientation.
    void CutByLine(const CLine2& line, short side, MPolySet& out) const;

    void ToLocal(const Local2& frame);
    void Erase();
};

}  // namespace quillon
