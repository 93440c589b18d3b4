#!/usr/bin/env python3
"""Filters a header for Doxygen: a comment goes for all declarations up to the next blank line or comment."""

import sys


def is_many(lines: list[str]) -> bool:
    """Whether there is more than one declaration: all but bodies and what lies within brackets."""
    depth = ends = 0
    for line in lines:
        for c in line.split("//")[0]:
            depth += (c in "({") - (c in ")}")
            ends += depth == 0 and c in ";}"
    return ends > 1


def share_comments(lines: list[str]) -> list[str]:
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
        if is_many(covered):
            space = " " * indent
            result += [*comment, f"{space}///@{{", *covered, f"{space}///@}}"]
        else:
            result += comment + covered
    return result


with open(sys.argv[1], encoding="utf-8") as header:
    print("\n".join(share_comments(header.read().split("\n"))))
