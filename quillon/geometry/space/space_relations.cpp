#include "quillon/geometry/space/space_relations.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "quillon/geometry/plane/contour2.h"
#include "quillon/geometry/space/local3.h"
#include "quillon/geometry/space/triangle3.h"

namespace quillon {

namespace {

constexpr double kDefaultTol = 1e-10;

}  // namespace

bool Collinear(const Point3& a, const Point3& b, const Point3& c, double e) {
    if (e < 0.0) e = kDefaultTol;
    const Vector3 ab = b - a, bc = c - b;
    const double l1 = ab.length(), l2 = bc.length(), l3 = a.distance(c);
    if (l1 < e || l2 < e || l3 < e) return true;
    return (ab % bc).length() / std::max({l1, l2, l3}) < e;
}

bool Collinear(const Point3* pts, std::size_t n, double e) {
    if (pts == nullptr || n < 2) return true;
    std::size_t far = 1;
    double best = pts[0].distance2(pts[1]);
    for (std::size_t i = 2; i < n; ++i) {
        const double d2 = pts[0].distance2(pts[i]);
        if (d2 > best) {
            best = d2;
            far = i;
        }
    }
    for (std::size_t i = 1; i < n; ++i) {  // mutate: off (from 0: pts[0] is on its own line)
        if (!Collinear(pts[0], pts[far], pts[i], e)) return false;
    }
    return true;
}

bool Coplanar(const Point3& a, const Point3& b, const Point3& c, const Point3& d, double e) {
    if (e < 0.0) e = kDefaultTol;
    if (Collinear(a, b, c, e) || Collinear(a, b, d, e) || Collinear(a, c, d, e) ||
        Collinear(b, c, d, e))
        return true;
    const Vector3 ab = b - a, ac = c - a, ad = d - a;
    const double volume = std::fabs((ab % ac) * ad);
    const double face = std::max(
        {(ab % ac).length(), (ab % ad).length(), (ac % ad).length(), ((c - b) % (d - b)).length()});
    return volume / face < e;
}

Vector3 PolyNormal(const Mvector<Point3>& pts, double e) {
    if (e < 0.0) e = kDefaultTol;
    if (pts.size() < 3) return Vector3();
    std::size_t k = 2;
    while (k < pts.size() && Collinear(pts[0], pts[1], pts[k], e)) ++k;
    if (k == pts.size()) return Vector3();
    const LocalPlane f(pts[0], pts[1], pts[k]);
    if (!f.isDefined()) return Vector3();
    std::vector<Point2> flat;
    flat.reserve(pts.size());
    for (const Point3& p : pts) {
        Point3 q = p;
        q /= f;
        flat.push_back(q.pnt_xy());
    }
    const Vector3 z = f.get_dir_z();
    return Contour2(std::move(flat), e).Orientation() < 0 ? z : -z;
}

std::pair<Point3, bool> MATH_CircleCenter(const Point3& a, const Point3& b, const Point3& c,
                                          double e) {
    Point3 centre;
    if (!Triangle3(a, b, c, e).CircleCentre(centre)) return {Point3(), false};
    return {centre, true};
}

}  // namespace quillon
