// Healing of structured contours: every arc made to end where the next edge starts, so that the
// solver, the validation and the section integrals all see one closed outline.
//
// An arc is stored by start, centre and sweep, and its end is computed; the next edge's start is
// stored on its own. Text written with six decimals (the writers' default) rounds every number,
// so an arc read back misses the next start by up to a few 1e-6, and a solver run with a smaller
// epsilon then sees a gap. HealLAContour, for a distance tolerance eps (negative: 1e-10) and a
// healing tolerance `tolerance` chosen by the caller, treats each arc edge whose end misses the
// next start by more than eps:
//   - a miss of at most `tolerance`: the arc is rebuilt through its stored start and the next
//     start. Its centre moves to the nearest point of the perpendicular bisector of the two, and
//     its sweep becomes the turn between them, in the stored sense and nearest the stored value.
//     When the two points coincide within eps, the arc becomes a full turn if it swept more than
//     half a turn, else a straight edge (its sweep was rounding). A rebuilt arc whose middle moves
//     by more than `tolerance`, or whose sense would change, is not rebuilt;
//   - otherwise: a straight edge from the arc's end to the next start is inserted after the arc,
//     closing the gap as the section integrals close it. The contour is then closed explicitly.
// Straight edges, arcs that end within eps of the next start, and edges with numbers that are not
// finite are left as they are. The result ends every arc within eps of the next start.
// Nothing throws except allocation.
#pragma once

#include "quillon/geometry/contours/pro_contour.h"
#include "quillon/geometry/plane/la_contour.h"

namespace quillon {

// Returns the number of arcs rebuilt plus straight edges inserted (0: the contour was consistent).
int HealLAContour(LAContour& contour, double eps, double tolerance);

// Heals every solid outline and every hole; returns the total of HealLAContour.
int HealComplexContour(ProComplexContour& shape, double eps, double tolerance);

// A healing tolerance that covers the rounding of text written with six decimals: 3e-6, plus
// 2e-6 for each unit of the largest arc radius (angles are rounded to 1e-6 rad), plus the
// spacing of doubles at the largest coordinate. 3e-6 for a shape without arcs.
double TextRoundingTolerance(const ProComplexContour& shape);

}  // namespace quillon
