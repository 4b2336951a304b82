#include "quillon/geometry/contours/solver2d.h"

#include <numbers>

#include "las_test_support.h"

namespace quillon {
namespace {

using namespace las_test;

constexpr double kEps = 1e-6;

bool Has(const std::vector<Point2>& pts, const Point2& p, double tol = 1e-9) {
    for (const Point2& q : pts)
        if (q.distance(p) <= tol) return true;
    return false;
}

TEST(Solver2dTest, EqualityAndAxisSnappedAngles) {
    Solver2d s(kEps);
    EXPECT_TRUE(s.AreEqual({0, 0}, {kEps, 0}));
    EXPECT_FALSE(s.AreEqual({0, 0}, {1.5 * kEps, 0}));
    Solver2d d(-1.0);
    EXPECT_EQ(d.GetEpsilon(), 1e-10);
    EXPECT_EQ(s.FindAngle_0x({0.5e-6, 2}), kPi / 2);
    EXPECT_EQ(s.FindAngle_0x({-0.5e-6, -2}), 3 * kPi / 2);
    EXPECT_EQ(s.FindAngle_0x({-3, 0.5e-6}), kPi);
    EXPECT_EQ(s.FindAngle_0x({3, -0.5e-6}), 0.0);
    EXPECT_EQ(s.FindAngle_0x({0, 0}), 0.0);
    for (double a = 0.1; a < 2 * kPi; a += 0.7)
        EXPECT_NEAR(s.FindAngle_0x({std::cos(a), std::sin(a)}), a, 1e-12);
    // With a zero epsilon nothing snaps, and the axes still point their own ways.
    const Solver2d exact(0.0);
    for (int k = 0; k < 4; ++k)
        EXPECT_EQ(exact.FindAngle_0x({k % 2 ? 0.0 : 1.0 - k, k % 2 ? 2.0 - k : 0.0}), k * kPi / 2);
}

TEST(Solver2dTest, SegmentContacts) {
    Solver2d s(kEps);
    std::vector<Point2> pts;
    const Sector2 bar({0, 0}, {4, 0});
    const struct {
        Sector2 a, b;
        std::vector<Point2> want;
    } cases[] = {
        {Sector2({0, 0}, {2, 2}), Sector2({0, 2}, {2, 0}), {{1, 1}}},  // a proper crossing
        {bar, Sector2({2, 0.5e-6}, {2, 3}), {{2, 0.5e-6}}},  // a T-junction within epsilon: its end
        {bar, Sector2({6, 0}, {1, 0}), {{4, 0}, {1, 0}}},    // collinear overlap: its two ends
        {bar, Sector2({4, 0}, {5, 1}), {{4, 0}}},            // a shared end only
        {bar, Sector2({0, 1}, {1, 1}), {}},                  // parallel
        {bar, Sector2({5, -1}, {5, 1}), {}},                 // apart
        {bar, Sector2({5, 0}, {7, 0}), {}},                  // collinear, apart
    };
    for (const auto& c : cases) {
        EXPECT_EQ(s.FindLineCrossPoint(c.a, c.b, pts), static_cast<int>(c.want.size()));
        for (const Point2& p : c.want) EXPECT_TRUE(Has(pts, p)) << p.x << " " << p.y;
    }
}

TEST(Solver2dTest, ArcContactsAndCircleCrossings) {
    Solver2d s(kEps);
    std::vector<Point2> pts;
    const Arc2 upper(Circle2({0, 0}, 1), 0.0, kPi);  // counter-clockwise over the top
    const double h = std::sqrt(0.75);
    const auto line = [&](double y) {
        return s.FindLineArcCrossPoint(Sector2({-2, y}, {2, y}), upper, pts);
    };
    EXPECT_EQ(line(0.5), 2);
    EXPECT_TRUE(Has(pts, {h, 0.5}) && Has(pts, {-h, 0.5}));
    EXPECT_EQ(line(1), 1);  // tangent, and tangent within epsilon: the foot point alone
    EXPECT_TRUE(Has(pts, {0, 1}));
    EXPECT_EQ(line(1 - 0.5e-6), 1);
    EXPECT_EQ(line(-0.5), 0);  // the lower half of the circle is not on this arc
    // Co-circular arcs overlapping: the overlap's ends only; arcs of two circles crossing.
    EXPECT_EQ(s.FindArcCrossPoint(upper, Arc2(Circle2({0, 0}, 1), -kPi / 2, kPi), pts), 2);
    EXPECT_TRUE(Has(pts, {1, 0}) && Has(pts, {0, 1}));
    EXPECT_EQ(s.FindArcCrossPoint(upper, Arc2(Circle2({1, 0}, 1), 0.0, 2 * kPi - 0.1), pts), 1);
    EXPECT_TRUE(Has(pts, {0.5, h}));
    // Circles apart by less than epsilon touch once, although they cross 3e-4 off the axis.
    EXPECT_EQ(s.FindArcCrossPoint(upper, Arc2(Circle2({2 - 1e-7, 0}, 1), 0.1, 2 * kPi - 0.2), pts),
              1);
    EXPECT_TRUE(Has(pts, {1, 0}, 1e-7));
    const Circle2 unit({0, 0}, 1);
    EXPECT_EQ(s.FindCircleCrossPoint(unit, Circle2({1, 0}, 1), pts), 2);
    EXPECT_NEAR(pts[0].y, h, 1e-12);  // left of the direction between the centres first
    EXPECT_NEAR(pts[1].y, -h, 1e-12);
    EXPECT_EQ(s.FindCircleCrossPoint(unit, Circle2({2, 0}, 1), pts), 1);
    EXPECT_TRUE(Has(pts, {1, 0}));
    EXPECT_EQ(s.FindCircleCrossPoint(unit, Circle2({0, 0}, 2), pts), 0);
    EXPECT_EQ(s.FindCircleCrossPoint(unit, Circle2({3, 0}, 1), pts), 0);
}

TEST(Solver2dTest, SplittingAndMiddle) {
    Solver2d s(kEps);
    std::vector<Sector2> lines;
    EXPECT_EQ(s.SplitLine(Sector2({0, 0}, {4, 0}), {1, 0}, lines), 2);
    EXPECT_EQ(lines[0].get_end().x, 1.0);
    EXPECT_EQ(lines[1].get_beg().x, 1.0);
    EXPECT_EQ(s.SplitLine(Sector2({0, 0}, {4, 0}), {0.5e-6, 0}, lines), 1);  // at an end
    EXPECT_EQ(s.SplitLine(Sector2({0, 0}, {4, 0}), {1, 1}, lines), 1);       // off the segment
    std::vector<Arc2> arcs;
    const Arc2 cw(Circle2({0, 0}, 2), kPi, -kPi);  // clockwise over the top
    EXPECT_EQ(s.SplitArc(cw, {0, 2}, arcs), 2);
    EXPECT_NEAR(arcs[0].sweep, -kPi / 2, 1e-12);
    EXPECT_NEAR(arcs[1].sweep, -kPi / 2, 1e-12);
    EXPECT_NEAR(arcs[0].get_end().distance({0, 2}), 0.0, 1e-12);
    EXPECT_NEAR(arcs[1].get_end().distance({2, 0}), 0.0, 1e-12);
    EXPECT_EQ(s.SplitArc(cw, {0, -2}, arcs), 1);  // the other half of the circle
    // At either end, within epsilon: the arc whole, never a piece without length.
    for (const Point2& end : {Point2(-2, 0.5e-6), Point2(2, -0.5e-6)}) {
        EXPECT_EQ(s.SplitArc(cw, end, arcs), 1);
        EXPECT_EQ(arcs[0].sweep, -kPi);
    }
    // A full circle splits anywhere but at its start.
    const Arc2 full(Circle2({0, 0}, 2), 0.0, 2 * kPi);
    EXPECT_EQ(s.SplitArc(full, {2, 0}, arcs), 1);
    EXPECT_EQ(s.SplitArc(full, {-2, 0}, arcs), 2);
    EXPECT_NEAR(arcs[1].sweep, kPi, 1e-12);
    EXPECT_NEAR(s.GetMiddleArc(Arc2(Circle2({1, 1}, 2), 0.0, kPi / 2))
                    .distance({1 + std::sqrt(2.0), 1 + std::sqrt(2.0)}),
                0.0, 1e-12);
}

TEST(Solver2dTest, RelationCodes) {
    Solver2d s(kEps);
    const LAContour big = RectContour(0, 0, 10, 10), small = RectContour(2, 2, 4, 4);
    const LAContour disc = CircleContour({5, 5}, 2);
    const LAContour halfDisc = {LAEdge({7, 5}, {5, 5}, kPi), LAEdge({3, 5})};
    // A notch: a region outside the first closed off by the first's own edges.
    const LAContour notched =
        Polygon({{0, 0}, {4, 0}, {4, 2}, {2, 1}, {2, 2}, {4, 2}, {4, 4}, {0, 4}});
    const struct {
        const LAContour &first, second;
        Solver2d::Relation want;
    } cases[] = {
        {big, small, Solver2d::Inside},
        {big, RectContour(0, 0, 4, 4), Solver2d::Inside},  // along two edges
        {big, big, Solver2d::Inside},
        {small, big, Solver2d::Encloses},
        {big, RectContour(8, 8, 12, 12), Solver2d::Crossing},
        {big, RectContour(20, 0, 21, 1), Solver2d::Disjoint},
        {big, RectContour(10, 10, 12, 12), Solver2d::Disjoint},        // touches at one point
        {big, RectContour(10, 0, 12, 4), Solver2d::PartlyOnBoundary},  // shares part of an edge
        {big, disc, Solver2d::Inside},
        {disc, big, Solver2d::Encloses},
        {big, CircleContour({5, 2}, 2), Solver2d::Inside},  // touches the bottom side
        {big, CircleContour({10, 5}, 1), Solver2d::Crossing},
        {notched, Polygon({{2, 2}, {2, 1}, {4, 2}}), Solver2d::PartlyOnBoundary},
        // The disc's lower half has the ends and centre of the half disc's arc, not its sweep.
        {halfDisc, disc, Solver2d::PartlyOnBoundary},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i)
        EXPECT_EQ(s.GetRelation(&cases[i].first, &cases[i].second), cases[i].want) << i;
    EXPECT_EQ(s.GetRelation(&big, nullptr), Solver2d::Disjoint);
}

TEST(Solver2dTest, PointsAndPiecesOnContours) {
    Solver2d s(kEps);
    const ShapePtr shape = MakeShape(RectContour(0, 0, 10, 10), {CircleContour({5, 5}, 2)});
    const ProSolidContour* solid = shape->SolidChild(0);
    const ProClosedContour* hole = solid->ClosedChild(0);
    // Inside, on the outline, on the hole's edge: in the solid; in the hole or outside: not.
    for (const Point2& p : {Point2(1, 1), Point2(0, 5), Point2(5, 7)})
        EXPECT_TRUE(s.IsPointInSolidContour(p, solid));
    for (const Point2& p : {Point2(5, 5), Point2(11, 5)})
        EXPECT_FALSE(s.IsPointInSolidContour(p, solid));
    EXPECT_TRUE(s.IsLineOnContour(Sector2({2, 0}, {10, 0}), solid));
    EXPECT_TRUE(s.IsLineOnContour(Sector2({0, 3}, {0, 0}), solid));
    EXPECT_FALSE(s.IsLineOnContour(Sector2({2, 0}, {12, 0}), solid));
    EXPECT_FALSE(s.IsLineOnContour(Sector2({0, 0}, {10, 10}), solid));
    EXPECT_TRUE(s.IsArcOnContour(Arc2(Circle2({5, 5}, 2), 1.0, 2.0), hole));
    EXPECT_FALSE(s.IsArcOnContour(Arc2(Circle2({5, 5}, 2.5), 1.0, 2.0), hole));
    std::vector<Sector2> in;
    EXPECT_EQ(s.GetSectorsInContour(nullptr, Sector2({0, 0}, {1, 0}), in), 0);
    EXPECT_FALSE(s.IsPointOnContour({0, 0}, nullptr));
    EXPECT_TRUE(s.IsPointInContour({5, 5}, hole));
    EXPECT_FALSE(s.IsPointInContour({5, 7}, hole));
    // An arc with a centre or sweep that is not a number bounds nothing.
    LAContour square = RectContour(0, 0, 1, 1);
    square[1] = LAEdge({1, 0}, {std::nan(""), 0.5}, kPi);
    EXPECT_EQ(Solver2d::CurvesOf(square).size(), 3u);
}

}  // namespace
}  // namespace quillon
