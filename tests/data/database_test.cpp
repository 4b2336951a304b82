#include "quillon/data/database.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "quillon/data/db_value.h"

namespace {

using namespace quillon;
using Lines = std::vector<std::wstring>;
using Rows = std::vector<std::vector<std::wstring>>;

class Beams : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_NE(db.AddTable(L"Beams", {L"name", L"profile", L"length", L"weight", L"grade"}),
                  nullptr);
        const Rows rows = {{L"B1", L"IPE200", L"6", L"22.4", L"S235"},
                           {L"B2", L"IPE300", L"10", L"42.2", L"S355"},
                           {L"B3", L"HEA200", L"4.5", L"42.3", L"S355"},
                           {L"B4", L"IPE200", L"9", L"22.4", L"S235"},
                           {L"B5", L"HEB100", L"12", L"10.4", L"S275"},
                           {L"B6", L"IPE300", L"10", L"42.2", L"s355"}};
        for (const auto& row : rows) ASSERT_TRUE(db.AddRow(L"beams", row));
        ASSERT_NE(db.AddTable(L"t", {L"a"}), nullptr);
    }
    // The names of the beams that "select name from beams <tail>" gives, each followed by a blank.
    std::wstring Names(const std::wstring& tail) {
        const std::wstring sql = L"select name from beams " + tail;
        const DbQueryResult r = db.Query(sql);
        EXPECT_TRUE(r.ok) << sql << "\n" << db.GetErrorLog().back();
        std::wstring names;
        for (const auto& row : r.rows) names += (row.empty() ? L"" : row.front()) + L" ";
        EXPECT_EQ(db.GetTableDescr(L"beams")->GetFilterCount(), 0u) << "filters released";
        return names;
    }
    // The line that a query logs before its verdict; the query must fail, or give one row when ok.
    std::wstring Note(const std::wstring& sql, bool ok = false) {
        const DbQueryResult r = db.Query(sql);
        EXPECT_EQ(r.ok, ok) << sql;
        EXPECT_EQ(r.rows.size(), ok ? 1u : 0u) << sql;
        return db.GetErrorLog()[db.GetErrorLog().size() - 2];
    }
    DbDatabase db;
};

TEST_F(Beams, CatalogueRules) {
    EXPECT_EQ(db.AddTable(L"BEAMS", {L"x"}), nullptr);  // names are case-insensitive
    EXPECT_FALSE(db.AddRow(L"beams", {L"too", L"short"}) || db.AddRow(L"nope", {L"x"}));
    const DbTableDescr* t = db.GetTableDescr(L"[BeAmS]");
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(t->GetName(), L"Beams");
    EXPECT_TRUE(t->IsField(L"[Length]") && !t->IsField(L"len"));
    EXPECT_EQ(db.GetTableDescr(L"beam"), nullptr);

    DbTableDescr* beams = db.GetTableDescr(L"beams");
    for (const wchar_t* op : {L"=", L"<>", L"!=", L"<", L">", L"<=", L">="})
        EXPECT_NE(beams->AddFilter(L"length", op, L"5"), nullptr) << op;
    for (const Lines& bad : {Lines{L"length", L"==", L"5"}, Lines{L"length", L"like", L"5"},
                             Lines{L"span", L"=", L"5"}, Lines{L"name", L"=", L"'open"}})
        EXPECT_EQ(beams->AddFilter(bad[0], bad[1], bad[2]), nullptr) << bad[1];
    EXPECT_EQ(beams->GetFilterCount(), 7u);
    DbFilter* f = beams->AddFilter(L"name", L"=", L"'it''s'");
    ASSERT_NE(f, nullptr);
    EXPECT_EQ(f->GetLiteral(), L"it's");
    DbFilter* g = beams->AddFilter(L"length", L"<", L"[weight]");
    ASSERT_NE(g, nullptr);
    EXPECT_EQ(g->GetOtherField(), 3);
    beams->ReleaseFilters({f, g});
    EXPECT_EQ(beams->GetFilterCount(), 7u);
}

TEST(DbValues, NumbersAndComparison) {
    double v = 0;
    for (const wchar_t* text : {L"0", L"12", L"-3", L"+4.5", L".5", L"5.", L"1e3", L"-2.5E-2"})
        EXPECT_TRUE(DbReadNumber(text, v)) << text;
    EXPECT_DOUBLE_EQ(v, -0.025);
    EXPECT_TRUE(DbReadNumber(std::wstring_view(L"5.5").substr(0, 1), v));  // nothing past the view
    EXPECT_EQ(v, 5.0);
    for (const wchar_t* text : {L"", L"-", L".", L"1e", L"1 ", L" 1", L"0x10", L"inf", L"nan",
                                L"1,5", L"1e999", L"12a", L"--1", L"+-1",
                                // wide characters whose low byte is a digit or an 'e'
                                L"\u0131", L"1\u01655"}) {
        EXPECT_FALSE(DbReadNumber(text, v)) << text;
    }
    EXPECT_LT(DbCompareValues(L"9", L"10"), 0);   // numbers
    EXPECT_GT(DbCompareValues(L"9", L"10a"), 0);  // texts
    EXPECT_EQ(DbCompareValues(L"1.0", L"1"), 0);
    EXPECT_LT(DbCompareValues(L"S235", L"s235"), 0);
}

TEST_F(Beams, WhereFiltersNumbersTextsAndFields) {
    EXPECT_EQ(db.Query(L"SELECT * FROM Beams").rows.size(), 6u);
    // Operators and quoted values against every row are left to the random test below.
    EXPECT_EQ(Names(L"where length<=6"), L"B1 B3 ");
    EXPECT_EQ(Names(L"where grade = S355"), L"B6 ");  // lower-cased
    EXPECT_EQ(Names(L"where length > weight"), L"B5 ");
    EXPECT_EQ(Names(L"where"), L"B1 B2 B3 B4 B5 B6 ");

    const DbQueryResult r = db.Query(L"select [Grade], name from beams where weight = 42.20");
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.fields, (Lines{L"grade", L"name"}));
    EXPECT_EQ(r.rows, (Rows{{L"S355", L"B2"}, {L"s355", L"B6"}}));
    EXPECT_EQ(db.GetErrorLog().back(), L"SQL Query - ok, 2 rows");
}

TEST_F(Beams, NoPrecedenceNotAndBrackets) {
    // Right grouping: length > 9 AND (weight < 30 OR grade = 'S235').
    EXPECT_EQ(Names(L"where length > 9 and weight < 30 or grade = 'S235'"), L"B5 ");
    EXPECT_EQ(Names(L"where (length > 9 and weight < 30) or grade = 'S235'"), L"B1 B4 B5 ");
    // NOT takes everything on its right.
    EXPECT_EQ(Names(L"where not grade = 'S235' and length < 10"), L"B2 B3 B5 B6 ");
    EXPECT_EQ(Names(L"where ( not grade = 'S235' ) and length < 10"), L"B3 ");
}

TEST_F(Beams, OrderDistinctAndTop) {
    // Numeric and stable, ties keep their order when descending too, one flag for all fields.
    EXPECT_EQ(Names(L"order by length"), L"B3 B1 B4 B2 B6 B5 ");
    EXPECT_EQ(Names(L"order by weight"), L"B5 B1 B4 B2 B6 B3 ");
    EXPECT_EQ(Names(L"order by weight desc"), L"B3 B2 B6 B1 B4 B5 ");
    EXPECT_EQ(Names(L"order by profile, length desc"), L"B2 B6 B4 B1 B5 B3 ");
    EXPECT_EQ(Names(L"order by grade, length"), L"B1 B4 B5 B3 B2 B6 ");  // texts by character
    EXPECT_EQ(db.Query(L"select top 2 name from beams order by length desc").rows,
              (Rows{{L"B5"}, {L"B2"}}));
    EXPECT_EQ(db.Query(L"select top 0 name from beams").rows.size(), 6u);  // no limit
    EXPECT_EQ(db.Query(L"select distinct profile from beams").rows,
              (Rows{{L"IPE200"}, {L"IPE300"}, {L"HEA200"}, {L"HEB100"}}));
    const DbQueryResult r = db.Query(
        L"select distinct top 4 profile, length from beams where grade <> 'S275' "
        L"order by profile");
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(
        r.rows,
        (Rows{{L"HEA200", L"4.5"}, {L"IPE200", L"6"}, {L"IPE200", L"9"}, {L"IPE300", L"10"}}));

    // Numbers sort before texts.
    db.AddRow(L"beams", {L"B7", L"X", L"n/a", L"1", L"S235"});
    EXPECT_EQ(Names(L"where grade = 'S235' order by length desc"), L"B7 B4 B1 ");
}

TEST_F(Beams, FailuresGiveNoRowsAndLogLines) {
    const DbQueryResult r = db.Query(L"select nope from beams");
    EXPECT_TRUE(!r.ok && r.rows.empty() && r.fields.empty());
    const Lines& log = db.GetErrorLog();
    EXPECT_EQ(Lines(log.end() - 4, log.end()),
              (Lines{L"SQL Analyze - query 'select nope from beams'",
                     L"SQL Analyze - no 'nope' field found in 'beams' table",
                     L"SQL Analyze - failed", L"SQL Query - failed"}));
    EXPECT_EQ(Note(L"select * from beams where (length > 5"),
              L"SQL Query - ill-formed 'WHERE' statement");
    Note(L"select * from beams where length > 5 grade = 'S235'");
    EXPECT_EQ(Note(L"select name from beams order by zz"),
              L"SQL Query - no order field 'zz' found in 'Beams' table");
    Note(L"select * from beams where length > 5 and nope = 1");
    EXPECT_EQ(db.GetTableDescr(L"beams")->GetFilterCount(), 0u);
    // Further tables are ignored with a note.
    EXPECT_EQ(Note(L"select * from beams, t where length > 10", true),
              L"SQL Query - joins are not supported, only table 'beams' is used");
}

// Truth of the condition "field op value" on a row, read directly: quoted values as texts,
// others as numbers.
bool Holds(const std::vector<std::wstring>& row, const Lines& words, std::size_t i) {
    const std::wstring& cell = row[words[i] == L"length" ? 2 : (words[i] == L"weight" ? 3 : 4)];
    const std::wstring& op = words[i + 1];
    const std::wstring& value = words[i + 2];
    const bool text = value[0] == L'\'';
    const std::wstring lit = text ? value.substr(1, value.size() - 2) : L"";
    const double a = text ? 0 : std::stod(cell), b = text ? 0 : std::stod(value);
    const int c = text ? (cell > lit) - (cell < lit) : (a > b) - (a < b);
    if (op == L"=" || op == L"<" || op == L">") return c == (op == L"=" ? 0 : op == L"<" ? -1 : 1);
    if (op == L"<=" || op == L">=") return c != (op == L"<=" ? 1 : -1);
    return c != 0;  // "<>" and "!="
}

// Random WHERE parts over the beams, chains of conditions joined by AND and OR (NOT and brackets
// are the clause tests' part), checked against a direct reading of the same words with right
// grouping.
TEST_F(Beams, RandomWhereMatchesDirectReading) {
    std::mt19937 rng(1234);
    const Lines fields = {L"length", L"weight", L"grade"};
    const Lines ops = {L"=", L"<>", L"!=", L"<", L">", L"<=", L">="};
    const Lines numbers = {L"4.5", L"6", L"9", L"10", L"12", L"22.4", L"42.2", L"0"};
    const Lines grades = {L"'S235'", L"'S355'", L"'s355'", L"'S275'"};
    auto pick = [&](const Lines& l) { return l[rng() % l.size()]; };
    for (int round = 0; round < 300; ++round) {
        Lines words;  // a condition is three words, then "and" or "or" before the next one
        for (unsigned n = 1 + rng() % 4; n > 0; --n) {
            const std::size_t kind = rng() % 3;
            words.insert(words.end(),
                         {fields[kind], pick(ops), kind == 2 ? pick(grades) : pick(numbers)});
            if (n > 1) words.push_back(rng() % 2 ? L"and" : L"or");
        }
        std::wstring sql = L"where", expected;
        for (const auto& w : words) sql += L" " + w;
        for (const auto& row : db.GetTableDescr(L"beams")->GetRows()) {
            bool value = Holds(row, words, words.size() - 3);
            for (std::size_t i = words.size() - 3; i > 0; i -= 4) {
                const bool left = Holds(row, words, i - 4);
                value = words[i - 1] == L"and" ? left && value : left || value;
            }
            if (value) expected += row[0] + L" ";
        }
        EXPECT_EQ(Names(sql), expected) << sql;
    }
}

}  // namespace
