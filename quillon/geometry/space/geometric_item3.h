// Geometric items of space: the polymorphic family of things that can take part in a solid
// boolean. GeometricItem3 is the base; its kinds, with the type ids files store them under, are
// Solid3 (1, an explicit boundary solid), Extrusion3 (2, a plane outline with holes swept along a
// path), HalfSpace3 (3, everything on one side of a plane), BooleanResult3 (4, two items combined
// by a boolean) and BoundedHalfSpace3 (5, the part of a half-space under an outline).
//
// Conventions:
//   - every item gives its boundary solid on demand (GetSolid), closed and oriented outward (outer
//     face loops clockwise seen from outside, positive volume), or empty when its data are
//     degenerate; the solid is cached in the item and every setter clears the cache;
//   - half-spaces are modelled by finite prisms 1000 deep on the side opposite the plane's normal
//     (a deliberate model, adequate for structural members; larger models must not rely on it);
//   - contours are approximated with 48 pieces per full turn (arcs up to 1 rad in 24 pieces);
//   - moving an item (operator<<=) moves the solid it gives exactly as moving that solid would;
//   - ownership: Clone, InstantiateClass and LoadGeometricItem3 hand their items to the caller; a
//     BooleanResult3 owns copies of its operands;
//   - geometry never throws; Serialize and the archive helpers fail by ArchiveException only,
//     leaving the item as it was. Each kind's record is described in its header.
#pragma once

#include "quillon/geometry/space/boolean_result3.h"
#include "quillon/geometry/space/extrusion3.h"
#include "quillon/geometry/space/half_space3.h"
#include "quillon/geometry/space/item3.h"
#include "quillon/geometry/space/item3_factory.h"
#include "quillon/geometry/space/solid3.h"
