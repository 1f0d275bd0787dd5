"""What formulas of filters are made of. A picture is rows x columns x (red, green, blue, alpha), each from 0 to 1."""

import numpy as np
from PIL import Image

ALL = "noise", "column"  # what a filter of neighbours is tried on: one is a single pixel wide


def picture_of(path):
    with Image.open(path) as picture:
        return np.array(picture.convert("RGBA")) / 255


def mix(one, other, share):
    return one + (other - one) * share


def colors(formula):
    """On red, green and blue; alpha stays."""
    return lambda p: np.dstack([formula(p[..., :3]), p[..., 3]])


def luma709(c):
    return (c @ [0.2125, 0.7154, 0.0721])[..., None]


def same(p):
    return p


def stored(picture):
    """As bytes keep it."""
    return np.rint(np.clip(picture, 0, 1) * 255) / 255


def moved(p, right, down):
    """Each pixel's neighbour so far away; beyond the border the outermost pixels go on."""
    height, width = p.shape[:2]
    return p[np.clip(np.arange(height) + down, 0, height - 1)][:, np.clip(np.arange(width) + right, 0, width - 1)]


def grid(p):
    """Column and row of each pixel."""
    return np.meshgrid(np.arange(p.shape[1]), np.arange(p.shape[0]))


def places(p):
    """The same in shares of the width and height."""
    x, y = grid(p)
    return (x + 0.5) / p.shape[1], (y + 0.5) / p.shape[0]


def sampled(p, x, y):
    """What lies at column x and row y, between pixels too."""
    left, top = np.floor(x).astype(int), np.floor(y).astype(int)
    right, down = (x - left)[..., None], (y - top)[..., None]

    def read(column, row):
        return p[np.clip(row, 0, p.shape[0] - 1), np.clip(column, 0, p.shape[1] - 1)]
    return mix(mix(read(left, top), read(left + 1, top), right),
               mix(read(left, top + 1), read(left + 1, top + 1), right), down)


def resized(p, width, height):
    x, y = np.meshgrid((np.arange(width) + 0.5) / width, (np.arange(height) + 0.5) / height)
    return sampled(p, x * p.shape[1] - 0.5, y * p.shape[0] - 0.5)


def smoothstep(low, high, x):
    t = np.clip((x - low) / (high - low), 0, 1)
    return t * t * (3 - 2 * t)


def convolution(kernel, right=1, down=1):
    return colors(lambda c: sum(kernel[row][column] * moved(c, (column - 1) * right, (row - 1) * down)
                                for row in range(3) for column in range(3)))


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


def over(base, top, share):
    return np.dstack([mix(base[..., :3], top[..., :3], top[..., 3:] * share), base[..., 3]])


def rows(values):
    return ";".join(",".join(map(str, row)) for row in values)

