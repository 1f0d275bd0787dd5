"""Mountain ridges one behind the other, valley mist between them, the sun just over the last."""

import numpy as np

from .camera import bloom, developed, mix
from .noise import fbm, ridged, smoothstep
from .terrain import View, depths, normals, Shadows

SUN = np.array([-0.20, 0.975, 0.052])
SUN = SUN / np.linalg.norm(SUN)


def spur(x, y, h):
    """A wooded shoulder in the foreground, left, falling towards the right."""
    top = 588 - 0.30 * np.maximum(x + 620, 0) + 34 * fbm(x / 160, y / 160, 4, 81)
    weight = np.exp(-(((y - 1250 - 0.2 * x) / 430) ** 2)) * smoothstep(700, -100, x)
    return np.maximum(top - h, 0) * weight


def conifers(x, y, spacing=7.5):
    """Cones at jittered places of a grid; the tallest that covers a point counts."""
    u, v = x / spacing, y / spacing
    i, j = np.floor(u), np.floor(v)
    tallest = 0
    for di in (-1, 0, 1):
        for dj in (-1, 0, 1):
            a, b = i + di, j + dj
            one = np.abs(np.sin(a * 127.1 + b * 311.7) * 43758.5) % 1
            two = np.abs(np.sin(a * 269.5 + b * 183.3) * 43758.5) % 1
            away = np.hypot(u - a - one, v - b - two) * spacing
            tall = 10 + 17 * one * two + 6 * one
            tallest = np.maximum(tallest, tall * np.clip(1 - away / (0.21 * tall), 0, 1))
    return tallest


def height_at(x, y, step):
    """Metres. Ranges lie across the view; trees roughen what is near enough to show them."""
    u, v = x / 2600 + 3.1, y / 1900 + 1.7
    warp = 0.35 * fbm(u * 0.7, v * 0.7, 2, 40)
    rough = ridged(u * 0.8 + warp, v + warp, 8, 7, 0.47)
    plains = fbm(u * 0.35, v * 0.3, 2, 61)
    h = 620 * rough * (0.75 + 0.9 * plains) - 240
    h = h + 260 * smoothstep(9000, 26000, y)
    h = h + spur(x, y, h)
    wooded = smoothstep(640, 480, h) * smoothstep(9, 2.0, step)
    return h + wooded * conifers(x, y)


def sky(direction, glow):
    up = direction[..., 2]
    colour = mix((0.95, 0.50, 0.27), (0.50, 0.44, 0.50), smoothstep(0.0, 0.16, up))
    colour = mix(colour, (0.09, 0.17, 0.40), smoothstep(0.08, 0.48, up))
    plane = 1 / np.maximum(up + 0.05, 0.03)
    streaks = fbm(direction[..., 0] * plane * 0.55 + 4, plane * 0.8, 6, 21, 0.55)
    cloud = smoothstep(-0.05, 0.55, streaks) * smoothstep(0.02, 0.14, up)
    lit = mix((0.62, 0.42, 0.42), (1.9, 0.85, 0.42), np.clip(glow * 1.4, 0, 1))
    colour = mix(colour, lit, cloud * 0.55)
    return colour


def render(width, height, rng):
    view = View(width, height, eye=(0, 0, 640), field=0.52, horizon=0.44)
    direction = view.directions()
    towards = np.clip(direction.astype(float) @ SUN, -1, 1)
    glow = np.exp((towards - 1) * 26) * 0.7 + np.exp((towards - 1) * 5) * 0.3

    light = sky(direction, glow)
    light = light + glow[..., None] * np.array([1.5, 0.62, 0.20]) * 0.9
    disc = smoothstep(0.999940, 0.999968, towards) + 0.05 * np.exp((towards - 1) * 2600)
    light = light + (disc * 44)[..., None] * np.array([1.0, 0.66, 0.30])

    ahead = depths(view, height_at, 260, 42000, 1500)
    ground = np.isfinite(ahead)
    rows, columns = np.nonzero(ground)
    z = ahead[ground]
    x = view.eye[0] + z * view.across[0, columns]
    y = view.eye[1] + z
    step = np.maximum(z / view.focal * 1.2, 0.5)
    h, normal = normals(height_at, x, y, step)

    shadows = Shadows(height_at, SUN, (-16000, -500), (16000, 44000), 1500)
    lit = shadows.light(x, y, h, 40) * np.clip(normal @ SUN, 0, 1)
    speckle = fbm(x / 40, y / 40, 4, 70)
    bare = smoothstep(300, 620, h + 160 * speckle - 240 * (1 - normal[:, 2]))
    albedo = mix((0.030, 0.042, 0.022), (0.12, 0.105, 0.09), bare)
    ambient = (0.5 + 0.5 * normal[:, 2])[:, None] * np.array([0.34, 0.44, 0.66])
    back = np.clip(normal[:, 1] * -0.2 + 0.3, 0, 1)[:, None] * np.array([0.30, 0.20, 0.16])
    colour = albedo * (ambient + back + lit[:, None] * np.array([7.0, 3.3, 1.5]))

    # Mist lies in the valleys: its density halves every 80 metres up, and drifts in banks.
    distance = z * np.sqrt(1 + view.across[0, columns] ** 2 + view.up[rows, 0] ** 2)
    fall = 115.0
    banks = np.clip(0.9 + 1.3 * fbm(x / 2200, y / 1400, 4, 33), 0.15, 3)
    h = np.where(np.abs(h - 640) < 1, 639.0, h)  # level with the eye the formula divides by nothing
    mean = fall * (np.exp((60 - h) / fall) - np.exp((60 - 640) / fall)) / (640 - h)
    thick = 0.0050 * banks * smoothstep(300, 3500, distance) * mean
    optical = distance * (np.maximum(thick, 0) + 0.000052)
    near_sun = glow[ground]
    clear = np.exp(-optical)
    mist = mix((0.30, 0.36, 0.50), (0.80, 0.52, 0.40), smoothstep(3000, 26000, distance))
    mist = mist * 0.85 + near_sun[:, None] * np.array([1.9, 0.85, 0.35])
    light[ground] = colour * clear[:, None] + mist * (1 - clear)[:, None]

    return developed(bloom(light, 0.30, 1.1), rng, exposure=0.50, vignette=0.35, grain=0.007, saturation=1.25)
