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

#include "quillon/geometry/plane/contour2.h"
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
            if (pool[u].distance2(pool[w]) <= eps * eps) continue;
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

namespace {

struct Half {
    std::uint32_t from, to;  // local vertex numbers
    std::uint32_t edge;      // working edge index
    std::uint32_t twin;      // the opposite half-edge of a new edge, or none
    bool crossing;
    double angle;  // a pseudo-angle of the direction: monotone in the polar angle, in [0, 4)
};
constexpr std::uint32_t kNone = 0xffffffffu;

// A monotone stand-in for the polar angle of (x, y), in [0, 4): the half-edges at a vertex sort by
// it exactly as by the angle, without a transcendental function.
double PseudoAngle(double x, double y) {
    const double d = std::fabs(x) + std::fabs(y);
    if (d == 0.0) return 0.0;
    const double t = y / d;  // in [-1, 1]
    return x >= 0.0 ? (y >= 0.0 ? t : 4.0 + t) : 2.0 - t;
}

}  // namespace

struct Solid3Inter::RebuildScratch {
    std::vector<std::uint32_t> localOf;  // working vertex -> local number (kNone when absent)
    std::vector<std::uint32_t> ids;      // local number -> working vertex
    std::vector<Point2> at;              // local number -> position in the face's frame
    std::vector<Half> halves;
    std::vector<std::uint32_t> outStart, outList, fill;  // outgoing half-edges per vertex
    std::vector<char> used;
    std::vector<std::uint32_t> cycle, kept;
    std::vector<std::uint32_t> ringStart, ringHalves;  // the traced outlines, one after another
    std::vector<std::pair<double, std::uint32_t>> inside;
    std::vector<std::uint32_t> byX;
    std::vector<std::uint32_t> faceOfHalf;
};

bool Solid3Inter::GenerateFaces() {
    pendingPairs.clear();
    RebuildScratch scratch;
    scratch.localOf.assign(pool.size(), kNone);
    for (auto it = newEdges.cbegin(); it != newEdges.cend();) {
        auto jt = it;
        while (jt != newEdges.cend() && jt->face == it->face) ++jt;
        if (!RebuildFace(it->face, it, jt, scratch)) {
            errorStat |= errFaceRebuild;
            return false;
        }
        it = jt;
    }
    return true;
}

bool Solid3Inter::RebuildFace(std::uint32_t f, std::vector<NewEdge>::const_iterator from,
                              std::vector<NewEdge>::const_iterator to, RebuildScratch& S) {
    auto& ids = S.ids;
    auto& at = S.at;
    auto& halves = S.halves;
    ids.clear();
    at.clear();
    halves.clear();
    const Face3Inter& parent = faces[f];
    auto number = [&](std::uint32_t v) {
        std::uint32_t& slot = S.localOf[v];
        if (slot == kNone) {
            slot = static_cast<std::uint32_t>(ids.size());
            ids.push_back(v);
            at.push_back(ToFace(parent, pool[v]));
        }
        return slot;
    };
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
    const std::size_t nv = ids.size();
    auto release = [&] {
        for (const std::uint32_t v : ids) S.localOf[v] = kNone;
    };

    // New edges are split at every vertex of the face lying inside them, so that the regions
    // meet only at shared vertices. Vertices sorted by x narrow the search on large faces.
    const bool sorted = nv > 32;
    if (sorted) {
        S.byX.resize(nv);
        for (std::uint32_t i = 0; i < nv; ++i) S.byX[i] = i;
        std::sort(S.byX.begin(), S.byX.end(),
                  [&](std::uint32_t a, std::uint32_t b) { return at[a].x < at[b].x; });
    }
    const double eps2 = eps * eps;
    for (auto it = from; it != to; ++it) {
        const std::uint32_t a = S.localOf[it->u], b = S.localOf[it->w];
        const Point2 pa = at[a], pb = at[b];
        const Vector2 ab = pb - pa;
        const double len2 = ab.length2();
        S.inside.clear();
        auto consider = [&](std::uint32_t k) {
            if (k == a || k == b) return;
            const Vector2 ap = at[k] - pa;
            const double t = (ap * ab) / len2;
            if (t <= 0.0 || t >= 1.0) return;
            const double cross = ap % ab;
            if (cross * cross > eps2 * len2) return;
            if (at[k].distance2(pa) <= eps2 || at[k].distance2(pb) <= eps2) return;
            S.inside.emplace_back(t, k);
        };
        if (len2 > 0.0) {
            if (sorted) {
                const double lo = std::min(pa.x, pb.x) - eps, hi = std::max(pa.x, pb.x) + eps;
                auto k = std::lower_bound(S.byX.begin(), S.byX.end(), lo,
                                          [&](std::uint32_t v, double x) { return at[v].x < x; });
                for (; k != S.byX.end() && at[*k].x <= hi; ++k) consider(*k);
            } else {
                for (std::uint32_t k = 0; k < nv; ++k) consider(k);
            }
        }
        std::sort(S.inside.begin(), S.inside.end());
        std::uint32_t prev = a;
        S.inside.emplace_back(2.0, b);
        for (const auto& [t, v] : S.inside) {
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
    const auto nh = static_cast<std::uint32_t>(halves.size());
    S.outStart.assign(nv + 1, 0);
    for (Half& hh : halves) {
        const Vector2 d = at[hh.to] - at[hh.from];
        hh.angle = PseudoAngle(d.x, d.y);
        ++S.outStart[hh.from + 1];
    }
    for (std::size_t v = 0; v < nv; ++v) S.outStart[v + 1] += S.outStart[v];
    S.outList.resize(nh);
    S.fill.assign(S.outStart.begin(), S.outStart.end() - 1);
    for (std::uint32_t h = 0; h < nh; ++h) S.outList[S.fill[halves[h].from]++] = h;
    auto byAngle = [&](std::uint32_t a, std::uint32_t b) {
        return halves[a].angle < halves[b].angle;
    };
    for (std::size_t v = 0; v < nv; ++v)
        std::sort(S.outList.begin() + S.outStart[v], S.outList.begin() + S.outStart[v + 1],
                  byAngle);
    // The next half-edge after h: at h's end, the first outgoing one met turning clockwise from
    // the way back (the sharpest left turn), not h's own twin unless nothing else leaves there.
    auto next = [&](std::uint32_t h) -> std::uint32_t {
        const Half& hh = halves[h];
        const auto lo = S.outList.begin() + S.outStart[hh.to];
        const auto hi = S.outList.begin() + S.outStart[hh.to + 1];
        const auto count = static_cast<std::size_t>(hi - lo);
        if (count == 0) return kNone;
        const Vector2 back = at[hh.from] - at[hh.to];
        const double b = PseudoAngle(back.x, back.y);
        auto pos = std::lower_bound(lo, hi, b,
                                    [&](std::uint32_t x, double v) { return halves[x].angle < v; });
        std::size_t p = static_cast<std::size_t>(pos - lo);
        for (std::size_t step = 0; step < count; ++step) {
            p = (p + count - 1) % count;
            const std::uint32_t cand = lo[static_cast<std::ptrdiff_t>(p)];
            if (cand != hh.twin || count == 1) return cand;
        }
        return kNone;
    };

    S.used.assign(nh, 0);
    S.ringStart.clear();
    S.ringHalves.clear();
    for (std::uint32_t h0 = 0; h0 < nh; ++h0) {
        if (S.used[h0]) continue;
        S.cycle.clear();
        std::uint32_t h = h0;
        do {
            if (h == kNone || S.used[h] || S.cycle.size() > nh) {
                release();
                return false;
            }
            S.used[h] = 1;
            S.cycle.push_back(h);
            h = next(h);
        } while (h != h0);
        // Dangling new edges are walked out and back: such spikes bound nothing.
        S.kept.clear();
        for (const std::uint32_t x : S.cycle) {
            if (!S.kept.empty() && halves[S.kept.back()].twin == x)
                S.kept.pop_back();
            else
                S.kept.push_back(x);
        }
        std::size_t lo = 0, hi = S.kept.size();
        while (hi - lo >= 2 && halves[S.kept[hi - 1]].twin == S.kept[lo]) {
            ++lo;
            --hi;
        }
        if (hi - lo < 3) continue;
        S.ringStart.push_back(static_cast<std::uint32_t>(S.ringHalves.size()));
        S.ringHalves.insert(S.ringHalves.end(), S.kept.begin() + static_cast<std::ptrdiff_t>(lo),
                            S.kept.begin() + static_cast<std::ptrdiff_t>(hi));
    }
    S.ringStart.push_back(static_cast<std::uint32_t>(S.ringHalves.size()));

    struct Ring {
        std::uint32_t begin, end;  // range in ringHalves
        double area;
        Point2 lo, hi;
    };
    std::vector<Ring> outers, inners;
    for (std::size_t r = 0; r + 1 < S.ringStart.size(); ++r) {
        Ring ring{S.ringStart[r], S.ringStart[r + 1], 0.0, {}, {}};
        ring.lo = ring.hi = at[halves[S.ringHalves[ring.begin]].from];
        for (std::uint32_t k = ring.begin; k < ring.end; ++k) {
            const Point2& u = at[halves[S.ringHalves[k]].from];
            const Point2& w = at[halves[S.ringHalves[k]].to];
            ring.area += u.x * w.y - u.y * w.x;
            ring.lo.set(std::min(ring.lo.x, u.x), std::min(ring.lo.y, u.y));
            ring.hi.set(std::max(ring.hi.x, u.x), std::max(ring.hi.y, u.y));
        }
        ring.area *= 0.5;
        if (ring.area == 0.0) continue;
        (ring.area > 0.0 ? outers : inners).push_back(ring);
    }
    if (outers.empty()) {
        release();
        return false;
    }
    auto polygon = [&](const Ring& r) {
        std::vector<Point2> pts;
        pts.reserve(r.end - r.begin);
        for (std::uint32_t k = r.begin; k < r.end; ++k)
            pts.push_back(at[halves[S.ringHalves[k]].from]);
        return detail::Ring2(std::move(pts));
    };
    // Region polygons are needed only to place holes.
    std::vector<detail::Ring2> outerPolys(inners.empty() ? 0 : outers.size());
    for (std::size_t j = 0; j < outerPolys.size(); ++j) outerPolys[j] = polygon(outers[j]);

    // Each hole goes to the smallest region that holds its lowest-leftmost corner strictly.
    std::vector<std::vector<std::size_t>> holesOf(outers.size());
    for (std::size_t i = 0; i < inners.size(); ++i) {
        const Ring& h = inners[i];
        Point2 p = at[halves[S.ringHalves[h.begin]].from];
        for (std::uint32_t k = h.begin; k < h.end; ++k) {
            const Point2& q = at[halves[S.ringHalves[k]].from];
            if (q.x < p.x || (q.x == p.x && q.y < p.y)) p = q;
        }
        std::size_t best = outers.size();
        for (std::size_t j = 0; j < outers.size(); ++j) {
            const Ring& o = outers[j];
            if (p.x < o.lo.x || p.x > o.hi.x || p.y < o.lo.y || p.y > o.hi.y) continue;
            if (o.area < -h.area) continue;
            if (best < outers.size() && o.area >= outers[best].area) continue;
            if (!outerPolys[j].onBoundary(p, eps) && outerPolys[j].inside(p)) best = j;
        }
        if (best == outers.size()) {
            release();
            return false;
        }
        holesOf[best].push_back(i);
    }

    // The pieces replace the face. Its plane data is read before the list grows.
    const int owner = parent.owner, material = parent.material;
    const std::uint32_t source = parent.source;
    const Vector3 normal = parent.normal;
    const double offset = parent.d;
    const LocalPlane frame = parent.frame;
    faces[f].alive = false;
    S.faceOfHalf.assign(nh, kNone);
    for (std::size_t j = 0; j < outers.size(); ++j) {
        Face3Inter piece;
        piece.owner = owner;
        piece.source = source;
        piece.material = material;
        piece.normal = normal;
        piece.d = offset;
        piece.frame = frame;
        const auto self = static_cast<std::uint32_t>(faces.size());
        auto take = [&](const Ring& r, Mvector<std::uint32_t>& loop, Mvector<std::uint32_t>& list) {
            loop.reserve(r.end - r.begin);
            list.reserve(r.end - r.begin);
            for (std::uint32_t k = r.begin; k < r.end; ++k) {
                const std::uint32_t h = S.ringHalves[k];
                loop.push_back(ids[halves[h].from]);
                list.push_back(halves[h].edge);
                S.faceOfHalf[h] = self;
                piece.box.add(pool[ids[halves[h].from]]);
            }
        };
        take(outers[j], piece.loop, piece.edges);
        for (const std::size_t i : holesOf[j]) {
            piece.holes.emplace_back();
            piece.holeEdges.emplace_back();
            take(inners[i], piece.holes.back(), piece.holeEdges.back());
        }
        piece.box.inflate(eps);
        faces.push_back(std::move(piece));
    }
    // Pieces on the two sides of an edge where the other solid passes through the face lie on
    // opposite sides of that solid.
    for (std::uint32_t h = 0; h < nh; ++h) {
        const Half& hh = halves[h];
        if (!hh.crossing || hh.twin == kNone) continue;
        const std::uint32_t a = S.faceOfHalf[h], b = S.faceOfHalf[hh.twin];
        if (a != kNone && b != kNone && a != b) pendingPairs.emplace_back(a, b);
    }
    release();
    return true;
}

}  // namespace quillon
