#include "tools/quillon/cli.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <memory>
#include <sstream>

#include "quillon/geometry/contours/contour_text.h"
#include "quillon/geometry/contours/las_solver.h"
#include "quillon/platform/text.h"
#include "quillon/units/vunit.h"
#include "tools/quillon/loose_elements.h"
#include "tools/quillon/section_report.h"
#include "tools/quillon/svg.h"

#ifndef QUILLON_EXAMPLES_DIR
#define QUILLON_EXAMPLES_DIR "examples"
#endif

namespace quillon::tool {

namespace {

using platform::FromUtf8;
using platform::ToUtf8;

const char* const kMainHelp =
    "usage: quillon COMMAND [ARGS]\n"
    "\n"
    "Lines and arcs to shapes with holes, booleans with true arcs, section properties, units.\n"
    "\n"
    "commands:\n"
    "  demo      solve the bundled plate drawing, print its contour text and section properties,\n"
    "            write plate.svg\n"
    "  solve     loose lines and arcs in, the shape's contour text out\n"
    "  bool      union, difference or intersection of two contour texts\n"
    "  section   section properties of a contour text\n"
    "  unit      value-with-unit texts to their SI value, exponents and quantity\n"
    "\n"
    "'quillon COMMAND --help' tells more. Exit codes: 0 done, 1 usage, 2 bad input.\n";

const std::map<std::string, std::string> kHelp = {
    {"demo",
     "usage: quillon demo [--out DIR] [--units mm|cm|m]\n"
     "Solves examples/plate.txt (a plate with rounded corners and two openings, drawn as loose\n"
     "lines and arcs that overshoot and overlap a little), prints the contour text and the\n"
     "section properties (default unit cm) and writes DIR/plate.svg (default DIR: ./out).\n"},
    {"solve",
     "usage: quillon solve [FILE|-] [--svg FILE] [--eps E]\n"
     "Reads loose elements (format: examples/README.md) from FILE or standard input, joins\n"
     "points closer than E (drawing units, default 0.01), splits crossings and prints the\n"
     "resulting complex contour as contour text. Free polylines are reported on standard error.\n"},
    {"bool",
     "usage: quillon bool union|difference|intersection A B [--svg FILE] [--eps E]\n"
     "A and B are contour texts, given as files, '-' for standard input, or the text itself\n"
     "(an argument starting with '(' or '\"'). Points closer than E (default 0.001) are\n"
     "joined. Prints the result as contour text.\n"},
    {"section",
     "usage: quillon section [FILE|-] [--units mm|cm|m]\n"
     "Reads a contour text (with or without a unit name; without one, mm) and prints the\n"
     "section properties, exact for arcs, in the chosen unit (default cm).\n"},
    {"unit",
     "usage: quillon unit TEXT...\n"
     "Parses each value-with-unit text (e.g. \"2.5 kN*m\", \"kg/m^3\") and prints its value in\n"
     "metre-kilogram-second units, its exponents and its quantity type.\n"},
};

struct Streams {
    std::istream& in;
    std::ostream& out;
    std::ostream& err;
};

// Command-line words: options with values (--name value) and positional arguments.
struct Words {
    std::vector<std::string> positional;
    std::map<std::string, std::string> options;
    bool help = false;
};

// Splits args; false (message printed) on an unknown option or a missing value.
bool splitWords(const std::vector<std::string>& args, std::size_t from,
                const std::vector<std::string>& allowed, Words& words, Streams& s,
                const std::string& command) {
    for (std::size_t i = from; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (a == "--help" || a == "-h") {
            words.help = true;
        } else if (a.size() > 2 && a.compare(0, 2, "--") == 0) {
            const std::string name = a.substr(2);
            bool known = false;
            for (const auto& o : allowed) known = known || o == name;
            if (!known) {
                s.err << "quillon " << command << ": unknown option '" << a << "'\n";
                return false;
            }
            if (i + 1 >= args.size()) {
                s.err << "quillon " << command << ": option '" << a << "' needs a value\n";
                return false;
            }
            words.options[name] = args[++i];
        } else {
            words.positional.push_back(a);
        }
    }
    return true;
}

bool readAll(const std::string& source, Streams& s, std::string& text, const std::string& command) {
    if (source == "-") {
        text.assign(std::istreambuf_iterator<char>(s.in), std::istreambuf_iterator<char>());
        return true;
    }
    std::ifstream file(source, std::ios::binary);
    if (!file) {
        s.err << "quillon " << command << ": cannot open '" << source << "'\n";
        return false;
    }
    text.assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    return true;
}

bool writeFile(const std::filesystem::path& path, const std::string& content, Streams& s,
               const std::string& command) {
    std::error_code ec;
    if (path.has_parent_path()) std::filesystem::create_directories(path.parent_path(), ec);
    std::ofstream file(path, std::ios::binary);
    file << content;
    if (!file) {
        s.err << "quillon " << command << ": cannot write '" << path.string() << "'\n";
        return false;
    }
    return true;
}

bool parseEps(const Words& w, double& eps, Streams& s, const std::string& command) {
    const auto it = w.options.find("eps");
    if (it == w.options.end()) return true;
    std::size_t used = 0;
    eps = platform::LeadingDouble(it->second, &used);
    if (used != it->second.size() || !(eps > 0.0) || !std::isfinite(eps)) {
        s.err << "quillon " << command << ": --eps needs a positive number\n";
        return false;
    }
    return true;
}

bool parseUnits(const Words& w, std::string& unit, Streams& s, const std::string& command) {
    const auto it = w.options.find("units");
    if (it == w.options.end()) return true;
    if (UnitLength(it->second) == 0.0) {
        s.err << "quillon " << command << ": --units takes mm, cm or m\n";
        return false;
    }
    unit = it->second;
    return true;
}

// Owns a solver result.
using Shape = std::unique_ptr<ProComplexContour>;

struct Solved {
    Shape shape;
    std::vector<std::unique_ptr<LAContour>> polylines;
    std::size_t closedCount = 0;
};

// Loose elements through the solver: merge points, split crossings, walk the faces, nest them.
Solved solveDrawing(const LooseDrawing& drawing, double eps) {
    LAS_Solver solver(eps);
    for (const LooseElement& e : drawing.elements) {
        if (e.kind == LooseElement::Line) {
            solver.AddLine(e.start, e.end);
        } else {
            solver.AddArc(e.start, e.end, e.centre, e.sweep);
        }
    }
    solver.SplitEdges();
    std::vector<ProClosedContour*> closed;
    std::vector<LAContour*> polylines;
    ProContourFactory factory;
    solver.FindContours({}, &factory, closed, polylines);
    Solved result;
    result.closedCount = closed.size();
    for (LAContour* p : polylines) result.polylines.emplace_back(p);
    LAS_Solver nester(eps);
    result.shape.reset(nester.Set(closed, &factory, false));
    for (ProClosedContour* c : closed) delete c;
    if (!result.shape) result.shape.reset(factory.CreateComplexContour());
    return result;
}

std::string describePolyline(const LAContour& p) {
    if (p.empty()) return "empty polyline";
    const Point2& a = p.Front().start;
    const Point2& b = p.Back().start;
    return platform::FormatC("%zu element(s) from (%g, %g) to (%g, %g)", p.size() - 1, a.x, a.y,
                             b.x, b.y);
}

// Reads a complex contour text with an optional unit name in front.
Shape readContourText(const std::string& text, std::string& unit, Streams& s,
                      const std::string& command, const std::string& what) {
    std::wstring wide = FromUtf8(text);
    std::size_t first = wide.find_first_not_of(L" \t\r\n");
    try {
        if (first != std::wstring::npos && wide[first] == L'"') {
            ProComplexContourAndUnitReader reader(wide);
            std::wstring u;
            Shape shape(reader.read(u));
            unit = ToUtf8(u);
            return shape;
        }
        ProComplexContourReader reader(wide);
        unit.clear();
        return Shape(reader.read());
    } catch (const ContourTextError& e) {
        s.err << "quillon " << command << ": " << what << " is not a contour text: error " << e.code
              << " (" << e.what() << ") at line " << (e.line + 1) << ", character " << e.position
              << "\n";
        return nullptr;
    }
}

std::string contourText(const ProComplexContour& shape, const std::string& unit) {
    ProComplexContourAndUnitWriter writer(FromUtf8(unit));
    return ToUtf8(writer.write(shape));
}

std::string shapeSummary(const ProComplexContour& shape) {
    unsigned long holes = 0;
    for (unsigned long i = 0; i < shape.ChildrenCount(); ++i) {
        holes += shape.SolidChild(i)->ChildrenCount();
    }
    return platform::FormatC("%lu solid(s) with %lu hole(s)", shape.ChildrenCount(), holes);
}

int cmdSolve(const std::vector<std::string>& args, Streams& s) {
    Words w;
    if (!splitWords(args, 1, {"svg", "eps"}, w, s, "solve")) return kUsage;
    if (w.help) return s.out << kHelp.at("solve"), kDone;
    if (w.positional.size() > 1) {
        s.err << "quillon solve: one input at most\n" << kHelp.at("solve");
        return kUsage;
    }
    double eps = 0.01;
    if (!parseEps(w, eps, s, "solve")) return kUsage;
    std::string text;
    const std::string source = w.positional.empty() ? "-" : w.positional[0];
    if (!readAll(source, s, text, "solve")) return kBadInput;
    std::istringstream in(text);
    LooseDrawing drawing;
    ReadError error;
    if (!ReadLooseDrawing(in, drawing, error)) {
        s.err << "quillon solve: " << source << ":" << error.line << ": " << error.message << "\n";
        return kBadInput;
    }
    if (drawing.elements.empty()) {
        s.err << "quillon solve: " << source << ": no elements\n";
        return kBadInput;
    }
    const Solved solved = solveDrawing(drawing, eps);
    s.out << contourText(*solved.shape, drawing.unit) << "\n";
    s.err << "quillon solve: " << drawing.elements.size() << " elements, "
          << shapeSummary(*solved.shape) << ", " << solved.polylines.size()
          << " free polyline(s)\n";
    for (const auto& p : solved.polylines) {
        s.err << "  free polyline: " << describePolyline(*p) << "\n";
    }
    if (const auto it = w.options.find("svg"); it != w.options.end()) {
        SvgOptions o;
        o.unit = drawing.unit;
        if (!writeFile(it->second, ComplexContourToSvg(*solved.shape, o), s, "solve")) {
            return kBadInput;
        }
    }
    return kDone;
}

int cmdBool(const std::vector<std::string>& args, Streams& s) {
    Words w;
    if (!splitWords(args, 1, {"svg", "eps"}, w, s, "bool")) return kUsage;
    if (w.help) return s.out << kHelp.at("bool"), kDone;
    if (w.positional.size() != 3) {
        s.err << "quillon bool: needs an operation and two contour texts\n" << kHelp.at("bool");
        return kUsage;
    }
    const std::string& op = w.positional[0];
    LAS_Solver::Operation operation;
    if (op == "union") {
        operation = LAS_Solver::Union;
    } else if (op == "difference") {
        operation = LAS_Solver::Difference;
    } else if (op == "intersection") {
        operation = LAS_Solver::Intersection;
    } else {
        s.err << "quillon bool: unknown operation '" << op << "'\n" << kHelp.at("bool");
        return kUsage;
    }
    // Contour texts hold six decimals, so stored arcs close only to about 1e-6 of their radius.
    double eps = 1e-3;
    if (!parseEps(w, eps, s, "bool")) return kUsage;
    Shape shapes[2];
    std::string units[2];
    for (int i = 0; i < 2; ++i) {
        const std::string& arg = w.positional[1 + i];
        std::string text;
        if (!arg.empty() && (arg[0] == '(' || arg[0] == '"')) {
            text = arg;
        } else if (!readAll(arg, s, text, "bool")) {
            return kBadInput;
        }
        shapes[i] = readContourText(text, units[i], s, "bool", i == 0 ? "A" : "B");
        if (!shapes[i]) return kBadInput;
    }
    if (!units[0].empty() && !units[1].empty() && units[0] != units[1]) {
        s.err << "quillon bool: A is in " << units[0] << " and B in " << units[1] << "\n";
        return kBadInput;
    }
    const std::string unit = units[0].empty() ? units[1] : units[0];
    LAS_Solver solver(eps);
    ProContourFactory factory;
    Shape result(solver.Solv(shapes[0].get(), shapes[1].get(), operation, &factory));
    if (!result) result.reset(factory.CreateComplexContour());
    s.out << contourText(*result, unit) << "\n";
    s.err << "quillon bool: " << op << ": " << shapeSummary(*result) << "\n";
    if (const auto it = w.options.find("svg"); it != w.options.end()) {
        SvgOptions o;
        o.unit = unit.empty() ? "mm" : unit;
        if (!writeFile(it->second, ComplexContourToSvg(*result, o), s, "bool")) return kBadInput;
    }
    return kDone;
}

int cmdSection(const std::vector<std::string>& args, Streams& s) {
    Words w;
    if (!splitWords(args, 1, {"units"}, w, s, "section")) return kUsage;
    if (w.help) return s.out << kHelp.at("section"), kDone;
    if (w.positional.size() > 1) {
        s.err << "quillon section: one input at most\n" << kHelp.at("section");
        return kUsage;
    }
    std::string shown = "cm";
    if (!parseUnits(w, shown, s, "section")) return kUsage;
    const std::string source = w.positional.empty() ? "-" : w.positional[0];
    std::string text;
    if (!readAll(source, s, text, "section")) return kBadInput;
    std::string unit;
    const Shape shape = readContourText(text, unit, s, "section", source);
    if (!shape) return kBadInput;
    if (unit.empty()) unit = "mm";
    if (UnitLength(unit) == 0.0) {
        s.err << "quillon section: unknown length unit \"" << unit << "\" (mm, cm or m)\n";
        return kBadInput;
    }
    s.out << "Section properties (" << shapeSummary(*shape) << ", drawn in " << unit
          << ", shown in " << shown << "):\n"
          << SectionReport(*shape, unit, shown);
    return kDone;
}

int cmdUnit(const std::vector<std::string>& args, Streams& s) {
    Words w;
    if (!splitWords(args, 1, {}, w, s, "unit")) return kUsage;
    if (w.help) return s.out << kHelp.at("unit"), kDone;
    if (w.positional.empty()) {
        s.err << "quillon unit: needs at least one text\n" << kHelp.at("unit");
        return kUsage;
    }
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
    int code = kDone;
    for (const std::string& text : w.positional) {
        const std::wstring wide = FromUtf8(text);
        const munit::VUnit v(wide.c_str());
        if (!v.is_valid()) {
            s.out << text << ": not a unit text\n";
            code = kBadInput;
            continue;
        }
        const munit::SUnit& e = v.unit();
        const auto type = kTypeNames.find(v.type());
        std::wostringstream shown;
        shown << v;
        s.out << text << " = " << platform::FormatC("%.10g", v.to_mks()) << " ("
              << ToUtf8(shown.str()) << "); exponents m^" << e.m << " kg^" << e.kg << " s^" << e.s
              << "; " << (type == kTypeNames.end() ? "no named quantity" : type->second) << "\n";
    }
    return code;
}

int cmdDemo(const std::vector<std::string>& args, Streams& s) {
    Words w;
    if (!splitWords(args, 1, {"out", "units", "example"}, w, s, "demo")) return kUsage;
    if (w.help) return s.out << kHelp.at("demo"), kDone;
    if (!w.positional.empty()) {
        s.err << "quillon demo: takes no arguments\n" << kHelp.at("demo");
        return kUsage;
    }
    std::string shown = "cm";
    if (!parseUnits(w, shown, s, "demo")) return kUsage;
    const std::filesystem::path outDir = w.options.count("out") ? w.options["out"] : "out";
    std::filesystem::path example = std::filesystem::path(QUILLON_EXAMPLES_DIR) / "plate.txt";
    if (w.options.count("example")) example = w.options["example"];
    std::string text;
    if (!readAll(example.string(), s, text, "demo")) return kBadInput;
    std::istringstream in(text);
    LooseDrawing drawing;
    ReadError error;
    if (!ReadLooseDrawing(in, drawing, error)) {
        s.err << "quillon demo: " << example.string() << ":" << error.line << ": " << error.message
              << "\n";
        return kBadInput;
    }
    const Solved solved = solveDrawing(drawing, 0.01);
    s.out << "Quillon demo: " << example.filename().string() << ", " << drawing.elements.size()
          << " loose lines and arcs drawn in " << drawing.unit << "\n";
    s.out << "Solver: " << solved.closedCount << " closed contour(s), " << solved.polylines.size()
          << " free polyline(s) (overshoots) -> " << shapeSummary(*solved.shape) << "\n\n";
    s.out << "Contour text:\n" << contourText(*solved.shape, drawing.unit) << "\n\n";
    s.out << "Section properties (exact arcs, shown in " << shown << "):\n"
          << SectionReport(*solved.shape, drawing.unit, shown) << "\n";
    SvgOptions o;
    o.unit = drawing.unit;
    o.title = "Quillon demo: " + example.filename().string();
    const std::filesystem::path svg = outDir / "plate.svg";
    if (!writeFile(svg, ComplexContourToSvg(*solved.shape, o), s, "demo")) return kBadInput;
    s.out << "Picture: " << svg.string() << "\n";
    return kDone;
}

}  // namespace

int RunQuillon(const std::vector<std::string>& args, std::istream& in, std::ostream& out,
               std::ostream& err) {
    Streams s{in, out, err};
    if (args.empty()) {
        err << kMainHelp;
        return kUsage;
    }
    const std::string& command = args[0];
    if (command == "--help" || command == "-h" || command == "help") {
        out << kMainHelp;
        return kDone;
    }
    if (command == "demo") return cmdDemo(args, s);
    if (command == "solve") return cmdSolve(args, s);
    if (command == "bool") return cmdBool(args, s);
    if (command == "section") return cmdSection(args, s);
    if (command == "unit") return cmdUnit(args, s);
    err << "quillon: unknown command '" << command << "'\n\n" << kMainHelp;
    return kUsage;
}

}  // namespace quillon::tool
