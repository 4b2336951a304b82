// A plate drawn as loose lines and a circle becomes a solid with a hole, is stored as contour text
// and measured exactly. This is the "use it from your code" example of the README; CI builds it
// against the installed package and through add_subdirectory.
#include <cmath>
#include <cstdio>
#include <memory>
#include <numbers>
#include <vector>

#include "quillon/geometry/contours/contour_text.h"
#include "quillon/geometry/contours/las_solver.h"
#include "quillon/platform/text.h"
#include "quillon/sections/contour_props.h"

int main() {
    using namespace quillon;
    const double pi = std::numbers::pi;

    // 100 x 60 plate with an opening of radius 15; points closer than 1e-6 are one node.
    LAS_Solver solver(1e-6);
    solver.AddLine(Point2(0, 0), Point2(100, 0));
    solver.AddLine(Point2(100, 0), Point2(100, 60));
    solver.AddLine(Point2(100, 60), Point2(0, 60));
    solver.AddLine(Point2(0, 60), Point2(0, 0));
    solver.AddArc(Point2(65, 30), Point2(65, 30), Point2(50, 30), 2 * pi);
    solver.SplitEdges();

    // Faces of the drawing, then nested into solids and holes. The caller owns every result.
    ProContourFactory factory;
    std::vector<ProClosedContour*> faces;
    std::vector<LAContour*> polylines;
    solver.FindContours({}, &factory, faces, polylines);
    LAS_Solver nesting(1e-6);
    std::unique_ptr<ProComplexContour> plate(nesting.Set(faces, &factory, false));
    for (ProClosedContour* f : faces) delete f;
    for (LAContour* p : polylines) delete p;

    const std::wstring text = ProComplexContourAndUnitWriter(L"mm").write(*plate);
    const SectionFigures f = CalcSectionFigures(*plate);
    std::printf("%s\narea %.4f mm2, centroid (%.4f, %.4f), Ix %.2f mm4\n",
                platform::ToUtf8(text).c_str(), f.area, f.centroid.x, f.centroid.y, f.Ixc);
    const double expected = 100.0 * 60.0 - pi * 15.0 * 15.0;
    return std::fabs(f.area - expected) < 1e-9 * expected ? 0 : 1;
}
