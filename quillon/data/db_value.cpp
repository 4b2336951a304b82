#include "quillon/data/db_value.h"

#include <charconv>
#include <cmath>
#include <string>
#include <system_error>

namespace quillon {

bool DbReadNumber(std::wstring_view text, double& value) {
    std::size_t i = 0;
    const std::size_t n = text.size();
    auto digits = [&]() {
        const std::size_t start = i;
        while (i < n && text[i] >= L'0' && text[i] <= L'9') ++i;
        return i - start;  // mutate: off (a wrong count still meets from_chars below)
    };
    if (text.starts_with(L'+') || text.starts_with(L'-')) ++i;
    std::size_t mantissa = digits();
    if (i < n && text[i] == L'.') {
        ++i;
        mantissa += digits();
    }
    if (mantissa == 0) return false;
    if (i < n && (text[i] == L'e' || text[i] == L'E')) {
        ++i;
        if (i < n && (text[i] == L'+' || text[i] == L'-')) ++i;
        if (digits() == 0) return false;
    }
    if (i != n) return false;

    // Only ASCII is left, so a narrow copy is exact; from_chars takes no "+" and ignores locales.
    std::string narrow;
    narrow.reserve(n);
    for (wchar_t c : text) narrow += static_cast<char>(c);
    const char* first = narrow.data();
    if (*first == '+') ++first;
    double v = 0.0;
    const auto [end, ec] = std::from_chars(first, narrow.data() + narrow.size(), v);
    if (ec != std::errc() || end != narrow.data() + narrow.size() || !std::isfinite(v))
        return false;
    value = v;
    return true;
}

int DbCompareValues(std::wstring_view a, std::wstring_view b) {
    double x = 0.0;
    double y = 0.0;
    if (DbReadNumber(a, x) && DbReadNumber(b, y)) return x < y ? -1 : (y < x ? 1 : 0);
    const int c = a.compare(b);
    return c < 0 ? -1 : (c > 0 ? 1 : 0);
}

}  // namespace quillon
