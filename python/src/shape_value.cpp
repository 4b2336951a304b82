#include "python/src/shape_value.h"

#include <algorithm>
#include <cmath>
#include <mutex>
#include <stdexcept>

#include "python/src/library_lock.h"
#include "quillon/geometry/contours/contour_simplify.h"
#include "quillon/geometry/contours/contour_validate.h"
#include "quillon/platform/text.h"
#include "quillon/sections/contour_props.h"

namespace quillon::python {

namespace {

ShapePtr Copy(const ProComplexContour& shape) {
    std::unique_ptr<ProContour> copy(shape.Duplicate());
    if (auto* complex = dynamic_cast<ProComplexContour*>(copy.get())) {
        copy.release();
        return ShapePtr(complex);
    }
    return std::make_unique<ProComplexContour>();
}

// Calls f on every contour of the shape: each solid's outline, then its holes.
template <typename F>
void ForEachContour(const ProComplexContour& shape, F&& f) {
    for (unsigned long i = 0; i < shape.ChildrenCount(); ++i) {
        const ProSolidContour* solid = shape.SolidChild(i);
        if (solid == nullptr) continue;
        f(solid->GetLAContour());
        for (unsigned long j = 0; j < solid->ChildrenCount(); ++j) {
            if (const ProClosedContour* hole = solid->ClosedChild(j)) f(hole->GetLAContour());
        }
    }
}

// The larger side of the shape's bounds; 0 for an empty shape.
double Size(const ProComplexContour& shape) {
    if (shape.ChildrenCount() == 0) return 0.0;
    const Rect2 r = ContourExtents(shape);
    return std::max(r.pnt2().x - r.pnt1().x, r.pnt2().y - r.pnt1().y);
}

// Throws std::invalid_argument when a coordinate, centre or sweep of the shape is not finite or
// lies beyond kMaxContourCoordinate: the engine cannot work with such numbers.
void RequireUsableNumbers(const ProComplexContour& shape) {
    ForEachContour(shape, [](const LAContour& c) {
        for (const LAEdge& e : c) {
            const double x[] = {e.start.x, e.start.y, e.centre.x, e.centre.y, e.angle};
            for (double v : x) {
                if (!std::isfinite(v))
                    throw std::invalid_argument("the shape would get numbers that are not finite");
                if (std::fabs(v) > kMaxContourCoordinate)
                    throw std::invalid_argument(platform::FormatC(
                        "the shape would get coordinates beyond %g", kMaxContourCoordinate));
            }
        }
    });
}

bool Finite(const Corner& c) {
    return std::isfinite(c.x) && std::isfinite(c.y) && std::isfinite(c.radius);
}

// Twice the signed area of the corner polygon: positive counter-clockwise.
double SignedArea2(const std::vector<Corner>& corners) {
    double s = 0.0;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const Corner& a = corners[i];
        const Corner& b = corners[(i + 1) % corners.size()];
        s += a.x * b.y - b.x * a.y;
    }
    return s;
}

std::string CornerMessage(std::size_t index, const char* what) {
    return platform::FormatC("corner %zu %s", index + 1, what);
}

}  // namespace

ShapeValue Own(ShapePtr shape, std::optional<std::wstring> unit) {
    const std::lock_guard<std::recursive_mutex> lock(LibraryMutex());
    if (!shape) shape = std::make_unique<ProComplexContour>();
    // The last holder may be a Python object freed by the interpreter: the tree is freed under the
    // library lock wherever that happens, as freeing counts its nodes down.
    std::shared_ptr<const ProComplexContour> tree(shape.release(), [](const ProComplexContour* t) {
        const std::lock_guard<std::recursive_mutex> freeing(LibraryMutex());
        delete t;
    });
    return ShapeValue{std::move(tree), std::move(unit)};
}

ShapeValue EmptyShape() { return Own(nullptr); }

LAContour ContourThrough(const std::vector<Corner>& given) {
    for (std::size_t i = 0; i < given.size(); ++i) {
        if (!Finite(given[i])) throw std::invalid_argument(CornerMessage(i, "is not finite"));
        if (given[i].radius < 0.0)
            throw std::invalid_argument(CornerMessage(i, "has a negative radius"));
    }
    LAContour contour;
    if (given.size() == 1) {
        if (!(given[0].radius > 0.0))
            throw std::invalid_argument("a single point makes a circle only with a radius");
        LAContourFormer former(contour, nullptr, 2, -1.0);
        former.arc_point(given[0].x, given[0].y, given[0].radius);
        former.close();
        return contour;
    }
    if (given.size() < 3) throw std::invalid_argument("an outline needs at least three points");

    // Clockwise, as the solver writes its results: the order of the corners decides it, rounded
    // corners do not turn the outline round.
    std::vector<Corner> corners = given;
    if (SignedArea2(corners) > 0.0) std::reverse(corners.begin(), corners.end());

    double size = 1.0;
    for (const Corner& c : corners) size = std::max({size, std::fabs(c.x), std::fabs(c.y)});
    LAContourFormer former(contour, nullptr, 2, 1e-12 * size);
    const std::size_t n = corners.size();
    for (std::size_t i = 0; i < n; ++i) {
        const Corner& c = corners[i];
        if (!(c.radius > 0.0)) {
            former.line_point(c.x, c.y);
            continue;
        }
        // The former rounds a corner that turns by t with the radius r·cot(|t|/2); r = R·tan(|t|/2)
        // gives the radius R asked for at any angle.
        const Corner& b = corners[(i + n - 1) % n];
        const Corner& d = corners[(i + 1) % n];
        const double t = Vector2(c.x - b.x, c.y - b.y).angle(Vector2(d.x - c.x, d.y - c.y));
        const double r = c.radius * std::tan(std::fabs(t) / 2.0);
        const std::size_t index = given.size() - 1 - i;  // the caller's numbering
        if (!(std::fabs(t) > 1e-9) || !std::isfinite(r) || !(r > 0.0))
            throw std::invalid_argument(
                CornerMessage(SignedArea2(given) > 0.0 ? index : i, "cannot be rounded"));
        former.arc_point(c.x, c.y, r);
    }
    if (!former.close()) throw std::invalid_argument("the corners do not make an outline");
    return contour;
}

ShapeValue ShapeFromCorners(const std::vector<Corner>& outline,
                            const std::vector<std::vector<Corner>>& holes) {
    std::vector<LAContour> holeContours;
    holeContours.reserve(holes.size());
    for (const std::vector<Corner>& h : holes) holeContours.push_back(ContourThrough(h));
    ShapePtr shape = MakeShape(ContourThrough(outline), holeContours);
    const ContourValidation check = ValidateComplexContour(*shape, DefaultEps(*shape));
    if (!check.IsValid()) throw std::invalid_argument(DescribeProblem(check.problems.front()));
    return Own(std::move(shape));
}

ShapeValue ShapeFromText(const std::wstring& text) {
    ShapeText read = ReadShapeText(text);
    if (!read.shape) throw *read.error;
    // Only the numbers are checked: a text keeps the geometry it holds, as the C++ readers do.
    const ContourValidation check = ValidateComplexContour(*read.shape, -1.0);
    for (const ContourProblem& p : check.problems) {
        if (p.kind == ContourProblemKind::NotFinite || p.kind == ContourProblemKind::Overflow)
            throw std::invalid_argument(DescribeProblem(p));
    }
    return Own(std::move(read.shape), std::move(read.unit));
}

double DefaultEps(const ProComplexContour& a, const ProComplexContour* b) {
    double m = Size(a);
    if (b != nullptr) m = std::max(m, Size(*b));
    return 1e-5 * std::max(1.0, m);
}

double ChooseEps(std::optional<double> eps, const ProComplexContour& a,
                 const ProComplexContour* b) {
    if (!eps) return DefaultEps(a, b);
    if (!std::isfinite(*eps) || !(*eps > 0.0))
        throw std::invalid_argument("eps must be a positive finite number");
    return *eps;
}

std::optional<std::wstring> CommonUnit(const ShapeValue& a, const ShapeValue& b) {
    if (a.unit && b.unit && *a.unit != *b.unit)
        throw std::invalid_argument(
            "the shapes are in different units: " + platform::ToUtf8(*a.unit) + " and " +
            platform::ToUtf8(*b.unit));
    return a.unit ? a.unit : b.unit;
}

std::wstring ShapeToText(const ProComplexContour& shape, const std::optional<std::wstring>& unit,
                         bool fullPrecision) {
    if (unit) {
        ProComplexContourAndUnitWriter writer(*unit);
        writer.SetFullPrecision(fullPrecision);
        return writer.write(shape);
    }
    ProComplexContourWriter writer;
    writer.SetFullPrecision(fullPrecision);
    return writer.write(shape);
}

ShapePtr Translated(const ProComplexContour& shape, double dx, double dy) {
    ShapePtr copy = Copy(shape);
    copy->Move(Vector2(dx, dy));
    RequireUsableNumbers(*copy);
    return copy;
}

ShapePtr Rotated(const ProComplexContour& shape, double angle, const Point2& about) {
    ShapePtr copy = Copy(shape);
    copy->Move(Vector2(-about.x, -about.y));
    copy->Rotate(Rotate2(angle));
    copy->Move(Vector2(about.x, about.y));
    RequireUsableNumbers(*copy);
    return copy;
}

namespace {

template <typename Cut>
ShapePtr CutEachSolid(const ProComplexContour& shape, double eps, Cut cut) {
    std::vector<ShapePtr> pieces;
    for (unsigned long i = 0; i < shape.ChildrenCount(); ++i) {
        const ProSolidContour* solid = shape.SolidChild(i);
        if (solid == nullptr) continue;
        ShapePtr piece = cut(*solid);
        if (!piece)
            throw std::invalid_argument(
                platform::FormatC("the pieces of solid %lu cross each other", i + 1));
        pieces.push_back(std::move(piece));
    }
    std::vector<const ProComplexContour*> list;
    for (const ShapePtr& p : pieces) list.push_back(p.get());
    return ShapeUnion(list, eps);
}

}  // namespace

ShapePtr PartAbove(const ProComplexContour& shape, double level, double eps) {
    return CutEachSolid(shape, eps,
                        [&](const ProSolidContour& s) { return ShapeAbove(s, level, eps); });
}

ShapePtr PartRightOf(const ProComplexContour& shape, double level, double eps) {
    return CutEachSolid(shape, eps,
                        [&](const ProSolidContour& s) { return ShapeRightOf(s, level, eps); });
}

std::vector<std::string> ShapeProblems(const ProComplexContour& shape, double eps) {
    std::vector<std::string> lines;
    for (const ContourProblem& p : ValidateComplexContour(shape, eps).problems)
        lines.push_back(DescribeProblem(p));
    return lines;
}

ShapePtr Simplified(const ProComplexContour& shape, double eps) {
    ShapePtr copy = Copy(shape);
    SimplifyComplexContour(*copy, eps);
    return copy;
}

std::vector<Point2> ApproximatePoints(const LAContour& contour, bool closed, int circleSteps,
                                      int smallSteps, double smallLimit) {
    LAContour pieces;
    contour.approximate(pieces, circleSteps, smallSteps, smallLimit);
    std::vector<Point2> points;
    points.reserve(pieces.size() + 1);
    for (const LAEdge& e : pieces) points.push_back(e.start);
    if (closed && !points.empty()) {
        const Point2 first = points.front();
        const Point2 last = points.back();
        // The solver's contours already end on their first point (a zero-length closing edge).
        if (points.size() == 1 || last.x != first.x || last.y != first.y) points.push_back(first);
    }
    return points;
}

}  // namespace quillon::python
