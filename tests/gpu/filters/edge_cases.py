"""Neighbours compared: relief, morphology, edges."""

import numpy as np

from formulas import ALL, bell, blur, box, colors, convolution, luma709, moved, rows, same, stored
from pictures import PICTURES


def relief(i):
    return convolution([[-2 * i, -i, 0], [-i, 1, i], [0, i, 2 * i]])


def grey(p):
    return stored(np.dstack([luma709(p[..., :3])] * 3 + [p[..., 3]]))


def gradient(p, middle=2, across=1, down=1):
    """Of the red channel: to the right, downwards."""
    def red(right, below):
        return moved(p[..., 0], right * across, below * down)
    return [middle * (red(*to) - red(-to[0], -to[1])) + sum(red(*(to + side)) - red(*(side - to)) for side in sides)
            for to, sides in ((np.array([1, 0]), [[0, -1], [0, 1]]), (np.array([0, 1]), [[-1, 0], [1, 0]]))]


def steepness(p, *how):
    return np.hypot(*gradient(p, *how))[..., None]


def parted(value, threshold, below, above, doubt=0.02):
    """Not a number where reads of neighbours, which may be off a little, decide."""
    return np.where(abs(value - threshold) < doubt, np.nan, np.where(value < threshold, below, above))


def cartoon(threshold, levels=10.0, doubt=0.02):
    return lambda p: colors(lambda c: parted(steepness(p), threshold, np.floor(c * levels + 0.5) / levels, 0, doubt))(p)


def edges(shown, *how):
    """What becomes of the steepness of the grey picture."""
    return lambda p: colors(lambda c: shown(steepness(grey(p), *how)) + 0 * c)(p)


def derivatives(strength):
    def products(p):
        x, y = np.clip(np.array(gradient(grey(p))) * strength, -9, 9)
        return np.dstack([x * x, y * y, (x * y + 1) / 2, np.ones_like(x)])
    return products


def peaks(value=lambda p: p[..., 0], threshold=0):
    """Of equal ones the first in reading order; beyond the border there is nothing."""
    def kept(p):
        height, width = p.shape[:2]
        centre = value(p)
        round_about = np.pad(centre, 1, constant_values=-np.inf)
        stays = centre >= threshold
        for i, (down, right) in enumerate(np.ndindex(3, 3)):
            other = round_about[down:down + height, right:right + width]
            stays = stays & (centre > other if i < 4 else centre >= other)
        return np.dstack([p[..., :3] * stays[..., None], p[..., 3]])
    return kept


def directed(p, *ways):
    x, y = gradient(p, 2, *ways)
    steep = np.hypot(x, y)
    way = np.where(steep > 0.002, np.array([x, y]) / np.maximum(steep, 0.002), 0)
    return np.dstack([steep, *(way + 1) / 2, np.ones_like(steep)])


def thinned(lower=0.1, upper=0.5, across=1, down=1, tie=0):
    """Red where it is a peak along the way that green and blue tell; not a number close to the ends of an eighth of the
    circle, and where what might be a tie decides."""
    def kept(p):
        steep, eighths = p[..., 0], np.arctan2(p[..., 2] - 0.5, p[..., 1] - 0.5) / (np.pi / 4)
        share = np.clip((steep - lower) / (upper - lower), 0, 1)
        shown = np.where(abs(eighths - np.round(eighths)) > 0.48, np.nan, 0)
        for k in range(-4, 5):
            x, y = np.round(np.cos(k * np.pi / 4)), np.round(np.sin(k * np.pi / 4))
            ahead, behind = (steep - moved(steep, int(way * x) * across, int(way * y) * down) for way in (1, -1))
            peak = np.where(np.minimum(abs(ahead), abs(behind)) < tie, np.nan, (ahead >= 0) & (behind > 0))
            shown += np.where(np.round(eighths) == k, peak, 0)
        return np.dstack([np.where(share > 0, shown * share ** 2 * (3 - 2 * share), 0)] * 3 + [np.ones_like(steep)])
    return kept


def packed(p):
    return np.rint(p[..., :3] * 255) @ [1, 256, 65536] / 255


def closed(p):
    around = sum(moved(p[..., :1], i, j) for i in (-1, 0, 1) for j in (-1, 0, 1))
    white = np.where(p[..., :1] < 0.01, 0, parted(around, 1.5, 0, 1, 0.01))
    return colors(lambda c: white + 0 * c)(p)


def canny(lower, upper, reach, sigma, *ways):
    return lambda p: closed(thinned(lower, upper, *ways, 3 / 255)(
        stored(directed(blur(bell(reach, sigma))(grey(p)), *ways))))


def extreme(choose, reach, down=1, across=1):
    """By red, grey and opaque."""
    chosen = extremes(choose, reach, down, across)
    return lambda p: np.dstack([chosen(p)[..., :1]] * 3 + [np.ones(p.shape[:2])])


def extremes(choose, reach, down=1, across=1):
    steps = range(-reach, reach + 1)
    return lambda p: choose([moved(p, across * i, down * j) for i in steps for j in steps], axis=0)


def after(second, first):
    return lambda p: second(first(p))


AROUND = [(1, 0), (1, -1), (0, -1), (-1, -1), (-1, 0), (-1, 1), (0, 1), (1, 1)]  # counter-clockwise


def pattern(p):
    return np.dstack([sum((moved(p, *way)[..., :3] >= p[..., :3]) << bit for bit, way in enumerate(AROUND)) / 255,
                      np.ones(p.shape[:2])])


def reds(p):
    return np.dstack([moved(p[..., :1], *way) for way in ((-1, 0), (0, -1), (1, 0), (0, 1))])


def unlike_surroundings(p, surroundings):
    """Angles are not numbers where there is hardly a direction, and at the end of the circle."""
    points = [(x, y) for x in range(-3, 4) for y in range(-3, 4) if x * x + y * y == 10]
    around = [moved(surroundings, *point)[..., :3] for point in points]
    unlike = sum(around) / 8 - p[..., :3]
    ways = [(abs(unlike) * sum(point[axis] * color for point, color in zip(points, around))).sum(2) for axis in (0, 1)]
    turn = np.arctan2(ways[1], ways[0]) / (2 * np.pi)
    sure = (np.hypot(*ways) > 0.2 * abs(unlike).sum(2)) & (abs(turn) < 0.49)
    return np.dstack([(unlike + 1) / 2, np.where(sure, turn + 0.5, np.nan)])


def corners(threshold, strongest=True):
    circle = np.round(3.1 * np.array([np.cos(np.arange(16) * np.pi / 8), np.sin(np.arange(16) * np.pi / 8)])).astype(int)

    def found(p):
        middle = grey(p)[..., 0]
        beyond = np.array([moved(middle, *point) for point in circle.T]) - middle
        strengths = [np.zeros_like(middle)]
        for side in (beyond - threshold, -beyond - threshold):
            in_a_row = [np.all(np.roll(side > 0.002, -start, 0)[:12], 0) for start in range(16)]
            strengths.append(np.where(np.any(in_a_row, 0), threshold + np.maximum(side, 0).sum(0) / 16, 0))
        shown = stored(np.dstack([np.max(strengths, 0)] * 3 + [np.ones_like(middle)]))
        return peaks()(shown) if strongest else shown
    return found


LOPSIDED = [[0.3, -0.1, 0.05], [0.2, 0.25, -0.3], [-0.15, 0.35, 0.4]]

# As in filter_numpy_test.py.
CASES = [
    ("3x3ConvolutionFilter", same, ALL, 0),
    (f"3x3ConvolutionFilter convolutionKernel={rows(LOPSIDED)}", convolution(LOPSIDED), ALL),
    (f"3x3ConvolutionFilter convolutionKernel={rows(LOPSIDED)} texelWidth=0.09836066 texelHeight=0.11428571",
     convolution(LOPSIDED, 6, 4), ["noise"]),
    ("EmbossFilter", relief(1), ALL), ("EmbossFilter intensity=-2.5", relief(-2.5)),
    ("SobelEdgeDetectionFilter", edges(same), ALL), ("PrewittEdgeDetectionFilter", edges(same, 1), ALL),
    ("SobelEdgeDetectionFilter edgeStrength=0.3 texelWidth=0.03278689 texelHeight=0.08571429",
     edges(lambda s: 0.3 * s, 2, 2, 3)),
    ("SketchFilter edgeStrength=0.25", edges(lambda s: 1 - s / 4), ALL), ("SketchFilter", edges(lambda s: 1 - s)),
    ("ThresholdEdgeDetectionFilter", edges(lambda s: parted(s, 0.25, 0, 1)), ALL),
    ("ThresholdSketchFilter threshold=1.9 edgeStrength=1.5", edges(lambda s: parted(1.5 * s, 1.9, 1, 0, 0.03))),
    ("DirectionalSobelEdgeDetectionFilter", directed, [*ALL, "plateaus"]),
    ("DirectionalNonMaximumSuppressionFilter", thinned(), ["arrows"]),
    ("DirectionalNonMaximumSuppressionFilter lowerThreshold=0.3 upperThreshold=0.9 texelWidth=0.03278689 "
     "texelHeight=0.08571429", thinned(0.3, 0.9, 2, 3), ["arrows"]),
    ("WeakPixelInclusionFilter", closed, [*ALL, "plateaus"], 0),
    ("CannyEdgeDetectionFilter", canny(0.1, 0.4, 4, 2, 1, 1), ["photo over"]),
    ("CannyEdgeDetectionFilter blurRadiusInPixels=4 lowerThreshold=0.3 upperThreshold=0.9 texelWidth=0.03278689 "
     "texelHeight=0.08571429", canny(0.3, 0.9, 10, 4, 2, 3), ["photo over"]),
    ("XYDerivativeFilter", derivatives(1), ALL), ("XYDerivativeFilter edgeStrength=0.2", derivatives(0.2)),
    ("LocalBinaryPatternFilter", lambda p: pattern(p[..., [0, 0, 0, 3]]), ["noise", "plateaus"], 0),
    ("ColorLocalBinaryPatternFilter", pattern, [*ALL, "plateaus"], 0), ("ColorPackingFilter", reds, ALL, 1),
    ("ColourFASTSamplingOperation + other", lambda p: unlike_surroundings(p, PICTURES["other"])),
    # The angle is no surer than the bytes of the blur.
    ("ColourFASTFeatureDetector", lambda p: unlike_surroundings(p, blur(box(3))(p)), ["arrows"], 5),
    ("FASTCornerDetectionFilter", corners(0.1), ["blots"]),
    ("FASTCornerDetectionFilter FASTDetectorVariant=all threshold=0.05", corners(0.05, False), ["blots"]),
    ("ThresholdedNonMaximumSuppressionFilter packedColorspace=1 threshold=2", peaks(packed, 2), ["counts"], 0),
    ("NonMaximumSuppressionFilter", peaks(), [*ALL, "plateaus", "dot"], 0),
    ("ThresholdedNonMaximumSuppressionFilter", peaks(threshold=0.9), ["noise", "plateaus"], 0),
    ("ThresholdedNonMaximumSuppressionFilter threshold=0.2", peaks(threshold=0.2), ["noise"], 0),
    ("ToonFilter", cartoon(0.2), ALL), ("GpuImageCustomFilter3", cartoon(1), ALL),
    ("GpuImageCustomFilter3 threshold=2.03 quantizationLevels=3.5", cartoon(2.03, 3.5)),
    # Only the pixel above the centre differs, which counts twice.
    ("ToonFilter", cartoon(0.2, doubt=0), ["step 25", "step 26"], 0),
    ("ToonFilter threshold=2", cartoon(2, doubt=0), ["step 255"], 0),
    ("ToonFilter threshold=2.001", cartoon(2.001, doubt=0), ["step 255"], 0),
    ("ErosionFilter", extreme(np.min, 1), ALL, 1), ("DilationFilter", extreme(np.max, 1), ALL, 1),
    ("ErosionFilter radius=4 verticalTexelSpacing=3", extreme(np.min, 4, 3), ALL, 1),
    *[(f"{name}Filter radius={radius}", extreme(choose, reach), ["noise"], 1)
      for name, choose in (("Erosion", np.min), ("Dilation", np.max)) for radius, reach in ((0, 1), (3, 3), (9, 4))],
    ("RGBErosionFilter", extremes(np.min, 1), ALL, 1), ("RGBDilationFilter", extremes(np.max, 1), ALL, 1),
    ("RGBDilationFilter radius=3 horizontalTexelSpacing=2", extremes(np.max, 3, 1, 2), ["noise"], 1),
    *[(f"{kind}{name} {spacings}", after(of(second, *how), of(first, *how)), ["noise"], 1)
      for kind, of in (("", extreme), ("RGB", extremes))
      for name, first, second in (("OpeningFilter", np.min, np.max), ("ClosingFilter", np.max, np.min))
      for spacings, how in (("", [1]), ("radius=2 verticalTexelSpacing=3 horizontalTexelSpacing=2", [2, 3, 2]))],
    ("LaplacianFilter", convolution([[1, 1, 1], [1, -8, 1], [1, 1, 1]]), ALL),
]
