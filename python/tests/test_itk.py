from pathlib import Path

import numpy as np
import pytest

import quorbin

DIRECTION = (0.0, -1.0, 0.0, 1.0, 0.0, 0.0, 0.0, 0.0, 1.0)


def test_axes_spacing_origin_and_direction_are_turned_and_come_back():
    sitk = pytest.importorskip("SimpleITK")
    image = sitk.Image(4, 3, 2, sitk.sitkInt16)  # x, y, z
    image[3, 1, 0] = 7
    image.SetSpacing((0.5, 2.0, 3.0))
    image.SetOrigin((10.0, 20.0, 30.0))
    image.SetDirection(DIRECTION)
    placed = quorbin.from_sitk(image)
    assert placed.values.shape == (2, 3, 4)
    assert placed.values[0, 1, 3] == 7
    assert placed.values.dtype == np.float64
    assert placed.spacing == (3, 2, 0.5)
    assert placed.origin == (30, 20, 10)
    # A step along an axis goes to the same place in the world, by either order.
    index = np.array([1, 2, 3])  # z, y, x
    world = np.array(placed.origin) + placed.direction @ (np.array(placed.spacing) * index)
    assert tuple(world[::-1]) == image.TransformIndexToPhysicalPoint((3, 2, 1))
    for like in (image, placed):
        back = quorbin.to_sitk(placed.values, like=like)
        assert back.GetSpacing() == image.GetSpacing()
        assert back.GetOrigin() == image.GetOrigin()
        assert back.GetDirection() == DIRECTION
        assert back[3, 1, 0] == 7
    assert quorbin.to_sitk(placed.values > 0, like=image).GetPixelID() == sitk.sitkUInt8
    with pytest.raises(ValueError, match="2 axes, and what they are to be like 3"):
        quorbin.to_sitk(np.zeros((2, 2)), like=image)
    with pytest.raises(ValueError, match="components"):
        quorbin.from_sitk(sitk.Image([2, 2], sitk.sitkVectorUInt8, 3))


def test_images_of_itk_are_taken_too():
    itk = pytest.importorskip("itk")
    image = itk.image_from_array(np.arange(24, dtype=np.float32).reshape(2, 3, 4))
    image.SetSpacing((0.5, 2.0, 3.0))
    placed = quorbin.from_sitk(image)
    np.testing.assert_array_equal(placed.values, np.arange(24).reshape(2, 3, 4))
    assert placed.spacing == (3, 2, 0.5)
    np.testing.assert_array_equal(placed.direction, np.eye(3))


@pytest.mark.parametrize(("shape", "ending"), [((5, 6), "fl2d"), ((3, 4, 5), "fl3d")])
def test_napari_reads_and_writes_what_the_manifest_says(tmp_path, shape, ending):
    from quorbin import _napari

    values = np.arange(np.prod(shape), dtype=float).reshape(shape) - 7
    path = str(tmp_path / f"a.{ending}")
    scale = np.array([4.0, 3, 2][-len(shape) :])
    assert _napari.write_field(path, values, {"scale": scale}) == [path]
    assert _napari.get_reader("a.png") is None
    ((read, meta, kind),) = _napari.get_reader([path])([path])
    np.testing.assert_array_equal(read, values)
    assert tuple(meta["scale"]) == tuple(scale)
    assert kind == "image"


def test_the_manifest_is_one():
    npe2 = pytest.importorskip("npe2")
    manifest = npe2.PluginManifest.from_file(Path(quorbin.__file__).with_name("napari.yaml"))
    assert {command.python_name for command in manifest.contributions.commands} == {
        "quorbin._napari:get_reader",
        "quorbin._napari:write_field",
    }
