// Healing arcs read back from six-decimal text, and the writers' full-precision switch.
#include "quillon/geometry/contours/contour_heal.h"

#include <algorithm>

#include "las_test_support.h"
#include "quillon/geometry/contours/contour_text.h"
#include "quillon/geometry/contours/contour_validate.h"
#include "quillon/geometry/contours/las_solver.h"

namespace quillon {
namespace {

using namespace las_test;

using Owned = std::unique_ptr<ProComplexContour>;

Owned Read(const std::wstring& text) { return Owned(ProComplexContourReader(text).read()); }

TEST(ContourHealTest, QuarterDiscReadFromTextKeepsItsRegionAtSmallEpsilon) {
    const Owned disc = Read(L"(((S((L 0 0)(A 0 0 1 0 1.570796)(L 0 1)) 0 ())))");
    const Owned strip = Read(L"(((S((L 0.5 -1)(L 2 -1)(L 2 2)(L 0.5 2)) 0 ())))");
    ProContourFactory f;
    const ContourValidation before = ValidateComplexContour(*disc, 1e-7);
    ASSERT_EQ(before.problems.size(), 1u);
    EXPECT_EQ(before.problems[0].kind, ContourProblemKind::ArcMismatch);
    EXPECT_EQ(before.problems[0].edge, 1);

    EXPECT_EQ(HealComplexContour(*disc, 1e-7, TextRoundingTolerance(*disc)), 1);
    EXPECT_TRUE(ValidateComplexContour(*disc, 1e-7).IsValid());
    const LAEdge& arc = (*disc->SolidChild(0))[1];
    EXPECT_NEAR(arc.angle, kPi / 2, 1e-15);
    EXPECT_NEAR(arc.centre.distance(Point2(0, 0)), 0.0, 1e-15);
    for (double eps : {1e-9, 1e-7, 1e-4}) {
        const Owned rest(LAS_Solver(eps).Sub(disc.get(), strip.get(), &f));
        // ∫ from 0 to 1/2 of √(1 − x²) dx = √3/8 + π/12.
        EXPECT_NEAR(Area(rest.get()), std::sqrt(3.0) / 8 + kPi / 12, 1e-6) << "eps " << eps;
    }
}

TEST(ContourHealTest, GapsBeyondToleranceAreClosedAndDegenerateArcsResolved) {
    // An arc missing by 0.07: beyond the tolerance, a straight edge closes the gap.
    LAContour c = Polygon({{0, 0}, {1, 0}, {0, 1}});
    c[1] = LAEdge(Point2(1, 0), Point2(0, 0), 1.5);
    EXPECT_EQ(HealLAContour(c, 1e-7, 1e-3), 1);
    ASSERT_EQ(c.size(), 4u);
    EXPECT_EQ(c[2].type, 0);
    EXPECT_LE(c[2].start.distance(c[1].end_arc()), 1e-15);
    // Within the tolerance the arc keeps its centre: the next start moves onto its circle.
    c = Polygon({{0, 0}, {1, 0}, {0, 1}});
    c[1] = LAEdge(Point2(1, 0), Point2(0.0004, -0.0003), 1.5707);
    EXPECT_EQ(HealLAContour(c, 1e-7, 1e-3), 2);
    ASSERT_EQ(c.size(), 3u);
    EXPECT_EQ(c[1].centre.x, 0.0004);
    EXPECT_LE(c[1].end_arc().distance(c[2].start), 1e-12);
    EXPECT_LE(c[2].start.distance(Point2(0, 1)), 1e-3);
    c = Polygon({{0, 0}, {0.5, 0}, {0, 0.5}});  // and so for a radius below 1
    c[1] = LAEdge(Point2(0.5, 0), Point2(0.0002, -0.00015), 1.5707);
    EXPECT_EQ(HealLAContour(c, 1e-7, 1e-3), 2);
    EXPECT_EQ(c[1].centre.x, 0.0002);
    EXPECT_LE(c[1].end_arc().distance(c[2].start), 1e-12);
    // A short straight edge before an arc is of zero length again, and the arc before it ends
    // there: the solver's closing edge after six-decimal text.
    for (std::size_t s : {0, 2}) {  // the closing edge first, or last before the arcs
        c = CircleContour(Point2(0, 0), 1);
        c.push_back(LAEdge(Point2(1 + 2e-7, 3e-6)));
        std::rotate(c.begin(), c.begin() + 2 + s / 2, c.end());
        const std::size_t a = (s + 1) % 3, o = (s + 2) % 3;
        c[a].angle += 1e-6;
        EXPECT_EQ(HealLAContour(c, 1e-7, 1e-5), 2);
        EXPECT_EQ(c[s].start.distance(c[a].start), 0.0);
        EXPECT_LE(c[o].end_arc().distance(c[s].start), 1e-7);
    }
    // A circle short of a full turn becomes one; a sweep of rounding becomes a straight edge.
    LAContour circle;
    circle.push_back(LAEdge(Point2(2, 0), Point2(0, 0), 2 * kPi - 2e-6));
    EXPECT_EQ(HealLAContour(circle, 1e-7, 1e-5), 1);
    EXPECT_EQ(circle[0].angle, 2 * kPi);
    c = Polygon({{0, 0}, {1, 0}, {1, 1}});
    c[1] = LAEdge(Point2(1, 0), Point2(0, 0), 1e-6);
    c[2].start = Point2(1, 0.5e-7);
    c.push_back(LAEdge(Point2(1, 1)));
    EXPECT_GT(HealLAContour(c, 1e-7, 1e-5), 0);
    EXPECT_EQ(c[1].type, 0);
    // A lens of two circles read from text: each arc's end moves along the other circle to where
    // the circles cross, and both centres stay exactly where they were written.
    const Owned lens =
        Read(L"(((S((A 0 0 1 -0.722734 1.445468)(A 1.5 0 1 2.418858 1.445468)) 0 ())))");
    EXPECT_EQ(ValidateComplexContour(*lens, 1e-9).Count(ContourProblemKind::ArcMismatch), 1u);
    EXPECT_GT(HealComplexContour(*lens, 1e-9, TextRoundingTolerance(*lens)), 0);
    EXPECT_TRUE(ValidateComplexContour(*lens, 1e-9).IsValid());
    const LAContour& lc = *lens->SolidChild(0);
    EXPECT_EQ(lc[0].centre.x, 0.0);
    EXPECT_EQ(lc[1].centre.x, 1.5);
    EXPECT_NEAR(lc[1].rad_arc(), 1.0, 1e-6);
    // An arc meeting an arc of a circle its own circle does not reach is rebuilt through both
    // points: no straight edge, and the next start stays.
    c.clear();
    c.push_back(LAEdge(Point2(1, 0), Point2(0, 0), kPi / 2));
    c.push_back(LAEdge(Point2(0, 1 + 2e-6), Point2(0, 2 + 2e-6), -kPi / 2));
    c.push_back(LAEdge(c[1].end_arc()));
    EXPECT_EQ(HealLAContour(c, 1e-7, 1e-5), 1);
    ASSERT_EQ(c.size(), 3u);
    EXPECT_EQ(c[1].start.y, 1 + 2e-6);
    EXPECT_LE(c[0].end_arc().distance(c[1].start), 1e-7);
    // Consistent contours are left alone.
    LAContour disc = CircleContour(Point2(1, 2), 3, 0.4);
    const LAContour copy = disc;
    EXPECT_EQ(HealLAContour(disc, 1e-12, 1e-3), 0);
    EXPECT_EQ(disc[1].angle, copy[1].angle);
    // A zero tolerance is exact, not the default 1e-10 a negative one asks for.
    disc[1].start.y += 1e-11;
    EXPECT_EQ(HealLAContour(disc, -1.0, 1e-3), 0);
    EXPECT_GT(HealLAContour(disc, 0.0, 1e-3), 0);
}

TEST(ContourHealTest, SolverResultsSurviveSixDecimalTextAfterHealing) {
    std::mt19937 rng(4242u);
    std::uniform_real_distribution<> u(0.0, 1.0);
    ProContourFactory f;
    int mismatched = 0;
    for (int round = 0; round < 60; ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        const Point2 c(10 * u(rng), 10 * u(rng));
        const double r = 0.5 + 20 * u(rng);
        const Owned disc(
            Shape(CircleContour(c, r, 3 * u(rng)), {CircleContour(c, r * (0.2 + 0.5 * u(rng)))}));
        // Cut by a box (arcs meet lines) or by another disc (arcs meet arcs of another circle).
        const Owned cutter(
            round % 2
                ? Shape(RectContour(c.x + r * u(rng), c.y - 2 * r, c.x + 2 * r, c.y + r * u(rng)))
                : Shape(CircleContour(Point2(c.x + r * u(rng), c.y + r * u(rng)),
                                      r * (0.3 + u(rng)))));
        const Owned shape(round % 3 ? LAS_Solver(1e-9).Sub(disc.get(), cutter.get(), &f)
                                    : LAS_Solver(1e-9).Mul(disc.get(), cutter.get(), &f));
        const Owned back = Read(ProComplexContourWriter().write(*shape));
        mismatched +=
            ValidateComplexContour(*back, 1e-7).Count(ContourProblemKind::ArcMismatch) > 0;
        HealComplexContour(*back, 1e-7, TextRoundingTolerance(*back));
        // Healed, the shape is valid at the small epsilon: arcs meet their neighbours, and the
        // zero-length edge between two arcs of different circles stays of zero length.
        const ContourValidation healed = ValidateComplexContour(*back, 1e-7);
        EXPECT_TRUE(healed.IsValid())
            << (healed.IsValid() ? "" : DescribeProblem(healed.problems[0]));
        // The solver at a small epsilon no longer loses regions.
        const double area = Area(shape.get());
        const Owned again(LAS_Solver(1e-7).Normalize(back.get(), &f));
        EXPECT_NEAR(Area(again.get()), area, 1e-5 * (1 + area));
    }
    EXPECT_GT(mismatched, 30);
}

TEST(ContourHealTest, FullPrecisionTextReadsBackTheSameNumbers) {
    std::mt19937 rng(77u);
    std::uniform_real_distribution<> u(-1.0, 1.0);
    for (int round = 0; round < 200 && !::testing::Test::HasFailure(); ++round) {
        const double scale = std::pow(10.0, std::floor(40 * u(rng)));
        LAContour c = Polygon({{scale * u(rng), scale * u(rng)}, {-0.0, 1e-300}});
        c.insert(c.begin() + 1, LAEdge(Point2(scale * u(rng), scale * u(rng)),
                                       Point2(scale * u(rng), scale * u(rng)), 6 * u(rng)));
        LAContourWriter w;
        const std::wstring plain = w.write(c);
        w.SetFullPrecision(true);
        const std::wstring full = w.write(c);
        EXPECT_EQ(full.find(L"-0 "), std::wstring::npos);
        LAContourReader reader(full);
        ASSERT_TRUE(reader.read()) << std::string(full.begin(), full.end());
        const LAContour& back = reader.GetLAContour();
        ASSERT_EQ(back.size(), 3u);
        for (std::size_t i : {0, 2}) EXPECT_EQ(back[i].start.distance(c[i].start), 0.0);
        EXPECT_EQ(back[1].centre.distance(c[1].centre), 0.0);
        EXPECT_EQ(back[1].angle, c[1].angle);
        EXPECT_LE(back[1].start.distance(c[1].start), 1e-15 * 4 * scale);
        w.SetFullPrecision(false);  // switched off again: the six-decimal text
        EXPECT_EQ(w.write(c), plain);
    }
}

}  // namespace
}  // namespace quillon
