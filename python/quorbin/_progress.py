"""Bars for operations that take long."""

from __future__ import annotations

import contextlib
from collections.abc import Iterator
from typing import Any, Callable, TypeVar, Union

Progress = Union[bool, Callable[[int, int], Any], None]
Tell = Union[Callable[[int, int], Any], None]
_Result = TypeVar("_Result")


def told(progress: Progress, what: str, run: Callable[..., _Result], *arguments: Any) -> _Result:
    """Run a function of the compiled module, whose last argument is what it tells how far it is."""
    if progress is None or progress is False:  # a context manager would take as long as a small field does
        return run(*arguments, None)
    with telling(progress, what) as tell:
        return run(*arguments, tell)


@contextlib.contextmanager
def telling(progress: Progress, what: str) -> Iterator[Tell]:
    """Give what the compiled module calls with (done, total): progress itself, or a bar for True."""
    if progress is None or progress is False:
        yield None
    elif progress is True:
        with _bar(what) as tell:
            yield tell
    elif callable(progress):
        yield progress
    else:
        raise TypeError(f"progress is {progress!r}; it can be True or a function of (done, total)")


@contextlib.contextmanager
def _bar(what: str) -> Iterator[Tell]:
    try:
        from tqdm.auto import tqdm
    except ImportError:
        yield None
        return
    with tqdm(total=1, desc=what, bar_format="{l_bar}{bar}| {elapsed}<{remaining}") as bar:

        def tell(done: int, total: int) -> None:
            bar.update(done / total - bar.n)

        yield tell
        bar.update(1 - bar.n)
