"""What a C++ file declares: enough of a reader for sources that a compiler has accepted already.

It follows braces and semicolons, knows namespaces, classes, enumerations and functions apart, and skips bodies.
"""

import re
from dataclasses import dataclass, field

from .sources import code_only

ACCESS = re.compile(r"\s*(public|protected|private|signals|Q_SIGNALS)(?:\s+(?:slots|Q_SLOTS))?\s*:(?!:)")
MACRO = re.compile(r"\s*(?:Q_|QML_)[A-Z_]+\b(?:\s*\((?:[^()]|\([^()]*\))*\))?")
ATTRIBUTE = re.compile(r"\[\[[^\]]*\]\]|\balignas\s*\([^)]*\)|__extension__")
TYPE = re.compile(r"\b(class|struct|union|enum(?:\s+(?:class|struct))?)\s+([\w:]+)")
# The name right before the list of parameters.
FUNCTION = re.compile(r"(operator\s*(?:\(\s*\)|\[\s*\]|[^\s\w(]+|[\w:<>*& ]+?)|~?\w+)\s*$")
NOT_A_BODY = re.compile(r"[\w>]\s*$")
BODY_WORDS = re.compile(r"\b(?:const|override|final|noexcept|mutable|try)\s*$")


@dataclass
class Declaration:
    kind: str  # "type", "alias", "function" or "variable"
    name: str
    line: int  # of its first character, counted from 1
    scope: tuple  # names of the classes around it
    access: str = "public"
    head: str = ""  # the code up to its body or semicolon
    body: str | None = None  # of a function that is defined here
    last_line: int = 0
    is_definition: bool = True


@dataclass
class Scope:
    kind: str  # "namespace" or "class"
    name: str = ""
    access: str = "public"


@dataclass
class Reader:
    code: str
    at: int = 0
    scopes: list = field(default_factory=list)
    found: list = field(default_factory=list)

    def read(self):
        start = self.at
        while self.at < len(self.code):
            sign = self.code[self.at]
            if sign == "}":
                self.leave()
            elif sign == ";":
                self.declare(start, self.at)
                self.at += 1
            elif sign == "{":
                if not self.open(start):
                    continue  # a value in braces: the declaration goes on
            elif sign in "([":
                self.skip()
                continue
            else:
                self.at += 1
                continue
            start = self.at
        return self.found

    def leave(self):
        if self.scopes:
            self.scopes.pop()
        self.at += 1

    def skip(self):
        """Goes behind the bracket that closes the one here; gives what stands between them."""
        start, depth = self.at, 0
        while self.at < len(self.code):
            depth += {"(": 1, "[": 1, "{": 1, ")": -1, "]": -1, "}": -1}.get(self.code[self.at], 0)
            self.at += 1
            if depth == 0:
                break
        return self.code[start + 1 : self.at - 1]

    def head_of(self, start, end):
        """The code of a declaration and where it begins, behind access labels and macros, which take effect here."""
        while True:
            label = ACCESS.match(self.code, start, end)
            if label and self.scopes:
                self.scopes[-1].access = "public" if label[1] in ("signals", "Q_SIGNALS") else label[1]
            label = label or MACRO.match(self.code, start, end)
            if not label:
                break
            start = label.end()
        head = self.code[start:end]
        return start + len(head) - len(head.lstrip()), " ".join(ATTRIBUTE.sub(" ", head).split())

    def open(self, start):
        """At a brace. Whether what it opens, or what it ends, is done with."""
        begin, head = self.head_of(start, self.at)
        plain = without_templates(head)
        if re.match(r"(?:inline )?namespace\b|extern\b ?$", plain):
            self.scopes.append(Scope("namespace", plain.rpartition(" ")[2]))
            self.at += 1
            return True
        kind = TYPE.search(plain)
        if kind and "(" not in plain and "=" not in plain:
            return self.open_type(begin, head, kind)
        if has_parameters(plain) and not self.is_value(plain):
            begin_of_body = self.at
            body = self.skip()
            self.add("function", function_name(plain), begin, head, body, begin_of_body)
            return True
        self.skip()
        return False

    def open_type(self, begin, head, kind):
        self.add("type", kind[2], begin, head)
        if kind[1].startswith("enum"):
            self.skip()
            return False
        self.scopes.append(Scope("class", kind[2], "private" if kind[1] == "class" else "public"))
        self.at += 1
        return True

    def is_value(self, plain):
        """Whether the brace here begins a value: of a variable, or of a member in a constructor's list."""
        if re.search(r"[^=!<>]=$|(?<!operator)(?<![=!<>+\-*/%&|^ ])\s=\s", outside_parentheses(plain)):
            return True
        in_list = re.search(r"\)[^:]*[^:]:(?!:)", outside_parentheses(plain)) is not None
        return in_list and NOT_A_BODY.search(plain) is not None and not BODY_WORDS.search(plain)

    def declare(self, start, end):
        begin, head = self.head_of(start, end)
        plain = without_templates(head)
        if not plain or plain.startswith(("friend ", "static_assert", "using namespace", "typedef ")):
            return
        if alias := re.match(r"using (\w+) =", plain):
            self.add("alias", alias[1], begin, head)
        elif plain.startswith("using "):
            return
        elif (kind := TYPE.match(plain)) and plain == kind[0]:
            self.add("type", kind[2], begin, head, is_definition=False)
        elif has_parameters(plain):
            self.add("function", function_name(plain), begin, head, is_definition=False)
        elif name := re.search(r"(\w+)\s*(?:\[[^\]]*\]\s*)*(?:=|\{|$)", plain):
            self.add("variable", name[1], begin, head)

    def add(self, kind, name, begin, head, body=None, end=None, is_definition=True):
        classes = tuple(scope.name for scope in self.scopes if scope.kind == "class") + tuple(name.split("::")[:-1])
        access = next((s.access for s in self.scopes[::-1] if s.kind == "class" and s.access != "public"), "public")
        if any(scope.kind == "namespace" and scope.name == "namespace" for scope in self.scopes):
            access = "private"  # of the file alone
        line = self.code.count("\n", 0, begin) + 1
        last = self.code.count("\n", 0, self.at if end is None else end) + 1
        self.found.append(Declaration(kind, name.split("::")[-1], line, classes, access, head, body, last, is_definition))


def outside_parentheses(text):
    while (shorter := re.sub(r"\([^()]*\)|\[[^\[\]]*\]", "()", text.replace("()", "\0"))) != text.replace("()", "\0"):
        text = shorter.replace("\0", "()")
    return text.replace("\0", "()")


def without_templates(head):
    """The head without `template <...>` in front and without what angle brackets hold."""
    head = re.sub(r"operator\s*(<=>|<<=?|>>=?|<=|>=|->\*?|<|>)", lambda m: "operator" + "@" * len(m[1]), head)
    head = head.replace("->", "@@")
    while (shorter := re.sub(r"<[^<>]*>", "", head)) != head:
        head = shorter
    return re.sub(r"^(?:template\s*(?:requires\s+\w+\s*)?)+", "", head).strip()


def has_parameters(plain):
    """Whether this declares a function: parentheses behind a name, and no value assigned before them."""
    opening = plain.find("(")
    if opening < 1:
        return False
    before = plain[:opening]
    if re.search(r"\b(?:decltype|alignas|noexcept|explicit)$", before):
        return has_parameters(plain[:opening] + plain[plain.find(")", opening) + 1 :])
    return FUNCTION.search(before) is not None and not re.search(r"(?<!operator)(?<!operator )[^=!<>]=(?!=)", before)


def function_name(plain):
    """The name before the parameters, without its class."""
    before = plain[: plain.find("(")]
    if "operator" in before:
        return "operator"
    name = re.search(r"(~?\w+)\s*$", before)
    return name[1] if name else ""


def declarations(text):
    """All declarations of a file, those inside of functions aside, in the order in which they stand."""
    return Reader(code_only(text)).read()
