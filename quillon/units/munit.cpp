#include "quillon/units/munit.h"

#include <algorithm>

#include "quillon/units/munit_quantities.h"

namespace quillon::munit {
namespace {

// A fixed text field ends at its first null character or at its end.
template <std::size_t N>
std::wstring fieldText(const wchar_t (&field)[N]) {
    std::size_t n = 0;
    while (n < N && field[n] != L'\0') ++n;
    return std::wstring(field, n);
}

}  // namespace

MUnit::MUnit() : init_(GetMInit()) {}

// --- Catalogue pass-throughs ---

double MUnit::GetCoeffUnit(MUNIT_T kind, const std::wstring& name) const {
    return init_ ? init_->GetCoeffUnit(kind, name) : 0.0;
}

int MUnit::GetTotalUnit(MUNIT_T kind) const { return init_ ? init_->GetTotalUnit(kind) : 0; }

Unit MUnit::GetUnit(MUNIT_T kind, int index) const {
    return init_ ? init_->GetUnit(kind, index) : Unit{};
}

int MUnit::EraseUnit(MUNIT_T kind, int index) { return init_ ? init_->EraseUnit(kind, index) : 1; }

void MUnit::SetUnit(MUNIT_T kind, const Unit& unit) {
    if (init_) init_->SetUnit(kind, unit);
}

std::wstring MUnit::GetNameUnit(MUNIT_T kind, int index) const { return GetUnit(kind, index).name; }

// --- The type table ---

int MUnit::GetTypeMunit(MUNIT_TYPES id, MUNIT_T& k1, MUNIT_T& k2, MUNIT_T& k3) {
    const quantities::QuantityType* q = quantities::FindSingle(id);
    k1 = q ? q->kind1 : MUNIT_NONE;
    k2 = q ? q->kind2 : MUNIT_NONE;
    k3 = q ? q->kind3 : MUNIT_NONE;
    return q ? 0 : 1;
}

short MUnit::GetTypesCount(const TypeUnit& type) {
    const quantities::QuantityType* q = quantities::Find(type.id);
    if (q && q->shownUnits != quantities::kCountKinds) return static_cast<short>(q->shownUnits);
    short count = 1;
    if (type.kind2 != MUNIT_NONE) ++count;
    if (type.kind3 != MUNIT_NONE) ++count;
    return count;
}

TypeUnit* MUnit::FindRecord(TypeUnitTable& table, int id) {
    const auto it =
        std::find_if(table.begin(), table.end(), [id](const TypeUnit& t) { return t.id == id; });
    return it == table.end() ? nullptr : &*it;
}

const TypeUnit* MUnit::FindType(MUNIT_TYPES id) { return FindRecord(GlobU(), id); }

int MUnit::GetTypeUnit(MUNIT_TYPES id, TypeUnit& out) const {
    const TypeUnit* found = FindRecord(GlobU(), id);
    out = found ? *found : TypeUnit{};
    return found ? 0 : 1;
}

TypeUnit MUnit::GetTypeUnit(MUNIT_TYPES id) const {
    TypeUnit out;
    GetTypeUnit(id, out);
    return out;
}

int MUnit::AddRecord(TypeUnitTable& table, const TypeUnit& type) const {
    if (type.id > 100) return 1;
    if (CorrectQuantity(type.id, type.kind1, type.kind2, type.kind3, type.unit1, type.unit2,
                        type.unit3) != M_SUCCESS) {
        return 1;
    }
    if (FindRecord(table, type.id)) return 1;
    table.push_back(type);
    return 0;
}

int MUnit::SetTypeUnit(const TypeUnit& type) { return AddRecord(GlobU(), type); }

TypeUnit MUnit::BuildRecord(MUNIT_TYPES id, int precision, const std::wstring& unit1,
                            const std::wstring& unit2, const std::wstring& unit3, bool exponential,
                            const std::wstring& extraText) const {
    TypeUnit type;
    type.id = id;
    GetTypeMunit(id, type.kind1, type.kind2, type.kind3);
    type.unit1 = unit1;
    type.unit2 = unit2;
    type.unit3 = unit3;
    type.precision = precision;
    type.exponential = exponential;
    type.extraText = extraText;
    return type;
}

int MUnit::SetTypeUnit(MUNIT_TYPES id, int precision, const std::wstring& unit1,
                       const std::wstring& unit2, const std::wstring& unit3, bool exponential,
                       const std::wstring& extraText) {
    MUNIT_T k1, k2, k3;
    if (id > 100 || GetTypeMunit(id, k1, k2, k3) != 0) return 1;
    return AddRecord(GlobU(),
                     BuildRecord(id, precision, unit1, unit2, unit3, exponential, extraText));
}

int MUnit::ModifyTypeUnit(const TypeUnit& type) {
    MUNIT_T k1, k2, k3;
    if (type.id > 100 || GetTypeMunit(type.id, k1, k2, k3) != 0) return 1;
    if (CorrectQuantity(type.id, type.kind1, type.kind2, type.kind3, type.unit1, type.unit2,
                        type.unit3) != M_SUCCESS) {
        return 1;
    }
    TypeUnit* existing = FindRecord(GlobU(), type.id);
    if (!existing) return 1;
    *existing = type;
    return 0;
}

int MUnit::ModifyTypeUnit(MUNIT_TYPES id, int precision, const std::wstring& unit1,
                          const std::wstring& unit2, const std::wstring& unit3, bool exponential,
                          const std::wstring& extraText) {
    return ModifyTypeUnit(BuildRecord(id, precision, unit1, unit2, unit3, exponential, extraText));
}

M_RESULT MUnit::CorrectQuantity(MUNIT_TYPES id, MUNIT_T kind1, MUNIT_T kind2, MUNIT_T kind3,
                                const std::wstring& unit1, const std::wstring& unit2,
                                const std::wstring& unit3) const {
    if (init_ && !init_->GetCorrectQuantity()) return M_SUCCESS;
    if (id >= 1 && id <= 6) return M_SUCCESS;
    if (!init_) return M_FAILURE;  // nothing to validate against

    // Kept on purpose: only unit1 is validated. The searches for unit2 and unit3 shared the
    // found-flag of unit1 and so could never refuse; stored tables with a loose second or third
    // unit load as they always did (such a unit converts with the factor GetCoeffUnit gives).
    (void)kind3;
    (void)unit2;
    (void)unit3;
    bool found = false;
    for (int i = 0, n = init_->GetTotalUnit(kind1); i < n && !found; ++i) {
        found = init_->GetUnit(kind1, i).name == unit1;
    }
    if (!found) return M_FAILURE;

    // The kinds the type prescribes: the first, and the second where it has one.
    const quantities::QuantityType* q = quantities::FindSingle(id);
    const bool kindsMatch = q && kind1 == q->kind1 && (q->kind2 == MUNIT_NONE || kind2 == q->kind2);
    return kindsMatch ? M_SUCCESS : M_FAILURE;
}

std::wstring MUnit::GetFullNameUnit(MUNIT_TYPES id, bool withBrackets) const {
    std::wstring name = GetTypeUnit(id).fullName;
    if (withBrackets && !name.empty()) {
        const UNITDIC_UNITSNAMES* block = UNITDIC_UnitsNames();
        name = fieldText(block->openBracket) + name + fieldText(block->closeBracket);
    }
    return name;
}

}  // namespace quillon::munit
