// Contours for Python: the edges, outlines and free polylines of shapes as read-only values, and
// the loose elements Line and Arc that solve() takes.
#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <cmath>
#include <numbers>
#include <optional>
#include <string>
#include <vector>

#include "python/src/bindings.h"
#include "python/src/shape_value.h"
#include "python/src/views.h"
#include "quillon/platform/text.h"
#include "quillon/sections/contour_props.h"

namespace py = pybind11;

namespace quillon::python {

namespace {

std::vector<EdgeView> ClosedEdges(const LAContour& c) {
    std::vector<EdgeView> edges;
    for (std::size_t i = 0; i < c.size(); ++i) {
        const LAEdge& e = c[i];
        edges.push_back({e, e.type == 1 ? e.end_arc() : c[(i + 1) % c.size()].start});
    }
    return edges;
}

std::vector<EdgeView> OpenEdges(const LAContour& c) {
    std::vector<EdgeView> edges;
    for (std::size_t i = 0; i + 1 < c.size(); ++i) {
        const LAEdge& e = c[i];
        edges.push_back({e, e.type == 1 ? e.end_arc() : c[i + 1].start});
    }
    return edges;
}

double EdgeLength(const EdgeView& e) {
    return e.edge.type == 1 ? e.edge.rad_arc() * std::fabs(e.edge.angle)
                            : e.edge.start.distance(e.end);
}

}  // namespace

py::array_t<double> PointArray(const std::vector<Point2>& points) {
    py::array_t<double> a({static_cast<py::ssize_t>(points.size()), py::ssize_t{2}});
    auto out = a.mutable_unchecked<2>();
    for (std::size_t i = 0; i < points.size(); ++i) {
        out(static_cast<py::ssize_t>(i), 0) = points[i].x;
        out(static_cast<py::ssize_t>(i), 1) = points[i].y;
    }
    return a;
}

void BindContours(py::module_& m) {
    py::class_<EdgeView>(m, "Edge", "One edge of a contour: a straight segment or a circular arc.")
        .def_property_readonly(
            "kind", [](const EdgeView& e) { return e.edge.type == 1 ? "arc" : "line"; },
            "'line' or 'arc'.")
        .def_property_readonly(
            "start", [](const EdgeView& e) { return ToXY(e.edge.start); }, "Where the edge starts.")
        .def_property_readonly(
            "end", [](const EdgeView& e) { return ToXY(e.end); },
            "Where it ends: the next edge's start, or an arc's start turned by its sweep.")
        .def_property_readonly(
            "centre",
            [](const EdgeView& e) -> std::optional<XY> {
                if (e.edge.type != 1) return std::nullopt;
                return ToXY(e.edge.centre);
            },
            "An arc's centre; None for a straight edge.")
        .def_property_readonly(
            "sweep", [](const EdgeView& e) { return e.edge.type == 1 ? e.edge.angle : 0.0; },
            "An arc's signed sweep in radians (counter-clockwise positive); 0 for a straight edge.")
        .def_property_readonly(
            "radius", [](const EdgeView& e) { return e.edge.type == 1 ? e.edge.rad_arc() : 0.0; },
            "An arc's radius; 0 for a straight edge.")
        .def_property_readonly("length", &EdgeLength, "Length along the edge.")
        .def("__repr__", [](const EdgeView& e) {
            if (e.edge.type != 1)
                return platform::FormatC("Edge.line((%.10g, %.10g) -> (%.10g, %.10g))",
                                         e.edge.start.x, e.edge.start.y, e.end.x, e.end.y);
            return platform::FormatC(
                "Edge.arc((%.10g, %.10g) -> (%.10g, %.10g), centre (%.10g, %.10g), sweep %.10g)",
                e.edge.start.x, e.edge.start.y, e.end.x, e.end.y, e.edge.centre.x, e.edge.centre.y,
                e.edge.angle);
        });

    py::class_<ContourView>(m, "Contour",
                            "A closed outline of straight edges and true circular arcs: a solid's "
                            "outline or a hole.")
        .def_property_readonly(
            "edges", [](const ContourView& c) { return ClosedEdges(c.geometry); },
            "The edges in order. Contours the solver made end with a zero-length edge back to "
            "the first point.")
        .def("__len__", [](const ContourView& c) { return c.geometry.size(); })
        .def_property_readonly(
            "area",
            [](const ContourView& c) { return std::fabs(CalcContourProps(c.geometry).area); },
            "Enclosed area, exact for arcs.")
        .def_property_readonly(
            "signed_area", [](const ContourView& c) { return CalcContourProps(c.geometry).area; },
            "Enclosed area, positive when the contour runs counter-clockwise.")
        .def_property_readonly(
            "length", [](const ContourView& c) { return CalcContourProps(c.geometry).perimeter; },
            "Length of the boundary, arcs as arcs.")
        .def_property_readonly(
            "is_clockwise", [](const ContourView& c) { return c.geometry.orientation() == 1; },
            "True when the contour runs clockwise (y up), as the solver writes every contour.")
        .def_property_readonly(
            "bounds",
            [](const ContourView& c) {
                BoundRect2 b;
                if (!c.geometry.get_bound_rect(b)) return ToBounds(kNaN, kNaN, kNaN, kNaN);
                return ToBounds(b.get_LB().x, b.get_LB().y, b.get_RT().x, b.get_RT().y);
            },
            "(xmin, ymin, xmax, ymax), arcs through their extreme points.")
        .def(
            "approximate",
            [](const ContourView& c, int circleSteps, int smallSteps, double smallLimit) {
                return PointArray(
                    ApproximatePoints(c.geometry, true, circleSteps, smallSteps, smallLimit));
            },
            py::arg("circle_steps") = 72, py::arg("small_steps") = 18,
            py::arg("small_limit") = std::numbers::pi / 2,
            (std::string(kApproximateDoc) +
             "\nReturns an (n, 2) float array that ends with its first point.")
                .c_str())
        .def(
            "to_text",
            [](const ContourView& c, bool full) {
                LAContourWriter writer;
                writer.SetFullPrecision(full);
                return writer.write(c.geometry);
            },
            py::kw_only(), py::arg("full_precision") = false,
            "The contour as contour text, e.g. '((L 0 0)(A 5 0 5 3.14 -3.14))'.")
        .def("__repr__", [](const ContourView& c) {
            return platform::FormatC("<Contour %zu edges, area %.10g>", c.geometry.size(),
                                     std::fabs(CalcContourProps(c.geometry).area));
        });

    py::class_<PolylineView>(m, "Polyline",
                             "An open chain of edges that bounds no face: what is left of a "
                             "drawing once its faces are found (overshoots, loose ends).")
        .def_property_readonly(
            "edges", [](const PolylineView& p) { return OpenEdges(p.geometry); }, "The edges.")
        .def("__len__", [](const PolylineView& p) { return OpenEdges(p.geometry).size(); })
        .def_property_readonly(
            "start",
            [](const PolylineView& p) {
                return p.geometry.empty() ? XY{kNaN, kNaN} : ToXY(p.geometry.Front().start);
            },
            "First point.")
        .def_property_readonly(
            "end",
            [](const PolylineView& p) {
                return p.geometry.empty() ? XY{kNaN, kNaN} : ToXY(p.geometry.Back().start);
            },
            "Last point.")
        .def_property_readonly(
            "length",
            [](const PolylineView& p) {
                double sum = 0.0;
                for (const EdgeView& e : OpenEdges(p.geometry)) sum += EdgeLength(e);
                return sum;
            },
            "Length along the chain.")
        .def(
            "approximate",
            [](const PolylineView& p, int circleSteps, int smallSteps, double smallLimit) {
                return PointArray(
                    ApproximatePoints(p.geometry, false, circleSteps, smallSteps, smallLimit));
            },
            py::arg("circle_steps") = 72, py::arg("small_steps") = 18,
            py::arg("small_limit") = std::numbers::pi / 2,
            (std::string(kApproximateDoc) + "\nReturns an (n, 2) float array from start to end.")
                .c_str())
        .def("__repr__", [](const PolylineView& p) {
            const auto edges = OpenEdges(p.geometry);
            if (edges.empty()) return std::string("<Polyline empty>");
            return platform::FormatC("<Polyline %zu edges from (%.10g, %.10g) to (%.10g, %.10g)>",
                                     edges.size(), edges.front().edge.start.x,
                                     edges.front().edge.start.y, edges.back().end.x,
                                     edges.back().end.y);
        });

    py::class_<LineElement>(m, "Line", "A loose straight segment of a drawing, for solve().")
        .def(py::init([](const XY& begin, const XY& end) {
                 return LineElement{ToPoint(begin), ToPoint(end)};
             }),
             py::arg("begin"), py::arg("end"))
        .def_property_readonly("begin", [](const LineElement& l) { return ToXY(l.begin); })
        .def_property_readonly("end", [](const LineElement& l) { return ToXY(l.end); })
        .def("__repr__", [](const LineElement& l) {
            return platform::FormatC("Line((%.10g, %.10g), (%.10g, %.10g))", l.begin.x, l.begin.y,
                                     l.end.x, l.end.y);
        });

    py::class_<ArcElement>(m, "Arc",
                           "A loose circular arc of a drawing, for solve(): from begin to end "
                           "about centre by the signed sweep (radians, counter-clockwise "
                           "positive). A whole turn with end at begin is a full circle.")
        .def(py::init([](const XY& begin, const XY& end, const XY& centre, double sweep) {
                 return ArcElement{ToPoint(begin), ToPoint(end), ToPoint(centre), sweep};
             }),
             py::arg("begin"), py::arg("end"), py::arg("centre"), py::arg("sweep"))
        .def_static(
            "circle",
            [](const XY& centre, double radius) {
                if (!(radius > 0.0) || !std::isfinite(radius))
                    throw py::value_error("a circle needs a positive finite radius");
                const Point2 start(centre[0] + radius, centre[1]);
                return ArcElement{start, start, ToPoint(centre), 2 * std::numbers::pi};
            },
            py::arg("centre"), py::arg("radius"), "A full circle.")
        .def_static(
            "through",
            [](const XY& begin, const XY& middle, const XY& end) {
                const Arc2 arc(ToPoint(begin), ToPoint(end), ToPoint(middle));
                if (!arc.is_valid()) throw py::value_error("the three points lie on one line");
                return ArcElement{ToPoint(begin), ToPoint(end), arc.get_circle().get_center(),
                                  arc.get_angle()};
            },
            py::arg("begin"), py::arg("middle"), py::arg("end"),
            "The arc from begin through middle to end.")
        .def_property_readonly("begin", [](const ArcElement& a) { return ToXY(a.begin); })
        .def_property_readonly("end", [](const ArcElement& a) { return ToXY(a.end); })
        .def_property_readonly("centre", [](const ArcElement& a) { return ToXY(a.centre); })
        .def_property_readonly("sweep", [](const ArcElement& a) { return a.sweep; })
        .def("__repr__", [](const ArcElement& a) {
            return platform::FormatC("Arc((%.10g, %.10g), (%.10g, %.10g), (%.10g, %.10g), %.10g)",
                                     a.begin.x, a.begin.y, a.end.x, a.end.y, a.centre.x, a.centre.y,
                                     a.sweep);
        });
}

}  // namespace quillon::python
