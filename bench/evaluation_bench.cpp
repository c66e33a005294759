#include <benchmark/benchmark.h>

#include "caudalis/caudalis.hpp"

namespace {

using namespace caudalis;

/// `count` readings at 1 m spacing with amounts that vary along the radius.
BoundedArray<FieldSample> fieldReadings(Long count) {
    const auto& samples = *FieldSamples::shared();
    BoundedArray<FieldSample> readings(1, count);
    for (Long i = 1; i <= count; ++i) {
        readings(i) = samples.newFieldSample(500.0 + static_cast<double>((i * 7919) % 613) / 4.0, i);
    }
    return readings;
}

void BM_FieldSampleParseSerialize(benchmark::State& state) {
    const auto& samples = *FieldSamples::shared();
    const BoundedArray<FieldSample> readings = fieldReadings(static_cast<Long>(state.range(0)));
    for (auto _ : state) {
        for (Long i = 1; i <= readings.ubound(); ++i) {
            benchmark::DoNotOptimize(samples.Parse(samples.serialize(readings(i))));
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_FieldSampleParseSerialize)->Arg(10000);

void BM_CollectionToWaterDepthLowQuarter(benchmark::State& state) {
    const BoundedArray<FieldSample> readings = fieldReadings(static_cast<Long>(state.range(0)));
    for (auto _ : state) {
        Pluviometro gauge = Pluviometros::shared()->newPluviometro(0.1);
        const auto depths = FieldSamples::shared()->CollectionToWaterDepth(readings, gauge);
        benchmark::DoNotOptimize(WaterDepths::shared()->LowQuarter(depths));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_CollectionToWaterDepthLowQuarter)->Arg(1000);

}  // namespace
