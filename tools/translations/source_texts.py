"""Finds the texts that sources show to the user: literals given to the look-up calls, in C++, QML and JavaScript."""

import re
from dataclasses import dataclass

CONTEXT = "Lamina"

# Calls whose first argument is the text, and calls whose first argument is the context and the second the text.
PLAIN_CALLS = {"localizedString", "localizedText"}
CONTEXT_CALLS = {"qsTranslate", "translate", "QT_TRANSLATE_NOOP"}
# Their context would be the name of a file or a class, and the look-up would never find the text.
FOREIGN_CALLS = {"qsTr", "qsTrId", "tr", "trUtf8", "QT_TR_NOOP", "qtTrId"}

TOKEN = re.compile(
    r"""
      (?P<comment> //[^\n]* | /\*.*?\*/ )
    | (?P<raw>     (?:u8|[uUL])?R"(?P<fence>[^()\\\s]{0,16})\((?P<body>.*?)\)(?P=fence)" )
    | (?P<string>  (?:\b(?:u8|[uUL]))?"(?:[^"\\\n]|\\.)*" | '(?:[^'\\\n]|\\.)*' )
    | (?P<number>  \b\d(?:'?[\w.])* )
    | (?P<word>    [A-Za-z_]\w* )
    | (?P<space>   \s+ )
    | (?P<sign>    . )
    """,
    re.VERBOSE | re.DOTALL,
)
ESCAPE = re.compile(r"\\(?:u\{([0-9a-fA-F]+)\}|u([0-9a-fA-F]{4})|U([0-9a-fA-F]{8})|x([0-9a-fA-F]{2})|(\n)|(.))", re.DOTALL)
SIMPLE_ESCAPES = {"n": "\n", "t": "\t", "r": "\r", "b": "\b", "f": "\f", "v": "\v", "0": "\0"}


class SourceError(Exception):
    """A call that could never be translated; says where and why."""


@dataclass(frozen=True, order=True)
class Text:
    """What a translator sees: the English text, a word to tell two meanings apart, and whether it counts something."""

    source: str
    comment: str = ""
    numerus: bool = False


@dataclass
class Token:
    kind: str  # "string", "word" or "sign"
    value: str  # of a string: its content, escapes resolved
    line: int


def unescaped(body):
    def replacement(match):
        code = next((group for group in match.groups()[:4] if group), None)
        if code is not None:
            return chr(int(code, 16))
        return "" if match[5] else SIMPLE_ESCAPES.get(match[6], match[6])

    return ESCAPE.sub(replacement, body)


def tokens(code):
    """The tokens without comments and white space; neighbouring string literals are one, as the C++ compiler has it."""
    result, line, joining = [], 1, False
    for match in TOKEN.finditer(code):
        kind, text = match.lastgroup, match[0]
        if match["raw"] is not None:
            kind, value = "string", match["body"]
        elif kind == "string":
            value = unescaped(text[text.index(text[-1]) + 1 : -1])
        else:
            value = text
        if kind not in ("comment", "space"):
            if kind == "string" and joining:
                result[-1].value += value
            else:
                result.append(Token(kind, value, line))
            joining = kind == "string"
        line += text.count("\n")
    return result


def arguments(stream, start):
    """The arguments of the call whose bracket opens at `start`, each a list of tokens."""
    found, depth = [[]], 0
    for token in stream[start + 1 :]:
        if token.kind == "sign" and token.value in "([{":
            depth += 1
        elif token.kind == "sign" and token.value in ")]}":
            if depth == 0:
                break
            depth -= 1
        if token.kind == "sign" and token.value == "," and depth == 0:
            found.append([])
        else:
            found[-1].append(token)
    return found


def texts_of(argument):
    """The literals an argument may come to: one, parts added up, or both sides of a `condition ? "a" : "b"`."""
    found = []
    for i, token in enumerate(argument):
        before = argument[i - 1] if i else Token("sign", "(", 0)
        if token.kind != "string" or before.kind != "sign":
            continue
        if before.value in "?:(":
            found.append(token.value)
        elif before.value == "+" and found and argument[i - 2].kind == "string":
            found[-1] += token.value
    return [text for text in found if text]


def is_call(stream, i):
    """Whether the word at `i` is called there, rather than declared: `return f(x)`, not `std::string f(int x)`."""
    called = stream[i + 1].kind == "sign" and stream[i + 1].value == "("
    return called and (i == 0 or stream[i - 1].kind != "word" or stream[i - 1].value in ("return", "else", "case"))


def causes(stream, bare_phrases):
    """The causes of failure, which an alert looks up when it tells of them: the last literal of an `Error{subject,
    "cause"}`.

    `bare_phrases`: the sources are of a module that knows no look-up and shows nothing; there a phrase that is
    returned, or kept as a constant, is a cause as well."""
    found = set()
    for i, token in enumerate(stream[:-1]):
        if token.kind == "word" and token.value == "Error" and stream[i + 1].value == "{":
            found |= {Text(text) for text in texts_of(arguments(stream, i + 1)[-1])}
        elif bare_phrases and token.value in ("return", "=") and token.kind != "string":
            if stream[i + 1].kind == "string" and re.fullmatch(r"[a-z][\w']*( [\w']+)+", stream[i + 1].value):
                found.add(Text(stream[i + 1].value))
    return found


def named_causes(stream):
    """The causes that stand as constants in a `namespace cause`."""
    found = set()
    for i, token in enumerate(stream[:-1]):
        if token.value == "cause" and stream[i + 1].value == "{":
            found |= {Text(part.value) for part in sum(arguments(stream, i + 1), []) if part.kind == "string"}
    return found


def text_of_call(stream, i, name):
    """The argument with the text and those behind it, of the look-up call at `i`; None when it is none after all."""
    word, line = stream[i].value, stream[i].line
    first, *others = arguments(stream, i + 1)
    if word in PLAIN_CALLS:
        return first, []
    context = texts_of(first)
    if word in FOREIGN_CALLS and context:
        raise SourceError(f'{name}:{line}: {word} has a context of its own; use qsTranslate("{CONTEXT}", ...)')
    if word in FOREIGN_CALLS or (word == "translate" and not context):
        return None  # A transform may be called so, too.
    if context != [CONTEXT] or not others:
        raise SourceError(f'{name}:{line}: the context of {word} is to be "{CONTEXT}"')
    return others[0], others[1:]


def collect(code, name, module=""):
    """The texts in `code`, and the lines of calls that look up what is no literal while no table in the file is marked.

    Raises SourceError for a call that could never find its translation. `name` is the file's, for messages; `module`
    its folder below src/: the command's messages stay English, so that scripts can rely on them, and with them those of
    the filter graph: a screen says in words of its own that a filter gave no picture."""
    stream, unknown = tokens(code), []
    stays_english = module.split("/")[0] == "cli" or module == "platform/gl" or module.startswith("gpu/")
    texts = set()
    if not stays_english:
        texts = named_causes(stream) | causes(stream, module.startswith(("platform/image", "platform/files", "platform/media")))
    for i, token in enumerate(stream[:-1]):
        if token.kind != "word" or token.value not in PLAIN_CALLS | CONTEXT_CALLS | FOREIGN_CALLS or not is_call(stream, i):
            continue
        call = text_of_call(stream, i, name)
        if call is None:
            continue
        text, rest = call
        comment = "".join(texts_of(rest[0])) if rest else ""
        found = {Text(source, comment, len(rest) > 1) for source in texts_of(text)}
        texts |= found
        # A cause was collected where it arose, and Qt's own look-up is where the others end.
        if not found and token.value != "translate" and [part.value for part in text[-1:]] not in (["key"], ["cause"]):
            unknown.append(token.line)
    marks = any(token.kind == "word" and token.value == "QT_TRANSLATE_NOOP" for token in stream)
    return texts, [] if marks else unknown
