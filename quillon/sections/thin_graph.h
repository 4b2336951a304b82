// The wall graph of a thin-walled cross-section.
//
// A thin-walled section is modelled by the mid-lines of its walls: straight segments and circular
// arcs meeting at vertices. Thin::Graph holds that model as a planar graph (vertex points, edges
// between vertex indices; an element's index is its position in its list). LA_SplitPol and
// LA_SplitPolEx build it from mid-line contours through the contour solver, with tolerance 0.0001:
// every crossing and touching becomes a vertex and closer points merge. Thin::Graph::Approximate
// then turns every arc into straight chords.
//
// Conventions: angles in radians, counter-clockwise positive; an arc edge's clockwise flag is 1
// when it turns clockwise from its begin vertex to its end vertex. The graph owns its vertices and
// edges by value; converters never own the contours they are given. Nothing throws.
//
// The graph class tree lives in namespace quillon (GraphBase, GraphBase2D, GraphContainer, Graph),
// the thin-walled classes in quillon::Thin.
#pragma once

#include "quillon/sections/thin_graph_base.h"
#include "quillon/sections/thin_split_pol.h"
#include "quillon/sections/thin_wall_graph.h"
