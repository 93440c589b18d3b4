"""python_peers.py [rounds, 3]: quorbin's Python package beside its peers; writes docs/python_peers.md.

Each case is run in fresh processes, one after the other, on one thread. Of the times the smallest counts, of the
memory the smallest growth of what is resident.
"""

from __future__ import annotations

import datetime
import importlib.metadata
import json
import os
import subprocess
import sys
from pathlib import Path

TOPICS = {
    "Signed distance of a field": {
        "disc": (1024, ["quorbin reinitialize", "quorbin fmm", "scikit-fmm order 1", "scikit-fmm order 2",
                        "SimpleITK ReinitializeLevelSet", "SimpleITK FastMarching, exact seeds"]),
        "ball": (128, ["quorbin reinitialize", "quorbin fmm", "scikit-fmm order 1", "scikit-fmm order 2",
                       "SimpleITK ReinitializeLevelSet"]),
    },
    "Signed distance of a mask": {
        subject: (side, ["quorbin fmm", "quorbin projection", "quorbin smooth_mask",
                         "SciPy distance_transform_edt", "SimpleITK SignedMaurerDistanceMap"])
        for subject, side in (("mask", 1024), ("ball mask", 128))
    },
    "Outlines and surfaces": {
        "contour": (2048, ["quorbin contours", "skimage find_contours"]),
        "surface": (128, ["quorbin mesh", "skimage marching_cubes, lewiner", "skimage marching_cubes, lorensen"]),
    },
    "A bright disc in noise of half its height": {
        "snake": (256, ["quorbin curvature_flow", "skimage chan_vese", "skimage morphological_chan_vese"]),
    },
}  # fmt: skip
WORDS = {
    "Signed distance of a field": """\
A disc or ball as (r² − R²) / 2R, of slope 1 at its outline only; R = 0.3 n. The error is the mean one nearer
than three samples to the outline, in samples. FastMarching is given the exact distances beside the outline,
which are not known to those who ask for them.
""",
    "Signed distance of a mask": """\
The same disc and ball as masks; the error is that of the distance to the true outline. SciPy measures to the
nearest sample beyond, Maurer's map to the nearest sample at the edge of the inside.
""",
    "Outlines and surfaces": """\
Of the true distance; the error is the mean one of the points' radius, in samples.
""",
    "A bright disc in noise of half its height": """\
100 steps of the segmentations of skimage, and curvature flow of the picture's middle level for a time of 8.
These do not compute the same, only serve the same end; the error is the part of wrong samples in per cent.
""",
}
INTRODUCTION = """\
# Beside other Python packages

This page is written by `bench/peers/run python`, and no figure on it by hand. Each case runs in a process of
its own on one thread. Of the times, and of the growth of resident memory during the call, the smallest of
{rounds} rounds counts. Measured on {processor}, {date}, with {versions}.{busy}
"""
BUSY = " Other programs were at work on the machine (load {load:.0f}): times are to be compared, not quoted."
PACKAGES = ("numpy", "scipy", "scikit-image", "scikit-fmm", "simpleitk")
ALONE = {**os.environ, **{f"{name}_NUM_THREADS": "1" for name in ("OMP", "OPENBLAS", "MKL", "TBB")},
         "ITK_GLOBAL_DEFAULT_NUMBER_OF_THREADS": "1"}  # fmt: skip


def measured(name: str, side: int, rounds: int) -> dict[str, float]:
    script = Path(__file__).with_name("python_case.py")
    lines = []
    for _ in range(rounds):
        run = subprocess.run([sys.executable, script, name, str(side)], env=ALONE, capture_output=True, text=True)
        if run.returncode:
            raise SystemExit(f"{name}: {run.stderr}")
        lines.append(json.loads(run.stdout.splitlines()[-1]))
    return {key: min(line[key] for line in lines) for key in ("seconds", "bytes", "error")}


def processor() -> str:
    lines = Path("/proc/cpuinfo").read_text().splitlines()
    return next(line.split(":")[1].strip() for line in lines if line.startswith("model name"))


def document(rounds: int) -> str:
    load = os.getloadavg()[1]
    versions = ", ".join(f"{package} {importlib.metadata.version(package)}" for package in PACKAGES)
    busy = BUSY.format(load=load) if load > 1.5 else ""
    date = datetime.date.today()
    text = [
        INTRODUCTION.format(rounds=rounds, processor=processor(), date=date, versions=versions, busy=busy),
    ]
    for topic, subjects in TOPICS.items():
        text.append(f"## {topic}\n\n{WORDS[topic]}")
        for subject, (side, systems) in subjects.items():
            dimensions = "³" if "ball" in subject or subject == "surface" else "²"
            text.append(f"| {subject}, {side}{dimensions} | time in ms | bytes a sample | error |")
            text.append("|---|---:|---:|---:|")
            for system in systems:
                found = measured(f"{subject}: {system}", side, rounds)
                print(subject, system, found, flush=True)
                text.append(
                    f"| {system} | {found['seconds'] * 1e3:.3g} | {found['bytes']:.1f} | {found['error']:.2g} |"
                )
            text.append("")
    return "\n".join(text)


if __name__ == "__main__":
    page = document(int(sys.argv[1]) if len(sys.argv) > 1 else 3)
    Path(__file__, "../../../docs/python_peers.md").resolve().write_text(page)
