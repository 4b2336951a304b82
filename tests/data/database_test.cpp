#include "quillon/data/database.h"

#include <gtest/gtest.h>

#include <functional>
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
        const Rows rows = {
            {L"B1", L"IPE200", L"6", L"22.4", L"S235"},
            {L"B2", L"IPE300", L"10", L"42.2", L"S355"},
            {L"B3", L"HEA200", L"4.5", L"42.3", L"S355"},
            {L"B4", L"IPE200", L"9", L"22.4", L"S235"},
            {L"B5", L"HEB100", L"12", L"10.4", L"S275"},
            {L"B6", L"IPE300", L"10", L"42.2", L"s355"},
        };
        for (const auto& row : rows) ASSERT_TRUE(db.AddRow(L"beams", row));
        ASSERT_NE(db.AddTable(L"t", {L"a"}), nullptr);
    }
    // The first column of the rows of a successful query.
    Lines Names(const std::wstring& sql) {
        const DbQueryResult r = db.Query(sql);
        EXPECT_TRUE(r.ok) << sql << "\n" << db.GetErrorLog().back();
        Lines names;
        for (const auto& row : r.rows) names.push_back(row.empty() ? L"" : row.front());
        EXPECT_EQ(db.GetTableDescr(L"beams")->GetFilterCount(), 0u) << "filters released";
        return names;
    }
    DbDatabase db;
};

TEST_F(Beams, CatalogueRules) {
    EXPECT_EQ(db.AddTable(L"BEAMS", {L"x"}), nullptr);  // names are case-insensitive
    EXPECT_FALSE(db.AddRow(L"beams", {L"too", L"short"}));
    EXPECT_FALSE(db.AddRow(L"nope", {L"x"}));
    const DbTableDescr* t = db.GetTableDescr(L"[BeAmS]");
    ASSERT_NE(t, nullptr);
    EXPECT_EQ(t->GetName(), L"Beams");
    EXPECT_EQ(t->GetRows().size(), 6u);
    EXPECT_TRUE(t->IsField(L"[Length]"));
    EXPECT_FALSE(t->IsField(L"len"));
    EXPECT_EQ(db.GetTableDescr(L"beam"), nullptr);

    DbTableDescr* beams = db.GetTableDescr(L"beams");
    for (const wchar_t* op : {L"=", L"<>", L"!=", L"<", L">", L"<=", L">="}) {
        EXPECT_NE(beams->AddFilter(L"length", op, L"5"), nullptr) << op;
    }
    EXPECT_EQ(beams->AddFilter(L"length", L"==", L"5"), nullptr);
    EXPECT_EQ(beams->AddFilter(L"length", L"like", L"5"), nullptr);
    EXPECT_EQ(beams->AddFilter(L"span", L"=", L"5"), nullptr);
    EXPECT_EQ(beams->AddFilter(L"name", L"=", L"'open"), nullptr);
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
    for (const wchar_t* text : {L"0", L"12", L"-3", L"+4.5", L".5", L"5.", L"1e3", L"-2.5E-2"}) {
        EXPECT_TRUE(DbReadNumber(text, v)) << text;
    }
    EXPECT_TRUE(DbReadNumber(L"-2.5E-2", v));
    EXPECT_DOUBLE_EQ(v, -0.025);
    for (const wchar_t* text : {L"", L"-", L".", L"1e", L"1 ", L" 1", L"0x10", L"inf", L"nan",
                                L"1,5", L"1e999", L"12a", L"--1"}) {
        EXPECT_FALSE(DbReadNumber(text, v)) << text;
    }
    EXPECT_LT(DbCompareValues(L"9", L"10"), 0);   // numbers
    EXPECT_GT(DbCompareValues(L"9", L"10a"), 0);  // texts
    EXPECT_EQ(DbCompareValues(L"1.0", L"1"), 0);
    EXPECT_LT(DbCompareValues(L"S235", L"s235"), 0);
}

TEST_F(Beams, WhereFiltersNumbersTextsAndFields) {
    EXPECT_EQ(Names(L"SELECT * FROM Beams").size(), 6u);
    EXPECT_EQ(Names(L"select name from beams where length > 9"), (Lines{L"B2", L"B5", L"B6"}));
    EXPECT_EQ(Names(L"select name from beams where length >= 10"), (Lines{L"B2", L"B5", L"B6"}));
    EXPECT_EQ(Names(L"select name from beams where length<=6"), (Lines{L"B1", L"B3"}));
    EXPECT_EQ(Names(L"select name from beams where grade = 'S355'"), (Lines{L"B2", L"B3"}));
    EXPECT_EQ(Names(L"select name from beams where grade = S355"), Lines{L"B6"});  // lower-cased
    EXPECT_EQ(Names(L"select name from beams where grade <> 'S355'"),
              (Lines{L"B1", L"B4", L"B5", L"B6"}));
    EXPECT_EQ(Names(L"select name from beams where length > weight"), Lines{L"B5"});
    EXPECT_EQ(Names(L"select name from beams where profile < 'I'"), (Lines{L"B3", L"B5"}));
    EXPECT_EQ(Names(L"select name from beams where"),
              (Lines{L"B1", L"B2", L"B3", L"B4", L"B5", L"B6"}));

    const DbQueryResult r = db.Query(L"select [Grade], name from beams where weight = 42.20");
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(r.fields, (Lines{L"grade", L"name"}));
    EXPECT_EQ(r.rows, (Rows{{L"S355", L"B2"}, {L"s355", L"B6"}}));
    EXPECT_EQ(db.GetErrorLog().back(), L"SQL Query - ok, 2 rows");
}

TEST_F(Beams, NoPrecedenceNotAndBrackets) {
    // Right grouping: length > 9 AND (weight < 30 OR grade = 'S235').
    EXPECT_EQ(Names(L"select name from beams where length > 9 and weight < 30 or grade = 'S235'"),
              Lines{L"B5"});
    EXPECT_EQ(Names(L"select name from beams where (length > 9 and weight < 30) or grade = 'S235'"),
              (Lines{L"B1", L"B4", L"B5"}));
    // NOT takes everything on its right.
    EXPECT_EQ(Names(L"select name from beams where not grade = 'S235' and length < 10"),
              (Lines{L"B2", L"B3", L"B5", L"B6"}));
    EXPECT_EQ(Names(L"select name from beams where ( not grade = 'S235' ) and length < 10"),
              Lines{L"B3"});
}

TEST_F(Beams, OrderDistinctAndTop) {
    EXPECT_EQ(Names(L"select name from beams order by length"),
              (Lines{L"B3", L"B1", L"B4", L"B2", L"B6", L"B5"}));  // numeric, stable
    EXPECT_EQ(Names(L"select name from beams order by weight"),
              (Lines{L"B5", L"B1", L"B4", L"B2", L"B6", L"B3"}));
    EXPECT_EQ(Names(L"select name from beams order by weight desc"),
              (Lines{L"B3", L"B2", L"B6", L"B1", L"B4", L"B5"}));  // ties keep their order
    EXPECT_EQ(Names(L"select name from beams order by profile, length desc"),
              (Lines{L"B2", L"B6", L"B4", L"B1", L"B5", L"B3"}));  // one flag for all fields
    EXPECT_EQ(Names(L"select top 2 name from beams order by length desc"), (Lines{L"B5", L"B2"}));
    EXPECT_EQ(Names(L"select top 0 name from beams").size(), 6u);  // no limit
    EXPECT_EQ(Names(L"select distinct profile from beams"),
              (Lines{L"IPE200", L"IPE300", L"HEA200", L"HEB100"}));
    const DbQueryResult r = db.Query(
        L"select distinct top 4 profile, length from beams where grade <> 'S275' "
        L"order by profile");
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(
        r.rows,
        (Rows{{L"HEA200", L"4.5"}, {L"IPE200", L"6"}, {L"IPE200", L"9"}, {L"IPE300", L"10"}}));

    // Numbers sort before texts.
    db.AddRow(L"beams", {L"B7", L"X", L"n/a", L"1", L"S235"});
    EXPECT_EQ(Names(L"select name from beams where grade = 'S235' order by length desc"),
              (Lines{L"B7", L"B4", L"B1"}));
}

TEST_F(Beams, FailuresGiveNoRowsAndLogLines) {
    const std::size_t before = db.GetErrorLog().size();
    DbQueryResult r = db.Query(L"select nope from beams");
    EXPECT_FALSE(r.ok);
    EXPECT_TRUE(r.rows.empty());
    EXPECT_TRUE(r.fields.empty());
    EXPECT_EQ(Lines(db.GetErrorLog().begin() + static_cast<std::ptrdiff_t>(before),
                    db.GetErrorLog().end()),
              (Lines{L"SQL Analyze - query 'select nope from beams'",
                     L"SQL Analyze - no 'nope' field found in 'beams' table",
                     L"SQL Analyze - failed", L"SQL Query - failed"}));

    r = db.Query(L"select * from beams where (length > 5");
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(db.GetErrorLog()[db.GetErrorLog().size() - 2],
              L"SQL Query - ill-formed 'WHERE' statement");
    r = db.Query(L"select * from beams where length > 5 grade = 'S235'");
    EXPECT_FALSE(r.ok);
    r = db.Query(L"select name from beams order by zz");
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(db.GetErrorLog()[db.GetErrorLog().size() - 2],
              L"SQL Query - no order field 'zz' found in 'Beams' table");
    r = db.Query(L"select * from beams where length > 5 and nope = 1");
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(db.GetTableDescr(L"beams")->GetFilterCount(), 0u);

    // Further tables are ignored with a note.
    r = db.Query(L"select * from beams, t where length > 10");
    EXPECT_TRUE(r.ok);
    EXPECT_EQ(r.rows.size(), 1u);
    EXPECT_EQ(db.GetErrorLog()[db.GetErrorLog().size() - 2],
              L"SQL Query - joins are not supported, only table 'beams' is used");
}

// Random WHERE parts over the beams, checked against a direct reading of the same words.
TEST_F(Beams, RandomWhereMatchesDirectReading) {
    std::mt19937 rng(1234);
    const auto& rows = db.GetTableDescr(L"beams")->GetRows();
    const Lines ops = {L"=", L"<>", L"!=", L"<", L">", L"<=", L">="};
    const Lines numericValues = {L"4.5", L"6", L"9", L"10", L"12", L"22.4", L"42.2", L"0"};
    const Lines gradeValues = {L"'S235'", L"'S355'", L"'s355'", L"'S275'"};
    auto pick = [&](const Lines& l) { return l[rng() % l.size()]; };

    for (int round = 0; round < 300; ++round) {
        // Words and, for each row, the truth of each condition.
        std::vector<std::wstring> words;
        std::vector<std::function<bool(const std::vector<std::wstring>&)>> tests;
        std::function<void(int)> gen = [&](int depth) {
            if (depth < 3 && rng() % 5 == 0) {
                words.push_back(L"not");
                gen(depth + 1);
                return;
            }
            if (depth < 3 && rng() % 4 == 0) {
                words.push_back(L"(");
                gen(depth + 1);
                words.push_back(L")");
            } else {
                const std::wstring op = pick(ops);
                const int kind = static_cast<int>(rng() % 3);
                const std::size_t field = kind == 0 ? 2 : (kind == 1 ? 3 : 4);
                const std::wstring value = kind == 2 ? pick(gradeValues) : pick(numericValues);
                words.push_back(std::wstring(kind == 0   ? L"length"
                                             : kind == 1 ? L"weight"
                                                         : L"grade") +
                                L" " + op + L" " + value);
                tests.push_back([=](const std::vector<std::wstring>& row) {
                    int c = 0;
                    if (kind == 2) {
                        const std::wstring lit = value.substr(1, value.size() - 2);
                        c = row[field] < lit ? -1 : (lit < row[field] ? 1 : 0);
                    } else {
                        const double a = std::stod(row[field]);
                        const double b = std::stod(value);
                        c = a < b ? -1 : (b < a ? 1 : 0);
                    }
                    if (op == L"=") return c == 0;
                    if (op == L"<>" || op == L"!=") return c != 0;
                    if (op == L"<") return c < 0;
                    if (op == L">") return c > 0;
                    if (op == L"<=") return c <= 0;
                    return c >= 0;
                });
            }
            if (rng() % 2 == 0 && words.size() < 30) {
                words.push_back(rng() % 2 ? L"and" : L"or");
                gen(depth);
            }
        };
        gen(0);
        std::wstring sql = L"select name from beams where";
        for (const auto& w : words) sql += L" " + w;

        Lines expected;
        for (const auto& row : rows) {
            // Direct reading with right grouping.
            std::size_t i = 0;
            std::size_t term = 0;
            std::function<bool()> expression = [&]() -> bool {
                if (words[i] == L"not") {
                    ++i;
                    return !expression();
                }
                bool left = false;
                if (words[i] == L"(") {
                    ++i;
                    left = expression();
                    ++i;
                } else {
                    left = tests[term++](row);
                    ++i;
                }
                if (i < words.size() && (words[i] == L"and" || words[i] == L"or")) {
                    const bool isAnd = words[i++] == L"and";
                    const bool right = expression();  // evaluated always: terms are counted
                    return isAnd ? left && right : left || right;
                }
                return left;
            };
            if (expression()) expected.push_back(row[0]);
        }
        EXPECT_EQ(Names(sql), expected) << sql;
    }
}

// Any text gives a result and log lines; never a crash, a hang or a leak (run under ASan).
TEST_F(Beams, RandomQueryTextsAlwaysAnswer) {
    std::mt19937 rng(99);
    const Lines vocabulary = {L"select", L"SELECT", L"top",    L"distinct", L"from",   L"where",
                              L"order",  L"by",     L"asc",    L"desc",     L"and",    L"or",
                              L"not",    L"(",      L")",      L"*",        L"beams",  L"[Beams]",
                              L"t",      L"name",   L"length", L"grade",    L"weight", L"=",
                              L"<>",     L"!=",     L"<",      L">=",       L"==",     L"'S235'",
                              L"'x",     L"\"q\"",  L"5",      L"-1",       L"10",     L",",
                              L";",      L"[",      L"]",      L"\xFF91",   L"'",      L"\""};
    const std::vector<std::wstring> seeds = {
        L"select top 3 distinct name, length from beams where (length > 5 and not grade = "
        L"'S235') or weight <= 22.4 order by length desc",
        L"select * from [Beams] where grade<>'S355'", L"select name from beams order by weight"};
    auto pick = [&](const Lines& l) { return l[rng() % l.size()]; };
    for (int round = 0; round < 3000; ++round) {
        std::wstring sql;
        switch (round % 3) {
            case 0: {  // words from the vocabulary
                const int n = static_cast<int>(rng() % 16);
                for (int i = 0; i < n; ++i) {
                    sql += pick(vocabulary);
                    if (rng() % 4 != 0) sql += L' ';
                }
                break;
            }
            case 1: {  // mutations of good queries
                sql = seeds[rng() % seeds.size()];
                const int edits = 1 + static_cast<int>(rng() % 4);
                for (int e = 0; e < edits && !sql.empty(); ++e) {
                    const std::size_t at = rng() % sql.size();
                    switch (rng() % 3) {
                        case 0:
                            sql.erase(at, 1 + rng() % 5);
                            break;
                        case 1:
                            sql.insert(at, 1, static_cast<wchar_t>(rng() % 0x80));
                            break;
                        default:
                            sql[at] = L"()[]'\"=<>!*,; \xFF91\0"[rng() % 17];
                            break;
                    }
                }
                break;
            }
            default: {  // truncations and raw characters
                sql = seeds[rng() % seeds.size()].substr(0, rng() % 60);
                const int n = static_cast<int>(rng() % 8);
                for (int i = 0; i < n; ++i)
                    sql += static_cast<wchar_t>(i % 2 ? rng() % 0x10000 : rng());
                break;
            }
        }
        const std::size_t before = db.GetErrorLog().size();
        const DbQueryResult r = db.Query(sql);
        const Lines& log = db.GetErrorLog();
        ASSERT_GE(log.size(), before + 3) << "query, verdict, run";
        if (r.ok) {
            EXPECT_EQ(log.back(), L"SQL Query - ok, " + std::to_wstring(r.rows.size()) + L" rows");
            for (const auto& row : r.rows) ASSERT_EQ(row.size(), r.fields.size());
            EXPECT_LE(r.rows.size(), 6u);
        } else {
            EXPECT_EQ(log.back(), L"SQL Query - failed");
            EXPECT_TRUE(r.rows.empty());
        }
        ASSERT_EQ(db.GetTableDescr(L"beams")->GetFilterCount(), 0u) << "filters released";
        if (log.size() > 10000) db.ClearErrorLog();
    }
}

}  // namespace
