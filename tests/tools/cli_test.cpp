#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <numbers>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "quillon/geometry/contours/contour_ops.h"
#include "quillon/platform/text.h"
#include "quillon/sections/contour_props.h"
#include "tests/tools/run_quillon.h"

namespace quillon::tool {
namespace {

constexpr double kPi = std::numbers::pi;

std::string example(const std::string& name) {
    return std::string(QUILLON_SOURCE_DIR) + "/examples/" + name;
}

// The number printed after a figure's symbol in the section table, e.g. "A" -> 858.009.
double figure(const std::string& table, const std::string& symbol) {
    const std::regex line("\\n  [^\\n]*? " + symbol + " +(-?[0-9.e+-]+) ");
    std::smatch m;
    if (!std::regex_search(table, m, line)) return std::nan("");
    return std::stod(m[1]);
}

// Area of a contour text (with or without a unit name), through the library's reader and the
// exact integrals; NaN when the text does not read.
double areaOf(const std::string& text) {
    const ShapeText read = ReadShapeText(platform::FromUtf8(text));
    return read.shape ? CalcProps(*read.shape).area : std::nan("");
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

std::string fileText(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
}

TEST(QuillonProgram, UsageErrorsAndHelp) {
    EXPECT_EQ(run({}).code, kUsage);
    EXPECT_EQ(run({"frobnicate"}).code, kUsage);
    EXPECT_NE(run({"frobnicate"}).err.find("unknown command 'frobnicate'"), std::string::npos);
    EXPECT_EQ(run({"--help"}).code, kDone);
    for (const char* command : {"demo", "solve", "bool", "section", "unit"}) {
        const Outcome help = run({command, "--help"});
        EXPECT_EQ(help.code, kDone) << command;
        EXPECT_NE(help.out.find(std::string("usage: quillon ") + command), std::string::npos);
        const Outcome bad = run({command, "--colour", "red"});
        EXPECT_EQ(bad.code, kUsage) << command;
        EXPECT_NE(bad.err.find("unknown option '--colour'"), std::string::npos) << command;
    }
    // An option without its value, not a positive number, an unknown unit or operation, too few
    // operands.
    for (const std::vector<std::string>& args : {std::vector<std::string>{"solve", "--eps"},
                                                 {"solve", "--eps", "-1"},
                                                 {"section", "--units", "furlong"},
                                                 {"bool", "xor", "a", "b"},
                                                 {"bool", "union", "a"},
                                                 {"unit"},
                                                 {"solve", "--svg=x.svg", "--eps=-1"}})
        EXPECT_EQ(run(args).code, kUsage) << args[0] << " " << args.back();
    const Outcome version = run({"--version"});
    EXPECT_EQ(version.code, kDone);
    EXPECT_EQ(version.out.compare(0, 8, "quillon "), 0);
}

// Options take their value after "=" as well; an output that cannot be written is exit code 3.
TEST(QuillonProgram, OptionsWithEqualsAndUnwritableOutput) {
    const std::string square = "(((S((L 0 0)(L 1 0)(L 1 1)(L 0 1))())))";
    const Outcome eps = run({"bool", "union", "--eps=0.1", square, square});
    ASSERT_EQ(eps.code, kDone) << eps.err;
    EXPECT_NEAR(areaOf(eps.out), 1.0, 1e-9);
    const auto file = std::filesystem::temp_directory_path() / "quillon_not_a_folder";
    std::ofstream(file) << "x";
    const Outcome unwritable =
        run({"bool", "union", square, square, "--svg", (file / "picture.svg").string()});
    EXPECT_EQ(unwritable.code, kCannotWrite);
    EXPECT_NE(unwritable.err.find("cannot write"), std::string::npos) << unwritable.err;
    std::filesystem::remove(file);
}

TEST(QuillonProgram, UnitTextsGiveTheirSiValueExponentsAndQuantity) {
    const Outcome r = run({"unit", "2.5 kN*m", "kg/m^3", "1/s"});
    EXPECT_EQ(r.code, kDone);
    EXPECT_NE(r.out.find("2.5 kN*m = 2500 "), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("exponents m^2 kg^1 s^-2; moment or energy"), std::string::npos);
    EXPECT_NE(r.out.find("kg/m^3 = 1 "), std::string::npos);
    EXPECT_NE(r.out.find("exponents m^-3 kg^1 s^0; no named quantity"), std::string::npos);
    EXPECT_NE(r.out.find("exponents m^0 kg^0 s^-1; frequency"), std::string::npos);
    const Outcome bad = run({"unit", "3 parsecs", "2 m"});
    EXPECT_EQ(bad.code, kBadInput);
    EXPECT_NE(bad.err.find("quillon unit: 3 parsecs: not a unit text"), std::string::npos);
    EXPECT_NE(bad.out.find("2 m = 2 "), std::string::npos);  // later texts still answered
}

TEST(QuillonProgram, SolveJoinsCrossingSketchLinesIntoOneSolid) {
    const Outcome r = run({"solve", example("l_shape.txt")});
    ASSERT_EQ(r.code, kDone) << r.err;
    EXPECT_EQ(r.out.compare(0, 4, "\"mm\""), 0);
    // 100 x 100 x 10 angle: 1900 mm^2; the crossing ends are free polylines.
    EXPECT_NEAR(areaOf(r.out), 1900.0, 1e-6);
    EXPECT_NE(r.err.find("1 solid(s) with 0 hole(s)"), std::string::npos) << r.err;
    EXPECT_NE(r.err.find("free polyline"), std::string::npos);
}

TEST(QuillonProgram, SolveReportsBadInputWithItsLine) {
    const Outcome garbage = run({"solve", "-"}, "units mm\nline 0 0 1\n");
    EXPECT_EQ(garbage.code, kBadInput);
    EXPECT_NE(garbage.err.find("-:2: expected \"line x1 y1 x2 y2\""), std::string::npos)
        << garbage.err;
    const Outcome word = run({"solve", "-"}, "line 0 0 1 x\n");
    EXPECT_NE(word.err.find("found \"x\""), std::string::npos) << word.err;
    const Outcome unknown = run({"solve", "-"}, "# fine\nspline 0 0 1 1\n");
    EXPECT_EQ(unknown.code, kBadInput);
    EXPECT_NE(unknown.err.find(":2: unknown element \"spline\""), std::string::npos);
    const Outcome sweep = run({"solve", "-"}, "arc 1 0 0 1 0 0 45\n");
    EXPECT_NE(sweep.err.find("sweep does not match"), std::string::npos);
    EXPECT_EQ(run({"solve", "-"}, "").code, kBadInput);  // empty input
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
        EXPECT_NEAR(areaOf(r.out), area, 1e-2) << op;
        EXPECT_NE(r.out.find("(A "), std::string::npos);  // arcs stay arcs
    }
    // A malformed text is reported with its reader's code.
    const Outcome bad = run({"bool", "union", "(((S((L 0 0)(L 1 0)", square});
    EXPECT_EQ(bad.code, kBadInput);
    EXPECT_NE(bad.err.find("A is not a contour text: error "), std::string::npos) << bad.err;
}

TEST(QuillonProgram, SectionTableInTheChosenUnit) {
    const Outcome cm = run({"section", example("square.txt")});
    ASSERT_EQ(cm.code, kDone) << cm.err;
    EXPECT_NEAR(figure(cm.out, "A"), 100.0, 1e-9);                  // cm2
    EXPECT_NEAR(figure(cm.out, "xc"), 5.0, 1e-9);                   // cm
    EXPECT_NEAR(figure(cm.out, "Ix"), 10.0 * 1000.0 / 12.0, 1e-2);  // cm4, 3 decimals shown
    const Outcome mm =
        run({"section", "--units", "mm", "-"}, "(((S((L 0 0)(L 100 0)(L 100 100)(L 0 100))())))");
    ASSERT_EQ(mm.code, kDone) << mm.err;
    EXPECT_NEAR(figure(mm.out, "A"), 10000.0, 1e-9);
    EXPECT_NE(mm.out.find("mm2"), std::string::npos);
    const Outcome bad = run({"section", "-"}, "((S((L 0 0)");
    EXPECT_EQ(bad.code, kBadInput);
    EXPECT_NE(bad.err.find("error "), std::string::npos);
    const Outcome furlong = run({"section", "-"}, "\"furlong\"(((S((L 0 0)(L 1 0)(L 1 1))())))");
    EXPECT_EQ(furlong.code, kBadInput);
}

TEST(QuillonProgram, DemoSolvesThePlateAndDrawsIt) {
    const auto dir = std::filesystem::temp_directory_path() / "quillon_demo_test";
    std::filesystem::remove_all(dir);
    const Outcome r = run({"demo", "--out", dir.string()});
    ASSERT_EQ(r.code, kDone) << r.err;
    EXPECT_NE(r.out.find("1 solid(s) with 2 hole(s)"), std::string::npos) << r.out;
    // 400 x 250 mm, corners of radius 30, a hole of diameter 80 and one of 120 x 70, in cm2.
    const double area = (400.0 * 250.0 - (4.0 - kPi) * 900.0 - kPi * 1600.0 - 120.0 * 70.0) / 100;
    EXPECT_NEAR(figure(r.out, "A"), area, 1e-3);
    const std::string xml = fileText((dir / "plate.svg").string());
    EXPECT_TRUE(wellFormedXml(xml));
    EXPECT_NE(xml.find("fill-rule=\"evenodd\""), std::string::npos);
    EXPECT_NE(xml.find(" A"), std::string::npos);  // true SVG arcs
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
    EXPECT_NE(readme.find("```cpp\n" + program + "\n```"), std::string::npos);
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
