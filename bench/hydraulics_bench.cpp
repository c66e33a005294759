#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdlib>
#include <new>
#include <vector>

#include "PairedTiming.hpp"
#include "caudalis/catalogue/AspersoresStatic.hpp"
#include "caudalis/caudalis.hpp"
#include "caudalis/charts/CartaAspersores.hpp"
#include "caudalis/design/NozzlePackageStrategy.hpp"
#include "caudalis/hydraulics/CalculosStrategy.hpp"
#include "caudalis/hydraulics/Drops.hpp"
#include "caudalis/hydraulics/PivotWrapper.hpp"
#include "caudalis/machine/Pivots.hpp"
#include "caudalis/machine/Tramos.hpp"
#include "caudalis/machine/Types.hpp"

namespace {

std::atomic<long long> allocations{0};

}  // namespace

// The replacement operator new allocates with malloc, so free is the matching release.
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"

// Counts every allocation of the program, so that the marches can report allocations per outlet.
void* operator new(std::size_t size) {
    allocations.fetch_add(1, std::memory_order_relaxed);
    if (void* memory = std::malloc(size == 0 ? 1 : size)) {
        return memory;
    }
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}

namespace {

using namespace caudalis;

/// Returns one fixed nozzle for every outlet and counts the outlets it is asked about.
class FixedNozzleStrategy : public CalculosStrategy {
public:
    explicit FixedNozzleStrategy(std::shared_ptr<Aspersor> nozzle) : nozzle_(std::move(nozzle)) {}
    std::shared_ptr<Aspersor> aspersorFor(const saida& /*aSaida*/) override {
        ++outlets;
        return nozzle_;
    }
    std::shared_ptr<CartaAspersores> carta() override { return chart_; }
    long long outlets = 0;

private:
    std::shared_ptr<Aspersor> nozzle_;
    std::shared_ptr<CartaAspersores> chart_ = makeCartaAspersores();
};

/// Twenty spans of 50 m with an outlet every metre (1,000 outlets) over rolling ground.
pivot thousandOutletMachine() {
    BoundedArray<tramo> spans(1, 20);
    BoundedArray<Double> heights(1, 20);
    for (Long i = 1; i <= 20; ++i) {
        spans(i) = Tramos::shared()->newTramo(i, "span", 50, 168, 100);
        heights(i) = 100 + 3 * std::sin(i / 3.0);
    }
    pivot machine;
    machine.cota = 100;
    machine.presion = 400;
    machine.caudal = 60;
    machine.rugosidad = 140;
    Pivots::shared()->setFixedSpans(machine, spans, heights);
    return machine;
}

std::shared_ptr<PivotWrapper> wrappedMachine(const std::shared_ptr<CalculosStrategy>& strategy) {
    auto wrapper = Statics::application()->newPivotWrapper(thousandOutletMachine(), strategy);
    wrapper->setDrop(Drops::shared()->newDrop(20, 2.5, PipeMaterial{1, "hose", 140}));
    wrapper->installDrop();
    return wrapper;
}

std::shared_ptr<Aspersor> benchNozzle() {
    modelo model;
    model.nome = "bench";
    return AspersoresStatic().newAspersor("bench nozzle", 0.0045, 0.5, 50, 500, 0.03, 0.1, model);
}

/// Nozzles of one model whose flows at 300 kPa run from 0.01 to 0.2 l/s, each size 5 % more than
/// the one before.
CollectionRef benchNozzleSizes() {
    modelo model;
    model.nome = "bench";
    auto nozzles = Collection::create();
    for (int size = 0; 0.01 * std::pow(1.05, size) <= 0.2; ++size) {
        const double a = 0.01 * std::pow(1.05, size) / std::sqrt(300.0);
        nozzles->Add(
            Variant(AspersoresStatic().newAspersor("bench " + std::to_string(size), a, 0.5, 50, 500,
                                                   a * std::sqrt(50.0), a * std::sqrt(500.0), model)));
    }
    return nozzles;
}

void BM_MarchPasses(benchmark::State& state) {
    auto strategy = std::make_shared<FixedNozzleStrategy>(benchNozzle());
    auto wrapper = wrappedMachine(strategy);
    const Drop drop = wrapper->getDrop();
    long long allocated = 0;
    for (auto _ : state) {
        const long long before = allocations.load();
        wrapper->compute(*strategy, drop);
        allocated += allocations.load() - before;
    }
    state.SetItemsProcessed(strategy->outlets);
    state.counters["allocations_per_outlet"] =
        static_cast<double>(allocated) / static_cast<double>(std::max(1LL, strategy->outlets));
}
BENCHMARK(BM_MarchPasses)->Unit(benchmark::kMicrosecond);

void BM_CalculateToConvergence(benchmark::State& state) {
    auto strategy = std::make_shared<FixedNozzleStrategy>(benchNozzle());
    auto wrapper = wrappedMachine(strategy);
    for (auto _ : state) {
        wrapper->calculate();
    }
    state.counters["passes_per_calculate"] =
        static_cast<double>(strategy->outlets) / (1000.0 * static_cast<double>(state.iterations()));
}
BENCHMARK(BM_CalculateToConvergence)->Unit(benchmark::kMicrosecond);

/// `calculate` to convergence with the design's strategy choosing among twenty nozzle sizes: the
/// run python/bench/march_bench.py repeats through the Python package (same machine, same
/// nozzles), so that the cost of the bindings shows beside this figure. `passes` and
/// `delivered_lps` tell both runs are the same.
void BM_CalculateWithNozzlePackage(benchmark::State& state) {
    auto strategy = std::make_shared<design::NozzlePackageStrategy>(benchNozzleSizes(), 0.1, 1000);
    auto wrapper = wrappedMachine(strategy);
    for (auto _ : state) {
        wrapper->calculate();
    }
    state.counters["passes"] = static_cast<double>(strategy->passes());
    state.counters["delivered_lps"] = wrapper->totalComputedDischarge();
}
BENCHMARK(BM_CalculateWithNozzlePackage)->Unit(benchmark::kMicrosecond);

/// Runs `pass` (one pass over `count` outlets) until `outletPasses` outlets are done; returns
/// the last pass's result.
template <class Pass>
double repeatedPasses(long long outletPasses, long long count, Pass&& pass) {
    double delivered = 0;
    for (long long done = 0; done < outletPasses; done += count) {
        delivered = pass();
    }
    return delivered;
}

/// The drop hose and the nozzle of the march yardsticks, those of `wrappedMachine` and
/// `benchNozzle`.
struct YardstickHoseAndNozzle {
    double hoseDiameter = 20;
    double hoseRoughness = 140;
    double hoseLength = 2.5;
    double nozzleA = 0.0045;
    double nozzleB = 0.5;
};

/// `calculate` to convergence beside `loop` doing as many outlet passes.
template <class Loop>
void marchAgainst(benchmark::State& state, FixedNozzleStrategy& strategy, PivotWrapper& wrapper,
                  const Loop& loop, double inflow) {
    bench::PairedTiming timing;
    for (auto _ : state) {
        const long long before = strategy.outlets;
        timing.library([&] { wrapper.calculate(); });
        const long long outletPasses = strategy.outlets - before;
        timing.yardstick([&] { benchmark::DoNotOptimize(loop.passes(outletPasses, inflow)); });
        timing.addUnits(static_cast<double>(outletPasses));
    }
    timing.report(state);
}

/// The yardstick of the march: the arithmetic of one pass written as a plain loop, with the
/// seven `pow` calls per outlet that the Hazen-Williams law (pipe and drop hose) and the nozzle
/// law take when every term is worked out afresh.
class PlainMarch {
public:
    explicit PlainMarch(const pivot& machine)
        : inletPressure_(machine.presion), roughness_(machine.rugosidad) {
        for (const tramo& span : machine.Tramos) {
            for (const saida& outlet : span.Saidas) {
                outlets_.push_back({span.separacionSaidas, span.diametro, outlet.caudal});
            }
        }
        benchmark::DoNotOptimize(ten_);
    }

    /// `passes` passes with `inflow` entering; returns the delivered flow of the last one.
    double passes(long long outletPasses, double inflow) const {
        return repeatedPasses(outletPasses, static_cast<long long>(outlets_.size()),
                              [&] { return pass(inflow); });
    }

private:
    struct Outlet {
        double spacing;
        double diameter;
        double required;
    };

    double unitLoss(double flow, double diameter, double roughness) const {
        return std::pow(diameter, -4.87) * (std::pow(ten_, ten_) * 1.21 * std::pow(flow / roughness, 1.852));
    }

    double pass(double inflow) const {
        double p = inletPressure_;
        double q = inflow;
        for (const Outlet& outlet : outlets_) {
            const double friction =
                outlet.spacing * 10.0 * unitLoss(std::max(0.0, q), outlet.diameter, roughness_);
            const double dropLoss =
                unitLoss(outlet.required, parts_.hoseDiameter, parts_.hoseRoughness) * parts_.hoseLength;
            const double pPipe = p - 0.1 - friction;
            const double pReal = std::max(0.0, pPipe - dropLoss);
            const double flow = parts_.nozzleA * std::pow(pReal, parts_.nozzleB);
            p = pPipe;
            q -= flow;
        }
        return inflow - q;
    }

    double inletPressure_;
    double roughness_;
    double ten_ = 10.0;
    YardstickHoseAndNozzle parts_;
    std::vector<Outlet> outlets_;
};

/// `calculate` to convergence beside the plain loop doing as many outlet passes.
void BM_MarchAgainstPlainLoop(benchmark::State& state) {
    auto strategy = std::make_shared<FixedNozzleStrategy>(benchNozzle());
    auto wrapper = wrappedMachine(strategy);
    pivot machine;
    wrapper->update(machine);
    const PlainMarch plain(machine);
    marchAgainst(state, *strategy, *wrapper, plain, machine.caudal);
}
BENCHMARK(BM_MarchAgainstPlainLoop)->Unit(benchmark::kMicrosecond);

/// The lean yardstick of the march: the same physics as one pass of the library's (pipe
/// friction, the rise between outlets, the drop-hose loss, the nozzle law) with every power that
/// does not change inside the loop worked out before it: each span's diameter power, the
/// constant factor, and each outlet's drop-hose loss, whose required flow stays the same from
/// pass to pass. Two `pow` calls per outlet remain: the pipe flow's and the nozzle law's.
class LeanMarch {
public:
    /// `machine` as the library computed it (the outlets' elevations are read from it).
    explicit LeanMarch(const pivot& machine)
        : inletPressure_(machine.presion), roughness_(machine.rugosidad) {
        const double hosePower = std::pow(parts_.hoseDiameter, -4.87);
        double elevation = machine.cota;
        for (const tramo& span : machine.Tramos) {
            const double diameterPower = std::pow(span.diametro, -4.87);
            for (const saida& outlet : span.Saidas) {
                const double hoseFriction = hosePower *
                                            (scale_ * std::pow(outlet.caudal / parts_.hoseRoughness, 1.852)) *
                                            parts_.hoseLength;
                outlets_.push_back({span.separacionSaidas * 10.0, diameterPower, hoseFriction,
                                    (outlet.cota - elevation) * 10.0});
                elevation = outlet.cota;
            }
        }
    }

    /// `passes` passes with `inflow` entering; returns the delivered flow of the last one.
    double passes(long long outletPasses, double inflow) const {
        return repeatedPasses(outletPasses, static_cast<long long>(outlets_.size()),
                              [&] { return pass(inflow); });
    }

private:
    struct Outlet {
        double spacingPressure;
        double diameterPower;
        double dropLoss;
        double rise;
    };

    double pass(double inflow) const {
        double p = inletPressure_;
        double q = inflow;
        for (const Outlet& outlet : outlets_) {
            const double friction =
                outlet.spacingPressure *
                (outlet.diameterPower * (scale_ * std::pow(std::max(0.0, q) / roughness_, 1.852)));
            const double pPipe = p - outlet.rise - friction;
            const double pReal = std::max(0.0, pPipe - outlet.dropLoss);
            q -= parts_.nozzleA * std::pow(pReal, parts_.nozzleB);
            p = pPipe;
        }
        return inflow - q;
    }

    static constexpr double scale_ = 1e10 * 1.21;
    double inletPressure_;
    double roughness_;
    YardstickHoseAndNozzle parts_;
    std::vector<Outlet> outlets_;
};

/// `calculate` to convergence beside the lean loop doing as many outlet passes.
void BM_MarchAgainstLeanLoop(benchmark::State& state) {
    auto strategy = std::make_shared<FixedNozzleStrategy>(benchNozzle());
    auto wrapper = wrappedMachine(strategy);
    wrapper->calculate();
    pivot machine;
    wrapper->update(machine);
    const LeanMarch lean(machine);
    marchAgainst(state, *strategy, *wrapper, lean, machine.caudal);
}
BENCHMARK(BM_MarchAgainstLeanLoop)->Unit(benchmark::kMicrosecond);

}  // namespace
