"""Reads the window's screens from the accessibility bus, as a screen reader does: on a display, a session bus and in a
home of its own."""

import os
import shutil
import subprocess
import tempfile
import time
import unittest
from pathlib import Path

APP, SAMPLES = os.environ["LAMINA_APP"], Path(os.environ["LAMINA_SAMPLES"])
SERVICE = "org.a11y.Bus.service"
# No other service: those of the machine's own desktop would answer in the test's place.
BUS = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
  "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig><type>session</type><listen>unix:tmpdir=/tmp</listen><auth>EXTERNAL</auth><servicedir>{services}</servicedir>
<policy context="default"><allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/><allow own="*"/></policy>
</busconfig>"""
# The focus is left out: without a window manager no window is sure to have it.
TOLD_STATES = ("checked", "modal")

HOME = """
panel 'Lamina'
  heading 'Lamina'
  push button 'Menu'
  push button 'Two photos' (Eight frames)
  push button 'Three photos' (Ten frames)
  push button 'Blend' (One photo shines through the other)
"""
MENU = """
dialog 'Menu' modal
  heading 'Menu'
  push button 'Close' (Esc)
  list item 'Live filters'
  list item 'Keys'
  list item 'Photo folders…'
  list item 'About Lamina'
  list item 'Cancel'
"""
CHOOSER = """
panel 'First photo'
  push button 'Back' (Esc)
  label 'Step 1 of 2'
  heading 'First photo'
  push button 'Photo library'
"""
LISTING = """
dialog 'Choose a photo' modal
  heading 'Samples'
  push button 'Close' (Esc)
  check box 'Pictures'
  check box 'Home'
  check box 'Samples' checked
  list 'Samples'"""
CROP = """
panel 'Photo 1 of 2'
  push button 'Back' (Esc)
  heading 'Photo 1 of 2'
  image 'Photo behind the crop square' (Arrow keys move it, plus and minus zoom)
  label 'Drag to move, turn the wheel to zoom'
  push button 'Zoom out' (Not available now)
  slider 'Zoom' (1.0×) 0.00 of 0.00 to 1.79
  push button 'Zoom in'
  push button 'Use photo'
"""
BLEND = """
panel 'The blend'
  push button 'Back' (Esc)
  push button 'Undo' (Not available now. Ctrl+Z)
  push button 'Redo' (Not available now. Ctrl+Shift+Z)
  push button 'Save'
  image 'The blend' (Photo 2 lies over photo 1. Arrow keys move the second photo, plus and minus zoom it)
  check box 'Photo 1' (Stays in place)
  push button 'Menu of photo 1' (Menu)
  check box 'Photo 2' (On top, moves) checked
  push button 'Menu of photo 2' (Menu)
  label 'Drag to move, turn the wheel to zoom'
  check box 'Reset'
  check box 'Move' checked
  check box 'Tools'
  check box 'Effects'
  check box 'Sticker'
"""
TYPES = """
dialog 'Save as' modal
  heading 'Save as'
  push button 'Close' (Esc)
  list 'Save as'
    list item 'JPG' (Best for sharing)
    list item 'PNG' (Suggested. Best for complex images, illustrations)
    list item 'PDF Standard' (Best for document (and emailing))
    list item 'PDF Print' (Best for printing)
    list item 'SVG' (Best for web design and animations)
    list item 'MP4 Video' (High quality video)
    list item 'TIFF' (Store raster graphics information.)
"""
PNG = """
dialog 'Save as PNG' modal
  heading 'Save as PNG'
  push button 'Close' (Esc)
  push button 'File type' (PNG. Suggested)
  slider 'Size' (1.0. 360.0 x 360.0 px. 1080 × 1080 pixels in the file) 1.00 of 0.50 to 2.50
  check box 'Transparent background' checked
  push button 'Save PNG'
"""
PICKER = """
panel 'Choose photos'
  push button 'Cancel' (Esc)
  push button 'All Photos' (Albums. A)
  alert '1 of 3'
  push button 'Done' (Enter)
  list 'Photos'
    list item 'CAMERA'
    list item 'Photo, DAY'
    list item 'Photo, DAY, chosen, number 1'
"""
QUESTION = """
dialog 'Discard Editing' modal
  alert 'Discard Editing'
    push button 'YES'
    push button 'NO'
"""


class AccessibleTree(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.home = Path(folder.name)
        services = cls.home / "services"
        services.mkdir()
        shutil.copy(f"/usr/share/dbus-1/services/{SERVICE}", services)
        (cls.home / "bus.conf").write_text(BUS.format(services=services), encoding="utf-8")
        os.environ.update(HOME=folder.name, XDG_RUNTIME_DIR=folder.name, XDG_CONFIG_HOME=f"{folder.name}/config",
                          XDG_STATE_HOME=f"{folder.name}/state", LC_ALL="C.UTF-8",
                          LAMINA_REDUCED_MOTION="1", QT_QPA_PLATFORM="xcb", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")
        os.environ["DISPLAY"] = ":" + cls.say_one_line(["Xvfb", "-displayfd", "1", "-screen", "0", "1400x1000x24", "-nolisten", "tcp"])
        os.environ["DBUS_SESSION_BUS_ADDRESS"] = cls.say_one_line(["dbus-daemon", f"--config-file={cls.home}/bus.conf", "--print-address"])
        global pyatspi
        import pyatspi  # it looks for its bus at once
        list(pyatspi.Registry.getDesktop(0))  # an application that comes before the registry is not told of

    @classmethod
    def say_one_line(cls, command):
        server = subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        cls.addClassCleanup(server.stdout.close)
        cls.addClassCleanup(server.wait)
        cls.addClassCleanup(server.terminate)
        return server.stdout.readline().strip()

    def start(self, *arguments):
        app = subprocess.Popen([APP, "--size", "360x720", *arguments], stderr=subprocess.DEVNULL)
        self.addCleanup(app.wait)
        self.addCleanup(app.kill)
        self.pid = app.pid

    def setUp(self):
        shutil.rmtree(self.home / "state", ignore_errors=True)  # the work that another test has left

    def window(self):
        desktop = pyatspi.Registry.getDesktop(0)
        desktop.clearCache()  # it may know the application from before it had a window
        for child in list(desktop):
            if child and child.get_process_id() == self.pid and child.childCount:
                return child[0]
        return None

    def shown(self, node=None, depth=0):
        """The lines of all that is showing, a level of the tree a step to the right."""
        node = node or self.window()
        if not node:
            return []
        node.clearCache()
        states = node.getState()
        if not states.contains(pyatspi.STATE_SHOWING):
            return []
        words = [node.getRoleName(), repr(node.name)]
        if node.description:
            words.append(f"({node.description})")
        try:
            value = node.queryValue()
            words.append(f"{value.currentValue:.2f} of {value.minimumValue:.2f} to {value.maximumValue:.2f}")
        except NotImplementedError:
            pass
        told = [pyatspi.stateToString(state) for state in states.getStates()]
        lines = ["  " * depth + " ".join(words + [state for state in TOLD_STATES if state in told])]
        for child in list(node):
            lines += self.shown(child, depth + 1) if child else []
        return lines

    def screens(self):
        """What stands in the window."""
        return "\n".join(["", *(line[2:] for line in self.shown()[1:]), ""])

    def wait_until(self, condition):
        end = time.monotonic() + 30
        while not condition(self.screens()) and time.monotonic() < end:
            time.sleep(0.05)

    def assert_shows(self, wanted):
        """Waits until the window shows this and nothing else."""
        self.wait_until(lambda screens: screens == wanted)
        self.assertEqual(self.screens(), wanted)

    def wait_for(self, text):
        self.wait_until(lambda screens: text in screens)
        self.assertIn(text, self.screens())

    def pressable(self, name, node):
        node.clearCache()
        if node.name == name and node.getState().contains(pyatspi.STATE_SHOWING) and "Press" in self.actions(node):
            return node
        for child in reversed(list(node)):
            found = self.pressable(name, child) if child else None
            if found:
                return found
        return None

    @staticmethod
    def actions(node):
        try:
            action = node.queryAction()
        except NotImplementedError:
            return []
        return [action.getName(i) for i in range(action.nActions)]

    def press(self, name):
        """Presses what is showing as a screen reader does."""
        control = self.pressable(name, self.window())
        self.assertIsNotNone(control, f"{name} is not there to be pressed:\n{self.screens()}")
        control.queryAction().doAction(self.actions(control).index("Press"))

    def test_home_and_what_stands_over_it(self):
        self.start()
        self.assert_shows(HOME)
        self.press("Menu")
        self.assert_shows(MENU)
        self.press("About Lamina")
        self.wait_for("dialog 'About Lamina' modal")
        self.assertNotIn("Two photos", self.screens())
        self.press("Close")
        self.assert_shows(HOME)

    def test_a_blend_from_the_list_of_folders(self):
        self.start("--photos", str(SAMPLES), "--screen", "blend")
        self.assert_shows(CHOOSER)
        self.press("Photo library")
        self.wait_for("list item 'dunes.jpg'")
        listing = self.screens()
        self.assertIn(LISTING, listing)
        self.assertIn("    list item 'Up one folder'\n", listing)
        self.press("dunes.jpg")
        self.assert_shows(CROP)
        self.press("Zoom in")
        self.wait_for("slider 'Zoom' (1.1×) 0.10 of 0.00 to 1.79")
        self.press("Use photo")
        self.assert_shows(CHOOSER.replace("First", "Second").replace("Step 1", "Step 2"))
        self.press("Photo library")
        self.wait_for("list item 'meadow.jpg'")
        self.press("meadow.jpg")
        self.wait_for("panel 'Photo 2 of 2'")
        self.press("Use photo")
        self.assert_shows(BLEND)
        self.press("Save")
        self.assert_shows(TYPES)
        self.press("PNG")
        self.wait_for("Save PNG")
        self.press("Transparent background")
        self.assert_shows(PNG)
        self.press("Close")
        self.assert_shows(BLEND)
        self.press("Back")
        self.assert_shows(QUESTION)
        self.press("NO")
        self.assert_shows(BLEND)

    def test_photos_are_chosen_from_the_contact_sheet(self):
        pictures = self.home / "Pictures"
        pictures.mkdir()
        self.addCleanup(shutil.rmtree, pictures)
        for name in ("dunes.jpg", "meadow.jpg"):
            shutil.copy(SAMPLES / name, pictures)
            os.utime(pictures / name, (1_800_000_000, 1_800_000_000))
        self.start("--screen", "picker")
        self.wait_for("list item 'Photo, 15 January 2027'")
        self.press("Photo, 15 January 2027")
        camera = "Take a photo" if "Take a photo" in self.screens() else "No camera"
        self.assert_shows(PICKER.replace("DAY", "15 January 2027").replace("CAMERA", camera))


if __name__ == "__main__":
    unittest.main()
