// The C++ side of quillon.Shape: a complex contour that nobody changes once it is made, shared by
// the Python objects that hold it, with the unit name its text carried. Everything here calls the
// owning operations of contour_ops.h; this file only adds what Python callers need on top of them:
// shapes from corner points with rounded corners, a tolerance chosen from the shapes' size when
// the caller gives none, and checks that keep numbers the engine cannot use out of it.
//
// Errors: a value a caller gave that cannot make a shape throws std::invalid_argument with a
// message for users; a contour text that does not read throws the reader's ContourTextError.
// Geometry itself never throws.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "quillon/geometry/contours/contour_ops.h"

namespace quillon::python {

struct ShapeValue {
    std::shared_ptr<const ProComplexContour> tree;  // never null
    std::optional<std::wstring> unit;               // from the text it was read from, if any
};

ShapeValue Own(ShapePtr shape, std::optional<std::wstring> unit = std::nullopt);
ShapeValue EmptyShape();

// A corner of an outline given by points: rounded with a true arc of `radius` when that is > 0.
struct Corner {
    double x = 0.0;
    double y = 0.0;
    double radius = 0.0;
};

// One closed contour through the corners, running clockwise like the solver's results whatever
// order the corners come in. A rounded corner gets an arc of exactly its radius, tangent to both
// sides. A single corner with a radius is a full circle about it. Throws std::invalid_argument for
// fewer than three corners (one for a circle), numbers that are not finite, or a corner that
// cannot be rounded (its sides run on in one line).
LAContour ContourThrough(const std::vector<Corner>& corners);

// A shape of one solid with holes, each from its corners; throws std::invalid_argument as
// ContourThrough does and when the result is not a valid shape (ValidateComplexContour at the
// shape's default tolerance): the message names the first problem.
ShapeValue ShapeFromCorners(const std::vector<Corner>& outline,
                            const std::vector<std::vector<Corner>>& holes);

// Reads a complex contour text with or without a unit name. Throws ContourTextError when it does
// not read and std::invalid_argument when it holds numbers that are not finite or too large.
ShapeValue ShapeFromText(const std::wstring& text);

// The tolerance used when the caller gives none: 1e-5 of the larger side of the shapes' bounds,
// and no less than 1e-5. Contour texts hold six decimals, so an arc read back closes only to
// about 1e-6 of its radius; this joins such ends while staying far below any real detail. Taken
// from the size, not the position, so that a shape gives the same answers wherever it lies.
double DefaultEps(const ProComplexContour& a, const ProComplexContour* b = nullptr);
// `eps` when given (it must be finite and positive), else DefaultEps.
double ChooseEps(std::optional<double> eps, const ProComplexContour& a,
                 const ProComplexContour* b = nullptr);

// The unit of a result of two shapes: the one they share, or the one of the shape that has one.
// Throws std::invalid_argument when both have units and they differ.
std::optional<std::wstring> CommonUnit(const ShapeValue& a, const ShapeValue& b);

// The shape as contour text, with the unit name in front when `unit` is given; `fullPrecision`
// writes 17 significant digits instead of six decimals.
std::wstring ShapeToText(const ProComplexContour& shape, const std::optional<std::wstring>& unit,
                         bool fullPrecision);

// A copy moved by (dx, dy), or turned by `angle` radians counter-clockwise about `about`. Throws
// std::invalid_argument when the copy would hold numbers that are not finite or too large.
ShapePtr Translated(const ProComplexContour& shape, double dx, double dy);
ShapePtr Rotated(const ProComplexContour& shape, double angle, const Point2& about);

// The part of every solid above the line y = level (or right of x = level), united. Throws
// std::invalid_argument when the pieces of a solid cannot be nested (they cross).
ShapePtr PartAbove(const ProComplexContour& shape, double level, double eps);
ShapePtr PartRightOf(const ProComplexContour& shape, double level, double eps);

// The validation problems of the shape at eps, one line each (DescribeProblem).
std::vector<std::string> ShapeProblems(const ProComplexContour& shape, double eps);

// A copy with straight runs and arcs of one circle merged (SimplifyComplexContour).
ShapePtr Simplified(const ProComplexContour& shape, double eps);

// Polygon points along a contour: arcs split as LAContour::approximate splits them. A closed
// contour ends with its first point again; an open one (a free polyline) ends at its end.
std::vector<Point2> ApproximatePoints(const LAContour& contour, bool closed, int circleSteps,
                                      int smallSteps, double smallLimit);

}  // namespace quillon::python
