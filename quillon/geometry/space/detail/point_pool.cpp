#include "quillon/geometry/space/detail/point_pool.h"

#include <algorithm>
#include <cmath>

namespace quillon::detail {

PointPool::PointPool(double tolerance)
    : tol(std::isfinite(tolerance) ? std::max(tolerance, 0.0) : 0.0),
      cellSize(tol > 0.0 ? 2.0 * tol : 1.0) {}  // mutate: off (the cell size shapes the grid only)

std::int64_t PointPool::cell(double v) const {
    // Far coordinates (or non-finite ones) share the outermost cells: the distance test still
    // decides, the grid only narrows the search.
    const double c = std::floor(v / cellSize);
    if (!(c > -4.0e18)) return static_cast<std::int64_t>(-4.0e18);  // mutate: off (grid only)
    if (!(c < 4.0e18)) return static_cast<std::int64_t>(4.0e18);    // mutate: off (grid only)
    return static_cast<std::int64_t>(c);
}

std::uint32_t PointPool::find(const Point3& p) const {
    const double t2 = tol * tol;
    std::uint32_t best = none;
    const Key lo = keyOf(Point3(p.x - tol, p.y - tol, p.z - tol));
    const Key hi = keyOf(Point3(p.x + tol, p.y + tol, p.z + tol));
    for (std::int64_t x = lo.x; x <= hi.x; ++x)
        for (std::int64_t y = lo.y; y <= hi.y; ++y)
            for (std::int64_t z = lo.z; z <= hi.z; ++z) {
                const auto it = grid.find(Key{x, y, z});
                if (it == grid.end()) continue;
                for (const std::uint32_t i : it->second) {
                    // Cells list indices in ascending order: nothing better follows.
                    if (i >= best) break;  // mutate: off
                    if (pts[i].distance2(p) <= t2) best = i;
                }
            }
    return best;
}

std::uint32_t PointPool::add(const Point3& p) {
    const std::uint32_t found = find(p);
    if (found != none) return found;
    const auto i = static_cast<std::uint32_t>(pts.size());
    pts.push_back(p);
    grid[keyOf(p)].push_back(i);
    return i;
}

}  // namespace quillon::detail
