// Point3Cache: a tolerant index of space points that hands out one index for all points that match
// within its tolerance.
//
// The points are kept in order of insertion (a point's index is its position in `GetNodes()`),
// and three ordered multisets hold the indices sorted by x, by y and by z. The sets hold indices
// only: their comparators carry the axis letter and refer to this cache's own node list, so a copy
// re-binds them to the copy's nodes.
//
// Matching is a box test, inclusive: |dx| <= eps and |dy| <= eps and |dz| <= eps, not a Euclidean
// distance. Among several stored points that match a query, the first in ascending x wins (equal
// x: the earlier inserted), not the nearest: kept so, because stored indices depend on it.
//
// Points with a NaN coordinate sort after every number on that axis; they never match anything.
// Nothing here throws except std::bad_alloc.
#pragma once

#include <cstddef>
#include <set>
#include <vector>

#include "quillon/geometry/plane/mvector.h"
#include "quillon/geometry/space/vector3.h"

namespace quillon {

class Point3Cache {
public:
    // A negative eps asks for the default 1e-10.
    explicit Point3Cache(double eps = -1.0);
    Point3Cache(const Point3Cache& other);
    Point3Cache(Point3Cache&& other);
    Point3Cache& operator=(const Point3Cache& other);
    Point3Cache& operator=(Point3Cache&& other);
    ~Point3Cache() = default;

    // The index of the first stored point (in ascending x) that matches p; false when none does.
    bool Find(const Point3& p, std::size_t& index) const;
    // The index of a stored point that matches p (as Find), or else of p itself, appended.
    std::size_t Add(const Point3& p);
    // The indices (ascending) of the stored points inside the box spanned by a and b, bounds
    // included and taken in either order, no tolerance; false when there is none.
    bool Find(const Point3& a, const Point3& b, std::vector<std::size_t>& indices) const;
    // The bounding box of the stored points, read from the ends of the three indexes; false (and
    // the arguments untouched) when the cache is empty.
    bool GetExtents(Point3& min, Point3& max) const;
    // Forgets every point; the tolerance stays.
    void Reset();

    const Mvector<Point3>& GetNodes() const { return nodes; }
    double GetEps() const { return eps; }

private:
    // A coordinate to search for in an index (heterogeneous lookup).
    struct Key {
        double value;
    };
    struct AxisLess {
        using is_transparent = void;
        char axis;  // 'x', 'y' or 'z'
        const Mvector<Point3>* nodes;

        double Coord(std::size_t i) const;
        static bool Less(double a, double b);
        bool operator()(std::size_t a, std::size_t b) const { return Less(Coord(a), Coord(b)); }
        bool operator()(std::size_t a, Key b) const { return Less(Coord(a), b.value); }
        bool operator()(Key a, std::size_t b) const { return Less(a.value, Coord(b)); }
    };
    using Index = std::multiset<std::size_t, AxisLess>;

    bool Scan(const Point3& p, std::size_t& index, Index::const_iterator* after) const;
    // Rebuilds the three indexes over this cache's nodes in the order of `from`'s indexes.
    void Rebind(const Point3Cache& from);

    Index xIndex;
    Index yIndex;
    Index zIndex;
    double eps;
    Mvector<Point3> nodes;
};

}  // namespace quillon
