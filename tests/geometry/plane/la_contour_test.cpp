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

TEST(LAEdge, DerivedArcValues) {
    const LAEdge e(Point2(2, 0), Point2(0, 0), kPi / 2);
    EXPECT_DOUBLE_EQ(e.rad_arc(), 2.0);
    EXPECT_NEAR(e.end_arc().x, 0.0, 1e-12);
    EXPECT_NEAR(e.end_arc().y, 2.0, 1e-12);
    EXPECT_NEAR(e.mid_arc().x, std::sqrt(2.0), 1e-12);
    EXPECT_NEAR(e.mid_arc().y, std::sqrt(2.0), 1e-12);
    const LAEdge marker(Point2(1, 1), 0.25);
    EXPECT_EQ(marker.type, 1);
    EXPECT_EQ(marker.angle, 0.0);
    EXPECT_DOUBLE_EQ(marker.centre.x, 1.25);
    EXPECT_EQ(LAEdge().type, 0);
}

TEST(LAContourFormer, CircleFromOneMarkerIsTwoClockwiseHalfArcsAndAZeroLengthEdge) {
    LAContour c;
    std::vector<Point2> pts{{9, 9}};
    LAContourFormer f(c, &pts, 8, 1e-9);
    f.arc_point(3, 4, 2.0);
    ASSERT_TRUE(f.close());
    EXPECT_EQ(f.status, 1);
    ASSERT_EQ(c.size(), 3u);
    EXPECT_EQ(c[0].type, 1);
    EXPECT_EQ(c[0].angle, -kPi);
    EXPECT_DOUBLE_EQ(c[0].start.x, 5.0);
    EXPECT_DOUBLE_EQ(c[0].centre.x, 3.0);
    EXPECT_EQ(c[1].type, 1);
    EXPECT_EQ(c[1].angle, -kPi);
    EXPECT_DOUBLE_EQ(c[1].start.x, 1.0);
    EXPECT_DOUBLE_EQ(c[1].start.y, 4.0);
    EXPECT_EQ(c[2].type, 0);
    EXPECT_DOUBLE_EQ(c[2].start.x, 5.0);
    ExpectClosedChain(c);
    EXPECT_NEAR(c.surface(), kPi * 4.0, 1e-9);
    EXPECT_EQ(c.orientation(), 1);
    ASSERT_EQ(pts.size(), 9u);  // the earlier point, then eight on the circle
    for (std::size_t i = 1; i < pts.size(); ++i) EXPECT_NEAR(pts[i].distance({3, 4}), 2.0, 1e-12);
    const BoundRect2 b = c.get_bound_rect();
    EXPECT_NEAR(b.get_LB().x, 1.0, 1e-12);
    EXPECT_NEAR(b.get_LB().y, 2.0, 1e-12);
    EXPECT_NEAR(b.get_RT().x, 5.0, 1e-12);
    EXPECT_NEAR(b.get_RT().y, 6.0, 1e-12);
    // Closed: further points are ignored and close answers from the status.
    f.line_point(0, 0);
    EXPECT_EQ(c.size(), 3u);
    EXPECT_TRUE(f.close());
}

TEST(LAContourFormer, SquaresAndTheirSigns) {
    LAContour c;
    LAContourFormer f(c, nullptr, 2, 1e-9);
    f.line_point(0, 0);
    f.line_point(1, 0);
    f.line_point(1, 1);
    f.line_point(0, 1);
    ASSERT_TRUE(f.close());
    EXPECT_DOUBLE_EQ(c.surface(), 1.0);
    EXPECT_EQ(c.orientation(), -1);
    c.Reverse();
    EXPECT_EQ(c.orientation(), 1);
    EXPECT_DOUBLE_EQ(c.surface(), 1.0);
    BoundRect2 b;
    EXPECT_TRUE(c.get_bound_rect(b));
    LAContour empty;
    EXPECT_FALSE(empty.get_bound_rect(b));
    EXPECT_EQ(empty.surface(), 0.0);
    EXPECT_EQ(empty.orientation(), 0);
}

TEST(LAContourFormer, RoundedCornerCentreOnBisectorAndStraightEdgeOnlyBeyondTol) {
    for (bool ccw : {true, false}) {
        LAContour c;
        std::vector<Point2> pts;
        LAContourFormer f(c, &pts, 5, 1e-9);
        if (ccw) {
            f.line_point(0, 0);
            f.line_point(1, 0);
            f.arc_point(1, 1, 0.1);
            f.line_point(0, 1);
        } else {
            f.line_point(0, 1);
            f.arc_point(1, 1, 0.1);
            f.line_point(1, 0);
            f.line_point(0, 0);
        }
        ASSERT_TRUE(f.close());
        ASSERT_EQ(c.size(), 5u);
        const LAEdge& arc = c[2].type == 1 ? c[2] : c[1];
        ASSERT_EQ(arc.type, 1);
        EXPECT_NEAR(arc.angle, ccw ? kPi / 2 : -kPi / 2, 1e-12);
        EXPECT_NEAR(arc.centre.x, 0.9, 1e-12);
        EXPECT_NEAR(arc.centre.y, 0.9, 1e-12);
        EXPECT_NEAR(arc.rad_arc(), 0.1, 1e-12);
        ExpectClosedChain(c);
        EXPECT_NEAR(c.surface(), 1.0 - 0.01 + kPi * 0.01 / 4.0, 1e-12);
        EXPECT_EQ(c.orientation(), ccw ? -1 : 1);
        // Three corners and five arc points, all on the rounded outline.
        EXPECT_EQ(pts.size(), 8u);
    }
    // A gap tolerance larger than the gap: no straight edge after the arc.
    LAContour c;
    LAContourFormer f(c, nullptr, 2, 10.0);
    f.line_point(0, 0);
    f.line_point(1, 0);
    f.arc_point(1, 1, 0.1);
    f.line_point(0, 1);
    ASSERT_TRUE(f.close());
    EXPECT_EQ(c.size(), 4u);
    // Two rounded corners whose tangent points meet: no edge between the arcs, one after them.
    LAContour d;
    LAContourFormer g(d, nullptr, 2, 1e-9);
    g.line_point(0, 0);
    g.line_point(1, 0);
    g.arc_point(1, 1, 0.5);
    g.arc_point(0, 1, 0.5);
    ASSERT_TRUE(g.close());
    ASSERT_EQ(d.size(), 5u);
    EXPECT_EQ(d[2].type, 1);
    EXPECT_EQ(d[3].type, 1);
    EXPECT_EQ(d[4].type, 0);
    ExpectClosedChain(d);
    EXPECT_NEAR(d.surface(), 0.5 + kPi / 8.0, 1e-12);
}

TEST(LAContourFormer, FilletAtAnObtuseCornerStaysTangentToBothSides) {
    LAContour c;
    LAContourFormer f(c, nullptr, 2, 1e-9);
    f.line_point(0, 0);
    f.arc_point(4, 0, 0.5);
    f.line_point(6, 3);
    f.line_point(0, 3);
    ASSERT_TRUE(f.close());
    ExpectClosedChain(c);
    const LAEdge& arc = c[1];
    const double t = Vector2(4, 0).angle(Vector2(2, 3));
    EXPECT_NEAR(arc.angle, t, 1e-12);
    // The centre is r / sin(|t| / 2) from the corner along the bisector, and equally far from
    // both sides, so the arc meets each side at the foot of the centre.
    EXPECT_NEAR(arc.centre.distance({4, 0}), 0.5 / std::sin(std::fabs(t) / 2), 1e-12);
    EXPECT_NEAR(Line2(Point2(0, 0), Point2(4, 0)).distance(arc.centre),
                Line2(Point2(4, 0), Point2(6, 3)).distance(arc.centre), 1e-12);
    EXPECT_NEAR(arc.rad_arc(), Line2(Point2(0, 0), Point2(4, 0)).distance(arc.centre), 1e-12);
}

TEST(LAContourFormer, FailureEmptiesTheContourAndRollsPointsBack) {
    LAContour c;
    std::vector<Point2> pts{{7, 7}, {8, 8}};
    LAContourFormer f(c, &pts, 4, 1e-9);
    EXPECT_EQ(f.mark, 2);
    EXPECT_FALSE(f.close());  // nothing yet: still forming
    EXPECT_EQ(f.status, -1);
    f.line_point(0, 0);
    f.line_point(0, 5);
    f.arc_point(3, 5, 0.5);  // a straight run through the rounded corner: no bisector
    f.line_point(6, 5);
    f.line_point(6, 0);
    EXPECT_FALSE(f.close());
    EXPECT_EQ(f.status, 0);
    EXPECT_TRUE(c.empty());
    EXPECT_EQ(pts.size(), 2u);
    EXPECT_FALSE(f.close());
    f.line_point(1, 1);  // ignored once failed
    EXPECT_TRUE(c.empty());

    f.reset_contour();
    f.line_point(0, 0);
    f.line_point(3, 0);
    f.arc_point(6, 0, 0.2);  // a spike: the bisector runs along the outgoing side
    f.line_point(4, 0);
    EXPECT_FALSE(f.close());
    EXPECT_TRUE(c.empty());
    EXPECT_EQ(pts.size(), 2u);

    f.reset_contour();
    f.line_point(0, 0);
    f.line_point(3, 0);
    EXPECT_FALSE(f.close());  // two corners
    f.reset_contour();
    f.line_point(0, 0);
    EXPECT_FALSE(f.close());  // one plain corner
    EXPECT_EQ(f.status, 0);
}

TEST(LAContour, TinyArcsAreLeftOutOfTheSurfaceChordAndAll) {
    LAContour c;
    c.push_back(LAEdge(Point2(1, 1)));
    c.push_back(LAEdge(Point2(2, 1)));
    c.push_back(LAEdge(Point2(2, 2)));
    c.push_back(LAEdge(Point2(1, 2)));
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
    c.push_back(LAEdge(Point2(0, 0)));
    c.push_back(LAEdge(Point2(100, 0)));
    c.push_back(LAEdge(Point2(100, 10)));
    c.push_back(LAEdge(Point2(2, 10), Point2(1, 10), kPi));
    LAContour out;
    c.approximate(out, 36, 24, 1.0);
    EXPECT_EQ(out.size(), 3u + 18u);
    c.approximate(out, 2, 24, 1.0);  // behaves as 4
    EXPECT_EQ(out.size(), 3u + 2u);
    c[3] = LAEdge(Point2(2, 10), Point2(1, 10), -0.5);
    c.approximate(out, 36, 24, -1.0);  // |limit|; 0.5 / (1 / 24)
    EXPECT_EQ(out.size(), 3u + 12u);
    c[3].angle = kPi / 2;
    c.approximate(out, 36, 4, 10.0);  // limit clamped to 135°
    EXPECT_EQ(out.size(), 3u + 2u);
    c.approximate(out, 36, 0, 10.0);  // small_steps raised to 1
    EXPECT_EQ(out.size(), 3u + 1u);
    // Pieces turn the arc's way and their starts lie on it.
    c[3].angle = -kPi / 2;
    c.approximate(out, 36, 6, 2.0);
    ASSERT_EQ(out.size(), 3u + 4u);
    for (std::size_t i = 3; i < out.size(); ++i) {
        EXPECT_NEAR(out[i].start.distance({1, 10}), 1.0, 1e-12);
        EXPECT_EQ(out[i].type, 0);
    }
    EXPECT_LT(out[4].start.y, 10.0);  // clockwise from (2, 10): downwards first

    // A circle is wider than its reference radius: at least 36 per turn.
    LAContour circle;
    LAContourFormer f(circle, nullptr, 2, 1e-9);
    f.arc_point(0, 0, 1.0);
    ASSERT_TRUE(f.close());
    circle.approximate(out, 4, 1, 1.0);
    EXPECT_EQ(out.size(), 18u + 18u + 1u);
    EXPECT_EQ(out.orientation(), 1);
    circle.approximate(circle, 4, 1, 1.0);  // in place
    EXPECT_EQ(circle.size(), 37u);
}

TEST(LAContour, TransformsAndReflection) {
    LAContour c;
    LAContourFormer f(c, nullptr, 2, 1e-9);
    f.line_point(0, 0);
    f.line_point(2, 0);
    f.arc_point(2, 1, 0.3);
    f.line_point(0, 1);
    ASSERT_TRUE(f.close());
    const double area = c.surface();

    LAContour m = c;
    m.move(Vector2(5, -3));
    ExpectClosedChain(m);
    EXPECT_NEAR(m.surface(), area, 1e-12);
    EXPECT_NEAR(m[2].centre.x, c[2].centre.x + 5, 1e-12);

    LAContour r = c;
    r.rotate(Rotate2(1.0));
    ExpectClosedChain(r);
    EXPECT_EQ(r[2].angle, c[2].angle);
    EXPECT_NEAR(r.surface(), area, 1e-12);

    LAContour t = c;
    t.transform(Isometry2(Line2(Point2(0, 5), Point2(1, 6))));  // a reflection
    EXPECT_EQ(t[2].angle, -c[2].angle);
    ExpectClosedChain(t);
    EXPECT_NEAR(t.surface(), area, 1e-12);
    EXPECT_EQ(t.orientation(), -c.orientation());

    LAContour i = c;
    i.transform(Isometry2(Rotate2(0.7), Translate2(1, 2)));
    EXPECT_EQ(i[2].angle, c[2].angle);
    ExpectClosedChain(i);
}

}  // namespace
}  // namespace quillon
