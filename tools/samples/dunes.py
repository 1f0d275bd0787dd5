"""Dunes in the last hour of sun: long shadows on the lee sides, wind ripples near the camera."""

import numpy as np

from .camera import bloom, developed, mix
from .noise import fbm, perlin, smoothstep
from .terrain import Shadows, View, depths, normals

SUN = np.array([-0.86, 0.46, 0.215])
SUN = SUN / np.linalg.norm(SUN)
WIND = np.array([0.93, -0.36])
EYE = (-14.0, 23.0, 44.5)  # beside a crest that runs from the left foreground into the middle


def crests(x, y):
    """Sharp ridges that lean downwind: the pattern is read at a place shifted by its own height."""
    u, v = x / 330 + 5.3, y / 250 + 2.1
    bend = 0.45 * perlin(u * 0.6, v * 0.6, 3)
    tall = 0.45 + 0.75 * smoothstep(-0.5, 0.5, perlin(u * 0.35 + 9, v * 0.35, 4))
    edge = np.abs(perlin(u + bend, v - bend, 5))
    return tall * (1 - np.sqrt(edge * edge + 0.00008) * 1.7)


def height_at(x, y, step):
    lean = 75 * (crests(x, y) - 0.5)
    big = crests(x + WIND[0] * lean, y + WIND[1] * lean)
    u, v = x / 70, y / 55
    small = 1 - np.sqrt(perlin(u + 0.5 * perlin(u * 0.5, v * 0.5, 12), v, 11) ** 2 + 0.004) * 1.6
    rolling = 9 * perlin(x / 900, y / 900, 15)
    return 52 * big + 2.2 * small + rolling - 14


def ripples(x, y, step):
    """Slopes of wind ripples a hand wide; they fade where a pixel holds several."""
    slope_x, slope_y = 0, 0
    bend = 1.4 * fbm(x / 2.2, y / 2.2, 2, 30) + 5 * perlin(x / 19, y / 19, 33)
    strength = smoothstep(-0.45, 0.3, perlin(x / 14, y / 14, 35))
    for wave, share in [(0.42, 0.20), (0.23, 0.10)]:
        phase = 2 * np.pi * (x * WIND[0] + y * WIND[1]) / wave + bend * (0.42 / wave)
        fade = np.exp(-((step / wave * 2.2) ** 2)) * share * strength
        slope = np.cos(phase) + 0.35 * np.cos(2 * phase + 0.6)
        slope_x, slope_y = slope_x + fade * slope * WIND[0], slope_y + fade * slope * WIND[1]
    return slope_x, slope_y


def sky(direction):
    up = direction[..., 2]
    colour = mix((1.02, 0.72, 0.48), (0.52, 0.58, 0.68), smoothstep(0.0, 0.14, up))
    colour = mix(colour, (0.13, 0.26, 0.52), smoothstep(0.08, 0.50, up))
    near_sun = np.exp((direction @ SUN - 1) * 3.0)
    plane = 1 / (np.maximum(up, 0) + 0.06)
    wisps = fbm(direction[..., 0] * plane * 0.35 + 0.3 * plane, plane * 0.9 + 7, 6, 50, 0.52)
    veil = smoothstep(0.05, 0.75, wisps) * smoothstep(0.03, 0.16, up)
    colour = mix(colour, (1.25, 0.92, 0.72), veil * 0.55)
    return colour + near_sun[..., None] * np.array([0.75, 0.42, 0.18])


def render(width, height, rng):
    view = View(width, height, EYE, field=0.62, horizon=0.36)
    direction = view.directions()
    light = sky(direction)
    ahead = depths(view, height_at, 3.0, 5200, 1100)
    ground = np.isfinite(ahead)
    columns = np.nonzero(ground)[1]
    z = ahead[ground]
    x, y = view.eye[0] + z * view.across[0, columns], view.eye[1] + z
    step = np.maximum(z / view.focal, 0.004)
    h, normal = normals(height_at, x, y, np.maximum(step * 1.5, 0.15))
    spread = step * np.clip(1 / np.maximum(-(direction[ground] * normal).sum(axis=1), 0.08), 1, 8)
    sx, sy = ripples(x, y, spread)
    steep = np.hypot(normal[:, 0], normal[:, 1])
    flat = smoothstep(0.60, 0.42, steep)
    normal[:, 0] -= sx * flat
    normal[:, 1] -= sy * flat
    normal /= np.linalg.norm(normal, axis=1)[:, None]

    ex, ey = view.eye[:2]
    near = Shadows(height_at, SUN, (ex - 420, ey - 20), (ex + 420, ey + 620), 1500).light(x, y, h, 0.5)
    far = Shadows(height_at, SUN, (ex - 3600, ey), (ex + 3600, ey + 5300), 1500).light(x, y, h, 3.0)
    blend = np.maximum(smoothstep(330, 480, y - ey), smoothstep(300, 400, np.abs(x - ex)))
    reached = near * (1 - blend) + far * blend
    facing = np.clip(normal @ SUN, 0, 1)

    patches = fbm(x / 60, y / 60, 3, 60)
    grains = 1 + 0.10 * rng.normal(0, 1, len(x)) * smoothstep(60, 4, z)
    albedo = mix((0.60, 0.37, 0.19), (0.70, 0.47, 0.27), 0.5 + patches) * grains[:, None]
    sun = np.array([4.7, 2.75, 1.25]) * (reached * facing)[:, None]
    from_sky = (0.55 + 0.45 * normal[:, 2])[:, None] * np.array([0.20, 0.25, 0.40])
    bounced = np.clip(0.55 - 0.45 * normal[:, 2], 0, 1)[:, None] * np.array([0.36, 0.21, 0.10])
    colour = albedo * (sun + from_sky + bounced)

    distance = z * np.sqrt(1 + view.across[0, columns] ** 2)
    dust = 1 - np.exp(-distance / 3400 - distance / 9000 * np.exp(-(h + 10) / 14))
    haze = sky(np.stack([direction[ground][:, 0], direction[ground][:, 1], np.full(len(z), 0.015)], axis=1))
    light[ground] = mix(colour, haze * 0.94, dust)
    return developed(bloom(light, 0.08, 1.3), rng, exposure=0.62, vignette=0.3, grain=0.007, saturation=1.06)
