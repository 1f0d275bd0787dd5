#!/usr/bin/env python3
"""Compares `lamina movie` with the `ffmpeg` program: the same clip, the nearest filter, the same encoder settings.

    bench/compare_movie.py build/release/bin/lamina [--seconds 60] [--runs 3] [--only NAME ...] [--size 1920x1080]

Each row is a conversion: median seconds of both (they take turns), their relation with its limit, and the peaks of
memory with the limit, 100 MB above the peer's. The last row is a long clip of small frames beside a tenth of it: the
peaks of memory have to be the same.
"""

import argparse
import os
import statistics
import subprocess
import sys
import tempfile
import time

# As lamina's encoder is set: the settings are the peer's too.
ENCODER = ["-c:v", "libx264", "-preset", "veryfast", "-profile:v", "high", "-threads", "4", "-crf", "18",
           "-x264-params", "sliced-threads=0"]
MATRIX = "colorchannelmixer=.393:.769:.189:0:.349:.686:.168:0:.272:.534:.131"

# Name, lamina's options, the peer's filter, the most that lamina may take of the peer's time.
ROWS = [
    ("none", [], None, 1.05),
    ("sepia", ["--filter", "GPUImageSepiaFilter"], MATRIX, 1.15),
    ("look", ["--filter", "GPUImageAmatorkaFilter"], "lut3d=look.cube", 1.15),
    ("blur", ["--filter", "GPUImageGaussianBlurFilter", "--set", "blurRadiusInPixels=4"], "gblur=sigma=4", 1.15),
]


def run(command):
    """Seconds and the peak of memory in MB."""
    begin = time.monotonic()
    process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
    errors = process.stderr.read()
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        sys.exit(f"{' '.join(command)}: {errors.decode(errors='replace')}")
    return time.monotonic() - begin, usage.ru_maxrss / 1024


def ffmpeg(*arguments):
    return ["ffmpeg", "-v", "error", "-y", *arguments]


def make_clip(path, seconds, size):
    """A moving picture with grain, and a sound."""
    picture = f"testsrc2=size={size}:rate=30:duration={seconds},noise=alls=8:allf=t"
    run(ffmpeg("-f", "lavfi", "-i", picture, "-f", "lavfi", "-i", f"sine=440:duration={seconds}", "-pix_fmt", "yuv420p",
               "-c:v", "libx264", "-preset", "veryfast", "-crf", "20", "-c:a", "aac", path))


def make_look(path, side=16):
    steps = [i / (side - 1) for i in range(side)]
    with open(path, "w", encoding="ascii") as file:
        file.write(f"LUT_3D_SIZE {side}\n")
        for b in steps:
            for g in steps:
                for r in steps:
                    file.write(f"{r ** 0.9:.5f} {g:.5f} {b * 0.9 + 0.05:.5f}\n")


def compare(lamina, row, clip, runs):
    name, options, peer_filter, limit = row
    peer = ffmpeg("-i", clip, *(["-vf", peer_filter + ",format=yuv420p"] if peer_filter else []), *ENCODER, "-c:a", "copy",
                  "peer.mp4")
    ours, theirs = [], []
    for _ in range(runs):
        theirs.append(run(peer))
        ours.append(run([lamina, "movie", clip, "-o", "ours.mp4", "--quiet", *options]))
    seconds = [statistics.median(each[0] for each in all_) for all_ in (ours, theirs)]
    memory = [max(each[1] for each in all_) for all_ in (ours, theirs)]
    print(f"{name:8} {seconds[0]:8.2f} s {seconds[1]:8.2f} s   {seconds[0] / seconds[1]:5.2f} (at most {limit})   "
          f"{memory[0]:6.0f} MB {memory[1]:6.0f} MB (at most {memory[1] + 100:.0f})", flush=True)


def compare_lengths(lamina, frames):
    peaks = []
    for count in (frames // 10, frames):
        run(ffmpeg("-f", "lavfi", "-i", "testsrc2=size=160x90:rate=30", "-frames:v", str(count), "-c:v", "libx264",
                   "-preset", "ultrafast", f"{count}.mp4"))
        peaks.append(run([lamina, "movie", f"{count}.mp4", "-o", "ours.mp4", "--quiet", "--filter", "GPUImageSepiaFilter"]))
    print(f"{frames // 10} frames {peaks[0][1]:.0f} MB, {frames} frames {peaks[1][1]:.0f} MB in {peaks[1][0]:.1f} s")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("lamina")
    parser.add_argument("--seconds", type=int, default=60)
    parser.add_argument("--size", default="1920x1080")
    parser.add_argument("--runs", type=int, default=3)
    parser.add_argument("--frames", type=int, default=10000, help="of the long clip; 0 leaves it out")
    parser.add_argument("--only", nargs="*", default=[row[0] for row in ROWS])
    options = parser.parse_args()
    lamina = os.path.abspath(options.lamina)
    with tempfile.TemporaryDirectory() as folder:
        os.chdir(folder)
        make_clip("clip.mp4", options.seconds, options.size)
        make_look("look.cube")
        print(f"load {os.getloadavg()[0]:.1f}, {os.cpu_count()} processors, {options.seconds} s of {options.size} at 30/s")
        print(f"{'':8} {'lamina':>10} {'ffmpeg':>10}")
        for row in ROWS:
            if row[0] in options.only:
                compare(lamina, row, "clip.mp4", options.runs)
        if options.frames:
            compare_lengths(lamina, options.frames)
        os.chdir("/")


if __name__ == "__main__":
    main()
