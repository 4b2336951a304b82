// Figures of a boundary solid as the program prints them: counts, extents, enclosed volume and
// whether the surface is closed.
#pragma once

#include <string>

#include "quillon/geometry/space/solid3.h"

namespace quillon::tool {

// The volume the faces enclose, by the divergence theorem over the faces' triangles: positive
// for a closed solid oriented outward (outer loops clockwise seen from outside). Faces that do
// not triangulate (no area) add nothing. Meaningful for closed solids only.
double SolidVolume(const Solid3& solid);

// Whether every edge is run once in each direction by the faces' loops (outer and holes).
bool SolidIsClosed(const Solid3& solid);

// The printed block: vertex, face and material counts, extents, closed yes/no and, for a closed
// surface, the volume it encloses (its size: files written the common way, counter-clockwise seen
// from outside, have the same volume as this library's clockwise ones; the turn is printed), in
// the solid's own coordinates (`unit` names them; empty when the file does not say).
std::string SolidFigures(const Solid3& solid, const std::string& unit);

}  // namespace quillon::tool
