// Value types of the unit catalogue: the enumerations by which every conversion names its quantity
// and its base units, a base unit, and one row of the quantity-type table.
//
// All enumerations are 32-bit and unscoped, so stored integers and literals convert freely; an
// enumeration with a fixed underlying type holds any 32-bit value, and the operations answer values
// outside the listed ones by their documented failure codes.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace quillon::munit {

// Kind of a base unit. The catalogue keeps a list for kinds 1 to 4 only.
enum MUNIT_T : std::int32_t {
    MUNIT_NONE = 0,
    MUNIT_LENGTH = 1,
    MUNIT_FORCE = 2,
    MUNIT_MASS = 3,
    MUNIT_ANGLE = 4,
    MUNIT_FIFTH = 5,  // a kind without a list: its units always convert with factor 0
};

// Kind of a quantity. 1 to 34 are single types (their factors come from base units), 101 to 115
// composite types refreshed from the records of single types. The comment gives the dimension.
enum MUNIT_TYPES : std::int32_t {
    MUNIT_TYPE_1 = 1,  // 1 to 6: no unit
    MUNIT_TYPE_2 = 2,
    MUNIT_TYPE_3 = 3,
    MUNIT_TYPE_4 = 4,
    MUNIT_TYPE_5 = 5,
    MUNIT_TYPE_6 = 6,
    MUNIT_TYPE_7 = 7,  // length
    MUNIT_TYPE_8 = 8,
    MUNIT_TYPE_9 = 9,
    MUNIT_TYPE_10 = 10,
    MUNIT_TYPE_11 = 11,
    MUNIT_TYPE_12 = 12,    // area
    MUNIT_TYPE_13 = 13,    // force
    MUNIT_TYPE_14 = 14,    // moment (force * length)
    MUNIT_TYPE_15 = 15,    // force per area
    MUNIT_TYPE_16 = 16,    // length
    MUNIT_TYPE_17 = 17,    // angle
    MUNIT_TYPE_18 = 18,    // force
    MUNIT_TYPE_19 = 19,    // mass
    MUNIT_TYPE_20 = 20,    // fifth kind
    MUNIT_TYPE_21 = 21,    // area per length
    MUNIT_TYPE_22 = 22,    // length
    MUNIT_TYPE_23 = 23,    // force per volume
    MUNIT_TYPE_24 = 24,    // force per area
    MUNIT_TYPE_25 = 25,    // length, name and factor kept as stored
    MUNIT_TYPE_26 = 26,    // mass per volume
    MUNIT_TYPE_27 = 27,    // force per area
    MUNIT_TYPE_28 = 28,    // force per length
    MUNIT_TYPE_29 = 29,    // force per area
    MUNIT_TYPE_30 = 30,    // fourth power of length
    MUNIT_TYPE_31 = 31,    // area
    MUNIT_TYPE_32 = 32,    // mass per area
    MUNIT_TYPE_33 = 33,    // volume
    MUNIT_TYPE_34 = 34,    // length
    MUNIT_TYPE_101 = 101,  // mass * length^2 (19, 7)
    MUNIT_TYPE_102 = 102,  // moment per length (14, 7)
    MUNIT_TYPE_103 = 103,
    MUNIT_TYPE_104 = 104,
    MUNIT_TYPE_105 = 105,  // moment per angle (14, 17)
    MUNIT_TYPE_106 = 106,  // length^2 of 7
    MUNIT_TYPE_107 = 107,  // length^3 of 7
    MUNIT_TYPE_108 = 108,  // length^2 of 9
    MUNIT_TYPE_109 = 109,  // length^3 of 9
    MUNIT_TYPE_110 = 110,  // length^4 of 9
    MUNIT_TYPE_111 = 111,  // force per 109 (18, 109)
    MUNIT_TYPE_112 = 112,  // force per length (13, 7)
    MUNIT_TYPE_113 = 113,  // force per area (13, 7)
    MUNIT_TYPE_114 = 114,  // mass per volume (19, 7)
    MUNIT_TYPE_115 = 115,  // force per volume (13, 7)
};

// Result of the catalogue operations.
enum M_RESULT : std::int32_t {
    M_SUCCESS = 0,
    M_FAILURE = 1,
};

// Direction of a conversion: 0 takes a number in the user's unit to SI (multiplies by the factor);
// every other value takes an SI number to the user's unit (divides by it). Callers use 1.
enum BASIC_UNIT : std::int32_t {
    BASIC_TO_SI = 0,
    BASIC_FROM_SI = 1,
};

// Decimal separator replacement: 0 turns "." into the locale's separator (display), 1 turns the
// locale's separator into "." (before parsing).
enum SEPARATOR_DEC_UNIT : std::int32_t {
    SEPARATOR_TO_LOCALE = 0,
    SEPARATOR_TO_POINT = 1,
};

// A base unit: its name (e.g. L"cm") and the factor that turns one of it into SI (0.01).
struct Unit {
    std::wstring name;
    double coef = 0.0;
};

// One row of the quantity-type table. A default record has id -1, which is how "not found" is
// told. `coefficient` and `fullName` are derived from the units by MUnit::UpDateUnit.
struct TypeUnit {
    MUNIT_TYPES id = static_cast<MUNIT_TYPES>(-1);
    MUNIT_T kind1 = MUNIT_NONE;
    MUNIT_T kind2 = MUNIT_NONE;
    MUNIT_T kind3 = MUNIT_NONE;
    std::wstring unit1;
    std::wstring unit2;
    std::wstring unit3;
    std::int32_t precision = 0;  // decimals shown
    bool exponential = false;    // "e" instead of "f" notation
    std::wstring extraText;      // carried through the unit file, no meaning here
    double coefficient = 0.0;    // user's unit to SI; 0 until computed
    std::wstring fullName;       // displayed unit, e.g. L"kN/m2"

    bool operator==(const TypeUnit&) const = default;
};

// The quantity-type table: an ordered sequence searched front to back (the first record of an id
// is the one that counts).
using TypeUnitTable = std::vector<TypeUnit>;

}  // namespace quillon::munit
