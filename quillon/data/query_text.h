// Text steps of the query analysis: lower-casing outside quotes, blanks round operators, bracket
// removal from names. Exposed for the analysis and for callers that want to see a query as the
// analysis sees it.
//
// Quote pairs: "[" closes with "]", "'" with "'", a double quote with a double quote, and U+FF91
// with itself. U+FF91 is the single-byte left quotation mark 0x91 sign-extended into a wide
// character; texts produced with it keep scanning as quoted, so the pair is kept.
#pragma once

#include <string>
#include <string_view>

namespace quillon::parser {

// The character that closes a quote opened by 'c', or 0 when 'c' opens none. With
// withBrackets false, "[" opens nothing.
wchar_t QuoteCloser(wchar_t c, bool withBrackets);

// Lower-cases every character outside quoted runs (brackets do not quote here); quoted text keeps
// its case.
std::wstring LowerOutsideQuotes(std::wstring_view text);

// Puts blanks round "*", ")", "(", "<", ">" and "=" outside quoted runs, one character kind after
// the other. Occurrences at index 0 and 1 are left alone; "<=", ">=", "<>", "==" stay together,
// and "=" after "!" gets a blank after it but none before it.
std::wstring SpaceOperators(std::wstring_view text);

// Drops a trailing "]" and then a leading "[", each independently.
std::wstring RemoveBrackets(std::wstring_view name);

// Lower-case form used for every case-insensitive name comparison of the data layer.
std::wstring LowerText(std::wstring_view text);

}  // namespace quillon::parser
