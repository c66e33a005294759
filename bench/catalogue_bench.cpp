#include <benchmark/benchmark.h>

#include <string>

#include "caudalis/caudalis.hpp"

namespace {

using namespace caudalis;

/// A catalogue of nozzles whose flows at pressure 300 spread around 0.5 (flow = a * p^0.5).
CollectionRef catalogueOf(Long size) {
    AspersoresStatic factory;
    modelo model;
    model.nome = "R3000";
    auto catalogue = Collection::create();
    for (Long i = 1; i <= size; ++i) {
        const double a = 0.01 + 0.03 * static_cast<double>(i % 997) / 997.0;
        catalogue->Add(
            Variant(factory.newAspersor("nozzle " + std::to_string(i), a, 0.5, 100, 400, 0.1, 2, model)));
    }
    return catalogue;
}

/// Runs `match(matcher, catalogue)` over a catalogue of `state.range(0)` nozzles, counting the
/// nozzles examined.
template <class Match>
void examineCatalogue(benchmark::State& state, Match match) {
    const auto size = static_cast<Long>(state.range(0));
    const auto catalogue = catalogueOf(size);
    const AspersoresStatic matcher;
    for (auto _ : state) {
        benchmark::DoNotOptimize(match(matcher, catalogue));
    }
    state.SetItemsProcessed(state.iterations() * size);
}

void BM_GetBestMatch(benchmark::State& state) {
    examineCatalogue(state, [](const AspersoresStatic& matcher, const CollectionRef& catalogue) {
        return matcher.getBestMatch(catalogue, 300, 0.5, 0.1);
    });
}
BENCHMARK(BM_GetBestMatch)->Arg(5000);

void BM_GetPossibleAspersores(benchmark::State& state) {
    examineCatalogue(state, [](const AspersoresStatic& matcher, const CollectionRef& catalogue) {
        return matcher.getPossibleAspersores(catalogue, 300, 0.5, 0.1);
    });
}
BENCHMARK(BM_GetPossibleAspersores)->Arg(5000);

}  // namespace
