#include "quillon/geometry/plane/contour2.h"

#include <algorithm>
#include <cmath>

namespace quillon {

namespace {

constexpr double kDefaultTol = 1e-10;

double Cross(const Point2& o, const Point2& a, const Point2& b) {
    return (a.x - o.x) * (b.y - o.y) - (a.y - o.y) * (b.x - o.x);
}

bool Near(const Point2& p, const Point2& q, double t) { return p.distance(q) <= t; }

// Distance of p from the supporting line of a-b; the distance to a for a zero-length segment.
double LineDistance(const Point2& a, const Point2& b, const Point2& p) {
    const double len = a.distance(b);
    if (len == 0.0) return a.distance(p);
    return std::fabs(Cross(a, b, p)) / len;
}

bool InBox(const Point2& p, const Point2& a, const Point2& b, double t) {
    return p.x >= std::min(a.x, b.x) - t && p.x <= std::max(a.x, b.x) + t &&
           p.y >= std::min(a.y, b.y) - t && p.y <= std::max(a.y, b.y) + t;
}

bool BoxesOverlap(const Segment2& s, const Segment2& u, double t) {
    return std::max(s.first.x, s.second.x) + t >= std::min(u.first.x, u.second.x) &&
           std::max(u.first.x, u.second.x) + t >= std::min(s.first.x, s.second.x) &&
           std::max(s.first.y, s.second.y) + t >= std::min(u.first.y, u.second.y) &&
           std::max(u.first.y, u.second.y) + t >= std::min(s.first.y, s.second.y);
}

short TriangleOrientation(const Point2& a, const Point2& b, const Point2& c, double t) {
    Point2 pa = a, pb = b, pc = c;
    return Triangle2(pa, pb, pc, t).Orientation();
}

}  // namespace

// ---------------------------------------------------------------------------------------------
// Segment2

Segment2::Segment2(const Point2& p, const Point2& q, double t)
    : first(p), second(q), tol(t < 0.0 ? kDefaultTol : t) {}

double Segment2::Distance(const Point2& p, double t) const {
    if (t < 0.0) t = tol;
    const Vector2 d = second - first;
    const double len2 = d * d;
    double u = len2 > 0.0 ? ((p - first) * d) / len2 : 0.0;
    if (lineMode == segment) u = std::clamp(u, 0.0, 1.0);
    if (lineMode == ray) u = std::max(u, 0.0);
    const Point2 foot(first.x + u * d.x, first.y + u * d.y);
    const double dist = foot.distance(p);
    return dist <= t ? 0.0 : dist;
}

bool Segment2::Contains(const Point2& p, bool exclude_ends) const {
    if (Near(p, first, tol) || (lineMode == segment && Near(p, second, tol))) return !exclude_ends;
    const double len = Length();
    if (len < tol || len == 0.0) return false;
    if (LineDistance(first, second, p) > tol) return false;
    const Vector2 d = second - first;
    const double u = ((p - first) * d) / (len * len);
    switch (lineMode) {
        case line:
            return true;
        case ray:
            return u > 0.0;
        default:
            return u > 0.0 && u < 1.0;
    }
}

bool Segment2::Intersects(const Segment2& s) const {
    if (lineMode == segment) {
        Point2 x;
        return SegmentIntersection(s, x) != 0;
    }
    // Ray or line: the other segment meets it when its ends are on different sides (or one is on
    // it) and, for a ray, the meeting point is not behind the start.
    const double len = Length();
    if (len == 0.0) return s.Distance(first, tol) == 0.0;
    const double d1 = Cross(first, second, s.first) / len;
    const double d2 = Cross(first, second, s.second) / len;
    if (std::fabs(d1) <= tol || std::fabs(d2) <= tol) {
        return Contains(s.first, false) || Contains(s.second, false) ||
               (std::fabs(d1) <= tol && std::fabs(d2) <= tol && s.Contains(first, false));
    }
    if ((d1 < 0.0) == (d2 < 0.0)) return false;
    if (lineMode == line) return true;
    const double u = d1 / (d1 - d2);
    const Point2 x(s.first.x + u * (s.second.x - s.first.x),
                   s.first.y + u * (s.second.y - s.first.y));
    return (x - first) * (second - first) >= -tol * len;
}

bool Segment2::Collinear(const Segment2& s, bool overlap) const {
    if (LineDistance(first, second, s.first) > tol || LineDistance(first, second, s.second) > tol)
        return false;
    if (!overlap) return true;
    // Project both onto this segment's direction and ask for a common stretch longer than tol.
    const Vector2 d = second - first;
    const double len = Length();
    if (len == 0.0) return false;
    const double a0 = 0.0, a1 = len;
    double b0 = ((s.first - first) * d) / len, b1 = ((s.second - first) * d) / len;
    if (b0 > b1) std::swap(b0, b1);
    return std::min(a1, b1) - std::max(a0, b0) > tol;
}

short Segment2::SegmentIntersection(const Segment2& s, Point2& x) const {
    const double t = tol;
    if (Near(first, second, t)) {
        x = first;
        return 1;
    }
    if (Near(s.first, s.second, t)) {
        x = s.first;
        return 1;
    }
    const Point2* ends[2] = {&first, &second};
    for (const Point2* e : ends) {
        if (Near(*e, s.first, t) || Near(*e, s.second, t)) {
            x = *e;
            return 2;
        }
    }
    const bool touching = LineDistance(s.first, s.second, first) <= t ||
                          LineDistance(s.first, s.second, second) <= t ||
                          LineDistance(first, second, s.first) <= t ||
                          LineDistance(first, second, s.second) <= t;
    const short c = touching ? 3 : 1;
    const Vector2 d1 = second - first;
    const Vector2 d2 = s.second - s.first;
    const double det = d1 % d2;
    if (std::fabs(det) >= t && det != 0.0) {
        const double u = ((s.first - first) % d2) / det;
        const Point2 p(first.x + u * d1.x, first.y + u * d1.y);
        if (InBox(p, first, second, t) && InBox(p, s.first, s.second, t)) {
            x = p;
            return c;
        }
        return 0;
    }
    if (c == 1 || !BoxesOverlap(*this, s, t)) return 0;
    // Parallel and touching: report an end lying within the other segment; the last one found in
    // the order s.first, s.second, first, second wins.
    Segment2 self(first, second, t), other(s.first, s.second, t);
    bool found = false;
    if (self.Contains(s.first, false)) x = s.first, found = true;  // mutate: off (shared ends: 2)
    if (self.Contains(s.second, false)) x = s.second, found = true;
    if (other.Contains(first, false)) x = first, found = true;
    if (other.Contains(second, false)) x = second, found = true;
    return found ? 3 : 0;
}

// ---------------------------------------------------------------------------------------------
// Contour2: measures

Contour2::Contour2(const std::vector<Point2>& points, double t)
    : tol(t < 0.0 ? kDefaultTol : t), pts(points) {}

Contour2::Contour2(std::vector<Point2>&& points, double t)
    : tol(t < 0.0 ? kDefaultTol : t), pts(std::move(points)) {}

double Contour2::SignedArea() const {
    const std::size_t n = pts.size();
    if (n < 3) return 0.0;
    double s = 0.0;
    for (std::size_t i = 0; i < n; ++i) {
        const Point2& prev = pts[i == 0 ? n - 1 : i - 1];
        s += (prev.x - pts[i].x) * (prev.y + pts[i].y);
    }
    return s / 2.0;
}

double Contour2::Area() const { return std::fabs(SignedArea()); }

bool Contour2::Rect(Point2& min, Point2& max) const {
    if (pts.empty()) return false;
    Point2 lo = pts[0], hi = pts[0];
    for (const Point2& p : pts) {
        lo.x = std::min(lo.x, p.x);
        lo.y = std::min(lo.y, p.y);
        hi.x = std::max(hi.x, p.x);
        hi.y = std::max(hi.y, p.y);
    }
    min = lo;
    max = hi;
    return true;
}

short Contour2::Orientation() const {
    Point2 lo, hi;
    if (!Rect(lo, hi)) return 0;
    const double s = std::max(hi.x - lo.x, hi.y - lo.y);
    if (s == 0.0) return 0;
    const double a = SignedArea() / s;
    if (a > tol) return -1;
    if (a < -tol) return 1;
    return 0;
}

double Contour2::Perimeter() const {
    const std::size_t n = pts.size();
    if (n < 2) return 0.0;
    double sum = 0.0;
    for (std::size_t i = 0; i < n; ++i) sum += pts[i].distance(pts[(i + 1) % n]);
    return sum;
}

// ---------------------------------------------------------------------------------------------
// Contour2: point and segment tests

short Contour2::SegmentIntersection(const Segment2& s, short& count,
                                    Mvector<Point2>* points) const {
    count = 0;
    if (points != nullptr) points->clear();
    const std::size_t n = pts.size();
    short highest = 0;
    // Edges whose box stays more than 2t from the segment's box cannot give a contact (a crossing
    // point may lie up to t outside each of the two boxes); skipping them keeps the walk cheap
    // without changing which hits are found. A degenerate segment or edge answers every test, so
    // it is never skipped.
    const double t = s.tol;
    const bool s_degenerate = s.first.distance(s.second) <= t;
    const double sx0 = std::min(s.first.x, s.second.x) - 2.0 * t,
                 sx1 = std::max(s.first.x, s.second.x) + 2.0 * t;
    const double sy0 = std::min(s.first.y, s.second.y) - 2.0 * t,
                 sy1 = std::max(s.first.y, s.second.y) + 2.0 * t;
    for (std::size_t i = 0; i < n; ++i) {
        const Point2& a = pts[i == 0 ? n - 1 : i - 1];
        const Point2& b = pts[i];
        if (!s_degenerate && a.distance(b) > t &&
            (std::max(a.x, b.x) < sx0 || std::min(a.x, b.x) > sx1 || std::max(a.y, b.y) < sy0 ||
             std::min(a.y, b.y) > sy1))
            continue;
        Point2 x;
        const short code = s.SegmentIntersection(Segment2(a, b, t), x);
        if (code == 0) continue;
        highest = std::max(highest, code);
        if (code == 1 && x.distance(a) <= tol) continue;
        ++count;
        if (points != nullptr) points->push_back(x);
    }
    if (highest >= 2) count = 0;
    return highest;
}

short Contour2::PointOnEdge(const Point2& p) {
    if (tol < 0.002) tol *= 100.0;
    const std::size_t n = pts.size();
    for (std::size_t i = 0; i < n; ++i) {
        const Point2& a = pts[i == 0 ? n - 1 : i - 1];
        const Point2& b = pts[i];
        if (std::fabs((p - a) % (b - a)) < tol && InBox(p, a, b, tol)) return 1;
    }
    return 0;
}

short Contour2::PointInside(const Point2& p) {
    Point2 lo, hi;
    if (!Rect(lo, hi)) return 0;
    if (p.x < lo.x - tol || p.x > hi.x + tol || p.y < lo.y - tol || p.y > hi.y + tol) return 0;
    if (PointOnEdge(p)) return 0;
    const double target_x = lo.x - (hi.x - lo.x);
    double lower = lo.y;
    for (int attempt = 0; attempt < 11; ++attempt) {
        if (!(hi.y - lower > tol)) return 0;
        const double y = (lower + hi.y) / 2.0;
        short count = 0;
        const short code =
            SegmentIntersection(Segment2(p, Point2(target_x, y), tol), count, nullptr);
        if (code < 2) return (count % 2) != 0 ? 1 : 0;
        lower = y;  // the probe met a vertex or ran along an edge: aim higher
    }
    return 0;
}

bool Contour2::IsOnEdge(const Point2& p) const {
    const std::size_t n = pts.size();
    for (std::size_t i = 0; i < n; ++i) {
        const Point2& u = pts[i == 0 ? n - 1 : i - 1];
        const Point2& v = pts[i];
        if (Segment2(u, v, tol).Contains(p, false)) return true;
        if (std::fabs(p.x - v.x) <= tol && std::fabs(p.y - v.y) <= tol) return true;
    }
    return false;
}

bool Contour2::Contains(const Point2& p, bool exclude_boundary) const {
    Point2 lo, hi;
    if (!Rect(lo, hi)) return false;
    if (p.x < lo.x - tol || p.x > hi.x + tol || p.y < lo.y - tol || p.y > hi.y + tol) return false;
    if (IsOnEdge(p)) return !exclude_boundary;
    // Aimed at the box's top right corner and beyond, so the probe is slanted unless p is at the
    // top; exact (tolerance 0.0) contact decisions along it.
    const Segment2 probe(p, Point2(hi.x + tol + 1.0, hi.y), 0.0);
    const std::size_t n = pts.size();
    std::size_t s = 0;
    while (s < n && probe.Contains(pts[s], false)) ++s;
    if (s == n) return false;
    int count = 0;
    std::size_t i = s;
    do {
        const Point2& u = pts[i];
        const std::size_t j = (i + 1) % n;
        const Point2& v = pts[j];
        // A repeated vertex makes a zero-length edge, which would report a degenerate contact
        // (code 1) wherever it lies; it meets nothing, so it is not tested.
        if (!(u.x == v.x && u.y == v.y) && Segment2(u, v, 0.0).Intersects(probe)) ++count;
        if (probe.Contains(v, false)) {
            std::size_t k = j;
            while (probe.Contains(pts[k], false)) k = (k + 1) % n;
            const short ou = TriangleOrientation(probe.first, probe.second, u, 0.0);
            const short ow = TriangleOrientation(probe.first, probe.second, pts[k], 0.0);
            if (ou == ow) --count;  // touched the probe and went back to the same side
            i = k;
        } else {
            i = j;
        }
    } while (i != s);
    return (count % 2) != 0;
}

short Contour2::InContour(Contour2& c) const {
    Point2 lo, hi, clo, chi;
    if (!Rect(lo, hi) || !c.Rect(clo, chi)) return 0;
    // An extreme on c's bounds touches c's outline, which also gives 0.
    if (lo.x < clo.x || lo.y < clo.y || hi.x > chi.x || hi.y > chi.y)  // mutate: off (see above)
        return 0;
    const std::size_t n = pts.size();
    for (std::size_t i = 0; i < n; ++i) {
        const Point2& v = pts[i];
        const Point2& next = pts[(i + 1) % n];
        short count = 0;
        if (c.SegmentIntersection(Segment2(v, next, tol), count, nullptr) != 0) return 0;
        if (c.PointInside(v) == 0) return 0;
    }
    return 1;
}

// ---------------------------------------------------------------------------------------------
// Triangle2

double Triangle2::Area() const { return std::fabs(SignedArea()); }

short Triangle2::Orientation() const {
    const double l = std::max({A.distance(B), B.distance(C), C.distance(A)});
    if (tol > l || l == 0.0) return 0;
    const double h = 2.0 * SignedArea() / l;
    if (h > tol) return -1;
    if (h < -tol) return 1;
    return 0;
}

bool Triangle2::Contains(const Point2& p) const {
    const short o1 = TriangleOrientation(A, B, p, tol);
    const short o2 = TriangleOrientation(B, C, p, tol);
    const short o3 = TriangleOrientation(C, A, p, tol);
    return o1 == o2 && o2 == o3;
}

bool Triangle2::IsOnEdge(const Point2& p) const {
    const Segment2 ab(A, B, tol), bc(B, C, tol), ca(C, A, tol);
    // A corner is an end of two sides: excluding the ends of any one side alone changes nothing.
    return ab.Contains(p, false) || bc.Contains(p, false) ||  // mutate: off (see above)
           ca.Contains(p, false);                             // mutate: off (see above)
}

bool Triangle2::CircleCentre(Point2& out) const {
    const double s = SignedArea();
    if (std::fabs(s) <= tol) return false;
    out.x = (A.x * A.x * (B.y - C.y) + B.x * B.x * (C.y - A.y) + C.x * C.x * (A.y - B.y) -
             (C.y - A.y) * (B.y - C.y) * (A.y - B.y)) /
            (4.0 * s);
    out.y = -(A.y * A.y * (B.x - C.x) + B.y * B.y * (C.x - A.x) + C.y * C.y * (A.x - B.x) -
              (C.x - A.x) * (B.x - C.x) * (A.x - B.x)) /
            (4.0 * s);
    return true;
}

Point2 Triangle2::GravityCentre() const {
    return Point2((A.x + B.x + C.x) / 3.0, (A.y + B.y + C.y) / 3.0);
}

Point2 Triangle2::InscribedCircleCenter() const {
    const double a = A.distance(B), b = B.distance(C), c = C.distance(A);
    const double p = a + b + c;
    if (tol > p || p == 0.0) return Point2();
    return Point2((b * A.x + c * B.x + a * C.x) / p, (b * A.y + c * B.y + a * C.y) / p);
}

}  // namespace quillon
