// Exact section integrals of line-arc shapes.
//
// The seven integrals of M_SECT_PROPStr (area, perimeter, Sx = ∫y dA, Sy = ∫x dA, Ix = ∫y² dA,
// Iy = ∫x² dA, Ixy = ∫xy dA, about the origin and axes of the given coordinates) for outlines made
// of straight edges and true circular arcs. An arc adds the triangle of its chord, as a polygon
// edge does, plus the circular segment between chord and arc in closed form; no arc is replaced by
// chords, so a disc gives πr² and πr⁴/4 to rounding and rounded corners need no approximation.
//
// Conventions:
//   - CalcContourProps is signed: counter-clockwise contours count positively, and reversing a
//     contour negates every field but the perimeter (the contour's length, arcs r·|angle|);
//   - CalcProps counts every solid positively and every hole negatively whatever their
//     orientation, and its perimeter is the length of every boundary, solids and holes alike (the
//     polygon CalcProps leaves some boundaries out; this one does not);
//   - an arc whose computed end misses the next edge's start is followed by the straight gap
//     between them, integrated and measured like any edge, so every boundary is closed; an arc of
//     angle ±2π is a full circle;
//   - precision: each contour is integrated about a reference point of its own (the centre of its
//     start points' bounding box) and moved to the origin with the parallel-axis rules; thin arc
//     segments use series forms that keep their full relative precision; CalcSectionFigures works
//     about the shape's own centre, so a shape far from the origin loses nothing in its figures.
// Nothing throws; empty contours and shapes give zeros.
#pragma once

#include "quillon/geometry/contours/pro_contour.h"
#include "quillon/geometry/plane/la_contour.h"
#include "quillon/geometry/plane/plane_types.h"
#include "quillon/sections/mpoly.h"
#include "quillon/sections/section_figures.h"

namespace quillon {

// Signed integrals of one closed contour (positive area when counter-clockwise).
M_SECT_PROPStr CalcContourProps(const LAContour& c);

// Solids add with their integrals made positive, holes subtract whatever their orientation; the
// perimeter sums all boundary lengths.
M_SECT_PROPStr CalcProps(const ProComplexContour& shape);

// The integrals of the same region moved by v (parallel-axis rules); the perimeter is unchanged.
M_SECT_PROPStr TranslateProps(const M_SECT_PROPStr& props, const Vector2& v);

// The exact bounding rectangle of every contour of the shape (arcs through their extreme points),
// lower-left then upper-right; all zero for a shape without edges.
Rect2 ContourExtents(const ProComplexContour& shape);

// CalcProps and ContourExtents of the shape, then the figures (computed about the shape's centre).
SectionFigures CalcSectionFigures(const ProComplexContour& shape);

}  // namespace quillon
