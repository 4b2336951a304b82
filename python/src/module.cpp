// quillon._core: the compiled part of the Python package. The package's __init__ gathers it with
// the pure-Python parts (sections, units).
//
// Threads: calls that can take long (reading texts, solving, booleans, section figures) give up
// the interpreter lock while the library works and take the library lock instead
// (library_lock.h), so other Python threads run on while one thread's calls into the library
// follow one another.
#include <pybind11/pybind11.h>

#include "python/src/bindings.h"
#include "quillon/geometry/contours/contour_text.h"

namespace py = pybind11;

PYBIND11_MODULE(_core, m) {
    m.doc() =
        "Compiled core of quillon: shapes of lines and arcs, their booleans, sections, units,\n"
        "solids.";
    m.attr("__version__") = QUILLON_VERSION;

    // Malformed contour texts raise this ValueError with the reader's message and where it stopped.
    // Kept alive to the end of the process: its type object must outlive the interpreter's last
    // use of it, and a static destroyed after the interpreter would release it too late.
    static auto* textError =
        new py::exception<quillon::ContourTextError>(m, "ContourTextError", PyExc_ValueError);
    textError->doc() =
        "A contour text that does not read: a ValueError with the reader's message, and the\n"
        "attributes code, origin ('token', 'edge' or 'contour'), line (from 0) and position.";
    py::register_exception_translator([](std::exception_ptr p) {
        try {
            if (p) std::rethrow_exception(p);
        } catch (const quillon::ContourTextError& e) {
            const char* origin = e.origin == quillon::ContourTextError::Origin::token  ? "token"
                                 : e.origin == quillon::ContourTextError::Origin::edge ? "edge"
                                                                                       : "contour";
            const py::handle type = textError->ptr();
            py::object error = type(std::string("not a contour text: ") + e.what());
            error.attr("code") = e.code;
            error.attr("origin") = origin;
            error.attr("line") = e.line;
            error.attr("position") = e.position;
            PyErr_SetObject(textError->ptr(), error.ptr());
        }
    });

    quillon::python::BindContours(m);
    quillon::python::BindShapes(m);
    quillon::python::BindSections(m);
    quillon::python::BindUnits(m);
    quillon::python::BindSolids(m);
}
