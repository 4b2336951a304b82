import math
import random
import threading

import numpy as np
import pytest

import quillon
from quillon import Arc, Line, Shape

PI = math.pi
PLATE = '"mm"(((S((L 0 0)(L 0 60)(L 100 60)(L 100 0)) 0 ((H((A 50 30 15 0 6.283185307179586)))))))'
TEXTS = [
    PLATE,
    "(((S((L 0 0)(L 0 10)(A 5 10 5 3.141592653589793 -3.141592653589793)(L 10 10)(L 10 0))"
    " 0 ())"
    "(S((L 20 0)(L 20 5)(L 25 5)(L 25 0)) 0 ())))",
]


def random_shape(rng, parts):
    """A union of rounded rectangles and discs, so edges are lines and true arcs."""
    shapes = []
    for _ in range(parts):
        x, y = rng.uniform(0, 60), rng.uniform(0, 60)
        if rng.random() < 0.4:
            shapes.append(Shape.circle((x, y), rng.uniform(3, 25)))
        else:
            w, h = rng.uniform(5, 40), rng.uniform(5, 40)
            r = rng.uniform(0, min(w, h) / 2.5)
            shapes.append(
                Shape.from_points([(x, y, r), (x + w, y, 0), (x + w, y + h, r), (x, y + h, 0)])
            )
    return quillon.union_all(shapes)


def test_same_areas_and_texts_as_the_library(reference):
    texts = TEXTS + [random_shape(random.Random(s), 3).to_text(full_precision=True) for s in (1, 2)]
    answers = reference(*[("shape", t) for t in texts])
    for text, (area, written) in zip(texts, answers):
        shape = Shape.from_text(text)
        assert shape.is_valid(), shape.problems()
        assert shape.area == float(area)
        assert shape.to_text(shape.unit) == written

    a, b = Shape.from_text(TEXTS[0]), Shape.circle((100, 60), 40)
    eps = 1e-6
    ops = [("union", a.union), ("difference", a.difference), ("intersection", a.intersection)]
    answers = reference(*[(name, eps, a.to_text(full_precision=True),
                           b.to_text(full_precision=True)) for name, _ in ops])
    for (_, op), (area, written) in zip(ops, answers):
        result = op(b, eps=eps)
        assert result.area == float(area)
        assert result.to_text() == written

    elements = [Line((0, 0), (100, 0)), Line((100, 0), (100, 60)), Line((100, 60), (0, 60)),
                Line((0, 60), (0, -5)), Arc((65, 30), (65, 30), (50, 30), 2 * PI)]
    shape, polylines = quillon.solve(elements, 1e-6)
    [(area, count, written)] = reference(
        ["solve", 1e-6, "L 0 0 100 0", "L 100 0 100 60", "L 100 60 0 60", "L 0 60 0 -5",
         f"A 65 30 65 30 50 30 {2 * PI!r}"])
    assert (shape.area, len(polylines), shape.to_text()) == (float(area), int(count), written)
    assert shape.area == pytest.approx(6000 - PI * 225, rel=1e-12)


def test_text_round_trip():
    rng = random.Random(7)
    for _ in range(20):
        shape = random_shape(rng, 4)
        # Arcs are stored by centre, radius and angles: a read shape matches to the last digits ...
        again = Shape.from_text(shape.to_text("cm", full_precision=True))
        assert again.unit == "cm" and again.same_region(shape, rel_tol=1e-12)
        assert [len(c) for c in again.solids + again.holes] == [
            len(c) for c in shape.solids + shape.holes]
        # ... and a six-decimal text written from a read shape is read and written unchanged.
        text = Shape.from_text(shape.to_text("cm")).to_text("cm")
        assert Shape.from_text(text).to_text("cm") == text


def test_booleans_obey_the_area_identities():
    rng = random.Random(2024)
    for _ in range(25):
        a, b = random_shape(rng, rng.randint(1, 3)), random_shape(rng, rng.randint(1, 3))
        u, i, d = a | b, a & b, a - b
        tol = 1e-9 * (a.area + b.area)
        assert u.area + i.area == pytest.approx(a.area + b.area, abs=tol)
        assert d.area + i.area == pytest.approx(a.area, abs=tol)
        assert (d & b).area == pytest.approx(0, abs=tol)
        assert (d | i).same_region(a)
        for s in (u, i, d):
            assert s.is_valid(), s.problems()
            assert all(c.is_clockwise for c in s.solids + s.holes)
        # A line cuts a shape into a part above and, turned upside down, a part below.
        y = rng.uniform(a.bounds[1], a.bounds[3])
        up, down = a.above(y), a.rotated(PI).above(-y)
        assert up.area + down.area == pytest.approx(a.area, abs=tol)
        assert (up - a).area == pytest.approx(0, abs=tol) and up.bounds[1] >= y - 1e-9


def test_points_arrays_and_edges():
    rounded = Shape.from_points(np.array([[0, 0, 0], [10, 0, 2], [10, 10, 0], [0, 10, 0]]))
    assert rounded.area == pytest.approx(100 - (4 - PI), rel=1e-12)
    arcs = [e for e in rounded.solids[0].edges if e.kind == "arc"]
    assert len(arcs) == 1 and arcs[0].radius == pytest.approx(2)
    assert arcs[0].centre == pytest.approx((8, 2))

    disc = Shape.circle((3, 4), 5)
    points = disc.approximate(circle_steps=90)[0]
    assert points.shape[1] == 2 and np.allclose(points[0], points[-1])
    assert np.allclose(np.hypot(points[:, 0] - 3, points[:, 1] - 4), 5)
    x, y = points[:, 0], points[:, 1]
    polygon = 0.5 * abs(np.dot(x[:-1], y[1:]) - np.dot(x[1:], y[:-1]))
    assert polygon == pytest.approx(0.5 * 25 * 90 * math.sin(2 * PI / 90), rel=1e-9)
    assert disc.bounds == pytest.approx((-2, -1, 8, 9))


def test_bad_input_raises():
    for text in ["", "(((S((L 0 0)(L 1", "(((X)))", '"mm', "((((((((((((((((((((((((("]:
        with pytest.raises(quillon.ContourTextError, match="not a contour text") as info:
            Shape.from_text(text)
        assert isinstance(info.value, ValueError) and info.value.origin in ("token", "edge",
                                                                            "contour")
    with pytest.raises(ValueError, match="corner 2 is not finite"):
        Shape.from_points([(0, 0), (math.nan, 0), (1, 1)])
    with pytest.raises(ValueError, match="at least three points"):
        Shape.from_points([(0, 0), (1, 0)])
    with pytest.raises(TypeError, match="Line and Arc"):
        quillon.solve([Line((0, 0), (1, 0)), "L 0 0 1 1"], 1e-6)
    with pytest.raises(ValueError, match="eps"):
        quillon.solve([], -1.0)
    with pytest.raises(ValueError, match="different units"):
        Shape.from_text(PLATE) | Shape.from_text(PLATE.replace('"mm"', '"cm"'))
    with pytest.raises(TypeError, match="same_region"):
        Shape() == Shape()

    # Garbled texts either read or raise ValueError; nothing else escapes and nothing crashes.
    rng = random.Random(5)
    for _ in range(300):
        chars = list(PLATE)
        for _ in range(rng.randint(1, 6)):
            chars[rng.randrange(len(chars))] = rng.choice('()"LASH 0.-e9x')
        try:
            Shape.from_text("".join(chars)).to_text()
        except ValueError:
            pass


def test_threads_share_the_library():
    shapes = [random_shape(random.Random(s), 3) for s in range(8)]
    serial = [(a | b).to_text() for a, b in zip(shapes, shapes[1:])]
    results = [[None] * len(serial) for _ in range(4)]

    def work(k):
        for j, (a, b) in enumerate(zip(shapes, shapes[1:])):
            results[k][j] = (a | b).to_text()

    threads = [threading.Thread(target=work, args=(k,)) for k in range(4)]
    for t in threads:
        t.start()
    for t in threads:
        t.join()
    assert all(r == serial for r in results)
