// Containment trees of the contour solver. LAS_CSTree nests the solver's base contours (faces with
// a state) and turns them into a complex contour; LAS_ContSTree nests plain closed contours for
// LAS_Solver::Set. A node holds a contour (none at the root), owns its children and knows its
// parent; a contour goes under the first child that holds it (relation 0) and takes under itself
// the children it holds.
#pragma once

#include <vector>

#include "quillon/geometry/contours/las_tree_node.h"
#include "quillon/geometry/contours/pro_contour.h"
#include "quillon/geometry/contours/solver2d.h"
#include "quillon/geometry/plane/la_contour.h"

namespace quillon {

class LAS_Solver;
class LAS_Contour;

class LAS_CSNode : public LAS_TreeNode<LAS_CSNode> {
public:
    LAS_CSNode(LAS_Contour* c, LAS_Solver* owner);

    LAS_Contour* GetContour() const { return contour; }
    const LAContour& GetGeometry() const { return geometry; }
    int GetState() const;

    void SortAdd(LAS_Contour* c);
    // Removes nodes whose state adds nothing: state 0 right under the root, the parent's own state
    // below it. A removed node's children go to its parent (appended); passes repeat until nothing
    // is removed, then the remaining children are validated in turn.
    void Validate();
    // State 1 nodes become solids of `complex`, state 0 nodes holes of the current solid.
    void BuildComplexContour(ProContourFactory* factory, ProComplexContour* complex,
                             ProSolidContour* solid) const;

private:
    // The outline prepared for the tests in which it is the first (outer) contour, made on the
    // first such test and kept: a node is asked again for every contour sorted after it.
    Solver2d::PreparedContour& Prepared(const Solver2d& rel);

    LAS_Contour* contour;  // null at the root; not owned
    LAS_Solver* solver;
    LAContour geometry;  // the contour's outline, made once for the relation tests
    Solver2d::PreparedContour prepared;
    bool preparedMade = false;
};

class LAS_CSTree {
public:
    explicit LAS_CSTree(LAS_Solver* owner) : root(nullptr, owner), solver(owner) {}
    void Sort(const std::vector<LAS_Contour*>& contours);
    ProComplexContour* BuildComplexContour(ProContourFactory* factory) const;
    const LAS_CSNode& GetRoot() const { return root; }
    LAS_Solver* GetSolver() const { return solver; }

private:
    LAS_CSNode root;
    LAS_Solver* solver;
};

class LAS_ContSNode : public LAS_TreeNode<LAS_ContSNode> {
public:
    LAS_ContSNode(const LAContour* c, LAS_Solver* owner) : contour(c), solver(owner) {}

    // As LAS_CSNode::SortAdd; 0 when any relation met on the way was other than 0, 1 or 3
    // (crossing, or partly on the boundary). The contour is placed either way.
    int SortAdd(const LAContour* c);
    // Levels alternate: solids at depth 1, 3, ...; holes at depth 2, 4, ...
    void BuildComplexContour(ProContourFactory* factory, ProComplexContour* complex,
                             ProSolidContour* solid, int depth) const;

private:
    const LAContour* contour;  // null at the root; not owned
    LAS_Solver* solver;
};

class LAS_ContSTree {
public:
    // `strict` records whether the caller refuses crossing contours; Set decides on it.
    LAS_ContSTree(LAS_Solver* owner, bool strictSort)
        : root(nullptr, owner), solver(owner), strict(strictSort) {}
    // Adds the contours in order while every addition succeeds; stops after the first failure.
    bool Sort(const std::vector<ProClosedContour*>& contours);
    ProComplexContour* BuildComplexContour(ProContourFactory* factory) const;
    bool IsStrict() const { return strict; }
    const LAS_ContSNode& GetRoot() const { return root; }
    LAS_Solver* GetSolver() const { return solver; }

private:
    LAS_ContSNode root;
    LAS_Solver* solver;
    bool strict;
};

}  // namespace quillon
