// Creating geometric items from their type identifiers, and storing an item together with its
// type so that it can be re-created from an archive.
#pragma once

#include <memory>

#include "quillon/geometry/space/item3.h"
#include "quillon/platform/archive.h"

namespace quillon {

// A new item of the kind `id` names, owned by the caller: 1 Solid3(eps), 2 Extrusion3(eps),
// 3 HalfSpace3(eps), 4 BooleanResult3() (no eps), 5 BoundedHalfSpace3(eps). Null for any other
// value, or when memory runs out.
GeometricItem3* InstantiateClass(GeometricItem3::E_TYPEID id, double eps);

// An item's type id (int32; 0 when `item` is null) followed by its own record (Serialize): the
// form in which BooleanResult3 stores its operands.
void StoreGeometricItem3(Archive& ar, GeometricItem3* item);
// Reads what StoreGeometricItem3 wrote: null for type id 0, otherwise the item re-created through
// InstantiateClass and loaded. Throws ArchiveException only: badClass for an unknown type id,
// and whatever the item's record raises.
std::unique_ptr<GeometricItem3> LoadGeometricItem3(Archive& ar);

}  // namespace quillon
