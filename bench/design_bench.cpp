#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "PairedTiming.hpp"
#include "caudalis/caudalis.hpp"
#include "caudalis/design/NozzleSet.hpp"

namespace {

using namespace caudalis;
using namespace caudalis::design;

/// A catalogue like that of scripts/large-design.py: 5,000 nozzles of 20 models whose flows at
/// 200 kPa spread evenly on a logarithmic scale from 0.00001 to 0.02 l/s, in three rated
/// pressure ranges.
CollectionRef largeCatalogue() {
    std::mt19937_64 random(20261123);
    std::uniform_real_distribution<double> exponent(0.46, 0.54);
    std::uniform_real_distribution<double> logFlow(std::log(1e-5), std::log(0.02));
    const double pmin[] = {50, 70, 100};
    const double pmax[] = {450, 500, 600};
    const AspersoresStatic factory;
    auto catalogue = Collection::create();
    for (int i = 0; i < 5000; ++i) {
        const double b = exponent(random);
        const double a = std::exp(logFlow(random)) / std::pow(200.0, b);
        const modelo model{i % 20 + 1, "Model " + std::to_string(i % 20 + 1), marca{i % 4 + 1, "Brand"}, 1};
        catalogue->Add(
            Variant(factory.newAspersor("N" + std::to_string(i), a, b, pmin[i % 3], pmax[i % 3],
                                        a * std::pow(pmin[i % 3], b), a * std::pow(pmax[i % 3], b), model)));
    }
    return catalogue;
}

/// The nozzles of `catalogue` split by rated pressure range, in catalogue order.
std::vector<CollectionRef> byPressureRange(const CollectionRef& catalogue) {
    std::vector<double> lowest;
    std::vector<CollectionRef> groups;
    for (Long i = 1; i <= catalogue->Count(); ++i) {
        const auto nozzle = catalogue->objectAt<Aspersor>(i);
        auto found = std::find(lowest.begin(), lowest.end(), nozzle->pmin());
        if (found == lowest.end()) {
            lowest.push_back(nozzle->pmin());
            groups.push_back(Collection::create());
            found = lowest.end() - 1;
        }
        groups[static_cast<std::size_t>(found - lowest.begin())]->Add(Variant(nozzle));
    }
    return groups;
}

/// The choice of one outlet's nozzle among 5,000 (`NozzleSet::choose`, through its flow index)
/// beside the full scan it replaces: `getBestMatch` over every pressure group of the same set.
void BM_NozzleChoiceAgainstFullScan(benchmark::State& state) {
    const auto catalogue = largeCatalogue();
    const auto set = NozzleSet::of(catalogue, "the nozzles");
    const auto groups = byPressureRange(catalogue);
    const auto matcher = Statics::application()->Aspersores();
    std::mt19937_64 random(18);
    std::uniform_real_distribution<double> pressures(120, 440);
    std::uniform_real_distribution<double> logFlow(std::log(2e-5), std::log(0.02));
    bench::PairedTiming timing;
    for (auto _ : state) {
        const double pressure = pressures(random);
        const double flow = std::exp(logFlow(random));
        timing.library(
            [&] { benchmark::DoNotOptimize(set.choose(pressure, flow, 0.1, NoFitPolicy::LeaveEmpty)); });
        timing.yardstick([&] {
            for (const auto& group : groups) {
                benchmark::DoNotOptimize(matcher->getBestMatch(group, pressure, flow, 0.1));
            }
        });
        timing.addUnits(1);
    }
    timing.report(state);
}
BENCHMARK(BM_NozzleChoiceAgainstFullScan)->Unit(benchmark::kMicrosecond);

}  // namespace
