"""What `lamina filter` makes of pictures, beside what numpy makes of the same numbers: within two steps of 8 bits.

    filter_numpy_test.py FAMILY    the rows of FAMILY_cases.py; "all": whether every filter has one

A row of CASES: filter and settings, behind + a second picture; the formula; further pictures, the tolerance and what is
compared where they are not the usual ones. A module's FILES lie beside the pictures.
"""

import importlib
import json
import os
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

import numpy as np
from PIL import Image

from formulas import picture_of, same
from pictures import PICTURES

LAMINA, LOOKUP = os.environ["LAMINA_COMMAND"], Path(os.environ["LAMINA_LOOKUP"])
HERE = Path(__file__).parent


def full_name(name):
    return name if name.startswith("Gpu") else f"GPUImage{name}"


class FiltersBesideNumpy(unittest.TestCase):
    family = "all"

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        for name, pixels in PICTURES.items():
            bytes_of = np.rint(pixels * 255).astype(np.uint8)
            opaque = (bytes_of[..., 3] == 255).all()
            Image.fromarray(bytes_of[..., :3] if opaque else bytes_of).save(self.folder / f"{name}.png")

    def filtered(self, case, picture):
        command, _, second = case.partition(" + ")
        name, *settings = command.split()
        inputs = [self.folder / f"{picture}.png"]
        if second:
            inputs.append(self.folder / f"{second}.png" if second in PICTURES else LOOKUP / f"lookup_{second}.png")
        output = self.folder / "out.png"
        done = subprocess.run([LAMINA, "filter", full_name(name), *(word for path in inputs for word in ("-i", path)),
                               *(word for setting in settings for word in ("--set", setting)), "-o", output],
                              cwd=self.folder, capture_output=True, text=True)
        self.assertEqual(done.returncode, 0, done.stderr)
        return picture_of(output)

    def test_formulas(self):
        module = importlib.import_module(f"{self.family}_cases")
        for name, content in getattr(module, "FILES", {}).items():
            (self.folder / name).write_bytes(content)
        for case, formula, *rest in module.CASES:
            pictures, tolerance, compared = [*rest, *[["noise"], 2, same][len(rest):]]
            for picture in pictures:
                with self.subTest(case, picture=picture):
                    got = compared(self.filtered(case, picture))
                    wanted = np.clip(formula(PICTURES[picture]), 0, 1)
                    self.assertEqual(got.shape, wanted.shape)
                    self.assertLess(np.isnan(wanted).mean(), 0.1)
                    self.assertLessEqual(np.nanmax(abs(got - wanted)) * 255, tolerance + 0.5)


class EveryFilter(unittest.TestCase):
    def test_has_its_formula(self):
        listed = json.loads(subprocess.run([LAMINA, "filters", "--json"], capture_output=True).stdout)
        cases = [case for path in HERE.glob("*_cases.py") for case, *_ in importlib.import_module(path.stem).CASES]
        self.assertEqual({entry["name"] for entry in listed}, {full_name(case.split()[0]) for case in cases})


if __name__ == "__main__":
    FiltersBesideNumpy.family = sys.argv.pop(1)
    unittest.main(defaultTest="EveryFilter" if FiltersBesideNumpy.family == "all" else "FiltersBesideNumpy")
