// The contour solver: from loose straight segments and circular arcs to closed contours, open
// polylines and solids with holes, and union, difference and intersection of such shapes with
// true arcs (never cut into chords).
//
// An LAS_Solver is made with a distance tolerance epsilon, filled, processed once and destroyed.
// Points closer than or as close as epsilon become one node (the first node made wins); elements
// that cross or touch are split at the contact so that shared pieces become the same element;
// the elements round every node are ordered clockwise; faces are walked with the rightmost-turn
// rule and the unbounded outer face is refused. Every geometric decision goes through the
// solver's Solver2d (GetSolver2D()).
//
// Conventions: elements and nodes are addressed by index; Add... operations return the element
// index, the index of an equal element already present, or -1 for degenerate input (ends within
// epsilon, zero sweep, coordinates that are not finite). Faces come out clockwise (y up), holes
// too, and a contour the solver makes repeats its first point as a zero-length closing edge. The
// caller owns every contour the solver returns; the solver owns its graph. Half-plane cuts
// (OnlyTop/OnlyRight) use the fixed tolerance 1e-8, arc midpoints and sweeps 0.0001.
//
// One-call use (solve a drawing, combine shapes, read and write contour text, with owned results
// and the tolerance as an argument): contour_ops.h, built on this engine.
//
// Speed: point merging, duplicate checks and splitting give the results of a linear search and of
// an all-pairs comparison in list order, but use a grid of nodes keyed by epsilon, a map of
// elements by their nodes and a grid of element boxes.
#pragma once

// The parts, from the driver down to the shared pieces: a user includes this header and has the
// solver; the part files include only the narrow headers they use.
#include "quillon/geometry/contours/contour2_boolean.h"
#include "quillon/geometry/contours/las_contour.h"
#include "quillon/geometry/contours/las_cstree.h"
#include "quillon/geometry/contours/las_driver.h"
#include "quillon/geometry/contours/las_element.h"
#include "quillon/geometry/contours/las_found_contour.h"
#include "quillon/geometry/contours/las_node_info.h"
#include "quillon/geometry/contours/las_pro_closed_contour.h"
#include "quillon/geometry/contours/pro_contour.h"
#include "quillon/geometry/contours/solver2d.h"
