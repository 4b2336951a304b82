// Axis-aligned boxes and a static bounding-volume tree over them, the index behind the solid
// booleans: which faces can an edge cut, which faces can a ray meet, which faces lie near a point.
//
// The tree is built once over a list of boxes and answers box and ray queries by visiting only the
// subtrees whose boxes the query meets. Queries report item indices in no particular order; callers
// that need an order (the first match in index order, say) sort what they collect. Empty boxes
// never match. Nothing here throws except std::bad_alloc.
#pragma once

#include <cstdint>
#include <limits>
#include <vector>

#include "quillon/geometry/space/vector3.h"

namespace quillon::detail {

struct Box3 {
    Point3 lo{std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity(),
              std::numeric_limits<double>::infinity()};
    Point3 hi{-std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
              -std::numeric_limits<double>::infinity()};

    bool empty() const { return !(lo.x <= hi.x && lo.y <= hi.y && lo.z <= hi.z); }
    void add(const Point3& p);
    void add(const Box3& b);
    // Grows every side by e (nothing for an empty box).
    void inflate(double e);
    bool overlaps(const Box3& b) const {
        return lo.x <= b.hi.x && b.lo.x <= hi.x && lo.y <= b.hi.y && b.lo.y <= hi.y &&
               lo.z <= b.hi.z && b.lo.z <= hi.z;
    }
    bool contains(const Point3& p) const {
        return lo.x <= p.x && p.x <= hi.x && lo.y <= p.y && p.y <= hi.y && lo.z <= p.z &&
               p.z <= hi.z;
    }
    Point3 centre() const { return (lo + hi) * 0.5; }
};

class BoxTree {
public:
    BoxTree() = default;
    explicit BoxTree(std::vector<Box3> boxes) { build(std::move(boxes)); }

    // Replaces the tree by one over `boxes`; item i is boxes[i].
    void build(std::vector<Box3> boxes);
    std::size_t size() const { return items.size(); }
    const Box3& box(std::size_t i) const { return items[i]; }

    // Appends to `out` every item whose box overlaps q.
    void query(const Box3& q, std::vector<std::uint32_t>& out) const;
    // Appends to `out` every item whose box the ray o + t·d (t >= 0) meets.
    void ray(const Point3& o, const Vector3& d, std::vector<std::uint32_t>& out) const;

private:
    struct Node {
        Box3 box;
        std::uint32_t first = 0;  // leaf: first index into `order`; inner: index of the left child
        std::uint32_t count =
            0;  // leaf: number of items; inner: 0 (the right child follows left's subtree)
        std::uint32_t right = 0;  // inner: index of the right child
    };
    std::uint32_t buildNode(std::uint32_t first, std::uint32_t count, std::vector<Point3>& centres);

    std::vector<Box3> items;
    std::vector<std::uint32_t> order;
    std::vector<Node> nodes;
};

}  // namespace quillon::detail
