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

}  // namespace
}  // namespace quillon
