#!/usr/bin/env python3
"""Makes the colour look-up tables in assets/lookup: our gradings, and the table that changes nothing.

    python3 tools/make_lookup_tables.py              all of them, where they belong
    python3 tools/make_lookup_tables.py --out DIR    elsewhere, to look at

A table is a picture of 512 x 512: eight rows of eight tiles of 64 x 64. Blue picks the tile, row by row from the top
left; in it red runs to the right and green down. The entry (r, g, b), each 0 to 63, says what the colour
(r, g, b) / 63 becomes, all in sRGB as stored. assets/lookup/README.md tells what each grading is for.

A grading is computed in double precision and rounded once; the same numpy and Pillow give the same bytes. The files
hold no colour chunk, which would make a reader convert the entries. Needs numpy and Pillow.
"""

import argparse
from dataclasses import dataclass
from pathlib import Path

import numpy as np
from PIL import Image

ROOT = Path(__file__).resolve().parent.parent
STEPS = 64  # entries along each axis
TILES = 8  # tiles a row, and rows of tiles

# Björn Ottosson, "A perceptual color space for image processing" (2020): linear sRGB to cone responses, and the cube
# roots of these to OKLab.
TO_CONES = np.array([
    [0.4122214708, 0.5363325363, 0.0514459929],
    [0.2119034982, 0.6806995451, 0.1073969566],
    [0.0883024619, 0.2817188376, 0.6299787005],
])
TO_OKLAB = np.array([
    [0.2104542553, 0.7936177850, -0.0040720468],
    [1.9779984951, -2.4285922050, 0.4505937099],
    [0.0259040371, 0.7827717662, -0.8086757660],
])


@dataclass(frozen=True)
class Grade:
    """A grading's numbers, in the order of the steps. The defaults change nothing but colours at the very edge of
    sRGB."""

    # Crosstalk, in linear light: the share of each channel that is taken from the other two, half from each. Greys keep
    # their value; colours mellow as dyes do that absorb more than their own part of the spectrum.
    crosstalk: float = 0.0

    # Tone, by channel on stored values: black lands on `lift`, white on `gain`; `gamma` below 1 brightens the
    # middle; `contrast` above 0 bends the curve to an S, below 0 to its inverse. Below 1 it stays steep enough at the
    # ends that neither shadows nor lights are crushed.
    lift: float = 0.0
    gain: float = 1.0
    gamma: float = 1.0
    contrast: float = 0.0

    # Colour, in OKLab: chroma is multiplied by `saturation`, and what has most of it already gets less by `mellow`.
    # `turns` are (hue, angle, width) in degrees: colours near that hue turn by that angle.
    saturation: float = 1.0
    mellow: float = 0.0
    turns: tuple = ()

    # Split toning: the (a, b) that greys gain a third of the way up in lightness, and two thirds. Black and white stay
    # neutral. Skin is spared by the share `skin_guard`. `paper` is what white itself gains, fading quickly below it.
    shadows: tuple = (0.0, 0.0)
    highlights: tuple = (0.0, 0.0)
    paper: tuple = (0.0, 0.0)
    skin_guard: float = 0.0


# Warm film: amber light over faintly green shadows, a lifted black, foliage towards olive and skies towards teal.
AMATORKA = Grade(
    crosstalk=0.05,
    lift=0.045, gain=0.978, gamma=0.94, contrast=0.32,
    saturation=1.04, mellow=0.4, turns=((140, -6, 35), (255, -8, 40)),
    shadows=(-0.008, 0.004), highlights=(0.009, 0.028), paper=(0.000, 0.008),
    skin_guard=0.4,
)

# Soft and low in contrast. The first opens the shadows and pales the colours, so that the blurred copy glows rather
# than smears; the second tones the mixture: lilac below, cream above.
SOFT_ELEGANCE_1 = Grade(
    crosstalk=0.04,
    lift=0.055, gain=0.985, gamma=0.80, contrast=-0.15,
    saturation=0.96, mellow=0.5,
    highlights=(0.004, 0.004),
)
SOFT_ELEGANCE_2 = Grade(
    crosstalk=0.02,
    lift=0.02, gain=0.987, gamma=0.96, contrast=0.12,
    saturation=0.96, mellow=0.3, turns=((140, 6, 40),),
    shadows=(0.005, -0.011), highlights=(0.003, 0.014), paper=(0.000, 0.005),
    skin_guard=0.5,
)

# Cool: blue-teal shadows under a clear, slightly blue light; skin keeps its warmth.
MISS_ETIKATE = Grade(
    crosstalk=0.04,
    lift=0.04, gain=0.985, gamma=0.95, contrast=0.25,
    saturation=0.92, mellow=0.3, turns=((140, 7, 40), (265, -8, 40)),
    shadows=(-0.013, -0.026), highlights=(-0.009, -0.012), paper=(-0.001, -0.002),
    skin_guard=0.8,
)

SKIN_HUE, SKIN_WIDTH = 55, 40  # degrees in OKLab; skins of all depths lie within 40 to 70
FAINT = 0.025  # chroma from which on a colour counts as having a hue
VIVID = 0.16  # chroma from which on a colour takes little of the toning
BRIM = 0.92  # colours further out than this share of the way to the edge of sRGB are drawn in


def decoded(stored):
    """sRGB to linear light (IEC 61966-2-1)."""
    return np.where(stored <= 0.04045, stored / 12.92, ((np.maximum(stored, 0.04045) + 0.055) / 1.055) ** 2.4)


def encoded(light):
    return np.where(light <= 0.0031308, light * 12.92, 1.055 * np.maximum(light, 0.0031308) ** (1 / 2.4) - 0.055)


def oklab(light):
    return np.cbrt(light @ TO_CONES.T) @ TO_OKLAB.T


def from_oklab(lab):
    return (lab @ np.linalg.inv(TO_OKLAB).T) ** 3 @ np.linalg.inv(TO_CONES).T


def near(hue, center, width):
    """1 at `center`, falling off as a bell that is periodic in the hue (von Mises); all in degrees."""
    return np.exp((np.cos(np.radians(hue - center)) - 1) / np.radians(width) ** 2)


def crossed(light, share):
    mean = light.mean(axis=-1, keepdims=True)
    return light + 1.5 * share * (mean - light)


def toned(stored, grade):
    x = stored**grade.gamma
    x += grade.contrast * (x * x * (3 - 2 * x) - x)
    return grade.lift + (grade.gain - grade.lift) * x


def tint(lightness, grade):
    """The (a, b) that split toning gives a grey. The weights are at most 1, and vanish at black and at white."""
    low = 729 / 16 * lightness**2 * (1 - lightness) ** 4
    high = 729 / 16 * lightness**4 * (1 - lightness) ** 2
    return sum(w[..., None] * np.array(ab) for w, ab in
               [(low, grade.shadows), (high, grade.highlights), (lightness**8, grade.paper)])


def recoloured(lab, grade):
    """Saturation, turned hues and split toning."""
    lightness, a, b = np.moveaxis(lab, -1, 0)
    chroma, hue = np.hypot(a, b), np.degrees(np.arctan2(b, a))
    coloured = chroma**2 / (chroma**2 + FAINT**2)
    angle = np.radians(hue + coloured * sum(turn * near(hue, center, width) for center, turn, width in grade.turns))
    radius = chroma * grade.saturation / (1 + grade.mellow * chroma)
    taken = (1 - grade.skin_guard * coloured * near(hue, SKIN_HUE, SKIN_WIDTH)) * VIVID**2 / (VIVID**2 + chroma**2)
    turned = radius[..., None] * np.stack([np.cos(angle), np.sin(angle)], -1)
    return np.concatenate([lightness[..., None], turned + taken[..., None] * tint(lightness, grade)], -1)


def drawn_in(lab):
    """Linear sRGB of OKLab. What lies beyond is brought inside along the line to a grey nearer the middle: not cut off,
    which would show as flat patches, nor moved at its own lightness, which would take the colour from bright
    yellows."""
    light = from_oklab(lab)
    grey = (0.15 + 0.70 * lab[..., :1]) ** 3
    distance = np.max((light - grey) / np.where(light > grey, 1 - grey, -grey), axis=-1, keepdims=True)
    beyond = np.maximum(distance - BRIM, 0) / (1 - BRIM)
    kept = np.where(distance > BRIM, BRIM + (1 - BRIM) * (1 - np.exp(-beyond)), distance)
    return grey + (light - grey) * kept / np.maximum(distance, 1e-9)


def graded(stored, grade):
    """What the grading makes of sRGB colours, stored values 0 to 1 in the last axis."""
    light = crossed(decoded(np.asarray(stored, float)), grade.crosstalk)
    return encoded(drawn_in(recoloured(oklab(decoded(toned(encoded(light), grade))), grade)))


def laid_out(entries):
    """Entries by [blue, green, red] as the picture of tiles."""
    tiles = entries.reshape(TILES, TILES, STEPS, STEPS, 3)
    return tiles.transpose(0, 2, 1, 3, 4).reshape(TILES * STEPS, TILES * STEPS, 3)


def table(grade=None):
    """The picture of a grading; without one, of no change."""
    blue, green, red = np.meshgrid(*[np.arange(STEPS)] * 3, indexing="ij")
    colours = np.stack([red, green, blue], -1) / (STEPS - 1)
    if grade:
        colours = graded(colours, grade)
    return laid_out(np.rint(255 * colours).clip(0, 255).astype(np.uint8))


TABLES = {
    "lookup_identity.png": None,
    "lookup_amatorka.png": AMATORKA,
    "lookup_soft_elegance_1.png": SOFT_ELEGANCE_1,
    "lookup_soft_elegance_2.png": SOFT_ELEGANCE_2,
    "lookup_miss_etikate.png": MISS_ETIKATE,
}


def main():
    parser = argparse.ArgumentParser(description="Makes the colour look-up tables.")
    parser.add_argument("--out", type=Path, default=ROOT / "assets" / "lookup")
    folder = parser.parse_args().out
    folder.mkdir(parents=True, exist_ok=True)
    for name, grade in TABLES.items():
        Image.fromarray(table(grade)).save(folder / name, optimize=True)
        print(f"{name}: {(folder / name).stat().st_size // 1024} KB")


if __name__ == "__main__":
    main()
