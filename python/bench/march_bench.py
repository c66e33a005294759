"""The cost of the Python bindings on a march: a 1,000-outlet machine computed to convergence
(`PivotWrapper.calculate()`) through the package, beside the same run from C++.

The C++ figure is the benchmark `BM_CalculateWithNozzlePackage` of the project's benchmark
program (bench/hydraulics_bench.cpp), which builds the same machine with the same twenty nozzle
sizes and the design's `NozzlePackageStrategy`. Each round runs the C++ benchmark once and then
the Python run as many times as the C++ benchmark took iterations (at least 20); both are timed
as CPU time of the running thread. The rounds alternate, so both sides see the same machine load;
the figures printed are the medians of the rounds. The script also checks that both runs are the
same run: equal passes of the march and equal delivered flow.

Then the same machine is computed with a strategy written in Python (one nozzle for every
outlet), and the cost per outlet visited is printed beside the C++ strategy's.

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

BENCHMARK = "BM_CalculateWithNozzlePackage"
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
    """Twenty sizes of one model whose flows at 300 kPa step from 0.01 to 0.2 l/s."""
    model = caudalis.modelo(nome="bench")
    nozzles = caudalis.Collection()
    for size in range(1, 21):
        a = 0.01 * size / math.sqrt(300.0)
        nozzles.Add(caudalis.AspersoresStatic().newAspersor(f"bench {size}", a, 0.5, 50.0, 500.0,
                                                             a * math.sqrt(50.0), a * math.sqrt(500.0), model))
    return nozzles


def wrapped(strategy):
    statics = caudalis.Statics.application()
    wrapper = statics.newPivotWrapper(thousand_outlet_machine(), strategy)
    wrapper.setDrop(statics.Drops().newDrop(20.0, 2.5, caudalis.PipeMaterial(id=1, name="hose", rugosidade=140.0)))
    wrapper.installDrop()
    return wrapper


def cpu_time_per_calculate(wrapper, runs):
    start = time.thread_time_ns()
    for _ in range(runs):
        wrapper.calculate()
    return (time.thread_time_ns() - start) / runs


def cxx_round(bench_program):
    """(CPU µs per calculate, iterations, passes, delivered flow) of one C++ benchmark run."""
    output = subprocess.run([bench_program, f"--benchmark_filter=^{BENCHMARK}$", "--benchmark_format=json"],
                            check=True, capture_output=True, text=True).stdout
    run = json.loads(output)["benchmarks"][0]
    assert run["time_unit"] == "us"
    return run["cpu_time"], run["iterations"], run["passes"], run["delivered_lps"]


def python_round(iterations):
    strategy = services.NozzlePackageStrategy(nozzle_sizes(), 0.1, 1000)
    wrapper = wrapped(strategy)
    nanoseconds = cpu_time_per_calculate(wrapper, max(20, iterations))
    return nanoseconds / 1000, strategy.passes(), wrapper.totalComputedDischarge()


class OneNozzle(caudalis.CalculosStrategy):
    """A strategy written in Python: the same nozzle for every outlet."""

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


def python_strategy_ns_per_outlet(runs):
    strategy = OneNozzle(nozzle_sizes().Item(10))
    wrapper = wrapped(strategy)
    nanoseconds = cpu_time_per_calculate(wrapper, runs) * runs
    return nanoseconds / strategy.outlets, strategy.outlets / runs


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("bench_program", help="the project's benchmark program (build/bench/caudalis_bench)")
    parser.add_argument("--rounds", type=int, default=3)
    parser.add_argument("--python-strategy-runs", type=int, default=5)
    arguments = parser.parse_args()
    cxx, python = [], []
    for round_number in range(1, arguments.rounds + 1):
        cxx_us, iterations, cxx_passes, cxx_flow = cxx_round(arguments.bench_program)
        python_us, python_passes, python_flow = python_round(iterations)
        if (python_passes, python_flow) != (cxx_passes, cxx_flow):
            raise SystemExit(f"not the same run: C++ {cxx_passes} passes, {cxx_flow!r} l/s; "
                             f"Python {python_passes} passes, {python_flow!r} l/s")
        print(f"round {round_number}: C++ {cxx_us:.0f} µs, Python {python_us:.0f} µs per calculate "
              f"({python_passes} passes of {OUTLETS} outlets)")
        cxx.append(cxx_us)
        python.append(python_us)
    cxx_median, python_median = statistics.median(cxx), statistics.median(python)
    print(f"median of {arguments.rounds}: C++ {cxx_median:.0f} µs, Python {python_median:.0f} µs, "
          f"ratio {python_median / cxx_median:.3f}")
    per_outlet, visits = python_strategy_ns_per_outlet(arguments.python_strategy_runs)
    cxx_per_outlet = cxx_median * 1000 / (OUTLETS * cxx_passes)
    print(f"strategy written in Python: {per_outlet:.0f} ns per outlet visited ({visits:.0f} visits per "
          f"calculate), against {cxx_per_outlet:.0f} ns with the C++ strategy")


if __name__ == "__main__":
    main()
