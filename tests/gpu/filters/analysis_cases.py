"""Analysis: what ends in numbers, which are told as a picture too."""

import numpy as np

from formulas import colors, luma709


def average(p):
    return p.mean((0, 1), keepdims=True)


def luminosity(p):
    return np.dstack([np.broadcast_to(luma709(average(p)[..., :3]), (1, 1, 3)), [[1]]])


def threshold_at_average(multiplier):
    def parted(c):
        light = luma709(c)
        return np.where(abs(light - light.mean() * multiplier) < 1e-6, np.nan, light >= light.mean() * multiplier) + 0 * c
    return colors(parted)


# As in filter_numpy_test.py.
CASES = [
    ("AverageColor", average, ["noise", "dot", "row", "ramp"], 0.5),
    ("Luminosity", luminosity, ["noise", "ramp"], 0.5),
    ("AverageLuminanceThresholdFilter", threshold_at_average(1)),
    ("AverageLuminanceThresholdFilter thresholdMultiplier=1.4", threshold_at_average(1.4)),
]
