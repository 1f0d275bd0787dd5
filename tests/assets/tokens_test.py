"""What the maker of the tokens refuses: names that would only fail on a machine that can't use the compiled screens."""

import json
import os
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

TOOL = Path(os.environ["LAMINA_SOURCE"], "tools/make_tokens.py")


class MakeTokens(unittest.TestCase):
    def make(self, tokens):
        with tempfile.TemporaryDirectory() as folder:
            source, made = Path(folder, "tokens.json"), Path(folder, "Tokens.qml")
            source.write_text(json.dumps(tokens), encoding="utf-8")
            run = subprocess.run([sys.executable, "-B", TOOL, source, made], capture_output=True, text=True)
            return run, made.read_text(encoding="utf-8") if made.exists() else None

    def test_refuses_names_that_qml_cannot_take(self):
        for name in ("print", "Card", "two words", "4th", "gap-wide", ""):
            with self.subTest(name):
                run, made = self.make({"radius": {"card": 12, name: 4}})
                self.assertEqual(run.returncode, 1)
                self.assertIn(f"'{name}'", run.stderr)
                self.assertNotIn("Traceback", run.stderr)
                self.assertIsNone(made)

    def test_takes_texts_with_quotes_and_colours_with_more_than_an_alpha(self):
        run, made = self.make({"edge": {"color": "#102030", "alpha": 0.5, "width": 2, "note": "n"}, "family": 'a "b" \\'})
        self.assertEqual(run.returncode, 0, run.stderr)
        self.assertIn('color color: "#80102030"', made)
        self.assertIn("int width: 2", made)
        self.assertIn('string family: "a \\"b\\" \\\\"', made)
        self.assertNotIn("alpha", made)
        self.assertNotIn("note", made)


if __name__ == "__main__":
    unittest.main()
