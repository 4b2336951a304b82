// Derived fields of the type table: displayed names and combined factors, for the single types from
// the catalogue and for the composite types from the records of their source types.
#include <algorithm>

#include "quillon/units/munit.h"

namespace quillon::munit {
namespace {

TypeUnit* findFirst(TypeUnitTable& table, int id) {
    const auto it =
        std::find_if(table.begin(), table.end(), [id](const TypeUnit& t) { return t.id == id; });
    return it == table.end() ? nullptr : &*it;
}

// How a single type builds its name (joining texts after the first and second unit) and its
// factor: c1^p1 * c2^p2 (p2 may be negative, 0 when the second unit plays no part).
struct SingleShape {
    int id;
    const wchar_t* a;
    const wchar_t* b;
    int p1;
    int p2;
};

// In the order in which the table is refreshed.
constexpr SingleShape kSingleShapes[] = {
    {7, L"", L"", 1, 0},     {8, L"", L"", 1, 0},     {34, L"", L"", 1, 0},
    {9, L"", L"", 1, 0},     {10, L"", L"", 1, 0},    {11, L"", L"", 1, 0},
    {12, L"2", L"", 2, 0},   {31, L"2", L"", 2, 0},   {33, L"3", L"", 3, 0},
    {30, L"4", L"", 4, 0},   {13, L"", L"", 1, 0},    {16, L"", L"", 1, 0},
    {17, L"", L"", 1, 0},    {18, L"", L"", 1, 0},    {19, L"", L"", 1, 0},
    {20, L"", L"", 1, 0},    {22, L"", L"", 1, 0},    {14, L"*", L"", 1, 1},
    {15, L"/", L"2", 1, -2}, {27, L"/", L"2", 1, -2}, {28, L"/", L"", 1, -1},
    {29, L"/", L"2", 1, -2}, {24, L"/", L"2", 1, -2}, {23, L"/", L"3", 1, -3},
    {32, L"/", L"2", 1, -2}, {26, L"/", L"3", 1, -3}, {21, L"2/", L"", 2, -1},
};

// A composite type: its sources, how many units of the first source it shows, its joining texts,
// and the power of the second source's length by which the first source's factors are divided
// (0: the name alone is refreshed).
struct CompositeShape {
    int id;
    int source1;
    int source2;  // 0: none
    int unitsOfSource1;
    const wchar_t* a;
    const wchar_t* b;
    int lengthPower;
};

// In the order in which they are refreshed: 111 shows the name of 109, refreshed just before.
constexpr CompositeShape kCompositeShapes[] = {
    {102, 14, 7, 2, L"*", L"/", 1},  {112, 13, 7, 1, L"/", L"", 1},  {113, 13, 7, 1, L"/", L"2", 2},
    {115, 13, 7, 1, L"/", L"3", 3},  {114, 19, 7, 1, L"/", L"3", 3}, {101, 19, 7, 1, L"*", L"2", 0},
    {105, 14, 17, 2, L"*", L"/", 0}, {106, 7, 0, 1, L"2", L"", 0},   {107, 7, 0, 1, L"3", L"", 0},
    {108, 9, 0, 1, L"2", L"", 0},    {109, 9, 0, 1, L"3", L"", 0},   {110, 9, 0, 1, L"4", L"", 0},
    {111, 18, 109, 1, L"/", L"", 0},
};

double power(double c, int p) {
    double r = 1.0;
    for (int i = 0; i < p; ++i) r *= c;
    return r;
}

}  // namespace

std::wstring MUnit::GenUnitFullName(const TypeUnit& type, const std::wstring& a,
                                    const std::wstring& b, const std::wstring& c) {
    const short count = GetTypesCount(type);
    std::wstring name;
    if (count > 0) {
        name +=
            UNITDIC_GetUnitNameTrans(static_cast<UNITDIC_TYPE>(type.kind1 - 1), type.unit1.c_str());
        name += a;
    }
    if (count > 1) {
        name +=
            UNITDIC_GetUnitNameTrans(static_cast<UNITDIC_TYPE>(type.kind2 - 1), type.unit2.c_str());
        name += b;
    }
    if (count > 2) {
        name +=
            UNITDIC_GetUnitNameTrans(static_cast<UNITDIC_TYPE>(type.kind3 - 1), type.unit3.c_str());
        name += c;
    }
    return UNITDIC_GetUnitNameTrans(UNITDIC_FULLNAME, name.c_str());
}

void MUnit::UpDataSingleUnit() {
    // The unitless types: factor 1, no decimals for 1-3.
    for (int id = 1; id <= 3; ++id) {
        TypeUnit t;
        if (GetTypeUnit(static_cast<MUNIT_TYPES>(id), t) != 0) {
            t = BuildRecord(static_cast<MUNIT_TYPES>(id), 0, L"", L"", L"", false, L"");
            t.coefficient = 1.0;
            SetTypeUnit(t);
        } else {
            t.precision = 0;
            t.coefficient = 1.0;
            ModifyTypeUnit(t);
        }
    }
    {
        TypeUnit t;
        if (GetTypeUnit(MUNIT_TYPE_4, t) != 0) {
            t = BuildRecord(MUNIT_TYPE_4, 2, L"", L"", L"", false, L"");
            t.coefficient = 1.0;
            t.fullName = GenUnitFullName(t, L"", L"", L"");
            SetTypeUnit(t);
        } else {
            t.coefficient = 1.0;
            t.fullName = GenUnitFullName(t, L"", L"", L"");
            ModifyTypeUnit(t);
        }
    }
    for (const SingleShape& shape : kSingleShapes) {
        TypeUnit t;
        if (GetTypeUnit(static_cast<MUNIT_TYPES>(shape.id), t) != 0) continue;
        const double c1 = GetCoeffUnit(t.kind1, t.unit1);
        double coefficient = power(c1, shape.p1);
        if (shape.p2 > 0) {
            coefficient *= power(GetCoeffUnit(t.kind2, t.unit2), shape.p2);
        } else if (shape.p2 < 0) {
            // Unguarded, unlike the composite types: a loose second unit (accepted, since only the
            // first one is validated) has factor 0 and makes the coefficient infinite.
            coefficient /= power(GetCoeffUnit(t.kind2, t.unit2), -shape.p2);
        }
        t.coefficient = coefficient;
        t.fullName = GenUnitFullName(t, shape.a, shape.b, L"");
        ModifyTypeUnit(t);  // refused (and the record left as it was) when it no longer validates
    }
}

void MUnit::UpdateComposites() {
    TypeUnitTable& table = GlobU();
    for (const CompositeShape& shape : kCompositeShapes) {
        TypeUnit* target = findFirst(table, shape.id);
        const TypeUnit* s1 = findFirst(table, shape.source1);
        const TypeUnit* s2 = shape.source2 ? findFirst(table, shape.source2) : nullptr;
        if (!target || !s1 || (shape.source2 && !s2)) continue;

        // The shown units: the first one or two of the first source, then the second source's.
        TypeUnit shown;
        shown.id = target->id;
        shown.kind1 = s1->kind1;
        shown.unit1 = s1->unit1;
        double numerator = GetCoeffUnit(s1->kind1, s1->unit1);
        MUNIT_T* nextKind = &shown.kind2;
        std::wstring* nextUnit = &shown.unit2;
        if (shape.unitsOfSource1 == 2) {
            shown.kind2 = s1->kind2;
            shown.unit2 = s1->unit2;
            numerator *= GetCoeffUnit(s1->kind2, s1->unit2);
            nextKind = &shown.kind3;
            nextUnit = &shown.unit3;
        }
        if (s2 && s2->id > 100) {
            // A composite source has no unit of its own: its displayed name stands for it.
            *nextKind = MUNIT_LENGTH;
            *nextUnit = s2->fullName;
        } else if (s2) {
            *nextKind = s2->kind1;
            *nextUnit = s2->unit1;
        }
        target->fullName = GenUnitFullName(shown, shape.a, shape.b, L"");

        if (shape.lengthPower > 0) {
            // A length without a factor leaves the old coefficient.
            const double divisor = power(GetCoeffUnit(s2->kind1, s2->unit1), shape.lengthPower);
            if (divisor != 0.0) target->coefficient = numerator / divisor;
        }
    }
}

int MUnit::UpDateUnit() {
    if (!init_) return 1;
    UpDataSingleUnit();
    UpdateComposites();
    return 0;
}

}  // namespace quillon::munit
