// Solid booleans: the pipeline, the face selection and the ready-made subtraction.
#include "quillon/geometry/space/solid3_inter.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <unordered_map>

namespace quillon {

namespace {

std::atomic<long> g_boolSubstractCalls{0};
std::atomic<bool> g_boolSubstractChecking{false};

// Every edge run as often one way as the other by the loops of the faces: a watertight surface.
// Solids that touch along an edge or at a corner unite into a surface whose edge there is run by
// four faces, twice each way: still closed, though not a 2-manifold.
bool ClosedSurface(const Solid3& s) {
    std::unordered_map<std::uint64_t, int> runs;
    auto add = [&](const Mvector<std::uint32_t>& loop) {
        for (std::size_t i = 0; i < loop.size(); ++i)
            ++runs[(std::uint64_t(loop[i]) << 32) | loop[(i + 1) % loop.size()]];
    };
    for (const Face3& f : s.Face()) {
        add(f.loop);
        for (const auto& h : f.holes) add(h);
    }
    for (const auto& [key, count] : runs) {
        const auto it = runs.find((key << 32) | (key >> 32));
        if (it == runs.end() || it->second != count) return false;
    }
    return true;
}

}  // namespace

Solid3Inter::Solid3Inter(const Solid3& a, const Solid3& b)
    : pool(0.0), first(a), second(b), eps(std::max(a.GetEps(), b.GetEps())) {}

bool Solid3Inter::MakeInterData() {
    ready = false;
    errorStat = 0;
    if (!PrepareData()) return false;
    if (!GenSecondaryData()) return false;
    if (!CutEdges(OWNER_FIRST) || !CutEdges(OWNER_SECOND)) return false;
    if (!SetEdgeVertexStatus()) return false;
    if (!GenrateNewEdges()) return false;
    if (!GenerateFaces()) return false;
    if (!SetFaceStatus()) return false;
    ready = true;
    return true;
}

int Solid3Inter::SelectSolidData(const Mvector<CSelSolidParam>& params, Solid3& result) {
    std::vector<std::uint32_t> vertexMap(pool.size(), 0xffffffffu);
    auto vertex = [&](std::uint32_t v) {
        if (vertexMap[v] == 0xffffffffu)
            vertexMap[v] = static_cast<std::uint32_t>(result.GetVertexInd(pool[v]));
        return vertexMap[v];
    };
    // Materials travel by name: an operand's material becomes the result's of the same name.
    std::unordered_map<std::uint64_t, int> materialMap;
    auto material = [&](int owner, int m) -> int {
        const Solid3& s = owner == OWNER_FIRST ? first : second;
        if (m < 0 || static_cast<std::size_t>(m) >= s.Material().size()) return -1;
        const std::uint64_t key = (std::uint64_t(owner) << 32) | static_cast<std::uint32_t>(m);
        const auto it = materialMap.find(key);
        if (it != materialMap.end()) return it->second;
        const Material3& mat = s.Material()[static_cast<std::size_t>(m)];
        int found = -1;
        for (std::size_t i = 0; i < result.Material().size(); ++i)
            if (result.Material()[i].name == mat.name) {
                found = static_cast<int>(i);
                break;
            }
        if (found < 0) found = static_cast<int>(result.AddMaterial(mat));
        materialMap.emplace(key, found);
        return found;
    };
    int copied = 0;
    for (const Face3Inter& f : faces) {
        if (!f.alive) continue;
        const CSelSolidParam* row = nullptr;
        for (const auto& p : params)
            if ((f.owner & p.owner) != 0 && (f.status & p.status) != 0) {
                row = &p;
                break;
            }
        if (row == nullptr) continue;
        Face3 out;
        auto copy = [&](const Mvector<std::uint32_t>& in, Mvector<std::uint32_t>& loop) {
            loop.reserve(in.size());
            for (const std::uint32_t v : in) loop.push_back(vertex(v));
            if (row->reverse) std::reverse(loop.begin(), loop.end());
        };
        copy(f.loop, out.loop);
        for (const auto& h : f.holes) {
            out.holes.emplace_back();
            copy(h, out.holes.back());
        }
        out.material = material(f.owner, f.material);
        out.normal = row->reverse ? -f.normal : f.normal;
        result.AddFace(out);
        ++copied;
    }
    return copied;
}

bool Solid3Inter::BoolOper(EBOOL_OPER op, Solid3& result) {
    if (!ready) return false;
    Mvector<CSelSolidParam> rows;
    switch (op) {
        case BOOL_SUBTRACT:
            rows.Add({OWNER_FIRST, STATUS_OUTSIDE | STATUS_OPPOSITE_TWIN, false});
            rows.Add({OWNER_SECOND, STATUS_INSIDE, true});
            break;
        case BOOL_UNION:
            rows.Add({OWNER_FIRST, STATUS_OUTSIDE | STATUS_SAME_TWIN, false});
            rows.Add({OWNER_SECOND, STATUS_OUTSIDE, false});
            break;
        case BOOL_INTERSECT:
            rows.Add({OWNER_FIRST, STATUS_INSIDE | STATUS_SAME_TWIN, false});
            rows.Add({OWNER_SECOND, STATUS_INSIDE, false});
            break;
        case BOOL_ALL_PIECES:
            rows.Add({OWNER_ALL,
                      STATUS_OUTSIDE | STATUS_INSIDE | STATUS_SAME_TWIN | STATUS_OPPOSITE_TWIN,
                      false});
            break;
        default:
            return false;
    }
    SelectSolidData(rows, result);
    const bool closed = ClosedSurface(result);
    result.SetClosed(closed);
    if (first.GetClosed() && second.GetClosed() && !closed) {
        errorStat |= errNotClosed;
        return false;
    }
    return true;
}

void SetBoolSubstractChecking(bool on) { g_boolSubstractChecking = on; }
bool GetBoolSubstractChecking() { return g_boolSubstractChecking; }
long BoolSubstractCalls() { return g_boolSubstractCalls; }

bool BoolSubstractBoxesFit(const Solid3& a, const Solid3& b, const Solid3& r) {
    const double e = a.GetEps();
    Point3 alo, ahi, blo, bhi, rlo, rhi;
    if (!a.GetExtents(alo, ahi)) return r.Face().empty();
    const bool haveB = b.GetClosed() && b.GetExtents(blo, bhi);
    if (!r.GetExtents(rlo, rhi)) {
        if (!haveB) return true;
        for (int k = 0; k < 3; ++k)
            if (blo.tab()[k] > alo.tab()[k] + e || bhi.tab()[k] < ahi.tab()[k] - e) return false;
        return true;
    }
    bool apart = !haveB;
    for (int k = 0; k < 3 && !apart; ++k)
        apart = blo.tab()[k] > ahi.tab()[k] + e || bhi.tab()[k] < alo.tab()[k] - e;
    for (int k = 0; k < 3; ++k) {
        const double lo = rlo.tab()[k], hi = rhi.tab()[k];
        if (lo < alo.tab()[k] - e || hi > ahi.tab()[k] + e) return false;
        if (!haveB) continue;
        // Where b does not reach past a's extreme on a side (or misses a altogether), nothing
        // there is taken away, so the result keeps that extreme.
        const bool keepLo = apart || blo.tab()[k] > alo.tab()[k] + e;
        const bool keepHi = apart || bhi.tab()[k] < ahi.tab()[k] - e;
        if (keepLo && std::fabs(lo - alo.tab()[k]) > e) return false;
        if (keepHi && std::fabs(hi - ahi.tab()[k]) > e) return false;
    }
    return true;
}

bool BoolSubstract(const Solid3& a, const Solid3& b, Solid3& result, int* status) {
    ++g_boolSubstractCalls;
    Solid3Inter inter(a, b);
    inter.MakeInterData();
    result.Clear();
    bool ok = inter.BoolOper(BOOL_SUBTRACT, result);
    int bits = inter.GetErrorStat();
    if (ok && g_boolSubstractChecking && !BoolSubstractBoxesFit(a, b, result)) {
        ok = false;
        bits |= 0x2000;
    }
    if (ok && a.GetClosed() && b.GetClosed() && !result.GetClosed()) ok = false;
    if (status != nullptr) *status = bits;
    return ok;
}

}  // namespace quillon
