#include "python/src/unit_values.h"

#include <map>
#include <sstream>
#include <stdexcept>

#include "quillon/platform/locale.h"
#include "quillon/platform/text.h"
#include "quillon/units/mmoney.h"
#include "quillon/units/munit.h"
#include "quillon/units/vunit.h"

namespace quillon::python {

namespace {

using munit::SUnit;

const char* QuantityName(SUnit::Type type) {
    switch (type) {
        case SUnit::dimensionless:
            return "dimensionless";
        case SUnit::length:
            return "length";
        case SUnit::area:
            return "area";
        case SUnit::volume:
            return "volume";
        case SUnit::mass:
            return "mass";
        case SUnit::time:
            return "time";
        case SUnit::velocity:
            return "velocity";
        case SUnit::acceleration:
            return "acceleration";
        case SUnit::force:
            return "force";
        case SUnit::moment:
            return "moment";
        case SUnit::frequency:
            return "frequency";
        case SUnit::stress:
            return "stress";
        case SUnit::energy:
            return "energy";
        case SUnit::power:
            return "power";
        case SUnit::none:
            break;
    }
    return "";
}

// The quantity types of the catalogue whose unit texts convert, by Python name. The unit text
// names one catalogue unit per factor: "cm4" for a second moment, "kN*m/m" for a moment per
// length.
const std::map<std::string, munit::MUNIT_TYPES>& QuantityTypes() {
    static const std::map<std::string, munit::MUNIT_TYPES> types = {
        {"length", munit::MUNIT_TYPE_7},
        {"area", munit::MUNIT_TYPE_12},
        {"volume", munit::MUNIT_TYPE_33},
        {"second_moment", munit::MUNIT_TYPE_30},
        {"force", munit::MUNIT_TYPE_13},
        {"moment", munit::MUNIT_TYPE_14},
        {"force_per_length", munit::MUNIT_TYPE_28},
        {"stress", munit::MUNIT_TYPE_29},
        {"moment_per_length", munit::MUNIT_TYPE_102},
        {"angle", munit::MUNIT_TYPE_17},
        {"mass", munit::MUNIT_TYPE_19},
    };
    return types;
}

// The unit part of a text whose leading number ended at `rest`: "kN*m" of "2.5 kN*m", "*kN" reads
// as "kN", "/s" as "1/s", as the grammar joins them to the number.
std::wstring UnitPart(std::wstring rest) {
    std::size_t i = 0;
    while (i < rest.size() && platform::IsAsciiSpace(rest[i])) ++i;
    rest.erase(0, i);
    if (!rest.empty() && rest[0] == L'*') rest.erase(0, 1);
    if (!rest.empty() && rest[0] == L'/') rest.insert(0, L"1");
    return rest;
}

// Puts the caller's separators in the locale's place for one call and takes them away after.
class SeparatorScope {
public:
    explicit SeparatorScope(const MoneySeparators& s) {
        platform::LocaleTexts texts = platform::CurrentLocaleTexts();
        // Without a monetary decimal (the "C" locale has none) cents would run into the units.
        const bool noDecimal = !s.decimal && texts.monetaryDecimal.empty();
        active = s.decimal || s.thousands || noDecimal;
        if (!active) return;
        if (s.decimal) texts.monetaryDecimal = *s.decimal;
        if (noDecimal) texts.monetaryDecimal = L".";
        if (s.thousands) texts.monetaryThousands = *s.thousands;
        platform::SetLocaleOverride(texts);
    }
    ~SeparatorScope() {
        // The module never leaves an override in place, so clearing restores what was there.
        if (active) platform::ClearLocaleOverride();
    }
    SeparatorScope(const SeparatorScope&) = delete;
    SeparatorScope& operator=(const SeparatorScope&) = delete;

private:
    bool active = false;
};

}  // namespace

ParsedQuantity ParseQuantity(const std::wstring& text) {
    const munit::VUnit whole(text.c_str());
    if (!whole.is_valid() || text.find(L'\0') != std::wstring::npos)
        throw std::invalid_argument("not a unit text: \"" + platform::ToUtf8(text) + "\"");
    ParsedQuantity q;
    q.si = whole.to_mks();
    q.m = whole.unit().m;
    q.kg = whole.unit().kg;
    q.s = whole.unit().s;
    q.quantity = QuantityName(whole.type());
    std::wostringstream shown;
    shown << whole;
    q.siText = shown.str();

    // The leading number, read as the scanner reads it (a digit or "-" starts one).
    const std::string narrow = platform::ToUtf8(text);
    std::size_t start = 0;
    while (start < narrow.size() && platform::IsAsciiSpace(narrow[start])) ++start;
    std::size_t used = 0;
    if (start < narrow.size() && (platform::IsAsciiDigit(narrow[start]) || narrow[start] == '-'))
        q.value = platform::LeadingDouble(std::string_view(narrow).substr(start), &used);
    if (used == 0) {
        q.value = 1.0;
        q.factor = q.si;
        return q;
    }
    const munit::VUnit unit(
        UnitPart(platform::FromUtf8(std::string_view(narrow).substr(start + used))).c_str());
    q.factor = unit.is_valid() && unit.unit() == whole.unit() ? unit.to_mks() : q.si / q.value;
    return q;
}

void EnsureCatalogue() {
    if (!munit::GetMInit()) munit::InitMInit(true);
}

std::vector<std::pair<std::wstring, double>> CatalogueUnits(const std::string& kind) {
    static const std::map<std::string, munit::MUNIT_T> kinds = {
        {"length", munit::MUNIT_LENGTH},
        {"force", munit::MUNIT_FORCE},
        {"mass", munit::MUNIT_MASS},
        {"angle", munit::MUNIT_ANGLE},
    };
    const auto k = kinds.find(kind);
    if (k == kinds.end())
        throw std::invalid_argument("unknown kind of unit \"" + kind +
                                    "\" (length, force, mass or angle)");
    EnsureCatalogue();
    const munit::MUnit units;
    std::vector<std::pair<std::wstring, double>> list;
    for (int i = 0; i < units.GetTotalUnit(k->second); ++i) {
        const munit::Unit u = units.GetUnit(k->second, i);
        list.emplace_back(u.name, u.coef);
    }
    return list;
}

std::vector<std::string> QuantityNames() {
    std::vector<std::string> names;
    for (const auto& [name, id] : QuantityTypes()) names.push_back(name);
    return names;
}

double ConvertUnit(double value, const std::string& quantity, const std::wstring& unit, bool toSi) {
    const auto type = QuantityTypes().find(quantity);
    if (type == QuantityTypes().end()) {
        std::string known;
        for (const std::string& n : QuantityNames()) known += (known.empty() ? "" : ", ") + n;
        throw std::invalid_argument("unknown quantity \"" + quantity + "\" (" + known + ")");
    }
    EnsureCatalogue();
    const munit::MUnit units;
    double out = 0.0;
    if (units.CnvUnit(out, type->second, unit, value,
                      toSi ? munit::BASIC_TO_SI : munit::BASIC_FROM_SI) != 0)
        throw std::invalid_argument("\"" + platform::ToUtf8(unit) + "\" is not a unit of " +
                                    quantity + " in the catalogue");
    return out;
}

std::wstring FormatMoney(double amount, const MoneySeparators& separators) {
    const SeparatorScope scope(separators);
    return munit::MMoney(amount).Format();
}

double ParseMoney(const std::wstring& text, const MoneySeparators& separators) {
    const SeparatorScope scope(separators);
    double out = 0.0;
    munit::MMoney::Parse(text.c_str(), out);
    return out;
}

double RoundMoney(double amount) { return munit::MMoney::RoundDouble(amount); }

std::wstring CurrencySymbol() { return munit::MMoney::GetCurrencySymbol(); }

}  // namespace quillon::python
