#!/usr/bin/env python3
"""Writes tests/fuzz/corpus: small files of every format, sound ones ("whole-"), damaged ones ("cut-", "flipped-") and ones
whose headers lie ("hostile-").

    python3 tests/fuzz/make_corpus.py

Needs numpy and Pillow, and the pictures of tests/data. Everything is drawn from fixed seeds, so that a second run changes
nothing. Files named "found-" came from the fuzzers; they are kept by hand and left alone.
"""

import io
import random
import struct
import zlib
from pathlib import Path

import numpy as np
from PIL import Image

HERE = Path(__file__).resolve().parent
CORPUS = HERE / "corpus"
PICTURES = HERE.parent / "data" / "pictures"
LARGEST_BASE = 1400  # bytes of a sound file from which damaged ones are made

WIDTH, HEIGHT = 13, 9
NOISE = np.random.default_rng(7)
RGB = NOISE.integers(0, 256, (HEIGHT, WIDTH, 3), np.uint8)
RGBA = NOISE.integers(0, 256, (HEIGHT, WIDTH, 4), np.uint8)
GREY = NOISE.integers(0, 256, (HEIGHT, WIDTH), np.uint8)
INDEX = NOISE.integers(0, 4, (HEIGHT, WIDTH), np.uint8)


def saved(image, kind, **options):
    out = io.BytesIO()
    image.save(out, kind, **options)
    return out.getvalue()


def fixtures(*patterns):
    """Sound files of tests/data that are small enough."""
    found = {}
    for pattern in patterns:
        for path in sorted(PICTURES.glob(pattern)):
            if path.stat().st_size <= LARGEST_BASE:
                found[path.stem] = path.read_bytes()
    return found


# ------------------------------------------------------------------------------------------------------------ formats


def jpeg():
    hostile = {
        "sides-65535": b"\xff\xd8\xff\xc0\x00\x11\x08\xff\xff\xff\xff\x03\x01\x22\x00\x02\x11\x01\x03\x11\x01",
        "no-components": b"\xff\xd8\xff\xc0\x00\x08\x08\x00\x10\x00\x10\x00\xff\xd9",
        "marker-length-0": b"\xff\xd8\xff\xe1\x00\x00" + b"Exif\0\0",
        "only-start": b"\xff\xd8\xff\xe0",
        "profile-piece-0-of-0": b"\xff\xd8\xff\xe2\x00\x12ICC_PROFILE\0\x00\x00ab",
    }
    return fixtures("jpeg-[34cgpy]*.jpg", "jpeg-444.jpg", "jpeg-420.jpg", "exif-6.jpg", "exif-g*.jpg"), hostile


def png():
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    def file(header, *chunks):
        return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", *header)) + b"".join(chunks)

    packed = chunk(b"IDAT", zlib.compress(b"\0" * 64))
    bomb = zlib.compress(b"\0" * 3_000_000)
    hostile = {
        "sides-2-31": file((0x7FFFFFFF, 0x7FFFFFFF, 8, 2, 0, 0, 0), packed),
        "side-0": file((0, 5, 8, 2, 0, 0, 0), packed),
        "30000-squared": file((30000, 30000, 8, 0, 0, 0, 0), packed),
        "palette-missing": file((4, 4, 8, 3, 0, 0, 0), packed, chunk(b"IEND", b"")),
        "palette-of-2-bytes": file((4, 4, 8, 3, 0, 0, 0), chunk(b"PLTE", b"ab"), packed, chunk(b"IEND", b"")),
        "too-much-data": file((4, 4, 8, 0, 0, 0, 0), chunk(b"IDAT", bomb), chunk(b"IEND", b"")),
        "profile-bomb": file((4, 4, 8, 0, 0, 0, 0), chunk(b"iCCP", b"x\0\0" + bomb), packed, chunk(b"IEND", b"")),
        "chunk-of-4-gigabytes": file((4, 4, 8, 0, 0, 0, 0)) + b"\xff\xff\xff\xffIDAT" + bytes(40),
        "depth-3": file((4, 4, 3, 0, 0, 0, 0), packed),
    }
    return fixtures("png-*.png"), hostile


def webp():
    def riff(*chunks):
        body = b"WEBP" + b"".join(k + struct.pack("<I", len(d)) + d + b"\0" * (len(d) % 2) for k, d in chunks)
        return b"RIFF" + struct.pack("<I", len(body)) + body

    extended = struct.pack("<I", 0x12) + b"\xff\xff\xff" * 2
    hostile = {
        "canvas-2-24": riff((b"VP8X", extended), (b"VP8L", b"\x2f\x00\x00\x00\x00")),
        "lossless-16384-squared": riff((b"VP8L", b"\x2f\xff\xff\xff\x0f" + bytes(20))),
        "lossy-16383-squared": riff((b"VP8 ", b"\x10\x00\x00\x9d\x01\x2a\xff\x3f\xff\x3f" + bytes(20))),
        "no-frame": riff((b"VP8X", struct.pack("<I", 2) + b"\x0f\0\0" * 2)),
        "size-0": b"RIFF\0\0\0\0WEBPVP8 \0\0\0\0",
        "frame-outside": riff(
            (b"VP8X", struct.pack("<I", 2) + b"\x03\0\0" * 2),
            (b"ANIM", bytes(6)),
            (b"ANMF", b"\x7f\0\0" * 2 + b"\x03\0\0" * 2 + bytes(4) + b"VP8L\x05\0\0\0\x2f\x03\xc0\0\0\0"),
        ),
    }
    return fixtures("webp-*.webp"), hostile


def heic():
    def box(kind, data):
        return struct.pack(">I", 8 + len(data)) + kind + data

    start = box(b"ftyp", b"heic\0\0\0\0mif1heic")
    hostile = {
        "only-ftyp": start,
        "box-size-0": start + b"\0\0\0\0meta" + bytes(16),
        "box-size-1-and-2-63": start + b"\0\0\0\1meta" + b"\x7f" + b"\xff" * 7 + bytes(16),
        "empty-meta": start + box(b"meta", bytes(4)),
        "boxes-in-boxes": start + b"".join(struct.pack(">I", 4000 - 8 * i) + b"meta" for i in range(60)) + bytes(64),
    }
    for name, data in fixtures("heic-444.heic", "avif-444.avif").items():
        place = data.index(b"ispe") + 8
        for side in (0, 20001, 0x7FFFFFFF, 0xFFFFFFFF):
            lie = struct.pack(">II", side, side)
            hostile[f"{name}-sides-{side}"] = data[:place] + lie + data[place + 8 :]
    return fixtures("heic-*.heic", "avif-*.avif"), hostile


def tiff_file(tags, blocks, order="<", big=False):
    """A page with `tags` {number: (type, values)}; `blocks`: strips or tiles, whose places and sizes are filled in."""
    formats = {1: "B", 2: "B", 3: "H", 4: "I", 7: "B", 11: "f", 16: "Q"}
    tiled = 322 in tags
    place, size = (324, 325) if tiled else (273, 279)
    header = 16 if big else 8
    body, places = b"", []
    for block in blocks:
        places.append(header + len(body))
        body += block + b"\0" * (len(block) % 2)
    tags = {**tags, place: tags.get(place, (4, places)), size: tags.get(size, (4, [len(b) for b in blocks]))}
    entries, inline = b"", 8 if big else 4
    for number in sorted(tags):
        kind, values = tags[number]
        data = struct.pack(f"{order}{len(values)}{formats[kind]}", *values)
        if len(data) > inline:
            where = header + len(body)
            body += data + b"\0" * (len(data) % 2)
            data = struct.pack(order + ("Q" if big else "I"), where)
        entries += struct.pack(order + ("HHQ" if big else "HHI"), number, kind, len(values)) + data.ljust(inline, b"\0")
    mark = b"II" if order == "<" else b"MM"
    if big:
        head = mark + struct.pack(order + "HHHQ", 43, 8, 0, header + len(body))
        return head + body + struct.pack(order + "Q", len(tags)) + entries + bytes(8)
    head = mark + struct.pack(order + "HI", 42, header + len(body))
    return head + body + struct.pack(order + "H", len(tags)) + entries + bytes(4)


def tiff_tags(bits, photometric, samples=1, **more):
    tags = {
        256: (4, [WIDTH]), 257: (4, [HEIGHT]), 258: (3, [bits] * samples), 259: (3, [1]), 262: (3, [photometric]),
        277: (3, [samples]), 278: (4, [HEIGHT]),
    }
    tags.update({int(k[1:]): v for k, v in more.items()})
    return tags


def tiff():
    random_bytes = NOISE.integers(0, 256, 4096, np.uint8).tobytes()

    def rows(bits, samples):
        return random_bytes[: (WIDTH * bits * samples + 7) // 8 * HEIGHT]

    image = Image.fromarray(RGB)
    whole = fixtures("tiff-*.tif")
    for name in ("tiff_lzw", "packbits", "tiff_adobe_deflate", "jpeg"):
        whole["pillow-" + name] = saved(image, "TIFF", compression=name)
    for name in ("group3", "group4", "tiff_ccitt"):
        whole["pillow-" + name] = saved(image.convert("1"), "TIFF", compression=name)
    for bits in (1, 2, 4, 8, 12, 16, 32):
        whole[f"grey-{bits}"] = tiff_file(tiff_tags(bits, 1), [rows(bits, 1)])
    whole["big-white-is-zero"] = tiff_file(tiff_tags(4, 0), [rows(4, 1)], ">", True)
    whole["rgb-16-premultiplied"] = tiff_file(tiff_tags(16, 2, 4, _338=(3, [1])), [rows(16, 4)])
    whole["rgb-float"] = tiff_file(tiff_tags(32, 2, 3, _339=(3, [3] * 3)), [rows(32, 3)])
    whole["cmyk-16-alpha"] = tiff_file(tiff_tags(16, 5, 5, _338=(3, [2])), [rows(16, 5)], ">")
    whole["palette-4"] = tiff_file(tiff_tags(4, 3, _320=(3, list(range(0, 65536, 1366))[:48])), [rows(4, 1)])
    whole["ycbcr"] = tiff_file(tiff_tags(8, 6, 3, _530=(3, [1, 1])), [rows(8, 3)])
    whole["ycbcr-420"] = tiff_file(tiff_tags(8, 6, 3, _530=(3, [2, 2])), [random_bytes[: 7 * 5 * 6]])
    whole["lab"] = tiff_file(tiff_tags(8, 8, 3), [rows(8, 3)])
    whole["planes"] = tiff_file(tiff_tags(8, 2, 3, _284=(3, [2])), [rows(8, 1)] * 3)
    tiles = {"_322": (4, [16]), "_323": (4, [16])}
    whole["tile-planes"] = tiff_file(tiff_tags(8, 2, 4, _284=(3, [2]), _338=(3, [2]), **tiles), [random_bytes[:256]] * 4)

    grey = tiff_tags(8, 1)
    hostile = {
        "sides-2-32": tiff_file({**grey, 256: (4, [0xFFFFFFFF]), 257: (4, [0xFFFFFFFF])}, [b"abcd"]),
        "sides-2-31": tiff_file({**grey, 256: (4, [0x7FFFFFFF]), 257: (4, [0x7FFFFFFF])}, [b"abcd"]),
        "tile-2-31": tiff_file({**grey, 322: (4, [0x7FFFFFF0]), 323: (4, [0x7FFFFFF0])}, [b"abcd"]),
        "tile-40000": tiff_file({**grey, 322: (4, [40000]), 323: (4, [40000])}, [b"abcd"]),
        "samples-65535": tiff_file({**grey, 277: (3, [65535])}, [b"abcd"]),
        "strip-behind-the-end": tiff_file({**grey, 273: (4, [0xFFFFFFF0])}, [b"abcd"]),
        "strip-of-4-gigabytes": tiff_file({**grey, 279: (4, [0xFFFFFFFF])}, [b"abcd"]),
        "rows-per-strip-0": tiff_file({**grey, 278: (4, [0])}, [bytes(WIDTH * HEIGHT)]),
        "no-bits": tiff_file({**grey, 258: (3, [0])}, [b"abcd"]),
        "bits-64": tiff_file({**grey, 258: (3, [64])}, [bytes(8 * WIDTH * HEIGHT)]),
        "half-floats": tiff_file({**grey, 258: (3, [16]), 339: (3, [3])}, [bytes(2 * WIDTH * HEIGHT)]),
        "palette-missing": tiff_file(tiff_tags(8, 3), [bytes(WIDTH * HEIGHT)]),
        "short-strip": tiff_file(grey, [bytes(20)]),
        "deflate-noise": tiff_file({**grey, 259: (3, [8])}, [random_bytes[:60]]),
        "jpeg-noise": tiff_file({**tiff_tags(8, 6, 3), 259: (3, [7])}, [b"\xff\xd8" + random_bytes[:60]]),
        "old-jpeg": tiff_file({**tiff_tags(8, 6, 3), 259: (3, [6])}, [b"\xff\xd8" + random_bytes[:60]]),
        "log-luv": tiff_file({**tiff_tags(16, 32845, 3), 259: (3, [34676])}, [random_bytes[:200]]),
        "directory-loop": b"II*\0\x08\0\0\0\x01\0\x00\x01\x04\0\x01\0\0\0\x05\0\0\0\x08\0\0\0",
        "directory-outside": b"II*\0\xff\xff\xff\x7f" + bytes(20),
        "65535-entries": b"II*\0\x08\0\0\0\xff\xff" + bytes(100),
    }
    return whole, hostile


def gif():
    def file(screen, palette, *blocks):
        flags = 0x80 | (palette.bit_length() - 2) if palette else 0
        return b"GIF89a" + struct.pack("<HHBBB", *screen, flags, 0, 0) + bytes(range(3 * palette)) + b"".join(blocks)

    def frame(left, top, width, height, data=b"\x02\x02\x4c\x01\x00"):
        return b"," + struct.pack("<HHHHB", left, top, width, height, 0) + data + b";"

    whole = fixtures("gif-*.gif")
    whole["grey"] = saved(Image.fromarray(GREY), "GIF")
    whole["1-pixel"] = file((1, 1), 4, frame(0, 0, 1, 1))
    hostile = {
        "frame-partly-outside": file((1, 1), 4, frame(0, 0, 1, 1)[:-1] + b"x"),
        "frame-outside": file((2, 2), 4, frame(60, 60, 1, 1)),
        "screen-0": file((0, 0), 4, frame(3, 3, 1, 1)),
        "screen-65535": file((65535, 65535), 4, frame(0, 0, 1, 1)),
        "frame-65535": file((2, 2), 4, frame(0, 0, 65535, 65535)),
        "frame-0": file((2, 2), 4, frame(0, 0, 0, 0)),
        "no-palette": file((1, 1), 0, frame(0, 0, 1, 1)),
        "no-frame": file((1, 1), 4, b";"),
        "index-beyond-palette": file((4, 4), 2, frame(0, 0, 4, 4, b"\x08\x06" + bytes([0, 255, 255, 7, 80, 9]) + b"\0")),
        "code-size-12": file((4, 4), 4, frame(0, 0, 4, 4, b"\x0c\x04abcd\0")),
        "thousand-comments": file((1, 1), 4, b"!\xfe\x01a\0" * 1000, frame(0, 0, 1, 1)),
        "control-too-short": file((1, 1), 4, b"!\xf9\x01\x01\0", frame(0, 0, 1, 1)),
    }
    return whole, hostile


def bmp_file(bits, data, compression=0, width=WIDTH, height=HEIGHT, size=40, palette=b"", masks=b"", used=0, offset=None):
    info = struct.pack("<IiiHHIIiiII", size, width, height, 1, bits, compression, len(data), 0, 0, used, 0)
    info = (info + masks).ljust(size, b"\0") if size > 40 else info + masks
    start = 14 + len(info) + len(palette) if offset is None else offset
    return b"BM" + struct.pack("<IHHI", 14 + len(info) + len(palette) + len(data), 0, 0, start) + info + palette + data


def bmp():
    noise = NOISE.integers(0, 256, 1024, np.uint8).tobytes()
    colours = bytes(range(200)) + bytes(824)

    def rows(bits):
        return noise[: (WIDTH * bits + 31) // 32 * 4 * HEIGHT]

    run8 = (bytes([6, 1, 0, 7]) + noise[:8]) + b"\0\0"
    masks16 = struct.pack("<IIII", 0xF00, 0xF0, 0xF, 0xF000)
    whole = fixtures("bmp-*.bmp")
    for bits in (1, 2, 4, 8):
        whole[f"index-{bits}"] = bmp_file(bits, rows(bits), palette=colours[: 4 << bits])
    for bits in (16, 24, 32):
        whole[f"colour-{bits}"] = bmp_file(bits, rows(bits), height=-HEIGHT)
    whole["masks-16-alpha"] = bmp_file(16, rows(16), 3, size=56, masks=masks16)
    whole["masks-32-10-bits"] = bmp_file(32, rows(32), 3, masks=struct.pack("<III", 0x3FF00000, 0xFFC00, 0x3FF))
    whole["run-8"] = bmp_file(8, run8 * HEIGHT + b"\0\1", 1, palette=colours)
    whole["run-8-jumps"] = bmp_file(8, b"\0\2\5\3\4\1\0\2\xff\xff\0\1", 1, palette=colours)
    whole["run-4"] = bmp_file(4, bytes([9, 0x12, 0, 4, 0x34, 0x56, 0, 0]) * HEIGHT + b"\0\1", 2, palette=colours[:64])
    hostile = {
        "sides-2-31": bmp_file(24, b"abcd", width=0x7FFFFFFF, height=0x7FFFFFFF),
        "height-minus-2-31": bmp_file(24, b"abcd", height=-0x80000000),
        "width-negative": bmp_file(24, rows(24), width=-5),
        "run-20000-squared": bmp_file(8, b"\0\1", 1, width=20000, height=20000, palette=colours),
        "run-top-down": bmp_file(8, run8, 1, height=-3, palette=colours),
        "offset-0": bmp_file(24, rows(24), offset=0),
        "offset-behind-the-end": bmp_file(24, rows(24), offset=0xFFFFFFF0),
        "palette-of-2-32": bmp_file(8, rows(8), used=0xFFFFFFFF, palette=colours),
        "palette-of-2": bmp_file(8, rows(8), used=2, palette=colours[:8]),
        "masks-overlap": bmp_file(32, rows(32), 3, masks=struct.pack("<III", 0xFF00, 0xFF0, 0xFF)),
        "masks-with-holes": bmp_file(32, rows(32), 3, masks=struct.pack("<III", 0xF0F, 0xF0000, 0xF00000)),
        "jpeg-inside": bmp_file(0, b"\xff\xd8\xff", 4),
        "depth-7": bmp_file(7, rows(8)),
        "profile-outside": bmp_file(24, rows(24), size=124, masks=bytes(16) + b"DEBM" + bytes(52) + b"\xff" * 8),
    }
    return whole, hostile


# ------------------------------------------------------------------------------------------------------------- damage


def damaged(name, data, random_source):
    """Files made from a sound one: cut at some places, bytes changed, four bytes near the start set to their largest."""
    for share in (0.3, 0.7, 0.95):
        length = int(len(data) * share)
        yield f"cut-{name}-{length}", data[:length]
    for i, count in enumerate((1, 3, 12)):
        bytes_ = bytearray(data)
        for _ in range(count):
            # Headers decide more than pixels do.
            reach = min(len(data), 200) if random_source.random() < 0.6 else len(data)
            bytes_[random_source.randrange(8, reach)] = random_source.randrange(256)
        yield f"flipped-{name}-{i}", bytes(bytes_)
    place = random_source.randrange(12, min(len(data) - 4, 120))
    yield f"flipped-{name}-largest-{place}", data[:place] + b"\xff\xff\xff\xff" + data[place + 4 :]


def main():
    total = 0
    for make in (jpeg, png, webp, heic, tiff, gif, bmp):
        whole, hostile = make()
        files = {"hostile-" + name: data for name, data in hostile.items()}
        for name, data in whole.items():
            files["whole-" + name] = data
            files.update(damaged(name, data, random.Random(zlib.crc32(name.encode()))))
        folder = CORPUS / make.__name__
        folder.mkdir(parents=True, exist_ok=True)
        for path in folder.iterdir():
            if not path.name.startswith("found-"):
                path.unlink()
        for name, data in files.items():
            (folder / name).write_bytes(data)
        size = sum(path.stat().st_size for path in folder.iterdir())
        total += size
        print(f"{make.__name__:5} {len(list(folder.iterdir())):4} files {size:7} bytes")
    print(f"total {total} bytes")


if __name__ == "__main__":
    main()
