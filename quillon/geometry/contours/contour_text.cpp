#include "quillon/geometry/contours/contour_text.h"

#include <cmath>
#include <memory>

#include "quillon/platform/text.h"

namespace quillon {

namespace {

const char* TokenErrorText(int code) {
    switch (code) {
        case TokenReader::EndOfText:
            return "token requested at the end of the text";
        case TokenReader::OnlyWhiteSpace:
            return "only white space remains";
        case TokenReader::UnclosedString:
            return "string without closing double quote";
        case TokenReader::UnendedRun:
            return "keyword or number runs to the end of the text";
        case TokenReader::BraceExpected:
            return "brace expected";
        case TokenReader::OpeningBraceExpected:
            return "\"(\" expected";
        case TokenReader::ClosingBraceExpected:
            return "\")\" expected";
        case TokenReader::KeywordExpected:
            return "keyword expected";
        case TokenReader::TooManyClosing:
            return "more closing than opening braces";
        case TokenReader::StringExpected:
            return "string expected";
        default:
            return "contour text error";
    }
}

std::string Describe(const ContourTextError& e) {
    const char* table = e.origin == ContourTextError::Origin::token  ? "token"
                        : e.origin == ContourTextError::Origin::edge ? "edge"
                                                                     : "contour";
    return platform::FormatC("%s error %d", table, e.code);
}

// Appends "(" now and ")" when the scope ends, so the brackets of a contour always pair up.
class BracketGuard {
public:
    explicit BracketGuard(std::wstring& text) : out(text) { out += L'('; }
    ~BracketGuard() {
        try {
            out += L')';
        } catch (...) {  // out of memory while unwinding: the text is lost anyway
        }
    }
    BracketGuard(const BracketGuard&) = delete;
    BracketGuard& operator=(const BracketGuard&) = delete;

private:
    std::wstring& out;
};

}  // namespace

ContourTextError::ContourTextError(Origin o, int c, int ln, std::size_t p, const std::string& what)
    : std::runtime_error(what), origin(o), code(c), line(ln), position(p) {}

// ---- TokenReader
// ---------------------------------------------------------------------------------

TokenReader::TokenReader(std::wstring input) : text(std::move(input)) {}

void TokenReader::Raise(ContourTextError::Origin origin, int code, const std::string& what) {
    error = code;
    errorOrigin = origin;
    throw ContourTextError(
        origin, code, line, pos,
        platform::FormatC("%s (line %d, position %zu)", what.c_str(), line + 1, pos));
}

void TokenReader::RaiseToken(ErrorTypes code) {
    Raise(ContourTextError::Origin::token, code, TokenErrorText(code));
}

TokenReader::TokenType TokenReader::ReadToken() {
    const std::size_t n = text.size();
    if (pos >= n) RaiseToken(EndOfText);
    while (pos < n && platform::IsAsciiSpace(text[pos])) {
        if (text[pos] == L'\n') ++line;
        ++pos;
    }
    if (pos >= n) RaiseToken(OnlyWhiteSpace);

    const wchar_t c = text[pos];
    if (c == L'"') {
        std::size_t i = pos + 1;
        while (i < n && text[i] != L'"') i += (text[i] == L'\\') ? 2 : 1;
        if (i >= n) RaiseToken(UnclosedString);
        token.assign(text, pos + 1, i - pos - 1);
        pos = i + 1;
        return type = String;
    }
    if (c == L'(' || c == L')') {
        token.assign(1, c);
        ++pos;
        if (c == L'(') {
            ++openBraces;
            return type = OpeningBrace;
        }
        --openBraces;
        return type = ClosingBrace;
    }
    std::size_t i = pos;
    while (i < n && !platform::IsAsciiSpace(text[i]) && text[i] != L'(' && text[i] != L')') ++i;
    if (i >= n) RaiseToken(UnendedRun);
    token.assign(text, pos, i - pos);
    pos = i;
    if (platform::IsAsciiAlpha(c)) {
        for (wchar_t& ch : token) ch = platform::ToAsciiUpper(ch);
        return type = Keyword;
    }
    return type = Number;
}

bool TokenReader::ExpectBrace() {
    const TokenType t = ReadToken();
    if (t == OpeningBrace) return true;
    if (t == ClosingBrace) return false;
    RaiseToken(BraceExpected);
}

void TokenReader::ExpectOpeningBrace() {
    if (ReadToken() != OpeningBrace) RaiseToken(OpeningBraceExpected);
}

void TokenReader::ExpectClosingBrace() {
    if (ReadToken() != ClosingBrace) RaiseToken(ClosingBraceExpected);
}

void TokenReader::ExpectKeyword() {
    if (ReadToken() != Keyword) RaiseToken(KeywordExpected);
}

void TokenReader::ExpectString() {
    if (ReadToken() != String) RaiseToken(StringExpected);
}

std::wstring TokenReader::Skip2Closing() {
    const std::size_t start = pos;
    int depth = 0;
    for (;;) {
        const TokenType t = ReadToken();
        if (t == OpeningBrace) {
            ++depth;
        } else if (t == ClosingBrace) {
            if (depth > 0) {
                --depth;
                continue;
            }
            if (openBraces < 0) RaiseToken(TooManyClosing);
            return text.substr(start, pos - 1 - start);
        }
    }
}

// ---- LAContourReader
// -----------------------------------------------------------------------------

double LAContourReader::readDouble() {
    if (ReadToken() != Number)
        Raise(ContourTextError::Origin::edge, NumberExpected, "number expected");
    return platform::_wtof(GetString());
}

Point2 LAContourReader::readPoint2() {
    const double x = readDouble();
    const double y = readDouble();
    return Point2(x, y);
}

bool LAContourReader::readLAEdge(LAEdge& edge) {
    if (!ExpectBrace()) return false;
    ExpectKeyword();
    if (GetString() == L"L") {
        edge = LAEdge(readPoint2());
    } else if (GetString() == L"A") {
        const Point2 centre = readPoint2();
        const double r = readDouble();
        const double a0 = readDouble();
        const double sweep = readDouble();
        // The start comes back from the stored (rounded) radius and angle.
        const Point2 start = centre + Vector2(r * std::cos(a0), r * std::sin(a0));
        edge = LAEdge(start, centre, sweep);
    } else {
        Raise(ContourTextError::Origin::edge, UnknownEdge, "edge keyword other than A or L");
    }
    ExpectClosingBrace();
    return true;
}

void LAContourReader::readContour() {
    ExpectOpeningBrace();
    contour.clear();
    LAEdge edge;
    while (readLAEdge(edge)) contour.push_back(edge);
}

bool LAContourReader::read() {
    try {
        readContour();
        return true;
    } catch (const ContourTextError&) {
        return false;
    }
}

// ---- ProClosedContourReader
// ----------------------------------------------------------------------

ProClosedContourReader::ProClosedContourReader(std::wstring input, ProContourFactory* nodeFactory)
    : LAContourReader(std::move(input)),
      factory(nodeFactory != nullptr ? nodeFactory : &defaultFactory) {}

void ProClosedContourReader::ReadExtension(ProContour&, const std::wstring&) {}

void ProClosedContourReader::RaiseContour(ErrorTypes code, const std::string& what) {
    Raise(ContourTextError::Origin::contour, code, what);
}

ProClosedContour* ProClosedContourReader::read(bool& end) { return readClosed(end, 0); }

ProClosedContour* ProClosedContourReader::readClosed(bool& end, int depth) {
    end = false;
    if (!ExpectBrace()) {
        end = true;
        return nullptr;
    }
    ExpectKeyword();
    std::unique_ptr<ProClosedContour> node;
    ProSolidContour* solid = nullptr;
    if (GetString() == L"S") {
        if (depth >= kMaxNesting) RaiseContour(WrongChild, "solids nested too deeply");
        solid = Factory().CreateSolidContour();
        node.reset(solid);
    } else if (GetString() == L"H") {
        node.reset(Factory().CreateEmptyContour());
    } else {
        RaiseContour(UnknownContour, "contour keyword other than S or H");
    }
    if (!node) RaiseContour(AttachFailed, "the factory made no contour");

    if (!LAContourReader::read()) {
        const ContourTextError cause(GetErrorOrigin(), GetError(), GetLine(), GetPosition(), "");
        RaiseContour(BadEdgeList, "unreadable edge list: " + Describe(cause));
    }
    node->SetLAContour(contour);

    if (solid != nullptr) {
        const TokenType t = ReadToken();
        if (t == Number) {
            solid->attribute = platform::_wtoi(GetString());
            ExpectOpeningBrace();
        } else if (t != OpeningBrace) {
            RaiseToken(OpeningBraceExpected);
        }
        for (;;) {
            bool listEnd = false;
            std::unique_ptr<ProClosedContour> child(readClosed(listEnd, depth + 1));
            if (listEnd) break;
            if (solid->Attach(child.get()) == nullptr)
                RaiseContour(AttachFailed, "a hole could not be attached");
            child.release();  // owned by the solid now
        }
    }
    const std::wstring extension = Skip2Closing();
    ReadExtension(*node, extension);
    return node.release();
}

// ---- ProComplexContourReader
// ---------------------------------------------------------------------

ProComplexContour* ProComplexContourReader::read() {
    std::unique_ptr<ProComplexContour> complex(Factory().CreateComplexContour());
    if (!complex) RaiseContour(AttachFailed, "the factory made no complex contour");
    ExpectOpeningBrace();
    ExpectOpeningBrace();
    for (;;) {
        bool listEnd = false;
        std::unique_ptr<ProClosedContour> child(readClosed(listEnd, 0));
        if (listEnd) break;
        auto* solid = dynamic_cast<ProSolidContour*>(child.get());
        if (solid == nullptr) RaiseContour(WrongChild, "a hole where a solid was expected");
        if (complex->Attach(solid) == nullptr)
            RaiseContour(AttachFailed, "a solid could not be attached");
        child.release();  // owned by the complex contour now
    }
    const std::wstring extension = Skip2Closing();
    ReadExtension(*complex, extension);
    return complex.release();
}

ProComplexContour* ProComplexContourAndUnitReader::read(std::wstring& unit) {
    ExpectString();
    unit = GetString();
    return ProComplexContourReader::read();
}

// ---- Writers
// -------------------------------------------------------------------------------------

void LAContourWriter::appendEdge(std::wstring& out, const LAEdge& edge) const {
    if (fullPrecision) {
        // Adding 0.0 writes a negative zero as 0: the same double for the reader.
        const auto number = [&out](double v) { out += platform::FormatW(L" %.17g", v + 0.0); };
        if (edge.type == 1) {
            const Vector2 radius = edge.start - edge.centre;
            out += L"(A";
            for (double v :
                 {edge.centre.x, edge.centre.y, radius.length(), radius.angle(), edge.angle})
                number(v);
        } else {
            out += L"(L";
            number(edge.start.x);
            number(edge.start.y);
        }
        out += L')';
        return;
    }
    if (edge.type == 1) {
        const Vector2 radius = edge.start - edge.centre;
        out += platform::FormatW(L"(%ls %lf %lf %lf %lf %lf)", L"A", edge.centre.x, edge.centre.y,
                                 radius.length(), radius.angle(), edge.angle);
    } else {
        out += platform::FormatW(L"(%ls %lf %lf)", L"L", edge.start.x, edge.start.y);
    }
}

void LAContourWriter::appendLAContour(std::wstring& out, const LAContour& contour) const {
    BracketGuard brackets(out);
    for (const LAEdge& edge : contour) appendEdge(out, edge);
}

std::wstring LAContourWriter::write(const LAContour& contour) {
    std::wstring out;
    appendLAContour(out, contour);
    return out;
}

std::wstring ProClosedContourWriter::WriteExtension(const ProContour&) { return std::wstring(); }

void ProClosedContourWriter::appendClosed(std::wstring& out, const ProClosedContour& contour) {
    const auto* solid = dynamic_cast<const ProSolidContour*>(&contour);
    out += solid != nullptr ? L"(S" : L"(H";
    appendLAContour(out, contour);
    if (solid != nullptr) {
        out += platform::FormatW(L" %d ", static_cast<int>(solid->attribute));
        out += L'(';
        const unsigned long n = solid->ChildrenCount();
        for (unsigned long i = 0; i < n; ++i) appendClosed(out, *solid->ClosedChild(i));
        out += L')';
    }
    out += WriteExtension(contour);
    out += L')';
}

std::wstring ProClosedContourWriter::write(const ProClosedContour& contour) {
    std::wstring out;
    appendClosed(out, contour);
    return out;
}

void ProComplexContourWriter::appendComplex(std::wstring& out, const ProComplexContour& contour) {
    out += L"((";
    const unsigned long n = contour.ChildrenCount();
    for (unsigned long i = 0; i < n; ++i) appendClosed(out, *contour.SolidChild(i));
    out += L')';
    out += WriteExtension(contour);
    out += L')';
}

std::wstring ProComplexContourWriter::write(const ProComplexContour& contour) {
    std::wstring out;
    appendComplex(out, contour);
    return out;
}

std::wstring ProComplexContourAndUnitWriter::write(const ProComplexContour& contour) {
    std::wstring out;
    out += L'"';
    out += unit;
    out += L'"';
    appendComplex(out, contour);
    return out;
}

}  // namespace quillon
