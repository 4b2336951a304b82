#include "quillon/geometry/space/detail/box_tree.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace quillon::detail {

namespace {
constexpr std::uint32_t kLeafSize = 4;
}  // namespace

void Box3::add(const Point3& p) {
    lo.set(std::min(lo.x, p.x), std::min(lo.y, p.y), std::min(lo.z, p.z));
    hi.set(std::max(hi.x, p.x), std::max(hi.y, p.y), std::max(hi.z, p.z));
}

void Box3::add(const Box3& b) {
    if (b.empty()) return;
    add(b.lo);
    add(b.hi);
}

void Box3::inflate(double e) {
    if (empty()) return;
    lo.set(lo.x - e, lo.y - e, lo.z - e);
    hi.set(hi.x + e, hi.y + e, hi.z + e);
}

void BoxTree::build(std::vector<Box3> boxes) {
    items = std::move(boxes);
    order.clear();
    nodes.clear();
    std::vector<Point3> centres(items.size());
    for (std::uint32_t i = 0; i < items.size(); ++i) {
        if (items[i].empty()) continue;  // an empty box can never match: leave it out
        order.push_back(i);
        centres[i] = items[i].centre();
    }
    if (order.empty()) return;
    nodes.reserve(2 * order.size() / kLeafSize + 2);
    buildNode(0, static_cast<std::uint32_t>(order.size()), centres);
}

std::uint32_t BoxTree::buildNode(std::uint32_t first, std::uint32_t count,
                                 std::vector<Point3>& centres) {
    const auto self = static_cast<std::uint32_t>(nodes.size());
    nodes.emplace_back();
    Box3 box, spread;
    for (std::uint32_t k = first; k < first + count; ++k) {
        box.add(items[order[k]]);
        spread.add(centres[order[k]]);
    }
    nodes[self].box = box;
    const Vector3 ext = spread.hi - spread.lo;
    // The leaf rule shapes the tree only, never the answers.
    if (count <= kLeafSize || (ext.x <= 0.0 && ext.y <= 0.0 && ext.z <= 0.0)) {  // mutate: off
        nodes[self].first = first;
        nodes[self].count = count;
        return self;
    }
    // Median split on the axis along which the centres spread most.
    const int axis = ext.x >= ext.y && ext.x >= ext.z ? 0 : (ext.y >= ext.z ? 1 : 2);
    const std::uint32_t half = count / 2;
    auto begin = order.begin() + first;
    std::nth_element(begin, begin + half, begin + count, [&](std::uint32_t a, std::uint32_t b) {
        return centres[a].tab()[axis] < centres[b].tab()[axis];
    });
    const std::uint32_t left = buildNode(first, half, centres);
    const std::uint32_t right = buildNode(first + half, count - half, centres);
    nodes[self].first = left;
    nodes[self].count = 0;
    nodes[self].right = right;
    return self;
}

void BoxTree::query(const Box3& q, std::vector<std::uint32_t>& out) const {
    if (nodes.empty() || q.empty()) return;
    std::uint32_t stack[128];
    int top = 0;
    stack[top++] = 0;
    while (top > 0) {
        const Node& n = nodes[stack[--top]];
        if (!n.box.overlaps(q)) continue;
        if (n.count > 0) {
            for (std::uint32_t k = n.first; k < n.first + n.count; ++k)
                if (items[order[k]].overlaps(q)) out.push_back(order[k]);
        } else {
            stack[top++] = n.first;
            stack[top++] = n.right;
        }
    }
}

namespace {
// Slab test of the ray o + t·d, t >= 0, against a box.
bool RayMeetsBox(const Box3& b, const Point3& o, const Vector3& d) {
    double t0 = 0.0, t1 = std::numeric_limits<double>::infinity();
    for (int a = 0; a < 3; ++a) {
        const double oa = o.tab()[a], da = d.tab()[a];
        const double lo = b.lo.tab()[a], hi = b.hi.tab()[a];
        if (da == 0.0) {
            if (oa < lo || oa > hi) return false;
            continue;
        }
        double ta = (lo - oa) / da, tb = (hi - oa) / da;
        if (ta > tb) std::swap(ta, tb);
        t0 = std::max(t0, ta);
        t1 = std::min(t1, tb);
        if (t0 > t1) return false;
    }
    return true;
}
}  // namespace

void BoxTree::ray(const Point3& o, const Vector3& d, std::vector<std::uint32_t>& out) const {
    if (nodes.empty()) return;
    std::uint32_t stack[128];
    int top = 0;
    stack[top++] = 0;
    while (top > 0) {
        const Node& n = nodes[stack[--top]];
        if (!RayMeetsBox(n.box, o, d)) continue;
        if (n.count > 0) {
            for (std::uint32_t k = n.first; k < n.first + n.count; ++k)
                if (RayMeetsBox(items[order[k]], o, d)) out.push_back(order[k]);
        } else {
            stack[top++] = n.first;
            stack[top++] = n.right;
        }
    }
}

}  // namespace quillon::detail
