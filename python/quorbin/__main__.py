"""The command-line tool, as it is: ``python -m quorbin`` and the command ``quorbin``."""

from __future__ import annotations

import os
import signal
import sys
from pathlib import Path


def main() -> None:
    """Become the tool, with the arguments of this process."""
    tool = Path(__file__).parent / "bin" / "quorbin"
    if not tool.exists():
        sys.exit("quorbin: this build of the package has no tool; configure it with -DQUORBIN_BUILD_TOOL=ON")
    # Python ignores these two, and what is ignored stays so.
    signal.signal(signal.SIGPIPE, signal.SIG_DFL)
    signal.signal(signal.SIGXFSZ, signal.SIG_DFL)
    os.execv(tool, ["quorbin", *sys.argv[1:]])


if __name__ == "__main__":
    main()
