#!/usr/bin/env python3
"""Filters a header for Doxygen: a comment goes for all declarations up to the next blank line or comment."""

import sys
from pathlib import Path


def with_comment(comment: list[str], lines: list[str]) -> list[str]:
    """Put the comment before each declaration; one ends with a line that has a ; or } outside of brackets."""
    result: list[str] = []
    depth, ended = 0, True
    for line in lines:
        if ended:
            result += comment
        result.append(line)
        ended = False
        for c in line.split("//")[0]:
            depth += (c in "({") - (c in ")}")
            ended = ended or (depth == 0 and c in ";}")
    return result


def share_comments(lines: list[str]) -> list[str]:
    """Return the lines of a header with its comments where they belong."""
    result: list[str] = []
    i = 0
    while i < len(lines):
        if not lines[i].lstrip().startswith("///"):
            result.append(lines[i])
            i += 1
            continue
        indent = len(lines[i]) - len(lines[i].lstrip())
        comment = []
        while i < len(lines) and lines[i].lstrip().startswith("///"):
            comment.append(lines[i])
            i += 1
        covered = []
        while i < len(lines) and lines[i].strip() and not lines[i].lstrip().startswith("///"):
            if len(lines[i]) - len(lines[i].lstrip()) < indent:
                break  # the end of the class
            covered.append(lines[i])
            i += 1
        result += with_comment(comment, covered) or comment
    return result


print("\n".join(share_comments(Path(sys.argv[1]).read_text(encoding="utf-8").split("\n"))))
