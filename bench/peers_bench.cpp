// Quillon's contour booleans side by side with three other engines on identical inputs: GEOS and
// Clipper (polygon engines; arcs cut into chords) and CGAL's exact circle-segment polygon sets
// (arcs kept as circles). Every iteration runs Quillon and the peer on the same prepared input;
// the counters give the seconds per operation of each and the ratio Quillon / peer.
//
// Inputs are prepared outside the timing for every engine alike; each timed run builds the result
// and destroys it.
#include <benchmark/benchmark.h>
#include <geos_c.h>

#include <CGAL/Exact_predicates_exact_constructions_kernel.h>
#include <CGAL/General_polygon_set_2.h>
#include <CGAL/Gps_circle_segment_traits_2.h>
#include <chrono>
#include <cmath>
#include <functional>
#include <list>
#include <numbers>
#include <polyclipping/clipper.hpp>
#include <vector>

#include "quillon/geometry/contours/las_solver.h"

namespace {

using namespace quillon;

constexpr double kEps = 1e-7;
constexpr double kPi = std::numbers::pi;
constexpr int kChordsPerTurn = 65536;
// Clipper works on integers; 1e7 keeps every coordinate here below its fast 30-bit range.
constexpr double kClipperScale = 1e7;

// ---- Engine-neutral shapes --------------------------------------------------------------------

// A closed ring: a polygon (counter-clockwise for outlines, clockwise for holes) or a full circle.
struct Ring {
    std::vector<Point2> points;
    bool circle = false;
    Point2 centre;
    double radius = 0.0;
    bool ccw = true;
};
struct Shape {
    Ring outer;
    std::vector<Ring> holes;
};
using Operand = std::vector<Shape>;  // disjoint shapes

Ring Polygon(int n, double cx, double r) {
    Ring ring;
    for (int k = 0; k < n; ++k) {
        const double a = 2 * kPi * k / n;
        ring.points.emplace_back(cx + r * std::cos(a), r * std::sin(a));
    }
    return ring;
}

Ring Circle(double cx, double r, bool ccw) {
    Ring ring;
    ring.circle = true;
    ring.centre = Point2(cx, 0);
    ring.radius = r;
    ring.ccw = ccw;
    return ring;
}

Ring Square(double x, double y) {
    Ring ring;
    ring.points = {Point2(x, y), Point2(x + 1, y), Point2(x + 1, y + 1), Point2(x, y + 1)};
    return ring;
}

// The vertices of a ring, circles cut into chords.
std::vector<Point2> Chords(const Ring& ring) {
    if (!ring.circle) return ring.points;
    std::vector<Point2> pts;
    pts.reserve(kChordsPerTurn);
    for (int k = 0; k < kChordsPerTurn; ++k) {
        const double a = (ring.ccw ? 2 : -2) * kPi * k / kChordsPerTurn;
        pts.emplace_back(ring.centre.x + ring.radius * std::cos(a),
                         ring.centre.y + ring.radius * std::sin(a));
    }
    return pts;
}

// ---- Quillon ------------------------------------------------------------------------------------

LAContour ToLA(const Ring& ring) {
    LAContour c;
    if (ring.circle) {
        const double s = ring.ccw ? kPi : -kPi;
        c.push_back(LAEdge(Point2(ring.centre.x + ring.radius, ring.centre.y), ring.centre, s));
        c.push_back(LAEdge(Point2(ring.centre.x - ring.radius, ring.centre.y), ring.centre, s));
    } else {
        for (const Point2& p : ring.points) c.push_back(LAEdge(p));
    }
    return c;
}

ProComplexContour* ToQuillon(const Operand& operand) {
    ProContourFactory f;
    ProComplexContour* c = f.CreateComplexContour();
    for (const Shape& shape : operand) {
        ProSolidContour* s = f.CreateSolidContour();
        s->SetLAContour(ToLA(shape.outer));
        for (const Ring& h : shape.holes) {
            ProEmptyContour* e = f.CreateEmptyContour();
            e->SetLAContour(ToLA(h));
            s->Attach(e);
        }
        c->Attach(s);
    }
    return c;
}

// ---- GEOS ---------------------------------------------------------------------------------------

struct Geos {
    GEOSContextHandle_t h = GEOS_init_r();
    ~Geos() { GEOS_finish_r(h); }

    GEOSGeometry* Ring(const ::Ring& ring) const {
        const std::vector<Point2> pts = Chords(ring);
        GEOSCoordSequence* seq = GEOSCoordSeq_create_r(h, static_cast<unsigned>(pts.size() + 1), 2);
        for (std::size_t i = 0; i <= pts.size(); ++i) {
            const Point2& p = pts[i % pts.size()];
            GEOSCoordSeq_setXY_r(h, seq, static_cast<unsigned>(i), p.x, p.y);
        }
        return GEOSGeom_createLinearRing_r(h, seq);
    }
    GEOSGeometry* Make(const Operand& operand) const {
        std::vector<GEOSGeometry*> polys;
        for (const Shape& s : operand) {
            std::vector<GEOSGeometry*> holes;
            for (const ::Ring& r : s.holes) holes.push_back(Ring(r));
            polys.push_back(GEOSGeom_createPolygon_r(h, Ring(s.outer), holes.data(),
                                                     static_cast<unsigned>(holes.size())));
        }
        if (polys.size() == 1) return polys[0];
        return GEOSGeom_createCollection_r(h, GEOS_MULTIPOLYGON, polys.data(),
                                           static_cast<unsigned>(polys.size()));
    }
};

// ---- Clipper ------------------------------------------------------------------------------------

ClipperLib::Paths ToClipper(const Operand& operand) {
    ClipperLib::Paths paths;
    for (const Shape& s : operand) {
        std::vector<const Ring*> rings{&s.outer};
        for (const Ring& h : s.holes) rings.push_back(&h);
        for (const Ring* r : rings) {
            ClipperLib::Path path;
            for (const Point2& p : Chords(*r))
                path.emplace_back(std::llround(p.x * kClipperScale),
                                  std::llround(p.y * kClipperScale));
            paths.push_back(std::move(path));
        }
    }
    return paths;
}

// ---- CGAL (exact rationals, circles kept) -------------------------------------------------------

using Kernel = CGAL::Exact_predicates_exact_constructions_kernel;
using Traits = CGAL::Gps_circle_segment_traits_2<Kernel>;
using CgalSet = CGAL::General_polygon_set_2<Traits>;
using CgalPolygon = Traits::General_polygon_2;
using CgalPolygonWithHoles = Traits::General_polygon_with_holes_2;

CgalPolygon ToCgal(const Ring& ring) {
    CgalPolygon pgn;
    if (ring.circle) {
        Traits traits;
        const Kernel::Circle_2 circle(Kernel::Point_2(ring.centre.x, ring.centre.y),
                                      ring.radius * ring.radius,
                                      ring.ccw ? CGAL::COUNTERCLOCKWISE : CGAL::CLOCKWISE);
        std::list<boost::variant<Traits::Point_2, Traits::X_monotone_curve_2>> parts;
        traits.make_x_monotone_2_object()(Traits::Curve_2(circle), std::back_inserter(parts));
        for (const auto& part : parts)
            if (const auto* cv = boost::get<Traits::X_monotone_curve_2>(&part)) pgn.push_back(*cv);
        return pgn;
    }
    const std::size_t n = ring.points.size();
    for (std::size_t i = 0; i < n; ++i) {
        const Point2& a = ring.points[i];
        const Point2& b = ring.points[(i + 1) % n];
        pgn.push_back(
            Traits::X_monotone_curve_2(Kernel::Point_2(a.x, a.y), Kernel::Point_2(b.x, b.y)));
    }
    return pgn;
}

std::vector<CgalPolygonWithHoles> ToCgal(const Operand& operand) {
    std::vector<CgalPolygonWithHoles> out;
    for (const Shape& s : operand) {
        std::vector<CgalPolygon> holes;
        for (const Ring& h : s.holes) holes.push_back(ToCgal(h));
        out.emplace_back(ToCgal(s.outer), holes.begin(), holes.end());
    }
    return out;
}

// ---- Cases --------------------------------------------------------------------------------------

// Two operands combined by one operation, or (a empty) the union of a list.
struct Case {
    Operand a, b;
    std::vector<Operand> list;
    LAS_Solver::Operation op = LAS_Solver::Union;
};

Case TwoPolygons(int n) {
    Case c;
    c.a = {Shape{Polygon(n, 0, 10), {}}};
    c.b = {Shape{Polygon(n, 5, 10), {}}};
    return c;
}

Case TwoDiscs() {
    Case c;
    c.a = {Shape{Circle(0, 10, true), {}}};
    c.b = {Shape{Circle(5, 10, true), {}}};
    return c;
}

Case TwoAnnuli(LAS_Solver::Operation op) {
    Case c;
    c.a = {Shape{Circle(0, 10, true), {Circle(0, 5, false)}}};
    c.b = {Shape{Circle(5, 10, true), {Circle(5, 5, false)}}};
    c.op = op;
    return c;
}

// K x K unit squares at a pitch of 0.75, each overlapping its neighbours.
Case SquareGrid(int k) {
    Case c;
    for (int i = 0; i < k; ++i)
        for (int j = 0; j < k; ++j) c.list.push_back({Shape{Square(0.75 * i, 0.75 * j), {}}});
    return c;
}

enum class Peer { Geos, Clipper, Cgal };

// Prepares the case's inputs for the peer and returns what runs its operation once; `cleanup`
// receives what frees the prepared inputs.
std::function<void()> PeerRunner(Peer peer, const Case& c, Geos& geos,
                                 std::vector<std::function<void()>>& cleanup) {
    const bool isList = !c.list.empty();
    switch (peer) {
        case Peer::Geos: {
            GEOSContextHandle_t h = geos.h;
            if (isList) {
                std::vector<GEOSGeometry*> polys;
                for (const Operand& o : c.list) polys.push_back(geos.Make(o));
                GEOSGeometry* all = GEOSGeom_createCollection_r(
                    h, GEOS_MULTIPOLYGON, polys.data(), static_cast<unsigned>(polys.size()));
                cleanup.push_back([h, all] { GEOSGeom_destroy_r(h, all); });
                return [h, all] {
                    GEOSGeometry* r = GEOSUnaryUnion_r(h, all);
                    benchmark::DoNotOptimize(r);
                    GEOSGeom_destroy_r(h, r);
                };
            }
            GEOSGeometry* a = geos.Make(c.a);
            GEOSGeometry* b = geos.Make(c.b);
            cleanup.push_back([h, a, b] {
                GEOSGeom_destroy_r(h, a);
                GEOSGeom_destroy_r(h, b);
            });
            const LAS_Solver::Operation op = c.op;
            return [h, a, b, op] {
                GEOSGeometry* r = op == LAS_Solver::Union        ? GEOSUnion_r(h, a, b)
                                  : op == LAS_Solver::Difference ? GEOSDifference_r(h, a, b)
                                                                 : GEOSIntersection_r(h, a, b);
                benchmark::DoNotOptimize(r);
                GEOSGeom_destroy_r(h, r);
            };
        }
        case Peer::Clipper: {
            ClipperLib::Paths a, b;
            if (isList) {
                for (const Operand& o : c.list)
                    for (ClipperLib::Path& p : ToClipper(o)) a.push_back(std::move(p));
            } else {
                a = ToClipper(c.a);
                b = ToClipper(c.b);
            }
            const ClipperLib::ClipType type = c.op == LAS_Solver::Union ? ClipperLib::ctUnion
                                              : c.op == LAS_Solver::Difference
                                                  ? ClipperLib::ctDifference
                                                  : ClipperLib::ctIntersection;
            return [a, b, type] {
                ClipperLib::Clipper clipper;
                clipper.AddPaths(a, ClipperLib::ptSubject, true);
                if (!b.empty()) clipper.AddPaths(b, ClipperLib::ptClip, true);
                ClipperLib::Paths r;
                clipper.Execute(type, r, ClipperLib::pftNonZero, ClipperLib::pftNonZero);
                benchmark::DoNotOptimize(r.data());
            };
        }
        case Peer::Cgal: {
            if (isList) {
                std::vector<CgalPolygon> all;
                for (const Operand& o : c.list)
                    for (CgalPolygonWithHoles& p : ToCgal(o)) all.push_back(p.outer_boundary());
                return [all] {
                    CgalSet s;
                    s.join(all.begin(), all.end());
                    benchmark::DoNotOptimize(s.number_of_polygons_with_holes());
                };
            }
            const std::vector<CgalPolygonWithHoles> a = ToCgal(c.a), b = ToCgal(c.b);
            const LAS_Solver::Operation op = c.op;
            return [a, b, op] {
                CgalSet s(a.front());
                for (std::size_t i = 1; i < a.size(); ++i) s.join(a[i]);
                for (const CgalPolygonWithHoles& p : b) {
                    if (op == LAS_Solver::Union)
                        s.join(p);
                    else if (op == LAS_Solver::Difference)
                        s.difference(p);
                    else
                        s.intersection(p);
                }
                benchmark::DoNotOptimize(s.number_of_polygons_with_holes());
            };
        }
    }
    return [] {};
}

void Run(benchmark::State& state, const Case& c, Peer peer) {
    ProContourFactory f;
    ProComplexContour* a = nullptr;
    ProComplexContour* b = nullptr;
    std::vector<ProComplexContour*> list;
    if (c.list.empty()) {
        a = ToQuillon(c.a);
        b = ToQuillon(c.b);
    } else {
        for (const Operand& o : c.list) list.push_back(ToQuillon(o));
    }
    const auto quillon = [&] {
        LAS_Solver s(kEps);
        ProComplexContour* r = list.empty() ? s.Solv(a, b, c.op, &f) : s.Add(list, &f);
        benchmark::DoNotOptimize(r);
        if (list.size() != 1) delete r;
    };
    Geos geos;
    std::vector<std::function<void()>> cleanup;
    const std::function<void()> other = PeerRunner(peer, c, geos, cleanup);

    using Clock = std::chrono::steady_clock;
    double tq = 0.0, tp = 0.0;
    for (auto _ : state) {
        const auto t0 = Clock::now();
        quillon();
        const auto t1 = Clock::now();
        other();
        const auto t2 = Clock::now();
        tq += std::chrono::duration<double>(t1 - t0).count();
        tp += std::chrono::duration<double>(t2 - t1).count();
    }
    state.counters["quillon_s"] = benchmark::Counter(tq, benchmark::Counter::kAvgIterations);
    state.counters["peer_s"] = benchmark::Counter(tp, benchmark::Counter::kAvgIterations);
    state.counters["ratio"] = tp > 0.0 ? tq / tp : 0.0;

    for (auto& fn : cleanup) fn();
    delete a;
    delete b;
    for (ProComplexContour* x : list) delete x;
}

void Register(const char* name, const std::function<Case()>& make) {
    static std::vector<std::pair<Peer, const char*>> peers = {
        {Peer::Geos, "geos"}, {Peer::Clipper, "clipper"}, {Peer::Cgal, "cgal"}};
    for (const auto& [peer, peerName] : peers) {
        const Peer p = peer;
        benchmark::RegisterBenchmark((std::string(name) + "/" + peerName).c_str(),
                                     [make, p](benchmark::State& st) { Run(st, make(), p); })
            ->Unit(benchmark::kMillisecond);
    }
}

const bool registered = [] {
    Register("polygons_256_union", [] { return TwoPolygons(256); });
    Register("polygons_4096_union", [] { return TwoPolygons(4096); });
    Register("polygons_16384_union", [] { return TwoPolygons(16384); });
    Register("discs_union", [] { return TwoDiscs(); });
    Register("annuli_union", [] { return TwoAnnuli(LAS_Solver::Union); });
    Register("annuli_intersection", [] { return TwoAnnuli(LAS_Solver::Intersection); });
    Register("annuli_difference", [] { return TwoAnnuli(LAS_Solver::Difference); });
    Register("grid_16_union", [] { return SquareGrid(16); });
    Register("grid_32_union", [] { return SquareGrid(32); });
    return true;
}();

}  // namespace
