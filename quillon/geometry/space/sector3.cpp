#include "quillon/geometry/space/sector3.h"

#include <cmath>

#include "quillon/geometry/space/line3.h"
#include "quillon/geometry/space/plane3.h"

namespace quillon {

namespace {

constexpr double kDefaultTol = 1e-10;
constexpr double kZero2 = 1e-20;  // squared sine below which directions are parallel

}  // namespace

bool Sector3::contains(const Point3& p, double e, bool exclusive) const {
    if (e < 0.0) e = kDefaultTol;
    const double len = length();
    if (!(e <= len)) {
        if (exclusive) return false;
        return p.distance(beg) < e || p.distance(end) < e;
    }
    const Vector3 a = p - beg, b = end - p;
    if (!((a % b).length() / len < e)) return false;
    const double along = (a * b) / len;
    return exclusive ? along > e : along > -e;
}

double Sector3::distance(const Point3& p, double e, bool* interior, Point3* nearest) const {
    if (e < 0.0) e = kDefaultTol;
    if (interior != nullptr) *interior = false;
    const double len = length();
    Point3 q;
    if (e <= len && (p - beg) * (p - end) < -e) {
        const Vector3 d = end - beg;
        q = beg + d * (((p - beg) * d) / (len * len));
        if (interior != nullptr) *interior = true;
    } else {
        q = p.distance2(beg) < p.distance2(end) ? beg : end;
    }
    if (nearest != nullptr) *nearest = q;
    return p.distance(q);
}

std::pair<Point3, bool> Sector3::intersection(const Plane3& pl, double e, bool exclusive) const {
    const auto [x, ok] = Line3(beg, end).intersection(pl);
    if (ok && contains(x, e, exclusive)) return {x, true};
    return {Point3(), false};
}

std::pair<Point3, bool> Sector3::intersection(const Sector3& s, double e, bool exclusive) const {
    if (e < 0.0) e = kDefaultTol;
    const Vector3 d1 = end - beg, d2 = s.end - s.beg;
    const Vector3 c = d1 % d2;
    const double c2 = c.length2();
    const bool bothLong = length() >= e && s.length() >= e;
    if (bothLong && c2 >= kZero2 * d1.length2() * d2.length2()) {
        // Parameters of the nearest points of the two lines.
        const Vector3 w = s.beg - beg;
        const Point3 p1 = beg + d1 * (((w % d2) * c) / c2);
        const Point3 p2 = s.beg + d2 * (((w % d1) * c) / c2);
        if (!(p1.distance(p2) < e)) return {Point3(), false};
        const Point3 x = (p1 + p2) * 0.5;
        if (contains(x, e, exclusive) && s.contains(x, e, exclusive)) return {x, true};
        return {Point3(), false};
    }
    for (const Point3* q : {&beg, &end, &s.beg, &s.end}) {
        if (contains(*q, e, exclusive) && s.contains(*q, e, exclusive)) return {*q, true};
    }
    return {Point3(), false};
}

}  // namespace quillon
