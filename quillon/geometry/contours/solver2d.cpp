#include "quillon/geometry/contours/solver2d.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "quillon/geometry/contours/detail/las_geometry.h"

namespace quillon {

using las_detail::Curve;
using las_detail::CurveSet;

namespace {

Curve CurveOf(const Sector2& s) { return Curve::Line(s.get_beg(), s.get_end()); }
Curve CurveOf(const Arc2& a) {
    return Curve::Arc(a.get_begin(), a.get_end(), a.circle.center, a.sweep);
}

// Whether every point of k lies within eps of the contour's boundary.
bool CurveOnContour(const Curve& k, const LAContour* c, double eps) {
    if (c == nullptr) return false;
    CurveSet set(las_detail::CurvesOf(*c), eps);
    if (set.Curves().empty() || !set.OnBoundary(k.a) || !set.OnBoundary(k.b)) return false;
    std::vector<double> ps;
    set.SplitParams(k, ps);
    double t0 = 0.0;
    for (std::size_t i = 0; i <= ps.size(); ++i) {
        const double t1 = i < ps.size() ? ps[i] : 1.0;
        if (!set.OnBoundary(las_detail::CurvePoint(k, (t0 + t1) / 2.0))) return false;
        t0 = t1;
    }
    return true;
}

}  // namespace

double Solver2d::FindAngle_0x(const Vector2& v) const {
    constexpr double pi = kPi;
    if (std::fabs(v.x) < eps) {
        if (v.y < 0.0) return 3.0 * pi / 2.0;
        if (v.y > 0.0) return pi / 2.0;
        return 0.0;
    }
    if (std::fabs(v.y) < eps) return v.x < 0.0 ? pi : 0.0;
    // Every quadrant with its axes: with a zero epsilon, an axis direction comes here too.
    const double a = std::atan2(std::fabs(v.y), std::fabs(v.x));
    if (v.x < 0.0) return v.y < 0.0 ? pi + a : pi - a;
    return v.y < 0.0 ? 2.0 * pi - a : a;
}

Solver2d::Relation Solver2d::GetRelation(const LAContour* first, const LAContour* second) const {
    if (first == nullptr || second == nullptr) return Disjoint;
    std::vector<Curve> cf = las_detail::CurvesOf(*first);
    std::vector<Curve> cs = las_detail::CurvesOf(*second);
    if (cf.empty() || cs.empty()) return Disjoint;
    CurveSet f(std::move(cf), eps);
    return static_cast<Relation>(las_detail::Relate(f, cs, eps));
}

int Solver2d::FindLineCrossPoint(const Sector2& a, const Sector2& b,
                                 std::vector<Point2>& points) const {
    las_detail::CrossCurves(CurveOf(a), CurveOf(b), eps, points);
    return static_cast<int>(points.size());
}

int Solver2d::FindLineArcCrossPoint(const Sector2& a, const Arc2& b,
                                    std::vector<Point2>& points) const {
    las_detail::CrossCurves(CurveOf(a), CurveOf(b), eps, points);
    return static_cast<int>(points.size());
}

int Solver2d::FindArcCrossPoint(const Arc2& a, const Arc2& b, std::vector<Point2>& points) const {
    las_detail::CrossCurves(CurveOf(a), CurveOf(b), eps, points);
    return static_cast<int>(points.size());
}

int Solver2d::FindCircleCrossPoint(const Circle2& a, const Circle2& b,
                                   std::vector<Point2>& points) const {
    las_detail::CircleCross(a.center, a.radius, b.center, b.radius, eps, points);
    return static_cast<int>(points.size());
}

int Solver2d::SplitLine(const Sector2& s, const Point2& p, std::vector<Sector2>& pieces) const {
    pieces.clear();
    const Curve k = CurveOf(s);
    if (AreEqual(p, k.a) || AreEqual(p, k.b) || las_detail::Distance(k, p) > eps) {
        pieces.push_back(s);
    } else {
        pieces.emplace_back(k.a, p);
        pieces.emplace_back(p, k.b);
    }
    return static_cast<int>(pieces.size());
}

int Solver2d::SplitArc(const Arc2& a, const Point2& p, std::vector<Arc2>& pieces) const {
    pieces.clear();
    const Curve k = CurveOf(a);
    if (a.sweep == 0.0 || AreEqual(p, k.a) || (!k.IsFullCircle() && AreEqual(p, k.b)) ||
        las_detail::Distance(k, p) > eps) {
        pieces.push_back(a);
    } else {
        const double t = las_detail::ArcParam(k, p);
        const double first = a.sweep < 0.0 ? -t : t;
        pieces.emplace_back(a.circle, a.start, first);
        pieces.emplace_back(a.circle, a.start + first, a.sweep - first);
    }
    return static_cast<int>(pieces.size());
}

Point2 Solver2d::GetMiddleArc(const Arc2& a) const {
    const double m = a.start + a.sweep / 2.0;
    return {a.circle.center.x + a.circle.radius * std::cos(m),
            a.circle.center.y + a.circle.radius * std::sin(m)};
}

bool Solver2d::IsPointInContour(const Point2& p, const LAContour* c) const {
    if (c == nullptr) return false;
    CurveSet set(las_detail::CurvesOf(*c), eps);
    return !set.OnBoundary(p) && set.Winding(p) != 0;
}

bool Solver2d::IsPointOnContour(const Point2& p, const LAContour* c) const {
    if (c == nullptr) return false;
    CurveSet set(las_detail::CurvesOf(*c), eps);
    return set.OnBoundary(p);
}

bool Solver2d::IsPointInSolidContour(const Point2& p, const ProSolidContour* solid) const {
    if (solid == nullptr) return false;
    if (!IsPointOnContour(p, solid) && !IsPointInContour(p, solid)) return false;
    for (unsigned long i = 0; i < solid->ChildrenCount(); ++i)
        if (IsPointInContour(p, solid->ClosedChild(i))) return false;
    return true;
}

bool Solver2d::IsLineOnContour(const Sector2& s, const LAContour* c) const {
    return CurveOnContour(CurveOf(s), c, eps);
}

bool Solver2d::IsArcOnContour(const Arc2& a, const LAContour* c) const {
    return CurveOnContour(CurveOf(a), c, eps);
}

// ---- The solver's own pieces ------------------------------------------------------------------

std::vector<SolverCurve> Solver2d::CurvesOf(const LAContour& c) { return las_detail::CurvesOf(c); }

int Solver2d::FindCrossPoints(const SolverCurve& a, const SolverCurve& b,
                              std::vector<Point2>& points) const {
    las_detail::CrossCurves(a, b, eps, points);
    return static_cast<int>(points.size());
}

las_index::Box Solver2d::ContactBox(const SolverCurve& k) const {
    const las_index::Box b = las_detail::CurveBox(k);
    const double scale =
        std::max({std::fabs(b.x0), std::fabs(b.x1), std::fabs(b.y0), std::fabs(b.y1), 1.0});
    return b.Grown(2.0 * eps + 1e-12 * scale);  // mutate: off (wider: only more candidates)
}

Point2 Solver2d::PointAlong(const SolverCurve& k, double t) { return las_detail::CurvePoint(k, t); }

double Solver2d::AngleAlong(const SolverCurve& arc, const Point2& p) {
    return las_detail::ArcParam(arc, p);
}

// ---- Prepared contours ------------------------------------------------------------------------

Solver2d::PreparedContour::PreparedContour() = default;
Solver2d::PreparedContour::PreparedContour(PreparedContour&&) noexcept = default;
Solver2d::PreparedContour& Solver2d::PreparedContour::operator=(PreparedContour&&) noexcept =
    default;
Solver2d::PreparedContour::~PreparedContour() = default;

bool Solver2d::PreparedContour::Empty() const { return Curves().empty(); }

const std::vector<SolverCurve>& Solver2d::PreparedContour::Curves() const {
    return set ? set->Curves() : curves;
}

Solver2d::PreparedContour Solver2d::Prepare(const LAContour& c) const {
    PreparedContour p;
    p.curves = las_detail::CurvesOf(c);
    return p;
}

Solver2d::Relation Solver2d::GetRelation(PreparedContour& first, const LAContour& second) const {
    if (!first.set) first.set = std::make_unique<CurveSet>(std::move(first.curves), eps);
    return static_cast<Relation>(las_detail::Relate(*first.set, las_detail::CurvesOf(second), eps));
}

bool Solver2d::IsInside(PreparedContour& outer, const PreparedContour& inner) const {
    if (outer.Empty() || inner.Empty()) return false;
    if (!outer.set) outer.set = std::make_unique<CurveSet>(std::move(outer.curves), eps);
    // Inside needs every point of the inner contour in the outer's closed region.
    const las_index::Box& ob = outer.set->Bounds();
    if (!inner.boxKnown) {
        for (const Curve& k : inner.Curves()) inner.box.Add(las_detail::CurveBox(k));
        inner.boxKnown = true;
    }
    const las_index::Box& ib = inner.box;
    if (ib.x0 < ob.x0 || ib.x1 > ob.x1 || ib.y0 < ob.y0 || ib.y1 > ob.y1) return false;
    return las_detail::Relate(*outer.set, inner.Curves(), eps) == Inside;
}

// ---- Pieces of a segment inside a shape -------------------------------------------------------

int Solver2d::GetSectorsInContour(const ProComplexContour* c, const Sector2& s,
                                  std::vector<Sector2>& out) const {
    out.clear();
    if (c == nullptr) return 0;
    const las_detail::Curve k = las_detail::Curve::Line(s.get_beg(), s.get_end());
    if (k.a.distance(k.b) <= eps) return 0;
    struct Region {
        std::unique_ptr<las_detail::CurveSet> outline;
        std::vector<std::unique_ptr<las_detail::CurveSet>> holes;
    };
    std::vector<Region> regions;
    std::vector<double> params, ps;
    for (unsigned long i = 0; i < c->ChildrenCount(); ++i) {
        const ProSolidContour* solid = c->SolidChild(i);
        if (solid == nullptr) continue;
        Region r;
        r.outline = std::make_unique<las_detail::CurveSet>(las_detail::CurvesOf(*solid), eps);
        for (unsigned long j = 0; j < solid->ChildrenCount(); ++j)
            r.holes.push_back(std::make_unique<las_detail::CurveSet>(
                las_detail::CurvesOf(*solid->ClosedChild(j)), eps));
        r.outline->SplitParams(k, ps);
        params.insert(params.end(), ps.begin(), ps.end());
        for (auto& h : r.holes) {
            h->SplitParams(k, ps);
            params.insert(params.end(), ps.begin(), ps.end());
        }
        regions.push_back(std::move(r));
    }
    std::sort(params.begin(), params.end());
    params.insert(params.begin(), 0.0);
    params.push_back(1.0);
    const auto inside = [&](const Point2& p) {
        for (Region& r : regions) {
            if (!r.outline->OnBoundary(p) && r.outline->Winding(p) == 0) continue;
            bool inHole = false;
            for (auto& h : r.holes)
                if (!h->OnBoundary(p) && h->Winding(p) != 0) inHole = true;
            if (!inHole) return true;
        }
        return false;
    };
    bool open = false;
    Point2 from;
    for (auto t = params.begin(); std::next(t) != params.end(); ++t) {
        const Point2 a = las_detail::CurvePoint(k, *t);
        const Point2 b = las_detail::CurvePoint(k, *std::next(t));
        if (a.distance(b) <= eps) continue;
        const bool in = inside(las_detail::CurvePoint(k, (*t + *std::next(t)) / 2.0));
        if (in && !open) {
            open = true;
            from = a;
        } else if (!in && open) {
            open = false;
            out.emplace_back(from, a);
        }
    }
    if (open) out.emplace_back(from, k.b);
    return static_cast<int>(out.size());
}

}  // namespace quillon
