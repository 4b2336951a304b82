#include <algorithm>
#include <cmath>

#include "quillon/geometry/space/space_matrix.h"
#include "quillon/geometry/space/tube3d.h"

namespace quillon {

namespace {

// Turns below this are not written.
constexpr double kNegligible = 1.1920928955078125e-7;

}  // namespace

bool BRNF_SetRotation(const LocalPlane& frame, wchar_t* axes, Point3& angles) {
    if (!frame.isDefined()) return false;
    Point3 out;
    wchar_t letters[4] = {};
    int count = 0;
    LocalPlane work = frame;

    Vector3 z = work.get_dir_z();
    const double a = PolarAngle2(z.z, z.y);
    if (std::fabs(a) > kNegligible) {
        out.x = -a;  // the measured angle negated: the turn that rebuilds the frame
        letters[count++] = L'x';
        work.rotate(Rotate3_X(a));
    }
    z = work.get_dir_z();
    const double b = PolarAngle2(z.z, z.x);
    if (std::fabs(b) > kNegligible) {
        out.y = b;
        letters[count++] = L'y';
        work.rotate(Rotate3_Y(-b));
    }
    const Vector3 x = work.get_dir_x();
    const double c = PolarAngle2(x.x, x.y);
    if (std::fabs(c) > kNegligible) {  // mutate: off (exactly at the tolerance)
        out.z = c;
        letters[count++] = L'z';
        work.rotate(Rotate3_Z(-c));
    }
    std::reverse(letters, letters + count);

    angles = out;
    if (axes != nullptr) std::copy(letters, letters + count + 1, axes);
    return true;
}

bool BRNF_GetRotation(LocalPlane& frame, const wchar_t* axes, const Point3& angles) {
    LocalPlane f;
    for (const wchar_t* p = axes; p != nullptr && *p != L'\0'; ++p) {
        switch (*p) {
            case L'x':
            case L'X':
                f.rotate(Rotate3_X(angles.x));
                break;
            case L'y':
            case L'Y':
                f.rotate(Rotate3_Y(angles.y));
                break;
            case L'z':
            case L'Z':
                f.rotate(Rotate3_Z(angles.z));
                break;
            default:
                break;  // unknown letters are skipped
        }
    }
    frame = f;
    return frame.isDefined();
}

}  // namespace quillon
