"""Quillon for Python: plane shapes of straight edges and true circular arcs, their booleans,
section figures, units of measure, and solids extruded from shapes.

    >>> import quillon
    >>> plate = quillon.Shape.from_points([(0, 0), (100, 0), (100, 60), (0, 60)])
    >>> hole = quillon.Shape.circle((50, 30), 15)
    >>> net = plate - hole           # a true arc, no polygon
    >>> round(net.area, 6)
    5293.141653

Shapes never change; operations return new ones. Errors are Python exceptions: a malformed
contour text raises ContourTextError (a ValueError) with the reader's message, other bad values
raise ValueError or TypeError.
"""

from __future__ import annotations

import dataclasses
import math

from . import units
from ._core import (
    Arc,
    Contour,
    ContourTextError,
    Edge,
    Line,
    Polyline,
    Shape,
    Solid,
    __version__,
    solve,
    union_all,
)
from ._core import _section_figures

__all__ = [
    "Arc",
    "Contour",
    "ContourTextError",
    "Edge",
    "Line",
    "Polyline",
    "Section",
    "Shape",
    "Solid",
    "section",
    "solve",
    "union_all",
    "units",
]

# Powers of length of the figures, for the change of unit.
_POWERS = {
    "area": 2,
    "perimeter": 1,
    "centroid": 1,
    "ix": 4,
    "iy": 4,
    "ixy": 4,
    "i1": 4,
    "i2": 4,
    "alpha": 0,
    "rx": 1,
    "ry": 1,
    "r1": 1,
    "r2": 1,
    "wx_top": 3,
    "wx_bottom": 3,
    "wy_right": 3,
    "wy_left": 3,
    "wx": 3,
    "wy": 3,
    "bounds": 1,
}

_TABLE = [
    ("area", "area", "A", 2),
    ("perimeter", "perimeter", "P", 1),
    ("centroid x", "centroid", "xc", 1),
    ("centroid y", "centroid", "yc", 1),
    ("second moment about centroidal x", "ix", "Ix", 4),
    ("second moment about centroidal y", "iy", "Iy", 4),
    ("product moment", "ixy", "Ixy", 4),
    ("major principal moment", "i1", "I1", 4),
    ("minor principal moment", "i2", "I2", 4),
    ("principal angle (major axis from x)", "alpha", "alpha", 0),
    ("radius of gyration about x", "rx", "rx", 1),
    ("radius of gyration about y", "ry", "ry", 1),
    ("elastic modulus about x, top fibre", "wx_top", "Wx,top", 3),
    ("elastic modulus about x, bottom fibre", "wx_bottom", "Wx,bot", 3),
    ("elastic modulus about y, right fibre", "wy_right", "Wy,right", 3),
    ("elastic modulus about y, left fibre", "wy_left", "Wy,left", 3),
]


@dataclasses.dataclass(frozen=True)
class Section:
    """Section figures of a shape, every length in `unit` (None: the shape's own coordinates).

    Second moments are about the centroidal axes parallel to x and y (ix is the integral of
    y*y dA); i1 >= i2 are the principal moments and alpha the angle of the major principal axis
    from +x in radians, in (-pi/2, pi/2]. Radii of gyration are sqrt(I / area); elastic moduli
    are the centroidal moment over the distance from the centroid to the extreme fibre on each
    side, and wx, wy the smaller of each pair.
    """

    unit: str | None
    area: float
    perimeter: float
    centroid: tuple[float, float]
    ix: float
    iy: float
    ixy: float
    i1: float
    i2: float
    alpha: float
    rx: float
    ry: float
    r1: float
    r2: float
    wx_top: float
    wx_bottom: float
    wy_right: float
    wy_left: float
    wx: float
    wy: float
    bounds: tuple[float, float, float, float]

    @property
    def alpha_degrees(self) -> float:
        """The principal angle in degrees."""
        return math.degrees(self.alpha)

    def table(self) -> str:
        """The figures as a table, one a line: name, symbol, value and unit."""
        lines = []
        for name, field, symbol, power in _TABLE:
            value = getattr(self, field)
            if field == "centroid":
                value = value[0] if symbol == "xc" else value[1]
            if power == 0:
                shown = f"{math.degrees(value):.2f} deg"
            else:
                unit = self.unit or "units"
                shown = f"{value:.6g} {unit}{power if power > 1 else ''}"
            lines.append(f"  {name:<38} {symbol:<9} {shown}")
        return "\n".join(lines)


def section(shape: Shape, unit: str | None = None, *, drawn_in: str | None = None) -> Section:
    """The section figures of a shape (exact for arcs) in the caller's length unit.

    drawn_in is the unit of the shape's coordinates; it defaults to the unit its text named.
    unit is the unit of the figures; it defaults to drawn_in. Both are length units of the unit
    catalogue (quillon.units.catalogue('length'): cm, ft, in, m, mm). Raises ValueError for a
    shape that encloses no area, for an unknown unit, and when unit is given but the drawing
    unit is not known.
    """
    drawn_in = drawn_in if drawn_in is not None else shape.unit
    shown = unit if unit is not None else drawn_in
    if shown is not None and drawn_in is None:
        raise ValueError(
            f"the figures are asked in {shown}, but the shape's unit is unknown: give drawn_in"
        )
    scale = 1.0
    if shown is not None and drawn_in is not None:
        scale = units.length_factor(drawn_in) / units.length_factor(shown)
    raw = _section_figures(shape)
    if not raw.pop("valid"):
        raise ValueError("the shape encloses no area")
    figures = {}
    for name, value in raw.items():
        k = scale ** _POWERS[name]
        figures[name] = tuple(v * k for v in value) if isinstance(value, tuple) else value * k
    return Section(unit=shown, **figures)
