// How the commands print what they found: contour text with a unit name only when there is one,
// numbers never shown as a negative zero, and a one-line summary of a shape.
#pragma once

#include <string>

#include "quillon/geometry/contours/pro_contour.h"

namespace quillon::tool {

// The shape as contour text (six decimals), with the unit name in front unless `unit` is empty.
std::string ContourText(const ProComplexContour& shape, const std::string& unit);

// "2 solid(s) with 1 hole(s)".
std::string ShapeSummary(const ProComplexContour& shape);

// `text` with the minus sign taken from every number whose figures are all zero: a value that
// rounds to nothing is shown as "0.00", not "-0.00". A number starts at a digit or a point not
// preceded by a letter, digit, point or underscore; its exponent does not count.
std::string WithoutNegativeZeros(std::string text);

}  // namespace quillon::tool
