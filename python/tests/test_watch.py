"""How long operations get on with the rest of the program: Ctrl-C, progress, threads, memory, output."""

from __future__ import annotations

import os
import signal
import subprocess
import sys
import threading
import time

import numpy as np
import pytest

import quorbin

SQUARE = np.mgrid[:900, :900].astype(float)
# Rounded squares side by side: an interface everywhere, so that everything takes long.
PATTERN = np.cos(SQUARE[0] * 0.21) + np.cos(SQUARE[1] * 0.17) - 0.3
LONG = {
    "fmm": lambda **options: quorbin.signed_distance(PATTERN, method="fmm", **options),
    "brute": lambda **options: quorbin.signed_distance(PATTERN, method="brute", **options),
    "curvature_flow": lambda **options: quorbin.curvature_flow(PATTERN, 40, implicit=False, **options),
    "smooth_mask": lambda **options: quorbin.smooth_mask(PATTERN <= 0, **options),
}
every = pytest.mark.parametrize("name", LONG)


def in_another_process(text, *options):
    return subprocess.run(
        [sys.executable, *options, "-c", text], capture_output=True, text=True, timeout=100, check=False
    )


def seconds_after_interrupt(call, delay):
    """Processor time from the signal to the exception, which other programs on the machine do not lengthen."""
    sent = []

    def interrupt():
        sent.append(time.process_time())
        os.kill(os.getpid(), signal.SIGINT)

    timer = threading.Timer(delay, interrupt)
    timer.start()
    with pytest.raises(KeyboardInterrupt):
        while True:
            call()
    return time.process_time() - sent[0]


@every
def test_ctrl_c_ends_an_operation_soon_and_leaves_the_field_whole(name):
    field = PATTERN.copy()
    if name == "smooth_mask":
        field[:] = np.where(field <= 0, -0.5, 0.5)
    before = field.copy()
    operations = {
        "fmm": lambda: quorbin.signed_distance(field, method="fmm", out=field),
        "brute": lambda: quorbin.signed_distance(field, method="brute", out=field),
        "curvature_flow": lambda: quorbin.curvature_flow(field, 40, implicit=False, out=field),
        "smooth_mask": lambda: quorbin.smooth_mask(field, out=field),
    }

    def call():
        field[:] = before
        operations[name]()

    call()
    after = field.copy()
    # A tenth of a second at the pace of a release build alone on the machine; the smoothing tells it each step.
    assert seconds_after_interrupt(call, 0.2) < (0.6 if "fl" in name or "mask" in name else 0.15)
    # The signal may come just when the work is done.
    assert np.array_equal(field, before) or np.array_equal(field, after)


def test_ctrl_c_ends_the_tracing_of_contours_and_the_meshing_of_volumes():
    tall = np.tile(PATTERN, (6, 1))
    volume = np.cos(np.mgrid[:120, :120, :120] * 0.4).sum(axis=0)
    assert seconds_after_interrupt(lambda: quorbin.contours(tall), 0.1) < 0.15
    assert seconds_after_interrupt(lambda: quorbin.mesh(volume), 0.1) < 0.3


@every
def test_progress_is_told_in_order_and_an_exception_from_it_goes_through(name):
    told = []
    LONG[name](progress=lambda done, total: told.append((done, total)))
    assert told
    assert all(0 <= done <= total for done, total in told)
    assert [done / total for done, total in told] == sorted(done / total for done, total in told)

    class OwnError(Exception):
        pass

    def refuse(done, total):
        raise OwnError(done)

    out = np.full(PATTERN.shape, 7.0)
    with pytest.raises(OwnError):
        LONG[name](progress=refuse, out=out)
    expected = np.where(PATTERN <= 0, -0.5, 0.5) if name == "smooth_mask" else PATTERN
    np.testing.assert_array_equal(out, expected)


def test_progress_true_draws_a_bar_to_stderr(capfd):
    pytest.importorskip("tqdm")
    quorbin.signed_distance(PATTERN, method="fmm", progress=True)
    captured = capfd.readouterr()
    assert "distance" in captured.err
    assert "100%" in captured.err
    assert captured.out == ""


def test_progress_true_without_tqdm_draws_nothing():
    run = in_another_process(
        "import sys; sys.modules['tqdm'] = sys.modules['tqdm.auto'] = None\n"
        "import numpy, quorbin\n"
        "print(quorbin.reinitialize(numpy.eye(3) - 0.5, progress=True).shape)"
    )
    assert (run.stdout, run.stderr) == ("(3, 3)\n", "")


def test_nothing_is_printed(capfd):
    for call in LONG.values():
        call()
    quorbin.mesh(np.ones((4, 4, 4)))
    quorbin.mesh(np.pad(-np.ones((2, 2, 2)), 1, constant_values=0.0), capped=True)
    quorbin.contours(np.zeros((4, 4)))
    assert capfd.readouterr() == ("", "")


def test_ten_threads_at_once_find_what_one_finds():
    fields = [PATTERN[:200, :200] + 0.02 * i for i in range(10)]
    volume = np.cos(np.mgrid[:30, :30, :30] * 0.4).sum(axis=0)

    def work(field):
        return (
            quorbin.reinitialize(field),
            quorbin.signed_distance(field, method="fmm"),
            quorbin.curvature_flow(field, 0.5).field,
            np.concatenate(quorbin.contours(field)),
            quorbin.mesh(volume + field[:30, :30]).vertices,
        )

    expected = [work(field) for field in fields]
    found = [None] * len(fields)
    threads = [
        threading.Thread(target=lambda i=i: found.__setitem__(i, work(fields[i]))) for i in range(len(fields))
    ]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    for ours, theirs in zip(found, expected):
        for a, b in zip(ours, theirs):
            np.testing.assert_array_equal(a, b)


@every
def test_other_threads_go_on_meanwhile(name):
    counts = [0]
    ended = threading.Event()

    def count():
        while not ended.is_set():
            counts[0] += 1
            time.sleep(0.001)

    thread = threading.Thread(target=count)
    thread.start()
    try:
        start = time.perf_counter()
        before = counts[0]
        LONG[name]()
        seconds = time.perf_counter() - start
    finally:
        ended.set()
        thread.join()
    # A thread that never got the lock would have counted once or twice; on a busy machine some turns are lost.
    assert counts[0] - before > 20 * seconds


def test_a_process_may_fork_after_use():
    expected = quorbin.reinitialize(PATTERN)
    run = in_another_process(
        "import os, numpy as np, quorbin\n"
        "y, x = np.mgrid[:300, :300]\n"
        "field = np.cos(y * 0.21) + np.cos(x * 0.17) - 0.3\n"
        "first = quorbin.curvature_flow(field, 1.0).field\n"
        "children = []\n"
        "for i in range(4):\n"
        "    pid = os.fork()\n"
        "    if pid == 0:\n"
        "        os._exit(0 if (quorbin.curvature_flow(field, 1.0).field == first).all() else 1)\n"
        "    children.append(pid)\n"
        "print([os.waitstatus_to_exitcode(os.waitpid(pid, 0)[1]) for pid in children])"
    )
    assert run.stdout == "[0, 0, 0, 0]\n", run.stderr
    np.testing.assert_array_equal(quorbin.reinitialize(PATTERN), expected)


@pytest.mark.skipif(not sys.platform.startswith("linux"), reason="limits of memory are those of Linux")
@pytest.mark.parametrize(
    "call",
    [
        "quorbin.reinitialize(field, out=field)",
        "quorbin.signed_distance(field, method='fmm', out=field)",
        "quorbin.signed_distance(field, method='brute', out=field)",
        "quorbin.curvature_flow(field, 1.0, out=field)",
        "quorbin.smooth_mask(field, out=field)",
        "quorbin.contours(field)",
        "quorbin.contours(field, simplify=0.1)",
        "quorbin.mesh(volume)",
    ],
)
def test_lack_of_memory_is_a_memory_error_after_which_the_field_is_whole(call):
    run = in_another_process(
        "import resource, numpy as np, quorbin\n"
        "y, x = np.mgrid[:1200, :1200]\n"
        "field = np.cos(y * 1.21) + np.cos(x * 1.17) - 0.3\n"
        "z, y, x = np.mgrid[:110, :110, :110]\n"
        "volume = np.cos(z * 1.2) + np.cos(y * 1.1) + np.cos(x) - 0.1\n"
        "before, small = field.copy(), np.eye(9) - 0.5\n"
        "quorbin.reinitialize(small)\n"
        "pages = int(open('/proc/self/statm').read().split()[0])\n"
        "resource.setrlimit(resource.RLIMIT_AS, (pages * resource.getpagesize() + 5_000_000,) * 2)\n"
        "try:\n"
        f"    {call}\n"
        "except MemoryError:\n"
        "    print((field == before).all(), quorbin.reinitialize(small).shape)\n"
    )
    assert run.stdout == "True (9, 9)\n", run.stderr


def test_the_lock_is_not_needed_by_a_thread_that_is_interrupted_elsewhere():
    """Ctrl-C goes to the main thread; an operation in another one goes on to its end."""
    found = []
    thread = threading.Thread(target=lambda: found.append(LONG["fmm"]()))
    timer = threading.Timer(0.05, lambda: os.kill(os.getpid(), signal.SIGINT))
    with pytest.raises(KeyboardInterrupt):
        thread.start()
        timer.start()
        while True:
            time.sleep(0.01)
    thread.join()
    np.testing.assert_array_equal(found[0], LONG["fmm"]())
