"""Noise that pictures are made of, evaluated at any coordinates."""

import numpy as np


def lattice(seed):
    rng = np.random.default_rng(seed)
    order = rng.permutation(256).astype(np.int32)
    angle = rng.uniform(0, 2 * np.pi, 256)
    return np.concatenate([order, order]), np.cos(angle).astype(np.float32), np.sin(angle).astype(np.float32)


def perlin(x, y, seed=0):
    """Gradient noise with lattice cells of side 1, roughly in [-0.7, 0.7]. Repeats every 256."""
    order, gx, gy = lattice(seed)
    x0, y0 = np.floor(x), np.floor(y)
    fx, fy = (x - x0).astype(np.float32), (y - y0).astype(np.float32)
    i, j = x0.astype(np.int32) & 255, y0.astype(np.int32) & 255
    left, right = order[i], order[(i + 1) & 255]

    def corner(column, dj, dx, dy):
        k = order[(column + ((j + dj) & 255)) & 255]
        return gx[k] * (fx - dx) + gy[k] * (fy - dy)

    u = fx * fx * fx * (fx * (fx * 6 - 15) + 10)
    v = fy * fy * fy * (fy * (fy * 6 - 15) + 10)
    top = corner(left, 0, 0, 0) * (1 - u) + corner(right, 0, 1, 0) * u
    bottom = corner(left, 1, 0, 1) * (1 - u) + corner(right, 1, 1, 1) * u
    return top * (1 - v) + bottom * v


def fbm(x, y, octaves, seed=0, gain=0.5):
    """Octaves of noise, each twice as fine and `gain` times as strong, turned so that their lattices don't line up."""
    total, strength = 0, 1.0
    for k in range(octaves):
        total = total + strength * perlin(x, y, seed + k)
        x, y = 1.6 * x - 1.2 * y + 17.3, 1.2 * x + 1.6 * y - 5.9
        strength *= gain
    return total


def ridged(x, y, octaves, seed=0, gain=0.5):
    """Sharp crests, finer where they already stand high, as weather leaves mountains. Roughly in [0, 1.6]."""
    total, strength, weight = 0, 1.0, 1.0
    for k in range(octaves):
        crest = (1 - np.abs(perlin(x, y, seed + k)) * 1.6) ** 2
        total = total + strength * weight * crest
        weight = np.clip(crest * 1.4, 0, 1)
        x, y = 1.6 * x - 1.2 * y + 11.7, 1.2 * x + 1.6 * y + 3.1
        strength *= gain
    return total


def smoothstep(low, high, v):
    t = np.clip((v - low) / (high - low), 0, 1)
    return t * t * (3 - 2 * t)
