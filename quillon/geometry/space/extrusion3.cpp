#include "quillon/geometry/space/extrusion3.h"

#include <cmath>
#include <utility>

#include "quillon/geometry/space/detail/item_archive.h"
#include "quillon/geometry/space/detail/item_rings.h"

namespace quillon {

namespace {

constexpr std::int32_t kExtrusionVersion = 1;

}  // namespace

Extrusion3::Extrusion3(double eps) : CachedItem3(eps) {}

const Solid3& Extrusion3::GetSolid() const {
    if (Cached()) return solid;
    const double height = path * frame.get_dir_z();
    const bool flat = !(std::fabs(height) >= detail::kItemAxisEps);  // mutate: off (at tolerance)
    if (flat) return solid;
    const detail::ContourRing ring = detail::ApproximateRing(outer);
    if (ring.degenerate()) return solid;
    // GenCuboid orders the rings itself: the base counter-clockwise seen from the path's side,
    // the holes the other way, whatever their orientation here.
    const Mvector<Point3> base = detail::PlaceRing(ring, frame);
    Mmatrix<Point3> holes;
    for (const LAContour& c : inner) {
        const detail::ContourRing h = detail::ApproximateRing(c);
        if (!h.degenerate()) holes.push_back(detail::PlaceRing(h, frame));
    }
    if (!solid.GenCuboid(base, path, holes)) solid.Clear();
    return solid;
}

void Extrusion3::SetLocalPlane(const LocalPlane& f) {
    Invalidate();
    frame = f;
}

void Extrusion3::SetPath(const Vector3& p) {
    Invalidate();
    path = p;
}

void Extrusion3::SetLength(double length) {
    Invalidate();
    const double l = path.length();
    const Vector3 dir = l > 0.0 ? path / l : frame.get_dir_z().get_normalized();
    path = dir * length;
}

void Extrusion3::SetOuterContour(const LAContour& c) {
    Invalidate();
    outer = c;
}

void Extrusion3::SetInnerContours(const Mvector<LAContour>& c) {
    Invalidate();
    inner = c;
}

void Extrusion3::AddInnerContour(const LAContour& c) {
    Invalidate();
    inner.push_back(c);
}

void Extrusion3::Reset() {
    Invalidate();
    path.zero();
    outer.clear();
    inner.clear();
    frame = LocalPlane();
}

Extrusion3& Extrusion3::operator<<=(const Isometry3& iso) {
    Invalidate();
    frame <<= iso;
    path = path * iso.lin;
    return *this;
}

void Extrusion3::Serialize(Archive& ar) {
    if (ar.IsStoring()) {
        detail::StoreVersion(ar, kExtrusionVersion);
        ar << solid.GetEps();
        detail::StoreFrame(ar, frame);
        detail::StoreVector(ar, path);
        detail::StoreContour(ar, outer);
        ar << static_cast<std::uint32_t>(inner.size());
        for (const LAContour& c : inner) detail::StoreContour(ar, c);
        return;
    }
    detail::LoadVersion(ar, kExtrusionVersion);
    const double eps = detail::LoadEps(ar);
    LocalPlane f = detail::LoadFrame(ar);
    const Vector3 p = detail::LoadVector(ar);
    LAContour o = detail::LoadContour(ar);
    const std::uint32_t n = detail::LoadCount(ar);
    Mvector<LAContour> holes;
    holes.reserve(detail::ReserveFor(n));
    for (std::uint32_t i = 0; i < n; ++i) holes.push_back(detail::LoadContour(ar));
    Invalidate();
    solid = Solid3(eps);
    frame = f;
    path = p;
    outer = std::move(o);
    inner = std::move(holes);
}

}  // namespace quillon
