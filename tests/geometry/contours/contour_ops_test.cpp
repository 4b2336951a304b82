#include "quillon/geometry/contours/contour_ops.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/geometry/contours/las_test_support.h"

namespace quillon {
namespace {

using las_test::Area;
using las_test::kPi;

double AreaOf(const ShapePtr& s) { return Area(s.get()); }

// A plate drawn with overshooting lines and a circle: one solid with one hole, the overshoots free.
TEST(ContourOps, SolveElementsNestsFacesAndKeepsTheOvershoots) {
    const std::vector<LooseElement> drawing = {
        LooseElement::MakeLine({-5, 0}, {105, 0}),
        LooseElement::MakeLine({100, -5}, {100, 65}),
        LooseElement::MakeLine({105, 60}, {0, 60}),
        LooseElement::MakeLine({0, 60}, {0, 0}),
        LooseElement::MakeArc({65, 30}, {65, 30}, {50, 30}, 2 * kPi),
        LooseElement::MakeLine({1, 1}, {1, 1}),  // degenerate: left out
    };
    const SolvedShape solved = SolveElements(drawing, 1e-6);
    ASSERT_EQ(solved.shape->ChildrenCount(), 1u);
    EXPECT_EQ(solved.shape->SolidChild(0)->ChildrenCount(), 1u);
    EXPECT_EQ(solved.faces, 2u);
    EXPECT_EQ(solved.polylines.size(), 4u);
    EXPECT_NEAR(AreaOf(solved.shape), 6000.0 - kPi * 225.0, 1e-9);
    EXPECT_EQ(las_test::CheckTree(solved.shape.get(), 1e-6), "");
    EXPECT_EQ(SolveElements({}, 1e-6).shape->ChildrenCount(), 0u);
}

// Areas of seeded random rectangles and discs: |A∪B| + |A∩B| = |A| + |B| and |A−B| = |A| − |A∩B|;
// the union of a list is the fold of pairwise unions.
TEST(ContourOps, BooleansOfRandomShapesAddUp) {
    std::mt19937 rng(19);
    std::uniform_real_distribution<double> u(0.0, 10.0);
    const auto shape = [&](int k) {
        const double x = u(rng), y = u(rng), w = 1.0 + u(rng), h = 1.0 + u(rng);
        if (k % 2 == 0) return MakeShape(las_test::RectContour(x, y, x + w, y + h));
        return MakeShape(las_test::CircleContour({x, y}, w / 2, u(rng)));
    };
    const double eps = 1e-7;
    for (int k = 0; k < 20; ++k) {
        const ShapePtr a = shape(k), b = shape(k + 1), c = shape(k + 2);
        const double both = AreaOf(ShapeIntersection(*a, *b, eps));
        EXPECT_NEAR(AreaOf(ShapeUnion(*a, *b, eps)) + both, AreaOf(a) + AreaOf(b), 1e-6) << k;
        EXPECT_NEAR(AreaOf(ShapeDifference(*a, *b, eps)), AreaOf(a) - both, 1e-6) << k;
        const ShapePtr folded = ShapeUnion(*ShapeUnion(*a, *b, eps), *c, eps);
        const ShapePtr listed = ShapeUnion({a.get(), nullptr, b.get(), c.get()}, eps);
        EXPECT_EQ(WriteShapeText(*listed), WriteShapeText(*folded)) << k;
    }
    const ShapePtr one = shape(0);
    const ShapePtr copy = ShapeUnion({one.get()}, eps);
    EXPECT_NE(copy.get(), one.get());
    EXPECT_EQ(WriteShapeText(*copy), WriteShapeText(*one));
    EXPECT_EQ(ShapeUnion(std::vector<const ProComplexContour*>{}, eps)->ChildrenCount(), 0u);
}

TEST(ContourOps, NormalizeCutAndSegmentPieces) {
    const ShapePtr rect =
        MakeShape(las_test::RectContour(0, 0, 10, 10), {las_test::RectContour(2, 2, 4, 4)});
    // Two overlapping solids in one shape normalize to their union.
    ShapePtr overlapping = MakeShape(las_test::RectContour(0, 0, 6, 6));
    const ShapePtr second = MakeShape(las_test::RectContour(4, 0, 10, 6));
    overlapping->Attach(second->SolidChild(0));
    const ShapePtr normal = NormalizeShape(*overlapping, 1e-9);
    EXPECT_EQ(normal->ChildrenCount(), 1u);
    EXPECT_NEAR(AreaOf(normal), 60.0, 1e-9);

    const ShapePtr top = ShapeAbove(*rect->SolidChild(0), 3.0, 1e-9);
    ASSERT_TRUE(top);
    EXPECT_NEAR(AreaOf(top), 70.0 - 2.0, 1e-9);
    const ShapePtr right = ShapeRightOf(*rect->SolidChild(0), 11.0, 1e-9);
    ASSERT_TRUE(right);
    EXPECT_EQ(right->ChildrenCount(), 0u);

    const auto pieces = SegmentInsideShape(*rect, Sector2({-1, 3}, {11, 3}), 1e-9);
    ASSERT_EQ(pieces.size(), 2u);
    EXPECT_NEAR(pieces[0].get_beg().x, 0.0, 1e-12);
    EXPECT_NEAR(pieces[0].get_end().x, 2.0, 1e-12);
    EXPECT_NEAR(pieces[1].get_beg().x, 4.0, 1e-12);
    EXPECT_NEAR(pieces[1].get_end().x, 10.0, 1e-12);
}

TEST(ContourOps, ShapeTextRoundTripsWithAndWithoutUnit) {
    const ShapePtr shape =
        MakeShape(las_test::RectContour(-2, -1, 4, 5), {las_test::RectContour(0, 1, 1, 2)});
    const std::wstring bare = WriteShapeText(*shape);
    const std::wstring withUnit = WriteShapeText(*shape, L"cm");
    EXPECT_EQ(withUnit, L"\"cm\"" + bare);
    const ShapeText a = ReadShapeText(L" \n" + bare);
    ASSERT_TRUE(a.shape);
    EXPECT_FALSE(a.unit);
    EXPECT_EQ(WriteShapeText(*a.shape), bare);
    const ShapeText b = ReadShapeText(withUnit);
    ASSERT_TRUE(b.shape);
    EXPECT_EQ(b.unit, L"cm");
    EXPECT_EQ(WriteShapeText(*b.shape), bare);

    const ShapeText bad = ReadShapeText(L"\"mm\"(((S((L 0 0)(L 1 0)");
    EXPECT_FALSE(bad.shape);
    EXPECT_FALSE(bad.unit);
    ASSERT_TRUE(bad.error);
    EXPECT_EQ(bad.error->origin, ContourTextError::Origin::contour);
    EXPECT_EQ(bad.error->code, ProClosedContourReader::BadEdgeList);
}

}  // namespace
}  // namespace quillon
