"""What `lamina op` makes of pictures, beside what numpy makes of the same numbers: equal to the last bit."""

import math
import os
import subprocess
import tempfile
import unittest
from pathlib import Path

import numpy as np
from PIL import Image

LAMINA, SAMPLES = os.environ["LAMINA_COMMAND"], Path(os.environ["LAMINA_SAMPLES"])
f32 = np.float32


def premultiplied(pixels):
    alpha = pixels[..., 3:].astype(int)
    return np.dstack([(pixels[..., :3] * alpha * 2 + 255) // 510, alpha]).astype(np.uint8)


def straight(pixels):
    alpha = pixels[..., 3:].astype(int)
    shown = np.minimum(255, (510 * pixels[..., :3].astype(int) + alpha) // np.maximum(1, 2 * alpha))
    return np.dstack([np.where(alpha > 0, shown, 0), alpha]).astype(np.uint8)


def cut(values):
    return np.clip(values, f32(0), f32(255)).astype(np.uint8)


def colors(formula):
    """On red, green and blue in single precision; alpha stays."""
    def changed(pixels):
        return np.dstack([cut(formula(pixels[..., :3].astype(f32))), pixels[..., 3]])
    return changed


def brighten(value):
    return colors(lambda x: x + f32(value))


def contrast(value):
    with np.errstate(divide="ignore"):
        factor = ((f32(value) + f32(255)) * f32(259)) / ((f32(259) - f32(value)) * f32(255))
    factor = np.clip(factor, f32(-1000), f32(1000))
    return colors(lambda x: (x - f32(128)) * factor + f32(128))


def gamma(value):
    with_ends = [min(math.pow(float(f32(i) / f32(255)), value), 1) if i or value >= 0 else 1 for i in range(256)]
    return colors(lambda x: np.array(with_ends).astype(f32)[x.astype(int)] * f32(255))


def opacity(value):
    """On all four."""
    share = min(max(float(f32(value)), 0), 1)
    return lambda pixels: (pixels * share + 0.5).astype(np.uint8)


def sepia(x):
    rows = np.array([[0.393, 0.769, 0.189], [0.349, 0.686, 0.168], [0.272, 0.534, 0.131]], f32)
    return np.dstack([x[..., 0] * r + x[..., 1] * g + x[..., 2] * b for r, g, b in rows])


def grayscale(pixels):
    """The luma of the straight colours (Rec. ITU-R BT.709), laid on black, seen through alpha."""
    alpha = pixels[..., 3].astype(int)
    luma = (straight(pixels)[..., :3].astype(int) @ [2126, 7152, 722] + 5000) // 10000
    gray = (luma * alpha * 2 + 255) // 510
    return np.dstack([gray, gray, gray, alpha])


def masked(pixels):
    """Twice through the mask's luma, by weights on 16 bits."""
    mask = premultiplied(MASKS[pixels.shape])[..., :3].astype(int)
    shown = (mask @ [13933, 46871, 4732] + 32768 >> 16)[..., np.newaxis]
    return ((pixels * shown * shown + 32512) // 65025).astype(np.uint8)


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
        if (pixels[..., 3] == 255).all():  # without alpha there is none that a bias could change
            result[..., 3] = 255
        return result
    return changed


def edges(pixels):
    inner = convolution([[-1, -1, -1], [-1, 8, -1], [-1, -1, -1]], 1, 0)(pixels)
    result = np.zeros_like(pixels)
    result[1:-1, 1:-1] = inner[1:-1, 1:-1]
    result[..., 3] = pixels[..., 3]
    return result


BINOMIAL = np.outer([1, 4, 6, 4, 1], [1, 4, 6, 4, 1])
EMBOSS = [[-2, 0, 0], [0, 1, 0], [0, 0, 2]]
# On premultiplied pixels.
FORMULAS = {
    "brightenWithValue=-37.5": brighten(-37.5),
    "brightenWithValue=300": brighten(300),
    "contrastAdjustmentWithValue=77": contrast(77),
    "contrastAdjustmentWithValue=-255": contrast(-255),
    "contrastAdjustmentWithValue=259": contrast(259),
    "contrastAdjustmentWithValue=260": contrast(260),
    "gammaCorrectionWithValue=2.25": gamma(2.25),
    "gammaCorrectionWithValue=0.5": gamma(0.5),
    "gammaCorrectionWithValue=-1": gamma(-1),
    "invert": colors(lambda x: f32(255) - x),
    "opacity=0.4": opacity(0.4),
    "opacity=7": opacity(7),
    "sepia": colors(sepia),
    "maskWithImage=MASK": masked,
    "edgeDetectionWithBias": edges,
    "embossWithBias=7": convolution(EMBOSS, 1, 7),
    "embossWithBias=-100000": convolution(EMBOSS, 1, -100000),
    "sharpenWithBias": convolution([[-1, -1, -1], [-1, 9, -1], [-1, -1, -1]], 1, 0),
    "unsharpenWithBias=-3": convolution([[-1, -1, -1], [-1, 17, -1], [-1, -1, -1]], 9, -3),
    "gaussianBlurWithBias": convolution(BINOMIAL, 256, 0),
}
NOISE = np.random.default_rng(5)
SIZES = [(1, 1), (19, 1), (1, 23), (2, 3), (61, 97), (500, 800)]
MASKS = {(*size, 4): NOISE.integers(0, 256, (*size, 4), np.uint8) for size in SIZES}


class OpBesideNumpy(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.input, self.mask, self.output = (Path(folder.name, f"{name}.png") for name in ("in", "mask", "out"))

    def save(self, pixels, path):
        opaque = (pixels[..., 3] == 255).all()
        Image.fromarray(np.ascontiguousarray(pixels[..., :3] if opaque else pixels)).save(path, compress_level=0)

    def op(self, pixels, *operations):
        self.save(pixels, self.input)
        done = subprocess.run([LAMINA, "op", *operations, "-i", self.input, "-o", self.output],
                              capture_output=True, text=True)
        self.assertEqual(done.returncode, 0, done.stderr)
        with Image.open(self.output) as picture:
            return np.array(picture.convert("RGBA"))

    def test_formulas(self):
        pictures = {f"noise {size}": NOISE.integers(0, 256, (*size, 4), np.uint8) for size in SIZES[:-1]}
        with Image.open(SAMPLES / "meadow.jpg") as photo:
            pictures["photo"] = np.array(photo.convert("RGBA"))[1000:1500, 1500:2300]
        for name, pixels in pictures.items():
            self.save(MASKS[pixels.shape], self.mask)
            for operation, formula in FORMULAS.items():
                with self.subTest(picture=name, operation=operation):
                    got = self.op(pixels, operation.replace("MASK", str(self.mask)))
                    np.testing.assert_array_equal(got, straight(formula(premultiplied(pixels))))
            with self.subTest(picture=name, operation="grayscale"):  # its mask is straight alpha already
                np.testing.assert_array_equal(self.op(pixels, "grayscale"), grayscale(premultiplied(pixels)))

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
