#include "quillon/geometry/contours/solver2d.h"

#include <cmath>
#include <numbers>

#include "quillon/geometry/contours/las_geometry.h"

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
    constexpr double pi = std::numbers::pi;
    if (std::fabs(v.x) < eps) {
        if (v.y < 0.0) return 3.0 * pi / 2.0;
        if (v.y > 0.0) return pi / 2.0;
        return 0.0;
    }
    if (std::fabs(v.y) < eps) return v.x < 0.0 ? pi : 0.0;
    const double a = std::atan2(std::fabs(v.y), std::fabs(v.x));
    if (v.x < 0.0 && v.y > 0.0) return pi - a;
    if (v.x < 0.0 && v.y < 0.0) return pi + a;
    if (v.x > 0.0 && v.y < 0.0) return 2.0 * pi - a;
    return a;
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

}  // namespace quillon
