"""The design and evaluation layer: results equal the command line's, tables, plots."""
import json
import os
import pathlib
import re
import subprocess
import sys

import caudalis
import pytest

from conftest import SOURCE_DIR

CLI = os.environ.get("CAUDALIS_CLI")
EXAMPLES = sorted((SOURCE_DIR / "examples" / "designs").glob("*.json"))


@pytest.fixture(scope="module")
def catalogue(tmp_path_factory):
    folder = tmp_path_factory.mktemp("databases")
    subprocess.run([CLI, "init", str(folder)], check=True, capture_output=True)
    return str(folder / "catalogue.db")


def assert_close(python, cli, where="$"):
    if isinstance(cli, dict):
        assert python.keys() == cli.keys(), where
        for key in cli:
            assert_close(python[key], cli[key], f"{where}.{key}")
    elif isinstance(cli, list):
        assert len(python) == len(cli), where
        for index, (p, c) in enumerate(zip(python, cli)):
            assert_close(p, c, f"{where}[{index}]")
    elif isinstance(cli, float):
        assert python == pytest.approx(cli, rel=1e-12, abs=0), where
    else:
        assert python == cli, where


@pytest.mark.parametrize("example", EXAMPLES, ids=lambda p: p.name)
def test_a_design_matches_the_command_lines_json(example, catalogue):
    cli = subprocess.run([CLI, "design", str(example), "--json", "--catalogue", catalogue],
                         check=True, capture_output=True, text=True).stdout
    result = caudalis.design(example, catalogue=catalogue)
    assert_close(json.loads(result.json()), json.loads(cli))
    assert result.document == json.loads(cli), "the document built without the text differs from it"
    delivered = [o["caudal_do_aspersor"] for o in json.loads(cli)["outlets"]]
    assert result.outlets["caudal_do_aspersor"].tolist() == pytest.approx(delivered, rel=1e-12)


def cli_design(example, catalogue, *options):
    finished = subprocess.run([CLI, "design", str(example), "--catalogue", catalogue, *options],
                              capture_output=True, text=True)
    return finished.returncode, finished.stdout


@pytest.mark.parametrize("units", ["us", "si"])
def test_a_design_in_the_units_asked_for_matches_the_command_line(units, catalogue):
    example = SOURCE_DIR / "examples" / "designs" / ("small.json" if units == "us" else "us-quarter-mile.json")
    _, printed = cli_design(example, catalogue, "--json", "--units", units)
    result = caudalis.design(example, catalogue=catalogue, units=units)
    assert result.document == json.loads(printed)
    assert result.document["units"]["system"] == units
    other = "_kpa" if units == "us" else "_psi"
    assert not [key for key in result.summary if key.endswith(other)]
    assert result.text() == cli_design(example, catalogue, "--units", units)[1]
    assert result.csv().splitlines()[0] in result.csv()


def test_a_report_is_written_as_the_command_line_writes_it(catalogue, tmp_path):
    example = SOURCE_DIR / "examples" / "designs" / "us-quarter-mile.json"
    result = caudalis.design(example, catalogue=catalogue)
    html = result.report(tmp_path / "design.html")
    cli_design(example, catalogue, "--report", str(tmp_path / "cli.html"))
    page = pathlib.Path(html).read_text()
    assert page.startswith("<!DOCTYPE html>") and "psi" in page
    assert page == (tmp_path / "cli.html").read_text()
    text = pathlib.Path(result.report(tmp_path / "design.txt")).read_text()
    assert text == result.text() and "psi" in text


def test_strict_refuses_a_design_with_warnings(catalogue):
    example = SOURCE_DIR / "examples" / "designs" / "hilly.json"
    result = caudalis.design(example, catalogue=catalogue)
    status, _ = cli_design(example, catalogue, "--strict")
    assert result.fails(strict=True) == (status == 4)
    assert result.fails() is False
    warned = json.loads((SOURCE_DIR / "examples" / "designs" / "small.json").read_text())
    warned["design_flow_lps"] = 12
    assert caudalis.design(warned, catalogue=catalogue).fails(strict=True)
    with pytest.raises(caudalis.services.DesignError, match="warnings and strict was given") as raised:
        caudalis.design(warned, catalogue=catalogue, strict=True)
    assert raised.value.kind == "findings"


def test_units_other_than_si_and_us_are_refused(catalogue):
    with pytest.raises(caudalis.services.DesignError, match='units must be "si" or "us", not "imperial"'):
        caudalis.design(EXAMPLES[0], catalogue=catalogue, units="imperial")


def test_a_dict_designs_like_its_file(catalogue):
    example = SOURCE_DIR / "examples" / "designs" / "small.json"
    from_dict = caudalis.design(json.loads(example.read_text()), catalogue=catalogue)
    assert from_dict.json() == caudalis.design(example, catalogue=catalogue).json()
    assert len(from_dict.spans) == 2
    assert isinstance(from_dict.chart, caudalis.CartaAspersores)


def test_bad_input_names_the_field(catalogue):
    with pytest.raises(caudalis.services.DesignError, match="length_m") as raised:
        caudalis.design({"name": "x", "inlet_pressure_kpa": 200, "design_flow_lps": 5, "roughness_c": 140,
                         "revolution_time_h": 10, "spans": [{"length_m": -1, "diameter_mm": 100,
                                                               "outlet_spacing_cm": 200, "end_elevation_m": 0}],
                         "nozzle_selection": {"tolerance": 0.1}}, catalogue=catalogue)
    assert raised.value.kind == "invalid-input"
    with pytest.raises(FileNotFoundError, match="nowhere.db"):
        caudalis.design(EXAMPLES[0], catalogue="nowhere.db")


def test_tables_are_lists_of_dicts_without_pandas(catalogue):
    script = ("import sys; sys.modules['pandas'] = None; import caudalis; "
              f"r = caudalis.design({str(EXAMPLES[0])!r}, catalogue={catalogue!r}); "
              "assert isinstance(r.outlets, list) and isinstance(r.outlets[0], dict); print(len(r.findings))")
    subprocess.run([sys.executable, "-c", script], check=True)


def non_white_fraction(path):
    import matplotlib.image

    pixels = matplotlib.image.imread(path)
    assert pixels.ndim == 3
    return (pixels[:, :, :3].sum(axis=2) < 2.9).mean(), pixels.shape


def test_a_design_plot_is_written_to_png(catalogue, tmp_path):
    result = caudalis.design(SOURCE_DIR / "examples" / "designs" / "realistic.json", catalogue=catalogue)
    path = tmp_path / "design.png"
    figure = result.plot(path)
    assert path.read_bytes()[:8] == b"\x89PNG\r\n\x1a\n"
    assert path.stat().st_size > 30_000
    inked, shape = non_white_fraction(path)
    assert shape[:2] == (1200, 900)
    assert inked > 0.03
    labels = [axes.get_ylabel() for axes in figure.axes]
    assert labels == ["pressure (kPa)", "flow (l/s)", "depth per revolution (mm)", "application rate (mm/h)"]
    distances, rates = result.application_rates()
    assert rates[-1] > rates[0] > 0


US_DESIGNS = [SOURCE_DIR / "examples" / "designs" / "us-quarter-mile.json",
              SOURCE_DIR / "tests" / "cli" / "designs" / "us-sandy-half-mile.json"]
SI_KEY = re.compile(r"_(mm|kpa|lps|cm|ha|m2|mm_h|m)$")
SI_FIGURE = re.compile(r"\d\s?(mm/h|mm|cm|kPa|l/s|ha|m)(?![A-Za-z0-9/_])")


def keys_of(value):
    if isinstance(value, dict):
        for key, inner in value.items():
            yield key
            yield from keys_of(inner)
    elif isinstance(value, list):
        for inner in value:
            yield from keys_of(inner)


def columns_of(rows):
    return list(rows.columns) if hasattr(rows, "columns") else sorted({key for row in rows for key in row})


@pytest.mark.parametrize("path", US_DESIGNS, ids=lambda p: p.name)
def test_a_us_design_plots_in_us_units(path, catalogue, tmp_path):
    result = caudalis.design(path, catalogue=catalogue)
    figure = result.plot(tmp_path / "design.png", wet_diameter_m=12)
    labels = [axes.get_ylabel() for axes in figure.axes]
    assert labels == ["pressure (psi)", "flow (gpm)", "depth per revolution (in)", "application rate (in/h)"]
    assert figure.axes[-1].get_xlabel() == "distance from the centre (ft)"
    distances, rates = result.application_rates(12)
    assert max(distances) > 1000
    assert 0 < rates[0] < rates[-1] < 20


def test_a_us_design_marks_its_check_points_in_us_units(catalogue, tmp_path):
    result = caudalis.design(US_DESIGNS[1], catalogue=catalogue)
    figure = result.plot(tmp_path / "design.png")
    legend = figure.axes[-1].get_legend_handles_labels()[1]
    assert "P-700" in legend and "P-1290" in legend
    distances, rates = result.application_rates()
    peak = next(p for p in result.summary["peak_application_rates"] if p["code"] == "P-700")
    assert peak["distance_ft"] == pytest.approx(700)
    assert 0.5 < peak["rate_in_h"] < 5


@pytest.mark.parametrize("path", US_DESIGNS, ids=lambda p: p.name)
def test_a_us_design_s_tables_and_texts_hold_no_si_unit(path, catalogue):
    result = caudalis.design(path, catalogue=catalogue)
    names = set()
    for rows in (result.outlets, result.spans, result.findings):
        names.update(columns_of(rows))
    names.update(keys_of(result.summary))
    assert sorted(name for name in names if SI_KEY.search(str(name))) == []
    messages = caudalis._tables.column(result.findings, "message")
    assert [m for m in messages if SI_FIGURE.search(m)] == []
    assert SI_FIGURE.search(result.text().split("Outlets")[0]) is None


READINGS = sorted((SOURCE_DIR / "examples" / "evaluations").glob("*.*"))


def cli_evaluation(*arguments):
    return json.loads(subprocess.run([CLI, "evaluate", *map(str, arguments), "--json"],
                                     check=True, capture_output=True, text=True).stdout)


@pytest.mark.parametrize("readings", READINGS, ids=lambda p: p.name)
def test_an_evaluation_matches_the_command_line(readings, tmp_path):
    cli = cli_evaluation(readings, "--gauge-diameter", "0.1")
    evaluation = caudalis.evaluate(readings, gauge_diameter=0.1)
    assert_close(evaluation.document, cli)
    assert evaluation.summary["cu_hh_percent"] == cli["together"]["cu_hh_percent"]
    assert len(evaluation.collectors) == len(cli["collectors"])
    path = tmp_path / "evaluation.png"
    evaluation.plot(path)
    assert path.read_bytes()[:4] == b"\x89PNG" and non_white_fraction(path)[0] > 0.01


def test_evaluation_settings_match_the_command_lines_options():
    readings = SOURCE_DIR / "examples" / "evaluations" / "north-2024.txt"
    cli = cli_evaluation(readings, "--gauge-diameter", "0.1", "--inner-radius", "35", "--last-span-end", "350",
                         "--outlier", "10")
    evaluation = caudalis.evaluate(readings, gauge_diameter=0.1, inner_radius=35, last_span_end=350,
                                   outlier_percent=10)
    assert_close(evaluation.document, cli)
    assert any(row["reason"] == "inside_inner_radius" for row in evaluation.document["left_out"])
    assert evaluation.document["end_gun_zone"] is not None


def test_pairs_evaluate_like_their_text(tmp_path):
    pairs = [(120.5, 3), (118.25, 6), (131, 9), (0.1 + 0.2, 12), (122, 15)]
    path = tmp_path / "pairs.txt"
    path.write_text("".join(f"{a!r} {d!r}\n" for a, d in pairs))
    from_pairs = caudalis.evaluate(pairs, gauge_diameter=0.1).document
    from_file = caudalis.evaluate(path, gauge_diameter=0.1).document
    assert from_pairs["together"] == from_file["together"]
    assert [c["amount"] for c in from_pairs["collectors"]] == [a for a, _ in pairs]


def test_bad_readings_name_the_file_and_line(tmp_path):
    path = tmp_path / "r.txt"
    path.write_text("10 5\n12,5 6\n")
    with pytest.raises(caudalis.ReadingsError, match=r"r\.txt line 2") as raised:
        caudalis.evaluate(path, gauge_diameter=0.1)
    assert isinstance(raised.value, ValueError)
    with pytest.raises(ValueError, match="gauge_diameter"):
        caudalis.evaluate(path, gauge_diameter=0)
    with pytest.raises(caudalis.services.DesignError, match="nowhere.txt"):
        caudalis.evaluate(tmp_path / "nowhere.txt", gauge_diameter=0.1)
    csv = SOURCE_DIR / "examples" / "evaluations" / "small-2025.csv"
    with pytest.raises(ValueError, match="give it alone"):
        caudalis.evaluate(csv, second=path, gauge_diameter=0.1)


def test_an_evaluation_is_stored_listed_and_shown_as_the_command_line_does(tmp_path):
    subprocess.run([CLI, "init", str(tmp_path)], check=True, capture_output=True)
    project = str(tmp_path / "project.db")
    readings = SOURCE_DIR / "examples" / "evaluations" / "north-2024.txt"
    evaluation = caudalis.evaluate(readings, gauge_diameter=0.1)
    stored = evaluation.save(project)
    with pytest.raises(ValueError, match='an evaluation named "north-2024" already exists'):
        evaluation.save(project)
    listed = caudalis.evaluations(project)
    assert list(listed["id"]) == [stored] and list(listed["name"]) == ["north-2024"]
    assert listed["cu_hh_percent"][0] == pytest.approx(evaluation.summary["cu_hh_percent"], rel=1e-12)
    printed = subprocess.run([CLI, "evaluate", "list", "--project", project], check=True, capture_output=True,
                             text=True).stdout
    assert "north-2024" in printed
    shown = caudalis.stored_evaluation(stored, project)
    cli = json.loads(subprocess.run([CLI, "evaluate", "show", str(stored), "--project", project, "--json"],
                                    check=True, capture_output=True, text=True).stdout)
    assert shown["name"] == "north-2024"
    rows = shown["figures"].to_dict("records")
    assert [(r["scope"], r["figure"], r["note"]) for r in rows] == [(c["scope"], c["figure"], c["note"])
                                                                  for c in cli["figures"]]
    for row, printed_row in zip(rows, cli["figures"]):
        assert row["value"] == printed_row["value"] or (printed_row["value"] is None and row["value"] != row["value"])
    with pytest.raises(LookupError, match="holds no evaluation 99"):
        caudalis.stored_evaluation(99, project)


def test_an_evaluation_report_is_the_command_lines(tmp_path):
    readings = SOURCE_DIR / "examples" / "evaluations" / "north-2024.txt"
    page = caudalis.evaluate(readings, gauge_diameter=0.1).report(tmp_path / "python.html")
    subprocess.run([CLI, "evaluate", str(readings), "--gauge-diameter", "0.1", "--report",
                    str(tmp_path / "cli.html")], check=True, capture_output=True)
    assert pathlib.Path(page).read_text() == (tmp_path / "cli.html").read_text()
