#include "quillon/geometry/contours/contour_heal.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>
#include <vector>

namespace quillon {

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kTwoPi = 2.0 * std::numbers::pi;

bool Finite(const Point2& p) { return std::isfinite(p.x) && std::isfinite(p.y); }

// The arc `e` rebuilt to run from `from` to `to`, or false when that would not be the same arc.
bool Rebuild(const LAEdge& e, const Point2& from, const Point2& to, double eps, double tolerance,
             LAEdge& out) {
    const Vector2 d = to - from;
    const double chord = d.length();
    if (chord <= eps) {
        if (std::fabs(e.angle) > kPi) {
            out = LAEdge(from, e.centre, std::copysign(kTwoPi, e.angle));
        } else {
            out = LAEdge(from);
        }
        return true;
    }
    const Point2 m((from.x + to.x) / 2.0, (from.y + to.y) / 2.0);
    const Vector2 u(-d.y / chord, d.x / chord);
    const Point2 c = m + u * ((e.centre - m) * u);
    const double turn = (from - c).angle(to - c);
    const double k = std::round((e.angle - turn) / kTwoPi);
    const double sweep = turn + kTwoPi * k;
    // A zero sweep ends at `from`, which the end check below refuses; NaN fails the first test.
    if (!(std::fabs(sweep) <= kTwoPi) || (sweep > 0.0) != (e.angle > 0.0)) return false;
    const LAEdge rebuilt(from, c, sweep);
    if (rebuilt.mid_arc().distance(e.mid_arc()) > tolerance) return false;
    if (rebuilt.end_arc().distance(to) > eps) return false;
    out = rebuilt;
    return true;
}

bool Usable(const LAEdge& e) {
    return Finite(e.start) && (e.type != 1 || (Finite(e.centre) && std::isfinite(e.angle)));
}

// p moved along the ray from c to the circle of radius r about c.
Point2 Radial(const Point2& c, double r, const Point2& p) {
    const Vector2 d = p - c;
    const double l = d.length();
    return l > 0.0 ? c + d * (r / l) : p;
}

// The crossing of two circles nearest to p; false when they do not cross.
bool NearestCrossing(const Point2& c1, double r1, const Point2& c2, double r2, const Point2& p,
                     Point2& out) {
    const Vector2 d = c2 - c1;
    const double l = d.length();
    if (!(l > 0.0)) return false;
    const double a = (r1 * r1 - r2 * r2 + l * l) / (2.0 * l);
    const double h2 = r1 * r1 - a * a;
    if (!(h2 >= 0.0)) return false;  // mutate: off (Turn rejects the unmoved start too)
    const Point2 m = c1 + d * (a / l);
    const Vector2 up = Vector2(-d.y, d.x) * (std::sqrt(h2) / l);
    const Point2 x1 = m + up, x2 = m - up;
    out = x1.distance(p) <= x2.distance(p) ? x1 : x2;
    return true;
}

class Healer {
public:
    Healer(LAContour& contour, double tolerance, double slack)
        : c(contour), eps(tolerance), tol(slack), touched(contour.size(), false) {}

    int Run() {
        const std::size_t n = c.size();
        // A short straight edge just before an arc: the text rebuilt the arc's start from its
        // rounded radius and angle, so the edge starts where the arc starts.
        for (std::size_t i = 0; i < n && n > 1; ++i) {
            const LAEdge& e = c[i];
            const std::size_t b = (i + n - 1) % n;
            LAEdge& before = c[b];
            if (e.type != 1 || before.type == 1 || !Usable(e) || !Usable(before)) continue;
            const double gap = before.start.distance(e.start);
            if (gap <= eps || gap > tol) continue;
            before.start = e.start;
            touched[b] = true;
        }
        // Twice round: an arc's new start, set by the edge before, is taken in on the second.
        for (const bool last : {false, true})
            for (std::size_t i = 0; i < n; ++i) FixEnd(i, last);
        int changed = static_cast<int>(std::count(touched.begin(), touched.end(), true));
        for (std::size_t k = inserts.size(); k-- > 0;) {
            c.insert(c.begin() + static_cast<std::ptrdiff_t>(inserts[k].first) + 1,
                     LAEdge(inserts[k].second));
            ++changed;
        }
        return changed;
    }

private:
    // Makes arc i end where the next edge starts, keeping its centre: the next start moves onto
    // the arc's circle (straight along the radius, or along its own circle when it starts an arc
    // of another circle) and the sweep turns to it. Failing that the arc is rebuilt through both
    // points; on the last pass, failing that too, a straight edge closes the gap.
    void FixEnd(std::size_t i, bool last) {
        const std::size_t n = c.size(), k = (i + 1) % n;
        LAEdge& e = c[i];
        LAEdge& next = c[k];
        if (e.type != 1 || !Usable(e) || !Usable(next)) return;
        const Point2 n0 = next.start;
        const double miss = e.end_arc().distance(n0);
        if (miss <= eps) return;  // mutate: off (at exactly eps)
        if (miss > tol) {
            if (last) inserts.emplace_back(i, e.end_arc());
            return;
        }
        // Straight edges no longer than the tolerance right after the arc (the zero-length edge
        // the solver closes its contours with, grown by rounding) stay collapsed: their starts and
        // the start of the edge after them move together to the arc's new end, so the corner stays
        // one point instead of a short edge folding back along the arc. That edge decides where
        // the corner goes: where the circles cross when it is an arc of another circle.
        std::vector<std::size_t> moved{k};
        if (next.type != 1 && k != i) {
            for (std::size_t m = k; c[m].type != 1 && moved.size() <= n;) {
                const std::size_t after = (m + 1) % n;
                if (after == i || !Usable(c[after]) || c[m].start.distance(c[after].start) > tol)
                    break;
                moved.push_back(m = after);
            }
        }
        const LAEdge& meets = c[moved.back()];
        const Point2 centre = e.centre;
        const double r = e.rad_arc();
        Point2 target = n0;
        bool found = true;
        if (k == i) {
            target = e.start;
        } else if (meets.type != 1) {
            target = Radial(centre, r, n0);
        } else if (meets.centre.distance(centre) <= eps && std::fabs(meets.rad_arc() - r) <= tol) {
            target = Radial(centre, r, n0);
        } else {
            found = NearestCrossing(centre, r, meets.centre, meets.rad_arc(), n0, target);
        }
        const auto near = [&](std::size_t m) { return c[m].start.distance(target) <= tol; };
        if (found && std::all_of(moved.begin(), moved.end(), near) && Turn(e, target)) {
            for (const std::size_t m : moved) {
                if (m == i || (c[m].start.x == target.x && c[m].start.y == target.y)) continue;
                c[m].start = target;
                touched[m] = true;
            }
            touched[i] = true;
            return;
        }
        LAEdge rebuilt;
        if (Rebuild(e, e.start, n0, eps, tol, rebuilt)) {
            e = rebuilt;
            touched[i] = true;
        } else if (last) {
            inserts.emplace_back(i, e.end_arc());
        }
    }

    // Turns the arc's sweep by the least angle that brings its end to `target`, which lies on
    // its circle; an arc whose two ends then meet becomes a full turn or, if it swept less than
    // half a turn, a straight edge. False (nothing changed) when the sweep would change sense.
    bool Turn(LAEdge& e, const Point2& target) const {
        if (e.start.distance(target) <= eps) {  // mutate: off (at exactly eps)
            e = std::fabs(e.angle) > kPi ? LAEdge(e.start, e.centre, std::copysign(kTwoPi, e.angle))
                                         : LAEdge(e.start);
            return true;
        }
        const double sweep = e.angle + (e.end_arc() - e.centre).angle(target - e.centre);
        if (!(sweep != 0.0) || (sweep > 0.0) != (e.angle > 0.0)) return false;
        const LAEdge turned(e.start, e.centre, sweep);
        if (turned.end_arc().distance(target) > eps) return false;  // mutate: off (on its circle)
        e.angle = sweep;
        return true;
    }

    LAContour& c;
    double eps, tol;
    std::vector<bool> touched;
    std::vector<std::pair<std::size_t, Point2>> inserts;
};

}  // namespace

int HealLAContour(LAContour& contour, double eps, double tolerance) {
    if (!(eps >= 0.0)) eps = 1e-10;
    return Healer(contour, eps, tolerance).Run();
}

int HealComplexContour(ProComplexContour& shape, double eps, double tolerance) {
    int changed = 0;
    for (unsigned long i = 0; i < shape.ChildrenCount(); ++i) {  // mutate: off (null past end)
        ProSolidContour* s = shape.SolidChild(i);
        if (s == nullptr) continue;
        changed += HealLAContour(s->GetLAContour(), eps, tolerance);
        for (unsigned long j = 0; j < s->ChildrenCount(); ++j)  // mutate: off (null past end)
            if (ProClosedContour* h = s->ClosedChild(j))
                changed += HealLAContour(h->GetLAContour(), eps, tolerance);
    }
    return changed;
}

double TextRoundingTolerance(const ProComplexContour& shape) {
    double radius = 0.0, extent = 0.0;
    const auto scan = [&radius, &extent](const LAContour& c) {
        for (const LAEdge& e : c) {
            if (!Finite(e.start)) continue;
            extent = std::max({extent, std::fabs(e.start.x), std::fabs(e.start.y)});
            if (e.type == 1 && Finite(e.centre)) radius = std::max(radius, e.rad_arc());
        }
    };
    for (unsigned long i = 0; i < shape.ChildrenCount(); ++i) {
        const ProSolidContour* s = shape.SolidChild(i);
        if (s == nullptr) continue;
        scan(*s);
        for (unsigned long j = 0; j < s->ChildrenCount(); ++j)
            if (const ProClosedContour* h = s->ClosedChild(j)) scan(*h);
    }
    return 3e-6 + 2e-6 * radius + 8.0 * extent * 2.220446049250313e-16;
}

}  // namespace quillon
