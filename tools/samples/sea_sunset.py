"""The open sea as the sun goes down: lit cloud edges, glitter on the waves."""

import numpy as np

from .camera import bloom, developed, mix
from .noise import fbm, smoothstep
from .terrain import View

SUN = np.array([0.13, 0.989, 0.062])
SUN = SUN / np.linalg.norm(SUN)
EYE = 2.6


def clouds(direction, detail):
    """Cover, and thickness a little way towards the sun, of a layer of cloud overhead."""
    up = np.maximum(direction[..., 2], 0.012)
    x, y = direction[..., 0] / (up + 0.035), direction[..., 1] / (up + 0.035)

    def cover(x, y):
        base = fbm(x * 0.36 + 3.4, y * 0.50 + 8.2, detail, 5, 0.55)
        return smoothstep(-0.08, 0.42, base)

    return cover(x, y), cover(x + 0.10, y + 0.55)


def sky(direction, detail=7):
    up = np.maximum(direction[..., 2], 0)
    cosine = np.clip(direction @ SUN, -1, 1)
    colour = mix((1.15, 0.32, 0.07), (0.60, 0.30, 0.28), smoothstep(0.0, 0.11, up))
    colour = mix(colour, (0.11, 0.16, 0.36), smoothstep(0.05, 0.24, up))
    colour = mix(colour, (0.025, 0.055, 0.17), smoothstep(0.22, 0.60, up))
    wide, close = np.exp((cosine - 1) * 7), np.exp((cosine - 1) * 60)
    colour = colour + wide[..., None] * np.array([0.85, 0.23, 0.04]) + close[..., None] * np.array([2.2, 0.85, 0.20])
    cover, beyond = clouds(direction, detail)
    cover = cover * smoothstep(0.012, 0.06, up)
    thin = np.exp(-2.6 * beyond)
    warm = np.array([1.9, 0.62, 0.26]) * (0.30 + 1.3 * wide)[..., None]
    rosy = mix((0.62, 0.24, 0.24), (0.30, 0.17, 0.25), smoothstep(0.1, 0.5, up))
    shade = mix((0.26, 0.13, 0.16), (0.085, 0.085, 0.14), smoothstep(0.05, 0.4, up))
    lit = shade + (warm * 0.75 + rosy * 0.5) * thin[..., None]
    return mix(colour, lit, cover * (0.90 - 0.25 * close)), cover


def waves(x, y, rng, reach):
    """Slopes of the water, and how much slope is too fine for the pixel: its share goes into the glitter's width.
    `reach`: metres of water, ahead, that one pixel covers."""
    sx, sy, lost = np.zeros_like(x), np.zeros_like(x), np.full_like(x, 0.0006)
    wave = 17.0
    bend = 0.7 * fbm(x / 23, y / 23, 2, 77)
    while wave > 0.09:
        angle = rng.normal(0.15, 0.62 if wave > 2 else 0.9)
        dx, dy = np.sin(angle), np.cos(angle)
        k = 2 * np.pi / wave
        steep = 0.050 * min(1.0, (wave / 0.3) ** 0.25) * min(1.0, (2.5 / wave) ** 0.55)
        phase = k * (dx * x + dy * y) + rng.uniform(0, 2 * np.pi) + bend * min(3.0, 6 / wave + 0.4)
        keep = np.exp(-0.5 * (k * reach * (0.15 + abs(dy)) * 0.35) ** 2)
        slope = steep * (np.cos(phase) + 0.3 * np.cos(2 * phase))
        sx += keep * slope * dx
        sy += keep * slope * dy
        lost += (1 - keep**2) * steep**2 * 0.5
        wave *= 0.88
    return sx, sy, lost


def water(view, direction, rng):
    z = EYE / -direction[..., 2]
    x, y = direction[..., 0] * z, direction[..., 1] * z
    reach = y * y / (EYE * view.focal)
    sx, sy, lost = waves(x, y, rng, reach)
    gust = 0.75 + 0.7 * fbm(x / 60, y / 160, 3, 91)
    sx, sy, lost = sx * gust, sy * gust, lost * gust**2
    # Far out only the slopes that face the eye are seen; it lifts what is mirrored.
    sy = sy - 0.9 * np.sqrt(lost)
    normal = np.stack([-sx, -sy, np.ones_like(sx)], axis=-1)
    normal /= np.linalg.norm(normal, axis=-1, keepdims=True)
    facing = np.clip(-(direction * normal).sum(axis=-1), 0.02, 1)
    mirror = direction + 2 * facing[..., None] * normal
    mirror[..., 2] = np.sqrt(mirror[..., 2] ** 2 + 0.0025) + 0.35 * np.sqrt(lost)
    mirror /= np.linalg.norm(mirror, axis=-1, keepdims=True)
    fresnel = 0.02 + 0.98 * (1 - facing) ** 5
    fresnel = 0.92 * fresnel / (1 + 5.0 * np.sqrt(lost))
    seen = sky(mirror, 3)[0]
    off = (mirror[..., 0] - SUN[0]) ** 2 / (1.6 * lost + 0.00012) + (mirror[..., 2] - SUN[2]) ** 2 / (9 * lost + 0.0004)
    glint = np.exp(-0.5 * off) * 0.20 / np.sqrt((1.6 * lost + 0.00012) * (9 * lost + 0.0004)) / 12
    seen = seen + np.minimum(glint, 40)[..., None] * np.array([3.0, 1.45, 0.50])
    body = np.array([0.006, 0.022, 0.030]) + np.clip(sy + 0.05, 0, 1)[..., None] * np.array([0.02, 0.07, 0.07])
    colour = mix(body, seen, fresnel)
    air = 1 - np.exp(-z / 5200)
    level = direction.copy()
    level[..., 2] = 0.004
    return mix(colour, sky(level, 3)[0] * 0.70, air)


def render(width, height, rng):
    view = View(width, height, (0, 0, EYE), field=0.56, horizon=0.56)
    direction = view.directions()
    above = int(np.sum(view.up[:, 0] > 0))
    light = np.empty((height, width, 3), np.float32)
    light[:above], cover = sky(direction[:above])
    cosine = direction[:above].astype(float) @ SUN
    disc = smoothstep(0.999940, 0.999965, cosine) + 0.05 * np.exp((cosine - 1) * 2600)
    disc = disc * (1 - 0.7 * cover)
    light[:above] += disc[..., None] * np.array([42.0, 24.0, 9.0])
    light[above:] = water(view, direction[above:], rng)
    return developed(bloom(light, 0.20, 1.2), rng, exposure=0.44, vignette=0.35, grain=0.007, saturation=0.98)
