"""The cost of the Python bindings on a march: a 1,000-outlet machine computed to convergence
(`PivotWrapper.calculate()`) through the package, beside the same run from C++.

The C++ figure is the benchmark `BM_CalculateWithNozzlePackage` of the project's benchmark
program (bench/hydraulics_bench.cpp), which builds the same machine with the same 62 nozzle
sizes and the design's `NozzlePackageStrategy`. Each round runs the C++ benchmark once and then
the Python run as many times as the C++ benchmark took iterations (at least 20); both are timed
as CPU time of the running thread. The rounds alternate, so both sides see the same machine load;
the figures printed are the medians of the rounds. The script also checks that both runs are the
same run: equal passes of the march and equal delivered flow.

The same rounds compute the machine with a strategy written in Python (one nozzle for every
outlet) and print its cost per outlet visited beside the same strategy's in C++ (the benchmark
`BM_CalculateToConvergence`, whose march it repeats pass for pass).

    PYTHONPATH=build/python /usr/bin/python3 python/bench/march_bench.py build/bench/caudalis_bench
"""
import argparse
import json
import math
import statistics
import subprocess
import time

import caudalis
from caudalis import services

NOZZLE_PACKAGE = "BM_CalculateWithNozzlePackage"
ONE_NOZZLE = "BM_CalculateToConvergence"
OUTLETS = 1000


def thousand_outlet_machine():
    """Twenty spans of 50 m with an outlet every metre over rolling ground, as the C++ benchmark's."""
    statics = caudalis.Statics.application()
    spans = caudalis.BoundedArray[caudalis.tramo](
        [statics.Tramos().newTramo(i, "span", 50.0, 168.0, 100.0) for i in range(1, 21)])
    heights = [100 + 3 * math.sin(i / 3.0) for i in range(1, 21)]
    machine = caudalis.pivot(cota=100.0, presion=400.0, caudal=60.0, rugosidad=140.0)
    statics.Pivots().setFixedSpans(machine, spans, heights)
    return machine


def nozzle_sizes():
    """Sizes of one model whose flows at 300 kPa run from 0.01 to 0.2 l/s, each 5 % more than the last."""
    model = caudalis.modelo(nome="bench")
    catalogue = caudalis.Statics.application().Aspersores()
    nozzles = caudalis.Collection()
    size = 0
    while 0.01 * 1.05**size <= 0.2:
        a = 0.01 * 1.05**size / math.sqrt(300.0)
        nozzles.Add(catalogue.newAspersor(f"bench {size}", a, 0.5, 50.0, 500.0, a * math.sqrt(50.0),
                                          a * math.sqrt(500.0), model))
        size += 1
    return nozzles


def wrapped(strategy):
    statics = caudalis.Statics.application()
    wrapper = statics.newPivotWrapper(thousand_outlet_machine(), strategy)
    wrapper.setDrop(statics.Drops().newDrop(20.0, 2.5, caudalis.PipeMaterial(id=1, name="hose", rugosidade=140)))
    wrapper.installDrop()
    return wrapper


def cpu_time_per_calculate(wrapper, runs):
    start = time.thread_time_ns()
    for _ in range(runs):
        wrapper.calculate()
    return (time.thread_time_ns() - start) / runs


def cxx_round(bench_program):
    """The C++ benchmarks' runs by name: CPU µs per calculate, iterations and counters."""
    output = subprocess.run([bench_program, f"--benchmark_filter=^({NOZZLE_PACKAGE}|{ONE_NOZZLE})$",
                             "--benchmark_format=json"], check=True, capture_output=True, text=True).stdout
    runs = {run["name"]: run for run in json.loads(output)["benchmarks"]}
    assert all(run["time_unit"] == "us" for run in runs.values())
    return runs[NOZZLE_PACKAGE], runs[ONE_NOZZLE]


def python_round(iterations):
    """(CPU µs per calculate, passes, delivered flow) with the design's C++ strategy."""
    strategy = services.NozzlePackageStrategy(nozzle_sizes(), 0.1, 1000)
    wrapper = wrapped(strategy)
    nanoseconds = cpu_time_per_calculate(wrapper, max(20, iterations))
    return nanoseconds / 1000, strategy.passes(), wrapper.totalComputedDischarge()


class OneNozzle(caudalis.CalculosStrategy):
    """A strategy written in Python: the same nozzle for every outlet, as the C++ benchmark's
    `FixedNozzleStrategy`."""

    def __init__(self, nozzle):
        super().__init__()
        self.nozzle = nozzle
        self.chart = caudalis.makeCartaAspersores()
        self.outlets = 0

    def aspersorFor(self, aSaida):
        self.outlets += 1
        return self.nozzle

    def carta(self):
        return self.chart


def bench_nozzle():
    return caudalis.Statics.application().Aspersores().newAspersor(
        "bench nozzle", 0.0045, 0.5, 50.0, 500.0, 0.03, 0.1, caudalis.modelo(nome="bench"))


def python_strategy_round(runs):
    """(CPU ns per outlet visited, passes per calculate) with the strategy written in Python."""
    strategy = OneNozzle(bench_nozzle())
    wrapper = wrapped(strategy)
    nanoseconds = cpu_time_per_calculate(wrapper, runs) * runs
    return nanoseconds / strategy.outlets, strategy.outlets / (runs * OUTLETS)


def same_run(what, python, cxx):
    if python != cxx:
        raise SystemExit(f"not the same run ({what}): Python {python!r}, C++ {cxx!r}")


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("bench_program", help="the project's benchmark program (build/bench/caudalis_bench)")
    parser.add_argument("--rounds", type=int, default=3)
    parser.add_argument("--python-strategy-runs", type=int, default=5)
    arguments = parser.parse_args()
    cxx, python, cxx_outlet, python_outlet = [], [], [], []
    for round_number in range(1, arguments.rounds + 1):
        package, one_nozzle = cxx_round(arguments.bench_program)
        python_us, passes, flow = python_round(package["iterations"])
        same_run("C++ strategy", (passes, flow), (package["passes"], package["delivered_lps"]))
        outlet_ns, passes_per_calculate = python_strategy_round(arguments.python_strategy_runs)
        same_run("strategy written in Python", passes_per_calculate, one_nozzle["passes_per_calculate"])
        cxx.append(package["cpu_time"])
        python.append(python_us)
        cxx_outlet.append(one_nozzle["cpu_time"] * 1000 / (one_nozzle["passes_per_calculate"] * OUTLETS))
        python_outlet.append(outlet_ns)
        print(f"round {round_number}: C++ strategy, per calculate ({passes} passes of {OUTLETS} outlets): "
              f"C++ {cxx[-1]:.0f} µs, Python {python[-1]:.0f} µs; one-nozzle strategy, per outlet visited: "
              f"in C++ {cxx_outlet[-1]:.0f} ns, in Python {python_outlet[-1]:.0f} ns")
    median = statistics.median
    print(f"median of {arguments.rounds}: C++ {median(cxx):.0f} µs, Python {median(python):.0f} µs per calculate, "
          f"ratio {median(python) / median(cxx):.3f}")
    print(f"strategy written in Python: {median(python_outlet):.0f} ns per outlet visited, against "
          f"{median(cxx_outlet):.0f} ns with the same strategy in C++")


if __name__ == "__main__":
    main()
