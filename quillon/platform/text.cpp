#include "quillon/platform/text.h"

#include <charconv>
#include <climits>
#include <cmath>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cwchar>
#include <limits>
#include <utility>
#include <vector>

#if defined(_WIN32)
#include <locale.h>
#else
#include <locale.h>
#include <clocale>
#endif

namespace quillon::platform {

namespace {

void appendUtf8(std::string& out, std::uint32_t c) {
    if (c < 0x80) {
        out.push_back(static_cast<char>(c));
    } else if (c < 0x800) {
        out.push_back(static_cast<char>(0xC0 | (c >> 6)));
        out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    } else if (c < 0x10000) {
        out.push_back(static_cast<char>(0xE0 | (c >> 12)));
        out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    } else {
        out.push_back(static_cast<char>(0xF0 | (c >> 18)));
        out.push_back(static_cast<char>(0x80 | ((c >> 12) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    }
}

void appendWide(std::wstring& out, std::uint32_t c) {
    if constexpr (sizeof(wchar_t) == 2) {  // Windows: a pair of UTF-16 units
        if (c > 0xFFFF) {                  // mutate: off (Windows)
            c -= 0x10000;                  // mutate: off (Windows)
            out.push_back(static_cast<wchar_t>(0xD800 + (c >> 10)));    // mutate: off (Windows)
            out.push_back(static_cast<wchar_t>(0xDC00 + (c & 0x3FF)));  // mutate: off (Windows)
            return;
        }
    }
    out.push_back(static_cast<wchar_t>(c));
}

// The extent of the leading number of a text, after blanks: [sign] digits [. digits] [e [sign]
// digits], at least one digit in the mantissa. Returns {start, end} or {0, 0} when there is none.
template <typename Char>
std::pair<std::size_t, std::size_t> numberExtent(const Char* s, std::size_t n, bool allowFraction) {
    // The character at k, or NUL past the end (which is neither blank, sign, digit nor letter).
    const auto at = [s, n](std::size_t k) { return k < n ? s[k] : Char(0); };
    const auto sign = [](Char c) { return c == Char('+') || c == Char('-'); };
    std::size_t i = 0;
    while (IsAsciiSpace(at(i))) ++i;
    const std::size_t start = i;
    if (sign(at(i))) ++i;
    std::size_t digits = 0;
    while (IsAsciiDigit(at(i))) ++i, ++digits;
    if (allowFraction && at(i) == Char('.')) {
        ++i;
        while (IsAsciiDigit(at(i))) ++i, ++digits;
    }
    if (digits == 0) return {0, 0};
    if (allowFraction && (at(i) == Char('e') || at(i) == Char('E'))) {
        std::size_t j = i + 1;
        if (sign(at(j))) ++j;
        if (IsAsciiDigit(at(j))) {
            while (IsAsciiDigit(at(j))) ++j;
            i = j;
        }
    }
    return {start, i};
}

template <typename Char>
double leadingDouble(const Char* s, std::size_t n, std::size_t* used) {
    const auto [start, end] = numberExtent(s, n, true);
    if (used) *used = end;
    if (end == 0) return 0.0;
    std::string narrow;
    narrow.reserve(end - start);
    for (std::size_t i = start; i < end; ++i) {
        if (s[i] != Char('+')) narrow.push_back(static_cast<char>(s[i]));
    }
    double value = 0.0;
    const auto result = std::from_chars(narrow.data(), narrow.data() + narrow.size(), value);
    if (result.ec == std::errc::result_out_of_range) {
        // Too large saturates to infinity, too small to zero, as strtod does.
        const bool negative = narrow[0] == '-';  // out of range: there were digits
        const auto e = narrow.find_first_of("eE");
        const bool hugeExp = e != std::string::npos && narrow[e + 1] != '-';
        value = hugeExp ? (negative ? -HUGE_VAL : HUGE_VAL) : (negative ? -0.0 : 0.0);
    }
    return value;
}

template <typename Int>
Int leadingInteger(const wchar_t* s) {
    if (!s) return 0;
    const std::size_t n = std::wcslen(s);
    const auto [start, end] = numberExtent(s, n, false);
    if (end == 0) return 0;
    std::size_t i = start;
    bool negative = false;
    if (s[i] == L'+' || s[i] == L'-') negative = s[i++] == L'-';
    long long value = 0;
    bool overflow = false;
    for (; i < end; ++i) {
        const int d = static_cast<int>(s[i] - L'0');
        if (value > (LLONG_MAX - d) / 10) {
            overflow = true;
            break;
        }
        value = value * 10 + d;
    }
    if (negative) value = -value;
    if (overflow || value > static_cast<long long>(std::numeric_limits<Int>::max()) ||
        value < static_cast<long long>(std::numeric_limits<Int>::min())) {
        return negative ? std::numeric_limits<Int>::min() : std::numeric_limits<Int>::max();
    }
    return static_cast<Int>(value);
}

#if !defined(_WIN32)
// The "C" locale, installed for the calling thread only while a format call runs.
class CNumericScope {
public:
    CNumericScope() {
        static locale_t c = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
        if (c) previous_ = uselocale(c);
    }
    ~CNumericScope() {
        if (previous_) uselocale(previous_);
    }
    CNumericScope(const CNumericScope&) = delete;
    CNumericScope& operator=(const CNumericScope&) = delete;

private:
    locale_t previous_ = static_cast<locale_t>(nullptr);
};
#else
_locale_t cLocale() {
    static _locale_t c = _create_locale(LC_ALL, "C");
    return c;
}
#endif

}  // namespace

std::string ToUtf8(std::wstring_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        auto c = static_cast<std::uint32_t>(text[i]);
        if (c >= 0xD800 && c < 0xDC00 && i + 1 < text.size()) {
            const auto low = static_cast<std::uint32_t>(text[i + 1]);
            if (low >= 0xDC00 && low < 0xE000) {
                c = 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
                ++i;
            }
        }
        if ((c >= 0xD800 && c < 0xE000) || c > 0x10FFFF) c = 0xFFFD;
        appendUtf8(out, c);
    }
    return out;
}

std::wstring FromUtf8(std::string_view text) {
    std::wstring out;
    out.reserve(text.size());
    const auto* s = reinterpret_cast<const unsigned char*>(text.data());
    const std::size_t n = text.size();
    for (std::size_t i = 0; i < n;) {
        const unsigned char b = s[i];
        std::uint32_t c = 0xFFFD;
        std::size_t len = 1;
        std::size_t need = 0;
        std::uint32_t min = 0;  // mutate: off (set by every branch that reads it)
        if (b < 0x80) {
            c = b;
        } else if (b >= 0xC2 && b < 0xE0) {
            need = 1, c = b & 0x1F, min = 0x80;
        } else if (b >= 0xE0 && b < 0xF0) {
            need = 2, c = b & 0x0F, min = 0x800;
        } else if (b >= 0xF0 && b < 0xF5) {
            need = 3, c = b & 0x07, min = 0x10000;
        }
        if (need) {
            std::size_t k = 1;
            for (; k <= need && i + k < n && (s[i + k] & 0xC0) == 0x80; ++k) {
                c = (c << 6) | (s[i + k] & 0x3F);
            }
            if (k == need + 1 && c >= min && c <= 0x10FFFF && !(c >= 0xD800 && c < 0xE000)) {
                len = need + 1;
            } else {
                c = 0xFFFD;
                len = k;  // skip the lead byte and the continuation bytes that belonged to it
            }
        } else if (b >= 0x80) {
            c = 0xFFFD;
        }
        appendWide(out, c);
        i += len;
    }
    return out;
}

double _wtof(const wchar_t* text) {
    if (!text) return 0.0;
    return leadingDouble(text, std::wcslen(text), nullptr);
}

int _wtoi(const wchar_t* text) { return leadingInteger<int>(text); }
long _wtol(const wchar_t* text) { return leadingInteger<long>(text); }

double LeadingDouble(std::string_view text, std::size_t* used) {
    return leadingDouble(text.data(), text.size(), used);
}

std::string FormatC(const char* format, ...) {
    std::va_list args;
    va_start(args, format);
    std::va_list again;
    va_copy(again, args);
    std::string out;
    {
#if !defined(_WIN32)
        CNumericScope scope;
        const int n = std::vsnprintf(nullptr, 0, format, args);
        if (n > 0) {  // mutate: off (an empty text writes nothing either way)
            out.resize(static_cast<std::size_t>(n) + 1);
            std::vsnprintf(out.data(), out.size(), format, again);
            out.resize(static_cast<std::size_t>(n));
        }
#else
        const int n = _vscprintf_l(format, cLocale(), args);
        if (n > 0) {
            out.resize(static_cast<std::size_t>(n) + 1);
            _vsnprintf_l(out.data(), out.size(), format, cLocale(), again);
            out.resize(static_cast<std::size_t>(n));
        }
#endif
    }
    va_end(again);
    va_end(args);
    return out;
}

std::optional<std::wstring> FormatWv(std::size_t capacity, const wchar_t* format,
                                     std::va_list args) {
    if (capacity == 0) return std::nullopt;
    std::wstring out(capacity, L'\0');
#if !defined(_WIN32)
    const CNumericScope scope;
    const int n = std::vswprintf(out.data(), out.size(), format, args);
#else
    const int n = _vsnwprintf_s_l(out.data(), out.size(), _TRUNCATE, format, cLocale(), args);
#endif
    const bool failed = n < 0;  // mutate: off (an empty text only grows the buffer: still empty)
    if (failed || static_cast<std::size_t>(n) >= out.size()) return std::nullopt;
    out.resize(static_cast<std::size_t>(n));
    return out;
}

std::wstring FormatW(const wchar_t* format, ...) {
    // vswprintf reports neither the needed size nor a format error apart from "too small": grow,
    // and stop at a size no sensible text reaches.
    for (std::size_t capacity = 64;; capacity *= 4) {  // mutate: off (a first size; growth decides)
        std::va_list args;
        va_start(args, format);
        std::optional<std::wstring> text = FormatWv(capacity, format, args);
        va_end(args);
        if (text) return std::move(*text);
        if (capacity > (1u << 24)) return {};
    }
}

}  // namespace quillon::platform
