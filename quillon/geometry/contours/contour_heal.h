// Healing of structured contours: every arc made to end where the next edge starts, so that the
// solver, the validation and the section integrals all see one closed outline.
//
// An arc is stored by start, centre and sweep, and its end is computed; the next edge's start is
// stored on its own. Text written with six decimals (the writers' default) rounds every number,
// so an arc read back misses the next start by up to a few 1e-6, and a solver run with a smaller
// epsilon then sees a gap. Worse, an arc's start is rebuilt from its rounded radius and angle
// while the straight edge before it keeps its own rounded start: the zero-length edge the solver
// writes before an arc grows into a short edge that folds back along the arc.
//
// HealLAContour, for a distance tolerance eps (negative: 1e-10) and a healing tolerance
// `tolerance` chosen by the caller (what may move: the rounding the caller expects):
//   1. a straight edge just before an arc whose start lies farther than eps but not farther than
//      `tolerance` from the arc's start starts where the arc starts (it is of zero length again);
//   2. each arc whose end misses the next edge's start by more than eps but not more than
//      `tolerance` keeps its centre and start: the next start moves onto the arc's circle (along
//      the radius; or, when it starts an arc of another circle, along that circle to where the two
//      circles cross) and the sweep turns by the least angle that ends the arc there. Straight
//      edges not longer than `tolerance` right after the arc (the solver's zero-length closing
//      edge, grown by rounding) move with it: their starts and the start of the edge after them
//      go to the same point, decided by that edge, so a corner stays one point. Centres stay
//      where they are because the solver merges centres closer than its epsilon, and arcs of one
//      circle read from text share theirs exactly. An arc whose ends then meet becomes a full turn
//      (if it swept more than half a turn) or a straight edge (its sweep was rounding). When the
//      next start cannot move so, the arc is rebuilt through its start and the next start instead:
//      its centre moves to the nearest point of their perpendicular bisector and its sweep becomes
//      the turn between them, in the stored sense and nearest the stored value; a rebuilt arc whose
//      middle would move by more than `tolerance` is not rebuilt;
//   3. an arc still missing the next start (by more than `tolerance`, or beyond repair) is followed
//      by a straight edge from its end to the next start, closing the gap as the section integrals
//      close it: the contour is closed explicitly.
// No point moves by more than `tolerance`. Straight edges apart from (1) and (2), consistent arcs
// and edges with numbers that are not finite are left as they are; afterwards every arc ends within
// eps of the next start. Nothing throws except allocation.
#pragma once

#include "quillon/geometry/contours/pro_contour.h"
#include "quillon/geometry/plane/la_contour.h"

namespace quillon {

// Returns the number of edges changed plus straight edges inserted (0: nothing to heal).
int HealLAContour(LAContour& contour, double eps, double tolerance);

// Heals every solid outline and every hole; returns the total of HealLAContour.
int HealComplexContour(ProComplexContour& shape, double eps, double tolerance);

// A healing tolerance that covers the rounding of text written with six decimals: 3e-6, plus
// 2e-6 for each unit of the largest arc radius (angles are rounded to 1e-6 rad), plus the
// spacing of doubles at the largest coordinate. 3e-6 for a shape without arcs.
double TextRoundingTolerance(const ProComplexContour& shape);

}  // namespace quillon
