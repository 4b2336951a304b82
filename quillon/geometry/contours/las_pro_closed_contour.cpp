#include "quillon/geometry/contours/las_pro_closed_contour.h"

#include <new>

namespace quillon {

void LAS_ProClosedContour::Accept(ProContourVisitor& v) {
    if (auto* own = dynamic_cast<LAS_ProContourVisitor*>(&v)) own->VisitLASClosedContour(*this);
}

ProContour* LAS_ProClosedContour::Duplicate() const {
    return new (std::nothrow) LAS_ProClosedContour(static_cast<const LAContour&>(*this));
}

LAS_ProClosedContour* LAS_ProContourFactory::CreateClosedContour() {
    return new (std::nothrow) LAS_ProClosedContour();
}

}  // namespace quillon
