"""The OpenAPI document the server serves: well formed, every reference resolves, it names every
route the server has (and no other), and the server's answers fit its schemas."""
import json
import re

import jsonschema
import pytest

from conftest import EXAMPLES, SOURCE, Databases, Server


@pytest.fixture(scope="module")
def running(tmp_path_factory):
    folder = tmp_path_factory.mktemp("openapi")
    databases = Databases("sqlite", folder, None)
    server = Server(databases.options(), folder)
    yield server
    server.stop()


@pytest.fixture(scope="module")
def document(running):
    answer = running.request("GET", "/api/openapi.json")
    assert answer.status == 200 and answer.headers["content-type"] == "application/json"
    return answer.json()


def references(node):
    if isinstance(node, dict):
        for key, value in node.items():
            if key == "$ref":
                yield value
            else:
                yield from references(value)
    elif isinstance(node, list):
        for value in node:
            yield from references(value)


def resolve(document, reference):
    assert reference.startswith("#/"), reference
    node = document
    for part in reference[2:].split("/"):
        node = node[part]
    return node


def as_json_schema(document, schema):
    """The OpenAPI 3.0 schema as a JSON Schema: references inlined, `nullable` as a null type."""
    if isinstance(schema, list):
        return [as_json_schema(document, s) for s in schema]
    if not isinstance(schema, dict):
        return schema
    if "$ref" in schema:
        return as_json_schema(document, resolve(document, schema["$ref"]))
    converted = {k: as_json_schema(document, v) for k, v in schema.items() if k != "nullable"}
    if schema.get("nullable"):
        converted = {"anyOf": [converted, {"type": "null"}]}
    return converted


def test_the_document_is_well_formed(document):
    assert document["openapi"].startswith("3.0.")
    assert document["info"]["title"] and document["info"]["version"]
    operations = [op for item in document["paths"].values() for op in item.values()]
    ids = [op["operationId"] for op in operations]
    assert len(ids) == len(set(ids))
    for operation in operations:
        assert operation["summary"] and "200" in operation["responses"] or "201" in operation["responses"]
        for parameter in operation.get("parameters", []):
            assert parameter["in"] in ("query", "path") and "schema" in parameter
    for reference in references(document):
        resolve(document, reference)
    for schema in document["components"]["schemas"].values():
        jsonschema.Draft7Validator.check_schema(as_json_schema(document, schema))


def test_it_names_every_route_of_the_server_and_no_other(document):
    source = (SOURCE / "apps/caudalis/serve/ApiRoutes.cpp").read_text()
    routes = set()
    for method, raw, plain in re.findall(r'server\.(Get|Post|Delete)\((?:R"\((.*?)\)"|"(.*?)")', source):
        routes.add((method.lower(), (raw or plain).replace("([^/]+)", "{id}")))
    routes.add(("get", "/api/session"))
    documented = {(method, path) for path, item in document["paths"].items() for method in item}
    assert len(routes) == 16
    assert documented == routes


def check(document, path, method, status, answer):
    expected = document["paths"][path][method]["responses"][str(status)]
    assert answer.status == status, answer.body
    content_type = answer.headers["content-type"].split(";")[0]
    schema = expected["content"][content_type]["schema"]
    if content_type == "application/json":
        jsonschema.validate(answer.json(), as_json_schema(document, schema))


def test_the_answers_fit_the_document(document, running):
    design = json.loads((EXAMPLES / "designs" / "small.json").read_text())
    readings = (EXAMPLES / "evaluations" / "small-2025.csv").read_text()
    check(document, "/api/session", "get", 200, running.request("GET", "/api/session"))
    check(document, "/api/design", "post", 200, running.request("POST", "/api/design?units=us", design))
    check(document, "/api/design/report", "post", 200, running.request("POST", "/api/design/report", design))
    saved = running.request("POST", "/api/charts", {"name": "doc", "design": design})
    check(document, "/api/charts", "post", 201, saved)
    chart = saved.json()["id"]
    check(document, "/api/charts", "get", 200, running.request("GET", "/api/charts"))
    check(document, "/api/charts/{id}", "get", 200, running.request("GET", f"/api/charts/{chart}"))
    check(document, "/api/charts/{id}/report", "get", 200, running.request("GET", f"/api/charts/{chart}/report"))
    check(document, "/api/charts/{id}/rebuilt", "get", 200, running.request("GET", f"/api/charts/{chart}/rebuilt"))
    evaluated = running.request("POST", "/api/evaluate",
                                {"readings_csv": readings, "gauge_diameter_m": 0.1, "save": True, "chart": chart})
    check(document, "/api/evaluate", "post", 200, evaluated)
    listed = running.request("GET", "/api/evaluations")
    check(document, "/api/evaluations", "get", 200, listed)
    check(document, "/api/evaluations/{id}", "get", 200,
          running.request("GET", f"/api/evaluations/{listed.json()[0]['id']}"))
    check(document, "/api/catalogue/brands", "get", 200, running.request("GET", "/api/catalogue/brands"))
    check(document, "/api/catalogue/models", "get", 200, running.request("GET", "/api/catalogue/models"))
    check(document, "/api/catalogue/nozzles", "get", 200, running.request("GET", "/api/catalogue/nozzles"))
    check(document, "/api/catalogue/import", "post", 200, running.request(
        "POST", "/api/catalogue/import", {"csv": "brand,model,nozzle,a,b,pmin,pmax,qmin,qmax\nB,M,#1,0.02,0.5,50,300,0.1,0.4\n"}))
    check(document, "/api/charts/{id}", "delete", 200, running.request("DELETE", f"/api/charts/{chart}"))
    check(document, "/api/charts/{id}", "get", 404, running.request("GET", f"/api/charts/{chart}"))
    check(document, "/api/design", "post", 422, running.request("POST", "/api/design", {"spans": []}))
