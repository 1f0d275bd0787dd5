#!/usr/bin/env python3
"""Makes the sample photos in assets/samples: invented places, computed from noise and light.

    python3 tools/make_samples.py                         all six, as they are shipped
    python3 tools/make_samples.py --out DIR --width 800   smaller ones elsewhere, to look at
    python3 tools/make_samples.py dunes meadow            only these

The same numpy gives the same bytes. Needs numpy and Pillow.
"""

import argparse
import importlib
import sys
import time
from pathlib import Path

import numpy as np

sys.dont_write_bytecode = True
ROOT = Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "tools"))

from samples.camera import jpeg  # noqa: E402

# Name, module, standing, JPEG quality.
PHOTOS = [
    ("dawn-ridge", "dawn_ridge", False, 88),
    ("dunes", "dunes", False, 88),
    ("sea-sunset", "sea_sunset", False, 88),
    ("city-rain", "city_rain", False, 88),
    ("meadow", "meadow", False, 88),
    ("aurora-lake", "aurora_lake", True, 88),
]


def main():
    parser = argparse.ArgumentParser(description="Makes the sample photos.")
    parser.add_argument("names", nargs="*", help="which ones; all by default")
    parser.add_argument("--out", type=Path, default=ROOT / "assets" / "samples")
    parser.add_argument("--width", type=int, default=2000, help="longer side in pixels")
    wanted = parser.parse_args()
    long, short = wanted.width, wanted.width * 3 // 4
    wanted.out.mkdir(parents=True, exist_ok=True)
    for index, (name, module, standing, quality) in enumerate(PHOTOS):
        if wanted.names and name not in wanted.names:
            continue
        began = time.monotonic()
        scene = importlib.import_module("samples." + module)
        size = (short, long) if standing else (long, short)
        pixels = scene.render(*size, np.random.default_rng(1000 + index))
        data = jpeg(pixels, quality, 6 if standing else None)
        (wanted.out / f"{name}.jpg").write_bytes(data)
        print(f"{name}.jpg: {len(data) // 1024} KB, {time.monotonic() - began:.1f} s")


if __name__ == "__main__":
    main()
