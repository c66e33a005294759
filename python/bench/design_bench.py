"""The cost of `caudalis.design()` beside the command line's `caudalis design --json` on a
1,000-outlet machine (twenty 50 m spans, an outlet every metre), with the same catalogue.

Each round runs the command line once (its CPU time, user and system, as the kernel counts it for
the finished child process: start-up, catalogue, design run and the JSON document written) and
then `caudalis.design()` in this process (CPU time of the process around the call: catalogue,
design run and the result's document built as Python objects), and then the same call with its
outlets table asked for. The rounds alternate, so both sides see the same machine load; the
figures printed are the medians of the rounds, each beside the command line's as a ratio.
The script also checks that both are the same design: equal outlets, passes and delivered flow.

    PYTHONPATH=build/python /usr/bin/python3 python/bench/design_bench.py build/apps/caudalis/caudalis
"""
import argparse
import json
import pathlib
import resource
import statistics
import subprocess
import sys
import tempfile
import time

import caudalis

OUTLETS = 1000


def thousand_outlet_design():
    spans = [{"length_m": 50, "diameter_mm": 168, "outlet_spacing_cm": 100, "end_elevation_m": 50 + 0.5 * i}
             for i in range(1, 21)]
    return {"name": "Thousand outlets", "inlet_pressure_kpa": 400, "design_flow_lps": 60, "roughness_c": 140,
            "centre_elevation_m": 50, "revolution_time_h": 12, "spans": spans,
            "nozzle_selection": {"tolerance": 0.15, "brand": "Rotaflux", "model": "RX Spinner"}}


def children_cpu():
    usage = resource.getrusage(resource.RUSAGE_CHILDREN)
    return usage.ru_utime + usage.ru_stime


def command_line_round(cli, design, catalogue):
    before = children_cpu()
    printed = subprocess.run([cli, "design", design, "--json", "--catalogue", catalogue],
                             capture_output=True, text=True)
    spent = children_cpu() - before
    if printed.returncode not in (0, 4):  # 4: the design has findings, still printed whole
        sys.exit(f"caudalis design failed: {printed.stderr}")
    return spent, json.loads(printed.stdout)


def python_round(design, catalogue, with_table):
    start = time.process_time()
    result = caudalis.design(design, catalogue=catalogue)
    if with_table:
        len(result.outlets)
    return time.process_time() - start, result


def same_design(python, cli):
    summary = python.summary
    assert summary["outlets"] == cli["summary"]["outlets"] == OUTLETS, summary["outlets"]
    assert summary["passes"] == cli["summary"]["passes"]
    assert summary["computed_flow_lps"] == cli["summary"]["computed_flow_lps"]
    assert python.document == cli, "the Python document differs from the command line's JSON"


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("cli", help="the caudalis program")
    parser.add_argument("--rounds", type=int, default=15)
    arguments = parser.parse_args()
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run([arguments.cli, "init", folder], check=True, capture_output=True)
        catalogue = str(pathlib.Path(folder) / "catalogue.db")
        design = pathlib.Path(folder) / "thousand.json"
        design.write_text(json.dumps(thousand_outlet_design()))
        design = str(design)
        _, cli = command_line_round(arguments.cli, design, catalogue)
        _, python = python_round(design, catalogue, True)
        same_design(python, cli)
        figures = {"command line": [], "design()": [], "design() with its outlets table": []}
        for _ in range(arguments.rounds):
            figures["command line"].append(command_line_round(arguments.cli, design, catalogue)[0])
            figures["design()"].append(python_round(design, catalogue, False)[0])
            figures["design() with its outlets table"].append(python_round(design, catalogue, True)[0])
    yardstick = statistics.median(figures["command line"])
    print(f"{OUTLETS}-outlet design, median CPU time of {arguments.rounds} rounds:")
    for name, times in figures.items():
        median = statistics.median(times)
        print(f"  {name:<34} {median * 1000:8.2f} ms  {median / yardstick:5.2f} x the command line")


if __name__ == "__main__":
    main()
