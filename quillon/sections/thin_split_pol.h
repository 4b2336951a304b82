// Conversion of mid-line contours into the wall graph.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "quillon/geometry/contours/las_solver.h"
#include "quillon/geometry/plane/la_contour.h"
#include "quillon/sections/thin_wall_graph.h"

namespace quillon {

// A mid-line contour with the per-wall values that the edges built from it are meant to receive
// (for example the wall thickness).
class LAContourThin : public LAContour {
public:
    using LAContour::LAContour;
    LAContourThin() = default;

    std::int32_t intAttrib = 0;
    double doubleAttrib = 0.0;
};

// Nodes mid-line contours with the contour solver (every crossing and touching point becomes a
// vertex, points within 0.0001 merge) and copies the result into a Thin::Graph. Each contour is
// taken as an OPEN chain: its last edge only supplies the chain's end point. Every conversion
// runs on a fresh solver, so one converter may convert several times.
class LA_SplitPol {
public:
    static constexpr double kEpsilon = 0.0001;

    LA_SplitPol();
    virtual ~LA_SplitPol();
    LA_SplitPol(const LA_SplitPol&) = delete;
    LA_SplitPol& operator=(const LA_SplitPol&) = delete;

    // Called for every edge with the index of the contour chosen for it (see SetAttrib). Does
    // nothing here: derived converters fill the edge's thickness and further data.
    virtual void SetEdgeAttrib(int contourIndex, Thin::Edge& edge);
    // Whether contour `candidate` should replace contour `current` as an edge's source when the
    // edge lies on both. Always true here, so the last contour in the list wins.
    virtual bool compare(int candidate, int current);

    // Split, then SetAttrib. Null entries of the list contribute nothing.
    void Convert(std::vector<LAContour*>& contours, Thin::Graph& graph);
    // The graph is cleared first; afterwards vertex i is a solver node and edge i solver element
    // i, with the vertices that no edge ends at removed (arc centres are stored as points).
    void Split(std::vector<LAContour*>& contours, Thin::Graph& graph);
    // For every edge, the contours on which it lies entirely (within the solver's epsilon, the
    // contour taken as closed) are weighed with `compare`, and SetEdgeAttrib receives the winner.
    // Expects the graph that Split made from the same list.
    void SetAttrib(std::vector<LAContour*>& contours, Thin::Graph& graph);

protected:
    // The solver of the latest Split; derived converters may query its elements.
    LAS_Solver& Solver() { return *solver; }

private:
    std::unique_ptr<LAS_Solver> solver;
};

// A converter over a list of thickness-carrying contours, which stays the caller's and must
// outlive the converter.
class LA_SplitPolEx : public LA_SplitPol {
public:
    explicit LA_SplitPolEx(std::vector<LAContourThin*>& contours);

    // Compares contour `candidate`'s double attribute with its own, so it is always false and the
    // first contour on which an edge lies wins. Kept deliberately: converted models depend on
    // which contour an edge takes its attributes from.
    bool compare(int candidate, int current) override;

    using LA_SplitPol::Convert;
    // LA_SplitPol::Convert with the list, in the same order.
    void Convert(Thin::Graph& graph);

protected:
    std::vector<LAContourThin*>& thinContours;
};

}  // namespace quillon
