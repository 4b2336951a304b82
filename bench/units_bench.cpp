// Units: conversions through the catalogue and parsing of value-with-unit texts. The
// items-per-second counters are conversions and texts per second.
#include <benchmark/benchmark.h>

#include "quillon/platform/locale.h"
#include "quillon/units/munit.h"
#include "quillon/units/vunit.h"

namespace {

using namespace quillon::munit;

// A catalogue and a typical table, built once and kept for the whole run.
MUnit& preparedUnits() {
    static TypeUnitTable table;
    static const bool catalogue = [] {
        InitMInit(true);
        SetGlobU(&table);
        return true;
    }();
    static MUnit mu;  // made once the catalogue exists
    static const bool filled = [] {
        mu.SetTypeUnit(MUNIT_TYPE_7, 2, L"m", L"", L"", false);
        mu.SetTypeUnit(MUNIT_TYPE_8, 1, L"cm", L"", L"", false);
        mu.SetTypeUnit(MUNIT_TYPE_9, 1, L"mm", L"", L"", false);
        mu.SetTypeUnit(MUNIT_TYPE_12, 2, L"cm", L"cm", L"", false);
        mu.SetTypeUnit(MUNIT_TYPE_13, 2, L"kN", L"", L"", false);
        mu.SetTypeUnit(MUNIT_TYPE_14, 2, L"kN", L"m", L"", false);
        mu.SetTypeUnit(MUNIT_TYPE_15, 2, L"kN", L"cm", L"", false);
        mu.SetTypeUnit(MUNIT_TYPE_17, 2, L"Deg", L"", L"", false);
        mu.SetTypeUnit(MUNIT_TYPE_19, 2, L"t", L"", L"", false);
        mu.SetTypeUnit(MUNIT_TYPE_27, 2, L"N", L"mm", L"", false);
        mu.SetTypeUnit(MUNIT_TYPE_28, 2, L"kN", L"m", L"", false);
        mu.SetTypeUnit(MUNIT_TYPE_34, 2, L"ft", L"", L"", false);
        mu.UpDateUnit();
        return true;
    }();
    (void)catalogue;
    (void)filled;
    return mu;
}

const MUNIT_TYPES kTypical[] = {MUNIT_TYPE_7,  MUNIT_TYPE_13, MUNIT_TYPE_14, MUNIT_TYPE_15,
                                MUNIT_TYPE_27, MUNIT_TYPE_28, MUNIT_TYPE_17, MUNIT_TYPE_34};

void BM_CnvUnitSI_ToSI(benchmark::State& state) {
    const MUnit& mu = preparedUnits();
    double value = 1.25;
    for (auto _ : state) {
        for (MUNIT_TYPES id : kTypical) {
            double out = 0.0;
            mu.CnvUnitSI(out, id, value, BASIC_TO_SI);
            benchmark::DoNotOptimize(out);
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(std::size(kTypical)));
}
BENCHMARK(BM_CnvUnitSI_ToSI);

void BM_CnvUnitSI_FromSI(benchmark::State& state) {
    const MUnit& mu = preparedUnits();
    double value = 12500.0;
    for (auto _ : state) {
        for (MUNIT_TYPES id : kTypical) {
            double out = 0.0;
            mu.CnvUnitSI(out, id, value, BASIC_FROM_SI);
            benchmark::DoNotOptimize(out);
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(std::size(kTypical)));
}
BENCHMARK(BM_CnvUnitSI_FromSI);

// The display path that grids take for every cell: convert, format, swap the separator.
void BM_CnvUnitSIToText(benchmark::State& state) {
    const MUnit& mu = preparedUnits();
    for (auto _ : state) {
        for (MUNIT_TYPES id : kTypical) {
            benchmark::DoNotOptimize(
                mu.CnvUnitSIToText(id, 1234.5, BASIC_FROM_SI, SEPARATOR_TO_LOCALE));
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(std::size(kTypical)));
}
BENCHMARK(BM_CnvUnitSIToText);

// The same with the separators fixed by the application, so the locale is not read per text.
void BM_CnvUnitSIToText_FixedLocale(benchmark::State& state) {
    const MUnit& mu = preparedUnits();
    quillon::platform::LocaleTexts texts;
    texts.decimal = L",";
    quillon::platform::SetLocaleOverride(texts);
    for (auto _ : state) {
        for (MUNIT_TYPES id : kTypical) {
            benchmark::DoNotOptimize(
                mu.CnvUnitSIToText(id, 1234.5, BASIC_FROM_SI, SEPARATOR_TO_LOCALE));
        }
    }
    quillon::platform::ClearLocaleOverride();
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(std::size(kTypical)));
}
BENCHMARK(BM_CnvUnitSIToText_FixedLocale);

}  // namespace

// ---- Parsing of value-with-unit texts

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
