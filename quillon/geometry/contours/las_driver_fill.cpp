// Filling the solver: construction, lookups, the indexes of nodes and elements, adding points,
// lines, arcs and contours, and splitting elements where they cross.
#include "quillon/geometry/contours/las_driver.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "quillon/geometry/plane/angles.h"

namespace quillon {

namespace {

bool Finite(const Point2& p) { return std::isfinite(p.x) && std::isfinite(p.y); }

// A cell coordinate that stays inside the 64-bit range; far-out points share the border cells,
// which keeps every pair within one cell of each other findable.
std::int64_t CellCoordinate(double v, double size) {
    const double f = std::floor(v / size);
    constexpr double limit = 4.0e18;
    if (!(f > -limit)) return static_cast<std::int64_t>(-limit);
    if (!(f < limit)) return static_cast<std::int64_t>(limit);
    return static_cast<std::int64_t>(f);
}

// The first element of the chain of the same type as x and equal to it, or null.
template <typename Kind>
LAS_Element* FirstEqual(LAS_Element* chain, const Kind& x) {
    for (LAS_Element* e = chain; e != nullptr; e = LAS_Solver::NextSameEnds(e))
        if (e->GetType() == x.GetType() && *static_cast<const Kind*>(e) == x) return e;
    return nullptr;
}

}  // namespace

LAS_Solver::LAS_Solver(double epsilon) : solver2d(epsilon) {
    nodes.reserve(20);
    elements.reserve(20);
    sortedNodes.reserve(20);
    baseContours.reserve(20);
    const double e = solver2d.GetEpsilon();
    // A cell at least as wide as epsilon keeps every point within epsilon in the 3 x 3 block; at
    // eight times that, most look-ups stay inside one cell.
    cellSize = e > 0.0 ? 8.0 * e * (1.0 + 1e-9) : 1e-12;
}

LAS_Solver::~LAS_Solver() = default;

// ---- Lookups ----------------------------------------------------------------------------------

Point2 LAS_Solver::GetPoint(int i) const {
    if (i < 0 || i >= GetNodeCount()) return {};
    return nodes[static_cast<std::size_t>(i)]->GetPoint();
}

LAS_NodeInfo* LAS_Solver::GetNode(int i) const {
    if (i < 0 || i >= GetNodeCount()) return nullptr;
    return nodes[static_cast<std::size_t>(i)].get();
}

LAS_Element* LAS_Solver::GetElement(int i) const {
    if (i < 0 || i >= GetElementCount()) return nullptr;
    return elements[static_cast<std::size_t>(i)].get();
}

LAS_Line* LAS_Solver::GetLine(int i) const {
    LAS_Element* e = GetElement(i);
    return e != nullptr && e->GetType() == LAS_Element::Line ? static_cast<LAS_Line*>(e) : nullptr;
}

LAS_Arc* LAS_Solver::GetArc(int i) const {
    LAS_Element* e = GetElement(i);
    return e != nullptr && e->GetType() == LAS_Element::Arc ? static_cast<LAS_Arc*>(e) : nullptr;
}

LAS_Contour* LAS_Solver::GetBaseContour(int i) const {
    if (i < 0 || i >= GetBaseContourCount()) return nullptr;
    return baseContours[static_cast<std::size_t>(i)].get();
}

int LAS_Solver::GetElementIndx(const LAS_Element* e) const {
    if (e == nullptr) return -1;
    // The list is always in creation order, so the serial number finds the position.
    const auto it = std::lower_bound(
        elements.begin(), elements.end(), e->serial,
        [](const std::unique_ptr<LAS_Element>& x, std::uint64_t s) { return x->serial < s; });
    if (it == elements.end() || it->get() != e) return -1;
    return static_cast<int>(it - elements.begin());
}

// Nodes get their index when added and again whenever unused nodes are erased (RebuildIndexes).
int LAS_Solver::GetNodeIndex(const LAS_NodeInfo* n) const { return n == nullptr ? -1 : n->index; }

void LAS_Solver::AddBaseContour(LAS_Contour* c) {
    if (c != nullptr) baseContours.emplace_back(c);
}

// ---- Indexes ----------------------------------------------------------------------------------

std::uint64_t LAS_Solver::CellKey(std::int64_t cx, std::int64_t cy) {
    const std::uint64_t x = static_cast<std::uint64_t>(cx);
    const std::uint64_t y = static_cast<std::uint64_t>(cy);
    return x * 0x9E3779B97F4A7C15ull ^ (y + 0x632BE59BD9B4E019ull + (x << 6) + (x >> 2));
}

std::uint64_t LAS_Solver::EndsKey(int a, int b) {
    const auto lo = static_cast<std::uint64_t>(static_cast<std::uint32_t>(std::min(a, b)));
    const auto hi = static_cast<std::uint64_t>(static_cast<std::uint32_t>(std::max(a, b)));
    return (hi << 32) | lo;
}

void LAS_Solver::RegisterNode(int index) {
    const Point2 p = GetPoint(index);
    const std::uint64_t key = CellKey(CellCoordinate(p.x, cellSize), CellCoordinate(p.y, cellSize));
    const auto [it, fresh] = nodeCells.try_emplace(key, index);
    const auto k = static_cast<std::size_t>(index);
    if (nodeChain.size() <= k) nodeChain.resize(k + 1, -1);
    nodeChain[k] = fresh ? -1 : it->second;
    it->second = index;
}

int LAS_Solver::FindNode(const Point2& p) {
    const std::int64_t cx = CellCoordinate(p.x, cellSize), cy = CellCoordinate(p.y, cellSize);
    // A neighbouring column (row) of cells is searched only when a point within epsilon of p can
    // lie in it: the margin beyond epsilon covers the rounding of the distance and of p -/+ it.
    const double e = solver2d.GetEpsilon() * (1.0 + 1e-12);
    const double mx = e + 4e-15 * std::fabs(p.x), my = e + 4e-15 * std::fabs(p.y);
    const int dx0 = CellCoordinate(p.x - mx, cellSize) < cx ? -1 : 0;
    const int dx1 = CellCoordinate(p.x + mx, cellSize) > cx ? 1 : 0;
    const int dy0 = CellCoordinate(p.y - my, cellSize) < cy ? -1 : 0;
    const int dy1 = CellCoordinate(p.y + my, cellSize) > cy ? 1 : 0;
    int best = -1;
    for (int dy = dy0; dy <= dy1; ++dy)
        for (int dx = dx0; dx <= dx1; ++dx) {
            const auto it = nodeCells.find(CellKey(cx + dx, cy + dy));
            if (it == nodeCells.end()) continue;
            for (int i = it->second; i >= 0; i = nodeChain[static_cast<std::size_t>(i)])
                if ((best < 0 || i < best) && solver2d.AreEqual(GetPoint(i), p)) best = i;
        }
    return best;
}

LAS_Element* LAS_Solver::FindEqualLine(const LAS_Line& l) {
    const auto it = elementsByEnds.find(EndsKey(l.GetBegin(), l.GetEnd()));
    return it == elementsByEnds.end() ? nullptr : FirstEqual(it->second, l);
}

LAS_Element* LAS_Solver::FindEqualArc(const LAS_Arc& a) {
    const auto it = elementsByEnds.find(EndsKey(a.GetBegin(), a.GetEnd()));
    return it == elementsByEnds.end() ? nullptr : FirstEqual(it->second, a);
}

void LAS_Solver::RebuildIndexes() {
    nodeCells.clear();
    nodeChain.assign(nodes.size(), -1);
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        nodes[i]->index = static_cast<int>(i);
        RegisterNode(static_cast<int>(i));
    }
    elementsByEnds.clear();
    for (const auto& e : elements) ChainByEnds(e.get());
    elementGrid.Clear();
}

void LAS_Solver::EnsureElementGrid() {
    if (elementGrid.Valid()) return;
    las_index::Box extent;
    for (const auto& e : elements) extent.Add(e->box);
    double size = 0.0;
    for (const auto& e : elements) size += (e->box.x1 - e->box.x0) + (e->box.y1 - e->box.y0);
    elementGrid.Build(extent, elements.size(),
                      elements.empty() ? 0.0 : size / (2.0 * static_cast<double>(elements.size())));
    gridIds.assign(static_cast<std::size_t>(serialCounter) + 1, nullptr);
    for (const auto& e : elements) {
        gridIds[static_cast<std::size_t>(e->serial)] = e.get();
        elementGrid.Insert(static_cast<int>(e->serial), e->box);
    }
}

// ---- Filling ----------------------------------------------------------------------------------

void LAS_Solver::ChainByEnds(LAS_Element* e) {
    // Appended at the end of its chain, so each chain keeps the list order.
    e->sameEnds = nullptr;
    const auto [it, fresh] = elementsByEnds.try_emplace(EndsKey(e->GetBegin(), e->GetEnd()), e);
    if (fresh) return;
    LAS_Element* last = it->second;
    while (last->sameEnds != nullptr) last = last->sameEnds;
    last->sameEnds = e;
}

int LAS_Solver::AddPoint(const Point2& p) {
    if (!Finite(p)) return -1;
    const int found = FindNode(p);
    if (found >= 0) return found;
    nodes.push_back(std::make_unique<LAS_NodeInfo>(p, this));
    const int index = GetNodeCount() - 1;
    nodes.back()->index = index;
    RegisterNode(index);
    return index;
}

int LAS_Solver::Enlist(std::unique_ptr<LAS_Element> e) {
    LAS_Element* raw = e.get();
    raw->serial = ++serialCounter;
    raw->box = solver2d.ContactBox(raw->GetCurve());
    GetNode(raw->GetBegin())->ConnectElement(raw);
    GetNode(raw->GetEnd())->ConnectElement(raw);
    elements.push_back(std::move(e));
    ChainByEnds(raw);
    if (elementGrid.Valid()) {
        gridIds.resize(static_cast<std::size_t>(serialCounter) + 1, nullptr);
        gridIds[static_cast<std::size_t>(raw->serial)] = raw;
        elementGrid.Insert(static_cast<int>(raw->serial), raw->box);
    }
    return GetElementCount() - 1;
}

int LAS_Solver::AddLine(const Point2& a, const Point2& b) {
    const int ia = AddPoint(a);
    const int ib = AddPoint(b);
    if (ia < 0 || ib < 0 || ia == ib) return -1;
    auto line = std::make_unique<LAS_Line>(ia, ib, this);
    if (LAS_Element* same = FindEqualLine(*line)) return GetElementIndx(same);
    return Enlist(std::move(line));
}

int LAS_Solver::AddLine(const Sector2& s) { return AddLine(s.get_beg(), s.get_end()); }

int LAS_Solver::AddArc(const Point2& begin, const Point2& end, const Point2& centre, double sweep) {
    if (!std::isfinite(sweep) || sweep == 0.0) return -1;
    const bool fullTurn = solver2d.IsFullTurn(sweep);
    if (std::fabs(sweep) > kTwoPi && !fullTurn) return -1;  // beyond a turn
    // A full turn is stored as two half turns; a half turn is never split again, so a tolerance
    // as large as a turn (every sweep then counts as full) cannot split without end.
    if (fullTurn && std::fabs(sweep) > kPi) {
        const double h = sweep / 2.0;
        const double s = std::sin(h), c = std::cos(h);
        const Vector2 r = begin - centre;
        const Point2 mid(centre.x + r.x * c - r.y * s, centre.y + r.x * s + r.y * c);
        AddArc(begin, mid, centre, h);
        return AddArc(mid, end, centre, h);
    }
    const int ib = AddPoint(begin);
    const int ie = AddPoint(end);
    const int ic = AddPoint(centre);
    if (ib < 0 || ie < 0 || ic < 0 || ib == ie || ic == ib || ic == ie) return -1;
    auto arc = std::make_unique<LAS_Arc>(ib, ie, ic, sweep, this);
    if (LAS_Element* same = FindEqualArc(*arc)) return GetElementIndx(same);
    return Enlist(std::move(arc));
}

int LAS_Solver::AddArc(const Arc2& a) {
    return AddArc(a.get_begin(), a.get_end(), a.circle.center, a.sweep);
}

void LAS_Solver::AddLAContour(const LAContour* c, int closed) {
    if (c == nullptr || c->empty()) return;
    const std::size_t n = c->size();
    if (n == 1 && (*c)[0].type != 1) return;
    const std::size_t last = closed ? n : n - 1;
    for (std::size_t i = 0; i < last; ++i) {
        const LAEdge& e = (*c)[i];
        const Point2& next = (*c)[(i + 1) % n].start;
        if (e.type == 1)
            AddArc(e.start, next, e.centre, e.angle);
        else if (e.type == 0)
            AddLine(e.start, next);
    }
}

void LAS_Solver::AddLAContours(const std::vector<LAContour*>& list, int closed) {
    for (const LAContour* c : list) AddLAContour(c, closed);
}

void LAS_Solver::AddComplexContour(const ProComplexContour* c) {
    if (c == nullptr) return;
    for (unsigned long i = 0; i < c->ChildrenCount(); ++i) {
        const ProSolidContour* s = c->SolidChild(i);
        if (s == nullptr) continue;
        for (unsigned long j = 0; j < s->ChildrenCount(); ++j) AddLAContour(s->ClosedChild(j), 1);
        AddLAContour(s, 1);
    }
}

void LAS_Solver::DeleteElement(LAS_Element* e) {
    const int index = GetElementIndx(e);
    if (index < 0) return;
    if (LAS_NodeInfo* n = GetNode(e->GetBegin())) n->DisconnectElement(e);
    if (LAS_NodeInfo* n = GetNode(e->GetEnd())) n->DisconnectElement(e);
    const auto it = elementsByEnds.find(EndsKey(e->GetBegin(), e->GetEnd()));
    if (it != elementsByEnds.end()) {
        LAS_Element** link = &it->second;
        while (*link != nullptr && *link != e) link = &(*link)->sameEnds;
        if (*link == e) *link = e->sameEnds;
        e->sameEnds = nullptr;
        if (it->second == nullptr) elementsByEnds.erase(it);
    }
    if (elementGrid.Valid()) {
        elementGrid.Remove(static_cast<int>(e->serial), e->box);
        gridIds[static_cast<std::size_t>(e->serial)] = nullptr;
    }
    elements.erase(elements.begin() + index);
}

// ---- Splitting --------------------------------------------------------------------------------

bool LAS_Solver::SplitElementAt(LAS_Element* e, const Point2& p) {
    if (e->GetType() == LAS_Element::Line) {
        Sector2 a, b;
        // Never refused from SplitPair: a contact lies within eps of the line (the test SplitLine
        // repeats) and is not one of its ends there.
        if (!static_cast<LAS_Line*>(e)->Split(p, a, b)) return false;  // mutate: off (see above)
        AddLine(a);
        AddLine(b);
    } else {
        Arc2 a, b;
        if (!static_cast<LAS_Arc*>(e)->Split(p, a, b)) return false;
        AddArc(a);
        AddArc(b);
    }
    DeleteElement(e);
    return true;
}

bool LAS_Solver::SplitPair(LAS_Element* e, LAS_Element* f, const Point2& p) {
    const bool endOfE = e->IsOnEnd(p);
    const bool endOfF = f->IsOnEnd(p);
    bool split = false;
    if (!endOfE) split = SplitElementAt(e, p);
    if (!endOfF) split = SplitElementAt(f, p) || split;
    return split;
}

int LAS_Solver::SplitEdge(int i) {
    LAS_Element* e = GetElement(i);
    if (e == nullptr) return 1;
    EnsureElementGrid();
    // Scratch lists kept across calls: a split pass asks once per element.
    std::vector<int>& ids = splitIds;
    elementGrid.Query(e->box, ids);
    std::vector<LAS_Element*>& later = splitLater;
    later.clear();
    for (int id : ids) {
        LAS_Element* f = gridIds[static_cast<std::size_t>(id)];
        if (f != nullptr && f->serial > e->serial && e->box.Overlaps(f->box)) later.push_back(f);
    }
    // In list order, as a scan over every later element would meet them: elements whose boxes
    // stay apart have no contact to report.
    std::sort(later.begin(), later.end(),
              [](const LAS_Element* a, const LAS_Element* b) { return a->serial < b->serial; });
    std::vector<Point2>& pts = splitPoints;
    for (LAS_Element* f : later) {
        e->Cross(f, pts, 4);
        for (const Point2& p : pts) {
            if (e->IsOnEnd(p) && f->IsOnEnd(p)) continue;
            if (SplitPair(e, f, p)) return 0;
        }
    }
    return 1;
}

void LAS_Solver::SplitEdges() {
    EnsureElementGrid();
    // Every split shortens elements; the budget only guards against rounding that would keep
    // splitting the same place for ever.
    const std::uint64_t n = static_cast<std::uint64_t>(elements.size());
    splitBudget = std::min<std::uint64_t>(8 * n * n + 10000, 50000000);
    int i = 0;
    while (i < GetElementCount()) {
        if (SplitEdge(i) == 1)
            ++i;
        else if (--splitBudget == 0)
            break;
    }
}

void LAS_Solver::SplitLaContours(const std::vector<LAContour*>& list) {
    AddLAContours(list, 0);
    SplitEdges();
}

void LAS_Solver::RemoveUnusedPoints() {
    std::vector<char> used(nodes.size(), 0);
    for (const auto& e : elements) {
        used[static_cast<std::size_t>(e->begin)] = 1;
        used[static_cast<std::size_t>(e->end)] = 1;
    }
    // One pass gives what erasing from the last unused node to the first gives: each index drops
    // by the number of unused nodes before it.
    std::vector<int> shift(nodes.size(), 0);
    int removed = 0;
    for (std::size_t k = 0; k < nodes.size(); ++k) {
        shift[k] = removed;
        if (!used[k]) ++removed;
    }
    if (removed == 0) return;
    for (const auto& e : elements) {
        e->begin -= shift[static_cast<std::size_t>(e->begin)];
        e->end -= shift[static_cast<std::size_t>(e->end)];
    }
    std::size_t w = 0;
    for (std::size_t k = 0; k < nodes.size(); ++k)
        if (used[k]) nodes[w++] = std::move(nodes[k]);
    nodes.resize(w);
    sortedNodes.clear();
    RebuildIndexes();
}

}  // namespace quillon
