// Clean-up of contours on hand-made cases; the seeded solver results are in
// contour_checks_property_test.cpp.
#include "quillon/geometry/contours/contour_simplify.h"

#include "las_test_support.h"

namespace quillon {
namespace {

using namespace las_test;

TEST(ContourSimplifyTest, StraightRunsAndArcsOfOneCircleJoinWithoutMovingTheRegion) {
    // A hole with corners left over at x = 280 and 290 on its straight lower edge, and the
    // solver's zero-length closing edge: the corners go, the closing edge follows the new start.
    const std::vector<Point2> corners = {{280, 100}, {290, 100}, {300, 100}, {300, 200},
                                         {250, 200}, {250, 100}, {270, 100}, {280, 100}};
    LAContour hole = Polygon(corners);
    EXPECT_EQ(SimplifyContour(hole, 1e-7), 3);
    EXPECT_EQ(hole.size(), 5u);
    EXPECT_EQ(hole.front().start.x, 300);
    EXPECT_EQ(hole.back().start.distance(hole.front().start), 0.0);
    EXPECT_DOUBLE_EQ(SignedArea(hole), 50.0 * 100.0);

    // A disc in four quarter arcs becomes two arcs, never one that closes on itself.
    LAContour disc;
    for (int k = 0; k < 4; ++k)
        disc.push_back(
            LAEdge(Point2(std::cos(k * kPi / 2), std::sin(k * kPi / 2)), Point2(0, 0), kPi / 2));
    const double area = SignedArea(disc);
    EXPECT_EQ(SimplifyContour(disc, 1e-9), 2);
    ASSERT_EQ(disc.size(), 2u);
    EXPECT_NEAR(disc[0].angle + disc[1].angle, 2 * kPi, 1e-15);
    EXPECT_NEAR(SignedArea(disc), area, 1e-14);

    // What stays: a corner that bends by more than rounding (even within eps), arcs of different
    // circles, arcs of one circle with gaps between them, and a straight vertex that the outline
    // passes again to rounding (two lobes touching there).
    LAContour bent = Polygon({{0, 0}, {5, 1e-9}, {10, 0}, {10, 10}, {0, 10}});
    EXPECT_EQ(SimplifyContour(bent, 1e-7), 0);
    LAContour wave = Polygon({{0, 0}, {1, 0}, {2, 0}, {3, 0}, {3, -1}});
    wave[1] = LAEdge(Point2(1, 0), Point2(1.5, 0), -kPi);
    wave[2] = LAEdge(Point2(2, 0), Point2(2.5, 0), kPi);
    LAContour rings = wave;
    rings[2].angle = -kPi;
    EXPECT_EQ(SimplifyContour(wave, 1e-7), 0);
    EXPECT_EQ(SimplifyContour(rings, 1e-7), 0);
    LAContour gaps;
    for (int k = 0; k < 3; ++k)
        gaps.push_back(LAEdge(Point2(std::cos(k * 2 * kPi / 3), std::sin(k * 2 * kPi / 3)),
                              Point2(0, 0), 2 * kPi / 3 - 1e-3));
    EXPECT_EQ(SimplifyContour(gaps, 1e-7), 0);
    LAContour lobes =
        Polygon({{-2, 0}, {1e-9, 0}, {2, 0}, {2, 3}, {1, 2}, {0, 0}, {-1, 2}, {-2, 3}});
    EXPECT_EQ(SimplifyContour(lobes, 1e-7), 0);
    // A triangle keeps three edges even when one corner is straight.
    LAContour flat = Polygon({{0, 0}, {1, 0}, {2, 0}});
    EXPECT_EQ(SimplifyContour(flat, 1e-7), 0);
}

}  // namespace
}  // namespace quillon
