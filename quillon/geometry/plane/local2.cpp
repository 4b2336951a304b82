#include "quillon/geometry/plane/local2.h"

#include <cmath>

namespace quillon {

Local2& Local2::set(const Point2& o, const Vector2& v, double tol) {
    if (tol < 0.0) tol = eps;
    const double len = v.length();
    if (len < tol) return seterr(o);  // mutate: off (exactly at tol)
    const Vector2 x = v / len;
    *static_cast<Matrix3x2*>(this) = Matrix3x2(x.x, x.y, -x.y, x.x, o.x, o.y);
    valid = 1;
    return *this;
}

Local2& Local2::set(const Point2& o, double angle) {
    return set(o, std::sin(angle), std::cos(angle));
}

Local2& Local2::set(const Point2& o, double s, double c) {
    if (std::fabs(s * s + c * c - 1.0) >= 1e-10) return seterr(o);  // mutate: off (at tol)
    *static_cast<Matrix3x2*>(this) = Matrix3x2(c, s, -s, c, o.x, o.y);
    valid = 1;
    return *this;
}

Local2& Local2::operator=(const Isometry2& iso) {
    *static_cast<Matrix3x2*>(this) = iso;
    valid = 1;
    return *this;
}

Local2& Local2::seterr(const Point2& o) {
    *static_cast<Matrix3x2*>(this) = Matrix3x2(Matrix2(), o.vec());
    valid = 0;
    return *this;
}

void Local2::get(Point2* origin, Vector2* axis) const {
    if (origin != nullptr) origin->set(t[0], t[1]);
    if (axis != nullptr) axis->set(lin.m[0][0], lin.m[0][1]);
}

}  // namespace quillon
