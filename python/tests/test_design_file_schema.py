"""The design file's published description (docs/design-file.schema.json) and the reader agree:
every shipped design and every design in the docs is valid for both, the reader looks for no
field the schema does not describe and the schema describes no field the reader ignores, and
what the schema accepts the reader accepts too. Checked with a real JSON-schema validator."""
import copy
import json
import re

import jsonschema
import pytest

from caudalis import services
from conftest import SOURCE_DIR

SCHEMA = json.loads((SOURCE_DIR / "docs" / "design-file.schema.json").read_text())
VALIDATOR = jsonschema.Draft202012Validator(SCHEMA)
EVERY_FIELD = sorted((SOURCE_DIR / "python" / "tests" / "design_files").glob("every_field_*.json"))
EXAMPLES = sorted((SOURCE_DIR / "examples" / "designs").glob("*.json")) + EVERY_FIELD


def docs_designs():
    """(where, text) of every JSON block of README.md and docs/ that is a whole design file."""
    found = []
    for page in [SOURCE_DIR / "README.md"] + sorted((SOURCE_DIR / "docs").rglob("*.md")):
        for number, block in enumerate(re.findall(r"```json\n(.*?)```", page.read_text(), re.S)):
            document = json.loads(block)
            if isinstance(document, dict) and "spans" in document:
                found.append((f"{page.relative_to(SOURCE_DIR)}#{number}", block))
    return found


def schema_errors(document):
    return [f"{list(error.absolute_path)}: {error.message}" for error in VALIDATOR.iter_errors(document)]


def parses(document):
    try:
        services.DesignFile.parse(json.dumps(document), "<test>")
        return True
    except services.DesignError:
        return False


def schema_fields(node, path=""):
    """The path of every field the schema describes, array elements as "[]"."""
    fields = set()
    for key in ("anyOf", "oneOf", "allOf"):
        for alternative in node.get(key, []):
            fields |= schema_fields(alternative, path)
    if isinstance(node.get("items"), dict):
        fields |= schema_fields(node["items"], path + "[]")
    for name, field in node.get("properties", {}).items():
        field_path = f"{path}.{name}" if path else name
        fields |= {field_path} | schema_fields(field, field_path)
    return fields


def test_the_schema_is_a_valid_draft_2020_12_schema():
    jsonschema.Draft202012Validator.check_schema(SCHEMA)
    assert SCHEMA["additionalProperties"] is False


@pytest.mark.parametrize("path", EXAMPLES, ids=lambda p: p.name)
def test_a_shipped_design_is_valid_for_the_schema_and_the_reader(path):
    assert schema_errors(json.loads(path.read_text())) == []
    assert services.DesignFile.load(str(path)).name


def test_the_docs_show_designs_and_each_is_valid_for_both():
    designs = docs_designs()
    assert designs, "no design file among the JSON blocks of the docs"
    for where, text in designs:
        assert schema_errors(json.loads(text)) == [], where
        assert services.DesignFile.parse(text, where).name, where


def test_the_reader_looks_for_exactly_the_fields_the_schema_describes():
    looked_for = set()
    for path in EVERY_FIELD:
        looked_for |= services.DesignFile.fieldsLookedFor(path.read_text(), str(path))
    described = schema_fields(SCHEMA)
    assert sorted(looked_for - described) == [], "fields the reader accepts that the schema does not know"
    assert sorted(described - looked_for) == [], "fields the schema describes that the reader never reads"


def test_every_field_documents_hold_every_field_they_are_read_for():
    for path in EVERY_FIELD:
        text = path.read_text()
        looked_for = services.DesignFile.fieldsLookedFor(text, str(path))
        present = schema_fields_present(json.loads(text))
        assert present <= looked_for, path.name


def schema_fields_present(document, path=""):
    """The path of every field a document holds, array elements as "[]"."""
    present = set()
    if isinstance(document, dict):
        for name, value in document.items():
            field_path = f"{path}.{name}" if path else name
            present |= {field_path} | schema_fields_present(value, field_path)
    elif isinstance(document, list):
        for element in document:
            present |= schema_fields_present(element, path + "[]")
    return present


def places(document, path=()):
    """(path, value) of every value inside the document, objects and arrays included."""
    yield path, document
    if isinstance(document, dict):
        for name, value in document.items():
            yield from places(value, path + (name,))
    elif isinstance(document, list):
        for index, value in enumerate(document):
            yield from places(value, path + (index,))


def changed(document, path, value):
    copied = copy.deepcopy(document)
    target = copied
    for step in path[:-1]:
        target = target[step]
    target[path[-1]] = value
    return copied


# Rules between fields no JSON schema can state; the reader alone enforces them (each with its
# own message, tested with the reader).
BETWEEN_FIELDS = re.compile(
    r"must be greater than \w+$|must not exceed the span length$|must differ from the span's start elevation"
    r"|must be >= flow_min_\w+$|\.span must be between 1 and \d+$|per hectare of the|outlets in all"
)


@pytest.mark.parametrize("path", EVERY_FIELD, ids=lambda p: p.name)
def test_what_the_schema_accepts_the_reader_accepts(path):
    """Every field in turn is given a wrong kind of value, a negative, a zero, a fraction and an
    unknown neighbour: whatever of these the schema lets through, the reader must take too,
    unless the reader refuses it by a rule between fields."""
    document = json.loads(path.read_text())
    assert parses(document)
    let_through = []
    for where, value in list(places(document)):
        if not where:
            continue
        trials = ["text", -1, 0, 0.5, 1e9, True, [], {}]
        if isinstance(value, dict):
            trials.append(dict(value, unknown_field=1))
        for trial in trials:
            mutated = changed(document, where, trial)
            if schema_errors(mutated) or parses(mutated):
                continue
            try:
                services.DesignFile.parse(json.dumps(mutated), "<test>")
            except services.DesignError as error:
                if not BETWEEN_FIELDS.search(str(error)):
                    let_through.append(f"{'.'.join(map(str, where))} = {trial!r}: {error}")
    assert let_through == []


def schema_names(node):
    """The name of every field the schema describes, at any depth."""
    names = set()
    if isinstance(node, dict):
        for key, value in node.items():
            if key == "properties":
                names |= set(value)
            names |= schema_names(value)
    elif isinstance(node, list):
        for value in node:
            names |= schema_names(value)
    return names


def test_every_field_the_design_file_page_lists_is_in_the_schema():
    page = (SOURCE_DIR / "docs" / "design-file.md").read_text()
    listed = set(re.findall(r"^\| `([^`]+)`", page, re.M))
    assert len(listed) > 20
    assert sorted(listed - schema_names(SCHEMA)) == []
