"""A street at night behind a rainy window: the focus is on the drops, the lights beyond are discs."""

import numpy as np

from .camera import bloom, blurred, defocused, developed, mix
from .noise import fbm, perlin, smoothstep

AMBER, WHITE, RED = (1.0, 0.50, 0.13), (1.0, 0.86, 0.66), (1.0, 0.055, 0.03)
GREEN, CYAN, PINK, BLUE = (0.06, 0.95, 0.45), (0.10, 0.72, 1.0), (1.0, 0.12, 0.50), (0.16, 0.28, 1.0)
# Drops that run down the glass: x, y, length of the trail, radius, all in widths.
RUNNING = [
    (0.115, 0.50, 0.30, 0.0145),
    (0.335, 0.64, 0.42, 0.0165),
    (0.655, 0.57, 0.22, 0.0140),
    (0.885, 0.44, 0.33, 0.0155),
]
VANISHING = (0.57, 0.375)  # in widths


def fading(d):
    """Discs keep their size, so what is far must be weaker, or the vanishing point would burn out."""
    return min(1, (1.6 / d) ** 0.9)


def street_lights(rng):
    """(x, y, colour, power, distance) of the lamps, cars, signs and windows; places in widths."""
    vx, vy = VANISHING
    for d in np.geomspace(1.05, 12, 15):
        jitter = rng.normal(0, 0.004, 3)
        yield vx - 0.56 / d + 3 * jitter[0], vy - 0.33 / d + 2 * jitter[2], AMBER, 1.5, d
    for d in np.geomspace(1.3, 14, 8):
        yield vx + 0.33 / d, vy - 0.40 / d, AMBER, 1.4, d
    for d in [1.35, 2.0, 2.9, 3.7, 5.0, 6.6, 9.0]:
        for side in (-0.034, 0.034):
            yield vx + (-0.20 + side) / d, vy + 0.125 / d, WHITE, 1.25, d
    for d in [1.15, 1.8, 2.4, 3.3, 4.4, 5.8, 8.0]:
        for side in (-0.036, 0.036):
            yield vx + (0.13 + side) / d, vy + 0.115 / d, RED, 1.3, d
    for x, y, colour, d in [(0.245, 0.205, GREEN, 2.2), (0.725, 0.20, RED, 3.0), (0.50, 0.30, GREEN, 4.0)]:
        yield x, y, colour, 1.3 / fading(d), d
    for _ in range(26):
        side = rng.choice([-1, 1])
        d = rng.uniform(1.2, 6)
        colour = [CYAN, PINK, BLUE, WHITE, AMBER][rng.integers(5)]
        x, y = vx + side * rng.uniform(0.42, 0.75) / d, vy + rng.uniform(-0.16, 0.04) / d
        yield x, y, colour, rng.uniform(0.4, 1.2), d
    for _ in range(110):
        side = rng.choice([-1, 1])
        d = rng.uniform(1.6, 8)
        warm = WHITE if rng.random() < 0.7 else (0.62, 0.80, 1.0)
        yield vx + side * rng.uniform(0.5, 1.1) / d, vy - rng.uniform(0.05, 0.85) / d, warm, rng.uniform(0.05, 0.30), d


def street(width, height, rng, radius):
    """The scene through a lens focused near: a point at distance d becomes a disc of about `radius` widths."""
    groups = [(1.9, 1.35), (4.2, 1.0), (99, 0.78)]
    layers = [np.zeros((height, width, 3), np.float32) for _ in groups]
    for x, y, colour, power, d in street_lights(rng):
        layer = next(l for l, (limit, _) in zip(layers, groups) if d <= limit)
        # The light itself, and its streak on the wet road.
        for k, (py, share) in enumerate([(y, 1.0), (2 * VANISHING[1] + 0.05 - y, 0.20)]):
            reach = 1 if k == 0 else 9
            for s in range(reach):
                row = int((py + 0.006 * s * (s - 4) * k / d) * width)
                column = int((x + 0.002 * k * rng.normal()) * width)
                if 0 <= row < height and 0 <= column < width and (k == 0 or y < VANISHING[1] + 0.14):
                    layer[row, column] += np.array(colour) * power * share / reach * fading(d)
    y = np.linspace(0, height / width, height)[:, None]
    x = np.linspace(0, 1, width)[None, :]
    glow = np.exp(-((y - VANISHING[1]) ** 2) / 0.018 - (x - VANISHING[0]) ** 2 / 0.10)
    light = glow[..., None] * np.array([0.105, 0.062, 0.045])
    light = light + mix((0.010, 0.016, 0.034), (0.006, 0.008, 0.014), smoothstep(0.0, 0.7, y + 0 * x))
    blocks = fbm(x * 7 + 0 * y, y * 2.5 + 0 * x, 3, 5)
    light = light * (0.8 + 0.7 * blurred(blocks, width * 0.01))[..., None]
    for layer, (_, share) in zip(layers, groups):
        size = radius * share * width
        light = light + defocused(layer, size) * (np.pi * (0.026 * share * width) ** 2) * 0.62
    return np.maximum(light, 0)


def drop_shapes(rng):
    """(x, y, radius, stretch) in widths: a few large drops, very many small ones, none upon another."""
    placed = np.empty((0, 3))
    for x, y, length, r in RUNNING:
        placed = np.vstack([placed, (x, y, r)])
        yield x, y, r, 1.3
        for t in np.cumsum(rng.uniform(0.008, 0.022, 40)):  # what a running drop leaves behind
            if t < length:
                aside = x + 0.006 * (np.sin(31 * t + 50 * x) - np.sin(50 * x))
                placed = np.vstack([placed, (aside, y - r - t, 0.006)])
                yield aside, y - r - t, r * rng.uniform(0.10, 0.34) * (1 - 0.5 * t / length), 1.15
    for count, low, high, gap in [(34, 0.0095, 0.0175, 1.25), (150, 0.0045, 0.0095, 1.2), (700, 0.0016, 0.0042, 1.15),
                                  (2600, 0.0005, 0.0015, 1.1)]:
        for _ in range(count):
            x, y, r = rng.uniform(-0.01, 1.01), rng.uniform(-0.01, 0.76), rng.uniform(low, high)
            if len(placed) and np.any(np.hypot(placed[:, 0] - x, placed[:, 1] - y) < (placed[:, 2] + r) * gap):
                continue
            placed = np.vstack([placed, (x, y, r)])
            yield x, y, r, rng.uniform(1.0, 1.28) if r > 0.004 else 1.0


def draw_drop(light, scene, x, y, radius, stretch, seed):
    """A drop is a small lens: it shows the whole street upside down, dark towards its rim."""
    height, width = light.shape[:2]
    cx, cy, r = x * width, y * width, max(radius * width, 0.7)
    reach = r * 1.5 * stretch + 2
    x0, x1 = max(int(cx - reach), 0), min(int(cx + reach) + 1, width)
    y0, y1 = max(int(cy - reach), 0), min(int(cy + reach) + 1, height)
    if x0 >= x1 or y0 >= y1:
        return
    py, px = np.mgrid[y0:y1, x0:x1]
    u, v = (px - cx) / r, (py - cy) / (r * stretch)
    v = v + 0.10 * (stretch - 1) * 4 * (1 - u * u)  # hangs a little lower
    angle = np.arctan2(v, u)
    wobble = 1 + 0.16 * perlin(np.cos(angle) * 1.1 + seed * 3.7, np.sin(angle) * 1.1 + seed * 1.3, 3)
    rho = np.hypot(u, v) / wobble
    inside = np.clip((1 - rho) * r + 0.5, 0, 1)
    bend = 0.30 + 0.62 * rho**2
    outward = np.minimum(rho, 1) / np.maximum(rho, 1e-3) * bend * width
    sx = (0.5 + (x - 0.5) * 0.55) * width - u * outward * 0.62
    sy = (0.40 + (y - 0.375) * 0.35) * width - v * outward * 0.52
    seen = scene[np.clip(sy, 0, height - 1).astype(int), np.clip(sx, 0, width - 1).astype(int)]
    rim = 1 - 0.88 * smoothstep(0.55, 1.0, rho)
    lower = 0.030 * smoothstep(0.35, 0.85, v) * (1 - smoothstep(0.82, 0.98, rho))
    shown = seen * rim[..., None] * 1.15 + lower[..., None] * np.array([0.9, 0.75, 0.65])
    spark = np.exp(-((u + 0.32) ** 2 + (v + 0.42) ** 2) / 0.012) * (0.35 if r > 4 else 0)
    shown = shown + spark[..., None] * np.array([0.75, 0.85, 1.0])
    shade = np.exp(-((np.maximum(rho - 1, 0) / 0.16) ** 2)) * 0.45 * (1 - inside)
    patch = light[y0:y1, x0:x1]
    patch *= (1 - shade)[..., None]
    patch += (shown - patch) * inside[..., None]


def render(width, height, rng):
    seed = int(rng.integers(1 << 30))
    light = street(width, height, np.random.default_rng(seed), 0.026)
    scene = street(width, height, np.random.default_rng(seed), 0.02) * 1.5
    scenes = [blurred(scene, 0.011 * width), blurred(scene, 0.035 * width)]
    # Fine wetness on the glass spreads a little of the light.
    wet = 0.5 + 0.5 * fbm(np.linspace(0, 9, width)[None, :] + np.zeros((height, 1)),
                          np.linspace(0, 5, height)[:, None] + np.zeros((1, width)), 4, 12)
    light = mix(light, blurred(light, width * 0.02), 0.22 + 0.25 * np.clip(wet, 0, 1))
    for k, (x, y, r, stretch) in enumerate(drop_shapes(rng)):
        draw_drop(light, scenes[0 if r > 0.008 else 1], x, y, r, stretch, k)
    return developed(bloom(light, 0.16, 0.7), rng, exposure=1.0, vignette=0.4, grain=0.010, saturation=1.08)
