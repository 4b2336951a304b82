// Parsing of typical unit texts; the items-per-second counter is texts per second.
#include <benchmark/benchmark.h>

#include "quillon/units/vunit.h"

namespace {

void ParseText(benchmark::State& state, const wchar_t* text) {
    for (auto _ : state) {
        quillon::munit::VUnit value(text);
        benchmark::DoNotOptimize(value);
    }
    state.SetItemsProcessed(state.iterations());
}

void BM_ParseMoment(benchmark::State& state) { ParseText(state, L"2.5 kN*m"); }
void BM_ParseDensity(benchmark::State& state) { ParseText(state, L"kg/m^3"); }
void BM_ParseFrequency(benchmark::State& state) { ParseText(state, L"1/s"); }

}  // namespace

BENCHMARK(BM_ParseMoment);
BENCHMARK(BM_ParseDensity);
BENCHMARK(BM_ParseFrequency);

BENCHMARK_MAIN();
