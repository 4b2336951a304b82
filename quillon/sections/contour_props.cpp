#include "quillon/sections/contour_props.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace quillon {

namespace {

constexpr double kHalfPi = std::numbers::pi / 2.0;
constexpr double kTwoPi = 2.0 * std::numbers::pi;

// One term of an odd function of the half sweep b: c·sin(a·b), or c·b·cos(a·b) when !sine.
struct OddTerm {
    double c;
    double a;
    bool sine;
};

// Sum of the terms. The segment integrals vanish like b³ to b⁷ while their terms are of order b,
// so for |b| < 1 the Taylor series is summed instead: its integer numerators cancel exactly in the
// leading powers, and a thin segment keeps its full relative precision.
template <std::size_t N>
double OddTrigSum(const std::array<OddTerm, N>& terms, double b) {
    if (!(std::fabs(b) < 1.0)) {  // mutate: off (both sums agree at |b| = 1)
        double s = 0.0;
        for (const OddTerm& t : terms)
            s += t.c * (t.sine ? std::sin(t.a * b) : b * std::cos(t.a * b));
        return s;
    }
    std::array<double, N> power{};  // a^(k-1), exact for the small integer frequencies used
    power.fill(1.0);
    const double b2 = b * b;
    double scaled = b;  // b^k / k!
    double sum = 0.0;
    for (int k = 1; k < 100; k += 2) {
        double num = 0.0;
        for (std::size_t i = 0; i < N; ++i) {
            const OddTerm& t = terms[i];
            num += t.sine ? t.c * power[i] * t.a : t.c * k * power[i];
            power[i] *= t.a * t.a;
        }
        const double term = ((k / 2) % 2 != 0 ? -num : num) * scaled;
        sum += term;
        if (k > 7 && std::fabs(term) <= 1e-17 * std::fabs(sum)) break;
        scaled *= b2 / ((k + 1.0) * (k + 2.0));
    }
    return sum;
}

// The circular segment between the chord and the arc of half sweep b (signed), radius 1, in the
// frame with its origin at the chord's midpoint and u along the bisector, away from the centre:
//   area = (2b − sin 2b) / 2                                  ∫u dA  = (9 sin b + sin 3b − 12 b cos
//   b) / 12 ∫u² dA = (36b + 24b cos 2b − 28 sin 2b − sin 4b) / 48     ∫v² dA = (12b − 8 sin 2b +
//   sin 4b) / 48
// and ∫v dA = ∫uv dA = 0 by symmetry. A half sweep of π is the whole disc.
constexpr std::array<OddTerm, 2> kSegArea{{{2.0, 0.0, false}, {-1.0, 2.0, true}}};
constexpr std::array<OddTerm, 3> kSegSu{{{9.0, 1.0, true}, {1.0, 3.0, true}, {-12.0, 1.0, false}}};
constexpr std::array<OddTerm, 4> kSegIuu{
    {{36.0, 0.0, false}, {24.0, 2.0, false}, {-28.0, 2.0, true}, {-1.0, 4.0, true}}};
constexpr std::array<OddTerm, 3> kSegIvv{{{12.0, 0.0, false}, {-8.0, 2.0, true}, {1.0, 4.0, true}}};

// p in coordinates relative to o.
Point2 Rel(const Point2& p, const Point2& o) { return Point2(p.x - o.x, p.y - o.y); }

Vector2 Turned(const Vector2& v, double a) {
    const double s = std::sin(a), c = std::cos(a);
    return Vector2(v.x * c - v.y * s, v.x * s + v.y * c);
}

// Adds the segment of radius r and half sweep b whose chord midpoint is m and bisector d (unit).
void AddSegmentProps(M_SECT_PROPStr& acc, const Point2& m, const Vector2& d, double r, double b) {
    const double r2 = r * r;
    const double a = r2 * OddTrigSum(kSegArea, b) / 2.0;
    const double su = r2 * r * OddTrigSum(kSegSu, b) / 12.0;
    const double iuu = r2 * r2 * OddTrigSum(kSegIuu, b) / 48.0;
    const double ivv = r2 * r2 * OddTrigSum(kSegIvv, b) / 48.0;
    // A point of the segment is m + u·d + v·n with n = d turned by +90°.
    acc.area += a;
    acc.Sy += m.x * a + d.x * su;
    acc.Sx += m.y * a + d.y * su;
    acc.Iy += m.x * m.x * a + 2.0 * m.x * d.x * su + d.x * d.x * iuu + d.y * d.y * ivv;
    acc.Ix += m.y * m.y * a + 2.0 * m.y * d.y * su + d.y * d.y * iuu + d.x * d.x * ivv;
    acc.Ixy += m.x * m.y * a + (m.x * d.y + m.y * d.x) * su + d.x * d.y * (iuu - ivv);
}

// Signed integrals of the contour about the point o (coordinates relative to o).
M_SECT_PROPStr ContourPropsAbout(const LAContour& c, const Point2& o) {
    M_SECT_PROPStr acc;
    double length = 0.0;
    const std::size_t n = c.size();
    for (std::size_t i = 0; i < n; ++i) {
        const LAEdge& e = c[i];
        const Point2 next = Rel(c[(i + 1) % n].start, o);
        Point2 p = Rel(e.start, o);
        if (e.type == 1) {
            const Point2 centre = Rel(e.centre, o);
            const Vector2 v0 = p - centre;
            const double r = v0.length();
            const Point2 end = centre + Turned(v0, e.angle);
            AddEdgeProps(acc, p, end);
            length += r * std::fabs(e.angle);
            if (r > 0.0) {
                const double b = e.angle / 2.0;
                AddSegmentProps(acc, (p + end) / 2.0, Turned(v0 / r, b), r, b);
            }
            p = end;  // the gap to the next start, if any, follows as a straight edge
        }
        AddEdgeProps(acc, p, next);
        length += p.distance(next);
    }
    acc.perimeter = length;
    return acc;
}

// Calls visit(contour, is_solid) for every solid and each of its holes, in order.
template <typename Visit>
void ForEachContour(const ProComplexContour& shape, Visit visit) {
    for (unsigned long i = 0; i < shape.ChildrenCount(); ++i) {
        const ProSolidContour* solid = shape.SolidChild(i);
        if (solid == nullptr) continue;
        visit(solid->GetLAContour(), true);
        for (unsigned long k = 0; k < solid->ChildrenCount(); ++k) {
            const ProClosedContour* hole = solid->ClosedChild(k);
            if (hole != nullptr) visit(hole->GetLAContour(), false);
        }
    }
}

void AddStarts(BoundRect2& b, const LAContour& c) {
    for (const LAEdge& e : c) b.point(e.start);
}

// Centre of the start points' bounding box; (0, 0) for none.
Point2 ReferencePoint(const BoundRect2& b) {
    if (!b.is_valid()) return Point2(0.0, 0.0);
    return (b.get_LB() + b.get_RT()) / 2.0;
}

Point2 ShapeReference(const ProComplexContour& shape) {
    BoundRect2 b;
    ForEachContour(shape, [&b](const LAContour& c, bool) { AddStarts(b, c); });
    return ReferencePoint(b);
}

M_SECT_PROPStr ShapePropsAbout(const ProComplexContour& shape, const Point2& o) {
    M_SECT_PROPStr sum;
    ForEachContour(shape, [&sum, &o](const LAContour& c, bool solid) {
        const M_SECT_PROPStr p = ContourPropsAbout(c, o);
        // Solids count positively and holes negatively whatever their orientation.
        const double w = (p.area > 0.0) == solid ? 1.0 : -1.0;
        sum.area += w * p.area;
        sum.perimeter += p.perimeter;
        sum.Sx += w * p.Sx;
        sum.Sy += w * p.Sy;
        sum.Ix += w * p.Ix;
        sum.Iy += w * p.Iy;
        sum.Ixy += w * p.Ixy;
    });
    return sum;
}

// The arc's end points and the axis-extreme points it sweeps over.
void AddArcBounds(BoundRect2& b, const LAEdge& e) {
    b.point(e.start);
    b.point(e.end_arc());
    const Vector2 v0 = e.start - e.centre;
    const double r = v0.length();
    if (!(r > 0.0) || !std::isfinite(e.angle)) return;  // mutate: off (adds only the start again)
    if (std::fabs(e.angle) >= kTwoPi) {
        b.circle(e.centre, r);
        return;
    }
    const double a0 = std::atan2(v0.y, v0.x);
    const double lo = std::min(a0, a0 + e.angle), hi = std::max(a0, a0 + e.angle);
    // Quadrant points are placed by index, not through cos/sin of k·π/2, so they are exact.
    const double first = std::ceil(lo / kHalfPi);
    for (int k = 0; k < 4 && (first + k) * kHalfPi <= hi; ++k) {  // mutate: off (at most 4 fit)
        switch (((static_cast<int>(first) + k) % 4 + 4) % 4) {
            case 0:
                b.point(e.centre.x + r, e.centre.y);
                break;
            case 1:
                b.point(e.centre.x, e.centre.y + r);
                break;
            case 2:
                b.point(e.centre.x - r, e.centre.y);
                break;
            default:
                b.point(e.centre.x, e.centre.y - r);
                break;
        }
    }
}

}  // namespace

M_SECT_PROPStr CalcContourProps(const LAContour& c) {
    BoundRect2 b;
    AddStarts(b, c);
    const Point2 o = ReferencePoint(b);
    return TranslateProps(ContourPropsAbout(c, o), Vector2(o.x, o.y));
}

M_SECT_PROPStr CalcProps(const ProComplexContour& shape) {
    const Point2 o = ShapeReference(shape);
    return TranslateProps(ShapePropsAbout(shape, o), Vector2(o.x, o.y));
}

M_SECT_PROPStr TranslateProps(const M_SECT_PROPStr& p, const Vector2& v) {
    M_SECT_PROPStr q = p;
    q.Sx = p.Sx + v.y * p.area;
    q.Sy = p.Sy + v.x * p.area;
    q.Ix = p.Ix + v.y * (2.0 * p.Sx + v.y * p.area);
    q.Iy = p.Iy + v.x * (2.0 * p.Sy + v.x * p.area);
    q.Ixy = p.Ixy + v.x * p.Sx + v.y * p.Sy + v.x * v.y * p.area;
    return q;
}

Rect2 ContourExtents(const ProComplexContour& shape) {
    BoundRect2 b;
    ForEachContour(shape, [&b](const LAContour& c, bool) {
        for (const LAEdge& e : c) {
            if (e.type == 1) {
                AddArcBounds(b, e);
            } else {
                b.point(e.start);
            }
        }
    });
    if (!b.is_valid()) return Rect2();
    return Rect2(b.get_LB(), b.get_RT());
}

SectionFigures CalcSectionFigures(const ProComplexContour& shape) {
    const Point2 o = ShapeReference(shape);
    const Rect2 ext = ContourExtents(shape);
    const Vector2 back(-o.x, -o.y);
    SectionFigures f =
        CalcSectionFigures(ShapePropsAbout(shape, o), Rect2(ext.pnt1() + back, ext.pnt2() + back));
    if (f.valid) f.centroid += Vector2(o.x, o.y);
    return f;
}

}  // namespace quillon
