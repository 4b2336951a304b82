// Ear-clipping triangulation of polygons with holes.
//
// The outline is linked counter-clockwise and every hole clockwise; holes are joined to the
// outline by bridges (a pair of coincident cut edges) from their leftmost vertex, leftmost hole
// first, so the whole face becomes one ring. Ears are then clipped; when a full round finds none,
// repeated and collinear vertices are dropped, then local self-crossings cured, and finally the
// ring is split along a valid diagonal. Decisions are made on exact signs, so collinear runs and
// repeated points do not upset it; vertices that are dropped simply carry no triangle.
#include <algorithm>
#include <cmath>
#include <deque>
#include <limits>

#include "quillon/geometry/plane/contour2.h"

namespace quillon {

namespace {

struct Node {
    std::size_t i;
    double x, y;
    Node* prev = nullptr;
    Node* next = nullptr;
};

class EarClipper {
public:
    explicit EarClipper(Mmatrix<std::size_t>& out) : tris(out) {}

    Node* Ring(const std::vector<Point2>& p, std::size_t base, bool ccw) {
        double s = 0.0;
        const std::size_t n = p.size();
        for (std::size_t i = 0, j = n - 1; i < n; j = i++)
            s += (p[j].x - p[i].x) * (p[i].y + p[j].y);
        Node* last = nullptr;
        if (ccw == (s > 0.0)) {
            for (std::size_t i = 0; i < n; ++i) last = Insert(base + i, p[i], last);
        } else {
            for (std::size_t i = n; i-- > 0;) last = Insert(base + i, p[i], last);
        }
        if (last != nullptr && Equals(last, last->next)) {
            Remove(last);
            last = last->next;
        }
        return last;
    }

    Node* EliminateHoles(std::vector<Node*>& holes, Node* outer) {
        std::vector<Node*> queue;
        for (Node* h : holes) {
            queue.push_back(Leftmost(h));
        }
        std::stable_sort(queue.begin(), queue.end(),
                         [](const Node* a, const Node* b) { return a->x < b->x; });
        for (Node* h : queue) outer = EliminateHole(h, outer);
        return outer;
    }

    void EarcutLinked(Node* ear, int pass) {
        if (ear == nullptr) return;
        Node* stop = ear;
        while (ear->prev != ear->next) {
            Node* prev = ear->prev;
            Node* next = ear->next;
            if (IsEar(ear)) {
                Emit(prev, ear, next);
                Remove(ear);
                // Skipping the next vertex gives fewer slivers.
                ear = next->next;
                stop = next->next;
                continue;
            }
            ear = next;
            if (ear == stop) {
                if (pass == 0) {
                    EarcutLinked(Filter(ear, nullptr), 1);
                } else if (pass == 1) {
                    ear = CureLocalIntersections(Filter(ear, nullptr));
                    EarcutLinked(ear, 2);
                } else {
                    SplitEarcut(ear);
                }
                break;
            }
        }
    }

private:
    static double Area(const Node* p, const Node* q, const Node* r) {
        return (q->y - p->y) * (r->x - q->x) - (q->x - p->x) * (r->y - q->y);
    }
    static bool Equals(const Node* a, const Node* b) { return a->x == b->x && a->y == b->y; }
    static bool PointInTriangle(double ax, double ay, double bx, double by, double cx, double cy,
                                double px, double py) {
        return (cx - px) * (ay - py) >= (ax - px) * (cy - py) &&
               (ax - px) * (by - py) >= (bx - px) * (ay - py) &&
               (bx - px) * (cy - py) >= (cx - px) * (by - py);
    }
    static int Sign(double v) { return v > 0.0 ? 1 : (v < 0.0 ? -1 : 0); }
    static bool OnSegment(const Node* p, const Node* q, const Node* r) {
        return q->x <= std::max(p->x, r->x) && q->x >= std::min(p->x, r->x) &&
               q->y <= std::max(p->y, r->y) && q->y >= std::min(p->y, r->y);
    }
    static bool Intersects(const Node* p1, const Node* q1, const Node* p2, const Node* q2) {
        const int o1 = Sign(Area(p1, q1, p2)), o2 = Sign(Area(p1, q1, q2));
        const int o3 = Sign(Area(p2, q2, p1)), o4 = Sign(Area(p2, q2, q1));
        if (o1 != o2 && o3 != o4) return true;
        if (o1 == 0 && OnSegment(p1, p2, q1)) return true;
        if (o2 == 0 && OnSegment(p1, q2, q1)) return true;
        if (o3 == 0 && OnSegment(p2, p1, q2)) return true;
        if (o4 == 0 && OnSegment(p2, q1, q2)) return true;
        return false;
    }
    static bool LocallyInside(const Node* a, const Node* b) {
        return Area(a->prev, a, a->next) < 0.0
                   ? Area(a, b, a->next) >= 0.0 && Area(a, a->prev, b) >= 0.0
                   : Area(a, b, a->prev) < 0.0 || Area(a, a->next, b) < 0.0;
    }
    static bool MiddleInside(const Node* a, const Node* b) {
        const Node* p = a;
        bool inside = false;
        const double px = (a->x + b->x) / 2.0, py = (a->y + b->y) / 2.0;
        do {
            if ((p->y > py) != (p->next->y > py)) {  // so the edge is not level either
                const double x = (p->next->x - p->x) * (py - p->y) / (p->next->y - p->y) + p->x;
                // A middle on an edge would make the diagonal touch that edge (refused as a
                // crossing) or run along it (a collinear vertex, filtered out before).
                if (px < x) inside = !inside;  // mutate: off (a middle on an edge, see above)
            }
            p = p->next;
        } while (p != a);
        return inside;
    }
    static bool IntersectsPolygon(const Node* a, const Node* b) {
        const Node* p = a;
        do {
            if (p->i != a->i && p->next->i != a->i && p->i != b->i && p->next->i != b->i &&
                Intersects(p, p->next, a, b))
                return true;
            p = p->next;
        } while (p != a);
        return false;
    }
    static bool IsValidDiagonal(const Node* a, const Node* b) {
        return a->next->i != b->i && a->prev->i != b->i && !IntersectsPolygon(a, b) &&
               ((LocallyInside(a, b) && LocallyInside(b, a) && MiddleInside(a, b) &&
                 (Area(a->prev, a, b->prev) != 0.0 || Area(a, b->prev, b) != 0.0)) ||
                (Equals(a, b) && Area(a->prev, a, a->next) > 0.0 &&
                 Area(b->prev, b, b->next) > 0.0));
    }
    static bool SectorContainsSector(const Node* m, const Node* p) {
        return Area(m->prev, m, p->prev) < 0.0 && Area(p->next, m, m->next) < 0.0;
    }
    static Node* Leftmost(Node* start) {
        Node* p = start;
        Node* left = start;
        do {
            if (p->x < left->x || (p->x == left->x && p->y < left->y)) left = p;
            p = p->next;
        } while (p != start);
        return left;
    }

    Node* Insert(std::size_t i, const Point2& pt, Node* last) {
        pool.push_back(Node{i, pt.x, pt.y});
        Node* p = &pool.back();
        if (last == nullptr) {
            p->prev = p;
            p->next = p;
        } else {
            p->next = last->next;
            p->prev = last;
            last->next->prev = p;
            last->next = p;
        }
        return p;
    }
    static void Remove(Node* p) {
        p->next->prev = p->prev;
        p->prev->next = p->next;
    }
    void Emit(const Node* a, const Node* b, const Node* c) {
        Mvector<std::size_t> row;
        row.push_back(a->i);
        row.push_back(b->i);
        row.push_back(c->i);
        tris.push_back(std::move(row));
    }

    // Drops repeated and collinear vertices between start and end.
    static Node* Filter(Node* start, Node* end) {
        if (start == nullptr) return start;
        if (end == nullptr) end = start;
        Node* p = start;
        bool again;
        do {
            again = false;
            if (Equals(p, p->next) || Area(p->prev, p, p->next) == 0.0) {
                Remove(p);
                p = end = p->prev;
                if (p == p->next) break;
                again = true;
            } else {
                p = p->next;
            }
        } while (again || p != end);
        return end;
    }

    static bool IsEar(const Node* ear) {
        const Node* a = ear->prev;
        const Node* b = ear;
        const Node* c = ear->next;
        if (Area(a, b, c) >= 0.0) return false;  // reflex or flat
        const double x0 = std::min({a->x, b->x, c->x}), y0 = std::min({a->y, b->y, c->y});
        const double x1 = std::max({a->x, b->x, c->x}), y1 = std::max({a->y, b->y, c->y});
        for (const Node* p = c->next; p != a; p = p->next) {
            if (p->x >= x0 && p->x <= x1 && p->y >= y0 && p->y <= y1 &&
                PointInTriangle(a->x, a->y, b->x, b->y, c->x, c->y, p->x, p->y) &&
                Area(p->prev, p, p->next) >= 0.0)
                return false;
        }
        return true;
    }

    Node* CureLocalIntersections(Node* start) {
        Node* p = start;
        do {
            Node* a = p->prev;
            Node* b = p->next->next;
            if (!Equals(a, b) && Intersects(a, p, p->next, b) && LocallyInside(a, b) &&
                LocallyInside(b, a)) {
                Emit(a, p, b);
                Remove(p);
                Remove(p->next);
                p = start = b;
            }
            p = p->next;
        } while (p != start);
        return Filter(p, nullptr);
    }

    void SplitEarcut(Node* start) {
        Node* a = start;
        do {
            Node* b = a->next->next;
            while (b != a->prev) {
                if (a->i != b->i && IsValidDiagonal(a, b)) {
                    Node* c = Split(a, b);
                    a = Filter(a, a->next);
                    c = Filter(c, c->next);
                    EarcutLinked(a, 0);
                    EarcutLinked(c, 0);
                    return;
                }
                b = b->next;
            }
            a = a->next;
        } while (a != start);
    }

    // Links a to b with a doubled cut, splitting the ring in two; returns the copy of b.
    Node* Split(Node* a, Node* b) {
        pool.push_back(Node{a->i, a->x, a->y});
        Node* a2 = &pool.back();
        pool.push_back(Node{b->i, b->x, b->y});
        Node* b2 = &pool.back();
        Node* an = a->next;
        Node* bp = b->prev;
        a->next = b;
        b->prev = a;
        a2->next = an;
        an->prev = a2;
        b2->next = a2;
        a2->prev = b2;
        bp->next = b2;
        b2->prev = bp;
        return b2;
    }

    Node* EliminateHole(Node* hole, Node* outer) {
        Node* bridge = FindHoleBridge(hole, outer);
        if (bridge == nullptr) return outer;
        Node* reverse = Split(bridge, hole);
        Filter(reverse, reverse->next);
        return Filter(bridge, bridge->next);
    }

    static Node* FindHoleBridge(const Node* hole, Node* outer) {
        Node* p = outer;
        const double hx = hole->x, hy = hole->y;
        double qx = -std::numeric_limits<double>::infinity();
        Node* m = nullptr;
        // The outline edge met first by a ray from the hole's leftmost point to the left; its end
        // with the lesser x is the candidate.
        do {
            if (hy <= p->y && hy >= p->next->y && p->next->y != p->y) {
                const double x = p->x + (hy - p->y) * (p->next->x - p->x) / (p->next->y - p->y);
                if (x <= hx && x > qx) {
                    qx = x;
                    m = p->x < p->next->x ? p : p->next;
                    if (x == hx) return m;  // the hole touches the outline
                }
            }
            p = p->next;
        } while (p != outer);
        if (m == nullptr) return nullptr;
        // Vertices inside the triangle (hole point, ray hit, candidate) would block the bridge;
        // take the one making the least angle with the ray instead.
        const Node* stop = m;
        const double mx = m->x, my = m->y;
        double tan_min = std::numeric_limits<double>::infinity();
        p = m;
        do {
            if (hx >= p->x && p->x >= mx && hx != p->x &&
                PointInTriangle(hy < my ? hx : qx, hy, mx, my, hy < my ? qx : hx, hy, p->x, p->y)) {
                const double tan = std::fabs(hy - p->y) / (hx - p->x);
                if (LocallyInside(p, hole) &&
                    (tan < tan_min ||
                     (tan == tan_min &&
                      (p->x > m->x || (p->x == m->x && SectorContainsSector(m, p)))))) {
                    m = p;
                    tan_min = tan;
                }
            }
            p = p->next;
        } while (p != stop);
        return m;
    }

    Mmatrix<std::size_t>& tris;
    std::deque<Node> pool;  // stable addresses for the ring links
};

constexpr double kZeroArea = 1.4210854715202004e-14;  // 2^-46

bool Triangulate(const Contour2& outer, const Mvector<Contour2>* holes,
                 Mmatrix<std::size_t>& triangles) {
    triangles.clear();
    const std::vector<Point2>& p = outer.Points();
    if (p.size() < 3 || outer.Area() <= kZeroArea) return false;
    EarClipper clip(triangles);
    Node* ring = clip.Ring(p, 0, true);
    if (ring == nullptr || ring->next == ring->prev) return false;  // mutate: off (guard)
    if (holes != nullptr) {
        std::vector<Node*> rings;
        std::size_t base = p.size();
        for (const Contour2& h : *holes) {
            if (h.Count() >= 3 && h.Area() > kZeroArea) {
                if (Node* r = clip.Ring(h.Points(), base, false)) rings.push_back(r);
            }
            base += h.Count();
        }
        if (!rings.empty()) ring = clip.EliminateHoles(rings, ring);
    }
    clip.EarcutLinked(ring, 0);
    // The clipper works counter-clockwise; hand back triangles turning as the outline does.
    if (outer.SignedArea() < 0.0) {
        for (auto& t : triangles) std::swap(t[1], t[2]);
    }
    return !triangles.empty();
}

}  // namespace

bool Contour2::Triangulate(Mmatrix<std::size_t>& triangles) const {
    return quillon::Triangulate(*this, nullptr, triangles);
}

bool Contour2::TriangulateWithHoles(const Mvector<Contour2>& holes,
                                    Mmatrix<std::size_t>& triangles) const {
    return quillon::Triangulate(*this, &holes, triangles);
}

}  // namespace quillon
