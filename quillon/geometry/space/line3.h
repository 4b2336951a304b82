// Infinite lines of space.
//
// A Line3 is an origin and a direction that is not normalised. Validity is decided lazily: every
// mutator leaves the state 0 (unchecked) and the root unknown; the first query that needs them
// stores `len2` (the squared length of the direction) and the state (1 valid, -1 degenerate: the
// direction is shorter than the line's tolerance), and `len` (its root) is taken at most once per
// change. Those queries are const, so the caches are mutable and one Line3 must not be queried from
// two threads at once.
//
// Each line carries its own tolerance `tol`; a negative one means Line3::eps (1e-10). Operations on
// a degenerate line answer 0, false or a zero point; nothing throws.
#pragma once

#include <utility>

#include "quillon/geometry/plane/line2.h"
#include "quillon/geometry/space/vector3.h"

namespace quillon {

class Plane3;

class Line3 {
public:
    static constexpr double eps = 1e-10;

    // Kept in this order: direction, origin, squared length, root, state, root flag, tolerance.
    Vector3 dir;
    Point3 org;
    mutable double len2 = 0.0;  // dir·dir, valid once state != 0
    mutable double len = 0.0;   // √len2, valid only when root_known
    mutable signed char state = -1;
    mutable bool root_known = false;
    double tol = -1.0;

    // Degenerate.
    Line3() = default;
    explicit Line3(double t) : tol(t) {}
    // From p1 towards p2: direction p2 - p1, origin p1.
    Line3(const Point3& p1, const Point3& p2, double t = -1.0) : tol(t) { set(p1, p2); }
    Line3(const Point3& p, const Vector3& v, double t = -1.0) : tol(t) { set(p, v); }

    // The set forms keep the line's tolerance and leave it unchecked; set() makes it degenerate.
    Line3& set(const Point3& p1, const Point3& p2) { return set(p1, p2 - p1); }
    Line3& set(const Point3& p, const Vector3& v);
    Line3& set();

    bool is_line() const;
    explicit operator bool() const { return is_line(); }
    // The squared length of the direction (after the check) and its root (0 when degenerate).
    double denom_2() const;
    double denom_s() const;
    double get_tol() const { return tol < 0.0 ? eps : tol; }

    const Point3& origin() const { return org; }
    const Vector3& direction() const { return dir; }
    // False (outputs untouched) for a degenerate line; null pointers are skipped.
    bool get(Point3* p, Vector3* v) const;
    // The projection onto z = 0 (x, y) or onto y = 0 (x, z) as a plane line through the projected
    // origin along the projected direction. False, and `out` unset, for a degenerate line; else
    // whether the projection is a line (it is not when this line is perpendicular to that plane).
    bool get_xy(Line2& out) const;
    bool get_xz(Line2& out) const;

    // Direction divided by its length; nothing changes for a degenerate line or one whose length
    // is already exactly 1.
    Line3& set_normalize();
    Line3 get_normalize() const { return Line3(*this).set_normalize(); }
    Line3& set_reverse();
    Line3 get_reverse() const { return Line3(*this).set_reverse(); }
    // Same direction through p.
    Line3& set_parallel(const Point3& p);
    Line3 get_parallel(const Point3& p) const { return Line3(*this).set_parallel(p); }

    // |(p − origin) × direction|² / len2 and its root; 0 for a degenerate line.
    double distance2(const Point3& p) const;
    double distance(const Point3& p) const;
    // The distance between two lines (squared, and its root); 0 when either is degenerate. Lines
    // whose directions make an angle with a sine below 1e-10 count as parallel: the distance is
    // then that of the other line's origin from this line. Otherwise it is measured along the
    // common normal, |(o2 − o1)·(d1 × d2)| / |d1 × d2|.
    double distance2(const Line3& l) const;
    double distance(const Line3& l) const;

    // The foot of the perpendicular from p; false (and a zero point) for a degenerate line.
    std::pair<Point3, bool> projection(const Point3& p) const;

    // False when either squared length is exactly 0; otherwise parallel when
    // e²·len2·|n|² > (direction·n)², e < 0 meaning 1e-10.
    bool is_parallel_to(const Plane3& pl, double e = -1.0) const;
    // (the meeting point, true) for a valid line and plane that are not parallel (tolerance 1e-10);
    // (the origin, false) when the line lies in the plane (squared distance of the origin below
    // 1e-20); ((0, 0, 0), false) when parallel and apart or when either is degenerate.
    std::pair<Point3, bool> intersection(const Plane3& pl) const;

private:
    void unchecked() {
        state = 0;
        root_known = false;
    }
};

}  // namespace quillon
