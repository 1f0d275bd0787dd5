#!/usr/bin/env python3
"""Each C++ file includes what it uses: standard headers by a table, ours by the header that declares a name.

    tools/check_includes.py                  what is missing below src, tests and bench; 1 where something is
    tools/check_includes.py --fix            includes it (clang-format sorts it afterwards)
    tools/check_includes.py FOLDER|FILE...   these only

Of our names only those count that a single header declares at the level of a namespace. A source file may rely on its
own headers: that of its name, and those of its folder whose classes it defines. A header may rely on the headers of the
classes that its own derive from, a test or benchmark on all of ours that it includes. What a file declares itself,
forward declarations included, needs no header.
"""

import argparse
import collections
import re
import sys

sys.dont_write_bytecode = True

from checks.declarations import declarations  # noqa: E402
from checks.sources import CPP, ROOT, code_only, includes, read, tracked  # noqa: E402
from checks.std_headers import ALSO_GIVES, NAMES, headers_of  # noqa: E402

TREE = ("src", "tests", "bench")
STANDARD_NAME = re.compile(r"\bstd::(?:ranges::)?(\w+)")
WORD = re.compile(r"(?P<before>(?:\b\w+::|\.|->|\bfriend class |\bclass |\bstruct |~)?)\b(?P<name>[A-Za-z]\w+)\b(?P<call>\s*\()?")
DEFINED = re.compile(r"^(?:[\w:<>&*, ]+[ &*])?(\w+)::~?\w+\(", re.MULTILINE)
BASES = re.compile(r"\b(?:class|struct) \w+(?: final)? ?:(?!:)([^{;]*)\{")
TEMPLATE_NAME = re.compile(r"\b(?:class|typename)(?:\.\.\.)? (\w+)\s*[,>=]")
# Names of other kinds: enumerators, and the suites of tests.
OTHER_NAMES = re.compile(r"\benum\b[^;{]*\{[^}]*\}|\bTEST(?:_F|_P)?\([^)]*\)")
INCLUDE_LINE = re.compile(r'^#include ([<"][^>"]+[>"]).*$')


def include_name(path):
    """How a file is included: from src, from bench, or from the folder of the tests that share it."""
    return path.relative_to(path.parts[0]).as_posix() if path.parts[0] in ("src", "bench") else path.name


def owners():
    """Name to the one header that declares it, for names that no other header and no class uses as well."""
    found, members, spaces = collections.defaultdict(set), set(), {"lamina"}
    for path in tracked(*TREE, suffixes=(".h",)):
        text = read(path)
        spaces |= set(re.findall(r"\bnamespace (?:lamina::)?(\w+) \{", text))
        for declaration in declarations(text):
            if declaration.scope:
                members.add(declaration.name)
            elif declaration.is_definition or declaration.kind in ("function", "variable"):
                found[declaration.name].add((path, declaration.kind))
    return {name: next(iter(where)) for name, where in found.items()
            if len({path for path, _ in where}) == 1 and not (name in members and next(iter(where))[1] != "type")}, spaces


def relied_on(path, code, named, known):
    """The headers whose includes count as the file's own."""
    if path.suffix == ".h":
        bases = [base for bases in BASES.findall(code) for base in re.findall(r"\w+", bases)]
        found = {known[base][0] for base in bases if base in known}
    else:
        defined = {known[name][0] for name in DEFINED.findall(code) if name in known}
        found = {header for header in defined if header.parent == path.parent}
        found |= {path.with_name(path.stem + ending) for ending in (".h", "_p.h")}
        if path.parts[0] != "src":
            found |= {HEADERS[name.strip('"')] for name in named if name.strip('"') in HEADERS}
    return [header for header in found if (ROOT / header).is_file() and f'"{include_name(header)}"' in named]


def missing_standard(code, given):
    """The standard headers that a file should include, each with a name that it is for."""
    given = given | {more for header in given for more in ALSO_GIVES.get(header, ())}
    result = {}
    for name in sorted(set(STANDARD_NAME.findall(code))):
        headers = STANDARD.get(name, [])
        if name in ("move", "remove", "count") and "algorithm" in given:
            continue  # the algorithms of these names
        if headers and not given & set(headers):
            result.setdefault(headers[0], name)
            given = given | {headers[0], *ALSO_GIVES.get(headers[0], ())}
    return {f"<{header}>": name for header, name in result.items()}


def missing_own(path, code, given, declared, known, spaces):
    """Our headers that a file should include, each with a name that it is for."""
    code = OTHER_NAMES.sub(" ", code)
    result = {}
    for match in WORD.finditer(code):
        name, before = match["name"], match["before"]
        if name not in known or name in declared or (before and before.removesuffix("::") not in spaces):
            continue
        header, kind = known[name]
        if header.parts[0] not in ("src", path.parts[0]):
            continue  # what tests or benchmarks call so is theirs
        if kind == "function" and path.suffix == ".h" and TEMPLATE_NAME.search(code):
            continue  # a template may call what comes with its arguments
        if header == path or f'"{include_name(header)}"' in given or (kind == "function" and not match["call"]):
            continue
        if kind != "type" and re.search(rf"[\w>&*]\s+{name}\s*[=;,){{(]", code):
            continue  # a variable of this name
        result.setdefault(f'"{include_name(header)}"', name)
    return result


class Tree:
    """The files with what they include, and with what headers were found to lack before the files that rely on them."""

    def __init__(self):
        self.known, self.spaces = owners()
        self.lacking = {}

    def given(self, header):
        return {*includes(read(header)), *self.missing(header)}

    def missing(self, path):
        """What a file should include, each with a name that it is for."""
        if path in self.lacking:
            return self.lacking[path]
        text = read(path)
        code, named = code_only(text), includes(text)
        given = set(named)
        declared = {declaration.name for declaration in declarations(text)} | set(TEMPLATE_NAME.findall(code))
        for header in relied_on(path, code, named, self.known):
            given |= self.given(header)
            declared |= {declaration.name for declaration in declarations(read(header))}
        result = missing_standard(code, {name.strip("<>") for name in given})
        result |= missing_own(path, code, given, declared, self.known, self.spaces)
        self.lacking[path] = result
        return result


def block_for(lines, name):
    """Where an include belongs: the line before which it goes, and whether it needs a block of its own."""
    blocks, fresh = [], True  # each block: its lines' numbers
    for i, line in enumerate(lines):
        if INCLUDE_LINE.match(line):
            if fresh:
                blocks.append([])
            blocks[-1].append(i)
        elif line.startswith("#if"):
            break
        fresh = not INCLUDE_LINE.match(line)
    kinds = [(block, [INCLUDE_LINE.match(lines[i])[1] for i in block]) for block in blocks]
    if name.startswith("<"):
        fitting = [block for block, names in kinds if any(other.strip("<>") in NAMES for other in names)]
        fitting = fitting or [block for block, names in kinds if names[0].startswith("<")]
        return (fitting[-1][0], False) if fitting else ((blocks[-1][-1] + 1) if blocks else after_guard(lines), True)
    fitting = [block for block, names in kinds if names[0].startswith('"') and len(names) > 1]
    fitting = fitting or [block for block, names in kinds[1:] if names[0].startswith('"')]
    if fitting:
        return fitting[-1][-1], False
    first_is_ours = bool(kinds) and kinds[0][1][0].startswith('"')
    return (blocks[0][-1] + 1 if first_is_ours else blocks[0][0] if blocks else after_guard(lines)), True


def after_guard(lines):
    """Behind `#pragma once`, or the comment that a file begins with."""
    guard = [i for i, line in enumerate(lines) if line.startswith("#pragma once")]
    return guard[0] + 1 if guard else next(i for i, line in enumerate(lines) if not line.startswith("//"))


def insert(path, names):
    lines = read(path).splitlines()
    for name in sorted(names):
        at, own_block = block_for(lines, name)
        line = f"#include {name}"
        if own_block and at < len(lines) and INCLUDE_LINE.match(lines[at]):
            lines[at:at] = [line, ""]
        else:
            lines[at:at] = ["", line] if own_block else [line]
        if own_block and at + 2 < len(lines) and lines[at + 1] == line and lines[at + 2].strip():
            lines.insert(at + 2, "")
    (ROOT / path).write_text("\n".join(lines) + "\n", encoding="utf-8")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--fix", action="store_true", help="insert what is missing")
    parser.add_argument("paths", nargs="*", default=TREE)
    options = parser.parse_args()
    tree = Tree()
    found = {path: tree.missing(path) for path in tracked(*options.paths, suffixes=CPP)}
    count = sum(map(len, found.values()))
    for path, names in found.items():
        for header, name in sorted(names.items()):
            print(f"{path}: {name} needs #include {header}")
        if options.fix and names:
            insert(path, names)
    sys.exit(f"{count} includes {'were ' if options.fix else ''}missing" if count and not options.fix else 0)


STANDARD = headers_of()
HEADERS = {include_name(path): path for path in tracked(*TREE, suffixes=(".h",))}

if __name__ == "__main__":
    main()
