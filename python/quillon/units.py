"""Units of measure: value-with-unit texts, conversions of the unit catalogue, money.

    >>> from quillon import units
    >>> q = units.parse("2.5 kN*m")
    >>> q.value, q.factor, q.si, q.exponents, q.quantity
    (2.5, 1000.0, 2500.0, (2, 1, -2), 'moment')
    >>> units.convert(1.0, "kN*m", "N*cm", "moment")
    100000.0

Value-with-unit texts know whole units (inch, ft, kip, ksi, lb, psi, t, ...) and SI units with
prefixes (M k h da d c m u before m g s N Pa J W Hz), combined with "*", "/", "^" and powers:
"3 MPa", "kg/m^3", "1/s", "kN m". Names are case-sensitive.

The catalogue conversions take a quantity (see QUANTITIES) and a unit text naming one catalogue
unit per factor: "cm4" for a second moment, "kN/m2" for a stress, "kN*m/m" for a moment per
length.

Money amounts are rounded to hundredths (halves away from zero) and written with the user's
monetary separators, which the locale gives unless the call names them ("." for the decimal when
the locale has none).
"""

from __future__ import annotations

import dataclasses

from . import _core

__all__ = [
    "QUANTITIES",
    "Quantity",
    "catalogue",
    "convert",
    "currency_symbol",
    "format_money",
    "from_si",
    "length_factor",
    "parse",
    "parse_money",
    "round_money",
    "to_si",
]

#: The quantities the catalogue converts with unit texts.
QUANTITIES: tuple[str, ...] = tuple(_core._unit_quantities())


@dataclasses.dataclass(frozen=True)
class Quantity:
    """A value-with-unit text taken apart.

    value is the number written in front (1.0 when there is none), factor the factor of the unit
    after it to metre-kilogram-second units, si the whole in those units (value * factor),
    exponents those of metre, kilogram and second, quantity the name of the quantity with these
    exponents or None (moment and energy share theirs and read as 'moment'), si_text the whole
    written in those units, e.g. '2500*m^2*kg/s^2'.
    """

    text: str
    value: float
    factor: float
    si: float
    exponents: tuple[int, int, int]
    quantity: str | None
    si_text: str


def parse(text: str) -> Quantity:
    """Takes a value-with-unit text apart; raises ValueError when it does not parse."""
    value, factor, si, exponents, quantity, si_text = _core._unit_parse(text)
    return Quantity(text, value, factor, si, tuple(exponents), quantity or None, si_text)


def to_si(value: float, unit: str, quantity: str) -> float:
    """A value given in `unit` (a catalogue unit text for the quantity) in SI units.

    Raises ValueError for an unknown quantity or a unit the catalogue lacks.
    """
    return _core._unit_convert(value, quantity, unit, True)


def from_si(value: float, unit: str, quantity: str) -> float:
    """An SI value in `unit`; raises ValueError as to_si does."""
    return _core._unit_convert(value, quantity, unit, False)


def convert(value: float, from_unit: str, to_unit: str, quantity: str) -> float:
    """A value in from_unit converted to to_unit, both catalogue unit texts of the quantity."""
    return from_si(to_si(value, from_unit, quantity), to_unit, quantity)


def catalogue(kind: str) -> dict[str, float]:
    """The catalogue's base units of a kind ('length', 'force', 'mass' or 'angle'): each name
    with the factor that turns one of it into SI units."""
    return dict(_core._unit_catalogue(kind))


def length_factor(unit: str) -> float:
    """Metres in one `unit` of the catalogue; raises ValueError for a unit it does not have."""
    lengths = catalogue("length")
    if unit not in lengths:
        raise ValueError(f"unknown length unit {unit!r} (one of {', '.join(lengths)})")
    return lengths[unit]


def format_money(
    amount: float, *, decimal: str | None = None, thousands: str | None = None
) -> str:
    """The amount rounded to hundredths with the monetary separators: the locale's, or those
    given here, e.g. format_money(1234567.891, decimal=",", thousands=".") == "1.234.567,89"."""
    return _core._money_format(amount, decimal, thousands)


def parse_money(
    text: str, *, decimal: str | None = None, thousands: str | None = None
) -> float:
    """An amount read from text written with the monetary separators, rounded to hundredths.
    Like the applications' money fields it never fails: text without a number reads as 0."""
    return _core._money_parse(text, decimal, thousands)


def round_money(amount: float) -> float:
    """The amount rounded to hundredths, halves away from zero."""
    return _core._money_round(amount)


def currency_symbol() -> str:
    """The locale's currency symbol ('' when it has none)."""
    return _core._currency_symbol()
