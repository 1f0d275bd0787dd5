"""Blurs and what is made of them."""

import numpy as np

from formulas import (ALL, bell, blur, box, colors, convolution, grid, luma709, mix, moved, places, resized, same,
                      sampled, smoothstep, stored)

NINE = 0.05, 0.09, 0.12, 0.15, 0.18, 0.15, 0.12, 0.09, 0.05


def of_red(formula):
    """Of the red channel alone, in grey and opaque."""
    return lambda p: formula(np.dstack([p[..., 0]] * 3 + [np.ones(p.shape[:2])]))

def nine(p, right, down):
    """Along a line of so many pixels from one read to the next, alike for all or each pixel's own."""
    x, y = grid(p)
    return sum(w * sampled(p, x + i * right, y + i * down) for i, w in zip(range(-4, 5), NINE))


def bilateral(factor, spacing):
    def smoothed(p):
        for right, down in (0, spacing), (spacing, 0):
            reads = [moved(p, i * right, i * down) for i in range(-4, 5)]
            shares = [w * (1 - np.minimum(np.linalg.norm(read - p, axis=2, keepdims=True) * factor, 1))
                      for w, read in zip(NINE, reads)]
            p = stored(sum(share * read for share, read in zip(shares, reads)) / sum(shares))
        return p
    return smoothed


def distance(p, x, y, ratio=None):
    """From a point in shares of the size, in widths."""
    across, down = places(p)
    return np.hypot(across - x, (down - y) * (ratio or p.shape[0] / p.shape[1]))[..., None]


def blurred_within(size, x, y, radius, ratio=None):
    def blurred(p):
        inside = distance(p, x, y, ratio) < radius
        for right, down in (0, size), (size, 0):
            p = stored(np.where(inside, nine(p, right, down), p))
        return p
    return blurred


def motion(size, degrees):
    angle = np.deg2rad(degrees)
    return lambda p: nine(p, size * np.cos(angle), size * np.sin(angle))


def zoom(size, x, y):
    def zoomed(p):
        across, down = places(p)
        return nine(p, (x - across) * size / 100 * p.shape[1], (y - down) * size / 100 * p.shape[0])
    return zoomed


def lanczos(size=None, original=None):
    taps = np.array([0.38026, 0.27667, 0.08074, -0.02612])
    taps = np.concatenate([taps[:0:-1], taps]) / 1.04284

    def along_rows(p, width, step):
        x, y = np.meshgrid((np.arange(width) + 0.5) * p.shape[1] / width - 0.5, np.arange(p.shape[0]))
        return stored(sum(w * sampled(p, x + i * step, y) for i, w in zip(range(-3, 4), taps)))

    def resampled(p):
        height, width = p.shape[:2]
        wide, high = size or (width, height)
        steps = [length / per for length, per in zip((width, height), original or (width, height))]
        p = along_rows(p.swapaxes(0, 1), high, steps[1]).swapaxes(0, 1)
        return along_rows(p, wide, steps[0])
    return resampled


def sharpened(s):
    return convolution([[0, -s, 0], [-s, 1 + 4 * s, -s], [0, -s, 0]])


def median(p):
    return np.median([moved(p, right, down) for right in (-1, 0, 1) for down in (-1, 0, 1)], axis=0)


def kuwahara(radius, doubt=1e-5):
    """Not a number where two squares vary alike."""
    def painted(p):
        steps = range(radius + 1)
        squares = [np.array([moved(p, i * right, j * down) for i in steps for j in steps])
                   for right in (-1, 1) for down in (-1, 1)]
        variances = np.array([square.var(axis=0).sum(axis=-1) for square in squares])
        means = np.array([square.mean(axis=0) for square in squares])
        best = np.take_along_axis(means, variances.argmin(axis=0)[None, ..., None], axis=0)[0]
        least = np.sort(variances, axis=0)
        return np.where((least[1] - least[0] < doubt)[..., None] & (np.ptp(means, axis=0) > 0), np.nan, best)
    return painted


def selective(blurred, x, y, radius, size):
    return lambda p: mix(p, blurred(p), smoothstep(radius - size, radius, distance(p, x, y)))


def tilted(blurred, top, bottom, rate):
    def shifted(p):
        y = places(p)[1][..., None]
        share = 1 - smoothstep(top - rate, top, y) + smoothstep(bottom, bottom + rate, y)
        return mix(p, blurred(p), np.minimum(share, 1))
    return shifted


def unsharp(blurred, intensity):
    return lambda p: np.dstack([mix(blurred(p), p, intensity)[..., :3], p[..., 3]])


def frosted(reach, sigma, factor=4, saturation=0.8, reduction=0.6):
    def glass(p):
        height, width = p.shape[:2]
        small = resized(p, max(round(width / factor), 1), max(round(height / factor), 1))
        grey = luma709(small[..., :3])
        small[..., :3] = mix(grey, small[..., :3], saturation)
        large = resized(blur(bell(reach, sigma))(stored(small)), width, height)
        return colors(lambda c: c + (0.5 - luma709(c)) * reduction)(large)
    return glass


def printed(reach, doubt=1 / 255):
    def black_or_white(p):
        grey = stored(luma709(p[..., :3]))
        above = grey - blur(box(reach))(grey) + 0.05
        return np.dstack([np.where(abs(above) < doubt, np.nan, above > 0)] * 3 + [p[..., 3]])
    return black_or_white


# As in filter_numpy_test.py.
CASES = [
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
    ("SingleComponentGaussianBlurFilter", of_red(blur(bell(4, 2))), ALL),
    ("SingleComponentGaussianBlurFilter blurRadiusInPixels=10", of_red(blur(bell(22, 10)))),
    ("SingleComponentGaussianBlurFilter blurRadiusInPixels=0", same, ["noise"], 0),
    ("BilateralFilter", bilateral(8, 4), ["ramp"]),
    ("BilateralFilter distanceNormalizationFactor=0.6 texelSpacingMultiplier=2", bilateral(0.6, 2),
     ALL),
    ("GaussianBlurPositionFilter", blurred_within(2, 0.5, 0.5, 0.25), ALL),
    ("GaussianBlurPositionFilter blurSize=1.5 blurCenter=0.2,0.7 blurRadius=0.4 aspectRatio=1.2",
     blurred_within(1.5, 0.2, 0.7, 0.4, 1.2)),
    ("GaussianSelectiveBlurFilter", selective(blur(bell(12, 5)), 0.5, 0.5, 0.1875, 0.09375), ALL),
    ("GaussianSelectiveBlurFilter blurRadiusInPixels=2 excludeCirclePoint=0.2,0.7 excludeCircleRadius=0.5 "
     "excludeBlurSize=0.3", selective(blur(bell(6, 2)), 0.2, 0.7, 0.5, 0.3)),
    ("GaussianSelectiveBlurFilter excludeBlurSize=0", selective(blur(bell(12, 5)), 0.5, 0.5, 0.1875, 1e-9)),
    ("TiltShiftFilter", tilted(blur(bell(16, 7)), 0.4, 0.6, 0.2), ALL),
    ("TiltShiftFilter topFocusLevel=0.7 bottomFocusLevel=0.3 focusFallOffRate=0",
     tilted(blur(bell(16, 7)), 0.7, 0.3, 1e-9)),
    ("iOSBlurFilter", frosted(26, 12), ALL),
    ("iOSBlurFilter blurRadiusInPixels=2 downsampling=2.5 saturation=1.5 rangeReductionFactor=0.2",
     frosted(6, 2, 2.5, 1.5, 0.2)),
    ("MotionBlurFilter", motion(2.5, 0), ALL), ("MotionBlurFilter blurSize=1.3 blurAngle=30", motion(1.3, 30)),
    ("ZoomBlurFilter", zoom(1, 0.5, 0.5), ALL), ("ZoomBlurFilter blurSize=4 blurCenter=0.2,0.7", zoom(4, 0.2, 0.7)),
    ("LanczosResamplingFilter", lanczos(), ALL),
    ("LanczosResamplingFilter forceProcessingAtSize=30x13", lanczos((30, 13))),
    ("LanczosResamplingFilter forceProcessingAtSize=20x40 originalImageSize=25x20", lanczos((20, 40), (25, 20))),
    ("SharpenFilter", same, ALL, 0), ("SharpenFilter sharpness=0.7", sharpened(0.7), ALL),
    ("SharpenFilter sharpness=-0.2", sharpened(-0.2)),
    ("UnsharpMaskFilter", same, ALL, 0),
    *[(f"UnsharpMaskFilter intensity={i} blurRadiusInPixels=2", unsharp(blur(bell(6, 2)), i)) for i in (1.7, 0.2)],
    ("MedianFilter", median, ["noise", "row", "dot"], 0),
    ("KuwaharaFilter", kuwahara(3)), ("KuwaharaRadius3Filter", kuwahara(3)),
    *[(f"KuwaharaFilter radius={r}", kuwahara(r)) for r in (1, 5)], ("KuwaharaFilter radius=-1", same, ["noise"], 0),
    ("AdaptiveThresholdFilter", printed(4), ALL), ("AdaptiveThresholdFilter blurRadiusInPixels=9", printed(9)),
    ("LowPassFilter", same, ["noise"], 0), ("HighPassFilter filterStrength=0.9", same, ["noise"], 0),
]
