#include <benchmark/benchmark.h>

#include <cmath>
#include <string>
#include <vector>

#include "PairedTiming.hpp"
#include "caudalis/caudalis.hpp"
#include "caudalis/core/NumberText.hpp"

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
        const double b = 0.46 + 0.08 * static_cast<double>(i % 89) / 89.0;
        catalogue->Add(
            Variant(factory.newAspersor("nozzle " + std::to_string(i), a, b, 100, 400, 0.1, 2, model)));
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

/// The yardstick of the best match: the same flow laws in a plain array, one pass keeping the
/// closest flow within the tolerance.
class PlainBestMatch {
public:
    explicit PlainBestMatch(const Collection& catalogue) {
        for (const Variant& item : catalogue) {
            const auto nozzle = item.toObject<Aspersor>();
            laws_.push_back({*parseLocaleNumber(nozzle->a()), *parseLocaleNumber(nozzle->b())});
        }
    }

    /// The position of the best nozzle, or -1.
    long best(double pressure, double flow, double tolerance) const {
        const double low = (1 - tolerance) * flow;
        const double high = (tolerance + 1) * flow;
        long best = -1;
        double bound = tolerance;
        for (std::size_t i = 0; i < laws_.size(); ++i) {
            const double given = laws_[i].a * std::pow(pressure, laws_[i].b);
            if (given >= low && given <= high) {
                const double deviation = std::abs(given / flow - 1);
                if (deviation <= bound) {
                    best = static_cast<long>(i);
                    bound = deviation;
                }
            }
        }
        return best;
    }

private:
    struct Law {
        double a;
        double b;
    };
    std::vector<Law> laws_;
};

/// `getBestMatch` over 5,000 nozzles beside the plain loop, at pressures and flows that vary
/// from outlet to outlet.
void BM_BestMatchAgainstPlainLoop(benchmark::State& state) {
    const auto catalogue = catalogueOf(5000);
    const AspersoresStatic matcher;
    const PlainBestMatch plain(*catalogue);
    bench::PairedTiming timing;
    long outlet = 0;
    for (auto _ : state) {
        const double pressure = 150 + static_cast<double>(outlet % 200);
        const double flow = 0.2 + 0.003 * static_cast<double>(outlet % 300);
        ++outlet;
        timing.library(
            [&] { benchmark::DoNotOptimize(matcher.getBestMatch(catalogue, pressure, flow, 0.1)); });
        timing.yardstick([&] { benchmark::DoNotOptimize(plain.best(pressure, flow, 0.1)); });
        timing.addUnits(1);
    }
    timing.report(state);
}
BENCHMARK(BM_BestMatchAgainstPlainLoop)->Unit(benchmark::kMicrosecond);

}  // namespace
