#!/usr/bin/env python3
"""Makes assets/profiles/FOGRA39-coated.icc, the colours of offset printing on coated paper, and its compressed form.

    tools/make_print_profile.py              makes both where they belong, and checks them (some minutes)
    tools/make_print_profile.py --check      only checks what lies there

The profile comes from the measurements FOGRA39L (Fogra, free to use; icc-profiles-free in Debian) by argyll's colprof:
at most 300 % ink; black from a tenth of the way to dark, rising slowly, so that skin holds none; perceptual colours
fitted from sRGB on a monitor to a print in a room. The same versions of both give the same bytes. The compressed form
is a zlib stream, as it stands in a PDF.

The check compares the profile with every measured patch, and goes from colours that can be printed to inks and back.
"""

import argparse
import os
import shutil
import struct
import subprocess
import tempfile
import zlib
from pathlib import Path

MEASURED = Path("/usr/share/color/icc/FOGRA39L.ti3")
SCREEN = Path("/usr/share/color/icc/sRGB.icc")
FOLDER = Path(__file__).resolve().parent.parent / "assets" / "profiles"
PROFILE = FOLDER / "FOGRA39-coated.icc"
COMPRESSED = FOLDER / "FOGRA39-coated.icc.zlib"

INK_LIMIT = 300  # per cent, all four together
BLACK = ("-kp", "0", ".1", "1", "1", ".6")  # at white, from, to, at black; below 1: concave
MADE = (2024, 1, 1, 0, 0, 0)
DESCRIPTION = "Lamina coated paper (FOGRA39L, 300 % ink)"
COPYRIGHT = "Made from Fogra's measurements FOGRA39L, free under the zlib licence"


def run(*command, text=None):
    return subprocess.run(command, input=text, capture_output=True, text=True, check=True).stdout


def with_fixed_date(profile):
    """Colprof writes the moment of making into the header."""
    return profile[:24] + struct.pack(">6H", *MADE) + profile[36:]


def make():
    with tempfile.TemporaryDirectory() as folder:
        base = Path(folder) / "profile"
        shutil.copy(MEASURED, base.with_suffix(".ti3"))
        run("colprof", "-qm", "-bm", "-nc", "-l", str(INK_LIMIT), *BLACK, "-s", str(SCREEN), "-cmt", "-dpp",
            "-D", DESCRIPTION, "-C", COPYRIGHT, "-O", str(base.with_suffix(".icc")), str(base))
        profile = with_fixed_date(base.with_suffix(".icc").read_bytes())
    FOLDER.mkdir(exist_ok=True)
    PROFILE.write_bytes(profile)
    COMPRESSED.write_bytes(zlib.compress(profile, 9))


def looked_up(direction, intent, colours):
    """What the profile makes of rows of numbers; Lab as it is, inks in per cent of one."""
    rows = "\n".join(" ".join(str(v) for v in colour) for colour in colours)
    lines = run("xicclu", f"-f{direction}", f"-i{intent}", "-pl", str(PROFILE), text=rows).splitlines()
    return [[float(v) for v in line.split("->")[-1].split("[")[0].split()] for line in lines if "->" in line]


def difference(one, other):
    """CIE 1976."""
    return sum((a - b) ** 2 for a, b in zip(one, other)) ** 0.5


def figures(name, values):
    print(f"{name}: {sum(values) / len(values):.2f} on the average, {max(values):.2f} at most, {len(values)} colours")


def measured_patches():
    lines = MEASURED.read_text(encoding="latin-1").split("BEGIN_DATA\n")[1].split("END_DATA")[0].splitlines()
    rows = [[float(v) for v in line.split()] for line in lines]
    return [([v / 100 for v in row[1:5]], row[8:11]) for row in rows]


def check():
    assert zlib.decompress(COMPRESSED.read_bytes()) == PROFILE.read_bytes()
    patches = measured_patches()
    told = looked_up("f", "a", [inks for inks, _ in patches])
    figures("Delta E 1976 of the profile from the measurements", [difference(a, lab) for a, (_, lab) in
                                                                 zip(told, patches)])
    inside = [lab for inks, lab in patches if sum(inks) <= INK_LIMIT / 100 - 0.2 and inks[3] <= 0.6]
    inks = looked_up("b", "a", inside)
    figures("Delta E 1976 from a printable colour to inks and back",
            [difference(a, b) for a, b in zip(looked_up("f", "a", inks), inside)])
    every = [(level, a, b) for level in range(0, 101, 5) for a in range(-100, 101, 20) for b in range(-100, 101, 20)]
    most = max(sum(inks) for inks in looked_up("b", "p", every) + looked_up("b", "r", every))
    print(f"most ink: {100 * most:.1f} %")
    assert most * 100 <= INK_LIMIT + 1


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--check", action="store_true")
    os.environ["LC_ALL"] = "C"
    if not parser.parse_args().check:
        make()
    check()
