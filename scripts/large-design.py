#!/usr/bin/env python3
"""Writes a large design for timing the command line end to end: a catalogue of 5,000 nozzles
(CSV for `caudalis catalogue import`) and a design file of a machine with 30,000 outlets whose
required flows that catalogue covers.

Usage: large-design.py FOLDER [--nozzles N] [--outlets N]
"""
import argparse
import json
import math
import os
import random

# Outlets 30 cm apart, the closest a design file allows; spans of 90 m, under the 100 m a
# design file allows; so 30,000 outlets make a machine of 100 spans and 9 km, with a pipe wide
# enough to carry the flow that far.
SPANS = 100
SPAN_LENGTH_M = 90.0
PIPE_DIAMETER_MM = 400.0
PRESSURE_KPA = 400.0


def nozzle_rows(count, rng):
    """Nozzles whose flows at 100-400 kPa run from below the smallest to above the largest
    outlet flow, spread over brands and models with a few pressure ranges each."""
    rows = []
    for number in range(count):
        brand = "Brand %d" % (number % 4 + 1)
        model = "Model %d" % (number % 20 + 1)
        b = 0.46 + 0.08 * rng.random()
        flow_at_200 = math.exp(rng.uniform(math.log(1e-5), math.log(0.02)))
        a = flow_at_200 / 200.0 ** b
        pmin = [50.0, 70.0, 100.0][number % 3]
        pmax = [450.0, 500.0, 600.0][number % 3]
        rows.append((brand, model, "N%05d" % number, a, b, pmin, pmax, a * pmin ** b, a * pmax ** b))
    return rows


def design(outlets):
    spacing_cm = SPANS * SPAN_LENGTH_M * 100.0 / outlets
    if spacing_cm < 30:
        raise SystemExit("at most %d outlets: design files keep outlets 30 cm apart" % (SPANS * SPAN_LENGTH_M / 0.3))
    spans = []
    for i in range(SPANS):
        spans.append({
            "id": i + 1,
            "length_m": SPAN_LENGTH_M,
            "diameter_mm": PIPE_DIAMETER_MM,
            "outlet_spacing_cm": spacing_cm,
            "end_elevation_m": 100.0 + 2.0 * math.sin(i / 3.0),
        })
    return {
        "name": "Large machine, %d outlets" % outlets,
        "inlet_pressure_kpa": PRESSURE_KPA,
        "design_flow_lps": 90,
        "roughness_c": 140,
        "centre_elevation_m": 100.0,
        "revolution_time_h": 30,
        "spans": spans,
        "end_gun": {"ring_width_m": 20, "booster_kpa": 150},
        "nozzle_selection": {"tolerance": 0.1},
    }


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("folder")
    parser.add_argument("--nozzles", type=int, default=5000)
    parser.add_argument("--outlets", type=int, default=30000)
    args = parser.parse_args()
    os.makedirs(args.folder, exist_ok=True)
    rng = random.Random(20261123)
    with open(os.path.join(args.folder, "nozzles.csv"), "w") as out:
        out.write("brand,model,nozzle,a,b,pmin,pmax,qmin,qmax\n")
        for row in nozzle_rows(args.nozzles, rng):
            out.write("%s,%s,%s,%.15g,%.15g,%.15g,%.15g,%.15g,%.15g\n" % row)
    with open(os.path.join(args.folder, "design.json"), "w") as out:
        json.dump(design(args.outlets), out, indent=2)


if __name__ == "__main__":
    main()
