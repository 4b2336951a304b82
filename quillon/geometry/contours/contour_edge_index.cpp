#include "quillon/geometry/contours/contour_edge_index.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace quillon::contour_index {

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kTwoPi = 2.0 * std::numbers::pi;
constexpr double kHeadingTol = 1e-9;

double StartAngle(const Curve& k) { return std::atan2(k.a.y - k.c.y, k.a.x - k.c.x); }

// Angle of p about the centre measured from the start in the sweep's own sense, in [0, 2π).
double ArcU(const Curve& k, double t0, double theta) {
    double u = k.sweep >= 0.0 ? theta - t0 : t0 - theta;
    u = std::fmod(u, kTwoPi);
    if (u < 0.0) u += kTwoPi;
    return u;
}

double ArcUOf(const Curve& k, const Point2& p) {
    return ArcU(k, StartAngle(k), std::atan2(p.y - k.c.y, p.x - k.c.x));
}

double Span(const Curve& k) { return std::min(std::fabs(k.sweep), kTwoPi); }

Point2 Turned(const Point2& c, const Point2& p, double a) {
    const double s = std::sin(a), co = std::cos(a);
    const double dx = p.x - c.x, dy = p.y - c.y;
    return Point2(c.x + dx * co - dy * s, c.y + dx * s + dy * co);
}

double NormalAngle(double x, double y) {
    double a = std::atan2(y, x);
    if (a < 0.0) a += kTwoPi;
    if (a >= kTwoPi) a = 0.0;
    return a;
}

double AngleGap(double a, double b) {
    const double d = std::fabs(a - b);
    return std::min(d, kTwoPi - d);
}

}  // namespace

void Box::Add(const Point2& p) {
    if (Empty()) {
        x0 = x1 = p.x;
        y0 = y1 = p.y;
        return;
    }
    x0 = std::min(x0, p.x);
    y0 = std::min(y0, p.y);
    x1 = std::max(x1, p.x);
    y1 = std::max(y1, p.y);
}

void Box::Add(const Box& b) {
    if (b.Empty()) return;
    Add(Point2(b.x0, b.y0));
    Add(Point2(b.x1, b.y1));
}

Curve Curve::Line(const Point2& a, const Point2& b) {
    Curve k;
    k.a = a;
    k.b = b;
    k.box.Add(a);
    k.box.Add(b);
    return k;
}

Curve Curve::Arc(const Point2& a, const Point2& b, const Point2& c, double sweep) {
    Curve k;
    k.type = 1;
    k.a = a;
    k.b = b;
    k.c = c;
    k.sweep = sweep;
    k.r = a.distance(c);
    k.box.Add(a);
    k.box.Add(b);
    const double t0 = StartAngle(k);
    const Point2 extremes[4] = {Point2(c.x + k.r, c.y), Point2(c.x, c.y + k.r),
                                Point2(c.x - k.r, c.y), Point2(c.x, c.y - k.r)};
    for (int q = 0; q < 4; ++q) {
        // Extreme points are placed by quadrant, not through cos/sin of q·π/2, so they are exact.
        if (std::fabs(sweep) >= kTwoPi || ArcU(k, t0, q * kPi / 2.0) <= std::fabs(sweep))
            k.box.Add(extremes[q]);
    }
    return k;
}

double Curve::Length() const { return type == 1 ? r * Span(*this) : a.distance(b); }

double Distance(const Curve& k, const Point2& p) {
    const double ends = std::min(p.distance(k.a), p.distance(k.b));
    if (k.type == 1) {
        if (ArcUOf(k, p) <= Span(k)) return std::min(ends, std::fabs(p.distance(k.c) - k.r));
        return ends;
    }
    const Vector2 d = k.b - k.a;
    const double l2 = d.length2();
    if (!(l2 > 0.0)) return ends;
    const double t = std::clamp(((p - k.a) * d) / l2, 0.0, 1.0);
    return p.distance(k.a + d * t);
}

double Param(const Curve& k, const Point2& p) {
    if (k.type == 1) {
        const double span = Span(k);
        if (!(span > 0.0)) return 0.0;
        const double u = ArcUOf(k, p);
        if (u <= span) return u / span;
        return p.distance(k.b) < p.distance(k.a) ? 1.0 : 0.0;
    }
    const Vector2 d = k.b - k.a;
    const double l2 = d.length2();
    if (!(l2 > 0.0)) return 0.0;
    return std::clamp(((p - k.a) * d) / l2, 0.0, 1.0);
}

Point2 PointAt(const Curve& k, double t) {
    if (t <= 0.0) return k.a;
    if (t >= 1.0) return k.b;
    if (k.type == 1) return Turned(k.c, k.a, k.sweep * t);
    return k.a + (k.b - k.a) * t;
}

Heading Leaving(const Curve& k, bool atStart) {
    if (k.type != 1) {
        const Vector2 d = atStart ? k.b - k.a : k.a - k.b;
        return {NormalAngle(d.x, d.y), 0.0};
    }
    const Vector2 w = (atStart ? k.a : k.b) - k.c;
    // Forwards an arc turns with its sweep; backwards against it.
    const bool left = (k.sweep >= 0.0) == atStart;
    const double kappa = k.r > 0.0 ? 1.0 / k.r : 0.0;
    if (left) return {NormalAngle(-w.y, w.x), kappa};
    return {NormalAngle(w.y, -w.x), -kappa};
}

bool SameHeading(const Heading& h, const Heading& g) {
    if (AngleGap(h.angle, g.angle) > kHeadingTol) return false;
    const double scale = std::max(std::fabs(h.curvature), std::fabs(g.curvature));
    return std::fabs(h.curvature - g.curvature) <= kHeadingTol * scale;
}

bool HeadingBefore(const Heading& h, const Heading& g) {
    if (AngleGap(h.angle, g.angle) <= kHeadingTol) return h.curvature < g.curvature;
    return h.angle < g.angle;
}

void Contacts(const Solver2d& rel, const Curve& p, const Curve& q, std::vector<Point2>& out) {
    const auto arcOf = [](const Curve& k) {
        return Arc2(Circle2(k.c, k.r), (k.a - k.c).angle(), k.sweep);
    };
    if (p.type != 1 && q.type != 1) {
        rel.FindLineCrossPoint(Sector2(p.a, p.b), Sector2(q.a, q.b), out);
    } else if (p.type != 1) {
        rel.FindLineArcCrossPoint(Sector2(p.a, p.b), arcOf(q), out);
    } else if (q.type != 1) {
        rel.FindLineArcCrossPoint(Sector2(q.a, q.b), arcOf(p), out);
    } else {
        rel.FindArcCrossPoint(arcOf(p), arcOf(q), out);
    }
}

void RayCrossings(const Curve& k, double y, std::vector<std::pair<double, int>>& out) {
    const auto piece = [&out, y](const Point2& p, const Point2& q, auto xAt) {
        if (p.y <= y && y < q.y) {
            out.emplace_back(xAt(), 1);
        } else if (q.y <= y && y < p.y) {
            out.emplace_back(xAt(), -1);
        }
    };
    if (k.type != 1) {
        piece(k.a, k.b,
              [&k, y] { return k.a.x + (y - k.a.y) * (k.b.x - k.a.x) / (k.b.y - k.a.y); });
        return;
    }
    // The arc in pieces between its highest and lowest points: each piece is monotone in y and
    // lies in one half of the circle, left or right of the centre.
    const double t0 = StartAngle(k);
    const double s = k.sweep >= 0.0 ? 1.0 : -1.0;
    const double span = Span(k);
    double u1 = std::fmod(s > 0.0 ? kPi / 2.0 - t0 : t0 - kPi / 2.0, kPi);
    if (u1 <= 0.0) u1 += kPi;
    Point2 from = k.a;
    double uFrom = 0.0;
    const double r2 = k.r * k.r;
    for (int step = 0; step < 4; ++step) {
        const double u = u1 + step * kPi;
        const bool last = !(u < span);
        const double uTo = last ? span : u;
        Point2 to = k.b;
        if (!last)
            to = std::sin(t0 + s * u) > 0.0 ? Point2(k.c.x, k.c.y + k.r)
                                            : Point2(k.c.x, k.c.y - k.r);
        const double side = std::cos(t0 + s * (uFrom + uTo) / 2.0) >= 0.0 ? 1.0 : -1.0;
        piece(from, to, [&k, y, side, r2] {
            const double dy = y - k.c.y;
            return k.c.x + side * std::sqrt(std::max(0.0, r2 - dy * dy));
        });
        if (last) break;
        from = to;
        uFrom = uTo;
    }
}

// ---- CurveGrid ----------------------------------------------------------------------------

CurveGrid::CurveGrid(const std::vector<Curve>& list, double tolerance)
    : curves(list), eps(tolerance > 0.0 ? tolerance : 0.0) {
    const std::size_t n = curves.size();
    std::vector<double> sizes;
    sizes.reserve(n);
    for (const Curve& k : curves) {
        const Box g = k.box.Grown(eps);
        ext.Add(g);
        sizes.push_back(std::max(g.x1 - g.x0, g.y1 - g.y0));
    }
    if (n > 0 && !ext.Empty()) {  // mutate: off (no item: the extent is empty)
        const double w = ext.x1 - ext.x0, h = ext.y1 - ext.y0;
        std::nth_element(sizes.begin(), sizes.begin() + static_cast<std::ptrdiff_t>(n / 2),
                         sizes.end());
        // Cells about the size of a typical curve, but not more than a few per curve.
        double cell = std::max(sizes[n / 2], std::sqrt(w) * std::sqrt(h / (4.0 * n)));
        if (!(cell > 0.0) || !std::isfinite(cell))  // mutate: off (cell size only)
            cell = std::max({w, h, 1.0});
        const double limit = 4.0 * static_cast<double>(n) + 64.0;
        for (;;) {
            const double fx = std::ceil(w / cell), fy = std::ceil(h / cell);
            if (std::max(fx, 1.0) * std::max(fy, 1.0) <= limit) {  // mutate: off (cell size only)
                nx = static_cast<int>(std::max(fx, 1.0));
                ny = static_cast<int>(std::max(fy, 1.0));
                break;
            }
            cell *= 1.5;
        }
        cw = w > 0.0 ? w / nx : 1.0;
        ch = h > 0.0 ? h / ny : 1.0;
    }
    const std::size_t cells = static_cast<std::size_t>(nx) * static_cast<std::size_t>(ny);
    std::vector<std::size_t> count(cells + 1, 0);
    const auto range = [this](const Curve& k, int& i0, int& j0, int& i1, int& j1) {
        const Box g = k.box.Grown(eps);
        i0 = Col(g.x0);
        i1 = Col(g.x1);
        j0 = Row(g.y0);
        j1 = Row(g.y1);
    };
    int i0 = 0, j0 = 0, i1 = 0, j1 = 0;
    for (const Curve& k : curves) {
        range(k, i0, j0, i1, j1);
        for (int j = j0; j <= j1; ++j)
            for (int i = i0; i <= i1; ++i) ++count[Cell(i, j) + 1];
    }
    for (std::size_t c = 0; c < cells; ++c) count[c + 1] += count[c];
    first = count;
    items.resize(first[cells]);
    for (std::size_t id = 0; id < n; ++id) {
        range(curves[id], i0, j0, i1, j1);
        for (int j = j0; j <= j1; ++j)
            for (int i = i0; i <= i1; ++i) items[count[Cell(i, j)]++] = static_cast<int>(id);
    }
    stamp.assign(n, 0);
}

int CurveGrid::Col(double x) const {
    const double f = (x - ext.x0) / cw;
    if (!(f >= 0.0)) return 0;
    if (f >= nx) return nx - 1;
    return static_cast<int>(f);
}

int CurveGrid::Row(double y) const {
    const double f = (y - ext.y0) / ch;
    if (!(f >= 0.0)) return 0;
    if (f >= ny) return ny - 1;
    return static_cast<int>(f);
}

void CurveGrid::Near(const Point2& p, double d, std::vector<int>& out) {
    out.clear();
    if (curves.empty()) return;
    if (++query == 0) {
        std::fill(stamp.begin(), stamp.end(), 0);
        query = 1;
    }
    const Box q{p.x - d, p.y - d, p.x + d, p.y + d};
    for (int j = Row(q.y0); j <= Row(q.y1); ++j)
        for (int i = Col(q.x0); i <= Col(q.x1); ++i) {
            const std::size_t cell = Cell(i, j);
            for (std::size_t m = first[cell]; m < first[cell + 1]; ++m) {
                const int id = items[m];
                if (stamp[static_cast<std::size_t>(id)] == query) continue;
                stamp[static_cast<std::size_t>(id)] = query;
                const Box g = curves[static_cast<std::size_t>(id)].box.Grown(eps);
                if (g.x0 <= q.x1 && q.x0 <= g.x1 && g.y0 <= q.y1 && q.y0 <= g.y1) out.push_back(id);
            }
        }
}

// ---- ChainWinding ---------------------------------------------------------------------------

ChainWinding::ChainWinding(const std::vector<Curve>& list, int first, int count) : curves(&list) {
    for (int id = first; id < first + count; ++id)
        bounds.Add(list[static_cast<std::size_t>(id)].box);
    if (bounds.Empty()) return;
    bandCount = std::max(1, count / 4);
    const double height = bounds.y1 - bounds.y0;
    h = height > 0.0 ? height / bandCount : 1.0;
    std::vector<std::size_t> count1(static_cast<std::size_t>(bandCount) + 1, 0);
    for (int id = first; id < first + count; ++id) {
        const Box& b = list[static_cast<std::size_t>(id)].box;
        for (int k = Band(b.y0); k <= Band(b.y1); ++k) ++count1[static_cast<std::size_t>(k) + 1];
    }
    for (std::size_t k = 0; k + 1 < count1.size(); ++k) count1[k + 1] += count1[k];
    start = count1;
    ids.resize(start.back());
    for (int id = first; id < first + count; ++id) {
        const Box& b = list[static_cast<std::size_t>(id)].box;
        for (int k = Band(b.y0); k <= Band(b.y1); ++k)
            ids[count1[static_cast<std::size_t>(k)]++] = id;
    }
}

int ChainWinding::Band(double y) const {
    const double f = (y - bounds.y0) / h;
    if (!(f >= 0.0)) return 0;
    if (f >= bandCount) return bandCount - 1;
    return static_cast<int>(f);
}

int ChainWinding::Winding(const Point2& p) const {
    if (bandCount == 0 || p.y < bounds.y0 || p.y > bounds.y1 || p.x > bounds.x1) return 0;
    const std::size_t band = static_cast<std::size_t>(Band(p.y));
    std::vector<std::pair<double, int>> crossings;
    int w = 0;
    for (std::size_t m = start[band]; m < start[band + 1]; ++m) {
        const Curve& k = (*curves)[static_cast<std::size_t>(ids[m])];
        if (k.box.y0 > p.y || k.box.y1 < p.y || k.box.x1 <= p.x) continue;
        crossings.clear();
        RayCrossings(k, p.y, crossings);
        for (const auto& [x, sign] : crossings)
            if (x > p.x) w += sign;
    }
    return w;
}

// ---- BoxIndex -------------------------------------------------------------------------------

BoxIndex::BoxIndex(const std::vector<Box>& list) : boxes(list) {
    std::size_t n = 0;
    std::vector<double> sizes;
    for (const Box& b : boxes) {
        if (b.Empty()) continue;
        ext.Add(b);
        sizes.push_back(std::max(b.x1 - b.x0, b.y1 - b.y0));
        ++n;
    }
    if (n > 0) {
        const double w = ext.x1 - ext.x0, h = ext.y1 - ext.y0;
        std::nth_element(sizes.begin(), sizes.begin() + static_cast<std::ptrdiff_t>(n / 2),
                         sizes.end());
        double cell = std::max(sizes[n / 2], std::sqrt(w) * std::sqrt(h / (4.0 * n)));
        if (!(cell > 0.0) || !std::isfinite(cell)) cell = std::max({w, h, 1.0});
        const double limit = 4.0 * static_cast<double>(n) + 64.0;
        for (;;) {
            const double fx = std::max(std::ceil(w / cell), 1.0),
                         fy = std::max(std::ceil(h / cell), 1.0);
            if (fx * fy <= limit) {
                nx = static_cast<int>(fx);
                ny = static_cast<int>(fy);
                break;
            }
            cell *= 1.5;
        }
        cw = w > 0.0 ? w / nx : 1.0;
        ch = h > 0.0 ? h / ny : 1.0;
    }
    const auto col = [this](double x) {
        const double f = (x - ext.x0) / cw;
        return !(f >= 0.0) ? 0 : f >= nx ? nx - 1 : static_cast<int>(f);
    };
    const auto row = [this](double y) {
        const double f = (y - ext.y0) / ch;
        return !(f >= 0.0) ? 0 : f >= ny ? ny - 1 : static_cast<int>(f);
    };
    const std::size_t cells = static_cast<std::size_t>(nx) * static_cast<std::size_t>(ny);
    std::vector<std::size_t> count(cells + 1, 0);
    for (int pass = 0; pass < 2; ++pass) {
        for (std::size_t id = 0; id < boxes.size(); ++id) {
            const Box& b = boxes[id];
            if (b.Empty()) continue;
            for (int j = row(b.y0); j <= row(b.y1); ++j)
                for (int i = col(b.x0); i <= col(b.x1); ++i) {
                    const std::size_t cell =
                        static_cast<std::size_t>(j) * static_cast<std::size_t>(nx) +
                        static_cast<std::size_t>(i);
                    if (pass == 0)
                        ++count[cell + 1];
                    else
                        items[count[cell]++] = static_cast<int>(id);
                }
        }
        if (pass == 0) {
            for (std::size_t c = 0; c < cells; ++c) count[c + 1] += count[c];
            first = count;
            items.resize(first[cells]);
        }
    }
}

void BoxIndex::Holding(const Point2& p, std::vector<int>& out) const {
    out.clear();
    if (ext.Empty() || p.x < ext.x0 || p.x > ext.x1 || p.y < ext.y0 || p.y > ext.y1) return;
    const double fx = (p.x - ext.x0) / cw, fy = (p.y - ext.y0) / ch;
    const int i = !(fx >= 0.0) ? 0 : fx >= nx ? nx - 1 : static_cast<int>(fx);
    const int j = !(fy >= 0.0) ? 0 : fy >= ny ? ny - 1 : static_cast<int>(fy);
    const std::size_t cell =
        static_cast<std::size_t>(j) * static_cast<std::size_t>(nx) + static_cast<std::size_t>(i);
    for (std::size_t m = first[cell]; m < first[cell + 1]; ++m) {
        const Box& b = boxes[static_cast<std::size_t>(items[m])];
        if (b.x0 <= p.x && p.x <= b.x1 && b.y0 <= p.y && p.y <= b.y1) out.push_back(items[m]);
    }
}

}  // namespace quillon::contour_index
