"""Analysis: what ends in numbers, which are told as a picture too."""

import numpy as np

from edge_cases import derivatives, peaks
from formulas import bell, blur, colors, luma709, same, stored


def average(p):
    return p.mean((0, 1), keepdims=True)


def luminosity(p):
    return np.dstack([np.broadcast_to(luma709(average(p)[..., :3]), (1, 1, 3)), [[1]]])


def threshold_at_average(multiplier):
    def parted(c):
        light = luma709(c)
        above = light - light.mean() * multiplier
        return np.where(abs(above) < 1e-6, np.nan, above > 0) + 0 * c
    return colors(parted)


def counted(p, factor, channels, by_luminance):
    """Bins of red, green and blue by value."""
    points = np.rint(p.reshape(-1, 4)[::factor, :3] * 255)
    values = np.rint(luma709(points)) + 0 * points if by_luminance else points
    return np.array([(values[:, channel] == np.arange(256)[:, None]).sum(1) * (channel in channels)
                     for channel in range(3)])


def histogram(factor=16, channels=(0, 1, 2), by_luminance=False):
    def drawn(p):
        bins = counted(p, factor, channels, by_luminance).T
        return np.broadcast_to(np.hstack([bins / max(bins.max(), 1), np.ones((256, 1))]), (3, 256, 4))
    return drawn


def bars(ground=(0, 0, 0, 1)):
    def drawn(p):
        height = 1 - (np.arange(256)[:, None, None] + 0.5) / 256
        lit = p[p.shape[0] // 2, :, :3] >= height
        return np.where(lit.any(2, keepdims=True), np.dstack([lit, np.ones(lit.shape[:2])]), ground)
    return drawn


def equalised(factor=16, channels=(0, 1, 2), by_luminance=False):
    def mapped(p):
        out = p.copy()
        for channel, bins in enumerate(counted(p, factor, channels, by_luminance)):
            least = bins[bins > 0][0] if bins.any() else 0
            if bins.sum() > least:
                out[..., channel] = ((bins.cumsum() - least) / (bins.sum() - least))[np.rint(p[..., channel] * 255).astype(int)]
        return out
    return mapped


def corners(cornerness, sensitivity=5, threshold=0.2, blurred=blur(bell(6, 2))):
    def found(p):
        d = blurred(stored(derivatives(1)(p)))
        strength = stored(cornerness(d[..., 0], d[..., 1], 2 * d[..., 2] - 1) * sensitivity)
        return peaks(threshold=threshold)(np.dstack([strength] * 3 + [np.ones_like(strength)]))
    return found


def strongest_of_tiles(of=same):
    """Of equal ones one stays, and rounding tells which."""
    return lambda p: of(p)[:, :, 0].reshape(5, 12, 7, 12).max((1, 3))


def harris(x, y, z):
    return x * y - z * z - 0.04 * (x + y) ** 2


def noble(x, y, z):
    return (x * y - z * z) / np.maximum(x + y, 1e-3)


def shi_tomasi(x, y, z):
    return x + y - np.hypot(x - y, 2 * z)


def crossed(start, end):
    """Rows and columns of the pixels of a line, whose end is left out: one in each column, or in each row where it is
    steep."""
    (row, column), (down, across) = start, np.subtract(end, start)
    if abs(down) <= across:
        columns = np.arange(column, column + across)
        return row + down * (columns - column) / across, columns
    rows = np.arange(np.ceil(min(row, row + down)), np.ceil(max(row, row + down)))
    return rows, column + across * (rows - row) / down


def votes(p):
    height, width = p.shape[:2]
    total = np.zeros([max(height, 64), max(width, 64) | 1])
    rows, last = total.shape[0], total.shape[1] - 1
    for y, x in np.argwhere(p[..., 0] >= 128 / 255):
        x, y = ((np.array([2 * x + 1, 2 * y + 1]) / [width, height]) - 1)
        places = [((v + 1) / 2 * rows - 0.5, (u + 1) / 2 * last) for u, v in ((-1, x), (0, y), (1, -x))]
        for start, end in zip(places, places[1:]):
            total[tuple(np.floor(np.array(crossed(start, end)) + 0.5).astype(int))] += 1
    total[:, [0, last // 2, last]] = np.nan  # where lines begin and end, between two rows
    return np.dstack([total / 255] * 3 + [np.ones_like(total)])


def brightest(p):
    """Its row and column, in shares."""
    return np.array(np.unravel_index(p[..., 0].argmax(), p.shape[:2])) / (np.array(p.shape[:2]) - 1)


def line(slope, intercept):
    return lambda p: (np.array([intercept, slope]) / (1 + slope) + 1) / 2


# As in filter_numpy_test.py.
CASES = [
    ("AverageColor", average, ["noise", "dot", "row", "ramp"], 0.5),
    ("Luminosity", luminosity, ["noise", "ramp"], 0.5),
    ("AverageLuminanceThresholdFilter", threshold_at_average(1)),
    ("AverageLuminanceThresholdFilter thresholdMultiplier=1.4", threshold_at_average(1.4)),
    ("HistogramFilter", histogram(), ["noise", "ramp", "dot"], 0),
    ("HistogramFilter histogramType=green downsamplingFactor=3", histogram(3, (1,)), ["noise"], 0),
    ("HistogramFilter histogramType=luminance downsamplingFactor=1", histogram(1, by_luminance=True), ["noise"], 0),
    ("HistogramGenerator", bars(), ["noise", "greys"], 0),
    ("HistogramGenerator backgroundColor=0.2,0.4,0.6,0.8", bars((0.2, 0.4, 0.6, 0.8)), ["noise"], 0),
    ("HistogramEqualizationFilter", equalised(), ["noise", "greys", "dot"], 1),
    ("HistogramEqualizationFilter histogramType=blue downsamplingFactor=1", equalised(1, (2,)), ["plateaus"], 1),
    ("HistogramEqualizationFilter histogramType=luminance", equalised(by_luminance=True), ["noise"], 1),
    *[(f"{name}DetectionFilter", strongest_of_tiles(corners(formula, strength)), ["board"], 8, strongest_of_tiles())
      for name, formula, strength in (("HarrisCorner", harris, 5), ("NobleCorner", noble, 5),
                                      ("ShiTomasiFeature", shi_tomasi, 1.5))],
    ("HarrisCornerDetectionFilter sensitivity=9 threshold=0.1 blurRadiusInPixels=1",
     strongest_of_tiles(corners(harris, 9, 0.1, blur(bell(4, 1)))), ["board"], 8, strongest_of_tiles()),
    ("ParallelCoordinateLineTransformFilter", votes, ["noise"], 1),
    ("HoughTransformLineDetector", line(0.4, 0.1), ["slope"], 5, brightest),
    ("MotionDetector", lambda p: 0 * average(p), ["noise"], 0),
]
