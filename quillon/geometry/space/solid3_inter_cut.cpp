// Solid booleans, step 3: the edges of each operand cut by the faces of the other.
//
// Every point found here is a working vertex (coincident points from either side become one) and
// is remembered with the pair of faces that meet there; the segments along which two faces meet
// are later drawn between these points, so an edge and the faces on both sides of it always agree
// on where it was cut.
#include <algorithm>
#include <cmath>

#include "quillon/geometry/plane/contour2.h"
#include "quillon/geometry/space/line3.h"
#include "quillon/geometry/space/plane3.h"
#include "quillon/geometry/space/solid3_inter.h"

namespace quillon {

namespace {

std::uint64_t PairKey(const Mvector<Face3Inter>& faces, std::uint32_t f, std::uint32_t g) {
    if (faces[f].owner != OWNER_FIRST) std::swap(f, g);
    return (std::uint64_t(f) << 32) | g;
}

}  // namespace

void Solid3Inter::RememberPoint(std::uint32_t e, std::uint32_t g, std::uint32_t v) {
    for (const std::uint32_t f : edgeFaces[e]) pairPoints[PairKey(faces, f, g)].push_back(v);
}

// Whether the point also lies on an edge of the cutting face needs no bookkeeping here: that edge
// is cut at the same point (the same working vertex) when the other operand's edges are cut, so
// both solids split there.
void Solid3Inter::DivideEdge(std::uint32_t e, std::uint32_t v) {
    if (v == edges[e].v0 || v == edges[e].v1) return;
    auto& c = cuts[e];
    if (std::find(c.begin(), c.end(), v) == c.end()) c.push_back(v);
}

void Solid3Inter::TouchEnd(std::uint32_t v, std::uint32_t e, std::uint32_t g) {
    const Face3Inter& G = faces[g];
    const Point2 q = ToFace(G, pool[v]);
    if (!InFace(G, q)) return;  // the face with its boundary
    vertexStatus[v] = STATUS_BOUNDARY;
    RememberPoint(e, g, v);
}

void Solid3Inter::RecordCut(std::uint32_t e, std::uint32_t g, const Point3& x) {
    const std::uint32_t v = pool.add(x);
    if (v >= vertexStatus.size()) vertexStatus.resize(pool.size(), STATUS_OUTSIDE);
    vertexStatus[v] = STATUS_BOUNDARY;
    DivideEdge(e, v);
    RememberPoint(e, g, v);
}

void Solid3Inter::CutEdgeInPlane(std::uint32_t e, std::uint32_t g) {
    const Face3Inter& G = faces[g];
    const std::uint32_t va = edges[e].v0, vb = edges[e].v1;
    const Point3 a = pool[va], b = pool[vb];
    TouchEnd(va, e, g);
    TouchEnd(vb, e, g);
    // The faces of this edge that lie in the face's plane overlap it: their outlines are drawn
    // into each other later.
    for (const std::uint32_t f : edgeFaces[e]) {
        const Face3Inter& F = faces[f];
        if (std::fabs(std::fabs(F.normal * G.normal) - 1.0) > 1e-9) continue;
        bool inPlane = true;
        for (const std::uint32_t v : F.loop)
            if (std::fabs(G.normal * pool[v].vec() + G.d) > eps) {
                inPlane = false;
                break;
            }
        if (inPlane) coplanarPairs.push_back(PairKey(faces, f, g));
    }
    const Point2 a2 = ToFace(G, a), b2 = ToFace(G, b);
    const Segment2 ab(a2, b2, eps);
    const double len2 = (b2 - a2).length2();
    if (len2 <= eps * eps) return;
    auto lift = [&](const Point2& x) {
        const double t = ((x - a2) * (b2 - a2)) / len2;
        Point3 p;
        Between(a, b, t, &p);
        return p;
    };
    auto visit = [&](const Mvector<std::uint32_t>& loop, const detail::Ring2& poly) {
        const auto& pts = poly.points();
        const std::size_t n = pts.size();
        for (std::size_t i = 0; i < n; ++i) {
            // A corner of the face lying inside the edge splits it at that very vertex.
            const Point2& p = pts[i];
            if (p.distance(a2) > eps && p.distance(b2) > eps &&  // mutate: off (at the tolerance)
                ab.Contains(p, true)) {  // mutate: off (the ends are left out just before)
                vertexStatus[loop[i]] = STATUS_BOUNDARY;
                DivideEdge(e, loop[i]);
                RememberPoint(e, g, loop[i]);
            }
            // A proper crossing with the face's boundary edge from corner i.
            const Segment2 side(p, pts[(i + 1) % n], eps);
            Point2 x;
            if (ab.SegmentIntersection(side, x) != 1) continue;
            // A crossing within eps of an end would be that end's vertex in the pool, which
            // TouchEnd has marked and remembered already.
            if (x.distance(a2) <= eps || x.distance(b2) <= eps)  // mutate: off (the end's vertex)
                continue;
            if (x.distance(p) <= eps || x.distance(pts[(i + 1) % n]) <= eps) continue;
            RecordCut(e, g, lift(x));
        }
    };
    visit(G.loop, G.outline);
    // Every side of a hole also bounds a face beyond it, whose cut finds the same point: a hole
    // visited or skipped gives the same pool vertex.
    for (std::size_t h = 0; h < G.holes.size(); ++h)  // mutate: off (see above)
        visit(G.holes[h], G.holeOutlines[h]);
}

void Solid3Inter::CutEdgeByFace(std::uint32_t e, std::uint32_t g) {
    const Face3Inter& G = faces[g];
    const std::uint32_t va = edges[e].v0, vb = edges[e].v1;
    const Point3 a = pool[va], b = pool[vb];
    const double da = G.normal * a.vec() + G.d, db = G.normal * b.vec() + G.d;
    const bool aOn = std::fabs(da) <= eps, bOn = std::fabs(db) <= eps;
    if (aOn && bOn) {
        CutEdgeInPlane(e, g);
        return;
    }
    // An end within eps of the plane is where the edge meets it: that end is marked, the edge
    // is not cut.
    if (aOn || bOn) {
        if (aOn) TouchEnd(va, e, g);
        if (bOn) TouchEnd(vb, e, g);
        return;
    }
    if ((da > 0.0) == (db > 0.0)) return;
    const auto hit = Line3(a, b).intersection(Plane3(G.normal, G.d));
    // The ends lie beyond eps on either side: the line meets the plane inside the edge.
    if (!hit.second) return;
    const Point2 q = ToFace(G, hit.first);
    if (!InFace(G, q)) return;  // the face with its boundary
    if (hit.first.distance(a) <= eps) {
        TouchEnd(va, e, g);
    } else if (hit.first.distance(b) <= eps) {
        TouchEnd(vb, e, g);
    } else {
        RecordCut(e, g, hit.first);
    }
}

bool Solid3Inter::CutEdges(int owner) {
    if (owner != OWNER_FIRST && owner != OWNER_SECOND) return false;
    const int other = owner == OWNER_FIRST ? 1 : 0;
    std::vector<std::uint32_t> near;
    for (std::uint32_t e = 0; e < originalEdges; ++e) {
        if (edges[e].owner != owner) continue;
        detail::Box3 box;
        box.add(pool[edges[e].v0]);
        box.add(pool[edges[e].v1]);
        box.inflate(eps);
        near.clear();
        faceTree[other].query(box, near);
        for (auto& i : near) i = ownerFace[other][i];
        std::sort(near.begin(), near.end());
        for (const std::uint32_t g : near) CutEdgeByFace(e, g);
    }
    if (owner == OWNER_SECOND) LayCutsIntoLoops();
    return true;
}

void Solid3Inter::LayCutsIntoLoops() {
    // Each cut edge becomes a chain of pieces from v0 to v1: the first piece keeps the edge's
    // index, the others are appended.
    std::vector<std::vector<std::uint32_t>> chain(originalEdges), pieces(originalEdges);
    for (std::uint32_t e = 0; e < originalEdges; ++e) {
        auto& c = cuts[e];
        if (c.empty()) continue;
        const Point3 a = pool[edges[e].v0];
        const Vector3 dir = pool[edges[e].v1] - a;
        std::sort(c.begin(), c.end(), [&](std::uint32_t x, std::uint32_t y) {
            return (pool[x] - a) * dir < (pool[y] - a) * dir;
        });
        auto& ch = chain[e];
        ch.push_back(edges[e].v0);
        ch.insert(ch.end(), c.begin(), c.end());
        ch.push_back(edges[e].v1);
        const Edge3Inter proto = edges[e];
        for (std::size_t i = 0; i + 1 < ch.size(); ++i) {
            std::uint32_t index = e;
            if (i > 0) {
                index = static_cast<std::uint32_t>(edges.size());
                edges.push_back(proto);
            }
            edges[index].v0 = ch[i];
            edges[index].v1 = ch[i + 1];
            pieces[e].push_back(index);
        }
    }
    auto relay = [&](Mvector<std::uint32_t>& loop, Mvector<std::uint32_t>& list) {
        Mvector<std::uint32_t> nl, ne;
        nl.reserve(loop.size());
        ne.reserve(loop.size());
        for (std::size_t i = 0; i < loop.size(); ++i) {
            const std::uint32_t e = list[i];
            if (e >= originalEdges || chain[e].empty()) {
                nl.push_back(loop[i]);
                ne.push_back(e);
                continue;
            }
            const auto& ch = chain[e];
            const auto& pc = pieces[e];
            const std::size_t k = pc.size();
            const bool forward = ch.front() == loop[i];
            for (std::size_t j = 0; j < k; ++j) {
                nl.push_back(forward ? ch[j] : ch[k - j]);
                ne.push_back(forward ? pc[j] : pc[k - 1 - j]);
            }
        }
        loop.swap(nl);
        list.swap(ne);
    };
    for (std::size_t f = 0; f < originalFaces; ++f) {
        Face3Inter& F = faces[f];
        relay(F.loop, F.edges);
        for (std::size_t h = 0; h < F.holes.size(); ++h) relay(F.holes[h], F.holeEdges[h]);
    }
    vertexStatus.resize(pool.size(), STATUS_OUTSIDE);
}

}  // namespace quillon
