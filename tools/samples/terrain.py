"""Height fields in perspective: which point of the ground each pixel sees, its slope, and where the sun reaches.

A height field is a function of x, y and the distance between samples (so that it can leave out what is finer); it
returns metres.
"""

import numpy as np


class View:
    """A camera above the ground. World: x right, y ahead, heights up, in metres.

    It looks level, and the horizon is set to a row of the picture as with a shift lens, so that upright stays upright.
    `field`: half the width of what is seen, over its distance.
    """

    def __init__(self, width, height, eye, field=0.6, horizon=0.4):
        self.width, self.height, self.eye = width, height, eye
        self.focal = width / 2 / field
        column = (np.arange(width) + 0.5 - width / 2) / self.focal
        row = (horizon * height - np.arange(height) - 0.5) / self.focal
        self.across, self.up = column[None, :], row[:, None]

    def directions(self):
        """Unit vectors (x, y, height) through every pixel."""
        across, up = np.broadcast_arrays(self.across, self.up)
        length = np.sqrt(1 + across**2 + up**2)
        return np.stack([across / length, 1 / length, up / length], axis=-1).astype(np.float32)


def depths(view, height_at, near, far, steps=900):
    """Distance ahead of the ground seen by each pixel; infinite where there is only sky.

    Along a column the ground is sampled at distances that grow evenly in proportion. A pixel sees the first sample that
    rises to its own slope.
    """
    ahead = near * (far / near) ** (np.arange(steps) / (steps - 1))
    x = view.eye[0] + ahead[:, None] * view.across
    y = np.broadcast_to(view.eye[1] + ahead[:, None], x.shape)
    slope = (height_at(x, y, ahead[:, None] / view.focal) - view.eye[2]) / ahead[:, None]
    highest = np.maximum.accumulate(slope, axis=0)
    wanted = view.up[::-1, 0]  # rising
    out = np.full((view.height, view.width), np.inf)
    for c in range(view.width):
        i = np.searchsorted(highest[:, c], wanted)
        seen = i < steps
        i = np.clip(i, 1, steps - 1)
        below, above = slope[i - 1, c], slope[i, c]
        part = np.clip((wanted - below) / np.maximum(above - below, 1e-9), 0, 1)
        out[::-1, c] = np.where(seen, ahead[i - 1] + part * (ahead[i] - ahead[i - 1]), np.inf)
    return out


def normals(height_at, x, y, step):
    """Unit vectors upright on the ground. `step`: over what distance the slope is taken."""
    here = height_at(x, y, step)
    dx = (height_at(x + step, y, step) - here) / step
    dy = (height_at(x, y + step, step) - here) / step
    length = np.sqrt(1 + dx * dx + dy * dy)
    return here, np.stack([-dx / length, -dy / length, 1 / length], axis=-1)


class Shadows:
    """Where the ground stands in its own shadow.

    Heights are taken on a grid whose rows run away from the sun; along a row the shadow's upper edge sinks by the sun's
    slope until higher ground lifts it again.
    """

    def __init__(self, height_at, sun, low, high, cells=1400):
        flat = np.hypot(sun[0], sun[1])
        self.along = np.array([-sun[0], -sun[1]]) / flat
        corners = np.array([(x, y) for x in (low[0], high[0]) for y in (low[1], high[1])])
        a, b = corners @ self.along, corners @ np.array([-self.along[1], self.along[0]])
        self.a0, self.b0 = a.min(), b.min()
        self.da, self.db = (a.max() - a.min()) / (cells - 1), (b.max() - b.min()) / (cells - 1)
        ga, gb = self.a0 + self.da * np.arange(cells)[:, None], self.b0 + self.db * np.arange(cells)[None, :]
        x, y = ga * self.along[0] - gb * self.along[1], ga * self.along[1] + gb * self.along[0]
        self.edge = height_at(x, y, np.float32(self.da))
        drop = self.da * sun[2] / flat
        for i in range(1, cells):
            np.maximum(self.edge[i], self.edge[i - 1] - drop, out=self.edge[i])

    def light(self, x, y, height, soft):
        """0 in shadow to 1 in the sun; `soft`: metres of height over which it changes."""
        a = np.clip((x * self.along[0] + y * self.along[1] - self.a0) / self.da, 0, len(self.edge) - 1.001)
        b = np.clip((-x * self.along[1] + y * self.along[0] - self.b0) / self.db, 0, len(self.edge) - 1.001)
        i, j = a.astype(int), b.astype(int)
        u, v = a - i, b - j
        e = self.edge
        edge = (e[i, j] * (1 - u) + e[i + 1, j] * u) * (1 - v) + (e[i, j + 1] * (1 - u) + e[i + 1, j + 1] * u) * v
        return np.clip(1 + (height - edge) / soft, 0, 1)
