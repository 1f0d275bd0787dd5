"""Reads and writes Qt's translation files: one context, sorted, and nothing in them that moves when a source is
edited."""

import xml.etree.ElementTree as ET

from .source_texts import CONTEXT, Text

HEAD = '<?xml version="1.0" encoding="utf-8"?>\n<!DOCTYPE TS>\n'
UNFINISHED = "unfinished"


class FileError(Exception):
    """A translation file that is damaged; says which and where."""


def escaped(text):
    for character, entity in (("&", "&amp;"), ("<", "&lt;"), (">", "&gt;"), ('"', "&quot;"), ("'", "&apos;")):
        text = text.replace(character, entity)
    return text


def translation(text, forms, state):
    """The element of one translation: several forms for a text that counts, else one."""
    kind = f' type="{state}"' if state else ""
    if not text.numerus:
        return [f"        <translation{kind}>{escaped(forms[0] if forms else '')}</translation>"]
    lines = [f"            <numerusform>{escaped(form)}</numerusform>" for form in forms or [""]]
    return [f"        <translation{kind}>", *lines, "        </translation>"]


def written(texts, known=None, language=None):
    """A whole file for `texts`. `known` gives what is translated already: {Text: (forms, state)}; the rest is
    unfinished. That for English holds those alone whose text is not their English."""
    target = f' language="{language}"' if language else ""
    lines = [f'<TS version="2.1" sourcelanguage="en"{target}>', "<context>", f"    <name>{CONTEXT}</name>"]
    for text in sorted(texts if language != "en" else texts & set(known or {})):
        lines.append('    <message numerus="yes">' if text.numerus else "    <message>")
        lines.append(f"        <source>{escaped(text.source)}</source>")
        if text.comment:
            lines.append(f"        <comment>{escaped(text.comment)}</comment>")
        lines += translation(text, *(known or {}).get(text, ([], UNFINISHED)))
        lines.append("    </message>")
    lines += ["</context>", "</TS>"]
    return HEAD + "\n".join(lines) + "\n"


def read(path):
    """The language of a file (None when it says none) and what it translates, as `written` takes it."""
    try:
        root, known = ET.parse(path).getroot(), {}
    except ET.ParseError as error:
        raise FileError(f"{path}: {error}") from error
    for message in root.iter("message"):
        element = message.find("translation")
        if element is None:
            continue
        numerus = message.get("numerus") == "yes"
        forms = [form.text or "" for form in element.iter("numerusform")] if numerus else [element.text or ""]
        text = Text(message.findtext("source", ""), message.findtext("comment", ""), numerus)
        known[text] = (forms, element.get("type"))
    return root.get("language"), known
