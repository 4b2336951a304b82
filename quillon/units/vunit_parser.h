// The grammar of unit texts, parsed by hand with one token of lookahead. It accepts exactly these
// rules (parse_unit is the start symbol):
//
//   1  parse_unit -> (empty)                 the dimensionless 1.0
//   2  parse_unit -> unit
//   3  unit   -> fval                       a plain number
//   4  unit   -> fval d_unit                the number times the unit
//   5  unit   -> fval '*' d_unit
//   6  unit   -> fval '/' m_unit            the number divided by the unit
//   7  unit   -> d_unit
//   8  d_unit -> m_unit
//   9  d_unit -> m_unit '/' m_unit          a single quotient: "kN/m/s" is refused
//  10  m_unit -> p_unit
//  11  m_unit -> m_unit p_unit              product by juxtaposition: "kN m"
//  12  m_unit -> m_unit '*' p_unit
//  13  p_unit -> UNIT
//  14  p_unit -> p_unit POSITIVE_INT        power: "m2", "m 3"
//  15  p_unit -> p_unit '^' ival            power, also negative: "s^-2"
//  16  ival   -> POSITIVE_INT
//  17  ival   -> NEGATIVE_INT
//  18  fval   -> ival
//  19  fval   -> REAL_NUMBER
//
// The left-recursive rules run as loops, so the depth of the parse does not grow with the text.
#pragma once

#include "quillon/units/vunit.h"

namespace quillon::munit::vunit_detail {

// The quantity a text stands for, or an invalid quantity when the text is null, holds a word that
// names no unit, breaks the grammar, or leaves the 32-bit exponent range. With trace on, every
// token and reduction is written to standard error.
VUnit ParseUnitText(const wchar_t* text, bool trace);

}  // namespace quillon::munit::vunit_detail
