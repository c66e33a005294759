"""Writes the field reference of the design file from its JSON Schema (docs/design-file.schema.json)."""

import json
import sys


def type_of(node):
    if "const" in node:
        return f"`{json.dumps(node['const'])}`"
    if "enum" in node:
        return " or ".join(f"`{json.dumps(value)}`" for value in node["enum"])
    choices = [type_of(choice) for choice in node.get("anyOf", [])]
    if any(choices):
        return " or ".join(choice for choice in choices if choice)
    kind = node.get("type", "")
    if isinstance(kind, list):
        return " or ".join(kind)
    if kind == "array":
        return f"array of {type_of(node.get('items', {}))}"
    return kind


def limits(node):
    parts = []
    for key, sign in (("minimum", "≥"), ("exclusiveMinimum", ">"), ("maximum", "≤")):
        if key in node:
            parts.append(f"{sign} {node[key]}")
    if "minItems" in node:
        parts.append(f"at least {node['minItems']} item(s)")
    if "pattern" in node:
        parts.append(f"matches `{node['pattern']}`")
    return ", ".join(parts)


def objects_in(node):
    """The object schemas a field holds: itself, its items, or its choices."""
    if node.get("type") == "object" and "properties" in node:
        return [node]
    found = []
    if "items" in node:
        found += objects_in(node["items"])
    for choice in node.get("anyOf", []):
        found += objects_in(choice)
    return found


def required_note(name, node, parent):
    if name in parent.get("required", []):
        return "yes"
    alternatives = [set(choice.get("required", [])) for choice in parent.get("anyOf", [])]
    if any(name in choice for choice in alternatives):
        return "yes (in these units)"
    return ""


def table(path, node, out):
    out += [f"## `{path}`" if path else "## Top level", ""]
    if node.get("description") and path:
        out += [node["description"], ""]
    out += ["| field | type | required | limits | meaning |", "|---|---|---|---|---|"]
    children = []
    for name, field in node.get("properties", {}).items():
        description = " ".join(field.get("description", "").split()).replace("|", "\\|")
        row = [f"`{name}`", type_of(field), required_note(name, field, node), limits(field), description]
        out.append("| " + " | ".join(row) + " |")
        for child in objects_in(field):
            children.append((f"{path}.{name}" if path else name, child))
    out.append("")
    for child_path, child in children:
        table(child_path, child, out)


def page(schema):
    out = [
        "# Design file fields",
        "",
        "Every field of a design file, written from the file's JSON Schema",
        "([`design-file.schema.json`](../design-file.schema.json)) each time the site is built.",
        "What the fields do and how the program checks them: [Design files](../design-file.md).",
        "",
        " ".join(schema.get("description", "").split()),
        "",
    ]
    table("", schema, out)
    return "\n".join(out)


def main():
    with open(sys.argv[1], encoding="utf-8") as source:
        schema = json.load(source)
    with open(sys.argv[2], "w", encoding="utf-8") as output:
        output.write(page(schema))


if __name__ == "__main__":
    main()
