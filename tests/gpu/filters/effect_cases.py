"""Effects: what moves places, draws patterns, or is made of several filters."""

import io

import numpy as np
from PIL import Image

from color_cases import look
from edge_cases import cartoon
from formulas import bell, blur, colors, luma709, mix, over, stored
from pictures import PICTURES

ODD = "noise", "row", "column", "dot"


def soft_elegance(p):
    pale = stored(look("soft_elegance_1")(p))
    return look("soft_elegance_2")(stored(over(pale, blur(bell(22, 10))(pale), 0.14)))


# A place is its share of the width and its share of the height, in the last axis.

def places(p):
    height, width = p.shape[:2]
    return np.dstack(np.meshgrid((np.arange(width) + 0.5) / width, (np.arange(height) + 0.5) / height))


def ratio(p):
    return np.array([1, p.shape[0] / p.shape[1]])


def read(p, place):
    """Between pixels bilinear; beyond the border the outermost pixels go on."""
    size = np.array(p.shape[1::-1])
    whole, part = np.divmod(place * size - 0.5, 1)
    corner = {(i, j): p[tuple(np.clip(whole + (i, j), 0, size - 1).astype(int)[..., ::-1].transpose(2, 0, 1))]
              for i in (0, 1) for j in (0, 1)}
    across, down = part[..., :1], part[..., 1:]
    return mix(mix(corner[0, 0], corner[1, 0], across), mix(corner[0, 1], corner[1, 1], across), down)


def open_where(jump, picture):
    return np.where(jump, np.nan, picture)


def around(center, place_of, proportions=ratio):
    """Reads at place_of(way from the center, its length), a way like the former; lengths as the proportions say."""
    def moved(p):
        way = places(p) - center
        length = np.linalg.norm(way * proportions(p), axis=-1, keepdims=True)
        return read(p, center + place_of(way, length))
    return moved


def in_circle(radius, factor):
    return lambda way, d: way * np.where(d < radius, factor(d), 1)


def swirl(center, angle, radius):
    def turned(way, d):
        theta = np.where(d < radius, (1 - d / radius) ** 2 * angle * 8, 0)
        x, y = way[..., :1], way[..., 1:]
        return np.dstack([np.cos(theta) * x - np.sin(theta) * y, np.sin(theta) * x + np.cos(theta) * y])
    return around(center, turned, lambda p: 1)


def stretched(way, d):
    n = abs(2 * way)
    t = np.clip((n - 0.25) / 0.25, 0, 1)
    return np.sign(way) * (0.5 * n + 0.5 * t * t * (3 - 2 * t) * n) / 2


def sphere(center, radius, index, turn, light=lambda color, normal: color):
    def seen(p):
        way = (places(p) - center) * ratio(p) / radius
        d2 = (way ** 2).sum(-1, keepdims=True)
        normal = np.dstack([way, np.sqrt(np.maximum(1 - d2, 0))])
        # Snell: across the normal the ray keeps `index` of its length, along it what is left of 1.
        sine = np.maximum(1 - normal[..., 2:] ** 2, 0)
        ray = (index * normal[..., 2:] - np.sqrt(1 - index ** 2 * sine)) * normal
        color = light(read(p, (turn * ray[..., :2] + 1) / 2), normal)
        return open_where(abs(d2 - 1) < 0.001, np.where(d2 < 1, color, 0))
    return seen


def lit(color, normal):
    halfway = np.array([-1, -1, 1 + np.sqrt(3)]) / np.linalg.norm([-1, -1, 1 + np.sqrt(3)])
    head_on = ((1 - 0.71) / (1 + 0.71)) ** 2
    mirrored = head_on + (1 - head_on) * (1 - normal[..., 2:]) ** 5
    gleam = np.maximum(normal @ halfway, 0)[..., None] ** 100
    return np.dstack([mix(color[..., :3], 1, mirrored) + 0.8 * gleam, color[..., 3]])


def cells(width, draw=lambda color, d: color, within=lambda p: True):
    """draw(color, distance from the cell's middle in widths) in cells; the picture elsewhere."""
    def gridded(p):
        place, cell = places(p), width / ratio(p)
        part = place / cell % 1
        middle = place + (0.5 - part) * cell
        d = np.linalg.norm((middle - place) * ratio(p), axis=-1, keepdims=True)
        jump = (np.minimum(part, 1 - part) < 0.001).any(-1, keepdims=True)
        return np.where(within(p), open_where(jump, draw(read(p, middle), d)), p)
    return gridded


def dots(radius, inside, outside):
    def draw(color, d):
        r = radius(luma709(color[..., :3]))
        ink = np.where(d < r, inside(color), outside) + 0 * color[..., :3]
        return np.dstack([open_where(abs(d - r) < 0.0002, ink), color[..., 3]])
    return draw


def in_rings(p):
    way = 2 * (places(p) - (0.4, 0.5))
    polar = np.dstack([np.hypot(way[..., 0], way[..., 1]), np.arctan2(way[..., 1], way[..., 0])]) / (0.2, 0.3)
    r, phi = (np.floor(polar) * (0.2, 0.3) + (0.03, 0)).transpose(2, 0, 1)
    jump = (abs(polar - np.rint(polar)) < 0.001).any(-1, keepdims=True)
    return open_where(jump, read(p, (0.4, 0.5) + np.dstack([r * np.cos(phi), r * np.sin(phi)]) / 2))


def crosshatched(p):
    (x, y), luma = places(p).transpose(2, 0, 1), luma709(p[..., :3])[..., 0]
    lines = [((x + sign * y - shift) % 0.2, below)
             for sign, shift, below in ((1, 0, 1), (-1, 0, 0.75), (1, 0.1, 0.5), (-1, 0.1, 0.3))]
    ink = np.any([(line <= 0.05) & (luma < below) for line, below in lines], axis=0)
    jump = np.any([(np.minimum(line, abs(line - 0.05)) < 0.0005) | (line > 0.1995) for line, _ in lines], axis=0)
    return np.dstack([open_where(jump[..., None], np.repeat(1.0 - ink[..., None], 3, -1)), p[..., 3]])


def vignette(p):
    t = np.clip((np.linalg.norm(places(p) - (0.3, 0.6), axis=-1, keepdims=True) - 0.1) / 0.4, 0, 1)
    return colors(lambda c: mix(c, np.array([0.2, 0.4, 0.9]), t * t * (3 - 2 * t)))(p)


def cga(p):
    place, grid = places(p), (1 / 200, 1 / 320)
    color = read(p, np.floor(place / grid + 1e-6) * grid)
    palette = np.array([[0, 0, 0], [1, 1, 1], [1 / 3, 1, 1], [1, 1 / 3, 1]])
    far = np.linalg.norm(color[..., None, :3] - palette, axis=-1)
    near = np.sort(far)
    jump = (near[..., 1] - near[..., 0] < 0.006)[..., None] | (abs(place / grid % 1) < 0.001).any(-1, keepdims=True)
    return np.dstack([open_where(jump, palette[far.argmin(-1)]), color[..., 3]])


TILES = np.array([[0, 0, 0], [0, 0, 1], [1, 0, 0], [1, 0, 1], [0, 1, 0], [1, 1, 1]])  # 3 in a row, one colour each


def mosaic(p):
    part = places(p) / (0.1, 0.2) % 1
    color = read(p, places(p) + (0.5 - part) * (0.1, 0.2))
    level = color[..., :3] @ [0.299, 0.587, 0.114] * 6
    tile = TILES[np.minimum(level.astype(int), 5)]
    # Between the tiles they run into each other.
    jump = (np.minimum(part, 1 - part) < 0.03).any(-1) | (abs(level - np.rint(level)) < 0.01)
    return np.dstack([open_where(jump[..., None], tile * color[..., :3]), color[..., 3]])


def perlin(p):
    place = places(p) * 3
    whole, part = np.divmod(place, 1)

    def permuted(x):
        return (34 * x * x + x) % 289

    def height(corner):
        x, y = (whole + corner).transpose(2, 0, 1)
        direction = 2 * (permuted(permuted(x) + y) / 41 % 1) - 1
        gradient = np.dstack([direction - np.floor(direction + 0.5), abs(direction) - 0.5])
        gradient *= 1.79284291400159 - 0.85373472095314 * (gradient ** 2).sum(-1, keepdims=True)
        return (gradient * (part - corner)).sum(-1)

    fade = 6 * part ** 5 - 15 * part ** 4 + 10 * part ** 3
    noise = 2.3 * mix(mix(height((0, 0)), height((1, 0)), fade[..., 0]),
                      mix(height((0, 1)), height((1, 1)), fade[..., 0]), fade[..., 1])
    return mix(np.array([1, 0.5, 0, 0.2]), np.array([0, 0.5, 1, 1]), (noise[..., None] + 1) / 2)


def cropped(x, y, width, height):
    """In whole pixels: where the part begins, and as many as fit."""
    def part(p):
        left, top, columns, rows = (int(share * side) for share, side in zip((x, y, width, height), p.shape[1::-1] * 2))
        return p[top:top + max(rows, 1), left:left + max(columns, 1)]
    return part


def transformed(matrix, anchor=0.5, unit=lambda p: 2 * ratio(p)):
    """What lies where the matrix takes it from: of columns (x, y, 1), places off the anchor in the plane's unit."""
    def seen(p):
        at = (places(p) - anchor) * unit(p)
        x, y, w = np.linalg.solve(matrix, np.dstack([at, np.ones(p.shape[:2])]).reshape(-1, 3).T).reshape(3, *p.shape[:2])
        place = np.dstack([x / w, y / w]) / unit(p) + anchor
        inside = ((place >= 0) & (place <= 1)).all(-1, keepdims=True)
        border = (abs(np.minimum(place, 1 - place)) * p.shape[1::-1] < 0.01).any(-1, keepdims=True)
        return open_where(border & (matrix != np.eye(3)).any(), np.where(inside, read(p, place), 0))
    return seen


def turned(radians, dx=0, dy=0):
    return np.array([[np.cos(radians), -np.sin(radians), dx], [np.sin(radians), np.cos(radians), dy], [0, 0, 1]])


def marked(distances, reach, color=(0, 1, 0)):
    """In the colour where the least of the distances in pixels is below the reach."""
    def seen(p):
        x, y = np.meshgrid(np.arange(p.shape[1]) + 0.5, np.arange(p.shape[0]) + 0.5)
        d = np.min([*distances(x, y, *p.shape[1::-1])], axis=0)[..., None]
        return open_where(abs(d - reach) < 0.002, np.where(d < reach, [*color, 1], p))
    return seen


def to_lines(x, y, width, height):
    for a, b in ((0.5, 0.1), (-4, 0.2)):
        # y' = a x' + b, of places from -1 to 1, in pixels: a point and a way.
        way = np.array([width, a * height]) / np.hypot(width, a * height)
        yield abs((x - width / 2) * way[1] - (y - (1 + b) * height / 2) * way[0])
    yield abs(x - 0.65 * width)


def to_crosses(x, y, width, height):
    for across, down in ((0.3, 0.4), (20 / 61, 1 / 7)):
        dx, dy = (abs(at - np.floor(share * side + 0.01) - 0.5) for at, share, side in
                  ((x, across, width), (y, down, height)))
        yield np.where(np.maximum(dx, dy) < 12.5, np.minimum(dx, dy), 99)


def nearest_seed(p):
    """How far the nearest marked pixel is, in 255ths: one step is one pixel."""
    rows, columns = np.nonzero(p[..., :3].max(-1) * p[..., 3] >= 0.5)
    x, y = np.meshgrid(np.arange(p.shape[1]), np.arange(p.shape[0]))
    return np.hypot(x[..., None] - columns, y[..., None] - rows).min(-1) / 255


def decoded(code):
    high_x, low_x, high_y, low_y = np.rint(code * 255).astype(int).transpose(2, 0, 1)
    return 256 * high_x + low_x, 256 * high_y + low_y


def distance_told(code):
    column, row = decoded(code)
    x, y = np.meshgrid(np.arange(code.shape[1]), np.arange(code.shape[0]))
    return np.hypot(x - column, y - row) / 255


def looked_up(p):
    column, row = decoded(PICTURES["diagram"])
    none = column == 0xFFFF
    return np.where(none[..., None], 0, p[np.where(none, 0, row), np.where(none, 0, column)])


def tile_file():
    """Of the mosaic's tiles, 40 pixels each."""
    file = io.BytesIO()
    Image.fromarray((TILES * 255).astype(np.uint8).reshape(2, 3, 3).repeat(40, 0).repeat(40, 1)).save(file, "PNG")
    return file.getvalue()


FILES = {"tiles.png": tile_file()}

# As in filter_numpy_test.py.
CASES = [
    ("SwirlFilter angle=0.2 radius=0.4 center=0.6,0.5", swirl((0.6, 0.5), 0.2, 0.4), ODD),
    ("StretchDistortionFilter center=0.3,0.6", around((0.3, 0.6), stretched), ODD),
    ("BulgeDistortionFilter", around(0.5, in_circle(0.25, lambda d: (1 - (1 - d / 0.25) * 0.5) ** 2)), ODD),
    ("PinchDistortionFilter center=0.3,0.4 scale=0.7 radius=0.4",
     around((0.3, 0.4), in_circle(0.4, lambda d: 1 + (1 - 2 * d) * 0.7))),
    ("SphereRefractionFilter", sphere(0.5, 0.25, 0.71, 1), ODD),
    ("GlassSphereFilter center=0.4,0.5 radius=0.3", sphere((0.4, 0.5), 0.3, 0.71, -2, lit)),
    ("PixellateFilter", cells(0.05)), ("PixellateFilter fractionalWidthOfAPixel=0.07", cells(0.07), ["row"]),
    ("PixellateFilter fractionalWidthOfAPixel=0", lambda p: p),
    ("PixellatePositionFilter fractionalWidthOfAPixel=0.07 radius=0.3 center=0.5,0.6",
     cells(0.07, within=lambda p: np.linalg.norm((places(p) - (0.5, 0.6)) * ratio(p), axis=-1, keepdims=True) < 0.3)),
    ("PolarPixellateFilter center=0.4,0.5 pixelSize=0.2x0.3", in_rings),
    ("PolkaDotFilter fractionalWidthOfAPixel=0.17",
     cells(0.17, dots(lambda luma: 0.17 * 0.45, lambda color: color[..., :3], 0))),
    ("HalftoneFilter fractionalWidthOfAPixel=0.17", cells(0.17, dots(lambda luma: 0.085 * (1 - luma), lambda color: 0, 1))),
    ("CrosshatchFilter crossHatchSpacing=0.2 lineWidth=0.05", crosshatched),
    ("PosterizeFilter", colors(lambda c: open_where(abs(c * 10 % 1 - 0.5) < 0.01, np.floor(c * 10 + 0.5) / 10)), ODD),
    ("PosterizeFilter colorLevels=0", colors(lambda c: 0 * c)),
    ("VignetteFilter vignetteCenter=0.3,0.6 vignetteColor=0.2,0.4,0.9 vignetteStart=0.1 vignetteEnd=0.5", vignette, ODD),
    ("CGAColorspaceFilter", cga),
    ("MosaicFilter tileSet=tiles.png inputTileSize=0.3333333x0.5 numTiles=6 displayTileSize=0.1x0.2", mosaic),
    ("PerlinNoiseFilter scale=3 colorStart=1,0.5,0,0.2 colorFinish=0,0.5,1,1", perlin, ODD),
    # So many levels that rounding to them does nothing.
    ("SmoothToonFilter threshold=0.9 quantizationLevels=255", lambda p: cartoon(0.9, 255)(blur(bell(4, 2))(p))),
    ("CropFilter cropRegion=0.25,0.1,0.5,0.67", cropped(0.25, 0.1, 0.5, 0.67), ODD),
    ("CropFilter", lambda p: p), ("CropFilter cropRegion=0.99,0.99,0.01,0.01", lambda p: p[-1:, -1:]),
    ("TransformFilter", lambda p: p, ODD),
    ("TransformFilter affineTransform=0,1,-1,0,0,0", transformed(turned(np.pi / 2)), ["noise", "row"]),
    ("TransformFilter affineTransform=1,0,0,1,0.31,-0.2", transformed(turned(0, 0.31, -0.2))),
    ("TransformFilter ignoreAspectRatio=1 affineTransform=0.6,0.8,-0.8,0.6,0.1,0",
     transformed(turned(np.arctan2(0.8, 0.6), 0.1), unit=lambda p: 2)),
    ("TransformFilter anchorTopLeft=1 affineTransform=0.9,0.1,0.3,0.8,0.05,0.1",
     transformed(np.array([[0.9, 0.3, 0.05], [0.1, 0.8, 0.1], [0, 0, 1]]), 0, ratio)),
    ("TransformFilter anchorTopLeft=1 ignoreAspectRatio=1 affineTransform=0.8,0,0,0.8,0.1,0.1",
     transformed(np.array([[0.8, 0, 0.1], [0, 0.8, 0.1], [0, 0, 1]]), 0, lambda p: 1)),
    # About the vertical axis, seen from a distance of 4.
    ("TransformFilter transform3D=0.8,0,0.6,-0.15;0,1,0,0;-0.6,0,0.8,-0.2;0,0,0,1",
     transformed(np.array([[0.8, 0, 0], [0, 1, 0], [-0.15, 0, 1]]))),
    ("LineGenerator lineWidth=3 lines=0.5,0.1;-4,0.2;200000,0.3;0,9", marked(to_lines, 1.5)),
    ("LineGenerator", lambda p: p), ("CrosshairGenerator", lambda p: p),
    ("CrosshairGenerator crosshairWidth=25 crosshairs=0.3,0.4;0.32786885,0.14285714 setCrosshairColorRed=1,0.2,0",
     marked(to_crosses, 1.125, (1, 0.2, 0))),
    ("JFAVoronoiFilter", nearest_seed, ["points", "noise", "greys"], 0, distance_told),
    ("VoronoiConsumerFilter + diagram", looked_up),
    # The bytes after the first table and the mixture may differ by one, and the second table is 2.5 times as steep.
    ("SoftEleganceFilter", soft_elegance, ["noise"], 4),
]
