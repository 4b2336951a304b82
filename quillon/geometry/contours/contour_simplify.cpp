#include "quillon/geometry/contours/contour_simplify.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace quillon {

namespace {

bool Finite(const Point2& p) { return std::isfinite(p.x) && std::isfinite(p.y); }
bool Same(const Point2& p, const Point2& q) { return p.x == q.x && p.y == q.y; }

// Signed area between an arc of radius r and sweep a and its chord.
double Segment(double r, double a) { return r * r / 2.0 * (a - std::sin(a)); }

// Signed area of the closed contour: chords about the first start plus the arcs' segments.
double SignedArea(const std::vector<LAEdge>& e) {
    if (e.empty()) return 0.0;
    const Point2 o = e.front().start;
    double s = 0.0;
    for (std::size_t i = 0; i < e.size(); ++i) {
        const Vector2 p = e[i].start - o, q = e[(i + 1) % e.size()].start - o;
        s += (p % q) / 2.0;
        if (e[i].type == 1) s += Segment(e[i].rad_arc(), e[i].angle);
    }
    return s;
}

// Marks the vertices that lie within 2·eps of another vertex of the contour: where the contour
// passes a point twice, removing one of the visits would leave the other on the inside of an edge.
std::vector<bool> SharedVertices(const std::vector<LAEdge>& e, double eps) {
    const double w = 2.0 * eps;
    struct V {
        double slab, y;
        std::size_t i;
    };
    std::vector<V> v;
    v.reserve(e.size());
    for (std::size_t i = 0; i < e.size(); ++i)
        v.push_back({w > 0.0 ? std::floor(e[i].start.x / w) : e[i].start.x, e[i].start.y, i});
    const auto before = [](const V& a, const V& b) {
        return a.slab < b.slab || (a.slab == b.slab && a.y < b.y);
    };
    std::sort(v.begin(), v.end(), before);
    std::vector<bool> shared(e.size(), false);
    for (const V& p : v) {
        for (double ds = w > 0.0 ? -1.0 : 0.0; ds <= (w > 0.0 ? 1.0 : 0.0); ds += 1.0) {
            auto it = std::lower_bound(v.begin(), v.end(), V{p.slab + ds, p.y - w, 0}, before);
            for (; it != v.end() && it->slab == p.slab + ds && it->y <= p.y + w; ++it) {
                if (it->i != p.i && e[it->i].start.distance(e[p.i].start) <= w)
                    shared[p.i] = shared[it->i] = true;
            }
        }
    }
    return shared;
}

// The edges as a ring; removing an edge lets its predecessor run to its successor's start.
class Ring {
public:
    Ring(std::vector<LAEdge>& edges, double tolerance)
        : e(edges),
          eps(tolerance),
          next(edges.size()),
          prev(edges.size()),
          alive(edges.size(), true),
          pinned(SharedVertices(edges, tolerance)),
          count(edges.size()) {
        const std::size_t n = edges.size();
        for (std::size_t i = 0; i < n; ++i) {
            next[i] = (i + 1) % n;
            prev[i] = (i + n - 1) % n;
            if (edges[i].type == 1) ++arcs;
        }
        budget = 1e-13 * std::fabs(SignedArea(edges));
    }

    // Tries to remove the vertex where edge j starts.
    bool Merge(std::size_t j) {
        if (!alive[j] || count <= 2 || (arcs == 0 && count <= 3)) return false;
        const std::size_t i = prev[j], k = next[j];
        LAEdge& first = e[i];
        const LAEdge& second = e[j];
        const Point2& a = first.start;
        const Point2& b = second.start;
        const Point2& c = e[k].start;
        if (second.type != 1 && Same(b, c)) return Remove(j, 0.0);
        if (pinned[j]) return false;
        if (first.type != 1 && second.type != 1) {
            const Vector2 ac = c - a, ab = b - a;
            const double l2 = ac.length2();
            if (!(l2 > 0.0)) return false;
            const double t = (ab * ac) / l2;
            const double cross = ac % ab;
            if (!(t > 0.0 && t < 1.0) || std::fabs(cross) / std::sqrt(l2) > eps) return false;
            return Remove(j, std::fabs(cross) / 2.0);
        }
        if (first.type != 1 || second.type != 1) return false;
        if ((first.angle > 0.0) != (second.angle > 0.0) || first.angle == 0.0 ||
            second.angle == 0.0)
            return false;
        const double r1 = first.rad_arc(), r2 = second.rad_arc();
        if (first.centre.distance(second.centre) > eps || std::fabs(r1 - r2) > eps) return false;
        if (first.end_arc().distance(b) > eps || second.end_arc().distance(c) > eps) return false;
        const LAEdge joined(a, first.centre, first.angle + second.angle);
        if (joined.end_arc().distance(c) > eps || a.distance(c) <= 2.0 * eps) return false;
        const double moved = ((b - a) % (c - a)) / 2.0 + Segment(r1, first.angle) +
                             Segment(r2, second.angle) - Segment(r1, joined.angle);
        if (!Remove(j, std::fabs(moved))) return false;
        first.angle = joined.angle;
        return true;
    }

    std::vector<LAEdge> Edges() const {
        std::vector<LAEdge> out;
        std::size_t f = 0;
        while (f < e.size() && !alive[f]) ++f;
        if (f == e.size()) return out;
        std::size_t i = f;
        do {
            out.push_back(e[i]);
            i = next[i];
        } while (i != f);
        return out;
    }

    std::size_t Prev(std::size_t j) const { return prev[j]; }
    std::size_t Next(std::size_t j) const { return next[j]; }

private:
    bool Remove(std::size_t j, double moved) {
        if (used + moved > budget) return false;
        used += moved;
        alive[j] = false;
        next[prev[j]] = next[j];
        prev[next[j]] = prev[j];
        --count;
        if (e[j].type == 1) --arcs;
        return true;
    }

    std::vector<LAEdge>& e;
    double eps;
    std::vector<std::size_t> next, prev;
    std::vector<bool> alive;
    std::vector<bool> pinned;
    std::size_t count;
    std::size_t arcs = 0;
    double budget = 0.0;
    double used = 0.0;
};

}  // namespace

int SimplifyContour(LAContour& contour, double eps) {
    if (!(eps >= 0.0)) eps = 1e-10;
    std::vector<LAEdge> edges(contour.begin(), contour.end());
    for (const LAEdge& x : edges)
        if (!Finite(x.start) || (x.type == 1 && (!Finite(x.centre) || !std::isfinite(x.angle))))
            return 0;
    const bool closing = edges.size() >= 2 && edges.back().type != 1 &&
                         Same(edges.back().start, edges.front().start);
    if (closing) edges.pop_back();
    if (edges.size() < 3) return 0;

    Ring ring(edges, eps);
    std::vector<std::size_t> work;
    std::vector<bool> queued(edges.size(), true);
    for (std::size_t j = edges.size(); j-- > 0;) work.push_back(j);
    while (!work.empty()) {
        const std::size_t j = work.back();
        work.pop_back();
        queued[j] = false;
        if (!ring.Merge(j)) continue;
        // The edge before the removed vertex now ends elsewhere: both of its vertices may go now.
        for (const std::size_t v : {ring.Prev(j), ring.Next(j)}) {
            if (!queued[v]) {
                queued[v] = true;
                work.push_back(v);
            }
        }
    }
    std::vector<LAEdge> kept = ring.Edges();
    if (closing) kept.push_back(LAEdge(kept.front().start));
    const int removed = static_cast<int>(contour.size()) - static_cast<int>(kept.size());
    if (removed == 0) return 0;
    contour.clear();
    for (const LAEdge& x : kept) contour.push_back(x);
    return removed;
}

int SimplifyComplexContour(ProComplexContour& shape, double eps) {
    int removed = 0;
    for (unsigned long i = 0; i < shape.ChildrenCount(); ++i) {
        ProSolidContour* s = shape.SolidChild(i);
        if (s == nullptr) continue;
        removed += SimplifyContour(s->GetLAContour(), eps);
        for (unsigned long j = 0; j < s->ChildrenCount(); ++j)
            if (ProClosedContour* h = s->ClosedChild(j))
                removed += SimplifyContour(h->GetLAContour(), eps);
    }
    return removed;
}

}  // namespace quillon
