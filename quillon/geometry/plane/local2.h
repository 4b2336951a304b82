// A right-handed local frame of the plane.
//
// The matrix holds the unit x axis (row 0), the unit y axis (row 1) and the origin (row 2), so
// p * frame maps local coordinates to global ones and p /= frame maps global ones back. A frame
// that cannot be built enters the error state: valid 0, identity axes, origin at the requested
// point; callers that ignore validity still hold a usable pure translation.
#pragma once

#include <cstdint>

#include "quillon/geometry/plane/plane_matrix.h"

namespace quillon {

class Local2 : public Matrix3x2 {
public:
    static constexpr double eps = 1e-10;

    std::int16_t valid = 1;

    // The global frame.
    Local2() = default;
    Local2(const Point2& o, const Vector2& v, double tol = -1.0) { set(o, v, tol); }
    Local2(const Point2& o, const Point2& q, double tol = -1.0) { set(o, q, tol); }
    Local2(const Point2& o, double angle) { set(o, angle); }
    Local2(const Point2& o, double s, double c) { set(o, s, c); }
    Local2(const Isometry2& iso) { *this = iso; }

    // x axis along v; the error state when |v| < tol (tol < 0: Local2::eps).
    Local2& set(const Point2& o, const Vector2& v, double tol = -1.0);
    // x axis towards q.
    Local2& set(const Point2& o, const Point2& q, double tol = -1.0) { return set(o, q - o, tol); }
    Local2& set(const Point2& o, double angle);
    // x axis (c, s); the error state unless s² + c² is 1 within 1e-10.
    Local2& set(const Point2& o, double s, double c);
    // Copies the matrix and marks the frame valid.
    Local2& operator=(const Isometry2& iso);

    Local2& seterr(const Point2& o);

    // Writes the origin and the x axis into whichever pointer is non-null.
    void get(Point2* origin, Vector2* axis) const;
    explicit operator bool() const { return valid != 0; }
};

}  // namespace quillon
