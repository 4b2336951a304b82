// The solid model's tolerant look-ups: Merge and GetVertexInd (last-added vertex within eps) and
// Point3Cache::Add (first match in x order). Items per second count points looked up.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

#include "quillon/geometry/space/solid3.h"

namespace {

// A wavy sheet of n × n vertices with quadrilateral faces, its corner at (x0, 0).
quillon::Solid3 Sheet(int n, double x0) {
    quillon::Solid3 s(1e-6);
    s.ReserveVertex(static_cast<std::size_t>(n) * n);
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j) {
            const double x = x0 + i * 0.1, y = j * 0.1;
            s.AddVertex(quillon::Point3(x, y, 0.1 * std::sin(x) * std::cos(y)));
        }
    }
    const auto at = [n](int i, int j) { return static_cast<std::uint32_t>(i * n + j); };
    for (int i = 0; i + 1 < n; ++i) {
        for (int j = 0; j + 1 < n; ++j) {
            s.AddFace(quillon::Face3(quillon::Mvector<std::uint32_t>{
                at(i, j), at(i, j + 1), at(i + 1, j + 1), at(i + 1, j)}));
        }
    }
    return s;
}

// Two sheets of 316 × 316 (about 10^5) vertices each, overlapping by half: half of the merged
// solid's vertices are found, half appended.
void BM_MergeTwoSolids(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    const quillon::Solid3 a = Sheet(n, 0.0), b = Sheet(n, 0.1 * (n / 2));
    std::size_t vertices = 0;
    for (auto _ : state) {
        state.PauseTiming();
        quillon::Solid3 target = a;
        state.ResumeTiming();
        benchmark::DoNotOptimize(target.Merge(b));
        vertices = target.Vertex().size();
    }
    state.counters["vertices"] = static_cast<double>(vertices);
    state.SetItemsProcessed(state.iterations() * static_cast<long long>(b.Face().size()) * 4);
}

// GetVertexInd of 10^5 random points, a third of them repeats within eps of earlier ones.
void BM_GetVertexInd(benchmark::State& state) {
    const std::size_t n = static_cast<std::size_t>(state.range(0));
    std::mt19937 gen(1);
    std::uniform_real_distribution<double> u(0.0, 100.0), near(-1e-7, 1e-7);
    std::vector<quillon::Point3> pts;
    for (std::size_t i = 0; i < n; ++i) {
        if (i % 3 == 2) {
            const quillon::Point3& p = pts[gen() % pts.size()];
            pts.emplace_back(p.x + near(gen), p.y + near(gen), p.z + near(gen));
        } else {
            pts.emplace_back(u(gen), u(gen), u(gen));
        }
    }
    for (auto _ : state) {
        quillon::Solid3 s(1e-6);
        for (const quillon::Point3& p : pts) benchmark::DoNotOptimize(s.GetVertexInd(p));
    }
    state.SetItemsProcessed(state.iterations() * static_cast<long long>(n));
}

void BM_Point3CacheAdd(benchmark::State& state) {
    const std::size_t n = static_cast<std::size_t>(state.range(0));
    std::mt19937 gen(2);
    std::uniform_real_distribution<double> u(0.0, 1000.0);
    std::vector<quillon::Point3> pts;
    for (std::size_t i = 0; i < n; ++i) pts.emplace_back(u(gen), u(gen), u(gen));
    for (auto _ : state) {
        quillon::Point3Cache cache(1e-6);
        for (const quillon::Point3& p : pts) benchmark::DoNotOptimize(cache.Add(p));
    }
    state.SetItemsProcessed(state.iterations() * static_cast<long long>(n));
}

}  // namespace

BENCHMARK(BM_MergeTwoSolids)->Arg(316)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_GetVertexInd)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Point3CacheAdd)->Arg(1000000)->Unit(benchmark::kMillisecond);
