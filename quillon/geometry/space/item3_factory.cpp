#include "quillon/geometry/space/item3_factory.h"

#include <cstdint>
#include <new>

#include "quillon/geometry/space/boolean_result3.h"
#include "quillon/geometry/space/extrusion3.h"
#include "quillon/geometry/space/half_space3.h"
#include "quillon/geometry/space/solid3.h"

namespace quillon {

GeometricItem3* InstantiateClass(GeometricItem3::E_TYPEID id, double eps) {
    switch (id) {
        case GeometricItem3::SOLID3:
            return new (std::nothrow) Solid3(eps);
        case GeometricItem3::EXTRUSION3:
            return new (std::nothrow) Extrusion3(eps);
        case GeometricItem3::HALF_SPACE3:
            return new (std::nothrow) HalfSpace3(eps);
        case GeometricItem3::BOOLEAN_RESULT3:
            return new (std::nothrow) BooleanResult3();
        case GeometricItem3::BOUNDED_HALF_SPACE3:
            return new (std::nothrow) BoundedHalfSpace3(eps);
    }
    return nullptr;
}

void StoreGeometricItem3(Archive& ar, GeometricItem3* item) {
    ar << static_cast<std::int32_t>(item != nullptr ? item->GetTypeID() : 0);
    if (item != nullptr) item->Serialize(ar);
}

std::unique_ptr<GeometricItem3> LoadGeometricItem3(Archive& ar) {
    std::int32_t id = 0;  // mutate: off (read at once)
    ar >> id;
    if (id == 0) return nullptr;
    std::unique_ptr<GeometricItem3> item(
        InstantiateClass(static_cast<GeometricItem3::E_TYPEID>(id),
                         -1.0));  // mutate: off (the record sets the tolerance)
    if (!item) throw ArchiveException(ArchiveException::badClass, "unknown item type");
    item->Serialize(ar);
    return item;
}

}  // namespace quillon
