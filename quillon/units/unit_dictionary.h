// Unit-name dictionaries: the translation hook through which every displayed unit name passes, and
// the block of default unit names with the bracket texts that enclose names in labels.
//
// There are seven dictionaries. Dictionary kind-1 translates the base-unit names of that kind
// (0 length, 1 force, 2 mass, 3 angle, 4 the fifth kind); dictionary 6 translates whole displayed
// names; dictionary 5 is free for the application. A dictionary is a list of entries of two fixed
// 30-character fields (key, translation) ended by an entry with an empty key; a field holds at most
// 30 characters and ends at its first null character. Lookup compares the whole name exactly; the
// first entry with a matching key decides. Loading the entries from language resources is the
// application's business: it hands them over with UNITDIC_SetDictionary.
//
// Process-wide, unguarded state like the rest of the unit catalogue: use it from one thread.
#pragma once

#include <cstdint>
#include <string>

namespace quillon::munit {

enum UNITDIC_TYPE : std::int32_t {
    UNITDIC_LENGTH = 0,
    UNITDIC_FORCE = 1,
    UNITDIC_MASS = 2,
    UNITDIC_ANGLE = 3,
    UNITDIC_FIFTH = 4,
    UNITDIC_SPARE = 5,
    UNITDIC_FULLNAME = 6,
};

inline constexpr int UNITDIC_COUNT = 7;
inline constexpr int UNITDIC_FIELD = 30;         // characters of a key or a translation
inline constexpr int UNITDIC_NAMES = 21;         // default unit names in the names block
inline constexpr int UNITDIC_BRACKET_FIELD = 5;  // characters of a bracket text

struct UNITDIC_ENTRY {
    wchar_t key[UNITDIC_FIELD];
    wchar_t translation[UNITDIC_FIELD];
};

// The default unit names used by the application's dialogs, then the opening and closing bracket
// texts that MUnit::GetFullNameUnit puts round a name.
struct UNITDIC_UNITSNAMES {
    wchar_t names[UNITDIC_NAMES][UNITDIC_FIELD];
    wchar_t openBracket[UNITDIC_BRACKET_FIELD];
    wchar_t closeBracket[UNITDIC_BRACKET_FIELD];
};

// Translation of `name` in dictionary `dict`; `name` itself when the dictionary is absent (also for
// an index outside 0-6), the name is not listed, or its translation is empty. A null name is empty.
std::wstring UNITDIC_GetUnitNameTrans(UNITDIC_TYPE dict, const wchar_t* name);

// The process-wide names block; the application may edit it in place (after loading its language).
UNITDIC_UNITSNAMES* UNITDIC_UnitsNames();

// Frees the seven dictionaries and restores the names block from its defaults.
void UNITDIC_Init();

// Installs a copy of the entries up to the first one with an empty key as dictionary `dict`,
// replacing what was there; a null list (or an empty one) removes the dictionary. Returns 0, or 1
// (nothing changed) for an index outside 0-6.
int UNITDIC_SetDictionary(UNITDIC_TYPE dict, const UNITDIC_ENTRY* entries);

}  // namespace quillon::munit
