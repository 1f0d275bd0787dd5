"""The blends in numpy: straight colours mixed by coverage, as textbooks tell them, and rounded as they go up."""

import numpy as np

from formulas import mix, moved, over as laid_over, stored
from pictures import PICTURES


def multiplied(p):
    return np.dstack([p[..., :3] * p[..., 3:], p[..., 3:]])


def quotient(x, y, of_nothing=0):
    return np.where(y > 0, x / np.where(y > 0, y, 1), of_nothing)


def composed(blend, alpha=None):
    """What shows where only one is, and `blend` of straight colours where both are; premultiplied."""
    def formula(base, overlay):
        base, overlay = stored(multiplied(base)), stored(multiplied(overlay))
        b, o = base[..., 3:], overlay[..., 3:]
        both = blend(quotient(base[..., :3], b), quotient(overlay[..., :3], o))
        # What is above its alpha is cut to it when alpha is divided out.
        opacity = stored(alpha(b) if alpha else 1 - (1 - b) * (1 - o))
        color = (1 - o) * base[..., :3] + (1 - b) * overlay[..., :3] + b * o * both
        return np.dstack([np.minimum(color, opacity), opacity])
    return formula


def hard_light(b, o):
    return np.where(o < 0.5, 2 * b * o, 1 - 2 * (1 - b) * (1 - o))


def luminance(c):
    return (c @ [0.3, 0.59, 0.11])[..., None]


def lowest(c):
    return c.min(2, keepdims=True)


def highest(c):
    return c.max(2, keepdims=True)


def with_saturation(c, wanted):
    return quotient((c - lowest(c)) * wanted, highest(c) - lowest(c))


def with_luminance(c, y):
    c = c + y - luminance(c)
    low, high = lowest(c), highest(c)
    c = np.where(low < 0, y + quotient((c - y) * y, y - low), c)
    return np.where(high > 1, y + quotient((c - y) * (1 - y), high - y), c)


def over(base, overlay):
    b, o = multiplied(base), multiplied(overlay)
    both = o + b * (1 - o[..., 3:])
    return np.dstack([quotient(both[..., :3], both[..., 3:]), both[..., 3:]])


def keyed(threshold=0.4, smoothing=0.1, color=(0, 1, 0)):
    def formula(base, overlay):
        c = base[..., :3] - color
        distance = np.hypot(*(weight * (c[..., i] - c @ [0.2989, 0.5866, 0.1145])
                              for weight, i in ((0.7132, 0), (0.5647, 2))))[..., None]
        x = np.clip((distance - threshold) / smoothing, 0, 1) if smoothing else np.heaviside(distance - threshold, 0)
        return overlay + (base - overlay) * x * x * (3 - 2 * x)
    return formula


def poisson(amount, steps):
    def formula(base, overlay):
        o = overlay[..., 3:]
        ways = [(1, 0), (-1, 0), (0, 1), (0, -1)]
        wanted = sum(moved(o, *way) * (overlay - moved(overlay, *way)) for way in ways)[..., :3]
        f = base[..., :3]
        for _ in range(steps):
            f = stored(f + amount * o * ((sum(moved(f, *way) for way in ways) + wanted) / 4 - f))
        return np.dstack([f, base[..., 3]])
    return formula


def with_alpha_of_base(colors):
    return lambda b, o: np.dstack([colors(b, o)[..., :3], b[..., 3]])


PREMULTIPLIED = {
    "Add": composed(lambda b, o: np.minimum(b + o, 1)),
    "Multiply": composed(lambda b, o: b * o),
    "Screen": composed(lambda b, o: b + o - b * o),
    "Overlay": composed(lambda b, o: hard_light(o, b)),
    "HardLight": composed(hard_light),
    "SoftLight": composed(lambda b, o: b * (b + 2 * o * (1 - b))),
    "Darken": composed(np.minimum, np.ones_like),
    # Below an opacity of 0.01 the light would be less, which shows by less than a step.
    "ColorDodge": composed(lambda b, o: np.where(b + o <= 1 + 1e-9, b / (1 - np.minimum(o, 0.99)), 1), np.ones_like),
    "Divide": composed(lambda b, o: np.minimum(quotient(b, o, np.sign(b)), 1)),
    "Exclusion": composed(lambda b, o: b + o - 2 * b * o, lambda b: b),
    "Hue": composed(lambda b, o: with_luminance(with_saturation(o, highest(b) - lowest(b)), luminance(b))),
    "Saturation": composed(lambda b, o: with_luminance(with_saturation(b, highest(o) - lowest(o)), luminance(b))),
    "Color": composed(lambda b, o: with_luminance(o, luminance(b))),
    "Luminosity": composed(lambda b, o: with_luminance(b, luminance(o))),
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
    "PoissonBlendFilter": poisson(0.5, 10),
    "PoissonBlendFilter numIterations=60 mix=0.9": poisson(0.9, 60),
    "PoissonBlendFilter numIterations=-3 mix=1": poisson(1, 1),
    "ChromaKeyBlendFilter": keyed(),
    "ChromaKeyBlendFilter thresholdSensitivity=0.25 smoothing=0": keyed(0.25, 0),
    "ChromaKeyBlendFilter thresholdSensitivity=0 smoothing=0.6 colorToReplace=0.9,0.2,0.7": keyed(0, 0.6, [0.9, 0.2, 0.7]),
}


def on_overlay(formula, base):
    return lambda picture: formula(picture, PICTURES[f"{base} over"])


PAIRS = [name for name in PICTURES if f"{name} over" in PICTURES]

# As in filter_numpy_test.py.
CASES = [
    *[(f"{name}BlendFilter mix={share} + other", formula(share)) for share in (0, 0.5, 1) for name, formula in
      (("Alpha", lambda share: lambda p: laid_over(p, PICTURES["other"], share)),
       ("Dissolve", lambda share: lambda p: mix(p, PICTURES["other"], share)))],
    *[(f"{name}BlendFilter + {base} over", on_overlay(formula, base), [base], 2, multiplied)
      for base in PAIRS for name, formula in PREMULTIPLIED.items()],
    *[(f"{command} + {base} over", on_overlay(formula, base), [base])
      for base in PAIRS for command, formula in STRAIGHT.items()],
]
