// LAS_Solver, the driver of the contour solver: it owns the graph (nodes, elements, base
// contours), fills it, splits crossings, walks the faces and builds the results. The module's
// overview and conventions open las_solver.h, the header users include.
//
// Sources by stage: las_driver_fill.cpp (filling, indexes, splitting), las_driver_faces.cpp
// (walking, states, merging, containment trees, booleans), las_driver_cut.cpp (cuts by a line).
#pragma once

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include "quillon/geometry/contours/las_box_grid.h"
#include "quillon/geometry/contours/las_contour.h"
#include "quillon/geometry/contours/las_element.h"
#include "quillon/geometry/contours/las_node_info.h"
#include "quillon/geometry/contours/pro_contour.h"
#include "quillon/geometry/contours/solver2d.h"
#include "quillon/geometry/plane/la_contour.h"
#include "quillon/geometry/plane/plane_types.h"

namespace quillon {

class LAS_Solver {
public:
    enum Operation { Union = 0, Difference = 1, Intersection = 2 };

    explicit LAS_Solver(double epsilon);
    virtual ~LAS_Solver();
    LAS_Solver(const LAS_Solver&) = delete;
    LAS_Solver& operator=(const LAS_Solver&) = delete;

    Solver2d& GetSolver2D() { return solver2d; }
    const Solver2d& GetSolver2D() const { return solver2d; }

    // ---- Filling -------------------------------------------------------------------------
    // Index of the first node within epsilon of p, else of a new node (-1 for a point that is not
    // finite).
    int AddPoint(const Point2& p);
    int AddLine(const Point2& a, const Point2& b);
    int AddLine(const Sector2& s);
    // A sweep within epsilon of a full turn is entered as two half arcs meeting at a new middle
    // node; the second half's index is returned. A zero sweep, one beyond a full turn, or a centre
    // merging with an end is refused (-1).
    int AddArc(const Point2& begin, const Point2& end, const Point2& centre, double sweep);
    int AddArc(const Arc2& a);
    // Every edge of the contour; with `closed` zero the last edge only gives the end point of an
    // open chain. A contour of one edge adds something only when that edge is an arc.
    void AddLAContour(const LAContour* c, int closed);
    void AddLAContours(const std::vector<LAContour*>& list, int closed);
    // For each solid: its holes, then its own outline.
    void AddComplexContour(const ProComplexContour* c);
    // Disconnects the element, removes it from the list (later indices move down) and destroys it.
    void DeleteElement(LAS_Element* e);

    // ---- Cutting by a horizontal or vertical line (fixed tolerance 1e-8) --------------------
    // The part of the segment with y >= y0; ends on the cut line and crossing points go to `cut`
    // in order along the line. Returns the element index or -1 when nothing is added.
    int AddLineOnlyTop(const Point2& a, const Point2& b, double y0, std::vector<Point2>& cut);
    int AddArcOnlyTop(const Point2& begin, const Point2& end, const Point2& centre, double sweep,
                      double y0, std::vector<Point2>& cut);
    void AddLAContourOnlyTop(const LAContour* c, double y0, std::vector<Point2>& cut);
    void AddSolidContourOnlyTop(const ProSolidContour* s, double y0, std::vector<Point2>& cut);
    // The part with x >= x0, cut by the vertical line x = x0.
    int AddLineOnlyRight(const Point2& a, const Point2& b, double x0, std::vector<Point2>& cut);
    int AddArcOnlyRight(const Point2& begin, const Point2& end, const Point2& centre, double sweep,
                        double x0, std::vector<Point2>& cut);
    void AddLAContourOnlyRight(const LAContour* c, double x0, std::vector<Point2>& cut);
    void AddSolidContourOnlyRight(const ProSolidContour* s, double x0, std::vector<Point2>& cut);
    // Inserts p before the first point whose x (byX) or y is greater than p's.
    static void AddPtToSortedVector(std::vector<Point2>& list, const Point2& p, bool byX);

    // ---- Lookups --------------------------------------------------------------------------
    int GetNodeCount() const { return static_cast<int>(nodes.size()); }
    int GetElementCount() const { return static_cast<int>(elements.size()); }
    int GetBaseContourCount() const { return static_cast<int>(baseContours.size()); }
    Point2 GetPoint(int i) const;  // (0, 0) out of range
    LAS_NodeInfo* GetNode(int i) const;
    LAS_Element* GetElement(int i) const;
    LAS_Line* GetLine(int i) const;  // null when that element is an arc
    LAS_Arc* GetArc(int i) const;    // null when that element is a line
    LAS_Contour* GetBaseContour(int i) const;
    int GetElementIndx(const LAS_Element* e) const;
    int GetNodeIndex(const LAS_NodeInfo* n) const;
    // Nodes in top-left order (valid after SortNodesFromTopLeft).
    const std::vector<LAS_NodeInfo*>& GetSortedNodes() const { return sortedNodes; }

    // ---- Processing -----------------------------------------------------------------------
    // Splits every pair of elements that cross or touch away from their shared ends, earliest
    // pair in list order first, until none is left.
    void SplitEdges();
    // Splits element i at its first contact with a later element: 1 when none needed a split,
    // 0 after a split (index i then holds another element).
    virtual int SplitEdge(int i);
    void SplitLaContours(const std::vector<LAContour*>& list);
    // Erases nodes that no element begins or ends at; meant for line-only graphs (arc centre
    // indices are not adjusted, deliberately).
    void RemoveUnusedPoints();
    // Orders the nodes by increasing x, then increasing y (exact comparisons); equal points keep
    // their creation order.
    virtual void SortNodesFromTopLeft();
    void SolveBaseLASContours();
    void SetBaseContourState(const ProComplexContour* a, const ProComplexContour* b, Operation op);
    void MergeBaseContours();
    int MergeBaseContour(int i);
    ProComplexContour* ComplexContourFromBase(ProContourFactory* factory);
    // 1 when the contour lies inside a solid of c (relation 0) and not inside one of that
    // solid's holes (checked first); 0 otherwise or for null c.
    int IsContourInComplexContour(const LAContour* l, const ProComplexContour* c) const;

    // ---- Results (owned by the caller) ------------------------------------------------------
    // Closed faces of the input (added closed) and of what is in the solver already, as closed
    // contours, and the chains left over as open polylines. Does not split crossings: give
    // crossing input to SplitLaContours first.
    void FindContours(const std::vector<LAContour*>& input, ProContourFactory* factory,
                      std::vector<ProClosedContour*>& closed, std::vector<LAContour*>& polylines);
    ProComplexContour* Solv(const ProComplexContour* a, const ProComplexContour* b, Operation op,
                            ProContourFactory* factory);
    ProComplexContour* Add(const ProComplexContour* a, const ProComplexContour* b,
                           ProContourFactory* factory) {
        return Solv(a, b, Union, factory);
    }
    ProComplexContour* Sub(const ProComplexContour* a, const ProComplexContour* b,
                           ProContourFactory* factory) {
        return Solv(a, b, Difference, factory);
    }
    ProComplexContour* Mul(const ProComplexContour* a, const ProComplexContour* b,
                           ProContourFactory* factory) {
        return Solv(a, b, Intersection, factory);
    }
    // Union of a list: neighbours combined pairwise, level by level (n log n rather than the n^2 of
    // a fold over the growing union), each step on a fresh solver with this epsilon; the region
    // and its tree of solids and holes are those of folding the list from the front, the order of
    // the solids may differ, and so may a pinch (a hole meeting its outline at one point), which
    // comes out as a hole or as an outline passing that point twice as a fold in another order
    // would give it. Empty list: null. One element: that element itself, not a copy.
    ProComplexContour* Add(const std::vector<ProComplexContour*>& list, ProContourFactory* factory);
    // The shape rebuilt with overlaps and crossings resolved.
    ProComplexContour* Normalize(const ProComplexContour* c, ProContourFactory* factory);
    // Nests the contours by containment (levels alternate solid, hole, solid); null when strict
    // and some contours cross or touch along their boundaries. The contours stay the caller's.
    ProComplexContour* Set(const std::vector<ProClosedContour*>& contours,
                           ProContourFactory* factory, bool strict);
    // Takes the contours over (they are destroyed): none gives an empty complex contour, one a
    // single solid, two a solid with a hole or, when disjoint, two solids with the second's
    // first (kept: callers rely on this order), crossing ones null; more go through Set (strict).
    ProComplexContour* ComplexContourFromContours(std::vector<ProClosedContour*> contours,
                                                  ProContourFactory* factory);
    // The part of the solid above y (right of x), as a complex contour.
    ProComplexContour* GetTopPartOfContour(const ProSolidContour* solid, double y,
                                           ProContourFactory* factory);
    ProComplexContour* GetRightPartOfContour(const ProSolidContour* solid, double x,
                                             ProContourFactory* factory);
    // The pieces of the segment inside the complex contour (boundary included), in order from
    // the segment's begin, touching pieces joined. Returns their number.
    int GetSectorsInContour(const ProComplexContour* c, const Sector2& s,
                            std::vector<Sector2>& out);

    // Internal: the next element with the same two end nodes (see elementsByEnds).
    static LAS_Element* NextSameEnds(const LAS_Element* e) { return e->sameEnds; }
    // Internal: walk ids and the base list, used by the graph classes.
    std::uint64_t NextWalkId() { return ++walkCounter; }
    void AddBaseContour(LAS_Contour* c);

protected:
    static bool IsNextTopLeft(const Point2& a, const Point2& b);
    void SolveBaseContours(ProContourFactory* factory, std::vector<ProClosedContour*>& closed,
                           std::vector<LAContour*>& polylines);
    void SolveFreeLines(ProContourFactory* factory, std::vector<ProClosedContour*>& closed,
                        std::vector<LAContour*>& polylines);

    // Hooks that the indexed searches implement; a straightforward version gives the same answers.
    // The first node within epsilon of p, or -1.
    virtual int FindNode(const Point2& p);
    // The first listed element equal to the given line (arc), or null.
    virtual LAS_Element* FindEqualLine(const LAS_Line& l);
    virtual LAS_Element* FindEqualArc(const LAS_Arc& a);
    // Splits E (when p is not one of its ends) and F (when p is not one of its ends) at p,
    // listing the pieces and deleting the split elements. Returns false when nothing was split.
    bool SplitPair(LAS_Element* e, LAS_Element* f, const Point2& p);
    // Replaces the sorted-node list.
    void SetSortedNodes(std::vector<LAS_NodeInfo*> sorted) { sortedNodes = std::move(sorted); }
    std::vector<LAS_NodeInfo*>& SortedNodes() { return sortedNodes; }

private:
    int Enlist(std::unique_ptr<LAS_Element> e);
    bool SplitElementAt(LAS_Element* e, const Point2& p);
    void RegisterNode(int index);
    void ChainByEnds(LAS_Element* e);
    void RebuildIndexes();
    void EnsureElementGrid();
    int AddLineOnlyHalf(const Point2& a, const Point2& b, double level, bool top,
                        std::vector<Point2>& cut);
    int AddArcOnlyHalf(const Point2& begin, const Point2& end, const Point2& centre, double sweep,
                       double level, bool top, std::vector<Point2>& cut);
    void AddLAContourOnlyHalf(const LAContour* c, double level, bool top, std::vector<Point2>& cut);
    ProComplexContour* GetPartOfContour(const ProSolidContour* solid, double level, bool top,
                                        ProContourFactory* factory);

    Solver2d solver2d;
    std::vector<std::unique_ptr<LAS_NodeInfo>> nodes;
    std::vector<std::unique_ptr<LAS_Element>> elements;
    std::vector<LAS_NodeInfo*> sortedNodes;
    std::vector<std::unique_ptr<LAS_Contour>> baseContours;

    // Indexes: nodes by grid cell of size >= epsilon, elements by their nodes, element boxes.
    struct CellHash {
        std::size_t operator()(std::uint64_t k) const { return std::hash<std::uint64_t>()(k); }
    };
    double cellSize = 1.0;
    // Nodes by cell: the last node registered in the cell, and per node the one registered
    // before it in the same cell (-1 ends the chain), so a cell needs no list of its own.
    std::unordered_map<std::uint64_t, int, CellHash> nodeCells;
    std::vector<int> nodeChain;
    // Elements by their two end nodes: the first listed, the rest chained through the elements
    // in list order.
    std::unordered_map<std::uint64_t, LAS_Element*, CellHash> elementsByEnds;
    las_index::BoxGrid elementGrid;
    std::vector<LAS_Element*> gridIds;  // element by grid id (null once deleted)
    std::uint64_t serialCounter = 0;
    std::uint64_t walkCounter = 0;
    std::uint64_t splitBudget = 0;
    std::vector<int> splitIds;
    std::vector<LAS_Element*> splitLater;
    std::vector<Point2> splitPoints;

    // Input contours prepared once for the many relation tests of SetBaseContourState.
    mutable std::unordered_map<const LAContour*, Solver2d::PreparedContour> prepared;
    mutable bool keepPrepared = false;
    // Whether the prepared contour lies inside `outer` (relation 0).
    bool Inside(const LAContour* outer, const Solver2d::PreparedContour& inner) const;

    static std::uint64_t CellKey(std::int64_t cx, std::int64_t cy);
    static std::uint64_t EndsKey(int a, int b);
};

}  // namespace quillon
