"""The repository's files, and C++ without what is not code."""

import re
import subprocess
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent
CPP = (".h", ".cpp")

# Comments, literals and directives: what a search for names must not look into.
NOT_CODE = re.compile(
    r"""
      //[^\n]* | /\*.*?\*/
    | R"(?P<fence>[^()\\\s]{0,16})\(.*?\)(?P=fence)"
    | "(?:[^"\\\n]|\\.)*" | (?<![\w'])'(?:[^'\\\n]|\\.)+'
    | ^[ \t]*\#(?:[^\n\\]|\\.|\\\n)*
    """,
    re.VERBOSE | re.DOTALL | re.MULTILINE,
)
INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*([<"][^>"]+[>"])', re.MULTILINE)


def tracked(*folders, suffixes=()):
    """Files that git tracks or would track, as paths relative to the root, sorted."""
    command = ["git", "-C", ROOT, "ls-files", "--cached", "--others", "--exclude-standard", "--", *folders]
    names = subprocess.run(command, check=True, capture_output=True, text=True).stdout.splitlines()
    paths = sorted({Path(name) for name in names if (ROOT / name).is_file()})
    return [path for path in paths if not suffixes or path.suffix in suffixes]


def read(path):
    return (ROOT / path).read_text(encoding="utf-8")


def code_only(text):
    """The text with everything that is not code blanked out; lines and columns stay."""
    return NOT_CODE.sub(lambda match: re.sub(r"[^\n]", " ", match[0]), text)


def includes(text):
    """The included files as they are written, with their quotes or brackets."""
    return INCLUDE.findall(text)


def code_lines(path):
    """Lines that are neither blank nor comment."""
    text = read(path)
    hash_comments = path.suffix in (".py", ".txt", ".cmake", ".sh", "")
    if not hash_comments:
        text = re.sub(r"^[ \t]*/\*.*?\*/[ \t]*$", "", text, flags=re.MULTILINE | re.DOTALL)
    comment = "#" if hash_comments else "//"
    return sum(1 for line in text.splitlines() if line.strip() and not line.lstrip().startswith(comment))
