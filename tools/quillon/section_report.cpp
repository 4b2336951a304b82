#include "tools/quillon/section_report.h"

#include <cmath>
#include <numbers>

#include "quillon/platform/text.h"
#include "quillon/sections/contour_props.h"
#include "quillon/units/munit.h"
#include "tools/quillon/loose_elements.h"
#include "tools/quillon/shape_output.h"

namespace quillon::tool {

namespace {

using munit::MUNIT_TYPES;

// Quantity types of the catalogue the report shows: a length, an area, a section modulus (length
// cubed), a second moment (length to the fourth) and an angle.
constexpr auto kLength = static_cast<MUNIT_TYPES>(7);
constexpr auto kArea = static_cast<MUNIT_TYPES>(12);
constexpr auto kCube = static_cast<MUNIT_TYPES>(33);
constexpr auto kFourth = static_cast<MUNIT_TYPES>(30);
constexpr auto kAngle = static_cast<MUNIT_TYPES>(17);

// Puts the shown unit into the catalogue's type table for the quantities of the report.
void chooseUnits(munit::MUnit& units, const std::wstring& unit) {
    const bool metres = unit == L"m";
    const int lengthDigits = unit == L"mm" ? 2 : (unit == L"cm" ? 3 : 5);
    auto set = [&](MUNIT_TYPES id, int precision, const std::wstring& u1, const std::wstring& u2,
                   const std::wstring& u3, bool exponential) {
        if (units.SetTypeUnit(id, precision, u1, u2, u3, exponential) != 0) {
            units.ModifyTypeUnit(id, precision, u1, u2, u3, exponential);
        }
    };
    set(kLength, lengthDigits, unit, L"", L"", false);
    set(kArea, metres ? 4 : lengthDigits, unit, unit, L"", metres);
    set(kCube, metres ? 4 : lengthDigits - 1, unit, unit, unit, metres);
    set(kFourth, metres ? 4 : lengthDigits - 1, unit, L"", L"", metres);
    set(kAngle, 2, L"Deg", L"", L"", false);
    units.UpDateUnit();
}

}  // namespace

bool SectionReport(const ProComplexContour& shape, const std::string& drawingUnit,
                   const std::string& shownUnit, std::string& text) {
    if (!munit::GetMInit()) munit::InitMInit(true);
    munit::MUnit units;
    chooseUnits(units, platform::FromUtf8(shownUnit));

    const SectionFigures f = CalcSectionFigures(shape);
    const Rect2 box = ContourExtents(shape);
    const double k = UnitLength(drawingUnit);  // drawing unit to metres

    bool fits = true;
    auto show = [&](MUNIT_TYPES id, double drawingValue, int power) {
        const double si = drawingValue * std::pow(k, power);
        const double factor = power == 0 ? 1.0 : std::pow(UnitLength(shownUnit), power);
        fits = fits && std::isfinite(si) && std::isfinite(si / factor);
        return platform::ToUtf8(
            units.CnvUnitSIToText(id, si, munit::BASIC_FROM_SI, munit::SEPARATOR_TO_POINT) + L" " +
            units.GetFullNameUnit(id, false));
    };
    auto line = [](const char* name, const char* symbol, const std::string& value) {
        return platform::FormatC("  %-38s %-9s %s\n", name, symbol, value.c_str());
    };

    std::string s;
    if (!f.valid) {
        text = "the shape encloses no area";
        return false;
    }
    s += line("area", "A", show(kArea, f.area, 2));
    s += line("centroid x", "xc", show(kLength, f.centroid.x, 1));
    s += line("centroid y", "yc", show(kLength, f.centroid.y, 1));
    s += line("second moment about centroidal x", "Ix", show(kFourth, f.Ixc, 4));
    s += line("second moment about centroidal y", "Iy", show(kFourth, f.Iyc, 4));
    s += line("product moment", "Ixy", show(kFourth, f.Ixyc, 4));
    s += line("major principal moment", "I1", show(kFourth, f.I1, 4));
    s += line("minor principal moment", "I2", show(kFourth, f.I2, 4));
    s += line("principal angle (major axis from x)", "alpha", show(kAngle, f.alpha, 0));
    s += line("radius of gyration about x", "rx", show(kLength, f.rx, 1));
    s += line("radius of gyration about y", "ry", show(kLength, f.ry, 1));
    s += line("elastic modulus about x, top fibre", "Wx,top", show(kCube, f.Wx_top, 3));
    s += line("elastic modulus about x, bottom fibre", "Wx,bot", show(kCube, f.Wx_bottom, 3));
    s += line("elastic modulus about y, right fibre", "Wy,right", show(kCube, f.Wy_right, 3));
    s += line("elastic modulus about y, left fibre", "Wy,left", show(kCube, f.Wy_left, 3));
    s += line("extents x", "",
              show(kLength, box.pnt1().x, 1) + " to " + show(kLength, box.pnt2().x, 1));
    s += line("extents y", "",
              show(kLength, box.pnt1().y, 1) + " to " + show(kLength, box.pnt2().y, 1));
    if (!fits) {
        text = "the figures overflow in " + shownUnit + ": the shape is too large to measure";
        return false;
    }
    text = WithoutNegativeZeros(s);
    return true;
}

}  // namespace quillon::tool
