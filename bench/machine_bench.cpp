#include <benchmark/benchmark.h>

#include "caudalis/caudalis.hpp"

namespace {

using namespace caudalis;

// Ten spans of 100 outlets each: 1,000 outlets addressed by global number.
pivot thousandOutletPivot() {
    const auto statics = Statics::application();
    pivot machine = statics->newPivot();
    BoundedArray<tramo> spans(1, 10);
    BoundedArray<Double> ends(1, 10);
    for (Long i = 1; i <= 10; ++i) {
        spans(i) = statics->Tramos()->newTramo(i, "span", 250, 168, 250);
    }
    statics->Pivots()->setFixedSpans(machine, spans, ends);
    return machine;
}

void BM_SaidaAtEveryOutlet(benchmark::State& state) {
    pivot machine = thousandOutletPivot();
    const auto pivots = Pivots::shared();
    const Long outlets = pivots->AllOutletCount(machine);
    for (auto _ : state) {
        for (Long index = 1; index <= outlets; ++index) {
            benchmark::DoNotOptimize(pivots->saidaAt(machine, index));
        }
    }
    state.SetItemsProcessed(state.iterations() * outlets);
}
BENCHMARK(BM_SaidaAtEveryOutlet);

void BM_LowQuarter(benchmark::State& state) {
    const auto depths = WaterDepths::shared();
    BoundedArray<WaterDepthSample> samples(1, static_cast<Long>(state.range(0)));
    for (Long i = 1; i <= samples.ubound(); ++i) {
        samples(i) = depths->newWaterDepthSample(static_cast<Double>((i * 7919) % 1013), 2.5 * i);
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(depths->LowQuarter(samples));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_LowQuarter)->Arg(1000);

}  // namespace
