# Solids from shapes: volumes agree with the plane areas they are swept from, drilling and cutting
# remove what they should, booleans keep the inclusion-exclusion identity, OBJ round trips.
import math
import random

import pytest

import quillon

PIECES = 48  # straight pieces per full turn of an extruded arc


def polygon_area(r):
    return 0.5 * PIECES * r * r * math.sin(2 * math.pi / PIECES)


def plate(w=100.0, h=60.0):
    return quillon.Shape.from_points([(0, 0), (w, 0), (w, h), (0, h)])


def test_extrusion_of_a_shape_with_a_hole_and_drilled_holes():
    rng = random.Random(5)
    net = plate() - quillon.Shape.circle((50, 30), 12)
    solid = quillon.Solid.extrude(net, 10.0, z=-3.0)
    assert solid.closed
    expected = (6000 - polygon_area(12)) * 10
    assert solid.volume == pytest.approx(expected, rel=1e-9)
    assert solid.bounds == pytest.approx((0, 0, -3, 100, 60, 7))
    for x in (10.0, 25.0, 75.0, 90.0):
        d = rng.uniform(4, 8)
        solid = solid.drill(x, rng.uniform(10, 50), d)
        expected -= polygon_area(d / 2) * 10
        assert solid.closed
        assert solid.volume == pytest.approx(expected, rel=1e-9)
    tris = solid.triangles()
    assert tris.shape[1] == 3 and tris.max() < len(solid.vertices)


def test_cut_keeps_the_side_the_normal_points_to():
    solid = quillon.Solid.extrude(plate(), 10.0)
    top = solid.cut((0, 0, 4), (0, 0, 1))
    assert top.closed
    assert top.volume == pytest.approx(6000 * 6, rel=1e-9)
    assert top.bounds[2] == pytest.approx(4)
    slanted = solid.cut((50, 30, 5), (1, 0, 1))  # through the middle: half is left
    assert slanted.volume == pytest.approx(30000, rel=1e-9)


def test_booleans_keep_inclusion_exclusion():
    rng = random.Random(11)
    for _ in range(10):
        a = quillon.Solid.extrude(plate(rng.uniform(20, 50), rng.uniform(20, 50)), 5.0)
        disc = quillon.Shape.circle((rng.uniform(10, 40), rng.uniform(10, 40)), rng.uniform(3, 15))
        b = quillon.Solid.extrude(disc, 7.0, z=rng.uniform(-3, 3))
        union, inter, diff = a | b, a & b, a - b
        for s in (union, inter, diff):
            assert s.closed
        assert union.volume + inter.volume == pytest.approx(a.volume + b.volume, rel=1e-9)
        assert diff.volume + inter.volume == pytest.approx(a.volume, rel=1e-9)


def test_obj_round_trip_and_bad_files(tmp_path):
    solid = quillon.Solid.extrude(plate() - quillon.Shape.circle((30, 30), 8), 12.0).drill(70, 30, 10)
    path = tmp_path / "plate.obj"
    solid.to_obj(path)
    back = quillon.Solid.from_obj(path)
    assert back.closed
    assert back.volume == pytest.approx(solid.volume, rel=1e-7)  # OBJ keeps six decimals
    bad = tmp_path / "bad.obj"
    bad.write_text("v 0 0 0\nf 1 2 3\n")
    with pytest.raises(ValueError):
        quillon.Solid.from_obj(bad)
    with pytest.raises(ValueError):
        quillon.Solid.from_obj(tmp_path / "missing.obj")
    with pytest.raises(ValueError):
        solid.drill(50, 30, -1)
    with pytest.raises(ValueError):
        quillon.Solid.extrude(plate(), math.nan)
