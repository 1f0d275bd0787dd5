"""The blends in numpy: straight colours mixed by coverage, as textbooks tell them, and rounded as they go up."""

import numpy as np


def stored(picture):
    """As bytes keep it."""
    return np.rint(np.clip(picture, 0, 1) * 255) / 255


def multiplied(p):
    return np.dstack([p[..., :3] * p[..., 3:], p[..., 3:]])


def pictures(random):
    """Pairs of base and overlay by name; the overlay's name is the base's and `over`."""
    def noise(height, width, alpha=None):
        colors = random.random((height, width, 4))
        return colors if alpha is None else np.dstack([colors[..., :3], np.broadcast_to(alpha, (height, width))])

    # Every colour and alpha where formulas change, over every other; greys and pairs of equal channels among them.
    ends = np.array([0, 1, 127, 128, 254, 255])
    colors = [*([end] * 3 for end in ends), *zip(ends, np.roll(ends, 2), np.roll(ends, 5)), [255, 0, 0], [0, 255, 255]]
    corners = np.array([[*color, alpha] for color in colors for alpha in (0, 1, 128, 255)]) / 255
    side = len(corners)
    # A disc of one colour that fades out, on a clear ground of another.
    x, y = np.meshgrid(np.arange(61), np.arange(35))
    alpha = np.clip((17 - np.hypot(x - 30, y - 17)) / 8, 0, 1)[..., None]
    disc = np.dstack([np.where(alpha > 0, [0.9, 0.3, 0.1], [1.0, 1.0, 1.0]), alpha])
    return {
        "pixel": noise(1, 1), "pixel over": noise(1, 1),
        "row": noise(1, 70, 1), "row over": noise(1, 70, 1),
        "uneven": noise(35, 61), "uneven over": noise(35, 61),
        "photo": noise(35, 61, 1), "photo over": disc,
        "corners": np.broadcast_to(corners, (side, side, 4)),
        "corners over": np.broadcast_to(corners[:, None], (side, side, 4)),
    }


def quotient(x, y, of_nothing):
    with np.errstate(divide="ignore", invalid="ignore"):
        return np.where(y > 0, x / np.where(y > 0, y, 1), of_nothing)


def composed(blend, alpha=None):
    """What shows where only one is, and `blend` of straight colours where both are; premultiplied."""
    def formula(base, overlay):
        base, overlay = stored(multiplied(base)), stored(multiplied(overlay))
        b, o = base[..., 3:], overlay[..., 3:]
        common = blend(quotient(base[..., :3], b, 0), quotient(overlay[..., :3], o, 0), o)
        union = 1 - (1 - b) * (1 - o)
        color = (1 - o) * base[..., :3] + (1 - b) * overlay[..., :3] + b * o * common
        # What is above its alpha is cut to it when alpha is divided out.
        opacity = stored(union if alpha is None else alpha(b))
        return np.dstack([np.minimum(color, opacity), opacity])
    return formula


def by_colors(blend, **alpha):
    return composed(lambda b, o, _: blend(b, o), **alpha)


def hard_light(b, o):
    return np.where(o < 0.5, 2 * b * o, 1 - 2 * (1 - b) * (1 - o))


def dodge(b, o, opacity):
    light = np.minimum(o * opacity / np.maximum(opacity, 0.01), 0.99)
    return np.where(b + o <= 1 + 1e-9, b / (1 - light), 1)


def luminance(c):
    return (c @ [0.3, 0.59, 0.11])[..., None]


def saturation(c):
    return (c.max(2) - c.min(2))[..., None]


def with_saturation(c, s):
    """By order of the channels: the largest becomes s, the smallest 0, the one between keeps its share of the way."""
    order = np.argsort(c, axis=2)
    low, middle, high = np.moveaxis(np.take_along_axis(c, order, 2), 2, 0)[..., None]
    ranked = np.concatenate([low * 0, quotient((middle - low) * s, high - low, 0), np.where(high > low, s, 0)], 2)
    result = np.empty_like(c)
    np.put_along_axis(result, order, ranked, 2)
    return result


def with_luminance(c, y):
    c = c + y - luminance(c)
    low, high = c.min(2)[..., None], c.max(2)[..., None]
    c = np.where(low < 0, y + quotient((c - y) * y, y - low, 0), c)
    return np.where(high > 1, y + quotient((c - y) * (1 - y), high - y, 0), c)


def over(base, overlay):
    b, o = multiplied(base), multiplied(overlay)
    union = o[..., 3:] + b[..., 3:] * (1 - o[..., 3:])
    return np.dstack([quotient((o + b * (1 - o[..., 3:]))[..., :3], union, 0), union])


def keyed(threshold=0.4, smoothing=0.1, color=(0, 1, 0)):
    def chroma(c):
        y = c @ [0.2989, 0.5866, 0.1145]
        return np.stack([0.7132 * (c[..., 0] - y), 0.5647 * (c[..., 2] - y)], -1)

    def formula(base, overlay):
        distance = np.linalg.norm(chroma(base[..., :3]) - chroma(np.array(color)), axis=-1)[..., None]
        x = np.clip((distance - threshold) / smoothing, 0, 1) if smoothing else np.heaviside(distance - threshold, 0)
        return overlay + (base - overlay) * x * x * (3 - 2 * x)
    return formula


def with_alpha_of_base(colors):
    return lambda b, o: np.dstack([colors(b, o)[..., :3], b[..., 3]])


PREMULTIPLIED = {
    "Add": by_colors(lambda b, o: np.minimum(b + o, 1)),
    "Multiply": by_colors(lambda b, o: b * o),
    "Screen": by_colors(lambda b, o: b + o - b * o),
    "Overlay": by_colors(lambda b, o: hard_light(o, b)),
    "HardLight": by_colors(hard_light),
    "SoftLight": by_colors(lambda b, o: b * (b + 2 * o * (1 - b))),
    "Darken": by_colors(np.minimum, alpha=np.ones_like),
    "ColorDodge": composed(dodge, alpha=np.ones_like),
    "Divide": by_colors(lambda b, o: np.minimum(quotient(b, o, np.sign(b)), 1)),
    "Exclusion": by_colors(lambda b, o: b + o - 2 * b * o, alpha=lambda b: b),
    "Hue": by_colors(lambda b, o: with_luminance(with_saturation(o, saturation(b)), luminance(b))),
    "Saturation": by_colors(lambda b, o: with_luminance(with_saturation(b, saturation(o)), luminance(b))),
    "Color": by_colors(lambda b, o: with_luminance(o, luminance(b))),
    "Luminosity": by_colors(lambda b, o: with_luminance(b, luminance(o))),
}

STRAIGHT = {
    "LightenBlendFilter": np.maximum,
    "ColorBurnBlendFilter": lambda b, o: np.where(b == 1, 1, 1 - quotient(1 - b, o, 1)),
    "LinearBurnBlendFilter": with_alpha_of_base(lambda b, o: b + o - 1),
    "DifferenceBlendFilter": with_alpha_of_base(lambda b, o: abs(b - o)),
    "SubtractBlendFilter": with_alpha_of_base(lambda b, o: b - o),
    "NormalBlendFilter": over,
    "SourceOverBlendFilter": lambda b, o: b + (o - b) * o[..., 3:],
    "MaskFilter": lambda b, o: np.dstack([b[..., :3], o[..., :3].mean(2) * o[..., 3]]),
    "ChromaKeyBlendFilter": keyed(),
    "ChromaKeyBlendFilter thresholdSensitivity=0.25 smoothing=0": keyed(0.25, 0),
    "ChromaKeyBlendFilter thresholdSensitivity=0 smoothing=0.6 colorToReplace=0.9,0.2,0.7": keyed(0, 0.6, (0.9, 0.2, 0.7)),
    "AlphaBlendFilter": lambda b, o: np.dstack([(b + (o - b) * o[..., 3:] / 2)[..., :3], b[..., 3]]),
    "DissolveBlendFilter": lambda b, o: (b + o) / 2,
}


def cases(all_pictures):
    """Rows for the table: the command line, the formula, its one picture, the tolerance, and what is compared."""
    for base in [name for name in all_pictures if f"{name} over" in all_pictures]:
        def on_overlay(formula, overlay=all_pictures[f"{base} over"]):
            return lambda picture: formula(picture, overlay)
        for name, formula in PREMULTIPLIED.items():
            yield f"{name}BlendFilter + {base} over", on_overlay(formula), [base], 2, multiplied
        for command, formula in STRAIGHT.items():
            yield f"{command} + {base} over", on_overlay(formula), [base]
