#include "quillon/geometry/contours/las_cstree.h"

#include <algorithm>
#include <memory>

#include "quillon/geometry/contours/las_driver.h"

namespace quillon {

// ---- LAS_CSNode -------------------------------------------------------------------------------

LAS_CSNode::LAS_CSNode(LAS_Contour* c, LAS_Solver* owner) : contour(c), solver(owner) {
    if (contour != nullptr) geometry = contour->GetContour();
}

int LAS_CSNode::GetState() const { return contour != nullptr ? contour->GetState() : 0; }

Solver2d::PreparedContour& LAS_CSNode::Prepared(const Solver2d& rel) {
    if (!preparedMade) {
        prepared = rel.Prepare(geometry);
        preparedMade = true;
    }
    return prepared;
}

void LAS_CSNode::SortAdd(LAS_Contour* c) {
    const Solver2d& rel = solver->GetSolver2D();
    auto node = std::make_unique<LAS_CSNode>(c, solver);
    LAS_CSNode* at = this;
    // Descend to the deepest node holding c; bounded by the tree's depth.
    for (;;) {
        LAS_CSNode* inside = nullptr;
        for (LAS_CSNode* x : at->children)
            if (rel.GetRelation(x->Prepared(rel), node->geometry) == Solver2d::Inside) {
                inside = x;
                break;
            }
        if (inside == nullptr) break;
        at = inside;
    }
    LAS_CSNode* fresh = node.release();
    for (std::size_t i = at->children.size(); i-- > 0;) {
        LAS_CSNode* x = at->children[i];
        if (rel.GetRelation(fresh->Prepared(rel), x->geometry) == Solver2d::Inside)
            fresh->Attach(x);
    }
    at->Attach(fresh);
}

void LAS_CSNode::Validate() {
    const bool isRoot = contour == nullptr;
    bool removed = true;
    while (removed) {
        removed = false;
        for (std::size_t i = children.size(); i-- > 0;) {
            LAS_CSNode* x = children[i];
            const bool drop = isRoot ? x->GetState() == 0 : x->GetState() == GetState();
            if (!drop) continue;
            children.erase(children.begin() + static_cast<std::ptrdiff_t>(i));
            for (LAS_CSNode* g : x->children) {
                g->parent = this;
                children.push_back(g);
            }
            x->children.clear();
            delete x;
            removed = true;
        }
    }
    for (LAS_CSNode* x : children) x->Validate();
}

void LAS_CSNode::BuildComplexContour(ProContourFactory* factory, ProComplexContour* complex,
                                     ProSolidContour* solid) const {
    for (LAS_CSNode* x : children) {
        ProSolidContour* current = solid;
        if (x->GetState() == 1) {
            ProSolidContour* s = factory->CreateSolidContour();
            if (s != nullptr) {
                s->SetLAContour(x->geometry);
                complex->Attach(s);
                current = s;
            }
        } else if (solid != nullptr) {
            if (ProEmptyContour* h = factory->CreateEmptyContour()) {
                h->SetLAContour(x->geometry);
                solid->Attach(h);
            }
        }
        x->BuildComplexContour(factory, complex, current);
    }
}

void LAS_CSTree::Sort(const std::vector<LAS_Contour*>& contours) {
    for (LAS_Contour* c : contours) root.SortAdd(c);
    root.Validate();
}

ProComplexContour* LAS_CSTree::BuildComplexContour(ProContourFactory* factory) const {
    ProComplexContour* complex = factory->CreateComplexContour();
    if (complex != nullptr) root.BuildComplexContour(factory, complex, nullptr);
    return complex;
}

// ---- LAS_ContSNode ----------------------------------------------------------------------------

int LAS_ContSNode::SortAdd(const LAContour* c) {
    const Solver2d& rel = solver->GetSolver2D();
    int ok = 1;
    const auto relation = [&](const LAContour* first, const LAContour* second) {
        const Solver2d::Relation r = rel.GetRelation(first, second);
        if (r != Solver2d::Inside && r != Solver2d::Encloses && r != Solver2d::Disjoint) ok = 0;
        return r;
    };
    LAS_ContSNode* at = this;
    for (;;) {
        LAS_ContSNode* inside = nullptr;
        for (LAS_ContSNode* x : at->children)
            if (relation(x->contour, c) == Solver2d::Inside) {
                inside = x;
                break;
            }
        if (inside == nullptr) break;
        at = inside;
    }
    auto* fresh = new LAS_ContSNode(c, solver);
    for (std::size_t i = at->children.size(); i-- > 0;) {
        LAS_ContSNode* x = at->children[i];
        if (relation(c, x->contour) == Solver2d::Inside) fresh->Attach(x);
    }
    at->Attach(fresh);
    return ok;
}

void LAS_ContSNode::BuildComplexContour(ProContourFactory* factory, ProComplexContour* complex,
                                        ProSolidContour* solid, int depth) const {
    for (LAS_ContSNode* x : children) {
        ProSolidContour* current = solid;
        if (depth % 2 == 1) {
            ProSolidContour* s = factory->CreateSolidContour();
            if (s != nullptr) {
                s->SetLAContour(*x->contour);
                complex->Attach(s);
                current = s;
            }
        } else if (solid != nullptr) {
            if (ProEmptyContour* h = factory->CreateEmptyContour()) {
                h->SetLAContour(*x->contour);
                solid->Attach(h);
            }
        }
        x->BuildComplexContour(factory, complex, current, depth + 1);
    }
}

bool LAS_ContSTree::Sort(const std::vector<ProClosedContour*>& contours) {
    for (ProClosedContour* c : contours) {
        if (c == nullptr) continue;
        if (!root.SortAdd(c)) return false;
    }
    return true;
}

ProComplexContour* LAS_ContSTree::BuildComplexContour(ProContourFactory* factory) const {
    ProComplexContour* complex = factory->CreateComplexContour();
    if (complex != nullptr) root.BuildComplexContour(factory, complex, nullptr, 1);
    return complex;
}

}  // namespace quillon
