// Feeds arbitrary bytes to the solid's archive reader: every outcome must be a consistent solid
// (which then survives the solid's own operations and stores and loads alike) or an
// ArchiveException with the target as it was; never a crash, a hang or a leak.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>

#include "quillon/geometry/space/solid3.h"

namespace {

void Check(bool ok) {
    if (!ok) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
    quillon::Archive ar(in);
    quillon::Solid3 s(1e-9);
    s.GenCuboid(quillon::Mvector<quillon::Point3>{
        {0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 0, 1}, {0, 1, 1}});
    const quillon::Solid3 before = s;
    try {
        s.Serialize(ar);
    } catch (const quillon::ArchiveException&) {
        Check(s == before);
        return 0;
    }
    quillon::Point3 lo, hi;
    (void)s.GetExtents(lo, hi);
    quillon::Mmatrix<std::size_t> tris;
    for (std::size_t f = 0; f < s.Face().size() && f < 64; ++f) {
        (void)s.TriangulateFace(f, tris);
        (void)s.Face()[f].GetNormal(s.Vertex(), s.GetEps());
    }
    // Stored, loaded and stored again: the same bytes (NaN coordinates compare unequal as
    // numbers, so the records are compared).
    const auto stored = [](quillon::Solid3& solid) {
        std::ostringstream out;
        quillon::Archive store(out);
        solid.Serialize(store);
        return out.str();
    };
    const std::string bytes = stored(s);
    std::istringstream again(bytes);
    quillon::Archive load(again);
    quillon::Solid3 back;
    back.Serialize(load);
    Check(stored(back) == bytes);
    quillon::Solid3 merged(1e-6);
    Check(merged.Merge(s));
    s.GenerateEdges();
    return 0;
}
