// Contour operations: one call for each thing programs usually do with contours, returning values
// the caller owns. Loose lines and arcs become a shape and its free polylines; shapes are united,
// subtracted, intersected, normalized, cut by a line; contour text is read and written.
//
// A shape is a ProComplexContour (solids, each with its holes; pro_contour.h) held by ShapePtr. The
// calls never change or keep their arguments, and every shape they return is new and owned by the
// caller. Each geometric call runs a fresh LAS_Solver (las_solver.h, the engine, for callers who
// need its steps) with the tolerance `epsilon`: points not farther apart than epsilon are one
// point, a point within epsilon of a curve lies on it; a negative epsilon asks for 1e-10. Results
// follow the engine's conventions: outlines and holes run clockwise (y up), each repeats its first
// point as a zero-length closing edge, arcs stay arcs. Nothing here throws on geometry; a text that
// does not read is answered with the reader's error in the result. Calls that solve can also clean
// their result up (ResultCleanUp), off by default so that results stay the engine's own.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "quillon/geometry/contours/contour_text.h"
#include "quillon/geometry/contours/pro_contour.h"
#include "quillon/geometry/plane/la_contour.h"
#include "quillon/geometry/plane/plane_types.h"

namespace quillon {

using ShapePtr = std::unique_ptr<ProComplexContour>;

// One loose element of a drawing: a straight segment from `begin` to `end`, or a circular arc from
// `begin` to `end` about `centre` by the signed `sweep` (radians, counter-clockwise positive). An
// arc whose sweep is a whole turn (within epsilon) with `end` at `begin` is a full circle.
struct LooseElement {
    enum Kind { Line, Arc } kind = Line;
    Point2 begin;
    Point2 end;
    Point2 centre;       // arcs only
    double sweep = 0.0;  // arcs only

    static LooseElement MakeLine(const Point2& from, const Point2& to) {
        return {Line, from, to, Point2(), 0.0};
    }
    static LooseElement MakeArc(const Point2& from, const Point2& to, const Point2& centre,
                                double sweep) {
        return {Arc, from, to, centre, sweep};
    }
};

// What a call does to the shape it returns. Keep: the engine's result as it stands (split points
// and all). Simplify: consecutive straight edges on one line and consecutive arcs of one circle
// turning one way are merged at the call's epsilon, the region kept (SimplifyComplexContour,
// contour_simplify.h).
enum class ResultCleanUp { Keep, Simplify };

// What a drawing of loose elements solves to.
struct SolvedShape {
    ShapePtr shape;                    // never null: an empty shape when nothing closes
    std::vector<LAContour> polylines;  // chains that bound no face (overshoots), open
    std::size_t faces = 0;             // closed faces found before they were nested
};

// Merges points within epsilon, splits the elements where they cross or touch, walks the bounded
// faces and nests them by containment into solids and holes (levels alternate solid, hole,
// solid); chains left over are the free polylines. Degenerate elements (ends within epsilon, a
// zero sweep, coordinates that are not finite) are left out.
SolvedShape SolveElements(const std::vector<LooseElement>& elements, double epsilon,
                          ResultCleanUp cleanUp = ResultCleanUp::Keep);

enum class ShapeOperation { Union, Difference, Intersection };

// The union, difference (a minus b) or intersection of two shapes, with true arcs. Never null.
ShapePtr CombineShapes(const ProComplexContour& a, const ProComplexContour& b, ShapeOperation op,
                       double epsilon, ResultCleanUp cleanUp = ResultCleanUp::Keep);
ShapePtr ShapeUnion(const ProComplexContour& a, const ProComplexContour& b, double epsilon);
ShapePtr ShapeDifference(const ProComplexContour& a, const ProComplexContour& b, double epsilon);
ShapePtr ShapeIntersection(const ProComplexContour& a, const ProComplexContour& b, double epsilon);
// The union of a list (neighbours combined pairwise). Null entries are skipped; no shape gives an
// empty shape and a single one a copy of it as it stands. Never null.
ShapePtr ShapeUnion(const std::vector<const ProComplexContour*>& shapes, double epsilon);
// The shape rebuilt with its overlaps and crossings resolved. Never null.
ShapePtr NormalizeShape(const ProComplexContour& shape, double epsilon,
                        ResultCleanUp cleanUp = ResultCleanUp::Keep);

// A shape of one solid with the given outline and holes, taken as they are (no solving).
ShapePtr MakeShape(const LAContour& outline, const std::vector<LAContour>& holes = {});

// The part of the solid at or above the line y = level (ShapeAbove), or at or right of the line
// x = level (ShapeRightOf); the cuts use the fixed tolerance 1e-8. Empty when nothing lies there;
// null only when the pieces cut off cannot be nested (they cross).
ShapePtr ShapeAbove(const ProSolidContour& solid, double level, double epsilon);
ShapePtr ShapeRightOf(const ProSolidContour& solid, double level, double epsilon);

// The pieces of the segment inside the shape (its boundary counts as inside), in order from the
// segment's begin, touching pieces joined.
std::vector<Sector2> SegmentInsideShape(const ProComplexContour& shape, const Sector2& segment,
                                        double epsilon);

// A contour text read whole: a complex contour, with or without a quoted unit name in front.
struct ShapeText {
    ShapePtr shape;                         // null when the text did not read
    std::optional<std::wstring> unit;       // the unit name, when the text has one
    std::optional<ContourTextError> error;  // why the text did not read
};

// Reads a complex contour text; one whose first character after white space is a double quote
// is read with its unit name.
ShapeText ReadShapeText(const std::wstring& text);
// The shape as contour text, without and with a unit name in front ("%lf" numbers: six decimals).
std::wstring WriteShapeText(const ProComplexContour& shape);
std::wstring WriteShapeText(const ProComplexContour& shape, const std::wstring& unit);

}  // namespace quillon
