// The section properties table of the program: area, centroid, centroidal and principal second
// moments, principal angle, radii of gyration and elastic moduli of a complex contour, printed in
// the user's length unit through the unit catalogue.
#pragma once

#include <string>

#include "quillon/geometry/contours/pro_contour.h"

namespace quillon::tool {

// `drawingUnit`: the unit of the contour's coordinates; `shownUnit`: the unit to print in. Both
// are mm, cm or m. True with the table in `text` (one figure a line, no negative zero); false
// with the reason in `text` when there is nothing true to show: the shape encloses no area, or a
// figure does not fit a double in the shown unit.
bool SectionReport(const ProComplexContour& shape, const std::string& drawingUnit,
                   const std::string& shownUnit, std::string& text);

}  // namespace quillon::tool
