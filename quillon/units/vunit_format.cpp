#include "quillon/units/vunit_format.h"

#include <array>
#include <cwchar>

#if defined(_WIN32)
#include <locale.h>
#include <stdio.h>
#else
#include <locale.h>
#include <clocale>
#endif

namespace quillon::munit::vunit_detail {

namespace {

constexpr std::size_t kBufferSize = 4096;

#if !defined(_WIN32)
// The "C" locale for the calling thread while one expansion runs, so that a number written with
// %g reads back in the unit grammar, which knows only ".".
class CLocaleScope {
public:
    CLocaleScope() {
        static const locale_t c = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
        if (c) previous_ = uselocale(c);
    }
    ~CLocaleScope() {
        if (previous_) uselocale(previous_);
    }
    CLocaleScope(const CLocaleScope&) = delete;
    CLocaleScope& operator=(const CLocaleScope&) = delete;

private:
    locale_t previous_ = static_cast<locale_t>(nullptr);
};
#endif

}  // namespace

std::optional<std::wstring> FormatUnitText(const wchar_t* format, std::va_list args) {
    std::array<wchar_t, kBufferSize> buffer{};
    int written = -1;
#if !defined(_WIN32)
    {
        CLocaleScope scope;
        written = std::vswprintf(buffer.data(), buffer.size(), format, args);
    }
#else
    static const _locale_t c = _create_locale(LC_ALL, "C");
    written = _vsnwprintf_s_l(buffer.data(), buffer.size(), _TRUNCATE, format, c, args);
#endif
    if (written < 0 || static_cast<std::size_t>(written) >= buffer.size()) return std::nullopt;
    return std::wstring(buffer.data(), static_cast<std::size_t>(written));
}

}  // namespace quillon::munit::vunit_detail
