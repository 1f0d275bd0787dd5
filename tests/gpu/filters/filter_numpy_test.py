"""What `lamina filter` makes of pictures, beside what numpy makes of the same numbers: within two steps of 8 bits."""

import json
import os
import subprocess
import tempfile
import unittest
from pathlib import Path

import numpy as np
from PIL import Image

import blend_formulas
import color_cases
from formulas import colors, luma709, mix, same, stored

LAMINA, LOOKUP = os.environ["LAMINA_COMMAND"], Path(os.environ["LAMINA_LOOKUP"])
ALL = "noise", "column"  # what a filter of neighbours is tried on: one is a single pixel wide


def picture_of(path):
    with Image.open(path) as picture:
        return np.array(picture.convert("RGBA")) / 255




def moved(p, right, down):
    """Each pixel's neighbour so far away; beyond the border the outermost pixels go on."""
    height, width = p.shape[:2]
    return p[np.clip(np.arange(height) + down, 0, height - 1)][:, np.clip(np.arange(width) + right, 0, width - 1)]


def matrix(rows, share=1.0):
    return lambda p: mix(p, p @ np.array(rows).T, share)


def sepia(share=1.0):
    luma = np.array([0.299, 0.587, 0.114])
    return colors(lambda c: mix(c, np.dstack([tone * (c @ luma) for tone in (1.2, 1, 0.8)]), share))


def tint(share, *color):
    def overlaid(c):
        y, f = luma709(c), np.array(color)
        return mix(c, np.where(y < 0.5, 2 * y * f, 1 - 2 * (1 - y) * (1 - f)), share)
    return colors(overlaid)


def hue(angle, green_in_i=-0.274453, i_in_red=0.9563):
    """In polar form: the angle of (I, Q) falls, the length stays."""
    def turned(c):
        y, i, q = np.moveaxis(c @ np.array([[0.299, 0.587, 0.114], [0.595716, green_in_i, -0.321263],
                                            [0.211456, -0.522591, 0.31135]]).T, 2, 0)
        way, chroma = np.arctan2(q, i) - angle, np.hypot(i, q)
        i, q = chroma * np.cos(way), chroma * np.sin(way)
        return np.dstack([y + i_in_red * i + 0.6210 * q, y - 0.2721 * i - 0.6474 * q, y - 1.1070 * i + 1.7046 * q])
    return colors(turned)


def haze(distance, slope=0.0):
    def cleared(p):
        d = (distance + slope * (np.arange(len(p)) + 0.5) / len(p))[:, None, None]
        return (p - d) / (1 - d)
    return cleared


def convolution(kernel, right=1, down=1):
    return colors(lambda c: sum(kernel[row][column] * moved(c, (column - 1) * right, (row - 1) * down)
                                for row in range(3) for column in range(3)))


def relief(i):
    return convolution([[-2 * i, -i, 0], [-i, 1, i], [0, i, 2 * i]])


def cartoon(threshold, levels=10.0, doubt=0.02):
    """Not a number where the edge is as steep as the threshold within what reads of neighbours may be off."""
    def inked(c):
        def red(right, down):
            return moved(c, right, down)[..., 0]
        steep = np.hypot(red(-1, 1) + 2 * red(0, 1) + red(1, 1) - red(-1, -1) - 2 * red(0, -1) - red(1, -1),
                         red(1, -1) + 2 * red(1, 0) + red(1, 1) - red(-1, -1) - 2 * red(-1, 0) - red(-1, 1))[..., None]
        flat = np.where(steep < threshold, np.floor(c * levels + 0.5) / levels, 0)
        return np.where(abs(steep - threshold) < doubt, np.nan, flat)
    return colors(inked)


def extreme(choose, reach, down=1):
    def chosen(p):
        steps = range(-reach, reach + 1)
        value = choose([moved(p[..., 0], i, down * j) for i in steps for j in steps], axis=0)
        return np.dstack([value, value, value, np.ones_like(value)])
    return chosen


def bell(reach, sigma):
    weights = np.exp(-np.arange(-reach, reach + 1) ** 2 / (2 * sigma ** 2))
    return weights / weights.sum()


def box(reach):
    return np.full(2 * reach + 1, 1 / (2 * reach + 1))


def blur(weights, passes=1, step=1):
    """Down, then across, with bytes in between."""
    def blurred(p):
        reach = len(weights) // 2
        for right, down in [(0, step), (step, 0)] * passes:
            p = stored(sum(w * moved(p, (i - reach) * right, (i - reach) * down) for i, w in enumerate(weights)))
        return p
    return blurred


def look(name, share=1.0):
    """By a table of 8 x 8 tiles of 64 x 64 entries: interpolated between the eight entries around a colour."""
    def graded(c):
        cube = picture_of(LOOKUP / f"lookup_{name}.png")[..., :3].reshape(8, 64, 8, 64, 3)
        cube = cube.transpose(0, 2, 1, 3, 4).reshape(64, 64, 64, 3)  # by blue, green, red
        places = 63 * c[..., ::-1]
        low = np.floor(places).astype(int)
        result = 0
        for corner in np.ndindex(2, 2, 2):
            at = np.minimum(low + corner, 63)
            weight = np.where(corner, places - low, 1 - places + low).prod(axis=2)
            result = result + weight[..., None] * cube[at[..., 0], at[..., 1], at[..., 2]]
        return mix(c, result, share)
    return colors(graded)


def soft_elegance(p):
    pale = stored(look("soft_elegance_1")(p))
    return look("soft_elegance_2")(stored(over(pale, blur(bell(22, 10))(pale), 0.14)))


def over(base, top, share):
    return np.dstack([mix(base[..., :3], top[..., :3], top[..., 3:] * share), base[..., 3]])


UNEVEN = [[0.5, 0.25, 0, 0.125], [0, 0.75, 0.5, 0], [-0.25, 0, 1, 0.25], [0.25, 0, -0.125, 0.75]]
LOPSIDED = [[0.3, -0.1, 0.05], [0.2, 0.25, -0.3], [-0.15, 0.35, 0.4]]


def rows(values):
    return ";".join(",".join(map(str, row)) for row in values)


# Filter and settings; the formula; further pictures, the tolerance and what is compared where they are not the usual
# ones.
CASES = [
    ("3x3ConvolutionFilter", same, ALL, 0),
    (f"3x3ConvolutionFilter convolutionKernel={rows(LOPSIDED)}", convolution(LOPSIDED), ALL),
    (f"3x3ConvolutionFilter convolutionKernel={rows(LOPSIDED)} texelWidth=0.09836066 texelHeight=0.11428571",
     convolution(LOPSIDED, 6, 4), ["noise"]),
    ("EmbossFilter", relief(1), ALL), ("EmbossFilter intensity=-2.5", relief(-2.5)),
    ("ToonFilter", cartoon(0.2), ALL), ("GpuImageCustomFilter3", cartoon(1), ALL),
    ("GpuImageCustomFilter3 threshold=2.03 quantizationLevels=3.5", cartoon(2.03, 3.5)),
    # Only the pixel above the centre differs, which counts twice.
    ("ToonFilter", cartoon(0.2, doubt=0), ["step 25", "step 26"], 0),
    ("ToonFilter threshold=2", cartoon(2, doubt=0), ["step 255"], 0),
    ("ToonFilter threshold=2.001", cartoon(2.001, doubt=0), ["step 255"], 0),
    ("ErosionFilter", extreme(np.min, 1), ALL, 1), ("DilationFilter", extreme(np.max, 1), ALL, 1),
    ("ErosionFilter radius=4 verticalTexelSpacing=3", extreme(np.min, 4, 3), ALL, 1),
    *[(f"{name}Filter radius={radius}", extreme(choose, reach), ["noise"], 1)
      for name, choose in (("Erosion", np.min), ("Dilation", np.max)) for radius, reach in ((0, 1), (3, 3), (9, 4))],
    ("ColorMatrixFilter", same, ["noise"], 0),
    (f"ColorMatrixFilter colorMatrix={rows(UNEVEN)} intensity=0.5", matrix(UNEVEN, 0.5)),
    ("SepiaFilter", sepia()), ("SepiaFilter intensity=0.3", sepia(0.3)),
    ("GrayscaleFilter", colors(lambda c: np.repeat(luma709(c), 3, 2))),
    ("HazeFilter", haze(0.2)), ("HazeFilter distance=0.1 slope=-0.4", haze(0.1, -0.4)),
    ("HazeFilter distance=1", np.zeros_like, ["noise", "ramp"], 0),
    ("MonochromeFilter", tint(1, 0.6, 0.45, 0.3)),
    ("MonochromeFilter color=0.1,0.2,0.9,0.5 intensity=0.8", tint(0.8, 0.1, 0.2, 0.9)),
    ("GpuImageCustomFilter", tint(1, 0.35, 0.1, 0.23)), ("GpuImageCustomFilter1", tint(5, 0.35, 0.23, 0.1)),
    # What is rounded on the way shows twelve times as large.
    ("GpuImageCustomFilter1 intensity=12", tint(12, 0.35, 0.23, 0.1), ["ramp"], 1),
    *[(f"HueFilter hue={degrees}", hue(np.radians(degrees))) for degrees in (0, 200, -30, 450, -750)],
    ("HueFilter", same, ["greys"], 1),
    ("GpuImageCustomHue", hue(3 * np.pi / 4, -0.474453, 0.2563)),
    ("GpuImageCustomHue hue=390", hue(np.pi / 4, -0.474453, 0.2563)),
    ("GaussianBlurFilter", blur(bell(4, 2)), ALL), ("BoxBlurFilter", blur(box(4)), ALL),
    *[(f"GaussianBlurFilter blurRadiusInPixels=3 blurRadiusInPixels={radius}", blur(bell(reach, sigma)))
      for radius, sigma, reach in ((1, 1, 4), (2, 2, 6), (4.5, 5, 12), (10, 10, 22), (40, 40, 54), (62, 62, 62),
                                   (500, 500, 62))],
    *[(f"BoxBlurFilter blurRadiusInPixels={radius}", blur(box(radius)), ALL) for radius in (1, 6, 17)],
    *[(f"{name}BlurFilter blurRadiusInPixels={radius}", same, ["noise"], 0)
      for name in ("Gaussian", "Box") for radius in (0.4, 0, -7)],
    ("GaussianBlurFilter blurPasses=3", blur(bell(4, 2), 3), ["ramp"]),
    ("GaussianBlurFilter blurRadiusAsFractionOfImageWidth=0.1", blur(bell(14, 6))),
    ("GaussianBlurFilter blurRadiusAsFractionOfImageHeight=0.1", blur(bell(10, 4))),
    # A box of three has its pairs' places on texels, however far they are.
    ("BoxBlurFilter blurRadiusInPixels=1 texelSpacingMultiplier=3", blur(box(1), step=3)),
    ("AmatorkaFilter", look("amatorka")), ("MissEtikateFilter", look("miss_etikate")),
    # The bytes after the first table and the mixture may differ by one, and the second table is 2.5 times as steep.
    ("SoftEleganceFilter", soft_elegance, ["noise"], 4),
    ("LookupFilter + amatorka", same, ["noise"], 0), ("LookupFilter intensity=0 + amatorka", same, ["noise"], 0),
    ("LookupFilter intensity=1 + identity", same, ["noise", "ramp"], 1),
    ("LookupFilter intensity=0.6 + miss_etikate", look("miss_etikate", 0.6)),
    *[(f"{name}BlendFilter mix={share} + other", formula(share)) for share in (0, 0.5, 1) for name, formula in
      (("Alpha", lambda share: lambda p: over(p, PICTURES["other"], share)),
       ("Dissolve", lambda share: lambda p: mix(p, PICTURES["other"], share)))],
    *color_cases.CASES,
]

random = np.random.default_rng(5)
across, downwards = np.meshgrid(np.arange(255), np.arange(255))
PICTURES = {name: stored(np.asarray(pixels)) for name, pixels in {
    "noise": random.random((35, 61, 4)),
    "other": random.random((35, 61, 4)),
    "column": random.random((9, 1, 4)),
    "row": random.random((1, 70, 4)),
    "dot": [[[0.2, 0.5, 0.9, 0.6]]],
    "ramp": np.dstack([across, downwards, (across + downwards) / 2, np.full((255, 255), 254)]) / 254,
    "greys": [[[level / 255] * 3 + [1] for level in range(256)]],
    **blend_formulas.pictures(random),
    **{f"step {red}": [[[0, 1, 1, 1], [red / 255, 1, 1, 1], [0, 1, 1, 1]]] + [[[0, 1, 1, 1]] * 3] * 2
       for red in (25, 26, 255)},
}.items()}
CASES += blend_formulas.cases(PICTURES)


class FiltersBesideNumpy(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        for name, pixels in PICTURES.items():
            bytes_of = np.rint(pixels * 255).astype(np.uint8)
            opaque = (bytes_of[..., 3] == 255).all()
            Image.fromarray(bytes_of[..., :3] if opaque else bytes_of).save(self.folder / f"{name}.png")

        for name, content in color_cases.FILES.items():
            (self.folder / name).write_bytes(content)

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
        for case, formula, *rest in CASES:
            pictures, tolerance, compared = [*rest, *[["noise"], 2, same][len(rest):]]
            for picture in pictures:
                with self.subTest(case, picture=picture):
                    got = compared(self.filtered(case, picture))
                    wanted = np.clip(formula(PICTURES[picture]), 0, 1)
                    self.assertEqual(got.shape, wanted.shape)
                    self.assertLess(np.isnan(wanted).mean(), 0.1)
                    self.assertLessEqual(np.nanmax(abs(got - wanted)) * 255, tolerance + 0.5)

    def test_every_filter_has_its_formula(self):
        listed = json.loads(subprocess.run([LAMINA, "filters", "--json"], capture_output=True).stdout)
        self.assertEqual({entry["name"] for entry in listed}, {full_name(case.split()[0]) for case, *_ in CASES})


def full_name(name):
    return name if name.startswith("Gpu") else f"GPUImage{name}"


if __name__ == "__main__":
    unittest.main()
