"""The same questions put to other packages, and to geometry: how far the answers lie apart, and why."""

from __future__ import annotations

import numpy as np
import pytest

import quorbin

ndimage = pytest.importorskip("scipy.ndimage")
spatial = pytest.importorskip("scipy.spatial")
skfmm = pytest.importorskip("skfmm")
data = pytest.importorskip("skimage.data")
measure = pytest.importorskip("skimage.measure")
segmentation = pytest.importorskip("skimage.segmentation")

pytestmark = pytest.mark.filterwarnings("ignore")  # other packages' own


def noise(shape, width, seed):
    field = ndimage.gaussian_filter(np.random.default_rng(seed).standard_normal(shape), width)
    return field / np.abs(field).max()


def picture(name, width, level):
    field = ndimage.gaussian_filter(getattr(data, name)().astype(float), width)[::2, ::2] - level
    return field / np.abs(field).max()


PICTURES = {
    "noise": noise((90, 110), 4, 0),
    "coins": picture("coins", 2, 110.3),
    "camera": picture("camera", 1, 100.3),
}
on_pictures = pytest.mark.parametrize("name", PICTURES)
spacings = pytest.mark.parametrize("spacing", [(1.0, 1.0), (0.7, 1.9)])


def nearest(points, others):
    return spatial.cKDTree(others).query(points)[0]


def area_of(ring):
    (y0, x0), (y1, x1) = ring[:-1].T, ring[1:].T
    return float((x0 * y1 - x1 * y0).sum() / 2)


def volume_of(vertices, faces):
    return float(np.linalg.det(vertices[faces].astype(float)).sum() / 6)


def surface_of(vertices, faces):
    a, b, c = np.moveaxis(vertices[faces].astype(float), 1, 0)
    return float(np.linalg.norm(np.cross(b - a, c - a), axis=1).sum() / 2)


# Distances of fields: scikit-fmm


@on_pictures
@spacings
def test_marches_of_first_order_differ_only_where_two_neighbours_have_no_root(name, spacing):
    """Both are first order from the same crossings, and equal to rounding on squares.

    With unequal spacings the equation for two neighbours has more often no root, and each falls back in its own
    way: quorbin leaves such a pair out. At single samples that comes to a tenth of a spacing.
    """
    field = PICTURES[name]
    ours = quorbin.signed_distance(field, method="fmm", spacing=spacing)
    theirs = skfmm.distance(field, dx=list(spacing), order=1)
    apart = np.abs(ours - theirs) / max(spacing)
    assert apart.max() < (1e-9 if spacing[0] == spacing[1] else 0.12)
    assert apart.mean() < 1e-3


@on_pictures
def test_a_march_of_second_order_differs_by_the_error_of_the_first(name):
    """scikit-fmm takes second differences where it can: the first order errs by about a spacing."""
    field = PICTURES[name]
    ours = quorbin.signed_distance(field, method="fmm")
    apart = np.abs(ours - skfmm.distance(field, order=2))
    assert 0.1 < apart.max() < 1.6
    assert apart.mean() < 0.25


def test_of_a_disc_ours_is_the_nearest_to_the_truth():
    """The first step of a march is of first order for all of them; projection to cubics is of third order."""
    y, x = np.mgrid[:96, :96]
    true = np.hypot(y - 47.3, x - 48.2) - 30
    field = true * (1 + 0.005 * (y + x))  # no distance
    near = np.abs(true) < 3
    errors = {
        "ours": quorbin.reinitialize(field),
        "our march": quorbin.signed_distance(field, method="fmm"),
        "first order": skfmm.distance(field, order=1),
        "second order": skfmm.distance(field, order=2),
    }
    errors = {name: np.abs(distance - true)[near].max() for name, distance in errors.items()}
    assert errors["ours"] < 0.001
    assert 0.05 < errors["second order"] <= errors["first order"] < 0.35
    assert errors["our march"] == pytest.approx(errors["first order"], abs=1e-9)


# Distances of masks: SciPy


@on_pictures
def test_the_distance_of_a_mask_is_to_its_outline_and_not_to_the_nearest_sample_beyond(name):
    """A sample's distance to the nearest one beyond is longer by half a spacing, the outline's place between them.

    Along a diagonal outline it is longer by half a diagonal less what the outline cuts off: from 0.354 to 0.646.
    """
    mask = PICTURES[name] <= 0
    theirs = np.where(mask, -ndimage.distance_transform_edt(mask), ndimage.distance_transform_edt(~mask))
    apart = np.abs(theirs) - np.abs(quorbin.signed_distance(mask, method="brute"))
    assert apart.min() == pytest.approx(0.3536, abs=0.001)
    assert apart.max() < 0.6465
    assert 0.43 < apart.mean() < 0.5
    # A march adds its error of first order, which grows slowly with the distance; the mean stays.
    marched = np.abs(theirs) - np.abs(quorbin.signed_distance(mask, method="fmm"))
    assert -1 < marched.min() < marched.max() < 1.05


@spacings
def test_the_distance_of_a_half_plane_of_samples_is_that_of_scipy_less_half_a_spacing(spacing):
    mask = np.zeros((9, 12), bool)
    for axis, h in enumerate(spacing):
        half = mask.copy()
        half[(slice(None),) * axis + (slice(0, 5),)] = True
        theirs = ndimage.distance_transform_edt(half, sampling=spacing)
        ours = quorbin.signed_distance(half, spacing=spacing)
        np.testing.assert_allclose(-ours[half], theirs[half] - h / 2, atol=1e-12)


# Contours: scikit-image


@on_pictures
def test_contours_have_the_points_of_find_contours_and_run_the_other_way(name):
    """Both cross each edge where the line between its samples does; ours have the inside on the other hand.

    Where two opposite corners of four are inside, find_contours connects the low values, ours along one diagonal:
    the points stay, lines join otherwise.
    """
    field = PICTURES[name]
    ours, theirs = quorbin.contours(field, closed=False), measure.find_contours(field, 0.0)
    assert nearest(np.concatenate(ours), np.concatenate(theirs)).max() < 1e-9
    assert nearest(np.concatenate(theirs), np.concatenate(ours)).max() < 1e-9
    if name == "noise":  # which has no such cell
        assert len(ours) == len(theirs)
        rings = [sum(area_of(line) for line in lines if (line[0] == line[-1]).all()) for lines in (ours, theirs)]
        assert rings[0] == pytest.approx(-rings[1], abs=1e-9)


@on_pictures
def test_closed_contours_along_the_border_are_those_of_a_field_with_a_border_of_outside(name):
    """A frame of outside samples closes find_contours too, up to a spacing further out than ours."""
    field = PICTURES[name]
    ours = sum(area_of(ring) for ring in quorbin.contours(field))
    framed = np.pad(np.where(field <= 0, field, np.inf), 1, constant_values=np.inf)
    theirs = -sum(area_of(ring) for ring in measure.find_contours(np.nan_to_num(framed, posinf=1e9), 0.0))
    assert theirs < ours < theirs + 0.6 * sum(map(len, quorbin.contours(field)))
    for region in quorbin.contours(field, holes=True):
        assert area_of(region.outline) > 0
        assert all(area_of(hole) < 0 for hole in region.holes)


# Meshes: scikit-image


@pytest.mark.parametrize("spacing", [(1.0, 1.0, 1.0), (2.0, 1.0, 0.5)])
def test_meshes_have_the_vertices_of_marching_cubes_and_its_area(spacing):
    """skimage keeps float32, hence 2e-6; its tables fill ambiguous cubes otherwise: 0.1 % of the area."""
    volume = noise((30, 34, 38), 3, 1)
    ours = quorbin.mesh(volume, spacing=spacing)
    for method, bound in (("lewiner", 0.001), ("lorensen", 0.003)):
        vertices, faces, *_ = measure.marching_cubes(
            volume, 0.0, spacing=spacing, method=method, gradient_direction="descent"
        )
        assert len(vertices) == len(ours.vertices)
        assert nearest(ours.vertices, vertices).max() < 1e-5
        assert surface_of(ours.vertices, ours.faces) == pytest.approx(surface_of(vertices, faces), rel=bound)
        assert volume_of(ours.vertices, ours.faces) == pytest.approx(volume_of(vertices, faces), rel=bound)


# Motion: morphological snakes have no unit of time, but agree on what stays.


def test_smoothing_a_ragged_disc_agrees_with_morphological_smoothing_but_for_its_ragged_border():
    y, x = np.mgrid[:100, :100]
    true = np.hypot(y - 49.6, x - 50.3) - 30
    ragged = true + 3 * noise(true.shape, 1, 3) <= 0
    ours = quorbin.curvature_flow(ragged, 4.0, constant_volume=True).field <= 0
    theirs = segmentation.morphological_chan_vese(ragged.astype(float), 8, ragged.astype(np.int8), smoothing=3) > 0
    assert (ours ^ theirs).sum() < 2 * np.pi * 30  # less than a sample along the outline
    assert (ours ^ (true <= 0)).sum() <= (theirs ^ (true <= 0)).sum()


# Known answers, with sizes and spacings all unequal so that no axis can stand for another

SIZE, STEPS = (50, 80), (0.9, 0.6)


def ellipse():
    y, x = (np.arange(n) * h for n, h in zip(SIZE, STEPS))
    return ((y[:, None] - 22.3) / 15) ** 2 + ((x[None, :] - 24.1) / 10) ** 2 - 1


def test_an_ellipse_keeps_its_place_axes_and_area_under_unequal_spacings():
    (ring,) = quorbin.contours(ellipse(), spacing=STEPS)
    assert ring[:, 0].min() == pytest.approx(22.3 - 15, abs=0.02)
    assert ring[:, 1].max() == pytest.approx(24.1 + 10, abs=0.02)
    assert area_of(ring) == pytest.approx(np.pi * 150, rel=0.002)
    np.testing.assert_allclose(
        quorbin.contours(ellipse().T, spacing=STEPS[::-1])[0].mean(0), (24.1, 22.3), atol=0.4
    )


def test_a_distance_is_measured_in_units_of_each_axis():
    distance = quorbin.reinitialize(ellipse(), spacing=STEPS)
    assert distance[round(22.3 / 0.9), 0] == pytest.approx(24.1 - 10, abs=0.05)
    assert distance[0, round(24.1 / 0.6)] == pytest.approx(22.3 - 15, abs=0.05)
    for field in (distance.T, distance[::-1], distance[:, ::-1]):
        again = quorbin.reinitialize(field, spacing=STEPS[::-1] if field.shape != SIZE else STEPS)
        np.testing.assert_allclose(again, field, atol=0.02)


def test_a_disc_loses_two_pi_in_unit_time_and_vanishes_after_half_the_square_of_its_radius():
    y, x = (np.arange(n) * h for n, h in zip(SIZE, STEPS))
    disc = np.hypot(y[:, None] - 22.3, x[None, :] - 24.1) - 8
    flow = quorbin.curvature_flow(disc, 16, spacing=STEPS, implicit=False)
    (ring,) = quorbin.contours(flow.field, spacing=STEPS)
    assert area_of(ring) == pytest.approx(np.pi * (64 - 32), rel=0.005)
    gone = quorbin.curvature_flow(disc, 100, spacing=STEPS, implicit=False)
    assert gone.vanished
    assert gone.time == pytest.approx(32, rel=0.02)


def test_a_ring_has_an_outline_counterclockwise_and_a_hole_clockwise():
    y, x = np.mgrid[:64, :64]
    ring = np.abs(np.hypot(y - 31.7, x - 32.2) - 20) - 4
    (region,) = quorbin.contours(ring, holes=True)
    assert area_of(region.outline) == pytest.approx(np.pi * 24**2, rel=0.002)
    assert area_of(region.holes[0]) == pytest.approx(-np.pi * 16**2, rel=0.003)
    (polygon,) = quorbin.polygons(ring)
    assert polygon.is_valid
    assert polygon.area == pytest.approx(np.pi * (24**2 - 16**2), rel=0.002)
    assert polygon.centroid.x == pytest.approx(32.2, abs=0.01)


def ball(spacing=(1.0, 0.8, 0.6), centre=(9.1, 9.9, 10.4), radius=7.0):
    axes = np.ogrid[:20, :26, :36]
    return np.sqrt(sum((axis * h - c) ** 2 for axis, h, c in zip(axes, spacing, centre))) - radius


def test_a_ball_is_closed_outward_and_where_it_should_be():
    spacing = (1.0, 0.8, 0.6)
    vertices, faces, normals = quorbin.mesh(ball(), spacing=spacing)
    out = vertices - (9.1, 9.9, 10.4)
    np.testing.assert_allclose(np.linalg.norm(out, axis=1), 7, atol=0.02)
    np.testing.assert_allclose(normals, out / np.linalg.norm(out, axis=1, keepdims=True), atol=0.01)
    assert volume_of(vertices, faces) == pytest.approx(4 / 3 * np.pi * 7**3, rel=0.01)
    edges = np.concatenate([faces[:, [0, 1]], faces[:, [1, 2]], faces[:, [2, 0]]])
    assert len(np.unique(edges, axis=0)) == len(edges)
    assert {tuple(e) for e in edges.tolist()} == {tuple(e[::-1]) for e in edges.tolist()}


@pytest.mark.parametrize("mirrored", [1, -1])
def test_an_affine_places_a_mesh_and_keeps_it_outward_even_as_a_mirror_image(mirrored):
    affine = np.array([[0, 0.2, -2.0, 5], [1.5 * mirrored, 0, 0.1, -3], [0, 0.7, 0.3, 2], [0, 0, 0, 1]])
    plain = quorbin.mesh(ball(), spacing=(1.0, 0.8, 0.6))
    index = plain.vertices / (1.0, 0.8, 0.6)
    placed = quorbin.mesh(ball(), spacing=(1.0, 0.8, 0.6), affine=affine)
    np.testing.assert_allclose(placed.vertices, index @ affine[:3, :3].T + affine[:3, 3], atol=1e-12)
    expected = volume_of(plain.vertices, plain.faces) * abs(np.linalg.det(affine[:3, :3])) / (1.0 * 0.8 * 0.6)
    assert volume_of(placed.vertices, placed.faces) == pytest.approx(expected)
    a, b, c = np.moveaxis(placed.vertices[placed.faces], 1, 0)
    across = np.cross(b - a, c - a)
    large = np.linalg.norm(across, axis=1) > 1e-3
    agreeing = np.einsum("ij,ij->i", across, placed.normals[placed.faces[:, 0]])
    assert (agreeing[large] > 0).all()
    np.testing.assert_allclose(np.linalg.norm(placed.normals, axis=1), 1)
