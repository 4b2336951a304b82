// Arbitrary bytes as a tube along a polyline: the generator answers with a mesh whose faces index
// its own points, or with false, never a crash, hang or leak. Coordinates come from single bytes on
// a coarse grid so that the awkward paths (repeated points, straight runs, U-turns, runs along the
// seam's reference vector) turn up often; a few come as raw doubles for the extreme values.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "quillon/geometry/space/tube3d.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quillon;
    if (size < 3) return 0;
    const int ring = data[0] % 40 - 2;                   // below 3 must be refused
    const int cap = data[1] % 40 - 3;                    // -1 asks for the ring's count
    const double diameter = (data[2] % 64) / 8.0 - 1.0;  // zero and negative ones too
    std::size_t at = 3;
    Mvector<Point3> path;
    while (at < size && path.size() < 64) {
        const std::uint8_t kind = data[at++];
        double c[3];
        if (kind == 0xFF && size - at >= sizeof c) {
            std::memcpy(c, data + at, sizeof c);
            at += sizeof c;
        } else {
            for (double& v : c) v = at < size ? (data[at++] % 16) / 4.0 - 2.0 : 0.0;
        }
        path.push_back(Point3(c[0], c[1], c[2]));
    }
    Mvector<Point3> points;
    Mvector<Vector3> normals;
    Mmatrix<std::size_t> faces;
    const bool ok = BRNF_Tube3D(points, normals, faces, path, diameter, ring, cap);
    // Fewer than two path points: nothing to sweep, an empty mesh and true, whatever the counts.
    if (path.size() < 2) {
        if (!ok || !points.empty() || !faces.empty()) std::abort();
        return 0;
    }
    if (ring < 3 && ok) std::abort();
    if (!ok) return 0;
    if (points.size() != normals.size()) std::abort();
    for (const auto& f : faces)
        for (const std::size_t i : f)
            if (i >= points.size()) std::abort();
    return 0;
}
