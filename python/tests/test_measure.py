import math

import numpy as np
import pytest
from shapes import ball, box

import quorbin


def test_figures_of_a_disc():
    centre = (30.2, 22.1)
    figures = quorbin.measure(ball((40, 90), centre, 15, (1.5, 0.5)), spacing=(1.5, 0.5))
    assert isinstance(figures, quorbin.Figures2D)
    assert figures.area == pytest.approx(math.pi * 15**2, rel=3e-3)
    assert figures.perimeter == pytest.approx(2 * math.pi * 15, rel=3e-3)
    assert figures.centroid == pytest.approx(centre, abs=0.01)
    assert figures.lowest == pytest.approx([c - 15 for c in centre], abs=0.05)
    assert figures.highest == pytest.approx([c + 15 for c in centre], abs=0.05)
    assert figures.total_curvature == pytest.approx(2 * math.pi)


def test_figures_of_a_ball():
    centre, spacing = (28.3, 21.9, 16.2), (2, 1, 0.5)
    figures = quorbin.measure(ball((28, 44, 66), centre, 12, spacing), spacing=spacing)
    assert isinstance(figures, quorbin.Figures3D)
    assert figures.volume == pytest.approx(4 / 3 * math.pi * 12**3, rel=0.01)
    assert figures.surface_area == pytest.approx(4 * math.pi * 12**2, rel=0.01)
    assert figures.centroid == pytest.approx(centre, abs=0.02)
    assert figures.lowest == pytest.approx([c - 12 for c in centre], abs=0.1)
    assert figures.highest == pytest.approx([c + 12 for c in centre], abs=0.1)
    assert figures.total_mean_curvature == pytest.approx(4 * math.pi * 12, rel=0.01)


def test_a_box_a_level_and_nothing():
    field = box((12, 20, 31), (2.5, 3.5, 4.5), (8.5, 10.5, 24.5))
    figures = quorbin.measure(field, level=0.0)
    assert (figures.lowest, figures.highest) == ((2.5, 3.5, 4.5), (8.5, 10.5, 24.5))
    assert figures.volume == pytest.approx(6 * 7 * 20, rel=0.03)
    wider = quorbin.measure(field, level=0.5)
    assert (wider.lowest, wider.highest) == ((2, 3, 4), (9, 11, 25))
    nothing = quorbin.measure(np.ones((3, 4)))
    assert nothing.area == nothing.perimeter == 0
    assert all(math.isnan(c) for c in nothing.centroid)
    assert quorbin.measure(np.ones((3, 4), dtype=bool)).area == 3 * 2
    assert quorbin.measure(np.empty((0, 4, 2))).volume == 0


def test_a_comparison_of_discs_in_each_other():
    inner, outer = (ball((40, 90), (30, 22), radius, (1.5, 0.5)) for radius in (12, 15))
    both = quorbin.compare(inner, outer, spacing=(1.5, 0.5))
    assert both.dice == pytest.approx(2 * 12**2 / (12**2 + 15**2), rel=5e-3)
    assert both.symmetric_difference == pytest.approx(math.pi * (15**2 - 12**2), rel=5e-3)
    assert both.hausdorff_distance == pytest.approx(3, abs=0.05)
    assert both.mean_distance == pytest.approx(3, abs=0.01)
    assert quorbin.compare(outer, inner, spacing=(1.5, 0.5)).from_first == both.from_second
    alone = quorbin.compare(inner, np.ones_like(inner))
    assert alone.dice == 0
    assert math.isnan(alone.from_first.mean)
    with pytest.raises(ValueError, match="shapes"):
        quorbin.compare(inner, outer[1:])


def test_pieces_come_in_order_and_are_measured_one_by_one():
    shape, spacing = (30, 50, 40), (1, 0.5, 1)
    small, large = ball(shape, (9, 7, 30), 4, spacing), ball(shape, (17, 14, 14), 8, spacing)
    field = np.minimum(small, large)
    first, second = quorbin.pieces(field, spacing=spacing)
    assert isinstance(first, quorbin.Piece3D)
    assert (first.samples, second.samples) == ((small <= 0).sum(), (large <= 0).sum())
    assert field[first.inside] <= 0
    assert first.inside == tuple(np.argwhere(field <= 0)[0])
    assert first.figures.volume == pytest.approx(4 / 3 * math.pi * 4**3, rel=0.05)
    assert second.figures.centroid == pytest.approx((17, 14, 14), abs=0.05)

    kept = quorbin.largest_pieces(field, 1, spacing=spacing)
    assert ((kept <= 0) == (large <= 0)).all()
    assert (quorbin.largest_pieces(field, 10**30, spacing=spacing) == field).all()
    assert (quorbin.largest_pieces(field, 0, spacing=spacing) > 0).all()
    with pytest.raises(ValueError, match="count is -1"):
        quorbin.largest_pieces(field, -1)
    with pytest.raises(TypeError):
        quorbin.largest_pieces(field, 1.5)


def test_holes_below_a_size_are_filled():
    field = -np.minimum(ball((40, 60), (20, 14), 4), ball((40, 60), (20, 40), 9))
    field = np.maximum(field, box((40, 60), (2.5, 2.5), (36.5, 56.5)))
    filled = quorbin.without_holes_below(field, math.pi * 6**2)
    assert len(quorbin.contours(field)) == 3
    (region,) = quorbin.contours(filled, holes=True)
    assert len(region.holes) == 1
    assert filled[20, 14] < 0 < filled[20, 40]
    with pytest.raises(ValueError, match="number"):
        quorbin.without_holes_below(field, math.nan)


def test_a_level_is_that_of_the_interface_and_a_mask_has_no_other():
    field = ball((40, 60), (20, 30), 10)
    assert quorbin.measure(field, level=3).area == pytest.approx(math.pi * 13**2, rel=5e-3)
    for level, other in ((0.5, field <= 0), (math.nan, field)):
        with pytest.raises(ValueError, match=r"level"):
            quorbin.measure(other, level=level)


def test_samples_between_the_samples():
    centre, spacing = (30.2, 22.1), (1.5, 0.5)
    disc = ball((40, 90), centre, 12, spacing)
    angles = np.linspace(0, 6, 12).reshape(3, 4)
    out = np.stack([np.sin(angles), np.cos(angles)], axis=-1)  # (y, x)
    found = quorbin.sample(disc, centre + 14.3 * out, spacing=spacing)
    assert found.values.shape == (3, 4)
    assert found.values == pytest.approx(np.full((3, 4), 2.3), abs=1e-3)
    assert found.gradients == pytest.approx(out, abs=5e-3)
    assert found.closest == pytest.approx(centre + 12 * out, abs=5e-3)
    assert np.isnan(quorbin.sample(disc, (-1, 3)).values)
    assert quorbin.sample(disc, np.empty((0, 2))).gradients.shape == (0, 2)
    field = ball((20, 24, 31), (10, 12, 15), 6)
    assert quorbin.sample(field, [(10, 12, 23.5)]).gradients[0] == pytest.approx((0, 0, 1), abs=1e-3)
    with pytest.raises(ValueError, match="must have 3 coordinates"):
        quorbin.sample(field, [(1, 2)])
