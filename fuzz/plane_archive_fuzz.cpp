// Feeds arbitrary bytes to the plane-type archive readers: every outcome must be a value or an
// ArchiveException, never a crash, a hang or a leak.
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

#include "quillon/geometry/plane/plane_types.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::string bytes(reinterpret_cast<const char*>(data + 1), size - 1);
    std::istringstream in(bytes);
    quillon::Archive ar(in);
    try {
        // The first byte picks the record type; records then follow until the input runs out.
        for (int i = 0; i < 64; ++i) {
            switch ((data[0] + i) % 6) {
                case 0: {
                    quillon::Line2 l;
                    ar >> l;
                    (void)l.side(quillon::Point2(1.0, 2.0));
                    (void)l.distance(quillon::Point2(1.0, 2.0));
                    break;
                }
                case 1: {
                    quillon::Ray2 r;
                    ar >> r;
                    (void)r.projection(quillon::Point2(0.5, 0.5));
                    break;
                }
                case 2: {
                    quillon::Sector2 s;
                    ar >> s;
                    (void)s.contains(quillon::Point2(0.5, 0.5));
                    break;
                }
                case 3: {
                    quillon::Rect2 r;
                    ar >> r;
                    break;
                }
                case 4: {
                    quillon::Matrix3x2 m;
                    ar >> m;
                    quillon::Matrix3x2 inv;
                    (void)quillon::_Inverse(m, inv);
                    break;
                }
                default: {
                    quillon::Rotate2 r;
                    quillon::Translate2 t;
                    ar >> r >> t;
                    break;
                }
            }
        }
    } catch (const quillon::ArchiveException&) {
    }
    return 0;
}
