#include "quillon/units/munit_init.h"

namespace quillon::munit {
namespace {

MInitUnit* g_minit = nullptr;
TypeUnitTable* g_installedTable = nullptr;

TypeUnitTable& builtInTable() {
    static TypeUnitTable table;
    return table;
}

// Whether `index` names an entry of `units`.
bool holds(const std::vector<Unit>& units, int index) {
    return index >= 0 && static_cast<std::size_t>(index) < units.size();
}

}  // namespace

const std::vector<Unit>* MInitUnit::list(MUNIT_T kind) const {
    if (kind < MUNIT_LENGTH || kind > MUNIT_ANGLE) return nullptr;
    return &lists_[static_cast<std::size_t>(kind - MUNIT_LENGTH)];
}

std::vector<Unit>* MInitUnit::list(MUNIT_T kind) {
    if (kind < MUNIT_LENGTH || kind > MUNIT_ANGLE) return nullptr;
    return &lists_[static_cast<std::size_t>(kind - MUNIT_LENGTH)];
}

double MInitUnit::GetCoeffUnit(MUNIT_T kind, const std::wstring& name) const {
    const std::vector<Unit>* units = list(kind);
    if (!units) return 0.0;
    for (const Unit& u : *units) {
        if (u.name == name) return u.coef;
    }
    return correctQuantity_ ? 0.0 : 1.0;
}

int MInitUnit::GetTotalUnit(MUNIT_T kind) const {
    const std::vector<Unit>* units = list(kind);
    return units ? static_cast<int>(units->size()) : 0;
}

Unit MInitUnit::GetUnit(MUNIT_T kind, int index) const {
    const std::vector<Unit>* units = list(kind);
    if (!units || !holds(*units, index)) return Unit{};
    return (*units)[static_cast<std::size_t>(index)];
}

int MInitUnit::EraseUnit(MUNIT_T kind, int index) {
    std::vector<Unit>* units = list(kind);
    if (!units) return 2;
    if (!holds(*units, index)) return 1;
    units->erase(units->begin() + index);
    return 0;
}

void MInitUnit::SetUnit(MUNIT_T kind, const Unit& unit) {
    if (kind < MUNIT_LENGTH || kind > MUNIT_ANGLE) return;
    // Kept on purpose: a unit reaches its own list and every later one, which the units dialog and
    // stored catalogues rely on.
    for (int k = kind; k <= MUNIT_ANGLE; ++k) list(static_cast<MUNIT_T>(k))->push_back(unit);
}

void MInitUnit::InitDefaultUnits() {
    auto& length = lists_[0];
    auto& force = lists_[1];
    auto& mass = lists_[2];
    auto& angle = lists_[3];
    length.push_back({L"cm", 0.01});
    length.push_back({L"ft", 0.3048});
    length.push_back({L"in", 0.0254});
    length.push_back({L"m", 1.0});
    length.push_back({L"mm", 0.001});
    force.push_back({L"MN", 1000000.0});
    force.push_back({L"N", 1.0});
    force.push_back({L"T", 9806.65});
    force.push_back({L"USTons", 8896.446});
    force.push_back({L"daN", 10.0});
    force.push_back({L"kG", 9.80665});
    force.push_back({L"kN", 1000.0});
    force.push_back({L"kip", 4448.2216152605});
    force.push_back({L"lb", 4.4482216152605});
    mass.push_back({L"lb", 0.4535925112041});
    mass.push_back({L"kg", 1.0});
    mass.push_back({L"t", 1000.0});
    mass.push_back({L"ustons", 907.1850224083});
    // The rounded angle factors are kept: stored values and displayed results depend on them.
    angle.push_back({L"Deg", 0.01745329251994});
    angle.push_back({L"Rad", 1.0});
    angle.push_back({L"Grad", 0.01570796326795});
}

int InitMInit(bool correctQuantity) {
    if (g_minit) return 1;
    auto* init = new MInitUnit();
    init->SetCorrectQuantity(correctQuantity);
    SetMInit(init);
    init->InitDefaultUnits();
    return 0;
}

MInitUnit* GetMInit() { return g_minit; }

void SetMInit(MInitUnit* init) { g_minit = init; }

void DeleteMInit() {
    delete g_minit;
    g_minit = nullptr;
}

TypeUnitTable& GlobU() { return g_installedTable ? *g_installedTable : builtInTable(); }

TypeUnitTable* SetGlobU(TypeUnitTable* table) {
    TypeUnitTable* previous = &GlobU();
    g_installedTable = table;
    return previous;
}

}  // namespace quillon::munit
