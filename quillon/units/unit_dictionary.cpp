#include "quillon/units/unit_dictionary.h"

#include <array>
#include <optional>
#include <unordered_map>

namespace quillon::munit {
namespace {

// Key -> translation; the first entry of a key wins, as in a front-to-back search.
using Dictionary = std::unordered_map<std::wstring, std::wstring>;

std::array<std::optional<Dictionary>, UNITDIC_COUNT>& dictionaries() {
    static std::array<std::optional<Dictionary>, UNITDIC_COUNT> dicts;
    return dicts;
}

bool known(UNITDIC_TYPE dict) { return dict >= 0 && dict < UNITDIC_COUNT; }

UNITDIC_UNITSNAMES makeDefaultNames() {
    return {{L"m", L"cm", L"mm",  L"cm",  L"mm", L"mm", L"cm", L"kN", L"kN", L"m", L"MN",
             L"m", L"cm", L"Deg", L"Rad", L"kG", L"kg", L"cm", L"C",  L"s",  L"Hz"},
            L"(",
            L")"};
}

// A field need not hold a terminator when all 30 characters are used.
std::wstring fieldText(const wchar_t (&field)[UNITDIC_FIELD]) {
    std::size_t n = 0;
    while (n < UNITDIC_FIELD && field[n] != L'\0') ++n;
    return std::wstring(field, n);
}

}  // namespace

std::wstring UNITDIC_GetUnitNameTrans(UNITDIC_TYPE dict, const wchar_t* name) {
    const std::wstring key = name ? std::wstring(name) : std::wstring();
    if (!known(dict)) return key;
    const auto& d = dictionaries()[static_cast<std::size_t>(dict)];
    if (!d) return key;
    const auto it = d->find(key);
    if (it == d->end() || it->second.empty()) return key;
    return it->second;
}

UNITDIC_UNITSNAMES* UNITDIC_UnitsNames() {
    static UNITDIC_UNITSNAMES block = makeDefaultNames();
    return &block;
}

void UNITDIC_Init() {
    for (auto& d : dictionaries()) d.reset();
    *UNITDIC_UnitsNames() = makeDefaultNames();
}

int UNITDIC_SetDictionary(UNITDIC_TYPE dict, const UNITDIC_ENTRY* entries) {
    if (!known(dict)) return 1;
    Dictionary d;
    for (const UNITDIC_ENTRY* e = entries; e && e->key[0] != L'\0'; ++e) {
        d.emplace(fieldText(e->key), fieldText(e->translation));
    }
    auto& slot = dictionaries()[static_cast<std::size_t>(dict)];
    if (d.empty()) {
        slot.reset();
    } else {
        slot = std::move(d);
    }
    return 0;
}

}  // namespace quillon::munit
