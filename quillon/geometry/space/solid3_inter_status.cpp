// Solid booleans, steps 4 and 7: edges, vertices and faces classed against the other solid, and
// twin faces.
//
// A point off the other solid's boundary is classed by the parity of the other solid's faces that
// a ray from it crosses. Rays run in fixed skew directions; a ray that passes within eps of a
// face's outline or runs in a face's plane is given up for the next direction, so no crossing is
// ever counted twice or missed at an edge.
#include <algorithm>
#include <cmath>
#include <numeric>

#include "quillon/geometry/plane/contour2.h"
#include "quillon/geometry/space/solid3_inter.h"

namespace quillon {

namespace {

Vector3 Unit(double x, double y, double z) { return Vector3(x, y, z).get_normalized(); }

// Skew directions for the probe rays (unit vectors with no simple ratio between coordinates). Any
// other skew directions would serve as well: the mutation tester leaves them alone.
const Vector3 kProbe[] = {
    Unit(0.4358898943540674, 0.6112938318340237, 0.6605503117108094),     // mutate: off
    Unit(-0.7071067811865476, 0.5128205128205128, 0.4873949579831933),    // mutate: off
    Unit(0.3090169943749474, -0.8038475772933680, 0.5077683537175254),    // mutate: off
    Unit(0.5773502691896258, 0.2672612419124244, -0.7715167498104596),    // mutate: off
    Unit(-0.2236067977499790, -0.4472135954999579, -0.8660254037844386),  // mutate: off
    Unit(0.8944271909999159, -0.3162277660168379, 0.3162277660168379),    // mutate: off
    Unit(-0.5345224838248488, 0.8017837257372732, -0.2672612419124244),   // mutate: off
    Unit(0.1240347345892084, 0.9922778767136677, 0.0026457513110646),     // mutate: off
};

struct UnionFind {
    std::vector<std::uint32_t> parent;
    explicit UnionFind(std::size_t n) : parent(n) { std::iota(parent.begin(), parent.end(), 0u); }
    std::uint32_t find(std::uint32_t x) {
        while (parent[x] != x) x = parent[x] = parent[parent[x]];
        return x;
    }
    void join(std::uint32_t a, std::uint32_t b) { parent[find(a)] = find(b); }
};

// Whether two loops hold the same vertices in the same cyclic order, run either way.
bool SameRing(const Mvector<std::uint32_t>& a, const Mvector<std::uint32_t>& b) {
    const std::size_t n = a.size();
    if (b.size() != n || n == 0) return false;
    const auto it = std::find(b.begin(), b.end(), a[0]);
    if (it == b.end()) return false;
    const auto k = static_cast<std::size_t>(it - b.begin());
    bool forward = true, backward = true;
    for (std::size_t t = 1; t < n && (forward || backward); ++t) {
        forward = forward && b[(k + t) % n] == a[t];
        backward = backward && b[(k + n - t) % n] == a[t];
    }
    return forward || backward;
}

bool SameOutline(const Face3Inter& f, const Face3Inter& g) {
    if (!SameRing(f.loop, g.loop) || f.holes.size() != g.holes.size()) return false;
    for (const auto& h : f.holes) {
        bool found = false;
        for (const auto& k : g.holes) found = found || SameRing(h, k);
        if (!found) return false;
    }
    return true;
}

}  // namespace

int Solid3Inter::ClassifyPoint(const Point3& p, int owner) const {
    const int k = owner == OWNER_FIRST ? 0 : 1;
    std::vector<std::uint32_t> hits;
    for (const Vector3& dir : kProbe) {
        hits.clear();
        faceTree[k].ray(p, dir, hits);
        bool grazed = false;
        int crossings = 0;
        for (const std::uint32_t item : hits) {
            const Face3Inter& F = faces[ownerFace[k][item]];
            const double along = F.normal * dir;
            const double dist = F.normal * p.vec() + F.d;
            if (std::fabs(along) < 1e-9) {
                // Parallel to the face: it matters only when the ray runs in its plane.
                if (std::fabs(dist) <= eps) {
                    grazed = true;
                    break;
                }
                continue;
            }
            const double t = -dist / along;
            if (t < -eps) continue;
            const Point3 x = p + dir * t;
            const Point2 q = ToFace(F, x);
            if (OnFaceBoundary(F, q)) {
                grazed = true;
                break;
            }
            if (!InFace(F, q)) continue;
            if (t <= eps) {  // the point lies on the face itself: no class
                grazed = true;
                break;
            }
            ++crossings;
        }
        if (!grazed) return crossings % 2 == 1 ? STATUS_INSIDE : STATUS_OUTSIDE;
    }
    return 0;
}

bool Solid3Inter::OnSolidBoundary(const Point3& p, int owner) const {
    const int k = owner == OWNER_FIRST ? 0 : 1;
    detail::Box3 box;
    box.add(p);
    box.inflate(eps);
    std::vector<std::uint32_t> near;
    faceTree[k].query(box, near);
    for (const std::uint32_t item : near) {
        const Face3Inter& F = faces[ownerFace[k][item]];
        if (std::fabs(F.normal * p.vec() + F.d) > eps) continue;
        const Point2 q = ToFace(F, p);
        if (OnFaceBoundary(F, q) || InFace(F, q)) return true;
    }
    return false;
}

bool Solid3Inter::InteriorPoint(const Face3Inter& f, Point3& p) const {
    // The centroid of the largest triangle of the face's triangulation lies inside the face and,
    // for any face not a sliver, well away from its outline.
    Mmatrix<std::size_t> tris;
    Point2 best;
    bool found = false;  // mutate: off (read only for a face its triangulation leaves empty)
    auto polygon = [&](const Mvector<std::uint32_t>& loop) {
        std::vector<Point2> q;
        q.reserve(loop.size());
        for (const std::uint32_t v : loop) q.push_back(ToFace(f, pool[v]));
        return Contour2(std::move(q), eps);
    };
    const Contour2 outer = polygon(f.loop);
    Mvector<Contour2> holes;
    for (const auto& h : f.holes) holes.push_back(polygon(h));
    if (outer.TriangulateWithHoles(holes, tris)) {
        std::vector<const Point2*> corners;
        for (const auto& q : outer.Points()) corners.push_back(&q);
        for (const auto& h : holes)
            for (const auto& q : h.Points()) corners.push_back(&q);
        double bestArea = 0.0;
        for (const auto& t : tris) {
            const Point2 &a = *corners[t[0]], &b = *corners[t[1]], &c = *corners[t[2]];
            const double area = std::fabs((b - a) % (c - a));
            if (area > bestArea) {
                bestArea = area;
                best = Point2((a.x + b.x + c.x) / 3.0, (a.y + b.y + c.y) / 3.0);
                found = true;
            }
        }
    }
    if (!found) {
        const auto mid = outer.GetMiddleUniquePoint();
        if (!mid.second) return false;  // mutate: off (only a face without triangles gets here)
        best = mid.first;
    }
    p = f.frame.zero() + f.frame.get_dir_x() * best.x + f.frame.get_dir_y() * best.y;
    return true;
}

bool Solid3Inter::SetEdgeVertexStatus() {
    static constexpr double kOnFaceAngle = 0.06981317007977318;  // 4 degrees
    const double sinLimit = std::sin(kOnFaceAngle);
    std::vector<std::uint32_t> near;
    // Edges lying in a face of the other solid.
    for (auto& e : edges) {
        e.status = 0;
        const int k = e.owner == OWNER_FIRST ? 1 : 0;
        const Point3 a = pool[e.v0], b = pool[e.v1];
        const Vector3 dir = b - a;
        const double len = dir.length();
        if (len == 0.0) continue;
        const Point3 m = (a + b) * 0.5;
        detail::Box3 box;
        box.add(a);
        box.add(b);
        box.inflate(eps);
        near.clear();
        faceTree[k].query(box, near);
        for (const std::uint32_t item : near) {
            const Face3Inter& G = faces[ownerFace[k][item]];
            if (std::fabs(G.normal * dir) > sinLimit * len) continue;
            if (std::fabs(G.normal * m.vec() + G.d) > 0.5 * eps) continue;
            if (std::fabs(G.normal * a.vec() + G.d) > eps) continue;
            const Point2 q = ToFace(G, m);
            if (OnFaceBoundary(G, q) || InFace(G, q)) {
                e.status = STATUS_BOUNDARY;
                break;
            }
        }
    }
    // Every other edge lies wholly inside or outside, and so does each vertex off the boundary:
    // edges meeting at such a vertex share its class, and one probe per group of them decides.
    UnionFind groups(edges.size());
    std::vector<std::uint32_t> firstAt(pool.size() * 2, 0xffffffffu);
    for (std::uint32_t i = 0; i < edges.size(); ++i) {
        const Edge3Inter& e = edges[i];
        if (e.status == STATUS_BOUNDARY) continue;
        for (const std::uint32_t v : {e.v0, e.v1}) {
            if (vertexStatus[v] == STATUS_BOUNDARY) continue;
            std::uint32_t& slot = firstAt[2 * v + (e.owner == OWNER_FIRST ? 0 : 1)];
            if (slot == 0xffffffffu)
                slot = i;
            else
                groups.join(i, slot);
        }
    }
    std::vector<int> groupClass(edges.size(), 0);
    std::vector<std::vector<std::uint32_t>> members(edges.size());
    for (std::uint32_t i = 0; i < edges.size(); ++i)
        if (edges[i].status != STATUS_BOUNDARY) members[groups.find(i)].push_back(i);
    for (std::uint32_t r = 0; r < edges.size(); ++r) {
        if (members[r].empty()) continue;
        int cls = 0;
        for (const std::uint32_t i : members[r]) {
            const Edge3Inter& e = edges[i];
            cls = ClassifyPoint((pool[e.v0] + pool[e.v1]) * 0.5, e.owner == OWNER_FIRST ? 2 : 1);
            if (cls != 0) break;
        }
        if (cls == 0) {
            errorStat |= errUnclassified;
            return false;
        }
        for (const std::uint32_t i : members[r]) edges[i].status = cls;
    }
    // Inside-ness spreads to the vertices, owner by owner; the passes repeat while one changes
    // something, at most 50 per owner (a deliberate bound against cycling).
    for (const int owner : {OWNER_FIRST, OWNER_SECOND}) {
        for (int pass = 0; pass < 50; ++pass) {
            bool changed = false;
            for (const auto& e : edges) {
                if (e.owner != owner || e.status != STATUS_INSIDE) continue;
                for (const std::uint32_t v : {e.v0, e.v1}) {
                    if (vertexStatus[v] == STATUS_OUTSIDE) {
                        vertexStatus[v] = STATUS_INSIDE;
                        changed = true;
                    }
                }
            }
            if (!changed) break;
        }
    }
    return true;
}

bool Solid3Inter::AreTwinFaces(std::size_t i, std::size_t j, E_STATUS& status) const {
    if (i >= faces.size() || j >= faces.size()) return false;
    const Face3Inter& a = faces[i];
    const Face3Inter& b = faces[j];
    const double s = (a.normal + b.normal).length();
    if (eps < s && s < 2.0 - eps) return false;
    const std::size_t n = a.loop.size();
    if (n < 3 || b.loop.size() != n) return false;
    const auto& pts = pool.points();
    auto same = [&](std::uint32_t x, std::uint32_t y) {
        return x == y || pts[x].distance(pts[y]) <= eps;  // mutate: off (at the tolerance)
    };
    std::size_t k = n;
    for (std::size_t q = 0; q < n; ++q)
        if (same(b.loop[q], a.loop[0])) {
            k = q;
            break;
        }
    if (k == n) return false;
    if (!same(b.loop[(k + 1) % n], a.loop[1]) && !same(b.loop[(k + n - 1) % n], a.loop[1]))
        return false;
    status = s < eps ? STATUS_OPPOSITE_TWIN : STATUS_SAME_TWIN;
    return true;
}

bool Solid3Inter::SetFaceStatus() {
    // 1. The first edge, in loop order, that lies off the other solid's boundary gives the class.
    for (auto& f : faces) {
        if (!f.alive) continue;
        bool shaped = f.edges.size() == f.loop.size() && f.holeEdges.size() == f.holes.size();
        for (std::size_t h = 0; shaped && h < f.holes.size(); ++h)
            shaped = f.holeEdges[h].size() == f.holes[h].size();
        if (!shaped) {
            errorStat |= errInconsistentFace;
            return false;
        }
        f.status = STATUS_BOUNDARY;
        auto decide = [&](const Mvector<std::uint32_t>& list) {
            for (const std::uint32_t e : list) {
                if (e >= edges.size()) continue;
                if (edges[e].status == STATUS_OUTSIDE || edges[e].status == STATUS_INSIDE) {
                    f.status = edges[e].status;
                    return true;
                }
            }
            return false;
        };
        if (!decide(f.edges))
            for (const auto& he : f.holeEdges)
                if (decide(he)) break;
    }
    // 2. Across an edge where the other solid passes through a face, the two pieces lie on
    // opposite sides of it.
    for (bool changed = true; changed;) {
        changed = false;
        for (const auto& [face, neighbour] : pendingPairs) {
            Face3Inter& f = faces[face];
            if (f.status != STATUS_BOUNDARY) continue;
            const int ns = faces[neighbour].status;
            if (ns == STATUS_INSIDE || ns == STATUS_OUTSIDE) {
                f.status = ns == STATUS_INSIDE ? STATUS_OUTSIDE : STATUS_INSIDE;
                changed = true;
            }
        }
    }
    // A face still undecided whose inside lies off the other solid's boundary (its outline runs
    // along that boundary, its area does not) is classed by a point inside it.
    for (auto& f : faces) {
        if (!f.alive || f.status != STATUS_BOUNDARY) continue;
        const int other = f.owner == OWNER_FIRST ? OWNER_SECOND : OWNER_FIRST;
        Point3 p;
        if (!InteriorPoint(f, p) || OnSolidBoundary(p, other)) continue;
        const int cls = ClassifyPoint(p, other);
        if (cls == 0) {
            errorStat |= errUnclassified;
            return false;
        }
        f.status = cls;
    }
    // 3. Faces on the other solid's boundary find their twins; a face with none is taken as
    // inside, deliberately. Candidates share the first corner's vertex (coincident points are
    // one working vertex), examined in index order as a scan of every face would meet them. A
    // candidate that AreTwinFaces accepts is taken only when the two faces coincide corner for
    // corner, holes included: AreTwinFaces looks at one edge only, and so also accepts two faces
    // of one plane that merely share an edge.
    std::vector<std::vector<std::uint32_t>> facesAt(pool.size());
    for (std::uint32_t j = 0; j < faces.size(); ++j) {
        if (!faces[j].alive) continue;
        for (const std::uint32_t v : faces[j].loop) {
            auto& list = facesAt[v];
            if (list.empty() || list.back() != j) list.push_back(j);
        }
    }
    for (std::uint32_t i = 0; i < faces.size(); ++i) {
        Face3Inter& f = faces[i];
        if (!f.alive || f.status != STATUS_BOUNDARY || f.hasTwin()) continue;
        bool paired = false;
        for (const std::uint32_t j : facesAt[f.loop[0]]) {
            if (j == i || faces[j].hasTwin()) continue;
            E_STATUS st;
            if (!AreTwinFaces(i, j, st) || !SameOutline(faces[i], faces[j])) continue;
            f.twin = j;
            faces[j].twin = i;
            f.status = st;
            faces[j].status = st;
            paired = true;
            break;
        }
        if (!paired) f.status = STATUS_INSIDE;
    }
    return true;
}

}  // namespace quillon
