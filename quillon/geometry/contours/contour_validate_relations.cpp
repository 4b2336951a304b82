// Checks between contours: holes inside their solid, holes of a solid apart, solids apart.
//
// Two contours whose boundaries never come within eps of each other are related by one point:
// the sample of one lies inside the other exactly when all of it does; its winding numbers are
// asked only of the contours whose boxes hold it. Contours that touch are cut at their
// contacts and each stretch between contacts is placed by its middle: on the other's boundary
// (within eps), inside or outside. Two regions overlap when a stretch of one's boundary lies
// inside the other, or when their boundaries coincide.
#include <algorithm>
#include <climits>
#include <map>

#include "quillon/geometry/contours/contour_validate.h"
#include "quillon/geometry/contours/contour_validator.h"

namespace quillon::contour_check {

namespace {

std::uint64_t PairKey(int a, int b) {
    if (a > b) std::swap(a, b);
    return (static_cast<std::uint64_t>(static_cast<std::uint32_t>(a)) << 32) |
           static_cast<std::uint32_t>(b);
}

int WindingOf(const std::vector<std::pair<int, int>>& w, int contour) {
    const auto it = std::lower_bound(w.begin(), w.end(), std::make_pair(contour, INT_MIN));
    return it != w.end() && it->first == contour ? it->second : 0;
}

}  // namespace

void Validator::RecordContacts(int u, int v) {
    const Curve& cu = curves[static_cast<std::size_t>(u)];
    const Curve& cv = curves[static_cast<std::size_t>(v)];
    contour_index::Contacts(rel, cu, cv, pts);
    if (pts.empty()) return;
    for (const Point2& p : pts) {
        contactsOf[static_cast<std::size_t>(cu.contour)].push_back({u, v, p});
        contactsOf[static_cast<std::size_t>(cv.contour)].push_back({v, u, p});
    }
    if (touching.insert(PairKey(cu.contour, cv.contour)).second)
        touchPairs.emplace_back(std::min(cu.contour, cv.contour), std::max(cu.contour, cv.contour));
    const int su = contours[static_cast<std::size_t>(cu.contour)].solid;
    const int sv = contours[static_cast<std::size_t>(cv.contour)].solid;
    solidTouch.insert((static_cast<std::uint64_t>(static_cast<std::uint32_t>(cu.contour)) << 32) |
                      static_cast<std::uint32_t>(sv));
    solidTouch.insert((static_cast<std::uint64_t>(static_cast<std::uint32_t>(cv.contour)) << 32) |
                      static_cast<std::uint32_t>(su));
}

bool Validator::Touching(int a, int b) const { return touching.count(PairKey(a, b)) != 0; }

bool Validator::InTarget(int contour, const Target& t) const {
    if (t.contour >= 0) return contour == t.contour;
    return contours[static_cast<std::size_t>(contour)].solid == t.solid;
}

bool Validator::Inside(const std::vector<std::pair<int, int>>& w, const Target& t) const {
    if (t.contour >= 0) return WindingOf(w, t.contour) != 0;
    if (WindingOf(w, solids[static_cast<std::size_t>(t.solid)].outline) == 0) return false;
    for (const auto& [k, wk] : w) {
        const ContourRec& rec = contours[static_cast<std::size_t>(k)];
        if (rec.hole && rec.solid == t.solid && wk != 0) return false;
    }
    return true;
}

void Validator::ClassifyPoint(const Point2& p, int curve, const Target& t, Flags& f) {
    grid->Near(p, eps, near);
    for (int id : near) {
        const Curve& k = curves[static_cast<std::size_t>(id)];
        if (InTarget(k.contour, t) && contour_index::Distance(k, p) <= eps) {
            f.on = true;
            return;
        }
    }
    WindingsAt(p, wind);
    if (Inside(wind, t)) {
        if (!f.in) f.inAt = p;
        f.in = true;
    } else {
        if (!f.out) {
            f.outAt = p;
            f.outCurve = curve;
        }
        f.out = true;
    }
}

Flags Validator::Classify(int ci, const Target& t) {
    const ContourRec& rec = contours[static_cast<std::size_t>(ci)];
    Flags f;
    // Contacts with the target, by curve and then along it.
    std::vector<std::pair<int, double>> cuts;
    for (const ContactRef& c : contactsOf[static_cast<std::size_t>(ci)]) {
        if (!InTarget(curves[static_cast<std::size_t>(c.other)].contour, t)) continue;
        cuts.emplace_back(c.curve,
                          contour_index::Param(curves[static_cast<std::size_t>(c.curve)], c.p));
    }
    if (cuts.empty()) {
        // Farther than eps from the target everywhere: the sample speaks for the whole contour.
        if (Inside(rec.windings, t)) {
            f.in = true;
            f.inAt = rec.sample;
        } else {
            f.out = true;
            f.outAt = rec.sample;
            f.outCurve = rec.longs.front();
        }
        return f;
    }
    std::sort(cuts.begin(), cuts.end());
    std::vector<int> cutCurves;
    for (const auto& c : cuts)
        if (cutCurves.empty() || cutCurves.back() != c.first) cutCurves.push_back(c.first);
    std::vector<double> ts;
    std::size_t m = 0;
    for (std::size_t q = 0; q < cutCurves.size(); ++q) {
        const int id = cutCurves[q];
        ts.assign(1, 0.0);
        for (; m < cuts.size() && cuts[m].first == id; ++m) ts.push_back(cuts[m].second);
        ts.push_back(1.0);
        const Curve& k = curves[static_cast<std::size_t>(id)];
        for (std::size_t r = 0; r + 1 < ts.size(); ++r)
            if (ts[r + 1] - ts[r] > 1e-12)
                ClassifyPoint(contour_index::PointAt(k, (ts[r] + ts[r + 1]) / 2.0), id, t, f);
        // The curves up to the next one with contacts keep farther than eps from the target:
        // one point places them all.
        const int following = rec.first + (id - rec.first + 1) % rec.count;
        if (following != cutCurves[(q + 1) % cutCurves.size()])
            ClassifyPoint(contour_index::PointAt(curves[static_cast<std::size_t>(following)], 0.5),
                          following, t, f);
    }
    return f;
}

void Validator::WindingsAt(const Point2& p, std::vector<std::pair<int, int>>& out) {
    out.clear();
    boxes->Holding(p, holding);
    for (int k : holding) {
        const int w = chains[static_cast<std::size_t>(k)].Winding(p);
        if (w != 0) out.emplace_back(k, w);
    }
}

void Validator::Relations() {
    chains.resize(contours.size());
    contourBoxes.resize(contours.size());
    for (std::size_t ci = 0; ci < contours.size(); ++ci) {
        const ContourRec& rec = contours[ci];
        if (!rec.usable) continue;
        chains[ci] = contour_index::ChainWinding(curves, rec.first, rec.count);
        contourBoxes[ci] = chains[ci].Bounds();
    }
    contour_index::BoxIndex index(contourBoxes);
    boxes = &index;
    for (std::size_t ci = 0; ci < contours.size(); ++ci) {
        ContourRec& rec = contours[ci];
        if (!rec.usable) continue;
        rec.sample =
            contour_index::PointAt(curves[static_cast<std::size_t>(rec.longs.front())], 0.5);
        WindingsAt(rec.sample, rec.windings);
        rec.windings.erase(std::remove_if(rec.windings.begin(), rec.windings.end(),
                                          [ci](const std::pair<int, int>& w) {
                                              return w.first == static_cast<int>(ci);
                                          }),
                           rec.windings.end());
    }
    CheckHoles();
    CheckHolePairs();
    CheckSolidPairs();
    boxes = nullptr;
}

void Validator::CheckHoles() {
    for (const SolidRec& s : solids) {
        if (!contours[static_cast<std::size_t>(s.outline)].usable) continue;
        for (int h : s.holes) {
            const ContourRec& rec = contours[static_cast<std::size_t>(h)];
            if (!rec.usable) continue;
            const Flags f = Classify(h, Target{s.outline, -1});
            if (f.out) {
                Report(ContourProblemKind::HoleOutside, h,
                       curves[static_cast<std::size_t>(f.outCurve)].edge, f.outAt, s.outline);
            }
        }
    }
}

void Validator::CheckHolePairs() {
    for (const auto& [a, b] : touchPairs) {
        const ContourRec& ra = contours[static_cast<std::size_t>(a)];
        const ContourRec& rb = contours[static_cast<std::size_t>(b)];
        if (!ra.hole || !rb.hole || ra.solid != rb.solid) continue;
        const Flags fa = Classify(a, Target{b, -1});
        const Flags fb = Classify(b, Target{a, -1});
        if (fa.in || fb.in || (fa.AllOn() && fb.AllOn()))
            Report(ContourProblemKind::HolesOverlap, a, -1,
                   fa.in   ? fa.inAt
                   : fb.in ? fb.inAt
                           : ra.sample,
                   b);
    }
    for (std::size_t h = 0; h < contours.size(); ++h) {
        const ContourRec& rec = contours[h];
        if (!rec.usable || !rec.hole) continue;
        for (const auto& [k, w] : rec.windings) {
            const ContourRec& other = contours[static_cast<std::size_t>(k)];
            if (other.hole && other.solid == rec.solid && !Touching(static_cast<int>(h), k))
                Report(ContourProblemKind::HolesOverlap, std::min(static_cast<int>(h), k), -1,
                       rec.sample, std::max(static_cast<int>(h), k));
        }
    }
}

void Validator::CheckSolidPairs() {
    // Solids whose boundaries touch: the contours of each that touch the other.
    std::map<std::pair<int, int>, std::vector<int>> touchingSolids;
    for (const auto& [a, b] : touchPairs) {
        const int sa = contours[static_cast<std::size_t>(a)].solid;
        const int sb = contours[static_cast<std::size_t>(b)].solid;
        if (sa == sb) continue;
        auto& list = touchingSolids[{std::min(sa, sb), std::max(sa, sb)}];
        list.push_back(a);
        list.push_back(b);
    }
    for (auto& [key, list] : touchingSolids) {
        std::sort(list.begin(), list.end());
        list.erase(std::unique(list.begin(), list.end()), list.end());
        const int o1 = solids[static_cast<std::size_t>(key.first)].outline;
        const int o2 = solids[static_cast<std::size_t>(key.second)].outline;
        bool on1 = false, on2 = false;
        for (int c : list) {
            const int own = contours[static_cast<std::size_t>(c)].solid;
            const int other = own == key.first ? key.second : key.first;
            const Flags f = Classify(c, Target{-1, other});
            if (f.in) {
                Report(ContourProblemKind::SolidsOverlap, o1, -1, f.inAt, o2);
                break;
            }
            if (c == o1) on1 = f.AllOn();
            if (c == o2) on2 = f.AllOn();
        }
        if (on1 && on2)
            Report(ContourProblemKind::SolidsOverlap, o1, -1,
                   contours[static_cast<std::size_t>(o1)].sample, o2);
    }
    // Contours that touch no part of a solid lie wholly inside its region or wholly outside.
    for (std::size_t ci = 0; ci < contours.size(); ++ci) {
        const ContourRec& rec = contours[ci];
        if (!rec.usable) continue;
        for (const auto& [k, w] : rec.windings) {
            const ContourRec& other = contours[static_cast<std::size_t>(k)];
            if (other.hole || other.solid == rec.solid) continue;
            const std::uint64_t key =
                (static_cast<std::uint64_t>(ci) << 32) | static_cast<std::uint32_t>(other.solid);
            if (solidTouch.count(key) != 0) continue;
            if (!Inside(rec.windings, Target{-1, other.solid})) continue;
            const int own = solids[static_cast<std::size_t>(rec.solid)].outline;
            Report(ContourProblemKind::SolidsOverlap, std::min(own, k), -1, rec.sample,
                   std::max(own, k));
        }
    }
}

}  // namespace quillon::contour_check
