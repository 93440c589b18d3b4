from __future__ import annotations

import re
import shutil
from pathlib import Path

ROOT = Path(__file__).parents[2]


def test_the_lines_of_the_readme_write_an_outline_and_print_its_area(tmp_path, monkeypatch, capsys):
    code = re.search(r"```python\n(.*?)```", (ROOT / "README.md").read_text(encoding="utf-8"), re.S)[1]
    shutil.copy(ROOT / "docs" / "pictures" / "before.png", tmp_path / "photo.png")
    monkeypatch.chdir(tmp_path)
    exec(code, {})
    assert 0 < float(capsys.readouterr().out) < 360 * 360
    assert "<path" in (tmp_path / "outline.svg").read_text(encoding="utf-8")
