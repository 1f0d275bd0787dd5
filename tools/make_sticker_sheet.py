#!/usr/bin/env python3
"""Draws all stickers with their words, by groups, on one sheet: make_sticker_sheet.py [TARGET.png] [GROUND]

The names, words and groups are those of src/editors/stickers/StickerCatalogue.cpp. TARGET is docs/images/stickers.png
if it isn't named; GROUND is the colour below the stickers, that of the strip's chips if it isn't named. The sheet is
for looking at: whether each sticker is told from its neighbours, has their weight and sits in its middle. Needs Pillow
and rsvg-convert.
"""

import io
import json
import re
import subprocess
import sys
import xml.etree.ElementTree as ET
from pathlib import Path
from xml.sax.saxutils import escape

from PIL import Image

ROOT = Path(__file__).resolve().parent.parent
STICKERS = ROOT / "assets" / "stickers"
CATALOGUE = ROOT / "src" / "editors" / "stickers" / "StickerCatalogue.cpp"
SVG = "http://www.w3.org/2000/svg"
PALETTE = json.loads((ROOT / "assets" / "look" / "tokens.json").read_text(encoding="utf-8"))["palette"]
CHIP, SIDE, STEP, ROW = 96, 84, 108, 136  # a chip, the sticker on it, and from one to the next
LEFT, TOP, MARGIN = 188, 24, 24
ET.register_namespace("", SVG)


def catalogue():
    """The groups in their order: (title, [(name, word), ...])."""
    text = CATALOGUE.read_text(encoding="utf-8")
    groups = {}
    for name, word, group in re.findall(r'\{"(\w+)", QT_TRANSLATE_NOOP\("Lamina", "([^"]+)"\), StickerGroup::(\w+)\}', text):
        groups.setdefault(group, []).append((name, word))
    titles = re.findall(r'^ +QT_TRANSLATE_NOOP\("Lamina", "([^"]+)"\),$', text, re.MULTILINE)
    return list(zip(titles, groups.values(), strict=True))


def label(x, y, text, size, color="#FFFFFF", extra=""):
    return f'<text x="{x}" y="{y}" font-family="Inter, sans-serif" font-size="{size}" fill="{color}" {extra}>{escape(text)}</text>'


def sticker(name, x, y):
    """The drawing's paths, moved and scaled to their place."""
    root = ET.parse(STICKERS / f"{name}.svg").getroot()
    scale = SIDE / float(root.get("width"))
    paths = "".join(ET.tostring(path, encoding="unicode") for path in root)
    return f'<g fill="none" transform="translate({x} {y}) scale({scale})">{paths}</g>'


def sheet(ground):
    groups = catalogue()
    width = LEFT + STEP * max(len(entries) for _, entries in groups) - (STEP - CHIP) + MARGIN
    height = TOP + ROW * len(groups)
    parts = [f'<svg xmlns="{SVG}" width="{width}" height="{height}">',
             f'<rect width="{width}" height="{height}" fill="{PALETTE["ground"]}"/>']
    for row, (title, entries) in enumerate(groups):
        y = TOP + ROW * row
        parts += [label(MARGIN, y + 44, title, 15), label(MARGIN, y + 64, str(len(entries)), 15, "#999999")]
        for column, (name, word) in enumerate(entries):
            x, inset = LEFT + STEP * column, (CHIP - SIDE) / 2
            parts.append(f'<rect x="{x}" y="{y}" width="{CHIP}" height="{CHIP}" rx="14" fill="{ground}"/>')
            parts.append(sticker(name, x + inset, y + inset))
            parts.append(label(x + CHIP / 2, y + CHIP + 18, word, 12, extra='text-anchor="middle"'))
    return "".join([*parts, "</svg>"])


def main(target=ROOT / "docs" / "images" / "stickers.png", ground=PALETTE["chip"]):
    drawn = subprocess.run(["rsvg-convert"], input=sheet(ground).encode(), capture_output=True, check=True).stdout
    with Image.open(io.BytesIO(drawn)) as picture:
        picture.convert("RGB").quantize(256).save(target, optimize=True)


if __name__ == "__main__":
    main(*sys.argv[1:])
