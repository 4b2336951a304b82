// Cutting a section by a line: every polygon is traced into the pieces that lie on the kept side.
#include <cstddef>
#include <utility>
#include <vector>

#include "quillon/sections/mpoly.h"

namespace quillon {

namespace {

// Where the edge a -> b meets the cutting line; the edge's midpoint when the edge is degenerate or
// (numerically) parallel to the line, which is then within tolerance of the line anyway.
Point2 EdgeCrossing(const CLine2& line, const Point2& a, const Point2& b) {
    const CLine2 edge(a, b);
    Point2 p;
    if (edge && LineCross(line, edge, p) == 0) return p;
    return a + 0.5 * (b - a);
}

// Appends the pieces of poly on side `keep` (1 or -1) of the line to out.
void CutPolygon(const MPoly& poly, const CLine2& line, short keep, std::vector<MPoly>& out) {
    const int n = poly.num_point();
    if (n < 3) return;
    const Point2* v = poly.tab_point();
    // Class of each vertex: 0 on the line, else its side; a consumed kept vertex is doubled.
    std::vector<short> cls(static_cast<std::size_t>(n));
    int kept = 0;
    int other = 0;
    for (int i = 0; i < n; ++i) {
        const short c = line.dist(v[i]) < kSectionEps ? short{0} : line.side(v[i]);
        cls[static_cast<std::size_t>(i)] = c;
        if (c == keep) {
            ++kept;
        } else if (c == -keep) {
            ++other;
        }
    }
    if (kept == 0) return;
    if (other == 0) {
        out.push_back(poly);
        return;
    }
    auto at = [&cls](int i) -> short& { return cls[static_cast<std::size_t>(i)]; };
    auto next = [n](int i) { return i + 1 == n ? 0 : i + 1; };

    int consumed = 0;
    int pos = 0;
    while (consumed < kept) {
        // The next edge that enters the kept side, searched from where the last piece ended.
        int i = pos;
        int steps = 0;
        while (steps < n && !(at(i) != keep && at(next(i)) == keep)) {  // mutate: off (see guard)
            i = next(i);
            ++steps;
        }
        // Cannot happen while kept vertices remain; a guard, not a rule.
        if (steps == n) break;  // mutate: off (guard)
        MPoly piece;
        int j = next(i);
        piece.Add(at(i) == 0 ? v[i] : EdgeCrossing(line, v[i], v[j]));
        piece.Add(v[j]);
        at(j) = static_cast<short>(2 * keep);  // mutate: off (keep is ±1)
        ++consumed;
        // Walk on until the polygon leaves the kept side or touches the line.
        for (;;) {
            const int k = next(j);
            const short c = at(k);
            if (c == keep) {
                piece.Add(v[k]);
                at(k) = static_cast<short>(2 * keep);  // mutate: off (keep is ±1)
                ++consumed;
                j = k;
                continue;
            }
            if (c == -keep) {
                piece.Add(EdgeCrossing(line, v[j], v[k]));
            } else if (c == 0) {
                piece.Add(v[k]);
            }
            pos = k;
            break;
        }
        if (piece.num_point() > 2) out.push_back(std::move(piece));
    }
}

}  // namespace

void MPolySet::CutByLine(const CLine2& line, short side, MPolySet& out) const {
    MPolySet result;
    if (side != 0) {
        const short keep = side > 0 ? short{1} : short{-1};
        for (const MPoly& p : outlines) CutPolygon(p, line, keep, result.outlines);
        for (const MPoly& p : holes) CutPolygon(p, line, keep, result.holes);
    }
    out = std::move(result);
}

}  // namespace quillon
