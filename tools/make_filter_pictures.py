#!/usr/bin/env python3
"""Makes the page of the filters and its pictures: make_filter_pictures.py [LAMINA]

What each filter makes of one photo, with its sample settings, goes to docs/images/filters; pictures of filters that are
gone go. Then docs/filters.md is written. LAMINA is the command, build/debug/bin/lamina if it isn't named. Needs Pillow.
"""

import json
import random
import subprocess
import sys
import tempfile
from pathlib import Path

from PIL import Image, ImageDraw, ImageFilter

ROOT = Path(__file__).resolve().parent.parent
SAMPLES, LOOKUP = ROOT / "assets" / "samples", ROOT / "assets" / "lookup"
TARGET = ROOT / "docs" / "images" / "filters"
WORKING, SHOWN = (320, 240), (160, 120)  # filters of few pixels would swallow a photo as small as it is shown


def photo(name):
    picture = Image.open(SAMPLES / name).convert("RGB")
    width, height = min(picture.size, (picture.height * 4 // 3, picture.width * 3 // 4))
    left, top = (picture.width - width) // 2, (picture.height - height) // 2
    return picture.crop((left, top, left + width, top + height)).resize(WORKING, Image.LANCZOS)


def overlay():
    """Another photo in a disc with a soft edge."""
    picture = photo("sea-sunset.jpg")
    shape = Image.new("L", WORKING)
    ImageDraw.Draw(shape).ellipse((55, 15, 265, 225), fill=255)
    picture.putalpha(shape.filter(ImageFilter.GaussianBlur(6)))
    return picture


def scattered_points():
    """What the filter of cells has its diagram of."""
    picture = Image.new("L", WORKING)
    places = random.Random(5)
    for _ in range(400):
        picture.putpixel((places.randrange(WORKING[0]), places.randrange(WORKING[1])), 255)
    return picture.convert("RGB")


def on_white(path):
    with Image.open(path) as picture:
        clear = picture.convert("RGBA")
    page = Image.new("RGBA", clear.size, "white")
    page.alpha_composite(clear)
    return page.convert("RGB")


def command_line(entry, folder):
    words = ["filter", entry["name"]]
    if entry["generator"]:
        words += ["--size", "x".join(map(str, WORKING))]
    else:
        further = {"table": LOOKUP / "lookup_amatorka.png", "diagram": folder / "diagram.png"}
        inputs = [further.get(name, folder / "overlay.png") for name in entry["inputNames"][1:]]
        words += [word for path in (folder / "photo.png", *inputs) for word in ("-i", path)]
    return [*words, *(word for setting in entry["sample"] for word in ("--set", setting)), "-o", folder / "out.png"]


def main(lamina):
    entries = json.loads(subprocess.run([lamina, "filters", "--json"], check=True, capture_output=True).stdout)
    TARGET.mkdir(parents=True, exist_ok=True)
    names = {f"{entry['name']}.jpg" for entry in entries}
    for stale in (path for path in TARGET.glob("*.jpg") if path.name not in names):
        stale.unlink()
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        photo("meadow.jpg").save(folder / "photo.png")
        overlay().save(folder / "overlay.png")
        scattered_points().save(folder / "points.png")
        if "GPUImageJFAVoronoiFilter.jpg" in names:
            subprocess.run([lamina, "filter", "GPUImageJFAVoronoiFilter", "-i", folder / "points.png",
                            "-o", folder / "diagram.png", "-q"], check=True)
        for entry in entries:
            subprocess.run([lamina, *command_line(entry, folder), "-q"], check=True)
            picture = on_white(folder / "out.png")
            if min(picture.width / WORKING[0], picture.height / WORKING[1]) < 1 / 8:
                picture = picture.resize(SHOWN, Image.NEAREST)  # an average, a histogram
            picture.thumbnail(SHOWN, Image.LANCZOS)
            picture.save(TARGET / f"{entry['name']}.jpg", quality=85, optimize=True)
    with open(ROOT / "docs" / "filters.md", "wb") as page:
        subprocess.run([lamina, "filters", "--markdown"], check=True, stdout=page)


if __name__ == "__main__":
    main(sys.argv[1] if len(sys.argv) > 1 else ROOT / "build" / "debug" / "bin" / "lamina")
