"""What may be given as a field and as out=, and what is said of all the rest."""

from __future__ import annotations

import collections
import re
import tracemalloc
from pathlib import Path

import numpy as np
import pytest
from hypothesis import given, settings
from hypothesis import strategies as st
from hypothesis.extra import numpy as hnp

import quorbin

TRANSFORMS = {
    "reinitialize": quorbin.reinitialize,
    "projection": quorbin.signed_distance,
    "fmm": lambda field, **options: quorbin.signed_distance(field, method="fmm", **options),
    "segments": lambda field, **options: quorbin.signed_distance(field, method="segments", **options),
    "brute": lambda field, **options: quorbin.signed_distance(field, method="brute", **options),
    "curvature_flow": lambda field, **options: quorbin.curvature_flow(field, 0.3, **options).field,
    "smooth_mask": quorbin.smooth_mask,
}
OF_PICTURES_ONLY = ("segments", "brute")
FIELD = np.hypot(*(np.mgrid[:19, :23] - np.array([9.3, 10.8])[:, None, None])) - 6.2
VOLUME = np.linalg.norm(np.mgrid[:7, :8, :9] - np.array([3.1, 3.8, 4.2])[:, None, None, None], axis=0) - 2.4

every = pytest.mark.parametrize("name", TRANSFORMS)
# Beside greater ones, smaller values are on the interface to rounding: their distance, which may be 0, is inside.
values = st.floats(-5, 5).map(lambda value: value if abs(value) > 1e-9 else 0.0)
values |= st.sampled_from([0.0, -0.0, np.inf, -np.inf, np.nan, 1e4])


@settings(max_examples=150, deadline=None)
@given(hnp.arrays(np.float64, hnp.array_shapes(min_dims=0, max_dims=4, min_side=0, max_side=5), elements=values))
def test_any_array_gives_finite_distances_of_the_same_sides_or_a_value_error(field):
    before = field.copy()
    for name, transform in TRANSFORMS.items():
        try:
            result = transform(field, nan="outside")
        except ValueError as error:
            text = str(error)
            if field.ndim not in (2, 3):
                assert re.search(rf"has {field.ndim} ax[ie]s; it must have 2, \(y, x\), or 3", text) or (
                    name in OF_PICTURES_ONLY and field.ndim < 2
                ), text
            elif name in OF_PICTURES_ONLY and field.ndim == 3:
                assert "two axes" in text
            else:
                assert type(error) is quorbin.NoInterface, text
                assert len(np.unique(field <= 0)) < 2, text
        else:
            assert result.shape == field.shape
            assert result.dtype == np.float64
            assert np.isfinite(result).all(), name
            if name != "curvature_flow":
                np.testing.assert_array_equal(result <= 0, field <= 0, err_msg=name)
        np.testing.assert_array_equal(field, before)


@settings(max_examples=100, deadline=None)
@given(
    hnp.arrays(np.float64, hnp.array_shapes(min_dims=0, max_dims=4, min_side=0, max_side=5), elements=values),
    st.booleans(),
)
def test_contours_close_and_meshes_index_their_vertices_whatever_the_array(field, closed):
    if field.ndim == 2:
        for line in quorbin.contours(field, closed=closed, nan="outside"):
            assert line.shape[1] == 2
            assert np.isfinite(line).all()
            if closed:
                np.testing.assert_array_equal(line[0], line[-1])
    else:
        with pytest.raises(ValueError, match=f"has {field.ndim} ax"):
            quorbin.contours(field, nan="outside")
    if field.ndim == 3:
        vertices, faces, normals = quorbin.mesh(field, nan="outside", capped=closed)
        assert vertices.shape == normals.shape
        assert np.isfinite(vertices).all()
        assert ((faces >= 0) & (faces < len(vertices))).all()
    else:
        with pytest.raises(ValueError, match=f"has {field.ndim} ax"):
            quorbin.mesh(field, nan="outside")


NUMBERS = ["f2", "f4", "f8", "g", "i1", "i2", "i4", "i8", ">f4", ">f8", ">i2", "<i8", "u1", ">u8"]


@pytest.mark.parametrize("kind", NUMBERS)
def test_numbers_of_any_type_are_the_same_field_as_in_float64(kind):
    field = np.round(FIELD * 4).clip(0 if "u" in kind else -np.inf).astype(kind)
    np.testing.assert_array_equal(quorbin.reinitialize(field), quorbin.reinitialize(field.astype(np.float64)))


def test_a_long_double_beyond_all_others_is_infinite():
    field = FIELD.astype(np.longdouble)
    field[0, 0] = np.longdouble("1e4000")
    assert np.isfinite(quorbin.reinitialize(field)).all()


@every
def test_a_boolean_array_is_a_mask(name):
    expected = TRANSFORMS[name](np.where(FIELD <= 0, -0.5, 0.5))
    np.testing.assert_array_equal(TRANSFORMS[name](FIELD <= 0), expected)
    np.testing.assert_array_equal(TRANSFORMS[name]((FIELD <= 0).tolist()), expected)


@pytest.mark.parametrize(
    ("field", "words"),
    [
        (FIELD.astype("M8[s]"), "astype"),
        (FIELD.astype("m8[s]"), "astype"),
        (FIELD.astype(object), "dtype=float"),
        (FIELD.astype(complex), r"\.real"),
        (FIELD.astype("U3"), "give an array of numbers"),
        (FIELD.astype("S3"), "give an array of numbers"),
        (np.zeros((5, 5), [("a", float)]), "members"),
        (np.ma.array(FIELD, mask=FIELD > 4), "filled"),
        (None, "NoneType"),
        ({}, "dict"),
        (iter([1]), "iterator"),
        ("picture.png", "read"),
        (Path("picture.png"), "read"),
    ],
)
def test_what_is_no_array_of_numbers_is_refused_with_the_way_out(field, words):
    for function in (*TRANSFORMS.values(), quorbin.contours, quorbin.mesh):
        with pytest.raises(TypeError, match=words):
            function(field)


def test_rows_of_several_lengths_are_refused():
    with pytest.raises(ValueError, match="cannot be made an array"):
        quorbin.reinitialize([[1.0, -1.0], [2.0]])


class WithArray:
    def __array__(self, dtype=None, copy=None):
        return FIELD if dtype is None else FIELD.astype(dtype)


class WithDLPack:
    def __dlpack__(self, **options):
        return FIELD.__dlpack__(**options)

    def __dlpack_device__(self):
        return FIELD.__dlpack_device__()


class Elsewhere(WithDLPack):
    def __dlpack_device__(self):
        return (2, 0)


def unaligned(field):
    return np.frombuffer(b"x" + field.tobytes(), np.uint8)[1:].view(np.float64).reshape(field.shape)


def read_only(field):
    field = field.copy()
    field.flags.writeable = False
    return field


SAME = {
    "Fortran order": np.asfortranarray,
    "transposed twice": lambda f: np.ascontiguousarray(f.T).T,
    "negative strides": lambda f: np.ascontiguousarray(f[::-1, ::-1])[::-1, ::-1],
    "every second": lambda f: np.repeat(np.repeat(f, 2, 0), 2, 1)[::2, ::2],
    "a part of more": lambda f: np.pad(f, 3)[3:-3, 3:-3],
    "unaligned": unaligned,
    "read-only": read_only,
    "swapped bytes": lambda f: f.astype(">f8"),
    "matrix": np.matrix,
    "subclass": lambda f: f.view(type("Sub", (np.ndarray,), {})),
    "lists": lambda f: f.tolist(),
    "__array__": lambda f: WithArray(),
    "DLPack": lambda f: WithDLPack(),
}


@pytest.mark.parametrize("kind", SAME)
@pytest.mark.filterwarnings("ignore:the matrix subclass:PendingDeprecationWarning")
def test_the_same_values_are_the_same_field_however_they_lie(kind):
    field = SAME[kind](FIELD)
    before = np.array(field, copy=True) if isinstance(field, np.ndarray) else None
    for transform in TRANSFORMS.values():
        result = transform(field)
        assert type(result) is np.ndarray
        np.testing.assert_array_equal(result, transform(FIELD))
    np.testing.assert_array_equal(quorbin.contours(field)[0], quorbin.contours(FIELD)[0])
    if before is not None:
        np.testing.assert_array_equal(field, before)


def test_a_field_of_stride_0_is_the_plane_that_it_shows():
    row = np.arange(6) - 2.25
    plane = np.broadcast_to(row, (5, 6))
    np.testing.assert_allclose(quorbin.reinitialize(plane), plane, atol=1e-12)
    assert quorbin.mesh(np.broadcast_to(row, (4, 5, 6))).vertices[:, 2].tolist() == pytest.approx([2.25] * 20)
    np.testing.assert_array_equal(row, np.arange(6) - 2.25)


def test_tables_and_labelled_arrays_are_fields():
    expected = quorbin.reinitialize(FIELD)
    pandas, xarray = pytest.importorskip("pandas"), pytest.importorskip("xarray")
    np.testing.assert_array_equal(quorbin.reinitialize(pandas.DataFrame(FIELD)), expected)
    np.testing.assert_array_equal(quorbin.reinitialize(xarray.DataArray(FIELD, dims=("y", "x"))), expected)
    with pytest.raises(TypeError, match="object"):
        quorbin.reinitialize(pandas.DataFrame({"a": [1, 2], "b": ["x", "y"]}))


def test_an_array_on_another_device_is_refused():
    with pytest.raises(TypeError, match="another device"):
        quorbin.reinitialize(Elsewhere())


@every
def test_out_may_be_another_array_or_the_field_itself_under_any_name(name, tmp_path):
    expected = TRANSFORMS[name](FIELD)
    other = np.empty(FIELD.shape)
    assert TRANSFORMS[name](FIELD, out=other) is other
    np.testing.assert_array_equal(other, expected)
    for same in (FIELD.copy(), np.memmap(tmp_path / name, np.float64, "w+", shape=FIELD.shape)):
        same[:] = FIELD
        view = same[:]
        assert TRANSFORMS[name](same, out=view) is view
        np.testing.assert_array_equal(same, expected)


BLOCK = np.zeros(3 * FIELD.size)
OVERLAPPING = BLOCK[: FIELD.size].reshape(FIELD.shape)
UNFIT = [
    (FIELD.tolist(), TypeError),
    (np.empty(FIELD.shape, "f4"), TypeError),
    (np.empty(FIELD.shape, ">f8"), TypeError),
    (np.ma.zeros(FIELD.shape), TypeError),
    (np.empty(FIELD.shape[::-1]), ValueError),
    (np.empty(FIELD.shape[::-1]).T, ValueError),
    (np.empty((38, 23))[::2], ValueError),
    (unaligned(FIELD), ValueError),
    (read_only(FIELD), ValueError),
    (BLOCK[3 : 3 + FIELD.size].reshape(FIELD.shape), ValueError),
]


@every
@pytest.mark.parametrize(("out", "error"), UNFIT)
def test_an_out_that_does_not_fit_is_refused_and_nothing_written(name, out, error):
    OVERLAPPING[:] = FIELD
    with pytest.raises(error, match="out "):
        TRANSFORMS[name](OVERLAPPING, out=out)
    np.testing.assert_array_equal(OVERLAPPING, FIELD)


WRONG = [
    ({"spacing": 0}, ValueError, "spacing is 0"),
    ({"spacing": -1.0}, ValueError, "positive"),
    ({"spacing": np.nan}, ValueError, "positive"),
    ({"spacing": 1e308}, ValueError, "spacing is 1e"),
    ({"spacing": 1e-320}, ValueError, "positive"),
    ({"spacing": (1, 2, 3)}, ValueError, "3 values"),
    ({"spacing": []}, ValueError, "0 values"),
    ({"spacing": [[1, 2]]}, ValueError, "2 axes"),
    ({"spacing": "12"}, TypeError, "spacing is '12'"),
    ({"spacing": None}, TypeError, "spacing is None"),
    ({"spacing": 1j}, TypeError, "one number"),
    ({"nan": "no"}, ValueError, "nan is 'no'"),
    ({"progress": 1}, TypeError, "progress is 1"),
]


@every
@pytest.mark.parametrize(("options", "error", "words"), WRONG)
def test_a_wrong_option_is_named_and_leaves_out_alone(name, options, error, words):
    out = np.full(FIELD.shape, 7.0)
    with pytest.raises(error, match=words):
        TRANSFORMS[name](FIELD, out=out, **options)
    assert (out == 7).all()


@pytest.mark.parametrize(
    ("call", "error", "words"),
    [
        (lambda: quorbin.signed_distance(FIELD, method="x"), ValueError, '"projection", "fmm"'),
        (lambda: quorbin.signed_distance(FIELD, method=None), TypeError, "method is None"),
        (lambda: quorbin.signed_distance(FIELD, method="brute", spacing=(1, 2)), ValueError, "equal spacings"),
        (lambda: quorbin.signed_distance(VOLUME, method="segments"), ValueError, "two axes"),
        (lambda: quorbin.curvature_flow(FIELD, "3"), TypeError, "time is '3'"),
        (lambda: quorbin.curvature_flow(FIELD, -1), ValueError, "time is -1"),
        (lambda: quorbin.curvature_flow(FIELD, 1, rate=np.inf), ValueError, "rate is inf"),
        (lambda: quorbin.curvature_flow(FIELD, 1, noise_radius=1.5), TypeError, "noise_radius is 1.5"),
        (lambda: quorbin.curvature_flow(FIELD, 1, noise_radius=2**40), ValueError, "noise_radius is"),
        (lambda: quorbin.curvature_flow(FIELD, 1, noise_radius=1, implicit=True), ValueError, "noise_radius"),
        (lambda: quorbin.contours(FIELD, level=np.nan), ValueError, "level is nan"),
        (lambda: quorbin.contours(FIELD, level="a"), TypeError, "level is 'a'"),
        (lambda: quorbin.contours(FIELD, level=FIELD), TypeError, "level is"),
        (lambda: quorbin.contours(FIELD <= 0, level=0.5), ValueError, "mask"),
        (lambda: quorbin.mesh(VOLUME <= 0, level=0.5), ValueError, "mask"),
        (lambda: quorbin.contours(FIELD, simplify=-1), ValueError, "simplify is -1"),
        (lambda: quorbin.contours(FIELD, simplify=None), TypeError, "simplify is None"),
        (lambda: quorbin.contours(FIELD, closed=False, holes=True), ValueError, "closed"),
        (lambda: quorbin.mesh(VOLUME, affine=np.eye(3)), ValueError, "4 × 4"),
        (lambda: quorbin.mesh(VOLUME, affine=np.eye(4) * 1j), ValueError, "4 × 4"),
        (lambda: quorbin.mesh(VOLUME, affine=np.diag([1, 1, 0, 1])), ValueError, "flat"),
        (lambda: quorbin.mesh(VOLUME, affine=np.diag([1, 1, 1, 2])), ValueError, "last row"),
    ],
)
def test_a_wrong_argument_is_named(call, error, words):
    with pytest.raises(error, match=words):
        call()


def test_a_level_is_taken_from_the_values():
    for level in (2, np.float32(-1.5), np.array(0.5)):
        np.testing.assert_array_equal(
            quorbin.contours(FIELD, level=level)[0], quorbin.contours(FIELD - float(level))[0]
        )
        np.testing.assert_array_equal(
            quorbin.mesh(VOLUME, level=level).vertices, quorbin.mesh(VOLUME - float(level)).vertices
        )


@pytest.mark.parametrize(("field", "index"), [(FIELD, (3, 4)), (VOLUME, (1, 2, 5))])
def test_the_first_value_that_is_no_number_is_named_or_taken_for_outside(field, index):
    holed = field.copy()
    holed[index] = np.nan
    holed[-1, -1] = np.nan
    functions = [f for n, f in TRANSFORMS.items() if field.ndim == 2 or n not in OF_PICTURES_ONLY]
    for function in [*functions, quorbin.contours if field.ndim == 2 else quorbin.mesh]:
        with pytest.raises(ValueError, match=re.escape(f"the value at {list(index)} is not a number")):
            function(holed)
    for function in functions[:4]:
        assert function(holed, nan="outside")[index] > 0


def test_float64_in_c_order_is_copied_into_the_result_only():
    n = 512
    field = np.hypot(*(np.mgrid[:n, :n] - n / 2)) - n / 3
    volume = np.linalg.norm(np.mgrid[:48, :48, :48] - 24, axis=0) - 9.0
    calls = [
        (lambda: quorbin.signed_distance(field, method="fmm"), field.nbytes),
        (lambda: quorbin.reinitialize(field, out=field), 0),
        (lambda: quorbin.contours(field), 0),
        (lambda: quorbin.contours(field, level=3.0), 0),
        (lambda: quorbin.mesh(volume), 0),
    ]
    for call, allowed in calls:
        tracemalloc.start()
        call()
        peak = tracemalloc.get_traced_memory()[1]
        tracemalloc.stop()
        assert peak < allowed + 20_000


def test_what_comes_back_keeps_its_memory_alive_and_owns_no_other():
    line = quorbin.contours(FIELD)[0]
    before = line.copy()
    collections.deque((quorbin.contours(VOLUME[3]) for _ in range(50)), maxlen=0)
    np.testing.assert_array_equal(line, before)
    assert line.flags.writeable
    assert not np.may_share_memory(line, FIELD)
