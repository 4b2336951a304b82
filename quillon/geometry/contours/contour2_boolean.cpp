#include "quillon/geometry/contours/contour2_boolean.h"

#include <algorithm>
#include <cmath>

#include "quillon/geometry/contours/contour_ops.h"

namespace quillon {

namespace {

ShapePtr ToShape(const Contour2& c) {
    if (c.Points().size() < 3) return std::make_unique<ProComplexContour>();
    LAContour outline;
    for (const Point2& p : c.Points()) outline.push_back(LAEdge(p));
    return MakeShape(outline);
}

double Scale(const Contour2& c) {
    double m = 0.0;
    for (const Point2& p : c.Points()) m = std::max({m, std::fabs(p.x), std::fabs(p.y)});
    return m;
}

// The polygon of a solver contour: its vertices without the repeated closing point, turned to
// run counter-clockwise (outer) or clockwise (hole).
Contour2 ToPolygon(const LAContour& c, bool counterClockwise, double tol) {
    std::vector<Point2> pts;
    for (const LAEdge& e : c) {
        // Solver edges have length, so this only guards hand-made input.
        if (pts.empty() || pts.back().distance(e.start) > 0.0)  // mutate: off (guard)
            pts.push_back(e.start);
    }
    while (pts.size() > 1 && pts.back().distance(pts.front()) == 0.0) pts.pop_back();
    Contour2 poly(std::move(pts), tol);
    // A solver face always has area, so the sign test never meets zero.
    if ((poly.SignedArea() > 0.0) != counterClockwise)  // mutate: off
        std::reverse(poly.Points().begin(), poly.Points().end());
    return poly;
}

std::vector<Contour2Region> Combine(const Contour2& a, const Contour2& b, ShapeOperation op) {
    const double eps = std::max({a.tol, b.tol, 1e-9 * std::max(Scale(a), Scale(b))});
    const ShapePtr r = CombineShapes(*ToShape(a), *ToShape(b), op, eps);
    std::vector<Contour2Region> out;
    for (unsigned long i = 0; i < r->ChildrenCount(); ++i) {
        const ProSolidContour* s = r->SolidChild(i);
        Contour2Region region{ToPolygon(*s, true, a.tol), {}};
        for (unsigned long j = 0; j < s->ChildrenCount(); ++j)
            region.holes.push_back(ToPolygon(*s->ClosedChild(j), false, a.tol));
        out.push_back(std::move(region));
    }
    return out;
}

}  // namespace

std::vector<Contour2Region> Contour2Intersection(const Contour2& a, const Contour2& b) {
    return Combine(a, b, ShapeOperation::Intersection);
}

std::vector<Contour2Region> Contour2Difference(const Contour2& a, const Contour2& b) {
    return Combine(a, b, ShapeOperation::Difference);
}

std::vector<Contour2Region> Contour2Union(const Contour2& a, const Contour2& b) {
    return Combine(a, b, ShapeOperation::Union);
}

std::vector<Contour2Region> Contour2::Intersection(const Contour2& other) const {
    return Contour2Intersection(*this, other);
}

std::vector<Contour2Region> Contour2::Difference(const Contour2& other) const {
    return Contour2Difference(*this, other);
}

std::vector<Contour2Region> Contour2::Union(const Contour2& other) const {
    return Contour2Union(*this, other);
}

}  // namespace quillon
