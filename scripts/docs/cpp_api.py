"""Writes the reference of the C++ headers' public API: every installed header, its private and
protected sections left out."""

import pathlib
import re

import pagefile

ACCESS = re.compile(r"^(\s*)(public|private|protected):\s*$")
HIDDEN = ("#pragma once",)


def public_lines(text):
    """The header without its private and protected sections and its #pragma."""
    out, hiding_at = [], None
    for line in text.splitlines():
        access = ACCESS.match(line)
        if access:
            hiding_at = None if access.group(2) == "public" else len(access.group(1))
            if hiding_at is None:
                out.append(line)
            continue
        if hiding_at is not None:
            closing = re.match(r"^(\s*)\};", line)
            if closing and len(closing.group(1)) <= hiding_at:
                hiding_at = None
                out.append(line)
            continue
        if line.strip() in HIDDEN:
            continue
        out.append(line)
    return "\n".join(out).strip("\n")


def page(include_dir):
    root = pathlib.Path(include_dir)
    out = [
        "# C++ API",
        "",
        "The public part of every installed header under `include/caudalis/`, written from the headers",
        "each time the site is built (private and protected members left out). Umbrella headers:",
        "`#include <caudalis/caudalis.hpp>` (the library) and `#include <caudalis/design.hpp>` (the",
        "design services). How a host builds against the installed library:",
        "[Use the library from C++](../howto/cpp.md).",
        "",
    ]
    headers = sorted(root.rglob("*.hpp"))
    folders = sorted({h.parent for h in headers})
    for folder in folders:
        name = folder.relative_to(root.parent).as_posix()
        out += [f"## `{name}/`", ""]
        for header in (h for h in headers if h.parent == folder):
            relative = header.relative_to(root.parent).as_posix()
            out += [f"### `<{relative}>`", "", "```cpp", public_lines(header.read_text(encoding="utf-8")), "```", ""]
    return "\n".join(out)


if __name__ == "__main__":
    pagefile.main(page)
