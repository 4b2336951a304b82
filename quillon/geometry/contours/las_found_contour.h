// The trace of one walk through the solver's graph: the elements walked and the node each one was
// left from. It owns nothing; the builders hand new objects to the caller.
#pragma once

#include <cstdint>
#include <vector>

#include "quillon/geometry/contours/pro_contour.h"
#include "quillon/geometry/plane/la_contour.h"

namespace quillon {

class LAS_Solver;
class LAS_Element;
class LAS_NodeInfo;
class LAS_Contour;

class LAS_FoundContour {
public:
    LAS_FoundContour(ProContourFactory* factory, LAS_Solver* owner);

    // Appends e, left from `start`; returns 1.
    int AddEdge(LAS_NodeInfo* start, LAS_Element* e);
    // True when the walk's first start node is `node` (false for an empty walk).
    bool IsBeginNode(LAS_NodeInfo* node) const;
    bool IsNodeInContour(LAS_NodeInfo* node) const;
    int GetCount() const { return static_cast<int>(elements.size()); }
    LAS_Element* GetElement(int i) const { return elements[static_cast<std::size_t>(i)]; }
    LAS_NodeInfo* GetStartNode(int i) const { return nodes[static_cast<std::size_t>(i)]; }

    // Sums of the inner angles on the right-hand and on the left-hand side of the closed walk,
    // each arc counting as a vertex at its middle point: (n - 2)π on the right for a bounded face
    // traced clockwise, (n + 2)π for the outer face.
    void ComputeAngles(double& right, double& left) const;
    // Exact signed area enclosed by the closed walk (arcs as true arcs), positive when it runs
    // counter-clockwise.
    double SignedArea() const;
    // The angle test: true when the walk goes round the unbounded outer face (counter-clockwise),
    // i.e. right > left. It is decided by the sign of the exact area, which gives the angle sums'
    // answer wherever the polygon through the nodes and arc middles is simple, and stays right
    // where a strongly curved arc makes that polygon cross itself (the sums then tie).
    bool IsOuterWalk() const { return SignedArea() > 0.0; }

    // A new closed contour of the walk (null when checkAngles is set and the walk goes round the
    // outer face): one edge per element from its start node, arcs with the sweep seen from that
    // node, and a last straight edge from the final node, so a closed walk repeats its first point
    // as a zero-length closing edge (kept: stored contours and readers expect it). Every element
    // is counted and its half-edge marked used. Made by the factory when it is an
    // LAS_ProContourFactory, else as an LAS_ProClosedContour.
    ProClosedContour* CreateClosedContour(int checkAngles);
    // The same edges as a new LAContour, without the angle test (open polylines).
    LAContour* CreateContour();
    // A new LAS_Contour of the walk for the solver's base list, or null after the angle test.
    LAS_Contour* CreateLASContour();

    std::uint64_t GetWalkId() const { return walkId; }

private:
    void MarkUsed();
    void FillEdges(LAContour& c) const;

    LAS_Solver* solver;
    ProContourFactory* factory;
    std::vector<LAS_Element*> elements;
    std::vector<LAS_NodeInfo*> nodes;
    std::uint64_t walkId;
};

}  // namespace quillon
