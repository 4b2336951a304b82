// Arbitrary text into DbDatabase::Query on a small table: every text must give a result and log
// lines, never a crash, a hang or a leak, and the query's filters must be released.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "quillon/data/database.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size > 4096) return 0;
    // Two bytes per character, so every wide character (U+FF91 included) can be reached.
    std::wstring sql;
    sql.reserve(size / 2);
    for (size_t i = 0; i + 1 < size; i += 2) {
        sql += static_cast<wchar_t>(data[i] | (static_cast<unsigned>(data[i + 1]) << 8));
    }

    quillon::DbDatabase db;
    db.AddTable(L"Beams", {L"name", L"profile", L"length", L"grade"});
    db.AddTable(L"t", {L"a"});
    db.AddRow(L"Beams", {L"B1", L"IPE200", L"6", L"S235"});
    db.AddRow(L"Beams", {L"B2", L"IPE300", L"10", L"S355"});
    db.AddRow(L"Beams", {L"B3", L"HEA200", L"4.5", L"S355"});
    db.AddRow(L"Beams", {L"B4", L"IPE200", L"9", L"s355"});

    const quillon::DbQueryResult r = db.Query(sql);
    if (db.GetErrorLog().size() < 3) std::abort();
    if (!r.ok && !r.rows.empty()) std::abort();
    for (const auto& row : r.rows) {
        if (row.size() != r.fields.size()) std::abort();
    }
    if (r.rows.size() > 4) std::abort();
    if (db.GetTableDescr(L"beams")->GetFilterCount() != 0) std::abort();
    return 0;
}
