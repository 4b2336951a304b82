// printf-style expansion of a unit-text format (VUnit::vset) with "." as the decimal point whatever
// the process locale, into a buffer of 4096 characters.
#pragma once

#include <cstdarg>
#include <optional>
#include <string>

namespace quillon::munit::vunit_detail {

// The expanded text, or nothing when the format is bad or the text needs more than 4095 characters.
std::optional<std::wstring> FormatUnitText(const wchar_t* format, std::va_list args);

}  // namespace quillon::munit::vunit_detail
