#include "quillon/geometry/contours/contour_validate.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "quillon/geometry/contours/contour_validator.h"
#include "quillon/platform/text.h"

namespace quillon {

namespace contour_check {

namespace {

constexpr double kTwoPi = 2.0 * std::numbers::pi;
// Sweeps beyond a full turn by more than rounding run over themselves.
constexpr double kSweepSlack = 1e-9;

bool Finite(const Point2& p) { return std::isfinite(p.x) && std::isfinite(p.y); }
bool InRange(const Point2& p) {
    return std::fabs(p.x) <= kMaxContourCoordinate && std::fabs(p.y) <= kMaxContourCoordinate;
}

}  // namespace

Validator::Validator(const ProComplexContour& shape, double tolerance)
    : eps(tolerance >= 0.0 ? tolerance : 1e-10), rel(eps) {
    Collect(shape);
}

void Validator::Collect(const ProComplexContour& shape) {
    for (unsigned long i = 0; i < shape.ChildrenCount(); ++i) {
        const ProSolidContour* s = shape.SolidChild(i);
        if (s == nullptr) continue;
        const int sr = static_cast<int>(solids.size());
        solids.emplace_back();
        ContourRec outline;
        outline.geometry = &s->GetLAContour();
        outline.path = {static_cast<long>(i), -1};
        outline.solid = sr;
        solids.back().outline = static_cast<int>(contours.size());
        contours.push_back(outline);
        for (unsigned long j = 0; j < s->ChildrenCount(); ++j) {
            const ProClosedContour* h = s->ClosedChild(j);
            if (h == nullptr) continue;
            ContourRec hole;
            hole.geometry = &h->GetLAContour();
            hole.path = {static_cast<long>(i), static_cast<long>(j)};
            hole.solid = sr;
            hole.hole = true;
            if (dynamic_cast<const ProEmptyContour*>(h) == nullptr) {
                // The solver ignores such a child while the section integrals subtract it.
                contours.push_back(hole);
                Report(ContourProblemKind::NotAHole, static_cast<int>(contours.size()) - 1, -1,
                       h->empty() ? Point2() : h->front().start);
                continue;
            }
            solids.back().holes.push_back(static_cast<int>(contours.size()));
            contours.push_back(hole);
        }
    }
}

bool Validator::CheckNumbers(int ci) {
    const LAContour& g = *contours[static_cast<std::size_t>(ci)].geometry;
    for (std::size_t i = 0; i < g.size(); ++i) {
        const LAEdge& e = g[i];
        const bool arc = e.type == 1;
        if (!Finite(e.start) || (arc && (!Finite(e.centre) || !std::isfinite(e.angle)))) {
            Report(ContourProblemKind::NotFinite, ci, static_cast<long>(i), e.start);
            return false;
        }
    }
    for (std::size_t i = 0; i < g.size(); ++i) {
        const LAEdge& e = g[i];
        if (!InRange(e.start) || (e.type == 1 && !InRange(e.centre))) {
            Report(ContourProblemKind::Overflow, ci, static_cast<long>(i), e.start);
            return false;
        }
    }
    for (std::size_t i = 0; i < g.size(); ++i) {
        const LAEdge& e = g[i];
        if (e.type == 1 && std::fabs(e.angle) > kTwoPi + kSweepSlack) {
            Report(ContourProblemKind::SelfCrossing, ci, static_cast<long>(i), e.start);
            return false;
        }
    }
    return true;
}

void Validator::BuildCurves(int ci, bool commit) {
    ContourRec& rec = contours[static_cast<std::size_t>(ci)];
    const LAContour& g = *rec.geometry;
    const std::size_t n = g.size();
    std::vector<Curve> own;
    for (std::size_t i = 0; i < n; ++i) {
        const LAEdge& e = g[i];
        const Point2& next = g[(i + 1) % n].start;
        Curve k;
        if (e.type == 1) {
            const Point2 end = e.end_arc();
            const bool miss = end.distance(next) > eps;
            if (miss) Report(ContourProblemKind::ArcMismatch, ci, static_cast<long>(i), end);
            // A consistent arc ends exactly where the next edge starts, so the chain stays closed.
            k = Curve::Arc(e.start, miss ? end : next, e.centre, e.angle);
            if (k.r > 0.0 && e.angle != 0.0) {  // mutate: off (a point arc touches nothing)
                k.edge = static_cast<int>(i);
                own.push_back(k);
            }
            if (!miss) continue;
            // The gap, closed by a straight edge as the section integrals close it.
            k = Curve::Line(end, next);
        } else {
            k = Curve::Line(e.start, next);
        }
        if (k.a.x == k.b.x && k.a.y == k.b.y) continue;  // zero length: no geometry at all
        k.edge = static_cast<int>(i);
        own.push_back(k);
    }

    bool anyLong = false, allStraight = true;
    for (const Curve& k : own) {
        anyLong = anyLong || k.Length() > eps;
        allStraight = allStraight && k.type != 1;
    }
    bool flat = !anyLong;
    if (anyLong && allStraight) {
        // All edges straight: the contour is flat when every vertex lies within eps of the line
        // through the first vertex and the one farthest from it.
        const Point2 a = own.front().a;
        Point2 far = a;
        for (const Curve& k : own)
            if (k.a.distance(a) > far.distance(a)) far = k.a;
        const Vector2 d = (far - a).get_normalized();
        flat = true;
        for (const Curve& k : own)
            if (std::fabs(d % (k.a - a)) > eps) flat = false;
    }
    if (flat) {
        Report(ContourProblemKind::NotClosed, ci, -1, n > 0 ? g[0].start : Point2());
        return;
    }
    if (!commit) return;

    rec.usable = true;
    rec.first = static_cast<int>(curves.size());
    rec.count = static_cast<int>(own.size());
    double lead = 0.0;  // short curves ahead of the first long one close the last junction
    for (Curve& k : own) {
        k.contour = ci;
        const bool isLong = k.Length() > eps;
        longPos.push_back(isLong ? static_cast<int>(rec.longs.size()) : -1);
        if (isLong) {
            rec.longs.push_back(static_cast<int>(curves.size()));
            rec.chain.push_back(0.0);
        } else if (!rec.chain.empty()) {
            rec.chain.back() += k.Length();
        } else {
            lead += k.Length();
        }
        curves.push_back(k);
    }
    rec.chain.back() += lead;
}

void Validator::CheckSelfPair(int u, int v) {
    const Curve& cu = curves[static_cast<std::size_t>(u)];
    const Curve& cv = curves[static_cast<std::size_t>(v)];
    const int pu = longPos[static_cast<std::size_t>(u)], pv = longPos[static_cast<std::size_t>(v)];
    // Curves no longer than eps are part of the junction they stand in.
    if (pu < 0 || pv < 0) return;
    const ContourRec& rec = contours[static_cast<std::size_t>(cu.contour)];
    const int count = static_cast<int>(rec.longs.size());
    contour_index::Contacts(rel, cu, cv, pts);
    if (pts.empty()) return;
    const bool forward = pv == (pu + 1) % count;   // u runs into v
    const bool backward = pu == (pv + 1) % count;  // v runs into u
    for (const Point2& p : pts) {
        if (forward) {
            const double tol = 2.0 * eps + rec.chain[static_cast<std::size_t>(pu)];
            if (p.distance(cu.b) <= tol || p.distance(cv.a) <= tol) continue;
        }
        if (backward) {
            const double tol = 2.0 * eps + rec.chain[static_cast<std::size_t>(pv)];
            if (p.distance(cv.b) <= tol || p.distance(cu.a) <= tol) continue;
        }
        if (!forward && !backward) {
            const double du = std::min(p.distance(cu.a), p.distance(cu.b));
            const double dv = std::min(p.distance(cv.a), p.distance(cv.b));
            if (du <= 2.0 * eps && dv <= 2.0 * eps) {
                // Both pass a vertex here: the contour visits this point twice, which is allowed
                // when it only touches itself; CheckPinches decides.
                const int vu = p.distance(cu.a) <= p.distance(cu.b) ? pu : (pu + 1) % count;
                const int vv = p.distance(cv.a) <= p.distance(cv.b) ? pv : (pv + 1) % count;
                if (vu != vv) pinches.emplace(cu.contour, std::min(vu, vv), std::max(vu, vv));
                continue;
            }
        }
        Report(ContourProblemKind::SelfCrossing, cu.contour, cu.edge, p);
        return;
    }
}

void Validator::CheckVisits(int ci) {
    const ContourRec& rec = contours[static_cast<std::size_t>(ci)];
    const std::size_t count = rec.longs.size();
    if (count < 2) return;
    for (std::size_t m = 0; m < count; ++m) {
        const Curve& in = curves[static_cast<std::size_t>(rec.longs[(m + count - 1) % count])];
        const Curve& out = curves[static_cast<std::size_t>(rec.longs[m])];
        // Leaving a vertex the way the contour came in: it folds back along itself.
        if (contour_index::SameHeading(contour_index::Leaving(in, false),
                                       contour_index::Leaving(out, true))) {
            Report(ContourProblemKind::SelfCrossing, ci, out.edge, out.a);
            return;
        }
    }
}

void Validator::CheckPinches() {
    using contour_index::Heading;
    for (const auto& [ci, v1, v2] : pinches) {
        const ContourRec& rec = contours[static_cast<std::size_t>(ci)];
        const std::size_t count = rec.longs.size();
        const auto visit = [&](int v, Heading& in, Heading& out) {
            const std::size_t m = static_cast<std::size_t>(v);
            in = contour_index::Leaving(
                curves[static_cast<std::size_t>(rec.longs[(m + count - 1) % count])], false);
            out = contour_index::Leaving(curves[static_cast<std::size_t>(rec.longs[m])], true);
        };
        Heading in1, out1, in2, out2;
        visit(v1, in1, out1);
        visit(v2, in2, out2);
        const auto same = [](const Heading& a, const Heading& b) {
            return contour_index::SameHeading(a, b);
        };
        // The first visit's two headings cut the directions round the point in two sectors; the
        // second visit crosses it when its headings fall in different sectors.
        const auto between = [](const Heading& a, const Heading& b, const Heading& x) {
            if (contour_index::HeadingBefore(a, b))
                return contour_index::HeadingBefore(a, x) && contour_index::HeadingBefore(x, b);
            return contour_index::HeadingBefore(a, x) || contour_index::HeadingBefore(x, b);
        };
        const bool along = same(in1, in2) || same(in1, out2) || same(out1, in2) || same(out1, out2);
        if (along || between(in1, out1, in2) != between(in1, out1, out2)) {
            const Curve& k =
                curves[static_cast<std::size_t>(rec.longs[static_cast<std::size_t>(v2)])];
            Report(ContourProblemKind::SelfCrossing, ci, k.edge, k.a);
        }
    }
}

void Validator::Report(ContourProblemKind kind, int contour, long edge, const Point2& where,
                       int other) {
    const bool pair = kind == ContourProblemKind::HoleOutside ||
                      kind == ContourProblemKind::HolesOverlap ||
                      kind == ContourProblemKind::SolidsOverlap;
    if (pair) {
        const int a = std::min(contour, other), b = std::max(contour, other);
        if (!reportedPair.emplace(static_cast<int>(kind), a, b).second) return;
    } else if (!reportedSingle.emplace(contour, static_cast<int>(kind)).second) {
        return;
    }
    ContourProblem p;
    p.kind = kind;
    p.path = contours[static_cast<std::size_t>(contour)].path;
    if (other >= 0) p.other = contours[static_cast<std::size_t>(other)].path;
    p.edge = edge;
    p.where = where;
    problems.push_back(p);
}

ContourValidation Validator::Run() {
    for (std::size_t s = 0; s < solids.size(); ++s) {
        const SolidRec& sr = solids[s];
        const bool outlineOk = CheckNumbers(sr.outline);
        if (outlineOk) BuildCurves(sr.outline, true);
        const bool base = contours[static_cast<std::size_t>(sr.outline)].usable;
        // Holes of a solid without a usable outline are checked alone.
        for (int h : sr.holes)
            if (CheckNumbers(h)) BuildCurves(h, base);
    }
    contour_index::CurveGrid index(curves, eps);
    grid = &index;
    contactsOf.assign(contours.size(), {});
    index.ForEachPair([this](int u, int v) {
        if (curves[static_cast<std::size_t>(u)].contour ==
            curves[static_cast<std::size_t>(v)].contour)
            CheckSelfPair(u, v);
        else
            RecordContacts(u, v);
    });
    for (std::size_t ci = 0; ci < contours.size(); ++ci)
        if (contours[ci].usable) CheckVisits(static_cast<int>(ci));
    CheckPinches();
    Relations();
    grid = nullptr;

    std::stable_sort(problems.begin(), problems.end(),
                     [](const ContourProblem& a, const ContourProblem& b) {
                         return std::make_tuple(a.path.solid, a.path.hole, static_cast<int>(a.kind),
                                                a.other.solid, a.other.hole) <
                                std::make_tuple(b.path.solid, b.path.hole, static_cast<int>(b.kind),
                                                b.other.solid, b.other.hole);
                     });
    ContourValidation result;
    result.problems = std::move(problems);
    return result;
}

}  // namespace contour_check

std::size_t ContourValidation::Count(ContourProblemKind kind) const {
    return static_cast<std::size_t>(
        std::count_if(problems.begin(), problems.end(),
                      [kind](const ContourProblem& p) { return p.kind == kind; }));
}

ContourValidation ValidateComplexContour(const ProComplexContour& shape, double eps) {
    if (std::isnan(eps)) eps = -1.0;  // mutate: off (any negative epsilon means the default)
    return contour_check::Validator(shape, eps).Run();
}

const char* ContourProblemText(ContourProblemKind kind) {
    switch (kind) {
        case ContourProblemKind::NotFinite:
            return "a coordinate or sweep is not a finite number";
        case ContourProblemKind::Overflow:
            return "coordinates too large: area and moments would overflow";
        case ContourProblemKind::NotClosed:
            return "the contour encloses no area";
        case ContourProblemKind::ArcMismatch:
            return "an arc does not end where the next edge starts";
        case ContourProblemKind::SelfCrossing:
            return "the contour crosses or runs along itself";
        case ContourProblemKind::NotAHole:
            return "a child of the solid is not a hole";
        case ContourProblemKind::HoleOutside:
            return "the hole lies outside its solid";
        case ContourProblemKind::HolesOverlap:
            return "the holes overlap";
        case ContourProblemKind::SolidsOverlap:
            return "the solids overlap";
    }
    return "unknown problem";
}

namespace {

std::string PathText(const ContourPath& p) {
    std::string s = platform::FormatC("solid %ld", p.solid + 1);
    if (p.hole >= 0) s += platform::FormatC(", hole %ld", p.hole + 1);
    return s;
}

// Adding 0.0 turns a negative zero into a positive one.
double Shown(double v) { return v + 0.0; }

}  // namespace

std::string DescribeProblem(const ContourProblem& problem) {
    std::string s = PathText(problem.path);
    if (problem.other.solid >= 0 && !(problem.other == problem.path) &&
        problem.kind != ContourProblemKind::HoleOutside) {
        s += " and " + PathText(problem.other);
    }
    s += ": ";
    s += ContourProblemText(problem.kind);
    s += platform::FormatC(", at (%g, %g)", Shown(problem.where.x), Shown(problem.where.y));
    return s;
}

}  // namespace quillon
