"""Our stickers: one for each name of the catalogue, of one family, told from each other, and cut out all round."""

import io
import json
import os
import re
import subprocess
import sys
import unittest
import xml.etree.ElementTree as ET
from itertools import combinations
from pathlib import Path

import numpy as np
from PIL import Image

SOURCE = Path(os.environ["LAMINA_SOURCE"])
sys.path.insert(0, str(SOURCE / "tools"))
import make_sticker_sheet as sheet  # noqa: E402

LOOK = json.loads((SOURCE / "assets" / "look" / "tokens.json").read_text(encoding="utf-8"))["stickers"]
WORDS = {name: word for _, entries in sheet.catalogue() for name, word in entries}
ZOOM = 4  # pixels a point
SEE_THROUGH = {"Round frame": (48, 48), "Corners": (48, 48), "Compass": (48, 19), "Suitcase": (48, 23)}


def drawn(name):
    """The sticker's pixels: red, green, blue, alpha."""
    command = ["rsvg-convert", "--zoom", str(ZOOM), SOURCE / "assets" / "stickers" / f"{name}.svg"]
    picture = Image.open(io.BytesIO(subprocess.run(command, capture_output=True, check=True).stdout))
    return np.asarray(picture.convert("RGBA"))


def inside(shape, points):
    """What of the shape is farther than so many points from its edge."""
    radius = round(points * ZOOM)
    padded = np.pad(shape, radius)
    left = padded.copy()
    for angle in np.linspace(0, 2 * np.pi, 72, endpoint=False):
        left &= np.roll(padded, (round(radius * np.sin(angle)), round(radius * np.cos(angle))), (0, 1))
    return left[radius:-radius, radius:-radius]


class Stickers(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.pictures = {name: drawn(name) for name in WORDS}

    def test_each_name_has_its_drawing_of_the_family(self):
        files = {path.stem: path for path in (SOURCE / "assets" / "stickers").glob("*.svg")}
        self.assertEqual(set(files), set(WORDS))
        self.assertEqual(len(WORDS), 84)
        paints = {*LOOK["colors"].values(), LOOK["dieCutEdge"]}
        for name, path in files.items():
            with self.subTest(WORDS[name]):
                root = ET.parse(path).getroot()
                self.assertEqual(root.get("viewBox"), "0 0 96 96")
                self.assertLessEqual({p for e in root for p in (e.get("fill"), e.get("stroke")) if p}, paints | {"none"})
                self.assertFalse(re.search(r"\.\d{3}", path.read_text(encoding="utf-8")), "more than two decimals")

    def test_a_white_rim_with_an_edge_goes_all_round_and_holes_are_seen_through(self):
        white, edge = (np.array([int(color[i:i + 2], 16) for i in (1, 3, 5)]) for color in ("#FFFFFF", LOOK["dieCutEdge"]))
        for name, pixels in self.pictures.items():
            with self.subTest(WORDS[name]):
                shape, colors = pixels[..., 3] > 127, pixels[..., :3]
                # Between white and the edge's grey lies all that belongs to the rim.
                colored = shape & ((np.ptp(colors, axis=2) > 40) | (colors.max(axis=2) < edge.min() - 20))
                self.assertEqual(np.argwhere(colored & ~inside(shape, 4.25)).tolist()[:3], [], "too near the edge")
                places = np.argwhere(colored) / ZOOM
                self.assertGreaterEqual(places.min(), 7.5)
                self.assertLessEqual(places.max(), 88.5)
                border = inside(shape, 0.25) & ~inside(shape, 0.5)
                self.assertGreater(np.mean(abs(colors[border] - edge).max(axis=1) < 12), 0.95, "the edge's grey")
                rim = inside(shape, 1.5) & ~inside(shape, 3.5)
                self.assertGreater(np.mean(abs(colors[rim] - white).max(axis=1) < 12), 0.99, "the rim's white")
                x, y = SEE_THROUGH.get(WORDS[name], (0, 0))
                self.assertEqual(pixels[y * ZOOM, x * ZOOM, 3], 0, "a hole")

    def test_no_two_look_alike(self):
        def small(pixels):
            picture = Image.fromarray(pixels, "RGBA").resize((24, 24), Image.BOX)
            on_ground = Image.alpha_composite(Image.new("RGBA", picture.size, "#1B1C20"), picture)
            return np.asarray(on_ground.convert("RGB")).astype(int)
        thumbs = {name: small(pixels) for name, pixels in self.pictures.items()}
        for one, other in combinations(thumbs, 2):
            self.assertGreater(abs(thumbs[one] - thumbs[other]).mean(), 20, f"{WORDS[one]}, {WORDS[other]}")


if __name__ == "__main__":
    unittest.main()
