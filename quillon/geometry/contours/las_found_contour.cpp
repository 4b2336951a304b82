#include "quillon/geometry/contours/las_found_contour.h"

#include <algorithm>
#include <cmath>
#include <new>

#include "quillon/geometry/contours/las_driver.h"
#include "quillon/geometry/contours/las_pro_closed_contour.h"
#include "quillon/geometry/plane/angles.h"

namespace quillon {

LAS_FoundContour::LAS_FoundContour(ProContourFactory* f, LAS_Solver* owner)
    : solver(owner), factory(f), walkId(owner->NextWalkId()) {}

int LAS_FoundContour::AddEdge(LAS_NodeInfo* start, LAS_Element* e) {
    elements.push_back(e);
    nodes.push_back(start);
    start->walkMark = walkId;
    return 1;
}

bool LAS_FoundContour::IsBeginNode(LAS_NodeInfo* node) const {
    return !nodes.empty() && nodes.front() == node;
}

bool LAS_FoundContour::IsNodeInContour(LAS_NodeInfo* node) const {
    return std::find(nodes.begin(), nodes.end(), node) != nodes.end();
}

void LAS_FoundContour::ComputeAngles(double& right, double& left) const {
    right = 0.0;
    left = 0.0;
    const std::size_t n = elements.size();
    for (std::size_t i = 0; i < n; ++i) {
        const std::size_t j = (i + 1) % n;
        LAS_NodeInfo* node = nodes[j];
        node->AddWalkAngle(elements[j], right, left);
        double g = node->GetClockWiseAngleEx(elements[j], elements[i]);
        if (g == 0.0 && !node->IsNextClockWise(elements[j], elements[i])) g = kTwoPi;
        right += g;
        left += kTwoPi - g;
    }
}

double LAS_FoundContour::SignedArea() const {
    double s = 0.0;
    for (std::size_t i = 0; i < elements.size(); ++i) {
        LAS_Element* e = elements[i];
        const Point2& a = nodes[i]->GetPoint();
        const Point2& b = nodes[i]->FarNode(e)->GetPoint();
        s += (a.x * b.y - b.x * a.y) / 2.0;
        if (e->GetType() == LAS_Element::Arc) {
            auto* arc = static_cast<LAS_Arc*>(e);
            // An arc never begins and ends at one node (a full circle is held as two halves).
            const double sweep =
                nodes[i]->GetSelfIndex() == arc->GetEnd() ? -arc->GetSweep() : arc->GetSweep();
            const double r = arc->GetCenterPoint().distance(a);
            s += r * r / 2.0 * (sweep - std::sin(sweep));
        }
    }
    return s;
}

void LAS_FoundContour::MarkUsed() {
    for (std::size_t i = 0; i < elements.size(); ++i) {
        elements[i]->NotifyUsed();
        elements[i]->SetUsed(nodes[i]->GetSelfIndex());
    }
}

void LAS_FoundContour::FillEdges(LAContour& c) const {
    c.reserve(elements.size() + 1);
    for (std::size_t i = 0; i < elements.size(); ++i) {
        LAS_Element* e = elements[i];
        const Point2& p = nodes[i]->GetPoint();
        if (e->GetType() == LAS_Element::Arc) {
            auto* arc = static_cast<LAS_Arc*>(e);
            const bool fromEnd = nodes[i]->GetSelfIndex() == arc->GetEnd();
            c.push_back(
                LAEdge(p, arc->GetCenterPoint(), fromEnd ? -arc->GetSweep() : arc->GetSweep()));
        } else {
            c.push_back(LAEdge(p));
        }
    }
    if (!elements.empty()) c.push_back(LAEdge(nodes.back()->FarNode(elements.back())->GetPoint()));
}

ProClosedContour* LAS_FoundContour::CreateClosedContour(int checkAngles) {
    if (checkAngles && IsOuterWalk()) return nullptr;
    ProClosedContour* c = nullptr;
    if (auto* own = dynamic_cast<LAS_ProContourFactory*>(factory))
        c = own->CreateClosedContour();
    else
        c = new (std::nothrow) LAS_ProClosedContour();
    if (c == nullptr) return nullptr;
    FillEdges(*c);
    MarkUsed();
    return c;
}

LAContour* LAS_FoundContour::CreateContour() {
    auto* c = new LAContour();
    c->reserve(20);
    FillEdges(*c);
    MarkUsed();
    return c;
}

LAS_Contour* LAS_FoundContour::CreateLASContour() {
    if (IsOuterWalk()) return nullptr;
    auto* c = new LAS_Contour(solver);
    for (std::size_t i = 0; i < elements.size(); ++i) c->AddEdge(nodes[i], elements[i]);
    MarkUsed();
    return c;
}

}  // namespace quillon
