"""The design file's schema, from which its reference page is written, names only fields that the
program reads: each field of the schema, put into a shipped example at its place, is not an
"unknown field" to `caudalis design`, while a made-up field at the same place is."""

import copy
import json
import os
import pathlib
import re
import subprocess

import pytest

SOURCE = pathlib.Path(__file__).resolve().parent.parent.parent
SCHEMA = json.loads((SOURCE / "docs" / "design-file.schema.json").read_text(encoding="utf-8"))
PROGRAM = os.environ["CAUDALIS_CLI"]
US_ENDINGS = ("_psi", "_gpm", "_ft", "_in")


MISSING = re.compile(r"^caudalis: (\S+) is missing$", re.M)


def sample(node):
    """A value of the node's type within its limits."""
    if "const" in node:
        return node["const"]
    if "enum" in node:
        return node["enum"][0]
    choices = [choice for choice in node.get("anyOf", []) if "type" in choice or "enum" in choice or "const" in choice]
    if choices and "type" not in node:
        return sample(choices[0])
    kind = node.get("type")
    if kind == "object":
        return {name: sample(node["properties"][name]) for name in node.get("required", [])}
    if kind == "array":
        return [sample(node.get("items", {}))]
    if kind in ("integer", "number"):
        return max(node.get("minimum", 1), node.get("exclusiveMinimum", 0) + 1)
    if kind == "boolean":
        return True
    return "x"


def objects_of(node):
    """(object schema, in an array?) for what a field holds."""
    for choice in [node, *node.get("anyOf", [])]:
        if choice.get("type") == "object" and "properties" in choice:
            yield choice, False
        items = choice.get("items", {})
        if items.get("type") == "object":
            yield items, True


def fields(node, path=()):
    for name, field in node.get("properties", {}).items():
        yield path, name, field
        for child, in_array in objects_of(field):
            yield from fields(child, (*path, (name, in_array, child)))


def placed(path, name, value, us):
    document = json.loads((SOURCE / "examples" / "designs" / ("us-quarter-mile.json" if us else "small.json")).read_text())
    where = document
    for key, in_array, schema in path:
        holder = sample(schema)
        if in_array:
            if not isinstance(where.get(key), list) or not where[key]:
                where[key] = [holder]
            where = where[key][0]
        else:
            if not isinstance(where.get(key), dict):
                where[key] = holder
            where = where[key]
    where[name] = value
    return document


def object_schema(node):
    for choice in [node, *node.get("anyOf", [])]:
        if choice.get("type") == "object":
            return choice
        if choice.get("items", {}).get("type") == "object":
            return choice["items"]
    return node


def supply(document, missing):
    """Puts a value for a field the program says is missing (`regulators[0].pressure_kpa`): the
    schema cannot require one of two unit twins, the program does."""
    where, schema = document, SCHEMA
    *parents, name = re.findall(r"\w+|\[\d+\]", missing)
    for part in parents:
        if part.startswith("["):
            where = where[int(part[1:-1])]
        else:
            where, schema = where[part], object_schema(schema["properties"][part])
    where[name] = sample(schema["properties"][name])


def complaint(document, folder):
    """What `caudalis design` says about the document, once the fields it misses are supplied."""
    design = folder / "design.json"
    for _ in range(10):
        design.write_text(json.dumps(document), encoding="utf-8")
        run = subprocess.run([PROGRAM, "design", str(design), "--catalogue", str(folder / "none.db")],
                             capture_output=True, text=True)
        missing = MISSING.search(run.stderr)
        if not missing:
            return run.stderr
        supply(document, missing.group(1))
    return run.stderr


CASES = [(path, name, field) for path, name, field in fields(SCHEMA) if not name.startswith("$")]


@pytest.mark.parametrize("path,name,field", CASES, ids=[".".join([*(k for k, _, _ in p), n]) for p, n, _ in CASES])
def test_every_field_of_the_schema_is_one_the_program_reads(tmp_path, path, name, field):
    us = name.endswith(US_ENDINGS)
    control = complaint(placed(path, "zz_not_a_field", 1, us), tmp_path)
    assert "unknown field" in control and "zz_not_a_field" in control, control
    assert "unknown field" not in complaint(placed(path, name, sample(field), us), tmp_path)


def test_the_schema_says_each_thing_once():
    def no_repeats(pairs):
        keys = [key for key, _ in pairs]
        assert len(keys) == len(set(keys)), f"a key written twice: {sorted(k for k in keys if keys.count(k) > 1)}"
        return dict(pairs)

    json.loads((SOURCE / "docs" / "design-file.schema.json").read_text(encoding="utf-8"), object_pairs_hook=no_repeats)


def missing_required(node, value, path="file"):
    """The fields the schema requires of a value (its `required` and one of its `anyOf`
    alternatives) that the value lacks, through every object and array it holds."""
    if not isinstance(value, (dict, list)):
        return []
    if isinstance(value, list):
        items = object_schema(node) if node.get("type") == "array" or "anyOf" in node else node
        return [m for i, item in enumerate(value) for m in missing_required(items, item, f"{path}[{i}]")]
    found = [f"{path}.{name}" for name in node.get("required", []) if name not in value]
    alternatives = [choice["required"] for choice in node.get("anyOf", []) if set(choice) == {"required"}]
    if alternatives and not any(all(name in value for name in choice) for choice in alternatives):
        found.append(f"{path}: none of {alternatives}")
    for name, field in node.get("properties", {}).items():
        if name in value:
            found += missing_required(object_schema(field), value[name], f"{path}.{name}")
    return found


@pytest.mark.parametrize("example", sorted(p.name for p in (SOURCE / "examples" / "designs").glob("*.json")))
def test_every_shipped_example_has_what_the_schema_requires(example):
    document = json.loads((SOURCE / "examples" / "designs" / example).read_text(encoding="utf-8"))
    assert missing_required(SCHEMA, document) == []
