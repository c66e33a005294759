"""Writes the reference of the Python package `caudalis` from its docstrings (the built module)."""

import enum
import inspect
import sys

import caudalis

INTRO = """# Python API

Every public name of the package `caudalis`, with its docstring, written from the built module
each time the site is built (the docstrings come from the headers' comments). A first session:
[Python tutorial](../python.md). Type stubs for editors: `python/caudalis/_caudalis.pyi`.
"""


def doc(obj):
    text = inspect.getdoc(obj) or ""
    return text.strip()


def signature(name, obj):
    try:
        return f"{name}{inspect.signature(obj)}"
    except (TypeError, ValueError):
        first = doc(obj).splitlines()[:1]
        return first[0] if first and first[0].startswith(name.split(".")[-1] + "(") else name


def body(obj, name):
    """The docstring without the signature line that pybind11 puts first."""
    lines = doc(obj).splitlines()
    short = name.split(".")[-1]
    if lines and lines[0].startswith(short + "("):
        lines = lines[1:]
    return "\n".join(lines).strip()


def block(title, text):
    out = ["```text", title, "```", ""]
    if text:
        out += [text.replace("*", "\\*"), ""]
    return out


def members(cls):
    for name, member in sorted(vars(cls).items()):
        if name.startswith("_") and name != "__init__":
            continue
        yield name, member


def class_section(name, cls):
    out = [f"## `{name}`", ""]
    text = doc(cls)
    if text:
        out += [text.replace("*", "\\*"), ""]
    for member_name, member in members(cls):
        qualified = f"{name}.{member_name}"
        if isinstance(member, property):
            out += block(f"{qualified} (property)", doc(member))
        elif callable(member) or isinstance(member, (staticmethod, classmethod)):
            target = member.__func__ if isinstance(member, (staticmethod, classmethod)) else member
            out += block(signature(qualified, target), body(target, qualified))
        elif isinstance(member, (int, float, str)) or type(member) is cls:
            out += [f"- `{qualified}` = `{int(member) if type(member) is cls else member!r}`", ""]
    return out


def page(module):
    out = [INTRO, module.__doc__.strip() if module.__doc__ else "", ""]
    functions, classes, values = [], [], []
    for name in sorted(n for n in dir(module) if not n.startswith("_")):
        obj = getattr(module, name)
        if inspect.isclass(obj):
            classes.append((name, obj))
        elif callable(obj):
            functions.append((name, obj))
        elif not inspect.ismodule(obj):
            values.append((name, obj))
    out += ["## Functions", ""]
    for name, obj in functions:
        out += [f"### `{name}`", ""] + block(signature(name, obj), body(obj, name))
    for name, obj in classes:
        out += class_section(name, obj)
    out += ["## Values", ""]
    for name, obj in values:
        shown = {k: v for k, v in vars(type(obj)).items() if not k.startswith("_")} if not isinstance(
            obj, (int, float, str, enum.Enum)) else None
        if shown is not None and all(isinstance(v, int) for v in shown.values()) and shown:
            out += [f"- `{name}`: " + ", ".join(f"`{k}` = {v}" for k, v in shown.items())]
        else:
            out += [f"- `{name}` = `{obj!r}`"]
    out.append("")
    return "\n".join(out)


def main():
    with open(sys.argv[1], "w", encoding="utf-8") as output:
        output.write(page(caudalis))


if __name__ == "__main__":
    main()
