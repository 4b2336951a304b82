// Units: every physical quantity is held in SI (metre, newton, kilogram, radian) and shown in the
// unit the user chose. This header gives the whole unit catalogue of quillon::munit:
//   - the base-unit catalogue MInitUnit (four lists: length, force, mass, angle) and its
//     process-wide singleton (munit_init.h);
//   - the process-wide quantity-type table of TypeUnit records keyed by MUNIT_TYPES: chosen units,
//     decimals, notation, combined factor to SI and displayed name (munit_types.h);
//   - the facade MUnit, through which callers convert, format, compare as displayed, maintain the
//     table and load or store it as a unit file;
//   - the unit-name translation hook and the default names block (unit_dictionary.h).
//
// Conventions: results are 0 for success and 1 for failure (M_RESULT); a conversion direction of 0
// goes to SI, any other value from SI. Factors multiply a value in the user's unit into SI. Names
// compare case-sensitively, and only inside the list of their kind ("T" is a force, "t" a mass).
// Displayed texts use the locale's decimal separator only where the caller asks for it; files
// always hold ".". InitMInit must run before the first MUnit is made: an MUnit keeps the catalogue
// it found at construction (null before InitMInit) and must not be used after DeleteMInit. All
// state is process-wide and unguarded: use it from one thread.
#pragma once

#include <filesystem>
#include <string>

#include "quillon/platform/archive.h"
#include "quillon/units/munit_init.h"
#include "quillon/units/munit_types.h"
#include "quillon/units/unit_dictionary.h"

namespace quillon::munit {

class MUnit {
public:
    MUnit();
    virtual ~MUnit() = default;

    // --- Catalogue pass-throughs (no catalogue: factor 0.0, no units, EraseUnit 1) ---
    double GetCoeffUnit(MUNIT_T kind, const std::wstring& name) const;
    int GetTotalUnit(MUNIT_T kind) const;
    Unit GetUnit(MUNIT_T kind, int index) const;
    int EraseUnit(MUNIT_T kind, int index);
    void SetUnit(MUNIT_T kind, const Unit& unit);
    std::wstring GetNameUnit(MUNIT_T kind, int index) const;

    // --- The type table ---
    // Fixed factor kinds of a single type: 0, or 1 with all three set to 0 for an unknown id.
    static int GetTypeMunit(MUNIT_TYPES id, MUNIT_T& k1, MUNIT_T& k2, MUNIT_T& k3);
    // Number of unit factors shown in the type's name.
    static short GetTypesCount(const TypeUnit& type);
    // First record of `id` into `out` (0); 1 and a default record (id -1) when there is none.
    int GetTypeUnit(MUNIT_TYPES id, TypeUnit& out) const;
    TypeUnit GetTypeUnit(MUNIT_TYPES id) const;
    // Appends a copy of `type` (0); 1 if its id is above 100, fails CorrectQuantity or is present.
    // The kinds are taken from the record as given (GetTypeMunit is not asked).
    int SetTypeUnit(const TypeUnit& type);
    // Builds a record with the kinds of GetTypeMunit and appends it (0); 1 if the id is above 100
    // or unknown, fails CorrectQuantity or is present. Coefficient and name wait for UpDateUnit.
    int SetTypeUnit(MUNIT_TYPES id, int precision, const std::wstring& unit1,
                    const std::wstring& unit2, const std::wstring& unit3, bool exponential,
                    const std::wstring& extraText = std::wstring());
    // Overwrites every field of the existing record of the id (0); 1 if the id is above 100,
    // unknown to GetTypeMunit, fails CorrectQuantity or is absent.
    int ModifyTypeUnit(const TypeUnit& type);
    int ModifyTypeUnit(MUNIT_TYPES id, int precision, const std::wstring& unit1,
                       const std::wstring& unit2, const std::wstring& unit3, bool exponential,
                       const std::wstring& extraText = std::wstring());
    // Validates a record against the catalogue (see the source for the rule): M_SUCCESS or
    // M_FAILURE. Only unit1 is looked up; unit2 and unit3 are never refused.
    M_RESULT CorrectQuantity(MUNIT_TYPES id, MUNIT_T kind1, MUNIT_T kind2, MUNIT_T kind3,
                             const std::wstring& unit1, const std::wstring& unit2,
                             const std::wstring& unit3) const;
    // The record's displayed name (empty when absent), optionally in the names block's brackets.
    std::wstring GetFullNameUnit(MUNIT_TYPES id, bool withBrackets) const;
    // Displayed name of a record: each shown unit (translated in dictionary kind-1) followed by its
    // joining text a, b, c; the whole passed through dictionary 6.
    static std::wstring GenUnitFullName(const TypeUnit& type, const std::wstring& a,
                                        const std::wstring& b, const std::wstring& c);
    // Recomputes factors and names of the whole table, composite types included. 0; 1 (nothing
    // done) without a catalogue. A composite type whose length factor is 0 keeps its coefficient;
    // a single type divides regardless (a second unit without a factor gives an infinite one).
    int UpDateUnit();

    // --- Conversion and display ---
    // Always 0. `out` is left untouched when the id is absent, or from SI when its factor is 0:
    // callers pre-set it (kept: the edit controls depend on it).
    int CnvUnitSI(double& out, MUNIT_TYPES id, double value, BASIC_UNIT dir) const;
    // Converts with units typed as text (e.g. L"kN*m"); 0, or 1 when a factor is missing, the
    // type is not handled or a divisor is 0. `out` is 0 on failure.
    int CnvUnit(double& out, MUNIT_TYPES id, const std::wstring& unitText, double value,
                BASIC_UNIT dir) const;
    std::wstring CnvUnitSIToText(MUNIT_TYPES id, double value, BASIC_UNIT dir,
                                 SEPARATOR_DEC_UNIT sep) const;
    int CnvUnitSIToDouble(double& out, MUNIT_TYPES id, const wchar_t* text, BASIC_UNIT dir) const;
    std::wstring FormatUnit(MUNIT_TYPES id, double value) const;
    // The SI value rounded to what the user sees.
    double applyUnit(double value, MUNIT_TYPES id) const;

    // --- Comparison as displayed (a and b in SI) ---
    bool eqUnit(double a, double b, MUNIT_TYPES id) const;
    int cmpUnit(double a, double b, MUNIT_TYPES id) const;
    bool gtUnit(double a, double b, MUNIT_TYPES id) const;
    bool gtEqUnit(double a, double b, MUNIT_TYPES id) const;
    bool lsUnit(double a, double b, MUNIT_TYPES id) const;
    bool lsEqUnit(double a, double b, MUNIT_TYPES id) const;

    // --- Decimal separator ---
    // The locale's decimal separator; empty when it is unknown or longer than 11 characters.
    static std::wstring GetDecimalSep();
    static std::wstring CnvSeparator(const wchar_t* text, SEPARATOR_DEC_UNIT sep);
    static void CnvSeparatorEx(std::wstring& text, SEPARATOR_DEC_UNIT sep);

    // --- Unit texts: the names before the first "*", "/" or blank, between the first and second
    // separator, and after the second; digits are skipped ("m2" gives "m") ---
    static std::wstring GetNameUnit1(const std::wstring& unitText);
    static std::wstring GetNameUnit2(const std::wstring& unitText);
    static std::wstring GetNameUnit3(const std::wstring& unitText);

    // --- Unit file ---
    // Replaces the type table by the file's records; false (table unchanged) on any failure.
    bool InitFromFile(const std::filesystem::path& path);
    // Writes the table as a unit file of version 8; false on any failure.
    bool WriteToFile(const std::filesystem::path& path);
    // Stores or loads the table. Loading reads every record before the table is touched; archive
    // errors pass (a version above 8: ArchiveException with cause badSchema).
    void Serialize(Archive& ar);

private:
    double GetCoefUnit1(MUNIT_TYPES id, const std::wstring& unitText) const;
    double GetCoefUnit2(MUNIT_TYPES id, const std::wstring& unitText) const;
    double GetCoefUnit3(MUNIT_TYPES id, const std::wstring& unitText) const;
    void UpDataSingleUnit();
    void UpdateComposites();
    // The first record of `id` in the table in effect, or null; no copy (conversions run often).
    static const TypeUnit* FindType(MUNIT_TYPES id);
    // The first record of `id` in `table`, or null.
    static TypeUnit* FindRecord(TypeUnitTable& table, int id);
    // Validates `type` and appends it to `table` unless its id is present: 0 or 1.
    int AddRecord(TypeUnitTable& table, const TypeUnit& type) const;
    TypeUnit BuildRecord(MUNIT_TYPES id, int precision, const std::wstring& unit1,
                         const std::wstring& unit2, const std::wstring& unit3, bool exponential,
                         const std::wstring& extraText) const;

    MInitUnit* init_;  // the catalogue found at construction; not owned
};

}  // namespace quillon::munit
