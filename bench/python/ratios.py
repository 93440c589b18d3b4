"""ratios.py CALLS [rounds, 5]: what Python adds to a call, printed by bench/python/run. CALLS is calls.cpp."""

from __future__ import annotations

import subprocess
import sys
import tempfile
import time
import timeit
from pathlib import Path

import numpy as np

import quorbin


def disc(n: int) -> np.ndarray:
    y, x = np.ogrid[:n, :n]
    return np.hypot(y - 0.48 * n, x - 0.51 * n) - 0.4 * n


def smoothed_noise(n: int) -> np.ndarray:
    """White noise through a cosine window in the frequencies: outlines some ten samples apart, everywhere."""
    spectrum = np.fft.rfft2(np.random.default_rng(1).standard_normal((n, n)))
    squared = np.fft.fftfreq(n)[:, None] ** 2 + np.fft.rfftfreq(n)[None, :] ** 2
    return np.ascontiguousarray(np.fft.irfft2(spectrum * np.exp(-squared * (2 * np.pi * 2) ** 2 / 2), s=(n, n)))


def least_seconds(call, times: int) -> float:
    return min(timeit.repeat(call, number=1, repeat=times))


def seconds_in_cpp(what: str, field: np.ndarray, times: int) -> float:
    with tempfile.TemporaryDirectory() as folder:
        file = Path(folder, "field")
        field.tofile(file)
        command = [calls, what, file, str(len(field)), str(times)]
        return float(subprocess.run(command, capture_output=True, text=True, check=True).stdout)


def ratio(title: str, what: str, field: np.ndarray, call, asked: float) -> None:
    """Python and C++ take turns, so that both meet the same machine."""
    python, cpp = [], []
    for _ in range(rounds):
        cpp.append(seconds_in_cpp(what, field, 2))
        python.append(least_seconds(lambda: call(field), 2))
    print(f"| {title} | {min(cpp) * 1e3:.1f} ms | {min(python) * 1e3:.1f} ms | "
          f"{min(python) / min(cpp):.3f} | {asked} |", flush=True)  # fmt: skip


calls = sys.argv[1]
rounds = int(sys.argv[2]) if len(sys.argv) > 2 else 5

print(f"{time.strftime('%Y-%m-%d')}, {rounds} rounds, the smallest of each\n")
print("| a call on 3 × 3 or 3 × 3 × 3 samples | µs | in C++ |\n|---|---:|---:|")
square, cube = np.pad([[-1.0]], 1, constant_values=1.0), np.pad([[[-1.0]]], 1, constant_values=1.0)
for title, small, what in (
    ("signed_distance, fmm", lambda: quorbin.signed_distance(square, method="fmm"), "march"),
    ("reinitialize", lambda: quorbin.reinitialize(square), None),
    ("curvature_flow, time 0", lambda: quorbin.curvature_flow(square, 0.0), None),
    ("contours", lambda: quorbin.contours(square), "contours"),
    ("mesh", lambda: quorbin.mesh(cube), None),
):
    least = min(timeit.repeat(small, number=2000, repeat=10 * rounds)) / 2000
    in_cpp = f"{seconds_in_cpp(what, square, 20000) * 1e6:.2f}" if what else ""
    print(f"| {title} | {least * 1e6:.2f} | {in_cpp} |")

print("\n| | C++ | Python | ratio | asked |\n|---|---:|---:|---:|---:|")
ratio("march of 2048², a disc", "march", disc(2048),
      lambda field: quorbin.signed_distance(field, method="fmm"), 1.05)  # fmt: skip
ratio("march of 2048², smoothed noise", "march", smoothed_noise(2048),
      lambda field: quorbin.signed_distance(field, method="fmm"), 1.05)  # fmt: skip
ratio("contours of 4096², a disc", "contours", disc(4096), quorbin.contours, 1.2)
ratio("contours of 4096², smoothed noise", "contours", smoothed_noise(4096), quorbin.contours, 1.2)
