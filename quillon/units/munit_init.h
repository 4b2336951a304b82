// The base-unit catalogue (MInitUnit), its process-wide singleton, and the process-wide table of
// quantity types.
//
// Ownership: InitMInit creates the singleton with new and DeleteMInit deletes whatever is
// installed, so a catalogue handed to SetMInit must come from new if DeleteMInit will run; SetMInit
// itself never deletes the catalogue it replaces. The type table is either the library's built-in
// one or a table that a caller installs with SetGlobU and keeps owning (several modules may share
// it). None of this is locked: the catalogue is used from the application's one thread.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "quillon/units/munit_types.h"

namespace quillon::munit {

class MInitUnit {
public:
    MInitUnit() = default;
    virtual ~MInitUnit() = default;

    // Factor of the first unit of `kind` named exactly `name` (case-sensitive, only inside that
    // kind's list). Not found: 0.0 when CorrectQuantity is set, 1.0 when it is not. A kind outside
    // 1-4: 0.0.
    double GetCoeffUnit(MUNIT_T kind, const std::wstring& name) const;
    // Number of units of `kind`; 0 for a kind outside 1-4.
    int GetTotalUnit(MUNIT_T kind) const;
    // Copy of the index-th unit of `kind`; a default Unit (empty name, factor 0) when there is
    // none.
    Unit GetUnit(MUNIT_T kind, int index) const;
    // Removes the index-th unit of `kind`: 0 done, 1 failed (no such index), 2 kind outside 1-4.
    int EraseUnit(MUNIT_T kind, int index);
    // Appends `unit` to the list of `kind` and to every later list (a length unit reaches all four
    // lists, an angle unit only the angle list); other kinds are ignored.
    void SetUnit(MUNIT_T kind, const Unit& unit);
    // Appends the default units of the four kinds.
    void InitDefaultUnits();

    bool GetCorrectQuantity() const { return correctQuantity_; }
    void SetCorrectQuantity(bool on) { correctQuantity_ = on; }
    bool GetValidateFloats() const { return validateFloats_; }
    void SetValidateFloats(bool on) { validateFloats_ = on; }
    bool GetRoundFormattedValues() const { return roundFormattedValues_; }
    void SetRoundFormattedValues(bool on) { roundFormattedValues_ = on; }

private:
    const std::vector<Unit>* list(MUNIT_T kind) const;
    std::vector<Unit>* list(MUNIT_T kind);

    bool correctQuantity_ = true;
    bool validateFloats_ = false;  // kept for the edit controls only
    bool roundFormattedValues_ = false;
    std::array<std::vector<Unit>, 4> lists_;  // length, force, mass, angle
};

// Creates, installs and fills the singleton (0); 1 without any change when one exists already.
int InitMInit(bool correctQuantity);
MInitUnit* GetMInit();
// Installs `init` (may be null) without deleting the catalogue installed before.
void SetMInit(MInitUnit* init);
// Deletes the installed catalogue, if any, and resets the singleton to null.
void DeleteMInit();

// The installed type table, else the built-in one.
TypeUnitTable& GlobU();
// Installs `table` (null: back to the built-in table) and returns the table in effect before.
TypeUnitTable* SetGlobU(TypeUnitTable* table);

}  // namespace quillon::munit
