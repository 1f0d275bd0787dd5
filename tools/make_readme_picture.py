#!/usr/bin/env python3
"""Lays two sample photos and their blend side by side for the README: make_readme_picture.py BLEND.png

BLEND.png is what `./dev run` leaves in out/rain-over-the-ridge.png. Needs Pillow.
"""

import sys
from pathlib import Path

from PIL import Image, ImageOps

ROOT = Path(__file__).resolve().parent.parent
GROUND = (18, 19, 22)
SIDE, SMALL, MARGIN = 600, 288, 24


def square(path, side):
    """What the crop takes at zoom 1: the photo's top left, as wide as it is high."""
    photo = ImageOps.exif_transpose(Image.open(path)).convert("RGB")
    edge = min(photo.size)
    return photo.crop((0, 0, edge, edge)).resize((side, side), Image.LANCZOS)


def main(blend):
    samples = ROOT / "assets" / "samples"
    page = Image.new("RGB", (SMALL + SIDE + 3 * MARGIN, SIDE + 2 * MARGIN), GROUND)
    page.paste(square(samples / "dawn-ridge.jpg", SMALL), (MARGIN, MARGIN))
    page.paste(square(samples / "city-rain.jpg", SMALL), (MARGIN, MARGIN + SIDE - SMALL))
    page.paste(Image.open(blend).convert("RGB").resize((SIDE, SIDE), Image.LANCZOS), (2 * MARGIN + SMALL, MARGIN))
    target = ROOT / "docs" / "images" / "blend.jpg"
    page.save(target, quality=88, optimize=True)
    print(target)


if __name__ == "__main__":
    main(sys.argv[1])
