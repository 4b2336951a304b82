// Solid booleans, steps 1 and 2: the working vertices, edges and faces of both operands, and the
// faces' derived data (normals, planes, frames, plane polygons, box trees).
#include <algorithm>
#include <cmath>
#include <unordered_map>

#include "quillon/geometry/space/solid3_inter.h"

namespace quillon {

namespace {

// Maps a loop of operand vertex indices to working vertices, dropping corners that repeat their
// predecessor (the last is compared with the first) once coincident points have merged. False
// for an index the operand does not have.
bool MapLoop(const Mvector<std::uint32_t>& in, const std::vector<std::uint32_t>& map,
             Mvector<std::uint32_t>& out) {
    out.clear();
    for (const std::uint32_t i : in) {
        if (i >= map.size()) return false;
        const std::uint32_t v = map[i];
        if (out.empty() || out.back() != v) out.push_back(v);
    }
    while (out.size() > 1 && out.back() == out.front()) out.pop_back();
    return true;
}

}  // namespace

Point2 Solid3Inter::ToFace(const Face3Inter& f, const Point3& p) const {
    const Vector3 v = p - f.frame.zero();
    return {v * f.frame.get_dir_x(), v * f.frame.get_dir_y()};
}

bool Solid3Inter::InFace(const Face3Inter& f, const Point2& q) const {
    if (!f.outline.near(q, eps)) return false;
    if (!f.outline.onBoundary(q, eps) && !f.outline.inside(q)) return false;
    for (const detail::Ring2& h : f.holeOutlines)
        if (h.near(q, eps) && !h.onBoundary(q, eps) && h.inside(q)) return false;
    return true;
}

bool Solid3Inter::OnFaceBoundary(const Face3Inter& f, const Point2& q) const {
    if (!f.outline.near(q, eps)) return false;
    if (f.outline.onBoundary(q, eps)) return true;
    for (const detail::Ring2& h : f.holeOutlines)
        if (h.onBoundary(q, eps)) return true;
    return false;
}

bool Solid3Inter::PrepareData() {
    pool = detail::PointPool(eps);
    vertexStatus.clear();
    edges.clear();
    faces.clear();
    pendingPairs.clear();
    edgeFaces.clear();
    cuts.clear();
    pairPoints.clear();
    coplanarPairs.clear();
    newEdges.clear();

    const Solid3* operands[2] = {&first, &second};
    for (int k = 0; k < 2; ++k) {
        const Solid3& s = *operands[k];
        const int owner = k + 1;
        std::vector<std::uint32_t> map(s.Vertex().size());
        for (std::size_t i = 0; i < map.size(); ++i) map[i] = pool.add(s.Vertex()[i].point);

        std::unordered_map<std::uint64_t, std::uint32_t> edgeOf;
        auto edgeIndex = [&](std::uint32_t a, std::uint32_t b, std::uint32_t face) {
            const std::uint64_t key = (std::uint64_t(std::min(a, b)) << 32) | std::max(a, b);
            auto [it, fresh] = edgeOf.try_emplace(key, static_cast<std::uint32_t>(edges.size()));
            if (fresh) {
                Edge3Inter e;
                e.v0 = a;
                e.v1 = b;
                e.owner = owner;
                edges.push_back(e);
                edgeFaces.emplace_back();
            }
            auto& users = edgeFaces[it->second];
            if (users.empty() || users.back() != face) users.push_back(face);
            return it->second;
        };

        for (std::size_t fi = 0; fi < s.Face().size(); ++fi) {
            const Face3& src = s.Face()[fi];
            Face3Inter w;
            w.owner = owner;
            w.source = static_cast<std::uint32_t>(fi);
            w.material = src.material;
            if (!MapLoop(src.loop, map, w.loop)) {
                errorStat |= errBadOperand;
                return false;
            }
            // A face whose corners have merged to fewer than three has no area: its neighbours
            // meet each other directly.
            if (w.loop.size() < 3) continue;
            for (const auto& h : src.holes) {
                Mvector<std::uint32_t> hl;
                if (!MapLoop(h, map, hl)) {
                    errorStat |= errBadOperand;
                    return false;
                }
                if (hl.size() >= 3) w.holes.push_back(std::move(hl));
            }
            const auto self = static_cast<std::uint32_t>(faces.size());
            auto fillEdges = [&](const Mvector<std::uint32_t>& l, Mvector<std::uint32_t>& out) {
                out.resize(l.size());
                for (std::size_t i = 0; i < l.size(); ++i)
                    out[i] = edgeIndex(l[i], l[(i + 1) % l.size()], self);
            };
            fillEdges(w.loop, w.edges);
            w.holeEdges.resize(w.holes.size());
            for (std::size_t h = 0; h < w.holes.size(); ++h) fillEdges(w.holes[h], w.holeEdges[h]);
            faces.push_back(std::move(w));
        }
    }
    vertexStatus.assign(pool.size(), STATUS_OUTSIDE);
    originalEdges = edges.size();
    originalFaces = faces.size();
    cuts.assign(originalEdges, {});
    return true;
}

bool Solid3Inter::FillDerived(Face3Inter& f) const {
    const auto& pts = pool.points();
    // Newell's area vector of the outer loop: the loop turns clockwise seen from outside, so the
    // outward normal is its negation.
    Vector3 area;
    Point3 centre;
    const std::size_t n = f.loop.size();
    for (std::size_t i = 0; i < n; ++i) {
        const Point3& a = pts[f.loop[i]];
        const Point3& b = pts[f.loop[(i + 1) % n]];
        area += Vector3((a.y - b.y) * (a.z + b.z), (a.z - b.z) * (a.x + b.x),
                        (a.x - b.x) * (a.y + b.y));
        centre += a.vec();
    }
    const double len = area.length();
    if (!(len > 1e-300) || !std::isfinite(len)) return false;
    f.normal = area * (-1.0 / len);
    centre /= static_cast<double>(n);
    f.d = -(f.normal * centre.vec());
    // The loop's corners must lie in the plane: a bent face has no single class.
    f.box = detail::Box3();
    auto planar = [&](const Mvector<std::uint32_t>& l) {
        for (const std::uint32_t v : l) {
            if (std::fabs(f.normal * pts[v].vec() + f.d) > eps) return false;
            f.box.add(pts[v]);
        }
        return true;
    };
    if (!planar(f.loop)) return false;
    for (const auto& h : f.holes)
        if (!planar(h)) return false;
    f.box.inflate(eps);
    f.frame = LocalPlane(pts[f.loop[0]], -f.normal);
    if (!f.frame.isDefined()) return false;
    auto polygon = [&](const Mvector<std::uint32_t>& l) {
        std::vector<Point2> q;
        q.reserve(l.size());
        for (const std::uint32_t v : l) q.push_back(ToFace(f, pts[v]));
        return detail::Ring2(std::move(q));
    };
    f.outline = polygon(f.loop);
    f.holeOutlines.clear();
    for (const auto& h : f.holes) f.holeOutlines.push_back(polygon(h));
    return true;
}

bool Solid3Inter::GenSecondaryData() {
    for (auto& f : faces) {
        if (!FillDerived(f)) {
            errorStat |= errSecondaryData;
            return false;
        }
    }
    for (int k = 0; k < 2; ++k) {
        ownerFace[k].clear();
        std::vector<detail::Box3> boxes;
        for (std::uint32_t i = 0; i < faces.size(); ++i) {
            if (faces[i].owner != k + 1) continue;
            ownerFace[k].push_back(i);
            boxes.push_back(faces[i].box);
        }
        faceTree[k].build(std::move(boxes));
    }
    vertexCount = pool.size();
    edgeCount = edges.size();
    faceCount = faces.size();
    return true;
}

}  // namespace quillon
