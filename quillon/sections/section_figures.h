// The figures engineers read off a section: centroid, centroidal and principal second moments,
// radii of gyration and elastic section moduli.
//
// They are derived from the raw integrals of M_SECT_PROPStr (about the origin of the section's
// coordinates) by the parallel-axis rule, and from the section's extents for the extreme fibre
// distances. Conventions: Ix is the integral of y*y dA (bending about the x axis), Ixy of x*y dA;
// the principal angle is the angle, counter-clockwise from +x in (-pi/2, pi/2], of the axis about
// which the second moment is largest (I1); a product moment below 1e-12 of the moments counts
// as zero for it. Figures exist only for a positive net area; for any other section every field
// is 0 and `valid` is false.
#pragma once

#include "quillon/geometry/plane/plane_types.h"
#include "quillon/sections/mpoly.h"

namespace quillon {

struct SectionFigures {
    bool valid = false;  // net area > 0
    double area = 0.0;
    Point2 centroid;     // (Sy / area, Sx / area)
    double Ixc = 0.0;    // about the centroidal axis parallel to x
    double Iyc = 0.0;    // about the centroidal axis parallel to y
    double Ixyc = 0.0;   // centroidal product moment
    double I1 = 0.0;     // major principal moment
    double I2 = 0.0;     // minor principal moment (I2 <= I1)
    double alpha = 0.0;  // angle of the major principal axis from +x, (-pi/2, pi/2]
    double rx = 0.0;     // sqrt(Ixc / area)
    double ry = 0.0;     // sqrt(Iyc / area)
    double r1 = 0.0;     // sqrt(I1 / area)
    double r2 = 0.0;     // sqrt(I2 / area)
    // Elastic moduli: the centroidal moment over the distance from the centroid to the extreme
    // fibre on each side (0 when that distance is not positive). Wx and Wy are the governing
    // (smaller) ones.
    double Wx_top = 0.0;     // Ixc / (ymax - yc)
    double Wx_bottom = 0.0;  // Ixc / (yc - ymin)
    double Wy_right = 0.0;   // Iyc / (xmax - xc)
    double Wy_left = 0.0;    // Iyc / (xc - xmin)
    double Wx = 0.0;
    double Wy = 0.0;
};

// Figures from the raw integrals and the extents (any two opposite corners; they are normalised).
SectionFigures CalcSectionFigures(const M_SECT_PROPStr& props, const Rect2& extents);

// Bounding rectangle of the outlines (holes lie within them), lower-left then upper-right; all zero
// for a set without vertices.
Rect2 SectionExtents(const MPolySet& section);

// CalcProps and SectionExtents of the section, then the figures.
SectionFigures CalcSectionFigures(const MPolySet& section);

}  // namespace quillon
