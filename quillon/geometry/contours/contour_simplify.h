// Clean-up of contours: consecutive straight edges on one line become one edge, consecutive arcs
// of one circle turning the same way become one arc, and the region stays what it was.
//
// SimplifyContour(c, eps), for a distance tolerance eps (negative: 1e-10):
//   - the vertex between two straight edges goes when it lies within eps of the line through its
//     neighbours and strictly between them (the two edges run on in one direction);
//   - two consecutive arcs become one (the first's start and centre, the sum of the sweeps) when
//     their centres and radii agree within eps, their sweeps have one sign, the first ends within
//     eps of the second's start, the joined arc ends within eps of where the second ended, and its
//     two ends stay more than 2·eps apart (an arc never closes on itself: the solver would take it
//     for a point);
//   - a straight edge of exactly zero length inside the contour goes (it changes nothing);
//   - a vertex within 2·eps of another vertex of the contour stays: where the contour passes a
//     point twice, both visits keep their vertex, so the contour never comes to touch itself
//     inside an edge;
//   - the region is kept: each merge moves some area (the triangle of a removed vertex, the
//     rounding of joined arcs), and merges stop short of moving, in total, more than 1e-13 of the
//     contour's own area. So the exact area (arcs included) is kept to 1e-12 relative, and only
//     vertices that are straight to rounding go, whatever eps allows.
// A contour that ends with a zero-length closing edge (as the solver writes its results) keeps
// one, repeating the new first vertex. The first surviving edge in the original order stays first.
// A contour keeps at least two edges, and three while none is an arc; a contour with a number
// that is not finite is left as it is. Nothing throws except allocation.
#pragma once

#include "quillon/geometry/contours/pro_contour.h"
#include "quillon/geometry/plane/la_contour.h"

namespace quillon {

// Returns the number of edges removed.
int SimplifyContour(LAContour& contour, double eps);

// Simplifies every solid outline and every hole; returns the total number of edges removed.
int SimplifyComplexContour(ProComplexContour& shape, double eps);

}  // namespace quillon
