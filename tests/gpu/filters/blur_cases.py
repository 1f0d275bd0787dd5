"""Blurs and what is made of them."""

import numpy as np

from formulas import ALL, bell, blur, box, same


def of_red(formula):
    """Of the red channel alone, in grey and opaque."""
    return lambda p: formula(np.dstack([p[..., 0]] * 3 + [np.ones(p.shape[:2])]))

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
]
