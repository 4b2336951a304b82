#include "quillon/geometry/contours/las_solver.h"

#include <gtest/gtest.h>

#include "las_test_support.h"

namespace quillon {
namespace {

using las_test::Area;
using las_test::CheckTree;
using las_test::CircleContour;
using las_test::DistinctVertices;
using las_test::RectContour;
using las_test::Shape;
using las_test::SignedArea;

constexpr double kEps = 1e-7;

TEST(LasSolverTest, ClosedContoursRepeatTheirFirstPointAsAZeroLengthClosingEdge) {
    const int before = ProContour::get_contour_allocs();
    LAS_Solver s(kEps);
    EXPECT_EQ(s.AddLine({0, 0}, {1, 0}), 0);
    EXPECT_EQ(s.AddLine({1, 0}, {1, 1}), 1);
    EXPECT_EQ(s.AddLine({1, 1}, {0, 1}), 2);
    EXPECT_EQ(s.AddLine({0, 1}, {0, 0}), 3);
    // The same line (either way round, ends within epsilon) is the one already there.
    EXPECT_EQ(s.AddLine({1, 0.5e-7}, {0, 0}), 0);
    EXPECT_EQ(s.AddLine({0, 0}, {0, 0.5e-7}), -1);
    EXPECT_EQ(s.GetNodeCount(), 4);
    std::vector<LAContour*> none, polylines;
    std::vector<ProClosedContour*> closed;
    ProContourFactory f;
    s.FindContours(none, &f, closed, polylines);
    ASSERT_EQ(closed.size(), 1u);
    EXPECT_TRUE(polylines.empty());
    EXPECT_NE(dynamic_cast<LAS_ProClosedContour*>(closed[0]), nullptr);
    // Clockwise, with the zero-length closing edge repeating the first point.
    EXPECT_EQ(closed[0]->orientation(), 1);
    ASSERT_EQ(closed[0]->size(), 5u);
    EXPECT_EQ((*closed[0])[4].start.x, (*closed[0])[0].start.x);
    EXPECT_EQ((*closed[0])[4].start.y, (*closed[0])[0].start.y);
    EXPECT_NEAR(std::fabs(SignedArea(*closed[0])), 1.0, 1e-12);
    for (int i = 0; i < 4; ++i) EXPECT_EQ(s.GetElement(i)->GetUseCount(), 1);
    delete closed[0];
    EXPECT_EQ(ProContour::get_contour_allocs(), before);
}

TEST(LasSolverTest, DanglingLinesBecomePolylines) {
    LAS_Solver s(kEps);
    // A square with a line hanging into it from a corner, and a free chain elsewhere.
    s.AddLine({0, 0}, {4, 0});
    s.AddLine({4, 0}, {4, 4});
    s.AddLine({4, 4}, {0, 4});
    s.AddLine({0, 4}, {0, 0});
    s.AddLine({4, 4}, {2, 2});
    s.AddLine({10, 0}, {11, 0});
    s.AddLine({11, 0}, {12, 1});
    std::vector<LAContour*> none, polylines;
    std::vector<ProClosedContour*> closed;
    ProContourFactory f;
    s.FindContours(none, &f, closed, polylines);
    // Walks from the other corners turn into the dangling line and fail; the one from its own
    // corner closes round the square before meeting it.
    ASSERT_EQ(closed.size(), 1u);
    EXPECT_NEAR(std::fabs(SignedArea(*closed[0])), 16.0, 1e-12);
    delete closed[0];
    std::size_t edges = 0;
    for (LAContour* p : polylines) {
        edges += p->size() - 1;
        delete p;
    }
    EXPECT_EQ(polylines.size(), 2u);
    EXPECT_EQ(edges, 3u);
    // Every element ends up in exactly one contour or polyline.
    for (int i = 0; i < s.GetElementCount(); ++i) EXPECT_EQ(s.GetElement(i)->GetUseCount(), 1);
}

TEST(LasSolverTest, FullCircleBecomesTwoHalfArcsAndDuplicatesMerge) {
    LAS_Solver s(kEps);
    const int k = s.AddArc({1, 0}, {1, 0}, {0, 0}, 2 * las_test::kPi);
    EXPECT_EQ(k, 1);
    ASSERT_EQ(s.GetElementCount(), 2);
    LAS_Arc* a = s.GetArc(0);
    LAS_Arc* b = s.GetArc(1);
    ASSERT_NE(a, nullptr);
    ASSERT_NE(b, nullptr);
    EXPECT_EQ(s.GetLine(0), nullptr);
    EXPECT_NEAR(a->GetSweep(), las_test::kPi, 1e-15);
    EXPECT_EQ(a->GetEnd(), b->GetBegin());
    EXPECT_EQ(a->GetBegin(), b->GetEnd());
    EXPECT_EQ(a->GetCenter(), b->GetCenter());
    EXPECT_NEAR(s.GetPoint(a->GetEnd()).x, -1.0, 1e-12);
    // The same half arc again, or reversed with the opposite sweep, is the one already there.
    EXPECT_EQ(s.AddArc({1, 0}, {-1, 0}, {0, 0}, las_test::kPi), 0);
    EXPECT_EQ(s.AddArc({-1, 0}, {1, 0}, {0, 0}, -las_test::kPi + 5e-5), 0);
    EXPECT_EQ(s.AddArc({1, 0}, {1, 0}, {0, 0}, 1.0), -1);  // ends coincide
    EXPECT_EQ(s.AddArc({1, 0}, {0, 1}, {0, 0}, 0.0), -1);  // zero sweep
    std::vector<LAContour*> none, polylines;
    std::vector<ProClosedContour*> closed;
    ProContourFactory f;
    s.FindContours(none, &f, closed, polylines);
    ASSERT_EQ(closed.size(), 1u);
    EXPECT_NEAR(std::fabs(SignedArea(*closed[0])), las_test::kPi, 1e-12);
    delete closed[0];
}

TEST(LasSolverTest, ArcThroughMiddlePoint) {
    LAS_Solver s(kEps);
    const int b = s.AddPoint({1, 0});
    const int e = s.AddPoint({-1, 0});
    const int m = s.AddPoint({0, 1});
    LAS_Arc arc(b, e, m, &s);
    EXPECT_NEAR(arc.GetSweep(), las_test::kPi, 1e-12);
    ASSERT_GE(arc.GetCenter(), 0);
    EXPECT_NEAR(arc.GetCenterPoint().x, 0.0, 1e-9);
    EXPECT_NEAR(arc.GetCenterPoint().y, 0.0, 1e-9);
    // A quarter-ish arc: the centre is the crossing nearer to the right distance from the middle.
    const int m2 = s.AddPoint({std::cos(las_test::kPi / 4), std::sin(las_test::kPi / 4)});
    const int e2 = s.AddPoint({0, 1});
    LAS_Arc quarter(b, e2, m2, &s);
    EXPECT_NEAR(quarter.GetSweep(), las_test::kPi / 2, 1e-9);
    EXPECT_NEAR(quarter.GetCenterPoint().distance({0, 0}), 0.0, 1e-9);
}

TEST(LasSolverTest, TangentTiesOrderByTurningSideAndRadius) {
    LAS_Solver s(kEps);
    // Everything leaves the origin along +x: a line, arcs turning left (centres above) and
    // right (centres below) with radii 1 and 2.
    const int line = s.AddLine({0, 0}, {3, 0});
    const int left1 = s.AddArc({0, 0}, {1, 1}, {0, 1}, las_test::kPi / 2);
    const int left2 = s.AddArc({0, 0}, {2, 2}, {0, 2}, las_test::kPi / 2);
    const int right1 = s.AddArc({0, 0}, {1, -1}, {0, -1}, -las_test::kPi / 2);
    const int right2 = s.AddArc({0, 0}, {2, -2}, {0, -2}, -las_test::kPi / 2);
    LAS_NodeInfo* n = s.GetNode(0);
    ASSERT_EQ(n->GetElemCount(), 5);
    // Clockwise: counter-clockwise turners by increasing radius, then the line, then the
    // clockwise turners by decreasing radius.
    EXPECT_EQ(n->GetElem(0), s.GetElement(left1));
    EXPECT_EQ(n->GetElem(1), s.GetElement(left2));
    EXPECT_EQ(n->GetElem(2), s.GetElement(line));
    EXPECT_EQ(n->GetElem(3), s.GetElement(right2));
    EXPECT_EQ(n->GetElem(4), s.GetElement(right1));
    for (int i = 0; i < 5; ++i)
        EXPECT_TRUE(n->IsNextClockWise(n->GetElem(i), n->GetElem((i + 1) % 5)) || i == 4);
    EXPECT_EQ(n->GetNextClockWise(n->GetElem(4), 0, 0), n->GetElem(0));
    EXPECT_EQ(n->GetPrevClockWise(n->GetElem(0), 0, 0), n->GetElem(4));
    EXPECT_EQ(n->GetArcOrient(s.GetArc(left1)), LAS_NodeInfo::ArcOrientNone);
    // Used flags: an index that is neither end reads 0 and changes nothing.
    LAS_Element* e = s.GetElement(line);
    e->SetUsed(42);
    EXPECT_EQ(e->IsUsed(42), 0);
    EXPECT_EQ(e->IsUsed(0), 0);
    e->SetUsed(0);
    EXPECT_EQ(e->IsUsed(0), 1);
    EXPECT_EQ(n->GetNextClockWise(s.GetElement(left2), 1, 0), s.GetElement(right2));
}

TEST(LasSolverTest, OverlappingSquaresUnionDifferenceIntersection) {
    const int before = ProContour::get_contour_allocs();
    ProComplexContour* a = Shape(RectContour(0, 0, 2, 2));
    ProComplexContour* b = Shape(RectContour(1, 1, 3, 3));
    ProContourFactory f;
    {
        LAS_Solver s(kEps);
        ProComplexContour* u = s.Add(a, b, &f);
        ASSERT_EQ(u->ChildrenCount(), 1u);
        EXPECT_EQ(u->SolidChild(0)->ChildrenCount(), 0u);
        EXPECT_EQ(DistinctVertices(*u->SolidChild(0)), 8);
        EXPECT_NEAR(Area(u), 7.0, 1e-12);
        EXPECT_EQ(CheckTree(u, kEps), "");
        delete u;
    }
    {
        LAS_Solver s(kEps);
        ProComplexContour* m = s.Mul(a, b, &f);
        ASSERT_EQ(m->ChildrenCount(), 1u);
        EXPECT_EQ(DistinctVertices(*m->SolidChild(0)), 4);
        EXPECT_NEAR(Area(m), 1.0, 1e-12);
        delete m;
    }
    {
        LAS_Solver s(kEps);
        ProComplexContour* d = s.Sub(a, b, &f);
        ASSERT_EQ(d->ChildrenCount(), 1u);
        EXPECT_EQ(DistinctVertices(*d->SolidChild(0)), 6);
        EXPECT_NEAR(Area(d), 3.0, 1e-12);
        EXPECT_EQ(d->SolidChild(0)->orientation(), 1);  // faces come out clockwise
        delete d;
    }
    delete a;
    delete b;
    EXPECT_EQ(ProContour::get_contour_allocs(), before);
}

TEST(LasSolverTest, NestedSquaresGiveAHoleOrTheOuterAlone) {
    ProComplexContour* outer = Shape(RectContour(0, 0, 10, 10));
    ProComplexContour* inner = Shape(RectContour(3, 3, 5, 5));
    ProContourFactory f;
    LAS_Solver s1(kEps);
    ProComplexContour* d = s1.Sub(outer, inner, &f);
    ASSERT_EQ(d->ChildrenCount(), 1u);
    ASSERT_EQ(d->SolidChild(0)->ChildrenCount(), 1u);
    EXPECT_NE(dynamic_cast<ProEmptyContour*>(d->SolidChild(0)->ClosedChild(0)), nullptr);
    EXPECT_NEAR(Area(d), 96.0, 1e-12);
    LAS_Solver s2(kEps);
    ProComplexContour* u = s2.Add(outer, inner, &f);
    ASSERT_EQ(u->ChildrenCount(), 1u);
    EXPECT_EQ(u->SolidChild(0)->ChildrenCount(), 0u);
    EXPECT_NEAR(Area(u), 100.0, 1e-12);
    // An island in the hole stays a solid of its own; subtracting the hole-with-island again
    // from the outer square gives the ring plus the island.
    LAS_Solver s3(kEps);
    ProComplexContour* island = Shape(RectContour(3.5, 3.5, 4.5, 4.5));
    ProComplexContour* ringAndIsland = s3.Add(d, island, &f);
    EXPECT_EQ(ringAndIsland->ChildrenCount(), 2u);
    EXPECT_NEAR(Area(ringAndIsland), 97.0, 1e-12);
    EXPECT_EQ(CheckTree(ringAndIsland, kEps), "");
    for (ProComplexContour* c : {outer, inner, d, u, island, ringAndIsland}) delete c;
}

TEST(LasSolverTest, SharedEdgesAndTouchingCorners) {
    ProContourFactory f;
    // Side by side: the union is one rectangle (the shared edge is dropped), the intersection
    // is empty.
    ProComplexContour* a = Shape(RectContour(0, 0, 1, 1));
    ProComplexContour* b = Shape(RectContour(1, 0, 2, 1));
    ProComplexContour* c = Shape(RectContour(1, 1, 2, 2));  // touches a at one corner
    LAS_Solver s1(kEps);
    ProComplexContour* u = s1.Add(a, b, &f);
    ASSERT_EQ(u->ChildrenCount(), 1u);
    EXPECT_NEAR(Area(u), 2.0, 1e-12);
    LAS_Solver s2(kEps);
    ProComplexContour* m = s2.Mul(a, b, &f);
    EXPECT_EQ(m->ChildrenCount(), 0u);
    LAS_Solver s3(kEps);
    ProComplexContour* t = s3.Add(a, c, &f);
    EXPECT_EQ(t->ChildrenCount(), 2u);
    EXPECT_NEAR(Area(t), 2.0, 1e-12);
    // A hole sharing part of its solid's edge: the result is a notched solid.
    ProComplexContour* big = Shape(RectContour(0, 0, 4, 4));
    ProComplexContour* notch = Shape(RectContour(1, 0, 2, 1));
    LAS_Solver s4(kEps);
    ProComplexContour* n = s4.Sub(big, notch, &f);
    ASSERT_EQ(n->ChildrenCount(), 1u);
    EXPECT_EQ(n->SolidChild(0)->ChildrenCount(), 0u);
    EXPECT_NEAR(Area(n), 15.0, 1e-12);
    EXPECT_EQ(CheckTree(n, kEps), "");
    for (ProComplexContour* x : {a, b, c, u, m, t, big, notch, n}) delete x;
}

TEST(LasSolverTest, DiscsWithTrueArcs) {
    ProContourFactory f;
    ProComplexContour* a = Shape(CircleContour({0, 0}, 1));
    ProComplexContour* b = Shape(CircleContour({1, 0}, 1));
    // Lens area of two unit circles at distance 1.
    const double lens = 2 * las_test::kPi / 3 - std::sqrt(3.0) / 2;
    LAS_Solver s1(kEps);
    ProComplexContour* m = s1.Mul(a, b, &f);
    ASSERT_EQ(m->ChildrenCount(), 1u);
    EXPECT_NEAR(Area(m), lens, 1e-12);
    for (const LAEdge& e : *m->SolidChild(0))
        if (e.start.distance((*m->SolidChild(0))[0].start) > 1e-9) {
            EXPECT_EQ(e.type, 1);
        }
    LAS_Solver s2(kEps);
    ProComplexContour* u = s2.Add(a, b, &f);
    EXPECT_NEAR(Area(u), 2 * las_test::kPi - lens, 1e-12);
    // An annulus minus a disc through its ring.
    ProComplexContour* ring = Shape(CircleContour({0, 0}, 3), {CircleContour({0, 0}, 1)});
    ProComplexContour* disc = Shape(CircleContour({2, 0}, 0.5, 0.3));
    LAS_Solver s3(kEps);
    ProComplexContour* d = s3.Sub(ring, disc, &f);
    EXPECT_NEAR(Area(d), 8 * las_test::kPi - 0.25 * las_test::kPi, 1e-12);
    EXPECT_EQ(CheckTree(d, kEps), "");
    for (ProComplexContour* x : {a, b, m, u, ring, disc, d}) delete x;
}

TEST(LasSolverTest, ListUnionNormalizeAndSet) {
    const int before = ProContour::get_contour_allocs();
    ProContourFactory f;
    std::vector<ProComplexContour*> list = {Shape(RectContour(0, 0, 2, 1)),
                                            Shape(RectContour(1, 0, 3, 1)),
                                            Shape(RectContour(2.5, 0.5, 4, 2))};
    LAS_Solver s(kEps);
    EXPECT_EQ(s.Add(std::vector<ProComplexContour*>{}, &f), nullptr);
    EXPECT_EQ(s.Add(std::vector<ProComplexContour*>{list[0]}, &f), list[0]);
    ProComplexContour* u = s.Add(list, &f);
    ASSERT_NE(u, nullptr);
    EXPECT_NEAR(Area(u), 3.0 + 1.5 * 1.5 - 0.25, 1e-12);
    EXPECT_EQ(u->ChildrenCount(), 1u);
    // Normalize resolves a solid drawn as two overlapping loops given as one shape.
    ProComplexContour* twice = Shape(RectContour(0, 0, 2, 2));
    ProSolidContour* extra = f.CreateSolidContour();
    extra->SetLAContour(RectContour(1, 1, 3, 3));
    twice->Attach(extra);
    LAS_Solver n(kEps);
    ProComplexContour* norm = n.Normalize(twice, &f);
    EXPECT_NEAR(Area(norm), 7.0, 1e-12);
    EXPECT_EQ(norm->ChildrenCount(), 1u);
    // Set nests plain contours by containment, levels alternating solid, hole, solid.
    std::vector<ProClosedContour*> loops;
    for (const LAContour& c : {RectContour(0, 0, 10, 10), RectContour(2, 2, 8, 8),
                               RectContour(4, 4, 6, 6), RectContour(20, 0, 21, 1)})
        loops.push_back(new ProClosedContour(c));
    LAS_Solver t(kEps);
    ProComplexContour* set = t.Set(loops, &f, true);
    ASSERT_NE(set, nullptr);
    EXPECT_EQ(set->ChildrenCount(), 3u);
    EXPECT_NEAR(Area(set), 100 - 36 + 4 + 1, 1e-12);
    EXPECT_EQ(CheckTree(set, kEps), "");
    // Crossing contours: strict refuses them, otherwise the ones placed so far are nested.
    loops.push_back(new ProClosedContour(RectContour(9, 9, 12, 12)));
    EXPECT_EQ(t.Set(loops, &f, true), nullptr);
    ProComplexContour* loose = t.Set(loops, &f, false);
    ASSERT_NE(loose, nullptr);
    delete loose;
    for (ProClosedContour* l : loops) delete l;
    for (ProComplexContour* x : list) delete x;
    for (ProComplexContour* x : {u, twice, norm, set}) delete x;
    EXPECT_EQ(ProContour::get_contour_allocs(), before);
}

TEST(LasSolverTest, ComplexContourFromContoursKeepsTheDisjointOrder) {
    const int before = ProContour::get_contour_allocs();
    ProContourFactory f;
    LAS_Solver s(kEps);
    ProComplexContour* empty = s.ComplexContourFromContours({nullptr}, &f);
    EXPECT_EQ(empty->ChildrenCount(), 0u);
    delete empty;
    // Disjoint: the second contour's solid comes first.
    ProComplexContour* two =
        s.ComplexContourFromContours({new ProClosedContour(RectContour(0, 0, 1, 1)),
                                      new ProClosedContour(RectContour(5, 0, 6, 1))},
                                     &f);
    ASSERT_EQ(two->ChildrenCount(), 2u);
    EXPECT_EQ((*two->SolidChild(0))[0].start.x, 5.0);
    delete two;
    // Either order of a contour and one inside it gives a solid with a hole.
    for (bool innerFirst : {false, true}) {
        auto* outer = new ProClosedContour(RectContour(0, 0, 4, 4));
        auto* inner = new ProClosedContour(RectContour(1, 1, 2, 2));
        ProComplexContour* c = innerFirst ? s.ComplexContourFromContours({inner, outer}, &f)
                                          : s.ComplexContourFromContours({outer, inner}, &f);
        ASSERT_EQ(c->ChildrenCount(), 1u);
        EXPECT_EQ(c->SolidChild(0)->ChildrenCount(), 1u);
        EXPECT_NEAR(Area(c), 15.0, 1e-12);
        delete c;
    }
    EXPECT_EQ(s.ComplexContourFromContours({new ProClosedContour(RectContour(0, 0, 2, 2)),
                                            new ProClosedContour(RectContour(1, 1, 3, 3))},
                                           &f),
              nullptr);
    EXPECT_EQ(ProContour::get_contour_allocs(), before);
}

TEST(LasSolverTest, TopAndRightParts) {
    ProContourFactory f;
    ProComplexContour* r = Shape(RectContour(0, 0, 3, 10));
    LAS_Solver s1(kEps);
    ProComplexContour* top = s1.GetTopPartOfContour(r->SolidChild(0), 4.0, &f);
    ASSERT_EQ(top->ChildrenCount(), 1u);
    EXPECT_NEAR(Area(top), 18.0, 1e-12);
    BoundRect2 box = top->GetBoundRect();
    EXPECT_NEAR(box.get_LB().y, 4.0, 1e-12);
    EXPECT_NEAR(box.get_RT().y, 10.0, 1e-12);
    LAS_Solver s2(kEps);
    ProComplexContour* none = s2.GetTopPartOfContour(r->SolidChild(0), 12.0, &f);
    EXPECT_EQ(none->ChildrenCount(), 0u);
    // A ring cut through its hole, and a disc cut right of its centre (a true half disc).
    ProComplexContour* ring = Shape(RectContour(0, 0, 10, 10), {RectContour(4, 4, 6, 6)});
    LAS_Solver s3(kEps);
    ProComplexContour* upper = s3.GetTopPartOfContour(ring->SolidChild(0), 5.0, &f);
    EXPECT_NEAR(Area(upper), 48.0, 1e-12);
    EXPECT_EQ(CheckTree(upper, kEps), "");
    ProComplexContour* disc = Shape(CircleContour({0, 0}, 2, 1.0));
    LAS_Solver s4(kEps);
    ProComplexContour* half = s4.GetRightPartOfContour(disc->SolidChild(0), 0.0, &f);
    EXPECT_NEAR(Area(half), 2 * las_test::kPi, 1e-12);
    // The solver's own output (with its zero-length closing edges) cuts the same way: a disc
    // with a square hole, cut through the hole.
    LAS_Solver s5(kEps);
    ProComplexContour* sq = Shape(RectContour(-0.5, -0.5, 0.5, 0.5));
    ProComplexContour* holed = s5.Sub(disc, sq, &f);
    LAS_Solver s6(kEps);
    ProComplexContour* upperHoled = s6.GetTopPartOfContour(holed->SolidChild(0), 0.0, &f);
    EXPECT_NEAR(Area(upperHoled), 2 * las_test::kPi - 0.5, 1e-12);
    EXPECT_EQ(CheckTree(upperHoled, kEps), "");
    for (ProComplexContour* x : {sq, holed, upperHoled}) delete x;
    std::vector<Point2> cut;
    LAS_Solver::AddPtToSortedVector(cut, {3, 0}, true);
    LAS_Solver::AddPtToSortedVector(cut, {1, 0}, true);
    LAS_Solver::AddPtToSortedVector(cut, {2, 5}, true);
    LAS_Solver::AddPtToSortedVector(cut, {2, 0}, true);
    ASSERT_EQ(cut.size(), 4u);
    EXPECT_EQ(cut[1].y, 5.0);  // equal x: after the one already there
    EXPECT_EQ(cut[2].y, 0.0);
    for (ProComplexContour* x : {r, top, none, ring, upper, disc, half}) delete x;
}

TEST(LasSolverTest, SectorsInsideAComplexContour) {
    ProComplexContour* ring = Shape(RectContour(0, 0, 10, 10), {RectContour(4, 4, 6, 6)});
    LAS_Solver s(kEps);
    std::vector<Sector2> out;
    EXPECT_EQ(s.GetSectorsInContour(ring, Sector2({-5, 5}, {15, 5}), out), 2);
    EXPECT_NEAR(out[0].get_beg().x, 0.0, 1e-12);
    EXPECT_NEAR(out[0].get_end().x, 4.0, 1e-12);
    EXPECT_NEAR(out[1].get_beg().x, 6.0, 1e-12);
    EXPECT_NEAR(out[1].get_end().x, 10.0, 1e-12);
    EXPECT_EQ(s.GetSectorsInContour(ring, Sector2({-5, 20}, {15, 20}), out), 0);
    delete ring;
}

TEST(LasSolverTest, TJunctionSplitsOnlyTheCrossedElement) {
    LAS_Solver s(kEps);
    s.AddLine({0, 0}, {4, 0});
    s.AddLine({2, 0}, {2, 3});
    s.SplitEdges();
    // The stem keeps its element; the bar is split in two at the stem's foot, the pieces
    // listed after it.
    ASSERT_EQ(s.GetElementCount(), 3);
    EXPECT_EQ(s.GetLine(0)->GetBegin(), 2);
    EXPECT_EQ(s.GetLine(0)->GetEnd(), 3);
    EXPECT_EQ(s.GetPoint(s.GetLine(1)->GetBegin()).x, 0.0);
    EXPECT_EQ(s.GetPoint(s.GetLine(1)->GetEnd()).x, 2.0);
    EXPECT_EQ(s.GetPoint(s.GetLine(2)->GetEnd()).x, 4.0);
    EXPECT_EQ(s.GetNode(2)->GetElemCount(), 3);
}

TEST(LasSolverTest, HalfPlaneCutsUseTheirOwnFixedTolerance) {
    // A solver epsilon far larger than 1e-8 does not widen the cut.
    LAS_Solver s(1e-3);
    std::vector<Point2> cut;
    EXPECT_EQ(s.AddLineOnlyTop({0, -1}, {0, -2}, 0.0, cut), -1);
    EXPECT_TRUE(cut.empty());
    // An end 0.5e-8 below the level counts as on it: the whole segment, that end cut.
    EXPECT_GE(s.AddLineOnlyTop({1, -0.5e-8}, {1, 2}, 0.0, cut), 0);
    ASSERT_EQ(cut.size(), 1u);
    EXPECT_EQ(cut[0].y, -0.5e-8);
    // 1e-4 below is below, even though it is within the solver's epsilon: crossing point cut.
    const int k = s.AddLineOnlyTop({3, -1e-4}, {2, 1}, 0.0, cut);
    ASSERT_GE(k, 0);
    ASSERT_EQ(cut.size(), 2u);
    EXPECT_EQ(cut[1].y, 0.0);
    EXPECT_NEAR(s.GetPoint(s.GetElement(k)->GetBegin()).x, 3 - 1e-4 / (1 + 1e-4), 1e-12);
    // Right half: the part with x >= 0 of a crossing segment, cut points ordered by y.
    EXPECT_GE(s.AddLineOnlyRight({-1, 5}, {1, 3}, 0.0, cut), 0);
    std::vector<Point2> byY;
    LAS_Solver::AddPtToSortedVector(byY, {0, 4}, false);
    LAS_Solver::AddPtToSortedVector(byY, {0, -1}, false);
    EXPECT_EQ(byY[0].y, -1.0);
}

TEST(LasSolverTest, ArcsWithoutACentreAndRemovedPointsKeepTheirIndices) {
    LAS_Solver s(kEps);
    const int b = s.AddPoint({0, 0});
    const int e = s.AddPoint({2, 0});
    const int m = s.AddPoint({1, 0});  // on the chord: no circle through the three
    LAS_Arc flat(b, e, m, &s);
    EXPECT_EQ(flat.GetCenter(), -1);
    // Unused points go; line ends are renumbered, arc centres deliberately are not.
    LAS_Solver t(kEps);
    t.AddPoint({9, 9});
    const int k = t.AddArc({1, 0}, {0, 1}, {0, 0}, las_test::kPi / 2);
    ASSERT_EQ(k, 0);
    EXPECT_EQ(t.GetArc(0)->GetCenter(), 3);
    t.RemoveUnusedPoints();
    EXPECT_EQ(t.GetNodeCount(), 2);
    EXPECT_EQ(t.GetArc(0)->GetBegin(), 0);
    EXPECT_EQ(t.GetArc(0)->GetCenter(), 3);
}

TEST(LasSolverTest, RemoveUnusedPointsRenumbersLines) {
    LAS_Solver s(kEps);
    s.AddPoint({5, 5});
    s.AddLine({0, 0}, {1, 0});
    s.AddPoint({7, 7});
    s.AddLine({1, 0}, {1, 1});
    s.RemoveUnusedPoints();
    EXPECT_EQ(s.GetNodeCount(), 3);
    EXPECT_EQ(s.GetElement(0)->GetBegin(), 0);
    EXPECT_EQ(s.GetElement(1)->GetEnd(), 2);
    EXPECT_EQ(s.GetPoint(2).y, 1.0);
    // Lookups still work after the renumbering.
    EXPECT_EQ(s.AddPoint({1, 1}), 2);
    EXPECT_EQ(s.AddLine({1, 1}, {1, 0}), 1);
}

}  // namespace
}  // namespace quillon
