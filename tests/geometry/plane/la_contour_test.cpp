#include "quillon/geometry/plane/la_contour.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace quillon {
namespace {

constexpr double kPi = std::numbers::pi;

// Every arc must end where the next edge starts.
void ExpectClosedChain(const LAContour& c) {
    for (std::size_t i = 0; i < c.size(); ++i) {
        if (c[i].type != 1) continue;
        EXPECT_LT(c[i].end_arc().distance(c[(i + 1) % c.size()].start), 1e-9) << "edge " << i;
    }
}

// A corner fed to a former: r == 0 is a plain corner, r > 0 a rounded one (alone: a circle).
struct Corner {
    double x, y, r = 0.0;
};

bool Form(LAContourFormer& f, std::initializer_list<Corner> corners) {
    for (const Corner& k : corners) {
        if (k.r > 0.0)
            f.arc_point(k.x, k.y, k.r);
        else
            f.line_point(k.x, k.y);
    }
    return f.close();
}

LAContour Formed(std::initializer_list<Corner> corners, double gap = 1e-9) {
    LAContour c;
    LAContourFormer f(c, nullptr, 2, gap);
    EXPECT_TRUE(Form(f, corners));
    return c;
}

TEST(LAContourFormer, CircleFromOneMarkerIsTwoClockwiseHalfArcsAndAZeroLengthEdge) {
    LAContour c;
    std::vector<Point2> pts{{9, 9}};
    LAContourFormer f(c, &pts, 8, 1e-9);
    ASSERT_TRUE(Form(f, {{3, 4, 2.0}}));  // the marker's centre lies r to the right of its point
    ASSERT_EQ(c.size(), 3u);
    EXPECT_TRUE(c[0].type == 1 && c[1].type == 1 && c[2].type == 0);
    EXPECT_EQ(c[0].angle + c[1].angle, -2 * kPi);
    EXPECT_EQ(c[0].start.distance({5, 4}) + c[2].start.distance({5, 4}), 0.0);
    ExpectClosedChain(c);
    EXPECT_NEAR(c.surface(), kPi * 4.0, 1e-9);
    EXPECT_EQ(c.orientation(), 1);
    ASSERT_EQ(pts.size(), 9u);  // the earlier point, then eight on the circle
    for (std::size_t i = 1; i < pts.size(); ++i) EXPECT_NEAR(pts[i].distance({3, 4}), 2.0, 1e-12);
    BoundRect2 b = c.get_bound_rect();
    EXPECT_NEAR(b.get_LB().distance({1, 2}) + b.get_RT().distance({5, 6}), 0.0, 1e-12);
    EXPECT_FALSE(LAContour().get_bound_rect(b));
    // Closed: further points are ignored and close answers from the status.
    f.line_point(0, 0);
    EXPECT_EQ(c.size(), 3u);
    EXPECT_TRUE(f.close());
}

TEST(LAContourFormer, RoundedCornerCentreOnBisectorAndStraightEdgeOnlyBeyondTol) {
    for (bool ccw : {true, false}) {
        LAContour c;
        std::vector<Point2> pts;
        LAContourFormer f(c, &pts, 5, 1e-9);
        ASSERT_TRUE(ccw ? Form(f, {{0, 0}, {1, 0}, {1, 1, 0.1}, {0, 1}})
                        : Form(f, {{0, 1}, {1, 1, 0.1}, {1, 0}, {0, 0}}));
        ASSERT_EQ(c.size(), 5u);
        const LAEdge& arc = c[2].type == 1 ? c[2] : c[1];
        EXPECT_NEAR(arc.angle, ccw ? kPi / 2 : -kPi / 2, 1e-12);
        EXPECT_NEAR(arc.centre.distance({0.9, 0.9}), 0.0, 1e-12);
        ExpectClosedChain(c);
        EXPECT_NEAR(c.surface(), 1.0 - 0.01 + kPi * 0.01 / 4.0, 1e-12);
        EXPECT_EQ(c.orientation(), ccw ? -1 : 1);
        EXPECT_EQ(pts.size(), 8u);  // three corners and five arc points
    }
    // A gap tolerance larger than the gap: no straight edge after the arc.
    EXPECT_EQ(Formed({{0, 0}, {1, 0}, {1, 1, 0.1}, {0, 1}}, 10.0).size(), 4u);
    // Two rounded corners whose tangent points meet: no edge between the arcs, one after them.
    const LAContour d = Formed({{0, 0}, {1, 0}, {1, 1, 0.5}, {0, 1, 0.5}});
    ASSERT_EQ(d.size(), 5u);
    EXPECT_EQ(d[2].type + d[3].type, 2);
    EXPECT_EQ(d[4].type, 0);
    ExpectClosedChain(d);
    EXPECT_NEAR(d.surface(), 0.5 + kPi / 8.0, 1e-12);
}

TEST(LAContourFormer, FilletAtAnObtuseCornerStaysTangentToBothSides) {
    const LAContour c = Formed({{0, 0}, {4, 0, 0.5}, {6, 3}, {0, 3}});
    ASSERT_GT(c.size(), 1u);
    ExpectClosedChain(c);
    const LAEdge& arc = c[1];
    const double t = Vector2(4, 0).angle(Vector2(2, 3));
    EXPECT_NEAR(arc.angle, t, 1e-12);
    // The centre is r / sin(|t| / 2) from the corner along the bisector, and equally far from
    // both sides, so the arc meets each side at the foot of the centre.
    EXPECT_NEAR(arc.centre.distance({4, 0}), 0.5 / std::sin(std::fabs(t) / 2), 1e-12);
    const double d = Line2(Point2(0, 0), Point2(4, 0)).distance(arc.centre);
    EXPECT_NEAR(d, Line2(Point2(4, 0), Point2(6, 3)).distance(arc.centre), 1e-12);
    EXPECT_NEAR(arc.rad_arc(), d, 1e-12);
    EXPECT_NEAR(arc.mid_arc().distance({4, 0}) + d, arc.centre.distance({4, 0}), 1e-12);
}

TEST(LAContourFormer, FailureEmptiesTheContourAndRollsPointsBack) {
    LAContour c;
    std::vector<Point2> pts{{7, 7}, {8, 8}};
    LAContourFormer f(c, &pts, 4, 1e-9);
    EXPECT_FALSE(f.close());  // nothing yet: still forming
    EXPECT_EQ(f.status, -1);
    // A straight run through the rounded corner (no bisector), a spike (the bisector runs along
    // the outgoing side), two corners, one plain corner; after a failure further points are
    // ignored.
    for (auto corners :
         {std::initializer_list<Corner>{{0, 0}, {0, 5}, {3, 5, 0.5}, {6, 5}, {6, 0}},
          std::initializer_list<Corner>{{0, 0}, {3, 0}, {6, 0, 0.2}, {4, 0}},
          std::initializer_list<Corner>{{0, 0}, {3, 0}}, std::initializer_list<Corner>{{0, 0}}}) {
        EXPECT_FALSE(Form(f, corners));
        EXPECT_EQ(f.status, 0);
        EXPECT_FALSE(Form(f, {{1, 1}}));
        EXPECT_TRUE(c.empty());
        EXPECT_EQ(pts.size(), 2u);
        f.reset_contour();
    }
}

TEST(LAContour, TinyArcsAreLeftOutOfTheSurfaceChordAndAll) {
    LAContour c;
    for (const Point2& p : {Point2(1, 1), Point2(2, 1), Point2(2, 2), Point2(1, 2)})
        c.push_back(LAEdge(p));
    EXPECT_DOUBLE_EQ(c.surface(), 1.0);
    c[3] = LAEdge(Point2(1, 2), Point2(-1000, 1.5), 0.0005);
    EXPECT_DOUBLE_EQ(c.surface(), 1.5);  // the closing chord's term is missing
    c[3].angle = 0.001;
    EXPECT_DOUBLE_EQ(c.surface(), 1.5);
    // A proper arc counts with its segment: a half disc bulging out of the left side.
    c[3] = LAEdge(Point2(1, 2), Point2(1, 1.5), kPi);
    EXPECT_NEAR(c.surface(), 1.0 + kPi * 0.125, 1e-12);
}

TEST(LAContour, ApproximationStepCounts) {
    // A wide rectangle with a small half-disc bump: the bump's radius is far below the reference
    // radius (diagonal / 2π), so the ordinary counts apply.
    LAContour c;
    for (const Point2& p : {Point2(0, 0), Point2(100, 0), Point2(100, 10)}) c.push_back(LAEdge(p));
    c.push_back(LAEdge(Point2(2, 10), Point2(1, 10), kPi));
    LAContour out;
    struct Case {
        double angle;
        int steps, small_steps;
        double limit;
        std::size_t pieces;
    };
    const Case cases[] = {
        {kPi, 36, 24, 1.0, 18},    {kPi, 2, 24, 1.0, 2},  // 2 behaves as 4
        {-0.5, 36, 24, -1.0, 12},                         // |limit|; 0.5 / (1 / 24)
        {kPi / 2, 36, 4, 10.0, 2},                        // limit clamped to 135°
        {kPi / 2, 36, 0, 10.0, 1},                        // small_steps raised to 1
        {1.0, 36, 0, 1.0, 1},  // ... and not to 2: one piece at the limit
        {-kPi / 2, 36, 6, 2.0, 4},
    };
    for (const Case& k : cases) {
        c[3].angle = k.angle;
        c.approximate(out, k.steps, k.small_steps, k.limit);
        EXPECT_EQ(out.size(), 3u + k.pieces) << k.angle << " " << k.steps << " " << k.small_steps;
    }
    // Pieces turn the arc's way and their starts lie on it.
    ASSERT_EQ(out.size(), 3u + 4u);
    for (std::size_t i = 3; i < out.size(); ++i) {
        EXPECT_NEAR(out[i].start.distance({1, 10}), 1.0, 1e-12);
        EXPECT_EQ(out[i].type, 0);
    }
    EXPECT_LT(out[4].start.y, 10.0);  // clockwise from (2, 10): downwards first

    // A circle is wider than its reference radius: at least 36 per turn.
    LAContour circle = Formed({{0, 0, 1.0}});
    circle.approximate(out, 4, 1, 1.0);
    EXPECT_EQ(out.size(), 18u + 18u + 1u);
    EXPECT_EQ(out.orientation(), 1);
    circle.approximate(circle, 4, 1, 1.0);  // in place
    EXPECT_EQ(circle.size(), 37u);
}

TEST(LAContour, TransformsKeepTheChainAndOnlyReflectionsTurnArcs) {
    const LAContour c = Formed({{0, 0}, {2, 0}, {2, 1, 0.3}, {0, 1}});
    ASSERT_GT(c.size(), 2u);
    struct Case {
        void (*apply)(LAContour&);
        double sign;
    };
    const Case cases[] = {
        {[](LAContour& m) { m.move(Vector2(5, -3)); }, 1.0},
        {[](LAContour& m) { m.rotate(Rotate2(1.0)); }, 1.0},
        {[](LAContour& m) { m.transform(Isometry2(Rotate2(0.7), Translate2(1, 2))); }, 1.0},
        {[](LAContour& m) { m.transform(Isometry2(Line2(Point2(0, 5), Point2(1, 6)))); }, -1.0},
    };
    for (const Case& k : cases) {
        LAContour m = c;
        k.apply(m);
        ExpectClosedChain(m);
        EXPECT_EQ(m[2].angle, k.sign * c[2].angle);
        EXPECT_NEAR(m.surface(), c.surface(), 1e-12);
        EXPECT_EQ(m.orientation(), k.sign * c.orientation());
    }
    EXPECT_EQ(LAContour().surface() + LAContour().orientation(), 0.0);
}

}  // namespace
}  // namespace quillon
