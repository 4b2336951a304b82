// Validation of structured contours: whether a complex contour is a tree on which the solver, the
// text notation and the section integrals agree, and if not, every problem found and where.
//
// A complex contour is valid for a distance tolerance eps (the solver's epsilon; a negative value
// asks for the default 1e-10) when:
//   - every coordinate, arc centre and sweep is a finite number, and no coordinate exceeds
//     kMaxContourCoordinate in magnitude (beyond it, areas and second moments overflow);
//   - every contour encloses area: it has an edge longer than eps and its edges do not all lie on
//     one line;
//   - every arc ends where the next edge starts: the start turned about the centre by the sweep
//     lies within eps of the next edge's start; no sweep exceeds a full turn;
//   - no contour crosses itself, runs along itself or folds back on itself. A contour may pass
//     twice through one vertex if it does not cross itself there (two lobes touching at a point);
//     a vertex touching another edge of the same contour counts as a crossing (the solver would
//     split that edge there);
//   - every child of a solid is a hole node (ProEmptyContour, written "H") and lies inside its
//     solid's outline; it may touch the outline or run along it;
//   - the holes of one solid do not overlap; they may touch;
//   - no two solids overlap: no part of one lies inside another's outline and outside that one's
//     holes. Solids may touch, and an island standing in another solid's hole is its own solid.
// "Within eps" is the solver's own notion of contact (Solver2d), so a shape the solver made at eps
// passes at eps. An arc that misses the next start is checked as if a straight edge closed the
// gap, as the section integrals read it. A contour with unreadable numbers (not finite, too large)
// or no area takes no part in the checks between contours.
//
// Reports: one problem per contour and kind (the first place found), and one per pair of contours
// or solids for overlaps; each names the contour by its path in the tree and gives a point where
// the problem shows. Problems come sorted by path, then kind.
//
// Speed: the edges of every contour go into one grid over their boxes, and contacts are looked for
// only between edges that share a cell. Containment is decided by winding numbers at one point per
// contour, and at one point per stretch of a contour between the places where it touches another;
// a point asks only the contours whose boxes hold it, and each of those looks only at its edges in
// a horizontal band about the point. Time grows near-linearly with the number of edges for
// ordinary shapes (a plate with 160 000 holes, 600 000 edges: under a second); shapes whose edge
// boxes all overlap, such as a zigzag of long thin teeth, or thousands of contours nested in one
// another, cost more. Nothing throws except allocation.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "quillon/geometry/contours/pro_contour.h"
#include "quillon/geometry/plane/plane_types.h"

namespace quillon {

// Largest coordinate magnitude a valid contour may hold: its fourth power, the order of a second
// moment, stays far from overflow.
inline constexpr double kMaxContourCoordinate = 1e75;

enum class ContourProblemKind {
    NotFinite,      // a coordinate, centre or sweep is not a finite number
    Overflow,       // a coordinate beyond kMaxContourCoordinate
    NotClosed,      // no edge longer than eps, or all edges on one line: the contour closes on
                    // no area
    ArcMismatch,    // an arc's end misses the next edge's start by more than eps
    SelfCrossing,   // the contour crosses, overlaps or folds back on itself (or an arc sweeps
                    // beyond a full turn)
    NotAHole,       // a child of a solid that is not a hole node
    HoleOutside,    // a hole reaches outside its solid's outline
    HolesOverlap,   // two holes of one solid overlap
    SolidsOverlap,  // two solids overlap
};

// Where a contour stands in its complex contour.
struct ContourPath {
    long solid = -1;  // index among the complex contour's solids
    long hole = -1;   // index among that solid's children; -1 for the solid's own outline

    bool operator==(const ContourPath&) const = default;
};

struct ContourProblem {
    ContourProblemKind kind = ContourProblemKind::NotFinite;
    ContourPath path;
    // The second contour of a pair: the other hole (HolesOverlap), the other solid's outline
    // (SolidsOverlap), the solid's outline (HoleOutside); unset (-1, -1) otherwise.
    ContourPath other;
    long edge = -1;  // index of the edge of `path` where it shows; -1 when not tied to one
    Point2 where;    // a point where it shows (for NotFinite, the faulty edge's start as stored)
};

struct ContourValidation {
    std::vector<ContourProblem> problems;

    bool IsValid() const { return problems.empty(); }
    std::size_t Count(ContourProblemKind kind) const;
};

// Checks the tree against the rules above and returns every problem found.
ContourValidation ValidateComplexContour(const ProComplexContour& shape, double eps);

// A short English phrase for the kind, e.g. "the hole lies outside its solid".
const char* ContourProblemText(ContourProblemKind kind);
// One line for users: where (solids and holes numbered from 1), what, and the point, e.g.
// "solid 1, hole 2: the hole lies outside its solid, at (25, 20)".
std::string DescribeProblem(const ContourProblem& problem);

}  // namespace quillon
