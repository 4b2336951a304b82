// Feeds arbitrary bytes to the space-type archive readers: every outcome must be a value or an
// ArchiveException, never a crash, a hang or a leak. Each value read is then used, so that
// whatever a file holds (zeros, infinities, NaN) goes through the lazy checks and the frames.
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

#include "quillon/geometry/space/space_types.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::string bytes(reinterpret_cast<const char*>(data + 1), size - 1);
    std::istringstream in(bytes);
    quillon::Archive ar(in);
    const quillon::Point3 probe(0.5, -1.0, 2.0);
    try {
        // The first byte picks the record type; records then follow until the input runs out.
        for (int i = 0; i < 64; ++i) {
            switch ((data[0] + i) % 8) {
                case 0: {
                    quillon::Line3 l;
                    ar >> l;
                    (void)l.distance(probe);
                    (void)l.projection(probe);
                    break;
                }
                case 1: {
                    quillon::Plane3 pl;
                    quillon::Line3 l;
                    ar >> pl >> l;
                    (void)pl.side(probe);
                    (void)pl.intersection(l);
                    (void)pl.intersection(quillon::Plane3(probe, quillon::Vector3(1, 1, 0)));
                    (void)pl.intersectionEx(quillon::Plane3(probe, quillon::Vector3(0, 1, 1)));
                    break;
                }
                case 2: {
                    quillon::Arc3 a;
                    quillon::Sector3 s;
                    ar >> a >> s;
                    (void)a.Contains(probe);
                    (void)a.Intersection(s);
                    quillon::Point3 lo, hi;
                    (void)a.GetExtents(lo, hi);
                    break;
                }
                case 3: {
                    quillon::Matrix4x3 m;
                    ar >> m;
                    quillon::Matrix4x3 inv;
                    (void)quillon::_Inverse(m, inv);
                    quillon::Point3 p = probe;
                    p /= m;
                    break;
                }
                case 4: {
                    quillon::LocalPlane f;
                    ar >> f;
                    quillon::LocalPlaneYPR ypr;
                    ypr = f;
                    (void)ypr.get();
                    break;
                }
                case 5: {
                    quillon::LocalCoordSystem s;
                    ar >> s;
                    s.set(s.origin, s.x, s.y, s.z, true);
                    break;
                }
                case 6: {
                    quillon::LocalPlaneYPR f;
                    quillon::Matrix3 m;
                    ar >> f >> m;
                    (void)quillon::Rotate3(m).det();
                    break;
                }
                default: {
                    quillon::Rotate3_X rx;
                    quillon::Rotate3_Y ry;
                    quillon::Rotate3_Z rz;
                    quillon::Translate3 t;
                    quillon::Scale3 sc;
                    quillon::Point3 p;
                    quillon::Vector3 v;
                    quillon::Node3 n;
                    ar >> rx >> ry >> rz >> t >> sc >> p >> v >> n;
                    break;
                }
            }
        }
    } catch (const quillon::ArchiveException&) {
    }
    return 0;
}
