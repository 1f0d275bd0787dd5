"""The colour and tone filters."""

import colorsys
import os
import struct
from pathlib import Path

import numpy as np

from formulas import colors, luma709, mix, picture_of, rows, same

LOOKUP = Path(os.environ["LAMINA_LOOKUP"])

POINTS = "noise", "ramp", "dot", "row"  # what a filter of single pixels is tried on


def gamma(exponent):
    return colors(lambda c: np.where(c > 0, np.maximum(c, 1e-9) ** exponent, float(exponent < 0)))


def levels(*channels):
    """Of red, green and blue; or one for all."""
    def leveled(c):
        result = np.empty_like(c)
        for i, (low, middle, high, low_out, high_out) in enumerate(channels * (3 // len(channels))):
            x = c[..., i]
            t = np.clip((x - low) / (high - low), 0, 1) if high > low else x > low
            result[..., i] = mix(low_out, high_out, t ** (1 / middle) if middle > 0 else t >= 1)
        return result
    return colors(leveled)


def highlights_and_shadows(shadows, highlights):
    def balanced(c):
        y = luma709(c)
        u, v = y ** (1 / (1 + shadows)), np.maximum(1 - y, 0) ** (1 / (2 - highlights))
        new = np.maximum(y, u - 0.76 * u * u) + np.minimum(y, 1 - v + 0.8 * v * v) - y
        return c * np.where(y > 0, new / np.maximum(y, 1e-9), 0)
    return colors(balanced)


def split_tones(dark, bright):
    return colors(lambda c: c - luma709(c) + mix(np.array(dark), np.array(bright), luma709(c)))


def turned(degrees):
    """The colour as a complex number in the plane across the greys, then moved along them to its old luminance."""
    weights, plane = np.array([0.3, 0.59, 0.11]), np.array([[2, -1, -1], [0, 3 ** 0.5, -(3 ** 0.5)]]) / 6 ** 0.5
    def turn(c):
        place = c @ plane.T @ [1, 1j] * np.exp(1j * np.radians(degrees))
        flat = np.dstack([place.real, place.imag]) @ plane
        return flat + ((c - flat) @ weights)[..., None]
    return turn


def saturated(factor):
    return lambda c: mix(luma709(c), c, factor)


def hsb(*steps, share=1.0):
    def changed(c):
        result = c
        for step in steps:
            result = step(result)
        return mix(c, result, share)
    return colors(changed)


def skin(adjust, orange=False, hue=0.05, threshold=40.0, hue_shift=0.25, saturation_shift=0.4):
    def shifted(red, green, blue):
        h, s, v = colorsys.rgb_to_hsv(red, green, blue)
        away = min(abs(h - hue), 1 - abs(h - hue))
        share = adjust * max(0, 1 - threshold * away ** 2)
        if orange and adjust > 0:
            return colorsys.hsv_to_rgb(h, min(1, s * (1 + share * saturation_shift)), v)
        return colorsys.hsv_to_rgb((h + share * hue_shift) % 1, s, v)
    return colors(lambda c: np.array([[shifted(*pixel) for pixel in row] for row in c]))


def white_balance(kelvins, tint):
    to_yiq = np.array([[0.299, 0.587, 0.114], [0.595716, -0.274453, -0.321263], [0.211456, -0.522591, 0.31135]])
    gel = np.array([236, 138, 0]) / 255
    def balanced(c):
        yiq = c @ to_yiq.T
        yiq[..., 2] = np.clip(yiq[..., 2] + 0.05226 * tint, -0.5226, 0.5226)
        c = np.clip(yiq @ np.linalg.inv(to_yiq).T, 0, 1)
        warm = np.where(c < 0.5, 2 * c * gel, 1 - 2 * (1 - c) * (1 - gel))
        return mix(c, warm, 0.25 * (200 - 1e6 / kelvins) / 112)
    return colors(balanced)


def parted(threshold, doubt=1e-5):
    def part(c):
        y = np.repeat(luma709(c), 3, 2)
        return np.where(abs(y - threshold) < doubt, np.nan, y > threshold)
    return colors(part)


def keyed(color, threshold=0.4, smoothing=0.1, doubt=1e-3):
    def differences(c):
        y = c @ [0.2989, 0.5866, 0.1145]
        return np.stack([0.7132 * (c[..., 0] - y), 0.5647 * (c[..., 2] - y)], axis=-1)
    def cut(p):
        beyond = np.linalg.norm(differences(p[..., :3]) - differences(np.array(color)), axis=-1) - threshold
        t = np.clip(beyond / smoothing, 0, 1) if smoothing else np.where(abs(beyond) < doubt, np.nan, beyond > 0)
        return np.dstack([p[..., :3], p[..., 3] * t * t * (3 - 2 * t)])
    return cut


def spline_table(points):
    """A natural spline by a dense system of equations, as numbers at 0 to 255; before the first point 0, after the last
    255. The number at which a curve begins has two entries, which moves those after it."""
    x, y = 255 * np.array(sorted(points)).T
    steps, system, right = np.diff(x), np.eye(len(x)), np.zeros(len(x))
    for i in range(1, len(x) - 1):
        system[i, i - 1:i + 2] = steps[i - 1], 2 * (steps[i - 1] + steps[i]), steps[i]
        right[i] = 6 * ((y[i + 1] - y[i]) / steps[i] - (y[i] - y[i - 1]) / steps[i - 1])
    bend = np.linalg.solve(system, right)

    def at(place):
        i = max(np.searchsorted(x[:-1], place, "right") - 1, 0)
        h, before, after = steps[i], place - x[i], x[i + 1] - place
        return (bend[i] * after ** 3 + bend[i + 1] * before ** 3) / (6 * h) + (
            (y[i] / h - bend[i] * h / 6) * after + (y[i + 1] / h - bend[i + 1] * h / 6) * before)
    first, last = int(x[0]), int(x[-1])
    entries = [(i, 0) for i in range(first + 1) if x[0] > 0] + [(i, np.clip(at(i), 0, 255)) for i in range(first, last)]
    entries += [(x[-1], y[-1])] + [(i, 255) for i in range(int(x[-1] + 1), 256) if x[-1] < 255]
    return [int(np.clip(i + value - place + 1e-6, 0, 255)) for i, (place, value) in enumerate(entries[:256])]


def matrix(rows, share=1.0):
    return lambda p: mix(p, p @ np.array(rows).T, share)


def sepia(share=1.0):
    luma = np.array([0.299, 0.587, 0.114])
    return colors(lambda c: mix(c, np.dstack([tone * (c @ luma) for tone in (1.2, 1, 0.8)]), share))


def tint(share, *color):
    def overlaid(c):
        y, f = luma709(c), np.array(color)
        return mix(c, np.where(y < 0.5, 2 * y * f, 1 - 2 * (1 - y) * (1 - f)), share)
    return colors(overlaid)


def hue(angle, green_in_i=-0.274453, i_in_red=0.9563):
    """In polar form: the angle of (I, Q) falls, the length stays."""
    def turned(c):
        y, i, q = np.moveaxis(c @ np.array([[0.299, 0.587, 0.114], [0.595716, green_in_i, -0.321263],
                                            [0.211456, -0.522591, 0.31135]]).T, 2, 0)
        way, chroma = np.arctan2(q, i) - angle, np.hypot(i, q)
        i, q = chroma * np.cos(way), chroma * np.sin(way)
        return np.dstack([y + i_in_red * i + 0.6210 * q, y - 0.2721 * i - 0.6474 * q, y - 1.1070 * i + 1.7046 * q])
    return colors(turned)


def haze(distance, slope=0.0):
    def cleared(p):
        d = (distance + slope * (np.arange(len(p)) + 0.5) / len(p))[:, None, None]
        return (p - d) / (1 - d)
    return cleared


def look(name, share=1.0):
    """By a table of 8 x 8 tiles of 64 x 64 entries: interpolated between the eight entries around a colour."""
    def graded(c):
        cube = picture_of(LOOKUP / f"lookup_{name}.png")[..., :3].reshape(8, 64, 8, 64, 3)
        cube = cube.transpose(0, 2, 1, 3, 4).reshape(64, 64, 64, 3)  # by blue, green, red
        places = 63 * c[..., ::-1]
        low = np.floor(places).astype(int)
        result = 0
        for corner in np.ndindex(2, 2, 2):
            at = np.minimum(low + corner, 63)
            weight = np.where(corner, places - low, 1 - places + low).prod(axis=2)
            result = result + weight[..., None] * cube[at[..., 0], at[..., 1], at[..., 2]]
        return mix(c, result, share)
    return colors(graded)


UNEVEN = [[0.5, 0.25, 0, 0.125], [0, 0.75, 0.5, 0], [-0.25, 0, 1, 0.25], [0.25, 0, -0.125, 0.75]]
STRAIGHT = (0, 0), (1, 1)


def tone_curves(composite=STRAIGHT, red=STRAIGHT, green=STRAIGHT, blue=STRAIGHT):
    whole, *channels = [np.array(spline_table(points)) for points in (composite, red, green, blue)]
    return colors(lambda c: np.dstack([whole[table[np.rint(255 * c[..., i]).astype(int)]] / 255
                                       for i, table in enumerate(channels)]))


def written(points):
    return ";".join(f"{x},{y}" for x, y in points)


CONTRASTY, LIFTED = ((0, 0), (0.25, 0.2), (0.75, 0.85), (1, 1)), ((0, 0.2), (0.5, 0.6), (1, 0.9))
INNER, WILD = ((0.2, 0.1), (0.6, 0.7), (0.9, 0.8)), ((0.5, 1), (0, 0), (0.45, 0), (1, 0.5))
FILM = [((0, 20), (128, 140), (255, 235)), ((0, 0), (255, 200)), ((30, 0), (255, 255)), ((0, 255), (255, 0))]
FILES = {"film.acv": struct.pack(">HH", 4, 5) + b"".join(
    struct.pack(">H", len(curve)) + b"".join(struct.pack(">HH", y, x) for x, y in curve) for curve in FILM) + b"more"}

# As in filter_numpy_test.py.
CASES = [
    ("ColorMatrixFilter", same, ["noise"], 0),
    (f"ColorMatrixFilter colorMatrix={rows(UNEVEN)} intensity=0.5", matrix(UNEVEN, 0.5)),
    ("SepiaFilter", sepia()), ("SepiaFilter intensity=0.3", sepia(0.3)),
    ("GrayscaleFilter", colors(lambda c: np.repeat(luma709(c), 3, 2))),
    ("HazeFilter", haze(0.2)), ("HazeFilter distance=0.1 slope=-0.4", haze(0.1, -0.4)),
    ("HazeFilter distance=1", np.zeros_like, ["noise", "ramp"], 0),
    ("MonochromeFilter", tint(1, 0.6, 0.45, 0.3)),
    ("MonochromeFilter color=0.1,0.2,0.9,0.5 intensity=0.8", tint(0.8, 0.1, 0.2, 0.9)),
    ("GpuImageCustomFilter", tint(1, 0.35, 0.1, 0.23)), ("GpuImageCustomFilter1", tint(5, 0.35, 0.23, 0.1)),
    # What is rounded on the way shows twelve times as large.
    ("GpuImageCustomFilter1 intensity=12", tint(12, 0.35, 0.23, 0.1), ["ramp"], 1),
    *[(f"HueFilter hue={degrees}", hue(np.radians(degrees))) for degrees in (0, 200, -30, 450, -750)],
    ("HueFilter", same, ["greys"], 1),
    ("GpuImageCustomHue", hue(3 * np.pi / 4, -0.474453, 0.2563)),
    ("GpuImageCustomHue hue=390", hue(np.pi / 4, -0.474453, 0.2563)),
    ("AmatorkaFilter", look("amatorka")), ("MissEtikateFilter", look("miss_etikate")),
    ("LookupFilter + amatorka", same, ["noise"], 0), ("LookupFilter intensity=0 + amatorka", same, ["noise"], 0),
    ("LookupFilter intensity=1 + identity", same, ["noise", "ramp"], 1),
    ("LookupFilter intensity=0.6 + miss_etikate", look("miss_etikate", 0.6)),
    *[(f"{name}Filter", same, POINTS, 0) for name in
      "Brightness Contrast Exposure Gamma Saturation RGB Opacity Levels HighlightShadow HighlightShadowTint HSB SkinTone "
      "ToneCurve".split()],
    ("WhiteBalanceFilter", same, POINTS, 1),
    *[(f"BrightnessFilter brightness={b}", colors(lambda c, b=b: c + b)) for b in (0.3, -0.45)],
    *[(f"ContrastFilter contrast={k}", colors(lambda c, k=k: 0.5 + k * (c - 0.5))) for k in (0, 0.4, 3.5)],
    *[(f"ExposureFilter exposure={e}", colors(lambda c, e=e: c * 2 ** e)) for e in (1.7, -2.5)],
    *[(f"ExposureFilter exposure={e}", colors(lambda c, e=e: (c > 0) * (e > 0)), ["noise", "ramp"], 0)
      for e in (1000.0, -1000.0)],
    *[(f"GammaFilter gamma={g}", gamma(g), ["noise", "ramp"]) for g in (0, 0.4, 2.2, 1000, -1)],
    *[(f"SaturationFilter saturation={s}", colors(saturated(s))) for s in (0, 0.5, 2)],
    ("ColorInvertFilter", colors(lambda c: 1 - c), POINTS, 0),
    ("RGBFilter red=0.5 green=0 blue=1.8", colors(lambda c: c * [0.5, 0, 1.8])),
    ("OpacityFilter opacity=0.3", lambda p: p * [1, 1, 1, 0.3], POINTS),
    ("LevelsFilter setMin:gamma:max:minOut:maxOut:=0.1,1.6,0.8,0.05,0.9", levels((0.1, 1.6, 0.8, 0.05, 0.9))),
    ("LevelsFilter setMin=0,1,1,1,0 setRedMin=0.2,0.5,0.7,0,1 setBlueMin=0,2,1,0.5,0.75",
     levels((0.2, 0.5, 0.7, 0, 1), (0, 1, 1, 1, 0), (0, 2, 1, 0.5, 0.75))),
    ("LevelsFilter setRedMin=0.3,1,0.3,0,1 setGreenMin=0.3,0,0.7,0.1,0.9 setBlueMin=0.7,2,0.3,1,0.2",
     levels((0.3, 1, 0.3, 0, 1), (0.3, 0, 0.7, 0.1, 0.9), (0.7, 2, 0.3, 1, 0.2)), ["noise", "ramp"]),
    *[(f"HighlightShadowFilter shadows={s} highlights={h}", highlights_and_shadows(s, h), POINTS)
      for s, h in ((1, 1), (0, 0), (0.6, 0.3))],
    ("HighlightShadowFilter shadows=-3 highlights=9", same, ["noise"], 0),
    ("HighlightShadowTintFilter shadowTintIntensity=0.5", split_tones([0, 0.1, 0.2], [1, 1, 1])),
    ("HighlightShadowTintFilter highlightTintIntensity=1 highlightTintColor=0.9,0.7,0.2,1 shadowTintIntensity=0.8 "
     "shadowTintColor=0.1,0,0.5,0", split_tones([0.08, 0, 0.4], [0.9, 0.7, 0.2]), POINTS),
    ("FalseColorFilter", colors(lambda c: mix(np.array([0, 0, 0.5]), np.array([1, 0, 0]), luma709(c))), POINTS),
    ("FalseColorFilter firstColor=0.9,0.2,0,0 secondColor=0,1,0.4,0",
     colors(lambda c: mix(np.array([0.9, 0.2, 0]), np.array([0, 1, 0.4]), luma709(c)))),
    *[(f"HSBFilter rotateHue={degrees}", hsb(turned(degrees)), ["noise", "greys"]) for degrees in (60, -100, 765)],
    ("HSBFilter rotateHue=40 adjustSaturation=1.6 adjustBrightness=0.7 rotateHue:=15",
     hsb(turned(40), saturated(1.6), lambda c: 0.7 * c, turned(15)), POINTS),
    ("HSBFilter adjustSaturation=0 reset adjustBrightness=1.5 intensity=0.5", hsb(lambda c: 1.5 * c, share=0.5)),
    *[(f"SkinToneFilter skinToneAdjust={a}", skin(a), ["noise", "greys", "dot", "row"]) for a in (-0.7, 0.8)],
    ("SkinToneFilter skinToneAdjust=1 upperSkinToneColor=orange", skin(1, orange=True), ["noise", "greys"]),
    ("SkinToneFilter skinToneAdjust=0.5 skinHue=0.97 skinHueThreshold=10 maxHueShift=0.1 upperSkinToneColor=green",
     skin(0.5, hue=0.97, threshold=10, hue_shift=0.1)),
    ("SkinToneFilter skinToneAdjust=0.5 upperSkinToneColor=orange maxSaturationShift=2 skinHueThreshold=0",
     skin(0.5, orange=True, threshold=0, saturation_shift=2)),
    *[(f"WhiteBalanceFilter temperature={k} tint={t}", white_balance(k, t), POINTS)
      for k, t in ((3200, 0), (30000, 2), (5000, -9))],
    ("WhiteBalanceFilter temperature=0", white_balance(1000, 0)),
    *[(f"LuminanceRangeFilter rangeReductionFactor={r}", colors(lambda c, r=r: c + (0.5 - luma709(c)) * r)) for r in
      (0, 1)],
    ("LuminanceRangeFilter", colors(lambda c: c + (0.5 - luma709(c)) * 0.6), POINTS),
    ("LuminanceThresholdFilter", parted(0.5), POINTS), ("LuminanceThresholdFilter threshold=0.21", parted(0.21)),
    ("ChromaKeyFilter", keyed([0, 1, 0]), POINTS),
    ("ChromaKeyFilter colorToReplace=0.2,0.3,0.9 thresholdSensitivity=0.2 smoothing=0.5",
     keyed([0.2, 0.3, 0.9], 0.2, 0.5)),
    ("ChromaKeyFilter smoothing=0", keyed([0, 1, 0], smoothing=0), ["noise", "ramp"]),
    ("SolidColorGenerator", lambda p: np.zeros_like(p) + [0, 0, 0, 1], POINTS, 0),
    ("SolidColorGenerator color=0.2,0.4,1,0 useExistingAlpha=1",
     lambda p: np.dstack([np.zeros_like(p[..., :3]) + [0.2, 0.4, 1], p[..., 3]]), POINTS, 0),
    *[(f"ToneCurveFilter rgbCompositeControlPoints={written(points)}", tone_curves(points), ["greys", "noise"], 1)
      for points in (CONTRASTY, LIFTED, INNER, WILD)],
    # Points beyond the square count at its border, and of two in one place the second.
    ("ToneCurveFilter redControlPoints=-3,-1;0.5,0.9;0.5,0.4;1,7", tone_curves(red=((0, 0), (0.5, 0.4), (1, 1))),
     ["greys"], 1),
    (f"ToneCurveFilter greenControlPoints={written(LIFTED)} rgbCompositeControlPoints={written(CONTRASTY)} "
     f"blueControlPoints={written(INNER)}", tone_curves(CONTRASTY, green=LIFTED, blue=INNER), POINTS, 1),
    ("ToneCurveFilter pointsWithACVURL=film.acv",
     tone_curves(*[[(x / 255, y / 255) for x, y in curve] for curve in FILM]), POINTS, 1),
]
