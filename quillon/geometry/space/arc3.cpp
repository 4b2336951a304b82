#include "quillon/geometry/space/arc3.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "quillon/geometry/space/triangle3.h"

namespace quillon {

namespace {

constexpr double kTwoPi = 2.0 * std::numbers::pi;

// Collects distinct candidate points (closer than tol counts as the same), at most two.
struct Found {
    Point3 p[2];
    int n = 0;
    void add(const Point3& q, double tol) {
        if (n == 2 || (n == 1 && p[0].distance(q) < tol)) return;
        p[n++] = q;
    }
    Arc3::Hits hits() const { return {{p[0], p[1]}, n}; }
};

// Points of the circle about the local origin with radius r on the plane line through q along v,
// in local coordinates. A line closer than tol to tangency touches at the foot of the centre.
int CircleLine(double r, const Point2& q, const Vector2& v, double tol, Point2 out[2]) {
    const double v2 = v.length2();
    if (!(v2 > 0.0)) return 0;
    const Point2 foot = q - v * ((q.vec() * v) / v2);
    const double dist = foot.distance();
    if (!(dist <= r + tol)) return 0;
    const double h = std::sqrt(std::max(0.0, (r - dist) * (r + dist)));
    if (h < tol) {
        out[0] = foot;
        return 1;
    }
    const Vector2 step = v * (h / std::sqrt(v2));
    out[0] = foot - step;
    out[1] = foot + step;
    return 2;
}

// The trace in the arc's plane (local z = 0) of the plane nl·q + dl = 0 given in local
// coordinates, as a point and a direction; false when the planes are parallel.
bool Trace(const Vector3& nl, double dl, Point2& q, Vector2& v) {
    const double h2 = nl.x * nl.x + nl.y * nl.y;
    // Both callers pass the normal of a valid plane or frame: never zero, so > and >= differ only
    // exactly at the bound.
    if (!(h2 >= 1e-20 * nl.length2())) return false;  // mutate: off (see above)
    q.set(-dl * nl.x / h2, -dl * nl.y / h2);
    v.set(-nl.y, nl.x);
    return true;
}

Point3 Local(const LocalPlane& f, const Point3& p) {
    Point3 q = p;
    q /= f;
    return q;
}

}  // namespace

bool Arc3::Set(const Point3& b, const Point3& m, const Point3& e, double t) {
    Reset();
    beg = b;
    mid = m;
    end = e;
    tol = t < 0.0 ? eps : t;
    return Check();
}

void Arc3::Reset() { *this = Arc3(); }

bool Arc3::Check() {
    valid = false;
    centre.zero();
    sweep = radius = 0.0;
    frame.identity();
    if (!Plane3(beg, mid, end).is_plane()) return false;
    const Triangle3 tri(beg, mid, end, 1e-10);
    Point3 c;
    if (!tri.CircleCentre(c)) return false;
    // z along the triangle normal, so that the arc turns counter-clockwise from begin through
    // middle to end.
    const LocalPlane f(c, beg, c + tri.Normal() % (beg - c));
    // Three points with a circle centre are apart and off one line: the frame is always defined.
    if (!f.isDefined()) return false;  // mutate: off (see above)
    const Point3 le = Local(f, end);
    double a = PolarAngle2(le.x, le.y);
    if (a < 0.0) a += kTwoPi;
    centre = c;
    frame = f;
    sweep = a;
    radius = c.distance(beg);
    valid = true;
    return true;
}

Plane3 Arc3::GetBaseSurface() const {
    if (!valid) return Plane3();
    return Plane3(centre, frame.get_dir_z());
}

Vector3 Arc3::GetNormal() const {
    if (!valid) return Vector3();
    return Triangle3(beg, mid, end).Normal();
}

bool Arc3::GetExtents(Point3& min, Point3& max) const {
    if (!valid) return false;
    Point3 lo = beg, hi = beg;
    const Vector3 x = frame.get_dir_x(), y = frame.get_dir_y();
    for (int k = 0; k < 3; ++k) {
        lo.tab()[k] = std::min(lo.tab()[k], end.tab()[k]);
        hi.tab()[k] = std::max(hi.tab()[k], end.tab()[k]);
        // Along axis k the arc is centre_k + r·A·cos(θ − φ).
        const double xk = x.tab()[k], yk = y.tab()[k];
        const double amp = std::hypot(xk, yk);
        if (amp == 0.0) continue;
        double phi = PolarAngle2(xk, yk);
        if (phi < 0.0) phi += kTwoPi;
        double opposite = phi + std::numbers::pi;
        if (opposite >= kTwoPi) opposite -= kTwoPi;
        // At phi = sweep the extreme is the end, taken already: < and <= agree.
        if (phi <= sweep)  // mutate: off (see above)
            hi.tab()[k] = std::max(hi.tab()[k], centre.tab()[k] + radius * amp);
        if (opposite <= sweep) lo.tab()[k] = std::min(lo.tab()[k], centre.tab()[k] - radius * amp);
    }
    min = lo;
    max = hi;
    return true;
}

double Arc3::GetBetweenOff(const Point3& p) const {
    if (!valid) return 0.0;
    const Point3 q = Local(frame, p);
    double a = PolarAngle2(q.x, q.y);
    if (a < -tol) a += kTwoPi;
    return a / sweep;
}

Point3 Arc3::GetBetween(double t) const {
    if (!valid) return beg;
    const double a = t * sweep;
    return Point3(radius * std::cos(a), radius * std::sin(a), 0.0) * frame;
}

bool Arc3::Contains(const Point3& p, bool exclusive) const {
    if (!valid) return false;
    const Point3 q = Local(frame, p);
    if (std::fabs(q.z) > tol) return false;
    if (std::fabs(p.distance(centre) - radius) > tol) return false;
    const double t = GetBetweenOff(p);
    const double lo = exclusive ? tol : -tol, hi = exclusive ? 1.0 - tol : 1.0 + tol;
    return lo < t && t < hi;  // mutate: off (< and <= differ only for t exactly at a bound)
}

Arc3::Hits Arc3::Intersection(const Plane3& pl, bool exclusive) const {
    Found found;
    if (!valid || !pl.is_plane()) return found.hits();
    // The plane in this arc's frame: n·(c + q·R) + d = 0 gives nl = n·Rᵀ, dl = n·c + d.
    const Vector3& n = pl.normal();
    const Vector3 nl(n * frame.get_dir_x(), n * frame.get_dir_y(), n * frame.get_dir_z());
    Point2 q, pts[2];  // mutate: off (array size only)
    Vector2 v;
    if (!Trace(nl, n * centre.vec() + pl.d, q, v)) return found.hits();
    const int count = CircleLine(radius, q, v, tol, pts);
    for (int i = 0; i < count; ++i) {
        const Point3 x = Point3(pts[i]) * frame;
        if (Contains(x, exclusive)) found.add(x, tol);
    }
    return found.hits();
}

Arc3::Hits Arc3::Intersection(const Sector3& s, bool exclusive) const {
    Found found;
    if (!valid) return found.hits();
    const Point3 a = Local(frame, s.beg), b = Local(frame, s.end);
    auto keep = [&](const Point3& local) {
        const Point3 x = local * frame;
        if (Contains(x, exclusive) && s.contains(x, tol, exclusive)) found.add(x, tol);
    };
    // <= and < differ only for an end exactly at the tolerance.
    if (std::fabs(a.z) <= tol && std::fabs(b.z) <= tol) {  // mutate: off (see above)
        Point2 pts[2];                                     // mutate: off (array size only)
        const int count = CircleLine(radius, a.pnt_xy(), (b - a).vec_xy(), tol, pts);
        for (int i = 0; i < count; ++i) keep(Point3(pts[i]));
        if (count == 0) {  // a segment too short to have a direction may still lie on the arc
            keep(a);
            keep(b);
        }
        return found.hits();
    }
    const double dz = b.z - a.z;
    if (dz == 0.0) return found.hits();  // parallel to the plane and off it
    keep(a + (b - a) * (-a.z / dz));
    return found.hits();
}

Arc3::Hits Arc3::Intersection(const Arc3& o, bool exclusive) const {
    Found found;
    // Every point found is kept only when both arcs contain it, which an invalid arc never does.
    if (!valid || !o.valid) return found.hits();  // mutate: off (see above)
    auto keep = [&](const Point3& x) {
        if (Contains(x, exclusive) && o.Contains(x, exclusive)) found.add(x, tol);
    };
    const Point3 c2 = Local(frame, o.centre);
    const bool coplanar = std::fabs(Local(frame, o.beg).z) <= tol &&
                          std::fabs(Local(frame, o.mid).z) <= tol &&
                          std::fabs(Local(frame, o.end).z) <= tol;
    if (!coplanar) {
        // The other arc's plane in this frame: normal z2·Rᵀ through its centre.
        const Vector3 z2 = o.frame.get_dir_z();
        const Vector3 nl(z2 * frame.get_dir_x(), z2 * frame.get_dir_y(), z2 * frame.get_dir_z());
        Point2 q, pts[2];
        Vector2 v;
        if (!Trace(nl, -(nl * c2.vec()), q, v)) return found.hits();
        const int count = CircleLine(radius, q, v, tol, pts);
        for (int i = 0; i < count; ++i) keep(Point3(pts[i]) * frame);
        return found.hits();
    }
    const double d = c2.pnt_xy().distance();
    const double r1 = radius, r2 = o.radius;
    if (d <= tol) {  // mutate: off (exactly at the tolerance)
        if (std::fabs(r1 - r2) > tol) return found.hits();  // concentric circles never meet
        for (const Point3* p : {&beg, &end, &o.beg, &o.end}) keep(*p);
        return found.hits();
    }
    // Circle-circle in the plane: the chord of the two circles lies at distance a from this
    // centre along the line of centres.
    const Vector2 u = c2.vec().vec_xy() / d;
    const double a = (d * d + r1 * r1 - r2 * r2) / (2.0 * d);
    const double h2 = (r1 - a) * (r1 + a);
    // No crossing and neither tangency: no meeting point.
    const double outer = std::fabs(d - (r1 + r2)), inner = std::fabs(d - std::fabs(r1 - r2));
    if (h2 < 0.0 && outer > tol && inner > tol) return found.hits();  // mutate: off (at tolerance)
    const double h = std::sqrt(std::max(0.0, h2));
    const Point2 foot = Point2::_OO + u * a;
    if (h < tol) {
        keep(Point3(foot) * frame);
    } else {
        const Vector2 side(-u.y * h, u.x * h);
        keep(Point3(foot - side) * frame);
        keep(Point3(foot + side) * frame);
    }
    return found.hits();
}

}  // namespace quillon
