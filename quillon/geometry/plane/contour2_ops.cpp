// Contour2 operations beyond the basic measures and inside tests: extremal vertices, convex hull,
// clean-up, segment and contour containment, boundary contact and shared intersection vertices.
#include <algorithm>
#include <cmath>
#include <numeric>

#include "quillon/geometry/plane/contour2.h"

namespace quillon {

namespace {

constexpr double kZeroLength2 = 1.4210854715202004e-14;  // 2^-46

struct EdgeBox {
    double x0, x1, y0, y1;
    std::size_t edge;
    int side;  // 0 first contour, 1 second
};

// Calls f(i, j) for every edge i of a (a[i] -> a[i + 1]) and edge j of b whose boxes overlap
// within t: a sweep over x, so far-apart edges are never paired. Stops when f returns true and
// returns whether it did.
template <class F>
bool ForEachEdgePair(const std::vector<Point2>& a, const std::vector<Point2>& b, double t, F f) {
    std::vector<EdgeBox> boxes;
    boxes.reserve(a.size() + b.size());
    auto add = [&](const std::vector<Point2>& p, int side) {
        const std::size_t n = p.size();
        for (std::size_t i = 0; i < n; ++i) {
            const Point2& u = p[i];
            const Point2& v = p[(i + 1) % n];
            boxes.push_back({std::min(u.x, v.x) - t, std::max(u.x, v.x) + t, std::min(u.y, v.y) - t,
                             std::max(u.y, v.y) + t, i, side});
        }
    };
    add(a, 0);
    add(b, 1);
    std::sort(boxes.begin(), boxes.end(),
              [](const EdgeBox& l, const EdgeBox& r) { return l.x0 < r.x0; });
    std::vector<const EdgeBox*> active[2];
    for (const EdgeBox& e : boxes) {
        for (auto& list : active) {
            list.erase(std::remove_if(list.begin(), list.end(),
                                      [&](const EdgeBox* o) { return o->x1 < e.x0; }),
                       list.end());
        }
        for (const EdgeBox* o : active[1 - e.side]) {
            if (o->y1 < e.y0 || o->y0 > e.y1) continue;
            const bool stop = e.side == 0 ? f(e.edge, o->edge) : f(o->edge, e.edge);
            if (stop) return true;
        }
        active[e.side].push_back(&e);
    }
    return false;
}

double Param(const Point2& a, const Point2& b, const Point2& p) {
    const Vector2 d = b - a;
    const double l2 = d * d;
    return l2 > 0.0 ? ((p - a) * d) / l2 : 0.0;  // mutate: off (no length: no piece is tested)
}

}  // namespace

Mvector<std::size_t> Contour2::ExtremalNodesIndexes() const {
    Mvector<std::size_t> out;
    if (pts.empty()) return out;
    std::size_t l = 0, b = 0, r = 0, t = 0;
    for (std::size_t i = 1; i < pts.size(); ++i) {
        if (pts[i].x < pts[l].x) l = i;
        if (pts[i].y < pts[b].y) b = i;
        if (pts[i].x > pts[r].x) r = i;
        if (pts[i].y > pts[t].y) t = i;
    }
    out.Add(l);
    out.Add(b);
    out.Add(r);
    out.Add(t);
    return out;
}

Mvector<std::size_t> Contour2::ConvexHullIndexList() const {
    std::vector<std::size_t> idx(pts.size());
    std::iota(idx.begin(), idx.end(), std::size_t{0});
    std::stable_sort(idx.begin(), idx.end(), [&](std::size_t a, std::size_t b) {
        return pts[a].x < pts[b].x || (pts[a].x == pts[b].x && pts[a].y < pts[b].y);
    });
    Mvector<std::size_t> hull;
    if (idx.empty()) return hull;
    // The middle point is kept only when the turn o -> mid -> p is left by more than tol (mid lies
    // farther than tol right of the chord o -> p): collinear and repeated points drop out.
    auto keep = [&](std::size_t o, std::size_t mid, std::size_t p) {
        const Vector2 op = pts[p] - pts[o];
        return ((pts[mid] - pts[o]) % op) > tol * op.length();
    };
    std::vector<std::size_t> h;
    for (std::size_t i : idx) {  // lower chain, left to right
        while (h.size() >= 2 && !keep(h[h.size() - 2], h.back(), i)) h.pop_back();
        if (h.empty() || pts[h.back()].distance(pts[i]) > tol) h.push_back(i);
    }
    const std::size_t lower = h.size() + 1;
    for (std::size_t m = idx.size() - 1; m-- > 0;) {  // upper chain, right to left
        const std::size_t i = idx[m];
        while (h.size() >= lower && !keep(h[h.size() - 2], h.back(), i)) h.pop_back();
        if (pts[h.back()].distance(pts[i]) > tol) h.push_back(i);
    }
    if (h.size() > 1 && pts[h.back()].distance(pts[h.front()]) <= tol) h.pop_back();
    for (std::size_t i : h) hull.Add(i);
    return hull;
}

Contour2 Contour2::ConvexHull() const {
    std::vector<Point2> p;
    for (std::size_t i : ConvexHullIndexList()) p.push_back(pts[i]);
    return Contour2(std::move(p), tol);
}

std::size_t Contour2::RemoveDuplicates() {
    const double limit = std::max(tol * tol, kZeroLength2);
    std::vector<Point2> kept;
    kept.reserve(pts.size());
    for (const Point2& p : pts) {
        if (kept.empty() || kept.back().distance2(p) > limit) kept.push_back(p);
    }
    while (kept.size() > 1 && kept.back().distance2(kept.front()) <= limit) kept.pop_back();
    const std::size_t removed = pts.size() - kept.size();
    pts = std::move(kept);
    return removed;
}

std::pair<Point2, bool> Contour2::GetMiddleUniquePoint() const {
    Mmatrix<std::size_t> tris;
    if (!Triangulate(tris)) return {Point2(), false};
    double best = 0.0;  // every triangle of a triangulation has some area
    Point2 out;
    for (const auto& t : tris) {
        Point2 a = pts[t[0]], b = pts[t[1]], c = pts[t[2]];
        const Triangle2 tri(a, b, c, tol);
        if (tri.Area() > best) {
            best = tri.Area();
            out = tri.GravityCentre();
        }
    }
    return {out, best > 0.0};  // mutate: off (a triangulation has no empty triangle)
}

bool Contour2::Intersects(const Segment2& s) const {
    short count = 0;
    return SegmentIntersection(s, count, nullptr) != 0;
}

bool Contour2::Intersects(const Contour2& c) const {
    const std::vector<Point2>& q = c.Points();
    if (pts.empty() || q.empty()) return false;
    const std::size_t n = pts.size(), m = q.size();
    return ForEachEdgePair(pts, q, tol, [&](std::size_t i, std::size_t j) {
        Point2 x;
        return Segment2(pts[i], pts[(i + 1) % n], tol)
                   .SegmentIntersection(Segment2(q[j], q[(j + 1) % m], tol), x) != 0;
    });
}

bool Contour2::Contains(const Segment2& s, bool exclude_boundary) const {
    if (pts.size() < 3) return false;
    if (!Contains(s.first, exclude_boundary) || !Contains(s.second, exclude_boundary)) return false;
    const Segment2 seg(s.first, s.second, tol);
    short count = 0;  // mutate: off (set by SegmentIntersection before any use)
    Mvector<Point2> hits;
    const short code = SegmentIntersection(seg, count, &hits);
    if (exclude_boundary) return code == 0;
    if (code == 0) return true;  // mutate: off (the piece test below answers the same)
    // Cut the segment at every contact (and at every vertex lying on it) and ask whether the
    // middle of each piece is in the contour.
    std::vector<double> u{0.0, 1.0};
    const std::size_t n = pts.size();
    for (std::size_t i = 0; i < n; ++i) {
        const Point2& a = pts[i];
        const Point2& b = pts[(i + 1) % n];
        Point2 x;
        if (seg.SegmentIntersection(Segment2(a, b, tol), x) != 0)
            u.push_back(Param(s.first, s.second, x));
        if (seg.Contains(a, false)) u.push_back(Param(s.first, s.second, a));
    }
    std::sort(u.begin(), u.end());
    const double len = s.Length();
    // A piece between two neighbouring cuts meets no edge, so its middle places all of it.
    auto outside = [&](double a, double b) {
        const double lo = std::clamp(a, 0.0, 1.0), hi = std::clamp(b, 0.0, 1.0);
        if ((hi - lo) * len <= tol) return false;
        const double mid = (lo + hi) / 2.0;
        const Point2 p(s.first.x + mid * (s.second.x - s.first.x),
                       s.first.y + mid * (s.second.y - s.first.y));
        return !Contains(p, false);
    };
    return std::adjacent_find(u.begin(), u.end(), outside) == u.end();
}

bool Contour2::Contains(const Contour2& c, bool exclude_boundary) const {
    const std::vector<Point2>& q = c.Points();
    if (q.empty()) return false;
    for (std::size_t i = 0; i < q.size(); ++i) {
        if (!Contains(Segment2(q[i], q[(i + 1) % q.size()], c.tol), exclude_boundary)) return false;
    }
    return true;
}

std::size_t MATH_AddIntersectionPoints(Contour2& first, Contour2& second, double tol) {
    if (tol < 0.0) tol = first.tol;
    const std::vector<Point2> a = first.Points(), b = second.Points();
    if (a.size() < 2 || b.size() < 2) return 0;
    const std::size_t n = a.size(), m = b.size();
    std::vector<std::vector<Point2>> add_a(n), add_b(m);
    auto on_inner = [&](const Point2& u, const Point2& v, const Point2& p) {
        return Segment2(u, v, tol).Contains(p, true);
    };
    ForEachEdgePair(a, b, tol, [&](std::size_t i, std::size_t j) {
        const Point2 &a0 = a[i], &a1 = a[(i + 1) % n], &b0 = b[j], &b1 = b[(j + 1) % m];
        Point2 x;
        const short code = Segment2(a0, a1, tol).SegmentIntersection(Segment2(b0, b1, tol), x);
        if (code == 0) return false;
        if (code == 1 || code == 3) {
            if (on_inner(a0, a1, x)) add_a[i].push_back(x);
            if (on_inner(b0, b1, x)) add_b[j].push_back(x);
        }
        // Overlaps and touches: the ends of each edge lying inside the other become vertices.
        if (on_inner(a0, a1, b0)) add_a[i].push_back(b0);
        if (on_inner(a0, a1, b1)) add_a[i].push_back(b1);
        if (on_inner(b0, b1, a0)) add_b[j].push_back(a0);
        if (on_inner(b0, b1, a1)) add_b[j].push_back(a1);
        return false;
    });
    auto rebuild = [&](const std::vector<Point2>& p, std::vector<std::vector<Point2>>& add) {
        std::vector<Point2> out;
        std::size_t inserted = 0;
        for (std::size_t i = 0; i < p.size(); ++i) {
            out.push_back(p[i]);
            const Point2& u = p[i];
            const Point2& v = p[(i + 1) % p.size()];
            auto& extra = add[i];
            std::sort(extra.begin(), extra.end(), [&](const Point2& l, const Point2& r) {
                return Param(u, v, l) < Param(u, v, r);
            });
            for (const Point2& x : extra) {
                if (out.back().distance(x) <= tol || v.distance(x) <= tol) continue;
                out.push_back(x);
                ++inserted;
            }
        }
        return std::make_pair(std::move(out), inserted);
    };
    auto ra = rebuild(a, add_a);
    auto rb = rebuild(b, add_b);
    first.Points() = std::move(ra.first);
    second.Points() = std::move(rb.first);
    return ra.second + rb.second;
}

}  // namespace quillon
