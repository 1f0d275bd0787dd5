"""Northern lights over a still lake, stars, a lit hut on the far shore. Standing."""

import numpy as np

from .camera import blurred, bloom, developed, mix
from .noise import fbm, perlin, ridged, smoothstep
from .terrain import View, depths, normals

HORIZON = 0.66


def curtain_at(x, y):
    """How much light stands over a place of the ground, in units of 100 km: thin folded bands with rays along them."""
    fold = 0.55 * perlin(x * 0.55 + 2.3, y * 0.55, 3) + 0.16 * perlin(x * 2.1, y * 2.1, 4)
    total = 0
    for level, width, share, seed in [(0.0, 0.030, 1.0, 11), (0.30, 0.05, 0.30, 13)]:
        band = perlin(x * 0.30 + fold + seed, y * 0.52 + 0.6 * fold, 9) - 0.12 + level * 0.9
        rays = 0.25 + 1.5 * np.clip(0.5 + 1.3 * fbm(x * 7.5, y * 7.5, 4, seed, 0.62), 0, 1.5) ** 2
        total = total + share * np.exp(-((band / width) ** 2)) * rays
    return total * smoothstep(-0.35, 0.25, perlin(x * 0.33, y * 0.33 + 5, 17))


def aurora(direction, rng):
    """Light gathered along each ray through the layer from 100 to 240 km."""
    up = np.maximum(direction[..., 2], 0.03)
    light = np.zeros(direction.shape, np.float32)
    shift = rng.uniform(0, 1, direction.shape[:2]).astype(np.float32)  # grain instead of steps
    for k in range(56):
        t = (k + shift) / 56
        high = 1.0 + 1.5 * t
        x, y = direction[..., 0] / up * high, direction[..., 1] / up * high
        far = np.exp(-np.hypot(x, y) * 0.10)
        amount = curtain_at(x, y) * far * np.exp(-3.2 * t) * smoothstep(0, 0.07, t) / (up + 0.25)
        colour = mix((0.10, 1.0, 0.42), (0.52, 0.18, 0.80), smoothstep(0.12, 0.65, t))
        light += amount[..., None] * colour
    return light * 0.09


def stars(width, height, rng):
    out = np.zeros((height, width, 3), np.float32)
    scale = width / 1500
    count = 2600
    x, y = rng.uniform(0, width - 1, count).astype(int), rng.uniform(0, height - 1, count).astype(int)
    power = (0.06 * rng.pareto(1.4, count) + 0.03).clip(0, 5) * scale**2 * 5
    tint = mix((1.0, 0.80, 0.62), (0.70, 0.84, 1.0), rng.uniform(0, 1, count))
    np.add.at(out, (y, x), power[:, None] * tint)
    return blurred(out, 0.85 * max(scale, 0.5))


def skyline(view, base, swing, seed, fine):
    """Slopes of a far ridge's upper edge over the columns."""
    a = view.across[0]
    return base + swing * (ridged(a * 1.3 + seed, np.full_like(a, seed * 0.37), 8, seed, 0.48) - 0.8) + fine


def spruces(view, rng, count, low, high):
    """Upper edge of a shore full of spruces: each a narrow cone with ragged sides."""
    edge = np.full(view.width, 0.004)
    a = view.across[0]
    for place in rng.uniform(a[0], a[-1], count):
        tall = rng.uniform(low, high) * (0.55 + 0.75 * abs(perlin(np.array(place * 3.0), np.array(0.5), 5)) * 2)
        half = tall * rng.uniform(0.13, 0.2)
        near = np.abs(a - place) / half
        ragged = 1 + 0.16 * np.sin(near * 23 + place * 900)
        edge = np.maximum(edge, tall * (1 - near * ragged).clip(0, 1) ** 0.9)
    return edge


def covering(view, edge):
    """1 below an upper edge given as slopes, 0 above, with a soft pixel between."""
    return np.clip((edge[None, :] - view.up) * view.focal + 0.5, 0, 1)


def mountain_height(x, y, step):
    """Metres above the lake; a valley opens right of the middle."""
    rough = ridged(x / 2700 + 0.6, y / 2700 + 7.3, 9, 23, 0.48)
    open_sky = smoothstep(200, 3600, np.abs(x - 0.115 * y))
    return 1450 * (rough - 0.42) * smoothstep(2200, 6500, y) * (0.18 + 0.82 * open_sky) - 20


def mountains(view, light, shine):
    """Snow on what is not steep, lit by the sky from above and a little from the left."""
    ahead = depths(view, mountain_height, 2200, 15000, 700)
    ground = np.isfinite(ahead)
    columns = np.nonzero(ground)[1]
    z = ahead[ground]
    x = z * view.across[0, columns]
    h, normal = normals(mountain_height, x, z, np.maximum(z / view.focal * 1.3, 4))
    rough = fbm(x / 130, z / 130, 4, 66)
    snow = smoothstep(0.50, 0.72, normal[:, 2] + 0.16 * rough + 0.00010 * (h - 500))
    lit = 0.18 + 0.5 * np.clip(normal @ np.array([-0.62, -0.35, 0.70]), 0, 1) ** 1.4
    albedo = mix((0.045, 0.050, 0.060), (0.62, 0.70, 0.80), snow)
    colour = albedo * lit[:, None] * (shine * 1.5 + np.array([0.020, 0.034, 0.060]))
    air = 1 - np.exp(-z / 26000 - np.exp(-h / 150) * 0.5)
    light[ground] = mix(colour, np.array([0.022, 0.042, 0.050]), air)
    return ~ground


def upper_half(view, rng):
    direction = view.directions()
    above = int(np.sum(view.up[:, 0] > 0))
    up = np.maximum(direction[..., 2], 0)
    light = mix((0.030, 0.060, 0.075), (0.006, 0.011, 0.030), smoothstep(0.0, 0.6, up))
    glow = np.exp(-((direction[..., 0] - 0.10) ** 2) / 0.10 - up / 0.07)
    light = light + glow[..., None] * np.array([0.10, 0.060, 0.022])
    half = direction[:above:2, ::2]
    curtains = np.repeat(np.repeat(aurora(half, rng), 2, 0), 2, 1)[:above, : view.width]
    curtains = blurred(curtains, view.width / 1500 * 1.7)
    light[:above] += np.maximum(curtains, 0)

    shine = curtains[: above // 2].mean(axis=(0, 1))
    a = view.across[0]
    fine = 0.004 * fbm(a * 60, a * 0 + 2, 4, 8)
    open_sky = mountains(view, light, shine)
    hills = 0.032 + 0.11 * np.maximum(a + 0.05, 0) ** 1.2 + 0.10 * np.maximum(-a - 0.12, 0)
    near = skyline(view, hills, 0.055, 41, fine)
    light = mix(light, np.array([0.006, 0.0105, 0.013]), covering(view, near))
    open_sky = open_sky * (1 - covering(view, near))
    trees = spruces(view, rng, 420, 0.010, 0.034)
    trees = np.maximum(trees, spruces(view, rng, 60, 0.05, 0.125) * smoothstep(0.16, 0.40, np.abs(a + 0.06)))
    light = mix(light, np.array([0.0022, 0.0036, 0.0042]), covering(view, trees))
    hut(view, light)
    shining = stars(view.width, above, rng) * (open_sky * (1 - covering(view, trees)))[:above, :, None]
    return light, shining, above


def hut(view, light):
    """A dark gable with a warm window, small, right of the middle at the water's edge."""
    across, up = np.broadcast_arrays(view.across, view.up)
    x = (across - 0.115) / 0.017
    roof = (up > 0.002) & (up < 0.002 + 0.017 * np.clip(1.35 - 0.75 * np.abs(x), 0, 1.25)) & (np.abs(x) < 1.15)
    light[roof] = (0.003, 0.003, 0.003)
    for centre in (-0.42, 0.36):
        window = (np.abs(x - centre) < 0.22) & (up > 0.006) & (up < 0.0125)
        light[window] = (3.2, 1.45, 0.42)
    spill = np.exp(-((across - 0.115) ** 2 + (up - 0.004) ** 2) / 0.0011)
    light += spill[..., None] * np.array([0.055, 0.026, 0.008])


def lake(view, light, above):
    """The upper half mirrored; small waves smear it upright, more so near the camera."""
    rows = view.height - above
    direction = view.directions()[above:]
    z = 1.7 / -direction[..., 2]
    x, y = direction[..., 0] * z, direction[..., 1] * z
    reach = y * y / (1.7 * view.focal)
    fade = np.exp(-0.5 * (reach / 0.5) ** 2)
    calm = smoothstep(-0.35, 0.25, fbm(x / 26, y / 50, 2, 71))
    waves = fbm(x / 1.1, y / 0.34, 4, 72) * 0.020 + fbm(x / 0.16, y / 0.10, 2, 77) * 0.006
    slope = fade * waves * (0.35 + 0.65 * calm)
    soft = blurred(light[:above], 1.2 * view.width / 1500, 8 * view.width / 1500)
    wide = blurred(light[:above], 3 * view.width / 1500, 26 * view.width / 1500)
    row, column = np.mgrid[0:rows, 0 : view.width]
    source = above - 1 - row - 2 * slope * view.focal
    source = np.clip(source, 0, above - 1.001)
    aside = np.clip(column + 0.5 * slope * view.focal, 0, view.width - 1).astype(int)
    i, part = source.astype(int), (source % 1)[..., None]
    sharp = soft[i, aside] * (1 - part) + soft[i + 1, aside] * part
    mirrored = mix(sharp, wide[i, aside], 0.35 + 0.3 * calm)
    facing = -direction[..., 2]
    fresnel = 0.30 + 0.62 * (1 - facing) ** 3
    return mirrored * fresnel[..., None] + np.array([0.0015, 0.004, 0.006])


def render(width, height, rng):
    view = View(width, height, (0, 0, 1.7), field=0.46, horizon=HORIZON)
    light, shining, above = upper_half(view, rng)
    light[above:] = lake(view, light, above)
    light[:above] += shining  # only now: the ripples leave nothing of a star
    return developed(bloom(light, 0.14, 0.55), rng, exposure=1.95, vignette=0.35, grain=0.010, saturation=1.05)
