"""The JSON API of `caudalis serve` against a server started on a free loopback port, on SQLite
and on PostgreSQL: its answers are what the command line prints for the same request."""
import concurrent.futures
import json
import os
import socket
import time

import pytest

from conftest import EXAMPLES, Server, run_program


def example(name):
    return json.loads((EXAMPLES / "designs" / name).read_text())


def cli_design(databases, design, *options):
    (databases.folder / "design.json").write_text(json.dumps(design, indent=2))
    return run_program(["design", "design.json", "--json", "--catalogue", databases.catalogue, *options],
                       databases.folder)


@pytest.mark.parametrize("units", [None, "us", "si"])
def test_design_is_the_command_lines_byte_for_byte(server, databases, units):
    design = (EXAMPLES / "designs" / "realistic.json").read_bytes()
    address = "/api/design" + (f"?units={units}" if units else "")
    answer = server.request("POST", address, design, {"Content-Type": "application/json"})
    assert answer.status == 200
    assert answer.headers["content-type"] == "application/json"
    code, printed, _ = run_program(
        ["design", str(EXAMPLES / "designs" / "realistic.json"), "--json", "--catalogue", databases.catalogue,
         *(["--units", units] if units else [])], databases.folder)
    assert code == 0
    assert answer.body == printed
    # Again, now from the nozzles the server keeps: the same bytes.
    assert server.request("POST", address, design, {"Content-Type": "application/json"}).body == printed


def test_a_wrong_design_gets_the_command_lines_message(server, databases):
    design = example("small.json")
    design["spans"][0]["length_m"] = -3
    answer = server.request("POST", "/api/design", design)
    assert answer.status == 422
    code, _, message = cli_design(databases, design)
    assert code == 1
    assert answer.json() == {"error": message.strip().removeprefix("caudalis: ")}
    assert "length_m" in answer.json()["error"]
    assert "/tmp" not in answer.json()["error"]


def test_a_design_with_an_unknown_package_names_it(server, databases):
    design = example("small.json")
    design["nozzle_selection"]["brand"] = "<b>Nobody</b>"
    answer = server.request("POST", "/api/design", design)
    assert answer.status == 422
    _, _, message = cli_design(databases, design)
    assert answer.json()["error"] == message.strip().removeprefix("caudalis: ")
    assert "<b>Nobody</b>" in answer.json()["error"]


def test_units_other_than_si_and_us_are_refused(server):
    answer = server.request("POST", "/api/design?units=imperial", example("small.json"))
    assert answer.status == 400
    assert answer.json() == {"error": "units must be si or us, not imperial"}


def test_a_body_that_is_not_json_is_refused_with_the_parsers_reason(server):
    answer = server.request("POST", "/api/charts", b"{not json", {"Content-Type": "application/json"})
    assert answer.status == 400
    assert answer.json()["error"].startswith("the request body is not JSON: ")


def test_the_report_of_a_design_is_a_sandboxed_page(server):
    answer = server.request("POST", "/api/design/report?units=us", example("small.json"))
    assert answer.status == 200
    assert answer.headers["content-type"].startswith("text/html")
    assert "sandbox" in answer.headers["content-security-policy"]
    assert b"Small demonstration pivot" in answer.body
    assert b"<canvas" in answer.body


def test_charts_are_stored_listed_shown_reported_and_deleted(server, databases):
    design = example("small.json")
    saved = server.request("POST", "/api/charts", {"name": "North <pivot>", "system": 7, "design": design})
    assert saved.status == 201, saved.body
    chart = saved.json()
    assert chart["name"] == "North <pivot>" and chart["system"] == 7
    assert chart["result"]["name"] == "Small demonstration pivot"
    listed = server.request("GET", "/api/charts").json()
    assert {"id": chart["id"], "name": "North <pivot>", "system": 7} in listed
    assert server.request("GET", "/api/charts?system=8").json() == []
    shown = server.request("GET", f"/api/charts/{chart['id']}").json()
    assert shown["design_file"] == design and shown["system"] == 7 and shown["missing_nozzles"] == 0
    rebuilt = server.request("GET", f"/api/charts/{chart['id']}/rebuilt?units=us")
    assert rebuilt.status == 200
    assert rebuilt.json()["units"]["system"] == "us"
    assert [o["label"] for o in rebuilt.json()["outlets"]] == [o["label"] for o in chart["result"]["outlets"]]
    assert rebuilt.json()["summary"]["outlets"] == chart["result"]["summary"]["outlets"]
    report = server.request("GET", f"/api/charts/{chart['id']}/report")
    assert report.status == 200 and b"<canvas" in report.body
    again = server.request("POST", "/api/charts", {"name": "North <pivot>", "system": 7, "design": design})
    assert again.status == 422
    code, _, message = run_program(
        ["design", "design.json", "--save", "North <pivot>", "--system", "7", *databases.options()],
        databases.folder) if (databases.folder / "design.json").write_text(json.dumps(design)) else (None, None, None)
    assert code == 1
    assert again.json()["error"] == message.strip().removeprefix("caudalis: ")
    deleted = server.request("DELETE", f"/api/charts/{chart['id']}")
    assert deleted.status == 200 and deleted.json()["deleted"] == chart["id"]
    gone = server.request("GET", f"/api/charts/{chart['id']}")
    assert gone.status == 404
    assert gone.json()["error"].startswith(f"no chart with id {chart['id']}")
    assert server.request("DELETE", f"/api/charts/{chart['id']}").status == 404


def test_chart_keys_must_be_whole_numbers(server):
    answer = server.request("GET", "/api/charts/1;DROP")
    assert answer.status == 400
    assert answer.json() == {"error": "chart id must be a whole number of at most 9 digits, not 1;DROP"}


def test_a_save_needs_a_name_and_a_design(server):
    answer = server.request("POST", "/api/charts", {"design": example("small.json")})
    assert answer.status == 400 and answer.json() == {"error": "name: a text is needed"}
    answer = server.request("POST", "/api/charts", {"name": "x", "design": "small.json"})
    assert answer.status == 400
    assert answer.json() == {"error": "design: a design file (a JSON object) is needed"}


def evaluate_on_command_line(databases, *options):
    (databases.folder / "readings.csv").write_bytes((EXAMPLES / "evaluations" / "small-2025.csv").read_bytes())
    return run_program(["evaluate", "readings.csv", "--json", *databases.options(), *options], databases.folder)


def test_evaluation_with_a_design_is_the_command_lines(server, databases):
    readings = (EXAMPLES / "evaluations" / "small-2025.csv").read_text()
    design = example("small.json")
    answer = server.request("POST", "/api/evaluate",
                            {"readings_csv": readings, "design": design, "gauge_diameter_m": 0.1})
    assert answer.status == 200, answer.body
    (databases.folder / "design.json").write_text(json.dumps(design, indent=2))
    code, printed, _ = evaluate_on_command_line(databases, "--design", "design.json", "--gauge-diameter", "0.1")
    assert code == 0
    assert answer.body == printed
    assert answer.json()["comparison"]["design_file"] == "design.json"


def test_evaluation_with_a_stored_chart_and_stored_evaluations(server, databases):
    readings = (EXAMPLES / "evaluations" / "small-2025.csv").read_text()
    chart = server.request("POST", "/api/charts", {"name": "small", "design": example("small.json")}).json()
    answer = server.request("POST", "/api/evaluate", {"readings_csv": readings, "chart": chart["id"],
                                                       "gauge_diameter_m": 0.1, "name": "May test",
                                                       "save": True, "timer_percent": 100})
    assert answer.status == 200, answer.body
    assert answer.json()["name"] == "May test"
    assert "comparison" in answer.json()
    listed = server.request("GET", "/api/evaluations").json()
    assert [e["name"] for e in listed] == ["May test"]
    shown = server.request("GET", f"/api/evaluations/{listed[0]['id']}")
    code, printed, _ = run_program(["evaluate", "--project", databases.project, "show", str(listed[0]["id"]),
                                    "--json"], databases.folder)
    assert shown.status == 200 and code == 0 and shown.body == printed


def test_readings_without_the_gauge_get_the_command_lines_message(server, databases):
    readings = (EXAMPLES / "evaluations" / "small-2025.csv").read_text()
    answer = server.request("POST", "/api/evaluate", {"readings_csv": readings})
    _, _, message = evaluate_on_command_line(databases)
    assert answer.status == 422
    assert answer.json()["error"] == message.strip().removeprefix("caudalis: ")
    assert "gauge diameter" in answer.json()["error"]


def test_catalogue_brands_models_and_nozzles(server, databases):
    brands = server.request("GET", "/api/catalogue/brands").json()
    assert {"id": 2, "name": "Rotaflux"} in brands
    models = server.request("GET", "/api/catalogue/models?brand=Rotaflux").json()
    assert {m["brand"] for m in models} == {"Rotaflux"} and "RX Spinner" in [m["name"] for m in models]
    nozzles = server.request("GET", "/api/catalogue/nozzles?brand=Rotaflux&model=RX%20Spinner&units=us")
    _, printed, _ = run_program(["catalogue", "--catalogue", databases.catalogue, "list", "--brand", "Rotaflux",
                                 "--model", "RX Spinner", "--units", "us", "--json"], databases.folder)
    assert nozzles.status == 200 and nozzles.body == printed
    unknown = server.request("GET", "/api/catalogue/models?brand=Nobody")
    assert unknown.status == 422 and "Nobody" in unknown.json()["error"]


def test_catalogue_import_adds_nozzles_all_or_none(server):
    rows = "brand,model,nozzle,a,b,pmin,pmax,qmin,qmax\nWebBrand,W1,#10,0.02,0.5,50,300,0.1,0.4\n"
    before = server.request("GET", "/api/catalogue/nozzles?brand=Rotaflux&model=RX%20Spinner").json()
    added = server.request("POST", "/api/catalogue/import",
                           {"csv": "brand,model,nozzle,a,b,pmin,pmax,qmin,qmax\n"
                                   "Rotaflux,RX Spinner,9.9 mm,0.9,0.5,50,300,6.3,15.5\n"})
    assert added.status == 200, added.body
    # The nozzles the server kept are forgotten: the new one is listed at once.
    after = server.request("GET", "/api/catalogue/nozzles?brand=Rotaflux&model=RX%20Spinner").json()
    assert [n["nome"] for n in after] == [n["nome"] for n in before] + ["9.9 mm"]
    answer = server.request("POST", "/api/catalogue/import", {"csv": rows})
    assert answer.status == 200, answer.body
    assert answer.json()["message"].startswith("imported 1 nozzles into ")
    assert "WebBrand" in [b["name"] for b in server.request("GET", "/api/catalogue/brands").json()]
    bad = server.request("POST", "/api/catalogue/import", {"csv": rows.replace("0.5,50", "x,50"), "units": "us"})
    assert bad.status == 422


def test_concurrent_saves_keep_one_chart_per_name(server):
    design = example("small.json")

    def save(_):
        return server.request("POST", "/api/charts", {"name": "race", "system": 3, "design": design}).status

    with concurrent.futures.ThreadPoolExecutor(8) as pool:
        statuses = list(pool.map(save, range(8)))
    assert sorted(statuses) == [201] + [422] * 7
    assert [c["name"] for c in server.request("GET", "/api/charts?system=3").json()] == ["race"]


def test_two_servers_on_one_postgresql_database_lose_no_save(tmp_path, postgresql_port):
    from conftest import Databases
    databases = Databases("postgresql", tmp_path, postgresql_port)
    servers = [Server(databases.options(), tmp_path) for _ in range(2)]
    try:
        design = example("small.json")

        def save(i):
            return servers[i % 2].request("POST", "/api/charts",
                                          {"name": f"chart {i // 2}", "system": 5, "design": design}).status

        with concurrent.futures.ThreadPoolExecutor(8) as pool:
            statuses = list(pool.map(save, range(16)))
        assert statuses.count(201) == 8 and statuses.count(422) == 8
        names = sorted(c["name"] for c in servers[1].request("GET", "/api/charts?system=5").json())
        assert names == [f"chart {i}" for i in range(8)]
    finally:
        for running in servers:
            running.stop()


def test_workers_answer_side_by_side_and_end_with_the_server(tmp_path):
    from conftest import Databases
    databases = Databases("sqlite", tmp_path, None)
    running = Server(["--workers", "2", *databases.options()], tmp_path)
    try:
        pid = running.process.pid
        children = open(f"/proc/{pid}/task/{pid}/children").read().split()
        assert len(children) == 1
        design = (EXAMPLES / "designs" / "small.json").read_bytes()

        def design_once(_):
            answer = running.request("POST", "/api/design", design, {"Content-Type": "application/json"})
            return answer.status, answer.body

        with concurrent.futures.ThreadPoolExecutor(8) as pool:
            answers = list(pool.map(design_once, range(16)))
        assert {status for status, _ in answers} == {200}
        assert len({body for _, body in answers}) == 1
    finally:
        running.stop()
    deadline = time.monotonic() + 10
    while os.path.exists(f"/proc/{children[0]}") and time.monotonic() < deadline:
        time.sleep(0.05)
    assert not os.path.exists(f"/proc/{children[0]}")
