"""How drawings become outlines, and what is refused."""

import os
import sys
import unittest
import xml.etree.ElementTree as ET
from pathlib import Path

sys.path.insert(0, str(Path(os.environ["LAMINA_SOURCE"]) / "tools"))
import make_named_pictures as maker  # noqa: E402


def drawing(inside, attributes='width="8" height="8"'):
    return maker.Drawing(ET.fromstring(f'<svg xmlns="http://www.w3.org/2000/svg" {attributes}>{inside}</svg>'))


class NamedPictures(unittest.TestCase):
    def test_paths_become_lines_and_curves(self):
        cases = [  # beside those that the art itself holds, and that are compared with another renderer
            ("m1 2 3 4l-1,-1", [("M", [1, 2]), ("L", [4, 6]), ("L", [3, 5])]),
            ("M0 0C1 1 2 1 3 0S5-1 6 0", [("M", [0, 0]), ("C", [1, 1, 2, 1, 3, 0]), ("C", [4, -1, 5, -1, 6, 0])]),
            ("M0 0q3 3 6 0t6 0", [("M", [0, 0]), ("C", [2, 2, 4, 2, 6, 0]), ("C", [8, -2, 10, -2, 12, 0])]),
            ("M1 1h2v2zl1 1", [("M", [1, 1]), ("L", [3, 1]), ("L", [3, 3]), ("Z", []), ("L", [2, 2])]),
            ("M0 0a1 1 0 00.5.5e0", [("M", [0, 0]), ("C", None)]),
        ]
        for d, wanted in cases:
            with self.subTest(d):
                got = list(maker.outline(d))
                self.assertEqual([verb for verb, _ in got], [verb for verb, _ in wanted])
                for (_, values), (_, expected) in zip(got, wanted):
                    for value, other in zip(values, expected or values):
                        self.assertAlmostEqual(value, other)

    def test_transforms_styles_and_groups_are_worked_in(self):
        made = drawing('<g transform="translate(1 2) scale(2)" opacity=".5" stroke="#FF0000"><path d="M1 1L2 1" fill="none" '
                       'stroke-dasharray="1 2"/></g>', 'width="16" height="16" viewBox="0 0 8 8"')
        self.assertEqual("".join(made.verbs), "GPMLSg")
        self.assertEqual(made.numbers, [0.5, 6, 8, 10, 8, 1, 0, 0, 1, 4, 0, 0, 4, 0, 2, 4, 8])

    def test_what_a_table_cannot_say_is_refused(self):
        cases = ["<circle r='1'/>", "<path d='M0 0' filter='x'/>", "<path d='M0 0L1'/>", "<path d='M0 0X1 1'/>",
                 "<path d='M0 0H1' style='fill:red'/>", "<path d='M0 0H1' fill='red'/>", "<path d='M0 0H1' stroke='#000000' stroke-width='1px'/>",
                 "<path d='M0 0H1' transform='skewX(3)'/>", "<g>text</g>", "<path d='M0 0A1 1 0 2 0 1 1'/>",
                 "<path d='M0 0H1' stroke='#000000' transform='scale(1 2)'/>", "<path d='M0 0H1' stroke='#000000' stroke-linecap='flat'/>"]
        for inside in cases:
            with self.subTest(inside), self.assertRaises(maker.Unknown):
                drawing(inside)


if __name__ == "__main__":
    unittest.main()
