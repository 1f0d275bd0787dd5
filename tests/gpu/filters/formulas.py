"""What formulas of filters are made of. A picture is rows x columns x (red, green, blue, alpha), each from 0 to 1."""

import numpy as np


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
