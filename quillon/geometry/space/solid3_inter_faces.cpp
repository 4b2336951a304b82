// Solid booleans, steps 5 and 6: the segments along which the faces of the two solids meet, and
// the faces rebuilt as the regions those segments cut them into.
//
// A face is rebuilt in its own plane frame, whose z axis points into the solid, so that its outer
// loop turns counter-clockwise and its holes clockwise. Its boundary is taken one way (the region
// lies to the left), every new edge both ways; walking from each half-edge to the next one that
// turns furthest left traces every region's outline once. Outlines turning counter-clockwise are
// the new faces, those turning clockwise their holes, each given to the smallest face around it.
#include <algorithm>
#include <cmath>
#include <unordered_map>

#include "quillon/geometry/space/solid3_inter.h"

namespace quillon {

void Solid3Inter::AddNewEdge(std::uint32_t face, std::uint32_t u, std::uint32_t w, bool crossing) {
    if (u == w) return;
    newEdges.push_back({face, std::min(u, w), std::max(u, w), crossing});
}

bool Solid3Inter::GenrateNewEdges() {
    newEdges.clear();
    std::sort(coplanarPairs.begin(), coplanarPairs.end());
    coplanarPairs.erase(std::unique(coplanarPairs.begin(), coplanarPairs.end()),
                        coplanarPairs.end());
    std::vector<std::uint64_t> keys;
    keys.reserve(pairPoints.size());
    for (const auto& kv : pairPoints) keys.push_back(kv.first);
    std::sort(keys.begin(), keys.end());

    auto inOrOn = [&](const Face3Inter& f, const Point2& q) {
        return InFace(f, q) || OnFaceBoundary(f, q);
    };
    for (const std::uint64_t key : keys) {
        if (std::binary_search(coplanarPairs.begin(), coplanarPairs.end(), key)) continue;
        const auto fa = static_cast<std::uint32_t>(key >> 32);
        const auto fb = static_cast<std::uint32_t>(key & 0xffffffffu);
        auto& pts = pairPoints[key];
        std::sort(pts.begin(), pts.end());
        pts.erase(std::unique(pts.begin(), pts.end()), pts.end());
        if (pts.size() < 2) continue;
        const Face3Inter& A = faces[fa];
        const Face3Inter& B = faces[fb];
        const Vector3 along = A.normal % B.normal;
        if (along.length() < 1e-12) continue;  // parallel planes meet in no segment
        const Point3 o = pool[pts[0]];
        std::sort(pts.begin(), pts.end(), [&](std::uint32_t x, std::uint32_t y) {
            return (pool[x] - o) * along < (pool[y] - o) * along;
        });
        for (std::size_t i = 0; i + 1 < pts.size(); ++i) {
            const std::uint32_t u = pts[i], w = pts[i + 1];
            if (pool[u].distance(pool[w]) <= eps) continue;
            const Point3 m = (pool[u] + pool[w]) * 0.5;
            const Point2 qa = ToFace(A, m), qb = ToFace(B, m);
            if (!inOrOn(A, qa) || !inOrOn(B, qb)) continue;
            const bool onA = OnFaceBoundary(A, qa), onB = OnFaceBoundary(B, qb);
            // A segment inside one face and inside the other means the other solid passes
            // through the face there; one along the other face's outline may only touch it.
            if (!onA) AddNewEdge(fa, u, w, !onB);
            if (!onB) AddNewEdge(fb, u, w, !onA);
        }
    }
    // Faces lying in one plane draw each other's outline pieces that fall inside them.
    for (const std::uint64_t key : coplanarPairs) {
        const auto fa = static_cast<std::uint32_t>(key >> 32);
        const auto fb = static_cast<std::uint32_t>(key & 0xffffffffu);
        auto imprint = [&](std::uint32_t into, std::uint32_t from) {
            const Face3Inter& F = faces[into];
            const Face3Inter& G = faces[from];
            auto run = [&](const Mvector<std::uint32_t>& loop) {
                for (std::size_t i = 0; i < loop.size(); ++i) {
                    const std::uint32_t u = loop[i], w = loop[(i + 1) % loop.size()];
                    const Point2 q = ToFace(F, (pool[u] + pool[w]) * 0.5);
                    if (InFace(F, q) && !OnFaceBoundary(F, q)) AddNewEdge(into, u, w, false);
                }
            };
            run(G.loop);
            for (const auto& h : G.holes) run(h);
        };
        imprint(fa, fb);
        imprint(fb, fa);
    }
    std::sort(newEdges.begin(), newEdges.end(), [](const NewEdge& x, const NewEdge& y) {
        if (x.face != y.face) return x.face < y.face;
        if (x.u != y.u) return x.u < y.u;
        return x.w < y.w;
    });
    std::vector<NewEdge> merged;
    merged.reserve(newEdges.size());
    for (const NewEdge& e : newEdges) {
        if (!merged.empty() && merged.back().face == e.face && merged.back().u == e.u &&
            merged.back().w == e.w) {
            merged.back().crossing = merged.back().crossing || e.crossing;
            continue;
        }
        merged.push_back(e);
    }
    newEdges.swap(merged);
    return true;
}

bool Solid3Inter::GenerateFaces() {
    pendingPairs.clear();
    for (auto it = newEdges.cbegin(); it != newEdges.cend();) {
        auto jt = it;
        while (jt != newEdges.cend() && jt->face == it->face) ++jt;
        if (!RebuildFace(it->face, it, jt)) {
            errorStat |= errFaceRebuild;
            return false;
        }
        it = jt;
    }
    return true;
}

namespace {

struct Half {
    std::uint32_t from, to;  // local vertex numbers
    std::uint32_t edge;      // working edge index
    std::uint32_t twin;      // the opposite half-edge of a new edge, or none
    bool crossing;
    double angle;
};
constexpr std::uint32_t kNone = 0xffffffffu;

double SignedArea(const std::vector<Point2>& p, const std::vector<std::uint32_t>& ring) {
    double a = 0.0;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const Point2& u = p[ring[i]];
        const Point2& v = p[ring[(i + 1) % ring.size()]];
        a += u.x * v.y - u.y * v.x;
    }
    return 0.5 * a;
}

}  // namespace

bool Solid3Inter::RebuildFace(std::uint32_t f, std::vector<NewEdge>::const_iterator from,
                              std::vector<NewEdge>::const_iterator to) {
    // The parent's data is copied: appending the pieces moves the face list.
    const Face3Inter parent = faces[f];
    std::vector<std::uint32_t> ids;  // local number -> working vertex
    std::unordered_map<std::uint32_t, std::uint32_t> local;
    std::vector<Point2> at;
    auto number = [&](std::uint32_t v) {
        auto [it, fresh] = local.try_emplace(v, static_cast<std::uint32_t>(ids.size()));
        if (fresh) {
            ids.push_back(v);
            at.push_back(ToFace(parent, pool[v]));
        }
        return it->second;
    };
    std::vector<Half> halves;
    auto boundary = [&](const Mvector<std::uint32_t>& loop, const Mvector<std::uint32_t>& list) {
        for (std::size_t i = 0; i < loop.size(); ++i)
            halves.push_back(
                {number(loop[i]), number(loop[(i + 1) % loop.size()]), list[i], kNone, false, 0.0});
    };
    boundary(parent.loop, parent.edges);
    for (std::size_t h = 0; h < parent.holes.size(); ++h)
        boundary(parent.holes[h], parent.holeEdges[h]);
    for (auto it = from; it != to; ++it) {
        number(it->u);
        number(it->w);
    }

    // New edges are split at every vertex of the face lying inside them, so that the regions
    // meet only at shared vertices.
    std::vector<std::uint32_t> byX(ids.size());
    for (std::uint32_t i = 0; i < byX.size(); ++i) byX[i] = i;
    std::sort(byX.begin(), byX.end(),
              [&](std::uint32_t a, std::uint32_t b) { return at[a].x < at[b].x; });
    std::vector<std::pair<double, std::uint32_t>> inside;
    for (auto it = from; it != to; ++it) {
        const std::uint32_t a = local[it->u], b = local[it->w];
        const Point2 pa = at[a], pb = at[b];
        const Vector2 ab = pb - pa;
        const double len2 = ab.length2();
        inside.clear();
        if (len2 > 0.0) {
            const double lo = std::min(pa.x, pb.x) - eps, hi = std::max(pa.x, pb.x) + eps;
            auto k = std::lower_bound(byX.begin(), byX.end(), lo,
                                      [&](std::uint32_t v, double x) { return at[v].x < x; });
            for (; k != byX.end() && at[*k].x <= hi; ++k) {
                if (*k == a || *k == b) continue;
                const Vector2 ap = at[*k] - pa;
                const double t = (ap * ab) / len2;
                if (t <= 0.0 || t >= 1.0) continue;
                if (std::fabs(ap % ab) > eps * std::sqrt(len2)) continue;
                if (at[*k].distance(pa) <= eps || at[*k].distance(pb) <= eps) continue;
                inside.emplace_back(t, *k);
            }
        }
        std::sort(inside.begin(), inside.end());
        std::uint32_t prev = a;
        inside.emplace_back(2.0, b);
        for (const auto& [t, v] : inside) {
            (void)t;
            if (v == prev) continue;
            Edge3Inter e;
            e.v0 = ids[prev];
            e.v1 = ids[v];
            e.owner = parent.owner;
            e.status = STATUS_BOUNDARY;
            e.generated = true;
            const auto index = static_cast<std::uint32_t>(edges.size());
            edges.push_back(e);
            const auto h = static_cast<std::uint32_t>(halves.size());
            halves.push_back({prev, v, index, h + 1, it->crossing, 0.0});
            halves.push_back({v, prev, index, h, it->crossing, 0.0});
            prev = v;
        }
    }

    // Outgoing half-edges of each vertex in counter-clockwise order of direction.
    std::vector<std::vector<std::uint32_t>> out(ids.size());
    for (std::uint32_t h = 0; h < halves.size(); ++h) {
        Half& hh = halves[h];
        const Vector2 d = at[hh.to] - at[hh.from];
        hh.angle = std::atan2(d.y, d.x);
        out[hh.from].push_back(h);
    }
    for (auto& o : out)
        std::sort(o.begin(), o.end(), [&](std::uint32_t a, std::uint32_t b) {
            return halves[a].angle < halves[b].angle;
        });
    // The next half-edge after h: at h's end, the first outgoing one met turning clockwise from
    // the way back (the sharpest left turn), not h's own twin unless nothing else leaves there.
    auto next = [&](std::uint32_t h) -> std::uint32_t {
        const Half& hh = halves[h];
        const auto& o = out[hh.to];
        if (o.empty()) return kNone;
        const Vector2 back = at[hh.from] - at[hh.to];
        const double b = std::atan2(back.y, back.x);
        auto pos = std::lower_bound(o.begin(), o.end(), b,
                                    [&](std::uint32_t x, double v) { return halves[x].angle < v; });
        std::size_t p = static_cast<std::size_t>(pos - o.begin());
        for (std::size_t step = 0; step < o.size(); ++step) {
            p = (p + o.size() - 1) % o.size();
            if (o[p] != hh.twin || o.size() == 1) return o[p];
        }
        return kNone;
    };

    std::vector<char> used(halves.size(), 0);
    std::vector<std::vector<std::uint32_t>> cycles;
    for (std::uint32_t h0 = 0; h0 < halves.size(); ++h0) {
        if (used[h0]) continue;
        std::vector<std::uint32_t> cyc;
        std::uint32_t h = h0;
        do {
            if (h == kNone || used[h] || cyc.size() > halves.size()) return false;
            used[h] = 1;
            cyc.push_back(h);
            h = next(h);
        } while (h != h0);
        // Dangling new edges are walked out and back: such spikes bound nothing.
        std::vector<std::uint32_t> kept;
        for (const std::uint32_t x : cyc) {
            if (!kept.empty() && halves[kept.back()].twin == x)
                kept.pop_back();
            else
                kept.push_back(x);
        }
        std::size_t lo = 0, hi = kept.size();
        while (hi - lo >= 2 && halves[kept[hi - 1]].twin == kept[lo]) {
            ++lo;
            --hi;
        }
        cycles.emplace_back(kept.begin() + static_cast<std::ptrdiff_t>(lo),
                            kept.begin() + static_cast<std::ptrdiff_t>(hi));
    }

    struct Ring {
        std::vector<std::uint32_t> halves, verts;
        double area = 0.0;
        Point2 lo, hi;
        Contour2 poly;
    };
    std::vector<Ring> outers, inners;
    for (auto& cyc : cycles) {
        if (cyc.size() < 3) continue;
        Ring r;
        r.halves = cyc;
        for (const std::uint32_t h : cyc) r.verts.push_back(halves[h].from);
        r.area = SignedArea(at, r.verts);
        if (r.area == 0.0) continue;
        r.lo = r.hi = at[r.verts[0]];
        std::vector<Point2> pts;
        for (const std::uint32_t v : r.verts) {
            pts.push_back(at[v]);
            r.lo.set(std::min(r.lo.x, at[v].x), std::min(r.lo.y, at[v].y));
            r.hi.set(std::max(r.hi.x, at[v].x), std::max(r.hi.y, at[v].y));
        }
        r.poly = Contour2(std::move(pts), eps);
        (r.area > 0.0 ? outers : inners).push_back(std::move(r));
    }
    if (outers.empty()) return false;

    // Each hole goes to the smallest region that holds its lowest-leftmost corner strictly.
    std::vector<std::vector<std::size_t>> holesOf(outers.size());
    for (std::size_t i = 0; i < inners.size(); ++i) {
        const Ring& h = inners[i];
        std::uint32_t low = h.verts[0];
        for (const std::uint32_t v : h.verts)
            if (at[v].x < at[low].x || (at[v].x == at[low].x && at[v].y < at[low].y)) low = v;
        const Point2 p = at[low];
        std::size_t best = outers.size();
        for (std::size_t j = 0; j < outers.size(); ++j) {
            const Ring& o = outers[j];
            if (p.x < o.lo.x || p.x > o.hi.x || p.y < o.lo.y || p.y > o.hi.y) continue;
            if (o.area < -h.area) continue;
            if (best < outers.size() && o.area >= outers[best].area) continue;
            if (o.poly.Contains(p, true)) best = j;
        }
        if (best == outers.size()) return false;
        holesOf[best].push_back(i);
    }

    faces[f].alive = false;
    std::vector<std::uint32_t> faceOfHalf(halves.size(), kNone);
    for (std::size_t j = 0; j < outers.size(); ++j) {
        Face3Inter piece;
        piece.owner = parent.owner;
        piece.source = parent.source;
        piece.material = parent.material;
        piece.normal = parent.normal;
        piece.d = parent.d;
        piece.frame = parent.frame;
        piece.outline = outers[j].poly;
        const auto self = static_cast<std::uint32_t>(faces.size());
        auto take = [&](const Ring& r, Mvector<std::uint32_t>& loop, Mvector<std::uint32_t>& list) {
            for (const std::uint32_t h : r.halves) {
                loop.push_back(ids[halves[h].from]);
                list.push_back(halves[h].edge);
                faceOfHalf[h] = self;
                piece.box.add(pool[ids[halves[h].from]]);
            }
        };
        take(outers[j], piece.loop, piece.edges);
        for (const std::size_t i : holesOf[j]) {
            piece.holes.emplace_back();
            piece.holeEdges.emplace_back();
            take(inners[i], piece.holes.back(), piece.holeEdges.back());
            piece.holeOutlines.push_back(inners[i].poly);
        }
        piece.box.inflate(eps);
        faces.push_back(std::move(piece));
    }
    // Pieces on the two sides of an edge where the other solid passes through the face lie on
    // opposite sides of that solid.
    for (std::uint32_t h = 0; h < halves.size(); ++h) {
        const Half& hh = halves[h];
        if (!hh.crossing || hh.twin == kNone) continue;
        const std::uint32_t a = faceOfHalf[h], b = faceOfHalf[hh.twin];
        if (a != kNone && b != kNone && a != b) pendingPairs.emplace_back(a, b);
    }
    return true;
}

}  // namespace quillon
