#!/usr/bin/env python3
"""Draws the layers of src from what the libraries link and include, and checks them.

    tools/check_structure.py    the layers from the ground up; 1 where something is wrong

Wrong are: an include of a library that is not linked, links or includes that run in a circle, a private header
(NAME_p.h) outside of its library's folder and those below, two types of one name (each library compiles, and a program
that links both runs the wrong one's code), a library above 7,000 lines (without blanks and comments; a part that is
loaded with its first use counts by itself).
"""

import argparse
import re
import sys
from graphlib import CycleError, TopologicalSorter
from pathlib import PurePosixPath

sys.dont_write_bytecode = True

from checks.declarations import declarations  # noqa: E402
from checks.sources import CPP, code_lines, includes, read, tracked  # noqa: E402

MOST_LINES = 7000
COMMAND = re.compile(r"(\w+)\s*\(([^()]*)\)")
OURS = re.compile(r"lamina(?:::|_)(\w+)")


def libraries():
    """Name to folder, and name to the names it links; a sum of libraries without sources has no folder."""
    folders, links = {}, {}
    for path in tracked("src", suffixes=(".txt",)):
        text = re.sub(r"#.*|\$<[^>]*>", "", read(path))
        for command, arguments in COMMAND.findall(text):
            words = arguments.split()
            if command == "lamina_library":
                folders[words[0]] = PurePosixPath("src", words[words.index("FOLDER") + 1])
                links.setdefault(words[0], set()).update(OURS.findall(arguments))
            elif command == "lamina_module":  # loaded by the library beside it, and sees what that has
                source = words[words.index("SOURCES") + 1]
                folders[words[0]] = PurePosixPath(path.parent, source).parent
                links.setdefault(words[0], {words[words.index("OF") + 1]}).update(OURS.findall(arguments))
            elif command in ("add_library", "add_executable") and (name := OURS.fullmatch(words[0])):
                links.setdefault(name[1], set())
                if command == "add_executable":
                    folders.setdefault(name[1], PurePosixPath(path.parent))
            elif command == "target_link_libraries" and (name := OURS.fullmatch(words[0])):
                links.setdefault(name[1], set()).update(OURS.findall(" ".join(words[1:])))
    owners = {folder: name for name, folder in reversed(folders.items())}  # a library before a program beside it
    folders = {name: folder for folder, name in owners.items()}
    known = {name for name in links if name in folders or links[name] & folders.keys()}
    return folders, {name: links[name] & known - {name} for name in known}


def reachable(links):
    """Name to everything that it links, near or far. Raises CycleError."""
    found = {}
    for name in TopologicalSorter(links).static_order():
        found[name] = links[name].union(*(found[other] for other in links[name]))
    return found


def layers(links, shown):
    """Name to layer: a library stands one above the highest that it links."""
    level = {}
    for name in TopologicalSorter(links).static_order():
        level[name] = max((level[other] + (other in shown) for other in links[name]), default=1)
    return {name: level[name] for name in shown}


def owner_of(path, owners):
    return next((owners[folder] for folder in path.parents if folder in owners), None)


def faults_of_includes(files, owners, folders, allowed):
    """Includes that reach for what they may not, and the files that each file includes."""
    faults, graph = [], {}
    for path, text in files.items():
        here = owner_of(path, owners)
        named = [PurePosixPath("src", name.strip('"')) for name in includes(text) if name.startswith('"')]
        graph[path] = {name for name in named if name in files}
        for name in graph[path]:
            there = owner_of(name, owners)
            if there != here and there not in allowed.get(here, ()):
                faults.append(f"{path}: includes {name}, and {here} does not link {there}")
            if name.stem.endswith("_p") and folders[there] not in path.parents:
                faults.append(f"{path}: includes {name}, which is private to {there}")
    return faults, graph


def faults_of_names(files):
    """Types that two headers define under one name."""
    homes = {}
    for path, text in files.items():
        if path.suffix == ".h":
            for each in declarations(text):
                if each.kind == "type" and not each.scope and each.is_definition:
                    homes.setdefault(each.name, set()).add(str(path))
    return [f"{name}: stands in {' and '.join(sorted(paths))}" for name, paths in homes.items() if len(paths) > 1]


def circle(graph, what):
    try:
        TopologicalSorter(graph).prepare()
    except CycleError as error:
        return [f"{what} in a circle: " + " -> ".join(map(str, error.args[1]))]
    return []


def main():
    argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter).parse_args()
    folders, links = libraries()
    if faults := circle(links, "libraries link"):
        sys.exit(faults[0])
    owners = {folder: name for name, folder in folders.items()}
    paths = tracked("src", suffixes=CPP)
    files = {PurePosixPath(path): read(path) for path in paths}
    faults, graph = faults_of_includes(files, owners, folders, reachable(links))
    faults += circle(graph, "files include one another")
    faults += faults_of_names(files)
    faults += [f"{path}: belongs to no library" for path in files if owner_of(path, owners) is None]

    lines = dict.fromkeys(folders, 0)
    for path in paths:
        if owner := owner_of(PurePosixPath(path), owners):
            lines[owner] += code_lines(path)
    faults += [f"{name}: {count} lines, more than {MOST_LINES}" for name, count in lines.items() if count > MOST_LINES]
    level = layers(links, folders)
    for name in sorted(folders, key=lambda name: (level[name], str(folders[name]))):
        direct = ", ".join(sorted(links[name])) or "-"
        print(f"{level[name]:2}  {lines[name]:5}  {folders[name].relative_to('src')!s:26} {direct}")
    print(*faults, sep="\n", end="\n" if faults else "")
    sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main()
