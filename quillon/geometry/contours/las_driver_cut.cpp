// Cutting by a horizontal or vertical line: the OnlyTop and OnlyRight families of LAS_Solver.
#include <algorithm>
#include <cmath>

#include "quillon/geometry/contours/las_driver.h"

namespace quillon {

namespace {

// Half-plane cuts use this fixed tolerance, whatever the solver's epsilon (kept: cut levels are
// given in drawing units and compared so everywhere).
constexpr double kCut = 1e-8;

double Level(const Point2& p, bool top) { return top ? p.y : p.x; }

}  // namespace

void LAS_Solver::AddPtToSortedVector(std::vector<Point2>& list, const Point2& p, bool byX) {
    const auto it = std::find_if(list.begin(), list.end(),
                                 [&](const Point2& q) { return byX ? q.x > p.x : q.y > p.y; });
    list.insert(it, p);
}

int LAS_Solver::AddLineOnlyHalf(const Point2& a, const Point2& b, double level, bool top,
                                std::vector<Point2>& cut) {
    const double va = Level(a, top), vb = Level(b, top);
    if (va >= level - kCut && vb >= level - kCut) {
        if (std::fabs(va - level) < kCut) AddPtToSortedVector(cut, a, top);
        if (std::fabs(vb - level) < kCut) AddPtToSortedVector(cut, b, top);
        return AddLine(a, b);
    }
    if (level >= va && level >= vb) return -1;
    // The crossing with the cut line, placed exactly on it.
    const double t = (level - va) / (vb - va);
    Point2 p(a.x + t * (b.x - a.x), a.y + t * (b.y - a.y));
    (top ? p.y : p.x) = level;
    AddPtToSortedVector(cut, p, top);
    return level > va ? AddLine(p, b) : AddLine(a, p);
}

int LAS_Solver::AddArcOnlyHalf(const Point2& begin, const Point2& end, const Point2& centre,
                               double sweep, double level, bool top, std::vector<Point2>& cut) {
    if (!std::isfinite(sweep) || sweep == 0.0) return -1;
    const SolverCurve arc = SolverCurve::Arc(begin, end, centre, sweep);
    const double r = arc.r;
    if (!(r > 0.0)) return -1;
    if (std::fabs(Level(begin, top) - level) < kCut) AddPtToSortedVector(cut, begin, top);
    if (std::fabs(Level(end, top) - level) < kCut) AddPtToSortedVector(cut, end, top);
    // Where the circle meets the cut line, strictly inside the arc.
    std::vector<double> params;
    const double q = (level - Level(centre, top)) / r;
    if (std::fabs(q) < 1.0) {
        const double w = std::sqrt(std::max(0.0, 1.0 - q * q)) * r;
        const Point2 hits[2] = {top ? Point2(centre.x - w, level) : Point2(level, centre.y - w),
                                top ? Point2(centre.x + w, level) : Point2(level, centre.y + w)};
        if (2.0 * w > kCut) {
            for (const Point2& h : hits) {
                if (h.distance(begin) < kCut || h.distance(end) < kCut) continue;  // mutate: off
                const double t = Solver2d::AngleAlong(arc, h);
                if (t < std::fabs(sweep)) {
                    params.push_back(t / std::fabs(sweep));
                    AddPtToSortedVector(cut, h, top);
                }
            }
        }
    }
    std::sort(params.begin(), params.end());
    params.insert(params.begin(), 0.0);
    params.push_back(1.0);
    int last = -1;
    for (std::size_t i = 0; i + 1 < params.size(); ++i) {
        const double t0 = params[i], t1 = params[i + 1];
        const Point2 mid = Solver2d::PointAlong(arc, (t0 + t1) / 2.0);
        if (Level(mid, top) < level) continue;
        const Point2 p0 = Solver2d::PointAlong(arc, t0);
        const Point2 p1 = Solver2d::PointAlong(arc, t1);
        const int k = AddArc(p0, p1, centre, sweep * (t1 - t0));
        if (k >= 0) last = k;
    }
    return last;
}

void LAS_Solver::AddLAContourOnlyHalf(const LAContour* c, double level, bool top,
                                      std::vector<Point2>& cut) {
    if (c == nullptr) return;
    const std::size_t n = c->size();
    for (std::size_t i = 0; i < n; ++i) {
        const LAEdge& e = (*c)[i];
        const Point2& next = (*c)[(i + 1) % n].start;
        if (e.type == 1)
            AddArcOnlyHalf(e.start, next, e.centre, e.angle, level, top, cut);
        else
            AddLineOnlyHalf(e.start, next, level, top, cut);
    }
}

int LAS_Solver::AddLineOnlyTop(const Point2& a, const Point2& b, double y0,
                               std::vector<Point2>& cut) {
    return AddLineOnlyHalf(a, b, y0, true, cut);
}

int LAS_Solver::AddArcOnlyTop(const Point2& begin, const Point2& end, const Point2& centre,
                              double sweep, double y0, std::vector<Point2>& cut) {
    return AddArcOnlyHalf(begin, end, centre, sweep, y0, true, cut);
}

void LAS_Solver::AddLAContourOnlyTop(const LAContour* c, double y0, std::vector<Point2>& cut) {
    AddLAContourOnlyHalf(c, y0, true, cut);
}

void LAS_Solver::AddSolidContourOnlyTop(const ProSolidContour* s, double y0,
                                        std::vector<Point2>& cut) {
    if (s == nullptr) return;
    AddLAContourOnlyHalf(s, y0, true, cut);
    for (unsigned long i = 0; i < s->ChildrenCount(); ++i)
        AddLAContourOnlyHalf(s->ClosedChild(i), y0, true, cut);
}

int LAS_Solver::AddLineOnlyRight(const Point2& a, const Point2& b, double x0,
                                 std::vector<Point2>& cut) {
    return AddLineOnlyHalf(a, b, x0, false, cut);
}

int LAS_Solver::AddArcOnlyRight(const Point2& begin, const Point2& end, const Point2& centre,
                                double sweep, double x0, std::vector<Point2>& cut) {
    return AddArcOnlyHalf(begin, end, centre, sweep, x0, false, cut);
}

void LAS_Solver::AddLAContourOnlyRight(const LAContour* c, double x0, std::vector<Point2>& cut) {
    AddLAContourOnlyHalf(c, x0, false, cut);
}

void LAS_Solver::AddSolidContourOnlyRight(const ProSolidContour* s, double x0,
                                          std::vector<Point2>& cut) {
    if (s == nullptr) return;
    AddLAContourOnlyHalf(s, x0, false, cut);
    for (unsigned long i = 0; i < s->ChildrenCount(); ++i)
        AddLAContourOnlyHalf(s->ClosedChild(i), x0, false, cut);
}

ProComplexContour* LAS_Solver::GetPartOfContour(const ProSolidContour* solid, double level,
                                                bool top, ProContourFactory* factory) {
    if (solid == nullptr || factory == nullptr) return nullptr;
    std::vector<Point2> cut;
    if (top)
        AddSolidContourOnlyTop(solid, level, cut);
    else
        AddSolidContourOnlyRight(solid, level, cut);
    if (cut.size() >= 2) {
        for (std::size_t i = 0; i + 1 < cut.size(); ++i) {
            const Point2& p = cut[i];
            const Point2& q = cut[i + 1];
            const Point2 mid =
                top ? Point2((p.x + q.x) / 2.0, level) : Point2(level, (p.y + q.y) / 2.0);
            if (solver2d.IsPointInSolidContour(mid, solid)) AddLine(p, q);
        }
    }
    // The cut pieces meet the outline only at listed points; splitting settles any touching the
    // cut line made elsewhere (an arc tangent to it) before the faces are walked.
    SplitEdges();
    SortNodesFromTopLeft();
    std::vector<ProClosedContour*> closed;
    std::vector<LAContour*> polylines;
    SolveBaseContours(factory, closed, polylines);
    return ComplexContourFromContours(std::move(closed), factory);
}

ProComplexContour* LAS_Solver::GetTopPartOfContour(const ProSolidContour* solid, double y,
                                                   ProContourFactory* factory) {
    return GetPartOfContour(solid, y, true, factory);
}

ProComplexContour* LAS_Solver::GetRightPartOfContour(const ProSolidContour* solid, double x,
                                                     ProContourFactory* factory) {
    return GetPartOfContour(solid, x, false, factory);
}

}  // namespace quillon
