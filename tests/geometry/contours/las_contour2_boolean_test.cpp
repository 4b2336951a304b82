#include "quillon/geometry/contours/contour2_boolean.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace quillon {
namespace {

double Area(const std::vector<Contour2Region>& r) {
    double s = 0.0;
    for (const Contour2Region& g : r) {
        EXPECT_GT(g.outer.SignedArea(), 0.0);  // outer counter-clockwise
        s += g.outer.SignedArea();
        for (const Contour2& h : g.holes) {
            EXPECT_LT(h.SignedArea(), 0.0);  // holes clockwise
            s += h.SignedArea();
        }
    }
    return s;
}

Contour2 Square(double x, double y, double side, bool clockwise = false) {
    std::vector<Point2> p = {{x, y}, {x + side, y}, {x + side, y + side}, {x, y + side}};
    if (clockwise) std::swap(p[1], p[3]);
    return Contour2(p, 1e-10);
}

TEST(LasContour2BooleanTest, SquaresAndHoles) {
    const Contour2 a = Square(0, 0, 2), b = Square(1, 1, 2, true);
    EXPECT_NEAR(Area(a.Union(b)), 7.0, 1e-12);
    EXPECT_NEAR(Area(a.Intersection(b)), 1.0, 1e-12);
    EXPECT_NEAR(Area(a.Difference(b)), 3.0, 1e-12);
    const auto ring = Contour2Difference(Square(0, 0, 10), Square(3, 3, 2));
    ASSERT_EQ(ring.size(), 1u);
    EXPECT_EQ(ring[0].outer.Length(), 4);
    EXPECT_EQ(ring[0].holes.size(), 1u);
    EXPECT_NEAR(Area(ring), 96.0, 1e-12);
    EXPECT_TRUE(Contour2Intersection(Square(0, 0, 1), Square(5, 5, 1)).empty());
    EXPECT_EQ(Contour2Union(Square(0, 0, 1), Square(5, 5, 1)).size(), 2u);
    EXPECT_TRUE(Contour2Union(Contour2({{0, 0}, {1, 1}}, 1e-10), Contour2()).empty());
}

TEST(LasContour2BooleanTest, RandomTrianglesKeepTheAreaIdentity) {
    // At any scale: the solver's tolerance follows the size of the input.
    std::mt19937 rng(5u);
    for (const double scale : {1.0, 1e-10}) {
        std::uniform_real_distribution<> u(0.0, 10.0 * scale);
        for (int round = 0; round < (scale == 1.0 ? 200 : 40); ++round) {
            const double tol = 1e-10 * scale;
            const Contour2 a({{u(rng), u(rng)}, {u(rng), u(rng)}, {u(rng), u(rng)}}, tol);
            const Contour2 b({{u(rng), u(rng)}, {u(rng), u(rng)}, {u(rng), u(rng)}}, tol);
            const double i = Area(Contour2Intersection(a, b)), slack = 1e-7 * scale * scale;
            EXPECT_NEAR(Area(Contour2Union(a, b)) + i, a.Area() + b.Area(), slack);
            EXPECT_NEAR(Area(Contour2Difference(a, b)), a.Area() - i, slack);
        }
    }
}

}  // namespace
}  // namespace quillon
