// Analysis of SQL-like query texts: SELECT [TOP n] [DISTINCT] fields FROM tables [WHERE conditions]
// [ORDER BY fields [ASC|DESC]].
//
// DbDatabase::AnalyzeSQL (database.h) takes a query text apart into a QueryAnalysisParams record
// and writes every finding to the database's error log; it never throws and never stops early, so
// one query logs all its problems. The dialect is deliberately small: no expressions, no
// functions, no joins in the text, and one condition is always exactly three words
// (field operator value), joined by "and", "or", "not" and grouped by "(" and ")".
//
// Conventions:
// - Keywords are recognised in any case: the text is lower-cased outside quotes first, so names
//   and unquoted values arrive in lower case while quoted text keeps its case. Names are therefore
//   looked up case-insensitively (database.h).
// - Words end at a blank, "," or ";" outside quotes, and at the end of the text (also inside an
//   unclosed quote). A text is read up to its first NUL character, as a C string would be.
// - The record keeps whatever was collected, also after a failure. The WHERE part is appended to
//   the caller's clause (never created here); its terms are filters owned by the first table.
#pragma once

#include "quillon/data/clause.h"
#include "quillon/data/database.h"  // DbDatabase::AnalyzeSQL, DbTableDescr, DbFilter
#include "quillon/data/query_params.h"
#include "quillon/data/query_text.h"
