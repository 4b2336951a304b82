#include "quillon/geometry/space/solid3.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <unordered_map>
#include <utility>
#include <vector>

#include "quillon/geometry/space/space_matrix.h"

namespace quillon {

namespace {

std::uint64_t EdgeKey(std::uint32_t a, std::uint32_t b) {
    if (a > b) std::swap(a, b);
    return (static_cast<std::uint64_t>(a) << 32) | b;
}

std::uint32_t U32(std::size_t i) { return static_cast<std::uint32_t>(i); }

// Twice the vector area of a loop of points (Newell), measured from o for accuracy.
Vector3 LoopArea2(const Mvector<Point3>& ring, const Point3& o) {
    Vector3 a;
    for (std::size_t i = 0, n = ring.size(); i < n; ++i) {
        a += (ring[i] - o) % (ring[(i + 1) % n] - o);
    }
    return a;
}

// The ring without points that repeat their predecessor within eps (the last compared with the
// first as well).
Mvector<Point3> WithoutRepeats(const Mvector<Point3>& ring, double eps) {
    Mvector<Point3> out;
    out.reserve(ring.size());
    for (const Point3& p : ring) {
        if (out.empty() || !(out.back().distance(p) <= eps)) out.push_back(p);
    }
    while (out.size() > 1 && out.back().distance(out.front()) <= eps) out.pop_back();
    return out;
}

double LongestExtent(const Mvector<Point3>& ring) {
    Point3 lo = ring.front(), hi = ring.front();
    for (const Point3& p : ring) {
        lo.set(std::min(lo.x, p.x), std::min(lo.y, p.y), std::min(lo.z, p.z));
        hi.set(std::max(hi.x, p.x), std::max(hi.y, p.y), std::max(hi.z, p.z));
    }
    return std::max({hi.x - lo.x, hi.y - lo.y, hi.z - lo.z});
}

}  // namespace

Solid3::Solid3(double tolerance) : eps(tolerance < 0.0 ? 1e-10 : tolerance) {}

bool Solid3::operator==(const Solid3& o) const {
    return name == o.name && vertices == o.vertices && edges == o.edges && faces == o.faces &&
           normals == o.normals && materials == o.materials && closed == o.closed &&
           (eps == o.eps || (std::isnan(eps) && std::isnan(o.eps)));
}

std::size_t Solid3::AddVertex(const Point3& p) {
    vertices.Add(Vertex3d(p));
    return vertices.size() - 1;
}

std::size_t Solid3::GetVertexInd(const Point3& p) {
    const auto at = [this](std::size_t i) -> const Point3& { return vertices[i].point; };
    vertexIndex.Sync(vertices.size(), eps, at);
    const std::size_t found = vertexIndex.FindLast(p.x, p.y, p.z, at);
    return found != Point3Grid::npos ? found : AddVertex(p);
}

std::size_t Solid3::AddNormal(const Vector3& n, bool merge) {
    if (merge) {
        const auto at = [this](std::size_t i) -> const Vector3& { return normals[i].vec; };
        normalIndex.Sync(normals.size(), eps, at);
        const std::size_t found = normalIndex.FindLast(n.x, n.y, n.z, at);
        if (found != Point3Grid::npos) return found;
    }
    normals.Add(Normal3(n));
    return normals.size() - 1;
}

std::size_t Solid3::AddFace(const Face3& f) {
    faces.Add(f);
    return faces.size() - 1;
}

std::size_t Solid3::AddMaterial(const Material3& m) {
    materials.Add(m);
    return materials.size() - 1;
}

void Solid3::Clear() {
    vertices.clear();
    edges.clear();
    faces.clear();
    normals.clear();
    materials.clear();
    closed = true;
    Invalidate();
}

bool Solid3::GetExtents(Point3& min, Point3& max) const {
    if (vertices.empty()) return false;
    Point3 lo = vertices.front().point, hi = lo;
    for (const Vertex3d& v : vertices) {
        const Point3& p = v.point;
        if (p.x < lo.x) lo.x = p.x;
        if (p.y < lo.y) lo.y = p.y;
        if (p.z < lo.z) lo.z = p.z;
        if (p.x > hi.x) hi.x = p.x;
        if (p.y > hi.y) hi.y = p.y;
        if (p.z > hi.z) hi.z = p.z;
    }
    min = lo;
    max = hi;
    return true;
}

Solid3& Solid3::operator<<=(const Isometry3& iso) {
    // Last to first, as stored solids have always been moved.
    for (std::size_t i = vertices.size(); i-- > 0;) vertices[i].point *= iso;
    for (Face3& f : faces) f.normal.zero();
    vertexIndex.Invalidate();
    return *this;
}

void Solid3::LinkFaceEdges(std::size_t firstFace, std::size_t firstEdge) {
    std::unordered_map<std::uint64_t, std::uint32_t> known;
    known.reserve(2 * (edges.size() - firstEdge) + 16);  // mutate: off (capacity only)
    for (std::size_t e = firstEdge; e < edges.size(); ++e) {
        known.emplace(EdgeKey(edges[e].beg, edges[e].end), U32(e));
    }
    const auto link = [&](const Mvector<std::uint32_t>& l, Mvector<std::uint32_t>& out) {
        for (std::size_t i = 0, n = l.size(); i < n; ++i) {
            const std::uint32_t a = l[i], b = l[(i + 1) % n];
            const auto [it, added] = known.emplace(EdgeKey(a, b), U32(edges.size()));
            if (added) edges.Add(Edge3d(a, b));
            out.push_back(it->second);
        }
    };
    for (std::size_t f = firstFace; f < faces.size(); ++f) {
        Face3& face = faces[f];
        face.edges.clear();
        face.edges.reserve(face.GetAllNodesCnt());
        link(face.loop, face.edges);
        for (const auto& h : face.holes) link(h, face.edges);
    }
}

void Solid3::GenerateEdges() {
    edges.clear();
    LinkFaceEdges(0, 0);
}

double Solid3::SignedVolume(std::size_t firstFace) const {
    if (vertices.empty()) return 0.0;
    const Point3 o = vertices.front().point;
    double v = 0.0;
    for (std::size_t f = firstFace; f < faces.size(); ++f) {
        const Face3& face = faces[f];
        if (face.loop.empty()) continue;
        const Vector3 r = vertices[face.loop[0]].point - o;
        Vector3 area;
        const auto add = [&](const Mvector<std::uint32_t>& l) {
            for (std::size_t i = 0, n = l.size(); i < n; ++i) {
                area += (vertices[l[i]].point - o) % (vertices[l[(i + 1) % n]].point - o);
            }
        };
        add(face.loop);
        for (const auto& h : face.holes) add(h);
        v += r * area;
    }
    // Loops turn clockwise seen from outside: the right-handed sum counts inward, hence the sign.
    return -v / 6.0;
}

bool Solid3::GenCuboid(const Mvector<Point3>& points) {
    const std::size_t n = points.size();
    if (n % 2 != 0 || n / 2 < 3) return false;
    const std::size_t k = n / 2;
    const std::uint32_t b = U32(vertices.size());
    for (const Point3& p : points) AddVertex(p);
    for (std::uint32_t i = 0; i < k; ++i) {
        const std::uint32_t j = U32((i + 1) % k);
        edges.Add(Edge3d(b + i, b + j));
        edges.Add(Edge3d(U32(b + k + i), U32(b + k + j)));
        edges.Add(Edge3d(b + i, U32(b + k + i)));
    }
    for (std::uint32_t i = 0; i < k; ++i) {
        const std::uint32_t j = U32((i + 1) % k);
        faces.Add(Face3(Mvector<std::uint32_t>{b + i, U32(b + k + i), U32(b + k + j), b + j}));
    }
    Mvector<std::uint32_t> base, top;
    for (std::uint32_t i = 0; i < k; ++i) base.push_back(b + i);
    for (std::size_t i = 2 * k; i-- > k;) top.push_back(U32(b + i));
    faces.Add(Face3(std::move(base)));
    faces.Add(Face3(std::move(top)));
    return true;
}

bool Solid3::GenCuboid(const Mvector<Point3>& basePoints, const Vector3& path,
                       const Mmatrix<Point3>& holePoints) {
    Mvector<Point3> outer = WithoutRepeats(basePoints, eps);
    if (outer.size() < 3) return false;
    const Point3 o = outer.front();
    Vector3 normal = LoopArea2(outer, o);
    const double area = 0.5 * normal.length();
    if (!(area > eps * LongestExtent(outer))) return false;
    normal /= 2.0 * area;
    const double height = normal * path;
    if (!(std::fabs(height) > eps)) return false;
    const auto offPlane = [&](const Point3& p) { return !(std::fabs(normal * (p - o)) <= eps); };
    if (std::any_of(outer.begin(), outer.end(), offPlane)) return false;

    Mmatrix<Point3> rings;
    // The base turns counter-clockwise seen from the path's side, the holes the other way.
    if (height < 0.0) outer.Reverse();
    rings.push_back(std::move(outer));
    for (const auto& h : holePoints) {
        Mvector<Point3> hole = WithoutRepeats(h, eps);
        if (hole.size() < 3) continue;
        const Vector3 a = LoopArea2(hole, hole.front());
        if (!(0.5 * a.length() > eps * LongestExtent(hole))) continue;
        if (std::any_of(hole.begin(), hole.end(), offPlane)) return false;
        if (a * path > 0.0) hole.Reverse();
        rings.push_back(std::move(hole));
    }

    const std::size_t firstFace = faces.size(), firstEdge = edges.size();
    Mvector<std::uint32_t> starts;
    for (const auto& ring : rings) {
        const std::uint32_t b = U32(vertices.size());
        starts.push_back(b);
        for (const Point3& p : ring) AddVertex(p);
        for (const Point3& p : ring) AddVertex(p + path);
        const std::uint32_t k = U32(ring.size());
        for (std::uint32_t i = 0; i < k; ++i) {
            const std::uint32_t j = (i + 1) % k;
            edges.Add(Edge3d(b + i, b + j));
            edges.Add(Edge3d(b + k + i, b + k + j));
            edges.Add(Edge3d(b + i, b + k + i));
        }
        for (std::uint32_t i = 0; i < k; ++i) {
            const std::uint32_t j = (i + 1) % k;
            faces.Add(Face3(Mvector<std::uint32_t>{b + i, b + k + i, b + k + j, b + j}));
        }
    }
    Face3 bottom, top;
    for (std::size_t r = 0; r < rings.size(); ++r) {
        const std::uint32_t b = starts[r], k = U32(rings[r].size());
        Mvector<std::uint32_t> down, up;
        for (std::uint32_t i = 0; i < k; ++i) down.push_back(b + i);
        for (std::uint32_t i = 2 * k; i-- > k;) up.push_back(b + i);
        if (r == 0) {
            bottom.loop = std::move(down);
            top.loop = std::move(up);
        } else {
            bottom.holes.push_back(std::move(down));
            top.holes.push_back(std::move(up));
        }
    }
    faces.Add(std::move(bottom));
    faces.Add(std::move(top));
    LinkFaceEdges(firstFace, firstEdge);
    return true;
}

bool Solid3::GenComplexCuboid(const Mvector<Point3>& points, int count, bool loop) {
    if (count < 3 || points.size() % static_cast<std::size_t>(count) != 0) return false;
    const std::size_t k = static_cast<std::size_t>(count);
    const std::size_t m = points.size() / k;
    if (m < (loop ? 3u : 2u)) return false;

    const std::size_t firstVertex = vertices.size(), firstFace = faces.size();
    const std::size_t firstEdge = edges.size();
    const std::uint32_t b = U32(firstVertex);
    for (const Point3& p : points) AddVertex(p);
    const auto at = [&](std::size_t ring, std::size_t i) { return U32(b + ring * k + i % k); };
    for (std::size_t r = 0; r < m; ++r) {
        for (std::size_t i = 0; i < k; ++i) edges.Add(Edge3d(at(r, i), at(r, i + 1)));
    }
    const std::size_t joints = loop ? m : m - 1;
    for (std::size_t r = 0; r < joints; ++r) {
        for (std::size_t i = 0; i < k; ++i) edges.Add(Edge3d(at(r, i), at((r + 1) % m, i)));
    }
    for (std::size_t r = 0; r < joints; ++r) {
        const std::size_t s = (r + 1) % m;
        for (std::size_t i = 0; i < k; ++i) {
            const Mvector<std::uint32_t> quad{at(r, i), at(s, i), at(s, i + 1), at(r, i + 1)};
            // A twisted quadrilateral is not planar: it becomes two triangles.
            const Point3 &p0 = vertices[quad[0]].point, &p1 = vertices[quad[1]].point;
            const Point3 &p2 = vertices[quad[2]].point, &p3 = vertices[quad[3]].point;
            const Vector3 n = (p1 - p0) % (p3 - p0) + (p3 - p2) % (p1 - p2);
            const double len = n.length();
            const bool planar = len > 0.0 && std::fabs(n * (p2 - p0)) / len <= eps &&
                                std::fabs(n * (p3 - p1)) / len <= eps;
            if (planar) {
                faces.Add(Face3(quad));
            } else {
                faces.Add(Face3(Mvector<std::uint32_t>{quad[0], quad[1], quad[2]}));
                faces.Add(Face3(Mvector<std::uint32_t>{quad[0], quad[2], quad[3]}));
            }
        }
    }
    if (!loop) {
        Mvector<std::uint32_t> base, top;
        for (std::size_t i = 0; i < k; ++i) base.push_back(at(0, i));
        for (std::size_t i = k; i-- > 0;) top.push_back(at(m - 1, i));
        faces.Add(Face3(std::move(base)));
        faces.Add(Face3(std::move(top)));
    }

    double surface = 0.0;
    for (std::size_t f = firstFace; f < faces.size(); ++f) {
        const auto& l = faces[f].loop;
        Vector3 a;
        for (std::size_t i = 0; i < l.size(); ++i) {
            a += (vertices[l[i]].point - points.front()) %
                 (vertices[l[(i + 1) % l.size()]].point - points.front());
        }
        surface += 0.5 * a.length();
    }
    const double volume = SignedVolume(firstFace);
    if (!(std::fabs(volume) > eps * surface)) {
        vertices.erase(vertices.begin() + static_cast<std::ptrdiff_t>(firstVertex), vertices.end());
        edges.erase(edges.begin() + static_cast<std::ptrdiff_t>(firstEdge), edges.end());
        faces.erase(faces.begin() + static_cast<std::ptrdiff_t>(firstFace), faces.end());
        return false;
    }
    if (volume < 0.0) {
        for (std::size_t f = firstFace; f < faces.size(); ++f) faces[f].loop.Reverse();
    }
    LinkFaceEdges(firstFace, firstEdge);
    return true;
}

bool Solid3::Merge(const Solid3& other) {
    if (&other == this) {
        const Solid3 copy(other);
        return Merge(copy);
    }
    const std::size_t nv = other.vertices.size(), nn = other.normals.size();
    const std::size_t nm = other.materials.size();
    const auto inRange = [](const Mvector<std::uint32_t>& l, std::size_t n) {
        return std::all_of(l.begin(), l.end(), [n](std::uint32_t i) { return i < n; });
    };
    for (const Face3& f : other.faces) {
        if (!inRange(f.loop, nv) || !inRange(f.normalLoop, nn)) return false;
        for (const auto& h : f.holes) {
            if (!inRange(h, nv)) return false;
        }
        for (const auto& h : f.normalHoles) {
            if (!inRange(h, nn)) return false;
        }
        if (f.material >= 0 && static_cast<std::size_t>(f.material) >= nm) return false;
    }

    std::vector<int> materialOf(nm, -1);
    for (std::size_t i = 0; i < nm; ++i) {
        const auto same = std::find_if(materials.begin(), materials.end(), [&](const Material3& m) {
            return m.name == other.materials[i].name;
        });
        materialOf[i] = same != materials.end() ? static_cast<int>(same - materials.begin())
                                                : static_cast<int>(AddMaterial(other.materials[i]));
    }
    constexpr std::uint32_t kUnset = 0xFFFFFFFFu;
    std::vector<std::uint32_t> normalOf(nn, kUnset);
    const auto mapNormals = [&](Mvector<std::uint32_t>& l) {
        for (auto& i : l) {
            if (normalOf[i] == kUnset) normalOf[i] = U32(AddNormal(other.normals[i].vec, true));
            i = normalOf[i];
        }
    };
    const auto mapVertices = [&](Mvector<std::uint32_t>& l) {
        for (auto& i : l) i = U32(GetVertexInd(other.vertices[i].point));
    };
    faces.reserve(faces.size() + other.faces.size());
    for (const Face3& f : other.faces) {
        Face3 g = f;
        mapVertices(g.loop);
        for (auto& h : g.holes) mapVertices(h);
        mapNormals(g.normalLoop);
        for (auto& h : g.normalHoles) mapNormals(h);
        if (g.material >= 0) g.material = materialOf[static_cast<std::size_t>(g.material)];
        g.edges.clear();
        faces.Add(std::move(g));
    }
    return true;
}

}  // namespace quillon

namespace quillon {

bool Solid3::TriangulateFace(std::size_t face, Mmatrix<std::size_t>& triangles) const {
    triangles.clear();
    if (face >= faces.size()) return false;
    const Face3& f = faces[face];
    if (!TriangulateFaceCorners(f, vertices, eps, triangles)) return false;
    // Corner numbers to vertex indices: the outer loop's corners, then each hole's.
    std::vector<std::uint32_t> cornerVertex(f.loop.begin(), f.loop.end());
    for (const auto& h : f.holes) cornerVertex.insert(cornerVertex.end(), h.begin(), h.end());
    for (auto& row : triangles) {
        for (auto& c : row) c = cornerVertex[c];
    }
    return true;
}

}  // namespace quillon
