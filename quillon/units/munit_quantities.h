// The quantity types as one table: for each MUNIT_TYPES value, the kinds of its unit factors, how
// its factor is formed from theirs, how its displayed name is built and how UpDateUnit refreshes
// it. MUnit's operations read this table instead of each keeping a list of ids of its own; the
// oddities that stored unit files and callers depend on are columns here, not special cases in
// the code.
#pragma once

#include <cstddef>

#include "quillon/units/munit_types.h"

namespace quillon::munit::quantities {

// How UpDateUnit refreshes the records of a type.
enum class Refresh : unsigned char {
    Kept,           // name and coefficient stay as stored (5, 6, 25; 103, 104)
    Unitless,       // 1 to 3: coefficient 1, precision 0; added when missing
    UnitlessNamed,  // 4: coefficient 1, name regenerated; added with precision 2 when missing
    Single,         // coefficient c1^p1 * c2^p2 of the record's own units, name from the joins
    Composite,      // name, and with lengthPower the coefficient, from two source records
};

// shownUnits: count the record's kinds (1, plus one for each further kind that is set).
inline constexpr int kCountKinds = -1;

struct QuantityType {
    int id;
    // Kinds of the unit factors: GetTypeMunit gives them for single types (ids up to 100);
    // CorrectQuantity requires kind1 and, when set, kind2 (kind3 is never checked); CnvUnit looks
    // the names of a unit text up in these lists.
    MUNIT_T kind1, kind2, kind3;
    // Units shown in the name (GetTypesCount): 0 for the unitless types, 1 for area and volume,
    // which show one unit with its exponent although they name two or three factors.
    int shownUnits;
    // Whether CnvUnit converts with a unit text; several types with a coefficient do not.
    bool convertsText;
    // The factor c1^p1 * c2^p2 * c3^p3 of the unit factors: the coefficient of a single type and
    // what CnvUnit computes.
    int power1, power2, power3;
    Refresh refresh;
    const wchar_t* join1;  // name text after the first shown unit
    const wchar_t* join2;  // after the second
    // Composite types: the records name and factor come from (source2 0: none), how many units of
    // source1 they show, and the power of source2's length the factor is divided by (0: the name
    // alone is refreshed).
    int source1, source2, unitsOfSource1, lengthPower;
};

// Single types by id, then the composite types in the order UpDateUnit refreshes them (111 shows
// the name of 109, refreshed just before).
// clang-format off
struct Rows {
    static constexpr MUNIT_T N = MUNIT_NONE, L = MUNIT_LENGTH, F = MUNIT_FORCE, M = MUNIT_MASS,
                             A = MUNIT_ANGLE, K5 = MUNIT_FIFTH;
    static constexpr int All = kCountKinds;
    static constexpr Refresh Kept = Refresh::Kept, Unitless = Refresh::Unitless,
                             Named = Refresh::UnitlessNamed, Single = Refresh::Single,
                             Composite = Refresh::Composite;
    static constexpr QuantityType kTable[] = {
        // id, kind1 to 3, shownUnits, convertsText, power1 to 3, refresh, join1, join2,
        // source1, source2, unitsOfSource1, lengthPower
        {1,    N,   N,   N,   0,    false,  0,   0,   0,   Unitless,   L"",   L"",   0,    0,    0,  0},
        {2,    N,   N,   N,   0,    false,  0,   0,   0,   Unitless,   L"",   L"",   0,    0,    0,  0},
        {3,    N,   N,   N,   0,    false,  0,   0,   0,   Unitless,   L"",   L"",   0,    0,    0,  0},
        {4,    N,   N,   N,   0,    false,  0,   0,   0,   Named,      L"",   L"",   0,    0,    0,  0},
        {5,    N,   N,   N,   0,    false,  0,   0,   0,   Kept,       L"",   L"",   0,    0,    0,  0},
        {6,    N,   N,   N,   0,    false,  0,   0,   0,   Kept,       L"",   L"",   0,    0,    0,  0},
        {7,    L,   N,   N,   All,  true,   1,   0,   0,   Single,     L"",   L"",   0,    0,    0,  0},
        {8,    L,   N,   N,   All,  true,   1,   0,   0,   Single,     L"",   L"",   0,    0,    0,  0},
        {9,    L,   N,   N,   All,  true,   1,   0,   0,   Single,     L"",   L"",   0,    0,    0,  0},
        {10,   L,   N,   N,   All,  true,   1,   0,   0,   Single,     L"",   L"",   0,    0,    0,  0},
        {11,   L,   N,   N,   All,  true,   1,   0,   0,   Single,     L"",   L"",   0,    0,    0,  0},
        {12,   L,   L,   N,   1,    true,   2,   0,   0,   Single,     L"2",  L"",   0,    0,    0,  0},
        {13,   F,   N,   N,   All,  true,   1,   0,   0,   Single,     L"",   L"",   0,    0,    0,  0},
        {14,   F,   L,   N,   All,  true,   1,   1,   0,   Single,     L"*",  L"",   0,    0,    0,  0},
        {15,   F,   L,   N,   All,  false,  1,   -2,  0,   Single,     L"/",  L"2",  0,    0,    0,  0},
        {16,   L,   N,   N,   All,  true,   1,   0,   0,   Single,     L"",   L"",   0,    0,    0,  0},
        {17,   A,   N,   N,   All,  true,   1,   0,   0,   Single,     L"",   L"",   0,    0,    0,  0},
        {18,   F,   N,   N,   All,  true,   1,   0,   0,   Single,     L"",   L"",   0,    0,    0,  0},
        {19,   M,   N,   N,   All,  true,   1,   0,   0,   Single,     L"",   L"",   0,    0,    0,  0},
        // The fifth kind has no units, so a type-20 factor is always 0 (kept: no such record can
        // be set while records are checked).
        {20,   K5,  N,   N,   All,  true,   1,   0,   0,   Single,     L"",   L"",   0,    0,    0,  0},
        {21,   L,   L,   N,   All,  false,  2,   -1,  0,   Single,     L"2/", L"",   0,    0,    0,  0},
        {22,   L,   N,   N,   All,  true,   1,   0,   0,   Single,     L"",   L"",   0,    0,    0,  0},
        {23,   F,   L,   N,   All,  false,  1,   -3,  0,   Single,     L"/",  L"3",  0,    0,    0,  0},
        {24,   F,   L,   N,   All,  false,  1,   -2,  0,   Single,     L"/",  L"2",  0,    0,    0,  0},
        // Converts by text, but its name and coefficient stay as stored.
        {25,   L,   N,   N,   All,  true,   1,   0,   0,   Kept,       L"",   L"",   0,    0,    0,  0},
        {26,   M,   L,   N,   All,  false,  1,   -3,  0,   Single,     L"/",  L"3",  0,    0,    0,  0},
        {27,   F,   L,   N,   All,  false,  1,   -2,  0,   Single,     L"/",  L"2",  0,    0,    0,  0},
        {28,   F,   L,   N,   All,  true,   1,   -1,  0,   Single,     L"/",  L"",   0,    0,    0,  0},
        {29,   F,   L,   N,   All,  true,   1,   -2,  0,   Single,     L"/",  L"2",  0,    0,    0,  0},
        {30,   L,   N,   N,   All,  true,   4,   0,   0,   Single,     L"4",  L"",   0,    0,    0,  0},
        {31,   L,   L,   N,   1,    true,   2,   0,   0,   Single,     L"2",  L"",   0,    0,    0,  0},
        {32,   M,   L,   N,   All,  false,  1,   -2,  0,   Single,     L"/",  L"2",  0,    0,    0,  0},
        {33,   L,   L,   L,   1,    true,   3,   0,   0,   Single,     L"3",  L"",   0,    0,    0,  0},
        {34,   L,   N,   N,   All,  true,   1,   0,   0,   Single,     L"",   L"",   0,    0,    0,  0},
        {102,  F,   L,   L,   All,  true,   1,   1,   -1,  Composite,  L"*",  L"/",  14,   7,    2,  1},
        {112,  N,   N,   N,   All,  false,  0,   0,   0,   Composite,  L"/",  L"",   13,   7,    1,  1},
        {113,  N,   N,   N,   All,  false,  0,   0,   0,   Composite,  L"/",  L"2",  13,   7,    1,  2},
        {115,  N,   N,   N,   All,  false,  0,   0,   0,   Composite,  L"/",  L"3",  13,   7,    1,  3},
        {114,  N,   N,   N,   All,  false,  0,   0,   0,   Composite,  L"/",  L"3",  19,   7,    1,  3},
        {101,  M,   N,   N,   All,  false,  0,   0,   0,   Composite,  L"*",  L"2",  19,   7,    1,  0},
        {105,  N,   N,   N,   All,  false,  0,   0,   0,   Composite,  L"*",  L"/",  14,   17,   2,  0},
        {106,  N,   N,   N,   All,  false,  0,   0,   0,   Composite,  L"2",  L"",   7,    0,    1,  0},
        {107,  N,   N,   N,   All,  false,  0,   0,   0,   Composite,  L"3",  L"",   7,    0,    1,  0},
        {108,  N,   N,   N,   All,  false,  0,   0,   0,   Composite,  L"2",  L"",   9,    0,    1,  0},
        {109,  N,   N,   N,   All,  false,  0,   0,   0,   Composite,  L"3",  L"",   9,    0,    1,  0},
        {110,  N,   N,   N,   All,  false,  0,   0,   0,   Composite,  L"4",  L"",   9,    0,    1,  0},
        {111,  N,   N,   N,   All,  false,  0,   0,   0,   Composite,  L"/",  L"",   18,   109,  1,  0},
        {103,  N,   N,   N,   All,  false,  0,   0,   0,   Kept,       L"",   L"",   0,    0,    0,  0},
        {104,  N,   N,   N,   All,  false,  0,   0,   0,   Kept,       L"",   L"",   0,    0,    0,  0},
    };
};
// clang-format on

// The row of an id, or null for an id the table does not know.
constexpr const QuantityType* Find(int id) {
    for (const QuantityType& q : Rows::kTable)
        if (q.id == id) return &q;
    return nullptr;
}

// Single types (ids up to 100) are the ones whose records callers add and modify.
constexpr const QuantityType* FindSingle(int id) { return id <= 100 ? Find(id) : nullptr; }

// c^p for the small powers of the table, by repeated multiplication (stored factors were formed
// so, and converted values must not change in the last digit).
constexpr double Power(double c, int p) {
    double r = 1.0;
    for (int i = 0; i < p; ++i) r *= c;
    return r;
}

// The factor c1^p1 * c2^p2 * c3^p3 of a row, as the product of the positive powers and that of the
// negative ones; the caller decides what a zero divisor means.
struct Factor {
    double numerator = 1.0;
    double divisor = 1.0;
};
constexpr Factor FactorOf(const QuantityType& q, double c1, double c2, double c3) {
    Factor f;
    const double c[3] = {c1, c2, c3};
    const int p[3] = {q.power1, q.power2, q.power3};
    for (int i = 0; i < 3; ++i) {
        if (p[i] > 0) f.numerator *= Power(c[i], p[i]);
        if (p[i] < 0) f.divisor *= Power(c[i], -p[i]);
    }
    return f;
}

}  // namespace quillon::munit::quantities
