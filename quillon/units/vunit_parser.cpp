#include "quillon/units/vunit_parser.h"

#include <cstdio>
#include <optional>
#include <string>

#include "quillon/units/vunit_lexer.h"

namespace quillon::munit::vunit_detail {

namespace {

class Parser {
public:
    Parser(const wchar_t* text, bool trace) : lexer_(text), trace_(trace) { advance(); }

    // parse_unit: rules 1 and 2, then the whole text must have been taken.
    std::optional<VUnit> parseUnit() {
        if (token_.kind == TokenKind::End) {
            reduce(1, "parse_unit -> (empty)");
            return VUnit();
        }
        std::optional<VUnit> result = unit();
        if (!result) return std::nullopt;
        if (token_.kind != TokenKind::End) return syntaxError();
        reduce(2, "parse_unit -> unit");
        return result;
    }

private:
    static bool isNumber(TokenKind kind) {
        return kind == TokenKind::PositiveInt || kind == TokenKind::NegativeInt ||
               kind == TokenKind::RealNumber;
    }

    // unit: rules 3 to 7.
    std::optional<VUnit> unit() {
        if (token_.kind == TokenKind::Unit) {
            std::optional<VUnit> d = dUnit();
            if (d) reduce(7, "unit -> d_unit");
            return d;
        }
        if (!isNumber(token_.kind)) return syntaxError();
        const VUnit number(fval());
        switch (token_.kind) {
            case TokenKind::End:
                reduce(3, "unit -> fval");
                return number;
            case TokenKind::Unit: {
                std::optional<VUnit> d = dUnit();
                if (!d) return std::nullopt;
                reduce(4, "unit -> fval d_unit");
                return number * *d;
            }
            case TokenKind::Star: {
                advance();
                if (token_.kind != TokenKind::Unit) return syntaxError();
                std::optional<VUnit> d = dUnit();
                if (!d) return std::nullopt;
                reduce(5, "unit -> fval '*' d_unit");
                return number * *d;
            }
            case TokenKind::Slash: {
                advance();
                std::optional<VUnit> m = mUnit();
                if (!m) return std::nullopt;
                reduce(6, "unit -> fval '/' m_unit");
                return number / *m;
            }
            default:
                return syntaxError();
        }
    }

    // fval: rules 16 to 19; the caller has seen a number token.
    double fval() {
        const Token number = token_;
        advance();
        if (number.kind == TokenKind::RealNumber) {
            reduce(19, "fval -> REAL_NUMBER");
            return number.number;
        }
        reduce(number.kind == TokenKind::PositiveInt ? 16 : 17,
               number.kind == TokenKind::PositiveInt ? "ival -> POSITIVE_INT"
                                                     : "ival -> NEGATIVE_INT");
        reduce(18, "fval -> ival");
        return number.integer;
    }

    // d_unit: rules 8 and 9.
    std::optional<VUnit> dUnit() {
        std::optional<VUnit> numerator = mUnit();
        if (!numerator) return std::nullopt;
        if (token_.kind != TokenKind::Slash) {
            reduce(8, "d_unit -> m_unit");
            return numerator;
        }
        advance();
        std::optional<VUnit> denominator = mUnit();
        if (!denominator) return std::nullopt;
        reduce(9, "d_unit -> m_unit '/' m_unit");
        return *numerator / *denominator;
    }

    // m_unit: rules 10 to 12, products from left to right.
    std::optional<VUnit> mUnit() {
        std::optional<VUnit> product = pUnit();
        if (!product) return std::nullopt;
        reduce(10, "m_unit -> p_unit");
        for (;;) {
            if (token_.kind == TokenKind::Unit) {
                std::optional<VUnit> factor = pUnit();
                if (!factor) return std::nullopt;
                *product *= *factor;
                reduce(11, "m_unit -> m_unit p_unit");
            } else if (token_.kind == TokenKind::Star) {
                advance();
                std::optional<VUnit> factor = pUnit();
                if (!factor) return std::nullopt;
                *product *= *factor;
                reduce(12, "m_unit -> m_unit '*' p_unit");
            } else {
                return product;
            }
        }
    }

    // p_unit: rules 13 to 15, powers applied from left to right ("m2^3" is the sixth power).
    std::optional<VUnit> pUnit() {
        if (token_.kind != TokenKind::Unit) return syntaxError();
        VUnit power(token_.number, token_.unit.m, token_.unit.kg, token_.unit.s);
        advance();
        reduce(13, "p_unit -> UNIT");
        for (;;) {
            if (token_.kind == TokenKind::PositiveInt) {
                power ^= token_.integer;
                advance();
                reduce(14, "p_unit -> p_unit POSITIVE_INT");
            } else if (token_.kind == TokenKind::Caret) {
                advance();
                if (token_.kind != TokenKind::PositiveInt &&
                    token_.kind != TokenKind::NegativeInt) {
                    return syntaxError();
                }
                const std::int32_t n = token_.integer;
                const bool positive = token_.kind == TokenKind::PositiveInt;
                advance();
                reduce(positive ? 16 : 17,
                       positive ? "ival -> POSITIVE_INT" : "ival -> NEGATIVE_INT");
                power ^= n;
                reduce(15, "p_unit -> p_unit '^' ival");
            } else {
                return power;
            }
        }
    }

    void advance() {
        token_ = lexer_.Next();
        if (!trace_) return;
        const std::string spelling = lexer_.text().substr(token_.begin, token_.end - token_.begin);
        std::fprintf(stderr, "VUnit parse: token %s \"%s\"", TokenKindName(token_.kind),
                     spelling.c_str());
        if (token_.kind == TokenKind::Unit) {
            std::fprintf(stderr, " factor %.17g exponents (%d, %d, %d)", token_.number,
                         static_cast<int>(token_.unit.m), static_cast<int>(token_.unit.kg),
                         static_cast<int>(token_.unit.s));
        }
        std::fprintf(stderr, "\n");
    }

    void reduce(int rule, const char* text) const {
        if (trace_) std::fprintf(stderr, "VUnit parse: reduce by rule %d: %s\n", rule, text);
    }

    std::optional<VUnit> syntaxError() const {
        if (trace_) {
            std::fprintf(stderr, "VUnit parse: syntax error at %s (offset %zu)\n",
                         TokenKindName(token_.kind), token_.begin);
        }
        return std::nullopt;
    }

    Lexer lexer_;
    bool trace_;
    Token token_;
};

}  // namespace

VUnit ParseUnitText(const wchar_t* text, bool trace) {
    VUnit result;
    if (!text) {
        result.seterr();
        return result;
    }
    Parser parser(text, trace);
    std::optional<VUnit> parsed = parser.parseUnit();
    // Exponents that left their range make the intermediate result invalid, and so the text.
    if (!parsed || !parsed->is_valid()) {
        result.seterr();
        return result;
    }
    return *parsed;
}

}  // namespace quillon::munit::vunit_detail
