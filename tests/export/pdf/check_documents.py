"""Judges the documents of pdf_documents by programs that others wrote: qpdf, poppler, Ghostscript and Pillow.

    check_documents.py    LAMINA_DOCUMENTS: the program that makes them; LAMINA_MODULES, LAMINA_PROFILES: what it needs
"""

import json
import os
import subprocess
import sys
import tempfile
from pathlib import Path

import numpy as np
from PIL import Image

# Width, height and samples of the pictures' bytes, and what they are on a page.
PICTURES = {
    "chart": (19, 13, 4, "RGB"), "clear": (19, 20, 4, "RGBA"), "dot": (1, 1, 4, "RGB"), "tall": (1, 5000, 4, "RGB"),
    "noise": (700, 400, 4, "RGB"), "ramp": (600, 504, 4, "RGB"), "gray": (16, 9, 1, "L"), "inks": (33, 21, 4, "CMYK"),
    "coated": (240, 180, 4, "CMYK"), "deep": (20, 10, 6, "RGB"), "turned": (19, 13, 4, "RGB"),
}
NOTE = "Page 1 of 1"
faults = []


def expect(truth, *words):
    if not truth:
        faults.append(" ".join(str(word) for word in words))


def run(*command, **options):
    return subprocess.run([str(word) for word in command], capture_output=True, check=False, timeout=300, **options)


def ghostscript(device, dpi, target, path):
    run("gs", "-q", "-dSAFER", "-dBATCH", "-dNOPAUSE", f"-sDEVICE={device}", f"-r{dpi}", "-o", target, path)


def near(numbers, wanted):
    return len(numbers) == len(wanted) and all(abs(a - b) < 1e-6 for a, b in zip(numbers, wanted))


class Document:
    def __init__(self, path):
        self.path, self.name = path, path.stem
        self.kind, _, self.picture = self.name.partition("-")
        if self.picture == "standard":
            self.picture = "ramp"
        self.width, self.height, _, self.mode = PICTURES[self.picture]
        self.is_x = self.picture == "coated" and self.kind != "plain"
        self.has_note = "note" in self.kind
        self.has_marks = self.kind in ("crop", "cropnote", "fine")
        whole = json.loads(run("qpdf", "--json=2", path).stdout)["qpdf"]
        self.version = whole[0]["pdfversion"]
        self.objects, self.trailer = whole[1], whole[1]["trailer"]["value"]
        self.page = self.value(self.value(self.value(self.trailer["/Root"])["/Pages"])["/Kids"][0])

    def value(self, reference):
        return self.objects["obj:" + reference]["value"]

    def size(self):
        """The page and the picture's place on it from the top left, as they are to be."""
        w, h = (self.width * 72 / 300, self.height * 72 / 300) if self.kind == "fine" else (self.width, self.height)
        if self.picture == "turned":  # a quarter turn, two pixels a point
            w, h = h / 2, w / 2
        if self.kind == "notes":
            return (w, h + 100), (w / 4, 50, w / 2, h / 2)
        if self.kind == "cropnote":
            return (w + 40, h + 90), ((w + 40) / 4, 50, (w + 40) / 2, (h + 40) / 2)
        if self.has_marks:
            return (w + 40, h + 40), (20, 20, w, h)
        return (w, h), (0, 0, w, h)

    def drawn_by(self, program, dpi, folder):
        target = folder / f"{self.name}-{program}.png"
        if program == "gs":
            ghostscript("png16m", dpi, target, self.path)
        else:
            run("pdftocairo", "-png", "-singlefile", "-r", dpi, self.path, target.with_suffix(""))
        return np.asarray(Image.open(target).convert("RGB")).astype(int)


def embedded(document, folder):
    """The picture, with its mask as last component, as poppler takes it out."""
    root = folder / ("taken-" + document.name)
    run("pdfimages", "-tiff" if document.mode == "CMYK" else "-png", document.path, root)
    planes = [np.asarray(Image.open(path)) for path in sorted(folder.glob(root.name + "-*"))]
    return np.dstack(planes) if planes else np.zeros((0, 0, 1))


def original(document, folder):
    width, height, samples, mode = PICTURES[document.picture]
    pixels = np.fromfile(folder / f"{document.picture}.bin", np.uint8).reshape(height, width, samples)
    if document.picture == "deep":  # the nearest of 8 bits
        words = pixels.reshape(height, width, 3, 2).astype(int)
        return np.rint((words[..., 0] * 256 + words[..., 1]) * 255 / 65535).astype(np.uint8)
    if document.picture == "turned":
        pixels = np.rot90(pixels, -1)
    return pixels[..., :len(mode)]


def check_structure(document):
    checked = run("qpdf", "--check", document.path)
    expect(checked.returncode == 0, document.name, checked.stdout, checked.stderr)
    (width, height), _ = document.size()
    expect(near(document.page["/MediaBox"], [0, 0, width, height]), document.name, document.page["/MediaBox"])
    wanted = {"/CreationDate": "u:D:20240101000000Z", "/ModDate": "u:D:20240101000000Z", "/Trapped": "/False"}
    if document.kind != "data":
        wanted["/Title"] = "u:" + document.name
    if document.is_x:
        wanted |= {"/GTS_PDFXVersion": "u:PDF/X-1:2001", "/GTS_PDFXConformance": "u:PDF/X-1a:2001"}
    expect(wanted.items() <= document.value(document.trailer["/Info"]).items(), document.name, "information")
    expect(document.version == ("1.3" if document.is_x else "1.4"), document.name, document.version)
    if document.kind in ("plain", "data") or document.name == "notes-standard":
        expect("/TrimBox" not in document.page, document.name, "is cut")
    else:
        inset = 20 if document.has_marks else 0
        for box in ("/TrimBox", "/BleedBox"):
            expect(near(document.page[box], [inset, inset, width - inset, height - inset]), document.name, box)
    images = [o for o in document.objects.values() if o.get("stream", {}).get("dict", {}).get("/Subtype") == "/Image"]
    expect(len(images) == (2 if document.mode == "RGBA" else 1), document.name, "images:", len(images))


def check_picture(document, folder):
    wanted, got = original(document, folder), embedded(document, folder)
    if document.mode == "L":
        got = got[..., :1]
    expect(got.shape == wanted.shape and (got == wanted).all(), document.name, "pixels", got.shape, wanted.shape)


def check_note(document):
    fonts = run("pdffonts", document.path).stdout.decode().splitlines()[2:]
    text = run("pdftotext", document.path, "-").stdout.decode().strip()
    expect(text == (NOTE if document.has_note else ""), document.name, "text", repr(text))
    expect(bool(fonts) == document.has_note, document.name, fonts)
    if not document.has_note:
        return
    expect("+LiberationSans-Bold " in fonts[0] and fonts[0].count(" yes") == 3, document.name, fonts)
    box = run("pdftotext", "-bbox", document.path, "-").stdout.decode()
    left, top = (float(box.split(edge + '="')[1].split('"')[0]) for edge in ("xMin", "yMin"))
    expect(abs(left - (document.width - 150)) < 1 and abs(top - document.height) < 1.5, document.name, left, top)


def walk(value):
    """All keys and values below, as pairs."""
    if isinstance(value, dict):
        for key, below in value.items():
            yield key, below
            yield from walk(below)
    elif isinstance(value, list):
        for below in value:
            yield None, below
            yield from walk(below)


def check_x(document):
    """What ISO 15930-1 asks of a PDF/X-1a:2001 as ours are made."""
    forbidden = {"/SMask", "/CA", "/ca", "/BM", "/Group", "/Annots", "/AA", "/OpenAction", "/JS", "/Encrypt", "/TR2",
                 "/Alternates", "/OPI", "/TR", "/HTP", "/AcroForm", "/ArtBox", "/Prev", "/DeviceRGB", "/CalRGB",
                 "/CalGray", "/Lab", "/ICCBased", "/LZWDecode", "/JPXDecode", "/ObjStm", "/XRef", "/Type3"}
    found = {word for pair in walk(document.objects) for word in pair if isinstance(word, str)} & forbidden
    expect(not found, document.name, "has", found)
    first, second = document.trailer["/ID"]
    expect(first == second, document.name, first)
    intents = document.value(document.trailer["/Root"])["/OutputIntents"]
    wanted = {"/S": "/GTS_PDFX", "/OutputConditionIdentifier": "u:FOGRA39", "/RegistryName": "u:http://www.color.org"}
    expect(len(intents) == 1 and wanted.items() <= intents[0].items(), document.name, intents)
    profile = run("qpdf", "--show-object=" + intents[0]["/DestOutputProfile"].split()[0], "--filtered-stream-data",
                  document.path).stdout
    expect(profile[12:20] == b"prtrCMYK" and len(profile) == int.from_bytes(profile[:4], "big"), document.name)


def marks(width, height, m=20.0):
    a, b, c, d, e = m - 0.25, width - 10, width - m + 0.25, height - m - 0.25, height - 10
    return [(0, a, 10, 0.5), (a, 0, 0.5, 10), (b, a, 10, 0.5), (c, 0, 0.5, 10),
            (0, d, 10, 0.5), (a, e, 0.5, 10), (b, d, 10, 0.5), (c, e, 0.5, 10)]


def check_marks(name, ink, document):
    """`ink`: 0 none to 255 full, at 4 pixels a point. Lines of one point around each rectangle, and nothing else
    outside of the picture and the note."""
    (width, height), (x, y, w, h) = document.size()
    rows, columns = ink.shape
    across, down = (np.arange(columns) + 0.5) / 4, (np.arange(rows) + 0.5) / 4
    surely, maybe = np.zeros(ink.shape, bool), np.zeros(ink.shape, bool)

    def add(area, left, top, right, bottom):
        area |= ((across > left) & (across < right))[None] & ((down > top) & (down < bottom))[:, None]

    for left, top, wide, high in marks(width, height):
        add(surely, left - 0.3, top - 0.3, left + wide + 0.3, top + high + 0.3)
        add(maybe, left - 0.7, top - 0.7, left + wide + 0.7, top + high + 0.7)
    add(maybe, x - 0.3, y - 0.3, x + w + 0.3, y + h + 0.3)
    if document.has_note:
        add(maybe, document.width - 150, document.height, document.width, document.height + 30)
    expect((ink[surely] > 250).all(), name, "marks missing")
    expect((ink[~maybe] < 5).all(), name, "marks elsewhere")


def check_plates(document, folder):
    """Ghostscript's plates hold the picture's inks as they went in, and every mark."""
    root, wanted = folder / ("plates-" + document.name), original(document, folder)
    ghostscript("tiffsep", 288, f"{root}.tif", document.path)
    _, (x, y, w, h) = document.size()
    steps = 4 * h / document.height, 4 * w / document.width  # pixels of the plate for one of the picture
    rows, columns = [(4 * start + (np.arange(count) + 0.5) * step).astype(int) for start, count, step in
                     zip((y, x), (document.height, document.width), steps)]
    for i, plate in enumerate(["Cyan", "Magenta", "Yellow", "Black"]):
        ink = 255 - np.asarray(Image.open(f"{root}({plate}).tif")).astype(int)
        apart = np.abs(ink[np.ix_(rows, columns)] - wanted[..., i])
        if document.has_note:  # which may lie upon the picture
            apart = apart[:document.height // 2]
        expect(apart.max() <= 2, document.name, plate, apart.max())
        if document.has_marks:
            check_marks(f"{document.name} {plate}", ink, document)


def check_drawing(document, folder):
    """Two programs draw the same; where a page is drawn at the picture's own pixels, they draw its pixels."""
    dpi = {"turned": 144}.get(document.picture, 72) * (2 if document.has_note else 1)
    one, other = document.drawn_by("gs", dpi, folder), document.drawn_by("cairo", dpi, folder)
    _, (x, y, w, h) = document.size()
    scale = dpi / 72
    area = np.s_[int(scale * y):round(scale * (y + h)), int(scale * x):round(scale * (x + w))]
    if document.kind != "cropnote":  # there the note lies upon the picture
        expect(np.abs(one[area] - other[area]).max() <= 2, document.name, "drawn apart")
    if not document.has_note:
        pixels = original(document, folder).astype(int)
        if document.mode == "RGBA":
            alpha = pixels[..., 3:]
            pixels = (pixels[..., :3] * alpha + 255 * (255 - alpha)) / 255
        expect(np.abs(one[area] - pixels).max() <= 2, document.name, "drawn otherwise than it was")
    if document.has_marks:
        drawn = document.drawn_by("gs", 288, folder)
        check_marks(document.name, 255 - drawn.max(axis=2), document)


def make(folder, *arguments, **environment):
    return run(os.environ["LAMINA_DOCUMENTS"], folder, *arguments, env={**os.environ, **environment})


def check_failures(folder):
    """What is missing is named, and no file is left."""
    broken = folder / "broken"
    broken.mkdir()
    (broken / "LiberationSans-Bold.ttf").write_bytes(b"\0\1\0\0 no font")
    (broken / "lamina-pdf.so").write_bytes(b"no library")
    for variable, value, name, message in [
            ("LAMINA_MODULES", "/nowhere", "plain-dot", "support for PDF is not installed"),
            ("LAMINA_MODULES", broken, "plain-dot", "support for PDF can't be loaded"),
            ("LAMINA_FONTS", "/nowhere", "notes-standard", "the font Liberation Sans Bold is not installed"),
            ("LAMINA_FONTS", broken, "notes-standard", "the font Liberation Sans Bold is damaged")]:
        target = Path(tempfile.mkdtemp(dir=folder))
        made = make(target, name, **{variable: str(value)})
        expect(made.returncode == 1 and f"{name}.pdf: {message}" in made.stderr.decode(), name, made.stderr)
        expect(not list(target.iterdir()), name, list(target.iterdir()))


def check_repetition(folder):
    """One core gives the same bytes as several; the environment sets the date."""
    again, dated = folder / "again", folder / "dated"
    again.mkdir(), dated.mkdir()
    run("taskset", "-c", "0", os.environ["LAMINA_DOCUMENTS"], again)
    make(dated, "plain-dot", SOURCE_DATE_EPOCH="1234567890")
    for path in folder.glob("*.pdf"):
        expect((again / path.name).read_bytes() == path.read_bytes(), path.name, "other bytes")
    expect(b"D:20090213233130Z" in (dated / "plain-dot.pdf").read_bytes(), "the date of the environment")


def main():
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        made = make(folder)
        documents = [Document(path) for path in sorted(folder.glob("*.pdf"))]
        expect(made.returncode == 0 and len(documents) == 23, len(documents), "documents", made.stderr)
        check_repetition(folder)
        check_failures(folder)
        for document in documents:
            check_structure(document)
            check_picture(document, folder)
            check_note(document)
            if document.is_x:
                check_x(document)
            if document.kind != "fine" and (document.is_x or document.mode != "CMYK"):
                (check_plates if document.is_x else check_drawing)(document, folder)
    print("\n".join(faults) or "all documents are as they should be")
    return 1 if faults else 0


sys.exit(main())
