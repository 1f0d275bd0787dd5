#!/usr/bin/env python3
"""Turns our line art into the table of named pictures: make_named_pictures.py TABLE.cpp DRAWING.svg...

A drawing is called by its file's stem. Its paths become straight lines and cubic curves in the drawing's own points,
groups and transforms worked in; every number that is left is read as it stands. What such a table can't say (other
elements, gradients, styles, units) is an error that names the file and the place: nothing is left out in silence.

Arcs become curves by the SVG recommendation's notes on elliptical arcs (SVG 1.1, appendix F.6).
"""
import math
import re
import sys
import xml.etree.ElementTree as ET
from pathlib import Path

SVG = "{http://www.w3.org/2000/svg}"
INHERITED = {"fill": "#000000", "fill-opacity": "1", "fill-rule": "nonzero", "stroke": "none", "stroke-opacity": "1",
             "stroke-width": "1", "stroke-linecap": "butt", "stroke-linejoin": "miter", "stroke-miterlimit": "4",
             "stroke-dasharray": "none", "stroke-dashoffset": "0"}
OWN = {"svg": {"width", "height", "viewBox"}, "g": {"transform", "opacity"}, "path": {"transform", "opacity", "d"}}
CAPS = ["butt", "round", "square"]
JOINS = ["miter", "round", "bevel"]
NUMBER = re.compile(r"[+-]?(?:\d+\.?\d*|\.\d+)(?:[eE][+-]?\d+)?")
IDENTITY = (1, 0, 0, 1, 0, 0)


class Unknown(Exception):
    """Something that the table can't say."""


def number(text):
    if not NUMBER.fullmatch(text.strip()):
        raise Unknown(f"'{text}' is no plain number")
    return float(text)


def numbers(text):
    return [number(part) for part in text.replace(",", " ").split()]


def product(outer, inner):
    """The transform that applies `inner` first; (a, b, c, d, tx, ty), x' = a·x + c·y + tx."""
    a, b, c, d, tx, ty = outer
    return (a * inner[0] + c * inner[1], b * inner[0] + d * inner[1], a * inner[2] + c * inner[3],
            b * inner[2] + d * inner[3], a * inner[4] + c * inner[5] + tx, b * inner[4] + d * inner[5] + ty)


def one_transform(name, values):
    if name == "matrix" and len(values) == 6:
        return tuple(values)
    if name == "translate" and len(values) in (1, 2):
        return (1, 0, 0, 1, values[0], values[1] if len(values) == 2 else 0)
    if name == "scale" and len(values) in (1, 2):
        return (values[0], 0, 0, values[-1], 0, 0)
    if name == "rotate" and len(values) in (1, 3):
        c, s = math.cos(math.radians(values[0])), math.sin(math.radians(values[0]))
        x, y = values[1:] or (0, 0)
        return (c, s, -s, c, x - c * x + s * y, y - s * x - c * y)
    raise Unknown(f"transform {name} of {len(values)} numbers")


def transform(text):
    result = IDENTITY
    rest = text
    while rest.strip(" ,"):
        match = re.match(r"[\s,]*(\w+)\s*\(([^)]*)\)", rest)
        if not match:
            raise Unknown(f"transform '{text}'")
        result = product(result, one_transform(match[1], numbers(match[2])))
        rest = rest[match.end():]
    return result


# ---- paths ----

def tokens(d):
    """Commands with their numbers, one set at a time: (letter, [numbers])."""
    counts = {"M": 2, "L": 2, "H": 1, "V": 1, "C": 6, "S": 4, "Q": 4, "T": 2, "A": 7, "Z": 0}
    at, letter = 0, None
    skip = re.compile(r"[\s,]*")
    while (at := skip.match(d, at).end()) < len(d):
        if d[at].isalpha():
            letter, at = d[at], at + 1
            if letter.upper() not in counts:
                raise Unknown(f"path command '{letter}'")
        elif letter is None or letter in "Zz":
            raise Unknown(f"path '{d[at:at + 20]}'")
        values = []
        for i in range(counts[letter.upper()]):
            at = skip.match(d, at).end()
            flag = letter in "Aa" and i in (3, 4)  # flags may stand without anything between them
            match = re.compile("[01]").match(d, at) if flag else NUMBER.match(d, at)
            if not match:
                raise Unknown(f"path '{d[max(0, at - 10):at + 20]}' lacks a number")
            values.append(float(match[0]))
            at = match.end()
        yield letter, values
        letter = {"M": "L", "m": "l"}.get(letter, letter)


def arc_curves(x0, y0, rx, ry, degrees, large, clockwise, x1, y1):
    """Control and end points of the curves of an arc; none for one that is no longer than nothing."""
    rx, ry = abs(rx), abs(ry)
    if (x0, y0) == (x1, y1):
        return
    if rx == 0 or ry == 0:
        yield x0, y0, x1, y1, x1, y1
        return
    c, s = math.cos(math.radians(degrees)), math.sin(math.radians(degrees))
    hx, hy = (x0 - x1) / 2, (y0 - y1) / 2
    ux, uy = (c * hx + s * hy) / rx, (-s * hx + c * hy) / ry
    far = ux * ux + uy * uy
    if far > 1:
        rx, ry = rx * math.sqrt(far), ry * math.sqrt(far)
        ux, uy, far = ux / math.sqrt(far), uy / math.sqrt(far), 1
    side = math.sqrt(max(0.0, (1 - far) / far)) * (-1 if large == clockwise else 1)
    cx, cy = side * uy, -side * ux  # the centre on the unit circle's plane, between both ends
    start = math.atan2(uy - cy, ux - cx)
    sweep = math.atan2(-uy - cy, -ux - cx) - start
    if clockwise and sweep < 0:
        sweep += 2 * math.pi
    if not clockwise and sweep > 0:
        sweep -= 2 * math.pi
    pieces = max(1, math.ceil(abs(sweep) / (math.pi / 2) - 1e-9))
    k = 4 / 3 * math.tan(sweep / pieces / 4)

    def place(x, y):
        x, y = (x + cx) * rx, (y + cy) * ry
        return c * x - s * y + (x0 + x1) / 2, s * x + c * y + (y0 + y1) / 2
    for i in range(pieces):
        a, b = start + sweep * i / pieces, start + sweep * (i + 1) / pieces
        end = (x1, y1) if i == pieces - 1 else place(math.cos(b), math.sin(b))
        yield (*place(math.cos(a) - k * math.sin(a), math.sin(a) + k * math.cos(a)),
               *place(math.cos(b) + k * math.sin(b), math.sin(b) - k * math.cos(b)), *end)


def outline(d):
    """The path as (verb, [x, y, ...]) of M, L, C and Z in absolute places."""
    x = y = start_x = start_y = 0.0
    control = None  # of the last curve, for one that goes on smoothly: (letter of its family, x, y)
    for letter, v in tokens(d):
        kind = letter.upper()
        if letter.islower():
            if kind == "A":
                v[5:] = [v[5] + x, v[6] + y]
            elif kind in "HV":
                v = [v[0] + (x if kind == "H" else y)]
            else:
                v = [value + (x, y)[i % 2] for i, value in enumerate(v)]
        if kind in "ST":
            family = "C" if kind == "S" else "Q"
            smooth = control and control[0] == family
            v = [2 * x - control[1], 2 * y - control[2], *v] if smooth else [x, y, *v]
            kind = family
        control = None
        if kind in "CQ":
            control = (kind, *v[-4:-2])
        if kind == "Q":
            qx, qy, ex, ey = v
            kind, v = "C", [x + (qx - x) * 2 / 3, y + (qy - y) * 2 / 3, ex + (qx - ex) * 2 / 3, ey + (qy - ey) * 2 / 3, ex, ey]
        if kind == "Z":
            yield "Z", []
            x, y = start_x, start_y
            continue
        if kind == "A":
            for curve in arc_curves(x, y, *v):
                yield "C", list(curve)
        elif kind in "HV":
            v = [v[0], y] if kind == "H" else [x, v[0]]
            yield "L", v
        else:
            yield kind, v
        x, y = v[-2:]
        if kind == "M":
            start_x, start_y = x, y


# ---- drawings ----

class Drawing:
    """What is to be done, as a text of verbs, with the numbers they take. See PictureTable_p.h."""

    def __init__(self, root):
        self.verbs, self.numbers = [], []
        self.width, self.height = number(root.get("width", "")), number(root.get("height", ""))
        left, top, width, height = numbers(root.get("viewBox", f"0 0 {self.width} {self.height}"))
        if min(self.width, self.height, width, height) <= 0:
            raise Unknown("a drawing without area")
        scale = min(self.width / width, self.height / height)
        place = (scale, 0, 0, scale, (self.width - width * scale) / 2 - left * scale,
                 (self.height - height * scale) / 2 - top * scale)
        self.add(root, dict(INHERITED), place)

    def put(self, verb, *values):
        self.verbs.append(verb)
        self.numbers.extend(values)

    def add(self, element, style, place):
        kind = element.tag.removeprefix(SVG)
        if kind not in OWN:
            raise Unknown(f"<{kind}>")
        for name in element.attrib:
            if name not in OWN[kind] and name not in INHERITED:
                raise Unknown(f"'{name}' of <{kind}>")
        if (element.text or "").strip() or (element.tail or "").strip():
            raise Unknown(f"text in <{kind}>")
        style = style | {name: value for name, value in element.attrib.items() if name in INHERITED}
        place = product(place, transform(element.get("transform", "")))
        opacity = number(element.get("opacity", "1"))
        if opacity != 1:
            self.put("G", opacity)
        if kind == "path":
            self.add_path(element.get("d", ""), style, place)
        for child in element:
            self.add(child, style, place)
        if opacity != 1:
            self.put("g")

    def add_path(self, d, style, place):
        fill, stroke = self.paint(style, "fill"), self.paint(style, "stroke")
        if not fill and not stroke:
            return
        self.put("P")
        a, b, c, d_, tx, ty = place
        for verb, v in outline(d):
            self.put(verb, *(value for x, y in zip(v[::2], v[1::2]) for value in (a * x + c * y + tx, b * x + d_ * y + ty)))
        if fill:
            if style["fill-rule"] not in ("nonzero", "evenodd"):
                raise Unknown(f"fill-rule '{style['fill-rule']}'")
            self.put("F" if style["fill-rule"] == "nonzero" else "E", *fill)
        if stroke:
            self.add_stroke(stroke, style, place)

    def add_stroke(self, color, style, place):
        scale = math.hypot(place[0], place[1])
        if abs(place[0] * place[2] + place[1] * place[3]) > 1e-6 or abs(math.hypot(place[2], place[3]) - scale) > 1e-6:
            raise Unknown("a stroke under a transform that makes circles ovals")
        try:
            cap, join = CAPS.index(style["stroke-linecap"]), JOINS.index(style["stroke-linejoin"])
        except ValueError as error:
            raise Unknown(f"stroke end or join: {error}") from error
        dash = [] if style["stroke-dasharray"] == "none" else numbers(style["stroke-dasharray"])
        self.put("S", *color, number(style["stroke-width"]) * scale, cap, join, number(style["stroke-miterlimit"]),
                 number(style["stroke-dashoffset"]) * scale, len(dash), *(length * scale for length in dash))

    @staticmethod
    def paint(style, name):
        """Red, green, blue and alpha in [0, 1]; nothing for none."""
        text = style[name]
        if text == "none":
            return None
        match = re.fullmatch(r"#([0-9A-Fa-f]{6})", text)
        if not match:
            raise Unknown(f"{name} '{text}'")
        value = int(match[1], 16)
        return [(value >> shift & 255) / 255 for shift in (16, 8, 0)] + [number(style[name + "-opacity"])]


def literal(value):
    text = f"{value:.7g}"
    return text + ("f" if "." in text or "e" in text else ".0f")


def lines(parts, width=116):
    text, row = [], "   "
    for part in parts:
        if len(row) + len(part) + 1 > width:
            text.append(row)
            row = "   "
        row += " " + part
    return "\n".join([*text, row])


def table(drawings):
    records, verbs, values = [], "", []
    for name, drawing in sorted(drawings.items()):
        records.append(f'    {{"{name}", {literal(drawing.width)}, {literal(drawing.height)}, {len(verbs)}, '
                       f"{len(drawing.verbs)}, {len(values)}}},")
        verbs += "".join(drawing.verbs)
        values += drawing.numbers
    chunks = [f'"{verbs[at:at + 110]}"' for at in range(0, len(verbs), 110)]
    return "\n".join([
        "// Made by tools/make_named_pictures.py.",
        '#include "platform/image/named/PictureTable_p.h"', "",
        "namespace lamina {", "", "namespace {", "",
        "constexpr PictureRecord kRecords[] = {", *records, "};",
        "constexpr char kVerbs[] =", lines(chunks) + ";",
        "constexpr float kNumbers[] = {", lines(literal(value) + "," for value in values), "};", "",
        "} // namespace", "", "const PictureTable kPictureTable{kRecords, kVerbs, kNumbers};", "", "} // namespace lamina", ""])


def main(target, *sources):
    drawings = {}
    for source in map(Path, sources):
        if source.stem in drawings:
            sys.exit(f"make_named_pictures.py: two drawings are called '{source.stem}'")
        try:
            drawings[source.stem] = Drawing(ET.parse(source).getroot())
        except (Unknown, ET.ParseError) as error:
            sys.exit(f"make_named_pictures.py: {source}: {error}")
    Path(target).write_text(table(drawings), encoding="utf-8")


if __name__ == "__main__":
    main(*sys.argv[1:])
