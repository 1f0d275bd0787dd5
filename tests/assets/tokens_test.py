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
    def test_refuses_names_that_qml_cannot_take(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        source, made = Path(folder.name, "tokens.json"), Path(folder.name, "Tokens.qml")
        for name in ("print", "Card", "two words", "4th", "gap-wide", ""):
            with self.subTest(name):
                source.write_text(json.dumps({"radius": {"card": 12, name: 4}}), encoding="utf-8")
                run = subprocess.run([sys.executable, "-B", TOOL, source, made], capture_output=True, text=True)
                self.assertEqual((run.returncode, run.stderr), (1, f"make_tokens.py: '{name}' is no name for a property\n"))
                self.assertFalse(made.exists())


if __name__ == "__main__":
    unittest.main()
