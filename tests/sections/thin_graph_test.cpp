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
    g.vertices = {c + Vector2().set2(r, a0), c + Vector2().set2(r, a0 + sweep)};
    g.edges.Add({.end = 1, .arc = true, .centre = c, .clockwise = sweep < 0.0, .thickness = 0.25});
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

TEST(ThinGraph, ApproximateGivesOneChordPerWhole20DegreesTurningByTheClockwiseFlag) {
    const std::pair<double, int> cases[] = {{19 * kDeg, 1},   {-39.9 * kDeg, 1}, {40.1 * kDeg, 2},
                                            {kPi, 9},         {-kPi, 9},         {359 * kDeg, 17},
                                            {-300 * kDeg, 15}};
    for (const auto& [sweep, chords] : cases) {
        SCOPED_TRACE(sweep / kDeg);
        const Point2 centre(3, -2);
        Thin::Graph g = OneArc(centre, 1.5, 0.3, sweep);
        g.Approximate();
        ASSERT_EQ(g.EdgeCount(), chords);
        EXPECT_EQ(g.VertexCount(), 1 + chords);
        // The arc's edge is the first chord; the appended ones continue the chain to its end, each
        // inner point at k·sweep/n along the arc.
        int at = 0;
        for (int k = 0; k < chords; ++k) {
            const Thin::Edge& e = g.edges[static_cast<std::size_t>(k)];
            EXPECT_TRUE(e.begin == at && !e.arc && e.thickness == 0.25);
            at = e.end;
            const Point2 expect = centre + Vector2().set2(1.5, 0.3 + (k + 1) * sweep / chords);
            EXPECT_NEAR(g.getVertex(at).distance(expect), 0.0, 1e-12);
        }
        EXPECT_EQ(at, 1);
        Arc2 none;
        EXPECT_FALSE(g.GetArc(0, none) || g.GetArc(1, none));  // straight now; no edge 1
    }
    EXPECT_FALSE(Thin::Graph().GetBoundRect().is_valid());
}

TEST(ThinSplit, CrossingsSplitAndArcCentreNodesVanish) {
    LAContour a = Chain({{-1, 0}, {1, 0}}), b = Chain({{0, -1}, {0, 1}});
    std::vector<LAContour*> x{&a, &b};
    Thin::Graph g;
    LA_SplitPol split;
    split.Convert(x, g);
    ASSERT_EQ(g.EdgeCount(), 4);
    EXPECT_EQ(g.VertexCount(), 5);
    for (int e = 0; e < 4; ++e) EXPECT_NEAR(Length(g, e), 1.0, 1e-12);
    // An arc's centre node goes and the indices after it shift; each piece finds its own contour.
    LAContour arc{LAEdge(Point2(1, 0), Point2(0, 0), -kPi), LAEdge(Point2(-1, 0))};
    LAContour line = Chain({{5, 5}, {6, 5}});
    std::vector<LAContour*> list{&arc, &line};
    Recording<LA_SplitPol>().Convert(list, g);  // into a used graph
    ASSERT_EQ(g.VertexCount(), 4);
    ASSERT_EQ(g.EdgeCount(), 2);
    EXPECT_TRUE(g.edges[0].arc && g.edges[0].clockwise == 1);
    EXPECT_EQ(g.edges[0].thickness + 10 * g.edges[1].thickness, 21);
    EXPECT_NEAR(g.GetBoundRect().get_LB().y, -1.0, 1e-9);
    EXPECT_NEAR(g.getVertex(g.getBegin(1)).distance(Point2(5, 5)), 0.0, 1e-12);
    EXPECT_NEAR(Length(g, 1), 1.0, 1e-12);
    // A whole turn as one arc enters as two half arcs: 9 + 9 chords, all on the circle.
    LAContour circle{LAEdge(Point2(2, 0), Point2(0, 0), 2 * kPi), LAEdge(Point2(2, 0))};
    std::vector<LAContour*> round{&circle};
    split.Convert(round, g);
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
    EXPECT_FALSE(ex.compare(1, 0) || ex.compare(0, 1));
    ex.Convert(first);
    ASSERT_EQ(last.EdgeCount() * 10 + first.EdgeCount(), 33);
    for (std::size_t e = 0; e < 3; ++e) {
        const int i = static_cast<int>(e);
        const double mid =
            (last.getVertex(last.getBegin(i)).x + last.getVertex(last.getEnd(i)).x) / 2;
        EXPECT_EQ(last.edges[e].thickness + 10 * first.edges[e].thickness,
                  (mid < 1 ? 1 : 2) + 10 * (mid < 2 ? 1 : 2))
            << mid;
    }
}

}  // namespace
}  // namespace quillon
