import numpy as np
import pytest
from shapes import ball, box, grid

import quorbin

SHAPE, SPACING = (40, 90), (1.5, 0.5)  # 60 × 45
LEFT, RIGHT = (ball(SHAPE, (30.1, x), 10, SPACING) for x in (17.1, 26.2))


@pytest.mark.parametrize(
    ("combine", "value"),
    [
        (quorbin.union, np.minimum(LEFT, RIGHT)),
        (quorbin.intersection, np.maximum(LEFT, RIGHT)),
        (quorbin.difference, np.maximum(LEFT, -RIGHT)),
    ],
)
def test_sets_have_the_sides_of_the_extremes_and_are_distances(combine, value):
    result = combine(LEFT, RIGHT, spacing=SPACING)
    assert ((result <= 0) == (value <= 0)).all()
    steps = np.hypot(*np.gradient(result, *SPACING))
    assert np.median(steps) == pytest.approx(1, abs=0.01)
    # Where one of the two is nearest by far, its distance is that of both.
    apart = np.abs(np.abs(LEFT) - np.abs(RIGHT)) > 8
    beside = apart & (np.abs(value) < 2)
    assert np.abs(result - value)[beside].max() < 0.02


@pytest.mark.parametrize("shape", [(20, 31), (9, 14, 11)])
def test_areas_of_sets_add_up(shape):
    centre = [n / 2 for n in shape]
    a = ball(shape, centre, min(shape) / 3)
    b = ball(shape, [c + 1.3 for c in centre], min(shape) / 3)
    size = [quorbin.measure(f(a, b))[0] for f in (quorbin.union, quorbin.intersection)]
    alone = quorbin.measure(a)[0] + quorbin.measure(b)[0]
    assert sum(size) == pytest.approx(alone, rel=0.02)


def test_a_complement_changes_the_sign():
    assert np.abs(quorbin.complement(LEFT, spacing=SPACING) + LEFT)[np.abs(LEFT) < 3].max() < 1e-3


def test_sets_without_an_interface_are_returned():
    apart = ball(SHAPE, (30, 8), 5, SPACING), ball(SHAPE, (30, 35), 5, SPACING)
    assert (quorbin.intersection(*apart, spacing=SPACING) == np.maximum(*apart)).all()
    assert (quorbin.union(np.ones((3, 4)), np.full((3, 4), 2.0)) == 1).all()
    assert quorbin.union(np.empty((0, 4)), np.empty((0, 4))).shape == (0, 4)


@pytest.mark.parametrize("distance", [-4, 6.5])
@pytest.mark.parametrize(("shape", "spacing"), [((60, 110), (1, 0.5)), ((30, 50, 61), (2, 1, 1))])
def test_an_offset_moves_a_ball_by_the_distance(shape, spacing, distance):
    centre = [h * n / 2 for n, h in zip(shape, spacing)]
    moved = quorbin.offset(ball(shape, centre, 14, spacing), distance, spacing=spacing)
    true = ball(shape, centre, 14 + distance, spacing)
    assert np.abs(moved - true)[np.abs(true) < 2].max() < 0.06


def test_opening_takes_away_what_is_thin_and_closing_fills_it():
    bar = box((40, 60), (17.5, 5.5), (20.5, 50.5))
    block = box((40, 60), (8.5, 8.5), (30.5, 30.5))
    shape = quorbin.union(bar, block)
    assert quorbin.opened(shape, 4)[19, 45] > 0 > quorbin.opened(shape, 4)[19, 20]
    slit = quorbin.difference(block, bar)
    assert quorbin.closed(slit, 4)[19, 25] < 0 < slit[19, 25]
    assert (quorbin.offset(block, -30) > 0).all()


def test_bad_input_is_refused():
    with pytest.raises(ValueError, match=r"shapes \(40, 90\) and \(90, 40\)"):
        quorbin.union(LEFT, LEFT.T)
    with pytest.raises(ValueError, match="radius"):
        quorbin.opened(LEFT, -1)
    with pytest.raises(ValueError, match="finite"):
        quorbin.offset(LEFT, np.nan)
    broken = LEFT.copy()
    broken[3, 5] = np.nan
    with pytest.raises(ValueError, match=r"\[3, 5\]"):
        quorbin.intersection(LEFT, broken)
    assert quorbin.intersection(LEFT, broken, nan="outside")[3, 5] > 0


def test_progress_is_told_and_what_it_raises_comes_through():
    calls = []
    shape = (96, 96, 96)
    field = ball(shape, (48, 48, 48), 30)
    quorbin.offset(field, 3, progress=lambda done, total: calls.append((done, total)))
    assert calls == sorted(calls)
    assert all(0 <= done <= total for done, total in calls)

    def stop(done, total):
        raise InterruptedError

    with pytest.raises(InterruptedError):
        quorbin.opened(field, 3, progress=stop)


def test_axes_are_in_their_order():
    z, y, _ = grid((12, 18, 25), (2, 1.5, 0.5))
    plane = quorbin.union(z - 10.2, z - 4.1, spacing=(2, 1.5, 0.5))
    assert plane == pytest.approx(z - 10.2, abs=1e-6)
    assert quorbin.union(y - 9.1, y - 3, spacing=(2, 1.5, 0.5)) == pytest.approx(y - 9.1, abs=1e-6)
