// The user's number and money separators and currency symbol. Unit formatting and money texts use
// them for display; files and contour texts never do (they always write ".").
//
// CurrentLocaleTexts() returns the override when one is set; otherwise it reads the environment's
// locale anew on every call (a user who changes the locale sees the change at once) and answers
// empty texts when the locale cannot be read. Not locked: like the rest of the process-wide state,
// the override is set from the application's one thread.
#pragma once

#include <string>

namespace quillon::platform {

struct LocaleTexts {
    std::wstring decimal;            // decimal separator of numbers, e.g. L"." or L","
    std::wstring monetaryDecimal;    // decimal separator of money amounts
    std::wstring monetaryThousands;  // thousands separator of money amounts
    std::wstring currencySymbol;     // e.g. L"€"

    bool operator==(const LocaleTexts&) const = default;
};

LocaleTexts CurrentLocaleTexts();
void SetLocaleOverride(LocaleTexts texts);
void ClearLocaleOverride();

}  // namespace quillon::platform
