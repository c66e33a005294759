#include <gtest/gtest.h>

#include "caudalis/design/Uniformity.hpp"
#include "caudalis/evaluation/WaterDepths.hpp"

using namespace caudalis;
using namespace caudalis::design;

namespace {

BoundedArray<WaterDepthSample> samples(std::initializer_list<std::pair<double, double>> depthsAndDistances) {
    BoundedArray<WaterDepthSample> list;
    if (depthsAndDistances.size() > 0) {
        list.redim(1, static_cast<Long>(depthsAndDistances.size()));
    }
    Long i = 1;
    for (const auto& [depth, distance] : depthsAndDistances) {
        list(i++) = WaterDepths::shared()->newWaterDepthSample(depth, distance);
    }
    return list;
}

}  // namespace

TEST(Uniformity, MeanDepthIsWeightedByDistance) {
    // (10*1 + 20*2 + 30*3) / 6
    EXPECT_DOUBLE_EQ(*Uniformity::meanDepth(samples({{10, 1}, {20, 2}, {30, 3}})), 140.0 / 6);
}

TEST(Uniformity, HeermannHeinOfEvenDepthsIs100) {
    EXPECT_DOUBLE_EQ(*Uniformity::heermannHein(samples({{12, 10}, {12, 20}, {12, 30}, {12, 40}})), 100);
}

TEST(Uniformity, HeermannHeinByHand) {
    // Depths 10, 20 at distances 1, 3: mean = (10 + 60) / 4 = 17.5;
    // deviations 7.5 * 1 + 2.5 * 3 = 15; weighted depths 70; CU = 100 (1 - 15/70).
    EXPECT_DOUBLE_EQ(*Uniformity::heermannHein(samples({{10, 1}, {20, 3}})), 100 * (1 - 15.0 / 70));
}

TEST(Uniformity, LowQuarterByHand) {
    // Distances 10, 10, 10, 50 with depths 1, 2, 3, 4: the low quarter holds the first two
    // (weight 20 = 80 / 4), mean 1.5; the whole mean is (10 + 20 + 30 + 200) / 80 = 3.25.
    EXPECT_DOUBLE_EQ(*Uniformity::lowQuarter(samples({{1, 10}, {2, 10}, {3, 10}, {4, 50}})),
                     100 * 1.5 / 3.25);
    // Eight equal weights: the two driest form the quarter.
    EXPECT_DOUBLE_EQ(
        *Uniformity::lowQuarter(samples({{8, 1}, {1, 1}, {7, 1}, {2, 1}, {6, 1}, {3, 1}, {5, 1}, {4, 1}})),
        100 * 1.5 / 4.5);
}

TEST(Uniformity, UndefinedFiguresAreEmpty) {
    EXPECT_FALSE(Uniformity::meanDepth(samples({})));
    EXPECT_FALSE(Uniformity::heermannHein(samples({})));
    EXPECT_FALSE(Uniformity::lowQuarter(samples({})));
    // No water at all.
    EXPECT_FALSE(Uniformity::heermannHein(samples({{0, 5}, {0, 10}})));
    EXPECT_FALSE(Uniformity::lowQuarter(samples({{0, 5}, {0, 10}})));
    // The driest sample alone outweighs a quarter: no low quarter.
    EXPECT_FALSE(Uniformity::lowQuarter(samples({{1, 50}, {2, 10}, {3, 10}})));
}
