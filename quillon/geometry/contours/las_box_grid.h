// Boxes and a uniform grid over them: the index by which the contour solver and its relation
// tests skip pairs of pieces that lie far apart. Pure bookkeeping: no tolerance, no geometric
// decision; an answer found through the grid is the one a full scan gives.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "quillon/geometry/plane/plane_types.h"

namespace quillon::las_index {

// An axis-aligned box; `Empty()` boxes hold nothing.
struct Box {
    double x0 = 1.0, y0 = 1.0, x1 = -1.0, y1 = -1.0;

    bool Empty() const { return !(x0 <= x1 && y0 <= y1); }
    // Inline: box building runs in the inner loops of the relation tests.
    void Add(const Point2& p) {
        if (Empty()) {
            x0 = x1 = p.x;
            y0 = y1 = p.y;
            return;
        }
        x0 = std::min(x0, p.x);
        x1 = std::max(x1, p.x);
        y0 = std::min(y0, p.y);
        y1 = std::max(y1, p.y);
    }
    void Add(const Box& b) {
        if (b.Empty()) return;
        Add(Point2(b.x0, b.y0));
        Add(Point2(b.x1, b.y1));
    }
    Box Grown(double d) const { return {x0 - d, y0 - d, x1 + d, y1 + d}; }
    bool Overlaps(const Box& b) const {
        return !Empty() && !b.Empty() && x0 <= b.x1 && b.x0 <= x1 && y0 <= b.y1 && b.y0 <= y1;
    }
};

// A uniform grid of cells over a fixed extent; each item is registered in the cells its box
// overlaps. Queries give the candidates whose cells meet the box, each once, in no fixed order.
class BoxGrid {
public:
    // itemSize: the typical width of an item's box (0 when unknown).
    void Build(const Box& extent, std::size_t expected, double itemSize = 0.0);
    // Builds the grid over a fixed set of items, id = position in `boxes`, packed into one array
    // (no list per cell); Insert and Remove must not be used on it afterwards.
    void BuildPacked(const Box& extent, const std::vector<Box>& boxes, double itemSize = 0.0);
    bool Valid() const { return !cells.empty() || !packedStart.empty(); }
    void Clear() {
        cells.clear();
        packedStart.clear();
        packedItems.clear();
        stamp.clear();
    }
    // A box reaching beyond the extent is registered in the border cells; an empty box nowhere.
    void Insert(int id, const Box& b);
    void Remove(int id, const Box& b);
    void Query(const Box& b, std::vector<int>& out);

private:
    void Range(const Box& b, int& i0, int& j0, int& i1, int& j1) const;

    Box ext;
    int nx = 0, ny = 0;
    double cw = 1.0, ch = 1.0;
    double icw = 1.0, ich = 1.0;  // inverse cell sizes
    std::vector<std::vector<int>> cells;
    // Packed form: the ids of cell k are packedItems[packedStart[k] .. packedStart[k + 1]).
    std::vector<int> packedStart;
    std::vector<int> packedItems;
    std::vector<std::uint32_t> stamp;  // per id: last query that returned it
    std::uint32_t query = 0;
};

}  // namespace quillon::las_index
