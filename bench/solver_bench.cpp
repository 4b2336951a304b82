// Contour solver timings: booleans of large polygons and of arc discs, the union of a grid of
// overlapping squares, and splitting plus face tracing on a grid of crossing lines.
#include <benchmark/benchmark.h>

#include <cmath>
#include <numbers>
#include <vector>

#include "quillon/geometry/contours/las_solver.h"

namespace {

using namespace quillon;

constexpr double kEps = 1e-7;
constexpr double kPi = std::numbers::pi;

ProComplexContour* Solid(const LAContour& outline) {
    ProContourFactory f;
    ProComplexContour* c = f.CreateComplexContour();
    ProSolidContour* s = f.CreateSolidContour();
    s->SetLAContour(outline);
    c->Attach(s);
    return c;
}

// A regular n-gon of radius 10; the second one is shifted so the outlines cross twice.
ProComplexContour* Polygon(int n, double dx) {
    LAContour c;
    for (int k = 0; k < n; ++k) {
        const double a = 2 * kPi * k / n;
        c.push_back(LAEdge(Point2(dx + 10 * std::cos(a), 10 * std::sin(a))));
    }
    return Solid(c);
}

ProComplexContour* Disc(double cx, double r) {
    LAContour c;
    c.push_back(LAEdge(Point2(cx + r, 0), Point2(cx, 0), kPi));
    c.push_back(LAEdge(Point2(cx - r, 0), Point2(cx, 0), kPi));
    return Solid(c);
}

void Combine(benchmark::State& state, LAS_Solver::Operation op, ProComplexContour* a,
             ProComplexContour* b) {
    ProContourFactory f;
    for (auto _ : state) {
        LAS_Solver s(kEps);
        ProComplexContour* r = s.Solv(a, b, op, &f);
        benchmark::DoNotOptimize(r);
        delete r;
    }
    delete a;
    delete b;
}

void BM_PolygonAdd(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    Combine(state, LAS_Solver::Union, Polygon(n, 0), Polygon(n, 3.0));
    state.SetComplexityN(n);
}
void BM_PolygonSub(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    Combine(state, LAS_Solver::Difference, Polygon(n, 0), Polygon(n, 3.0));
    state.SetComplexityN(n);
}
void BM_PolygonMul(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    Combine(state, LAS_Solver::Intersection, Polygon(n, 0), Polygon(n, 3.0));
    state.SetComplexityN(n);
}
BENCHMARK(BM_PolygonAdd)->Arg(256)->Arg(1024)->Arg(4096)->Arg(16384)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PolygonSub)->Arg(256)->Arg(1024)->Arg(4096)->Arg(16384)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PolygonMul)->Arg(256)->Arg(1024)->Arg(4096)->Arg(16384)->Unit(benchmark::kMillisecond);

void BM_DiscAdd(benchmark::State& state) {
    Combine(state, LAS_Solver::Union, Disc(0, 1), Disc(1, 1));
}
void BM_DiscSub(benchmark::State& state) {
    Combine(state, LAS_Solver::Difference, Disc(0, 1), Disc(1, 1));
}
void BM_DiscMul(benchmark::State& state) {
    Combine(state, LAS_Solver::Intersection, Disc(0, 1), Disc(1, 1));
}
BENCHMARK(BM_DiscAdd)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DiscSub)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DiscMul)->Unit(benchmark::kMicrosecond);

// K x K unit squares at a pitch of 0.75: each overlaps its neighbours.
void BM_SquareGridAdd(benchmark::State& state) {
    const int k = static_cast<int>(state.range(0));
    std::vector<ProComplexContour*> squares;
    for (int i = 0; i < k; ++i)
        for (int j = 0; j < k; ++j) {
            const double x = 0.75 * i, y = 0.75 * j;
            LAContour c;
            for (const Point2& p :
                 {Point2(x, y), Point2(x + 1, y), Point2(x + 1, y + 1), Point2(x, y + 1)})
                c.push_back(LAEdge(p));
            squares.push_back(Solid(c));
        }
    ProContourFactory f;
    for (auto _ : state) {
        LAS_Solver s(kEps);
        ProComplexContour* r = s.Add(squares, &f);
        benchmark::DoNotOptimize(r);
        delete r;
    }
    for (ProComplexContour* c : squares) delete c;
}
BENCHMARK(BM_SquareGridAdd)->Arg(8)->Arg(16)->Arg(32)->Unit(benchmark::kMillisecond);

// n horizontal and n vertical lines crossing in an (n - 1) x (n - 1) grid of faces.
void BM_LineGridSplitAndFind(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    std::vector<LAContour> lines;
    for (int i = 0; i < n; ++i) {
        LAContour h, v;
        h.push_back(LAEdge(Point2(-1, i)));
        h.push_back(LAEdge(Point2(n, i)));
        v.push_back(LAEdge(Point2(i, -1)));
        v.push_back(LAEdge(Point2(i, n)));
        lines.push_back(h);
        lines.push_back(v);
    }
    std::vector<LAContour*> list;
    for (LAContour& l : lines) list.push_back(&l);
    ProContourFactory f;
    for (auto _ : state) {
        LAS_Solver s(kEps);
        s.SplitLaContours(list);
        std::vector<LAContour*> none, polylines;
        std::vector<ProClosedContour*> closed;
        s.FindContours(none, &f, closed, polylines);
        benchmark::DoNotOptimize(closed.data());
        for (auto* c : closed) delete c;
        for (auto* p : polylines) delete p;
    }
}
BENCHMARK(BM_LineGridSplitAndFind)->Arg(16)->Arg(32)->Arg(64)->Unit(benchmark::kMillisecond);

}  // namespace
