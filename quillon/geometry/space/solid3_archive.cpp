#include "quillon/geometry/space/solid3_archive.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "quillon/geometry/space/solid3.h"
#include "quillon/geometry/space/space_archive.h"

namespace quillon {

namespace {

// Elements reserved at most ahead of the data actually read: a damaged count then fails at the
// end of the archive, not at an allocation of its size.
constexpr std::uint32_t kReserveStep = 4096;  // mutate: off (capacity only)

template <typename T, typename ReadOne>
void LoadList(Archive& ar, Mvector<T>& out, ReadOne readOne) {
    std::uint32_t n = 0;  // mutate: off (read at once; a failed read throws)
    ar >> n;
    Mvector<T> list;
    list.reserve(std::min(n, kReserveStep));
    for (std::uint32_t i = 0; i < n; ++i) {
        T item{};
        readOne(ar, item);
        list.push_back(std::move(item));
    }
    out = std::move(list);
}

template <typename T>
void StoreList(Archive& ar, const Mvector<T>& list) {
    ar << static_cast<std::uint32_t>(list.size());
    for (const T& item : list) ar << item;
}

template <typename T>
void LoadList(Archive& ar, Mvector<T>& out) {
    LoadList(ar, out, [](Archive& a, T& item) { a >> item; });
}

void StoreLoops(Archive& ar, const Mmatrix<std::uint32_t>& loops) {
    ar << static_cast<std::uint32_t>(loops.size());
    for (const auto& l : loops) StoreList(ar, l);
}

void LoadLoops(Archive& ar, Mmatrix<std::uint32_t>& out) {
    LoadList(ar, out, [](Archive& a, Mvector<std::uint32_t>& l) { LoadList(a, l); });
}

// Every index a solid's parts hold must address something the solid has.
bool Consistent(const Solid3& s) {
    const std::size_t nv = s.Vertex().size(), nn = s.Normal().size();
    const std::size_t ne = s.Edge().size(), nm = s.Material().size();
    const auto below = [](const Mvector<std::uint32_t>& l, std::size_t n) {
        return std::all_of(l.begin(), l.end(), [n](std::uint32_t i) { return i < n; });
    };
    const auto allBelow = [&](const Mmatrix<std::uint32_t>& ls, std::size_t n) {
        return std::all_of(ls.begin(), ls.end(), [&](const auto& l) { return below(l, n); });
    };
    for (const Edge3d& e : s.Edge()) {
        if (e.beg >= nv || e.end >= nv) return false;
    }
    for (const Face3& f : s.Face()) {
        const std::size_t nt = f.texture.size();
        if (!below(f.loop, nv) || !allBelow(f.holes, nv) || !below(f.normalLoop, nn) ||
            !allBelow(f.normalHoles, nn) || !below(f.textureLoop, nt) ||
            !allBelow(f.textureHoles, nt) || !below(f.edges, ne)) {
            return false;
        }
        if (f.material >= 0 && static_cast<std::size_t>(f.material) >= nm) return false;
    }
    return true;
}

}  // namespace

// Vertices and normals travel as the points and vectors they hold.
Archive& operator<<(Archive& ar, const Vertex3d& v) { return ar << v.point; }
Archive& operator>>(Archive& ar, Vertex3d& v) {
    Point3 p;
    ar >> p;
    v.point = p;
    return ar;
}

Archive& operator<<(Archive& ar, const Normal3& n) { return ar << n.vec; }
Archive& operator>>(Archive& ar, Normal3& n) {
    Vector3 v;
    ar >> v;
    n.vec = v;
    return ar;
}

Archive& operator<<(Archive& ar, const Edge3d& e) { return ar << e.beg << e.end; }
Archive& operator>>(Archive& ar, Edge3d& e) {
    std::uint32_t b = 0, f = 0;
    ar >> b >> f;
    e = Edge3d(b, f);
    return ar;
}

Archive& operator<<(Archive& ar, const Material3& m) {
    ar << m.name;
    ar << m.ambient << m.diffuse << m.specular;
    return ar << m.opacity << static_cast<std::int32_t>(m.illum);
}
Archive& operator>>(Archive& ar, Material3& m) {
    Material3 r;
    std::int32_t illum = 0;
    ar >> r.name;
    ar >> r.ambient >> r.diffuse >> r.specular;
    ar >> r.opacity >> illum;
    r.illum = illum;
    m = std::move(r);
    return ar;
}

Archive& operator<<(Archive& ar, const Face3& f) {
    StoreList(ar, f.loop);
    StoreLoops(ar, f.holes);
    StoreList(ar, f.normalLoop);
    StoreLoops(ar, f.normalHoles);
    StoreList(ar, f.textureLoop);
    StoreLoops(ar, f.textureHoles);
    ar << static_cast<std::uint32_t>(f.texture.size());
    for (const Point2& t : f.texture) ar << t.x << t.y;
    StoreList(ar, f.edges);
    ar << static_cast<std::int32_t>(f.material);
    return ar << f.normal;
}
Archive& operator>>(Archive& ar, Face3& f) {
    Face3 r;
    LoadList(ar, r.loop);
    LoadLoops(ar, r.holes);
    LoadList(ar, r.normalLoop);
    LoadLoops(ar, r.normalHoles);
    LoadList(ar, r.textureLoop);
    LoadLoops(ar, r.textureHoles);
    LoadList(ar, r.texture, [](Archive& a, Point2& t) { a >> t.x >> t.y; });
    LoadList(ar, r.edges);
    std::int32_t material = -1;
    ar >> material >> r.normal;
    r.material = material;
    f = std::move(r);
    return ar;
}

void Solid3::Serialize(Archive& ar) {
    if (ar.IsStoring()) {
        ar << *this;
    } else {
        ar >> *this;
    }
}

Archive& operator<<(Archive& ar, const Solid3& s) {
    ar << std::int32_t{1} << s.GetName();
    StoreList(ar, s.Vertex());
    StoreList(ar, s.Edge());
    StoreList(ar, s.Face());
    StoreList(ar, s.Normal());
    StoreList(ar, s.Material());
    return ar << static_cast<std::uint8_t>(s.GetClosed() ? 1 : 0) << s.GetEps();
}

Archive& operator>>(Archive& ar, Solid3& s) {
    std::int32_t version = 0;  // mutate: off (read at once)
    ar >> version;
    if (version != 1) throw ArchiveException(ArchiveException::badSchema, "unknown solid version");
    std::wstring name;
    ar >> name;
    Mvector<Vertex3d> vertices;
    Mvector<Edge3d> edges;
    Mvector<Face3> faces;
    Mvector<Normal3> normals;
    Mvector<Material3> materials;
    LoadList(ar, vertices);
    LoadList(ar, edges);
    LoadList(ar, faces);
    LoadList(ar, normals);
    LoadList(ar, materials);
    std::uint8_t closed = 0;
    double eps = 0.0;
    ar >> closed >> eps;
    if (closed > 1) throw ArchiveException(ArchiveException::badSchema, "bad closed flag");
    Solid3 loaded(eps < 0.0 ? -1.0 : eps);
    loaded.SetName(std::move(name));
    loaded.Vertex() = std::move(vertices);
    loaded.Edge() = std::move(edges);
    loaded.Face() = std::move(faces);
    loaded.Normal() = std::move(normals);
    loaded.Material() = std::move(materials);
    loaded.SetClosed(closed == 1);
    if (!Consistent(loaded)) {
        throw ArchiveException(ArchiveException::badIndex, "solid refers to missing parts");
    }
    s = std::move(loaded);
    return ar;
}

}  // namespace quillon
