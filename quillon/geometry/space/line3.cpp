#include "quillon/geometry/space/line3.h"

#include <cmath>

#include "quillon/geometry/space/plane3.h"

namespace quillon {

namespace {

// Zero of squared quantities: squared distances, squared sines of unit directions.
constexpr double kZero2 = 1e-20;

}  // namespace

Line3& Line3::set(const Point3& p, const Vector3& v) {
    org = p;
    dir = v;
    unchecked();
    return *this;
}

Line3& Line3::set() { return *this = Line3(tol); }

bool Line3::is_line() const {
    if (state == 0) {
        len2 = dir * dir;
        const double e = get_tol();
        state = e * e > len2 || std::isnan(len2) ? -1 : 1;  // mutate: off (at the tolerance)
    }
    return state > 0;  // mutate: off (the state is -1 or 1 here)
}

double Line3::denom_2() const {
    is_line();
    return len2;
}

double Line3::denom_s() const {
    if (!is_line()) return 0.0;
    if (!root_known) {
        len = std::sqrt(len2);
        root_known = true;  // mutate: off (a cache flag: the root taken again is the same)
    }
    return len;
}

bool Line3::get(Point3* p, Vector3* v) const {
    if (!is_line()) return false;
    if (p != nullptr) *p = org;
    if (v != nullptr) *v = dir;
    return true;
}

bool Line3::get_xy(Line2& out) const {
    if (!is_line()) {
        out.set();
        return false;
    }
    out.set(org.pnt_xy(), dir.vec_xy());
    return out.is_line();
}

bool Line3::get_xz(Line2& out) const {
    if (!is_line()) {
        out.set();
        return false;
    }
    out.set(org.pnt_xz(), dir.vec_xz());
    return out.is_line();
}

Line3& Line3::set_normalize() {
    if (!is_line() || denom_s() == 1.0) return *this;
    dir /= len;
    len2 = len = 1.0;
    return *this;
}

Line3& Line3::set_reverse() {
    dir = -dir;
    return *this;
}

Line3& Line3::set_parallel(const Point3& p) {
    org = p;
    return *this;
}

double Line3::distance2(const Point3& p) const {
    if (!is_line()) return 0.0;
    return ((p - org) % dir).length2() / len2;
}

double Line3::distance(const Point3& p) const { return std::sqrt(distance2(p)); }

double Line3::distance2(const Line3& l) const {
    if (!is_line() || !l.is_line()) return 0.0;
    const Vector3 c = dir % l.dir;
    const double c2 = c.length2();
    if (!(c2 >= kZero2 * len2 * l.len2)) return distance2(l.org);
    const double w = (l.org - org) * c;
    return w * w / c2;
}

double Line3::distance(const Line3& l) const { return std::sqrt(distance2(l)); }

std::pair<Point3, bool> Line3::projection(const Point3& p) const {
    if (!is_line()) return {Point3(), false};
    return {org + dir * (((p - org) * dir) / len2), true};
}

bool Line3::is_parallel_to(const Plane3& pl, double e) const {
    if (e < 0.0) e = eps;
    // A zero direction or normal makes both sides zero below: not parallel.
    const double l2 = denom_2(), n2 = pl.denom_2();
    const double dn = dir * pl.normal();
    return e * e * l2 * n2 > dn * dn;
}

std::pair<Point3, bool> Line3::intersection(const Plane3& pl) const {
    if (!is_line() || !pl.is_plane()) return {Point3(), false};
    if (is_parallel_to(pl)) {
        // The line lies in the plane.
        if (pl.distance2(org) < kZero2) return {org, false};  // mutate: off (at the bound)
        return {Point3(), false};
    }
    const double t = -(pl.normal() * org.vec() + pl.d) / (pl.normal() * dir);
    return {org + dir * t, true};
}

}  // namespace quillon
