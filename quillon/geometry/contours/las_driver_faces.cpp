// Faces of the filled solver: sorting the nodes, walking the faces and free polylines, the states
// of a boolean operation, merging faces, containment trees and the results built from them.
#include <algorithm>
#include <memory>

#include "quillon/geometry/contours/las_cstree.h"
#include "quillon/geometry/contours/las_driver.h"

namespace quillon {

// ---- Sorting and walking ----------------------------------------------------------------------

bool LAS_Solver::IsNextTopLeft(const Point2& a, const Point2& b) {
    return b.x > a.x || (b.x == a.x && b.y >= a.y);
}

void LAS_Solver::SortNodesFromTopLeft() {
    sortedNodes.clear();
    for (const auto& n : nodes) sortedNodes.push_back(n.get());
    // Insertion before the first node that does not precede, i.e. a stable sort by (x, y).
    std::stable_sort(sortedNodes.begin(), sortedNodes.end(),
                     [](const LAS_NodeInfo* a, const LAS_NodeInfo* b) {
                         const Point2& p = a->GetPoint();
                         const Point2& q = b->GetPoint();
                         return p.x < q.x || (p.x == q.x && p.y < q.y);
                     });
}

void LAS_Solver::SolveBaseContours(ProContourFactory* factory,
                                   std::vector<ProClosedContour*>& closed,
                                   std::vector<LAContour*>& polylines) {
    for (LAS_NodeInfo* n : sortedNodes) n->FindContours(factory, closed, polylines, 1);
}

void LAS_Solver::SolveFreeLines(ProContourFactory*, std::vector<ProClosedContour*>&,
                                std::vector<LAContour*>& polylines) {
    for (LAS_NodeInfo* n : sortedNodes) n->FindPolylines(polylines);
}

void LAS_Solver::SolveBaseLASContours() {
    std::vector<ProClosedContour*> closed;
    std::vector<LAContour*> lists;
    for (LAS_NodeInfo* n : sortedNodes) n->FindContours(nullptr, closed, lists, 0);
}

void LAS_Solver::FindContours(const std::vector<LAContour*>& input, ProContourFactory* factory,
                              std::vector<ProClosedContour*>& closed,
                              std::vector<LAContour*>& polylines) {
    AddLAContours(input, 1);
    SortNodesFromTopLeft();
    SolveBaseContours(factory, closed, polylines);
    SolveFreeLines(factory, closed, polylines);
}

// ---- Boolean operations -----------------------------------------------------------------------

bool LAS_Solver::Inside(const LAContour* outer, const Solver2d::PreparedContour& inner) const {
    if (outer == nullptr || inner.Empty()) return false;
    Solver2d::PreparedContour local;
    Solver2d::PreparedContour* p = &local;
    if (keepPrepared) p = &prepared[outer];
    if (p->Empty()) *p = solver2d.Prepare(*outer);
    return solver2d.IsInside(*p, inner);
}

int LAS_Solver::IsContourInComplexContour(const LAContour* l, const ProComplexContour* c) const {
    if (c == nullptr || l == nullptr) return 0;
    const Solver2d::PreparedContour inner = solver2d.Prepare(*l);
    for (unsigned long i = 0; i < c->ChildrenCount(); ++i) {
        const ProSolidContour* s = c->SolidChild(i);
        if (s == nullptr) continue;
        for (unsigned long j = 0; j < s->ChildrenCount(); ++j) {
            const auto* hole = dynamic_cast<const ProEmptyContour*>(s->ClosedChild(j));
            if (hole != nullptr && Inside(hole, inner)) return 0;
        }
        if (Inside(s, inner)) return 1;
    }
    return 0;
}

void LAS_Solver::SetBaseContourState(const ProComplexContour* a, const ProComplexContour* b,
                                     Operation op) {
    keepPrepared = true;
    for (const auto& c : baseContours) {
        const LAContour l = c->GetContour();
        const int inA = IsContourInComplexContour(&l, a);
        // The test has no side effects: b is asked only when its answer can change the state.
        const bool needB = b != nullptr && (op == Union ? !inA : inA != 0);
        const int inB = needB ? IsContourInComplexContour(&l, b) : 0;
        int state = 0;
        switch (op) {
            case Union:
                state = (inA || inB) ? 1 : 0;
                break;
            case Difference:
                state = (inA && !inB) ? 1 : 0;
                break;
            case Intersection:
                state = (inA && inB) ? 1 : 0;
                break;
        }
        c->SetState(state);
    }
    keepPrepared = false;
    prepared.clear();
}

int LAS_Solver::MergeBaseContour(int i) {
    LAS_Contour* ci = GetBaseContour(i);
    if (ci == nullptr) return 0;
    for (int j = i + 1; j < GetBaseContourCount(); ++j) {
        LAS_Contour* cj = GetBaseContour(j);
        if (ci->GetState() != cj->GetState()) continue;
        LAS_Contour* m = ci->Merge(cj);
        if (m == nullptr) continue;
        m->SetState(ci->GetState());
        baseContours[static_cast<std::size_t>(i)].reset(m);
        baseContours.erase(baseContours.begin() + j);
        return 1;
    }
    return 0;
}

void LAS_Solver::MergeBaseContours() {
    // Each merge removes a contour from the list, so this ends.
    int i = 0;
    while (i < GetBaseContourCount())
        if (MergeBaseContour(i) == 0) ++i;
}

ProComplexContour* LAS_Solver::ComplexContourFromBase(ProContourFactory* factory) {
    if (factory == nullptr) return nullptr;
    LAS_CSTree tree(this);
    std::vector<LAS_Contour*> list;
    list.reserve(baseContours.size());
    for (const auto& c : baseContours) list.push_back(c.get());
    tree.Sort(list);
    return tree.BuildComplexContour(factory);
}

ProComplexContour* LAS_Solver::Solv(const ProComplexContour* a, const ProComplexContour* b,
                                    Operation op, ProContourFactory* factory) {
    AddComplexContour(a);
    AddComplexContour(b);
    SplitEdges();
    SortNodesFromTopLeft();
    SolveBaseLASContours();
    SetBaseContourState(a, b, op);
    MergeBaseContours();
    return ComplexContourFromBase(factory);
}

ProComplexContour* LAS_Solver::Add(const std::vector<ProComplexContour*>& list,
                                   ProContourFactory* factory) {
    if (list.empty()) return nullptr;
    if (list.size() == 1) return list.front();
    // Neighbours are combined pairwise, level by level, so each shape takes part in about log n
    // steps over results that grow with the level, instead of n steps over the whole union built
    // so far. Union is associative: the region and its tree of solids and holes are the fold's.
    struct Item {
        ProComplexContour* shape;
        bool owned;  // an intermediate result, destroyed once combined
    };
    std::vector<Item> level;
    level.reserve(list.size());
    for (ProComplexContour* c : list) level.push_back({c, false});
    while (level.size() > 1) {
        std::vector<Item> next;
        next.reserve(level.size() / 2 + 1);
        for (std::size_t k = 0; k + 1 < level.size(); k += 2) {
            LAS_Solver step(solver2d.GetEpsilon());
            ProComplexContour* r = step.Add(level[k].shape, level[k + 1].shape, factory);
            if (level[k].owned) delete level[k].shape;
            if (level[k + 1].owned) delete level[k + 1].shape;
            next.push_back({r, true});
        }
        if (level.size() % 2 == 1) next.push_back(level.back());
        level = std::move(next);
    }
    return level.front().shape;
}

ProComplexContour* LAS_Solver::Normalize(const ProComplexContour* c, ProContourFactory* factory) {
    // The union of the shape with nothing: the same steps with c alone.
    return Solv(c, nullptr, Union, factory);
}

ProComplexContour* LAS_Solver::Set(const std::vector<ProClosedContour*>& contours,
                                   ProContourFactory* factory, bool strict) {
    if (factory == nullptr) return nullptr;
    LAS_ContSTree tree(this, strict);
    if (!tree.Sort(contours) && strict) return nullptr;
    return tree.BuildComplexContour(factory);
}

ProComplexContour* LAS_Solver::ComplexContourFromContours(std::vector<ProClosedContour*> contours,
                                                          ProContourFactory* factory) {
    contours.erase(std::remove(contours.begin(), contours.end(), nullptr), contours.end());
    ProComplexContour* result = nullptr;
    const auto solid = [&](const ProClosedContour* c) -> ProSolidContour* {
        ProSolidContour* s = factory->CreateSolidContour();
        if (s != nullptr) {
            s->SetLAContour(*c);
            result->Attach(s);
        }
        return s;
    };
    const auto hole = [&](ProSolidContour* s, const ProClosedContour* c) {
        if (s == nullptr) return;
        if (ProEmptyContour* h = factory->CreateEmptyContour()) {
            h->SetLAContour(*c);
            s->Attach(h);
        }
    };
    if (factory != nullptr) {
        if (contours.size() <= 2) result = factory->CreateComplexContour();
        if (result != nullptr && contours.size() == 1) {
            solid(contours[0]);
        } else if (result != nullptr && contours.size() == 2) {
            switch (solver2d.GetRelation(contours[0], contours[1])) {
                case Solver2d::Inside:
                    hole(solid(contours[0]), contours[1]);
                    break;
                case Solver2d::Encloses:
                    hole(solid(contours[1]), contours[0]);
                    break;
                case Solver2d::Disjoint:
                    solid(contours[1]);
                    solid(contours[0]);
                    break;
                default:
                    delete result;
                    result = nullptr;
                    break;
            }
        } else if (contours.size() > 2) {
            result = Set(contours, factory, true);
        }
    }
    for (ProClosedContour* c : contours) delete c;
    return result;
}

// ---- Pieces inside a shape --------------------------------------------------------------------

int LAS_Solver::GetSectorsInContour(const ProComplexContour* c, const Sector2& s,
                                    std::vector<Sector2>& out) {
    return solver2d.GetSectorsInContour(c, s, out);
}

}  // namespace quillon
