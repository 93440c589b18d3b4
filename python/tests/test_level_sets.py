import copy
import gc
import math
import pickle
import threading

import numpy as np
import pytest
from shapes import ball

import quorbin

DISC = ball((40, 90), (30.2, 22.1), 15, (1.5, 0.5))
BALL = ball((24, 42, 34), (23, 20, 16), 10, (2, 1, 1))
MADE = [
    lambda: quorbin.LevelSet2D(DISC, (1.5, 0.5)),
    lambda: quorbin.LevelSet3D(BALL, (2, 1, 1)),
    lambda: quorbin.Band2D(DISC, (1.5, 0.5)),
    lambda: quorbin.Band3D(BALL, (2, 1, 1)),
]
every_kind = pytest.mark.parametrize("made", MADE)
every_grid = pytest.mark.parametrize("made", MADE[:2])


def radius(level_set):
    size = level_set.measure()[0]
    return math.sqrt(size / math.pi) if len(level_set.spacing) == 2 else (size * 3 / 4 / math.pi) ** (1 / 3)


def content(level_set):
    if isinstance(level_set, (quorbin.LevelSet2D, quorbin.LevelSet3D)):
        return level_set.values.tolist()
    return sorted(zip(map(tuple, level_set.indices.tolist()), level_set.values.tolist()))


@every_grid
def test_values_lie_over_the_memory_and_keep_it(made):
    level_set = made()
    values = level_set.values
    values += 2
    assert radius(level_set) == pytest.approx(radius(made()) - 2, abs=0.1)
    level_set.values += 1
    level_set.reinitialize()
    expected = values.copy()
    assert (level_set.values == values).all()
    del level_set
    gc.collect()
    assert (values == expected).all()
    with pytest.raises(ValueError, match="own"):
        values.resize((1, 1), refcheck=False)


def test_fields_are_copied_and_checked():
    field = DISC.copy()
    level_set = quorbin.LevelSet2D(field, (1.5, 0.5))
    level_set.values[:] = 1
    assert (field == DISC).all()
    field[3, 5] = math.nan
    with pytest.raises(ValueError, match=r"\[3, 5\]"):
        quorbin.LevelSet2D(field)
    assert quorbin.LevelSet2D(field, nan="outside").values[3, 5] > 0
    with pytest.raises(ValueError, match="2 axes; it has 3"):
        quorbin.LevelSet2D(BALL)
    with pytest.raises(ValueError, match="spacing"):
        quorbin.LevelSet2D(DISC, 0)
    with pytest.raises(ValueError, match="equal spacings"):
        quorbin.LevelSet2D(DISC, (1.5, 0.5)).reinitialize("segments")
    with pytest.raises(TypeError):
        quorbin.LevelSet2D(np.array([["a"]]))
    with pytest.raises(quorbin.NoInterface):
        quorbin.LevelSet2D(np.ones((4, 5))).reinitialize()


@every_kind
def test_a_level_set_is_copied_pickled_and_told(made):
    level_set = made()
    before = content(level_set)
    others = [copy.copy(level_set), copy.deepcopy(level_set), pickle.loads(pickle.dumps(level_set))]
    level_set.curvature_flow(2)
    for other in others:
        assert type(other) is type(level_set)
        assert other.spacing == level_set.spacing
        assert content(other) == before
        other.curvature_flow(2)
        assert radius(other) == pytest.approx(radius(level_set), rel=1e-9)
    assert str(level_set.spacing) in repr(level_set)
    assert (level_set == DISC) is False
    assert (DISC == level_set) is False  # noqa: SIM300


@every_kind
def test_curvature_moves_the_interface_by_its_law(made):
    level_set = made()
    axes = len(level_set.spacing)
    start, time = radius(level_set), 0.0
    while time < 8:
        time += level_set.move_along_curvature()
        level_set.reinitialize()
    assert radius(level_set) == pytest.approx(math.sqrt(start**2 - 2 * (axes - 1) * time), rel=0.01)
    flow = level_set.curvature_flow(4)
    assert (flow.time, flow.vanished) == (pytest.approx(4), False)
    left = start**2 - 2 * (axes - 1) * (time + 4)
    assert radius(level_set) == pytest.approx(math.sqrt(left), rel=0.015)
    assert level_set.curvature_flow(1000).vanished


@every_grid
def test_steps_of_curvature_are_one_after_the_other(made):
    once, thrice = made(), made()
    times = [once.move_along_curvature() for _ in range(3)]
    assert thrice.move_along_curvature(3) == pytest.approx(sum(times))
    assert times[0] == pytest.approx(1 / sum(2 / h**2 for h in once.spacing))
    assert (once.values == thrice.values).all()
    with pytest.raises(ValueError, match="steps is -1"):
        once.move_along_curvature(-1)


def test_an_implicit_step_goes_over_a_unit_of_time():
    level_set = quorbin.LevelSet2D(ball((64, 80), (31, 40), 20))
    level_set.move_along_curvature_implicit()
    assert radius(level_set) == pytest.approx(math.sqrt(20**2 - 2), rel=0.003)


@every_kind
@pytest.mark.parametrize("speed", [1.5, -2])
def test_a_speed_moves_the_interface_outwards(made, speed):
    level_set = made()
    start, time = radius(level_set), 0.0
    while time < 2:
        step = level_set.move_with_speed(speed, limit=2 - time)
        level_set.reinitialize()
        assert step > 0
        time += step
    assert radius(level_set) == pytest.approx(start + speed * time, abs=0.15 * max(level_set.spacing))


@every_kind
def test_speeds_are_one_for_each_value(made):
    level_set = made()
    before = level_set.values
    before = before.copy()
    speeds = np.zeros(before.shape)
    speeds.ravel()[::3] = 1
    assert level_set.move_with_speed(lambda values: speeds) > 0
    changed = level_set.values != before
    assert changed.any()
    assert not changed[speeds == 0].any()
    assert level_set.move_with_speed(0) == 0
    with pytest.raises(ValueError, match="finite"):
        level_set.move_with_speed(math.inf)
    with pytest.raises(ValueError, match="broadcast"):
        level_set.move_with_speed(np.zeros(7))


def test_outlines_and_surfaces_are_those_of_the_functions():
    level_set, band = MADE[0](), MADE[2]()
    (ring,) = level_set.contours()
    assert (ring == quorbin.contours(DISC, spacing=(1.5, 0.5))[0]).all()
    (region,) = band.contours(holes=True)
    assert len(region.outline) == len(ring)
    distances = np.hypot(*(region.outline - (30.2, 22.1)).T)
    assert distances == pytest.approx(np.full(len(ring), 15), abs=0.05)
    for volume in (MADE[1](), MADE[3]()):
        vertices = volume.mesh().vertices
        assert np.linalg.norm(vertices - (23, 20, 16), axis=1) == pytest.approx(10, abs=0.1)


def test_points_of_a_band():
    band = MADE[3]()
    indices, values = band.indices, band.values
    assert indices.dtype == np.int32
    assert len(band) == len(indices) == len(values)
    near = np.abs(values) < 4
    assert values[near] == pytest.approx(BALL[tuple(indices[near].T)], abs=0.05)
    field = band.to_field(BALL.shape)
    assert (field[tuple(indices.T)] == values).all()
    assert ((field <= 0) == (BALL <= 0)).all()
    assert np.abs(field).max() == np.abs(values).max()
    again = quorbin.Band3D.from_points(indices, values, (2, 1, 1))
    assert content(again) == content(band)
    moved = quorbin.Band3D.from_points(indices - [100, 7, 3], values, (2, 1, 1))
    moved.reinitialize()
    assert moved.measure().centroid == pytest.approx((23 - 200, 20 - 7, 16 - 3), abs=0.05)
    wide = quorbin.Band2D(quorbin.LevelSet2D(DISC, (1.5, 0.5)), width=6)
    assert 6 <= wide.values.max() <= 6 + 1.5 + 0.01
    assert wide.spacing == (1.5, 0.5)


def test_bad_points_are_refused():
    make = quorbin.Band2D.from_points
    empty = make([], [])
    assert len(empty) == 0
    assert (empty.to_field((2, 3)) == math.inf).all()
    with pytest.raises(quorbin.NoInterface):
        empty.reinitialize()
    with pytest.raises(quorbin.NoInterface):
        make([(0, 0)], [1]).reinitialize("fmm")
    for message, indices, values in [
        (r"\(1, 2\) is there twice", [(2, 1), (2, 1)], [1, 2]),
        ("shape", [(1, 2, 3)], [1]),
        ("finite", [(1, 2)], [math.nan]),
        ("between", [(1, 2**31)], [1]),
    ]:
        with pytest.raises(ValueError, match=message):
            make(indices, values)
    with pytest.raises(TypeError, match="whole"):
        make([(0.5, 1)], [1])
    with pytest.raises(ValueError, match="own spacing"):
        quorbin.Band2D(quorbin.LevelSet2D(DISC), 2)
    with pytest.raises(quorbin.NoInterface):
        quorbin.Band2D(np.ones((4, 5)))
    with pytest.raises(ValueError, match="2 numbers"):
        empty.to_field((1, 2, 3))


LONG = ball((400, 500), (200, 250), 150), ball((90, 100, 110), (45, 50, 55), 36)


@pytest.mark.parametrize(
    "made",
    [
        lambda: quorbin.LevelSet2D(LONG[0]),
        lambda: quorbin.LevelSet3D(LONG[1]),
        lambda: quorbin.Band2D(LONG[0]),
        lambda: quorbin.Band3D(LONG[1]),
    ],
)
def test_an_object_is_used_by_one_thread_at_a_time(made):
    level_set = made()
    refused = []

    def meddle():
        for use in (level_set.measure, level_set.reinitialize, lambda: pickle.dumps(level_set)):
            try:
                use()
            except RuntimeError as error:
                refused.append("in use by another thread" in str(error))

    def tell(done, total):
        thread = threading.Thread(target=meddle)
        thread.start()
        thread.join()
        raise InterruptedError

    before = content(level_set)
    with pytest.raises(InterruptedError):
        level_set.curvature_flow(300, progress=tell)
    assert refused == [True] * 3
    assert content(level_set) == before


def test_two_objects_are_used_at_once():
    results = [None] * 4

    def work(i):
        level_set = MADE[1]()
        level_set.curvature_flow(3)
        results[i] = level_set.values

    threads = [threading.Thread(target=work, args=(i,)) for i in range(4)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert all((result == results[0]).all() for result in results)


@pytest.mark.parametrize("shape", [(0, 5), (5, 0), (1, 1), (1, 6), (2, 2)])
def test_grids_may_be_small(shape):
    level_set = quorbin.LevelSet2D(np.linspace(-1, 1, math.prod(shape)).reshape(shape))
    level_set.move_along_curvature(2)
    level_set.move_along_curvature_implicit()
    level_set.move_with_speed(1)
    volume = quorbin.LevelSet3D(np.ones((*shape, 3)))
    volume.move_along_curvature(2)
    volume.move_along_curvature_implicit()
    volume.move_with_speed(1)
    assert len(volume.mesh().faces) == 0
    assert quorbin.pieces(np.ones(shape)) == []


def test_nothing_is_printed(capfd):
    for made in MADE:
        made().curvature_flow(1)
    out, err = capfd.readouterr()
    assert (out, err) == ("", "")
