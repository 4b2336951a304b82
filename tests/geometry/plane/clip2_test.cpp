#include "quillon/geometry/plane/clip2.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace quillon {
namespace {

::testing::AssertionResult Same(const Point2& p, const Point2& q, double tol = 0.0) {
    if (std::fabs(p.x - q.x) <= tol && std::fabs(p.y - q.y) <= tol)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure()
           << "(" << p.x << ", " << p.y << ") != (" << q.x << ", " << q.y << ")";
}

TEST(Clip2, ValidityIsDecidedLazilyAndRejectsContradictions) {
    Clip2 all;
    EXPECT_EQ(all.get_state(), 1);
    EXPECT_TRUE(all.clip_point(Point2(1e300, -1e300)));

    Clip2 bad;
    bad.set(1, 0, 0, 1);
    EXPECT_EQ(bad.get_state(), 0);
    EXPECT_FALSE(bad.clip_point(Point2(0.5, 0.5)));
    EXPECT_EQ(bad.get_state(), -1);
    Point2 p(0.5, 0.5), q(0.6, 0.6);
    EXPECT_FALSE(bad.clip_line(p, q));
    EXPECT_EQ(p.x, 0.5);
    bad.reset_xR();  // only xL left on the x pair
    EXPECT_TRUE(bad.is_valid());
}

TEST(Clip2, OutcodesLimitsInsideAndUnsetLimitsDoNotClip) {
    Clip2 c(0, 1, 0, 1);
    EXPECT_EQ(c.point_code(Point2(-1, -1)), 1 + 4);
    EXPECT_EQ(c.point_code(Point2(2, 2)), 2 + 8);
    for (const Point2 p : {Point2(0, 0.5), Point2(1, 0.5), Point2(0.5, 0), Point2(0.5, 1)})
        EXPECT_EQ(c.point_code(p), 0);
    Clip2 half;
    half.set_xL(0.0);
    EXPECT_TRUE(half.clip_point(Point2(0, -1e9)));
    EXPECT_FALSE(half.clip_point(Point2(-1e-9, 0)));
    Point2 p(-2, 0), q(2, 4);
    ASSERT_TRUE(half.clip_line(p, q));
    EXPECT_TRUE(Same(p, Point2(0, 2)) && Same(q, Point2(2, 4)));
}

TEST(Clip2, SegmentsKeepTheCallersOrderAndRejectedOnesKeepAnyClippingDone) {
    struct Case {
        Point2 p, q;
        bool accepted;
        Point2 p1, q1;
    };
    const Case cases[] = {
        {{2, 0.5}, {-1, 0.5}, true, {1, 0.5}, {0, 0.5}},
        {{-1, 0.5}, {2, 0.5}, true, {0, 0.5}, {1, 0.5}},
        {{0, 0.25}, {0.5, 0.75}, true, {0, 0.25}, {0.5, 0.75}},  // an end on a limit
        {{-1, 0.2}, {-0.5, 3}, false, {-1, 0.2}, {-0.5, 3}},     // wholly left: untouched
        // Crosses the line x = 0 below the square: moved onto xL first, then found below.
        {{-1, 0.5}, {3, -3}, false, {0, -0.375}, {3, -3}},
        // Given the other way round, the other end is moved twice (right side, then bottom)
        // before both ends are found left of the square.
        {{3, -3}, {-1, 0.5}, false, {1.0 - 2.5 / 1.75, 0.0}, {-1, 0.5}},
    };
    Clip2 c(0, 1, 0, 1);
    for (const Case& k : cases) {
        Point2 p = k.p, q = k.q;
        EXPECT_EQ(c.clip_line(p, q), k.accepted);
        EXPECT_TRUE(Same(p, k.p1, 1e-15) && Same(q, k.q1, 1e-15)) << k.p.x << " " << k.p.y;
    }
}

TEST(Clip2, AcceptedSegmentsLieInsideAndOnTheOriginalLine) {
    std::mt19937 rng(11);
    std::uniform_real_distribution<double> u(-3.0, 3.0);
    Clip2 c(-1, 1, -0.5, 2);
    for (int i = 0; i < 2000; ++i) {
        const Point2 p0(u(rng), u(rng)), q0(u(rng), u(rng));
        Point2 p = p0, q = q0;
        if (!c.clip_line(p, q)) continue;
        for (const Point2& x : {p, q}) {
            EXPECT_TRUE(
                Same(x, Point2(std::clamp(x.x, -1.0, 1.0), std::clamp(x.y, -0.5, 2.0)), 1e-12));
            EXPECT_NEAR((q0 - p0) % (x - p0), 0.0, 1e-9);
        }
        // Order kept: the clipped piece points the same way as the original.
        EXPECT_GE((q - p) * (q0 - p0), -1e-12);
    }
}

}  // namespace
}  // namespace quillon
