#include "tools/quillon/loose_elements.h"

#include <cmath>
#include <sstream>

#include "quillon/geometry/contours/contour_validate.h"
#include "quillon/geometry/plane/angles.h"
#include "quillon/platform/text.h"

namespace quillon::tool {

namespace {

// The numbers of one line; false when one of them is not a complete finite number.
bool readNumbers(std::istringstream& words, std::vector<double>& out, std::size_t count,
                 std::string& bad) {
    std::string word;
    while (out.size() < count && words >> word) {
        std::size_t used = 0;
        const double v = platform::LeadingDouble(word, &used);
        if (used != word.size() || !std::isfinite(v)) {
            bad = word;
            return false;
        }
        out.push_back(v);
    }
    return out.size() == count && !(words >> word ? (bad = word, true) : false);
}

double sweepBetween(const Point2& start, const Point2& end, const Point2& centre, bool ccw) {
    double a = std::atan2(end.y - centre.y, end.x - centre.x) -
               std::atan2(start.y - centre.y, start.x - centre.x);
    if (ccw) {
        while (a <= 0) a += kTwoPi;
    } else {
        while (a >= 0) a -= kTwoPi;
    }
    return a;
}

}  // namespace

double UnitLength(const std::string& unit) {
    if (unit == "mm") return 0.001;
    if (unit == "cm") return 0.01;
    if (unit == "m") return 1.0;
    return 0.0;
}

bool ReadLooseDrawing(std::istream& in, LooseDrawing& drawing, ReadError& error) {
    drawing = LooseDrawing{};
    std::string text;
    int number = 0;
    auto fail = [&](std::string message) {
        error = {number, std::move(message)};
        return false;
    };
    while (std::getline(in, text)) {
        ++number;
        if (const auto hash = text.find('#'); hash != std::string::npos) text.resize(hash);
        std::istringstream words(text);
        std::string keyword;
        if (!(words >> keyword)) continue;
        std::vector<double> v;
        std::string bad;
        auto numbers = [&](std::size_t count, const char* form) {
            if (readNumbers(words, v, count, bad)) {
                for (const double x : v)
                    if (std::fabs(x) > kMaxContourCoordinate)
                        return fail(
                            platform::FormatC("%g is beyond %g: areas and moments would "
                                              "overflow",
                                              x, kMaxContourCoordinate));
                return true;
            }
            std::string message = std::string("expected \"") + form + "\"";
            if (!bad.empty()) message += ", found \"" + bad + "\"";
            return fail(message);
        };
        LooseElement e;
        if (keyword == "units") {
            std::string unit, extra;
            if (!(words >> unit) || UnitLength(unit) == 0.0 || (words >> extra)) {
                return fail("expected \"units mm|cm|m\"");
            }
            drawing.unit = unit;
            continue;
        }
        if (keyword == "line") {
            if (!numbers(4, "line x1 y1 x2 y2")) return false;
            e.kind = LooseElement::Line;
            e.begin = Point2(v[0], v[1]);
            e.end = Point2(v[2], v[3]);
        } else if (keyword == "arc") {
            if (!numbers(7, "arc x1 y1 x2 y2 cx cy sweep")) return false;
            e.kind = LooseElement::Arc;
            e.begin = Point2(v[0], v[1]);
            e.end = Point2(v[2], v[3]);
            e.centre = Point2(v[4], v[5]);
            const double r1 = e.begin.distance(e.centre);
            const double r2 = e.end.distance(e.centre);
            if (v[6] == 0.0 || r1 == 0.0) return fail("an arc needs a radius and a non-zero sweep");
            if (std::fabs(r1 - r2) > 1e-3 * std::max(r1, r2)) {
                return fail("the arc's ends are not at the same distance from its centre");
            }
            const bool full = std::fabs(std::fabs(v[6]) - 360.0) < 1e-9;
            if (full) {
                if (e.begin.distance(e.end) > 1e-9 * r1) {
                    return fail("a 360 degree arc must end where it starts");
                }
                e.sweep = v[6] > 0 ? kTwoPi : -kTwoPi;
            } else {
                e.sweep = sweepBetween(e.begin, e.end, e.centre, v[6] > 0);
                if (std::fabs(std::fabs(e.sweep) * 180.0 / kPi - std::fabs(v[6])) > 0.5) {
                    return fail("the sweep does not match the arc's ends");
                }
            }
        } else if (keyword == "arc3") {
            if (!numbers(6, "arc3 x1 y1 xm ym x2 y2")) return false;
            const Arc2 arc(Point2(v[0], v[1]), Point2(v[4], v[5]), Point2(v[2], v[3]));
            if (!arc.is_valid() || !(arc.get_circle().get_radius() <= kMaxContourCoordinate))
                return fail("the three points of the arc lie on one line");
            e.kind = LooseElement::Arc;
            e.begin = Point2(v[0], v[1]);
            e.end = Point2(v[4], v[5]);
            e.centre = arc.get_circle().get_center();
            e.sweep = arc.get_angle();
        } else if (keyword == "circle") {
            if (!numbers(3, "circle cx cy r")) return false;
            if (!(v[2] > 0.0)) return fail("a circle needs a positive radius");
            e.kind = LooseElement::Arc;
            e.centre = Point2(v[0], v[1]);
            e.begin = e.end = Point2(v[0] + v[2], v[1]);
            e.sweep = kTwoPi;
        } else {
            return fail("unknown element \"" + keyword + "\" (line, arc, arc3, circle, units)");
        }
        drawing.elements.push_back(e);
    }
    if (in.bad()) return fail("the input could not be read");
    return true;
}

}  // namespace quillon::tool
