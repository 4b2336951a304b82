// The wall graph of a thin-walled section: mid-line vertices and the straight or circular walls
// between them.
#pragma once

#include <cstdint>

#include "quillon/geometry/plane/plane_types.h"
#include "quillon/sections/thin_graph_base.h"

namespace quillon {
namespace Thin {

// One wall: a straight segment or a circular arc from vertex `begin` to vertex `end`.
struct Edge {
    std::int32_t begin = 0;
    std::int32_t end = 0;
    bool arc = false;  // a circular arc about `centre`
    Point2 centre;     // arc centre; not used by a straight wall
    // 1 when the arc runs clockwise from begin to end (negative sweep), else 0.
    std::int32_t clockwise = 0;
    // Wall thickness: a straight wall's area is its length times this. Conversion leaves it at
    // 0; a converter fills it in SetEdgeAttrib.
    double thickness = 0.0;
};

class Graph : public quillon::Graph<Point2, Edge> {
public:
    // The arc of an arc wall: centre, begin vertex, end vertex and the turning sense, the long
    // way round when the sense asks for it. False (arc untouched) for a straight wall or an
    // index outside the list.
    bool GetArc(int edge, Arc2& arc) const;
    // Both ends of every straight wall and the full extent of every arc (ends and the quadrant
    // points it passes). Invalid for a graph without edges.
    BoundRect2 GetBoundRect() const;
    // Replaces every arc by straight chords, one per whole 20° of sweep (at least 1, at most 18).
    // The arc's own edge becomes the first chord, the inner chord points are appended to the
    // vertices and the further chords (copies of the edge, thickness included) to the edges, in
    // order along the arc. The chords run from the arc's begin vertex to its end vertex.
    void Approximate();
};

}  // namespace Thin
}  // namespace quillon
