// SVG pictures of complex contours for people to look at: solids filled, holes cut out (even-odd
// fill of each solid with its holes), arcs drawn as true SVG arcs, a light grid and the bounding
// box labelled in the drawing's unit. The picture keeps y up: user y is turned into SVG y by
// flipping about the bounding box.
#pragma once

#include <string>

#include "quillon/geometry/contours/pro_contour.h"

namespace quillon::tool {

struct SvgOptions {
    std::string unit = "mm";  // written on the labels
    double width_px = 800.0;  // picture width; the height follows the shape's proportions
    std::string title;        // optional caption
};

// The whole SVG document (UTF-8, well-formed XML). An empty contour gives a small empty picture.
std::string ComplexContourToSvg(const ProComplexContour& shape, const SvgOptions& options);

}  // namespace quillon::tool
