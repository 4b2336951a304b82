#include "quillon/data/query_text.h"

#include <cwctype>

namespace quillon::parser {

namespace {

constexpr wchar_t kWideLeftQuote = static_cast<wchar_t>(0xFF91);

bool IsBlankOrEnd(std::wstring_view text, std::size_t index) {
    return index >= text.size() || text[index] == L' ';
}

}  // namespace

wchar_t QuoteCloser(wchar_t c, bool withBrackets) {
    switch (c) {
        case L'[':
            return withBrackets ? L']' : 0;
        case L'\'':
            return L'\'';
        case L'"':
            return L'"';
        case kWideLeftQuote:
            return kWideLeftQuote;
        default:
            return 0;
    }
}

std::wstring LowerText(std::wstring_view text) {
    std::wstring out(text);
    for (wchar_t& c : out) c = static_cast<wchar_t>(std::towlower(static_cast<std::wint_t>(c)));
    return out;
}

std::wstring LowerOutsideQuotes(std::wstring_view text) {
    std::wstring out(text);
    wchar_t closer = 0;
    for (wchar_t& c : out) {
        if (closer != 0) {
            if (c == closer) closer = 0;
        } else if (wchar_t opened = QuoteCloser(c, false); opened != 0) {
            closer = opened;
        } else {
            c = static_cast<wchar_t>(std::towlower(static_cast<std::wint_t>(c)));
        }
    }
    return out;
}

namespace {

// One pass for one operator character. The output is built as we go, so the index of an
// occurrence in the current text is the output length, the character before it is the output's
// last one, and the character after it is still the input's next one.
std::wstring SpaceOneOperator(const std::wstring& in, wchar_t c) {
    std::wstring out;
    out.reserve(in.size() + in.size() / 4 + 2);
    wchar_t closer = 0;
    for (std::size_t i = 0; i < in.size(); ++i) {
        const wchar_t ch = in[i];
        if (closer != 0) {
            if (ch == closer) closer = 0;
            out += ch;
            continue;
        }
        if (wchar_t opened = QuoteCloser(ch, true); opened != 0) {
            closer = opened;
            out += ch;
            continue;
        }
        if (ch != c || out.size() < 2) {
            out += ch;
            continue;
        }
        const wchar_t p = out.back();
        const wchar_t n = in[i + 1];  // the string's terminator after the last character
        const bool pBlank = p == L' ';
        const bool nBlankOrEnd = IsBlankOrEnd(in, i + 1);
        bool before = false;
        bool after = false;
        if ((c == L'<' || c == L'>') && n == L'=') {
            before = !pBlank;
        } else if (c == L'=' && (p == L'<' || p == L'>')) {
            after = !nBlankOrEnd;
        } else if (c == L'=' && n == L'=') {
            before = !pBlank;
        } else if (c == L'=' && p == L'=') {
            after = !nBlankOrEnd;
        } else if (c == L'=') {
            after = !(n == L'=' || n == L'<' || n == L'>' || n == L'!' || nBlankOrEnd);
            before = !(p == L'=' || p == L'<' || p == L'>' || p == L'!' || pBlank);
        } else if (c == L'<' && n == L'>') {
            before = !pBlank;
        } else if (c == L'>' && p == L'<') {
            after = !nBlankOrEnd;
        } else {
            after = !nBlankOrEnd;
            before = !pBlank;
        }
        if (before) out += L' ';
        out += ch;
        if (after) out += L' ';
    }
    return out;
}

}  // namespace

std::wstring SpaceOperators(std::wstring_view text) {
    std::wstring out(text);
    for (wchar_t c : {L'*', L')', L'(', L'<', L'>', L'='}) out = SpaceOneOperator(out, c);
    return out;
}

std::wstring RemoveBrackets(std::wstring_view name) {
    if (!name.empty() && name.back() == L']') name.remove_suffix(1);
    if (!name.empty() && name.front() == L'[') name.remove_prefix(1);
    return std::wstring(name);
}

}  // namespace quillon::parser
