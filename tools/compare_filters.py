#!/usr/bin/env python3
"""Filters without a GPU beside other programs that do the same, on a picture of 4000 x 3000.

    tools/compare_filters.py build/release/bench/kernel_bench

Ours are pictures in, pictures out (`imageByFilteringImage`); theirs are OpenCV (Debian's python3-opencv) on three
channels, as its own users would, and FFmpeg's look-up filter. Both sides take turns, so that what else the machine does
meets both; the least time of each counts. Prints a table and fails where a filter of ours is behind.
"""

import re
import subprocess
import sys
import tempfile
import time
from pathlib import Path

try:
    import cv2
    import numpy as np
except ImportError as missing:
    sys.exit(f"{missing}: Debian has it as python3-opencv")

WIDTH, HEIGHT = 4000, 3000
TURNS = 3


def photo():
    """A ramp in each channel with some noise on it."""
    y, x = np.mgrid[0:HEIGHT, 0:WIDTH]
    ramps = np.stack([x * 255 // WIDTH, y * 255 // HEIGHT, (x + y) * 255 // (WIDTH + HEIGHT)], -1)
    noise = np.random.default_rng(1).integers(0, 31, (HEIGHT, WIDTH, 3))
    return (ramps + noise & 255).astype(np.uint8)


def toon(picture, levels=10, threshold=0.2):
    red = picture[:, :, 0]
    across = cv2.Sobel(red, cv2.CV_32F, 1, 0)
    down = cv2.Sobel(red, cv2.CV_32F, 0, 1)
    flat = cv2.compare(cv2.magnitude(across, down), 255 * threshold, cv2.CMP_LT)
    steps = np.floor(np.arange(256) / 255 * levels + 0.5) / levels * 255
    return cv2.bitwise_and(cv2.LUT(picture, np.clip(np.round(steps), 0, 255).astype(np.uint8)), cv2.merge([flat] * 3))


def seconds(work):
    begin = time.perf_counter()
    work()
    return time.perf_counter() - begin


def lookup_seconds(raw, cube):
    """FFmpeg's own time for a frame: what more frames take with the filter than without, by its -benchmark."""
    def run(frames, graph):
        command = ["ffmpeg", "-hide_banner", "-benchmark", "-stream_loop", "-1", "-f", "rawvideo", "-pix_fmt", "rgb24",
                   "-s", f"{WIDTH}x{HEIGHT}", "-i", raw, "-frames:v", str(frames), "-vf", graph, "-f", "null", "-"]
        told = subprocess.run(command, capture_output=True, text=True, check=True, timeout=300).stderr
        return float(re.search(r"rtime=([\d.]+)", told)[1])
    graph = f"lut3d={cube}:interp=trilinear"
    return (run(6, graph) - run(2, graph)) / 4 - (run(6, "null") - run(2, "null")) / 4


def ours(bench):
    told = subprocess.run([bench], capture_output=True, text=True, check=True, timeout=300).stdout
    return {name: float(value) / 1000 for name, value in re.findall(r"^(\w+) ([\d.]+) ms$", told, re.M)}


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    picture = photo()
    weights = np.array([[0.3588, 0.7044, 0.1368], [0.2990, 0.5870, 0.1140], [0.2392, 0.4696, 0.0912]], np.float32)
    with tempfile.TemporaryDirectory() as folder:
        raw, cube = Path(folder, "photo.rgb"), Path(folder, "table.cube")
        picture.tofile(raw)
        entries = np.random.default_rng(2).random((64**3, 3))
        np.savetxt(cube, entries, "%.5f", header="LUT_3D_SIZE 64", comments="")
        theirs = {"sepia": lambda: seconds(lambda: cv2.transform(picture, weights)),
                  "toon": lambda: seconds(lambda: toon(picture)),
                  "lookup": lambda: lookup_seconds(raw, cube),
                  "blur10": lambda: seconds(lambda: cv2.GaussianBlur(picture, (0, 0), 10))}
        best = {name: (float("inf"), float("inf")) for name in theirs}
        for _ in range(TURNS):
            measured = ours(sys.argv[1])
            for name, peer in theirs.items():
                best[name] = (min(best[name][0], measured[name]), min(best[name][1], peer()))
    print(f"{'filter':10}{'ours':>10}{'theirs':>10}{'ratio':>8}   limit 1")
    for name, (mine, peer) in best.items():
        print(f"{name:10}{1e3 * mine:8.1f} ms{1e3 * peer:8.1f} ms{mine / peer:8.2f}")
    sys.exit(any(mine > peer for mine, peer in best.values()))


if __name__ == "__main__":
    main()
