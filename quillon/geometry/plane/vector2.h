// Points, vectors and bare coordinate pairs of the plane.
//
// The three types share one layout (two doubles x, y) and differ only in meaning: a Point2 is a
// position, a Vector2 a displacement, a Node2 a bare pair (also used for pairs of scale factors).
// Each can be viewed as either of the others in place (`pnt()`, `vec()`, `nod()`), which is why
// they are kept standard-layout with exactly two doubles and nothing else.
//
// A view reads and writes one object through an lvalue of another of these types. Optimisers that
// assume differently named types never overlap would reorder or drop such accesses (gcc -O3 did,
// in the circle-line meeting points of space arcs), so the types are declared `may_alias`. MSVC
// never makes that assumption and needs nothing.
#pragma once

#include <cmath>
#include <numbers>
#include <type_traits>

#if defined(__GNUC__) || defined(__clang__)
#define QUILLON_VIEW_TYPE __attribute__((__may_alias__))
#else
#define QUILLON_VIEW_TYPE
#endif

namespace quillon {

struct Point2;
struct Vector2;
struct Node2;

// Polar angle of (x, y) in (-pi, pi]. The x == 0 branch and the |atan2| split make the signed zero
// of y irrelevant: (-1, -0.0) gives +pi, never -pi, and (0, -0.0) gives 0.
inline double PolarAngle2(double x, double y) {
    if (x == 0.0) {
        if (y == 0.0) return 0.0;
        return y < 0.0 ? -(std::numbers::pi / 2.0) : (std::numbers::pi / 2.0);
    }
    const double t = std::fabs(std::atan2(y, x));
    return y >= 0.0 ? t : -t;
}

struct QUILLON_VIEW_TYPE Point2 {
    double x = 0.0;
    double y = 0.0;

    static const Point2 _OO;  // the origin

    constexpr Point2() = default;
    constexpr Point2(double px, double py) : x(px), y(py) {}

    double* tab() { return &x; }
    const double* tab() const { return &x; }
    Point2& set(double px, double py) {
        x = px;
        y = py;
        return *this;
    }
    Point2& zero() { return set(0.0, 0.0); }
    Point2& copy(const Point2& o) { return set(o.x, o.y); }
    Point2& copy(const Vector2& o);
    Point2& copy(const Node2& o);

    Point2& pnt() { return *this; }
    const Point2& pnt() const { return *this; }
    Vector2& vec();
    const Vector2& vec() const;
    Node2& nod();
    const Node2& nod() const;

    double distance() const { return std::hypot(x, y); }
    double distance(const Point2& p) const { return std::hypot(p.x - x, p.y - y); }
    double distance2(const Point2& p) const {
        const double dx = p.x - x, dy = p.y - y;
        return dx * dx + dy * dy;
    }

    Point2 operator+() const { return *this; }
    Point2 operator-() const { return {-x, -y}; }
    Point2& operator+=(const Vector2& v);
    Point2& operator-=(const Vector2& v);
    Point2& operator*=(double s) {
        x *= s;
        y *= s;
        return *this;
    }
    Point2& operator/=(double s) {
        x /= s;
        y /= s;
        return *this;
    }
};

struct QUILLON_VIEW_TYPE Vector2 {
    double x = 0.0;
    double y = 0.0;

    static const Vector2 _OO;  // the zero vector
    static const Vector2 _Ox;  // unit +x
    static const Vector2 _Oy;  // unit +y

    constexpr Vector2() = default;
    constexpr Vector2(double vx, double vy) : x(vx), y(vy) {}

    double* tab() { return &x; }
    const double* tab() const { return &x; }
    Vector2& set(double vx, double vy) {
        x = vx;
        y = vy;
        return *this;
    }
    // q - p: the displacement from p to q.
    Vector2& set(const Point2& p, const Point2& q);
    // (r cos angle, r sin angle)
    Vector2& set2(double r, double angle) { return set(r * std::cos(angle), r * std::sin(angle)); }
    Vector2& zero() { return set(0.0, 0.0); }
    Vector2& copy(const Vector2& o) { return set(o.x, o.y); }
    Vector2& copy(const Point2& o) { return set(o.x, o.y); }
    Vector2& copy(const Node2& o);

    Point2& pnt() { return reinterpret_cast<Point2&>(*this); }
    const Point2& pnt() const { return reinterpret_cast<const Point2&>(*this); }
    Vector2& vec() { return *this; }
    const Vector2& vec() const { return *this; }
    Node2& nod();
    const Node2& nod() const;

    double length() const { return std::hypot(x, y); }
    double length2() const { return x * x + y * y; }

    // Divides by the length; a vector of length exactly 0.0 is left as it is.
    Vector2& normalize() {
        const double l = length();
        if (l != 0.0) {
            x /= l;
            y /= l;
        }
        return *this;
    }
    Vector2 get_normalized() const { return Vector2(*this).normalize(); }

    // Polar angle in (-pi, pi]; see PolarAngle2 for the signed-zero rule.
    double angle() const { return PolarAngle2(x, y); }
    // The signed turn from this vector to w, in [-pi, pi].
    double angle(const Vector2& w) const {
        double d = w.angle() - angle();
        if (d > 3.141592653589793) {
            d -= 2.0 * std::numbers::pi;
        } else if (d < -3.141592653589793) {
            d += 2.0 * std::numbers::pi;
        }
        return d;
    }

    double operator*(const Vector2& w) const { return x * w.x + y * w.y; }  // dot product
    double operator%(const Vector2& w) const { return x * w.y - y * w.x; }  // cross product
    Vector2 operator*(double s) const { return {x * s, y * s}; }
    Vector2 operator/(double s) const { return {x / s, y / s}; }
    Vector2 operator+(const Vector2& w) const { return {x + w.x, y + w.y}; }
    Vector2 operator-(const Vector2& w) const { return {x - w.x, y - w.y}; }
    Vector2 operator+() const { return *this; }
    Vector2 operator-() const { return {-x, -y}; }
    Vector2& operator+=(const Vector2& w) { return set(x + w.x, y + w.y); }
    Vector2& operator-=(const Vector2& w) { return set(x - w.x, y - w.y); }
    Vector2& operator*=(double s) { return set(x * s, y * s); }
    Vector2& operator/=(double s) { return set(x / s, y / s); }
};

struct QUILLON_VIEW_TYPE Node2 {
    double x = 0.0;
    double y = 0.0;

    constexpr Node2() = default;
    constexpr Node2(double nx, double ny) : x(nx), y(ny) {}

    double* tab() { return &x; }
    const double* tab() const { return &x; }
    Node2& set(double nx, double ny) {
        x = nx;
        y = ny;
        return *this;
    }
    Node2& zero() { return set(0.0, 0.0); }
    Node2& copy(const Node2& o) { return set(o.x, o.y); }
    Node2& copy(const Point2& o) { return set(o.x, o.y); }
    Node2& copy(const Vector2& o) { return set(o.x, o.y); }

    Point2& pnt() { return reinterpret_cast<Point2&>(*this); }
    const Point2& pnt() const { return reinterpret_cast<const Point2&>(*this); }
    Vector2& vec() { return reinterpret_cast<Vector2&>(*this); }
    const Vector2& vec() const { return reinterpret_cast<const Vector2&>(*this); }
    Node2& nod() { return *this; }
    const Node2& nod() const { return *this; }

    double length() const { return std::hypot(x, y); }
    double distance() const { return std::hypot(x, y); }
    double distance(const Node2& p) const { return std::hypot(p.x - x, p.y - y); }
    double distance2(const Node2& p) const {
        const double dx = p.x - x, dy = p.y - y;
        return dx * dx + dy * dy;
    }
    double angle() const { return PolarAngle2(x, y); }

    Node2 operator+(const Node2& w) const { return {x + w.x, y + w.y}; }
    Node2 operator-(const Node2& w) const { return {x - w.x, y - w.y}; }
    Node2 operator*(double s) const { return {x * s, y * s}; }
    Node2 operator/(double s) const { return {x / s, y / s}; }
    Node2 operator+() const { return *this; }
    Node2 operator-() const { return {-x, -y}; }
    Node2& operator+=(const Node2& w) { return set(x + w.x, y + w.y); }
    Node2& operator-=(const Node2& w) { return set(x - w.x, y - w.y); }
    Node2& operator*=(double s) { return set(x * s, y * s); }
    Node2& operator/=(double s) { return set(x / s, y / s); }
};

// The in-place views rely on identical layouts.
static_assert(std::is_standard_layout_v<Point2> && std::is_standard_layout_v<Vector2> &&
              std::is_standard_layout_v<Node2>);
static_assert(sizeof(Point2) == 2 * sizeof(double) && sizeof(Vector2) == sizeof(Point2) &&
              sizeof(Node2) == sizeof(Point2));

inline const Point2 Point2::_OO{0.0, 0.0};
inline const Vector2 Vector2::_OO{0.0, 0.0};
inline const Vector2 Vector2::_Ox{1.0, 0.0};
inline const Vector2 Vector2::_Oy{0.0, 1.0};

inline Point2& Point2::copy(const Vector2& o) { return set(o.x, o.y); }
inline Point2& Point2::copy(const Node2& o) { return set(o.x, o.y); }
inline Vector2& Point2::vec() { return reinterpret_cast<Vector2&>(*this); }
inline const Vector2& Point2::vec() const { return reinterpret_cast<const Vector2&>(*this); }
inline Node2& Point2::nod() { return reinterpret_cast<Node2&>(*this); }
inline const Node2& Point2::nod() const { return reinterpret_cast<const Node2&>(*this); }
inline Point2& Point2::operator+=(const Vector2& v) { return set(x + v.x, y + v.y); }
inline Point2& Point2::operator-=(const Vector2& v) { return set(x - v.x, y - v.y); }

inline Vector2& Vector2::set(const Point2& p, const Point2& q) { return set(q.x - p.x, q.y - p.y); }
inline Vector2& Vector2::copy(const Node2& o) { return set(o.x, o.y); }
inline Node2& Vector2::nod() { return reinterpret_cast<Node2&>(*this); }
inline const Node2& Vector2::nod() const { return reinterpret_cast<const Node2&>(*this); }

inline Vector2 operator-(const Point2& p, const Point2& q) { return {p.x - q.x, p.y - q.y}; }
inline Point2 operator+(const Point2& p, const Vector2& v) { return {p.x + v.x, p.y + v.y}; }
inline Point2 operator-(const Point2& p, const Vector2& v) { return {p.x - v.x, p.y - v.y}; }
// Sums and scalings of points serve barycentric forms such as the midpoint (p + q) / 2.
inline Point2 operator+(const Point2& p, const Point2& q) { return {p.x + q.x, p.y + q.y}; }
inline Point2 operator*(const Point2& p, double s) { return {p.x * s, p.y * s}; }
inline Point2 operator*(double s, const Point2& p) { return {p.x * s, p.y * s}; }
inline Point2 operator/(const Point2& p, double s) { return {p.x / s, p.y / s}; }
inline Vector2 operator*(double s, const Vector2& v) { return {v.x * s, v.y * s}; }
inline Node2 operator*(double s, const Node2& v) { return {v.x * s, v.y * s}; }

// Writes p + t (q - p) into out and returns it.
inline Point2& Between(const Point2& p, const Point2& q, double t, Point2& out) {
    return out.set(p.x + t * (q.x - p.x), p.y + t * (q.y - p.y));
}
inline Node2& Between(const Node2& p, const Node2& q, double t, Node2& out) {
    return out.set(p.x + t * (q.x - p.x), p.y + t * (q.y - p.y));
}

inline double RS_Dist(const Point2& p, const Point2& q) { return p.distance(q); }
inline double RS_Dist(const Point2& p, const Node2& q) { return std::hypot(q.x - p.x, q.y - p.y); }
inline double RS_Dist(const Node2& p, const Point2& q) { return std::hypot(q.x - p.x, q.y - p.y); }
inline double RS_Dist(const Point2& p, double x, double y) { return std::hypot(x - p.x, y - p.y); }

}  // namespace quillon
