#!/usr/bin/env python3
"""Makes the QML singleton Tokens from the look's numbers: make_tokens.py tokens.json Tokens.qml

Every group becomes an object, every number a property. A colour and its alpha become one colour (#AARRGGBB), texts that
look like colours are colours, notes are left out. Names keep their spelling but for "on...", which QML would take for
the handler of a signal: onAccent becomes overAccent. A name that QML can't take is an error.
"""
import json
import re
import sys

NAME = re.compile(r"[a-z_][A-Za-z0-9_]*$")
# Functions and objects that every script sees. The build lets such a name pass; wherever the engine can't use what was
# built and reads the file itself, it refuses it.
TAKEN = {"console", "escape", "eval", "gc", "print", "undefined", "unescape"}


def literal(value):
    """An expression for a value without properties of its own."""
    if isinstance(value, list):
        return "[" + ", ".join(literal(entry) for entry in value) + "]"
    if isinstance(value, dict):
        return "({ " + ", ".join(f"{name}: {literal(entry)}" for name, entry in with_whole_colors(value).items()) + " })"
    return json.dumps(value)


def with_whole_colors(group):
    """The group without its notes, its alpha in its colour where it has both."""
    group = {name: value for name, value in group.items() if name != "note"}
    if "color" in group and "alpha" in group:
        group["color"] = f"#{int(group.pop('alpha') * 255 + 0.5):02X}{group['color'].lstrip('#')}"
    return group


def qml_name(token):
    name = "over" + token[2:] if re.match("on[A-Z]", token) else token
    if not NAME.match(name) or name in TAKEN:
        sys.exit(f"make_tokens.py: '{token}' is no name for a property")
    return name


def property_line(token, value, path, components):
    name = qml_name(token)
    if isinstance(value, dict):
        group = with_whole_colors(value)
        if set(group) != {"color"}:
            kind = add_component([*path, name], group, components)
            return f"readonly property {kind} {name}: {kind} {{}}"
        value = group["color"]
    if isinstance(value, str):
        is_color = re.fullmatch(r"#([0-9A-F]{2})?[0-9A-Fa-f]{6}", value)
        return f"readonly property {'color' if is_color else 'string'} {name}: {json.dumps(value)}"
    kind = {bool: "bool", int: "int", float: "real", list: "var"}[type(value)]
    return f"readonly property {kind} {name}: {literal(value)}"


def add_component(path, group, components):
    """Gives each group a type of its own, so that a misspelt name is found when QML is checked. Returns the type's
    name."""
    kind = "".join(part[0].upper() + part[1:] for part in path) + "Tokens"
    lines = [property_line(name, value, path, components) for name, value in group.items()]
    components.append([f"    component {kind}: QtObject {{", *(f"        {line}" for line in lines), "    }"])
    return kind


def main():
    if len(sys.argv) != 3:
        sys.exit("make_tokens.py tokens.json Tokens.qml")
    with open(sys.argv[1], encoding="utf-8") as file:
        tokens = json.load(file)
    components = []
    properties = [f"    {property_line(name, value, [], components)}" for name, value in with_whole_colors(tokens).items()]
    lines = ["pragma Singleton", "import QtQuick", "", "// Made from tokens.json by make_tokens.py.", "QtObject {"]
    for component in components:
        lines += component
    lines += [*properties, "}", ""]
    with open(sys.argv[2], "w", encoding="utf-8") as file:
        file.write("\n".join(lines))


if __name__ == "__main__":
    main()
