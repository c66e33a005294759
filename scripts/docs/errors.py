"""Writes the table of error numbers and messages from the library's error table: the numbers
and their comments in the headers, the standard texts in the sources."""

import pathlib
import re

import pagefile

CODE = re.compile(r"^\s*(\w+)\s*=\s*ObjectErrorBase\s*\+\s*(\d+),")
ENUM = re.compile(r"^enum class (\w+)")
CONSTANT = re.compile(r"^inline constexpr std::int32_t (\w+) = (\d+);")
NAMESPACE = re.compile(r"^namespace (\w+) \{")
TEXT = re.compile(r"case (\w+)::(\w+):\s*\n\s*return \"((?:[^\"\\]|\\.)*)\";")


def texts(*sources):
    found = {}
    for source in sources:
        for scope, name, text in TEXT.findall(source.read_text(encoding="utf-8")):
            found[(scope, name)] = text.replace('\\"', '"')
    return found


def entries(header):
    """(scope, name, number, comment) for each error number a header declares."""
    scope, comment = None, []
    for line in header.read_text(encoding="utf-8").splitlines():
        stripped = line.strip()
        if stripped.startswith("///"):
            comment.append(stripped[3:].strip())
            continue
        for pattern in (ENUM, NAMESPACE):
            opened = pattern.match(line)
            if opened:
                scope = opened.group(1)
        code = CODE.match(line)
        constant = CONSTANT.match(line)
        if code and scope:
            yield scope, code.group(1), ("library", int(code.group(2))), " ".join(comment)
        elif constant and scope in ("RuntimeError", "DatabaseError"):
            yield scope, constant.group(1), ("runtime", int(constant.group(2))), " ".join(comment)
        comment = []


def page(root):
    root = pathlib.Path(root)
    include, src = root / "include" / "caudalis", root / "src"
    standard = texts(src / "core" / "Error.cpp", src / "db" / "DatabaseErrors.cpp")
    generic = "Application-defined or object-defined error"
    out = [
        "# Error numbers and messages",
        "",
        "Every numbered error the library raises, written from its error table",
        "(`caudalis/core/Errors.hpp`, `caudalis/core/Error.hpp`, `caudalis/db/DatabaseErrors.hpp` and",
        "the standard texts in their sources) each time the site is built. A failed call raises",
        "`caudalis::Error` (C++), `caudalis.Error` (Python) or an automation error with source",
        "\"Caudalis\" (Windows) carrying the number and a description. The library's own codes are",
        "`vbObjectError + n` (`ObjectErrorBase` = 0x80040000 + n; in VBA `vbObjectError + 1000`).",
        "The command line's messages and exit codes: [The command line](cli.md#messages-and-exit-codes).",
        "",
        "## The library's own codes",
        "",
        "| number | VBA | scope | name | description | meaning |",
        "|---|---|---|---|---|---|",
    ]
    rows = []
    for header in sorted(include.rglob("*.hpp")):
        rows += list(entries(header))
    for scope, name, (kind, n), comment in rows:
        if kind == "library":
            number = 0x80040000 + n - (1 << 32)
            out.append(f"| {number} | `vbObjectError + {n}` | `{scope}` | `{name}` | {generic} | {comment} |")
    out += ["", "## The runtime's and the data access's numbers", "",
            "| number | scope | name | description | meaning |", "|---|---|---|---|---|"]
    for scope, name, (kind, n), comment in sorted((r for r in rows if r[2][0] == "runtime"), key=lambda r: r[2][1]):
        text = standard.get((scope, name), "the database engine's own message" if name == "DatabaseEngine" else "")
        out.append(f"| {n} | `{scope}` | `{name}` | {text} | {comment} |")
    out.append("")
    return "\n".join(out)


if __name__ == "__main__":
    pagefile.main(page)
