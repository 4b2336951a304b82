// The calls behind quillon.units: value-with-unit texts, the unit catalogue's conversions and
// money texts. The public face (dataclasses, docstrings) is python/quillon/units.py.
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <optional>
#include <string>

#include "python/src/bindings.h"
#include "python/src/library_lock.h"
#include "python/src/unit_values.h"

namespace py = pybind11;

namespace quillon::python {

void BindUnits(py::module_& m) {
    Locked(&EnsureCatalogue);
    m.def(
        "_unit_parse",
        [](const std::wstring& text) {
            const ParsedQuantity q = Locked([&] { return ParseQuantity(text); });
            return py::make_tuple(q.value, q.factor, q.si, py::make_tuple(q.m, q.kg, q.s),
                                  q.quantity, q.siText);
        },
        py::arg("text"));
    m.def(
        "_unit_convert",
        [](double value, const std::string& quantity, const std::wstring& unit, bool toSi) {
            return Locked([&] { return ConvertUnit(value, quantity, unit, toSi); });
        },
        py::arg("value"), py::arg("quantity"), py::arg("unit"), py::arg("to_si"));
    m.def("_unit_quantities", &QuantityNames);
    m.def(
        "_unit_catalogue",
        [](const std::string& kind) { return Locked([&] { return CatalogueUnits(kind); }); },
        py::arg("kind"));
    m.def(
        "_money_format",
        [](double amount, std::optional<std::wstring> decimal,
           std::optional<std::wstring> thousands) {
            return Locked([&] {
                return FormatMoney(amount, {std::move(decimal), std::move(thousands)});
            });
        },
        py::arg("amount"), py::arg("decimal"), py::arg("thousands"));
    m.def(
        "_money_parse",
        [](const std::wstring& text, std::optional<std::wstring> decimal,
           std::optional<std::wstring> thousands) {
            return Locked([&] {
                return ParseMoney(text, {std::move(decimal), std::move(thousands)});
            });
        },
        py::arg("text"), py::arg("decimal"), py::arg("thousands"));
    m.def("_money_round", &RoundMoney, py::arg("amount"));
    m.def("_currency_symbol", [] { return Locked(&CurrencySymbol); });
}

}  // namespace quillon::python
