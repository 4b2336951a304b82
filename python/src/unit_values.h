// The C++ side of quillon.units: value-with-unit texts taken apart, conversions through the unit
// catalogue and money texts, as plain values for the bindings.
//
// The unit catalogue and the locale override are process-wide (munit.h, locale.h): these calls
// are made under the library lock (library_lock.h), one at a time. Errors throw
// std::invalid_argument with a message for users.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace quillon::python {

// A value-with-unit text such as "2.5 kN*m": the number written in front (1 when there is none),
// the factor of the unit that follows to metre-kilogram-second units, the whole in those units,
// its exponents of metre, kilogram and second and the name of its quantity ("" when none has
// these exponents; moment and energy share theirs and read as "moment").
struct ParsedQuantity {
    double value = 1.0;
    double factor = 1.0;
    double si = 1.0;
    std::int32_t m = 0, kg = 0, s = 0;
    std::string quantity;
    std::wstring siText;  // e.g. "2500*m^2*kg/s^2"
};

// Throws std::invalid_argument when the text does not parse.
ParsedQuantity ParseQuantity(const std::wstring& text);

// Makes sure the unit catalogue exists (built with its default units).
void EnsureCatalogue();

// The catalogue's base units of a kind ("length", "force", "mass", "angle"): name and factor to SI.
std::vector<std::pair<std::wstring, double>> CatalogueUnits(const std::string& kind);

// The quantity types that convert with unit texts, by the names Python callers use.
std::vector<std::string> QuantityNames();

// A value in `unit` (e.g. "kN*m" for a moment) to SI (toSi) or an SI value to `unit`. Throws when
// the quantity is unknown or the unit text has a unit the catalogue lacks for that quantity.
double ConvertUnit(double value, const std::string& quantity, const std::wstring& unit, bool toSi);

// Money: the amount rounded to hundredths and written with the user's monetary separators, or a
// text read back into an amount. Separators given here stand in for the locale's for the one
// call; where neither gives a monetary decimal (the "C" locale), "." is used.
struct MoneySeparators {
    std::optional<std::wstring> decimal;
    std::optional<std::wstring> thousands;
};
std::wstring FormatMoney(double amount, const MoneySeparators& separators);
double ParseMoney(const std::wstring& text, const MoneySeparators& separators);
double RoundMoney(double amount);
std::wstring CurrencySymbol();

}  // namespace quillon::python
