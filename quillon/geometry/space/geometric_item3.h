// Geometric items of space: the polymorphic family of everything that can take part in a solid
// boolean. GeometricItem3 (item3.h) is the base with its type identifiers; Solid3 (solid3.h), the
// explicit boundary solid, is the kind with type id 1.
//
// Every item produces its boundary solid with GetSolid, moves by an isometry with operator<<=,
// clones itself (the caller owns the copy) and stores itself through Serialize; derived data is
// cached in the item and cleared by its setters.
#pragma once

#include "quillon/geometry/space/item3.h"
#include "quillon/geometry/space/solid3.h"
