#include "quillon/geometry/space/detail/ring2.h"

#include <algorithm>

namespace quillon::detail {

Ring2::Ring2(std::vector<Point2> points) : pts(std::move(points)) {
    if (pts.empty()) return;
    lo = hi = pts[0];
    for (const Point2& p : pts) {
        lo.set(std::min(lo.x, p.x), std::min(lo.y, p.y));
        hi.set(std::max(hi.x, p.x), std::max(hi.y, p.y));
    }
}

bool Ring2::onBoundary(const Point2& q, double tol) const {
    if (pts.empty() || !near(q, tol)) return false;  // mutate: off (a skip: the edges decide)
    const double t2 = tol * tol;
    const std::size_t n = pts.size();
    for (std::size_t i = 0; i < n; ++i) {
        const Point2& a = pts[i];
        const Point2& b = pts[i + 1 == n ? 0 : i + 1];
        // Far from the edge's box: skip without arithmetic on the edge.
        if (q.x < std::min(a.x, b.x) - tol || q.x > std::max(a.x, b.x) + tol ||  // mutate: off
            q.y < std::min(a.y, b.y) - tol || q.y > std::max(a.y, b.y) + tol)    // mutate: off
            continue;
        const double ex = b.x - a.x, ey = b.y - a.y;
        const double px = q.x - a.x, py = q.y - a.y;
        const double len2 = ex * ex + ey * ey;
        double t = len2 > 0.0 ? (px * ex + py * ey) / len2 : 0.0;
        t = std::clamp(t, 0.0, 1.0);
        const double dx = px - t * ex, dy = py - t * ey;
        if (dx * dx + dy * dy <= t2) return true;
    }
    return false;
}

bool Ring2::inside(const Point2& q) const {
    if (pts.size() < 3 || !near(q, 0.0)) return false;  // mutate: off (a skip: parity decides)
    bool in = false;
    const std::size_t n = pts.size();
    for (std::size_t i = 0, j = n - 1; i < n; j = i++) {
        const Point2& a = pts[i];
        const Point2& b = pts[j];
        // Half-open in y, so a ray through a vertex counts it once.
        if ((a.y > q.y) != (b.y > q.y)) {
            const double x = a.x + (q.y - a.y) * (b.x - a.x) / (b.y - a.y);
            if (q.x < x) in = !in;
        }
    }
    return in;
}

}  // namespace quillon::detail
