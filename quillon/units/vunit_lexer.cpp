#include "quillon/units/vunit_lexer.h"

#include <array>
#include <cmath>
#include <limits>

#include "quillon/platform/text.h"

namespace quillon::munit::vunit_detail {

namespace {

// Kept row for row: stored texts depend on this order and on these factors. "ton" is a length and
// "T" and "Ton" are forces, as the applications have always read them.
constexpr std::array<UnitRow, 14> kWholeUnits{{
    {"Ton", 8896.446, 1, 1, -2},
    {"T", 9806.65, 1, 1, -2},
    {"inch", 0.0254, 1, 0, 0},
    {"in", 0.0254, 1, 0, 0},
    {"foot", 0.3048, 1, 0, 0},
    {"ft-in", 0.3048, 1, 0, 0},
    {"ft", 0.3048, 1, 0, 0},
    {"kip", 4448.223, 1, 1, -2},
    {"ksi", 6894759.439518879, -1, 1, -2},
    {"lb", 4.448223, 1, 1, -2},
    {"psi", 6894.759439518879, -1, 1, -2},
    {"ton", 907.185022, 1, 0, 0},
    {"t", 1000.0, 0, 1, 0},
    {"yard", 0.9144, 1, 0, 0},
}};

// "da" comes before "d", so that "daN" is a deca-newton.
constexpr std::array<PrefixRow, 8> kPrefixes{{
    {"M", 1000000.0},
    {"k", 1000.0},
    {"h", 100.0},
    {"da", 10.0},
    {"d", 0.1},
    {"c", 0.01},
    {"m", 0.001},
    {"u", 0.000001},
}};

constexpr std::array<UnitRow, 9> kBaseUnits{{
    {"m", 1.0, 1, 0, 0},
    {"g", 0.001, 0, 1, 0},
    {"s", 1.0, 0, 0, 1},
    {"G", 0.00980665, 1, 1, -2},
    {"N", 1.0, 1, 1, -2},
    {"Hz", 1.0, 0, 0, -1},
    {"Pa", 1.0, -1, 1, -2},
    {"J", 1.0, 2, 1, -2},
    {"W", 1.0, 2, 1, -3},
}};

const UnitRow* findUnit(std::span<const UnitRow> table, std::string_view rest) {
    for (const UnitRow& row : table) {
        if (rest.starts_with(row.name)) return &row;
    }
    return nullptr;
}

// Truncation toward zero into 32 bits; values beyond the range saturate (the conversion itself
// would be undefined).
std::int32_t truncateToInt32(double value) {
    if (std::isnan(value)) return 0;
    if (value >= 2147483647.0) return std::numeric_limits<std::int32_t>::max();
    if (value <= -2147483648.0) return std::numeric_limits<std::int32_t>::min();
    return static_cast<std::int32_t>(value);
}

}  // namespace

std::span<const UnitRow> WholeUnits() { return kWholeUnits; }
std::span<const PrefixRow> Prefixes() { return kPrefixes; }
std::span<const UnitRow> BaseUnits() { return kBaseUnits; }

const char* TokenKindName(TokenKind kind) {
    switch (kind) {
        case TokenKind::End:
            return "end";
        case TokenKind::Unit:
            return "UNIT";
        case TokenKind::PositiveInt:
            return "POSITIVE_INT";
        case TokenKind::NegativeInt:
            return "NEGATIVE_INT";
        case TokenKind::RealNumber:
            return "REAL_NUMBER";
        case TokenKind::Star:
            return "'*'";
        case TokenKind::Slash:
            return "'/'";
        case TokenKind::Caret:
            return "'^'";
        case TokenKind::Other:
            return "character";
        case TokenKind::Error:
            return "error";
    }
    return "?";
}

Lexer::Lexer(const wchar_t* text) : text_(platform::ToUtf8(text ? text : L"")) {}

Token Lexer::Next() {
    while (pos_ < text_.size() && platform::IsAsciiSpace(text_[pos_])) ++pos_;
    const std::size_t start = pos_;
    if (start >= text_.size()) return Token{TokenKind::End, 0.0, 0, {}, start, start};
    const char c = text_[start];
    if (platform::IsAsciiDigit(c) || c == '-') return scanNumber(start);
    if (platform::IsAsciiAlpha(c)) return scanWord(start);
    pos_ = start + 1;
    TokenKind kind = TokenKind::Other;
    if (c == '*') kind = TokenKind::Star;
    if (c == '/') kind = TokenKind::Slash;
    if (c == '^') kind = TokenKind::Caret;
    return Token{kind, 0.0, 0, {}, start, pos_};
}

Token Lexer::scanNumber(std::size_t start) {
    std::size_t used = 0;
    const double value = platform::LeadingDouble(std::string_view(text_).substr(start), &used);
    if (used == 0) {
        // A "-" that starts no number stands for itself, and no rule takes it.
        pos_ = start + 1;
        return Token{TokenKind::Other, 0.0, 0, {}, start, pos_};
    }
    pos_ = start + used;
    const std::string_view digits = std::string_view(text_).substr(start, used);
    Token token{TokenKind::RealNumber, value, 0, {}, start, pos_};
    if (digits.find_first_of(".eE") == std::string_view::npos) {
        token.integer = truncateToInt32(value);
        token.kind = token.integer >= 0 ? TokenKind::PositiveInt : TokenKind::NegativeInt;
    }
    return token;
}

Token Lexer::scanWord(std::size_t start) {
    const std::string_view rest = std::string_view(text_).substr(start);
    const UnitRow* row = findUnit(kWholeUnits, rest);
    std::size_t length = row ? row->name.size() : 0;
    double factor = row ? row->factor : 0.0;
    if (!row) {
        // Only the first prefix the word starts with is tried: "mm" is a milli-metre, while "m"
        // alone falls through to the base metre below.
        for (const PrefixRow& prefix : kPrefixes) {
            if (!rest.starts_with(prefix.name)) continue;
            row = findUnit(kBaseUnits, rest.substr(prefix.name.size()));
            if (row) {
                length = prefix.name.size() + row->name.size();
                factor = prefix.factor * row->factor;
            }
            break;
        }
    }
    if (!row) {
        row = findUnit(kBaseUnits, rest);
        if (row) {
            length = row->name.size();
            factor = row->factor;
        }
    }
    if (!row) {
        pos_ = start + 1;
        return Token{TokenKind::Error, 0.0, 0, {}, start, pos_};
    }
    pos_ = start + length;
    return Token{TokenKind::Unit, factor, 0, SUnit(row->m, row->kg, row->s), start, pos_};
}

}  // namespace quillon::munit::vunit_detail
