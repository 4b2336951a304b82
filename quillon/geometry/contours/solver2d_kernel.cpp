// The geometry kernel declared in detail/las_geometry.h. It sits beside Solver2d, its only client,
// because the module builds the sources of its own folder.
#include "quillon/geometry/contours/detail/las_geometry.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace quillon::las_detail {

namespace {

double Cross(const Vector2& u, const Vector2& v) { return u.x * v.y - u.y * v.x; }
// Plain square root of the sum of squares: the coordinates here are far from overflow, and this
// is several times cheaper than std::hypot in the inner loops.
double Dist(const Point2& p, const Point2& q) {
    const double dx = p.x - q.x, dy = p.y - q.y;
    return std::sqrt(dx * dx + dy * dy);
}
double Dot(const Vector2& u, const Vector2& v) { return u.x * v.x + u.y * v.y; }

Point2 Rotated(const Point2& c, const Point2& p, double angle) {
    const double s = std::sin(angle), co = std::cos(angle);
    const double dx = p.x - c.x, dy = p.y - c.y;
    return {c.x + dx * co - dy * s, c.y + dx * s + dy * co};
}

double SegmentDistance(const Point2& a, const Point2& b, const Point2& p) {
    const Vector2 d = b - a;
    const double l2 = Dot(d, d);
    if (l2 == 0.0) return Dist(p, a);
    const double t = std::clamp(Dot(p - a, d) / l2, 0.0, 1.0);
    return Dist(p, Point2(a.x + t * d.x, a.y + t * d.y));
}

double LineDistance(const Curve& l, const Point2& p) {
    const Vector2 d = l.b - l.a;
    const double len = d.length();
    if (len == 0.0) return Dist(p, l.a);
    return std::fabs(Cross(d, p - l.a)) / len;
}

void AddUnique(std::vector<Point2>& out, const Point2& x, double eps) {
    for (const Point2& y : out)
        if (Dist(x, y) <= eps) return;
    out.push_back(x);
}

}  // namespace

double ArcParam(const Curve& arc, const Point2& p) {
    const Vector2 v0 = arc.a - arc.c, v = p - arc.c;
    double t = std::atan2(Cross(v0, v), Dot(v0, v));
    if (arc.sweep < 0.0) t = -t;
    if (t < 0.0) t += kTwoPi;
    if (t >= kTwoPi) t = 0.0;
    return t;
}

Point2 CurvePoint(const Curve& k, double t) {
    if (t <= 0.0) return k.a;
    if (t >= 1.0) return k.b;
    if (k.type == 0) return {k.a.x + t * (k.b.x - k.a.x), k.a.y + t * (k.b.y - k.a.y)};
    return Rotated(k.c, k.a, t * k.sweep);
}

double CurveParam(const Curve& k, const Point2& p) {
    if (k.type == 0) {
        const Vector2 d = k.b - k.a;
        const double l2 = Dot(d, d);
        if (l2 == 0.0) return 0.0;
        return std::clamp(Dot(p - k.a, d) / l2, 0.0, 1.0);
    }
    const double s = std::fabs(k.sweep);
    if (s == 0.0) return 0.0;
    const double t = ArcParam(k, p);
    if (k.IsFullCircle()) return t / kTwoPi;
    if (t <= s) return t / s;
    return (t - s < kTwoPi - t) ? 1.0 : 0.0;
}

Point2 CurveMid(const Curve& k) {
    if (k.type == 0) return {(k.a.x + k.b.x) / 2.0, (k.a.y + k.b.y) / 2.0};
    return Rotated(k.c, k.a, k.sweep / 2.0);
}

double Distance(const Curve& k, const Point2& p) {
    if (k.type == 0) return SegmentDistance(k.a, k.b, p);
    const double onCircle = std::fabs(Dist(p, k.c) - k.r);
    if (k.IsFullCircle() || ArcParam(k, p) <= std::fabs(k.sweep)) return onCircle;
    return std::min(Dist(p, k.a), Dist(p, k.b));
}

bool Near(const Curve& k, const Point2& p, double eps) {
    if (k.type == 1 && !k.IsFullCircle()) {
        // The distance to an arc is at least the gap to its circle (through a) or, beyond its
        // ends, the gap to the circle through b; a clear margin over rounding leaves the angle
        // of p (the dear part) uncomputed when both gaps exceed eps.
        const double d = Dist(p, k.c);
        const double gap = std::min(std::fabs(d - k.r), std::fabs(d - Dist(k.b, k.c)));
        if (gap > eps * (1.0 + 1e-9) + 1e-14 * (d + k.r)) return false;
    }
    return Distance(k, p) <= eps;
}

Box CurveBox(const Curve& k) {
    Box b;
    b.Add(k.a);
    b.Add(k.b);
    if (k.type == 1) {
        const Point2 ext[4] = {
            {k.c.x + k.r, k.c.y}, {k.c.x, k.c.y + k.r}, {k.c.x - k.r, k.c.y}, {k.c.x, k.c.y - k.r}};
        for (const Point2& e : ext)
            if (k.IsFullCircle() || ArcParam(k, e) <= std::fabs(k.sweep)) b.Add(e);
    }
    return b;
}

namespace {

// The circle crossing with the choice of how near-tangencies count: `collapse` takes circles whose
// gap is within eps anywhere as tangent (one point), otherwise only crossings closer than eps are.
void CircleCrossImpl(const Point2& c1, double r1, const Point2& c2, double r2, double eps,
                     bool collapse, std::vector<Point2>& out) {
    const double d = Dist(c1, c2);
    if (!(d > eps)) return;
    if (d > r1 + r2 + eps || d < std::fabs(r1 - r2) - eps) return;
    const Vector2 u((c2.x - c1.x) / d, (c2.y - c1.y) / d);
    const double a = (d * d + r1 * r1 - r2 * r2) / (2.0 * d);
    const double h2 = r1 * r1 - a * a;
    const double h = h2 > 0.0 ? std::sqrt(h2) : 0.0;
    const Point2 p0(c1.x + a * u.x, c1.y + a * u.y);
    bool tangent = 2.0 * h <= eps;
    if (collapse && (std::fabs(d - (r1 + r2)) <= eps || std::fabs(d - std::fabs(r1 - r2)) <= eps))
        tangent = true;
    if (tangent) {
        out.push_back(p0);
        return;
    }
    out.emplace_back(p0.x - u.y * h, p0.y + u.x * h);
    out.emplace_back(p0.x + u.y * h, p0.y - u.x * h);
}

}  // namespace

void CircleCross(const Point2& c1, double r1, const Point2& c2, double r2, double eps,
                 std::vector<Point2>& out) {
    out.clear();
    CircleCrossImpl(c1, r1, c2, r2, eps, false, out);
}

void CrossCurves(const Curve& p, const Curve& q, double eps, std::vector<Point2>& out) {
    out.clear();
    const auto endsOn = [&](const Curve& k, const Curve& other) {
        if (Near(other, k.a, eps)) AddUnique(out, k.a, eps);
        if (Near(other, k.b, eps)) AddUnique(out, k.b, eps);
    };
    endsOn(p, q);
    endsOn(q, p);

    std::vector<Point2> cand;
    if (p.type == 0 && q.type == 0) {
        if (LineDistance(p, q.a) <= eps && LineDistance(p, q.b) <= eps) return;
        if (LineDistance(q, p.a) <= eps && LineDistance(q, p.b) <= eps) return;
        const Vector2 dp = p.b - p.a, dq = q.b - q.a;
        const double det = Cross(dp, dq);
        if (det == 0.0) return;
        const double t = Cross(q.a - p.a, dq) / det;
        cand.emplace_back(p.a.x + t * dp.x, p.a.y + t * dp.y);
    } else if (p.type == 1 && q.type == 1) {
        if (Dist(p.c, q.c) <= eps && std::fabs(p.r - q.r) <= eps) return;
        CircleCrossImpl(p.c, p.r, q.c, q.r, eps, true, cand);
    } else {
        const Curve& l = p.type == 0 ? p : q;
        const Curve& arc = p.type == 0 ? q : p;
        const Vector2 d = l.b - l.a;
        const double l2 = Dot(d, d);
        if (l2 == 0.0) return;
        const double t = Dot(arc.c - l.a, d) / l2;
        const Point2 foot(l.a.x + t * d.x, l.a.y + t * d.y);
        const double h = Dist(foot, arc.c);
        if (h > arc.r + eps) return;
        if (std::fabs(h - arc.r) <= eps) {
            cand.push_back(foot);
        } else {
            const double s = std::sqrt(std::max(0.0, arc.r * arc.r - h * h) / l2);
            cand.emplace_back(foot.x - s * d.x, foot.y - s * d.y);
            cand.emplace_back(foot.x + s * d.x, foot.y + s * d.y);
        }
    }
    for (const Point2& x : cand)
        if (Near(p, x, eps) && Near(q, x, eps)) AddUnique(out, x, eps);
}

double WindingAngle(const Curve& k, const Point2& p) {
    if (k.IsFullCircle()) {
        if (Dist(p, k.c) >= k.r) return 0.0;
        return k.sweep > 0.0 ? kTwoPi : -kTwoPi;
    }
    const Vector2 va = k.a - p, vb = k.b - p;
    const double cr = Cross(va, vb), dt = Dot(va, vb);
    if (k.type == 1 && k.sweep != 0.0) {
        // Seen from a point of its chord the arc turns by exactly half a turn its own way.
        if (cr == 0.0 && dt < 0.0) return k.sweep > 0.0 ? kPi : -kPi;
        double ang = std::atan2(cr, dt);
        // Inside the circular segment between chord and arc the arc also winds once round p.
        // The side of the chord is read from the same cross product as the angle (they are equal
        // mathematically), so a point on the chord through the centre is judged consistently.
        if (Dist(p, k.c) < k.r) {
            if (k.sweep > 0.0 && cr < 0.0) ang += kTwoPi;
            if (k.sweep < 0.0 && cr > 0.0) ang -= kTwoPi;
        }
        return ang;
    }
    return std::atan2(cr, dt);
}

std::vector<Curve> CurvesOf(const LAContour& c) {
    std::vector<Curve> out;
    const std::size_t n = c.size();
    out.reserve(n);
    for (std::size_t i = 0; i < n; ++i) {
        const LAEdge& e = c[i];
        const Point2& next = c[(i + 1) % n].start;
        // Edges with coordinates or sweeps that are not finite bound nothing.
        if (!std::isfinite(e.start.x) || !std::isfinite(e.start.y) || !std::isfinite(next.x) ||
            !std::isfinite(next.y))
            continue;
        if (e.type == 1 &&
            (!std::isfinite(e.angle) || !std::isfinite(e.centre.x) || !std::isfinite(e.centre.y)))
            continue;
        if (e.type == 1 && e.angle != 0.0 && Dist(e.start, e.centre) > 0.0) {
            if (e.start.x == next.x && e.start.y == next.y && std::fabs(e.angle) < kTwoPi - 1e-12)
                continue;
            out.push_back(Curve::Arc(e.start, next, e.centre, e.angle));
        } else if (e.start.x != next.x || e.start.y != next.y) {
            out.push_back(Curve::Line(e.start, next));
        }
    }
    return out;
}

CurveSet::CurveSet(std::vector<Curve> cs, double e) : curves(std::move(cs)), eps(e) {
    boxes.reserve(curves.size());
    for (const Curve& k : curves) {
        boxes.push_back(CurveBox(k).Grown(2.0 * eps));
        bounds.Add(boxes.back());
    }
}

void CurveSet::EnsureGrid() {
    if (grid.Valid()) return;
    double size = 0.0;
    for (const Box& b : boxes) size += (b.x1 - b.x0) + (b.y1 - b.y0);
    grid.BuildPacked(bounds, boxes,
                     curves.empty() ? 0.0 : size / (2.0 * static_cast<double>(curves.size())));
}

bool CurveSet::OnBoundary(const Point2& p) {
    Box b;
    b.Add(p);
    EnsureGrid();
    grid.Query(b, scratch);
    for (int id : scratch) {
        const Box& cb = boxes[static_cast<std::size_t>(id)];
        if (p.x < cb.x0 || p.x > cb.x1 || p.y < cb.y0 || p.y > cb.y1) continue;
        if (Near(curves[static_cast<std::size_t>(id)], p, eps)) return true;
    }
    return false;
}

int CurveSet::Winding(const Point2& p) const {
    if (!bounds.Overlaps(Box{p.x, p.y, p.x, p.y})) return 0;
    double sum = 0.0;
    for (const Curve& k : curves) sum += WindingAngle(k, p);
    const double turns = sum / kTwoPi;
    if (!(std::fabs(turns) < 1e9)) return 0;
    return static_cast<int>(std::lround(turns));
}

void CurveSet::SplitParams(const Curve& k, std::vector<double>& params) {
    params.clear();
    EnsureGrid();
    const Box kb = CurveBox(k).Grown(2.0 * eps);
    grid.Query(kb, scratch);
    std::sort(scratch.begin(), scratch.end());
    for (int id : scratch) {
        if (!kb.Overlaps(boxes[static_cast<std::size_t>(id)])) continue;
        CrossCurves(k, curves[static_cast<std::size_t>(id)], eps, pts);
        for (const Point2& x : pts) {
            if (Dist(x, k.a) <= eps || Dist(x, k.b) <= eps) continue;
            params.push_back(CurveParam(k, x));
        }
    }
    std::sort(params.begin(), params.end());
    std::size_t w = 0;
    for (std::size_t i = 0; i < params.size(); ++i) {
        if (w > 0 && Dist(CurvePoint(k, params[w - 1]), CurvePoint(k, params[i])) <= eps) continue;
        params[w++] = params[i];
    }
    params.resize(w);
}

namespace {

std::uint64_t PointHash(const Point2& p) {
    std::uint64_t x, y;
    std::memcpy(&x, &p.x, sizeof x);
    std::memcpy(&y, &p.y, sizeof y);
    x *= 0x9E3779B97F4A7C15ull;
    y = (y ^ (y >> 29)) * 0xBF58476D1CE4E5B9ull;
    return x ^ (y + (x >> 31));
}
// Symmetric, so a reversed curve finds its twin; the high bits are folded into the low ones that
// pick the slot (round coordinates leave the low bits of their products empty).
std::uint64_t EndsHash(const Curve& k) {
    std::uint64_t h = PointHash(k.a) + PointHash(k.b);
    h ^= h >> 32;
    h *= 0xD6E8FEB86659FD93ull;
    return h ^ (h >> 29);
}

double Magnitude(const Curve& k) {
    double m = std::max({std::fabs(k.a.x), std::fabs(k.a.y), std::fabs(k.b.x), std::fabs(k.b.y)});
    if (k.type == 1) m = std::max({m, std::fabs(k.c.x), std::fabs(k.c.y), k.r});
    return m;
}

}  // namespace

void CurveSet::EnsureEnds() {
    if (endsBuilt) return;
    endsBuilt = true;
    // Open addressing over a power-of-two table at most half full; a slot holds index + 1.
    std::size_t size = 16;
    while (size < 2 * curves.size()) size *= 2;
    ends.assign(size, 0);
    for (std::size_t i = 0; i < curves.size(); ++i) {
        std::size_t at = static_cast<std::size_t>(EndsHash(curves[i])) & (size - 1);
        while (ends[at] != 0) at = (at + 1) & (size - 1);
        ends[at] = static_cast<int>(i) + 1;
    }
}

bool CurveSet::HasCurve(const Curve& k) {
    if (k.IsFullCircle()) return false;
    EnsureEnds();
    // Rounding of the points computed along k and of their distances stays far below this.
    const double noise = 1e-12 * Magnitude(k);
    const std::size_t mask = ends.size() - 1;
    for (std::size_t at = static_cast<std::size_t>(EndsHash(k)) & mask; ends[at] != 0;
         at = (at + 1) & mask) {
        const Curve& j = curves[static_cast<std::size_t>(ends[at] - 1)];
        if (j.type != k.type || j.IsFullCircle()) continue;
        const bool same = j.a.x == k.a.x && j.a.y == k.a.y && j.b.x == k.b.x && j.b.y == k.b.y;
        const bool reversed = j.a.x == k.b.x && j.a.y == k.b.y && j.b.x == k.a.x && j.b.y == k.a.y;
        if (!same && !reversed) continue;
        if (k.type == 0) {
            if (noise <= eps) return true;
            continue;
        }
        // Ends and sweep fix the centre of a consistent arc, and a twin missed here is placed by
        // its middle point: the centre test only keeps out arcs that contradict themselves.
        const bool sameCentre = j.c.x == k.c.x && j.c.y == k.c.y;  // mutate: off (see above)
        if (!sameCentre || j.sweep != (same ? k.sweep : -k.sweep)) continue;
        // The arc's own end may sit off the place its sweep reaches, and off its circle; points
        // of k then stray from j by up to twice that gap plus the radii's difference.
        const double gap = Dist(Rotated(j.c, j.a, j.sweep), j.b);
        if (2.0 * gap + std::fabs(j.r - k.r) + noise <= eps) return true;
    }
    return false;
}

SideFlags Classify(CurveSet& first, const std::vector<Curve>& second, double eps) {
    SideFlags f;
    const std::size_t n = second.size();
    if (n == 0) return f;
    const auto classify = [&](const Point2& p) {
        if (first.OnBoundary(p))
            f.on = true;
        else if (first.Winding(p) != 0)
            f.in = true;
        else
            f.out = true;
    };
    std::vector<char> vOn(n), split(n), same(n);
    for (std::size_t v = 0; v < n; ++v) same[v] = first.HasCurve(second[v]) ? 1 : 0;
    for (std::size_t v = 0; v < n; ++v) {
        const Curve& before = second[(v + n - 1) % n];
        const bool endOfSame =
            same[(v + n - 1) % n] && before.b.x == second[v].a.x && before.b.y == second[v].a.y;
        vOn[v] = (same[v] || endOfSame || first.OnBoundary(second[v].a)) ? 1 : 0;
    }
    std::vector<double> ps;
    for (std::size_t v = 0; v < n && !(f.in && f.out); ++v) {
        const Curve& k = second[v];
        if (same[v]) {
            // Both ends and every piece between contacts lie on the boundary; whether it was
            // split is asked only of edges leading to a vertex off the boundary.
            f.on = true;
            continue;
        }
        first.SplitParams(k, ps);
        split[v] = ps.empty() ? 0 : 1;
        // Pieces between two boundary contacts are judged by their middle; the others take the
        // side of their off-boundary end below.
        double t0 = 0.0;
        bool on0 = vOn[v] != 0;
        for (std::size_t i = 0; i <= ps.size(); ++i) {
            const double t1 = i < ps.size() ? ps[i] : 1.0;
            const bool on1 = i < ps.size() ? true : vOn[(v + 1) % n] != 0;
            if (on0 && on1) classify(CurvePoint(k, (t0 + t1) / 2.0));
            t0 = t1;
            on0 = on1;
        }
    }
    if (f.in && f.out) return f;
    // Off-boundary vertices joined by edges that meet nothing lie on one side: one test per run.
    std::size_t start = n;
    for (std::size_t v = 0; v < n && start == n; ++v) {
        const std::size_t prev = (v + n - 1) % n;
        if (!vOn[v] && (vOn[prev] || split[prev])) start = v;
    }
    if (start == n) {
        if (!vOn[0]) classify(second[0].a);
        return f;
    }
    bool known = false;
    for (std::size_t i = 0; i < n && !(f.in && f.out); ++i) {
        const std::size_t v = (start + i) % n, prev = (v + n - 1) % n;
        if (vOn[v]) {
            known = false;
            continue;
        }
        if (known && !split[prev] && !vOn[prev]) continue;
        classify(second[v].a);
        known = true;
    }
    (void)eps;
    return f;
}

int Relate(CurveSet& f, const std::vector<Curve>& cs, double eps) {
    if (f.Curves().empty() || cs.empty()) return 3;
    Box bs;
    for (const Curve& k : cs) bs.Add(CurveBox(k));
    if (!f.Bounds().Overlaps(bs.Grown(2.0 * eps))) return 3;
    const SideFlags s = Classify(f, cs, eps);
    if (s.in && s.out) return 2;
    if (s.in) return 0;
    if (!s.out) {
        // Every piece runs along the first's boundary: the same outline, or a region outside
        // the first closed by its edges (a notch pinched off at a point). A point inside the
        // second, off its boundary, tells them apart.
        CurveSet g(cs, eps);
        for (const Curve& k : cs) {
            const Point2 m = CurvePoint(k, 0.5);
            const Point2 a = CurvePoint(k, 0.45), b = CurvePoint(k, 0.55);
            Vector2 n(-(b.y - a.y), b.x - a.x);
            const double len = n.length();
            if (!(len > 0.0)) continue;
            n /= len;
            for (double t = len; t > 2.0 * eps; t /= 4.0) {
                for (const double side : {1.0, -1.0}) {
                    const Point2 p(m.x + side * t * n.x, m.y + side * t * n.y);
                    if (g.OnBoundary(p) || g.Winding(p) == 0 || f.OnBoundary(p)) continue;
                    return f.Winding(p) != 0 ? 0 : 5;
                }
            }
        }
        return 0;
    }
    if (s.on) return 5;
    // The second lies wholly outside the first: it encloses the first or stands apart.
    CurveSet g(cs, eps);
    const SideFlags t = Classify(g, f.Curves(), eps);
    return t.in ? 1 : 3;
}

}  // namespace quillon::las_detail
