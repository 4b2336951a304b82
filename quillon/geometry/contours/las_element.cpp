#include "quillon/geometry/contours/las_element.h"

#include <cmath>

#include "quillon/geometry/contours/las_driver.h"

namespace quillon {

namespace {

constexpr double kSweepTolerance = 0.0001;  // arc sweeps and midpoints are compared with this
constexpr double kTanTangentTurn = 0.5773502691896257;  // tan(π/6)

// 1 with the two pieces of a split, 0 when the split did not give two.
template <typename Piece>
int TwoPieces(const std::vector<Piece>& pieces, Piece& a, Piece& b) {
    if (pieces.size() != 2) return 0;
    a = pieces[0];
    b = pieces[1];
    return 1;
}

}  // namespace

LAS_Element::LAS_Element(int beginIndex, int endIndex, Type elementType, LAS_Solver* owner)
    : solver(owner), type(elementType), begin(beginIndex), end(endIndex) {}

int LAS_Element::Cross(LAS_Element*, std::vector<Point2>& points, int) {
    points.clear();
    return 0;
}

bool LAS_Element::IsOnEnd(const Point2& p) {
    const Solver2d& s = solver->GetSolver2D();
    return s.AreEqual(p, GetBeginPoint()) || s.AreEqual(p, GetEndPoint());
}

Point2 LAS_Element::GetTangential(int) { return {}; }

Point2 LAS_Element::GetPointInfo(int, double&, int&) { return {}; }

Point2 LAS_Element::GetBeginPoint() const { return solver->GetPoint(begin); }
Point2 LAS_Element::GetEndPoint() const { return solver->GetPoint(end); }

void LAS_Element::SetUsed(int nodeIndex) {
    if (nodeIndex == begin) usedAtBegin = 1;
    if (nodeIndex == end) usedAtEnd = 1;
}

int LAS_Element::IsUsed(int nodeIndex) const {
    if (nodeIndex == begin) return usedAtBegin;
    if (nodeIndex == end) return usedAtEnd;
    return 0;
}

SolverCurve LAS_Element::GetCurve() const {
    return SolverCurve::Line(GetBeginPoint(), GetEndPoint());
}

int LAS_Element::CrossCurves(const LAS_Element* other, std::vector<Point2>& points) const {
    points.clear();
    if (other == nullptr) return 0;
    return solver->GetSolver2D().FindCrossPoints(GetCurve(), other->GetCurve(), points);
}

// ---- LAS_Line ---------------------------------------------------------------------------------

LAS_Line::LAS_Line(int beginIndex, int endIndex, LAS_Solver* owner)
    : LAS_Element(beginIndex, endIndex, Line, owner) {}

void LAS_Line::GetLine(Sector2& s) const { s.set(GetBeginPoint(), GetEndPoint()); }

bool LAS_Line::operator==(const LAS_Line& o) const {
    return (begin == o.begin && end == o.end) || (begin == o.end && end == o.begin);
}

Point2 LAS_Line::GetTangential(int otherEndIndex) { return solver->GetPoint(otherEndIndex); }

Point2 LAS_Line::GetPointInfo(int otherEndIndex, double& radius, int& side) {
    side = 1;
    radius = 0.0;
    return solver->GetPoint(otherEndIndex);
}

int LAS_Line::Cross(LAS_Element* other, std::vector<Point2>& points, int) {
    return CrossCurves(other, points);
}

int LAS_Line::Split(const Point2& p, Sector2& a, Sector2& b) const {
    Sector2 s;
    GetLine(s);
    std::vector<Sector2> pieces;
    solver->GetSolver2D().SplitLine(s, p, pieces);
    return TwoPieces(pieces, a, b);
}

// ---- LAS_Arc ----------------------------------------------------------------------------------

LAS_Arc::LAS_Arc(int beginIndex, int endIndex, int centreIndex, double sweepAngle,
                 LAS_Solver* owner)
    : LAS_Element(beginIndex, endIndex, Arc, owner), center(centreIndex), sweep(sweepAngle) {}

LAS_Arc::LAS_Arc(int beginIndex, int endIndex, int middleIndex, LAS_Solver* owner)
    : LAS_Element(beginIndex, endIndex, Arc, owner) {
    const Point2 pb = solver->GetPoint(beginIndex);
    const Point2 pe = solver->GetPoint(endIndex);
    const Point2 pm = solver->GetPoint(middleIndex);
    const double c = pb.distance(pe);
    const double d = pb.distance(pm);
    const double h = std::sqrt(std::max(0.0, d * d - (c / 2.0) * (c / 2.0)));
    sweep = 4.0 * std::atan2(2.0 * h, c);
    const double denom = 1.0 - std::cos(sweep / 2.0);
    if (!(denom > 0.0)) return;
    const double radius = h / denom;
    const Solver2d local(kSweepTolerance);
    std::vector<Point2> pts;
    pts.reserve(5);
    local.FindCircleCrossPoint(Circle2(pb, radius), Circle2(pe, radius), pts);
    if (pts.empty()) return;
    Point2 chosen = pts[0];
    if (pts.size() == 2) {
        const double d0 = std::fabs(pts[0].distance(pm) - radius);
        const double d1 = std::fabs(pts[1].distance(pm) - radius);
        chosen = d0 < d1 ? pts[0] : pts[1];
    }
    center = solver->AddPoint(chosen);
}

Point2 LAS_Arc::GetCenterPoint() const { return solver->GetPoint(center); }

void LAS_Arc::GetArc(Arc2& a) const {
    const Point2 c = GetCenterPoint();
    const Point2 b = GetBeginPoint();
    a.set(Circle2(c, c.distance(b)), b, GetEndPoint(), sweep);
}

bool LAS_Arc::operator==(const LAS_Arc& o) const {
    if (center != o.center) return false;
    if (begin == o.begin && end == o.end) return std::fabs(sweep - o.sweep) < kSweepTolerance;
    // A shared end, the centre and the sweep fix the other end, so one shared end decides.
    if (begin == o.end && end == o.begin)  // mutate: off (see above)
        return std::fabs(sweep + o.sweep) < kSweepTolerance;
    return false;
}

Point2 LAS_Arc::GetTangential(int otherEndIndex) {
    const bool fromBegin = otherEndIndex == end;
    const Point2 p = solver->GetPoint(fromBegin ? begin : end);
    const Point2 c = GetCenterPoint();
    const bool ccw = fromBegin ? sweep > 0.0 : sweep < 0.0;  // mutate: off (no zero sweeps)
    // Where the tangent at p meets the ray from c turned by π/6 the arc's way: r·tan(π/6) along
    // the tangent, which is c - p turned by -90° (counter-clockwise) or +90°.
    const double k = ccw ? kTanTangentTurn : -kTanTangentTurn;
    return {p.x - k * (p.y - c.y), p.y + k * (p.x - c.x)};
}

Point2 LAS_Arc::GetPointInfo(int otherEndIndex, double& radius, int& side) {
    const Point2 c = GetCenterPoint();
    const int node = otherEndIndex == begin ? end : begin;
    radius = c.distance(solver->GetPoint(node));
    if (otherEndIndex != begin)
        side = sweep >= 0.0 ? 1 : 0;
    else
        side = sweep >= 0.0 ? 0 : 1;
    return c;
}

int LAS_Arc::Cross(LAS_Element* other, std::vector<Point2>& points, int) {
    return CrossCurves(other, points);
}

int LAS_Arc::Split(const Point2& p, Arc2& a, Arc2& b) const {
    Arc2 arc;
    GetArc(arc);
    std::vector<Arc2> pieces;
    solver->GetSolver2D().SplitArc(arc, p, pieces);
    return TwoPieces(pieces, a, b);
}

SolverCurve LAS_Arc::GetCurve() const {
    return SolverCurve::Arc(GetBeginPoint(), GetEndPoint(), GetCenterPoint(), sweep);
}

}  // namespace quillon
