// Loose drawing elements as a user drew them: straight segments and circular arcs, read from the
// plain text format of examples/README.md (one element a line, "#" starts a comment):
//
//   units mm                      length unit of the coordinates (mm, cm or m; default mm)
//   line  x1 y1  x2 y2            a straight segment
//   arc   x1 y1  x2 y2  cx cy  s  an arc from (x1, y1) to (x2, y2) about (cx, cy); the sign of the
//                                 sweep s (degrees) gives the turning direction (+ counter-
//                                 clockwise); |s| = 360 with equal ends is a full circle
//   arc3  x1 y1  xm ym  x2 y2     an arc from (x1, y1) through (xm, ym) to (x2, y2)
//   circle cx cy r                a full circle
//
// A malformed line is reported with its line number and what was expected; nothing is guessed.
// Numbers beyond kMaxContourCoordinate (contour_validate.h) are refused: the areas and moments of
// what they draw would overflow.
#pragma once

#include <istream>
#include <string>
#include <vector>

#include "quillon/geometry/contours/contour_ops.h"

namespace quillon::tool {

struct LooseDrawing {
    std::string unit = "mm";
    std::vector<LooseElement> elements;  // quillon::LooseElement, ready for SolveElements
};

struct ReadError {
    int line = 0;
    std::string message;
};

// Reads a whole drawing; false with `error` filled at the first malformed line.
bool ReadLooseDrawing(std::istream& in, LooseDrawing& drawing, ReadError& error);

// The length of one unit in metres: mm, cm, m; 0 for an unknown unit.
double UnitLength(const std::string& unit);

}  // namespace quillon::tool
