#include "quillon/sections/thin_graph.h"

#include <gtest/gtest.h>

#include <numbers>
#include <random>
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

// An open mid-line chain: the last edge only supplies the end point.
template <class C = LAContour>
C Chain(std::initializer_list<Point2> points) {
    C c;
    for (const Point2& p : points) c.Add(LAEdge(p));
    return c;
}

double Length(const Thin::Graph& g, int e) {
    return g.getVertex(g.getBegin(e)).distance(g.getVertex(g.getEnd(e)));
}

// Records in each edge's thickness the contour chosen for it.
template <class Base>
class Recording : public Base {
public:
    using Base::Base;
    void SetEdgeAttrib(int contourIndex, Thin::Edge& edge) override {
        edge.thickness = contourIndex + 1;  // 0 stays "none chosen"
    }
};

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

TEST(ThinSplit, CrossingsSplitCloseEndsMergeAndChainsStayOpen) {
    LAContour a = Chain({{-1, 0}, {1, 0}}), b = Chain({{0, -1}, {0, 1}});
    std::vector<LAContour*> x{&a, &b};
    Thin::Graph g;
    LA_SplitPol split;
    split.Convert(x, g);
    ASSERT_EQ(g.EdgeCount(), 4);
    EXPECT_EQ(g.VertexCount(), 5);
    for (int e = 0; e < 4; ++e) EXPECT_NEAR(Length(g, e), 1.0, 1e-12);

    LAContour c = Chain({{0, 0}, {1, 0}}), d = Chain({{1.00005, 0}, {1, 1}, {0, 1}});
    std::vector<LAContour*> near{&c, &d};
    split.Convert(near, g);  // the same converter again, into a used graph
    EXPECT_EQ(g.VertexCount(), 4);
    EXPECT_EQ(g.EdgeCount(), 3);
    d[0].start = Point2(1.001, 0);
    split.Convert(near, g);
    EXPECT_EQ(g.VertexCount(), 5);
}

TEST(ThinSplit, ArcCentreNodesVanishAndLaterIndicesShift) {
    LAContour arc;
    arc.Add(LAEdge(Point2(1, 0), Point2(0, 0), -kPi));
    arc.Add(LAEdge(Point2(-1, 0)));
    LAContour line = Chain({{5, 5}, {6, 5}});
    std::vector<LAContour*> list{&arc, &line};
    Thin::Graph g;
    Recording<LA_SplitPol>().Convert(list, g);
    ASSERT_EQ(g.VertexCount(), 4);
    ASSERT_EQ(g.EdgeCount(), 2);
    EXPECT_TRUE(g.edges[0].arc);
    EXPECT_EQ(g.edges[0].thickness, 1);  // the arc and the line each find their own contour
    EXPECT_EQ(g.edges[1].thickness, 2);
    EXPECT_EQ(g.edges[0].clockwise, 1);
    EXPECT_NEAR(g.GetBoundRect().get_LB().y, -1.0, 1e-9);
    EXPECT_NEAR(g.getVertex(g.getBegin(1)).distance(Point2(5, 5)), 0.0, 1e-12);
    EXPECT_NEAR(Length(g, 1), 1.0, 1e-12);
    g.Approximate();
    EXPECT_EQ(g.EdgeCount(), 1 + 9);

    // A whole turn as one arc enters as two half arcs: 9 + 9 chords, all on the circle.
    LAContour circle;
    circle.Add(LAEdge(Point2(2, 0), Point2(0, 0), 2 * kPi));
    circle.Add(LAEdge(Point2(2, 0)));
    std::vector<LAContour*> round{&circle};
    LA_SplitPol().Convert(round, g);
    ASSERT_EQ(g.EdgeCount(), 2);
    g.Approximate();
    EXPECT_EQ(g.EdgeCount(), 18);
    EXPECT_EQ(g.VertexCount(), 18);
    for (int v = 0; v < 18; ++v) EXPECT_NEAR(g.getVertex(v).distance(Point2(0, 0)), 2.0, 1e-9);
}

TEST(ThinSplit, SharedWallLastContourForLA_SplitPolFirstForLA_SplitPolExSelfComparison) {
    auto a = Chain<LAContourThin>({{0, 0}, {2, 0}}), b = Chain<LAContourThin>({{1, 0}, {3, 0}});
    a.doubleAttrib = 5.0;  // the values do not matter: compare weighs the candidate against itself
    b.doubleAttrib = 1.0;
    std::vector<LAContourThin*> thin{&a, &b};
    std::vector<LAContour*> plain{&a, &b};
    Thin::Graph last, first;
    Recording<LA_SplitPol>().Convert(plain, last);
    Recording<LA_SplitPolEx> ex(thin);
    EXPECT_FALSE(ex.compare(1, 0));
    EXPECT_FALSE(ex.compare(0, 1));
    ex.Convert(first);
    ASSERT_EQ(last.EdgeCount(), 3);
    ASSERT_EQ(first.EdgeCount(), 3);
    for (int e = 0; e < 3; ++e) {
        const double mid =
            (last.getVertex(last.getBegin(e)).x + last.getVertex(last.getEnd(e)).x) / 2;
        const auto i = static_cast<std::size_t>(e);
        EXPECT_EQ(last.edges[i].thickness, mid < 1 ? 1 : 2) << mid;
        EXPECT_EQ(first.edges[i].thickness, mid < 2 ? 1 : 2) << mid;
    }
}

TEST(ThinSplit, RandomWallsKeepTheirTotalLengthAndLeaveNoUnusedVertex) {
    std::mt19937 rng(77);
    std::uniform_real_distribution<double> coord(0.0, 10.0);
    for (int trial = 0; trial < 20; ++trial) {
        std::vector<LAContour> chains(6);
        std::vector<LAContour*> list;
        double input = 0.0;
        for (LAContour& chain : chains) {
            for (int k = 0; k < 4; ++k) chain.Add(LAEdge(Point2(coord(rng), coord(rng))));
            for (int k = 0; k < 3; ++k) input += chain[k].start.distance(chain[k + 1].start);
            list.push_back(&chain);
        }
        Thin::Graph g;
        LA_SplitPol().Convert(list, g);
        std::vector<int> degree(static_cast<std::size_t>(g.VertexCount()), 0);
        double length = 0.0;
        for (int e = 0; e < g.EdgeCount(); ++e) {
            ++degree.at(static_cast<std::size_t>(g.getBegin(e)));
            ++degree.at(static_cast<std::size_t>(g.getEnd(e)));
            length += Length(g, e);
        }
        for (int d : degree) EXPECT_GT(d, 0);
        EXPECT_NEAR(length, input, 1e-6);
    }
}

}  // namespace
}  // namespace quillon
