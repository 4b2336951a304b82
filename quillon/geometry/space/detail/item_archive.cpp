#include "quillon/geometry/space/detail/item_archive.h"

#include <algorithm>
#include <cmath>

namespace quillon::detail {

namespace {

// Elements reserved at most ahead of the data actually read.
constexpr std::uint32_t kReserveStep = 4096;

[[noreturn]] void BadSchema(const char* what) {
    throw ArchiveException(ArchiveException::badSchema, what);
}

}  // namespace

void StoreVersion(Archive& ar, std::int32_t version) { ar << version; }

void LoadVersion(Archive& ar, std::int32_t expected) {
    std::int32_t v = 0;
    ar >> v;
    if (v != expected) BadSchema("unknown item record version");
}

double LoadFinite(Archive& ar) {
    double v = 0.0;
    ar >> v;
    if (!std::isfinite(v)) BadSchema("a number that is not finite");
    return v;
}

double LoadEps(Archive& ar) { return LoadFinite(ar); }

void StorePlane(Archive& ar, const Plane3& p) { ar << p.n.x << p.n.y << p.n.z << p.d; }

Plane3 LoadPlane(Archive& ar) {
    Vector3 n;
    n.x = LoadFinite(ar);
    n.y = LoadFinite(ar);
    n.z = LoadFinite(ar);
    const double d = LoadFinite(ar);
    return Plane3(n, d);
}

void StoreMotion(Archive& ar, const Matrix4x3& m) {
    for (short r = 0; r < 4; ++r) ar << m[r][0] << m[r][1] << m[r][2];
}

Isometry3 LoadMotion(Archive& ar) {
    Isometry3 m;
    for (short r = 0; r < 4; ++r) {
        for (short c = 0; c < 3; ++c) m[r][c] = LoadFinite(ar);
    }
    return m;
}

void StoreFrame(Archive& ar, const LocalPlane& f) {
    StoreMotion(ar, f);
    ar << static_cast<std::uint8_t>(f.isDefined() ? 1 : 0);
}

LocalPlane LoadFrame(Archive& ar) {
    LocalPlane f(LoadMotion(ar));
    std::uint8_t defined = 0;
    ar >> defined;
    if (defined > 1) BadSchema("a frame flag other than 0 or 1");
    f.defined = defined == 1;
    return f;
}

void StoreVector(Archive& ar, const Vector3& v) { ar << v.x << v.y << v.z; }

Vector3 LoadVector(Archive& ar) {
    Vector3 v;
    v.x = LoadFinite(ar);
    v.y = LoadFinite(ar);
    v.z = LoadFinite(ar);
    return v;
}

void StoreContour(Archive& ar, const LAContour& c) {
    ar << static_cast<std::uint32_t>(c.size());
    for (const LAEdge& e : c) {
        ar << static_cast<std::int32_t>(e.type) << e.start.x << e.start.y << e.centre.x
           << e.centre.y << e.angle;
    }
}

LAContour LoadContour(Archive& ar) {
    const std::uint32_t n = LoadCount(ar);
    LAContour c;
    c.reserve(ReserveFor(n));
    for (std::uint32_t i = 0; i < n; ++i) {
        std::int32_t type = 0;
        ar >> type;
        if (type != 0 && type != 1) BadSchema("an edge type other than 0 or 1");
        LAEdge e;
        e.type = type;
        e.start.x = LoadFinite(ar);
        e.start.y = LoadFinite(ar);
        e.centre.x = LoadFinite(ar);
        e.centre.y = LoadFinite(ar);
        e.angle = LoadFinite(ar);
        c.push_back(e);
    }
    return c;
}

std::uint32_t LoadCount(Archive& ar) {
    std::uint32_t n = 0;
    ar >> n;
    return n;
}

std::uint32_t ReserveFor(std::uint32_t count) { return std::min(count, kReserveStep); }

}  // namespace quillon::detail
