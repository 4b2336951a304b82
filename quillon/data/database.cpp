#include "quillon/data/database.h"

#include <algorithm>
#include <optional>
#include <set>
#include <unordered_set>
#include <utility>

#include "quillon/data/db_value.h"
#include "quillon/data/query_text.h"

namespace quillon {

// ---------------------------------------------------------------------------------------------
// DbFilter

DbFilter::DbFilter(int field, Operator op, std::wstring literal)
    : field_(field), op_(op), literal_(std::move(literal)) {}

DbFilter::DbFilter(int field, Operator op, int otherField)
    : field_(field), op_(op), otherField_(otherField) {}

bool DbFilter::ParseOperator(const std::wstring& text, Operator& op) {
    if (text == L"=") {
        op = Operator::equal;
    } else if (text == L"<>" || text == L"!=") {
        op = Operator::notEqual;
    } else if (text == L"<") {
        op = Operator::less;
    } else if (text == L">") {
        op = Operator::greater;
    } else if (text == L"<=") {
        op = Operator::lessEqual;
    } else if (text == L">=") {
        op = Operator::greaterEqual;
    } else {
        return false;
    }
    return true;
}

bool DbFilter::Test(const std::vector<std::wstring>& row) const {
    auto at = [&](int index) -> std::wstring_view {
        if (index < 0 || static_cast<std::size_t>(index) >= row.size()) return {};
        return row[static_cast<std::size_t>(index)];
    };
    const std::wstring_view right =
        otherField_ >= 0 ? at(otherField_) : std::wstring_view(literal_);
    const int c = DbCompareValues(at(field_), right);
    switch (op_) {
        case Operator::equal:
            return c == 0;
        case Operator::notEqual:
            return c != 0;
        case Operator::less:
            return c < 0;
        case Operator::greater:
            return c > 0;
        case Operator::lessEqual:
            return c <= 0;
        case Operator::greaterEqual:
            return c >= 0;
    }
    return false;
}

void DbFilter::SetRow(const std::vector<std::wstring>& row) {
    static_cast<clv::expr&>(*this) = Test(row);
}

// ---------------------------------------------------------------------------------------------
// DbTableDescr

DbTableDescr::DbTableDescr(std::wstring name, std::vector<std::wstring> fieldNames)
    : name_(std::move(name)), fields_(std::move(fieldNames)) {
    for (std::size_t i = 0; i < fields_.size(); ++i) {
        fieldIndex_.emplace(parser::LowerText(parser::RemoveBrackets(fields_[i])),
                            static_cast<int>(i));
    }
}

DbTableDescr::~DbTableDescr() = default;

int DbTableDescr::GetFieldIndex(const std::wstring& name) const {
    const auto it = fieldIndex_.find(parser::LowerText(parser::RemoveBrackets(name)));
    return it != fieldIndex_.end() ? it->second : -1;
}

bool DbTableDescr::AddRow(std::vector<std::wstring> values) {
    if (values.size() != fields_.size()) return false;
    rows_.push_back(std::move(values));
    return true;
}

namespace {

// The text of a quoted literal, or nothing when 'value' is not quoted. 'unclosed' reports a value
// that opens a quote without closing it at its end.
std::optional<std::wstring> QuotedLiteral(const std::wstring& value, bool& unclosed) {
    unclosed = false;
    if (value.empty()) return std::nullopt;
    const wchar_t open = value.front();
    const wchar_t close = parser::QuoteCloser(open, false);
    if (close == 0) return std::nullopt;
    if (value.size() < 2 || value.back() != close) {
        unclosed = true;
        return std::nullopt;
    }
    std::wstring text;
    const std::wstring_view inner(value.data() + 1, value.size() - 2);
    for (std::size_t i = 0; i < inner.size(); ++i) {
        text += inner[i];
        // A doubled quote stands for one.
        if (inner[i] == close && i + 1 < inner.size() && inner[i + 1] == close) ++i;
    }
    return text;
}

}  // namespace

DbFilter* DbTableDescr::AddFilter(const std::wstring& field, const std::wstring& op,
                                  const std::wstring& value) {
    const int index = GetFieldIndex(field);
    DbFilter::Operator parsed{};
    if (index < 0 || !DbFilter::ParseOperator(op, parsed)) return nullptr;
    bool unclosed = false;
    std::optional<std::wstring> literal = QuotedLiteral(value, unclosed);
    if (unclosed) return nullptr;
    std::unique_ptr<DbFilter> filter;
    if (literal) {
        filter = std::make_unique<DbFilter>(index, parsed, std::move(*literal));
    } else if (const int other = GetFieldIndex(value); other >= 0) {
        filter = std::make_unique<DbFilter>(index, parsed, other);
    } else {
        filter = std::make_unique<DbFilter>(index, parsed, value);
    }
    filters_.push_back(std::move(filter));
    return filters_.back().get();
}

void DbTableDescr::ReleaseFilters(const std::vector<DbFilter*>& filters) {
    if (filters.empty()) return;
    const std::unordered_set<const DbFilter*> doomed(filters.begin(), filters.end());
    std::erase_if(filters_,
                  [&](const std::unique_ptr<DbFilter>& f) { return doomed.count(f.get()); });
}

// ---------------------------------------------------------------------------------------------
// DbDatabase

DbDatabase::~DbDatabase() = default;

DbTableDescr* DbDatabase::AddTable(const std::wstring& name, std::vector<std::wstring> fieldNames) {
    const std::wstring key = parser::LowerText(parser::RemoveBrackets(name));
    if (tableIndex_.count(key) != 0) return nullptr;
    tables_.push_back(std::make_unique<DbTableDescr>(name, std::move(fieldNames)));
    tableIndex_.emplace(key, tables_.size() - 1);
    return tables_.back().get();
}

bool DbDatabase::AddRow(const std::wstring& table, std::vector<std::wstring> values) {
    DbTableDescr* descr = GetTableDescr(table);
    return descr != nullptr && descr->AddRow(std::move(values));
}

DbTableDescr* DbDatabase::GetTableDescr(const std::wstring& name) const {
    const auto it = tableIndex_.find(parser::LowerText(parser::RemoveBrackets(name)));
    return it != tableIndex_.end() ? tables_[it->second].get() : nullptr;
}

namespace {

// ORDER BY keys of one row: numbers sort before texts, numbers by value, texts by character.
struct SortKey {
    bool isNumber = false;
    double number = 0.0;
    std::wstring_view text;
};

int CompareKeys(const SortKey& a, const SortKey& b) {
    if (a.isNumber != b.isNumber) return a.isNumber ? -1 : 1;
    if (a.isNumber) return a.number < b.number ? -1 : (b.number < a.number ? 1 : 0);
    const int c = a.text.compare(b.text);
    return c < 0 ? -1 : (c > 0 ? 1 : 0);
}

}  // namespace

DbQueryResult DbDatabase::Query(const std::wstring& sql) {
    DbQueryResult result;
    clv::clause where;
    parser::QueryAnalysisParams params;
    params.clause = &where;
    const bool understood = AnalyzeSQL(sql, &params);

    // The filters of this query belong to the first table; they go when the query ends.
    DbTableDescr* table = params.tables.empty() ? nullptr : GetTableDescr(params.tables.front());
    std::vector<DbFilter*> filters;
    for (clv::element* item : where.elements()) {
        if (auto* filter = dynamic_cast<DbFilter*>(item)) filters.push_back(filter);
    }
    struct Release {
        DbTableDescr* table;
        const std::vector<DbFilter*>& filters;
        ~Release() {
            if (table != nullptr) table->ReleaseFilters(filters);
        }
    } release{table, filters};

    auto fail = [&]() {
        Log(L"SQL Query - failed");
        return DbQueryResult{};
    };
    if (!understood || table == nullptr) return fail();
    if (params.tables.size() > 1) {
        Log(L"SQL Query - joins are not supported, only table '" + params.tables.front() +
            L"' is used");
    }
    if (!where.IsWellFormed()) {
        Log(L"SQL Query - ill-formed 'WHERE' statement");
        return fail();
    }

    // Projection.
    std::vector<int> columns;
    if (params.selectFields.size() == 1 && params.selectFields.front() == L"*") {
        for (std::size_t i = 0; i < table->GetFieldNames().size(); ++i) {
            columns.push_back(static_cast<int>(i));
        }
    } else {
        for (const std::wstring& field : params.selectFields) {
            const int index = table->GetFieldIndex(field);
            if (index < 0) {  // the analysis checks every table; kept as a guard
                Log(L"SQL Query - no '" + field + L"' field found in '" + table->GetName() +
                    L"' table");
                return fail();
            }
            columns.push_back(index);
        }
    }
    std::vector<int> orderColumns;
    bool orderKnown = true;
    for (const std::wstring& field : params.orderFields) {
        const int index = table->GetFieldIndex(field);
        if (index < 0) {
            Log(L"SQL Query - no order field '" + field + L"' found in '" + table->GetName() +
                L"' table");
            orderKnown = false;
        }
        orderColumns.push_back(index);
    }
    if (!orderKnown) return fail();

    // Selection, row by row.
    const auto& rows = table->GetRows();
    std::vector<std::size_t> selected;
    for (std::size_t r = 0; r < rows.size(); ++r) {
        for (DbFilter* filter : filters) filter->SetRow(rows[r]);
        if (where.evaluate()) selected.push_back(r);
    }

    // Order: stable, keys read once per row.
    if (!orderColumns.empty()) {
        const std::size_t width = orderColumns.size();
        std::vector<SortKey> keys(rows.size() * width);
        for (std::size_t r : selected) {
            for (std::size_t k = 0; k < width; ++k) {
                SortKey& key = keys[r * width + k];
                key.text = rows[r][static_cast<std::size_t>(orderColumns[k])];
                key.isNumber = DbReadNumber(key.text, key.number);
            }
        }
        const bool descending = params.descending;
        std::stable_sort(selected.begin(), selected.end(), [&](std::size_t a, std::size_t b) {
            for (std::size_t k = 0; k < width; ++k) {
                const int c = CompareKeys(keys[a * width + k], keys[b * width + k]);
                if (c < 0) return !descending;
                if (c > 0) return descending;
            }
            return false;
        });
    }

    // Projection, DISTINCT (the first of equal rows stays), TOP.
    const std::size_t limit = params.top > 0 ? static_cast<std::size_t>(params.top) : rows.size();
    std::set<std::vector<std::wstring>> seen;
    for (std::size_t r : selected) {
        if (result.rows.size() >= limit) break;
        std::vector<std::wstring> out;
        out.reserve(columns.size());
        for (int c : columns) out.push_back(rows[r][static_cast<std::size_t>(c)]);
        if (params.distinct && !seen.insert(out).second) continue;
        result.rows.push_back(std::move(out));
    }
    for (int c : columns)
        result.fields.push_back(table->GetFieldNames()[static_cast<std::size_t>(c)]);
    result.ok = true;
    Log(L"SQL Query - ok, " + std::to_wstring(result.rows.size()) + L" rows");
    return result;
}

}  // namespace quillon
