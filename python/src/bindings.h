// The parts of the compiled module quillon._core, each adding its classes and functions. Python
// names are snake_case; every public name carries a docstring and appears in _core.pyi.
#pragma once

#include <pybind11/pybind11.h>

namespace quillon::python {

void BindContours(pybind11::module_& m);  // Edge, Contour, Polyline, Line, Arc
void BindShapes(pybind11::module_& m);    // Shape, solve, union_all (after BindContours)
void BindSections(pybind11::module_& m);  // the raw section figures behind quillon.section
void BindUnits(pybind11::module_& m);     // the calls behind quillon.units
void BindSolids(pybind11::module_& m);    // Solid (after BindShapes)

}  // namespace quillon::python
