#!/usr/bin/env python3
"""Writes the sample sprinkler catalogue and the sample pipe materials of Caudalis.

Outputs (SQL that works on SQLite and PostgreSQL alike, safe to load more than once):
  data/sample/catalogue-data.sql   brands, models, nozzles and the models' wetted diameters
                                   for the catalogue database
  data/sample/pipe-materials.sql   pipe materials for the project database

Every nozzle follows the orifice law q = Cd * A * sqrt(2 * g * h), written in the
catalogue's form q = a * p^b:
  q  flow in litres per second, p pressure in kPa, h = p / 10 head in metres
     (one metre of water is taken as 10 kPa)
  d  nozzle bore in millimetres, A = (pi / 4) * (d / 1000)^2 in square metres
  a  = 1000 * Cd * (pi / 4) * (d / 1000)^2 * sqrt(2 * 9.81 / 10)
  b  = 0.5
  qmin = a * pmin^b, qmax = a * pmax^b, with pmin and pmax the model's pressure range.

The brands and models are fictional. The output is deterministic: running the script twice
gives the same bytes. `--check` regenerates into a temporary folder and compares with the
committed files instead of writing them.

Usage: tools/generate_sample_catalogue.py [--output-dir DIR] [--check]
"""

import argparse
import filecmp
import math
import pathlib
import sys
import tempfile
from dataclasses import dataclass

GRAVITY = 9.81  # m/s^2
KPA_PER_METRE_OF_WATER = 10.0
LITRES_PER_CUBIC_METRE = 1000.0
MILLIMETRES_PER_METRE = 1000.0
MILLIMETRES_PER_INCH = 25.4
FLOW_EXPONENT = 0.5

CATALOGUE_FILE = "catalogue-data.sql"
PIPE_MATERIALS_FILE = "pipe-materials.sql"

REPOSITORY = pathlib.Path(__file__).resolve().parent.parent
DEFAULT_OUTPUT = REPOSITORY / "data" / "sample"


@dataclass(frozen=True)
class InchSeries:
    """Nozzle numbers in 1/128 inch, designated "#24 (4.76 mm)"."""

    first: int
    last: int

    def nozzles(self):
        for number in range(self.first, self.last + 1):
            diameter = number * MILLIMETRES_PER_INCH / 128.0
            yield f"#{number} ({diameter:.2f} mm)", diameter


@dataclass(frozen=True)
class MillimetreSeries:
    """Bores in hundredths of a millimetre (integers, so the steps never drift)."""

    first: int
    last: int
    step: int

    def nozzles(self):
        for hundredths in range(self.first, self.last + 1, self.step):
            text = f"{hundredths // 100}.{hundredths % 100:02d}".rstrip("0")
            if text.endswith("."):
                text += "0"
            yield f"{text} mm", hundredths / 100.0


@dataclass(frozen=True)
class Model:
    brand: str
    name: str
    discharge_coefficient: float
    pmin: float  # kPa
    pmax: float  # kPa
    series: object
    wetted_diameter: float  # m, the diameter of ground one sprinkler wets at its usual pressure


BRANDS = ("Aquarion", "Rotaflux", "Nimbra", "Vellora")

# Wetted diameters are typical of the kind: sprays 8-18 m, rotating and wobbling plates 12-22 m,
# impact sprinklers 20-30 m, end guns 50-80 m.
MODELS = (
    # Low-pressure sprays and rotators for the spans.
    Model("Aquarion", "LDN-360 Spray", 0.96, 40.0, 140.0, InchSeries(6, 62), 12.0),
    Model("Aquarion", "R3000 Rotator", 0.97, 70.0, 280.0, InchSeries(10, 52), 16.0),
    Model("Aquarion", "iWob Wobbler", 0.965, 40.0, 200.0, MillimetreSeries(200, 800, 20), 14.0),
    Model("Rotaflux", "RX Spinner", 0.97, 50.0, 300.0, MillimetreSeries(100, 600, 10), 15.0),
    Model("Rotaflux", "RX Spinner HF", 0.97, 50.0, 300.0, MillimetreSeries(600, 1500, 25), 18.0),
    Model("Nimbra", "Drift D3 Spray", 0.98, 40.0, 140.0, MillimetreSeries(120, 480, 10), 10.0),
    Model("Vellora", "VS-10 Spray", 0.965, 40.0, 140.0, InchSeries(10, 28), 11.0),
    # Impact sprinklers.
    Model("Rotaflux", "I-45 Impact", 0.95, 100.0, 400.0, MillimetreSeries(300, 1000, 25), 26.0),
    Model("Vellora", "VI-20 Impact", 0.95, 100.0, 350.0, InchSeries(12, 40), 24.0),
    # End guns.
    Model("Nimbra", "SR-100 End Gun", 0.96, 200.0, 600.0, MillimetreSeries(1000, 2500, 50), 70.0),
    Model("Nimbra", "SR-75 End Gun", 0.955, 200.0, 550.0, MillimetreSeries(800, 1800, 50), 60.0),
    Model("Vellora", "Big Gun 85", 0.96, 200.0, 600.0, MillimetreSeries(1200, 2400, 100), 66.0),
)

# Hazen-Williams coefficient C of the drop-hose materials, whole numbers.
PIPE_MATERIALS = (
    ("PVC", 150),
    ("Polyethylene", 140),
    ("Rubber hose", 135),
    ("Aluminium", 130),
    ("Galvanised steel", 120),
)

FORMULA_HEADER = """\
-- Units: pressure p in kPa, flow q in litres per second, nozzle bore d in millimetres.
-- Orifice law q = Cd * A * sqrt(2 * g * h), written as q = a * p^b:
--   g = {gravity} m/s^2, h = p / {kpa_per_metre} (one metre of water taken as {kpa_per_metre} kPa),
--   a = 1000 * Cd * (pi / 4) * (d / 1000)^2 * sqrt(2 * {gravity} / {kpa_per_metre}),  b = {exponent}
--   qmin = a * pmin^b, qmax = a * pmax^b (pmin, pmax: the model's pressure range).
-- Cd (discharge coefficient) per model is given in the comment before its nozzles.
""".format(gravity=GRAVITY, kpa_per_metre=KPA_PER_METRE_OF_WATER, exponent=FLOW_EXPONENT)


def flow_coefficient(discharge_coefficient, diameter_mm):
    """The coefficient a of q = a * p^0.5 for a round orifice of `diameter_mm`."""
    area = (math.pi / 4.0) * (diameter_mm / MILLIMETRES_PER_METRE) ** 2
    velocity_per_root_kpa = math.sqrt(2.0 * GRAVITY / KPA_PER_METRE_OF_WATER)
    return LITRES_PER_CUBIC_METRE * discharge_coefficient * area * velocity_per_root_kpa


def flow(a, pressure):
    return a * pressure**FLOW_EXPONENT


def quote(text):
    if "'" in text:
        raise ValueError(f"names of the sample data hold no apostrophes: {text}")
    return f"'{text}'"


def number(value):
    return repr(float(value))


def brand_insert(brand):
    name = quote(brand)
    return (
        f"INSERT INTO marca (nome) SELECT {name} "
        f"WHERE NOT EXISTS (SELECT 1 FROM marca WHERE nome = {name});"
    )


def model_insert(model):
    brand, name = quote(model.brand), quote(model.name)
    return (
        f"INSERT INTO Modelos (modelo, id_marca) SELECT {name}, marca.id_marca FROM marca "
        f"WHERE marca.nome = {brand} AND NOT EXISTS (SELECT 1 FROM Modelos "
        f"WHERE Modelos.modelo = {name} AND Modelos.id_marca = marca.id_marca);"
    )


def wetted_diameter_insert(model):
    return (
        "INSERT INTO model_wetted_diameters (id_modelo, wetted_diameter_m) "
        f"SELECT Modelos.id_modelo, {number(model.wetted_diameter)} "
        "FROM Modelos INNER JOIN marca ON Modelos.id_marca = marca.id_marca "
        f"WHERE marca.nome = {quote(model.brand)} AND Modelos.modelo = {quote(model.name)} "
        "AND NOT EXISTS (SELECT 1 FROM model_wetted_diameters "
        "WHERE model_wetted_diameters.id_modelo = Modelos.id_modelo);"
    )


def nozzle_insert(model, designation, diameter):
    a = flow_coefficient(model.discharge_coefficient, diameter)
    values = ", ".join(
        [
            quote(designation),
            number(a),
            number(FLOW_EXPONENT),
            number(model.pmin),
            number(model.pmax),
            number(flow(a, model.pmin)),
            number(flow(a, model.pmax)),
        ]
    )
    name = quote(designation)
    return (
        "INSERT INTO Boquillas (denominacion, a, b, pmin, pmax, qmin, qmax, id_modelo) "
        f"SELECT {values}, Modelos.id_modelo "
        "FROM Modelos INNER JOIN marca ON Modelos.id_marca = marca.id_marca "
        f"WHERE marca.nome = {quote(model.brand)} AND Modelos.modelo = {quote(model.name)} "
        "AND NOT EXISTS (SELECT 1 FROM Boquillas "
        f"WHERE Boquillas.id_modelo = Modelos.id_modelo AND Boquillas.denominacion = {name});"
    )


def model_comment(model):
    return (
        f"-- {model.brand} {model.name}: Cd = {model.discharge_coefficient}, "
        f"pressure {number(model.pmin)} to {number(model.pmax)} kPa"
    )


def catalogue_lines():
    nozzle_count = sum(len(list(model.series.nozzles())) for model in MODELS)
    lines = [
        "-- Sample sprinkler catalogue of Caudalis (fictional brands and models).",
        "-- Generated by tools/generate_sample_catalogue.py; edit the generator, not this file.",
        f"-- {len(BRANDS)} brands, {len(MODELS)} models, {nozzle_count} nozzles.",
        "--",
        *FORMULA_HEADER.splitlines(),
        "",
        "BEGIN TRANSACTION;",
        "",
    ]
    lines += [brand_insert(brand) for brand in BRANDS]
    lines.append("")
    lines += [model_insert(model) for model in MODELS]
    lines += ["", "-- Wetted diameter of each model (m)."]
    lines += [wetted_diameter_insert(model) for model in MODELS]
    for model in MODELS:
        lines += ["", model_comment(model)]
        lines += [nozzle_insert(model, *nozzle) for nozzle in model.series.nozzles()]
    lines += ["", "COMMIT;"]
    return lines


def pipe_material_lines():
    lines = [
        "-- Sample pipe materials of Caudalis for the project database.",
        "-- Generated by tools/generate_sample_catalogue.py; edit the generator, not this file.",
        "-- rugosidade is the Hazen-Williams coefficient C (dimensionless, a whole number).",
        "",
        "BEGIN TRANSACTION;",
    ]
    for name, coefficient in PIPE_MATERIALS:
        text = quote(name)
        lines.append(
            f"INSERT INTO pipe_materials (name, rugosidade) SELECT {text}, {int(coefficient)} "
            f"WHERE NOT EXISTS (SELECT 1 FROM pipe_materials WHERE name = {text});"
        )
    lines.append("COMMIT;")
    return lines


def write_files(folder):
    folder.mkdir(parents=True, exist_ok=True)
    outputs = {CATALOGUE_FILE: catalogue_lines(), PIPE_MATERIALS_FILE: pipe_material_lines()}
    for file_name, lines in outputs.items():
        with open(folder / file_name, "w", encoding="utf-8", newline="\n") as out:
            out.write("\n".join(lines) + "\n")
    return list(outputs)


def check_files(committed):
    """Returns the names of committed files that differ from a fresh generation."""
    with tempfile.TemporaryDirectory() as scratch:
        fresh = pathlib.Path(scratch)
        names = write_files(fresh)
        return [
            name
            for name in names
            if not (committed / name).is_file()
            or not filecmp.cmp(fresh / name, committed / name, shallow=False)
        ]


def main(arguments):
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--output-dir", type=pathlib.Path, default=DEFAULT_OUTPUT)
    parser.add_argument(
        "--check", action="store_true", help="compare with the files in the output folder"
    )
    options = parser.parse_args(arguments)
    if options.check:
        stale = check_files(options.output_dir)
        for name in stale:
            print(f"{options.output_dir / name} is not current; run {sys.argv[0]}", file=sys.stderr)
        return 1 if stale else 0
    for name in write_files(options.output_dir):
        print(options.output_dir / name)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
