#include "quillon/sections/thin_wall_graph.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace quillon {
namespace Thin {

namespace {

// 20° in radians: one chord per whole step of sweep.
constexpr double kChordStep = 0.3490658503988659;
constexpr double kMaxChords = 18.0;  // mutate: off (a sweep never passes a turn: 18 steps)

Vector2 Turned(const Vector2& v, const Rotate2& r) {
    return {v.x * r.cos - v.y * r.sin, v.x * r.sin + v.y * r.cos};
}

}  // namespace

bool Graph::GetArc(int edge, Arc2& arc) const {
    if (!HasEdge(edge)) return false;
    const Edge& e = edges[Index(edge)];
    if (!e.arc) return false;
    arc.setAOB(getVertex(e.begin), e.centre, getVertex(e.end), e.clockwise != 0);
    return true;
}

BoundRect2 Graph::GetBoundRect() const {
    BoundRect2 box;
    for (int i = 0; i < ECount(); ++i) {
        Arc2 a;
        if (GetArc(i, a)) {
            box.arc(a.circle.center, a.circle.radius, a.start, a.sweep);
        } else {
            const Edge& e = edges[Index(i)];
            box.point(getVertex(e.begin));
            box.point(getVertex(e.end));
        }
    }
    return box;
}

void Graph::Approximate() {
    if (!GetBoundRect().is_valid()) return;
    // The list grows while it is walked: chords appended here are visited too (they are straight
    // and skipped), so the bound is read anew on every step and edges are reached by index.
    for (std::size_t i = 0; i < edges.size(); ++i) {
        Arc2 a;
        if (!GetArc(static_cast<int>(i), a)) continue;
        edges[i].arc = false;
        const int n =
            std::max(1, static_cast<int>(std::min(kMaxChords, std::fabs(a.sweep) / kChordStep)));
        if (n == 1) continue;  // the chord between the arc's own ends
        const Point2 centre = a.circle.center;
        const Rotate2 step(a.sweep / n);
        const int formerEnd = edges[i].end;
        Vector2 v = getVertex(edges[i].begin) - centre;
        int previous = -1;
        for (int k = 0; k < n; ++k) {
            v = Turned(v, step);
            int m = formerEnd;
            if (k < n - 1) {
                vertices.Add(centre + v);
                m = VCount() - 1;
            }
            if (k == 0) {
                edges[i].end = m;
            } else {
                Edge chord = edges[i];
                chord.begin = previous;
                chord.end = m;
                edges.Add(chord);
            }
            previous = m;
        }
    }
}

}  // namespace Thin
}  // namespace quillon
