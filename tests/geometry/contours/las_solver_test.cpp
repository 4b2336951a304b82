#include "quillon/geometry/contours/las_solver.h"

#include <algorithm>

#include "las_test_support.h"

namespace quillon {
namespace {

using namespace las_test;

using LasSolverTest = LeakChecked;

using Owned = ShapePtr;

constexpr double kEps = 1e-7;

// One boolean on a solver of its own (a solver is filled and processed once).
Owned Solve(const Owned& a, const Owned& b, LAS_Solver::Operation op) {
    ProContourFactory f;
    return Owned(LAS_Solver(kEps).Solv(a.get(), b.get(), op, &f));
}

// The closed contours and polylines a solver finds among its loose elements; owns them.
struct Found {
    std::vector<ProClosedContour*> closed;
    std::vector<LAContour*> polylines;
    explicit Found(LAS_Solver& s) {
        std::vector<LAContour*> none;
        ProContourFactory f;
        s.FindContours(none, &f, closed, polylines);
    }
    ~Found() {
        for (auto* c : closed) delete c;
        for (auto* p : polylines) delete p;
    }
};

TEST_F(LasSolverTest, ClosedContoursRepeatTheirFirstPointAsAZeroLengthClosingEdge) {
    LAS_Solver s(kEps);
    const Point2 corners[] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
    for (int i = 0; i < 4; ++i) EXPECT_EQ(s.AddLine(corners[i], corners[(i + 1) % 4]), i);
    // The same line (either way round, ends within epsilon) is the one already there.
    EXPECT_EQ(s.AddLine({1, 0.5e-7}, {0, 0}), 0);
    EXPECT_EQ(s.AddLine({0, 0}, {0, 0.5e-7}), -1);
    EXPECT_EQ(s.GetNodeCount(), 4);
    EXPECT_EQ(s.AddPoint({0, 1.5e-7}), 4);  // 1.5 epsilon from a corner: a node of its own
    Found r(s);
    ASSERT_EQ(r.closed.size(), 1u);
    EXPECT_TRUE(r.polylines.empty());
    const ProClosedContour& c = *r.closed[0];
    // Clockwise, with the zero-length closing edge repeating the first point.
    EXPECT_EQ(c.orientation(), 1);
    ASSERT_EQ(c.size(), 5u);
    EXPECT_EQ(c[4].start.distance(c[0].start), 0.0);
    EXPECT_NEAR(std::fabs(SignedArea(c)), 1.0, 1e-12);
}

TEST_F(LasSolverTest, DanglingLinesBecomePolylines) {
    LAS_Solver s(kEps);
    // A square with a line hanging into it from a corner, and a free chain elsewhere.
    const Point2 ends[] = {{0, 0}, {4, 0}, {4, 4},  {0, 4},  {0, 0},
                           {4, 4}, {2, 2}, {10, 0}, {11, 0}, {12, 1}};
    for (int i : {0, 1, 2, 3, 5, 7, 8}) s.AddLine(ends[i], ends[i + 1]);
    Found r(s);
    // Walks from the other corners turn into the dangling line and fail; the one from its own
    // corner closes round the square before meeting it.
    ASSERT_EQ(r.closed.size(), 1u);
    EXPECT_NEAR(std::fabs(SignedArea(*r.closed[0])), 16.0, 1e-12);
    std::size_t edges = 0;
    for (LAContour* p : r.polylines) edges += p->size() - 1;
    EXPECT_EQ(r.polylines.size(), 2u);
    EXPECT_EQ(edges, 3u);
    // Every element ends up in exactly one contour or polyline.
    for (int i = 0; i < s.GetElementCount(); ++i) EXPECT_EQ(s.GetElement(i)->GetUseCount(), 1);
}

TEST_F(LasSolverTest, FullCircleBecomesTwoHalfArcsAndDuplicatesMerge) {
    LAS_Solver s(kEps);
    EXPECT_EQ(s.AddArc({1, 0}, {1, 0}, {0, 0}, 2 * kPi), 1);
    ASSERT_EQ(s.GetElementCount(), 2);
    LAS_Arc *a = s.GetArc(0), *b = s.GetArc(1);
    ASSERT_TRUE(a && b);
    EXPECT_NEAR(a->GetSweep(), kPi, 1e-15);
    EXPECT_NEAR(s.GetPoint(a->GetEnd()).x, -1.0, 1e-12);
    // The same half arc again, or reversed with the opposite sweep, is the one already there.
    EXPECT_EQ(s.AddArc({1, 0}, {-1, 0}, {0, 0}, kPi), 0);
    EXPECT_EQ(s.AddArc({-1, 0}, {1, 0}, {0, 0}, -kPi + 5e-5), 0);
    EXPECT_EQ(s.AddArc({1, 0}, {1, 0}, {0, 0}, 1.0), -1);  // ends coincide
    EXPECT_EQ(s.AddArc({1, 0}, {0, 1}, {0, 0}, 0.0), -1);  // zero sweep
    EXPECT_EQ(s.AddArc({1, 0}, {0, 1}, {0, 0}, 7.0), -1);  // beyond a turn
    Found r(s);
    ASSERT_EQ(r.closed.size(), 1u);
    EXPECT_NEAR(std::fabs(SignedArea(*r.closed[0])), kPi, 1e-12);
    // A tolerance as large as a turn makes every sweep a full turn: arcs are still added once.
    LAS_Solver wide(7.0);
    EXPECT_EQ(wide.AddArc({100, 0}, {0, 100}, {0, 0}, kPi / 2), 0);
    EXPECT_EQ(wide.AddArc({-100, 0}, {-100, 0}, {-200, 0}, 2 * kPi), 2);
}

TEST_F(LasSolverTest, ArcThroughMiddlePoint) {
    LAS_Solver s(kEps);
    const int b = s.AddPoint({1, 0});
    // A half, a quarter and a 2.6 rad arc: the centre is the crossing nearer to the right distance
    // from the middle point (for the last, the two lie 0.53 apart).
    for (const double sweep : {kPi, kPi / 2, 2.6}) {
        const int e = s.AddPoint({std::cos(sweep), std::sin(sweep)});
        const LAS_Arc arc(b, e, s.AddPoint({std::cos(sweep / 2), std::sin(sweep / 2)}), &s);
        EXPECT_NEAR(arc.GetSweep(), sweep, 1e-9);
        ASSERT_GE(arc.GetCenter(), 0);
        EXPECT_NEAR(arc.GetCenterPoint().distance({0, 0}), 0.0, 1e-9);
    }
    // A middle point on the chord: no circle through the three.
    LAS_Solver flat(kEps);
    const int f0 = flat.AddPoint({0, 0}), f2 = flat.AddPoint({2, 0});
    EXPECT_EQ(LAS_Arc(f0, f2, flat.AddPoint({1, 0}), &flat).GetCenter(), -1);
}

TEST_F(LasSolverTest, TangentTiesOrderByTurningSideAndRadius) {
    LAS_Solver s(kEps);
    // Everything leaves the origin along +x: a line, arcs turning left (centres above) and
    // right (centres below) with radii 1 and 2.
    const int line = s.AddLine({0, 0}, {3, 0});
    const int left1 = s.AddArc({0, 0}, {1, 1}, {0, 1}, kPi / 2);
    const int left2 = s.AddArc({0, 0}, {2, 2}, {0, 2}, kPi / 2);
    const int right1 = s.AddArc({0, 0}, {1, -1}, {0, -1}, -kPi / 2);
    const int right2 = s.AddArc({0, 0}, {2, -2}, {0, -2}, -kPi / 2);
    LAS_NodeInfo* n = s.GetNode(0);
    ASSERT_EQ(n->GetElemCount(), 5);
    // Clockwise: counter-clockwise turners by increasing radius, then the line, then the
    // clockwise turners by decreasing radius.
    const int order[5] = {left1, left2, line, right2, right1};
    for (int i = 0; i < 5; ++i) EXPECT_EQ(n->GetElem(i), s.GetElement(order[i])) << i;
    for (int i = 0; i < 5; ++i) {  // every pair, both ways
        for (int j = 0; j < 5; ++j) {
            if (i != j) {
                EXPECT_EQ(n->IsNextClockWise(n->GetElem(i), n->GetElem(j)), i < j) << i << j;
            }
        }
    }
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

TEST_F(LasSolverTest, SlenderWedgesKeepTheirClockwiseOrder) {
    // Two lines leaving the origin 1e-12 rad apart end 1e-8 apart, far more than epsilon: they
    // are two directions, not a tangent tie, whichever is connected first.
    for (bool lowerFirst : {false, true}) {
        SCOPED_TRACE(lowerFirst);
        LAS_Solver s(1e-10);
        s.AddLine({0, 0}, {0, 1e4});
        const Point2 low(-1e4, 0), high(-1e4, 1e-8);
        s.AddLine({0, 0}, lowerFirst ? low : high);
        s.AddLine({0, 0}, lowerFirst ? high : low);
        s.AddLine(low, high);
        s.AddLine(high, {0, 1e4});
        const LAS_NodeInfo* n = s.GetNode(0);
        ASSERT_EQ(n->GetElemCount(), 3);
        for (int i = 0; i + 1 < 3; ++i)
            EXPECT_LT(n->GetClockAngle(n->GetElem(i)), n->GetClockAngle(n->GetElem(i + 1)));
        Found r(s);
        ASSERT_EQ(r.closed.size(), 2u);
        const double a0 = std::fabs(SignedArea(*r.closed[0])),
                     a1 = std::fabs(SignedArea(*r.closed[1]));
        EXPECT_NEAR(std::min(a0, a1), 5e-5, 1e-12);
        EXPECT_NEAR(std::max(a0, a1), 5e7, 1e-3);
    }
}

// Every walk from every node and element: its angle sums against the polygon through its nodes and
// arc middles. Returns the number of walks and of outer walks.
std::pair<int, int> CheckWalkAngles(LAS_Solver& s) {
    int walks = 0, outer = 0;
    for (int k = 0; k < s.GetNodeCount(); ++k) {
        LAS_NodeInfo* node = s.GetNode(k);
        for (int i = 0; i < node->GetElemCount(); ++i) {
            LAS_FoundContour found(nullptr, &s);
            EXPECT_EQ(node->FindContour(node->GetElem(i), &found), 1);
            EXPECT_TRUE(found.IsNodeInContour(node));
            int n = found.GetCount();
            for (int j = 0; j < found.GetCount(); ++j)
                n += found.GetElement(j)->GetType() == LAS_Element::Arc;
            double right = 0.0, left = 0.0;
            found.ComputeAngles(right, left);
            // The right-hand inner angles of a polygon of n vertices: (n - 2)π for a face traced
            // clockwise, (n + 2)π for the outer face.
            const bool isOuter = found.IsOuterWalk();
            EXPECT_NEAR(right, (n + (isOuter ? 2 : -2)) * kPi, 1e-9) << k << " " << i;
            EXPECT_NEAR(right + left, 2 * kPi * n, 1e-9);
            ++walks;
            outer += isOuter;
        }
    }
    return {walks, outer};
}

TEST_F(LasSolverTest, WalkAnglesCountArcsAsVerticesAtTheirMiddle) {
    // A square whose bottom bulges out by a short arc (0.5 rad) and whose right side bulges in by
    // a longer one (1.2 rad, clockwise), cut by its diagonal: two faces, each arc walked once from
    // its begin and once from its end.
    LAS_Solver s(kEps);
    const auto arc = [&](Point2 p, Point2 q, double sweep) {
        const Point2 m((p.x + q.x) / 2, (p.y + q.y) / 2);
        const double k = 0.5 / std::tan(sweep / 2);  // centre on the left for a positive sweep
        s.AddArc(p, q, {m.x - (q.y - p.y) * k, m.y + (q.x - p.x) * k}, sweep);
    };
    s.AddLine({0, 4}, {0, 0});
    arc({0, 0}, {4, 0}, 0.5);
    arc({4, 0}, {4, 4}, -1.2);
    s.AddLine({4, 4}, {0, 4});
    s.AddLine({0, 0}, {4, 4});
    EXPECT_EQ(CheckWalkAngles(s), std::make_pair(10, 4));
    // A half disc below its chord, the chord bent down at (0.5, -0.5), on the ray from (0, 0)
    // to the arc's middle: both walks turn back along their own direction at (0, 0).
    LAS_Solver h(kEps);
    h.AddArc({0, 0}, {2, 0}, {1, 0}, kPi);
    h.AddLine({0, 0}, {0.5, -0.5});
    h.AddLine({0.5, -0.5}, {2, 0});
    EXPECT_EQ(CheckWalkAngles(h), std::make_pair(6, 3));
    // Found faces use their half-edges: what stays unused at the nodes is the outer face's.
    Found r(s);
    EXPECT_EQ(r.closed.size(), 2u);
    int unused = 0;
    for (int k = 0; k < s.GetNodeCount(); ++k) unused += s.GetNode(k)->GetUnUsedElemCount();
    EXPECT_EQ(unused, 4);
    EXPECT_FALSE(LAS_FoundContour(nullptr, &s).IsNodeInContour(s.GetNode(0)));
}

TEST_F(LasSolverTest, BooleansOfSquaresDiscsAndRings) {
    using Op = LAS_Solver::Operation;
    {
        const double lens = 2 * kPi / 3 - std::sqrt(3.0) / 2;  // two unit discs at distance 1
        struct Case {
            const char* what;
            Owned a, b;
            Op op;
            double area;
            unsigned long solids, holes;  // solids, and holes of the first solid
            int vertices;                 // distinct vertices of the first solid, -1 unchecked
        };
        const auto square = [](double x0, double y0, double x1, double y1) {
            return MakeShape(RectContour(x0, y0, x1, y1));
        };
        const auto disc = [](double x, double r, double phase = 0.0) {
            return MakeShape(CircleContour({x, 0}, r, phase));
        };
        const Op U = Op::Union, I = Op::Intersection, D = Op::Difference;
        Case cases[] = {
            {"overlap union", square(0, 0, 2, 2), square(1, 1, 3, 3), U, 7, 1, 0, 8},
            {"overlap intersection", square(0, 0, 2, 2), square(1, 1, 3, 3), I, 1, 1, 0, 4},
            {"overlap difference", square(0, 0, 2, 2), square(1, 1, 3, 3), D, 3, 1, 0, 6},
            {"nested difference", square(0, 0, 10, 10), square(3, 3, 5, 5), D, 96, 1, 1, 4},
            {"nested union", square(0, 0, 10, 10), square(3, 3, 5, 5), U, 100, 1, 0, 4},
            {"side by side union", square(0, 0, 1, 1), square(1, 0, 2, 1), U, 2, 1, 0, -1},
            {"side by side intersection", square(0, 0, 1, 1), square(1, 0, 2, 1), I, 0, 0, 0, -1},
            {"corner touch union", square(0, 0, 1, 1), square(1, 1, 2, 2), U, 2, 2, 0, 4},
            {"notch on the edge", square(0, 0, 4, 4), square(1, 0, 2, 1), D, 15, 1, 0, 8},
            // Four true arcs: the discs' half arcs end on the lens at (0, 0) and (1, 0).
            {"lens", disc(0, 1), disc(1, 1), I, lens, 1, 0, 4},
            {"two discs", disc(0, 1), disc(1, 1), U, 2 * kPi - lens, 1, 0, -1},
            {"annulus minus a disc inside its ring",
             MakeShape(CircleContour({0, 0}, 3), {CircleContour({0, 0}, 1)}), disc(2, 0.5, 0.3), D,
             7.75 * kPi, 1, 2, -1},
        };
        for (const Case& c : cases) {
            SCOPED_TRACE(c.what);
            const Owned r = Solve(c.a, c.b, c.op);
            ASSERT_NE(r, nullptr);
            EXPECT_NEAR(Area(r.get()), c.area, 1e-12);
            EXPECT_EQ(CheckTree(r.get(), kEps), "");
            ASSERT_EQ(r->ChildrenCount(), c.solids);
            if (c.solids == 0) continue;
            const ProSolidContour* s = r->SolidChild(0);
            EXPECT_EQ(s->orientation(), 1);  // faces come out clockwise
            ASSERT_EQ(s->ChildrenCount(), c.holes);
            EXPECT_TRUE(c.holes == 0 || dynamic_cast<ProEmptyContour*>(s->ClosedChild(0)));
            EXPECT_TRUE(c.vertices < 0 || DistinctVertices(*s) == c.vertices) << c.vertices;
        }
        // An island in the solver's own ring stays a solid of its own.
        const Owned ring = Solve(cases[3].a, cases[3].b, Op::Difference);
        const Owned both = Solve(ring, square(3.5, 3.5, 4.5, 4.5), Op::Union);
        EXPECT_EQ(both->ChildrenCount(), 2u);
        EXPECT_NEAR(Area(both.get()), 97.0, 1e-12);
        EXPECT_EQ(CheckTree(both.get(), kEps), "");
    }
}

TEST_F(LasSolverTest, ListUnionNormalizeAndSet) {
    ProContourFactory f;
    const Owned a = MakeShape(RectContour(0, 0, 2, 1));
    LAS_Solver s(kEps);
    EXPECT_EQ(s.Add(std::vector<ProComplexContour*>{}, &f), nullptr);
    EXPECT_EQ(s.MergeBaseContour(0), 0);                 // no base contours yet
    EXPECT_EQ(LAS_Contour(&s).Merge(nullptr), nullptr);  // no neighbour: nothing to merge
    EXPECT_EQ(s.Add(std::vector<ProComplexContour*>{a.get()}, &f), a.get());  // not a copy
    // Normalize resolves a solid drawn as two overlapping loops given as one shape.
    const Owned twice = MakeShape(RectContour(0, 0, 2, 2));
    twice->Attach(f.CreateSolidContour())->SetLAContour(RectContour(1, 1, 3, 3));
    const Owned norm = NormalizeShape(*twice, kEps);
    EXPECT_NEAR(Area(norm.get()), 7.0, 1e-12);
    EXPECT_EQ(norm->ChildrenCount(), 1u);
    // Set nests plain contours by containment, levels alternating solid, hole, solid.
    std::vector<ProClosedContour*> loops;
    // A new contour goes down into the one holding it, or adopts every one placed inside it so
    // far (here the first one placed, which must become a hole).
    for (const LAContour& loop : {RectContour(2, 2, 8, 8), RectContour(20, 0, 21, 1),
                                  RectContour(4, 4, 6, 6), RectContour(0, 0, 10, 10)})
        loops.push_back(new ProClosedContour(loop));
    LAS_Solver t(kEps);
    const Owned set(t.Set(loops, &f, true));
    ASSERT_NE(set, nullptr);
    EXPECT_EQ(set->ChildrenCount(), 3u);
    EXPECT_NEAR(Area(set.get()), 100 - 36 + 4 + 1, 1e-12);
    EXPECT_EQ(CheckTree(set.get(), kEps), "");
    // Crossing contours: strict refuses them, otherwise the ones placed so far are nested.
    loops.push_back(new ProClosedContour(RectContour(9, 9, 12, 12)));
    EXPECT_EQ(t.Set(loops, &f, true), nullptr);
    EXPECT_NE(Owned(t.Set(loops, &f, false)), nullptr);
    for (ProClosedContour* l : loops) delete l;
}

TEST_F(LasSolverTest, ComplexContourFromContoursKeepsTheDisjointOrder) {
    ProContourFactory f;
    LAS_Solver s(kEps);
    const auto closed = [](double x0, double y0, double x1, double y1) {
        return new ProClosedContour(RectContour(x0, y0, x1, y1));
    };
    EXPECT_EQ(Owned(s.ComplexContourFromContours({nullptr}, &f))->ChildrenCount(), 0u);
    // Disjoint: the second contour's solid comes first.
    const Owned two(s.ComplexContourFromContours({closed(0, 0, 1, 1), closed(5, 0, 6, 1)}, &f));
    ASSERT_EQ(two->ChildrenCount(), 2u);
    EXPECT_EQ((*two->SolidChild(0))[0].start.x, 5.0);
    // Either order of a contour and one inside it gives a solid with a hole.
    for (bool innerFirst : {false, true}) {
        ProClosedContour *outer = closed(0, 0, 4, 4), *inner = closed(1, 1, 2, 2);
        const Owned c(innerFirst ? s.ComplexContourFromContours({inner, outer}, &f)
                                 : s.ComplexContourFromContours({outer, inner}, &f));
        ASSERT_EQ(c->ChildrenCount(), 1u);
        EXPECT_EQ(c->SolidChild(0)->ChildrenCount(), 1u);
        EXPECT_NEAR(Area(c.get()), 15.0, 1e-12);
    }
    EXPECT_EQ(s.ComplexContourFromContours({closed(0, 0, 2, 2), closed(1, 1, 3, 3)}, &f), nullptr);
}

TEST_F(LasSolverTest, TopAndRightPartsAndSectorsInside) {
    const auto top = [](const Owned& c, double level) {
        return ShapeAbove(*c->SolidChild(0), level, kEps);
    };
    const Owned r = MakeShape(RectContour(0, 0, 3, 10));
    const Owned upper = top(r, 4.0);
    ASSERT_EQ(upper->ChildrenCount(), 1u);
    EXPECT_NEAR(Area(upper.get()), 18.0, 1e-12);
    EXPECT_NEAR(upper->GetBoundRect().get_LB().y, 4.0, 1e-12);
    EXPECT_EQ(top(r, 12.0)->ChildrenCount(), 0u);
    // A ring cut through its hole, and a disc cut right of its centre (a true half disc).
    const Owned ring = MakeShape(RectContour(0, 0, 10, 10), {RectContour(4, 4, 6, 6)});
    for (const Owned& part : {top(ring, 5.0), ShapeRightOf(*ring->SolidChild(0), 5.0, kEps)}) {
        EXPECT_NEAR(Area(part.get()), 48.0, 1e-12);
        EXPECT_EQ(CheckTree(part.get(), kEps), "");
    }
    ProContourFactory f;
    EXPECT_EQ(LAS_Solver(kEps).GetTopPartOfContour(nullptr, 0.0, &f), nullptr);
    const Owned disc = MakeShape(CircleContour({0, 0}, 2, 1.0));
    EXPECT_NEAR(Area(ShapeRightOf(*disc->SolidChild(0), 0.0, kEps).get()), 2 * kPi, 1e-12);
    // The solver's own output (with its zero-length closing edges) cuts the same way: a disc
    // with a square hole, cut through the hole.
    const Owned holed =
        Solve(disc, MakeShape(RectContour(-0.5, -0.5, 0.5, 0.5)), LAS_Solver::Difference);
    const Owned upperHoled = top(holed, 0.0);
    EXPECT_NEAR(Area(upperHoled.get()), 2 * kPi - 0.5, 1e-12);
    EXPECT_EQ(CheckTree(upperHoled.get(), kEps), "");

    // The pieces of a segment inside the ring: up to the hole and beyond it.
    const std::vector<Sector2> in = SegmentInsideShape(*ring, Sector2({-5, 5}, {15, 5}), kEps);
    ASSERT_EQ(in.size(), 2u);
    for (int k = 0; k < 2; ++k)
        EXPECT_NEAR(
            in[k].get_beg().distance({6.0 * k, 5}) + in[k].get_end().distance({4 + 6.0 * k, 5}),
            0.0, 1e-12);
    EXPECT_TRUE(SegmentInsideShape(*ring, Sector2({-5, 20}, {15, 20}), kEps).empty());
}

TEST_F(LasSolverTest, HalfPlaneCutsUseTheirOwnFixedTolerance) {
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
    // Arcs: the part on the kept side, cut where the circle meets the line; sweep 1 is an arc.
    LAS_Solver arcs(kEps);
    cut.clear();
    EXPECT_EQ(arcs.AddArcOnlyRight({1, 0}, {-1, 0}, {0, 0}, kPi, 0.0, cut), 0);
    EXPECT_NEAR(arcs.GetPoint(arcs.GetArc(0)->GetEnd()).distance({0, 1}), 0.0, 1e-12);
    EXPECT_NEAR(arcs.GetArc(0)->GetSweep(), kPi / 2, 1e-12);
    EXPECT_EQ(arcs.AddArcOnlyTop({1, 0}, {std::cos(1.0), std::sin(1.0)}, {0, 0}, 1.0, 0.0, cut), 1);
    EXPECT_EQ(cut.size(), 2u);  // the crossing, and the begin on the cut line
    for (const double bad : {0.0, std::nan("")})
        EXPECT_EQ(arcs.AddArcOnlyTop({1, 0}, {0, 1}, {0, 0}, bad, -5.0, cut), -1);
    // Cut points sorted by x (or by y); an equal x goes after the one already there.
    std::vector<Point2> byX, byY = {{0, 4}};
    for (const Point2& p : {Point2(3, 0), Point2(1, 0), Point2(2, 5), Point2(2, 0)})
        LAS_Solver::AddPtToSortedVector(byX, p, true);
    EXPECT_EQ(byX[1].y, 5.0);
    EXPECT_EQ(byX[2].y, 0.0);
    LAS_Solver::AddPtToSortedVector(byY, {0, -1}, false);
    EXPECT_EQ(byY[0].y, -1.0);
}

TEST_F(LasSolverTest, RemovedPointsRenumberLineEndsButNotArcCentres) {
    LAS_Solver s(kEps);
    // Unused points go; line ends are renumbered, arc centres deliberately are not.
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
    EXPECT_EQ(s.AddPoint({0, 0}), 0);
    EXPECT_EQ(s.AddLine({1, 1}, {1, 0}), 1);
    LAS_Solver t(kEps);
    t.AddPoint({9, 9});
    ASSERT_EQ(t.AddArc({1, 0}, {0, 1}, {0, 0}, kPi / 2), 0);
    EXPECT_EQ(t.GetArc(0)->GetCenter(), 3);
    EXPECT_EQ(t.GetElementIndx(s.GetElement(0)), -1);  // an element of another solver
    t.RemoveUnusedPoints();
    EXPECT_EQ(t.GetNodeCount(), 2);
    EXPECT_EQ(t.GetArc(0)->GetBegin(), 0);
    EXPECT_EQ(t.GetArc(0)->GetCenter(), 3);
}

}  // namespace
}  // namespace quillon
