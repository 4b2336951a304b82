// Derived fields of the type table: displayed names and combined factors, for the single types from
// the catalogue and for the composite types from the records of their source types.
#include "quillon/units/munit.h"
#include "quillon/units/munit_quantities.h"

namespace quillon::munit {

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
    for (const quantities::QuantityType& q : quantities::Rows::kTable) {
        const auto id = static_cast<MUNIT_TYPES>(q.id);
        TypeUnit t;
        const bool present = GetTypeUnit(id, t) == 0;
        if (q.refresh == quantities::Refresh::Unitless) {
            // Factor 1, no decimals; added when missing.
            if (!present) {
                t = BuildRecord(id, 0, L"", L"", L"", false, L"");
                t.coefficient = 1.0;
                SetTypeUnit(t);
            } else {
                t.precision = 0;
                t.coefficient = 1.0;
                ModifyTypeUnit(t);
            }
        } else if (q.refresh == quantities::Refresh::UnitlessNamed) {
            // Factor 1 and a regenerated name; added with two decimals when missing.
            if (!present) t = BuildRecord(id, 2, L"", L"", L"", false, L"");
            t.coefficient = 1.0;
            t.fullName = GenUnitFullName(t, L"", L"", L"");
            if (!present)
                SetTypeUnit(t);
            else
                ModifyTypeUnit(t);
        } else if (q.refresh == quantities::Refresh::Single && present) {
            // Unguarded, unlike the composite types: a loose second unit (accepted, since only the
            // first one is validated) has factor 0 and makes a divided coefficient infinite.
            const quantities::Factor f =
                quantities::FactorOf(q, GetCoeffUnit(t.kind1, t.unit1),
                                     q.power2 != 0 ? GetCoeffUnit(t.kind2, t.unit2) : 0.0, 0.0);
            t.coefficient = f.numerator / f.divisor;
            t.fullName = GenUnitFullName(t, q.join1, q.join2, L"");
            ModifyTypeUnit(
                t);  // refused (and the record left as it was) when it no longer validates
        }
    }
}

void MUnit::UpdateComposites() {
    TypeUnitTable& table = GlobU();
    for (const quantities::QuantityType& q : quantities::Rows::kTable) {
        if (q.refresh != quantities::Refresh::Composite) continue;
        TypeUnit* target = FindRecord(table, q.id);
        const TypeUnit* s1 = FindRecord(table, q.source1);
        const TypeUnit* s2 = q.source2 ? FindRecord(table, q.source2) : nullptr;
        if (!target || !s1 || (q.source2 && !s2)) continue;

        // The shown units: the first one or two of the first source, then the second source's.
        TypeUnit shown;
        shown.id = target->id;
        shown.kind1 = s1->kind1;
        shown.unit1 = s1->unit1;
        double numerator = GetCoeffUnit(s1->kind1, s1->unit1);
        MUNIT_T* nextKind = &shown.kind2;
        std::wstring* nextUnit = &shown.unit2;
        if (q.unitsOfSource1 == 2) {
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
        target->fullName = GenUnitFullName(shown, q.join1, q.join2, L"");

        if (q.lengthPower > 0) {
            // A length without a factor leaves the old coefficient.
            const double divisor =
                quantities::Power(GetCoeffUnit(s2->kind1, s2->unit1), q.lengthPower);
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
