#include "quillon/geometry/plane/plane_archive.h"

#include <cstdint>

namespace quillon {

namespace {

template <typename T>
Archive& StorePair(Archive& ar, const T& p) {
    return ar << p.x << p.y;
}

template <typename T>
Archive& LoadPair(Archive& ar, T& p) {
    double x = 0.0, y = 0.0;  // mutate: off (overwritten by the read)
    ar >> x >> y;
    p.x = x;
    p.y = y;
    return ar;
}

}  // namespace

Archive& operator<<(Archive& ar, const Point2& p) { return StorePair(ar, p); }
Archive& operator>>(Archive& ar, Point2& p) { return LoadPair(ar, p); }
Archive& operator<<(Archive& ar, const Vector2& v) { return StorePair(ar, v); }
Archive& operator>>(Archive& ar, Vector2& v) { return LoadPair(ar, v); }
Archive& operator<<(Archive& ar, const Node2& n) { return StorePair(ar, n); }
Archive& operator>>(Archive& ar, Node2& n) { return LoadPair(ar, n); }
Archive& operator<<(Archive& ar, const Scale2& s) { return StorePair(ar, s); }
Archive& operator>>(Archive& ar, Scale2& s) { return LoadPair(ar, s); }

Archive& operator<<(Archive& ar, const Rect2& r) {
    // x2, x1, y2, y1: the order stored files have always had.
    return ar << r.pnt2().x << r.pnt1().x << r.pnt2().y << r.pnt1().y;
}

Archive& operator>>(Archive& ar, Rect2& r) {
    double x1 = 0.0, y1 = 0.0, x2 = 0.0, y2 = 0.0;  // mutate: off (each is read at once)
    ar >> x2 >> x1 >> y2 >> y1;
    r.set(Point2(x1, y1), Point2(x2, y2));
    return ar;
}

Archive& operator<<(Archive& ar, const Line2& l) {
    if (l.state == -1) return ar << std::int32_t{-1};
    // The tolerance travels with the line for readers that once used it; it is always 1e-10.
    return ar << std::int32_t{0} << l.a << l.b << l.c << Line2::eps;
}

Archive& operator>>(Archive& ar, Line2& l) {
    std::int32_t status = 0;
    ar >> status;
    if (status == -1) {
        l.set();
        return ar;
    }
    if (status != 0) throw ArchiveException(ArchiveException::badSchema, "bad line status");
    double a = 0.0, b = 0.0, c = 0.0, tol = 0.0;  // mutate: off (each is read at once)
    ar >> a >> b >> c >> tol;
    l.set(a, b, c);  // unchecked: validity is decided on first use
    return ar;
}

Archive& operator<<(Archive& ar, const Ray2& r) { return ar << r.line() << r.start(); }

Archive& operator>>(Archive& ar, Ray2& r) {
    Line2 l;
    Point2 p;
    ar >> l >> p;
    r.ln = l;
    r.org = p;
    return ar;
}

Archive& operator<<(Archive& ar, const Sector2& s) {
    return ar << s.line() << s.get_beg() << s.get_end();
}

Archive& operator>>(Archive& ar, Sector2& s) {
    Line2 l;
    Point2 p, q;
    ar >> l >> p >> q;
    s.ln = l;
    s.beg = p;
    s.end = q;
    return ar;
}

Archive& operator<<(Archive& ar, const Matrix2& m) {
    return ar << m.m[0][0] << m.m[0][1] << m.m[1][0] << m.m[1][1];
}

Archive& operator>>(Archive& ar, Matrix2& m) {
    Matrix2 r(_Undef_2D{});
    ar >> r.m[0][0] >> r.m[0][1] >> r.m[1][0] >> r.m[1][1];
    m = r;
    return ar;
}

Archive& operator<<(Archive& ar, const Matrix3x2& m) { return ar << m.lin << m.t[0] << m.t[1]; }

Archive& operator>>(Archive& ar, Matrix3x2& m) {
    Matrix3x2 r(_Undef_2D{});
    ar >> r.lin >> r.t[0] >> r.t[1];
    m = r;
    return ar;
}

Archive& operator<<(Archive& ar, const Rotate2& r) { return ar << r.sin << r.cos; }

Archive& operator>>(Archive& ar, Rotate2& r) {
    double s = 0.0, c = 0.0;  // mutate: off (overwritten by the read)
    ar >> s >> c;
    r.set(s, c);
    return ar;
}

Archive& operator<<(Archive& ar, const Translate2& t) { return ar << t.vec; }
Archive& operator>>(Archive& ar, Translate2& t) { return ar >> t.vec; }

}  // namespace quillon
