#include "quillon/geometry/plane/la_contour.h"

#include <algorithm>
#include <cmath>

#include "quillon/geometry/plane/angles.h"
#include "quillon/geometry/plane/contour2.h"

namespace quillon {

namespace {

constexpr double kOneDegree = 0.017453292519943295;
constexpr double kMaxSmallArc = 2.356194490192345;  // 135°
constexpr double kInvTwoPi = 0.15915494309189535;
// Pieces of one large arc: far more than any sensible step count, it only keeps absurd sweeps
// from exhausting memory.
constexpr double kMaxLargeSteps = 100000.0;

Point2 TurnAbout(const Point2& c, const Point2& p, double a) {
    const double s = std::sin(a), co = std::cos(a);
    const double dx = p.x - c.x, dy = p.y - c.y;
    return Point2(c.x + dx * co - dy * s, c.y + dx * s + dy * co);
}

// Polar angle of p about c: ±π/2 by the sign of dy when dx is exactly 0, else the library's
// arctangent.
double AngleAbout(const Point2& c, const Point2& p) {
    const double dx = p.x - c.x, dy = p.y - c.y;
    if (dx == 0.0) return dy > 0.0 ? kPi / 2.0 : -kPi / 2.0;
    return PolarAngle2(dx, dy);
}

double T(const Point2& u, const Point2& w) { return (u.x * w.y - w.x * u.y) / 2.0; }

}  // namespace

Point2 LAEdge::end_arc() const { return TurnAbout(centre, start, angle); }
Point2 LAEdge::mid_arc() const { return TurnAbout(centre, start, angle / 2.0); }

void LAContour::move(const Vector2& v) {
    for (LAEdge& e : *this) {
        e.start += v;
        if (e.type == 1) e.centre += v;
    }
}

void LAContour::rotate(const Rotate2& r) {
    for (LAEdge& e : *this) {
        e.start = e.start << r;
        if (e.type == 1) e.centre = e.centre << r;
    }
}

void LAContour::transform(const Isometry2& t) {
    const bool reflection = t.det() < 0.0;
    for (LAEdge& e : *this) {
        e.start = e.start * t;
        if (e.type == 1) {
            e.centre = e.centre * t;
            if (reflection) e.angle = -e.angle;
        }
    }
}

bool LAContour::get_bound_rect(BoundRect2& b) const {
    b.reset();
    for (const LAEdge& e : *this) {
        if (e.type == 1)
            b.arc(e.centre, e.start, e.angle);
        else
            b.point(e.start);
    }
    return b.is_valid();
}

BoundRect2 LAContour::get_bound_rect() const {
    BoundRect2 b;
    get_bound_rect(b);
    return b;
}

int LAContour::orientation() const {
    std::vector<Point2> poly;
    poly.reserve(2 * size());
    for (const LAEdge& e : *this) {
        poly.push_back(e.start);
        if (e.type == 1) poly.push_back(e.mid_arc());
    }
    return Contour2(std::move(poly), 1e-10).Orientation();
}

double LAContour::surface() const {
    const std::size_t n = size();
    double s = 0.0;
    for (std::size_t i = 0; i < n; ++i) {
        const LAEdge& e = (*this)[i];
        const Point2& q = (*this)[(i + 1) % n].start;
        if (e.type != 1) {
            s += T(e.start, q);
            continue;
        }
        if (!(std::fabs(e.angle) > 0.001)) continue;  // tiny arcs add nothing, not even a chord
        const double r = e.rad_arc();
        double delta = AngleAbout(e.centre, e.end_arc()) - AngleAbout(e.centre, e.start);
        if (e.angle > 0.0 && delta < 0.0) delta += kTwoPi;
        if (!(e.angle > 0.0) && delta > 0.0) delta -= kTwoPi;
        s += 0.5 * delta * r * r + T(e.start, e.centre) + T(e.centre, q);
    }
    return std::fabs(s);
}

void LAContour::approximate(LAContour& out, int circle_steps, int small_steps, double limit) const {
    limit = std::fabs(limit);
    if (!(limit <= kMaxSmallArc)) limit = std::isnan(limit) ? 0.0 : kMaxSmallArc;
    circle_steps = std::clamp(circle_steps, 4, 360);
    small_steps = std::clamp(small_steps, 1, 360);
    const LAContour source = *this;  // out may be this very contour
    out.clear();
    double ref_radius = -1.0;
    for (const LAEdge& e : source) {
        if (e.type != 1) {
            out.push_back(e);
            continue;
        }
        if (ref_radius < 0.0) {
            const BoundRect2 b = source.get_bound_rect();
            ref_radius = b.get_size().length() * kInvTwoPi;
        }
        const double a = std::fabs(e.angle);
        double n;
        if (a > limit) {
            n = std::min(std::trunc((a + kOneDegree) / (kTwoPi / circle_steps)), kMaxLargeSteps);
            if (!(n >= 1.0)) n = 1.0;
        } else {
            n = std::trunc(a / (limit / small_steps));
            if (!(n >= 1.0)) n = 1.0;
            if (n > 360.0) n = 360.0;
        }
        if (e.rad_arc() > ref_radius) {
            n = std::min(std::trunc((a + kOneDegree) / (kTwoPi / std::max(circle_steps, 36))),
                         kMaxLargeSteps);
            if (!(n >= 3.0)) n = 3.0;
        }
        const int steps = static_cast<int>(n);
        for (int k = 0; k < steps; ++k)
            out.push_back(LAEdge(TurnAbout(e.centre, e.start, e.angle * k / steps)));
    }
}

// ---------------------------------------------------------------------------------------------
// LAContourFormer

LAContourFormer::LAContourFormer(LAContour& target, std::vector<Point2>* pts, int arc_pts,
                                 double gap_tol)
    : contour(target), points(pts), arc_points(std::max(arc_pts, 2)), tol(gap_tol) {
    reset_contour();
}

void LAContourFormer::reset_contour() {
    status = -1;
    contour.clear();
    mark = points != nullptr ? static_cast<int>(points->size()) : 0;
}

void LAContourFormer::line_point(const Point2& p) {
    if (status == -1) contour.push_back(LAEdge(p));
}

void LAContourFormer::arc_point(const Point2& p, double r) {
    if (status == -1) contour.push_back(LAEdge(p, r));
}

bool LAContourFormer::failure() {
    status = 0;
    contour.clear();
    if (points != nullptr && points->size() > static_cast<std::size_t>(mark))
        points->resize(static_cast<std::size_t>(mark));
    return false;
}

void LAContourFormer::arc_polyline(const Point2& from, const Point2& centre, double step,
                                   int count) {
    if (points == nullptr) return;
    Point2 p = from;
    points->push_back(p);
    for (int k = 1; k < count; ++k) {
        p = TurnAbout(centre, p, step);
        points->push_back(p);
    }
}

bool LAContourFormer::close() {
    if (status != -1) return status >= 1;
    const std::size_t n = contour.size();
    if (n == 0) return false;
    if (n == 1) {
        const LAEdge marker = contour[0];
        if (marker.type != 1) return failure();
        // A lone marker is a full circle about its point, formed clockwise from two half arcs
        // and closed by a zero-length straight edge (kept: readers of stored circles expect it).
        const Point2 c = marker.start;
        const Point2 s = marker.centre;
        arc_polyline(s, c, kTwoPi / arc_points, arc_points);
        contour.clear();
        contour.push_back(LAEdge(s, c, -kPi));
        contour.push_back(LAEdge(Point2(2.0 * c.x - s.x, s.y), c, -kPi));
        contour.push_back(LAEdge(s));
        status = 1;
        return true;
    }
    if (n == 2) return failure();

    // First pass: resolve each rounded corner against the corner behind it (b) and the next one.
    Point2 b = contour[n - 1].start;
    for (std::size_t i = 0; i < n; ++i) {
        LAEdge& e = contour[i];
        const Point2 next = contour[(i + 1) % n].start;
        if (e.type != 1) {
            if (points != nullptr) points->push_back(e.start);
            b = e.start;
            continue;
        }
        const Point2 p = e.start;
        const double r = e.rad_arc();
        const Line2 l1(p, b), l2(p, next);
        const Line2 bisector = l1.get_bisector(l2, true);
        if (!bisector.is_line() || !bisector.intersection(l2, -1.0).second) return failure();
        const double t = (p - b).angle(next - p);
        const double d = r / std::sin(std::fabs(t / 2.0));
        const double theta = bisector.angle();
        e.angle = t;
        e.centre = Point2(p.x + d * std::cos(theta), p.y + d * std::sin(theta));
        b = p;
        const std::pair<Point2, bool> foot = l1.projection(e.centre);
        if (!foot.second) return failure();
        e.start = foot.first;
        arc_polyline(e.start, e.centre, t / (arc_points - 1), arc_points);
    }

    // Second pass: a straight edge bridges each arc's end to the next corner when they differ by
    // more than tol.
    LAContour formed;
    formed.reserve(2 * n);
    for (std::size_t i = 0; i < n; ++i) {
        const LAEdge& e = contour[i];
        formed.push_back(e);
        if (e.type != 1) continue;
        const Point2 end = e.end_arc();
        if (end.distance(contour[(i + 1) % n].start) > tol) formed.push_back(LAEdge(end));
    }
    contour = std::move(formed);
    status = 1;
    return true;
}

}  // namespace quillon
