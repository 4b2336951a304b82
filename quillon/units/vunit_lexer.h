// Scanner of unit texts: turns a text such as "2.5 kN*m^2" into numbers, units and operator tokens
// for the unit grammar (vunit_parser.h). It holds only its own position, so scanners on different
// threads never meet.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "quillon/units/vunit.h"

namespace quillon::munit::vunit_detail {

enum class TokenKind {
    End,          // the end of the text
    Unit,         // a unit name with its factor and exponents
    PositiveInt,  // an integer >= 0
    NegativeInt,  // an integer < 0
    RealNumber,   // a number written with ".", "e" or "E"
    Star,         // "*"
    Slash,        // "/"
    Caret,        // "^"
    Other,        // any other single character; no rule of the grammar takes it
    Error,        // a word that names no unit
};

struct Token {
    TokenKind kind = TokenKind::End;
    double number = 0.0;       // Unit: the factor to MKS; numbers: the value
    std::int32_t integer = 0;  // PositiveInt, NegativeInt: the value truncated to 32 bits
    SUnit unit;                // Unit: the exponents
    std::size_t begin = 0;     // the token's characters in the scanned text
    std::size_t end = 0;
};

// One row of the unit tables: a name, its factor to MKS and its exponents.
struct UnitRow {
    std::string_view name;
    double factor;
    std::int32_t m, kg, s;
};

struct PrefixRow {
    std::string_view name;
    double factor;
};

// The tables in their search order.
std::span<const UnitRow> WholeUnits();
std::span<const PrefixRow> Prefixes();
std::span<const UnitRow> BaseUnits();

const char* TokenKindName(TokenKind kind);

class Lexer {
public:
    // Scans the UTF-8 form of the text. Characters outside ASCII are neither blanks, digits nor
    // letters, so each of their bytes becomes an Other token.
    explicit Lexer(const wchar_t* text);

    Token Next();
    const std::string& text() const { return text_; }

private:
    Token scanNumber(std::size_t start);
    Token scanWord(std::size_t start);

    std::string text_;
    std::size_t pos_ = 0;
};

}  // namespace quillon::munit::vunit_detail
