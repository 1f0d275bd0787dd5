"""What filters are tried on, by name. A base's overlay is named as the base and `over`."""

import numpy as np

from formulas import stored

random = np.random.default_rng(5)
across, downwards = np.meshgrid(np.arange(255), np.arange(255))


def arrows():
    """Ways in green and blue of all angles, with few lengths in red."""
    angle = 2 * np.pi * random.random((35, 61))
    return np.dstack([random.integers(0, 9, angle.shape) / 8, *(np.array([np.cos(angle), np.sin(angle)]) + 1) / 2,
                      np.ones_like(angle)])


def blots():
    """Soft bright and dark spots on grey."""
    x, y = np.meshgrid(np.arange(61), np.arange(35))
    grey = 0.5 + 0.03 * random.random((35, 61))
    for _ in range(30):
        across, down, strength = random.random(3) * [61, 35, 1] - [0, 0, 0.5]
        grey += strength * np.exp(-((x - across) ** 2 + (y - down) ** 2) / 3)
    return np.dstack([np.clip(grey, 0, 1)] * 3 + [np.ones_like(x)])


def pairs():
    """Pairs of base and overlay by name; the overlay's name is the base's and `over`."""
    # Every colour and alpha where formulas change, over every other; greys and pairs of equal channels among them.
    ends = np.array([0, 1, 127, 128, 254, 255])
    colors = [*([end] * 3 for end in ends), *zip(ends, np.roll(ends, 2), np.roll(ends, 5)), [255, 0, 0], [0, 255, 255]]
    corners = np.array([[*color, alpha] for color in colors for alpha in (0, 1, 128, 255)]) / 255
    shape = len(corners), len(corners), 4
    # A disc of one colour that fades out, on a clear ground of another.
    x, y = np.meshgrid(np.arange(61), np.arange(35))
    alpha = np.clip((17 - np.hypot(x - 30, y - 17)) / 8, 0, 1)[..., None]
    return {**{f"{name}{which}": np.maximum(random.random((height, width, 4)), [0, 0, 0, least_alpha])
               for name, height, width, least_alpha in
               (("pixel", 1, 1, 0), ("line", 1, 70, 1), ("uneven", 35, 61, 0), ("photo", 35, 61, 1))
               for which in ("", " over")},
            "photo over": np.dstack([np.where(alpha > 0, [0.9, 0.3, 0.1], [1.0, 1.0, 1.0]), alpha]),
            "corners": np.broadcast_to(corners, shape), "corners over": np.broadcast_to(corners[:, None], shape)}


def points():
    """Few bright points, a dull one and a thin one."""
    picture = np.tile([0.2, 0.1, 0.3, 1], (35, 61, 1))
    for row, column in zip(random.integers(0, 35, 15), random.integers(0, 61, 15)):
        picture[row, column] = random.random(4) / 4 + [0, 0.75, 0, 0.75]
    picture[3, 50], picture[30, 8] = [0.49, 0, 0.4, 1], [1, 1, 1, 0.4]
    return picture


def diagram():
    """The column and the row of any pixel of as large a picture, in two bytes each; white where there is none."""
    codes = np.dstack([0 * random.random((35, 61)), random.integers(0, 61, (35, 61)), 0 * random.random((35, 61)),
                       random.integers(0, 35, (35, 61))]) / 255
    codes[20:23, 5:9] = 1
    return codes


PICTURES = {name: stored(np.asarray(pixels)) for name, pixels in {
    "noise": random.random((35, 61, 4)),
    "other": random.random((35, 61, 4)),
    "column": random.random((9, 1, 4)),
    "row": random.random((1, 70, 4)),
    "dot": [[[0.2, 0.5, 0.9, 0.6]]],
    "ramp": np.dstack([across, downwards, (across + downwards) / 2, np.full((255, 255), 254)]) / 254,
    "greys": [[[level / 255] * 3 + [1] for level in range(256)]],
    **pairs(),
    "board": np.where(np.add(*np.indices((60, 84)) // 12) % 2, 0.2, 0.45)[..., None] * [1, 1, 1, 0] + [0, 0, 0, 1],
    # Below y = 0.4 x + 0.1, from -1 to 1 each.
    "slope": np.where((downwards[:70, :90] + 0.5) / 35 - 1.1 > 0.4 * (across[:70, :90] + 0.5) / 45 - 0.4, 1, 0)[..., None]
             * [1.0, 1, 1, 0] + [0, 0, 0, 1],
    "arrows": arrows(),
    "blots": blots(),
    "counts": np.dstack([random.integers(0, high, (35, 61)) for high in (256, 4, 2, 1)]) / 255 + [0, 0, 0, 1],
    "points": points(), "diagram": diagram(),
    "plateaus": random.integers(0, 4, (35, 61, 4)) / 3,
    **{f"step {red}": [[[0, 1, 1, 1], [red / 255, 1, 1, 1], [0, 1, 1, 1]]] + [[[0, 1, 1, 1]] * 3] * 2
       for red in (25, 26, 255)},
}.items()}
