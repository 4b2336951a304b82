#include "quillon/sections/thin_split_pol.h"

#include <algorithm>
#include <cstddef>

namespace quillon {

namespace {

// Erases the vertices that no edge begins or ends at, from the last to the first, moving the
// higher edge indices down. Arc centres are points of their own, so nothing else refers to a
// vertex.
void RemoveUnusedVertices(Thin::Graph& graph) {
    const int count = graph.VCount();
    std::vector<char> used(static_cast<std::size_t>(count), 0);
    for (const Thin::Edge& e : graph.edges) {
        // Graphs built here never name a missing vertex: the range checks are guards.
        if (e.begin >= 0 && e.begin < count)  // mutate: off (guard)
            used[static_cast<std::size_t>(e.begin)] = 1;
        if (e.end >= 0 && e.end < count)  // mutate: off (guard)
            used[static_cast<std::size_t>(e.end)] = 1;
    }
    // One compacting pass gives what erasing vertex by vertex gives: every index moves down by
    // the number of erased vertices below it.
    std::vector<int> shift(static_cast<std::size_t>(count), 0);
    int erased = 0;
    int kept = 0;
    for (int k = 0; k < count; ++k) {
        const std::size_t uk = static_cast<std::size_t>(k);
        shift[uk] = erased;
        if (used[uk] == 0) {
            ++erased;
            continue;
        }
        graph.vertices[static_cast<std::size_t>(kept++)] = graph.vertices[uk];
    }
    graph.vertices.resize(static_cast<std::size_t>(kept));
    for (Thin::Edge& e : graph.edges) {
        if (e.begin >= 0 && e.begin < count) e.begin -= shift[static_cast<std::size_t>(e.begin)];
        if (e.end >= 0 && e.end < count) e.end -= shift[static_cast<std::size_t>(e.end)];
    }
}

// Whether p lies within `grow` of the rectangle.
bool Near(const BoundRect2& box, const Point2& p, double grow) {
    const Point2& lb = box.get_LB();
    const Point2& rt = box.get_RT();
    return p.x >= lb.x - grow && p.x <= rt.x + grow && p.y >= lb.y - grow && p.y <= rt.y + grow;
}

}  // namespace

LA_SplitPol::LA_SplitPol() : solver(std::make_unique<LAS_Solver>(kEpsilon)) {}

LA_SplitPol::~LA_SplitPol() = default;

void LA_SplitPol::SetEdgeAttrib(int /*contourIndex*/, Thin::Edge& /*edge*/) {}

bool LA_SplitPol::compare(int /*candidate*/, int /*current*/) { return true; }

void LA_SplitPol::Convert(std::vector<LAContour*>& contours, Thin::Graph& graph) {
    Split(contours, graph);
    SetAttrib(contours, graph);
}

void LA_SplitPol::Split(std::vector<LAContour*>& contours, Thin::Graph& graph) {
    solver = std::make_unique<LAS_Solver>(kEpsilon);
    graph.Clear();
    solver->SplitLaContours(contours);

    const int nodeCount = solver->GetNodeCount();
    graph.vertices.reserve(static_cast<std::size_t>(nodeCount));
    for (int i = 0; i < nodeCount; ++i) graph.vertices.Add(solver->GetPoint(i));

    const int elementCount = solver->GetElementCount();
    graph.edges.reserve(static_cast<std::size_t>(elementCount));
    for (int i = 0; i < elementCount; ++i) {
        const LAS_Element* element = solver->GetElement(i);
        Thin::Edge edge;
        edge.begin = element->GetBegin();
        edge.end = element->GetEnd();
        if (const LAS_Arc* arc = solver->GetArc(i)) {
            edge.arc = true;
            edge.centre = arc->GetCenterPoint();
            edge.clockwise = arc->GetSweep() < 0.0 ? 1 : 0;
        }
        graph.edges.Add(edge);
    }
    RemoveUnusedVertices(graph);
}

void LA_SplitPol::SetAttrib(std::vector<LAContour*>& contours, Thin::Graph& graph) {
    const Solver2d& relations = solver->GetSolver2D();
    const double eps = relations.GetEpsilon();
    // An element on a contour has both ends within epsilon of the contour's edges, hence of its
    // bounds: contours whose bounds are too far away are passed over without the exact test.
    std::vector<BoundRect2> bounds(contours.size());
    for (std::size_t k = 0; k < contours.size(); ++k)
        if (contours[k] != nullptr) contours[k]->get_bound_rect(bounds[k]);

    const int count = std::min(solver->GetElementCount(), graph.ECount());
    for (int i = 0; i < count; ++i) {
        const LAS_Element* element = solver->GetElement(i);
        const Point2 b = element->GetBeginPoint();
        const Point2 e = element->GetEndPoint();
        const LAS_Line* line = solver->GetLine(i);
        const LAS_Arc* arc = solver->GetArc(i);
        Sector2 s;
        Arc2 a;
        if (line != nullptr) line->GetLine(s);
        if (arc != nullptr) arc->GetArc(a);

        int best = -1;
        for (std::size_t k = 0; k < contours.size(); ++k) {
            if (!bounds[k].is_valid() || !Near(bounds[k], b, 2.0 * eps) ||
                !Near(bounds[k], e, 2.0 * eps))
                continue;
            const bool on = line != nullptr
                                ? relations.IsLineOnContour(s, contours[k])
                                : arc != nullptr && relations.IsArcOnContour(a, contours[k]);
            if (!on) continue;
            const int candidate = static_cast<int>(k);
            if (best == -1 || compare(candidate, best)) best = candidate;
        }
        if (best >= 0) SetEdgeAttrib(best, graph.edges[static_cast<std::size_t>(i)]);
    }
}

LA_SplitPolEx::LA_SplitPolEx(std::vector<LAContourThin*>& contours) : thinContours(contours) {}

bool LA_SplitPolEx::compare(int candidate, int /*current*/) {
    if (candidate < 0 || static_cast<std::size_t>(candidate) >= thinContours.size())
        return false;  // mutate: off (Convert passes only listed contours)
    const LAContourThin* c = thinContours[static_cast<std::size_t>(candidate)];
    if (c == nullptr) return false;  // mutate: off (listed contours are never null)
    // The candidate against itself, never against `current`: see the header.
    return c->doubleAttrib < c->doubleAttrib;
}

void LA_SplitPolEx::Convert(Thin::Graph& graph) {
    std::vector<LAContour*> contours(thinContours.begin(), thinContours.end());
    LA_SplitPol::Convert(contours, graph);
}

}  // namespace quillon
