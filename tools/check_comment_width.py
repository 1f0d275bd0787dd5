#!/usr/bin/env python3
"""No comment in QML, JavaScript, Python, CMake or shell goes beyond column 120. (clang-format sees to those of C++.)

    tools/check_comment_width.py    the lines that do; 1 where there are any
"""

import argparse
import io
import re
import sys
import tokenize

sys.dont_write_bytecode = True

from checks.sources import ROOT, read, tracked  # noqa: E402

WIDTH = 120
C_LIKE = (".qml", ".js")
TEXTS = re.compile(r'"(?:[^"\\\n]|\\.)*"|' + r"'(?:[^'\\\n]|\\.)*'")


def python_comment_lines(text):
    """Comments, and texts that are a statement of their own."""
    starts = True
    for token in tokenize.generate_tokens(io.StringIO(text).readline):
        if token.type == tokenize.COMMENT or (token.type == tokenize.STRING and starts):
            yield from range(token.start[0], token.end[0] + 1)
        if token.type not in (tokenize.NL, tokenize.COMMENT):
            starts = token.type in (tokenize.NEWLINE, tokenize.INDENT, tokenize.DEDENT)


def comment_lines(path):
    """The numbers of lines that hold a comment or a part of one."""
    text = read(path)
    if path.suffix == ".py":
        yield from python_comment_lines(text)
        return
    mark = r"//|^\s*\*|/\*" if path.suffix in C_LIKE else r"(?:^|\s)#"
    for number, line in enumerate(text.splitlines(), 1):
        if re.search(mark, TEXTS.sub(lambda match: "_" * len(match[0]), line)):
            yield number


def is_source(path):
    if path.suffix == "":
        return (ROOT / path).read_bytes().startswith(b"#!")
    return path.suffix != ".txt" or path.name in ("CMakeLists.txt", "packages.txt")


def main():
    argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter).parse_args()
    wide = False
    for path in filter(is_source, tracked(suffixes=(".py", ".txt", ".cmake", ".sh", "", *C_LIKE))):
        lines = read(path).splitlines()
        for number in sorted(set(comment_lines(path))):
            if len(lines[number - 1]) > WIDTH:
                print(f"{path}:{number}: the comment ends in column {len(lines[number - 1])}")
                wide = True
    sys.exit(1 if wide else 0)


if __name__ == "__main__":
    main()
