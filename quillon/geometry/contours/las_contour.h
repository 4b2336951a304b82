// A bounded face of the solver's arrangement, or a merge of such faces: its elements in walk order
// and the node each one is left from, and its state (1 when it belongs to the result of the
// current boolean operation). It points into the solver's graph and owns nothing.
#pragma once

#include <vector>

#include "quillon/geometry/plane/la_contour.h"

namespace quillon {

class LAS_Solver;
class LAS_Element;
class LAS_NodeInfo;

class LAS_Contour {
public:
    explicit LAS_Contour(LAS_Solver* owner);

    void AddEdge(LAS_NodeInfo* start, LAS_Element* e);
    int GetCount() const { return static_cast<int>(elements.size()); }
    LAS_Element* GetElement(int i) const { return elements[static_cast<std::size_t>(i)]; }
    LAS_NodeInfo* GetStartNode(int i) const { return nodes[static_cast<std::size_t>(i)]; }
    int GetState() const { return state; }
    void SetState(int s) { state = s; }
    LAS_Solver* GetSolver() const { return solver; }

    // The face as a line-arc contour: one edge per element from its start node (arcs with the
    // sweep seen from there), then the zero-length closing edge the solver's contours carry.
    LAContour GetContour() const;

    // True when the two share at least one element.
    bool IsNeighbour(const LAS_Contour* other) const;
    // Position of e in this contour, or -1.
    int IsEdgeInContour(const LAS_Element* e) const;

    // The outline of the union of two neighbouring faces, dropping the elements they share: a new
    // contour owned by the caller, or null when they share nothing or no walk gives an outline
    // holding both.
    LAS_Contour* Merge(LAS_Contour* other);
    // The walk that starts along this contour's element `first` and changes to the other contour
    // wherever the next element is shared; null when it breaks off.
    LAS_Contour* MergeFromNode(LAS_Contour* other, int first);
    // Both merged contours lie inside `sum` (relation 0).
    bool IsValidSum(LAS_Contour* sum, LAS_Contour* other);

private:
    // MergeFromNode with the elements the two share given (sorted by address).
    LAS_Contour* MergeWalk(LAS_Contour* other, int first,
                           const std::vector<const LAS_Element*>& sharedList);

    LAS_Solver* solver;
    std::vector<LAS_Element*> elements;
    std::vector<LAS_NodeInfo*> nodes;
    int state = 0;
};

}  // namespace quillon
