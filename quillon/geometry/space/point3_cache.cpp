#include "quillon/geometry/space/point3_cache.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace quillon {

double Point3Cache::AxisLess::Coord(std::size_t i) const {
    const Point3& p = (*nodes)[i];
    return axis == 'x' ? p.x : axis == 'y' ? p.y : p.z;
}

// A strict weak order on doubles that keeps NaN apart: NaN sorts after every number and ties
// with NaN, so the indexes stay well ordered whatever the stored points hold.
bool Point3Cache::AxisLess::Less(double a, double b) {
    const bool na = std::isnan(a), nb = std::isnan(b);
    if (na || nb) return !na && nb;
    return a < b;
}

Point3Cache::Point3Cache(double tolerance)
    : xIndex(AxisLess{'x', &nodes}),
      yIndex(AxisLess{'y', &nodes}),
      zIndex(AxisLess{'z', &nodes}),
      eps(tolerance < 0.0 ? 1e-10 : tolerance) {}

Point3Cache::Point3Cache(const Point3Cache& other)
    : xIndex(AxisLess{'x', &nodes}),
      yIndex(AxisLess{'y', &nodes}),
      zIndex(AxisLess{'z', &nodes}),
      eps(other.eps),
      nodes(other.nodes) {
    Rebind(other);
}

Point3Cache::Point3Cache(Point3Cache&& other)
    : xIndex(AxisLess{'x', &nodes}),
      yIndex(AxisLess{'y', &nodes}),
      zIndex(AxisLess{'z', &nodes}),
      eps(other.eps),
      nodes(std::move(other.nodes)) {
    Rebind(other);
    other.Reset();
}

Point3Cache& Point3Cache::operator=(const Point3Cache& other) {
    if (this != &other) {
        eps = other.eps;
        nodes = other.nodes;
        Rebind(other);
    }
    return *this;
}

Point3Cache& Point3Cache::operator=(Point3Cache&& other) {
    if (this != &other) {
        eps = other.eps;
        nodes = std::move(other.nodes);
        Rebind(other);
        other.Reset();
    }
    return *this;
}

void Point3Cache::Rebind(const Point3Cache& from) {
    // The source order is already sorted for these nodes (equal keys in insertion order), so each
    // index is refilled in linear time by inserting at its end.
    const auto refill = [](Index& to, const Index& source) {
        to.clear();
        for (const std::size_t i : source) to.insert(to.end(), i);
    };
    refill(xIndex, from.xIndex);
    refill(yIndex, from.yIndex);
    refill(zIndex, from.zIndex);
}

bool Point3Cache::Find(const Point3& p, std::size_t& index) const {
    return Scan(p, index, nullptr);
}

// The entries with x in [p.x - eps, p.x + eps] in ascending x (from the lower bound on until the
// upper one), the first that matches in the box winning. When none does and `after` is given, it
// receives the upper bound of p.x itself: where p goes in the x index (after equal keys), so that
// Add descends the x index once.
bool Point3Cache::Scan(const Point3& p, std::size_t& index, Index::const_iterator* after) const {
    const double top = p.x + eps;
    auto it = xIndex.lower_bound(Key{p.x - eps});
    bool placed = false;
    for (; it != xIndex.end(); ++it) {
        const Point3& q = nodes[*it];
        if (AxisLess::Less(top, q.x)) break;
        if (std::fabs(q.x - p.x) <= eps && std::fabs(q.y - p.y) <= eps &&
            std::fabs(q.z - p.z) <= eps) {
            index = *it;
            return true;
        }
        if (after != nullptr && !placed && AxisLess::Less(p.x, q.x)) {
            *after = it;
            placed = true;
        }
    }
    if (after != nullptr && !placed) *after = it;
    return false;
}

std::size_t Point3Cache::Add(const Point3& p) {
    std::size_t found = 0;  // mutate: off (set by Scan before it is read)
    Index::const_iterator at;
    if (Scan(p, found, &at)) return found;
    const std::size_t index = nodes.size();
    nodes.Add(p);
    xIndex.insert(at, index);
    yIndex.insert(index);
    zIndex.insert(index);
    return index;
}

bool Point3Cache::Find(const Point3& a, const Point3& b, std::vector<std::size_t>& indices) const {
    indices.clear();
    const double x0 = std::min(a.x, b.x), x1 = std::max(a.x, b.x);
    const double y0 = std::min(a.y, b.y), y1 = std::max(a.y, b.y);
    const double z0 = std::min(a.z, b.z), z1 = std::max(a.z, b.z);
    // Membership of the y and z ranges is the point's own coordinate test, so the x range is
    // walked and filtered rather than three sets intersected.
    const auto last = xIndex.upper_bound(Key{x1});
    for (auto it = xIndex.lower_bound(Key{x0}); it != last; ++it) {
        const Point3& q = nodes[*it];
        if (q.y >= y0 && q.y <= y1 && q.z >= z0 && q.z <= z1) indices.push_back(*it);
    }
    std::sort(indices.begin(), indices.end());
    return !indices.empty();
}

bool Point3Cache::GetExtents(Point3& min, Point3& max) const {
    if (xIndex.empty() || yIndex.empty() || zIndex.empty()) return false;
    min.set(nodes[*xIndex.begin()].x, nodes[*yIndex.begin()].y, nodes[*zIndex.begin()].z);
    max.set(nodes[*xIndex.rbegin()].x, nodes[*yIndex.rbegin()].y, nodes[*zIndex.rbegin()].z);
    return true;
}

void Point3Cache::Reset() {
    xIndex.clear();
    yIndex.clear();
    zIndex.clear();
    nodes.clear();
}

}  // namespace quillon
