"""What napari calls to read and write level sets; napari.yaml says so."""

from __future__ import annotations

import os
from typing import Any, Callable

from ._files import read
from ._output import write

_Layer = tuple[Any, dict[str, Any], str]


def get_reader(path: str | list[str]) -> Callable[[str | list[str]], list[_Layer]] | None:
    """Return what reads these files, or None for others than level sets."""
    paths = [path] if isinstance(path, str) else path
    return _layers if all(name.lower().endswith((".fl2d", ".fl3d", ".fr3d")) for name in paths) else None


def _layers(path: str | list[str]) -> list[_Layer]:
    layers: list[_Layer] = []
    for name in [path] if isinstance(path, str) else path:
        image = read(name)
        layers.append((image.values, {"name": os.path.basename(name), "scale": image.spacing}, "image"))  # noqa: PTH119
    return layers


def write_field(path: str, data: Any, meta: dict[str, Any]) -> list[str]:
    """Write an image layer as a level set."""
    write(path, data, spacing=[float(h) for h in meta.get("scale", (1.0,))][-data.ndim :])
    return [path]
