#!/usr/bin/env python3
"""Writes reference.md, the list of all public classes and functions, from the headers and the tests.

usage: make_reference.py [--check]        --check: only say, and end with 1, when reference.md is out of date

Each class stands on one line: its base, its purpose (the first sentence of its comment), the types, fields and
operations that it declares as public, and the tests that name it. The same sources give the same text.
"""
import re
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
OUTPUT = ROOT / "docs" / "reference.md"
FOLDERS = ["kernel", "containers", "thread", "math", "volume", "trav", "graph", "render", "display", "collide", "audio",
           "action", "io"]
MAX_TESTS = 4  # named on a line; the others are counted

HEAD = """# Reference

Made by `docs/make_reference.py` from the headers: every public class with its base, its purpose, its public types, fields
and operations (those that it takes over unchanged stand at its base; overloads once), and the tests that name it: its
own first, then those that name it most.

Classes marked with ° have a run-time type of their own: `getClassType`, `registerClass`, `initClass`, `removeClass`,
`getNum`, `get`, `find`, `import`, `createInstance` and `getType` are theirs as well.
"""

CLASS = re.compile(r"^(?:template\s*<[^\n]*>\n)?(?P<kind>class|struct)\s+(?:TB_\w*API\s+)?(?P<name>tb[A-Z]\w*)"
                   r"\s*(?:final\s*)?(?::(?P<bases>[^{;]*))?\{", re.M)
FUNCTION = re.compile(r"^(?:\[\[[^\]]*\]\]\s*)?(?:TB_\w*API|inline|constexpr)\s[^;{}()=]*?\b(tb[A-Z]\w*)\s*\(", re.M)


def without_comments(text):
    """The text with comments and string contents blanked, every other character at its place."""
    blank = lambda m: re.sub(r"[^\n]", " ", m.group())
    text = re.sub(r"//[^\n]*|/\*.*?\*/", blank, text, flags=re.S)
    return re.sub(r"^[ \t]*#(?:[^\n]*\\\n)*[^\n]*", blank, text, flags=re.M)


def closing(text, begin):
    """The position of the brace that closes the one at `begin`."""
    depth = 0
    for i in range(begin, len(text)):
        depth += (text[i] == "{") - (text[i] == "}")
        if depth == 0:
            return i
    raise ValueError("braces do not match")


def without_nested(body):
    """A class body with every inner block replaced by a semicolon."""
    out, i = [], 0
    while i < len(body):
        if body[i] == "{":
            i = closing(body, i)
            out.append(";")
        else:
            out.append(body[i])
        i += 1
    return "".join(out)


def declared(statement, class_name):
    """(kind, names) of what a statement declares; kind is "type", "field", "operation" or None."""
    statement = re.sub(r"\[\[.*?\]\]|alignas\([^)]*\)", "", " ".join(statement.split()))
    if not statement or re.match(r"(friend|using|static_assert)\b", statement) or statement.endswith("= delete"):
        return None, []
    if not re.match(r"[A-Za-z_~]", statement):
        return None, []  # what follows the braces of a value
    nested = re.match(r"(?:template ?<.*?> ?)?(?:enum|class|struct)(?: class)? (\w+)", statement)
    if nested:
        return "type", [nested.group(1)]
    operator = re.search(r"\boperator ?(\(\)|\[\]|new ?\[\]|delete ?\[\]|[^\w\s(]+|[\w:]+[ *&]*)", statement)
    if operator:
        symbol = operator.group(1).strip()
        return "operation", [f"operator{' ' if symbol[0].isalpha() else ''}{symbol}"]
    statement = re.sub(r"^template ?<.*?> (?=\w)", "", statement)
    call = re.match(r"[^(=]*?(~?\w+) ?\(", statement)
    if call:
        own = call.group(1).lstrip("~") == class_name or call.group(1).isupper()
        return ("operation", []) if own else ("operation", [call.group(1)])
    statement = re.sub(r"\([^)]*\)|<[^;]*?>", "", statement)
    fields = re.sub(r"=[^,]*", "", statement).split(",") if " " in statement else []
    found = [re.search(r"(\w+) ?(?:\[[^\]]*\])* ?$", field) for field in fields]
    return "field", [name.group(1) for name in found if name]


def public_names(body, class_name, is_struct):
    """Public names of a class body by kind, in the order of their declaration, each once."""
    names = {"type": [], "field": [], "operation": []}
    public = is_struct
    body = re.sub(r"\bTB_CLASS(?:_OF)?\([^)]*\)", " ", without_nested(body))
    for part in re.split(r"(\b(?:public|protected|private)\s*:(?!:))", body):
        access = re.match(r"(public|protected|private)\s*:", part)
        if access:
            public = access.group(1) == "public"
            continue
        for statement in part.split(";") if public else []:
            kind, found = declared(statement, class_name)
            for name in found:
                if name not in names[kind]:
                    names[kind].append(name)
    return names


def first_sentence(text, position):
    """The first sentence of the comment that ends right before `position`."""
    lines = []
    for line in reversed(text[:position].rstrip("\n").split("\n")):
        if not line.startswith("//"):
            break
        lines.insert(0, line.lstrip("/").strip())
    sentence = re.match(r".*?[.:](?=\s|$)|.*", " ".join(lines)).group().strip()
    return sentence[:-1] if sentence.endswith((":", ".")) else sentence


def base_names(bases):
    """Public bases that are classes of the library; what only brings `new` and `delete` is left out."""
    names = [re.sub(r"\b(public|virtual)\b", "", base).strip() for base in re.split(r",(?![^<]*>)", bases or "")]
    return [name for name in names if name and not re.match(r"tbAllocated\b|private|protected", name)]


class Tests:
    """Which test files name a word, most mentions first."""

    def __init__(self):
        self.words = {}
        for path in sorted((ROOT / "tests").rglob("*Test.cpp")):
            found = re.findall(r"\b(?:tb[A-Z])\w*", path.read_text())
            self.words[path.relative_to(ROOT / "tests").as_posix()[:-len("Test.cpp")]] = found

    def line(self, names, own):
        counts = {file: sum(words.count(name) for name in names) for file, words in self.words.items()}
        files = sorted((file for file in counts if counts[file]), key=lambda file: (file != own, -counts[file], file))
        if not files:
            return "Tests: none by name."
        more = f" and {len(files) - MAX_TESTS} more" if len(files) > MAX_TESTS else ""
        return f"Tests: {', '.join(files[:MAX_TESTS])}{more}."


def quoted(names):
    return ", ".join(f"`{name}`" for name in names)


def lines_of(header, tests):
    """The lines of one header: its classes, then its functions."""
    text = header.read_text()
    code = without_comments(text)
    own = f"{header.parent.name}/{header.stem}"
    outside, lines = code, []
    for match in CLASS.finditer(code):
        begin = match.end() - 1
        end = closing(code, begin)
        outside = outside[:match.start()] + re.sub(r"[^\n]", " ", code[match.start():end + 1]) + outside[end + 1:]
        if re.match(r"\s*\w+\s*<", code[match.start("name"):begin]):
            continue  # a specialisation
        body = code[begin + 1:end]
        names = public_names(body, match["name"], match["kind"] == "struct")
        bases = base_names(match["bases"])
        line = f"- **{match['name']}**{'°' if 'TB_CLASS' in body else ''}"
        line += f" : {quoted(bases)}." if bases else "."
        purpose = first_sentence(text, match.start())
        line += f" {purpose}." if purpose else ""
        line += f" Types: {quoted(names['type'])}." if names["type"] else ""
        line += f" Fields: {quoted(names['field'])}." if names["field"] else ""
        line += f" Operations: {quoted(names['operation'])}." if names["operation"] else ""
        lines.append(f"{line} {tests.line([match['name']], own)}")
    functions = list(dict.fromkeys(FUNCTION.findall(without_nested(outside))))
    if functions:
        lines.append(f"- *{header.name}*: {quoted(functions)}. {tests.line(functions, own)}")
    return lines


def make():
    tests = Tests()
    parts = [HEAD]
    folders = [(f"tamber/{name}", ROOT / "tamber" / name) for name in FOLDERS]
    folders += [("portable", ROOT / "portable")]
    folders += [(f"plugins/{path.name}", path) for path in sorted((ROOT / "plugins").iterdir()) if path.is_dir()]
    for title, folder in folders:
        lines = [line for header in sorted(folder.glob("tb[A-Z]*.h")) for line in lines_of(header, tests)]
        if lines:
            parts.append(f"\n## {title}\n\n" + "\n".join(lines) + "\n")
    return "".join(parts)


def main():
    text = make()
    if "--check" in sys.argv[1:]:
        current = OUTPUT.read_text() if OUTPUT.exists() else ""
        if current != text:
            print(f"{OUTPUT.relative_to(ROOT)} is out of date; run docs/make_reference.py", file=sys.stderr)
            return 1
        return 0
    OUTPUT.write_text(text)
    print(f"{OUTPUT.relative_to(ROOT)}: {text.count('- **')} classes")
    return 0


if __name__ == "__main__":
    sys.exit(main())
