// The contour solver's own closed contour and the factory that makes it.
#pragma once

#include "quillon/geometry/contours/pro_contour.h"

namespace quillon {

class LAS_ProClosedContour;

// A visitor that also has an operation for the solver's closed contours.
class LAS_ProContourVisitor : public ProContourVisitor {
public:
    virtual void VisitLASClosedContour(LAS_ProClosedContour& c) = 0;
};

// A closed contour found by the solver. Its only addition is Accept: visitors derived from
// LAS_ProContourVisitor are told about it; others are not.
class LAS_ProClosedContour : public ProClosedContour {
public:
    using ProClosedContour::ProClosedContour;
    LAS_ProClosedContour() = default;

    void Accept(ProContourVisitor& v) override;
    // The copy stays a solver contour.
    ProContour* Duplicate() const override;
};

// The default factory plus the solver's closed contours.
class LAS_ProContourFactory : public ProContourFactory {
public:
    virtual LAS_ProClosedContour* CreateClosedContour();
};

}  // namespace quillon
