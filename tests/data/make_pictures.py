#!/usr/bin/env python3
"""Writes the small pictures in tests/data/pictures and the table in tests/data/README.md.

    python3 tests/data/make_pictures.py

Needs numpy, Pillow, and heif-enc (libheif-examples) for the HEIC and AVIF files. Formats that Pillow can't write in the
wanted variant are put together here by hand. The check at the end opens every file with Pillow, or heif-convert,
and compares the middle of each quarter with the table; what neither can read is named.
"""

import io
import struct
import subprocess
import sys
import tempfile
import zlib
from pathlib import Path

import numpy as np
from PIL import Image, ImageCms, ImageOps

HERE = Path(__file__).resolve().parent
PICTURES = HERE / "pictures"
WIDTH, HEIGHT = 64, 48

# The flag's quarters, in the order top left, top right, bottom left, bottom right.
FLAG = [(220, 40, 30), (30, 170, 60), (40, 60, 200), (240, 220, 40)]
GREYS = [220, 130, 60, 180]
ALPHAS = [255, 192, 128, 64]
INKS = [(20, 210, 215, 25), (220, 30, 200, 40), (215, 190, 10, 20), (10, 20, 210, 5)]
BITS = [1, 0, 0, 0]

ENTRIES = []


def quarters(values):
    """A HEIGHT x WIDTH array (with a last axis when the values are tuples) of four flat quarters."""
    values = np.asarray(values)
    picture = np.zeros((HEIGHT, WIDTH) + values.shape[1:], values.dtype)
    for i, value in enumerate(values):
        y, x = (i // 2) * HEIGHT // 2, (i % 2) * WIDTH // 2
        picture[y : y + HEIGHT // 2, x : x + WIDTH // 2] = value
    return picture


RGB = quarters(FLAG).astype(np.uint8)
GREY = quarters(GREYS).astype(np.uint8)
RGBA = quarters([c + (a,) for c, a in zip(FLAG, ALPHAS)]).astype(np.uint8)
CMYK = quarters(INKS).astype(np.uint8)
INDEX = quarters([0, 1, 2, 3]).astype(np.uint8)


def add(name, data, holds, colours=None, tolerance=0):
    """Writes a file and notes its row. `colours`: what a viewer shows, upright, RGB or RGBA straight, in sRGB."""
    (PICTURES / name).write_bytes(data)
    note(name, holds, colours, tolerance)


def note(name, holds, colours=None, tolerance=0):
    ENTRIES.append((name, holds, [tuple(c) for c in (colours or FLAG)], tolerance))


def with_alpha(alphas, colours=None):
    return [tuple(c) + (a,) for c, a in zip(colours or FLAG, alphas)]


def grey_colours(values):
    return [(v, v, v) for v in values]


def ink_colours():
    """Inks shown by the plain formula, R = (1 - C)(1 - K)."""
    return [tuple(round((255 - v) * (255 - k) / 255) for v in cmy) for *cmy, k in INKS]


def saved(image, kind, **options):
    out = io.BytesIO()
    image.save(out, kind, **options)
    return out.getvalue()


# ---------------------------------------------------------------------------------------------------------- profiles

D50 = np.array([0.9642, 1.0, 0.8249])
SRGB_PRIMARIES = [(0.64, 0.33), (0.30, 0.60), (0.15, 0.06)]
P3_PRIMARIES = [(0.68, 0.32), (0.265, 0.69), (0.15, 0.06)]
ADOBE_PRIMARIES = [(0.64, 0.33), (0.21, 0.71), (0.15, 0.06)]


def xyz(x, y):
    return np.array([x / y, 1.0, (1 - x - y) / y])


def to_d50(primaries):
    """The matrix from linear RGB with white D65 to XYZ adapted to D50 by Bradford's method."""
    white = xyz(0.3127, 0.3290)
    columns = np.stack([xyz(*p) for p in primaries], axis=1)
    matrix = columns * np.linalg.solve(columns, white)
    bradford = np.array([[0.8951, 0.2664, -0.1614], [-0.7502, 1.7135, 0.0367], [0.0389, -0.0685, 1.0296]])
    gain = np.diag((bradford @ D50) / (bradford @ white))
    return np.linalg.inv(bradford) @ gain @ bradford @ matrix


def srgb_to_linear(v):
    return np.where(v <= 0.04045, v / 12.92, ((v + 0.055) / 1.055) ** 2.4)


def linear_to_srgb(v):
    v = np.clip(v, 0, 1)
    return np.where(v <= 0.0031308, v * 12.92, 1.055 * v ** (1 / 2.4) - 0.055)


ADOBE_GAMMA = 563 / 256  # as its profile states it, in 8.8 fixed point

SPACES = {
    "srgb": ("Test sRGB", SRGB_PRIMARIES, srgb_to_linear),
    "p3": ("Test wide, P3 primaries", P3_PRIMARIES, srgb_to_linear),
    "adobe": ("Test wide, gamma 2.2", ADOBE_PRIMARIES, lambda v: v**ADOBE_GAMMA),
}


def profile(space):
    """A version 2 profile with three primaries and one curve."""
    title, primaries, curve = SPACES[space]

    def fixed(values):
        return b"".join(struct.pack(">i", round(float(v) * 65536)) for v in values)

    if space == "adobe":
        trc = b"curv" + struct.pack(">IIH", 0, 1, round(ADOBE_GAMMA * 256))
    else:
        table = np.round(curve(np.linspace(0, 1, 256)) * 65535).astype(">u2")
        trc = b"curv" + struct.pack(">II", 0, 256) + table.tobytes()
    text = title.encode() + b"\0"
    matrix = to_d50(primaries)
    blocks = {
        b"desc": b"desc" + struct.pack(">II", 0, len(text)) + text + b"\0" * (8 + 3 + 67),
        b"cprt": b"text\0\0\0\0" + b"Free for any use\0",
        b"wtpt": b"XYZ \0\0\0\0" + fixed(D50),
        b"rXYZ": b"XYZ \0\0\0\0" + fixed(matrix[:, 0]),
        b"gXYZ": b"XYZ \0\0\0\0" + fixed(matrix[:, 1]),
        b"bXYZ": b"XYZ \0\0\0\0" + fixed(matrix[:, 2]),
        b"rTRC": trc,
    }
    offset, places, body = 128 + 4 + 12 * (len(blocks) + 2), {}, b""
    for tag, block in blocks.items():
        places[tag] = (offset + len(body), len(block))
        body += block + b"\0" * (-len(block) % 4)
    places[b"gTRC"] = places[b"bTRC"] = places[b"rTRC"]
    tags = struct.pack(">I", len(places)) + b"".join(t + struct.pack(">II", *p) for t, p in places.items())
    date = struct.pack(">6H", 2024, 1, 1, 0, 0, 0)
    head = struct.pack(">I4sI4s4s4s", 128 + len(tags) + len(body), b"\0" * 4, 0x02100000, b"mntr", b"RGB ", b"XYZ ")
    head += date + b"acsp" + b"\0" * 28 + fixed(D50)
    return head.ljust(128, b"\0") + tags + body


def in_srgb(space, colours=None):
    """The colours as sRGB, by matrix arithmetic; what lies outside is clipped."""
    _, primaries, curve = SPACES[space]
    linear = curve(np.array(colours or FLAG) / 255) @ to_d50(primaries).T
    shown = linear_to_srgb(linear @ np.linalg.inv(to_d50(SRGB_PRIMARIES)).T)
    return [tuple(int(v) for v in row) for row in np.round(shown * 255)]


# -------------------------------------------------------------------------------------------------------------- JPEG


def exif_block(orientation):
    entry = struct.pack("<HHIHH", 0x0112, 3, 1, orientation, 0)
    return b"II*\0" + struct.pack("<IH", 8, 1) + entry + struct.pack("<I", 0)


def with_app1(jpeg, payload):
    return jpeg[:2] + b"\xff\xe1" + struct.pack(">H", len(payload) + 2) + payload + jpeg[2:]


# From the upright picture to the stored one, for each orientation tag.
STORED = {
    2: Image.Transpose.FLIP_LEFT_RIGHT,
    3: Image.Transpose.ROTATE_180,
    4: Image.Transpose.FLIP_TOP_BOTTOM,
    5: Image.Transpose.TRANSPOSE,
    6: Image.Transpose.ROTATE_90,
    7: Image.Transpose.TRANSVERSE,
    8: Image.Transpose.ROTATE_270,
}


def stored_for(image, orientation):
    return image.transpose(STORED[orientation]) if orientation in STORED else image


def ycck_jpeg():
    """Four components as Adobe's programs write them: the inks inverted, the first three turned to YCbCr.

    Pillow inverts what it is given and leaves the components as they are, so they are given prepared and the marker's
    transform is set afterwards.
    """
    inks = CMYK.astype(float)
    c, m, y = inks[..., 0], inks[..., 1], inks[..., 2]
    luma = 0.299 * c + 0.587 * m + 0.114 * y
    planes = [luma, 128 + (y - luma) / 1.772, 128 + (c - luma) / 1.402, 255 - inks[..., 3]]
    stored = np.clip(np.round(np.stack(planes, axis=-1)), 0, 255).astype(np.uint8)
    jpeg = bytearray(saved(Image.fromarray(255 - stored, "CMYK"), "JPEG", quality=97, subsampling=0))
    marker = jpeg.index(b"Adobe")
    assert jpeg[marker + 11] == 0
    jpeg[marker + 11] = 2
    return bytes(jpeg)


def make_jpeg():
    flag = Image.fromarray(RGB)
    plain = saved(flag, "JPEG", quality=95, subsampling=0)
    add("jpeg-444.jpg", plain, "baseline, 4:4:4", tolerance=3)
    add("jpeg-420.jpg", saved(flag, "JPEG", quality=95, subsampling=2), "baseline, 4:2:0", tolerance=3)
    add("jpeg-422.jpg", saved(flag, "JPEG", quality=95, subsampling=1), "baseline, 4:2:2", tolerance=3)
    add("jpeg-progressive.jpg", saved(flag, "JPEG", quality=95, progressive=True), "progressive", tolerance=3)
    grey = saved(Image.fromarray(GREY), "JPEG", quality=95)
    add("jpeg-grey.jpg", grey, "one component", grey_colours(GREYS), 3)
    cmyk = saved(Image.fromarray(CMYK, "CMYK"), "JPEG", quality=97, subsampling=0)
    add("jpeg-cmyk.jpg", cmyk, "four components, Adobe marker, transform 0, inverted", ink_colours(), 4)
    add("jpeg-ycck.jpg", ycck_jpeg(), "four components, Adobe marker, transform 2, inverted", ink_colours(), 4)
    for o in range(1, 9):
        stored = saved(stored_for(flag, o), "JPEG", quality=95, subsampling=0)
        size = "48 x 64" if o > 4 else "64 x 48"
        add(f"exif-{o}.jpg", with_app1(stored, b"Exif\0\0" + exif_block(o)),
            f"orientation tag {o}, stored {size}; shown upright it is the flag", tolerance=3)
    cut = b"Exif\0\0" + b"II*\0" + struct.pack("<IH", 8, 100) + b"\x12\x01\x03\0"
    add("exif-cut.jpg", with_app1(plain, cut), "EXIF block that claims 100 entries and ends in the first", tolerance=3)
    noise = b"Exif\0\0" + bytes((i * 37 + 11) % 251 for i in range(120))
    add("exif-garbage.jpg", with_app1(plain, noise), "EXIF block of noise", tolerance=3)
    loop = b"Exif\0\0II*\0" + struct.pack("<I", 0xFFFFFFF0)
    add("exif-offset.jpg", with_app1(plain, loop), "EXIF block whose first directory lies far outside", tolerance=3)
    beyond = with_app1(plain, b"Exif\0\0" + exif_block(9))
    add("exif-9.jpg", beyond, "orientation tag 9, which means nothing; up", tolerance=3)
    add("jpeg-trailing.jpg", plain + b"bytes after the end " * 20, "400 bytes behind the end marker", tolerance=3)
    for space in SPACES:
        jpeg = saved(flag, "JPEG", quality=97, subsampling=0, icc_profile=profile(space))
        add(f"jpeg-{space}.jpg", jpeg, f"profile: {SPACES[space][0]}", in_srgb(space), 5)


# --------------------------------------------------------------------------------------------------------------- PNG

ADAM7 = [(0, 0, 8, 8), (4, 0, 8, 8), (0, 4, 4, 8), (2, 0, 4, 4), (0, 2, 2, 4), (1, 0, 2, 2), (0, 1, 1, 2)]


def png_chunk(kind, data):
    return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))


def png_rows(pixels, depth):
    """Filtered rows: all four filters in turn, so that a reader meets each."""
    if depth < 8:
        shifts = np.arange(8 - depth, -1, -depth)
        width = -(-pixels.shape[1] * depth // 8) * (8 // depth)
        wide = np.zeros((pixels.shape[0], width), np.uint8)
        wide[:, : pixels.shape[1]] = pixels
        packed = (wide.reshape(len(wide), -1, len(shifts)) << shifts).sum(axis=2).astype(np.uint8)
        return b"".join(b"\0" + row.tobytes() for row in packed)
    raw = pixels.astype(">u2" if depth == 16 else "u1")
    step = raw.itemsize * (raw.shape[2] if raw.ndim == 3 else 1)
    rows = [np.frombuffer(row.tobytes(), np.uint8).astype(int) for row in raw]
    out, above = b"", np.zeros_like(rows[0])
    for y, row in enumerate(rows):
        left = np.concatenate([np.zeros(step, int), row[:-step]])
        corner = np.concatenate([np.zeros(step, int), above[:-step]])
        distance = np.abs(np.stack([above - corner, left - corner, left + above - 2 * corner]))
        paeth = np.choose(distance.argmin(axis=0), [left, above, corner])
        guess = [0, left, above, (left + above) // 2, paeth][y % 5]
        out += bytes([y % 5]) + ((row - guess) % 256).astype(np.uint8).tobytes()
        above = row
    return out


def png(pixels, kind, depth=8, chunks=(), interlaced=False):
    """`kind`: 0 grey, 2 RGB, 3 palette, 4 grey and alpha, 6 RGBA."""
    height, width = pixels.shape[:2]
    passes = [pixels[y::dy, x::dx] for x, y, dx, dy in ADAM7] if interlaced else [pixels]
    data = b"".join(png_rows(p, depth) for p in passes if p.size)
    head = struct.pack(">IIBBBBB", width, height, depth, kind, 0, 0, int(interlaced))
    parts = [(b"IHDR", head), *chunks, (b"IDAT", zlib.compress(data, 9)), (b"IEND", b"")]
    return b"\x89PNG\r\n\x1a\n" + b"".join(png_chunk(*p) for p in parts)


def make_png():
    plte = (b"PLTE", bytes(v for c in FLAG for v in c))
    add("png-rgb8.png", png(RGB, 2), "8 bits RGB, every row filter")
    add("png-rgba8.png", png(RGBA, 6), "8 bits RGBA", with_alpha(ALPHAS))
    opaque = np.dstack([RGB, np.full((HEIGHT, WIDTH), 255, np.uint8)])
    add("png-rgba8-opaque.png", png(opaque, 6), "8 bits RGBA, alpha 255 everywhere")
    add("png-grey8.png", png(GREY, 0), "8 bits grey", grey_colours(GREYS))
    bits = grey_colours([255 * b for b in BITS])
    add("png-grey1.png", png(quarters(BITS).astype(np.uint8), 0, 1), "1 bit grey", bits)
    add("png-grey4.png", png((GREY // 17).astype(np.uint8), 0, 4), "4 bits grey",
        grey_colours([v // 17 * 17 for v in GREYS]))
    add("png-grey16.png", png(GREY.astype(int) * 257, 0, 16), "16 bits grey", grey_colours(GREYS))
    grey_alpha = np.dstack([GREY, RGBA[..., 3]])
    add("png-grey-alpha.png", png(grey_alpha, 4), "8 bits grey and alpha", with_alpha(ALPHAS, grey_colours(GREYS)))
    add("png-rgb16.png", png(RGB.astype(int) * 257, 2, 16), "16 bits RGB")
    add("png-rgba16.png", png(RGBA.astype(int) * 257, 6, 16), "16 bits RGBA", with_alpha(ALPHAS))
    add("png-palette.png", png(INDEX, 3, 8, [plte]), "8 bits palette of 4 colours")
    add("png-palette2.png", png(INDEX, 3, 2, [plte]), "2 bits palette")
    add("png-palette-trns.png", png(INDEX, 3, 8, [plte, (b"tRNS", bytes([255, 128, 0]))]),
        "palette; tRNS covers three of four entries", with_alpha([255, 128, 0, 255]))
    key = (b"tRNS", struct.pack(">HHH", *FLAG[1]))
    add("png-rgb-key.png", png(RGB, 2, 8, [key]), "RGB; tRNS names the green as clear", with_alpha([255, 0, 255, 255]))
    add("png-interlaced.png", png(RGB, 2, interlaced=True), "Adam7")
    for space in SPACES:
        chunk = (b"iCCP", b"test\0\0" + zlib.compress(profile(space), 9))
        add(f"png-{space}.png", png(RGB, 2, 8, [chunk]), f"profile: {SPACES[space][0]}", in_srgb(space), 2)
    linear = [tuple(int(round(float(v) * 255)) for v in linear_to_srgb(np.array(c) / 255)) for c in FLAG]
    add("png-gamma1.png", png(RGB, 2, 8, [(b"gAMA", struct.pack(">I", 100000))]),
        "gAMA 1.0: the stored numbers are the flag's, but linear light", linear, 2)
    lying = np.asarray(stored_for(Image.fromarray(RGB), 6))
    add("png-exif-6.png", png(lying, 2, 8, [(b"eXIf", exif_block(6))]), "eXIf orientation 6, stored 48 x 64")


# -------------------------------------------------------------------------------------------------------------- WebP


def make_webp():
    flag, clear = Image.fromarray(RGB), Image.fromarray(RGBA)
    add("webp-lossy.webp", saved(flag, "WEBP", quality=95), "lossy", tolerance=6)
    add("webp-lossless.webp", saved(flag, "WEBP", lossless=True), "lossless")
    add("webp-lossy-alpha.webp", saved(clear, "WEBP", quality=95, exact=True), "lossy with alpha", with_alpha(ALPHAS),
        6)
    add("webp-lossless-alpha.webp", saved(clear, "WEBP", lossless=True, exact=True), "lossless with alpha",
        with_alpha(ALPHAS))
    lying = stored_for(flag, 6)
    add("webp-exif-6.webp", saved(lying, "WEBP", lossless=True, exif=b"Exif\0\0" + exif_block(6)),
        "EXIF orientation 6, stored 48 x 64")
    add("webp-p3.webp", saved(flag, "WEBP", lossless=True, icc_profile=profile("p3")),
        f"profile: {SPACES['p3'][0]}", in_srgb("p3"), 2)
    second = Image.fromarray(255 - RGB)
    add("webp-animated.webp", saved(flag, "WEBP", lossless=True, save_all=True, append_images=[second], duration=100),
        "two frames; the first is the flag")


# -------------------------------------------------------------------------------------------------------------- TIFF

TIFF_SHORT, TIFF_LONG, TIFF_BYTES = 3, 4, 7


def tiff(blocks, tags, size=(WIDTH, HEIGHT), tiled=False, order="<"):
    """`blocks`: the strips' or tiles' bytes; `tags`: number to value or list (shorts), bytes for raw data."""
    entries = {256: (TIFF_LONG, [size[0]]), 257: (TIFF_LONG, [size[1]])}
    for tag, value in tags.items():
        if isinstance(value, bytes):
            entries[tag] = (TIFF_BYTES, value)
        else:
            entries[tag] = (TIFF_SHORT, value if isinstance(value, list) else [value])
    data, offsets = b"", []
    for block in blocks:
        offsets.append(8 + len(data))
        data += block + b"\0" * (len(block) % 2)
    entries[324 if tiled else 273] = (TIFF_LONG, offsets)
    entries[325 if tiled else 279] = (TIFF_LONG, [len(b) for b in blocks])
    start = 8 + len(data)
    spare, extra, directory = start + 2 + 12 * len(entries) + 4, b"", struct.pack(order + "H", len(entries))
    for tag in sorted(entries):
        kind, value = entries[tag]
        letter = {TIFF_SHORT: "H", TIFF_LONG: "I"}.get(kind)
        raw = value if letter is None else struct.pack(f"{order}{len(value)}{letter}", *value)
        field = raw.ljust(4, b"\0")
        if len(raw) > 4:
            field = struct.pack(order + "I", spare + len(extra))
            extra += raw + b"\0" * (len(raw) % 2)
        directory += struct.pack(order + "HHI", tag, kind, len(value)) + field
    mark = b"II*\0" if order == "<" else b"MM\0*"
    return mark + struct.pack(order + "I", start) + data + directory + struct.pack(order + "I", 0) + extra


def tiff_tags(photometric, bits, samples, **more):
    names = {"compression": 259, "rows": 278, "planar": 284, "orientation": 274, "extra": 338, "tile": (322, 323),
             "icc": 34675, "subsampling": 530, "palette": 320}
    tags = {258: [bits] * samples, 259: 1, 262: photometric, 277: samples}
    for name, value in more.items():
        where = names[name]
        tags.update(zip(where, value) if isinstance(where, tuple) else [(where, value)])
    return tags


def strips(pixels, rows):
    return [pixels[y : y + rows].tobytes() for y in range(0, len(pixels), rows)]


def tiles(pixels, size):
    """Tiles of size x size; those at the edge are filled up with 0xEE, which must never show."""
    height, width = (-(-n // size) * size for n in pixels.shape[:2])
    wide = np.full((height, width) + pixels.shape[2:], 0xEE, pixels.dtype)
    wide[: pixels.shape[0], : pixels.shape[1]] = pixels
    return [wide[y : y + size, x : x + size].tobytes() for y in range(0, height, size) for x in range(0, width, size)]


def make_tiff():
    flag = Image.fromarray(RGB)
    wide = RGB.astype("<u2") * 257
    rgb = lambda **more: tiff_tags(2, 8, 3, **more)
    add("tiff-none.tif", tiff(strips(RGB, 10), rgb(rows=10)), "RGB, strips of 10 rows, plain")
    for name, how in [("lzw", "tiff_lzw"), ("deflate", "tiff_adobe_deflate"), ("packbits", "packbits")]:
        add(f"tiff-{name}.tif", saved(flag, "TIFF", compression=how), f"RGB, {name}")
    add("tiff-lzw-predictor.tif", saved(flag, "TIFF", compression="tiff_lzw", tiffinfo={317: 2}),
        "RGB, LZW, differences")
    add("tiff-tiles.tif", tiff(tiles(RGB, 32), rgb(tile=[32, 32]), tiled=True),
        "RGB, tiles of 32 x 32 over the lower edge")
    packed = [zlib.compress(t, 9) for t in tiles(RGB, 48)]
    add("tiff-tiles-deflate.tif", tiff(packed, rgb(tile=[48, 48], compression=8), tiled=True),
        "RGB, deflate, tiles of 48 x 48 over the right edge")
    add("tiff-big-endian.tif", tiff(strips(RGB, 16), rgb(rows=16), order=">"), "RGB, big-endian")
    planes = [b for c in range(3) for b in strips(RGB[..., c], 24)]
    add("tiff-planar.tif", tiff(planes, rgb(rows=24, planar=2)), "RGB, planes one after another, two strips each")
    grey = grey_colours(GREYS)
    add("tiff-grey8.tif", tiff(strips(GREY, 48), tiff_tags(1, 8, 1, rows=48)), "8 bits grey", grey)
    add("tiff-grey8-white0.tif", tiff(strips(255 - GREY, 48), tiff_tags(0, 8, 1, rows=48)), "8 bits grey, 0 is white",
        grey)
    add("tiff-grey16.tif", tiff(strips(GREY.astype("<u2") * 257, 48), tiff_tags(1, 16, 1, rows=48)), "16 bits grey",
        grey)
    add("tiff-rgb16.tif", tiff(strips(wide, 16), tiff_tags(2, 16, 3, rows=16)), "16 bits RGB")
    add("tiff-rgb16-big-endian.tif", tiff(strips(wide.astype(">u2"), 16), tiff_tags(2, 16, 3, rows=16), order=">"),
        "16 bits RGB, big-endian")
    add("tiff-cmyk.tif", tiff(strips(CMYK, 16), tiff_tags(5, 8, 4, rows=16)), "CMYK, no profile", ink_colours(), 1)
    colour_map = [v * 257 for c in range(3) for v in [colour[c] for colour in FLAG] + [0] * 252]
    add("tiff-palette.tif", tiff(strips(INDEX, 48), tiff_tags(3, 8, 1, rows=48, palette=colour_map)), "palette")
    bits = Image.fromarray(quarters(BITS).astype(np.uint8) * 255).convert("1", dither=Image.Dither.NONE)
    add("tiff-g4.tif", saved(bits, "TIFF", compression="group4"), "1 bit, fax group 4",
        grey_colours([255 * b for b in BITS]))
    alpha = RGBA[..., 3:].astype(float) / 255
    premultiplied = np.dstack([np.round(RGB * alpha), RGBA[..., 3]]).astype(np.uint8)
    rgba = lambda **more: tiff_tags(2, 8, 4, rows=16, **more)
    add("tiff-alpha-associated.tif", tiff(strips(premultiplied, 16), rgba(extra=1)),
        "RGBA, colours multiplied by alpha",
        with_alpha(ALPHAS), 2)
    add("tiff-alpha-unassociated.tif", tiff(strips(RGBA, 16), rgba(extra=2)), "RGBA, straight alpha",
        with_alpha(ALPHAS))
    lying = np.asarray(stored_for(flag, 6))
    add("tiff-orientation-6.tif", tiff(strips(lying, 64), rgb(rows=64, orientation=6), size=(HEIGHT, WIDTH)),
        "orientation 6, stored 48 x 64")
    jpeg = saved(flag, "JPEG", quality=95, subsampling=2)
    add("tiff-jpeg.tif", tiff([jpeg], tiff_tags(6, 8, 3, compression=7, rows=48, subsampling=[2, 2])),
        "JPEG in one strip, YCbCr 4:2:0", tolerance=3)
    add("tiff-p3.tif", tiff(strips(RGB, 16), rgb(rows=16, icc=profile("p3"))), f"profile: {SPACES['p3'][0]}",
        in_srgb("p3"), 2)
    add("tiff-two-pages.tif", saved(flag, "TIFF", save_all=True, append_images=[Image.fromarray(255 - RGB)]),
        "two pages; the first is the flag")


# --------------------------------------------------------------------------------------------------------------- GIF


def gif_image(pixels, colours):
    image = Image.fromarray(pixels, "P")
    image.putpalette([v for c in colours for v in c])
    return image


def make_gif():
    flag = gif_image(INDEX, FLAG)
    add("gif-plain.gif", saved(flag, "GIF", interlace=0), "palette")
    add("gif-interlaced.gif", saved(flag, "GIF", interlace=1), "interlaced")
    add("gif-transparent.gif", saved(flag, "GIF", interlace=0, transparency=1), "index 1 (green) is clear",
        with_alpha([255, 0, 255, 255]))
    second = gif_image(3 - INDEX, FLAG)
    add("gif-animated.gif", saved(flag, "GIF", interlace=0, save_all=True, append_images=[second], duration=100),
        "two frames; the first is the flag")
    # A frame of 40 x 30 at (20, 12) on the flag's screen: Pillow writes the small picture, then both places are moved.
    small = bytearray(saved(gif_image(INDEX[12:42, 20:60].copy(), FLAG), "GIF", interlace=0))
    small[6:10] = struct.pack("<HH", WIDTH, HEIGHT)
    frame = small.index(b"\x2c" + struct.pack("<HHHH", 0, 0, 40, 30))
    small[frame + 1 : frame + 5] = struct.pack("<HH", 20, 12)
    add("gif-offset.gif", bytes(small),
        "frame of 40 x 30 at (20, 12) on a screen of 64 x 48, the flag's pixels of that place; clear around it",
        with_alpha([255] * 4))


# --------------------------------------------------------------------------------------------------------------- BMP


def bmp(pixels, header, palette=b"", masks=b""):
    offset = 14 + len(header) + len(masks) + len(palette)
    head = b"BM" + struct.pack("<IHHI", offset + len(pixels), 0, 0, offset)
    return head + header + masks + palette + pixels


def bmp_info(bits, compression, length, colours=0, top_down=False):
    height = -HEIGHT if top_down else HEIGHT
    return struct.pack("<IiiHHIIiiII", 40, WIDTH, height, 1, bits, compression, length, 2835, 2835, colours, 0)


def bmp_rows(rows):
    """Bottom row first, each padded to four bytes."""
    return b"".join(r + b"\0" * (-len(r) % 4) for r in reversed(rows))


def rle_rows(depth):
    """Runs for both halves of a row; the lowest row begins with a literal stretch."""
    double = lambda v: v * 17 if depth == 4 else v
    out = b""
    for y in range(HEIGHT - 1, -1, -1):
        left, right = int(INDEX[y, 0]), int(INDEX[y, -1])
        if y == HEIGHT - 1:
            count = 5 if depth == 4 else 3
            out += bytes([0, count]) + (bytes([double(left)] * 3) + b"\0")
            out += bytes([32 - count, double(left)])
        else:
            out += bytes([32, double(left)])
        out += bytes([32, double(right)]) + (b"\0\1" if y == 0 else b"\0\0")
    return out


def make_bmp():
    bgr = RGB[..., ::-1]
    palette = b"".join(bytes((b, g, r, 0)) for r, g, b in FLAG)
    rows24 = bmp_rows([r.tobytes() for r in bgr])
    add("bmp-24.bmp", bmp(rows24, bmp_info(24, 0, len(rows24))), "24 bits")
    add("bmp-top-down.bmp", bmp(b"".join(r.tobytes() for r in bgr), bmp_info(24, 0, 0, top_down=True)),
        "24 bits, top row first")
    rows8 = bmp_rows([r.tobytes() for r in INDEX])
    add("bmp-8.bmp", bmp(rows8, bmp_info(8, 0, len(rows8), 4), palette), "8 bits, 4 palette entries")
    nibbles = (INDEX[:, ::2] << 4 | INDEX[:, 1::2]).astype(np.uint8)
    rows4 = bmp_rows([r.tobytes() for r in nibbles])
    add("bmp-4.bmp", bmp(rows4, bmp_info(4, 0, len(rows4), 4), palette), "4 bits")
    rows1 = bmp_rows([np.packbits(r).tobytes() for r in quarters(BITS).astype(np.uint8)])
    two = bytes((FLAG[2][2], FLAG[2][1], FLAG[2][0], 0, FLAG[0][2], FLAG[0][1], FLAG[0][0], 0))
    add("bmp-1.bmp", bmp(rows1, bmp_info(1, 0, len(rows1), 2), two), "1 bit, palette blue and red",
        [FLAG[0], FLAG[2], FLAG[2], FLAG[2]])
    for depth, compression in [(8, 1), (4, 2)]:
        rle = rle_rows(depth)
        add(f"bmp-rle{depth}.bmp", bmp(rle, bmp_info(depth, compression, len(rle), 4), palette),
            f"{depth} bits, run lengths with one literal stretch")
    short = (RGB[..., 0] >> 3).astype("<u2") << 11 | (RGB[..., 1] >> 2).astype("<u2") << 5 | (RGB[..., 2] >> 3)
    rows16 = bmp_rows([r.astype("<u2").tobytes() for r in short])
    coarse = [tuple(round((v >> s) * 255 / (255 >> s)) for v, s in zip(c, (3, 2, 3))) for c in FLAG]
    add("bmp-565.bmp", bmp(rows16, bmp_info(16, 3, len(rows16)), masks=struct.pack("<III", 0xF800, 0x07E0, 0x001F)),
        "16 bits, masks 5-6-5", coarse, 1)
    rows32 = bmp_rows([r.tobytes() for r in RGBA[..., [2, 1, 0, 3]]])
    masks = struct.pack("<IIII", 0xFF0000, 0xFF00, 0xFF, 0xFF000000)
    core = bmp_info(32, 3, len(rows32))[4:]
    v4 = struct.pack("<I", 108) + core + masks + b"BGRs" + b"\0" * 48
    add("bmp-32-v4.bmp", bmp(rows32, v4), "32 bits, alpha mask, header of 108 bytes", with_alpha(ALPHAS))
    v5 = struct.pack("<I", 124) + core + masks + b"BGRs" + b"\0" * 48 + struct.pack("<IIII", 4, 0, 0, 0)
    add("bmp-32-v5.bmp", bmp(rows32, v5), "32 bits, alpha mask, header of 124 bytes", with_alpha(ALPHAS))
    unused = np.dstack([bgr, np.zeros((HEIGHT, WIDTH), np.uint8)])
    rows32 = bmp_rows([r.tobytes() for r in unused])
    add("bmp-32-unused.bmp", bmp(rows32, bmp_info(32, 0, len(rows32))),
        "32 bits without masks, the fourth byte 0: opaque")
    os2 = struct.pack("<IHHHH", 12, WIDTH, HEIGHT, 1, 8)
    threes = b"".join(bytes((b, g, r)) for r, g, b in FLAG + [(0, 0, 0)] * 252)
    add("bmp-os2.bmp", bmp(rows8, os2, threes), "8 bits, header of 12 bytes, palette of 3-byte entries")


# ------------------------------------------------------------------------------------------------------ HEIC and AVIF


def boxes(data, start, end):
    """(kind, first byte, end) of each box in a stretch of the file."""
    while start < end:
        length, kind = struct.unpack_from(">I4s", data, start)
        yield kind, start, start + length
        start += length


def turned_by_box(data, quarter_turns):
    """The file with an irot box (anticlockwise) tied to its primary picture, as phones write it."""
    data = bytearray(data)
    find = lambda kind, start, end: next(b[1:] for b in boxes(data, start, end) if b[0] == kind)
    meta = find(b"meta", 0, len(data))
    inner = (meta[0] + 12, meta[1])
    primary = struct.unpack_from(">H", data, find(b"pitm", *inner)[0] + 12)[0]
    iprp = find(b"iprp", *inner)
    ipco, ipma = find(b"ipco", iprp[0] + 8, iprp[1]), find(b"ipma", iprp[0] + 8, iprp[1])
    number = sum(1 for _ in boxes(data, ipco[0] + 8, ipco[1])) + 1
    assert data[ipma[0] + 8 : ipma[0] + 12] == b"\0\0\0\0", "short item numbers, short associations"
    at = ipma[0] + 16
    while struct.unpack_from(">H", data, at)[0] != primary:
        at += 3 + data[at + 2]

    iloc = find(b"iloc", *inner)
    assert data[iloc[0] + 8] == 1 and data[iloc[0] + 12] == 0x44, "four bytes each for offset and length"
    step = 2 + (data[iloc[0] + 13] >> 4)  # where the offset counts from, and a base
    place = iloc[0] + 16
    for _ in range(struct.unpack_from(">H", data, iloc[0] + 14)[0]):
        from_file = data[place + 3] == 0
        extents = struct.unpack_from(">H", data, place + 4 + step)[0]
        for i in range(extents if from_file else 0):
            where = place + 6 + step + 8 * i
            struct.pack_into(">I", data, where, struct.unpack_from(">I", data, where)[0] + 10)
        place += 6 + step + 8 * extents

    for start, growth in [(meta[0], 10), (iprp[0], 10), (ipco[0], 9), (ipma[0], 1)]:
        struct.pack_into(">I", data, start, struct.unpack_from(">I", data, start)[0] + growth)
    data[at + 2] += 1
    data.insert(at + 2 + data[at + 2], 0x80 | number)  # a turn must be understood: essential
    data[ipco[1] : ipco[1]] = struct.pack(">I4sB", 9, b"irot", quarter_turns)
    return bytes(data)


def heif(name, source, suffix, holds, colours=None, tolerance=6, options=("-q", "95", "-p", "chroma=444")):
    with tempfile.TemporaryDirectory() as folder:
        origin = Path(folder) / ("in" + suffix)
        origin.write_bytes(source)
        subprocess.run(["heif-enc", *options, str(origin), "-o", str(PICTURES / name)], check=True, capture_output=True)
    note(name, holds, colours, tolerance)


def make_heif():
    flag = Image.fromarray(RGB)
    turned = with_app1(saved(stored_for(flag, 6), "JPEG", quality=97, subsampling=0), b"Exif\0\0" + exif_block(6))
    wide = png(RGB, 2, 8, [(b"iCCP", b"test\0\0" + zlib.compress(profile("p3"), 9))])
    heif("heic-444.heic", png(RGB, 2), ".png", "8 bits, 4:4:4")
    heif("heic-420.heic", png(RGB, 2), ".png", "8 bits, 4:2:0", options=("-q", "95"))
    heif("heic-10bit.heic", png(RGB.astype(int) * 257, 2, 16), ".png", "10 bits",
         options=("-q", "95", "-b", "10"))
    heif("heic-alpha.heic", png(RGBA, 6), ".png", "with an alpha picture", with_alpha(ALPHAS))
    lying = [FLAG[i] for i in (1, 3, 0, 2)]
    heif("heic-exif-6.heic", turned, ".jpg",
         "EXIF orientation 6 and no box that turns it: the tag means nothing here, so it shows as stored, 48 x 64",
         lying)
    add("heic-rotated.heic", turned_by_box((PICTURES / "heic-exif-6.heic").read_bytes(), 3),
        "stored 48 x 64, turned upright by its irot box; EXIF says 6 as well and must not turn it again", tolerance=6)
    heif("heic-p3.heic", wide, ".png", f"profile: {SPACES['p3'][0]}", in_srgb("p3"), 8)
    heif("avif-444.avif", png(RGB, 2), ".png", "8 bits, 4:4:4")
    heif("avif-alpha.avif", png(RGBA, 6), ".png", "with an alpha picture", with_alpha(ALPHAS))


# ------------------------------------------------------------------------------------------------------------- check


def opened(path):
    """The picture as RGB or RGBA in sRGB, upright; None when nothing here reads it."""
    if path.suffix in (".heic", ".avif"):
        with tempfile.TemporaryDirectory() as folder:
            out = Path(folder) / "out.png"
            done = subprocess.run(["heif-convert", str(path), str(out)], capture_output=True)
            return in_plain_srgb(Image.open(out)) if done.returncode == 0 and out.exists() else None
    try:
        image = Image.open(path)
        image.load()
        if path.suffix != ".tif":  # turned by Pillow while it loads
            image = ImageOps.exif_transpose(image)
    except (OSError, SyntaxError, ValueError) as problem:
        print(f"  {path.name}: {problem}")
        return None
    return in_plain_srgb(image)


def in_plain_srgb(image):
    if image.mode.startswith("I"):
        return Image.fromarray((np.asarray(image).astype(int) >> 8).astype(np.uint8)).convert("RGB")
    icc = image.info.get("icc_profile")
    clear = "A" in image.getbands() or "transparency" in image.info
    image = image.convert("RGBA" if clear else "RGB")
    if image.info.get("gamma") == 1.0:
        image = Image.fromarray(np.round(linear_to_srgb(np.asarray(image) / 255) * 255).astype(np.uint8))
    if icc and not clear:
        source = ImageCms.ImageCmsProfile(io.BytesIO(icc))
        image = ImageCms.profileToProfile(image, source, ImageCms.createProfile("sRGB"), outputMode="RGB")
    return image


def check():
    """Compares every file with its row. True when nothing differs."""
    good, unread = True, []
    for name, _, colours, tolerance in ENTRIES:
        image = opened(PICTURES / name)
        if image is None:
            unread.append(name)
            continue
        size = (HEIGHT, WIDTH) if name == "heic-exif-6.heic" else (WIDTH, HEIGHT)
        points = [(x * size[0] // 16, y * size[1] // 12) for y in (5, 9) for x in (7, 12)]
        got = [image.convert("RGBA").getpixel(p) for p in points]
        want = [tuple(c) + (255,) * (4 - len(c)) for c in colours]
        worst = max(abs(a - b) for g, w in zip(got, want) for a, b in zip(g, w) if w[3])
        if worst > tolerance or image.size != size:
            print(f"{name} differs by {worst}\n   got  {image.size} {got}\n   want {size} {want}")
            good = False
    total = sum(p.stat().st_size for p in PICTURES.iterdir())
    print(f"{len(ENTRIES)} files, {total} bytes; unread: {unread or 'none'}")
    return good


README = """# Test pictures

Made by `make_pictures.py`; don't edit them or this table by hand. All are 64 x 48 when shown upright (only
`heic-exif-6.heic` shows lying) and hold four flat quarters ("the flag"): red top left, green top right, blue bottom
left, yellow bottom right. No two quarters are alike, so a picture that is turned or mirrored is noticed. Take samples
inside the quarters: (28, 20), (48, 20), (28, 36) and (48, 36) also lie in the small frame of `gif-offset.gif`.

Expected colours are what is shown in sRGB, upright, alpha straight. "flag" is
{flag}.
Clear areas have no colour worth comparing. Profiles are converted by matrix arithmetic and clipped, which Pillow's
ImageCms confirms; CMYK without a profile by R = (1 - C)(1 - K). The tolerance is the greatest difference of a component
that the format's own losses explain.

| file | holds | expected: top left, top right, bottom left, bottom right | tolerance |
|---|---|---|---|
"""


def write_readme():
    show = lambda colours: " ".join("(" + ",".join(map(str, c)) + ")" for c in colours)
    rows = [f"| {n} | {holds} | {'flag' if c == FLAG else show(c)} | {t} |" for n, holds, c, t in ENTRIES]
    (HERE / "README.md").write_text(README.format(flag=show(FLAG)) + "\n".join(rows) + "\n")


def main():
    PICTURES.mkdir(exist_ok=True)
    for make in (make_jpeg, make_png, make_webp, make_tiff, make_gif, make_bmp, make_heif):
        make()
    write_readme()
    return 0 if check() else 1


if __name__ == "__main__":
    sys.exit(main())
