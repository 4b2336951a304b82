// Section properties of large polygon sets; the items-per-second counter is edges per second.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstddef>
#include <numbers>
#include <vector>

#include "quillon/sections/mpoly.h"

namespace {

// A wavy closed outline of n vertices round (cx, cy), built without push_back's merging so the
// vertex count is exact.
quillon::MPoly Wavy(int n, double cx, double cy, double r) {
    std::vector<quillon::Point2> pts;
    pts.reserve(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) {
        const double t = 2.0 * std::numbers::pi * i / n;
        const double rad = r * (1.0 + 0.1 * std::sin(7.0 * t));
        pts.push_back({cx + rad * std::cos(t), cy + rad * std::sin(t)});
    }
    return quillon::MPoly(pts);
}

void BM_CalcPropsOnePolygon(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    const quillon::MPolySet set(Wavy(n, 0.3, 0.2, 1.0));
    quillon::M_SECT_PROPStr props;
    for (auto _ : state) {
        set.CalcProps(props);
        benchmark::DoNotOptimize(props);
    }
    state.SetItemsProcessed(state.iterations() * n);
}

void BM_CalcPropsManySmallPolygons(benchmark::State& state) {
    const int count = static_cast<int>(state.range(0));
    const int n = 8;
    quillon::MPolySet set;
    for (int i = 0; i < count; ++i) {
        set.outlines.push_back(Wavy(n, i % 100, i / 100, 0.4));
        if (i % 4 == 0) set.holes.push_back(Wavy(n, i % 100, i / 100, 0.1));
    }
    const long long edges = static_cast<long long>(set.outlines.size() + set.holes.size()) * n;
    quillon::M_SECT_PROPStr props;
    for (auto _ : state) {
        set.CalcProps(props);
        benchmark::DoNotOptimize(props);
    }
    state.SetItemsProcessed(state.iterations() * edges);
}

}  // namespace

BENCHMARK(BM_CalcPropsOnePolygon)->Arg(1000000);
BENCHMARK(BM_CalcPropsManySmallPolygons)->Arg(10000);
