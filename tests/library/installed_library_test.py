"""Installs the library into a folder of its own and uses it as another program would."""

import os
import shutil
import subprocess
import unittest
from pathlib import Path

from PIL import Image

SOURCE, BUILD = Path(os.environ["LAMINA_SOURCE"]), Path(os.environ["LAMINA_BUILD"])
CMAKE, COMPILER, FLAGS = os.environ["CMAKE"], os.environ["LAMINA_CXX"], os.environ["LAMINA_CXX_FLAGS"]
WORK = BUILD / "installed_library"


def run(*arguments, **environment):
    return subprocess.run([str(argument) for argument in arguments], capture_output=True, text=True,
                          env={**os.environ, **environment})


class InstalledLibrary(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        shutil.rmtree(WORK, ignore_errors=True)
        cls.succeed(CMAKE, "--install", BUILD, "--component", "development", "--prefix", WORK / "usr")

    @classmethod
    def tearDownClass(cls):
        shutil.rmtree(WORK, ignore_errors=True)  # static libraries are large

    @staticmethod
    def succeed(*arguments):
        done = run(*arguments)
        if done.returncode != 0:
            raise AssertionError(f"{arguments}\n{done.stdout}{done.stderr}")

    def test_every_header_comes_with_what_it_includes(self):
        root = WORK / "usr/include/lamina"
        headers = sorted(str(header) for header in root.rglob("*.h"))
        self.assertGreater(len(headers), 50)
        # Both ways round: a header that leans on one before it stands before that one in the other order.
        for order in (headers, headers[::-1]):
            self.succeed(COMPILER, "-std=c++20", "-Wall", "-Wextra", "-Werror", "-fsyntax-only", "-x", "c++",
                         "-I", root, *(argument for header in order for argument in ("-include", header)), "/dev/null")

    def built(self, example, program):
        self.succeed(CMAKE, "-S", SOURCE / "docs/examples" / example, "-B", WORK / program,
                     "-G", os.environ["LAMINA_GENERATOR"], f"-DCMAKE_CXX_COMPILER={COMPILER}",
                     f"-DCMAKE_CXX_FLAGS={FLAGS}", f"-DCMAKE_PREFIX_PATH={WORK / 'usr'}")
        self.succeed(CMAKE, "--build", WORK / program)
        return WORK / program / program

    def test_the_example_makes_a_postcard(self):
        program, photo, card = self.built("imageops", "postcard"), WORK / "photo.png", WORK / "card.jpg"

        # Flat colours stay flat when they are sharpened; contrast 20 is (x - 128) * 71225 / 60945 + 128.
        Image.new("RGB", (1000, 1000), (100, 200, 40)).save(photo)
        self.succeed(program, photo, card)
        with Image.open(card) as made:
            self.assertEqual((made.format, made.size), ("JPEG", (600, 400)))
            for got, wanted in zip(made.convert("RGB").getpixel((300, 200)), (95, 212, 25)):
                self.assertLessEqual(abs(got - wanted), 2)

        # What reads TIFF comes with the library; at a prefix that it wasn't built for its folder is named.
        scan = WORK / "photo.tif"
        Image.new("RGB", (1000, 1000), (100, 200, 40)).save(scan)
        decoder = next((WORK / "usr").rglob("lamina-decoder"))
        self.assertEqual(run(program, scan, WORK / "scan.jpg", LAMINA_MODULES=str(decoder.parent)).stderr, "")
        self.assertEqual((WORK / "scan.jpg").read_bytes(), card.read_bytes())

        refused = run(program, WORK / "nowhere.png", card)
        self.assertEqual(refused.returncode, 1)
        self.assertIn("nowhere.png", refused.stderr)

    def test_the_example_filters_with_a_filter_of_its_own(self):
        program, photo, result = self.built("filter", "warmth"), WORK / "tile.png", WORK / "warm.png"
        tile = Image.new("RGBA", (7, 5), (100, 200, 90, 255))
        tile.putpixel((6, 4), (40, 10, 255, 128))
        tile.save(photo)
        # 0.2 of 255 is 51; colours stop at 0 and 255, alpha stays.
        for warmth, flat, corner in (("1", (151, 200, 39, 255), (91, 10, 204, 128)),
                                     ("-1", (49, 200, 141, 255), (0, 10, 255, 128)),
                                     ("0", (100, 200, 90, 255), (40, 10, 255, 128))):
            self.succeed(program, photo, result, warmth)
            with Image.open(result) as made:
                self.assertEqual(made.size, (7, 5))
                self.assertEqual(made.convert("RGBA").getpixel((3, 2)), flat)
                self.assertEqual(made.convert("RGBA").getpixel((6, 4)), corner)

        refused = run(program, photo, result, "warm")
        self.assertEqual((refused.returncode, refused.stderr), (1, "warmth: warm: expected NUMBER\n"))
        undriven = run(program, photo, result, LAMINA_EGL_DEVICE="99")
        self.assertEqual(undriven.returncode, 1)
        self.assertIn("99", undriven.stderr)


if __name__ == "__main__":
    unittest.main()
