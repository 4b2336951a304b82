// Infinite lines, rays and finite segments of the plane.
//
// A Line2 is a·x + b·y + c = 0. Built from P1 -> P2 it has a = dy, b = -dx, so its direction is
// (-b, a) = P2 - P1 and its normal (a, b) is the direction turned clockwise. The value a·x + b·y +
// c and every signed distance are therefore NEGATIVE LEFT of the direction and positive right of
// it; side tests, offsets and bisectors all rely on this.
//
// Validity is decided lazily: every coefficient change leaves `state` 0 (unchecked) and the norm
// unknown; the first query that needs them stores `state` (1 valid, -1 degenerate), `norm2` and
// `norm`. Those queries are const, so the caches are mutable and one Line2 must not be queried from
// two threads at once.
//
// Tolerances are absolute lengths (default Line2::eps = 1e-10; a negative tolerance asks for the
// default) except where a function says otherwise. Nothing here throws: failures come back as a
// false flag, an invalid state or 0.0.
#pragma once

#include <utility>

#include "quillon/geometry/plane/vector2.h"

namespace quillon {

class Archive;
class Sector2;

class Line2 {
public:
    static constexpr double eps = 1e-10;

    double a = 0.0;
    double b = 0.0;
    double c = 0.0;
    mutable double norm2 = 0.0;  // a² + b², valid once state != 0
    mutable double norm = 0.0;   // √norm2, valid only when norm_known
    mutable signed char state = -1;
    mutable bool norm_known = false;

    Line2() = default;
    Line2(const Point2& p1, const Point2& p2) { set(p1, p2); }
    Line2(const Point2& p1, const Point2& p2, double offset) { set(p1, p2, offset); }
    Line2(const Point2& p, const Vector2& v) { set(p, v); }
    Line2(const Point2& p, const Vector2& v, double offset) { set(p, v, offset); }
    Line2(const Point2& p, double angle) { set(p, angle); }
    Line2(const Point2& p, double angle, double offset) { set(p, angle, offset); }
    Line2(double la, double lb, double lc) { set(la, lb, lc); }

    Line2& set(const Point2& p1, const Point2& p2);
    // A positive offset moves the line to the left of its direction.
    Line2& set(const Point2& p1, const Point2& p2, double offset);
    Line2& set(const Point2& p, const Vector2& v);
    Line2& set(const Point2& p, const Vector2& v, double offset);
    // Angle forms build a normalised line and mark it valid at once.
    Line2& set(const Point2& p, double angle);
    Line2& set(const Point2& p, double angle, double offset);
    Line2& set(double la, double lb, double lc);
    Line2& set();  // unset: state -1

    bool is_line() const;
    explicit operator bool() const { return is_line(); }

    // Computes and caches the norm (first call after a change); 0.0 for an invalid line.
    double _dsqrt() const;

    double get_a() const { return a; }
    double get_b() const { return b; }
    double get_c() const { return c; }
    void get_abc(double& ra, double& rb, double& rc) const {
        ra = a;
        rb = b;
        rc = c;
    }
    Vector2 direction() const { return {-b, a}; }
    double angle() const { return direction().angle(); }

    Line2& set_normalize();
    Line2 get_normalize() const { return Line2(*this).set_normalize(); }
    // Parallel through p, same direction.
    Line2& set_parallel(const Point2& p);
    Line2 get_parallel(const Point2& p) const { return Line2(*this).set_parallel(p); }
    // Perpendicular through p; the direction turns counter-clockwise by 90°.
    Line2& set_perpendicular(const Point2& p);
    Line2 get_perpendicular(const Point2& p) const { return Line2(*this).set_perpendicular(p); }
    Line2& set_reverse();
    Line2 get_reverse() const { return Line2(*this).set_reverse(); }
    // sum: bisector of the angle between the two directions; difference: of its supplement.
    Line2& set_bisector(const Line2& l, bool sum);
    Line2 get_bisector(const Line2& l, bool sum) const { return Line2(*this).set_bisector(l, sum); }

    double signed_distance(const Point2& p) const;
    double distance(const Point2& p) const;
    double signed_distance2(const Point2& p) const;  // squared, carrying the sign
    double distance2(const Point2& p) const;

    // -1 left of the direction, 1 right, 0 within tol of the line (or an invalid line). Needs no
    // square root while the norm is unknown.
    int side(const Point2& p, double tol = -1.0) const;

    std::pair<Point2, bool> projection(const Point2& p) const;
    // The point of the line straight above or below p; fails for a vertical line (b == 0.0).
    std::pair<Point2, bool> vprojection(const Point2& p) const;
    // The tolerance bounds the raw determinant a1·b2 - a2·b1 (the sine of the angle between the
    // lines only when both are normalised).
    std::pair<Point2, bool> intersection(const Line2& l, double tol = -1.0) const;
    // Whether the segment's ends lie on different sides; strict excludes touching. Always false for
    // a degenerate line.
    bool intersection(const Sector2& s, bool strict = false, double tol = -1.0) const;
    // Raw coefficient comparison: opposite normalised lines are not colinear; normalise first.
    bool isColinear(const Line2& l, double tol = -1.0) const;

private:
    double value(const Point2& p) const { return a * p.x + b * p.y + c; }
    void unchecked() {
        state = 0;
        norm_known = false;
    }
};

class Ray2 {
public:
    Ray2() = default;
    Ray2(const Point2& p, const Vector2& v) { set(p, v); }
    Ray2(const Point2& p, const Point2& q) { set(p, q); }
    Ray2(const Point2& p, double angle) { set(p, angle); }
    Ray2(const Point2& p, double s, double c) { set(p, s, c); }

    Ray2& set(const Point2& p, const Vector2& v);
    Ray2& set(const Point2& p, const Point2& q);
    Ray2& set(const Point2& p, double angle);
    // Direction given by its sine and cosine (not an offset, unlike Line2's three-argument form).
    Ray2& set(const Point2& p, double s, double c);

    bool is_ray() const { return ln.is_line(); }
    explicit operator bool() const { return is_ray(); }
    const Line2& line() const { return ln; }
    const Point2& start() const { return org; }
    // Moves the start, keeping the direction.
    Ray2& start(const Point2& p);
    Vector2 direction() const { return ln.direction(); }
    double angle() const { return ln.angle(); }
    Ray2& set_move(const Vector2& v);
    Ray2 get_move(const Vector2& v) const { return Ray2(*this).set_move(v); }
    Ray2& set_reverse() {
        ln.set_reverse();
        return *this;
    }
    Ray2 get_reverse() const { return Ray2(*this).set_reverse(); }

    // The foot is returned in either case; the flag is false when it lies behind the start.
    std::pair<Point2, bool> projection(const Point2& p) const;
    std::pair<Point2, bool> intersection(const Line2& l) const;
    // Succeeds only when the crossing lies on this ray AND is exactly the other ray's start: kept,
    // callers use it to chain rays end to start.
    std::pair<Point2, bool> intersection(const Ray2& r) const;

private:
    friend Archive& operator>>(Archive& ar, Ray2& r);

    Line2 ln;
    Point2 org;
};

// A finite segment from begin to end; its line is rebuilt whenever an end changes.
class Sector2 {
public:
    Sector2() = default;
    Sector2(const Point2& p, const Point2& q) { set(p, q); }
    Sector2(const Point2& p, double angle, double length) { set(p, angle, length); }

    Sector2& set(const Point2& p, const Point2& q);
    Sector2& set(const Point2& p, double angle, double length);
    Sector2& set_beg(const Point2& p);
    Sector2& set_end(const Point2& q);
    Sector2& set_reverse();
    Sector2 get_reverse() const { return Sector2(*this).set_reverse(); }
    Sector2& set_move(const Vector2& v);
    Sector2 get_move(const Vector2& v) const { return Sector2(*this).set_move(v); }

    const Point2& get_beg() const { return beg; }
    const Point2& get_end() const { return end; }
    const Line2& line() const { return ln; }
    bool has_length() const { return ln.is_line(); }

    // The foot is returned in either case; the flag is false outside the closed segment.
    std::pair<Point2, bool> projection(const Point2& p) const;
    // An end point within tol counts as contained unless exclude_ends.
    bool contains(const Point2& p, double tol = -1.0, bool exclude_ends = false) const;
    // Range test against -tol.
    std::pair<Point2, bool> intersection(const Line2& l, double tol = -1.0) const;
    // Range test against -tol² on both segments (kept apart from the line form on purpose).
    std::pair<Point2, bool> intersection(const Sector2& s, double tol) const;
    // tol = 0: shared end points count, exactly.
    std::pair<Point2, bool> intersection(const Sector2& s) const { return intersection(s, 0.0); }
    std::pair<Point2, bool> intersection(const Ray2& r) const;

private:
    friend Archive& operator>>(Archive& ar, Sector2& s);

    Line2 ln;
    Point2 beg;
    Point2 end;
};

// True when two of the points are closer than tol, or the third lies within tol of the longest
// side.
bool Collinear(const Point2& p, const Point2& q, const Point2& r, double tol = -1.0);

}  // namespace quillon
