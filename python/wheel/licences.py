"""Puts the licences of all that an unpacked wheel carries beside our own: licences.py FOLDER."""

from __future__ import annotations

import re
import subprocess
import sys
from importlib import metadata
from pathlib import Path

# Compiled in, by a header that their packages have.
_HEADERS = ["boost/version.hpp", "eigen3/Eigen/Core", "fmt/core.h", "CLI/CLI.hpp", "nlohmann/json.hpp"]
_COMMON = Path("/usr/share/common-licenses")


def package_of(pattern: str) -> str:
    """Return the Debian package that has a file of this name."""
    found = subprocess.run(["dpkg-query", "-S", pattern], capture_output=True, text=True, check=False).stdout
    packages = {line.split(":")[0] for line in found.splitlines() if not line.startswith("diversion")}
    runtime = {package for package in packages if not package.endswith("-dev")} or packages
    if len(runtime) != 1:
        sys.exit(f"{pattern}: is of {', '.join(sorted(packages)) or 'no package'}; its licence cannot be told")
    return runtime.pop()


def main(folder: Path) -> None:
    """Write the texts, and name them in the wheel's metadata."""
    (info,) = folder.glob("quorbin-*.dist-info")
    licences = info / "licenses"
    if not (licences / "LICENSE").exists():
        sys.exit(f"{licences}: our own licence is missing")
    packages = {package_of(f"/usr/include/{header}") for header in _HEADERS}
    for library in sorted(folder.glob("quorbin.libs/*")):
        # auditwheel has put a hash into the name; that of JBIG is our own, no_jbig.c.
        name = re.sub(r"-[0-9a-f]{8}(?=\.so)", "", library.name)
        if not name.startswith("libjbig"):
            packages.add(package_of(f"*/{name}"))
    texts = {
        package: Path(f"/usr/share/doc/{package}/copyright").read_text(errors="replace") for package in packages
    }
    nanobind = metadata.distribution("nanobind")
    for file in nanobind.files or []:
        if file.name == "LICENSE":
            texts["nanobind-robin_map" if "robin_map" in str(file) else "nanobind"] = file.read_text()
    for text in list(texts.values()):
        for common in re.findall(rf"{_COMMON}/([\w.+-]*\w)", text):
            texts[f"common-licenses-{common}"] = (_COMMON / common).read_text()
    for name, text in texts.items():
        (licences / f"{name}.txt").write_text(text)
    described = info / "METADATA"
    head, separator, rest = described.read_text().partition("\nLicense-File: LICENSE\n")
    if not separator:
        sys.exit(f"{described}: does not name our licence")
    listed = "".join(f"License-File: {name}.txt\n" for name in sorted(texts))
    described.write_text(f"{head}{separator}{listed}{rest}")


if __name__ == "__main__":
    main(Path(sys.argv[1]))
