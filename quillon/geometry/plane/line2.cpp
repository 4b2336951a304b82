#include "quillon/geometry/plane/line2.h"

#include <algorithm>
#include <cmath>

namespace quillon {

namespace {

// Squared norms below this count as zero: the line is degenerate.
constexpr double kZero2 = 1e-20;

double Tol(double tol) { return tol < 0.0 ? Line2::eps : tol; }

}  // namespace

// ---- Line2: construction ----

Line2& Line2::set(const Point2& p1, const Point2& p2) {
    a = p2.y - p1.y;
    b = p1.x - p2.x;
    c = p2.x * p1.y - p1.x * p2.y;
    unchecked();
    return *this;
}

Line2& Line2::set(const Point2& p1, const Point2& p2, double offset) {
    set(p1, p2);
    if (is_line()) c += _dsqrt() * offset;
    return *this;
}

Line2& Line2::set(const Point2& p, const Vector2& v) {
    a = v.y;
    b = -v.x;
    c = v.x * p.y - v.y * p.x;
    unchecked();
    return *this;
}

Line2& Line2::set(const Point2& p, const Vector2& v, double offset) {
    set(p, v);
    if (is_line()) c += _dsqrt() * offset;
    return *this;
}

Line2& Line2::set(const Point2& p, double angle) {
    a = std::sin(angle);
    b = -std::cos(angle);
    c = -a * p.x - b * p.y;
    norm2 = norm = 1.0;
    state = 1;
    norm_known = true;
    return *this;
}

Line2& Line2::set(const Point2& p, double angle, double offset) {
    set(p, angle);
    c += offset;
    return *this;
}

Line2& Line2::set(double la, double lb, double lc) {
    a = la;
    b = lb;
    c = lc;
    unchecked();
    return *this;
}

Line2& Line2::set() {
    a = b = c = 0.0;
    norm2 = norm = 0.0;
    state = -1;
    norm_known = false;  // mutate: off (the norm worked out from a = b = 0 is this 0)
    return *this;
}

// ---- Line2: lazy validity and norm ----

bool Line2::is_line() const {
    if (state != 0) return state > 0;
    norm2 = a * a + b * b;
    if (norm2 < kZero2) {
        state = -1;
        return false;
    }
    state = 1;
    return true;
}

double Line2::_dsqrt() const {
    if (!is_line()) return 0.0;
    if (!norm_known) {
        norm = std::sqrt(norm2);
        norm_known = true;
    }
    return norm;
}

// ---- Line2: derived lines ----

Line2& Line2::set_normalize() {
    if (!is_line()) return *this;
    const double n = _dsqrt();
    if (n == 1.0) return *this;
    a /= n;
    b /= n;
    c /= n;
    norm2 = norm = 1.0;
    return *this;
}

Line2& Line2::set_parallel(const Point2& p) {
    if (is_line()) c = -a * p.x - b * p.y;
    return *this;
}

Line2& Line2::set_perpendicular(const Point2& p) {
    if (is_line()) {
        const double na = -b;
        b = a;
        a = na;
        c = -a * p.x - b * p.y;
    }
    return *this;
}

Line2& Line2::set_reverse() {
    a = -a;
    b = -b;
    c = -c;
    return *this;
}

Line2& Line2::set_bisector(const Line2& l, bool sum) {
    if (!is_line()) return *this;
    if (!l.is_line()) return set();
    const Line2 n1 = get_normalize();
    const Line2 n2 = l.get_normalize();
    if (sum) {
        set(n1.a + n2.a, n1.b + n2.b, n1.c + n2.c);
    } else {
        set(n1.a - n2.a, n1.b - n2.b, n1.c - n2.c);
    }
    return *this;
}

// ---- Line2: distances and side ----

double Line2::signed_distance(const Point2& p) const {
    if (!is_line()) return 0.0;
    return value(p) / _dsqrt();
}

double Line2::distance(const Point2& p) const { return std::fabs(signed_distance(p)); }

double Line2::signed_distance2(const Point2& p) const {
    if (!is_line()) return 0.0;
    const double v = value(p);
    return v * std::fabs(v) / norm2;
}

double Line2::distance2(const Point2& p) const {
    if (!is_line()) return 0.0;
    const double v = value(p);
    return v * v / norm2;
}

int Line2::side(const Point2& p, double tol) const {
    tol = Tol(tol);
    if (!is_line()) return 0;
    double v = value(p);
    double threshold;
    if (norm_known) {
        threshold = norm * tol;
    } else {
        // Compare v·|v| with norm2·tol² rather than take the square root.
        v *= std::fabs(v);
        threshold = norm2 * tol * tol;
    }
    if (v < -threshold) return -1;
    if (v > threshold) return 1;
    return 0;
}

// ---- Line2: projections and intersections ----

std::pair<Point2, bool> Line2::projection(const Point2& p) const {
    if (!is_line()) return {Point2::_OO, false};
    return {Point2((b * b * p.x - a * (b * p.y + c)) / norm2,
                   (a * a * p.y - b * (a * p.x + c)) / norm2),
            true};
}

std::pair<Point2, bool> Line2::vprojection(const Point2& p) const {
    if (!is_line() || b == 0.0) return {Point2::_OO, false};
    return {Point2(p.x, -(a * p.x + c) / b), true};
}

std::pair<Point2, bool> Line2::intersection(const Line2& l, double tol) const {
    tol = Tol(tol);
    if (!is_line() || !l.is_line()) return {Point2::_OO, false};
    const double det = a * l.b - l.a * b;
    if (std::fabs(det) < tol) return {Point2::_OO, false};
    return {Point2((b * l.c - l.b * c) / det, (l.a * c - a * l.c) / det), true};
}

bool Line2::intersection(const Sector2& s, bool strict, double tol) const {
    // A degenerate line meets nothing (its side test would report every end as "on the line").
    if (!is_line()) return false;
    const int s1 = side(s.get_beg(), tol);
    const int s2 = side(s.get_end(), tol);
    return strict ? s1 * s2 < 0 : s1 * s2 <= 0;
}

bool Line2::isColinear(const Line2& l, double tol) const {
    tol = Tol(tol);
    return std::fabs(a - l.a) < tol && std::fabs(b - l.b) < tol && std::fabs(c - l.c) < tol;
}

// ---- Ray2 ----

Ray2& Ray2::set(const Point2& p, const Vector2& v) {
    org = p;
    ln.set(p, v);
    return *this;
}

Ray2& Ray2::set(const Point2& p, const Point2& q) { return set(p, q - p); }

Ray2& Ray2::set(const Point2& p, double angle) { return set(p, std::sin(angle), std::cos(angle)); }

Ray2& Ray2::set(const Point2& p, double s, double c) {
    org = p;
    ln.set(s, -c, c * p.y - s * p.x);
    return *this;
}

Ray2& Ray2::start(const Point2& p) {
    org = p;
    ln.set_parallel(p);
    return *this;
}

Ray2& Ray2::set_move(const Vector2& v) { return start(org + v); }

std::pair<Point2, bool> Ray2::projection(const Point2& p) const {
    auto r = ln.projection(p);
    if (r.second && (r.first - org) * direction() < 0.0) r.second = false;
    return r;
}

std::pair<Point2, bool> Ray2::intersection(const Line2& l) const {
    // A degenerate ray or line is refused by Line2::intersection itself ({_OO, false}).
    auto r = ln.intersection(l);
    if (r.second && (r.first - org) * direction() < 0.0) r.second = false;
    return r;
}

std::pair<Point2, bool> Ray2::intersection(const Ray2& other) const {
    // A degenerate ray is refused by Line2::intersection itself ({_OO, false}).
    auto r = ln.intersection(other.ln);
    if (r.second && (r.first - org) * direction() < 0.0) r.second = false;
    // Only the other ray's own start counts on its side (see the header).
    if (r.second && (r.first - other.org) * other.direction() != 0.0) r.second = false;
    return r;
}

// ---- Sector2 ----

Sector2& Sector2::set(const Point2& p, const Point2& q) {
    const Point2 b = p, e = q;  // either may be one of our own ends
    beg = b;
    end = e;
    ln.set(beg, end);
    return *this;
}

Sector2& Sector2::set(const Point2& p, double angle, double length) {
    return set(p, p + Vector2(length * std::cos(angle), length * std::sin(angle)));
}

Sector2& Sector2::set_beg(const Point2& p) { return set(p, end); }
Sector2& Sector2::set_end(const Point2& q) { return set(beg, q); }
Sector2& Sector2::set_reverse() { return set(end, beg); }
Sector2& Sector2::set_move(const Vector2& v) { return set(beg + v, end + v); }

std::pair<Point2, bool> Sector2::projection(const Point2& p) const {
    auto r = ln.projection(p);
    if (r.second && (r.first - beg) * (end - r.first) < 0.0) r.second = false;
    return r;
}

bool Sector2::contains(const Point2& p, double tol, bool exclude_ends) const {
    tol = Tol(tol);
    if (!Collinear(beg, end, p, tol)) return false;
    if (beg.distance(p) < tol || end.distance(p) < tol)  // mutate: off (exactly at tol)
        return !exclude_ends;
    if (beg.distance(end) < tol) return false;
    return (p - beg) * (end - p) > 0.0;
}

std::pair<Point2, bool> Sector2::intersection(const Line2& l, double tol) const {
    // A degenerate segment or line is refused by Line2::intersection itself ({_OO, false}).
    tol = Tol(tol);
    auto r = ln.intersection(l, tol);
    if (r.second && (r.first - beg) * (end - r.first) < -tol) r.second = false;
    return r;
}

std::pair<Point2, bool> Sector2::intersection(const Sector2& s, double tol) const {
    tol = Tol(tol);
    auto r = ln.intersection(s.ln, -1.0);  // refuses a degenerate segment on either side
    const double limit = -tol * tol;
    if (r.second && ((r.first - beg) * (end - r.first) < limit ||
                     (r.first - s.beg) * (s.end - r.first) < limit)) {
        r.second = false;
    }
    return r;
}

std::pair<Point2, bool> Sector2::intersection(const Ray2& r) const {
    auto x = ln.intersection(r.line());  // refuses a degenerate segment or ray
    if (x.second &&
        ((x.first - beg) * (end - x.first) < 0.0 || (x.first - r.start()) * r.direction() < 0.0)) {
        x.second = false;
    }
    return x;
}

// ---- Collinear ----

bool Collinear(const Point2& p, const Point2& q, const Point2& r, double tol) {
    tol = Tol(tol);
    const double pq = p.distance(q), qr = q.distance(r), rp = r.distance(p);
    if (pq < tol || qr < tol || rp < tol) return true;
    const double longest = std::max({pq, qr, rp});
    return std::fabs((q - p) % (r - q)) / longest < tol;
}

}  // namespace quillon
