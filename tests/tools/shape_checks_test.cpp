// The program on shapes that are easy to get wrong by hand: each gives a true answer or a clear
// refusal, every command reads its inputs one way, and what it prints stays clean.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <string>
#include <vector>

#include "quillon/geometry/contours/contour_ops.h"
#include "quillon/geometry/contours/contour_validate.h"
#include "tests/tools/run_quillon.h"
#include "tools/quillon/shape_output.h"

namespace quillon::tool {
namespace {

const std::string kHoleOutside =
    "(((S((L 0 0)(L 10 0)(L 10 10)(L 0 10)) 0 ((H((L 20 20)(L 30 20)(L 30 30)))))))";
const std::string kBowTie = "(((S((L 0 0)(L 10 0)(L 0 10)(L 10 10)) 0 ())))";
const std::string kHuge = "(((S((L 0 0)(L 1e308 0)(L 0 1e308)) 0 ())))";
const std::string kSmall = "(((S((L 0 0)(L 1 0)(L 1 1)) 0 ())))";

// An invalid shape is refused by every command that reads it, with its problem named; with --fix
// the solver rebuilds it and section and bool then agree on its area.
TEST(ProgramShapeChecks, InvalidShapesAreRefusedOrFixedAlikeByEveryCommand) {
    const struct {
        const std::string& text;
        const char* problem;
        double fixedArea;
        const char* fixedSummary;
    } cases[] = {
        {kHoleOutside, "solid 1, hole 1: the hole lies outside its solid", 100.0, "1 solid(s)"},
        {kBowTie, "solid 1: the contour crosses or runs along itself", 50.0, "2 solid(s)"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        const Outcome section = run({"section", "-"}, c.text);
        EXPECT_TRUE(section.code == kBadInput && section.out.empty());
        EXPECT_TRUE(has(section.err, c.problem) && has(section.err, "--fix")) << section.err;
        const Outcome combined = run({"bool", "union", c.text, kSmall});
        EXPECT_TRUE(combined.code == kBadInput && combined.out.empty());
        EXPECT_TRUE(has(combined.err, "A: not a valid shape")) << combined.err;

        const Outcome fixed = run({"section", "--fix", "--units", "mm", c.text});
        ASSERT_EQ(fixed.code, kDone) << fixed.err;
        EXPECT_TRUE(
            has(fixed.err, std::string("fixed: rebuilt by the solver into ") + c.fixedSummary));
        EXPECT_NEAR(number(fixed.out, " A"), c.fixedArea, 1e-9);
        // B lies inside the rebuilt A, so the union is A: both commands see one shape.
        const Outcome fixedUnion = run({"bool", "union", "--fix", c.text, kSmall});
        ASSERT_EQ(fixedUnion.code, kDone) << fixedUnion.err;
        EXPECT_NEAR(textArea(fixedUnion.out), c.fixedArea, 1e-9);
    }
}

// Figures that would overflow are refused, --fix or not, in shapes and in drawings.
TEST(ProgramShapeChecks, OverflowingCoordinatesAreRefused) {
    for (const std::vector<std::string>& args : {std::vector<std::string>{"section", kHuge},
                                                 {"section", "--fix", kHuge},
                                                 {"bool", "union", "--fix", kSmall, kHuge}}) {
        const Outcome r = run(args);
        EXPECT_EQ(r.code, kBadInput) << args[1];
        EXPECT_TRUE(has(r.err, "cannot be measured") && has(r.err, "coordinates too large"))
            << r.err;
    }
    const Outcome drawing = run({"solve", "-"}, "line 0 0 1 0\nline 0 0 1e308 1\n");
    EXPECT_EQ(drawing.code, kBadInput);
    EXPECT_TRUE(has(drawing.err, "-:2: 1e+308 is beyond")) << drawing.err;
}

// Six-decimal text leaves arcs missing their next edge by rounding; the program heals that, so a
// small epsilon still gives the region (the quarter disc right of x = 0.5 is cut away).
TEST(ProgramShapeChecks, TextRoundingDoesNotLoseRegionsAtSmallEpsilon) {
    const Outcome r = run({"bool", "difference", "--eps", "1e-7",
                           "(((S((L 0 0)(A 0 0 1 0 1.570796)(L 0 1)) 0 ())))",
                           "(((S((L 0.5 -1)(L 2 -1)(L 2 2)(L 0.5 2)) 0 ())))"});
    ASSERT_EQ(r.code, kDone) << r.err;
    const double exact = 0.25 * std::sqrt(0.75) + std::asin(0.5) / 2;  // 0.478306
    EXPECT_NEAR(textArea(r.out), exact, 1e-5);
}

// A file, '-' and the text itself are one input; a one-line drawing is a text too.
TEST(ProgramShapeChecks, EveryInputIsAFileStandardInputOrTheText) {
    const std::string square = "\"cm\"(((S((L 0 0)(L 4 0)(L 4 2)(L 0 2)) 0 ())))";
    const auto file = std::filesystem::temp_directory_path() / "quillon_input_square.txt";
    std::ofstream(file) << square;
    const Outcome fromFile = run({"section", file.string()});
    ASSERT_EQ(fromFile.code, kDone) << fromFile.err;
    EXPECT_EQ(run({"section", "-"}, square).out, fromFile.out);
    EXPECT_EQ(run({"section", square}).out, fromFile.out);
    EXPECT_EQ(run({"bool", "union", file.string(), square}).out,
              run({"bool", "union", "-", square}, square).out);
    std::filesystem::remove(file);
    EXPECT_TRUE(has(run({"section", file.string()}).err, "cannot open"));
    EXPECT_NEAR(textArea(run({"solve", "circle 0 0 10"}).out), std::acos(-1.0) * 100, 1e-3);
    EXPECT_TRUE(has(run({"unit", "-"}, "2 m\r\n\n1/s\n").out, "1/s = 1 "));
}

// No empty unit name, no negative zero; --clean merges split edges and keeps the region.
TEST(ProgramShapeChecks, PrintedResultsAreClean) {
    const Outcome plain = run({"bool", "union", kSmall, kSmall});
    ASSERT_EQ(plain.code, kDone) << plain.err;
    EXPECT_EQ(plain.out.compare(0, 3, "((("), 0) << plain.out;
    // Turned by a hair, a square's principal angle and product moment round to zero.
    const Outcome square =
        run({"section", "(((S((L 0 0)(L 10 -0.0000001)(L 10 10)(L 0 10)) 0 ())))"});
    ASSERT_EQ(square.code, kDone) << square.err;
    EXPECT_FALSE(std::regex_search(square.out, std::regex("-0\\.0+ "))) << square.out;
    EXPECT_EQ(WithoutNegativeZeros("alpha -0.00 Deg (-0.000000 -0.0001) -0.000e+00 m^-1 x-0"),
              "alpha 0.00 Deg (0.000000 -0.0001) 0.000e+00 m^-1 x-0");

    const std::string plate = std::string(QUILLON_SOURCE_DIR) + "/examples/plate.txt";
    const Outcome raw = run({"solve", plate}), clean = run({"solve", "--clean", plate});
    ASSERT_EQ(clean.code, kDone) << clean.err;
    EXPECT_NEAR(textArea(clean.out), textArea(raw.out), 1e-9);
    const ShapeText b = ReadShapeText(platform::FromUtf8(clean.out));
    ASSERT_TRUE(b.shape);
    EXPECT_LT(clean.out.size(), raw.out.size());  // the hole's split corners are gone
    EXPECT_TRUE(ValidateComplexContour(*b.shape, 0.01).IsValid());
}

}  // namespace
}  // namespace quillon::tool
