"""A summer meadow against the light: a few flowers in focus, all before and behind them dissolved."""

import numpy as np
from PIL import Image, ImageDraw

from .camera import bloom, defocused, developed, mix
from .noise import fbm, smoothstep

GOLD = np.array([1.0, 0.80, 0.42])


class Layer:
    """Things at one distance: light multiplied by cover, and cover. Blurred as one, then laid over what is farther."""

    def __init__(self, width, height):
        self.light = np.zeros((height, width, 3), np.float32)
        self.cover = np.zeros((height, width), np.float32)

    def put(self, x0, y0, colour, alpha):
        """Lays a patch over; parts outside are cut off."""
        height, width = self.cover.shape
        top, left = max(-y0, 0), max(-x0, 0)
        bottom, right = min(height - y0, alpha.shape[0]), min(width - x0, alpha.shape[1])
        if top >= bottom or left >= right:
            return
        a = alpha[top:bottom, left:right]
        where = (slice(y0 + top, y0 + bottom), slice(x0 + left, x0 + right))
        self.light[where] *= (1 - a)[..., None]
        self.light[where] += colour[top:bottom, left:right] * a[..., None]
        self.cover[where] += a * (1 - self.cover[where])

    def over(self, scene, radius):
        together = np.dstack([self.light, self.cover])
        soft = defocused(together, radius)
        return scene * (1 - np.clip(soft[..., 3:], 0, 1)) + soft[..., :3]


def curve(start, end, sag, n=24):
    """Points from the root to the tip; `sag` bends it sideways, most at the tip."""
    t = np.linspace(0, 1, n)[:, None]
    return np.array(start) * (1 - t) + np.array(end) * t + np.array([sag, 0]) * (t * t - t)


def blade(layer, points, wide, colour, tip_light, flat=False):
    """A grass blade or stem along the points: one half lit, the other not, paler towards the tip."""
    points = np.asarray(points)
    low, high = np.floor(points.min(axis=0) - wide - 2).astype(int), np.ceil(points.max(axis=0) + wide + 2).astype(int)
    size = high - low
    height, width = layer.cover.shape
    if high[0] < 0 or high[1] < 0 or low[0] > width or low[1] > height or size.max() > 4 * height:
        return
    over = 2
    along = np.gradient(points, axis=0)
    along /= np.maximum(np.linalg.norm(along, axis=1), 1e-6)[:, None]
    side = np.stack([-along[:, 1], along[:, 0]], axis=1)
    t = np.linspace(0, 1, len(points))[:, None]
    half = wide * (np.ones_like(t) if flat else (1 - t) ** 0.7 * (0.55 + 0.9 * t)) + 0.25
    left, right = points + side * half, points - side * half
    spine = points + side * half * 0.15
    mask, lit = (Image.new("L", tuple(size * over)) for _ in range(2))
    place = lambda p: [tuple(q) for q in (p - low) * over]
    ImageDraw.Draw(mask).polygon(place(left) + place(right[::-1]), fill=255)
    ImageDraw.Draw(lit).polygon(place(left) + place(spine[::-1]), fill=255)
    alpha = np.asarray(mask.resize(tuple(size), Image.Resampling.BOX), np.float32) / 255
    bright = np.asarray(lit.resize(tuple(size), Image.Resampling.BOX), np.float32) / 255
    rise = np.clip((points[0, 1] - low[1] - np.arange(size[1])) / max(points[0, 1] - points[-1, 1], 1), 0, 1)[:, None]
    strength = (0.55 + 0.75 * bright) * (0.35 + rise * tip_light)
    layer.put(low[0], low[1], np.asarray(colour, np.float32) * strength[..., None], alpha)


def grass(layer, rng, count, roots, tall, wide, light):
    height, width = layer.cover.shape
    for _ in range(count):
        x, y = rng.uniform(-0.05, 1.05) * width, rng.uniform(*roots) * height
        length = rng.uniform(*tall) * height
        lean = rng.normal(0.05, 0.22) * length
        green = mix((0.10, 0.20, 0.022), (0.36, 0.36, 0.065), np.array(rng.random()))
        blade(layer, curve((x, y), (x + lean, y - length), rng.normal(0.2, 0.9) * lean), rng.uniform(*wide) * width,
              green, light * rng.uniform(0.6, 1.5))


def daisy(layer, rng, x, y, r, tilt, turn):
    """A flower of narrow petals around a domed yellow heart. `tilt`: its height over its width; `turn`: radians."""
    reach = int(r * 1.25) + 2
    v, u = np.mgrid[-reach : reach + 1, -reach : reach + 1].astype(np.float32)
    v, u = v + int(y) - y, u + int(x) - x
    a, b = (u * np.cos(turn) + v * np.sin(turn)) / r, (-u * np.sin(turn) + v * np.cos(turn)) / (r * tilt)
    count = int(rng.integers(19, 25))
    order = rng.permutation(count)
    for k in order:
        angle = 2 * np.pi * (k + rng.normal(0, 0.16)) / count
        long, half = rng.uniform(0.88, 1.04), rng.uniform(0.115, 0.15)
        droop, fold, own = rng.normal(0, 0.07), rng.normal(0, 0.30), rng.uniform(0.82, 1.06)
        p = a * np.cos(angle) + b * np.sin(angle)
        q = -a * np.sin(angle) + b * np.cos(angle) + droop * p * p
        t = np.clip(p / long, 0, 1.2)
        tip = np.clip((t - 0.66) / 0.34, 0, 1)
        notch = 0.03 * np.cos(q / half * 6.0) * tip
        outline = half * np.sqrt(np.clip(1 - (tip + notch) ** 2.6, 0, 1)) * np.clip(1 - 0.6 * (0.66 - t), 0, 1)
        alpha = np.clip((outline - np.abs(q)) * r * min(1, tilt + 0.3) + 0.5, 0, 1) * (p > 0.12) * (t < 1.02)
        across = q / half
        groove = 1 - 0.15 * np.abs(np.cos(across * 4.4 + 0.4)) ** 4 * (1 - 0.5 * tip)
        shade = own * (0.34 + 0.66 * smoothstep(0.16, 0.80, t)) * groove * (1 + fold * across) * (1 - 0.30 * across**4)
        through = 0.62 + 0.48 * np.clip(-np.sin(angle), -0.6, 1)  # the sun stands behind, above
        colour = (shade * through)[..., None] * np.array([1.54, 1.41, 1.17])
        layer.put(int(x) - reach, int(y) - reach, colour, alpha)
    lift = 0.10 * (1 - tilt)
    heart = np.hypot(a, (b + lift) * (0.55 + 0.45 * tilt)) / 0.27
    alpha = np.clip((1 - heart) * r * 0.27 + 0.5, 0, 1)
    beads = fbm(a * 26, b * 26, 2, int(rng.integers(99)))
    dome = np.sqrt(np.clip(1 - heart**2, 0.05, 1))
    colour = mix((0.55, 0.24, 0.01), (1.0, 0.62, 0.045), np.clip(dome * 0.8 + 0.55 * beads - 0.25 * b / 0.3, 0, 1))
    layer.put(int(x) - reach, int(y) - reach, colour * 0.92, alpha)


def flower(layer, rng, x, y, r, tilt, turn):
    """With its stem, which leaves the picture below."""
    height, width = layer.cover.shape
    foot = (x + rng.normal(0.02, 0.06) * width, height * 1.08)
    sag = rng.choice([-1, 1]) * rng.uniform(0.08, 0.20) * width
    stem = curve(foot, (x + 0.04 * r, y + 0.15 * r), sag, 40)
    blade(layer, stem, max(r * 0.030, 0.8), (0.20, 0.27, 0.045), 0.8, flat=True)
    daisy(layer, rng, x, y, r, tilt, turn)


def backdrop(width, height, rng):
    """Trees and evening sky far behind: soft masses of colour, and the gaps between leaves as discs of light."""
    y, x = np.mgrid[0 : height / width : height * 1j, 0 : 1 : width * 1j]
    masses = fbm(x * 2.6 + 3, y * 3.4, 4, 8)
    colour = mix((0.022, 0.050, 0.014), (0.20, 0.23, 0.055), smoothstep(-0.30, 0.50, masses))
    sun = np.exp(-((x - 0.70) ** 2 + (y - 0.02) ** 2) / 0.075)
    colour = mix(colour, (0.15, 0.19, 0.035), smoothstep(0.34, 0.52, y)) + sun[..., None] * GOLD * 0.85
    points = np.zeros((height, width, 3), np.float32)
    for _ in range(330):
        px, py = rng.uniform(0, 1), abs(rng.normal(0, 0.17))
        if py < height / width - 0.01:
            power = rng.pareto(1.5) * 0.22 * (0.35 + 1.3 * np.exp(-((px - 0.70) ** 2) / 0.10))
            tint = mix((0.75, 0.95, 0.30), (1.0, 0.86, 0.52), np.array(rng.random()))
            points[int(py * width), int(px * width)] += min(power, 1.6) * tint
    light = defocused(colour, 0.02 * width)
    which = rng.random((height, width, 1))
    for low, high, part in [(0, 0.55, 0.030), (0.55, 0.85, 0.021), (0.85, 1.01, 0.040)]:
        radius = part * width
        chosen = points * ((which >= low) & (which < high))
        light = light + defocused(chosen, radius) * np.pi * (0.026 * width) ** 2 * 0.36
    return light


def field(width, height, rng, count, rows, size, colours):
    """Small flowers some way off, as blobs to be blurred."""
    layer = Layer(width, height)
    for _ in range(count):
        x, y, r = rng.uniform(0, 1) * width, rng.uniform(*rows) * height, rng.uniform(*size) * width
        n = int(r) + 2
        v, u = np.mgrid[-n : n + 1, -n : n + 1]
        colour = np.array(colours[rng.integers(len(colours))]) * rng.uniform(0.6, 1.15)
        layer.put(int(x) - n, int(y) - n, np.broadcast_to(colour, v.shape + (3,)),
                  np.clip((1 - np.hypot(u, v / 0.7) / r) * r + 0.5, 0, 1))
    return layer


WHITE, POPPY, CORN, BUTTER = (0.92, 0.90, 0.80), (0.95, 0.10, 0.035), (0.20, 0.22, 0.85), (1.0, 0.72, 0.05)

# x (in widths), y (in heights), radius (in widths), tilt; those in focus with their turn in radians.
SOFT_FLOWERS = [(0.10, 0.62, 0.042, 0.5), (0.86, 0.52, 0.046, 0.62), (0.93, 0.74, 0.04, 0.7), (0.53, 0.71, 0.035, 0.5)]
SHARP_FLOWERS = [
    (0.665, 0.545, 0.074, 0.55, 0.22),
    (0.205, 0.535, 0.080, 0.66, -0.16),
    (0.405, 0.345, 0.118, 0.80, 0.10),
]


def render(width, height, rng):
    scene = backdrop(width, height, rng)
    for count, rows, size, tall, blur, light in [
        (420, (0.54, 0.70), (0.004, 0.007), (0.05, 0.11), 0.0160, 0.95),
        (240, (0.64, 0.86), (0.007, 0.013), (0.10, 0.20), 0.0125, 0.95),
    ]:
        layer = Layer(width, height)
        grass(layer, rng, 900, (rows[0] + 0.04, rows[1] + 0.10), tall, (0.0012, 0.003), light)
        scene = layer.over(scene, blur * width)
        blobs = field(width, height, rng, count, rows, size, [WHITE, WHITE, POPPY, POPPY, CORN, BUTTER])
        scene = blobs.over(scene, blur * width)

    layer = Layer(width, height)
    grass(layer, rng, 420, (0.95, 1.1), (0.22, 0.48), (0.0014, 0.003), 0.9)
    for x, y, r, tilt in SOFT_FLOWERS:
        flower(layer, rng, x * width, y * height, r * width, tilt, rng.normal(0, 0.2))
    scene = layer.over(scene, 0.0042 * width)

    layer = Layer(width, height)
    grass(layer, rng, 110, (1.02, 1.15), (0.25, 0.62), (0.0011, 0.0026), 1.05)
    for x, y, r, tilt, turn in SHARP_FLOWERS:
        flower(layer, rng, x * width, y * height, r * width, tilt, turn)
    scene = layer.over(scene, 0.0003 * width)

    layer = Layer(width, height)
    grass(layer, rng, 46, (1.05, 1.25), (0.25, 0.60), (0.003, 0.006), 0.8)
    scene = layer.over(scene, 0.017 * width)
    x, y = np.linspace(0, 1, width)[None, :], np.linspace(0, 0.75, height)[:, None]
    veil = np.exp(-((x - 0.70) ** 2 + y**2) / 0.30)
    scene = scene + veil[..., None] * GOLD * 0.07
    return developed(bloom(scene, 0.16, 0.9), rng, exposure=0.68, vignette=0.40, grain=0.007, saturation=1.08)
