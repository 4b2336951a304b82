// A plate drawn as loose lines and a circle becomes a solid with a hole, is stored as contour text
// and measured exactly. This is the "use it from your code" example of the README; CI builds it
// against the installed package and through add_subdirectory.
#include <cmath>
#include <cstdio>
#include <numbers>

#include "quillon/geometry/contours/contour_ops.h"
#include "quillon/platform/text.h"
#include "quillon/sections/contour_props.h"

int main() {
    using namespace quillon;
    const double pi = std::numbers::pi;

    // 100 x 60 plate with an opening of radius 15; points closer than 1e-6 are one node.
    const SolvedShape plate = SolveElements(
        {
            LooseElement::MakeLine({0, 0}, {100, 0}),
            LooseElement::MakeLine({100, 0}, {100, 60}),
            LooseElement::MakeLine({100, 60}, {0, 60}),
            LooseElement::MakeLine({0, 60}, {0, 0}),
            LooseElement::MakeArc({65, 30}, {65, 30}, {50, 30}, 2 * pi),
        },
        1e-6);

    // The shape is the caller's (a std::unique_ptr); so is everything the library returns.
    const std::wstring text = WriteShapeText(*plate.shape, L"mm");
    const SectionFigures f = CalcSectionFigures(*plate.shape);
    std::printf("%s\narea %.4f mm2, centroid (%.4f, %.4f), Ix %.2f mm4\n",
                platform::ToUtf8(text).c_str(), f.area, f.centroid.x, f.centroid.y, f.Ixc);
    const double expected = 100.0 * 60.0 - pi * 15.0 * 15.0;
    return std::fabs(f.area - expected) < 1e-9 * expected ? 0 : 1;
}
