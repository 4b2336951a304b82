#include "quillon/geometry/contours/las_box_grid.h"

#include <algorithm>
#include <cmath>

namespace quillon::las_index {

void BoxGrid::Build(const Box& extent, std::size_t expected, double itemSize) {
    ext = extent.Empty() ? Box{0.0, 0.0, 1.0, 1.0} : extent;  // mutate: off (any extent indexes)
    double w = ext.x1 - ext.x0, h = ext.y1 - ext.y0;          // mutate: off (cell size only)
    if (!std::isfinite(w) || !std::isfinite(h)) {  // mutate: off (one cell: slower, same answers)
        // Unbounded input: one cell holds everything (slow but exact).
        ext = Box{0.0, 0.0, 1.0, 1.0};  // mutate: off (any extent: one cell)
        w = h = 0.0;                    // mutate: off (any extent indexes)
    }
    // The cell of a uniform spread of the items, made smaller when the items are smaller (they
    // crowd along a thin outline), so each cell holds a few items; at most 4 cells per item.
    // The cell size sets the speed only: any grid gives the same answers (hence `mutate: off`).
    const bool area = w > 0.0 && h > 0.0;                                  // mutate: off
    const double n = std::max(1.0, static_cast<double>(expected));         // mutate: off
    const double budget = std::clamp(4.0 * n, 16.0, 4.0e6);                // mutate: off
    double cell = area ? std::sqrt(w * h / n) : std::max(w, h) / n;        // mutate: off
    if (itemSize > 0.0) cell = std::min(cell, 2.0 * itemSize);             // mutate: off
    if (!(cell > 0.0)) cell = 1.0;                                         // mutate: off
    cell = std::max(cell, area ? std::sqrt(w * h / budget) : 0.0);         // mutate: off
    nx = static_cast<int>(std::clamp(std::ceil(w / cell), 1.0, 4096.0));   // mutate: off
    ny = static_cast<int>(std::clamp(std::ceil(h / cell), 1.0, 4096.0));   // mutate: off
    while (static_cast<double>(nx) * ny > budget && (nx > 1 || ny > 1)) {  // mutate: off
        nx = std::max(1, nx / 2);                                          // mutate: off
        ny = std::max(1, ny / 2);                                          // mutate: off
    }
    cw = w > 0.0 ? w / nx : 1.0;  // mutate: off
    ch = h > 0.0 ? h / ny : 1.0;  // mutate: off
    icw = 1.0 / cw;               // mutate: off
    ich = 1.0 / ch;               // mutate: off
    cells.assign(static_cast<std::size_t>(nx) * static_cast<std::size_t>(ny), {});
    packedStart.clear();
    packedItems.clear();
    stamp.clear();
    query = 0;  // mutate: off (any start: the stamps were just cleared)
}

void BoxGrid::BuildPacked(const Box& extent, const std::vector<Box>& boxes, double itemSize) {
    Build(extent, boxes.size(), itemSize);
    const std::size_t n = cells.size();
    cells.clear();
    // Two passes over the boxes: count per cell, then place; ids stay in increasing order per
    // cell, as insertion in order would leave them.
    packedStart.assign(n + 1, 0);  // mutate: off (a spare slot at the end is unused)
    const auto each = [&](const Box& b, auto&& f) {
        if (b.Empty()) return;
        int i0, j0, i1, j1;
        Range(b, i0, j0, i1, j1);
        for (int j = j0; j <= j1; ++j)
            for (int i = i0; i <= i1; ++i)
                f(static_cast<std::size_t>(j) * static_cast<std::size_t>(nx) +
                  static_cast<std::size_t>(i));
    };
    for (const Box& b : boxes) each(b, [&](std::size_t k) { ++packedStart[k + 1]; });
    for (std::size_t k = 0; k < n; ++k) packedStart[k + 1] += packedStart[k];
    packedItems.resize(static_cast<std::size_t>(packedStart[n]));
    std::vector<int> fill(packedStart.begin(),
                          packedStart.end() - 1);      // mutate: off (a spare counter is unused)
    for (std::size_t id = 0; id < boxes.size(); ++id)  // mutate: off (slots start as id 0)
        each(boxes[id], [&](std::size_t k) {
            packedItems[static_cast<std::size_t>(fill[k]++)] = static_cast<int>(id);
        });
}

void BoxGrid::Range(const Box& b, int& i0, int& j0, int& i1, int& j1) const {
    // Any mapping that never decreases along an axis serves, as long as inserting and asking use
    // the same one: overlapping boxes then share a cell. A product with the inverse cell size and
    // truncation (the floor for the non-negative values it is taken of) are cheap.
    const auto cell = [](double v, double origin, double inverse, int n) {
        const double f = (v - origin) * inverse;  // mutate: off (any rising mapping serves)
        if (!(f >= 0.0)) return 0;     // below the extent, or NaN (mutate: off: 0 either way)
        if (f >= n - 1) return n - 1;  // mutate: off (n - 1 either way)
        return static_cast<int>(f);
    };
    i0 = cell(b.x0, ext.x0, icw, nx);
    i1 = cell(b.x1, ext.x0, icw, nx);
    j0 = cell(b.y0, ext.y0, ich, ny);
    j1 = cell(b.y1, ext.y0, ich, ny);
}

void BoxGrid::Insert(int id, const Box& b) {
    if (cells.empty() || b.Empty()) return;  // mutate: off (no cell is spanned either way)
    int i0, j0, i1, j1;
    Range(b, i0, j0, i1, j1);
    for (int j = j0; j <= j1; ++j)
        for (int i = i0; i <= i1; ++i)
            cells[static_cast<std::size_t>(j) * static_cast<std::size_t>(nx) +
                  static_cast<std::size_t>(i)]
                .push_back(id);
}

void BoxGrid::Remove(int id, const Box& b) {
    if (cells.empty() || b.Empty()) return;  // mutate: off (no cell is spanned either way)
    int i0, j0, i1, j1;
    Range(b, i0, j0, i1, j1);
    for (int j = j0; j <= j1; ++j)
        for (int i = i0; i <= i1; ++i) {
            auto& cell = cells[static_cast<std::size_t>(j) * static_cast<std::size_t>(nx) +
                               static_cast<std::size_t>(i)];
            const auto it = std::find(cell.begin(), cell.end(), id);
            if (it != cell.end()) {
                *it = cell.back();
                cell.pop_back();
            }
        }
}

void BoxGrid::Query(const Box& b, std::vector<int>& out) {
    out.clear();
    if (!Valid() || b.Empty()) return;  // mutate: off (no cell is spanned either way)
    if (++query == 0) {                 // mutate: off (a reset is harmless)
        std::fill(stamp.begin(), stamp.end(), 0u);
        query = 1;  // mutate: off (any start above the cleared stamps)
    }
    int i0, j0, i1, j1;
    Range(b, i0, j0, i1, j1);
    const auto take = [&](int id) {
        const std::size_t k = static_cast<std::size_t>(id);
        if (k >= stamp.size()) stamp.resize(k + 1 + k / 2, 0u);  // mutate: off (growth only)
        if (stamp[k] == query) return;
        stamp[k] = query;
        out.push_back(id);
    };
    for (int j = j0; j <= j1; ++j)
        for (int i = i0; i <= i1; ++i) {
            const std::size_t c = static_cast<std::size_t>(j) * static_cast<std::size_t>(nx) +
                                  static_cast<std::size_t>(i);
            if (!packedStart.empty()) {
                for (int at = packedStart[c]; at < packedStart[c + 1]; ++at)
                    take(packedItems[static_cast<std::size_t>(at)]);
            } else {
                for (int id : cells[c]) take(id);
            }
        }
}

}  // namespace quillon::las_index
