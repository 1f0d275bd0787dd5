#!/usr/bin/env python3
"""Brings assets/translations up to date with the texts in src/: the template lamina.ts and each lamina_LANGUAGE.ts.

    python3 tools/make_translation_template.py           write what has changed; finished translations stay
    python3 tools/make_translation_template.py --check   write nothing; 1 when something is not up to date

A text is a literal in qsTranslate("Lamina", "...") (QML), localizedString("...") or localizedText("...") (C++), or
QT_TRANSLATE_NOOP("Lamina", "...") where a table holds texts that are looked up later. Causes of failure are texts too,
as alerts show them. Source lines are left out of the files, so that they change only when a text does.
"""

import argparse
import sys
from pathlib import Path

sys.dont_write_bytecode = True
ROOT = Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "tools"))

from translations import source_texts, ts_file  # noqa: E402

SUFFIXES = {".qml", ".js", ".h", ".cpp"}


def collected(root):
    """All texts of the sources below `root`. Says on standard error which calls look up something else than a
    literal."""
    texts = set()
    for path in sorted(root.rglob("*")):
        if path.suffix in SUFFIXES and path.is_file():
            found, unknown = source_texts.collect(
                path.read_text(encoding="utf-8"), path, path.parent.relative_to(root).as_posix()
            )
            texts |= found
            for line in unknown:
                print(f"note: {path}:{line}: looks up no literal; mark its texts where they stand", file=sys.stderr)
    return texts


def wanted_files(texts, folder):
    """What each file of `folder` should hold."""
    files = {folder / "lamina.ts": ts_file.written(texts)}
    for path in sorted(folder.glob("lamina_*.ts")):
        language, known = ts_file.read(path)
        files[path] = ts_file.written(texts, known, language or path.stem.removeprefix("lamina_"))
    return files


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--check", action="store_true", help="write nothing, only compare")
    parser.add_argument("--sources", type=Path, default=ROOT / "src", help="folder to search (default: src)")
    parser.add_argument("--folder", type=Path, default=ROOT / "assets" / "translations", help="folder of the .ts files")
    options = parser.parse_args()
    try:
        files = wanted_files(collected(options.sources), options.folder)
    except (source_texts.SourceError, ts_file.FileError) as error:
        sys.exit(str(error))

    stale = [path for path, content in files.items() if not path.exists() or path.read_text(encoding="utf-8") != content]
    for path in stale:
        if options.check:
            print(f"{path} is not up to date: run tools/make_translation_template.py", file=sys.stderr)
        else:
            path.write_text(files[path], encoding="utf-8")
            print(f"wrote {path}")
    sys.exit(1 if options.check and stale else 0)


if __name__ == "__main__":
    main()
