// Union, difference and intersection of polygons (Contour2), computed by the contour solver, so
// the library has one boolean engine for polygons and line-arc shapes alike.
//
// A result is a list of regions, each an outer polygon with its holes. Outer polygons run
// counter-clockwise and holes clockwise, so the signed areas of a result add up to its area.
// Regions are disjoint; they may touch at points. The solver's tolerance is the larger of the two
// polygons' `tol` and 1e-9 times the largest coordinate magnitude (rounding of crossing points
// must stay below it). Polygons may be given in either orientation; fewer than three vertices
// count as empty.
#pragma once

#include <vector>

#include "quillon/geometry/plane/contour2.h"

namespace quillon {

// Contour2Region is declared with Contour2; Contour2::Intersection, Difference and Union call
// these.
std::vector<Contour2Region> Contour2Intersection(const Contour2& a, const Contour2& b);
// a minus b.
std::vector<Contour2Region> Contour2Difference(const Contour2& a, const Contour2& b);
std::vector<Contour2Region> Contour2Union(const Contour2& a, const Contour2& b);

}  // namespace quillon
