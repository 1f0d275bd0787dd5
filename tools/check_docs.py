#!/usr/bin/env python3
"""Which public types and operations the headers of src leave without a comment.

    tools/check_docs.py             each module's share, and what is missing; 1 when it is under 95 % in any of them
    tools/check_docs.py --limit 90  another limit
    tools/check_docs.py FOLDER...   these folders only

Public is what a header shows outside of its `private` and `protected` parts; a header NAME_p.h is its module's own.
Constructors, destructors, operators, overrides, deleted and defaulted functions, accessors of one line and the signals
of properties are not counted. A comment stands right above what it speaks of, or behind it on the same line. One above
a group without blank lines speaks for overloads of one name, for a setter and its getter, and for functions that are
defined in one line.
"""

import argparse
import collections
import re
import sys

sys.dont_write_bytecode = True

from checks.declarations import declarations  # noqa: E402
from checks.sources import ROOT, code_only, read, tracked  # noqa: E402

# What every filter of the catalogue has, told once where the catalogue is made.
CONVENTIONS = {"describe"}
# One statement that reads a member or a literal, or sets a member: what its name says already.
ACCESSOR = re.compile(r"\s*(?:return [\w.:*&>\-\s\[\]]*(?:\{\})?;|return \w+(?:\.|->)\w+\(\);|m_\w+ = (?:std::move\()?\w+\)?;)?\s*")
# A comparison or a plain sum, as of a rectangle's edges.
FORMULA = re.compile(r"\s*return [^;(){}]*;\s*")


def property_name(name):
    """The name of what a getter or setter is about: frame of setFrame, hidden of isHidden and setHidden."""
    plain = re.sub(r"^(?:set|is|has)(?=[A-Z])", "", name)
    return plain[:1].lower() + plain[1:]


def short_bodies(header):
    """Names of members whose body in the file beside the header is one line of an accessor."""
    source = (ROOT / header).with_suffix(".cpp")
    if not source.exists():
        return set()
    bodies = re.findall(r"(\w+::~?\w+)\([^()]*\)[^{};()]*\{([^{}]*)\}", code_only(source.read_text(encoding="utf-8")))
    return {name for name, body in bodies if ACCESSOR.fullmatch(body)}


def counts(declaration, short, notifiers):
    """Whether a declaration has to be documented."""
    if declaration.access != "public" or not declaration.name or declaration.name in CONVENTIONS:
        return False
    if declaration.kind in ("type", "alias"):
        return declaration.kind == "type" and declaration.is_definition
    if declaration.kind != "function" or declaration.name == "operator" or declaration.name.startswith("~"):
        return False
    if declaration.name in notifiers:
        return False
    if declaration.scope and declaration.scope[-1].split("::")[-1] == declaration.name:
        return False
    if re.search(r"\b(?:override|final)\b|= ?(?:default|delete)$", declaration.head):
        return False
    if declaration.body is not None:
        return not (ACCESSOR.fullmatch(declaration.body) or FORMULA.fullmatch(declaration.body))
    return "::".join([*declaration.scope[-1:], declaration.name]) not in short


def is_comment(line):
    return line.lstrip().startswith(("//", "*", "/*"))


def documented(found, lines):
    """The declarations that a comment speaks of."""
    result = set()
    for i, declaration in enumerate(found):
        above = lines[declaration.line - 2] if declaration.line > 1 else ""
        behind = any("//" in line for line in lines[declaration.line - 1 : declaration.last_line])
        former = found[i - 1] if i else None
        of_one_name = former is not None and property_name(former.name) == property_name(declaration.name)
        one_line = declaration.body is not None and "\n" not in declaration.body.strip("\n")
        in_group = i - 1 in result and above.strip() and not is_comment(above) and (of_one_name or one_line)
        if is_comment(above) or behind or in_group:
            result.add(i)
    return result


def undocumented(header):
    """What a header has to document, and the lines and names that it does not."""
    text = read(header)
    found = declarations(text)
    told = documented(found, text.splitlines())
    short = short_bodies(header)
    notifiers = set(re.findall(r"\bNOTIFY (\w+)", text))
    counted = [i for i, declaration in enumerate(found) if counts(declaration, short, notifiers)]
    missing = [(found[i].line, "::".join([*found[i].scope, found[i].name])) for i in counted if i not in told]
    return len(counted), missing


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--limit", type=float, default=95, help="the smallest share in per cent that passes")
    parser.add_argument("folders", nargs="*", default=["src"])
    options = parser.parse_args()
    total, missing = collections.Counter(), collections.defaultdict(list)
    for header in tracked(*options.folders, suffixes=(".h",)):
        if header.stem.endswith("_p"):
            continue
        count, names = undocumented(header)
        total[header.parent] += count
        missing[header.parent] += [f"{header}:{line}: {name}" for line, name in names]
    low = False
    for folder in sorted(total):
        share = 100 * (1 - len(missing[folder]) / total[folder]) if total[folder] else 100
        low = low or share < options.limit
        print(f"{share:6.1f} %  {total[folder]:4}  {folder}", *missing[folder], sep="\n          ")
    count = total.total()
    print(f"{100 * (1 - sum(map(len, missing.values())) / max(1, count)):6.1f} %  {count:4}  all")
    sys.exit(f"under {options.limit:g} %" if low else 0)


if __name__ == "__main__":
    main()
