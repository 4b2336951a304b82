#include "quillon/units/vunit.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <cstdarg>
#include <cwchar>
#include <limits>
#include <ostream>
#include <sstream>
#include <tuple>

#include "quillon/platform/text.h"
#include "quillon/units/vunit_parser.h"

namespace quillon::munit {

namespace {

struct TypeRow {
    SUnit::Type type;
    SUnit unit;
};

constexpr std::array<TypeRow, 14> kTypes{{
    {SUnit::dimensionless, {0, 0, 0}},
    {SUnit::length, {1, 0, 0}},
    {SUnit::area, {2, 0, 0}},
    {SUnit::volume, {3, 0, 0}},
    {SUnit::mass, {0, 1, 0}},
    {SUnit::time, {0, 0, 1}},
    {SUnit::velocity, {1, 0, -1}},
    {SUnit::acceleration, {1, 0, -2}},
    {SUnit::force, {1, 1, -2}},
    {SUnit::moment, {2, 1, -2}},
    {SUnit::frequency, {0, 0, -1}},
    {SUnit::stress, {-1, 1, -2}},
    {SUnit::energy, {2, 1, -2}},  // the dimension of a moment, deliberately
    {SUnit::power, {2, 1, -3}},
}};

auto key(const SUnit& u) { return std::tuple(u.m, u.kg, u.s); }

// The table ordered by exponents. The sort is stable, so of moment and energy, which share their
// exponents, moment comes first and is the one a lookup finds.
const std::array<TypeRow, 14>& sortedTypes() {
    static const std::array<TypeRow, 14> sorted = [] {
        std::array<TypeRow, 14> rows = kTypes;
        std::stable_sort(rows.begin(), rows.end(), [](const TypeRow& a, const TypeRow& b) {
            return key(a.unit) < key(b.unit);
        });
        return rows;
    }();
    return sorted;
}

std::atomic<bool> traceOn{false};

// Exponent arithmetic in 64 bits; false when the result leaves the 32-bit range.
bool fits(std::int64_t value) {
    return value >= std::numeric_limits<std::int32_t>::min() &&
           value <= std::numeric_limits<std::int32_t>::max();
}

void printExponents(std::wostream& out, const SUnit& u, int sign) {
    const std::array<std::pair<const wchar_t*, std::int64_t>, 3> parts{{
        {L"m", u.m},
        {L"kg", u.kg},
        {L"s", u.s},
    }};
    bool first = true;
    for (const auto& [name, exponent] : parts) {
        const std::int64_t e = exponent * sign;
        if (e <= 0) continue;
        if (!first) out << L'*';
        first = false;
        out << name;
        if (e != 1) out << L'^' << e;
    }
}

}  // namespace

SUnit::SUnit(Type type) {
    for (const TypeRow& row : kTypes) {
        if (row.type == type) {
            *this = row.unit;
            return;
        }
    }
}

SUnit::Type SUnit::type() const {
    const auto& rows = sortedTypes();
    const auto it = std::lower_bound(
        rows.begin(), rows.end(), key(*this),
        [](const TypeRow& row, const auto& wanted) { return key(row.unit) < wanted; });
    if (it != rows.end() && it->unit == *this) return it->type;
    return none;
}

std::wstring SUnit::ToString() const {
    std::wostringstream out;
    out << VUnit(1.0, m, kg, s);
    return out.str();
}

VUnit::VUnit(double value) : val_(value) {}

VUnit::VUnit(double value, std::int32_t length_exp, std::int32_t mass_exp, std::int32_t time_exp)
    : unit_(length_exp, mass_exp, time_exp), val_(value) {}

VUnit::VUnit(double value, SUnit::Type type) { set(value, type); }

VUnit::VUnit(const wchar_t* text) { set(text); }

void VUnit::set() { *this = VUnit(); }

void VUnit::set(double value) { *this = VUnit(value); }

void VUnit::set(double value, std::int32_t length_exp, std::int32_t mass_exp,
                std::int32_t time_exp) {
    *this = VUnit(value, length_exp, mass_exp, time_exp);
}

void VUnit::set(double value, SUnit::Type type) {
    const bool known = std::any_of(kTypes.begin(), kTypes.end(),
                                   [type](const TypeRow& row) { return row.type == type; });
    if (type <= 0 || !known) {
        seterr();
        return;
    }
    *this = VUnit(value);
    unit_ = SUnit(type);
}

bool VUnit::set(const wchar_t* text) {
    *this = vunit_detail::ParseUnitText(text, YaccTrace());
    return is_valid();
}

bool VUnit::vset(const wchar_t* format, ...) {
    if (!format || !std::wcschr(format, L'%')) return set(format);
    std::va_list args;
    va_start(args, format);
    // At most 4095 characters; "." as the decimal point, so that a number written with %g reads
    // back in the unit grammar, which knows only ".".
    const std::optional<std::wstring> text = platform::FormatWv(4096, format, args);
    va_end(args);
    if (!text) {
        seterr();
        return false;
    }
    return set(text->c_str());
}

void VUnit::seterr() {
    *this = VUnit();
    err_ = 1;
}

VUnit& VUnit::operator*=(const VUnit& other) {
    const std::int64_t m = std::int64_t{unit_.m} + other.unit_.m;
    const std::int64_t kg = std::int64_t{unit_.kg} + other.unit_.kg;
    const std::int64_t s = std::int64_t{unit_.s} + other.unit_.s;
    if (!fits(m) || !fits(kg) || !fits(s)) {
        seterr();
        return *this;
    }
    err_ |= other.err_;
    val_ *= other.val_;
    unit_.set(static_cast<std::int32_t>(m), static_cast<std::int32_t>(kg),
              static_cast<std::int32_t>(s));
    return *this;
}

VUnit& VUnit::operator*=(double factor) {
    val_ *= factor;
    return *this;
}

VUnit& VUnit::operator/=(const VUnit& other) {
    const std::int64_t m = std::int64_t{unit_.m} - other.unit_.m;
    const std::int64_t kg = std::int64_t{unit_.kg} - other.unit_.kg;
    const std::int64_t s = std::int64_t{unit_.s} - other.unit_.s;
    if (!fits(m) || !fits(kg) || !fits(s)) {
        seterr();
        return *this;
    }
    err_ |= other.err_;
    val_ /= other.val_;
    unit_.set(static_cast<std::int32_t>(m), static_cast<std::int32_t>(kg),
              static_cast<std::int32_t>(s));
    return *this;
}

VUnit& VUnit::operator/=(double divisor) {
    val_ /= divisor;
    return *this;
}

VUnit& VUnit::operator^=(std::int32_t n) {
    if (n == 1) return *this;
    const std::int64_t m = std::int64_t{unit_.m} * n;
    const std::int64_t kg = std::int64_t{unit_.kg} * n;
    const std::int64_t s = std::int64_t{unit_.s} * n;
    if (!fits(m) || !fits(kg) || !fits(s)) {
        seterr();
        return *this;
    }
    // The square as a product: exact to the last bit, as users of m^2 expect.
    val_ = n == 0 ? 1.0 : n == 2 ? val_ * val_ : std::pow(val_, n);
    unit_.set(static_cast<std::int32_t>(m), static_cast<std::int32_t>(kg),
              static_cast<std::int32_t>(s));
    return *this;
}

VUnit VUnit::pow(std::int32_t n) const {
    VUnit result(*this);
    result ^= n;
    return result;
}

void VUnit::YaccTrace(bool on) { traceOn.store(on, std::memory_order_relaxed); }

bool VUnit::YaccTrace() { return traceOn.load(std::memory_order_relaxed); }

std::wostream& operator<<(std::wostream& out, const VUnit& value) {
    if (!value.is_valid()) return out << L"[BAD-UNIT]";
    const SUnit& u = value.unit();
    const bool positive = u.m > 0 || u.kg > 0 || u.s > 0;
    const bool negative = u.m < 0 || u.kg < 0 || u.s < 0;
    if (!(positive && value.to_mks() == 1.0)) {
        out << value.to_mks();
        if (positive) out << L'*';
    }
    if (positive) printExponents(out, u, 1);
    if (negative) {
        out << L'/';
        printExponents(out, u, -1);
    }
    return out;
}

}  // namespace quillon::munit
