// Text values of the in-memory tables: when a text reads as a number, and how two values compare.
#pragma once

#include <string_view>

namespace quillon {

// True when the whole text is a finite decimal number: an optional sign, digits with an optional
// decimal point (at least one digit), an optional exponent. No blanks, no hex, no "inf"/"nan".
// The decimal point is always "." whatever the locale.
bool DbReadNumber(std::wstring_view text, double& value);

// Negative, zero or positive: numeric when both read as numbers, ordinal by character otherwise.
int DbCompareValues(std::wstring_view a, std::wstring_view b);

}  // namespace quillon
