#include "quillon/geometry/space/local3.h"

#include <cmath>

namespace quillon {

// ---- LocalPlane ----

LocalPlane& LocalPlane::operator=(const Isometry3& iso) {
    static_cast<Matrix4x3&>(*this) = iso;
    defined = true;
    return *this;
}

LocalPlane& LocalPlane::set(const Point3& o, const Point3& px, const Point3& pq) {
    const double e = tolerance();
    Vector3 x = px - o;
    const double lx = x.length();
    if (lx < e || std::isnan(lx)) return seterr(o);
    x /= lx;
    Vector3 z = x % (pq - o);
    const double lz = z.length();
    if (lz < e || std::isnan(lz)) return seterr(o);
    z /= lz;
    static_cast<Matrix4x3&>(*this) = Matrix4x3(Matrix3(x, z % x, z), o.vec());
    defined = true;
    return *this;
}

LocalPlane& LocalPlane::set(const Point3& o, const Point3& px, const Point3& pq, double e) {
    tol = e < 0.0 ? eps : e;
    return set(o, px, pq);
}

LocalPlane& LocalPlane::set(const Point3& o, const Vector3& zdir) {
    const double lz = zdir.length();
    if (lz < tolerance() || std::isnan(lz)) return seterr(o);
    const Vector3 z = zdir / lz;
    const Vector3 ref = std::fabs(z.x) <= 0.5 ? Vector3::_Ox : Vector3::_Oy;
    const Vector3 x = (ref - z * (ref * z)).get_normalized();
    static_cast<Matrix4x3&>(*this) = Matrix4x3(Matrix3(x, z % x, z), o.vec());
    defined = true;
    return *this;
}

LocalPlane& LocalPlane::set(const Point3& o, const Vector3& zdir, double e) {
    tol = e < 0.0 ? eps : e;
    return set(o, zdir);
}

LocalPlane& LocalPlane::seterr(const Point3& o) {
    static_cast<Matrix4x3&>(*this) = Matrix4x3(Matrix3(), o.vec());
    defined = false;
    return *this;
}

void LocalPlane::get(Point3* o, Point3* px, Point3* py) const { get(o, px, py, nullptr); }

void LocalPlane::get(Point3* o, Point3* px, Point3* py, Point3* pz) const {
    const Point3 org = zero();
    if (o != nullptr) *o = org;
    if (px != nullptr) *px = org + get_dir_x();
    if (py != nullptr) *py = org + get_dir_y();
    if (pz != nullptr) *pz = org + get_dir_z();
}

LocalPlane& LocalPlane::identity() {
    Matrix4x3::identity();
    defined = true;
    return *this;
}

bool LocalPlane::equal(const LocalPlane& f, double e) const {
    if (e < 0.0) e = tolerance();
    if (defined != f.defined) return false;
    for (short i = 0; i < 4; ++i) {
        for (short j = 0; j < 3; ++j) {
            if (!(std::fabs((*this)[i][j] - f[i][j]) <= e)) return false;
        }
    }
    return true;
}

LocalPlane LocalPlane::inverse() const {
    LocalPlane r = *this;
    _Inverse(static_cast<const Isometry3&>(*this), static_cast<Isometry3&>(r));
    return r;
}

LocalPlane& LocalPlane::rotate(const Rotate3_X& r) {
    _Mat_Rot_X(*this, r, *this);
    return *this;
}
LocalPlane& LocalPlane::rotate(const Rotate3_Y& r) {
    _Mat_Rot_Y(*this, r, *this);
    return *this;
}
LocalPlane& LocalPlane::rotate(const Rotate3_Z& r) {
    _Mat_Rot_Z(*this, r, *this);
    return *this;
}

LocalPlane& LocalPlane::rotate(double angle, Axis3::Axis axis) {
    return rotate(std::sin(angle), std::cos(angle), axis);
}

LocalPlane& LocalPlane::rotate(double sin, double cos, Axis3::Axis axis) {
    switch (axis) {
        case Axis3::X:
            return rotate(Rotate3_X(sin, cos));
        case Axis3::Y:
            return rotate(Rotate3_Y(sin, cos));
        case Axis3::Z:
            return rotate(Rotate3_Z(sin, cos));
    }
    return *this;
}

LocalPlane& LocalPlane::rotate(double angle, const Vector3& axis) {
    Matrix3 r;
    _Rot_V(axis, std::sin(angle), std::cos(angle), r);
    _Mat_Mat(*this, r, *this);
    return *this;
}

LocalPlane& LocalPlane::translate(const Translate3& tr) {
    t[0] += tr.vec.x;
    t[1] += tr.vec.y;
    t[2] += tr.vec.z;
    return *this;
}

LocalPlane& LocalPlane::operator<<=(const Isometry3& g) {
    _Mat_Mat(*this, g, *this);
    return *this;
}

LocalPlane& LocalPlane::operator<<=(const LocalPlane& g) {
    *this <<= static_cast<const Isometry3&>(g);
    defined = defined && g.defined;
    return *this;
}

LocalPlane& LocalPlane::operator>>=(const Isometry3& g) {
    Isometry3 inv;
    _Inverse(g, inv);
    _Mat_Mat(*this, inv, *this);
    return *this;
}

LocalPlane& LocalPlane::operator>>=(const LocalPlane& g) {
    *this >>= static_cast<const Isometry3&>(g);
    defined = defined && g.defined;
    return *this;
}

// ---- LocalCoordSystem ----

LocalCoordSystem& LocalCoordSystem::set(const Point3& o, const Vector3& ax, const Vector3& ay,
                                        const Vector3& az, bool normalize) {
    const double e = tol < 0.0 ? eps : tol;
    const double lx = ax.length(), ly = ay.length(), lz = az.length();
    if (!(lx >= e && ly >= e && lz >= e)) return seterr(o);  // mutate: off (at the tolerance)
    const Vector3 ux = ax / lx, uy = ay / ly, uz = az / lz;
    const Vector3 n = ux % uy;
    if (!(n.length() >= e) || !(std::fabs(n * uz) >= e)) return seterr(o);
    origin = o;
    x = normalize ? ux : ax;
    y = normalize ? uy : ay;
    z = normalize ? uz : az;
    defined = true;
    return *this;
}

LocalCoordSystem& LocalCoordSystem::set(const Point3& o, const Vector3& ax, const Vector3& ay,
                                        bool normalize) {
    return set(o, ax, ay, ax % ay, normalize);
}

void LocalCoordSystem::get(Point3* o, Vector3* ax, Vector3* ay, Vector3* az) const {
    if (o != nullptr) *o = origin;
    if (ax != nullptr) *ax = x;
    if (ay != nullptr) *ay = y;
    if (az != nullptr) *az = z;
}

LocalCoordSystem& LocalCoordSystem::seterr(const Point3& o) {
    origin = o;
    x = Vector3::_Ox;
    y = Vector3::_Oy;
    z = Vector3::_Oz;
    defined = false;
    return *this;
}

// ---- LocalPlaneYPR ----

LocalPlaneYPR& LocalPlaneYPR::operator=(const LocalPlane& f) {
    Rotate3(f.lin).get(yaw, pitch, roll);
    origin = f.zero();
    return *this;
}

LocalPlane LocalPlaneYPR::get() const {
    return LocalPlane(Isometry3(Rotate3(yaw, pitch, roll), Translate3(origin.vec())));
}

}  // namespace quillon
