#!/usr/bin/env python3
"""Tells whether the command still makes the same pictures, to the byte.

    tools/command_hashes.py build/release/bin/lamina            compares with tools/command_hashes.txt
    tools/command_hashes.py build/release/bin/lamina --write    writes that file anew

Each line of the file is a hash and the command line that made it. Filters are drawn by a driver, so their lines hold
for one version of Mesa's software driver; the rest holds everywhere.
"""

import argparse
import hashlib
import os
import pathlib
import shlex
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor

ROOT = pathlib.Path(__file__).resolve().parent.parent
LIST = ROOT / "tools" / "command_hashes.txt"
S = "assets/samples/"
T = "tests/data/pictures/"
PHOTO = S + "dunes.jpg"
SMALL = T + "png-rgba8.png"

BLENDS = [
    f"{S}meadow.jpg {S}city-rain.jpg",
    f"{S}dawn-ridge.jpg {S}city-rain.jpg --crop2 1,0,40 --zoom 1.2 --move 0,-12",
    f"{S}meadow.jpg {S}dawn-ridge.jpg --crop1 1.4,90,60",
    f"{S}aurora-lake.jpg {S}dunes.jpg --crop1 6,900,700 --crop2 3.3,10,20 --width 320 --scale 1",
    f"{S}sea-sunset.jpg {S}meadow.jpg --width 430 --scale 2 --move 40,30 --zoom 0.4 --move -7,3.5 --zoom 2.25",
    f"{T}exif-6.jpg {T}exif-3.jpg --width 320",
    f"{T}exif-5.jpg {T}exif-8.jpg --zoom 3",
    f"{T}png-rgba8.png {T}webp-lossy-alpha.webp --width 320 --scale 2",
    f"{T}heic-p3.heic {T}jpeg-cmyk.jpg --width 330",
    f"{T}tiff-rgb16.tif {T}gif-transparent.gif --width 321 --scale 1.5",
    f"{T}png-p3.png {T}bmp-32-v5.bmp --move 11,-4 --zoom 1.7",
    f"{T}tiff-cmyk.tif {T}heic-rotated.heic --scale 1",
    f"{S}meadow.jpg {S}dunes.jpg --turn 2:left --flip 1:horizontal --contrast 1:40 --brightness 2:-25 --contrast 2:30",
    f"{S}sea-sunset.jpg {S}dawn-ridge.jpg --width 320 --brightness 1:60 --zoom 1.3 --turn 2:right --opacity 2:0.35",
    f"{S}aurora-lake.jpg {S}city-rain.jpg --sticker sun@300,80,120,120,15 --sticker cat@120,250 --move 10,-5",
]

COLLAGES = [
    f"{S}meadow.jpg {S}city-rain.jpg",
    f"{S}meadow.jpg {S}city-rain.jpg --layout 2001 --gap 4 --border 6,#d81159 --width 320 --scale 2",
    f"{S}aurora-lake.jpg {S}dunes.jpg --layout 2005 --zoom 2:1.7 --move 2:30,-12 --rotate 1:12 --background 2:#204060",
    f"{S}aurora-lake.jpg {S}dunes.jpg --layout 2007 --height 667 --turn 1:left --flip 2:vertical --effect 1:contrast=40 "
    "--effect 2:emboss=3 --opacity 1:0.6 --sticker sun@300,80,120,120,15",
    f"{T}png-rgba8.png {T}webp-lossy-alpha.webp {T}heic-p3.heic --layout 3008 --width 320 --scale 2",
    f"{S}sea-sunset.jpg {S}meadow.jpg {S}dawn-ridge.jpg --layout 3009 --swap 1:3 --zoom 1:1.3 --effect 2:unsharpen=2",
    f"{S}sea-sunset.jpg {S}meadow.jpg {S}dawn-ridge.jpg --layout 3006 --filter 1:502 --filter 2:507 --filter 3:513 --reset "
    "--filter 2:509 --effect 3:vignette=0.3",
]

CHAINS = [
    "rotateInDegrees=90", "rotateInDegrees=-90", "rotateInDegrees=180", "rotateInDegrees=30", "rotateInRadians=0.5,1,0",
    "horizontalFlip", "verticalFlip", "rotateImagePixelsInDegrees=10", "rotateImagePixelsInRadians=-0.7",
    "cropToSize=100x50,8", "cropToSize=301x203,5", "scaleByFactor=0.37", "scaleToSize=100x100,1",
    "scaleToFillSize=317x211", "scaleToFitSize=640x333", "scaleToCoverSize=120x500", "reflectedImageWithHeight=40,0.8,0.2",
    "brightenWithValue=40", "brightenWithValue=-200", "contrastAdjustmentWithValue=40", "contrastAdjustmentWithValue=-90",
    "gammaCorrectionWithValue=0.8", "gammaCorrectionWithValue=2.2", "invert", "opacity=0.35", "grayscale", "sepia",
    "edgeDetectionWithBias", "embossWithBias=0", "embossWithBias=60", "sharpenWithBias=-8", "unsharpenWithBias=0",
    "gaussianBlurWithBias=3", "rotateInDegrees=90 scaleToFitSize=800x800 sharpenWithBias",
]
ALPHA_CHAINS = [
    "rotateInDegrees=45", "horizontalFlip", "scaleByFactor=2.5", "scaleToFitSize=17x23", "brightenWithValue=77",
    "contrastAdjustmentWithValue=-30", "gammaCorrectionWithValue=1.7", "invert", "opacity=0.5", "grayscale", "sepia",
    "edgeDetectionWithBias", "embossWithBias=10", "gaussianBlurWithBias",
]
FORMATS = ["jpg", "png", "gif", "bmp", "tif"]
DECODED = [
    "avif-alpha.avif", "bmp-rle8.bmp", "bmp-565.bmp", "exif-7.jpg", "gif-animated.gif", "heic-10bit.heic",
    "heic-alpha.heic", "jpeg-p3.jpg", "jpeg-ycck.jpg", "jpeg-grey.jpg", "png-gamma1.png", "png-grey16.png",
    "png-palette-trns.png", "png-rgb-key.png", "png-interlaced.png", "tiff-alpha-associated.tif", "tiff-planar.tif",
    "tiff-p3.tif", "tiff-orientation-6.tif", "webp-animated.webp", "webp-p3.webp",
]
FILTERS = [
    "GPUImageAlphaBlendFilter -i {0} -i {1} --set mix=0.3", "GPUImageDissolveBlendFilter -i {0} -i {1}",
    "GPUImageAmatorkaFilter -i {0}", "GPUImageBoxBlurFilter -i {0} --set blurRadiusInPixels=7",
    "GPUImageColorMatrixFilter -i {0} --set intensity=0.5", "GPUImageDilationFilter -i {0} --set radius=3",
    "GPUImageErosionFilter -i {0}", "GPUImageEmbossFilter -i {0} --set intensity=2",
    "GPUImageGaussianBlurFilter -i {0} --set blurRadiusInPixels=12", "GPUImageGrayscaleFilter -i {0}",
    "GPUImageHazeFilter -i {0} --set distance=0.1", "GPUImageHueFilter -i {0} --set hue=200",
    "GPUImageMissEtikateFilter -i {0}", "GPUImageMonochromeFilter -i {0}", "GPUImageSepiaFilter -i {0} --set intensity=0.8",
    "GPUImageSoftEleganceFilter -i {0}", "GPUImageToonFilter -i {0}", "GpuImageCustomFilter -i {0}",
    "GpuImageCustomFilter1 -i {0}", "GpuImageCustomFilter3 -i {0}", "GpuImageCustomHue -i {0}",
    "GPUImage3x3ConvolutionFilter -i {0} --set convolutionKernel=-1,-1,-1;-1,9,-1;-1,-1,-1",
]


def command_lines():
    for blend in BLENDS:
        yield f"blend {blend} -o png"
    for collage in COLLAGES:
        yield f"collage {collage} -o png"
    for chain in CHAINS:
        yield f"op {chain} -i {PHOTO} -o png"
    for chain in ALPHA_CHAINS:
        yield f"op {chain} -i {SMALL} -o png"
    for kind in FORMATS:
        yield f"op scaleToFitSize=300x300 -i {S}meadow.jpg -o {kind}"
        yield f"op horizontalFlip -i {SMALL} -o {kind}"
    for name in DECODED:
        yield f"op verticalFlip -i {T}{name} -o png"
    yield f"op horizontalFlip --picture-scale 2 cropToSize=50x40,4 -i {PHOTO} -o png"
    yield f"op maskWithImage={PHOTO} -i {PHOTO} -o png"
    for text in FILTERS:
        yield f"filter {text.format(PHOTO, S + 'meadow.jpg')} -o png"
    for text in FILTERS[2:14:3]:
        yield f"filter {text.format(SMALL, '')} -o png"


def hash_of(program, line, folder, number):
    """`-o KIND` at the end stands for a file of that kind."""
    words = shlex.split(line)
    target = folder / f"{number}.{words[-1]}"
    words[-1] = str(target)
    environment = dict(os.environ, LAMINA_EGL_DEVICE="software", SOURCE_DATE_EPOCH="0")
    run = subprocess.run([program, *words, "--quiet"], cwd=ROOT, env=environment, capture_output=True)
    if run.returncode != 0:
        return f"exit-{run.returncode}"
    return hashlib.sha256(target.read_bytes()).hexdigest()


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("program")
    parser.add_argument("--write", action="store_true")
    arguments = parser.parse_args()
    program = str(pathlib.Path(arguments.program).resolve())
    lines = list(command_lines())
    with tempfile.TemporaryDirectory() as folder, ThreadPoolExecutor(os.cpu_count()) as pool:
        made = list(pool.map(lambda pair: hash_of(program, pair[1], pathlib.Path(folder), pair[0]), enumerate(lines)))
    text = "".join(f"{d}  {line}\n" for d, line in zip(made, lines))
    if arguments.write:
        LIST.write_text(text)
        return 0
    known = dict(reversed(line.split("  ", 1)) for line in LIST.read_text().splitlines())
    changed = [line for d, line in zip(made, lines) if known.get(line) != d]
    for line in changed:
        print("changed:", line)
    print(f"{len(lines) - len(changed)} of {len(lines)} command lines give the same bytes")
    return 1 if changed else 0


if __name__ == "__main__":
    sys.exit(main())
