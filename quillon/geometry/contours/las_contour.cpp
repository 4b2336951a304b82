#include "quillon/geometry/contours/las_contour.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <unordered_set>

#include "quillon/geometry/contours/las_driver.h"

namespace quillon {

LAS_Contour::LAS_Contour(LAS_Solver* owner) : solver(owner) {
    elements.reserve(20);  // mutate: off (capacity only)
    nodes.reserve(20);     // mutate: off (capacity only)
}

void LAS_Contour::AddEdge(LAS_NodeInfo* start, LAS_Element* e) {
    elements.push_back(e);
    nodes.push_back(start);
}

LAContour LAS_Contour::GetContour() const {
    LAContour c;
    for (std::size_t i = 0; i < elements.size(); ++i) {
        LAS_Element* e = elements[i];
        const Point2& p = nodes[i]->GetPoint();
        if (e->GetType() == LAS_Element::Arc) {
            auto* arc = static_cast<LAS_Arc*>(e);
            // An arc never begins and ends at one node (a full circle is held as two halves).
            const double s =
                nodes[i]->GetSelfIndex() == arc->GetEnd() ? -arc->GetSweep() : arc->GetSweep();
            c.push_back(LAEdge(p, arc->GetCenterPoint(), s));
        } else {
            c.push_back(LAEdge(p));
        }
    }
    if (!elements.empty()) c.push_back(LAEdge(nodes.front()->GetPoint()));
    return c;
}

bool LAS_Contour::IsNeighbour(const LAS_Contour* other) const {
    if (other == nullptr) return false;
    // The smaller one is sorted for the search; either gives the same answer.
    const LAS_Contour* small =
        elements.size() <= other->elements.size() ? this : other;  // mutate: off
    const LAS_Contour* large = small == this ? other : this;
    std::vector<const LAS_Element*> sorted(small->elements.begin(), small->elements.end());
    std::sort(sorted.begin(), sorted.end());
    for (const LAS_Element* e : large->elements)
        if (std::binary_search(sorted.begin(), sorted.end(), e)) return true;
    return false;
}

int LAS_Contour::IsEdgeInContour(const LAS_Element* e) const {
    const auto it = std::find(elements.begin(), elements.end(), e);
    return it == elements.end() ? -1 : static_cast<int>(it - elements.begin());
}

namespace {

// The elements two contours share, sorted by address for binary search.
std::vector<const LAS_Element*> SharedElements(const std::vector<LAS_Element*>& a,
                                               const std::vector<LAS_Element*>& b) {
    std::vector<const LAS_Element*> x(a.begin(), a.end()), y(b.begin(), b.end()), out;
    std::sort(x.begin(), x.end());
    std::sort(y.begin(), y.end());
    std::set_intersection(x.begin(), x.end(), y.begin(), y.end(), std::back_inserter(out));
    out.erase(std::unique(out.begin(), out.end()), out.end());
    return out;
}

}  // namespace

LAS_Contour* LAS_Contour::MergeFromNode(LAS_Contour* other, int first) {
    if (other == nullptr || first < 0 || first >= GetCount()) return nullptr;
    return MergeWalk(other, first, SharedElements(elements, other->elements));
}

LAS_Contour* LAS_Contour::MergeWalk(LAS_Contour* other, int first,
                                    const std::vector<const LAS_Element*>& sharedList) {
    const auto shared = [&](const LAS_Element* e) {
        return std::binary_search(sharedList.begin(), sharedList.end(), e);
    };

    auto merged = std::make_unique<LAS_Contour>(solver);
    const LAS_Contour* cur = this;
    std::size_t idx = static_cast<std::size_t>(first);
    LAS_NodeInfo* stop = nodes[idx];
    // Each step appends one element of the two contours; more steps than they hold means the
    // walk is going round without reaching its start.
    const std::size_t limit = elements.size() + other->elements.size() + 1;  // mutate: off
    for (std::size_t step = 0; step < limit; ++step) {  // mutate: off (a step to spare)
        LAS_Element* e = cur->elements[idx];
        LAS_NodeInfo* start = cur->nodes[idx];
        merged->AddEdge(start, e);
        LAS_NodeInfo* far = solver->GetNode(start->GetElementSecondEnd(e));
        if (far == stop) return merged.release();
        std::size_t next = (idx + 1) % cur->elements.size();
        if (shared(cur->elements[next])) {
            // Change to the other contour at this node, along its first element leaving here that
            // the two do not share.
            const LAS_Contour* o = cur == this ? other : this;
            std::size_t found = o->elements.size();
            for (std::size_t j = 0; j < o->elements.size(); ++j)
                if (o->nodes[j] == far && !shared(o->elements[j])) {
                    found = j;
                    break;
                }
            if (found == o->elements.size()) return nullptr;
            cur = o;
            next = found;
        } else if (cur->nodes[next] != far) {
            return nullptr;
        }
        idx = next;
    }
    return nullptr;
}

bool LAS_Contour::IsValidSum(LAS_Contour* sum, LAS_Contour* other) {
    if (sum == nullptr || other == nullptr) return false;
    // One prepared outline for both tests (the same answers as two GetRelation calls).
    const Solver2d& rel = solver->GetSolver2D();
    Solver2d::PreparedContour outline = rel.Prepare(sum->GetContour());
    return rel.GetRelation(outline, GetContour()) == Solver2d::Inside &&
           rel.GetRelation(outline, other->GetContour()) == Solver2d::Inside;
}

LAS_Contour* LAS_Contour::Merge(LAS_Contour* other) {
    if (!IsNeighbour(other)) return nullptr;
    // Worked out once for every walk tried: an element of one contour is in the other exactly
    // when the two share it.
    const std::vector<const LAS_Element*> sharedList = SharedElements(elements, other->elements);
    const auto attempt = [&](LAS_Contour* from, LAS_Contour* to) -> LAS_Contour* {
        // Elements already walked by a refused simple cycle would trace it again.
        std::unordered_set<const LAS_Element*> tried;
        for (int k = 0; k < from->GetCount(); ++k) {
            const LAS_Element* e = from->elements[static_cast<std::size_t>(k)];
            if (std::binary_search(sharedList.begin(), sharedList.end(), e) || tried.count(e))
                continue;
            std::unique_ptr<LAS_Contour> m(from->MergeWalk(to, k, sharedList));
            if (!m) continue;
            if (IsValidSum(m.get(), other)) return m.release();
            std::unordered_set<const LAS_NodeInfo*> seen(m->nodes.begin(), m->nodes.end());
            if (seen.size() == m->nodes.size())
                tried.insert(m->elements.begin(), m->elements.end());
        }
        return nullptr;
    };
    if (LAS_Contour* m = attempt(this, other)) return m;
    return attempt(other, this);
}

}  // namespace quillon
