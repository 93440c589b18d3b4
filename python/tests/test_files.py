import errno
import json
import logging
import os
import struct
import threading
import xml.etree.ElementTree as ET
from pathlib import Path

import numpy as np
import pytest

import quorbin

Y, X = np.mgrid[:40, :50]
DISC = np.hypot(2 * (Y - 18.7), X - 24.2) - 12  # spacing (2, 1)
Z3, Y3, X3 = np.mgrid[:10, :12, :14]
BALL = np.sqrt((Z3 - 4.7) ** 2 + (Y3 - 5.2) ** 2 + (X3 - 6.1) ** 2) - 3.5
AFFINE = np.array([[0, 0, 3, -7], [0, -2, 0, 11], [1.5, 0, 0, 5], [0, 0, 0, 1]])  # (x, y, z) → (x, y, z)


@pytest.mark.parametrize("ending", ["fl2d", "npy", "tif"])
def test_a_field_of_two_axes_comes_back_bit_for_bit(tmp_path, ending):
    path = tmp_path / f"field.{ending}"
    quorbin.write(path, DISC, spacing=(2, 1))
    image = quorbin.read(path)
    np.testing.assert_array_equal(image.values, DISC)
    assert image.values.dtype == np.float64
    assert image.is_field
    if ending == "fl2d":
        assert image.spacing == (2, 1)


@pytest.mark.parametrize("ending", ["fl3d", "npy", "nii", "nii.gz", "tif"])
def test_a_field_of_three_axes_comes_back_bit_for_bit(tmp_path, ending):
    path = tmp_path / f"field.{ending}"
    quorbin.write(path, BALL, spacing=(3, 2, 1.5))
    image = quorbin.read(str(path))
    np.testing.assert_array_equal(image.values, BALL)
    if ending in ("fl3d", "nii", "nii.gz"):
        assert image.spacing == (3, 2, 1.5)


def test_spacing_and_affine_lie_in_the_file_as_others_have_them(tmp_path):
    # NIfTI's own bytes: dim and pixdim are x, y, z, and so are the rows of srow.
    turn = np.eye(4)[[2, 1, 0, 3]]
    quorbin.write(tmp_path / "a.nii", BALL, affine=turn @ AFFINE @ turn)
    header = (tmp_path / "a.nii").read_bytes()
    assert struct.unpack_from("<4h", header, 40) == (3, 14, 12, 10)
    assert struct.unpack_from("<3f", header, 80) == (1.5, 2, 3)
    assert struct.unpack_from("<12f", header, 280) == tuple(AFFINE[:3].ravel())
    image = quorbin.read(tmp_path / "a.nii")
    np.testing.assert_array_equal(image.affine, turn @ AFFINE @ turn)
    assert image.spacing == (3, 2, 1.5)


def test_pictures_have_row_0_at_the_top_and_masks_are_white_inside(tmp_path):
    (tmp_path / "a.pgm").write_bytes(b"P5 3 2 255\n" + bytes([1, 2, 3, 4, 5, 6]))
    np.testing.assert_array_equal(quorbin.read(tmp_path / "a.pgm").values, [[1, 2, 3], [4, 5, 6]])
    greys = np.arange(6, dtype=np.uint8).reshape(2, 3) * 40
    quorbin.write(tmp_path / "greys.png", greys)
    image = quorbin.read(tmp_path / "greys.png")
    np.testing.assert_array_equal(image.values, greys)
    assert not image.is_field
    assert image.format == "PNG"
    quorbin.write(tmp_path / "mask.png", DISC <= 0)
    np.testing.assert_array_equal(quorbin.read(tmp_path / "mask.png").values, np.where(DISC <= 0, 255, 0))
    quorbin.write(tmp_path / "mask.nii", BALL <= 0)
    np.testing.assert_array_equal(quorbin.read(tmp_path / "mask.nii").values, BALL <= 0)


def test_colours_are_read_as_luminance_or_one_of_them(tmp_path):
    (tmp_path / "a.ppm").write_bytes(b"P6 1 1 255\n" + bytes([10, 100, 200]))
    assert quorbin.read(tmp_path / "a.ppm", channel="g").values == 100
    assert quorbin.read(tmp_path / "a.ppm", channel=2).values == 200
    assert quorbin.read(tmp_path / "a.ppm").values == pytest.approx(0.299 * 10 + 0.587 * 100 + 0.114 * 200)


def test_raw_samples_are_read_by_shape_and_type(tmp_path):
    samples = np.arange(24, dtype="<i2").reshape(2, 3, 4)
    samples.tofile(tmp_path / "a.raw")
    np.testing.assert_array_equal(quorbin.read(tmp_path / "a.raw", raw=((2, 3, 4), np.int16)).values, samples)
    with pytest.raises(ValueError, match="raw="):
        quorbin.read(tmp_path / "a.raw")


@pytest.mark.parametrize(
    ("choice", "expected"),
    [
        ({}, [[105 - 10, 105 - 10, 105 - 200, 105 - 205]]),  # Otsu: half way between 10 and 200
        ({"level": 50}, [[40, 40, -150, -155]]),
        ({"level": 50, "inside": "below"}, [[-40, -40, 150, 155]]),
        ({"between": (150, 201)}, [[140, 140, -1, 4]]),
        ({"label": 200}, [[0.5, 0.5, -0.5, 0.5]]),
    ],
)
def test_a_field_is_made_of_a_picture_as_the_tool_makes_it(tmp_path, choice, expected):
    (tmp_path / "a.pgm").write_bytes(b"P5 4 1 255\n" + bytes([10, 10, 200, 205]))
    image = quorbin.read_field(tmp_path / "a.pgm", **choice)
    np.testing.assert_array_equal(image.values, expected)
    assert image.is_field


def test_what_is_to_know_of_the_reading_is_logged_and_not_printed(tmp_path, caplog, capfd):
    (tmp_path / "a.pgm").write_bytes(b"P5 3 1 255\n" + bytes([10, 100, 200]))
    with caplog.at_level(logging.INFO, "quorbin"):
        image = quorbin.read_field(tmp_path / "a.pgm")
    assert any("Otsu" in note for note in image.notes)
    assert [record.name for record in caplog.records] == ["quorbin"]
    quorbin.write(tmp_path / "a.fr3d", BALL)  # the library prints a line when it loads one
    np.testing.assert_array_equal(quorbin.read(tmp_path / "a.fr3d").values, np.where(BALL <= 0, -1, 1))
    assert capfd.readouterr() == ("", "")


def test_faults_of_files_are_exceptions_of_the_fitting_kind(tmp_path):
    with pytest.raises(
        FileNotFoundError, match=r"none\.png: cannot be opened .*; give a file that is there"
    ) as info:
        quorbin.read(tmp_path / "none.png")
    assert info.value.errno == errno.ENOENT
    (tmp_path / "text.png").write_text("no picture")
    with pytest.raises(ValueError, match=r"text\.png: is of no known format; give a picture"):
        quorbin.read(tmp_path / "text.png")
    np.save(tmp_path / "a.npy", [[0.0, np.nan]])
    with pytest.raises(ValueError, match=r"a\.npy: holds values that are not finite, 1 of them; .* nan=VALUE$"):
        quorbin.read(tmp_path / "a.npy")
    assert quorbin.read(tmp_path / "a.npy", nan=3).values.tolist() == [[0, 3]]
    with pytest.raises(
        ValueError, match=r"a\.png: its ending tells no format that a volume is written in; .*fl3d"
    ):
        quorbin.write(tmp_path / "a.png", BALL)
    with pytest.raises(FileNotFoundError, match="choose a folder that exists"):
        quorbin.write(tmp_path / "none" / "a.fl2d", DISC)
    folder = tmp_path / "folder.fl2d"
    folder.mkdir()
    with pytest.raises(IsADirectoryError, match="is a folder; name a file"):
        quorbin.write(folder, DISC)
    with pytest.raises(TypeError):
        quorbin.read(3.5)
    with pytest.raises(ValueError, match="no zeros"):
        quorbin.read("a\0b")


def test_names_of_any_bytes_and_a_minus_are_files(tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    for name in ("-", "\udcff --level 3", "ü"):
        with pytest.raises(FileNotFoundError) as info:
            quorbin.read(name)
        assert name in str(info.value)
        quorbin.write(Path(name + ".fl2d"), DISC)
        assert quorbin.read(name + ".fl2d").values.shape == DISC.shape
    Path("-.fl2d").rename("-")
    assert quorbin.read("-").values.shape == DISC.shape


def test_a_file_is_replaced_whole_or_not_at_all(tmp_path):
    path = tmp_path / "a.fl2d"
    quorbin.write(path, DISC)
    path.chmod(0o640)
    with pytest.raises(ValueError, match="not finite"):
        quorbin.write(path, np.full((3, 3), np.inf))
    np.testing.assert_array_equal(quorbin.read(path).values, DISC)
    quorbin.write(path, DISC + 1)
    np.testing.assert_array_equal(quorbin.read(path).values, DISC + 1)
    assert path.stat().st_mode & 0o777 == 0o640
    umask = os.umask(0o027)
    try:
        quorbin.write(tmp_path / "new.npy", DISC)
    finally:
        os.umask(umask)
    assert (tmp_path / "new.npy").stat().st_mode & 0o777 == 0o640
    path.chmod(0o444)
    with pytest.raises(PermissionError, match="read-only"):
        quorbin.write(path, DISC)
    assert sorted(p.name for p in tmp_path.iterdir()) == ["a.fl2d", "new.npy"]


def test_threads_write_and_read_at_once(tmp_path, capfd):
    failed = []

    def work(number):
        try:
            for turn in range(20):
                path = tmp_path / f"{number}-{turn}.{'fr3d' if number % 2 else 'nii'}"
                quorbin.write(path, BALL)
                assert np.array_equal(quorbin.read(path).values <= 0, BALL <= 0)
        except BaseException as error:
            failed.append(error)

    threads = [threading.Thread(target=work, args=(number,)) for number in range(8)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert not failed
    os.write(1, b"heard")
    assert capfd.readouterr().out == "heard"


def test_outlines_are_written_in_world_units_as_x_y(tmp_path):
    square = np.full((8, 9), 1.0)
    square[2:6, 2:7] = -1
    square[3:5, 4] = 1
    regions = quorbin.contours(square, spacing=(2, 1), holes=True)
    quorbin.write(tmp_path / "a.geojson", regions, spacing=(2, 1))
    quorbin.write(tmp_path / "b.geojson", quorbin.contours(square, spacing=(2, 1)), spacing=(2, 1))
    quorbin.write(tmp_path / "c.geojson", square, spacing=(2, 1))
    (feature,) = json.loads((tmp_path / "a.geojson").read_text())["features"]
    rings = [np.array(ring)[:, ::-1] for ring in feature["geometry"]["coordinates"]]
    assert len(rings) == 2
    np.testing.assert_array_equal(rings[0], regions[0].outline)
    np.testing.assert_array_equal(rings[1], regions[0].holes[0])
    assert (tmp_path / "a.geojson").read_bytes() == (tmp_path / "b.geojson").read_bytes()
    assert (tmp_path / "a.geojson").read_bytes() == (tmp_path / "c.geojson").read_bytes()
    quorbin.write(tmp_path / "a.svg", regions, spacing=(2, 1), shape=square.shape)
    quorbin.write(tmp_path / "c.svg", square, spacing=(2, 1))
    assert (tmp_path / "a.svg").read_bytes() == (tmp_path / "c.svg").read_bytes()
    assert ET.parse(tmp_path / "a.svg").getroot().get("viewBox") == "0 0 9 16"
    quorbin.write(tmp_path / "open.csv", quorbin.contours(np.array([[-1.0, 1], [-1, 1]]), closed=False))
    assert (tmp_path / "open.csv").read_text().splitlines()[1:] in (
        ["0,0,0.5,0", "0,0,0.5,1"],
        ["0,0,0.5,1", "0,0,0.5,0"],
    )
    quorbin.write(tmp_path / "none.csv", [])
    with pytest.raises(ValueError, match="no format of outlines"):
        quorbin.write(tmp_path / "a.fl2d", regions)


def test_meshes_are_written_as_x_y_z_and_closed_ones_enclose_a_positive_volume(tmp_path):
    surface = quorbin.mesh(BALL, spacing=(3, 2, 1))
    quorbin.write(tmp_path / "a.stl", surface)
    data = (tmp_path / "a.stl").read_bytes()
    triangles = np.frombuffer(data[84:], dtype=np.dtype([("n", "<f4", 3), ("v", "<f4", (3, 3)), ("a", "<u2")]))
    assert len(triangles) == len(surface.faces) == int.from_bytes(data[80:84], "little")
    corners = triangles["v"].astype(float)
    volume = np.linalg.det(corners).sum() / 6
    assert volume == pytest.approx(4 / 3 * np.pi * 3.5**3 * 6, rel=0.06)  # of a polyhedron within it
    assert np.mean(corners, axis=(0, 1)) == pytest.approx([6.1, 2 * 5.2, 3 * 4.7], abs=0.2)
    # Normals that are left out are made of the faces: outwards.
    quorbin.write(tmp_path / "a.ply", (surface.vertices, surface.faces))
    body = (tmp_path / "a.ply").read_bytes().split(b"end_header\n")[1]
    rows = np.frombuffer(body[: 24 * len(surface.vertices)], dtype="<f4").reshape(-1, 6)
    np.testing.assert_allclose(rows[:, :3], surface.vertices[:, ::-1], rtol=1e-6)
    outward = rows[:, :3] - [6.1, 2 * 5.2, 3 * 4.7]
    assert (np.einsum("ij,ij->i", rows[:, 3:], outward) > 0).all()
    with pytest.raises(ValueError, match="indices 0 to 9 of vertices, of which there are 3"):
        quorbin.write(tmp_path / "b.ply", (np.eye(3), [[0, 1, 9]]))
    with pytest.raises(ValueError, match="ply, stl, obj or vtp"):
        quorbin.write(tmp_path / "b.npy", surface)
