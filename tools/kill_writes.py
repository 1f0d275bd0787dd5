#!/usr/bin/env python3
"""Kills the command while it writes over pictures, again and again, and looks at what is left.

    tools/kill_writes.py build/debug/bin/lamina [--kills 800] [--seed 1]

After each kill every picture must be the former or the new one, whole. Where the command was asked to end (SIGINT,
SIGTERM) no unfinished file may lie beside it; what SIGKILL has left must be gone once it is a day old and somebody
writes into the folder. Half of the kills come when an unfinished file is seen, the others at any moment. Ends with 1
where anything is wrong.
"""
import argparse
import os
import random
import shutil
import signal
import subprocess
import sys
import tempfile
import time
from collections import Counter
from pathlib import Path

SAMPLES = Path(__file__).resolve().parent.parent / "assets/samples"
UNFINISHED = ".lamina-unfinished"
LONGEST = 60.0  # seconds a command may take
FORMER = b"the former picture" * 1000


class Job:
    """A command line that writes over some files, and what they hold when it is done."""

    def __init__(self, lamina, name, folder, arguments, outputs):
        self.name, self.folder = name, folder
        self.line = [lamina] + arguments
        self.outputs = [folder / output for output in outputs]
        self.left = set()  # by SIGKILL, to be swept
        folder.mkdir()
        self.restore()
        began = time.monotonic()
        self.run()
        self.seconds = time.monotonic() - began
        self.new = {output: output.read_bytes() for output in self.outputs}
        if FORMER in self.new.values():
            sys.exit(f"{name}: writes nothing")

    def run(self):
        subprocess.run(self.line, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=LONGEST)

    def restore(self):
        for output in self.outputs:
            output.write_bytes(FORMER)

    def unfinished(self):
        return {entry for entry in self.folder.iterdir() if entry.name.endswith(UNFINISHED)} - self.left


def jobs(lamina, folder):
    photos = [folder / photo.name for photo in sorted(SAMPLES.glob("*.jpg"))[:6]]
    for photo in photos:
        subprocess.run([lamina, "op", "scaleToFitSize=500x500", "-i", SAMPLES / photo.name, "-o", photo, "--quiet"],
                       check=True, timeout=LONGEST)
    yield Job(lamina, "op", folder / "op", ["op", "horizontalFlip", "-i", photos[0], "-o", folder / "op/a.jpg"],
              ["a.jpg"])
    yield Job(lamina, "op to PNG", folder / "png",
              ["op", "scaleToFitSize=400x400", "-i", photos[1], "-o", folder / "png/a.png"], ["a.png"])
    for kind, file in (("svg", "a.svg"), ("pdf-standard", "a.pdf")):
        yield Job(lamina, "export " + kind, folder / kind, ["export", kind, "-i", photos[2], "-o", folder / kind / file],
                  [file])
    if b"--each" in subprocess.run([lamina, "op", "--help"], capture_output=True, check=True).stdout:
        # As many as take their names together, after one wait for the device.
        many = [folder / f"{number}.jpg" for number in range(20)]
        for number, photo in enumerate(many):
            shutil.copy(photos[number % len(photos)], photo)
        yield Job(lamina, "batch", folder / "batch",
                  ["op", "scaleToFitSize=300x300", "-o", folder / "batch/{name}.jpg", "--each"] + many,
                  [photo.name for photo in many])


def kill(job, kind, chance):
    """The command's exit code, as Python tells it; None where it had ended before."""
    process = subprocess.Popen(job.line, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    if chance.random() < 0.5:
        while not job.unfinished() and process.poll() is None:
            pass
        time.sleep(chance.choice((0, 0.002, 0.02)) * chance.random())
    else:
        time.sleep(chance.random() * job.seconds)
    running = process.poll() is None
    process.send_signal(kind)
    code = process.wait(LONGEST)
    return code if running else None


def faults_of(job, kind, code):
    # Whoever had just ended its work may say so; before it writes the signal may end it in the system's way.
    wrote = any(output.read_bytes() != FORMER for output in job.outputs)
    usual = -kind if kind == signal.SIGKILL else 130
    if code not in (0, usual) and (wrote or code != -kind):
        yield f"{job.name}, {kind.name}: ends with {code}"
    for output in job.outputs:
        if output.read_bytes() not in (FORMER, job.new[output]):
            yield f"{job.name}, {kind.name}: {output.name} is neither the former nor the new picture"
    left = job.unfinished()
    if kind != signal.SIGKILL and left:
        yield f"{job.name}, {kind.name}: something unfinished is left"
    job.left |= left


def sweep(job):
    """What SIGKILL has left goes with the next picture, when it is old enough and not before."""
    for age, expected in ((0, job.left), (25 * 3600, set())):
        for file in job.left:
            os.utime(file, (time.time(), time.time() - age))
        for _ in range(20 if age else 1):  # each takes as many as it has time for
            job.run()
        if {file for file in job.left if file.exists()} != expected:
            yield f"{job.name}: what was swept is not what is {age} seconds old"


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("lamina")
    parser.add_argument("--kills", type=int, default=800)
    parser.add_argument("--seed", type=int, default=1)
    options = parser.parse_args()
    chance = random.Random(options.seed)
    counts, faults = Counter(), []
    with tempfile.TemporaryDirectory(prefix="lamina-kill-") as folder:
        all_jobs = list(jobs(os.path.abspath(options.lamina), Path(folder)))
        while counts["killed"] < options.kills:
            job = chance.choice(all_jobs)
            kind = chance.choice((signal.SIGKILL, signal.SIGTERM, signal.SIGINT))
            job.restore()
            code = kill(job, kind, chance)
            if code is None:
                counts["came too late"] += 1
                continue
            counts["killed"] += 1
            counts[f"killed by {kind.name}"] += 1
            counts["left something unfinished"] += bool(job.unfinished())
            counts["left a new picture"] += any(output.read_bytes() != FORMER for output in job.outputs)
            faults += faults_of(job, kind, code)
        counts["to be swept"] = sum(len(job.left) for job in all_jobs)
        for job in all_jobs:
            faults += sweep(job)
    for what, count in counts.items():
        print(f"{count:6} {what}")
    print("\n".join(faults) if faults else "every picture is whole")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
