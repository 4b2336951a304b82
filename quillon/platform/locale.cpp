#include "quillon/platform/locale.h"

#include <optional>

#include "quillon/platform/text.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <langinfo.h>
#include <locale.h>

#include <cstdlib>
#include <cstring>
#include <string>
#endif

namespace quillon::platform {

namespace {

std::optional<LocaleTexts>& overrideSlot() {
    static std::optional<LocaleTexts> slot;
    return slot;
}

#if defined(_WIN32)
std::wstring localeInfo(LCTYPE type) {
    wchar_t buffer[32] = {};  // mutate: off (Windows only, not built here)
    const int n =
        GetLocaleInfoEx(LOCALE_NAME_USER_DEFAULT, type, buffer, 32);  // mutate: off (Windows only)
    return n > 0 ? std::wstring(buffer) : std::wstring();             // mutate: off (Windows only)
}

LocaleTexts readEnvironment() {
    return {localeInfo(LOCALE_SDECIMAL), localeInfo(LOCALE_SMONDECIMALSEP),
            localeInfo(LOCALE_SMONTHOUSANDSEP), localeInfo(LOCALE_SCURRENCY)};
}
#else
LocaleTexts readEnvironment() {
    const locale_t loc = newlocale(LC_ALL_MASK, "", static_cast<locale_t>(nullptr));
    if (!loc) return {};
    const char* codeset = nl_langinfo_l(CODESET, loc);
    // glibc, musl and the BSDs all name it so.
    const bool utf8 = codeset && std::strcmp(codeset, "UTF-8") == 0;
    auto item = [&](nl_item what) -> std::wstring {
        const char* text = nl_langinfo_l(what, loc);
        if (!text) return {};
        if (utf8) return FromUtf8(text);
        std::wstring wide;  // single-byte code sets: the bytes as Latin-1
        for (const char* p = text; *p; ++p) wide.push_back(static_cast<unsigned char>(*p));
        return wide;
    };
    LocaleTexts texts{item(RADIXCHAR), item(MON_DECIMAL_POINT), item(MON_THOUSANDS_SEP),
                      item(CURRENCY_SYMBOL)};
    freelocale(loc);
    return texts;
}
#endif

}  // namespace

LocaleTexts CurrentLocaleTexts() {
    if (const auto& slot = overrideSlot()) return *slot;
#if defined(_WIN32)
    return readEnvironment();
#else
    // Opening a locale costs far more than formatting a number, and display code asks for every
    // value it shows. The texts depend only on the locale variables of the environment, so they
    // are read again whenever one of those changes and reused while none does.
    std::string key;
    for (const char* name : {"LC_ALL", "LC_NUMERIC", "LC_MONETARY", "LANG"}) {
        const char* value = std::getenv(name);
        key += value ? value : "\x01";
        key += '\0';
    }
    // The key holds four terminators, so it never equals the empty key of the first call.
    static std::string cachedKey;
    static LocaleTexts cached;
    if (key != cachedKey) {
        cached = readEnvironment();
        cachedKey = std::move(key);
    }
    return cached;
#endif
}

void SetLocaleOverride(LocaleTexts texts) { overrideSlot() = std::move(texts); }

void ClearLocaleOverride() { overrideSlot().reset(); }

}  // namespace quillon::platform
