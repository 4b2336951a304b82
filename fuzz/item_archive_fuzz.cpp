// Feeds arbitrary bytes to the geometric items' archive reader (a type id, then that kind's record,
// operands of boolean results nested inside): every outcome must be an item that stores and loads
// alike and gives a solid, or an ArchiveException with the target as it was; never a crash, a
// hang, unbounded recursion or a leak.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <string>

#include "quillon/geometry/space/geometric_item3.h"

namespace {

void Check(bool ok) {
    if (!ok) std::abort();
}

std::string Stored(quillon::GeometricItem3* item) {
    std::ostringstream out;
    quillon::Archive ar(out);
    quillon::StoreGeometricItem3(ar, item);
    return out.str();
}

// Compared as bytes: garbage numbers may give NaN coordinates, equal only bit for bit.
std::string Stored(const quillon::Solid3& solid) {
    quillon::Solid3 copy = solid;
    std::ostringstream out;
    quillon::Archive ar(out);
    copy.Serialize(ar);
    return out.str();
}

// The faces of the solids a boolean result combines, summed over its leaves.
std::size_t LeafFaces(const quillon::GeometricItem3* item) {
    if (item == nullptr) return 0;
    if (const auto* r = dynamic_cast<const quillon::BooleanResult3*>(item)) {
        return LeafFaces(r->GetFirstOperand()) + LeafFaces(r->GetSecondOperand());
    }
    return item->GetSolid().Face().size();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    std::unique_ptr<quillon::GeometricItem3> item;
    {
        std::istringstream in(bytes);
        quillon::Archive ar(in);
        try {
            item = quillon::LoadGeometricItem3(ar);
        } catch (const quillon::ArchiveException&) {
        }
    }
    // The same record loaded over an existing item of its kind: all or nothing.
    if (size >= 4 && data[1] == 0 && data[2] == 0 && data[3] == 0) {
        std::unique_ptr<quillon::GeometricItem3> target(quillon::InstantiateClass(
            static_cast<quillon::GeometricItem3::E_TYPEID>(data[0]), 1e-9));
        if (target) {
            const std::string before = Stored(target.get());
            std::istringstream in(bytes.substr(4));
            quillon::Archive ar(in);
            try {
                target->Serialize(ar);
                Check(item != nullptr);
            } catch (const quillon::ArchiveException&) {
                Check(Stored(target.get()) == before);
            }
        }
    }
    if (!item) return 0;

    const std::string stored = Stored(item.get());
    std::istringstream again(stored);
    quillon::Archive load(again);
    const auto back = quillon::LoadGeometricItem3(load);
    Check(back != nullptr && Stored(back.get()) == stored);
    // The booleans' cost grows with their operands; large garbage solids are not their test.
    if (LeafFaces(item.get()) > 2000) return 0;
    const quillon::Solid3& solid = item->GetSolid();
    Check(Stored(back->GetSolid()) == Stored(solid));
    *item <<= quillon::Isometry3(quillon::Rotate3(0.3, -0.2, 1.1), quillon::Translate3(1, 2, 3));
    (void)item->GetSolid();
    return 0;
}
