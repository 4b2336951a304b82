// The library's answers for the Python tests, computed with the C++ calls alone. Reads requests
// from standard input, one a line, fields separated by tabs, and answers each with one line
// (numbers with 17 significant digits, so equal doubles print equal):
//   shape TEXT                      -> area TAB text (with its unit when it has one)
//   union|difference|intersection EPS TEXT_A TEXT_B
//                                   -> area TAB text of the result
//   solve EPS (L x1 y1 x2 y2 | A x1 y1 x2 y2 cx cy sweep)...  (each element one field)
//                                   -> area TAB polyline count TAB text
//   section TEXT                    -> area xc yc Ix Iy Ixy I1 I2 alpha (tab-separated)
//   unit TEXT                       -> si m kg s, or "invalid"
//   convert TYPE_ID UNIT VALUE DIR  -> the converted value, or "failed"
// A text that does not read answers "error CODE".
#include <cstdio>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "quillon/geometry/contours/contour_ops.h"
#include "quillon/platform/text.h"
#include "quillon/sections/contour_props.h"
#include "quillon/units/munit.h"
#include "quillon/units/vunit.h"

namespace {

using namespace quillon;

std::vector<std::string> Split(const std::string& line) {
    std::vector<std::string> fields;
    std::string field;
    std::istringstream in(line);
    while (std::getline(in, field, '\t')) fields.push_back(field);
    return fields;
}

std::string Num(double v) { return platform::FormatC("%.17g", v); }

std::string Describe(const ProComplexContour& shape, const std::wstring* unit) {
    const std::wstring text = unit ? WriteShapeText(shape, *unit) : WriteShapeText(shape);
    return Num(CalcProps(shape).area) + "\t" + platform::ToUtf8(text);
}

ShapeText Read(const std::string& text) { return ReadShapeText(platform::FromUtf8(text)); }

std::string Answer(const std::vector<std::string>& f) {
    const std::string& op = f.at(0);
    if (op == "shape") {
        const ShapeText s = Read(f.at(1));
        if (!s.shape) return "error " + std::to_string(s.error->code);
        return Describe(*s.shape, s.unit ? &*s.unit : nullptr);
    }
    if (op == "union" || op == "difference" || op == "intersection") {
        const ShapeText a = Read(f.at(2)), b = Read(f.at(3));
        if (!a.shape || !b.shape) return "error";
        const ShapeOperation o = op == "union"        ? ShapeOperation::Union
                                 : op == "difference" ? ShapeOperation::Difference
                                                      : ShapeOperation::Intersection;
        return Describe(*CombineShapes(*a.shape, *b.shape, o, std::stod(f.at(1))), nullptr);
    }
    if (op == "solve") {
        std::vector<LooseElement> elements;
        for (std::size_t i = 2; i < f.size(); ++i) {
            std::istringstream in(f[i]);
            std::string kind;
            double v[7] = {};
            in >> kind;
            for (double& x : v) in >> x;
            if (kind == "L")
                elements.push_back(LooseElement::MakeLine({v[0], v[1]}, {v[2], v[3]}));
            else
                elements.push_back(
                    LooseElement::MakeArc({v[0], v[1]}, {v[2], v[3]}, {v[4], v[5]}, v[6]));
        }
        const SolvedShape s = SolveElements(elements, std::stod(f.at(1)));
        const std::wstring text = WriteShapeText(*s.shape);
        return Num(CalcProps(*s.shape).area) + "\t" + std::to_string(s.polylines.size()) + "\t" +
               platform::ToUtf8(text);
    }
    if (op == "section") {
        const ShapeText s = Read(f.at(1));
        if (!s.shape) return "error";
        const SectionFigures g = CalcSectionFigures(*s.shape);
        std::string out;
        for (double v :
             {g.area, g.centroid.x, g.centroid.y, g.Ixc, g.Iyc, g.Ixyc, g.I1, g.I2, g.alpha}) {
            if (!out.empty()) out += '\t';
            out += Num(v);
        }
        return out;
    }
    if (op == "unit") {
        const std::wstring text = platform::FromUtf8(f.size() > 1 ? f[1] : "");
        const munit::VUnit v(text.c_str());
        if (!v.is_valid()) return "invalid";
        return Num(v.to_mks()) + "\t" + std::to_string(v.unit().m) + "\t" +
               std::to_string(v.unit().kg) + "\t" + std::to_string(v.unit().s);
    }
    if (op == "convert") {
        if (!munit::GetMInit()) munit::InitMInit(true);
        const munit::MUnit units;
        double out = 0.0;
        const int failed = units.CnvUnit(out, static_cast<munit::MUNIT_TYPES>(std::stoi(f.at(1))),
                                         platform::FromUtf8(f.at(2)), std::stod(f.at(3)),
                                         static_cast<munit::BASIC_UNIT>(std::stoi(f.at(4))));
        return failed ? "failed" : Num(out);
    }
    return "unknown request";
}

}  // namespace

int main() {
    std::string line;
    while (std::getline(std::cin, line)) std::cout << Answer(Split(line)) << "\n";
    return 0;
}
