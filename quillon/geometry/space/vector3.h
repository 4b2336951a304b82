// Points, vectors and bare coordinate triples of space.
//
// The three types share one layout (three doubles x, y, z) and differ only in meaning: a Point3 is
// a position, a Vector3 a displacement, a Node3 a bare triple. Each can be viewed as either of the
// others in place (`pnt()`, `vec()`, `nod()`), and a point's or vector's first two and last two
// coordinates can be viewed in place as the plane types (`pnt_xy`, `pnt_yz`, `vec_xy`, `vec_yz`);
// the other coordinate pairs come back as copies, since they are not adjacent in memory. That is
// why the types are kept standard-layout with exactly three doubles and nothing else, and are
// declared `may_alias` like the plane types (see vector2.h).
//
// `Vector3::operator*` is the dot product and `operator%` the cross product, as in the plane.
// Nothing here throws; a zero vector normalises to itself.
#pragma once

#include <cmath>
#include <type_traits>

#include "quillon/geometry/plane/vector2.h"

namespace quillon {

struct Point3;
struct Vector3;
struct Node3;

struct QUILLON_VIEW_TYPE Point3 {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;

    static const Point3 _OO;  // the origin

    constexpr Point3() = default;
    constexpr Point3(double px, double py, double pz) : x(px), y(py), z(pz) {}
    // A plane point lifted to z = 0.
    constexpr explicit Point3(const Point2& p) : x(p.x), y(p.y), z(0.0) {}
    // Three floats; a null array gives the origin.
    explicit Point3(const float* f) {
        if (f != nullptr) set(f[0], f[1], f[2]);
    }

    double* tab() { return &x; }
    const double* tab() const { return &x; }
    Point3& set(double px, double py, double pz) {
        x = px;
        y = py;
        z = pz;
        return *this;
    }
    Point3& zero() { return set(0.0, 0.0, 0.0); }
    Point3& copy(const Point3& o) { return set(o.x, o.y, o.z); }
    Point3& copy(const Vector3& o);
    Point3& copy(const Node3& o);
    // Writes the coordinates as three floats (nothing for a null target).
    void CopyTo(float* f) const {
        if (f == nullptr) return;
        f[0] = static_cast<float>(x);
        f[1] = static_cast<float>(y);
        f[2] = static_cast<float>(z);
    }

    // In-place views of (x, y) and (y, z); copies of the other pairs.
    Point2& pnt_xy() { return reinterpret_cast<Point2&>(x); }
    const Point2& pnt_xy() const { return reinterpret_cast<const Point2&>(x); }
    Point2& pnt_yz() { return reinterpret_cast<Point2&>(y); }
    const Point2& pnt_yz() const { return reinterpret_cast<const Point2&>(y); }
    Point2 pnt_xz() const { return {x, z}; }
    Point2 pnt_yx() const { return {y, x}; }
    Point2 pnt_zx() const { return {z, x}; }
    Point2 pnt_zy() const { return {z, y}; }

    Point3& pnt() { return *this; }
    const Point3& pnt() const { return *this; }
    Vector3& vec();
    const Vector3& vec() const;
    Node3& nod();
    const Node3& nod() const;

    double distance() const { return std::sqrt(x * x + y * y + z * z); }
    double distance(const Point3& p) const { return std::sqrt(distance2(p)); }
    double distance2(const Point3& p) const {
        const double dx = p.x - x, dy = p.y - y, dz = p.z - z;
        return dx * dx + dy * dy + dz * dz;
    }

    Point3 operator+() const { return *this; }
    Point3 operator-() const { return {-x, -y, -z}; }
    Point3& operator+=(const Vector3& v);
    Point3& operator-=(const Vector3& v);
    Point3& operator*=(double s) { return set(x * s, y * s, z * s); }
    Point3& operator/=(double s) { return set(x / s, y / s, z / s); }
};

struct QUILLON_VIEW_TYPE Vector3 {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;

    static const Vector3 _OO;  // the zero vector
    static const Vector3 _Ox;  // unit +x
    static const Vector3 _Oy;  // unit +y
    static const Vector3 _Oz;  // unit +z

    constexpr Vector3() = default;
    constexpr Vector3(double vx, double vy, double vz) : x(vx), y(vy), z(vz) {}
    constexpr explicit Vector3(const Vector2& v) : x(v.x), y(v.y), z(0.0) {}
    explicit Vector3(const float* f) {
        if (f != nullptr) set(f[0], f[1], f[2]);
    }
    // q - p: the displacement from p to q.
    Vector3(const Point3& p, const Point3& q) : x(q.x - p.x), y(q.y - p.y), z(q.z - p.z) {}

    double* tab() { return &x; }
    const double* tab() const { return &x; }
    Vector3& set(double vx, double vy, double vz) {
        x = vx;
        y = vy;
        z = vz;
        return *this;
    }
    Vector3& set(const Point3& p, const Point3& q) { return set(q.x - p.x, q.y - p.y, q.z - p.z); }
    Vector3& zero() { return set(0.0, 0.0, 0.0); }
    Vector3& copy(const Vector3& o) { return set(o.x, o.y, o.z); }
    Vector3& copy(const Point3& o) { return set(o.x, o.y, o.z); }
    Vector3& copy(const Node3& o);
    void CopyTo(float* f) const {
        if (f == nullptr) return;
        f[0] = static_cast<float>(x);
        f[1] = static_cast<float>(y);
        f[2] = static_cast<float>(z);
    }

    Vector2& vec_xy() { return reinterpret_cast<Vector2&>(x); }
    const Vector2& vec_xy() const { return reinterpret_cast<const Vector2&>(x); }
    Vector2& vec_yz() { return reinterpret_cast<Vector2&>(y); }
    const Vector2& vec_yz() const { return reinterpret_cast<const Vector2&>(y); }
    Vector2 vec_xz() const { return {x, z}; }
    Vector2 vec_yx() const { return {y, x}; }
    Vector2 vec_zx() const { return {z, x}; }
    Vector2 vec_zy() const { return {z, y}; }

    Point3& pnt() { return reinterpret_cast<Point3&>(*this); }
    const Point3& pnt() const { return reinterpret_cast<const Point3&>(*this); }
    Vector3& vec() { return *this; }
    const Vector3& vec() const { return *this; }
    Node3& nod();
    const Node3& nod() const;

    double length() const { return std::sqrt(length2()); }
    double length2() const { return x * x + y * y + z * z; }

    // Divides by the length in place; a vector of length exactly 0.0 is left as it is.
    Vector3& normalize() {
        const double l = length();
        if (l != 0.0) set(x / l, y / l, z / l);
        return *this;
    }
    Vector3 get_normalized() const { return Vector3(*this).normalize(); }

    // The unsigned angle to w in [0, pi], taken as atan2(|v × w|, v · w) so that nearly parallel
    // vectors keep their precision; 0 when either vector is zero.
    double angle(const Vector3& w) const {
        const double cx = y * w.z - z * w.y, cy = z * w.x - x * w.z, cz = x * w.y - y * w.x;
        return std::atan2(std::sqrt(cx * cx + cy * cy + cz * cz), x * w.x + y * w.y + z * w.z);
    }

    double operator*(const Vector3& w) const { return x * w.x + y * w.y + z * w.z; }  // dot
    Vector3 operator%(const Vector3& w) const {                                       // cross
        return {y * w.z - z * w.y, z * w.x - x * w.z, x * w.y - y * w.x};
    }
    Vector3 operator*(double s) const { return {x * s, y * s, z * s}; }
    Vector3 operator/(double s) const { return {x / s, y / s, z / s}; }
    Vector3 operator+(const Vector3& w) const { return {x + w.x, y + w.y, z + w.z}; }
    Vector3 operator-(const Vector3& w) const { return {x - w.x, y - w.y, z - w.z}; }
    Vector3 operator+() const { return *this; }
    Vector3 operator-() const { return {-x, -y, -z}; }
    Vector3& operator+=(const Vector3& w) { return set(x + w.x, y + w.y, z + w.z); }
    Vector3& operator-=(const Vector3& w) { return set(x - w.x, y - w.y, z - w.z); }
    Vector3& operator%=(const Vector3& w) { return *this = *this % w; }
    Vector3& operator*=(double s) { return set(x * s, y * s, z * s); }
    Vector3& operator/=(double s) { return set(x / s, y / s, z / s); }
};

struct QUILLON_VIEW_TYPE Node3 {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;

    constexpr Node3() = default;
    constexpr Node3(double nx, double ny, double nz) : x(nx), y(ny), z(nz) {}

    double* tab() { return &x; }
    const double* tab() const { return &x; }
    Node3& set(double nx, double ny, double nz) {
        x = nx;
        y = ny;
        z = nz;
        return *this;
    }
    Node3& zero() { return set(0.0, 0.0, 0.0); }
    Node3& copy(const Node3& o) { return set(o.x, o.y, o.z); }
    Node3& copy(const Point3& o) { return set(o.x, o.y, o.z); }
    Node3& copy(const Vector3& o) { return set(o.x, o.y, o.z); }

    Point3& pnt() { return reinterpret_cast<Point3&>(*this); }
    const Point3& pnt() const { return reinterpret_cast<const Point3&>(*this); }
    Vector3& vec() { return reinterpret_cast<Vector3&>(*this); }
    const Vector3& vec() const { return reinterpret_cast<const Vector3&>(*this); }
    Node3& nod() { return *this; }
    const Node3& nod() const { return *this; }

    double length() const { return std::sqrt(length2()); }
    double length2() const { return x * x + y * y + z * z; }
    double distance(const Node3& p) const { return std::sqrt(distance2(p)); }
    double distance2(const Node3& p) const {
        const double dx = p.x - x, dy = p.y - y, dz = p.z - z;
        return dx * dx + dy * dy + dz * dz;
    }

    Node3 operator+(const Node3& w) const { return {x + w.x, y + w.y, z + w.z}; }
    Node3 operator-(const Node3& w) const { return {x - w.x, y - w.y, z - w.z}; }
    Node3 operator*(double s) const { return {x * s, y * s, z * s}; }
    Node3 operator/(double s) const { return {x / s, y / s, z / s}; }
    Node3 operator+() const { return *this; }
    Node3 operator-() const { return {-x, -y, -z}; }
    Node3& operator+=(const Node3& w) { return set(x + w.x, y + w.y, z + w.z); }
    Node3& operator-=(const Node3& w) { return set(x - w.x, y - w.y, z - w.z); }
    Node3& operator*=(double s) { return set(x * s, y * s, z * s); }
    Node3& operator/=(double s) { return set(x / s, y / s, z / s); }
};

// The in-place views rely on identical layouts, and on two adjacent doubles being a Point2.
static_assert(std::is_standard_layout_v<Point3> && std::is_standard_layout_v<Vector3> &&
              std::is_standard_layout_v<Node3>);
static_assert(sizeof(Point3) == 3 * sizeof(double) && sizeof(Vector3) == sizeof(Point3) &&
              sizeof(Node3) == sizeof(Point3));

inline const Point3 Point3::_OO{0.0, 0.0, 0.0};
inline const Vector3 Vector3::_OO{0.0, 0.0, 0.0};
inline const Vector3 Vector3::_Ox{1.0, 0.0, 0.0};
inline const Vector3 Vector3::_Oy{0.0, 1.0, 0.0};
inline const Vector3 Vector3::_Oz{0.0, 0.0, 1.0};

inline Point3& Point3::copy(const Vector3& o) { return set(o.x, o.y, o.z); }
inline Point3& Point3::copy(const Node3& o) { return set(o.x, o.y, o.z); }
inline Vector3& Point3::vec() { return reinterpret_cast<Vector3&>(*this); }
inline const Vector3& Point3::vec() const { return reinterpret_cast<const Vector3&>(*this); }
inline Node3& Point3::nod() { return reinterpret_cast<Node3&>(*this); }
inline const Node3& Point3::nod() const { return reinterpret_cast<const Node3&>(*this); }
inline Point3& Point3::operator+=(const Vector3& v) { return set(x + v.x, y + v.y, z + v.z); }
inline Point3& Point3::operator-=(const Vector3& v) { return set(x - v.x, y - v.y, z - v.z); }

inline Vector3& Vector3::copy(const Node3& o) { return set(o.x, o.y, o.z); }
inline Node3& Vector3::nod() { return reinterpret_cast<Node3&>(*this); }
inline const Node3& Vector3::nod() const { return reinterpret_cast<const Node3&>(*this); }

inline Vector3 operator-(const Point3& p, const Point3& q) {
    return {p.x - q.x, p.y - q.y, p.z - q.z};
}
inline Point3 operator+(const Point3& p, const Vector3& v) {
    return {p.x + v.x, p.y + v.y, p.z + v.z};
}
inline Point3 operator-(const Point3& p, const Vector3& v) {
    return {p.x - v.x, p.y - v.y, p.z - v.z};
}
// Sums and scalings of points serve barycentric forms such as the midpoint (p + q) / 2.
inline Point3 operator+(const Point3& p, const Point3& q) {
    return {p.x + q.x, p.y + q.y, p.z + q.z};
}
inline Point3 operator*(const Point3& p, double s) { return {p.x * s, p.y * s, p.z * s}; }
inline Point3 operator*(double s, const Point3& p) { return {p.x * s, p.y * s, p.z * s}; }
inline Point3 operator/(const Point3& p, double s) { return {p.x / s, p.y / s, p.z / s}; }
inline Vector3 operator*(double s, const Vector3& v) { return {v.x * s, v.y * s, v.z * s}; }
inline Node3 operator*(double s, const Node3& v) { return {v.x * s, v.y * s, v.z * s}; }

// Writes a + t (b - a) into *out (when out is not null) and returns it.
inline Point3 Between(const Point3& a, const Point3& b, double t, Point3* out) {
    const Point3 r{a.x + t * (b.x - a.x), a.y + t * (b.y - a.y), a.z + t * (b.z - a.z)};
    if (out != nullptr) *out = r;
    return r;
}

}  // namespace quillon
