#include "quillon/geometry/space/triangle3.h"

#include <cmath>

#include "quillon/geometry/plane/contour2.h"
#include "quillon/geometry/space/local3.h"
#include "quillon/geometry/space/plane3.h"

namespace quillon {

namespace {

// p in the frame's local coordinates.
Point3 Local(const LocalPlane& f, const Point3& p) {
    Point3 q = p;
    q /= f;
    return q;
}

// The triangle's corners in its own frame, and the plane triangle over them.
struct Flat {
    LocalPlane frame;
    Point2 a, b, c;
    Flat(const Triangle3& t) : frame(t.p1, t.p2, t.p3) {
        a = Local(frame, t.p1).pnt_xy();
        b = Local(frame, t.p2).pnt_xy();
        c = Local(frame, t.p3).pnt_xy();
    }
};

}  // namespace

bool Triangle3::Contains(const Point3& p) const {
    Flat f(*this);
    if (!f.frame.isDefined()) return IsOnEdge(p);
    const Point3 q = Local(f.frame, p);
    if (!(std::fabs(q.z) < tol)) return false;
    return Triangle2(f.a, f.b, f.c, tol).Contains(q.pnt_xy());
}

bool Triangle3::IsOnEdge(const Point3& p) const {
    return Sector3(p1, p2).contains(p, tol, false) || Sector3(p2, p3).contains(p, tol, false) ||
           Sector3(p3, p1).contains(p, tol, false);
}

bool Triangle3::Coplanar(const Point3& p) const {
    const LocalPlane f(p1, p2, p3);
    if (!f.isDefined()) return false;
    return std::fabs(Local(f, p).z) < tol;
}

bool Triangle3::CoplanarIntersects(const Point3& a, const Point3& b) const {
    Flat f(*this);
    if (!f.frame.isDefined()) {
        const Sector3 s(a, b);
        return s.intersection(Sector3(p1, p2), tol).second ||
               s.intersection(Sector3(p2, p3), tol).second ||
               s.intersection(Sector3(p3, p1), tol).second;
    }
    const Point2 la = Local(f.frame, a).pnt_xy(), lb = Local(f.frame, b).pnt_xy();
    const Triangle2 t(f.a, f.b, f.c, tol);
    if (t.Contains(la) || t.IsOnEdge(la) || t.Contains(lb) || t.IsOnEdge(lb)) return true;
    const Segment2 s(la, lb, tol);
    return s.Intersects(Segment2(f.a, f.b, tol)) || s.Intersects(Segment2(f.b, f.c, tol)) ||
           s.Intersects(Segment2(f.c, f.a, tol));
}

std::pair<bool, Sector3> Triangle3::Intersects(const Plane3& pl, bool exclusive) const {
    const Sector3 edges[3] = {Sector3(p1, p2), Sector3(p2, p3), Sector3(p3, p1)};
    Point3 hit[2];
    int count = 0;
    for (const Sector3& edge : edges) {
        const auto [x, ok] = edge.intersection(pl, tol, exclusive);
        if (!ok) continue;
        if (count < 2) {
            hit[count++] = x;
            continue;
        }
        if (exclusive) continue;
        // A third hit outside the segment between the first two widens it to the extreme hits.
        if ((hit[0] - x) * (hit[1] - x) > 0.0) {
            if ((hit[1] - x) * (hit[1] - hit[0]) > 0.0)
                hit[0] = x;
            else
                hit[1] = x;
        }
    }
    return {count >= 2, Sector3(hit[0], hit[1])};
}

bool Triangle3::CircleCentre(Point3& out) const {
    Flat f(*this);
    if (!f.frame.isDefined()) return false;
    Point2 c;
    if (!Triangle2(f.a, f.b, f.c, tol).CircleCentre(c)) return false;
    out = Point3(c) * f.frame;
    return true;
}

}  // namespace quillon
