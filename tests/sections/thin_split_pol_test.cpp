#include "quillon/sections/thin_graph.h"

#include <gtest/gtest.h>

#include <numbers>
#include <random>
#include <vector>

namespace quillon {
namespace {

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
        edge.thickness = contourIndex;
    }
};

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
    arc.Add(LAEdge(Point2(1, 0), Point2(0, 0), -std::numbers::pi));
    arc.Add(LAEdge(Point2(-1, 0)));
    LAContour line = Chain({{5, 5}, {6, 5}});
    std::vector<LAContour*> list{&arc, &line};
    Thin::Graph g;
    LA_SplitPol().Convert(list, g);
    ASSERT_EQ(g.VertexCount(), 4);
    ASSERT_EQ(g.EdgeCount(), 2);
    EXPECT_TRUE(g.edges[0].arc);
    EXPECT_EQ(g.edges[0].clockwise, 1);
    EXPECT_NEAR(g.GetBoundRect().get_LB().y, -1.0, 1e-9);
    EXPECT_NEAR(g.getVertex(g.getBegin(1)).distance(Point2(5, 5)), 0.0, 1e-12);
    EXPECT_NEAR(Length(g, 1), 1.0, 1e-12);
    g.Approximate();
    EXPECT_EQ(g.EdgeCount(), 1 + 9);

    // A whole turn as one arc enters as two half arcs: 9 + 9 chords, all on the circle.
    LAContour circle;
    circle.Add(LAEdge(Point2(2, 0), Point2(0, 0), 2 * std::numbers::pi));
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
        EXPECT_EQ(last.edges[i].thickness, mid < 1 ? 0 : 1) << mid;
        EXPECT_EQ(first.edges[i].thickness, mid < 2 ? 0 : 1) << mid;
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
