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


def run(*arguments):
    return subprocess.run([str(argument) for argument in arguments], capture_output=True, text=True)


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

    def test_every_header_stands_by_itself(self):
        root = WORK / "usr/include/lamina"
        headers = sorted(root.rglob("*.h"))
        self.assertGreater(len(headers), 10)
        for header in headers:
            # A header of ours that another includes must have been installed with it.
            self.succeed(COMPILER, "-std=c++20", "-Wall", "-Wextra", "-Werror", "-fsyntax-only", "-x", "c++",
                         "-I", root, "-include", header, "/dev/null")

    def test_the_example_makes_a_postcard(self):
        self.succeed(CMAKE, "-S", SOURCE / "docs/examples/imageops", "-B", WORK / "postcard",
                     "-G", os.environ["LAMINA_GENERATOR"], f"-DCMAKE_CXX_COMPILER={COMPILER}",
                     f"-DCMAKE_CXX_FLAGS={FLAGS}", f"-DCMAKE_PREFIX_PATH={WORK / 'usr'}")
        self.succeed(CMAKE, "--build", WORK / "postcard")
        program, photo, card = WORK / "postcard/postcard", WORK / "photo.png", WORK / "card.jpg"

        # Flat colours stay flat when they are sharpened; contrast 20 is (x - 128) * 71225 / 60945 + 128.
        Image.new("RGB", (1000, 1000), (100, 200, 40)).save(photo)
        self.succeed(program, photo, card)
        with Image.open(card) as made:
            self.assertEqual((made.format, made.size), ("JPEG", (600, 400)))
            for got, wanted in zip(made.convert("RGB").getpixel((300, 200)), (95, 212, 25)):
                self.assertLessEqual(abs(got - wanted), 2)

        refused = run(program, WORK / "nowhere.png", card)
        self.assertEqual(refused.returncode, 1)
        self.assertIn("nowhere.png", refused.stderr)


if __name__ == "__main__":
    unittest.main()
