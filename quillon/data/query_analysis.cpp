#include "quillon/data/query_analysis.h"

#include <climits>
#include <cwctype>

namespace quillon {

namespace {

using parser::QueryAnalysisParams;

// The C library's wide integer conversion: leading blanks, an optional sign, digits; 0 when there
// are none; clamped to the int range on overflow.
int LeadingInt(const std::wstring& text) {
    std::size_t i = 0;
    while (i < text.size() && std::iswspace(static_cast<std::wint_t>(text[i]))) ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == L'+' || text[i] == L'-')) negative = text[i++] == L'-';
    long long v = 0;
    for (; i < text.size() && text[i] >= L'0' && text[i] <= L'9'; ++i) {
        v = v * 10 + (text[i] - L'0');
        if (v > static_cast<long long>(INT_MAX) + 1) break;
    }
    if (negative) v = -v;
    if (v > INT_MAX) return INT_MAX;
    if (v < INT_MIN) return INT_MIN;
    return static_cast<int>(v);
}

std::wstring Join(const std::vector<std::wstring>& words) {
    std::wstring text;
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (i > 0) text += L' ';
        text += words[i];
    }
    return text;
}

}  // namespace

bool DbDatabase::AnalyzeSQL(const std::wstring& query, parser::QueryAnalysisParams* params) {
    QueryAnalysisParams scratch;
    QueryAnalysisParams& p = params != nullptr ? *params : scratch;
    bool failed = false;

    // Read as a C string would: up to the first NUL.
    const std::wstring_view raw(query.c_str());
    const std::wstring lowered = parser::LowerOutsideQuotes(raw);
    Log(L"SQL Analyze - query '" + lowered + L"'");
    const std::wstring text = parser::SpaceOperators(lowered);

    auto noTable = [&](const std::wstring& name) {
        Log(L"SQL Analyze - no table '" + name + L"' found");
        failed = true;
    };
    auto noTablesDefined = [&]() {
        Log(L"SQL Analyze - no tables defined, check 'FROM' statement");
        failed = true;
    };

    auto handleKeyword = [&](const std::wstring& word) -> bool {
        if (word == L"select") {
            p.state = QueryAnalysisParams::selectList;
        } else if (word == L"top") {
            p.savedState = p.state;
            p.state = QueryAnalysisParams::topNumber;
        } else if (word == L"distinct" && p.state == QueryAnalysisParams::selectList) {
            p.distinct = true;
        } else if (word == L"from") {
            p.state = QueryAnalysisParams::fromList;
        } else if (word == L"where") {
            p.state = QueryAnalysisParams::wherePart;
        } else if (word == L"order") {
            p.state = QueryAnalysisParams::afterOrder;
        } else if (word == L"by" && p.state == QueryAnalysisParams::afterOrder) {
            p.state = QueryAnalysisParams::orderList;
        } else {
            return false;
        }
        return true;
    };

    auto handleTable = [&](const std::wstring& word) {
        p.tables.push_back(parser::RemoveBrackets(word));
        if (p.tables.empty()) {  // cannot happen after the push; kept as the guard it always was
            noTablesDefined();
            return;
        }
        const DbTableDescr* table = GetTableDescr(p.tables.back());
        if (table == nullptr) {
            noTable(p.tables.back());
            return;
        }
        if (p.selectFields.size() == 1 && p.selectFields.front() == L"*") return;
        // Checked against the table just added; the message names the first table (kept).
        for (const std::wstring& field : p.selectFields) {
            if (!table->IsField(field)) {
                Log(L"SQL Analyze - no '" + field + L"' field found in '" + p.tables.front() +
                    L"' table");
                failed = true;
            }
        }
    };

    auto handleCondition = [&]() {
        const std::vector<std::wstring>& w = p.conditionWords;
        DbTableDescr* table = nullptr;
        if (p.tables.empty()) {
            noTablesDefined();
        } else {
            table = GetTableDescr(p.tables.front());
            if (table == nullptr) noTable(p.tables.front());
        }
        if (table != nullptr) {
            DbFilter* filter =
                table->AddFilter(parser::RemoveBrackets(w[0]), w[1], parser::RemoveBrackets(w[2]));
            if (filter != nullptr) {
                if (p.clause != nullptr) p.clause->expr(filter);
            } else {
                Log(L"SQL Analyze - invalid condition '" + w[0] + L" " + w[1] + L" " + w[2] + L"'");
                failed = true;
            }
        }
        p.conditions.push_back(Join(w));
        p.conditionWords.clear();
    };

    auto handleWhereWord = [&](const std::wstring& word) {
        clv::clause* c = p.clause;
        if (word == L"and") {
            if (c != nullptr) c->and_();
        } else if (word == L"or") {
            if (c != nullptr) c->or_();
        } else if (word == L"not") {
            if (c != nullptr) c->not_();
        } else if (word == L"(") {
            if (c != nullptr) c->leftBracket();
        } else if (word == L")") {
            if (c != nullptr) c->rightBracket();
        } else {
            // The words are emptied at three, so a fresh record never holds three here.
            const bool room = p.conditionWords.size() < 3;  // mutate: off (see above)
            if (room) p.conditionWords.push_back(word);
            if (p.conditionWords.size() == 3) handleCondition();
        }
    };

    auto handleWord = [&](const std::wstring& word) {
        if (word.empty()) return;  // two delimiters in a row
        if (!handleKeyword(word)) {
            switch (p.state) {
                case QueryAnalysisParams::selectList:
                    p.selectFields.push_back(word);
                    break;
                case QueryAnalysisParams::topNumber:
                    p.top = LeadingInt(word);
                    p.state = p.savedState;
                    break;
                case QueryAnalysisParams::fromList:
                    handleTable(word);
                    break;
                case QueryAnalysisParams::wherePart:
                    handleWhereWord(word);
                    break;
                case QueryAnalysisParams::orderList:
                    if (word == L"desc") {
                        p.descending = true;
                    } else if (word != L"asc") {
                        p.orderFields.push_back(parser::RemoveBrackets(word));
                    }
                    break;
                default:  // before "select", after "order": not recorded
                    break;
            }
        }
        p.tokens.push_back(word);
    };

    // The scan: the end of the text closes the last word, also inside an unclosed quote.
    std::wstring word;
    wchar_t closer = 0;
    for (const wchar_t ch : text) {
        if (closer == 0) {
            if (const wchar_t opened = parser::QuoteCloser(ch, true); opened != 0) {
                closer = opened;
                word += ch;
                continue;
            }
        } else {
            if (ch == closer) closer = 0;
            word += ch;
            continue;
        }
        if (ch == L' ' || ch == L',' || ch == L';') {
            handleWord(word);
            word.clear();
        } else {
            word += ch;
        }
    }
    handleWord(word);

    if (!p.conditionWords.empty()) {
        Log(L"SQL Analyze - invalid condintion '" + Join(p.conditionWords) + L"'");
        failed = true;
    }
    if (p.selectFields.empty() || p.tables.empty()) {
        Log(L"SQL Analyze - check 'SELECT' and/or 'FROM' statement");
        failed = true;
    }
    if (failed) {
        Log(L"SQL Analyze - failed");
        return false;
    }
    Log(L"SQL Analyze - ok");
    return true;
}

}  // namespace quillon
