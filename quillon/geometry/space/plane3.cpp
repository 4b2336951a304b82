#include "quillon/geometry/space/plane3.h"

#include <cmath>

#include "quillon/geometry/space/local3.h"

namespace quillon {

namespace {

constexpr double kZero2 = 1e-20;  // zero of squared lengths

}  // namespace

Plane3& Plane3::set(const Point3& p, const Vector3& normal) {
    return set(normal, -(p.vec() * normal));
}

Plane3& Plane3::set(const Vector3& normal, double offset) {
    n = normal;
    d = offset;
    unchecked();
    return *this;
}

Plane3& Plane3::set() { return *this = Plane3(); }

Plane3& Plane3::reset(signed char s) {
    state = s;
    root_known = false;
    if (s != 0) norm2 = n * n;  // a state given without a check still has its squared norm
    return *this;
}

bool Plane3::is_plane() const {
    if (state == 0) {
        norm2 = n * n;
        state = kZero2 > norm2 || std::isnan(norm2) ? -1 : 1;
    }
    return state > 0;  // mutate: off (the state is -1 or 1 here)
}

double Plane3::denom_2() const {
    is_plane();
    return norm2;
}

double Plane3::denom_s() const {
    if (!is_plane()) return 0.0;
    if (!root_known) {
        norm = std::sqrt(norm2);
        root_known = true;
    }
    return norm;
}

Plane3& Plane3::set_normalize() {
    if (!is_plane() || denom_s() == 1.0) return *this;
    n /= norm;  // d deliberately stays: the plane moves unless |n| was 1
    norm2 = norm = 1.0;
    return *this;
}

Plane3& Plane3::set_reverse() {
    n = -n;
    d = -d;
    return *this;
}

bool Plane3::get(Vector3* normal, Point3* p) const {
    if (!is_plane()) return false;
    if (normal != nullptr) *normal = n;
    if (p != nullptr) *p = (n * (-d / norm2)).pnt();
    return true;
}

bool Plane3::get(Vector3* normal, double* offset) const {
    if (normal != nullptr) *normal = n;
    if (offset != nullptr) *offset = d;
    return true;
}

int Plane3::side(const Point3& p) const {
    if (!is_plane()) return 0;
    double s = value(p);
    double t;
    if (root_known) {
        t = norm * eps;
    } else {
        s *= std::fabs(s);  // compare squares: no root needed
        t = norm2 * eps * eps;
    }
    if (s < -t) return -1;
    if (s > t) return 1;  // mutate: off (exactly at the tolerance)
    return 0;
}

double Plane3::signed_distance(const Point3& p) const {
    if (!is_plane()) return 0.0;
    return value(p) / denom_s();
}

double Plane3::distance(const Point3& p) const { return std::fabs(signed_distance(p)); }

double Plane3::signed_distance2(const Point3& p) const {
    if (!is_plane()) return 0.0;
    const double s = value(p);
    return s * std::fabs(s) / norm2;
}

double Plane3::distance2(const Point3& p) const {
    if (!is_plane()) return 0.0;
    const double s = value(p);
    return s * s / norm2;
}

std::pair<Point3, bool> Plane3::projection(const Point3& p) const {
    if (!is_plane()) return {Point3(), false};
    return {p - n * (value(p) / norm2), true};
}

std::pair<Point3, bool> Plane3::projection(const Vector3& dir, const Point3& p) const {
    return Line3(p, dir).intersection(*this);
}

std::pair<Line3, bool> Plane3::projection(const Line3& l) const {
    if (!is_plane() || !l.is_line()) return {Line3(l.tol), false};
    const Vector3 v = l.dir - n * ((l.dir * n) / norm2);
    const Line3 r(projection(l.org).first, v, l.tol);
    return {r, r.is_line()};
}

bool Plane3::contains(const Line3& l, double e) const {
    if (e < 0.0) e = eps;
    if (!is_plane() || !l.is_line()) return false;
    return l.is_parallel_to(*this, e) && distance(l.org) < e;
}

std::pair<Line3, bool> Plane3::intersection(const Plane3& pl) const {
    // Without the guard a degenerate plane would still give no line: its zero root makes the
    // normals NaN, and the frame below undefined.
    if (!is_plane() || !pl.is_plane()) return {Line3(), false};  // mutate: off (see above)
    const double s1 = denom_s(), s2 = pl.denom_s();
    const Vector3 n1 = n / s1, n2 = pl.n / s2;
    const double d1 = d / s1, d2 = pl.d / s2;
    const Vector3 dir = n1 % n2;
    if (dir.length2() < kZero2) return {Line3(), false};
    // The plane through the global origin spanned by the two normals is perpendicular to the
    // common line, so the traces of the two planes in it meet at the line's point nearest to the
    // origin. In that frame n1 is the x axis and n2 = (cos θ, sin θ).
    const LocalPlane f(Point3::_OO, n1.pnt(), n2.pnt());
    // Normals whose cross product passed the check above always span a frame.
    if (!f.isDefined()) return {Line3(), false};  // mutate: off (see above)
    const Line2 trace1(1.0, 0.0, d1);
    const Line2 trace2(n2 * f.get_dir_x(), n2 * f.get_dir_y(), d2);
    const auto [q, ok] = trace1.intersection(trace2, 0.0);
    if (!ok) return {Line3(), false};
    return {Line3(Point3(q) * f, dir), true};
}

std::pair<Line3, bool> Plane3::intersectionEx(const Plane3& pl, double e) const {
    if (e < 0.0) e = eps;
    const Vector3& m = pl.n;
    const Vector3 v = n % m;
    if (!(v.length() >= e)) return {Line3(e), false};
    const double dxy = n.x * m.y - n.y * m.x;
    const double dxz = n.x * m.z - n.z * m.x;
    const double dyz = n.y * m.z - n.z * m.y;
    // Keep the pair of coordinates with the largest determinant; ties prefer xy, then xz.
    Point3 p;
    if (std::fabs(dxy) >= std::fabs(dxz) && std::fabs(dxy) >= std::fabs(dyz)) {
        p.set((-d * m.y + pl.d * n.y) / dxy, (-pl.d * n.x + d * m.x) / dxy, 0.0);
    } else if (std::fabs(dxz) >= std::fabs(dyz)) {
        p.set((-d * m.z + pl.d * n.z) / dxz, 0.0, (-pl.d * n.x + d * m.x) / dxz);
    } else {
        p.set(0.0, (-d * m.z + pl.d * n.z) / dyz, (-pl.d * n.y + d * m.y) / dyz);
    }
    return {Line3(p, v, e), true};
}

}  // namespace quillon
