#include "quillon/geometry/contours/contour_ops.h"

#include "tests/geometry/contours/las_test_support.h"

namespace quillon {
namespace {

using namespace las_test;

constexpr double eps = 1e-7;

double AreaOf(const ShapePtr& s) { return Area(s.get()); }

// A plate drawn with overshooting lines and a circle: one solid with one hole, the overshoots free.
TEST(ContourOps, SolveElementsNestsFacesAndKeepsTheOvershoots) {
    using L = LooseElement;
    const std::vector<L> drawing = {
        L::MakeLine({-5, 0}, {105, 0}),
        L::MakeLine({100, -5}, {100, 65}),
        L::MakeLine({105, 60}, {0, 60}),
        L::MakeLine({0, 60}, {0, 0}),
        L::MakeArc({65, 30}, {65, 30}, {50, 30}, 2 * kPi),
        L::MakeLine({1, 1}, {1, 1}),  // degenerate: left out
    };
    const SolvedShape solved = SolveElements(drawing, 1e-6);
    ASSERT_EQ(solved.shape->ChildrenCount(), 1u);
    EXPECT_EQ(solved.shape->SolidChild(0)->ChildrenCount(), 1u);
    EXPECT_EQ(solved.faces, 2u);
    EXPECT_EQ(solved.polylines.size(), 4u);
    EXPECT_NEAR(AreaOf(solved.shape), 6000.0 - kPi * 225.0, 1e-9);
    EXPECT_EQ(CheckTree(solved.shape.get(), 1e-6), "");
    EXPECT_EQ(SolveElements({}, 1e-6).shape->ChildrenCount(), 0u);
    // Faces sharing an edge lie side by side: both kept.
    std::vector<L> twoFaces;
    const Point2 ends[] = {{0, 0}, {2, 0}, {2, 1}, {0, 1}, {0, 0}, {1, 0}, {1, 1}};
    for (int i : {0, 1, 2, 3, 5}) twoFaces.push_back(L::MakeLine(ends[i], ends[i + 1]));
    const SolvedShape split = SolveElements(twoFaces, 1e-6);
    EXPECT_EQ(split.faces, 2u);
    EXPECT_NEAR(AreaOf(split.shape), 2.0, 1e-12);
    // Two halves of one circle share their ends and centre but turn opposite ways: a disc, not
    // one arc drawn twice.
    const SolvedShape disc = SolveElements(
        {L::MakeArc({1, 0}, {-1, 0}, {0, 0}, kPi), L::MakeArc({1, 0}, {-1, 0}, {0, 0}, -kPi)},
        1e-6);
    EXPECT_NEAR(AreaOf(disc.shape), kPi, 1e-9);
}

// Far from the origin the contact search must still reach a neighbour that only touches: a strip
// against the side of a square ten million units out joins it.
TEST(ContourOps, ContactsAreFoundFarFromTheOrigin) {
    const double x = 1e7;
    const ShapePtr u = ShapeUnion(*MakeShape(RectContour(x, 0, x + 1, 1)),
                                  *MakeShape(RectContour(x + 1, 0.25, x + 2, 0.75)), eps);
    EXPECT_EQ(u->ChildrenCount(), 1u);
    EXPECT_NEAR(AreaOf(u), 1.5, 1e-6);
}

// The area identities of the booleans are checked on 1100 seeded pairs (las_property_test); here
// the list union: the fold of pairwise unions, a copy of a single shape, an empty shape of none.
TEST(ContourOps, UnionOfAList) {
    const ShapePtr a = MakeShape(RectContour(0, 0, 2, 2)), b = MakeShape(CircleContour({2, 2}, 1)),
                   c = MakeShape(RectContour(2.5, 0, 4, 5));
    const ShapePtr folded = ShapeUnion(*ShapeUnion(*a, *b, eps), *c, eps);
    EXPECT_EQ(WriteShapeText(*ShapeUnion({a.get(), nullptr, b.get(), c.get()}, eps)),
              WriteShapeText(*folded));
    const ShapePtr copy = ShapeUnion({b.get()}, eps);
    EXPECT_NE(copy.get(), b.get());
    EXPECT_EQ(WriteShapeText(*copy), WriteShapeText(*b));
    EXPECT_EQ(ShapeUnion(std::vector<const ProComplexContour*>{}, eps)->ChildrenCount(), 0u);
}

// Two rectangles overlapping along a strip: the union's long edges come out split where the
// operands' corners were. The clean-up leaves the rectangle's four corners (and the closing edge
// the solver writes), the same area, and nothing at all by default.
TEST(ContourOps, CleanUpOptionMergesSplitEdgesAndKeepsTheRegion) {
    const ShapePtr a = MakeShape(RectContour(0, 0, 2, 1)), b = MakeShape(RectContour(1, 0, 3, 1));
    const ShapePtr kept = CombineShapes(*a, *b, ShapeOperation::Union, eps);
    const ShapePtr clean =
        CombineShapes(*a, *b, ShapeOperation::Union, eps, ResultCleanUp::Simplify);
    EXPECT_GT(kept->SolidChild(0)->size(), 5u);
    EXPECT_EQ(clean->SolidChild(0)->size(), 5u);
    EXPECT_NEAR(AreaOf(clean), 3.0, 1e-12);
    const ShapePtr renormalized = NormalizeShape(*kept, eps, ResultCleanUp::Simplify);
    EXPECT_EQ(WriteShapeText(*renormalized), WriteShapeText(*clean));
    EXPECT_EQ(WriteShapeText(*NormalizeShape(*kept, eps)), WriteShapeText(*kept));
}

TEST(ContourOps, ShapeTextRoundTripsWithAndWithoutUnit) {
    const ShapePtr shape = MakeShape(RectContour(-2, -1, 4, 5), {RectContour(0, 1, 1, 2)});
    const std::wstring bare = WriteShapeText(*shape), withUnit = WriteShapeText(*shape, L"cm");
    EXPECT_EQ(withUnit, L"\"cm\"" + bare);
    for (const std::wstring& text : {L" \n" + bare, withUnit}) {
        const ShapeText r = ReadShapeText(text);
        ASSERT_TRUE(r.shape);
        EXPECT_EQ(r.unit.value_or(L"none"), text == withUnit ? L"cm" : L"none");
        EXPECT_EQ(WriteShapeText(*r.shape), bare);
    }

    const ShapeText bad = ReadShapeText(L"\"mm\"(((S((L 0 0)(L 1 0)");
    EXPECT_FALSE(bad.shape || bad.unit);
    ASSERT_TRUE(bad.error);
    EXPECT_EQ(bad.error->origin, ContourTextError::Origin::contour);
    EXPECT_EQ(bad.error->code, ProClosedContourReader::BadEdgeList);
}

// Known limit, kept as a reproducer (run it with --gtest_also_run_disabled_tests): the face walk
// refuses a face whose boundary passes through one node twice, so a face that touches two holes
// each at one point is never found. Here the part of the second shape outside the first touches
// two holes that way (at the circle's leftmost point and on the square's side), and the union
// loses it. Either hole alone is found (the walk may start at the one node passed twice).
TEST(ContourOps, DISABLED_UnionKeepsAShapeWhoseHolesMeetOnACircleOfTheOther) {
    const auto contour = [](std::initializer_list<LAEdge> edges) { return LAContour(edges); };
    const auto line = [](double x, double y) { return LAEdge(Point2(x, y)); };
    const auto arc = [](double x, double y, double cx, double cy, double sweep) {
        return LAEdge(Point2(x, y), Point2(cx, cy), sweep);
    };
    const Point2 o(1.5, 2.5), p(1.3797572190987839, 2.4211320122371776);
    ShapePtr a = MakeShape(RectContour(0, 0.5, 1.5, 2), {RectContour(0.5, 1, 1, 1.5)});
    a->Attach(static_cast<ProSolidContour*>(
        MakeShape(
            contour({arc(1.5, 3.5, 3.5, 3.5, -kPi), arc(5.5, 3.5, 3.5, 3.5, -kPi), line(1.5, 3.5)}))
            ->SolidChild(0)
            ->Duplicate()));
    const LAContour outline = contour({line(2.5, 2.5), line(2.5, 1), line(0.5, 1), line(0.5, 2.5),
                                       line(0.5, 4), line(2.5, 4), line(2.5, 2.5)});
    const std::vector<LAContour> holes = {
        contour({line(1, 1.5),
                 arc(1.0000000000000004, 1.6339745962155612, o.x, o.y, 0.5235987755982987),
                 line(1.4999999999999998, 1.5), line(1, 1.5)}),
        contour({line(1, 2.2989504328934061),
                 arc(1, 2.5433135915809491, p.x, p.y, -1.6368390339385901),
                 arc(1.5267344062851715, 2.7919980126138064, p.x, p.y, -kPi),
                 arc(1.2327800319123963, 2.0502660118605487, p.x, p.y, -0.88219977637213165),
                 line(1, 2.2989504328934061)}),
        contour({line(1, 3.3660254037844384), line(1, 3.5),
                 arc(1.5, 3.5, o.x, o.y, 0.32685113833973611),
                 arc(1.1789375296421809, 3.4470580183535402, o.x, o.y, 0.1967476372585629),
                 line(1, 3.3660254037844384)}),
        contour({arc(1.4999999999999998, 1.5, o.x, o.y, 0.32685113833973611),
                 arc(1.8210624703578191, 1.5529419816464598, o.x, o.y, 0.19674763725856281),
                 line(2, 1.6339745962155614), line(2, 1.5), line(1.4999999999999998, 1.5)}),
        contour({line(1.5, 3.5), line(2, 3.5),
                 arc(2, 3.3660254037844388, o.x, o.y, 0.52359877559829893), line(1.5, 3.5)})};
    const ShapePtr b = MakeShape(outline, holes);
    const ShapePtr both = ShapeIntersection(*a, *b, 1e-7), either = ShapeUnion(*a, *b, 1e-7);
    EXPECT_NEAR(Area(either.get()) + Area(both.get()), Area(a.get()) + Area(b.get()), 1e-8);
}

}  // namespace
}  // namespace quillon
