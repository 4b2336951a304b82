// Shapes for Python: quillon.Shape over the owning calls of contour_ops.h, solve() and
// union_all().
#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <cmath>
#include <numbers>
#include <optional>
#include <string>
#include <vector>

#include "python/src/bindings.h"
#include "python/src/library_lock.h"
#include "python/src/shape_value.h"
#include "python/src/views.h"
#include "quillon/platform/text.h"
#include "quillon/sections/contour_props.h"

namespace py = pybind11;

namespace quillon::python {

namespace {

// Rows of (x, y) or (x, y, radius) from any iterable of sequences: lists, tuples, numpy arrays.
std::vector<Corner> ToCorners(const py::handle& points, const char* what) {
    std::vector<Corner> corners;
    std::size_t index = 0;
    for (const py::handle row : py::iter(points)) {
        ++index;
        if (!py::isinstance<py::sequence>(row) || py::isinstance<py::str>(row))
            throw py::type_error(platform::FormatC(
                "%s: point %zu is not a sequence of numbers (x, y) or (x, y, radius)", what,
                index));
        const auto seq = py::reinterpret_borrow<py::sequence>(row);
        const std::size_t n = py::len(seq);
        if (n != 2 && n != 3)
            throw py::value_error(platform::FormatC(
                "%s: point %zu has %zu numbers; give (x, y) or (x, y, radius)", what, index, n));
        Corner c;
        c.x = seq[0].cast<double>();
        c.y = seq[1].cast<double>();
        if (n == 3) c.radius = seq[2].cast<double>();
        corners.push_back(c);
    }
    return corners;
}

std::string Plural(std::size_t n, const char* word) {
    return std::to_string(n) + " " + word + (n == 1 ? "" : "s");
}

std::size_t HoleCount(const ProComplexContour& s) {
    std::size_t holes = 0;
    for (unsigned long i = 0; i < s.ChildrenCount(); ++i)
        if (const ProSolidContour* solid = s.SolidChild(i)) holes += solid->ChildrenCount();
    return holes;
}

std::vector<ContourView> Solids(const ShapeValue& s) {
    std::vector<ContourView> list;
    for (unsigned long i = 0; i < s.tree->ChildrenCount(); ++i)
        if (const ProSolidContour* solid = s.tree->SolidChild(i))
            list.push_back({solid->GetLAContour()});
    return list;
}

std::vector<ContourView> Holes(const ShapeValue& s) {
    std::vector<ContourView> list;
    for (unsigned long i = 0; i < s.tree->ChildrenCount(); ++i) {
        const ProSolidContour* solid = s.tree->SolidChild(i);
        if (solid == nullptr) continue;
        for (unsigned long j = 0; j < solid->ChildrenCount(); ++j)
            if (const ProClosedContour* hole = solid->ClosedChild(j))
                list.push_back({hole->GetLAContour()});
    }
    return list;
}

// Each solid with its holes as a shape of its own.
std::vector<ShapeValue> Pieces(const ShapeValue& s) {
    const std::lock_guard<std::recursive_mutex> lock(LibraryMutex());
    std::vector<ShapeValue> list;
    for (unsigned long i = 0; i < s.tree->ChildrenCount(); ++i) {
        const ProSolidContour* solid = s.tree->SolidChild(i);
        if (solid == nullptr) continue;
        std::vector<LAContour> holes;
        for (unsigned long j = 0; j < solid->ChildrenCount(); ++j)
            if (const ProClosedContour* hole = solid->ClosedChild(j))
                holes.push_back(hole->GetLAContour());
        list.push_back(Own(MakeShape(solid->GetLAContour(), holes), s.unit));
    }
    return list;
}

ShapeValue Combine(const ShapeValue& a, const ShapeValue& b, ShapeOperation op,
                   std::optional<double> eps) {
    std::optional<std::wstring> unit = CommonUnit(a, b);
    const double e = ChooseEps(eps, *a.tree, b.tree.get());
    return WithoutInterpreter(
        [&] { return Own(CombineShapes(*a.tree, *b.tree, op, e), std::move(unit)); });
}

double Area(const ShapeValue& s) { return CalcProps(*s.tree).area; }

// Whether a and b cover the same region: the area of their symmetric difference is within
// max(rel_tol * the larger area, abs_tol).
bool SameRegion(const ShapeValue& a, const ShapeValue& b, double relTol, double absTol,
                std::optional<double> eps) {
    if (!(relTol >= 0.0) || !(absTol >= 0.0))
        throw py::value_error("rel_tol and abs_tol must not be negative");
    const double e = ChooseEps(eps, *a.tree, b.tree.get());
    const double apart = WithoutInterpreter([&] {
        return CalcProps(*CombineShapes(*a.tree, *b.tree, ShapeOperation::Difference, e)).area +
               CalcProps(*CombineShapes(*b.tree, *a.tree, ShapeOperation::Difference, e)).area;
    });
    return apart <= std::max(relTol * std::max(Area(a), Area(b)), absTol);
}

std::string ShapeRepr(const ShapeValue& s) {
    std::string r = "<Shape " + Plural(s.tree->ChildrenCount(), "solid") + ", " +
                    Plural(HoleCount(*s.tree), "hole") +
                    platform::FormatC(", area %.10g", CalcProps(*s.tree).area);
    if (s.unit) r += " " + platform::ToUtf8(*s.unit);
    return r + ">";
}

std::vector<LooseElement> ToElements(const py::iterable& elements) {
    std::vector<LooseElement> list;
    for (const py::handle e : elements) {
        if (py::isinstance<LineElement>(e)) {
            const auto& l = e.cast<const LineElement&>();
            list.push_back(LooseElement::MakeLine(l.begin, l.end));
        } else if (py::isinstance<ArcElement>(e)) {
            const auto& a = e.cast<const ArcElement&>();
            list.push_back(LooseElement::MakeArc(a.begin, a.end, a.centre, a.sweep));
        } else {
            throw py::type_error("solve() takes Line and Arc elements, not " +
                                 std::string(py::str(py::type::of(e).attr("__name__"))));
        }
    }
    return list;
}

}  // namespace

void BindShapes(py::module_& m) {
    const auto epsArg = py::arg("eps") = py::none();
    py::class_<ShapeValue> shape(
        m, "Shape",
        "A plane shape: solids of straight edges and true arcs, each with its holes. Shapes never\n"
        "change; every operation returns a new one. Tolerances (eps) are lengths in the shape's\n"
        "coordinates: points closer than eps are one. Where eps is None, 1e-5 of the larger side\n"
        "of the shapes' bounds (at least 1e-5) is used, which joins the arcs of six-decimal "
        "texts.\n"
        "Shapes are not compared with ==: use same_region() or compare their texts.");
    shape.def(py::init(&EmptyShape), "An empty shape.")
        .def_static(
            "from_text",
            [](const std::wstring& text) {
                return WithoutInterpreter([&] { return ShapeFromText(text); });
            },
            py::arg("text"),
            "Reads a contour text, with or without a quoted unit name in front, e.g.\n"
            "'\"mm\"(((S((L 0 0)(L 0 10)(L 10 10)(L 10 0)) 0 ())))'. The unit is kept in\n"
            "the shape's unit. Raises ContourTextError (a ValueError) when the text does\n"
            "not read and ValueError when it holds numbers that are not finite.")
        .def_static(
            "from_points",
            [](const py::object& outline, const py::object& holes) {
                std::vector<std::vector<Corner>> holeCorners;
                std::size_t index = 0;
                for (const py::handle h : py::iter(holes)) {
                    ++index;
                    holeCorners.push_back(ToCorners(h, ("hole " + std::to_string(index)).c_str()));
                }
                const std::vector<Corner> outlineCorners = ToCorners(outline, "outline");
                return WithoutInterpreter(
                    [&] { return ShapeFromCorners(outlineCorners, holeCorners); });
            },
            py::arg("outline"), py::arg("holes") = py::tuple(),
            "A shape of one solid from corner points: a list or an (n, 2) array of (x, y), or\n"
            "(n, 3) rows (x, y, radius) where a radius > 0 rounds that corner with a tangent arc\n"
            "of that radius. A single (x, y, radius) row is a circle. Holes are given the same\n"
            "way. Outline and holes may run either way round; they are stored clockwise. Raises\n"
            "ValueError when the result is not a valid shape (a crossing outline, a hole\n"
            "outside, a radius too large for its sides) and names the first problem.")
        .def_static(
            "circle",
            [](const XY& centre, double radius) {
                return WithoutInterpreter([&] {
                    return ShapeFromCorners({Corner{centre[0], centre[1], radius}}, {});
                });
            },
            py::arg("centre"), py::arg("radius"), "A disc.")
        .def_property_readonly(
            "unit", [](const ShapeValue& s) -> std::optional<std::wstring> { return s.unit; },
            "The unit name of the text the shape came from (kept through operations), or None.")
        .def_property_readonly("area", &Area, "Net area: solids less their holes, exact for arcs.")
        .def_property_readonly(
            "perimeter", [](const ShapeValue& s) { return CalcProps(*s.tree).perimeter; },
            "Length of every boundary, outlines and holes.")
        .def_property_readonly(
            "bounds",
            [](const ShapeValue& s) {
                if (s.tree->ChildrenCount() == 0) return ToBounds(kNaN, kNaN, kNaN, kNaN);
                const Rect2 r = ContourExtents(*s.tree);
                return ToBounds(r.pnt1().x, r.pnt1().y, r.pnt2().x, r.pnt2().y);
            },
            "(xmin, ymin, xmax, ymax), arcs through their extreme points; NaNs when empty.")
        .def_property_readonly(
            "is_empty", [](const ShapeValue& s) { return s.tree->ChildrenCount() == 0; },
            "True when the shape has no solid.")
        .def_property_readonly("solids", &Solids, "The outline of each solid.")
        .def_property_readonly("holes", &Holes, "Every hole, solid by solid.")
        .def_property_readonly("pieces", &Pieces, "Each solid with its holes as a shape.")
        .def(
            "union",
            [](const ShapeValue& a, const ShapeValue& b, std::optional<double> eps) {
                return Combine(a, b, ShapeOperation::Union, eps);
            },
            py::arg("other"), epsArg, "The union, with true arcs (also a | b).")
        .def(
            "difference",
            [](const ShapeValue& a, const ShapeValue& b, std::optional<double> eps) {
                return Combine(a, b, ShapeOperation::Difference, eps);
            },
            py::arg("other"), epsArg, "This shape less the other, with true arcs (also a - b).")
        .def(
            "intersection",
            [](const ShapeValue& a, const ShapeValue& b, std::optional<double> eps) {
                return Combine(a, b, ShapeOperation::Intersection, eps);
            },
            py::arg("other"), epsArg, "The common part, with true arcs (also a & b).")
        .def(
            "__or__",
            [](const ShapeValue& a, const ShapeValue& b) {
                return Combine(a, b, ShapeOperation::Union, std::nullopt);
            },
            py::is_operator())
        .def(
            "__sub__",
            [](const ShapeValue& a, const ShapeValue& b) {
                return Combine(a, b, ShapeOperation::Difference, std::nullopt);
            },
            py::is_operator())
        .def(
            "__and__",
            [](const ShapeValue& a, const ShapeValue& b) {
                return Combine(a, b, ShapeOperation::Intersection, std::nullopt);
            },
            py::is_operator())
        .def(
            "normalized",
            [](const ShapeValue& s, std::optional<double> eps) {
                const double e = ChooseEps(eps, *s.tree);
                return WithoutInterpreter([&] { return Own(NormalizeShape(*s.tree, e), s.unit); });
            },
            epsArg, "The shape rebuilt by the solver, with overlaps and crossings resolved.")
        .def(
            "simplified",
            [](const ShapeValue& s, std::optional<double> eps) {
                const double e = ChooseEps(eps, *s.tree);
                return WithoutInterpreter([&] { return Own(Simplified(*s.tree, e), s.unit); });
            },
            epsArg,
            "Straight edges on one line and arcs of one circle merged; the area is kept to "
            "1e-12.")
        .def(
            "translated",
            [](const ShapeValue& s, double dx, double dy) {
                return Locked([&] { return Own(Translated(*s.tree, dx, dy), s.unit); });
            },
            py::arg("dx"), py::arg("dy"), "A copy moved by (dx, dy).")
        .def(
            "rotated",
            [](const ShapeValue& s, double angle, const XY& about) {
                return Locked([&] { return Own(Rotated(*s.tree, angle, ToPoint(about)), s.unit); });
            },
            py::arg("angle"), py::arg("about") = XY{0.0, 0.0},
            "A copy turned counter-clockwise by angle radians about a point.")
        .def(
            "above",
            [](const ShapeValue& s, double level, std::optional<double> eps) {
                const double e = ChooseEps(eps, *s.tree);
                return WithoutInterpreter(
                    [&] { return Own(PartAbove(*s.tree, level, e), s.unit); });
            },
            py::arg("y"), epsArg, "The part at or above the line y = const.")
        .def(
            "right_of",
            [](const ShapeValue& s, double level, std::optional<double> eps) {
                const double e = ChooseEps(eps, *s.tree);
                return WithoutInterpreter(
                    [&] { return Own(PartRightOf(*s.tree, level, e), s.unit); });
            },
            py::arg("x"), epsArg, "The part at or right of the line x = const.")
        .def(
            "segment_inside",
            [](const ShapeValue& s, const XY& begin, const XY& end, std::optional<double> eps) {
                const double e = ChooseEps(eps, *s.tree);
                const std::vector<Sector2> inside = WithoutInterpreter([&] {
                    return SegmentInsideShape(*s.tree, Sector2(ToPoint(begin), ToPoint(end)), e);
                });
                std::vector<std::pair<XY, XY>> pieces;
                for (const Sector2& p : inside)
                    pieces.emplace_back(ToXY(p.get_beg()), ToXY(p.get_end()));
                return pieces;
            },
            py::arg("begin"), py::arg("end"), epsArg,
            "The pieces of the segment inside the shape (boundary included), from begin on.")
        .def(
            "problems",
            [](const ShapeValue& s, std::optional<double> eps) {
                const double e = ChooseEps(eps, *s.tree);
                return WithoutInterpreter([&] { return ShapeProblems(*s.tree, e); });
            },
            epsArg,
            "Why the shape is not a valid tree of solids and holes, one line per problem; empty "
            "when it is.")
        .def(
            "is_valid",
            [](const ShapeValue& s, std::optional<double> eps) {
                const double e = ChooseEps(eps, *s.tree);
                return WithoutInterpreter([&] { return ShapeProblems(*s.tree, e).empty(); });
            },
            epsArg, "True when problems() is empty.")
        .def("same_region", &SameRegion, py::arg("other"), py::arg("rel_tol") = 1e-9,
             py::arg("abs_tol") = 0.0, epsArg,
             "True when both shapes cover the same region: the area of their symmetric\n"
             "difference is at most max(rel_tol * the larger area, abs_tol).")
        .def(
            "to_text",
            [](const ShapeValue& s, std::optional<std::wstring> unit, bool full) {
                return ShapeToText(*s.tree, unit, full);
            },
            py::arg("unit") = py::none(), py::kw_only(), py::arg("full_precision") = false,
            "The shape as contour text, with the unit name in front when one is given. Numbers\n"
            "have six decimals, or with full_precision 17 significant digits. Arcs are stored by\n"
            "centre, radius and angles, so a shape read back matches to the last digits, and a\n"
            "six-decimal text written from a shape read from text reads back to the same text.")
        .def(
            "approximate",
            [](const ShapeValue& s, int circleSteps, int smallSteps, double smallLimit) {
                py::list out;
                auto add = [&](const LAContour& c) {
                    out.append(PointArray(
                        ApproximatePoints(c, true, circleSteps, smallSteps, smallLimit)));
                };
                for (unsigned long i = 0; i < s.tree->ChildrenCount(); ++i) {
                    const ProSolidContour* solid = s.tree->SolidChild(i);
                    if (solid == nullptr) continue;
                    add(solid->GetLAContour());
                    for (unsigned long j = 0; j < solid->ChildrenCount(); ++j)
                        if (const ProClosedContour* h = solid->ClosedChild(j))
                            add(h->GetLAContour());
                }
                return out;
            },
            py::arg("circle_steps") = 72, py::arg("small_steps") = 18,
            py::arg("small_limit") = std::numbers::pi / 2,
            (std::string(kApproximateDoc) +
             "\nReturns one (n, 2) float array per boundary: each solid's outline, then its "
             "holes.")
                .c_str())
        .def("__eq__",
             [](const ShapeValue&, const py::object&) -> bool {
                 throw py::type_error(
                     "shapes are not compared with ==: use same_region() or compare to_text()");
             })
        // Hashed by identity, so shapes still serve as keys of dicts and members of sets.
        .def("__hash__",
             [](const py::object& self) { return reinterpret_cast<std::intptr_t>(self.ptr()); })
        .def("__copy__", [](const py::object& self) { return self; })
        .def("__deepcopy__", [](const py::object& self, const py::object&) { return self; })
        .def(py::pickle(
            [](const ShapeValue& s) {
                return py::make_tuple(ShapeToText(*s.tree, std::nullopt, true), s.unit);
            },
            [](const py::tuple& state) {
                if (state.size() != 2) throw py::value_error("not a pickled Shape");
                const auto text = state[0].cast<std::wstring>();
                ShapeValue s = WithoutInterpreter([&] { return ShapeFromText(text); });
                s.unit = state[1].cast<std::optional<std::wstring>>();
                return s;
            }))
        .def("__repr__", &ShapeRepr);

    m.def(
        "solve",
        [](const py::iterable& elements, double eps) {
            if (!std::isfinite(eps) || !(eps > 0.0))
                throw py::value_error("eps must be a positive finite number");
            const std::vector<LooseElement> list = ToElements(elements);
            return WithoutInterpreter([&] {
                SolvedShape solved = SolveElements(list, eps);
                std::vector<PolylineView> polylines;
                for (LAContour& p : solved.polylines) polylines.push_back({std::move(p)});
                return std::make_pair(Own(std::move(solved.shape)), std::move(polylines));
            });
        },
        py::arg("elements"), py::arg("eps"),
        "Loose lines and arcs to a shape: points closer than eps are merged, elements are split\n"
        "where they cross, the bounded faces are found and nested into solids and holes.\n"
        "Returns (shape, polylines): the polylines are the chains that bound no face.");

    m.def(
        "union_all",
        [](const py::iterable& shapes, std::optional<double> eps) {
            std::vector<ShapeValue> list;
            for (const py::handle s : shapes) list.push_back(s.cast<ShapeValue>());
            if (list.empty()) return EmptyShape();
            std::optional<std::wstring> unit = list.front().unit;
            double e = 0.0;
            std::vector<const ProComplexContour*> trees;
            for (const ShapeValue& s : list) {
                unit = CommonUnit(ShapeValue{s.tree, unit}, s);
                trees.push_back(s.tree.get());
                e = std::max(e, ChooseEps(eps, *s.tree));
            }
            return WithoutInterpreter([&] { return Own(ShapeUnion(trees, e), unit); });
        },
        py::arg("shapes"), epsArg, "The union of any number of shapes.");
}

}  // namespace quillon::python
