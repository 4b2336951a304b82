// Garbage in: degenerate, non-finite, huge and self-crossing input must not crash, hang or leak.
#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "las_test_support.h"
#include "quillon/geometry/contours/las_solver.h"

namespace quillon {
namespace {

LAContour RandomContour(std::mt19937& rng) {
    std::uniform_real_distribution<> u(-3.0, 3.0);
    std::uniform_int_distribution<int> pick(0, 15);
    const double specials[] = {0.0,
                               1e-12,
                               -1e-12,
                               1e12,
                               std::numeric_limits<double>::quiet_NaN(),
                               std::numeric_limits<double>::infinity(),
                               6.283185307179586,
                               -6.283185307179586,
                               100.0};
    const auto value = [&]() {
        const int k = pick(rng);
        return k < 9 && pick(rng) < 3 ? specials[k] : std::round(u(rng) * 2.0) / 2.0;
    };
    LAContour c;
    const int n = pick(rng) % 7;
    for (int i = 0; i < n; ++i) {
        LAEdge e{Point2(value(), value())};
        if (pick(rng) < 5) {
            e.type = pick(rng) < 14 ? 1 : 7;  // now and then a type that is neither
            e.centre = Point2(value(), value());
            e.angle = value();
        }
        c.push_back(e);
    }
    return c;
}

TEST(LasRobustnessTest, GarbageInputNeitherCrashesNorLeaks) {
    const int before = ProContour::get_contour_allocs();
    std::mt19937 rng(31337u);
    ProContourFactory f;
    for (int round = 0; round < 300; ++round) {
        LAContour a = RandomContour(rng), b = RandomContour(rng);
        ProComplexContour* sa = las_test::Shape(a, {RandomContour(rng)});
        ProComplexContour* sb = las_test::Shape(b);
        const double eps = round % 2 ? 1e-7 : 0.0;
        for (auto op :
             {ShapeOperation::Union, ShapeOperation::Difference, ShapeOperation::Intersection})
            CombineShapes(*sa, *sb, op, eps);
        NormalizeShape(*sa, 1e-6);
        ShapeAbove(*sa->SolidChild(0), 0.25, 1e-6);
        LAS_Solver w(1e-6);
        std::vector<LAContour*> list = {&a, &b}, none, polylines;
        std::vector<ProClosedContour*> closed;
        w.SplitLaContours(list);
        w.FindContours(none, &f, closed, polylines);
        for (auto* c : closed) delete c;
        for (auto* p : polylines) delete p;
        SegmentInsideShape(*sa, Sector2({-5, 0.3}, {5, 0.1}), 1e-6);
        delete sa;
        delete sb;
    }
    EXPECT_EQ(ProContour::get_contour_allocs(), before);
}

}  // namespace
}  // namespace quillon
