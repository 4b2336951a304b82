import dataclasses
import math
import random

import pytest

import quillon
from quillon import Shape, units

from test_shapes import PLATE, random_shape

POWERS = {"area": 2, "centroid": 1, "ix": 4, "iy": 4, "ixy": 4, "i1": 4, "i2": 4, "rx": 1,
          "wx_top": 3, "wy_left": 3, "bounds": 1, "alpha": 0}


def test_section_matches_the_library_in_any_unit(reference):
    shapes = [Shape.from_text(PLATE)] + [random_shape(random.Random(s), 3) for s in (3, 4)]
    answers = reference(*[("section", s.to_text(full_precision=True)) for s in shapes])
    for shape, answer in zip(shapes[1:], answers[1:]):
        f = quillon.section(shape)
        got = [f.area, *f.centroid, f.ix, f.iy, f.ixy, f.i1, f.i2, f.alpha]
        assert got == pytest.approx([float(v) for v in answer], rel=1e-12, abs=1e-12 * f.i1)

    mm = quillon.section(shapes[0])
    cm = quillon.section(shapes[0], "cm")
    assert (mm.unit, cm.unit) == ("mm", "cm")
    assert mm.area == pytest.approx(6000 - math.pi * 225, rel=1e-12)
    for name, power in POWERS.items():
        a, b = getattr(mm, name), getattr(cm, name)
        if isinstance(a, tuple):
            assert b == pytest.approx(tuple(v / 10**power for v in a))
        else:
            assert b == pytest.approx(a / 10**power, abs=1e-12 * cm.i1)
    assert cm.i1 >= cm.i2 and cm.wx == min(cm.wx_top, cm.wx_bottom)
    with pytest.raises(dataclasses.FrozenInstanceError):
        cm.area = 0
    with pytest.raises(ValueError, match="no area"):
        quillon.section(Shape())
    with pytest.raises(ValueError, match="drawn_in"):
        quillon.section(random_shape(random.Random(1), 1), "cm")
    with pytest.raises(ValueError, match="unknown length unit"):
        quillon.section(shapes[0], "furlong")


def test_unit_texts_and_conversions_match_the_library(reference):
    texts = ["2.5 kN*m", "3 MPa", "kg/m^3", "1/s", "12 kip*ft", "-4e2 N/mm^2"]
    for text, answer in zip(texts, reference(*[("unit", t) for t in texts])):
        q = units.parse(text)
        assert q.si == float(answer[0]) and q.exponents == tuple(int(v) for v in answer[1:])
        assert q.value * q.factor == pytest.approx(q.si, rel=1e-15)
    assert units.parse("2.5 kN*m").quantity == "moment"
    assert units.parse("kg/m^3").quantity is None
    for bad in ["kN**m", "2.5 kNm*", "3 furlong", "m^^2"]:
        with pytest.raises(ValueError, match="not a unit text"):
            units.parse(bad)

    # 14 is the moment type of the catalogue, 0 and 1 the directions to and from SI.
    [[to_si], [from_si]] = reference(("convert", 14, "kN*m", 2.5, 0), ("convert", 14, "kN*cm", 7, 1))
    assert units.to_si(2.5, "kN*m", "moment") == float(to_si)
    assert units.from_si(7, "kN*cm", "moment") == float(from_si)
    rng = random.Random(11)
    for quantity, pair in [("length", ("mm", "ft")), ("second_moment", ("cm4", "in4")),
                           ("stress", ("kN/m2", "kip/in2"))]:
        v = rng.uniform(-1e3, 1e3)
        assert units.convert(units.convert(v, *pair, quantity), *pair[::-1], quantity) == \
            pytest.approx(v, rel=1e-12)
    with pytest.raises(ValueError, match="unknown quantity"):
        units.to_si(1, "m", "lenght")
    with pytest.raises(ValueError, match="not a unit of length"):
        units.to_si(1, "kN", "length")


def test_money_reads_back_what_it_writes():
    rng = random.Random(3)
    for _ in range(200):
        amount = round(rng.uniform(-1e7, 1e7), rng.randint(0, 4))
        for seps in [{}, {"decimal": ",", "thousands": "."}, {"decimal": ".", "thousands": " "}]:
            text = units.format_money(amount, **seps)
            assert units.parse_money(text, **seps) == units.round_money(amount)
    assert units.format_money(1234567.891, decimal=",", thousands=".") == "1.234.567,89"
    assert units.round_money(2.675) == 2.68 and units.round_money(-0.005) == -0.01
