import signal
import time

import numpy as np
import pytest

import quorbin

Y, X = np.mgrid[:96, :96]
DISC = np.hypot(Y - 47.6, X - 45.3) - 28


def noisy():
    return np.where(DISC <= 0, 180.0, 80.0) + np.random.default_rng(5).normal(0, 40, DISC.shape)


def test_otsu_lies_half_way_between_two_values_and_ignores_the_shape():
    assert quorbin.otsu(np.array([3, 3, 3, 9], dtype=np.uint8)) == 6
    assert quorbin.otsu(np.array([[[3, 3], [3, 9]]])) == 6
    assert quorbin.otsu(np.array([True, False])) == 0.5
    with pytest.raises(ValueError, match=r"\[0, 1\] is not finite"):
        quorbin.otsu([[1, np.nan]])
    with pytest.raises(ValueError, match="empty"):
        quorbin.otsu([])


@pytest.mark.parametrize("manner", [{}, {"implicit": True}, {"band": True}])
def test_a_disc_under_noise_is_found_with_its_means(manner):
    result = quorbin.segment(noisy(), **manner)
    assert result.still
    assert np.mean((result.field <= 0) == (DISC <= 0)) > 0.99
    assert result.mean_inside == pytest.approx(180, abs=3)
    assert result.mean_outside == pytest.approx(80, abs=3)
    near = np.abs(DISC) < 2
    assert np.abs(result.field - DISC)[near].mean() < 0.6  # a signed distance


def test_the_image_stays_as_it_is_and_starts_are_as_asked():
    image = noisy()
    before = image.copy()
    bright = quorbin.segment(image)
    dark = quorbin.segment(image, inside="below")
    np.testing.assert_array_equal(image, before)
    assert dark.mean_inside == pytest.approx(bright.mean_outside, abs=1)
    init = np.abs(Y - 48) + np.abs(X - 48) < 20
    assert np.mean((quorbin.segment(image, init=init).field <= 0) == (DISC <= 0)) > 0.99
    spaced = quorbin.segment(image, spacing=2, weight=0.8)
    assert np.mean((spaced.field <= 0) == (DISC <= 0)) > 0.98


def test_what_cannot_be_is_refused():
    image = noisy()
    for fault, words in [
        ({"weight": 0}, "weight is 0"),
        ({"max_steps": 0}, "max_steps"),
        ({"inside": "left"}, "inside"),
        ({"implicit": True, "band": True}, "exclude"),
        ({"init": DISC, "level": 3}, "exclude"),
        ({"init": DISC[:-1]}, "shape"),
        ({"spacing": (1, 40), "band": True}, "leave out band"),
    ]:
        with pytest.raises(ValueError, match=words):
            quorbin.segment(image, **fault)
    with pytest.raises(quorbin.NoInterface, match="start"):
        quorbin.segment(image, level=1e6)
    with pytest.raises(quorbin.NoInterface, match="smaller weight"):
        quorbin.segment(image, weight=1000)
    with pytest.raises(ValueError, match="2, "):
        quorbin.segment(np.zeros((3, 3, 3)))


def test_steps_that_run_out_are_told_of(caplog):
    result = quorbin.segment(noisy(), init=np.hypot(Y - 20, X - 20) <= 6, max_steps=10)
    assert result.steps == 10
    assert not result.still
    assert "max_steps" in caplog.text


@pytest.mark.parametrize("manner", [{}, {"band": True}])
def test_an_interruption_ends_it_soon(manner):
    y, x = np.mgrid[:1500, :1500]
    sent = []

    def interrupt(done, total):
        if done > 0 and not sent:
            sent.append(time.perf_counter())
            signal.raise_signal(signal.SIGINT)

    with pytest.raises(KeyboardInterrupt):
        quorbin.segment(np.hypot(y, x), init=np.hypot(y - 200, x - 300) - 100, progress=interrupt, **manner)
    assert time.perf_counter() - sent[0] < 1  # a tenth of a second, but on a machine that has much to do


def test_progress_is_told_and_may_end_it():
    told = []
    quorbin.segment(noisy(), progress=lambda done, total: told.append((done, total)))
    assert all(total == 5000 for _, total in told)
    assert [done for done, _ in told] == sorted(done for done, _ in told)

    def stop(done, total):
        raise RuntimeError("enough")

    with pytest.raises(RuntimeError, match="enough"):
        quorbin.segment(np.random.default_rng(1).normal(0, 1, (500, 500)), weight=1e-3, progress=stop)
