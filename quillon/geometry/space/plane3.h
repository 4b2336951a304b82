// Planes of space: n·x + d = 0 with a normal n that is not normalised.
//
// Validity is lazy as for Line3: every set leaves the state 0 and the root unknown; the first query
// stores `norm2` = n·n and the state (1 valid, -1 degenerate when n·n < 1e-20), and `norm` = |n| is
// taken at most once per change. The caches are mutable: one Plane3 must not be queried from two
// threads at once. A plane has no tolerance of its own; its tests use 1e-10 (Plane3::eps).
//
// Positive signed distances lie on the side the normal points to. Operations on a degenerate plane
// answer 0, false or a zero point; nothing throws.
#pragma once

#include <utility>

#include "quillon/geometry/space/line3.h"
#include "quillon/geometry/space/vector3.h"

namespace quillon {

class Plane3 {
public:
    static constexpr double eps = 1e-10;

    // Kept in this order: normal, offset, squared norm, norm, state, root flag.
    Vector3 n;
    double d = 0.0;
    mutable double norm2 = 0.0;  // n·n, valid once state != 0
    mutable double norm = 0.0;   // √norm2, valid only when root_known
    mutable signed char state = -1;
    mutable bool root_known = false;

    // Degenerate.
    Plane3() = default;
    Plane3(const Point3& p, const Vector3& normal) { set(p, normal); }
    Plane3(const Point3& p, const Vector3& u, const Vector3& v) { set(p, u, v); }
    Plane3(const Point3& p1, const Point3& p2, const Point3& p3) { set(p1, p2, p3); }
    Plane3(const Point3& p1, const Point3& p2, const Vector3& v) { set(p1, p2, v); }
    Plane3(const Vector3& normal, double offset) { set(normal, offset); }

    // Through p with the given normal: d = −p·n.
    Plane3& set(const Point3& p, const Vector3& normal);
    // Through p spanned by u and v: normal u × v.
    Plane3& set(const Point3& p, const Vector3& u, const Vector3& v) { return set(p, u % v); }
    Plane3& set(const Point3& p1, const Point3& p2, const Point3& p3) {
        return set(p1, p2 - p1, p3 - p1);
    }
    Plane3& set(const Point3& p1, const Point3& p2, const Vector3& v) {
        return set(p1, p2 - p1, v);
    }
    // The coefficients themselves.
    Plane3& set(const Vector3& normal, double offset);
    Plane3& set();  // degenerate
    // Sets the state explicitly (the root becomes unknown).
    Plane3& reset(signed char s);

    bool is_plane() const;
    explicit operator bool() const { return is_plane(); }

    const Vector3& normal() const { return n; }
    double denom_2() const;
    double denom_s() const;  // |n|, taken once; 0 when degenerate

    // Divides n by |n| and sets both caches to 1, leaving d as it was: the offset is deliberately
    // not rescaled, so the plane moves unless |n| was already 1. Nothing happens for a degenerate
    // plane or when |n| is exactly 1.
    Plane3& set_normalize();
    Plane3 get_normalize() const { return Plane3(*this).set_normalize(); }
    // The same plane facing the other way (n and d negated; the caches stay valid).
    Plane3& set_reverse();
    Plane3 get_reverse() const { return Plane3(*this).set_reverse(); }

    // False for a degenerate plane; else the normal and the foot of the origin, (−d / n·n)·n.
    bool get(Vector3* normal, Point3* p) const;
    // The normal and d (always true; null pointers are skipped).
    bool get(Vector3* normal, double* offset) const;

    // -1 below, 1 above, 0 within 1e-10 (or a degenerate plane). With the root cached s = n·p + d
    // is compared with |n|·1e-10; otherwise s·|s| is compared with n·n·1e-20 so that no square
    // root is taken. The two branches agree.
    int side(const Point3& p) const;
    double signed_distance(const Point3& p) const;
    double distance(const Point3& p) const;
    double signed_distance2(const Point3& p) const;  // squared, carrying the sign
    double distance2(const Point3& p) const;

    // The foot of the perpendicular from p; false for a degenerate plane.
    std::pair<Point3, bool> projection(const Point3& p) const;
    // Where the line through p along dir meets the plane, as Line3::intersection.
    std::pair<Point3, bool> projection(const Vector3& dir, const Point3& p) const;
    // The line's perpendicular projection (its tolerance kept); false when either is degenerate or
    // the line is perpendicular to the plane.
    std::pair<Line3, bool> projection(const Line3& l) const;

    std::pair<Point3, bool> intersection(const Line3& l) const { return l.intersection(*this); }
    // Both valid, the line parallel within e and its origin closer than e to the plane (e < 0:
    // 1e-10).
    bool contains(const Line3& l, double e = -1.0) const;

    // The common line: direction n̂1 × n̂2, origin the point of the line nearest to the global
    // origin (found in the plane of the two normals as the meeting point of the traces), default
    // tolerance. (degenerate line, false) when |n̂1 × n̂2|² < 1e-20 or either plane is degenerate.
    std::pair<Line3, bool> intersection(const Plane3& pl) const;
    // The common line by Cramer's rule: direction n × m (not normalised); the coordinate whose
    // 2×2 determinant of the two normals is smallest is set to 0 (ties prefer keeping xy, then
    // xz, then yz) and the other two solved. (degenerate line, false) when |n × m| < e (e < 0:
    // 1e-10). Its origin differs from that of `intersection`: compare lines by their points, not
    // by their origins.
    std::pair<Line3, bool> intersectionEx(const Plane3& pl, double e = -1.0) const;

private:
    double value(const Point3& p) const { return n.x * p.x + n.y * p.y + n.z * p.z + d; }
    void unchecked() {
        state = 0;
        root_known = false;
    }
};

}  // namespace quillon
