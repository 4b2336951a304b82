// A list of points in which every point closer than a tolerance to an earlier one takes that
// earlier point's index: the shared vertex list of the solid booleans, where a cut point found
// from either operand must become the very same vertex.
//
// `add` answers the first stored point (in order of insertion) within the tolerance, Euclidean and
// inclusive, else appends. A hash grid with cells of twice the tolerance makes that a look at eight
// cells, so filling the pool grows linearly. A tolerance of 0 or less merges only equal points.
#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "quillon/geometry/space/vector3.h"

namespace quillon::detail {

class PointPool {
public:
    explicit PointPool(double tolerance);

    std::uint32_t add(const Point3& p);
    // The index of the first stored point within the tolerance of p, or -1 as uint32 max.
    std::uint32_t find(const Point3& p) const;
    const std::vector<Point3>& points() const { return pts; }
    const Point3& operator[](std::size_t i) const { return pts[i]; }
    std::size_t size() const { return pts.size(); }
    double tolerance() const { return tol; }

    static constexpr std::uint32_t none = 0xffffffffu;

private:
    struct Key {
        std::int64_t x, y, z;
        bool operator==(const Key& k) const { return x == k.x && y == k.y && z == k.z; }
    };
    struct KeyHash {
        std::size_t operator()(const Key& k) const {
            std::uint64_t h = static_cast<std::uint64_t>(k.x) * 0x9E3779B97F4A7C15ull;
            h ^= static_cast<std::uint64_t>(k.y) * 0xC2B2AE3D27D4EB4Full + (h << 6) + (h >> 2);
            h ^= static_cast<std::uint64_t>(k.z) * 0x165667B19E3779F9ull + (h << 6) + (h >> 2);
            return static_cast<std::size_t>(h);
        }
    };
    std::int64_t cell(double v) const;
    Key keyOf(const Point3& p) const { return {cell(p.x), cell(p.y), cell(p.z)}; }

    double tol;
    double cellSize;  // edge of a grid cell
    std::vector<Point3> pts;
    std::unordered_map<Key, std::vector<std::uint32_t>, KeyHash> grid;
};

}  // namespace quillon::detail
