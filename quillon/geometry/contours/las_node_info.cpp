#include "quillon/geometry/contours/las_node_info.h"

#include <algorithm>
#include <cmath>

#include "quillon/geometry/contours/las_driver.h"
#include "quillon/geometry/contours/las_found_contour.h"
#include "quillon/geometry/plane/angles.h"

namespace quillon {

LAS_NodeInfo::LAS_NodeInfo(const Point2& p, LAS_Solver* owner) : point(p), solver(owner) {
    elements.reserve(10);
}

int LAS_NodeInfo::GetSelfIndex() const { return solver->GetNodeIndex(this); }

LAS_Element* LAS_NodeInfo::GetElem(int i) const {
    if (i < 0 || i >= GetElemCount()) return nullptr;
    return elements[static_cast<std::size_t>(i)];
}

int LAS_NodeInfo::GetUnUsedElemCount() const {
    const int self = GetSelfIndex();
    int n = 0;
    for (LAS_Element* e : elements)
        if (!e->IsUsed(self)) ++n;
    return n;
}

void LAS_NodeInfo::ConnectElement(LAS_Element* e) {
    for (std::size_t i = 0; i < elements.size(); ++i) {
        if (!IsNextClockWise(elements[i], e)) {
            elements.insert(elements.begin() + static_cast<std::ptrdiff_t>(i), e);
            return;
        }
    }
    elements.push_back(e);
}

void LAS_NodeInfo::DisconnectElement(LAS_Element* e) {
    const auto it = std::find(elements.begin(), elements.end(), e);
    if (it != elements.end()) elements.erase(it);
}

int LAS_NodeInfo::IsElementConnected(LAS_Element* e) const {
    const auto it = std::find(elements.begin(), elements.end(), e);
    return it == elements.end() ? -1 : static_cast<int>(it - elements.begin());
}

int LAS_NodeInfo::GetElementSecondEnd(LAS_Element* e) const {
    return solver->GetNode(e->GetBegin()) == this ? e->GetEnd() : e->GetBegin();
}

LAS_NodeInfo* LAS_NodeInfo::FarNode(LAS_Element* e) const {
    return solver->GetNode(GetElementSecondEnd(e));
}

Point2 LAS_NodeInfo::GetElementTangentialPoint(LAS_Element* e) const {
    return e->GetTangential(GetElementSecondEnd(e));
}

double LAS_NodeInfo::GetClockAngle(double a) const {
    // Written as two cases, not one fmod of 5π/2 - a: that rounds differently in the first
    // quadrant, and tangent ties round a node are settled on exactly equal clock angles. Where the
    // two cases meet, the other one would only shift an angle by a whole turn.
    if (a >= 0.0 && a <= kPi / 2.0) return kPi / 2.0 - a;  // mutate: off (see above)
    return 5.0 * kPi / 2.0 - a;
}

double LAS_NodeInfo::GetClockAngle(const Point2& p) const {
    return GetClockAngle(solver->GetSolver2D().FindAngle_0x(p - point));
}

double LAS_NodeInfo::GetClockAngle(LAS_Element* e) const {
    return GetClockAngle(GetElementTangentialPoint(e));
}

bool LAS_NodeInfo::IsNextClockWise(LAS_Element* a, LAS_Element* b) const {
    const Point2 ta = GetElementTangentialPoint(a);
    const Point2 tb = GetElementTangentialPoint(b);
    const double ca = GetClockAngle(ta);
    const double cb = GetClockAngle(tb);
    // Equal clock angles are always a tie, settled below: `>` and `>=` agree here.
    if (!solver->GetSolver2D().IsSameDirection(point, ta, ca, tb, cb))
        return cb > ca;         // mutate: off
    double ra = 0.0, rb = 0.0;  // mutate: off (GetPointInfo sets them)
    int sa = 0, sb = 0;
    a->GetPointInfo(GetElementSecondEnd(a), ra, sa);
    b->GetPointInfo(GetElementSecondEnd(b), rb, sb);
    if (a->GetType() == LAS_Element::Line) return sb != 1;
    if (b->GetType() == LAS_Element::Line) return sa == 1;
    // Arcs turning opposite ways leave in different directions, so the test above decides them.
    if (sa == 0 && sb == 1) return false;  // mutate: off (see above)
    if (sa == 1 && sb == 0) return true;
    if (sa == 1) return ra < rb;
    return rb <= ra;
}

LAS_Element* LAS_NodeInfo::Neighbour(LAS_Element* e, int direction, int skipUsed,
                                     int skipCounted) const {
    const int k = IsElementConnected(e);
    if (k < 0) return nullptr;
    const int n = GetElemCount();
    const int self = skipUsed ? GetSelfIndex() : -1;
    int at = k;
    for (int step = 1; step < n; ++step) {
        at += direction;
        if (at == n) at = 0;
        if (at < 0) at = n - 1;
        LAS_Element* c = elements[static_cast<std::size_t>(at)];
        if (skipUsed && c->IsUsed(self)) continue;
        if (skipCounted && c->GetUseCount() >= 1) continue;
        return c;
    }
    return nullptr;
}

LAS_Element* LAS_NodeInfo::GetNextClockWise(LAS_Element* e, int skipUsed, int skipCounted) const {
    return Neighbour(e, 1, skipUsed, skipCounted);
}

LAS_Element* LAS_NodeInfo::GetPrevClockWise(LAS_Element* e, int skipUsed, int skipCounted) const {
    return Neighbour(e, -1, skipUsed, skipCounted);
}

double LAS_NodeInfo::GetClockWiseAngle(LAS_Element* a, LAS_Element* b) const {
    double g = GetClockAngle(b) - GetClockAngle(a);
    if (g < 0.0) g += kTwoPi;
    return g;
}

double LAS_NodeInfo::GetClockWiseAngleEx(LAS_Element* a, LAS_Element* b) const {
    const auto reference = [&](LAS_Element* e) {
        if (e->GetType() == LAS_Element::Arc) {
            Arc2 arc;
            static_cast<LAS_Arc*>(e)->GetArc(arc);
            return GetClockAngle(solver->GetSolver2D().GetMiddleArc(arc));
        }
        return GetClockAngle(e);
    };
    double g = reference(b) - reference(a);
    if (g < 0.0) g += kTwoPi;
    return g;
}

double LAS_NodeInfo::GetClockWiseAngleLine(LAS_Element* a, LAS_Element* b) const {
    LAS_Line la(a->GetBegin(), a->GetEnd(), solver);
    LAS_Line lb(b->GetBegin(), b->GetEnd(), solver);
    return GetClockWiseAngle(&la, &lb);
}

void LAS_NodeInfo::AddWalkAngle(LAS_Element* e, double& right, double& left) const {
    if (e->GetType() != LAS_Element::Arc) return;
    const double sweep = static_cast<LAS_Arc*>(e)->GetSweep();
    const double m = kPi - std::fabs(sweep) / 2.0;
    const double big = kTwoPi - m;
    const int self = GetSelfIndex();
    const bool atBegin = self == e->GetBegin();
    const bool atEnd = self == e->GetEnd();
    if (!atBegin && !atEnd) return;  // not an arc of this node
    if ((atBegin && sweep >= 0.0) || (atEnd && sweep < 0.0)) {
        right += big;
        left += m;
    } else {
        right += m;
        left += big;
    }
}

int LAS_NodeInfo::FindContours(ProContourFactory* factory, std::vector<ProClosedContour*>& closed,
                               std::vector<LAContour*>&, int makeClosed) {
    const int self = GetSelfIndex();
    int made = 0;
    for (std::size_t k = 0; k < elements.size(); ++k) {
        LAS_Element* e = elements[k];
        if (e->IsUsed(self)) continue;
        const unsigned char bit = self == e->GetBegin() ? 1 : 2;
        if (e->rejectedWalk & bit) continue;
        LAS_FoundContour found(factory, solver);
        if (FindContour(e, &found) != 1) continue;
        bool accepted = false;  // mutate: off (refusal marks only spare repeated walks)
        if (makeClosed) {
            if (ProClosedContour* c = found.CreateClosedContour(1)) {
                closed.push_back(c);
                accepted = true;  // mutate: off (its walks are used now: refusal marks go unread)
            }
        } else if (LAS_Contour* c = found.CreateLASContour()) {
            solver->AddBaseContour(c);
            accepted = true;  // mutate: off (its walks are used now: refusal marks go unread)
        }
        if (accepted) {
            ++made;
            continue;
        }
        // Refused by the angle test. When the walk is a whole cycle of the rightmost-turn rule,
        // a walk from any of its half-edges traces the same cycle and is refused again.
        const int n = found.GetCount();
        if (found.GetStartNode(0)->GetPrevClockWise(found.GetElement(n - 1), 0, 0) !=
            found.GetElement(0))
            continue;
        for (int i = 0; i < n; ++i) {
            LAS_Element* w = found.GetElement(i);
            const int at = found.GetStartNode(i)->GetSelfIndex();
            w->rejectedWalk |= static_cast<unsigned char>(at == w->GetBegin() ? 1 : 2);
        }
    }
    return made;
}

int LAS_NodeInfo::FindContour(LAS_Element* e, LAS_FoundContour* found) {
    found->AddEdge(this, e);
    return FarNode(e)->GetNextRightContourEdge(e, found);
}

int LAS_NodeInfo::GetNextRightContourEdge(LAS_Element* e, LAS_FoundContour* found) {
    // Iterative: every step adds a node not yet in the walk, so it ends within the node count.
    LAS_NodeInfo* node = this;
    LAS_Element* arrived = e;
    for (;;) {
        if (found->IsBeginNode(node)) return 1;
        if (node->walkMark == found->GetWalkId()) return 0;
        LAS_Element* next = node->GetPrevClockWise(arrived, 0, 0);
        if (next == nullptr) return 0;
        found->AddEdge(node, next);
        arrived = next;
        node = node->FarNode(next);
    }
}

int LAS_NodeInfo::FindPolylines(std::vector<LAContour*>& out) {
    int made = 0;
    for (std::size_t k = 0; k < elements.size(); ++k) {
        LAS_Element* e = elements[k];
        if (e->GetUseCount() >= 1) continue;
        LAS_FoundContour found(nullptr, solver);
        if (FindPolyline(e, &found) != 1) continue;
        out.push_back(found.CreateContour());
        ++made;
    }
    return made;
}

int LAS_NodeInfo::FindPolyline(LAS_Element* e, LAS_FoundContour* found) {
    found->AddEdge(this, e);
    return FarNode(e)->GetNextPolylineEdge(e, found);
}

int LAS_NodeInfo::GetNextPolylineEdge(LAS_Element* e, LAS_FoundContour* found) {
    LAS_NodeInfo* node = this;
    LAS_Element* arrived = e;
    for (;;) {
        if (found->IsBeginNode(node)) return 0;
        if (node->walkMark == found->GetWalkId()) return 0;
        LAS_Element* next = node->GetPrevClockWise(arrived, 0, 1);
        if (next == nullptr) return 1;
        found->AddEdge(node, next);
        arrived = next;
        node = node->FarNode(next);
    }
}

}  // namespace quillon
