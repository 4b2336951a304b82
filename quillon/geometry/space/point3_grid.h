// Point3Grid: the index behind Solid3's "last-added point strictly within eps" look-ups
// (`GetVertexInd`, `AddNormal` with merging), which would otherwise scan the whole list backwards.
//
// Points live in cubic cells of side 4·eps keyed by their floored cell coordinates; a cell keeps
// its newest index and every point links to the next older one in its cell. A query visits the
// cells that the box [p − eps, p + eps] reaches (one to eight; floating-point division and floor
// are monotone, so no point strictly within eps is missed) and keeps the largest matching index:
// exactly the answer of the backward scan.
//
// The grid holds indices, not points: the caller's list is read through a function, and the
// caller tells the grid when that list changed in ways other than appending (`Invalidate`). A copy
// of a grid is an empty, invalid grid, so objects that own one copy as plain values.
// Points with a non-finite coordinate are never indexed and never match (their distances are not
// below any eps); an eps that is not positive matches nothing.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <unordered_map>
#include <vector>

namespace quillon {

class Point3Grid {
public:
    static constexpr std::size_t npos = std::numeric_limits<std::size_t>::max();

    Point3Grid() = default;
    Point3Grid(const Point3Grid&) {}
    Point3Grid& operator=(const Point3Grid&) {
        Invalidate();
        return *this;
    }

    // The caller's list changed other than by appending: the next Sync rebuilds the grid.
    void Invalidate() {
        valid = false;
        head.clear();
        older.clear();
    }

    // Brings the grid up to the caller's list of n points (point i read as at(i), anything with
    // x, y, z): indexes the points appended since the last call, or all of them after an
    // invalidation or a change of eps.
    template <class At>
    void Sync(std::size_t n, double eps, const At& at) {
        if (!valid || eps != tolerance || n < older.size()) {
            Invalidate();
            tolerance = eps;
            cell = 4.0 * eps;
            valid = true;
        }
        if (!(eps > 0.0)) return;  // nothing can match: nothing to index
        for (std::size_t i = older.size(); i < n; ++i) {
            const auto& p = at(i);
            older.push_back(npos);
            if (!Finite(p.x, p.y, p.z)) continue;
            std::size_t& newest = head.try_emplace(KeyOf(p.x, p.y, p.z), npos).first->second;
            older[i] = newest;
            newest = i;
        }
    }

    // The largest index i whose point lies strictly within eps of (x, y, z) (Euclidean distance,
    // computed as sqrt(dx² + dy² + dz²) < eps); npos when none does. The grid must be in Sync.
    template <class At>
    std::size_t FindLast(double x, double y, double z, const At& at) const {
        if (!(tolerance > 0.0) || !Finite(x, y, z)) return npos;
        double xs[3], ys[3], zs[3];
        const int nx = Span(x, xs), ny = Span(y, ys), nz = Span(z, zs);
        std::size_t best = npos;
        for (int i = 0; i < nx; ++i) {
            for (int j = 0; j < ny; ++j) {
                for (int k = 0; k < nz; ++k) {
                    const auto found = head.find(Key{xs[i], ys[j], zs[k]});
                    if (found == head.end()) continue;
                    for (std::size_t n = found->second; n != npos && (best == npos || n > best);
                         n = older[n]) {
                        const auto& p = at(n);
                        const double dx = p.x - x, dy = p.y - y, dz = p.z - z;
                        if (std::sqrt(dx * dx + dy * dy + dz * dz) < tolerance) {
                            best = n;
                            break;
                        }
                    }
                }
            }
        }
        return best;
    }

private:
    struct Key {
        double x, y, z;
        bool operator==(const Key& o) const { return x == o.x && y == o.y && z == o.z; }
    };
    struct KeyHash {
        static std::uint64_t Bits(double d) {
            std::uint64_t b;
            std::memcpy(&b, &d, sizeof b);
            return b;
        }
        std::size_t operator()(const Key& k) const {
            std::uint64_t h = Bits(k.x) * 0x9E3779B97F4A7C15ull;
            h ^= Bits(k.y) + 0x7F4A7C159E3779B9ull + (h << 6) + (h >> 2);
            h ^= Bits(k.z) + 0x94D049BB133111EBull + (h << 6) + (h >> 2);
            h ^= h >> 31;
            return static_cast<std::size_t>(h * 0xBF58476D1CE4E5B9ull);
        }
    };

    static bool Finite(double x, double y, double z) {
        return std::isfinite(x) && std::isfinite(y) && std::isfinite(z);
    }
    // Floored cell coordinate; adding 0.0 turns -0.0 into 0.0 so both key alike.
    double Floor(double v) const { return std::floor(v / cell) + 0.0; }
    Key KeyOf(double x, double y, double z) const { return Key{Floor(x), Floor(y), Floor(z)}; }
    // The cells of one axis that [v - eps, v + eps] reaches: rounding is monotone, so every
    // point strictly within eps on this axis lies in one of them. With cells of 4·eps there are
    // one or two; the third place only serves rounding at a cell boundary.
    int Span(double v, double out[3]) const {
        if (std::isinf(cell)) {  // eps = inf: one cell holds everything
            out[0] = 0.0;
            return 1;
        }
        const double lo = Floor(v - tolerance), hi = Floor(v + tolerance);
        int n = 0;
        for (double c = lo; n < 3; c += 1.0) {
            out[n++] = c + 0.0;
            if (!(c < hi) || c + 1.0 == c) break;
        }
        return n;
    }

    bool valid = false;
    double tolerance = 0.0;
    double cell = 0.0;
    std::unordered_map<Key, std::size_t, KeyHash> head;  // cell -> its newest index
    std::vector<std::size_t> older;                      // index -> next older index in its cell
};

}  // namespace quillon
