"""What `lamina op` makes of pictures, beside what numpy makes of the same numbers: equal to the last bit."""

import os
import subprocess
import tempfile
import unittest
from pathlib import Path

import numpy as np
from PIL import Image

LAMINA, SAMPLES = os.environ["LAMINA_COMMAND"], Path(os.environ["LAMINA_SAMPLES"])
f32 = np.float32


def cut(values):
    return np.clip(values, f32(0), f32(255)).astype(np.uint8)


def colors(formula):
    """On red, green and blue in single precision; alpha stays."""
    def changed(pixels):
        return np.dstack([cut(formula(pixels[..., :3].astype(f32))), pixels[..., 3]])
    return changed


def contrast(value):
    factor = ((f32(value) + f32(255)) * f32(259)) / ((f32(259) - f32(value)) * f32(255))
    return colors(lambda x: (x - f32(128)) * factor + f32(128))


def sepia(x):
    rows = np.array([[0.393, 0.769, 0.189], [0.349, 0.686, 0.168], [0.272, 0.534, 0.131]], f32)
    return np.dstack([x[..., 0] * r + x[..., 1] * g + x[..., 2] * b for r, g, b in rows])


def convolution(kernel, divisor, bias):
    kernel = np.array(kernel)
    radius = len(kernel) // 2

    def changed(pixels):
        height, width = (side - 2 * radius for side in pixels.shape[:2])
        result = pixels.copy()
        if height > 0 and width > 0:
            sums = sum(int(kernel[j, i]) * pixels[j:j + height, i:i + width].astype(int)
                       for j in range(len(kernel)) for i in range(len(kernel)))
            quotients = np.sign(sums) * (abs(sums) // divisor)
            result[radius:radius + height, radius:radius + width] = np.clip(quotients + bias, 0, 255)
        return result
    return changed


def edges(pixels):
    inner = convolution([[-1, -1, -1], [-1, 8, -1], [-1, -1, -1]], 1, 0)(pixels)
    result = np.zeros_like(pixels)
    result[1:-1, 1:-1] = inner[1:-1, 1:-1]
    result[..., 3] = pixels[..., 3]
    return result


BINOMIAL = np.outer([1, 4, 6, 4, 1], [1, 4, 6, 4, 1])
FORMULAS = {
    "brightenWithValue=-37.5": colors(lambda x: x - f32(37.5)),
    "contrastAdjustmentWithValue=77": contrast(77),
    "contrastAdjustmentWithValue=-120": contrast(-120),
    "invert": colors(lambda x: f32(255) - x),
    "sepia": colors(sepia),
    "edgeDetectionWithBias": edges,
    "embossWithBias=7": convolution([[-2, 0, 0], [0, 1, 0], [0, 0, 2]], 1, 7),
    "sharpenWithBias": convolution([[-1, -1, -1], [-1, 9, -1], [-1, -1, -1]], 1, 0),
    "unsharpenWithBias=-3": convolution([[-1, -1, -1], [-1, 17, -1], [-1, -1, -1]], 9, -3),
    "gaussianBlurWithBias": convolution(BINOMIAL, 256, 0),
}


def premultiplied(pixels):
    alpha = pixels[..., 3:].astype(int)
    return np.dstack([(pixels[..., :3] * alpha * 2 + 255) // 510, alpha]).astype(np.uint8)


def straight(pixels):
    alpha = pixels[..., 3:].astype(int)
    shown = np.minimum(255, (510 * pixels[..., :3].astype(int) + alpha) // np.maximum(1, 2 * alpha))
    return np.dstack([np.where(alpha > 0, shown, 0), alpha]).astype(np.uint8)


class OpBesideNumpy(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.input, self.output = Path(folder.name, "in.png"), Path(folder.name, "out.png")

    def op(self, pixels, *operations):
        opaque = (pixels[..., 3] == 255).all()
        Image.fromarray(np.ascontiguousarray(pixels[..., :3] if opaque else pixels)).save(self.input, compress_level=0)
        done = subprocess.run([LAMINA, "op", *operations, "-i", self.input, "-o", self.output],
                              capture_output=True, text=True)
        self.assertEqual(done.returncode, 0, done.stderr)
        with Image.open(self.output) as picture:
            return np.array(picture.convert("RGBA"))

    def test_formulas(self):
        noise = np.random.default_rng(5)
        pictures = {f"noise {size}": noise.integers(0, 256, (*size, 4), np.uint8)
                    for size in [(1, 1), (19, 1), (1, 23), (2, 3), (61, 97), (301, 203)]}
        with Image.open(SAMPLES / "meadow.jpg") as photo:
            pictures["photo"] = np.array(photo.convert("RGBA"))[1000:1500, 1500:2300]
        for name, pixels in pictures.items():
            for operation, formula in FORMULAS.items():
                with self.subTest(picture=name, operation=operation):
                    wanted = formula(premultiplied(pixels))
                    if name == "photo":  # without alpha there is none that a bias could change
                        wanted[..., 3] = 255
                    np.testing.assert_array_equal(self.op(pixels, operation), straight(wanted))

    def test_moves_of_16_megapixels(self):
        noise = np.random.default_rng(6).integers(0, 256, (4096, 4096, 4), np.uint8)
        there = ["rotateInDegrees=90"] * 4 + ["horizontalFlip", "verticalFlip"] * 2
        np.testing.assert_array_equal(self.op(noise, *there), noise)
        part = noise[:501, :1000]
        wanted = np.rot90(part[:, ::-1], 3)[-300:, -77:]
        moved = self.op(part, "horizontalFlip", "rotateInDegrees=-90", "cropToSize=77x300,5")
        np.testing.assert_array_equal(moved, wanted)


if __name__ == "__main__":
    unittest.main()
