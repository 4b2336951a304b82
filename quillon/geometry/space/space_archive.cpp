#include "quillon/geometry/space/space_archive.h"

#include <cstdint>

namespace quillon {

namespace {

template <typename T>
Archive& StoreTriple(Archive& ar, const T& p) {
    return ar << p.x << p.y << p.z;
}

template <typename T>
Archive& LoadTriple(Archive& ar, T& p) {
    double x = 0.0, y = 0.0, z = 0.0;  // mutate: off (read at once; a failed read throws)
    ar >> x >> y >> z;
    p.x = x;
    p.y = y;
    p.z = z;
    return ar;
}

template <typename R>
Archive& LoadRotation(Archive& ar, R& r) {
    double s = 0.0, c = 0.0;  // mutate: off (read at once)
    ar >> s >> c;
    r.set(s, c);
    return ar;
}

Archive& StoreFlag(Archive& ar, bool flag) { return ar << std::int32_t{flag ? 1 : 0}; }

bool LoadFlag(Archive& ar) {
    std::int32_t v = 0;  // mutate: off (read at once)
    ar >> v;
    if (v != 0 && v != 1) throw ArchiveException(ArchiveException::badSchema, "bad defined flag");
    return v == 1;
}

}  // namespace

Archive& operator<<(Archive& ar, const Point3& p) { return StoreTriple(ar, p); }
Archive& operator>>(Archive& ar, Point3& p) { return LoadTriple(ar, p); }
Archive& operator<<(Archive& ar, const Vector3& v) { return StoreTriple(ar, v); }
Archive& operator>>(Archive& ar, Vector3& v) { return LoadTriple(ar, v); }
Archive& operator<<(Archive& ar, const Node3& n) { return StoreTriple(ar, n); }
Archive& operator>>(Archive& ar, Node3& n) { return LoadTriple(ar, n); }
Archive& operator<<(Archive& ar, const Scale3& s) { return StoreTriple(ar, s); }
Archive& operator>>(Archive& ar, Scale3& s) { return LoadTriple(ar, s); }

Archive& operator<<(Archive& ar, const Line3& l) { return ar << l.dir << l.org << l.tol; }

Archive& operator>>(Archive& ar, Line3& l) {
    Vector3 dir;
    Point3 org;
    double tol = 0.0;  // mutate: off (read at once)
    ar >> dir >> org >> tol;
    l.tol = tol;
    l.set(org, dir);  // unchecked: validity is decided on first use
    return ar;
}

Archive& operator<<(Archive& ar, const Plane3& pl) { return ar << pl.n << pl.d; }

Archive& operator>>(Archive& ar, Plane3& pl) {
    Vector3 n;
    double d = 0.0;
    ar >> n >> d;
    pl.set(n, d);
    return ar;
}

Archive& operator<<(Archive& ar, const Sector3& s) { return ar << s.beg << s.end; }

Archive& operator>>(Archive& ar, Sector3& s) {
    Point3 b, e;
    ar >> b >> e;
    s.set(b, e);
    return ar;
}

Archive& operator<<(Archive& ar, const Arc3& a) { return ar << a.beg << a.mid << a.end << a.tol; }

Archive& operator>>(Archive& ar, Arc3& a) {
    Point3 b, m, e;
    double tol = 0.0;  // mutate: off (read at once)
    ar >> b >> m >> e >> tol;
    a.Set(b, m, e, tol);
    return ar;
}

Archive& operator<<(Archive& ar, const Matrix3& m) {
    for (const auto& row : m.m) ar << row[0] << row[1] << row[2];
    return ar;
}

Archive& operator>>(Archive& ar, Matrix3& m) {
    Matrix3 r(_Undef_3D{});
    for (auto& row : r.m) ar >> row[0] >> row[1] >> row[2];
    m = r;
    return ar;
}

Archive& operator<<(Archive& ar, const Matrix4x3& m) {
    return ar << m.lin << m.t[0] << m.t[1] << m.t[2];
}

Archive& operator>>(Archive& ar, Matrix4x3& m) {
    Matrix4x3 r(_Undef_3D{});
    ar >> r.lin >> r.t[0] >> r.t[1] >> r.t[2];
    m = r;
    return ar;
}

Archive& operator<<(Archive& ar, const Rotate3_X& r) { return ar << r.sin << r.cos; }
Archive& operator>>(Archive& ar, Rotate3_X& r) { return LoadRotation(ar, r); }
Archive& operator<<(Archive& ar, const Rotate3_Y& r) { return ar << r.sin << r.cos; }
Archive& operator>>(Archive& ar, Rotate3_Y& r) { return LoadRotation(ar, r); }
Archive& operator<<(Archive& ar, const Rotate3_Z& r) { return ar << r.sin << r.cos; }
Archive& operator>>(Archive& ar, Rotate3_Z& r) { return LoadRotation(ar, r); }

Archive& operator<<(Archive& ar, const Translate3& t) { return ar << t.vec; }

Archive& operator>>(Archive& ar, Translate3& t) {
    Vector3 v;
    ar >> v;
    t.vec = v;
    return ar;
}

Archive& operator<<(Archive& ar, const LocalPlane& f) {
    ar << static_cast<const Matrix4x3&>(f);
    return StoreFlag(ar, f.defined) << f.tol;
}

Archive& operator>>(Archive& ar, LocalPlane& f) {
    Matrix4x3 m;
    double tol = 0.0;  // mutate: off (read at once)
    ar >> m;
    const bool defined = LoadFlag(ar);
    ar >> tol;
    f = Isometry3(m);
    f.defined = defined;
    f.tol = tol;
    return ar;
}

Archive& operator<<(Archive& ar, const LocalCoordSystem& s) {
    ar << s.origin << s.x << s.y << s.z;
    return StoreFlag(ar, s.defined) << s.tol;
}

Archive& operator>>(Archive& ar, LocalCoordSystem& s) {
    LocalCoordSystem r;
    ar >> r.origin >> r.x >> r.y >> r.z;
    r.defined = LoadFlag(ar);
    ar >> r.tol;
    s = r;
    return ar;
}

Archive& operator<<(Archive& ar, const LocalPlaneYPR& f) {
    return ar << f.origin << f.yaw << f.pitch << f.roll;
}

Archive& operator>>(Archive& ar, LocalPlaneYPR& f) {
    LocalPlaneYPR r;
    ar >> r.origin >> r.yaw >> r.pitch >> r.roll;
    f = r;
    return ar;
}

}  // namespace quillon
