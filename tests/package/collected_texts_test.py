"""The collector of texts: what it finds in sources, and what it does to the translations that stand already."""

import os
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ET
from pathlib import Path

SOURCE = Path(os.environ["LAMINA_SOURCE"])

CPP = r"""
const char* const kNames[] = {QT_TRANSLATE_NOOP("Lamina", "Reset"), QT_TRANSLATE_NOOP("Lamina", "Move")};
std::string localizedString(std::string_view key);
void f(bool on, int n) {
    // localizedString("in a comment") /* " */
    use(localizedString("Plain"), '"', 1'000'000, "not a text");
    use(localizedString(on ? "On" : "Off"));
    use(localizedString("Two "
                        "pieces, \"quoted\"\n\u2026"));
    use(localizedText(R"x(raw "one" \n)x"));
    use(localizedString(kNames[n]));
    context.translate(3, 4);
}
"""
QML = r"""
Item {
    property string a: qsTranslate("Lamina", 'It\'s <b>')
    property string b: qsTranslate("Lamina", "%n photo(s)", "", count)
    property string c: qsTranslate("Lamina", "Right", "side") + qsTranslate("Lamina", "Right")
    property string d: qsTranslate("Lamina", root.on ? "Yes" : "No")
    property string e: qsTranslate("Lamina", "one " +
                                             "two")
    /* qsTranslate("Lamina", "dead") */
    property string f: "qsTranslate(\"Lamina\", \"quoted call\")"
}
"""


def messages(path):
    """Text, meaning and whether it counts, in the order of the file: translation and state."""
    return {
        (m.findtext("source"), m.findtext("comment", ""), m.get("numerus") == "yes"): (
            m.find("translation").text or "",
            m.find("translation").get("type"),
        )
        for m in ET.parse(path).getroot().iter("message")
    }


class Collector(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.sources, self.files = Path(folder.name, "src"), Path(folder.name, "translations")
        self.sources.mkdir()
        self.files.mkdir()
        self.template = self.files / "lamina.ts"

    def collect(self, *options, **sources):
        """Runs the collector over files of these names, `a_cpp` for a.cpp."""
        for name, code in sources.items():
            (self.sources / name.replace("_", ".")).write_text(code, encoding="utf-8")
        return self.run_tool("--sources", self.sources, *options)

    def run_tool(self, *options):
        tool = SOURCE / "tools" / "make_translation_template.py"
        return subprocess.run([sys.executable, tool, "--folder", self.files, *options], capture_output=True, text=True)

    def test_texts_of_both_languages_stand_sorted_in_one_context(self):
        run = self.collect(a_cpp=CPP, b_qml=QML)
        self.assertEqual(run.returncode, 0, run.stderr)
        self.assertEqual(run.stderr, "")
        self.assertEqual([name.text for name in ET.parse(self.template).getroot().iter("name")], ["Lamina"])
        plain = ["It's <b>", "Move", "No", "Off", "On", "Plain", "Reset", "Right", "Two pieces, \"quoted\"\n…", "Yes",
                 "one two", 'raw "one" \\n']
        wanted = [(text, "", False) for text in plain] + [("%n photo(s)", "", True), ("Right", "side", False)]
        self.assertEqual(list(messages(self.template)), sorted(wanted))

    def test_a_text_that_could_never_be_found_is_refused(self):
        for code in ('qsTr("Home")', 'qsTranslate("Other", "Home")', 'QCoreApplication::translate("Other", "Home")'):
            with self.subTest(code):
                run = self.collect(a_cpp=f"\nx = {code};")
                self.assertEqual(run.returncode, 1)
                self.assertIn("a.cpp:2: ", run.stderr)
                self.assertFalse(self.template.exists())

    def test_a_look_up_of_texts_that_are_not_marked_is_noted(self):
        run = self.collect(a_cpp='std::string localizedString(std::string_view key);\nx = localizedString(kNames[n]);')
        self.assertEqual(run.returncode, 0)
        self.assertRegex(run.stderr, r"^note: .*a\.cpp:2: looks up no literal.*\n$")

    def test_a_cause_of_failure_is_a_text_but_not_the_commands(self):
        code = 'return Error{path, "is a folder"};\nreturn "no such file";\nreturn "rb";\nreturn "Adobe RGB";'
        code += 'namespace lamina::cause {\nconst char* kHalf = "half; not all";\n}\nconst char* kOther = "more; or less";'
        for module in ("platform/image/codecs", "platform/photos", "cli"):
            (self.sources / module).mkdir(parents=True)
            (self.sources / module / "a.cpp").write_text(code.replace("folder", module.split("/")[-1]), encoding="utf-8")
        self.assertEqual(self.collect().returncode, 0)
        self.assertEqual([source for source, *_ in messages(self.template)],
                         ["half; not all", "is a codecs", "is a photos", "no such file"])

    def test_translations_that_still_have_a_text_stay(self):
        language = self.files / "lamina_de.ts"
        language.write_text(
            '<TS version="2.1" language="de"><context><name>Lamina</name>'
            "<message><source>Move</source><translation>Bewegen &amp; mehr</translation></message>"
            "<message><source>Gone</source><translation>Weg</translation></message></context></TS>",
            encoding="utf-8",
        )
        code = 'localizedString("Move"); localizedString("New");'
        self.assertEqual(self.collect("--check", a_cpp=code).returncode, 1)
        self.assertFalse(self.template.exists())
        self.assertEqual(self.collect(a_cpp=code).returncode, 0)
        self.assertEqual(
            messages(language),
            {("Move", "", False): ("Bewegen & mehr", None), ("New", "", False): ("", "unfinished")},
        )
        self.assertEqual(ET.parse(language).getroot().get("language"), "de")
        self.assertEqual(self.collect("--check").returncode, 0)

    def test_nothing_that_the_toolkits_own_collector_finds_is_missing(self):
        found = self.files.parent / "found.ts"
        names = "tr+=localizedString,tr+=localizedText"
        command = [os.environ["LUPDATE"], "-silent", SOURCE / "src", "-extensions", "qml,js,cpp,h"]
        subprocess.run([*command, "-tr-function-alias", names, "-ts", found], check=True, capture_output=True)
        self.assertEqual(self.run_tool().returncode, 0)
        theirs, ours = set(messages(found)), set(messages(self.template))
        self.assertTrue(theirs)
        self.assertEqual(theirs - ours, set())


if __name__ == "__main__":
    unittest.main()
