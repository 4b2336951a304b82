// The section figures of a shape as the library computes them (contour_props.h), in the shape's
// own coordinates; quillon.section turns them into a frozen dataclass in the caller's units.
#include <pybind11/pybind11.h>

#include "python/src/bindings.h"
#include "python/src/library_lock.h"
#include "python/src/shape_value.h"
#include "quillon/sections/contour_props.h"

namespace py = pybind11;

namespace quillon::python {

void BindSections(py::module_& m) {
    m.def(
        "_section_figures",
        [](const ShapeValue& s) {
            SectionFigures f;
            M_SECT_PROPStr props;
            Rect2 box;
            WithoutInterpreter([&] {
                f = CalcSectionFigures(*s.tree);
                props = CalcProps(*s.tree);
                box = ContourExtents(*s.tree);
            });
            py::dict d;
            d["valid"] = f.valid;
            d["area"] = f.area;
            d["perimeter"] = props.perimeter;
            d["centroid"] = py::make_tuple(f.centroid.x, f.centroid.y);
            d["ix"] = f.Ixc;
            d["iy"] = f.Iyc;
            d["ixy"] = f.Ixyc;
            d["i1"] = f.I1;
            d["i2"] = f.I2;
            d["alpha"] = f.alpha;
            d["rx"] = f.rx;
            d["ry"] = f.ry;
            d["r1"] = f.r1;
            d["r2"] = f.r2;
            d["wx_top"] = f.Wx_top;
            d["wx_bottom"] = f.Wx_bottom;
            d["wy_right"] = f.Wy_right;
            d["wy_left"] = f.Wy_left;
            d["wx"] = f.Wx;
            d["wy"] = f.Wy;
            d["bounds"] = py::make_tuple(box.pnt1().x, box.pnt1().y, box.pnt2().x, box.pnt2().y);
            return d;
        },
        py::arg("shape"), "The section figures of a shape in its own coordinates, as a dict.");
}

}  // namespace quillon::python
