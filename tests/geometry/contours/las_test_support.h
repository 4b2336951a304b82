// Shapes, exact areas and tree checks shared by the contour solver tests.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "quillon/geometry/contours/contour_ops.h"
#include "quillon/geometry/contours/contour_validate.h"
#include "quillon/geometry/contours/las_solver.h"
#include "quillon/geometry/plane/angles.h"

namespace quillon::las_test {

using quillon::kPi;

// A suite whose every test must leave as many contour nodes alive as it found.
class LeakChecked : public ::testing::Test {
protected:
    void TearDown() override { EXPECT_EQ(ProContour::get_contour_allocs(), nodesBefore); }
    const int nodesBefore = ProContour::get_contour_allocs();
};

// Signed area of a closed line-arc contour, arcs exact: chord triangle plus circular segment.
inline double SignedArea(const LAContour& c) {
    double s = 0.0;
    const std::size_t n = c.size();
    for (std::size_t i = 0; i < n; ++i) {
        const LAEdge& e = c[i];
        const Point2& a = e.start;
        const Point2& b = c[(i + 1) % n].start;
        s += (a.x * b.y - b.x * a.y) / 2.0;
        if (e.type == 1) {
            const double r = a.distance(e.centre);
            s += r * r / 2.0 * (e.angle - std::sin(e.angle));
        }
    }
    return s;
}

inline double Area(const ProComplexContour* c) {
    double s = 0.0;
    if (c == nullptr) return 0.0;
    for (unsigned long i = 0; i < c->ChildrenCount(); ++i) {
        const ProSolidContour* solid = c->SolidChild(i);
        s += std::fabs(SignedArea(*solid));
        for (unsigned long j = 0; j < solid->ChildrenCount(); ++j)
            s -= std::fabs(SignedArea(*solid->ClosedChild(j)));
    }
    return s;
}

inline LAContour Polygon(const std::vector<Point2>& pts) {
    LAContour c;
    for (const Point2& p : pts) c.push_back(LAEdge(p));
    return c;
}

inline LAContour RectContour(double x0, double y0, double x1, double y1) {
    return Polygon({{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}});
}

// A circle as two counter-clockwise half arcs, starting at angle `phase`.
inline LAContour CircleContour(const Point2& c, double r, double phase = 0.0) {
    LAContour k;
    const Point2 a(c.x + r * std::cos(phase), c.y + r * std::sin(phase));
    const Point2 b(c.x - r * std::cos(phase), c.y - r * std::sin(phase));
    k.push_back(LAEdge(a, c, kPi));
    k.push_back(LAEdge(b, c, kPi));
    return k;
}

// A complex contour owning one solid with the given outline and holes; the caller owns it.
inline ProComplexContour* Shape(const LAContour& outline,
                                const std::vector<LAContour>& holes = {}) {
    return MakeShape(outline, holes).release();
}

// Distinct vertices of a contour (the zero-length closing edge repeats the first).
inline int DistinctVertices(const LAContour& c, double eps = 1e-9) {
    int n = 0;
    for (std::size_t i = 0; i < c.size(); ++i)
        if (c[i].start.distance(c[(i + 1) % c.size()].start) > eps) ++n;
    return n;
}

// A valid tree: every solid with area, and nothing the validation finds (holes inside their solid
// and apart, solids apart or islands in a hole, no contour crossing itself). Empty when valid.
inline std::string CheckTree(const ProComplexContour* c, double eps) {
    if (c == nullptr) return "null";
    for (unsigned long i = 0; i < c->ChildrenCount(); ++i)
        if (!(std::fabs(SignedArea(*c->SolidChild(i))) > 1e-14)) return "solid without area";
    const ContourValidation v = ValidateComplexContour(*c, eps);
    return v.IsValid() ? "" : DescribeProblem(v.problems.front());
}

// Seeded random shapes: rectangles, convex polygons, stars, L shapes, discs, annuli and frames.
// The caller owns what Make returns.
struct ShapeMaker {
    std::mt19937 rng;
    explicit ShapeMaker(unsigned seed) : rng(seed) {}

    double Grid(double lo, double hi) {  // half-unit steps: shared edges and corners are common
        std::uniform_int_distribution<int> d(static_cast<int>(lo * 2), static_cast<int>(hi * 2));
        return d(rng) / 2.0;
    }
    double Uniform(double lo, double hi) { return std::uniform_real_distribution<>(lo, hi)(rng); }
    int Pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(rng); }

    // Every draw is its own statement: the order of a call's arguments is left to the compiler,
    // and the seeded shapes must be the same under every compiler.
    ProComplexContour* Make(std::string& kind) {
        const int which = Pick(7);
        switch (which) {
            case 0: {
                kind = "rectangle";
                const double x = Grid(0, 3), y = Grid(0, 3), h = Grid(0.5, 3), w = Grid(0.5, 3);
                return Shape(RectContour(x, y, x + w, y + h));
            }
            case 1:
            case 2: {
                const bool star = which == 2;
                kind = star ? "star" : "convex polygon";
                const double cy = Grid(1, 3), cx = Grid(1, 3);
                const Point2 c(cx, cy);
                const int n = 3 + Pick(star ? 4 : 6);
                const double r = Uniform(star ? 1 : 0.5, 2), phase = Uniform(0, 2 * kPi);
                std::vector<Point2> pts;
                for (int k = 0; k < (star ? 2 * n : n); ++k) {
                    const double a = phase + (star ? kPi : 2 * kPi) * k / n;
                    const double rr = star && k % 2 ? r * 0.45 : r;
                    pts.emplace_back(c.x + rr * std::cos(a), c.y + rr * std::sin(a));
                }
                if (!star && Pick(2)) std::reverse(pts.begin(), pts.end());
                return Shape(Polygon(pts));
            }
            case 3: {
                kind = "L shape";
                const double x = Grid(0, 2), y = Grid(0, 2), w = Grid(1, 3), h = Grid(1, 3);
                const double m = x + w / 2, top = y + h;
                return Shape(Polygon(
                    {{x, y}, {x + w, y}, {x + w, y + h / 2}, {m, y + h / 2}, {m, top}, {x, top}}));
            }
            case 4: {
                kind = "disc";
                const double phase = Pick(2) ? 0.0 : Uniform(0, kPi), r = Grid(0.5, 2);
                const double x = Grid(0.5, 3.5), y = Grid(0.5, 3.5);
                return Shape(CircleContour({x, y}, r, phase));
            }
            case 5: {
                kind = "annulus";
                const double cy = Grid(1, 3), cx = Grid(1, 3);
                const Point2 c(cx, cy);
                const double r = Grid(1, 2);
                const double dy = Uniform(-0.2, 0.2), dx = Uniform(-0.2, 0.2);
                const double holePhase = Uniform(0, kPi), ratio = Uniform(0.3, 0.6);
                const double phase = Uniform(0, kPi);
                return Shape(CircleContour(c, r, phase),
                             {CircleContour({c.x + dx, c.y + dy}, r * ratio, holePhase)});
            }
            default: {
                kind = "frame";
                const double x = Grid(0, 2), y = Grid(0, 2), w = Grid(1.5, 3), h = Grid(1.5, 3);
                return Shape(RectContour(x, y, x + w, y + h),
                             {RectContour(x + 0.5, y + 0.5, x + w - 0.5, y + h - 0.5)});
            }
        }
    }
};

}  // namespace quillon::las_test
