#include "quillon/data/query_analysis.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using namespace quillon;
using Lines = std::vector<std::wstring>;

const std::wstring kQ = std::wstring(1, static_cast<wchar_t>(0xFF91));

TEST(QueryText, OperatorBlanksLowerCaseAndBrackets) {
    // Index 0 and 1 are left alone, and so are quoted runs of every kind; "=" after "!" gets a
    // blank after only.
    // clang-format off
    const std::vector<std::pair<std::wstring, std::wstring>> cases = {
        {L"where a>=3", L"where a >= 3"}, {L"where x<>y", L"where x <> y"},
        {L"where a<=b", L"where a <= b"}, {L"where a<b", L"where a < b"},
        {L"where a>b", L"where a > b"}, {L"where a=b", L"where a = b"},
        {L"where a==b", L"where a == b"}, {L"where a!=b", L"where a!= b"},
        {L"where a<==b", L"where a <= = b"}, {L"where a><>b", L"where a > <> b"},
        {L"where a=!b", L"where a =!b"}, {L"where a = b", L"where a = b"},
        {L"where a >= b", L"where a >= b"}, {L"select*from t", L"select * from t"},
        {L"where (a=1)and(b<2)", L"where ( a = 1 ) and ( b < 2 )"}, {L"(a=1)", L"(a = 1 )"},
        {L" (a", L" (a"}, {L"a>=3", L"a>= 3"}, {L"=x", L"=x"},
        {L"where n='a<b'", L"where n = 'a<b'"}, {L"where n=\"(x)\"", L"where n = \"(x)\""},
        {L"where [a<b]=1", L"where [a<b] = 1"},
        {L"where n=" + kQ + L"a=b" + kQ, L"where n = " + kQ + L"a=b" + kQ},
        {L"where n='x", L"where n = 'x"}, {L"", L""}, {L"ab", L"ab"}, {L"ab=", L"ab ="}};
    // clang-format on
    for (const auto& [in, out] : cases) EXPECT_EQ(parser::SpaceOperators(in), out);

    EXPECT_EQ(parser::LowerOutsideQuotes(L"SELECT 'AbC' [Beams] \"XY\" Z"),
              L"select 'AbC' [beams] \"XY\" z");
    EXPECT_EQ(parser::LowerOutsideQuotes(kQ + L"AB" + kQ + L" CD 'EF"),
              kQ + L"AB" + kQ + L" cd 'EF");
    const std::vector<std::pair<std::wstring, std::wstring>> brackets = {
        {L"[a]", L"a"}, {L"[a", L"a"}, {L"a]", L"a"}, {L"[[a]]", L"[a]"},
        {L"]", L""},    {L"[]", L""},  {L"", L""}};
    for (const auto& [in, out] : brackets) EXPECT_EQ(parser::RemoveBrackets(in), out);
}

class Analysis : public ::testing::Test {
protected:
    void SetUp() override {
        db.AddTable(L"Beams", {L"name", L"length"});
        db.AddTable(L"t", {L"a", L"b", L"x", L"y"});
        db.AddTable(L"u", {L"c"});
    }
    // Analyzes `q` into `params` and `where`; `log` gets the lines it wrote, without their common
    // beginning "SQL Analyze - " (which the first test checks).
    bool Analyze(const std::wstring& q) {
        params = parser::QueryAnalysisParams{};
        where.clear();
        params.clause = &where;
        const std::size_t before = db.GetErrorLog().size();
        const bool ok = db.AnalyzeSQL(q, &params);
        log.clear();
        for (std::size_t i = before; i < db.GetErrorLog().size(); ++i)
            log.push_back(db.GetErrorLog()[i].substr(14));
        return ok;
    }
    DbDatabase db;
    clv::clause where;
    parser::QueryAnalysisParams params;
    Lines log;
};

TEST_F(Analysis, BracketedTableKeepsNoCase) {
    EXPECT_TRUE(Analyze(L"SELECT * FROM [Beams]"));
    EXPECT_TRUE(params.selectFields == Lines{L"*"} && params.tables == Lines{L"beams"});
    EXPECT_EQ(params.tokens, (Lines{L"select", L"*", L"from", L"[beams]"}));
    EXPECT_EQ(db.GetErrorLog().back(), L"SQL Analyze - ok");
    EXPECT_EQ(log, (Lines{L"query 'select * from [beams]'", L"ok"}));
}

TEST_F(Analysis, ConditionsBracketsAndQuotedValues) {
    EXPECT_TRUE(Analyze(L"select a, b from t where x>=3 and (y = 'Q')"));
    EXPECT_EQ(params.selectFields, (Lines{L"a", L"b"}));
    EXPECT_EQ(params.conditions, (Lines{L"x >= 3", L"y = 'Q'"}));
    EXPECT_TRUE(params.conditionWords.empty() && params.state == 5 && log.back() == L"ok");
    EXPECT_EQ(where.GetClauseString(), "exp AND ( exp )");
    EXPECT_EQ(params.tokens, (Lines{L"select", L"a", L"b", L"from", L"t", L"where", L"x", L">=",
                                    L"3", L"and", L"(", L"y", L"=", L"'Q'", L")"}));
    EXPECT_EQ(db.GetTableDescr(L"t")->GetFilterCount(), 2u);

    EXPECT_TRUE(Analyze(L"select * from t where not (x = 1 or y <> x) and a != 'it''s'"));
    EXPECT_EQ(where.GetClauseString(), "NOT ( exp OR exp ) AND exp");
    EXPECT_EQ(params.conditions, (Lines{L"x = 1", L"y <> x", L"a != 'it''s'"}));
}

TEST_F(Analysis, IncompleteConditionUsesItsOwnSpelling) {
    EXPECT_FALSE(Analyze(L"select a from t where x ="));
    EXPECT_EQ(
        log, (Lines{L"query 'select a from t where x ='", L"invalid condintion 'x ='", L"failed"}));
    EXPECT_EQ(params.conditionWords, (Lines{L"x", L"="}));
    EXPECT_FALSE(Analyze(L"select a from t where zz = 1"));
    EXPECT_EQ(log[1], L"invalid condition 'zz = 1'");
    EXPECT_EQ(params.conditions, Lines{L"zz = 1"});  // kept in every case
    // "a!=b" keeps "!=" glued to the field: two words only. "==" is no operator of the filters.
    EXPECT_FALSE(Analyze(L"select a from t where a!=b"));
    EXPECT_EQ(log[1], L"invalid condintion 'a!= b'");
    EXPECT_FALSE(Analyze(L"select a from t where a==b"));
    EXPECT_EQ(log[1], L"invalid condition 'a == b'");
}

TEST_F(Analysis, TopDistinctOrderAndKeywordsInAnyCase) {
    EXPECT_TRUE(Analyze(L"select top 10 a from t"));
    EXPECT_TRUE(params.top == 10 && params.selectFields == Lines{L"a"});
    EXPECT_TRUE(Analyze(L"SeLeCt DISTINCT Top 3 a From T Order By a DESC, [b] asc"));
    EXPECT_TRUE(params.distinct && params.descending && params.top == 3);
    EXPECT_EQ(params.orderFields, (Lines{L"a", L"b"}));
    EXPECT_TRUE(Analyze(L"select top +4 a from t"));
    EXPECT_EQ(params.top, 4);
    EXPECT_TRUE(Analyze(L"select top many a from t;"));
    EXPECT_TRUE(params.top == 0 && params.selectFields == Lines{L"a"});
    // "by" outside ORDER and "distinct" outside SELECT are ordinary words.
    EXPECT_FALSE(Analyze(L"select by from t"));
    EXPECT_EQ(params.selectFields, Lines{L"by"});
    EXPECT_FALSE(Analyze(L"select * from distinct"));
    EXPECT_TRUE(!params.distinct && params.tables == Lines{L"distinct"});
    EXPECT_EQ(log,
              (Lines{L"query 'select * from distinct'", L"no table 'distinct' found", L"failed"}));
}

TEST_F(Analysis, MissingFromAndEmptySelect) {
    EXPECT_FALSE(Analyze(L"select a"));
    EXPECT_EQ(log,
              (Lines{L"query 'select a'", L"check 'SELECT' and/or 'FROM' statement", L"failed"}));
    EXPECT_FALSE(Analyze(L"select from t"));
    EXPECT_EQ(log[1], L"check 'SELECT' and/or 'FROM' statement");
    EXPECT_FALSE(Analyze(L""));
    EXPECT_EQ(log[0], L"query ''");
    // A condition before any table.
    EXPECT_FALSE(Analyze(L"select a where x = 1 from t"));
    EXPECT_EQ(log[1], L"no tables defined, check 'FROM' statement");
}

TEST_F(Analysis, FieldCheckNamesTheFirstTable) {
    EXPECT_FALSE(Analyze(L"select a from t, u"));
    EXPECT_EQ(
        log, (Lines{L"query 'select a from t, u'", L"no 'a' field found in 't' table", L"failed"}));
    EXPECT_EQ(params.tables, (Lines{L"t", L"u"}));
    EXPECT_TRUE(Analyze(L"select [a], B from t"));  // names may carry brackets and any case
}

TEST_F(Analysis, ScanningNeverStopsEarly) {
    EXPECT_FALSE(Analyze(L"select a, zz from t, nope where q = 1 and x"));
    EXPECT_EQ(log, (Lines{L"query 'select a, zz from t, nope where q = 1 and x'",
                          L"no 'zz' field found in 't' table", L"no table 'nope' found",
                          L"invalid condition 'q = 1'", L"invalid condintion 'x'", L"failed"}));
    // The record keeps what was collected.
    EXPECT_EQ(params.selectFields, (Lines{L"a", L"zz"}));
    EXPECT_EQ(params.tables, (Lines{L"t", L"nope"}));
    EXPECT_EQ(where.GetClauseString(), "AND");
}

TEST_F(Analysis, QuotesProtectCaseAndDelimiters) {
    EXPECT_TRUE(Analyze(L"select a from t where y = 'Two Words, Here'"));
    EXPECT_EQ(params.conditions, Lines{L"y = 'Two Words, Here'"});
    EXPECT_TRUE(Analyze(L"select a from t where y = " + kQ + L"A B" + kQ));
    EXPECT_TRUE(params.conditionWords.empty() &&
                params.conditions == Lines{L"y = " + kQ + L"A B" + kQ});
    // An unclosed quote runs to the end of the text, which closes the word; the filter refuses it.
    EXPECT_FALSE(Analyze(L"select a from t where y = 'Open end"));
    EXPECT_EQ(log[1], L"invalid condition 'y = 'Open end'");
    // The text ends at its first NUL.
    EXPECT_TRUE(Analyze(std::wstring(L"select a from t\0 where", 22)));
    EXPECT_EQ(log[0], L"query 'select a from t'");
}

TEST(AnalysisWithoutRecord, NullParamsAndNullClause) {
    DbDatabase db;
    db.AddTable(L"t", {L"a"});
    EXPECT_TRUE(db.AnalyzeSQL(L"select a from t where a = 1", nullptr));
    parser::QueryAnalysisParams p;  // clause left null: conditions are checked, nothing appended
    EXPECT_FALSE(db.AnalyzeSQL(L"select a from t where (a = 1) or b = 2", &p));
    EXPECT_EQ(p.conditions, (Lines{L"a = 1", L"b = 2"}));
    EXPECT_EQ(db.GetErrorLog()[db.GetErrorLog().size() - 2],
              L"SQL Analyze - invalid condition 'b = 2'");
}

}  // namespace
