// Texts: conversion between wide texts and UTF-8, the leading-number readers that stored texts and
// user input rely on, and printf-style formatting that writes "." as the decimal point whatever the
// process locale says (files and contour texts must read back on every machine).
//
// Wide texts are std::wstring. Where wchar_t is 16 bits wide they hold UTF-16; where it is 32 bits
// wide they hold code points. Invalid UTF-8 becomes U+FFFD; it never throws.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace quillon::platform {

std::string ToUtf8(std::wstring_view text);
std::wstring FromUtf8(std::string_view text);

// Leading-number readers with the classic rule: blanks are skipped, then the longest prefix that
// reads as a decimal number is taken ([sign] digits [. digits] [e [sign] digits]); a text with no
// such prefix gives 0. They never throw. Integers that do not fit saturate.
double _wtof(const wchar_t* text);
int _wtoi(const wchar_t* text);
long _wtol(const wchar_t* text);
inline double _wtof(const std::wstring& text) { return _wtof(text.c_str()); }
inline int _wtoi(const std::wstring& text) { return _wtoi(text.c_str()); }
inline long _wtol(const std::wstring& text) { return _wtol(text.c_str()); }

// The same rule on narrow texts, telling how many characters the number used (0: none).
double LeadingDouble(std::string_view text, std::size_t* used = nullptr);

// Character classes of the "C" locale, for narrow and wide characters alike: texts read the same
// whatever the process locale says (white space is ' ' and '\t' to '\r').
template <typename Char>
constexpr bool IsAsciiSpace(Char c) {
    return c == Char(' ') || (c >= Char('\t') && c <= Char('\r'));
}
template <typename Char>
constexpr bool IsAsciiDigit(Char c) {
    return c >= Char('0') && c <= Char('9');
}
template <typename Char>
constexpr bool IsAsciiAlpha(Char c) {
    return (c >= Char('a') && c <= Char('z')) || (c >= Char('A') && c <= Char('Z'));
}
template <typename Char>
constexpr Char ToAsciiUpper(Char c) {
    return c >= Char('a') && c <= Char('z') ? static_cast<Char>(c - 'a' + 'A') : c;
}

// printf-style formatting in the "C" numeric locale. Wide arguments of FormatW are passed as %ls.
#if defined(__GNUC__)
std::string FormatC(const char* format, ...) __attribute__((format(printf, 1, 2)));
#else
std::string FormatC(const char* format, ...);
#endif
std::wstring FormatW(const wchar_t* format, ...);
// The same from a va_list, into at most `capacity` characters with the terminator: nothing when
// the format is bad or the text does not fit. `args` is used up, as by vswprintf.
std::optional<std::wstring> FormatWv(std::size_t capacity, const wchar_t* format,
                                     std::va_list args);

}  // namespace quillon::platform
