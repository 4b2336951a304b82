#include "quillon/geometry/contours/contour_ops.h"

#include <algorithm>

#include "quillon/geometry/contours/contour_simplify.h"
#include "quillon/geometry/contours/las_driver.h"
#include "quillon/platform/text.h"

namespace quillon {

namespace {

// Never null: an allocation that fails gives an empty shape made the plain way.
ShapePtr OrEmpty(ProComplexContour* c) {
    return c != nullptr ? ShapePtr(c) : std::make_unique<ProComplexContour>();
}

LAS_Solver::Operation EngineOperation(ShapeOperation op) {
    switch (op) {
        case ShapeOperation::Difference:
            return LAS_Solver::Difference;
        case ShapeOperation::Intersection:
            return LAS_Solver::Intersection;
        case ShapeOperation::Union:
            break;
    }
    return LAS_Solver::Union;
}

ShapePtr CleanedUp(ShapePtr shape, ResultCleanUp cleanUp, double epsilon) {
    if (cleanUp == ResultCleanUp::Simplify) SimplifyComplexContour(*shape, epsilon);
    return shape;
}

ShapePtr Copy(const ProComplexContour& c) {
    std::unique_ptr<ProContour> copy(c.Duplicate());
    if (auto* complex = dynamic_cast<ProComplexContour*>(copy.get())) {
        copy.release();
        return ShapePtr(complex);
    }
    return std::make_unique<ProComplexContour>();
}

}  // namespace

SolvedShape SolveElements(const std::vector<LooseElement>& elements, double epsilon,
                          ResultCleanUp cleanUp) {
    LAS_Solver solver(epsilon);
    for (const LooseElement& e : elements) {
        if (e.kind == LooseElement::Line)
            solver.AddLine(e.begin, e.end);
        else
            solver.AddArc(e.begin, e.end, e.centre, e.sweep);
    }
    solver.SplitEdges();
    ProContourFactory factory;
    std::vector<ProClosedContour*> closed;
    std::vector<LAContour*> polylines;
    solver.FindContours({}, &factory, closed, polylines);

    SolvedShape result;
    result.faces = closed.size();
    for (LAContour* p : polylines) {
        result.polylines.push_back(std::move(*p));
        delete p;
    }
    // The faces are nested on a solver of their own: the one above holds the drawing's graph.
    LAS_Solver nesting(epsilon);
    result.shape = CleanedUp(OrEmpty(nesting.Set(closed, &factory, false)), cleanUp, epsilon);
    for (ProClosedContour* c : closed) delete c;
    return result;
}

ShapePtr CombineShapes(const ProComplexContour& a, const ProComplexContour& b, ShapeOperation op,
                       double epsilon, ResultCleanUp cleanUp) {
    ProContourFactory factory;
    LAS_Solver solver(epsilon);
    return CleanedUp(OrEmpty(solver.Solv(&a, &b, EngineOperation(op), &factory)), cleanUp, epsilon);
}

ShapePtr ShapeUnion(const ProComplexContour& a, const ProComplexContour& b, double epsilon) {
    return CombineShapes(a, b, ShapeOperation::Union, epsilon);
}

ShapePtr ShapeDifference(const ProComplexContour& a, const ProComplexContour& b, double epsilon) {
    return CombineShapes(a, b, ShapeOperation::Difference, epsilon);
}

ShapePtr ShapeIntersection(const ProComplexContour& a, const ProComplexContour& b, double epsilon) {
    return CombineShapes(a, b, ShapeOperation::Intersection, epsilon);
}

ShapePtr ShapeUnion(const std::vector<const ProComplexContour*>& shapes, double epsilon) {
    std::vector<ProComplexContour*> list;
    for (const ProComplexContour* s : shapes)
        if (s != nullptr) list.push_back(const_cast<ProComplexContour*>(s));  // read, never changed
    if (list.empty()) return std::make_unique<ProComplexContour>();
    if (list.size() == 1) return Copy(*list.front());
    ProContourFactory factory;
    LAS_Solver solver(epsilon);
    return OrEmpty(solver.Add(list, &factory));
}

ShapePtr NormalizeShape(const ProComplexContour& shape, double epsilon, ResultCleanUp cleanUp) {
    ProContourFactory factory;
    LAS_Solver solver(epsilon);
    return CleanedUp(OrEmpty(solver.Normalize(&shape, &factory)), cleanUp, epsilon);
}

ShapePtr MakeShape(const LAContour& outline, const std::vector<LAContour>& holes) {
    auto shape = std::make_unique<ProComplexContour>();
    auto solid = std::make_unique<ProSolidContour>();
    solid->SetLAContour(outline);
    for (const LAContour& h : holes) {
        auto hole = std::make_unique<ProEmptyContour>();
        hole->SetLAContour(h);
        solid->Attach(hole.release());
    }
    shape->Attach(solid.release());
    return shape;
}

ShapePtr ShapeAbove(const ProSolidContour& solid, double level, double epsilon) {
    ProContourFactory factory;
    LAS_Solver solver(epsilon);
    return ShapePtr(solver.GetTopPartOfContour(&solid, level, &factory));
}

ShapePtr ShapeRightOf(const ProSolidContour& solid, double level, double epsilon) {
    ProContourFactory factory;
    LAS_Solver solver(epsilon);
    return ShapePtr(solver.GetRightPartOfContour(&solid, level, &factory));
}

std::vector<Sector2> SegmentInsideShape(const ProComplexContour& shape, const Sector2& segment,
                                        double epsilon) {
    std::vector<Sector2> pieces;
    LAS_Solver(epsilon).GetSectorsInContour(&shape, segment, pieces);
    return pieces;
}

ShapeText ReadShapeText(const std::wstring& text) {
    ShapeText result;
    const auto first = std::find_if_not(text.begin(), text.end(),
                                        [](wchar_t c) { return platform::IsAsciiSpace(c); });
    try {
        if (first != text.end() && *first == L'"') {
            std::wstring unit;
            result.shape.reset(ProComplexContourAndUnitReader(text).read(unit));
            result.unit = std::move(unit);
        } else {
            result.shape.reset(ProComplexContourReader(text).read());
        }
    } catch (const ContourTextError& e) {
        result.shape.reset();
        result.unit.reset();
        result.error = e;
    }
    return result;
}

std::wstring WriteShapeText(const ProComplexContour& shape) {
    return ProComplexContourWriter().write(shape);
}

std::wstring WriteShapeText(const ProComplexContour& shape, const std::wstring& unit) {
    return ProComplexContourAndUnitWriter(unit).write(shape);
}

}  // namespace quillon
