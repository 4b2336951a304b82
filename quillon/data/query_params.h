// The record that the query analysis fills (see query_analysis.h for the analysis itself).
#pragma once

#include <string>
#include <vector>

#include "quillon/data/clause.h"

namespace quillon::parser {

struct QueryAnalysisParams {
    // Scanner states; there is no state 2.
    enum {
        beforeSelect = 0,
        selectList = 1,
        topNumber = 3,
        fromList = 4,
        wherePart = 5,
        afterOrder = 6,
        orderList = 7,
    };

    clv::clause* clause = nullptr;             // the WHERE clause, appended to; may be null
    std::vector<std::wstring> selectFields;    // as written, brackets kept; {"*"} is all fields
    std::vector<std::wstring> tables;          // FROM list, brackets removed
    std::vector<std::wstring> orderFields;     // ORDER BY list, brackets removed
    bool descending = false;                   // "desc" in the ORDER BY list
    std::vector<std::wstring> conditions;      // each condition's three words joined by blanks
    std::vector<std::wstring> tokens;          // every word in order, keywords included
    std::vector<std::wstring> conditionWords;  // words of the condition being collected (0 to 3)
    int state = beforeSelect;
    int savedState = beforeSelect;  // state to return to after the number following "top"
    bool distinct = false;          // "distinct" directly in the SELECT list
    int top = 0;                    // row limit after "top" (non-numeric text gives 0)
};

}  // namespace quillon::parser
