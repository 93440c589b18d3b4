"""python_case.py NAME SIDE: one case of python_peers.py in a process of its own; prints a JSON object."""

from __future__ import annotations

import importlib
import json
import sys
import time
from functools import partial
from pathlib import Path

import numpy as np

SHAPE = {"disc": 2, "mask": 2, "contour": 2, "flow": 2, "ball": 3, "ball mask": 3, "surface": 3, "snake": 2}


def memory(name: str) -> int:
    with Path("/proc/self/status").open() as status:
        return next(int(line.split()[1]) * 1024 for line in status if line.startswith(name + ":"))


def true_distance(n: int, axes: int) -> np.ndarray:
    """To a disc or ball beside the samples and symmetries of the grid."""
    squares = sum((axis - c * n) ** 2 for axis, c in zip(np.ogrid[(slice(0, n),) * axes], (0.483, 0.512, 0.497)))
    return np.sqrt(squares) - 0.3 * n


def itk(function: str):
    """SimpleITK's functions of one picture, as ones of arrays."""
    import SimpleITK as sitk  # noqa: N813

    def run(values: np.ndarray, **options: object) -> np.ndarray:
        return sitk.GetArrayFromImage(getattr(sitk, function)(sitk.GetImageFromArray(values), **options))

    return run


def itk_marching(true: np.ndarray):
    """Marches in both directions from the samples beside the outline, whose distances it is given."""
    import SimpleITK as sitk  # noqa: N813

    def run(field: np.ndarray) -> np.ndarray:
        result = np.empty_like(field)
        for sign in (1, -1):
            seeds = np.argwhere((sign * true >= 0) & (sign * true < 1))
            marcher = sitk.FastMarchingImageFilter()
            marcher.SetTrialPoints([[int(c) for c in point[::-1]] for point in seeds])
            marcher.SetInitialTrialValues([float(v) for v in sign * true[tuple(seeds.T)]])
            speed = sitk.GetImageFromArray((sign * field >= 0).astype(float))
            times = sitk.GetArrayFromImage(marcher.Execute(speed))
            side = sign * field >= 0
            result[side] = sign * times[side]
        return result

    return run


def chan_vese(n: int, name: str):
    from skimage import segmentation

    if name == "chan_vese":
        return lambda picture: segmentation.chan_vese(picture, mu=0.1, max_num_iter=100, tol=0)
    return lambda picture: segmentation.morphological_chan_vese(picture, 100, smoothing=1)


def case(name: str, n: int):
    """Return the call, what it is given and what tells the error of its result."""
    subject, system = name.split(": ")
    axes = SHAPE[subject]
    true = true_distance(n, axes)
    near = np.abs(true) < 3
    field = true * (true + 0.6 * n) / (0.6 * n)  # of the right slope at the outline only
    mask = true <= 0

    def distance_error(found: np.ndarray) -> float:
        return float(np.abs(found - true)[near].mean())

    def outline_error(points: np.ndarray) -> float:
        centre = np.array((0.483, 0.512, 0.497)[:axes]) * n
        return float(np.abs(np.linalg.norm(points - centre, axis=1) - 0.3 * n).mean())

    def load(module: str):
        return importlib.import_module(module)

    if subject in ("disc", "ball"):
        calls = {
            "quorbin reinitialize": lambda: load("quorbin").reinitialize,
            "quorbin fmm": lambda: partial(load("quorbin").signed_distance, method="fmm"),
            "scikit-fmm order 1": lambda: partial(load("skfmm").distance, order=1),
            "scikit-fmm order 2": lambda: partial(load("skfmm").distance, order=2),
            "SimpleITK ReinitializeLevelSet": lambda: itk("ReinitializeLevelSet"),
            "SimpleITK FastMarching, exact seeds": lambda: itk_marching(true),
        }
        return calls[system](), field, distance_error
    if subject in ("mask", "ball mask"):

        def edt(values: np.ndarray) -> np.ndarray:
            transform = load("scipy.ndimage").distance_transform_edt
            return np.where(values, -transform(values), transform(~values))

        if system == "SciPy distance_transform_edt":
            load("scipy.ndimage")
            return edt, mask, distance_error
        if system == "SimpleITK SignedMaurerDistanceMap":
            run = itk("SignedMaurerDistanceMap")
            return (
                lambda m: run(m, squaredDistance=False, useImageSpacing=True),
                mask.astype(np.uint8),
                distance_error,
            )
        function = load("quorbin").smooth_mask if "smooth" in system else load("quorbin").signed_distance
        options = {"method": "fmm"} if "fmm" in system else {}
        return lambda m: function(m, **options), mask, distance_error
    if subject == "contour":
        if "skimage" in system:
            find = load("skimage.measure").find_contours
            return lambda f: find(f, 0.0), true, lambda lines: outline_error(np.concatenate(lines))
        return load("quorbin").contours, true, lambda lines: outline_error(np.concatenate(lines))
    if subject == "surface":
        if "skimage" in system:
            march = load("skimage.measure").marching_cubes
            method = system.split()[-1]
            return lambda f: march(f, 0.0, method=method), true, lambda found: outline_error(found[0])
        return load("quorbin").mesh, true, lambda found: outline_error(found[0])
    # A bright disc in noise: how many of its samples are taken for background, or the other way round.
    picture = np.where(mask, 1.0, 0.0) + 0.5 * np.random.default_rng(1).standard_normal(true.shape)

    def wrong(found: np.ndarray) -> float:
        return float(100 * min((found ^ mask).mean(), (~found ^ mask).mean()))

    if "quorbin" in system:
        flow = load("quorbin").curvature_flow
        return lambda p: flow(0.5 - p, 8.0).field <= 0, picture, wrong
    run = chan_vese(n, system.split()[-1])
    return lambda p: run(p).astype(bool), picture, wrong


name, side = sys.argv[1], int(sys.argv[2])
call, given, error = case(name, side)
Path("/proc/self/clear_refs").write_text("5")  # forgets the peak of the setup
before = memory("VmRSS")
start = time.perf_counter()
result = call(given)
seconds = time.perf_counter() - start
grown = memory("VmHWM") - before
print(
    json.dumps(
        {"name": name, "side": side, "seconds": seconds, "bytes": grown / given.size, "error": error(result)}
    )
)
