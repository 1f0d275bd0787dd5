#!/usr/bin/env python3
"""Lines without blanks and comments in each module of src, those of its tests, and the ratio of both.

    tools/count_lines.py                    the table
    tools/count_lines.py --max-ratio 0.38   the same; 1 when all tests are more than this share of all of src
"""

import argparse
import collections
import sys

sys.dont_write_bytecode = True

from checks.sources import code_lines, tracked  # noqa: E402

SUFFIXES = (".h", ".cpp", ".qml", ".js", ".py", ".txt", ".cmake")


def lines_by_folder(top):
    """Lines by folder below `top`; what lies in `top` itself stands under "."."""
    lines = collections.Counter()
    for path in tracked(top, suffixes=SUFFIXES):
        lines[path.parent.relative_to(top).as_posix()] += code_lines(path)
    return lines


def ratio(tests, src):
    return f"{tests / src:8.2f}" if src else " " * 8


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--max-ratio", type=float, help="the greatest share of tests that passes")
    options = parser.parse_args()
    src, tests = lines_by_folder("src"), lines_by_folder("tests")
    print(f"{'src':>8}{'tests':>8}{'ratio':>8}  module")
    for folder in sorted(src.keys() | tests.keys()):
        print(f"{src[folder]:8}{tests[folder]:8}{ratio(tests[folder], src[folder])}  {folder}")
    total = tests.total() / src.total()
    print(f"{src.total():8}{tests.total():8}{total:8.3f}  all")
    for top in ("bench", "tools"):
        print(f"{lines_by_folder(top).total():8}{'':16}  {top}")
    if options.max_ratio is not None and total > options.max_ratio:
        sys.exit(f"tests: {total:.3f} lines a line of src, more than {options.max_ratio}")


if __name__ == "__main__":
    main()
