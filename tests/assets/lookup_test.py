"""The colour look-up tables: laid out as their readers expect, made by their script, and fit for photos."""

import os
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

import numpy as np
from PIL import Image

SOURCE = Path(os.environ["LAMINA_SOURCE"])
FOLDER = SOURCE / "assets" / "lookup"
TOOL = SOURCE / "tools" / "make_lookup_tables.py"
GRADINGS = ["lookup_amatorka.png", "lookup_soft_elegance_1.png", "lookup_soft_elegance_2.png", "lookup_miss_etikate.png"]
IDENTITY = "lookup_identity.png"
# The identity steps by 4 or 5. More than twice that between neighbours would show as a band in a smooth sky.
GREATEST_STEP = 10
LUMA = np.array([0.2126, 0.7152, 0.0722])


def pixels(path):
    with Image.open(path) as picture:
        return np.asarray(picture).astype(int)


def entries(name):
    """By [red, green, blue], each read from the place where a renderer looks."""
    r, g, b = np.meshgrid(*[np.arange(64)] * 3, indexing="ij")
    return pixels(FOLDER / name)[64 * (b // 8) + g, 64 * (b % 8) + r]


def greys(name):
    return entries(name)[range(64), range(64), range(64)]


def chunks(data):
    at, names = 8, []
    while at < len(data):
        names.append(data[at + 4 : at + 8])
        at += 12 + int.from_bytes(data[at : at + 4], "big")
    return names


class LookupTables(unittest.TestCase):
    def test_the_files_are_what_the_script_makes(self):
        with tempfile.TemporaryDirectory() as folder:
            subprocess.run([sys.executable, "-B", TOOL, "--out", folder], check=True, capture_output=True)
            made = {path.name: pixels(path) for path in Path(folder).iterdir()}
        self.assertEqual(set(made), {path.name for path in FOLDER.glob("*.png")})
        self.assertEqual(set(made), {IDENTITY, *GRADINGS})
        for name, picture in made.items():  # the pixels: another zlib may pack them otherwise
            np.testing.assert_array_equal(pixels(FOLDER / name), picture, name)

    def test_plain_rgb_that_no_reader_converts(self):
        for name in [IDENTITY, *GRADINGS]:
            with self.subTest(name), Image.open(FOLDER / name) as picture:
                self.assertEqual((picture.format, picture.mode, picture.size), ("PNG", "RGB", (512, 512)))
                self.assertEqual(set(chunks((FOLDER / name).read_bytes())), {b"IHDR", b"IDAT", b"IEND"})

    def test_the_identity_is_exact(self):
        value = np.array([round(255 * i / 63) for i in range(64)])
        wanted = np.stack(np.meshgrid(value, value, value, indexing="ij"), -1)
        np.testing.assert_array_equal(entries(IDENTITY), wanted)

    def test_smooth_along_every_axis(self):
        for name in GRADINGS:
            table = entries(name)
            for axis in range(3):
                with self.subTest(name, axis=axis):
                    self.assertLessEqual(np.abs(np.diff(table, axis=axis)).max(), GREATEST_STEP)
                    # More light in never gives less light out, but for the rounding of three channels.
                    self.assertGreaterEqual(np.diff(table @ LUMA, axis=axis).min(), -1)

    def test_greys_climb_from_an_open_black_to_a_clean_white(self):
        for name in GRADINGS:
            with self.subTest(name):
                ramp = greys(name)
                self.assertGreaterEqual(np.diff(ramp, axis=0).min(), 0)
                self.assertGreater(np.diff(ramp @ LUMA).min(), 0.5)
                self.assertTrue(3 < ramp[0] @ LUMA < 24, ramp[0])
                self.assertGreaterEqual(ramp[63].min(), 240)
                self.assertLessEqual(np.ptp(ramp[63]), 10)

    def test_skin_stays_skin(self):
        """Deep, middle and light: red above green above blue, and no darker than a fifth."""
        skins = np.array([(59, 34, 25), (115, 82, 68), (194, 150, 130), (243, 215, 196)])
        for name in GRADINGS:
            with self.subTest(name):
                result = entries(name)[tuple(np.rint(63 * skins / 255).astype(int).T)]
                self.assertGreaterEqual((result[:, 0] - result[:, 1]).min(), 4)
                self.assertGreaterEqual((result[:, 1] - result[:, 2]).min(), 0)
                self.assertGreater((result @ LUMA - 0.8 * (skins @ LUMA)).min(), 0)


if __name__ == "__main__":
    unittest.main()
