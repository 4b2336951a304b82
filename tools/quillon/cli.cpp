#include "tools/quillon/cli.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <sstream>

#include "quillon/geometry/contours/contour_ops.h"
#include "quillon/platform/text.h"
#include "quillon/units/vunit.h"
#include "tools/quillon/command.h"
#include "tools/quillon/loose_elements.h"
#include "tools/quillon/section_report.h"
#include "tools/quillon/shape_input.h"
#include "tools/quillon/shape_output.h"
#include "tools/quillon/solid_commands.h"
#include "tools/quillon/svg.h"

#ifndef QUILLON_EXAMPLES_DIR
#define QUILLON_EXAMPLES_DIR "examples"
#endif
#ifndef QUILLON_VERSION
#define QUILLON_VERSION "unknown"
#endif

namespace quillon::tool {

namespace {

using platform::FromUtf8;
using platform::ToUtf8;

// ---- Shared steps of the commands ---------------------------------------------------------------

// kDone, or kCannotWrite with the message printed.
int WriteFile(const Invocation& call, const std::filesystem::path& path,
              const std::string& content) {
    std::error_code ec;
    if (path.has_parent_path()) std::filesystem::create_directories(path.parent_path(), ec);
    std::ofstream file(path, std::ios::binary);
    file << content;
    if (!file) return call.Fail(kCannotWrite, "cannot write '" + path.string() + "'");
    return kDone;
}

bool ParseUnits(const Invocation& call, std::string& unit) {
    if (!call.Has("units")) return true;
    if (UnitLength(call.Get("units", "")) == 0.0) return false;
    unit = call.Get("units", "");
    return true;
}

bool ReadDrawing(const Invocation& call, const std::string& source, LooseDrawing& drawing) {
    const std::optional<InputText> input = ReadInput(call, source);
    if (!input) return false;
    std::istringstream in(input->text);
    ReadError error;
    if (ReadLooseDrawing(in, drawing, error)) return true;
    call.Fail(kBadInput, input->name + ":" + std::to_string(error.line) + ": " + error.message);
    return false;
}

std::string DescribePolyline(const LAContour& p) {
    if (p.empty()) return "empty polyline";
    const Point2& a = p.Front().start;
    const Point2& b = p.Back().start;
    return WithoutNegativeZeros(platform::FormatC("%zu element(s) from (%g, %g) to (%g, %g)",
                                                  p.size() - 1, a.x, a.y, b.x, b.y));
}

int WriteSvg(const Invocation& call, const ProComplexContour& shape, const std::string& unit) {
    if (!call.Has("svg")) return kDone;
    SvgOptions o;
    o.unit = unit;
    return WriteFile(call, call.Get("svg", ""), ComplexContourToSvg(shape, o));
}

// ---- The commands -------------------------------------------------------------------------------

int RunDemo(const Invocation& call) {
    if (!call.positional.empty()) return call.Usage("takes no arguments");
    std::string shown = "cm";
    if (!ParseUnits(call, shown)) return call.Usage("--units takes mm, cm or m");
    const std::filesystem::path outDir = call.Get("out", "out");
    const std::filesystem::path example =
        call.Get("example", (std::filesystem::path(QUILLON_EXAMPLES_DIR) / "plate.txt").string());
    LooseDrawing drawing;
    if (!ReadDrawing(call, example.string(), drawing)) return kBadInput;
    const SolvedShape solved = SolveElements(drawing.elements, 0.01, CleanUpAsked(call));
    call.out << "Quillon demo: " << example.filename().string() << ", " << drawing.elements.size()
             << " loose lines and arcs drawn in " << drawing.unit << "\n";
    call.out << "Solver: " << solved.faces << " closed contour(s), " << solved.polylines.size()
             << " free polyline(s) (overshoots) -> " << ShapeSummary(*solved.shape) << "\n\n";
    call.out << "Contour text:\n" << ContourText(*solved.shape, drawing.unit) << "\n\n";
    std::string table;
    const bool measured = SectionReport(*solved.shape, drawing.unit, shown, table);
    call.out << "Section properties (exact arcs, shown in " << shown << "):\n"
             << (measured ? table : "  no section: " + table + "\n") << "\n";
    SvgOptions o;
    o.unit = drawing.unit;
    o.title = "Quillon demo: " + example.filename().string();
    const std::filesystem::path svg = outDir / "plate.svg";
    if (const int code = WriteFile(call, svg, ComplexContourToSvg(*solved.shape, o))) return code;
    call.out << "Picture: " << svg.string() << "\n";
    return kDone;
}

int RunSolve(const Invocation& call) {
    if (call.positional.size() > 1) return call.Usage("one input at most");
    double eps = 0.01;
    if (!ReadEpsOption(call, eps)) return call.Usage("--eps needs a positive number");
    const std::string source = call.positional.empty() ? "-" : call.positional[0];
    LooseDrawing drawing;
    if (!ReadDrawing(call, source, drawing)) return kBadInput;
    if (drawing.elements.empty()) return call.Fail(kBadInput, source + ": no elements");
    const SolvedShape solved = SolveElements(drawing.elements, eps, CleanUpAsked(call));
    call.out << ContourText(*solved.shape, drawing.unit) << "\n";
    call.err << "quillon solve: " << drawing.elements.size() << " elements, "
             << ShapeSummary(*solved.shape) << ", " << solved.polylines.size()
             << " free polyline(s)\n";
    for (const LAContour& p : solved.polylines)
        call.err << "  free polyline: " << DescribePolyline(p) << "\n";
    return WriteSvg(call, *solved.shape, drawing.unit);
}

int RunBool(const Invocation& call) {
    if (call.positional.size() != 3) return call.Usage("needs an operation and two contour texts");
    static const std::map<std::string, ShapeOperation> kOperations = {
        {"union", ShapeOperation::Union},
        {"difference", ShapeOperation::Difference},
        {"intersection", ShapeOperation::Intersection},
    };
    const std::string& op = call.positional[0];
    const auto operation = kOperations.find(op);
    if (operation == kOperations.end()) return call.Usage("unknown operation '" + op + "'");
    // Contour texts hold six decimals, so stored arcs close only to about 1e-6 of their radius.
    double eps = 1e-3;
    if (!ReadEpsOption(call, eps)) return call.Usage("--eps needs a positive number");
    std::optional<ShapeInput> shapes[2];
    for (std::size_t i = 0; i < 2; ++i) {
        shapes[i] = ReadShapeInput(call, call.positional[1 + i], i == 0 ? "A" : "B", eps);
        if (!shapes[i]) return kBadInput;
    }
    const std::string& a = shapes[0]->unit;
    const std::string& b = shapes[1]->unit;
    if (!a.empty() && !b.empty() && a != b)
        return call.Fail(kBadInput, "A is in " + a + " and B in " + b);
    const std::string unit = a.empty() ? b : a;
    const ShapePtr result = CombineShapes(*shapes[0]->shape, *shapes[1]->shape, operation->second,
                                          eps, CleanUpAsked(call));
    call.out << ContourText(*result, unit) << "\n";
    call.err << "quillon bool: " << op << ": " << ShapeSummary(*result) << "\n";
    return WriteSvg(call, *result, unit.empty() ? "mm" : unit);
}

int RunSection(const Invocation& call) {
    if (call.positional.size() > 1) return call.Usage("one input at most");
    std::string shown = "cm";
    if (!ParseUnits(call, shown)) return call.Usage("--units takes mm, cm or m");
    double eps = 1e-3;
    if (!ReadEpsOption(call, eps)) return call.Usage("--eps needs a positive number");
    const std::string source = call.positional.empty() ? "-" : call.positional[0];
    const std::optional<ShapeInput> input = ReadShapeInput(call, source, "", eps);
    if (!input) return kBadInput;
    const std::string unit = input->unit.empty() ? "mm" : input->unit;
    if (UnitLength(unit) == 0.0)
        return call.Fail(kBadInput, "unknown length unit \"" + unit + "\" (mm, cm or m)");
    std::string table;
    if (!SectionReport(*input->shape, unit, shown, table))
        return call.Fail(kBadInput, input->name + ": no section: " + table);
    call.out << "Section properties (" << ShapeSummary(*input->shape) << ", drawn in " << unit
             << ", shown in " << shown << "):\n"
             << table;
    return kDone;
}

int RunUnit(const Invocation& call) {
    if (call.positional.empty()) return call.Usage("needs at least one text");
    static const std::map<int, const char*> kTypeNames = {
        {munit::SUnit::dimensionless, "dimensionless"},
        {munit::SUnit::length, "length"},
        {munit::SUnit::area, "area"},
        {munit::SUnit::volume, "volume"},
        {munit::SUnit::mass, "mass"},
        {munit::SUnit::time, "time"},
        {munit::SUnit::velocity, "velocity"},
        {munit::SUnit::acceleration, "acceleration"},
        {munit::SUnit::force, "force"},
        {munit::SUnit::moment, "moment or energy"},
        {munit::SUnit::frequency, "frequency"},
        {munit::SUnit::stress, "stress"},
        {munit::SUnit::energy, "moment or energy"},
        {munit::SUnit::power, "power"},
    };
    std::vector<std::string> texts;
    for (const std::string& arg : call.positional) {
        if (arg != "-") {
            texts.push_back(arg);
            continue;
        }
        std::string line;
        while (std::getline(call.in, line)) {
            if (!line.empty() && line.back() == '\r') line.pop_back();
            if (line.find_first_not_of(" \t") != std::string::npos) texts.push_back(line);
        }
    }
    int code = kDone;
    for (const std::string& text : texts) {
        const std::wstring wide = FromUtf8(text);
        const munit::VUnit v(wide.c_str());
        if (!v.is_valid()) {
            // Later texts are still answered.
            code = call.Fail(kBadInput, text + ": not a unit text");
            continue;
        }
        const munit::SUnit& e = v.unit();
        const auto type = kTypeNames.find(v.type());
        std::wostringstream shown;
        shown << v;
        call.out << text << " = " << platform::FormatC("%.10g", v.to_mks()) << " ("
                 << ToUtf8(shown.str()) << "); exponents m^" << e.m << " kg^" << e.kg << " s^"
                 << e.s << "; " << (type == kTypeNames.end() ? "no named quantity" : type->second)
                 << "\n";
    }
    return code;
}

const std::vector<CommandSpec>& Commands() {
    static const std::vector<CommandSpec> table = {
        {"demo",
         "",
         "solve the bundled plate drawing, print its contour text and section properties,\n"
         "            write plate.svg",
         "Solves examples/plate.txt (a plate with rounded corners and two openings, drawn as "
         "loose\n"
         "lines and arcs that overshoot and overlap a little), prints the contour text and the\n"
         "section properties and writes DIR/plate.svg.\n",
         {{"out", "DIR", "folder of the picture (default: ./out)"},
          {"units", "mm|cm|m", "unit of the figures (default: cm)"},
          {"example", "FILE", "another drawing instead of examples/plate.txt"},
          kCleanOption},
         RunDemo},
        {"solve",
         "[FILE|-|TEXT]",
         "loose lines and arcs in, the shape's contour text out",
         "Reads loose elements (format: examples/README.md) from FILE, standard input or the\n"
         "text itself, joins close points, splits crossings and prints the resulting complex\n"
         "contour as contour text. Free polylines are reported on standard error.\n",
         {{"svg", "FILE", "also draw the shape into FILE"},
          {"eps", "E", "join points closer than E (drawing units, default 0.01)"},
          kCleanOption},
         RunSolve},
        {"bool",
         "union|difference|intersection A B",
         "union, difference or intersection of two contour texts",
         "A and B are contour texts, given as files, '-' for standard input, or the text itself\n"
         "(an argument starting with '(' or '\"'). Prints the result as contour text. A shape\n"
         "that is not valid (a hole outside its solid, overlapping solids, a contour crossing\n"
         "itself...) is refused with its problems listed, unless --fix is given.\n",
         {{"svg", "FILE", "also draw the result into FILE"},
          {"eps", "E", "join points closer than E (default 0.001)"},
          kFixOption,
          kCleanOption},
         RunBool},
        {"section",
         "[FILE|-|TEXT]",
         "section properties of a contour text",
         "Reads a contour text (with or without a unit name; without one, mm) from FILE,\n"
         "standard input or the text itself and prints the section properties, exact for arcs.\n"
         "A shape that is not valid is refused with its problems listed, unless --fix is given.\n",
         {{"units", "mm|cm|m", "unit of the figures (default: cm)"},
          {"eps", "E", "points closer than E are one point (default 0.001)"},
          kFixOption},
         RunSection},
        {"unit",
         "TEXT...|-",
         "value-with-unit texts to their SI value, exponents and quantity",
         "Parses each value-with-unit text (e.g. \"2.5 kN*m\", \"kg/m^3\"; '-': one a line from\n"
         "standard input) and prints its value in metre-kilogram-second units, its exponents\n"
         "and its quantity type.\n",
         {},
         RunUnit},
        {"obj-info",
         "FILE",
         "figures of a Wavefront OBJ file: counts, extents, volume, closed or not",
         "Reads FILE (with the MTL files it names) into a solid and prints its vertex, face and\n"
         "material counts, its extents, whether its surface is closed and, when it is, the volume\n"
         "it encloses, in the file's own units.\n",
         {},
         RunObjInfo},
        {"plate",
         "DRAWING",
         "a drawing extruded to a plate, holes and cuts subtracted, written as OBJ + MTL",
         "Reads DRAWING (loose elements or a contour text, format: examples/README.md), solves it\n"
         "into one solid with holes, prints its contour text and section figures, extrudes it\n"
         "from z = 0 to the thickness, subtracts bolt holes, cuts by planes and openings, writes\n"
         "NAME.obj and NAME.mtl and prints the solid's figures and mass. Lists of numbers are\n"
         "written with commas (--hole 40,40,18). A cut removes what lies behind its plane, on the\n"
         "side opposite its normal, up to 1000 drawing units deep.\n",
         {{"thickness", "T", "plate thickness, drawing units (required)"},
          {"hole", "X,Y,D", "a bolt hole of diameter D at (X, Y) (repeatable)"},
          {"holes", "FILE", "bolt holes, one \"X Y D\" a line, '#' comments (repeatable)"},
          {"cut", "PX,PY,PZ,NX,NY,NZ", "a cut by the plane through P with normal N (repeatable)"},
          {"opening", "FILE", "a contour text cut through the plate (repeatable)"},
          {"eps", "E", "join points closer than E (drawing units, default 0.01)"},
          kFixOption,
          {"density", "RHO", "kg/m^3, or a text with units such as 7.85t/m^3 (default 7850)"},
          {"units", "mm|cm|m", "unit of the figures (default: cm)"},
          {"svg", "FILE", "also draw the outline into FILE"},
          {"png", "FILE", "also draw the solid into FILE, hidden faces hidden"},
          {"view", "iso|top|front", "the view of --png (default: iso)"},
          {"out", "NAME", "write NAME.obj and NAME.mtl (default: plate)"}},
         RunPlate},
        {"tube",
         "PATH",
         "a polyline in space swept by a circle, written as OBJ",
         "Reads PATH (one point \"x y z\" a line, '#' starts a comment), sweeps a circle of the\n"
         "given diameter along it (rings at the path's points, a plane cap at each end), writes\n"
         "NAME.obj and prints the tube's figures.\n",
         {{"diameter", "D", "tube diameter, path units (required)"},
          {"segments", "N", "points a ring (default 24)"},
          {"out", "NAME", "write NAME.obj (default: tube)"}},
         RunTube},
    };
    return table;
}

std::string MainHelp() {
    std::string text =
        "usage: quillon COMMAND [ARGS] [--OPTION VALUE]...\n"
        "       quillon --help | --version\n"
        "\n"
        "Lines and arcs to shapes with holes, booleans with true arcs, section properties, units.\n"
        "\n"
        "commands:\n";
    for (const CommandSpec& c : Commands()) {
        std::string name = std::string("  ") + c.name;
        name.resize(12, ' ');
        text += name + c.summary + "\n";
    }
    text +=
        "\n"
        "'quillon COMMAND --help' tells more. Options take their value as the next word or\n"
        "after '=' (--eps=0.1). An input is a file, '-' for standard input, or the text itself.\n"
        "Exit codes: 0 done, 1 usage, 2 bad input (unreadable, or a shape that is not valid),\n"
        "3 a file could not be written.\n";
    return text;
}

// Sorts the words after the command into arguments and options; kDone, or a usage error.
int SortWords(const std::vector<std::string>& args, Invocation& call, bool& help) {
    for (std::size_t i = 1; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (a == "--help" || a == "-h") {
            help = true;
            continue;
        }
        if (a.size() <= 2 || a.compare(0, 2, "--") != 0) {
            call.positional.push_back(a);
            continue;
        }
        const std::size_t equals = a.find('=');
        const std::string name = a.substr(2, equals == std::string::npos ? equals : equals - 2);
        const OptionSpec* option = call.command.Option(name);
        if (option == nullptr) return call.Usage("unknown option '" + a.substr(0, equals) + "'");
        if (option->value == nullptr) {
            if (equals != std::string::npos)
                return call.Usage("option '--" + name + "' takes no value");
            call.options[name] = "";
        } else if (equals != std::string::npos) {
            call.options[name] = a.substr(equals + 1);
        } else if (i + 1 < args.size()) {
            call.options[name] = args[++i];
        } else {
            return call.Usage("option '" + a + "' needs a value");
        }
        call.given.emplace_back(name, call.options[name]);
    }
    return kDone;
}

}  // namespace

int RunQuillon(const std::vector<std::string>& args, std::istream& in, std::ostream& out,
               std::ostream& err) {
    if (args.empty()) {
        err << MainHelp();
        return kUsage;
    }
    const std::string& name = args[0];
    if (name == "--help" || name == "-h" || name == "help") {
        out << MainHelp();
        return kDone;
    }
    if (name == "--version") {
        out << "quillon " << QUILLON_VERSION << "\n";
        return kDone;
    }
    for (const CommandSpec& command : Commands()) {
        if (name != command.name) continue;
        Invocation call{command, {}, {}, {}, in, out, err};
        bool help = false;
        if (const int code = SortWords(args, call, help)) return code;
        if (help) {
            out << command.Help();
            return kDone;
        }
        return command.run(call);
    }
    err << "quillon: unknown command '" << name << "'\n\n" << MainHelp();
    return kUsage;
}

}  // namespace quillon::tool
