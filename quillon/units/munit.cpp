#include "quillon/units/munit.h"

#include <algorithm>

namespace quillon::munit {
namespace {

TypeUnit* findRecord(TypeUnitTable& table, MUNIT_TYPES id) {
    const auto it =
        std::find_if(table.begin(), table.end(), [id](const TypeUnit& t) { return t.id == id; });
    return it == table.end() ? nullptr : &*it;
}

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
    k1 = k2 = k3 = MUNIT_NONE;
    switch (id) {
        case 1:
        case 2:
        case 3:
        case 4:
        case 5:
        case 6:
            return 0;
        case 7:
        case 8:
        case 9:
        case 10:
        case 11:
        case 16:
        case 22:
        case 25:
        case 30:
        case 34:
            k1 = MUNIT_LENGTH;
            return 0;
        case 12:
        case 21:
        case 31:
            k1 = k2 = MUNIT_LENGTH;
            return 0;
        case 33:
            k1 = k2 = k3 = MUNIT_LENGTH;
            return 0;
        case 13:
        case 18:
            k1 = MUNIT_FORCE;
            return 0;
        case 14:
        case 15:
        case 23:
        case 24:
        case 27:
        case 28:
        case 29:
            k1 = MUNIT_FORCE;
            k2 = MUNIT_LENGTH;
            return 0;
        case 17:
            k1 = MUNIT_ANGLE;
            return 0;
        case 19:
            k1 = MUNIT_MASS;
            return 0;
        case 26:
        case 32:
            k1 = MUNIT_MASS;
            k2 = MUNIT_LENGTH;
            return 0;
        case 20:
            k1 = MUNIT_FIFTH;
            return 0;
        default:
            return 1;
    }
}

short MUnit::GetTypesCount(const TypeUnit& type) {
    if (type.id >= 1 && type.id <= 6) return 0;
    // Area and volume show one unit with its exponent, although they name two or three factors.
    if (type.id == 12 || type.id == 31 || type.id == 33) return 1;
    short count = 1;
    if (type.kind2 != MUNIT_NONE) ++count;
    if (type.kind3 != MUNIT_NONE) ++count;
    return count;
}

const TypeUnit* MUnit::FindType(MUNIT_TYPES id) { return findRecord(GlobU(), id); }

int MUnit::GetTypeUnit(MUNIT_TYPES id, TypeUnit& out) const {
    const TypeUnit* found = findRecord(GlobU(), id);
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
    if (findRecord(table, type.id)) return 1;
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
    TypeUnit* existing = findRecord(GlobU(), type.id);
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

    bool kindsMatch = false;
    switch (id) {
        case 7:
        case 8:
        case 9:
        case 10:
        case 11:
        case 16:
        case 22:
        case 25:
        case 30:
        case 34:
            kindsMatch = kind1 == MUNIT_LENGTH;
            break;
        case 13:
        case 18:
            kindsMatch = kind1 == MUNIT_FORCE;
            break;
        case 14:
        case 15:
        case 23:
        case 24:
        case 27:
        case 28:
        case 29:
            kindsMatch = kind1 == MUNIT_FORCE && kind2 == MUNIT_LENGTH;
            break;
        case 17:
            kindsMatch = kind1 == MUNIT_ANGLE;
            break;
        case 19:
            kindsMatch = kind1 == MUNIT_MASS;
            break;
        case 20:
            kindsMatch = kind1 == MUNIT_FIFTH;
            break;
        case 12:
        case 21:
        case 31:
        case 33:
            kindsMatch = kind1 == MUNIT_LENGTH && kind2 == MUNIT_LENGTH;
            break;
        case 26:
        case 32:
            kindsMatch = kind1 == MUNIT_MASS && kind2 == MUNIT_LENGTH;
            break;
        default:
            kindsMatch = false;
    }
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
