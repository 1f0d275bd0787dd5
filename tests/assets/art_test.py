"""Our line art: drawn by paths alone, of one family, and there under every name that a screen uses."""

import os
import re
import unittest
import xml.etree.ElementTree as ET
from pathlib import Path

SOURCE = Path(os.environ["LAMINA_SOURCE"])
SVG = "{http://www.w3.org/2000/svg}"
# Every renderer draws these alike. Texts, filters, masks, pictures and scripts it may draw in its own way, or not at
# all.
ALLOWED = {
    "svg": {"width", "height", "viewBox", "fill"},
    "g": {"transform", "fill-opacity"},
    "path": {"d", "fill", "fill-opacity", "stroke", "stroke-width", "stroke-opacity", "stroke-dasharray",
             "stroke-linecap", "stroke-linejoin"},
}
PAINT = re.compile(r"none|#[0-9A-F]{6}")


def art(*kinds):
    return {path: ET.parse(path).getroot() for kind in kinds for path in sorted((SOURCE / "assets" / kind).glob("*.svg"))}


def strokes(root, colors):
    return sorted(path.get("d") for path in root.iter(SVG + "path") if path.get("stroke") in colors)


class Art(unittest.TestCase):
    def test_holds_paths_only(self):
        pictures = art("icons", "art", "stickers")
        self.assertGreater(len(pictures), 50)
        for path, root in pictures.items():
            with self.subTest(path.name):
                self.assertNotIn("<!", path.read_text(encoding="utf-8"))
                self.assertEqual(root.get("viewBox"), f"0 0 {root.get('width')} {root.get('height')}")
                for element in root.iter():
                    kind = element.tag.removeprefix(SVG)
                    self.assertIn(kind, ALLOWED)
                    self.assertLessEqual(set(element.attrib), ALLOWED[kind], kind)
                    self.assertEqual((element.text or "").strip() + (element.tail or "").strip(), "")
                    for paint in ("fill", "stroke"):
                        self.assertRegex(element.get(paint, "none"), PAINT)

    def test_icons_are_of_one_family(self):
        for path, root in art("icons").items():
            if path.stem.startswith("app-"):
                continue
            with self.subTest(path.name):
                self.assertEqual(root.get("viewBox"), "0 0 24 24")
                for stroke in root.iterfind(f".//{SVG}path[@stroke]"):
                    self.assertEqual((stroke.get("stroke-linecap"), stroke.get("stroke-linejoin", "round")), ("round", "round"))

    def test_an_active_tool_keeps_its_outline_and_is_not_told_by_colour_alone(self):
        icons = {path.stem: root for path, root in art("icons").items()}
        # The check box is square and empty, or square and ticked: another drawing, not a lit one.
        pairs = [name for name in icons if name + "1" in icons and name != "ic_checkbox"]
        self.assertGreater(len(pairs), 10)
        for name in pairs:
            with self.subTest(name):
                quiet, lit = icons[name], icons[name + "1"]
                self.assertEqual(strokes(quiet, {"#FFFFFF"}), strokes(lit, {"#FFFFFF", "#FF5F98"}))
                self.assertTrue(strokes(lit, {"#FF5F98"}))
                self.assertTrue(any(path.get("fill") == "#D81159" for path in lit.iter(SVG + "path")))

    def test_every_name_in_a_screen_is_that_of_a_picture(self):
        there = {path.stem for path in art("icons", "art")}
        named = {}
        for screen in SOURCE.glob("src/**/*.qml"):
            text = screen.read_text(encoding="utf-8")
            lines = re.findall(r"\b(?:iconName|art): ?(.*)", text) + re.findall(r"\bIcon \{[^{}]*?\bname: ?(.*)", text)
            for name in re.findall(r'"(\w+)"', " ".join(re.sub(r"(title|line): qsTranslate\(.*?\)", "", line) for line in lines)):
                named.setdefault(name, screen.name)
        self.assertGreater(len(named), 10)
        self.assertEqual({name: screen for name, screen in named.items() if name not in there}, {})


if __name__ == "__main__":
    unittest.main()
