// The largest coordinates a valid contour may hold still give finite section figures; beyond them
// the validation refuses the shape before any figure overflows.
#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "quillon/geometry/contours/contour_validate.h"
#include "quillon/sections/contour_props.h"

namespace quillon {
namespace {

std::unique_ptr<ProComplexContour> Triangle(double l) {
    ProContourFactory f;
    std::unique_ptr<ProComplexContour> c(f.CreateComplexContour());
    LAContour k;
    for (const Point2& p : {Point2(-l, -l), Point2(l, -l), Point2(-l, l)}) k.push_back(LAEdge(p));
    c->Attach(f.CreateSolidContour())->SetLAContour(k);
    return c;
}

TEST(ContourLimitsTest, ValidShapesAtTheCoordinateLimitHaveFiniteFigures) {
    const auto big = Triangle(kMaxContourCoordinate);
    ASSERT_TRUE(ValidateComplexContour(*big, 1e-7).IsValid());
    const SectionFigures g = CalcSectionFigures(*big);
    ASSERT_TRUE(g.valid);
    for (double v : {g.area, g.centroid.x, g.centroid.y, g.Ixc, g.Iyc, g.Ixyc, g.I1, g.I2, g.alpha,
                     g.rx, g.ry, g.r1, g.r2, g.Wx, g.Wy})
        EXPECT_TRUE(std::isfinite(v)) << v;
    EXPECT_DOUBLE_EQ(g.area, 2.0 * kMaxContourCoordinate * kMaxContourCoordinate);

    for (double l : {1e100, 1e308}) {
        const ContourValidation v = ValidateComplexContour(*Triangle(l), 1e-7);
        ASSERT_EQ(v.problems.size(), 1u);
        EXPECT_EQ(v.problems[0].kind, ContourProblemKind::Overflow);
    }
}

}  // namespace
}  // namespace quillon
