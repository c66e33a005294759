#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <vector>

#include "caudalis/catalogue/Aspersor.hpp"
#include "caudalis/catalogue/AspersoresStatic.hpp"
#include "caudalis/core/Statics.hpp"
#include "caudalis/design/NozzleFlowIndex.hpp"

using namespace caudalis;
using namespace caudalis::design;

namespace {

constexpr double pmin = 70;
constexpr double pmax = 500;

struct Law {
    double a;
    double b;
};

std::shared_ptr<Aspersor> nozzle(const Law& law) {
    return Statics::application()->Aspersores()->newAspersor("N", law.a, law.b, pmin, pmax, 0.01, 1,
                                                             modelo{1, "M", marca{1, "B"}, 1});
}

/// A catalogue of `count` nozzles with flows over several orders of magnitude, where about one
/// nozzle in five has the law of an earlier one (equal flows, so equal deviations).
std::vector<std::shared_ptr<Aspersor>> randomCatalogue(std::mt19937_64& random, std::size_t count) {
    std::uniform_real_distribution<double> logFlow(std::log(1e-5), std::log(0.05));
    std::uniform_real_distribution<double> exponent(0.3, 0.7);
    std::uniform_real_distribution<double> unit(0, 1);
    std::vector<Law> laws;
    while (laws.size() < count) {
        if (!laws.empty() && unit(random) < 0.2) {
            laws.push_back(laws[static_cast<std::size_t>(unit(random) * static_cast<double>(laws.size()))]);
        } else {
            const double b = exponent(random);
            laws.push_back(Law{std::exp(logFlow(random)) / std::pow(200.0, b), b});
        }
    }
    std::vector<std::shared_ptr<Aspersor>> nozzles;
    for (const auto& law : laws) {
        nozzles.push_back(nozzle(law));
    }
    return nozzles;
}

CollectionRef collectionOf(const std::vector<std::shared_ptr<Aspersor>>& nozzles) {
    auto collection = Collection::create();
    for (const auto& n : nozzles) {
        collection->Add(Variant(n));
    }
    return collection;
}

/// Pressures of the rated range: its ends, a little inside them, and random ones.
std::vector<double> pressuresToTry(std::mt19937_64& random) {
    std::vector<double> pressures{pmin, pmax, std::nextafter(pmin, pmax), std::nextafter(pmax, pmin), 200};
    std::uniform_real_distribution<double> anywhere(pmin, pmax);
    for (int i = 0; i < 20; ++i) {
        pressures.push_back(anywhere(random));
    }
    return pressures;
}

/// Wanted flows at `pressure`: a nozzle's own flow (deviation 0, and a tie wherever the law
/// repeats), flows that put it right at the edges of the tolerance, and random flows.
std::vector<double> flowsToTry(std::mt19937_64& random, const std::vector<std::shared_ptr<Aspersor>>& nozzles,
                               double pressure, double tolerance) {
    std::uniform_int_distribution<std::size_t> any(0, nozzles.size() - 1);
    std::uniform_real_distribution<double> logFlow(std::log(1e-6), std::log(0.2));
    std::vector<double> flows;
    for (int i = 0; i < 6; ++i) {
        const double own = nozzles[any(random)]->calculate(pressure);
        flows.push_back(own);
        if (tolerance > -1) {
            flows.push_back(own / (1 + tolerance));
        }
        if (tolerance < 1) {
            flows.push_back(own / (1 - tolerance));
        }
        flows.push_back(std::exp(logFlow(random)));
    }
    return flows;
}

TEST(NozzleFlowIndex, ChoosesWhatTheFullScanChooses) {
    std::mt19937_64 random(18);
    const auto catalogue = Statics::application()->Aspersores();
    long compared = 0;
    long matched = 0;
    for (const std::size_t size : {1UL, 2UL, 7UL, 60UL, 400UL, 2000UL}) {
        const auto nozzles = randomCatalogue(random, size);
        const auto collection = collectionOf(nozzles);
        const NozzleFlowIndex index(nozzles, pmin, pmax);
        for (const double pressure : pressuresToTry(random)) {
            for (const double tolerance : {0.0, 0.02, 0.1, 0.5, 1.0, 3.0, -0.1}) {
                for (const double flow : flowsToTry(random, nozzles, pressure, tolerance)) {
                    ASSERT_TRUE(index.answers(pressure, flow, tolerance));
                    const auto expected = catalogue->getBestMatch(collection, pressure, flow, tolerance);
                    ASSERT_EQ(index.bestMatch(pressure, flow, tolerance), expected)
                        << "size " << size << ", pressure " << pressure << ", flow " << flow << ", tolerance "
                        << tolerance;
                    ++compared;
                    matched += expected ? 1 : 0;
                }
            }
        }
    }
    // The comparison must have met both outcomes many times.
    EXPECT_GT(matched, compared / 4);
    EXPECT_GT(compared - matched, compared / 10);
}

TEST(NozzleFlowIndex, AmongEqualFlowsChoosesTheLastNozzle) {
    const Law law{0.001, 0.5};
    const std::vector<std::shared_ptr<Aspersor>> nozzles{nozzle(law), nozzle(Law{0.002, 0.5}), nozzle(law),
                                                         nozzle(Law{0.0005, 0.5})};
    const NozzleFlowIndex index(nozzles, pmin, pmax);
    EXPECT_EQ(index.bestMatch(100, nozzles[0]->calculate(100), 0.1), nozzles[2]);
}

TEST(NozzleFlowIndex, GivesTheSmallestFlowOfAFullScan) {
    std::mt19937_64 random(1800);
    for (const std::size_t size : {1UL, 5UL, 300UL, 3000UL}) {
        const auto nozzles = randomCatalogue(random, size);
        const NozzleFlowIndex index(nozzles, pmin, pmax);
        for (const double pressure : pressuresToTry(random)) {
            ASSERT_TRUE(index.covers(pressure));
            double smallest = std::numeric_limits<double>::infinity();
            for (const auto& n : nozzles) {
                smallest = std::min(smallest, n->calculate(pressure));
            }
            EXPECT_EQ(index.smallestFlow(pressure), smallest);
        }
    }
}

TEST(NozzleFlowIndex, LeavesToTheFullScanWhatItCannotAnswer) {
    std::mt19937_64 random(7);
    const NozzleFlowIndex index(randomCatalogue(random, 50), pmin, pmax);
    EXPECT_FALSE(index.covers(std::nextafter(pmin, 0)));
    EXPECT_FALSE(index.covers(std::nextafter(pmax, 1000)));
    EXPECT_FALSE(index.covers(std::numeric_limits<double>::quiet_NaN()));
    EXPECT_FALSE(index.answers(200, 0, 0.1));
    EXPECT_FALSE(index.answers(200, -1, 0.1));
    EXPECT_FALSE(index.answers(200, std::numeric_limits<double>::denorm_min(), 0.1));
    EXPECT_FALSE(index.answers(200, std::numeric_limits<double>::infinity(), 0.1));
    EXPECT_FALSE(index.answers(200, 0.01, std::numeric_limits<double>::quiet_NaN()));
    EXPECT_FALSE(index.answers(200, 1e300, 1e10));
    EXPECT_TRUE(index.answers(200, 0.01, 0.1));
}

TEST(NozzleFlowIndex, AnswersNothingForANozzleWhoseFlowIsNotANormalNumber) {
    const std::vector<std::shared_ptr<Aspersor>> tiny{nozzle(Law{0.001, 0.5}), nozzle(Law{1e-310, 0.5})};
    EXPECT_FALSE(NozzleFlowIndex(tiny, pmin, pmax).covers(200));
    const std::vector<std::shared_ptr<Aspersor>> huge{nozzle(Law{1e306, 200})};
    EXPECT_FALSE(NozzleFlowIndex(huge, pmin, pmax).covers(200));
}

TEST(NozzleFlowIndex, AnswersNothingWithoutNozzlesOrWithoutARange) {
    EXPECT_FALSE(NozzleFlowIndex({}, pmin, pmax).covers(200));
    const std::vector<std::shared_ptr<Aspersor>> one{nozzle(Law{0.001, 0.5})};
    EXPECT_FALSE(NozzleFlowIndex(one, 300, 200).covers(250));
    EXPECT_FALSE(NozzleFlowIndex(one, 0, 200).covers(100));
    EXPECT_TRUE(NozzleFlowIndex(one, 200, 200).covers(200));
}

}  // namespace
