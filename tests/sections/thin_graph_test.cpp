#include "quillon/sections/thin_graph.h"

#include <gtest/gtest.h>

#include <numbers>
#include <vector>

namespace quillon {
namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kDeg = kPi / 180.0;

// One arc edge about c of radius r, from the angle a0, sweeping by sweep.
Thin::Graph OneArc(const Point2& c, double r, double a0, double sweep) {
    Thin::Graph g;
    g.vertices.Add(c + Vector2().set2(r, a0));
    g.vertices.Add(c + Vector2().set2(r, a0 + sweep));
    Thin::Edge e;
    e.end = 1;
    e.arc = true;
    e.centre = c;
    e.clockwise = sweep < 0.0 ? 1 : 0;
    e.thickness = 0.25;
    g.edges.Add(e);
    return g;
}

TEST(ThinGraph, GetArcAndBoundsFollowTheClockwiseFlag) {
    EXPECT_FALSE(Thin::Graph().GetBoundRect().is_valid());
    Thin::Graph g = OneArc(Point2(0, 0), 1.0, 0.0, kPi);
    Arc2 a;
    ASSERT_TRUE(g.GetArc(0, a));
    EXPECT_NEAR(a.sweep, kPi, 1e-12);
    EXPECT_NEAR(g.GetBoundRect().get_RT().y, 1.0, 1e-12);
    g.edges[0].clockwise = 1;  // the same ends, the lower half
    ASSERT_TRUE(g.GetArc(0, a));
    EXPECT_NEAR(a.sweep, -kPi, 1e-12);
    EXPECT_NEAR(g.GetBoundRect().get_LB().y, -1.0, 1e-12);
    EXPECT_NEAR(g.GetBoundRect().get_RT().y, 0.0, 1e-12);
    g.edges[0].arc = false;  // straight: both ends only
    EXPECT_FALSE(g.GetArc(0, a));
    EXPECT_FALSE(g.GetArc(1, a));
    EXPECT_NEAR(g.GetBoundRect().get_LB().y, 0.0, 1e-12);
}

TEST(ThinGraph, ApproximateGivesOneChordPerWhole20Degrees) {
    const struct {
        double sweep;
        int chords;
    } cases[] = {{19 * kDeg, 1}, {-39.9 * kDeg, 1}, {40.1 * kDeg, 2}, {kPi, 9},
                 {-kPi, 9},      {359 * kDeg, 17},  {-300 * kDeg, 15}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.sweep / kDeg);
        const Point2 centre(3, -2);
        Thin::Graph g = OneArc(centre, 1.5, 0.3, c.sweep);
        g.Approximate();
        ASSERT_EQ(g.EdgeCount(), c.chords);
        EXPECT_EQ(g.VertexCount(), 1 + c.chords);
        // The arc's edge is the first chord; the appended ones continue the chain to its end, each
        // inner point at k·sweep/n along the arc.
        int at = 0;
        for (int k = 0; k < c.chords; ++k) {
            const Thin::Edge& e = g.edges[static_cast<std::size_t>(k)];
            EXPECT_EQ(e.begin, at);
            EXPECT_FALSE(e.arc);
            EXPECT_EQ(e.thickness, 0.25);
            at = e.end;
            const Point2 expect = centre + Vector2().set2(1.5, 0.3 + (k + 1) * c.sweep / c.chords);
            EXPECT_NEAR(g.getVertex(at).distance(expect), 0.0, 1e-12);
        }
        EXPECT_EQ(at, 1);
    }
}

}  // namespace
}  // namespace quillon
