// quillon plate: a drawing (loose elements or a contour text) extruded to a plate of the given
// thickness, bolt holes, cuts by planes and extruded openings subtracted, written as OBJ + MTL.
#include <algorithm>
#include <cctype>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <numbers>
#include <ostream>
#include <sstream>

#include "quillon/geometry/contours/contour_ops.h"
#include "quillon/geometry/space/geometric_item3.h"
#include "quillon/geometry/space/solid3_inter.h"
#include "quillon/platform/text.h"
#include "quillon/units/vunit.h"
#include "tools/quillon/cli.h"
#include "tools/quillon/loose_elements.h"
#include "tools/quillon/section_report.h"
#include "tools/quillon/shape_input.h"
#include "tools/quillon/solid_commands.h"
#include "tools/quillon/solid_figures.h"
#include "tools/quillon/solid_picture.h"
#include "tools/quillon/svg.h"

namespace quillon::tool {

namespace {

// Openings reach this far past both faces of the plate, so that none of their faces lies in a
// face of the plate.
constexpr double kOvershoot = 1.0;

// "a,b,c" (commas or spaces) into exactly `count` finite numbers.
bool ParseNumbers(const std::string& text, std::size_t count, std::vector<double>& values) {
    values.clear();
    std::string spaced = text;
    for (char& c : spaced)
        if (c == ',') c = ' ';
    std::istringstream in(spaced);
    in.imbue(std::locale::classic());
    double v = 0.0;
    while (in >> v) {
        if (!std::isfinite(v)) return false;
        values.push_back(v);
    }
    return in.eof() && values.size() == count;
}

bool IsContourText(const std::string& text) {
    for (const char c : text) {
        if (std::isspace(static_cast<unsigned char>(c))) continue;
        return c == '(' || c == '"';
    }
    return false;
}

// The plate's outline, from a file, standard input or the text itself: a contour text takes the
// checked way of every shape input (healed, validated, refused or rebuilt with --fix); loose lines
// and arcs are solved at eps. Null with the message printed.
ShapePtr ReadPlateShape(const Invocation& call, double eps, std::string& unit, std::string& name) {
    const std::optional<InputText> input = ReadInput(call, call.positional[0]);
    if (!input) return nullptr;
    name = input->name;
    if (IsContourText(input->text)) {
        std::optional<ShapeInput> read = CheckShapeInput(call, *input, "", eps);
        if (!read) return nullptr;
        unit = read->unit.empty() ? "mm" : read->unit;
        return std::move(read->shape);
    }
    std::istringstream in(input->text);
    LooseDrawing drawing;
    ReadError error;
    if (!ReadLooseDrawing(in, drawing, error)) {
        call.Fail(kBadInput, input->name + ":" + std::to_string(error.line) + ": " + error.message);
        return nullptr;
    }
    unit = drawing.unit;
    return std::move(SolveElements(drawing.elements, eps).shape);
}

// An extrusion of `outer` straight through a plate `thickness` thick lying on z = 0.
Extrusion3 ThroughOpening(const LAContour& outer, double thickness) {
    Extrusion3 e;
    e.SetOuterContour(outer);
    e.SetLength(thickness + 2.0 * kOvershoot);
    e <<= Isometry3(Translate3(0.0, 0.0, -kOvershoot));
    return e;
}

LAContour Circle(double x, double y, double diameter) {
    LAContour c;
    c.push_back(LAEdge(Point2(x + diameter / 2.0, y), Point2(x, y), 2.0 * std::numbers::pi));
    return c;
}

struct Opening {
    std::string what;  // for messages: "--hole 2"
    std::unique_ptr<GeometricItem3> item;
};

// The openings in groups whose members keep apart in plan (bounding boxes with a gap between), in
// the order given; cuts by planes reach everywhere and stay alone.
std::vector<std::vector<std::size_t>> ApartGroups(const std::vector<Opening>& openings) {
    struct Box {
        double x0, y0, x1, y1;
    };
    std::vector<std::vector<std::size_t>> groups;
    std::vector<std::vector<Box>> boxes;
    for (std::size_t i = 0; i < openings.size(); ++i) {
        Point3 lo, hi;
        const bool prism = dynamic_cast<const Extrusion3*>(openings[i].item.get()) != nullptr;
        if (!prism || !openings[i].item->GetSolid().GetExtents(lo, hi)) {
            groups.push_back({i});
            boxes.emplace_back();
            continue;
        }
        const double gap =
            1e-6 *
            (1.0 + std::max({std::fabs(lo.x), std::fabs(lo.y), std::fabs(hi.x), std::fabs(hi.y)}));
        const Box b{lo.x - gap, lo.y - gap, hi.x + gap, hi.y + gap};
        const auto apart = [&b](const Box& o) {
            return b.x1 < o.x0 || o.x1 < b.x0 || b.y1 < o.y0 || o.y1 < b.y0;
        };
        std::size_t g = 0;
        while (g < groups.size() &&
               (boxes[g].empty() || !std::all_of(boxes[g].begin(), boxes[g].end(), apart)))
            ++g;
        if (g == groups.size()) {
            groups.emplace_back();
            boxes.emplace_back();
        }
        groups[g].push_back(i);
        boxes[g].push_back(b);
    }
    return groups;
}

}  // namespace

int RunPlate(const Invocation& call) {
    if (call.positional.size() != 1) return call.Usage("needs one drawing file");
    std::vector<double> v;
    if (!ParseNumbers(call.Get("thickness", ""), 1, v) || !(v[0] > 0.0))
        return call.Usage("--thickness needs a positive number (drawing units)");
    const double thickness = v[0];
    std::string shown = call.Get("units", "cm");
    if (UnitLength(shown) == 0.0) return call.Usage("--units takes mm, cm or m");

    // Density: a plain number is kg/m^3; a text with units must be a mass per volume.
    const std::string densityText = call.Get("density", "7850");
    const munit::VUnit density(platform::FromUtf8(densityText).c_str());
    const munit::SUnit& du = density.unit();
    const bool plain = du.m == 0 && du.kg == 0 && du.s == 0;
    if (!density.is_valid() || !(plain || (du.m == -3 && du.kg == 1 && du.s == 0)) ||
        !(density.to_mks() > 0.0))
        return call.Usage("--density needs a positive mass per volume (kg/m^3 when plain)");
    const munit::VUnit densitySi = plain ? munit::VUnit(density.to_mks(), -3, 1, 0) : density;

    std::vector<Opening> openings;
    int n = 0;
    for (const std::string& h : call.All("hole")) {
        ++n;
        if (!ParseNumbers(h, 3, v) || !(v[2] > 0.0))
            return call.Usage("--hole takes X,Y,D with a positive diameter D, not '" + h + "'");
        openings.push_back(
            {"--hole " + std::to_string(n),
             std::make_unique<Extrusion3>(ThroughOpening(Circle(v[0], v[1], v[2]), thickness))});
    }
    // Files of bolt holes: one "X Y D" (or X,Y,D) a line; '#' starts a comment.
    for (const std::string& f : call.All("holes")) {
        const std::optional<InputText> input = ReadInput(call, f);
        if (!input) return kBadInput;
        std::istringstream lines(input->text);
        std::string line;
        for (int lineNo = 1; std::getline(lines, line); ++lineNo) {
            line = line.substr(0, line.find('#'));
            if (line.find_first_not_of(" \t\r") == std::string::npos) continue;
            if (!ParseNumbers(line, 3, v) || !(v[2] > 0.0))
                return call.Fail(kBadInput, input->name + ":" + std::to_string(lineNo) +
                                                ": a hole is X Y D with a positive diameter D");
            ++n;
            openings.push_back({input->name + ":" + std::to_string(lineNo),
                                std::make_unique<Extrusion3>(
                                    ThroughOpening(Circle(v[0], v[1], v[2]), thickness))});
        }
    }
    const std::size_t holeCount = openings.size();
    n = 0;
    for (const std::string& c : call.All("cut")) {
        ++n;
        if (!ParseNumbers(c, 6, v) || std::hypot(v[3], v[4], v[5]) == 0.0)
            return call.Usage("--cut takes PX,PY,PZ,NX,NY,NZ with a non-zero normal, not '" + c +
                              "'");
        openings.push_back({"--cut " + std::to_string(n),
                            std::make_unique<HalfSpace3>(
                                Plane3(Point3(v[0], v[1], v[2]), Vector3(v[3], v[4], v[5])))});
    }

    SolidView view = SolidView::Iso;
    if (!ParseSolidView(call.Get("view", "iso"), view))
        return call.Usage("--view takes iso, top or front");

    double eps = 0.01;
    if (!ReadEpsOption(call, eps)) return call.Usage("--eps needs a positive number");
    std::string unit, name;
    const ShapePtr shape = ReadPlateShape(call, eps, unit, name);
    if (!shape) return kBadInput;
    if (UnitLength(unit) == 0.0)
        return call.Fail(kBadInput, "unknown length unit \"" + unit + "\" (mm, cm or m)");
    if (shape->ChildrenCount() != 1)
        return call.Fail(kBadInput, name + ": the drawing makes " +
                                        std::to_string(shape->ChildrenCount()) +
                                        " solids; a plate is one");
    n = 0;
    for (const std::string& o : call.All("opening")) {
        ++n;
        const std::optional<ShapeInput> read = ReadShapeInput(call, o, "", eps);
        if (!read) return kBadInput;
        if (!read->unit.empty() && read->unit != unit)
            return call.Fail(kBadInput, read->name + " is not in " + unit + ", the drawing's unit");
        for (unsigned long i = 0; i < read->shape->ChildrenCount(); ++i)
            openings.push_back({"--opening " + std::to_string(n),
                                std::make_unique<Extrusion3>(ThroughOpening(
                                    read->shape->SolidChild(i)->GetLAContour(), thickness))});
    }

    const ProSolidContour& outline = *shape->SolidChild(0);
    Extrusion3 plate;
    plate.SetOuterContour(outline.GetLAContour());
    for (unsigned long i = 0; i < outline.ChildrenCount(); ++i)
        plate.AddInnerContour(outline.ClosedChild(i)->GetLAContour());
    plate.SetLength(thickness);
    Solid3 solid = plate.GetSolid();
    if (solid.Face().empty()) return call.Fail(kBadInput, name + ": the outline encloses no area");
    for (const std::vector<std::size_t>& group : ApartGroups(openings)) {
        if (group.size() > 1) {
            // Openings apart from one another are one solid of separate pieces: one boolean for
            // all of them instead of one each, which keeps hundreds of bolt holes fast.
            Solid3 together(solid.GetEps());
            for (const std::size_t i : group) together.Merge(openings[i].item->GetSolid());
            Solid3 next(solid.GetEps());
            if (BoolSubstract(solid, together, next, nullptr) && !next.Face().empty()) {
                solid = std::move(next);
                continue;
            }
        }
        // One at a time, so that a failure names its opening.
        for (const std::size_t i : group) {
            BooleanResult3 cut;
            cut.SetFirstOperand(&solid);
            cut.SetSecondOperand(openings[i].item.get());
            Solid3 next = cut.GetSolid();
            if (next.Face().empty())
                return call.Fail(kBadInput,
                                 "subtracting " + openings[i].what + " leaves no closed solid");
            solid = std::move(next);
        }
    }

    // One material for the whole plate, a steel grey.
    const std::filesystem::path base = call.Get("out", "plate");
    solid.SetName(platform::FromUtf8(base.filename().string()));
    solid.Material().clear();
    Material3 steel(L"plate");
    steel.ambient = Vector3(0.25, 0.26, 0.28);
    steel.diffuse = Vector3(0.62, 0.64, 0.68);
    steel.specular = Vector3(0.3, 0.3, 0.3);
    steel.illum = 2;
    const int material = static_cast<int>(solid.AddMaterial(steel));
    for (Face3& f : solid.Face()) f.material = material;

    std::filesystem::path obj = base;
    obj += ".obj";
    std::filesystem::path mtl = base;
    mtl += ".mtl";
    std::error_code ec;
    if (base.has_parent_path()) std::filesystem::create_directories(base.parent_path(), ec);
    if (!solid.SavetoObj(obj))
        return call.Fail(kCannotWrite, "cannot write '" + obj.string() + "'");

    // The table, or the reason there is none (the solid is still written and measured).
    std::string table;
    SectionReport(*shape, unit, shown, table);
    call.out << "Plate: " << name << ", drawn in " << unit << "\n\nContour text:\n"
             << platform::ToUtf8(WriteShapeText(*shape, platform::FromUtf8(unit)))
             << "\n\nSection figures of the outline (exact arcs, shown in " << shown << "):\n"
             << table << "\n";
    call.out << platform::FormatC(
                    "Solid: %g %s thick, %zu bolt hole(s), %zu cut(s), %zu other "
                    "opening(s) subtracted (arcs in 48 pieces a turn)\n",
                    thickness, unit.c_str(), holeCount, call.All("cut").size(),
                    openings.size() - holeCount - call.All("cut").size())
             << SolidFigures(solid, unit);
    const double k = UnitLength(unit);
    const munit::VUnit volume(SolidVolume(solid) * k * k * k, 3, 0, 0);
    const munit::VUnit mass = volume * densitySi;
    call.out << platform::FormatC("  mass       %.4g kg at %g kg/m^3\n", mass.to_mks(),
                                  densitySi.to_mks());
    if (call.Has("svg")) {
        SvgOptions o;
        o.unit = unit;
        o.title = "Plate outline: " + std::filesystem::path(name).filename().string();
        std::ofstream svg(call.Get("svg", ""), std::ios::binary);
        svg << ComplexContourToSvg(*shape, o);
        if (!svg) return call.Fail(kCannotWrite, "cannot write '" + call.Get("svg", "") + "'");
    }
    if (call.Has("png")) {
        std::ofstream png(call.Get("png", ""), std::ios::binary);
        png << SolidToPng(solid, view, 900);
        if (!png) return call.Fail(kCannotWrite, "cannot write '" + call.Get("png", "") + "'");
    }
    call.out << "\nFiles: " << obj.string() << ", " << mtl.string();
    for (const char* picture : {"svg", "png"})
        if (call.Has(picture)) call.out << ", " << call.Get(picture, "");
    call.out << "\n";
    return kDone;
}

}  // namespace quillon::tool
