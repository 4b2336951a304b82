#include <gtest/gtest.h>

#include <filesystem>
#include <numbers>
#include <regex>
#include <string>
#include <vector>

#include "tests/tools/run_quillon.h"

namespace quillon::tool {
namespace {

constexpr double kPi = std::numbers::pi;

std::string example(const std::string& name) {
    return std::string(QUILLON_SOURCE_DIR) + "/examples/" + name;
}

// A small well-formedness check: tags close in the order they open, attribute values are quoted,
// one element holds all, and the character data holds no bare "<" or "&" outside entities.
bool wellFormedXml(const std::string& xml) {
    static const std::regex item(
        "<(/?)([A-Za-z_][\\w:.-]*)(?:\\s+[A-Za-z_][\\w:.-]*=\"[^\"<]*\")*\\s*(/?)>|<|&(?![a-z]+;)");
    std::vector<std::string> open;
    int roots = 0;
    const std::size_t start = xml.compare(0, 5, "<?xml") == 0 ? xml.find("?>") + 2 : 0;
    for (std::sregex_iterator it(xml.begin() + static_cast<std::ptrdiff_t>(start), xml.end(), item),
         end;
         it != end; ++it) {
        const std::smatch& m = *it;
        if (!m[2].matched) return false;  // a bare "<" or "&"
        if (m[1].length() > 0 && (open.empty() || open.back() != m[2].str())) return false;
        if (m[1].length() > 0) open.pop_back();
        roots += m[1].length() == 0 && open.empty();
        if (m[1].length() == 0 && m[3].length() == 0) open.push_back(m[2]);
    }
    return roots == 1 && open.empty();
}

TEST(QuillonProgram, UsageErrorsAndHelp) {
    EXPECT_EQ(run({}).code, kUsage);
    EXPECT_EQ(run({"frobnicate"}).code, kUsage);
    EXPECT_TRUE(has(run({"frobnicate"}).err, "unknown command 'frobnicate'"));
    EXPECT_EQ(run({"--help"}).code, kDone);
    for (const char* command : {"demo", "solve", "bool", "section", "unit"}) {
        const Outcome help = run({command, "--help"});
        EXPECT_EQ(help.code, kDone) << command;
        EXPECT_TRUE(has(help.out, std::string("usage: quillon ") + command));
        const Outcome bad = run({command, "--colour", "red"});
        EXPECT_EQ(bad.code, kUsage) << command;
        EXPECT_TRUE(has(bad.err, "unknown option '--colour'")) << command;
    }
    // An option without its value, not a positive number, an unknown unit or operation, too few
    // operands.
    // clang-format off
    const std::vector<std::string> wrong[] = {
        {"solve", "--eps"}, {"solve", "--eps", "-1"}, {"section", "--units", "furlong"},
        {"bool", "xor", "a", "b"}, {"bool", "union", "a"}, {"unit"}, {"solve", "--svg=x.svg", "--eps=-1"}};
    // clang-format on
    for (const auto& args : wrong)
        EXPECT_EQ(run(args).code, kUsage) << args[0] << " " << args.back();
    EXPECT_TRUE(run({"--version"}).code == kDone &&
                run({"--version"}).out.rfind("quillon ", 0) == 0);
}

// Options take their value after "=" as well; an output that cannot be written is exit code 3.
TEST(QuillonProgram, OptionsWithEqualsAndUnwritableOutput) {
    const std::string square = "(((S((L 0 0)(L 1 0)(L 1 1)(L 0 1))())))";
    const Outcome eps = run({"bool", "union", "--eps=0.1", square, square});
    ASSERT_EQ(eps.code, kDone) << eps.err;
    EXPECT_NEAR(textArea(eps.out), 1.0, 1e-9);
    const auto file = std::filesystem::temp_directory_path() / "quillon_not_a_folder";
    std::ofstream(file) << "x";
    const Outcome unwritable =
        run({"bool", "union", square, square, "--svg", (file / "picture.svg").string()});
    EXPECT_TRUE(unwritable.code == kCannotWrite && has(unwritable.err, "cannot write"));
    std::filesystem::remove(file);
}

TEST(QuillonProgram, UnitTextsGiveTheirSiValueExponentsAndQuantity) {
    const Outcome r = run({"unit", "2.5 kN*m", "kg/m^3", "1/s"});
    EXPECT_EQ(r.code, kDone);
    for (const char* part :
         {"2.5 kN*m = 2500 ", "exponents m^2 kg^1 s^-2; moment or energy", "kg/m^3 = 1 ",
          "exponents m^-3 kg^1 s^0; no named quantity", "exponents m^0 kg^0 s^-1; frequency"})
        EXPECT_TRUE(has(r.out, part)) << part << "\n" << r.out;
    const Outcome bad = run({"unit", "3 parsecs", "2 m"});
    EXPECT_TRUE(has(bad.err, "quillon unit: 3 parsecs: not a unit text"));
    EXPECT_TRUE(bad.code == kBadInput && has(bad.out, "2 m = 2 "));  // later texts answered
}

TEST(QuillonProgram, SolveJoinsCrossingSketchLinesIntoOneSolid) {
    const Outcome r = run({"solve", example("l_shape.txt")});
    ASSERT_EQ(r.code, kDone) << r.err;
    EXPECT_EQ(r.out.compare(0, 4, "\"mm\""), 0);
    // 100 x 100 x 10 angle: 1900 mm^2; the crossing ends are free polylines.
    EXPECT_NEAR(textArea(r.out), 1900.0, 1e-6);
    EXPECT_TRUE(has(r.err, "1 solid(s) with 0 hole(s)") && has(r.err, "free polyline")) << r.err;
}

TEST(QuillonProgram, SolveReportsBadInputWithItsLine) {
    const std::pair<const char*, const char*> cases[] = {
        {"units mm\nline 0 0 1\n", "-:2: expected \"line x1 y1 x2 y2\""},
        {"line 0 0 1 x\n", "found \"x\""},
        {"# fine\nspline 0 0 1 1\n", ":2: unknown element \"spline\""},
        {"arc 1 0 0 1 0 0 45\n", "sweep does not match"},
        {"", ""}};  // empty input
    for (const auto& [input, message] : cases) {
        const Outcome r = run({"solve", "-"}, input);
        EXPECT_EQ(r.code, kBadInput) << input;
        EXPECT_TRUE(has(r.err, message)) << r.err;
    }
    EXPECT_EQ(run({"solve", "/nonexistent/drawing.txt"}).code, kBadInput);
}

TEST(QuillonProgram, BooleansKeepTrueArcs) {
    const std::string square = example("square.txt"), disc = example("disc.txt");
    const double a = 100.0 * 100.0, b = kPi * 40 * 40, overlap = b / 4;
    // The operation words reach the right booleans (their areas are the engine's own tests).
    const std::pair<const char*, double> ops[] = {
        {"union", a + b - overlap}, {"difference", a - overlap}, {"intersection", overlap}};
    for (const auto& [op, area] : ops) {
        const Outcome r = run({"bool", op, square, disc});
        ASSERT_EQ(r.code, kDone) << r.err;
        EXPECT_NEAR(textArea(r.out), area, 1e-2) << op;
        EXPECT_TRUE(has(r.out, "(A "));  // arcs stay arcs
    }
    // A malformed text is reported with its reader's code.
    const Outcome bad = run({"bool", "union", "(((S((L 0 0)(L 1 0)", square});
    EXPECT_EQ(bad.code, kBadInput);
    EXPECT_TRUE(has(bad.err, "A is not a contour text: error ")) << bad.err;
}

TEST(QuillonProgram, SectionTableInTheChosenUnit) {
    const Outcome cm = run({"section", example("square.txt")});
    ASSERT_EQ(cm.code, kDone) << cm.err;
    EXPECT_NEAR(number(cm.out, " A"), 100.0, 1e-9);                  // cm2
    EXPECT_NEAR(number(cm.out, " xc"), 5.0, 1e-9);                   // cm
    EXPECT_NEAR(number(cm.out, " Ix"), 10.0 * 1000.0 / 12.0, 1e-2);  // cm4, 3 decimals shown
    const Outcome mm =
        run({"section", "--units", "mm", "-"}, "(((S((L 0 0)(L 100 0)(L 100 100)(L 0 100))())))");
    ASSERT_EQ(mm.code, kDone) << mm.err;
    EXPECT_NEAR(number(mm.out, " A"), 10000.0, 1e-9);
    EXPECT_TRUE(has(mm.out, "mm2"));
    const Outcome furlong = run({"section", "-"}, "\"furlong\"(((S((L 0 0)(L 1 0)(L 1 1))())))");
    EXPECT_EQ(furlong.code, kBadInput);
}

TEST(QuillonProgram, DemoSolvesThePlateAndDrawsIt) {
    const auto dir = std::filesystem::temp_directory_path() / "quillon_demo_test";
    std::filesystem::remove_all(dir);
    const Outcome r = run({"demo", "--out", dir.string()});
    ASSERT_EQ(r.code, kDone) << r.err;
    EXPECT_TRUE(has(r.out, "1 solid(s) with 2 hole(s)")) << r.out;
    // 400 x 250 mm, corners of radius 30, a hole of diameter 80 and one of 120 x 70, in cm2.
    const double area = (400.0 * 250.0 - (4.0 - kPi) * 900.0 - kPi * 1600.0 - 120.0 * 70.0) / 100;
    EXPECT_NEAR(number(r.out, " A"), area, 1e-3);
    const std::string xml = fileText((dir / "plate.svg").string());
    EXPECT_TRUE(wellFormedXml(xml));
    EXPECT_TRUE(has(xml, "fill-rule=\"evenodd\"") && has(xml, " A"));  // true SVG arcs
    std::filesystem::remove_all(dir);
}

TEST(QuillonProgram, XmlCheckerRefusesBrokenDocuments) {
    EXPECT_TRUE(wellFormedXml("<?xml v?><a x=\"1\">&lt;<b/></a>"));
    for (const char* xml : {"<a><b></a></b>", "<a x=1></a>", "<a></a><b></b>", "<a>&bogus</a>",
                            "<1a></1a>", "<a>1 < 2</a>", "<a>"})
        EXPECT_FALSE(wellFormedXml(xml)) << xml;
}

// A half disc above its diameter: the solver's clockwise outline runs over the top, which SVG
// (y down) must draw as a clockwise arc too (sweep flag 1), or the picture shows the half below.
TEST(QuillonProgram, SvgArcsBulgeTheWayTheShapeDoes) {
    const auto svg = std::filesystem::temp_directory_path() / "quillon_half_disc.svg";
    const Outcome r =
        run({"solve", "-", "--svg", svg.string()}, "arc 0 0 100 0 50 0 -180\nline 0 0 100 0\n");
    ASSERT_EQ(r.code, kDone) << r.err;
    const std::string xml = fileText(svg.string());
    const std::regex arc(" A50 50 0 [01] ([01]) ");
    std::smatch m;
    ASSERT_TRUE(std::regex_search(xml, m, arc)) << xml;
    // The outline is clockwise, so the arc is too; the top of the box is at picture y = margin.
    EXPECT_EQ(m[1], "1");
    std::filesystem::remove(svg);
}

// The README shows the consumer program that CI compiles; a stale copy would teach a broken API.
TEST(QuillonProgram, ReadmeExampleIsTheProgramCiBuilds) {
    const std::string readme = fileText(std::string(QUILLON_SOURCE_DIR) + "/README.md");
    std::string program = fileText(std::string(QUILLON_SOURCE_DIR) + "/tests/consumer/main.cpp");
    while (!program.empty() && program.back() == '\n') program.pop_back();
    ASSERT_FALSE(program.empty());
    EXPECT_TRUE(has(readme, "```cpp\n" + program + "\n```"));
}

// Far from the origin a grid step vanishes against the coordinates; the picture must still end.
TEST(QuillonProgram, PicturesOfShapesFarFromTheOriginFinish) {
    const auto svg = std::filesystem::temp_directory_path() / "quillon_far.svg";
    EXPECT_EQ(run({"solve", "-", "--svg", svg.string()},
                  "line 1e17 0 1e17 1\nline 1e17 1 100000000000000048 1\n"
                  "line 100000000000000048 1 100000000000000048 0\n"
                  "line 100000000000000048 0 1e17 0\n")
                  .code,
              kDone);
    EXPECT_TRUE(std::filesystem::exists(svg));
    std::filesystem::remove(svg);
}

}  // namespace
}  // namespace quillon::tool
