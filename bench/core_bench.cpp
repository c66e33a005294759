#include <benchmark/benchmark.h>

#include "caudalis/caudalis.hpp"

namespace {

using namespace caudalis;

void BM_SortNumbers(benchmark::State& state) {
    BoundedArray<double> values(1, static_cast<Long>(state.range(0)));
    for (Long i = 1; i <= values.ubound(); ++i) {
        values(i) = static_cast<double>((i * 7919) % 1013);
    }
    Comparator comparator;
    for (auto _ : state) {
        benchmark::DoNotOptimize(Arrays::shared()->Sort(values, comparator));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_SortNumbers)->Arg(1000);

}  // namespace
