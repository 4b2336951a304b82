#include "quillon/geometry/space/half_space3.h"

#include <cmath>
#include <utility>

#include "quillon/geometry/space/detail/item_archive.h"
#include "quillon/geometry/space/detail/item_rings.h"

namespace quillon {

namespace {

using detail::kItemAxisEps;
using detail::kItemModelSize;

constexpr std::int32_t kHalfSpaceVersion = 1;
constexpr std::int32_t kBoundedVersion = 1;

// The plane moved by a rigid motion; a degenerate plane stays as it is.
Plane3 Moved(const Plane3& p, const Matrix4x3& m) {
    Vector3 n;
    Point3 p0;
    if (!p.get(&n, &p0)) return p;
    return Plane3(p0 * m, n * m);
}

bool IsIdentity(const Matrix4x3& m) {
    for (short r = 0; r < 4; ++r) {      // mutate: off (a shortcut: a wider scan only skips it)
        for (short c = 0; c < 3; ++c) {  // mutate: off (a shortcut: a wider scan only skips it)
            if (m[r][c] != (r == c ? 1.0 : 0.0)) return false;  // mutate: off (a shortcut)
        }
    }
    return true;  // mutate: off (the identity moves nothing: the shortcut only saves work)
}

}  // namespace

// ---- HalfSpace3 ----

HalfSpace3::HalfSpace3(double eps) : CachedItem3(eps) {}

HalfSpace3::HalfSpace3(const Plane3& p, double eps) : CachedItem3(eps), plane(p) {}

const Solid3& HalfSpace3::GetSolid() const {
    if (Cached()) return solid;
    // The box is laid out where the plane was set and carried along by the placement.
    const bool placed = !IsIdentity(placement);
    const Plane3 base = placed ? Moved(plane, placement.inverse()) : plane;
    Vector3 n;
    Point3 p0;
    if (!base.get(&n, &p0)) return solid;
    n.normalize();
    n *= kItemModelSize;
    Vector3 u = n % Vector3::_Oz;
    if (u.length() < kItemAxisEps) u = n % Vector3::_Ox;  // mutate: off (at the tolerance)
    Vector3 v = n % u;
    u = u.normalize() * kItemModelSize;
    v = v.normalize() * kItemModelSize;
    Mvector<Point3> corners{p0 + u + v, p0 + u - v, p0 - u - v, p0 - u + v};
    for (std::size_t i = 0; i < 4; ++i) corners.push_back(corners[i] - n);
    solid.GenCuboid(corners);
    if (placed) solid <<= placement;
    return solid;
}

void HalfSpace3::SetPlane(const Plane3& p) {
    Invalidate();
    plane = p;
    placement = Isometry3();
}

void HalfSpace3::Reset() {
    Invalidate();
    plane = Plane3();
    placement = Isometry3();
}

HalfSpace3& HalfSpace3::operator<<=(const Isometry3& iso) {
    Invalidate();
    plane = Moved(plane, iso);
    _Mat_Mat(placement, iso, placement);
    return *this;
}

void HalfSpace3::Serialize(Archive& ar) {
    if (ar.IsStoring()) {
        detail::StoreVersion(ar, kHalfSpaceVersion);
        ar << solid.GetEps();
        detail::StorePlane(ar, plane);
        detail::StoreMotion(ar, placement);
        return;
    }
    detail::LoadVersion(ar, kHalfSpaceVersion);
    const double eps = detail::LoadEps(ar);
    Plane3 p = detail::LoadPlane(ar);
    const Isometry3 m = detail::LoadMotion(ar);
    Invalidate();
    solid = Solid3(eps);
    plane = p;
    placement = m;
}

// ---- BoundedHalfSpace3 ----

BoundedHalfSpace3::BoundedHalfSpace3(double eps) : CachedItem3(eps) {}

BoundedHalfSpace3::BoundedHalfSpace3(const Plane3& p, const LAContour& b, double eps)
    : CachedItem3(eps), plane(p), bound(b) {}

const Solid3& BoundedHalfSpace3::GetSolid() const {
    if (Cached()) return solid;
    Vector3 n;
    if (!plane.get(&n, static_cast<Point3*>(nullptr))) return solid;
    n.normalize();
    const double facing = n * frame.get_dir_z();
    if (!(std::fabs(facing) >= kItemAxisEps)) return solid;  // mutate: off (at the tolerance)
    const detail::ContourRing ring = detail::ApproximateRing(bound);
    if (ring.degenerate()) return solid;
    // GenCuboid orders the ring so that it turns counter-clockwise seen from the sweep's side.
    Mvector<Point3> base = detail::PlaceRing(ring, frame);
    for (Point3& p : base) {
        const auto q = plane.projection(n, p);
        if (!q.second) return solid;
        p = q.first;
    }
    if (!solid.GenCuboid(base, n * -kItemModelSize, {})) solid.Clear();
    return solid;
}

void BoundedHalfSpace3::SetPlane(const Plane3& p) {
    Invalidate();
    plane = p;
}

void BoundedHalfSpace3::SetBound(const LAContour& b) {
    Invalidate();
    bound = b;
}

void BoundedHalfSpace3::SetLocalPlane(const LocalPlane& f) {
    Invalidate();
    frame = f;
}

void BoundedHalfSpace3::Reset() {
    Invalidate();
    plane = Plane3();
    bound.clear();
    frame = LocalPlane();
}

BoundedHalfSpace3& BoundedHalfSpace3::operator<<=(const Isometry3& iso) {
    Invalidate();
    plane = Moved(plane, iso);
    frame <<= iso;
    return *this;
}

void BoundedHalfSpace3::Serialize(Archive& ar) {
    if (ar.IsStoring()) {
        detail::StoreVersion(ar, kBoundedVersion);
        ar << solid.GetEps();
        detail::StorePlane(ar, plane);
        detail::StoreFrame(ar, frame);
        detail::StoreContour(ar, bound);
        return;
    }
    detail::LoadVersion(ar, kBoundedVersion);
    const double eps = detail::LoadEps(ar);
    Plane3 p = detail::LoadPlane(ar);
    LocalPlane f = detail::LoadFrame(ar);
    LAContour b = detail::LoadContour(ar);
    Invalidate();
    solid = Solid3(eps);
    plane = p;
    frame = f;
    bound = std::move(b);
}

}  // namespace quillon
