"""Neighbours compared: relief, morphology, edges."""

import numpy as np

from formulas import ALL, colors, convolution, moved, rows, same


def relief(i):
    return convolution([[-2 * i, -i, 0], [-i, 1, i], [0, i, 2 * i]])


def cartoon(threshold, levels=10.0, doubt=0.02):
    """Not a number where the edge is as steep as the threshold within what reads of neighbours may be off."""
    def inked(c):
        def red(right, down):
            return moved(c, right, down)[..., 0]
        steep = np.hypot(red(-1, 1) + 2 * red(0, 1) + red(1, 1) - red(-1, -1) - 2 * red(0, -1) - red(1, -1),
                         red(1, -1) + 2 * red(1, 0) + red(1, 1) - red(-1, -1) - 2 * red(-1, 0) - red(-1, 1))[..., None]
        flat = np.where(steep < threshold, np.floor(c * levels + 0.5) / levels, 0)
        return np.where(abs(steep - threshold) < doubt, np.nan, flat)
    return colors(inked)


def extreme(choose, reach, down=1):
    def chosen(p):
        steps = range(-reach, reach + 1)
        value = choose([moved(p[..., 0], i, down * j) for i in steps for j in steps], axis=0)
        return np.dstack([value, value, value, np.ones_like(value)])
    return chosen


LOPSIDED = [[0.3, -0.1, 0.05], [0.2, 0.25, -0.3], [-0.15, 0.35, 0.4]]

# As in filter_numpy_test.py.
CASES = [
    ("3x3ConvolutionFilter", same, ALL, 0),
    (f"3x3ConvolutionFilter convolutionKernel={rows(LOPSIDED)}", convolution(LOPSIDED), ALL),
    (f"3x3ConvolutionFilter convolutionKernel={rows(LOPSIDED)} texelWidth=0.09836066 texelHeight=0.11428571",
     convolution(LOPSIDED, 6, 4), ["noise"]),
    ("EmbossFilter", relief(1), ALL), ("EmbossFilter intensity=-2.5", relief(-2.5)),
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
]
