// GeometricItem3: the polymorphic base of every space item that can take part in a solid boolean
// (an explicit boundary solid, half-spaces, extrusions, boolean results).
//
// Each item produces its boundary solid on demand (`GetSolid`), can be moved by an isometry,
// cloned and stored. The virtual operations keep this slot order, which derived kinds rely on:
// destructor, Clone, GetSolid, GetTypeID, Serialize, operator<<=.
//
// Ownership: `Clone` returns a heap copy that the caller owns. `GetSolid` returns a reference into
// the item (kinds that build their solid lazily keep it in a mutable cache, cleared by every
// setter), valid until the item is changed or destroyed.
//
// This header stays low in the include graph (no solid, no matrix), so that Solid3 can derive
// from it; the chief header of the items is geometric_item3.h.
#pragma once

namespace quillon {

class Archive;
class Isometry3;
class Solid3;

class GeometricItem3 {
public:
    // The stored identifiers of the kinds; files depend on these values.
    enum E_TYPEID : int {
        SOLID3 = 1,
        EXTRUSION3 = 2,
        HALF_SPACE3 = 3,
        BOOLEAN_RESULT3 = 4,
        BOUNDED_HALF_SPACE3 = 5,
    };

    virtual ~GeometricItem3() = default;
    // A heap copy of the item, owned by the caller.
    virtual GeometricItem3* Clone() const = 0;
    // The item's boundary solid.
    virtual const Solid3& GetSolid() const = 0;
    virtual E_TYPEID GetTypeID() const = 0;
    // Stores the item into a storing archive or replaces it from a loading one; failures are
    // ArchiveException only, and a failed load leaves the item as it was.
    virtual void Serialize(Archive& ar) = 0;
    // Moves the item by a rigid motion. The base knows no geometry and leaves the item as it is;
    // every kind with geometry overrides it.
    virtual GeometricItem3& operator<<=(const Isometry3& iso) {
        (void)iso;
        return *this;
    }

protected:
    GeometricItem3() = default;
    GeometricItem3(const GeometricItem3&) = default;
    GeometricItem3& operator=(const GeometricItem3&) = default;
    GeometricItem3(GeometricItem3&&) = default;
    GeometricItem3& operator=(GeometricItem3&&) = default;
};

}  // namespace quillon
