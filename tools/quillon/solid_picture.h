// A picture of a solid as people look at it: a parallel (axonometric) view, rendered into a depth
// buffer so that hidden faces are hidden whatever the solid's shape (holes, notches, openings),
// faces shaded by how they turn to the light, edges between faces that meet at a crease drawn
// dark. Written as a PNG file (8-bit RGB, uncompressed deflate blocks: no library needed).
#pragma once

#include <string>

#include "quillon/geometry/space/solid3.h"

namespace quillon::tool {

enum class SolidView { Iso, Top, Front };

// "iso" (from above, front and right: x and y run down to the right and left), "top" (x to the
// right, y up) or "front" (x to the right, z up); false for another name.
bool ParseSolidView(const std::string& name, SolidView& view);

// The PNG file's bytes: `width` pixels wide (the height follows the solid's proportions, at most
// 2 × width), white background, the solid filled in its first material's diffuse colour (a grey
// without materials). A solid without faces gives a white picture.
std::string SolidToPng(const Solid3& solid, SolidView view, int width);

}  // namespace quillon::tool
