// quillon.Solid: closed polyhedral solids made from shapes — plates extruded from their outlines
// with holes, bolt holes drilled through them, cuts by planes, booleans — with their volume, their
// mesh as numpy arrays and the OBJ exchange.
//
// A Solid holds its boundary model by value; operations give new solids. Arcs of the shapes become
// 48 straight pieces per full turn (the extrusion's approximation), so volumes differ from the
// exact ones by that much. A boolean the solid engine cannot finish (operands that touch in a way
// it cannot decide, or a result that would not be closed) raises RuntimeError with the engine's
// error bits; the operands are left as they were.
#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <map>
#include <stdexcept>
#include <string>

#include "python/src/bindings.h"
#include "python/src/library_lock.h"
#include "python/src/shape_value.h"
#include "quillon/geometry/contours/pro_contour.h"
#include "quillon/geometry/plane/angles.h"
#include "quillon/geometry/space/extrusion3.h"
#include "quillon/geometry/space/half_space3.h"
#include "quillon/geometry/space/local3.h"
#include "quillon/geometry/space/solid3.h"
#include "quillon/geometry/space/solid3_inter.h"

namespace py = pybind11;

namespace quillon::python {
namespace {

struct SolidValue {
    Solid3 solid;
};

// The merge tolerance of solids made from a shape: the shape's own default tolerance, no finer
// than 1e-9, so that vertices the solver kept apart stay apart and rounding noise still merges.
double SolidEps(const ShapeValue& s, std::optional<double> eps) {
    return std::max(1e-9, ChooseEps(eps, *s.tree));
}

void RequireFinite(std::initializer_list<double> values, const char* what) {
    for (double v : values)
        if (!std::isfinite(v)) throw std::invalid_argument(std::string(what) + " must be finite");
}

// Every solid of the shape with its holes swept from z up by `thickness`, in one boundary model
// (the pieces are disjoint, so their faces share no vertex).
SolidValue Extrude(const ShapeValue& s, double thickness, double z, std::optional<double> eps) {
    RequireFinite({thickness, z}, "thickness and z");
    if (thickness == 0.0) throw std::invalid_argument("thickness must not be zero");
    const double e = SolidEps(s, eps);
    SolidValue out{Solid3(e)};
    WithoutInterpreter([&] {
        for (unsigned long i = 0; i < s.tree->ChildrenCount(); ++i) {
            const ProSolidContour* piece = s.tree->SolidChild(i);
            if (piece == nullptr) continue;
            Extrusion3 item(e);
            item.SetLocalPlane(LocalPlane(Point3(0, 0, z), Vector3(0, 0, 1)));
            item.SetOuterContour(piece->GetLAContour());
            for (unsigned long j = 0; j < piece->ChildrenCount(); ++j)
                if (const ProClosedContour* hole = piece->ClosedChild(j))
                    item.AddInnerContour(hole->GetLAContour());
            item.SetPath(Vector3(0, 0, thickness));
            out.solid.Merge(item.GetSolid());
        }
        out.solid.GenerateEdges();
    });
    return out;
}

SolidValue Boolean(const SolidValue& a, const SolidValue& b, EBOOL_OPER op) {
    SolidValue out{Solid3(a.solid.GetEps())};
    bool ok = false;
    int status = 0;
    WithoutInterpreter([&] {
        Solid3Inter inter(a.solid, b.solid);
        ok = inter.MakeInterData() && inter.BoolOper(op, out.solid);
        status = inter.GetErrorStat();
    });
    if (!ok) {
        char bits[32];
        std::snprintf(bits, sizeof bits, "0x%x", static_cast<unsigned>(status));
        throw std::runtime_error(std::string("the solid boolean failed (error bits ") + bits + ")");
    }
    return out;
}

// A round hole of `diameter` at (x, y) through the whole height of the solid.
SolidValue Drill(const SolidValue& s, double x, double y, double diameter) {
    RequireFinite({x, y, diameter}, "hole position and diameter");
    if (!(diameter > 0.0)) throw std::invalid_argument("the hole diameter must be positive");
    Point3 lo, hi;
    if (!s.solid.GetExtents(lo, hi)) return s;
    const double r = diameter / 2.0, margin = 1.0 + (hi.z - lo.z);
    LAContour circle;
    circle.push_back(LAEdge(Point2(x + r, y), Point2(x, y), kPi));
    circle.push_back(LAEdge(Point2(x - r, y), Point2(x, y), kPi));
    Extrusion3 hole(s.solid.GetEps());
    hole.SetLocalPlane(LocalPlane(Point3(0, 0, lo.z - margin), Vector3(0, 0, 1)));
    hole.SetOuterContour(circle);
    hole.SetPath(Vector3(0, 0, hi.z - lo.z + 2 * margin));
    return Boolean(s, SolidValue{hole.GetSolid()}, BOOL_SUBTRACT);
}

// Removes what lies on the side of the plane opposite its normal (up to 1000 deep and 1000 either
// way of the point: the half-space model), keeping what the normal points to.
SolidValue Cut(const SolidValue& s, const std::array<double, 3>& p,
               const std::array<double, 3>& n) {
    RequireFinite({p[0], p[1], p[2], n[0], n[1], n[2]}, "the plane's point and normal");
    const Vector3 normal(n[0], n[1], n[2]);
    if (!(normal.length() > 0.0))
        throw std::invalid_argument("the plane's normal must not be zero");
    const HalfSpace3 half(Plane3(Point3(p[0], p[1], p[2]), normal), s.solid.GetEps());
    return Boolean(s, SolidValue{half.GetSolid()}, BOOL_SUBTRACT);
}

py::array_t<double> Vertices(const SolidValue& s) {
    const auto& v = s.solid.Vertex();
    py::array_t<double> out({static_cast<py::ssize_t>(v.size()), py::ssize_t{3}});
    auto w = out.mutable_unchecked<2>();
    for (std::size_t i = 0; i < v.size(); ++i) {
        const auto k = static_cast<py::ssize_t>(i);
        w(k, 0) = v[i].point.x;
        w(k, 1) = v[i].point.y;
        w(k, 2) = v[i].point.z;
    }
    return out;
}

// Every face (with its holes) as triangles turning as the face does: rows of vertex indices.
py::array_t<std::int64_t> Triangles(const SolidValue& s) {
    std::vector<std::array<std::int64_t, 3>> rows;
    for (std::size_t f = 0; f < s.solid.Face().size(); ++f) {
        Mmatrix<std::size_t> tri;
        if (!s.solid.TriangulateFace(f, tri)) continue;
        for (const auto& t : tri)
            rows.push_back({static_cast<std::int64_t>(t[0]), static_cast<std::int64_t>(t[1]),
                            static_cast<std::int64_t>(t[2])});
    }
    py::array_t<std::int64_t> out({static_cast<py::ssize_t>(rows.size()), py::ssize_t{3}});
    auto w = out.mutable_unchecked<2>();
    for (std::size_t i = 0; i < rows.size(); ++i)
        for (py::ssize_t j = 0; j < 3; ++j) w(static_cast<py::ssize_t>(i), j) = rows[i][j];
    return out;
}

std::array<double, 6> Bounds3(const SolidValue& s) {
    Point3 lo, hi;
    if (!s.solid.GetExtents(lo, hi)) return {0, 0, 0, 0, 0, 0};
    return {lo.x, lo.y, lo.z, hi.x, hi.y, hi.z};
}

// Edges run once each way: what GetClosed reports after an OBJ read, computed afresh.
bool IsClosed(const SolidValue& s) {
    std::map<std::pair<std::uint32_t, std::uint32_t>, int> runs;
    const auto add = [&](const Mvector<std::uint32_t>& l) {
        for (std::size_t i = 0; i < l.size(); ++i) ++runs[{l[i], l[(i + 1) % l.size()]}];
    };
    for (const Face3& f : s.solid.Face()) {
        add(f.loop);
        for (const auto& h : f.holes) add(h);
    }
    if (runs.empty()) return false;
    for (const auto& [edge, n] : runs) {
        const auto back = runs.find({edge.second, edge.first});
        if (n != 1 || back == runs.end() || back->second != 1) return false;
    }
    return true;
}

}  // namespace

void BindSolids(py::module_& m) {
    py::class_<SolidValue>(
        m, "Solid",
        "A closed polyhedral solid: plates extruded from shapes, drilled, cut and combined.\n"
        "Operations give new solids; a boolean the engine cannot finish raises RuntimeError.")
        .def_static(
            "extrude", &Extrude, py::arg("shape"), py::arg("thickness"), py::arg("z") = 0.0,
            py::arg("eps") = py::none(),
            "Every solid of the shape with its holes swept from height z by thickness (arcs in\n"
            "48 pieces per turn). eps is the vertex merge tolerance (default: the shape's).")
        .def_static(
            "from_obj",
            [](const std::filesystem::path& path) {
                SolidValue out{Solid3(1e-9)};
                int ok = 0;
                WithoutInterpreter([&] { ok = out.solid.ImportFromObj(path); });
                if (!ok) throw std::invalid_argument("not a readable OBJ file: " + path.string());
                return out;
            },
            py::arg("path"), "Reads a Wavefront OBJ file; ValueError when it does not read.")
        .def("drill", &Drill, py::arg("x"), py::arg("y"), py::arg("diameter"),
             "A round hole at (x, y) through the whole height (48 pieces per turn).")
        .def("cut", &Cut, py::arg("point"), py::arg("normal"),
             "Removes what lies behind the plane through point (opposite the normal), up to\n"
             "1000 from the point; keeps what the normal points to.")
        .def("__or__",
             [](const SolidValue& a, const SolidValue& b) { return Boolean(a, b, BOOL_UNION); })
        .def("__and__",
             [](const SolidValue& a, const SolidValue& b) { return Boolean(a, b, BOOL_INTERSECT); })
        .def("__sub__",
             [](const SolidValue& a, const SolidValue& b) { return Boolean(a, b, BOOL_SUBTRACT); })
        .def_property_readonly(
            "volume", [](const SolidValue& s) { return s.solid.GetVolume(); },
            "The enclosed volume (meaningful when closed).")
        .def_property_readonly("closed", &IsClosed, "Every edge run once in each direction.")
        .def_property_readonly("bounds", &Bounds3, "(xmin, ymin, zmin, xmax, ymax, zmax).")
        .def_property_readonly(
            "face_count", [](const SolidValue& s) { return s.solid.Face().size(); },
            "Number of faces (a face may have holes).")
        .def_property_readonly("vertices", &Vertices, "The vertices as an (n, 3) float array.")
        .def("triangles", &Triangles,
             "Every face as triangles: an (m, 3) array of vertex indices, each turning as its\n"
             "face does (clockwise seen from outside).")
        .def(
            "to_obj",
            [](const SolidValue& s, const std::filesystem::path& path) {
                int ok = 0;
                WithoutInterpreter([&] { ok = s.solid.SavetoObj(path); });
                if (!ok) throw std::runtime_error("cannot write the OBJ file " + path.string());
            },
            py::arg("path"), "Writes the solid as a Wavefront OBJ file.")
        .def("__repr__", [](const SolidValue& s) {
            return "<Solid " + std::to_string(s.solid.Vertex().size()) + " vertices, " +
                   std::to_string(s.solid.Face().size()) + " faces>";
        });
}

}  // namespace quillon::python
