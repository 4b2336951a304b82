// The state of one run of ValidateComplexContour, shared by its two stages: the checks of each
// contour on its own (contour_validate.cpp) and the checks between contours
// (contour_validate_relations.cpp). Not a public interface.
#pragma once

#include <cstdint>
#include <set>
#include <tuple>
#include <unordered_set>
#include <utility>
#include <vector>

#include "quillon/geometry/contours/contour_edge_index.h"
#include "quillon/geometry/contours/contour_validate.h"
#include "quillon/geometry/contours/solver2d.h"

namespace quillon::contour_check {

using contour_index::Curve;

struct ContourRec {
    const LAContour* geometry = nullptr;
    ContourPath path;
    int solid = -1;  // index into Validator::solids
    bool hole = false;
    bool usable = false;        // its curves are in the grid and it takes part in every check
    int first = 0, count = 0;   // its curves: curves[first, first + count), in edge order
    std::vector<int> longs;     // its curves longer than eps, in order
    std::vector<double> chain;  // per long curve: length of the short curves up to the next one
    Point2 sample;              // the middle of its first long curve
    std::vector<std::pair<int, int>> windings;  // other contours' windings about the sample
};

struct SolidRec {
    int outline = -1;  // contour index
    std::vector<int> holes;
};

// A contact of one of a contour's curves with a curve of another contour.
struct ContactRef {
    int curve;
    int other;
    Point2 p;
};

// How the pieces of a contour lie with respect to a target.
struct Flags {
    bool in = false, out = false, on = false;
    Point2 inAt, outAt;
    int outCurve = -1;
    bool AllOn() const { return on && !in && !out; }
};

// A target of classification: one contour, or the region of a solid (outline minus holes).
struct Target {
    int contour = -1;
    int solid = -1;
};

class Validator {
public:
    Validator(const ProComplexContour& shape, double eps);
    ContourValidation Run();

private:
    // Stage 1: each contour alone.
    void Collect(const ProComplexContour& shape);
    bool CheckNumbers(int ci);
    void BuildCurves(int ci, bool commit);
    void CheckSelfPair(int u, int v);
    void CheckVisits(int ci);
    void CheckPinches();
    // Stage 2: between contours.
    void RecordContacts(int u, int v);
    void Relations();
    void CheckHoles();
    void CheckHolePairs();
    void CheckSolidPairs();
    Flags Classify(int ci, const Target& t);
    void ClassifyPoint(const Point2& p, int curve, const Target& t, Flags& f);
    bool InTarget(int contour, const Target& t) const;
    bool Inside(const std::vector<std::pair<int, int>>& w, const Target& t) const;
    bool Touching(int a, int b) const;
    // The contours winding about p, as (contour, winding) sorted by contour.
    void WindingsAt(const Point2& p, std::vector<std::pair<int, int>>& out);

    void Report(ContourProblemKind kind, int contour, long edge, const Point2& where,
                int other = -1);

    double eps;
    Solver2d rel;
    std::vector<ContourRec> contours;
    std::vector<SolidRec> solids;
    std::vector<Curve> curves;
    std::vector<int> longPos;  // per curve: its position among its contour's long curves, or -1
    std::vector<std::vector<ContactRef>> contactsOf;  // per contour
    std::unordered_set<std::uint64_t> touching;       // contour pairs in contact
    std::vector<std::pair<int, int>> touchPairs;
    std::unordered_set<std::uint64_t> solidTouch;  // (contour, solid) pairs in contact
    std::set<std::tuple<int, int, int>> pinches;   // (contour, visit, visit)
    contour_index::CurveGrid* grid = nullptr;
    std::vector<contour_index::ChainWinding> chains;  // per contour
    std::vector<contour_index::Box> contourBoxes;     // per contour, empty when not usable
    contour_index::BoxIndex* boxes = nullptr;
    std::vector<int> holding;

    std::vector<ContourProblem> problems;
    std::set<std::pair<int, int>> reportedSingle;      // (contour, kind)
    std::set<std::tuple<int, int, int>> reportedPair;  // (kind, contour, contour)
    std::vector<Point2> pts;
    std::vector<int> near;
    std::vector<std::pair<int, int>> wind;
};

}  // namespace quillon::contour_check
