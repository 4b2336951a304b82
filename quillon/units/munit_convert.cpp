// Conversion between SI and the user's units, display texts and comparison as displayed.
#include <algorithm>
#include <cmath>

#include "quillon/platform/locale.h"
#include "quillon/platform/text.h"
#include "quillon/units/munit.h"
#include "quillon/units/munit_quantities.h"

namespace quillon::munit {
namespace {

// Decimals are printed within this range: a stored precision outside it (a damaged file, say)
// must not turn into an invalid or an enormous format.
constexpr int kMaxPrecision = 30;

bool isSeparator(wchar_t c) { return c == L'*' || c == L'/' || c == L' '; }

// Characters of the part-th unit name: part 0 before the first separator, part 1 between the first
// and the second, part 2 everything after the second; digits are left out ("m2" is "m").
std::wstring unitName(const std::wstring& text, int part) {
    std::wstring name;
    int separators = 0;
    for (wchar_t c : text) {
        if (separators < 2 && isSeparator(c)) {
            if (separators == part) break;
            ++separators;
            continue;
        }
        if (separators == part && !platform::IsAsciiDigit(c)) name.push_back(c);
    }
    return name;
}

MUNIT_T factorKind(MUNIT_TYPES id, int factor) {
    const quantities::QuantityType* q = quantities::Find(id);
    if (!q) return MUNIT_NONE;
    return factor == 1 ? q->kind1 : factor == 2 ? q->kind2 : q->kind3;
}

void replaceAll(std::wstring& text, const std::wstring& from, const std::wstring& to) {
    if (from.empty() || from == to) return;
    for (std::size_t pos = text.find(from); pos != std::wstring::npos;
         pos = text.find(from, pos + to.size())) {
        text.replace(pos, from.size(), to);
    }
}

}  // namespace

int MUnit::CnvUnitSI(double& out, MUNIT_TYPES id, double value, BASIC_UNIT dir) const {
    const TypeUnit* t = FindType(id);
    if (!t) return 0;  // kept: `out` stays as the caller set it
    if (dir == BASIC_TO_SI) {
        out = value * t->coefficient;
    } else if (t->coefficient != 0.0) {
        out = value / t->coefficient;
    }
    return 0;
}

std::wstring MUnit::GetNameUnit1(const std::wstring& unitText) { return unitName(unitText, 0); }
std::wstring MUnit::GetNameUnit2(const std::wstring& unitText) { return unitName(unitText, 1); }
std::wstring MUnit::GetNameUnit3(const std::wstring& unitText) { return unitName(unitText, 2); }

double MUnit::GetCoefUnit1(MUNIT_TYPES id, const std::wstring& unitText) const {
    return GetCoeffUnit(factorKind(id, 1), GetNameUnit1(unitText));
}

double MUnit::GetCoefUnit2(MUNIT_TYPES id, const std::wstring& unitText) const {
    return GetCoeffUnit(factorKind(id, 2), GetNameUnit2(unitText));
}

double MUnit::GetCoefUnit3(MUNIT_TYPES id, const std::wstring& unitText) const {
    return GetCoeffUnit(factorKind(id, 3), GetNameUnit3(unitText));
}

int MUnit::CnvUnit(double& out, MUNIT_TYPES id, const std::wstring& unitText, double value,
                   BASIC_UNIT dir) const {
    out = 0.0;
    const double c1 = GetCoefUnit1(id, unitText);
    if (c1 == 0.0) return 1;
    const quantities::QuantityType* q = quantities::Find(id);
    if (!q || !q->convertsText) return 1;  // a type without unit texts
    // A unit of power 0 plays no part in the factor, whatever its name gives.
    const quantities::Factor f =
        quantities::FactorOf(*q, c1, GetCoefUnit2(id, unitText), GetCoefUnit3(id, unitText));
    double factor = f.numerator;
    const double divisor = f.divisor;
    // A divisor unit without a factor cannot give a finite result.
    if (divisor == 0.0) return 1;
    factor /= divisor;
    if (dir == BASIC_TO_SI) {
        out = value * factor;
    } else {
        if (factor == 0.0) return 1;
        out = value / factor;
    }
    return 0;
}

std::wstring MUnit::FormatUnit(MUNIT_TYPES id, double value) const {
    const TypeUnit* t = id == MUNIT_TYPE_3 ? nullptr : FindType(id);
    if (!t) return platform::FormatW(L"%g", value);
    const int precision = std::clamp(t->precision, 0, kMaxPrecision);
    if (init_ && init_->GetRoundFormattedValues()) {
        // Halves away from zero, so that -0.125 and 0.125 show the same digits.
        const double step = std::pow(10.0, -precision);
        const double scaled = value / step;
        if (std::isfinite(scaled)) {
            const bool up = value >= 0.0;  // mutate: off (0 gives a zero either way)
            value = up ? std::floor(scaled + 0.5) * step : std::ceil(scaled - 0.5) * step;
            if (value == 0.0) value = 0.0;  // never print a negative zero
        }
    }
    return t->exponential ? platform::FormatW(L"%.*le", precision, value)
                          : platform::FormatW(L"%.*lf", precision, value);
}

std::wstring MUnit::CnvUnitSIToText(MUNIT_TYPES id, double value, BASIC_UNIT dir,
                                    SEPARATOR_DEC_UNIT sep) const {
    double converted = 0.0;
    if (CnvUnitSI(converted, id, value, dir) != 0) return std::wstring();
    return CnvSeparator(FormatUnit(id, converted).c_str(), sep);
}

int MUnit::CnvUnitSIToDouble(double& out, MUNIT_TYPES id, const wchar_t* text,
                             BASIC_UNIT dir) const {
    out = 0.0;
    const double parsed = platform::_wtof(CnvSeparator(text, SEPARATOR_TO_POINT));
    return CnvUnitSI(out, id, parsed, dir) != 0 ? 1 : 0;
}

double MUnit::applyUnit(double value, MUNIT_TYPES id) const {
    const std::wstring shown = CnvUnitSIToText(id, value, BASIC_FROM_SI, SEPARATOR_TO_LOCALE);
    double result = 0.0;
    CnvUnitSIToDouble(result, id, shown.c_str(), BASIC_TO_SI);
    return result;
}

bool MUnit::eqUnit(double a, double b, MUNIT_TYPES id) const {
    const std::wstring ta = CnvUnitSIToText(id, a, BASIC_FROM_SI, SEPARATOR_TO_LOCALE);
    const std::wstring tb = CnvUnitSIToText(id, b, BASIC_FROM_SI, SEPARATOR_TO_LOCALE);
    const bool negA = !ta.empty() && ta[0] == L'-';
    const bool negB = !tb.empty() && tb[0] == L'-';
    if (negA != negB) {
        // -0.00 and 0.00 show the same quantity: equal when neither text has a significant digit.
        const wchar_t* significant = L"123456789";
        return ta.find_first_of(significant) == std::wstring::npos &&
               tb.find_first_of(significant) == std::wstring::npos;
    }
    return ta == tb;
}

int MUnit::cmpUnit(double a, double b, MUNIT_TYPES id) const {
    if (eqUnit(a, b, id)) return 0;
    return b > a ? -1 : 1;  // mutate: off (equal values were answered just above)
}

// Each written out, not through cmpUnit: a value that is not a number is then neither greater
// nor less than another. Equal values were answered by eqUnit, so `>` and `>=` agree below.
bool MUnit::gtUnit(double a, double b, MUNIT_TYPES id) const {
    return !eqUnit(a, b, id) && a > b;  // mutate: off (see above)
}
bool MUnit::gtEqUnit(double a, double b, MUNIT_TYPES id) const {
    return eqUnit(a, b, id) || a > b;  // mutate: off (see above)
}
bool MUnit::lsUnit(double a, double b, MUNIT_TYPES id) const {
    return !eqUnit(a, b, id) && b > a;  // mutate: off (see above)
}
bool MUnit::lsEqUnit(double a, double b, MUNIT_TYPES id) const {
    return eqUnit(a, b, id) || b > a;  // mutate: off (see above)
}

std::wstring MUnit::GetDecimalSep() {
    // The locale item is read into a buffer of 12 characters, terminator included: a longer one
    // does not fit and reads as none (not as its first characters).
    std::wstring sep = platform::CurrentLocaleTexts().decimal;
    if (sep.size() > 11) sep.clear();
    return sep;
}

void MUnit::CnvSeparatorEx(std::wstring& text, SEPARATOR_DEC_UNIT sep) {
    const std::wstring dec = GetDecimalSep();
    // Without a known separator the text is left as it is rather than losing its points.
    if (dec.empty()) return;
    if (sep == SEPARATOR_TO_POINT) {
        replaceAll(text, dec, L".");
    } else {
        replaceAll(text, L".", dec);
    }
}

std::wstring MUnit::CnvSeparator(const wchar_t* text, SEPARATOR_DEC_UNIT sep) {
    std::wstring copy = text ? std::wstring(text) : std::wstring();
    CnvSeparatorEx(copy, sep);
    return copy;
}

}  // namespace quillon::munit
