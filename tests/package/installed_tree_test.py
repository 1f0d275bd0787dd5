"""Installs the build into a folder of its own and reads it as a desktop would."""

import configparser
import os
import re
import shlex
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ET
from pathlib import Path

SOURCE, BUILD = Path(os.environ["LAMINA_SOURCE"]), Path(os.environ["LAMINA_BUILD"])
ID = "org.lamina.lamina"
sys.dont_write_bytecode = True
sys.path.insert(0, str(SOURCE / "tools"))

from translations import ts_file  # noqa: E402


class InstalledTree(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.root = Path(folder.name)
        cls.usr = cls.root / "usr"
        subprocess.run([os.environ["CMAKE"], "--install", BUILD, "--prefix", cls.usr], check=True, capture_output=True)
        cls.desktop = configparser.ConfigParser(interpolation=None)
        cls.desktop.optionxform = str
        cls.desktop.read(cls.usr / "share/applications" / f"{ID}.desktop", encoding="utf-8")
        cls.metainfo = ET.parse(cls.usr / "share/metainfo" / f"{ID}.metainfo.xml").getroot()

    def texts(self, path):
        return [element.text for element in self.metainfo.findall(path)]

    def test_a_store_finds_one_whole_application(self):
        run = subprocess.run([os.environ["APPSTREAMCLI"], "validate-tree", "--no-net", self.root], capture_output=True, text=True)
        self.assertEqual(run.returncode, 0, run.stdout)

    def test_a_build_that_knows_its_home_names_it_and_pictures_that_stand_there(self):
        whole = ET.parse(BUILD / "tests/package" / f"{ID}.metainfo.xml").getroot()
        self.assertEqual([url.get("type") for url in whole.findall("url")], ["homepage", "bugtracker"])
        pictures = {Path(image.text).name for image in whole.iter("image")}
        self.assertEqual(pictures, {path.name for path in (SOURCE / "docs/images/screens").iterdir()})

    def test_every_program_that_is_named_stands_there(self):
        commands = {self.desktop[section]["Exec"].split()[0] for section in self.desktop.sections()}
        for program in commands | set(self.texts("provides/binary")):
            self.assertTrue(os.access(self.usr / "bin" / program, os.X_OK), program)

    def test_the_session_bus_starts_the_program_that_is_installed(self):
        service = configparser.ConfigParser(interpolation=None)
        service.read(self.usr / "share/dbus-1/services" / f"{ID}.service")
        program, argument = shlex.split(service["D-BUS Service"]["Exec"])
        self.assertEqual((service["D-BUS Service"]["Name"], self.desktop["Desktop Entry"]["DBusActivatable"]), (ID, "true"))
        self.assertTrue(os.path.samefile(program, self.usr / "bin/lamina-app"))
        options = subprocess.run([program, "--help"], capture_output=True, text=True, check=True).stdout
        self.assertIn(argument, options)

    def test_the_command_finds_what_it_loads_on_first_use(self):
        surroundings = {name: value for name, value in os.environ.items() if not name.startswith("LAMINA_")}
        for photo, arguments in (("jpeg-ycck.jpg", ["mp4", "-o", "film.mp4"]),
                                 ("heic-420.heic", ["pdf-print", "--profile", "cmyk", "-o", "page.pdf"])):
            command = [self.usr / "bin/lamina", "export", *arguments, "-i", SOURCE / "tests/data/pictures" / photo]
            run = subprocess.run(command, cwd=self.root, env=surroundings, capture_output=True, text=True)
            self.assertEqual((run.returncode, run.stderr), (0, ""))
            self.assertTrue((self.root / arguments[-1]).stat().st_size)

    def test_the_icon_is_there_in_colour_and_in_the_colour_of_the_theme(self):
        icons = self.usr / "share/icons/hicolor"
        name = self.desktop["Desktop Entry"]["Icon"]
        for path in (icons / f"scalable/apps/{name}.svg", icons / f"symbolic/apps/{name}-symbolic.svg"):
            root = ET.parse(path).getroot()
            self.assertTrue(root.tag.endswith("}svg"), path)
            self.assertEqual(root.get("width"), root.get("height"))
        fills = {element.get("fill") for element in root.iter("{http://www.w3.org/2000/svg}path")}
        self.assertEqual(fills, {"currentColor"})

    def test_store_and_menu_say_the_same(self):
        entry = self.desktop["Desktop Entry"]
        self.assertEqual(self.texts("provides/mediatype"), entry["MimeType"].rstrip(";").split(";"))
        self.assertEqual(self.texts("launchable"), [f"{ID}.desktop"])
        self.assertEqual(self.metainfo.findtext("name"), entry["Name"])
        self.assertEqual(self.metainfo.find("releases/release").get("version"), os.environ["LAMINA_VERSION"])

    def test_a_phone_shows_the_application(self):
        length = self.metainfo.find("requires/display_length")
        self.assertEqual((length.get("compare"), length.text), ("ge", "320"))
        self.assertIn("touch", self.texts("recommends/control"))
        self.assertIn("Mobile", self.desktop["Desktop Entry"]["X-Purism-FormFactor"].split(";"))

    def test_every_language_says_what_its_translator_finished(self):
        languages = {path.stem: path for path in (SOURCE / "assets/translations").glob("lamina_*.ts")}
        installed = {path.stem: path for path in (self.usr / "share/lamina/translations").iterdir()}
        self.assertEqual(set(installed), set(languages))
        for name, path in languages.items():
            found = self.root / f"{name}.ts"
            subprocess.run([os.environ["LCONVERT"], "-i", installed[name], "-of", "ts", "-o", found], check=True)
            wanted = {text: forms for text, (forms, state) in ts_file.read(path)[1].items() if state is None}
            there = {text: forms for text, (forms, _) in ts_file.read(found)[1].items()}
            # What equals the text is left out: the look-up falls back to it.
            self.assertEqual(there, {text: forms for text, forms in wanted.items() if forms != [text.source]})
            for text, forms in wanted.items():
                for form in forms:  # may move the places of values, but lose none; one of a thing needs no number
                    values = sorted(re.findall("%L?[0-9n]+", form))
                    self.assertIn(values, [sorted(re.findall("%L?[0-9n]+", text.source))] + [[]] * text.numerus)


if __name__ == "__main__":
    unittest.main()
