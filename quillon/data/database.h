// In-memory tables of texts and the queries over them.
//
// A DbDatabase holds named tables (DbTableDescr), each with field names and rows of text values.
// Query() analyses an SQL-like text (query_analysis.h) and runs it: the WHERE clause is evaluated
// row by row on the first table of the FROM list (further tables are logged and ignored: joins are
// not supported), the selected fields are projected ("*" gives all), DISTINCT keeps the first of
// equal rows, ORDER BY sorts stably (descending when asked) and TOP n keeps the first n rows.
//
// Conventions:
// - Table and field names are compared case-insensitively, because the analysis lower-cases the
//   query outside quotes. A name may carry brackets: "[Length]" names the field "length".
// - Values are texts. A value reads as a number when the whole text is a finite decimal number
//   ("12", "-0.5", "1e3"; no blanks, no hex). A comparison is numeric when both sides read as
//   numbers and ordinal (case-sensitive, by character code) otherwise. ORDER BY sorts numbers
//   before texts, so that rows of mixed kinds still have one consistent order.
// - In a condition, a quoted value ('Q', "Q" or U+FF91-quoted) is a text literal, keeping its case
//   (a doubled quote inside stands for one); an unquoted value that names a field of the table
//   compares with that field in the same row; any other unquoted value is a literal (lower-cased by
//   the analysis).
// - Filters made by AddFilter are owned by their table until released; Query releases its own.
// - Every finding goes to the error log (GetErrorLog), which grows until ClearErrorLog.
#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "quillon/data/clause.h"
#include "quillon/data/query_params.h"

namespace quillon {

// A clause term comparing a field with a literal or with another field of the same row. Its
// truth value is set per row by SetRow.
class DbFilter : public clv::expr {
public:
    enum class Operator { equal, notEqual, less, greater, lessEqual, greaterEqual };

    // Compares field 'field' with the literal text 'literal'.
    DbFilter(int field, Operator op, std::wstring literal);
    // Compares field 'field' with field 'otherField' of the same row.
    DbFilter(int field, Operator op, int otherField);

    // "=", "<>", "!=", "<", ">", "<=", ">="; false for any other text.
    static bool ParseOperator(const std::wstring& text, Operator& op);

    // The comparison on one row (a missing value counts as the empty text).
    bool Test(const std::vector<std::wstring>& row) const;
    // Sets the term's truth value from one row.
    void SetRow(const std::vector<std::wstring>& row);

    int GetField() const { return field_; }
    Operator GetOperator() const { return op_; }
    int GetOtherField() const { return otherField_; }  // -1 when comparing with a literal
    const std::wstring& GetLiteral() const { return literal_; }

private:
    int field_;
    Operator op_;
    int otherField_ = -1;
    std::wstring literal_;
};

// A table: its name, field names, rows, and the filters made on it.
class DbTableDescr {
public:
    DbTableDescr(std::wstring name, std::vector<std::wstring> fieldNames);
    DbTableDescr(const DbTableDescr&) = delete;
    DbTableDescr& operator=(const DbTableDescr&) = delete;
    virtual ~DbTableDescr();

    const std::wstring& GetName() const { return name_; }
    const std::vector<std::wstring>& GetFieldNames() const { return fields_; }
    const std::vector<std::vector<std::wstring>>& GetRows() const { return rows_; }

    // Index of the field (case-insensitive, brackets removed), or -1.
    int GetFieldIndex(const std::wstring& name) const;
    bool IsField(const std::wstring& name) const { return GetFieldIndex(name) >= 0; }

    // Appends a row; false (nothing added) when the number of values is not the number of fields.
    bool AddRow(std::vector<std::wstring> values);

    // Creates a filter on this table, owned by the table until released. Null for an unknown field,
    // an unknown operator, or a value with an unclosed quote.
    virtual DbFilter* AddFilter(const std::wstring& field, const std::wstring& op,
                                const std::wstring& value);
    // Destroys the listed filters that this table owns; others are left alone.
    void ReleaseFilters(const std::vector<DbFilter*>& filters);
    std::size_t GetFilterCount() const { return filters_.size(); }

private:
    std::wstring name_;
    std::vector<std::wstring> fields_;
    std::unordered_map<std::wstring, int> fieldIndex_;  // lower-case name -> first index
    std::vector<std::vector<std::wstring>> rows_;
    std::vector<std::unique_ptr<DbFilter>> filters_;
};

// The outcome of a query: ok false (and no rows) when the query could not be run.
struct DbQueryResult {
    bool ok = false;
    std::vector<std::wstring> fields;
    std::vector<std::vector<std::wstring>> rows;
};

class DbDatabase {
public:
    DbDatabase() = default;
    DbDatabase(const DbDatabase&) = delete;
    DbDatabase& operator=(const DbDatabase&) = delete;
    ~DbDatabase();

    // Adds an empty table; null (nothing added) when a table of that name (in any case) exists.
    DbTableDescr* AddTable(const std::wstring& name, std::vector<std::wstring> fieldNames);
    // Appends a row; false when the table is unknown or the number of values does not fit.
    bool AddRow(const std::wstring& table, std::vector<std::wstring> values);
    // The table of that name (case-insensitive, brackets removed), or null.
    DbTableDescr* GetTableDescr(const std::wstring& name) const;

    const std::vector<std::wstring>& GetErrorLog() const { return log_; }
    void ClearErrorLog() { log_.clear(); }

    // Takes the query apart into 'params' and logs the findings; true when the query was
    // understood and all names were found. A null 'params' analyses into a scratch record.
    bool AnalyzeSQL(const std::wstring& query, parser::QueryAnalysisParams* params);

    // Analyses and runs the query.
    DbQueryResult Query(const std::wstring& sql);

private:
    void Log(std::wstring line) { log_.push_back(std::move(line)); }

    std::vector<std::unique_ptr<DbTableDescr>> tables_;
    std::unordered_map<std::wstring, std::size_t> tableIndex_;  // lower-case name -> index
    std::vector<std::wstring> log_;
};

}  // namespace quillon
