import os
import signal
import subprocess
import sys

import numpy as np
import pytest

import quorbin


def tool(*arguments, **options):
    return subprocess.run(
        [sys.executable, "-m", "quorbin", *map(str, arguments)],
        capture_output=True,
        text=True,
        check=False,
        **options,
    )


def test_it_is_the_tool_with_its_arguments_and_status(tmp_path):
    done = tool("--version")
    assert (done.returncode, done.stdout, done.stderr) == (0, f"quorbin {quorbin.__version__}\n", "")
    done = tool("info", tmp_path / "none.png")
    assert done.returncode == 2
    assert done.stderr.startswith(f"quorbin: {tmp_path}/none.png: cannot be opened")
    assert len(done.stderr.splitlines()) == 1
    quorbin.write(tmp_path / "empty.fl2d", np.ones((3, 3)))
    assert tool("distance", tmp_path / "empty.fl2d", "-o", tmp_path / "a b.fl2d").returncode == 4


def test_the_tool_and_the_package_read_and_make_the_same(tmp_path):
    y, x = np.mgrid[:50, :60]
    grey = np.clip(200 - 4 * np.hypot(y - 22.3, x - 31.6), 0, 255).astype(np.uint8)
    quorbin.write(tmp_path / "grey.png", grey)
    assert tool("convert", tmp_path / "grey.png", "-o", tmp_path / "field.fl2d").returncode == 0
    ours = quorbin.read_field(tmp_path / "grey.png")
    np.testing.assert_array_equal(quorbin.read(tmp_path / "field.fl2d").values, ours.values)
    assert tool("distance", tmp_path / "grey.png", "-o", tmp_path / "distance.fl2d").returncode == 0
    np.testing.assert_array_equal(
        quorbin.read(tmp_path / "distance.fl2d").values, quorbin.signed_distance(ours.values)
    )
    assert tool("segment", tmp_path / "grey.png", "-o", tmp_path / "segment.fl2d").returncode == 0
    np.testing.assert_array_equal(quorbin.read(tmp_path / "segment.fl2d").values, quorbin.segment(grey).field)
    assert tool("contour", tmp_path / "grey.png", "-o", tmp_path / "tool.svg").returncode == 0
    quorbin.write(tmp_path / "ours.svg", ours.values)
    assert (tmp_path / "tool.svg").read_bytes() == (tmp_path / "ours.svg").read_bytes()


def test_meshes_of_both_are_the_same(tmp_path):
    z, y, x = np.mgrid[:10, :12, :14]
    ball = np.sqrt((z - 4.7) ** 2 + (y - 5.2) ** 2 + (x - 6.1) ** 2) - 3.5
    turned = np.diag([-3.0, 2, 1.5, 1])
    quorbin.write(tmp_path / "ball.nii", ball, affine=turned)
    for name, options, affine in [("plain", [], None), ("placed", ["--affine"], turned)]:
        path = tmp_path / f"{name}.ply"
        assert tool("mesh", tmp_path / "ball.nii", "-o", path, *options).returncode == 0
        ours = tmp_path / f"ours-{name}.ply"
        quorbin.write(ours, quorbin.mesh(ball, spacing=(3, 2, 1.5), affine=affine))
        head, body = path.read_bytes().split(b"end_header\n")
        assert ours.read_bytes().split(b"end_header\n")[0] == head
        count = int(head.split(b"element vertex ")[1].split()[0])
        vertices = [
            np.frombuffer(data[: 24 * count], dtype="<f4")
            for data in (body, ours.read_bytes().split(b"end_header\n")[1])
        ]
        np.testing.assert_allclose(*vertices, atol=1e-5)


@pytest.mark.parametrize(("number", "status"), [(signal.SIGTERM, 143), (signal.SIGINT, 130)])
def test_signals_reach_the_tool(tmp_path, number, status):
    pipe = tmp_path / "pipe"
    os.mkfifo(pipe)
    process = subprocess.Popen([sys.executable, "-m", "quorbin", "info", str(pipe)])
    with pipe.open("wb"):  # once it is open, the tool waits for what comes
        process.send_signal(number)
        assert process.wait(10) == status


def test_a_closed_pipe_ends_it_quietly():
    done = subprocess.run(
        f"{sys.executable} -m quorbin convert --help | true", shell=True, capture_output=True, check=False
    )
    assert done.stderr == b""


def test_what_a_build_without_cairo_cannot_draw_is_told_in_a_line(tmp_path):
    quorbin.write(tmp_path / "a.fl2d", np.array([[-1.0, 1], [-1, 1]]))
    for arguments in [("convert", tmp_path / "a.fl2d", "-o", tmp_path / "a.png"),
                      ("contour", tmp_path / "a.fl2d", "-o", tmp_path / "a.pdf"),
                      ("demo", "-o", tmp_path / "demo")]:  # fmt: skip
        done = tool(*arguments)
        if done.returncode == 0:
            pytest.skip("this build has cairo")
        assert done.returncode == 2
        assert len(done.stderr.splitlines()) == 1
        assert "without cairo" in done.stderr or "by cairo, without which" in done.stderr
        assert "-DQUORBIN_CAIRO=ON" in done.stderr
    assert [p.name for p in tmp_path.iterdir()] == ["a.fl2d"]
