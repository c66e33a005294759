#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <stdexcept>

#include "caudalis/design/ApplicationProfile.hpp"
#include "caudalis/design/Uniformity.hpp"

using namespace caudalis;
using namespace caudalis::design;

namespace {

// 1 l/s at 100 m over a 10 h revolution: V = 36 000 l on a band of pattern-weighted area
// 2 pi 100 x pi 5 / 2 = 500 pi^2 = 4934.80 m2, so d0 = 7.29513 mm.
const double centrePeak = 36000 / (500 * std::numbers::pi * std::numbers::pi);

}  // namespace

TEST(ApplicationProfile, PatternIsAHalfEllipse) {
    EXPECT_DOUBLE_EQ(ApplicationProfile::patternShape(0, 5), 1);
    EXPECT_DOUBLE_EQ(ApplicationProfile::patternShape(3, 5), 0.8);
    EXPECT_DOUBLE_EQ(ApplicationProfile::patternShape(-4, 5), 0.6);
    EXPECT_EQ(ApplicationProfile::patternShape(5, 5), 0);
    EXPECT_EQ(ApplicationProfile::patternShape(-7, 5), 0);
}

TEST(ApplicationProfile, OneSprinklerByHand) {
    const ApplicationProfile profile({{100, 1, 5}}, 10);
    EXPECT_NEAR(centrePeak, 7.29513, 1e-5);
    EXPECT_DOUBLE_EQ(profile.depthAt(100), centrePeak);
    EXPECT_DOUBLE_EQ(profile.depthAt(103), 0.8 * centrePeak);
    EXPECT_DOUBLE_EQ(profile.depthAt(96), 0.6 * centrePeak);
    EXPECT_EQ(profile.depthAt(105), 0);
    EXPECT_EQ(profile.depthAt(94), 0);
}

TEST(ApplicationProfile, KeepsTheVolumeOfARevolution) {
    // Summed over rings 2 pi r dr, the depth gives back q x 3600 x T = 36 000 l.
    const ApplicationProfile profile({{100, 1, 5}}, 10);
    double litres = 0;
    const double step = 0.001;
    for (double r = 95 + step / 2; r < 105; r += step) {
        litres += profile.depthAt(r) * 2 * std::numbers::pi * r * step;
    }
    EXPECT_NEAR(litres, 36000, 1);
}

TEST(ApplicationProfile, OverlappingPatternsAddUp) {
    // Sprinklers at 100 m and 104 m, both reaching 102 m at offset 2 m of 5 m: sqrt(1 - 0.16).
    const ApplicationProfile profile({{100, 1, 5}, {104, 1, 5}}, 10);
    const double peak104 = 36000 / (2 * std::numbers::pi * 104 * std::numbers::pi * 2.5);
    EXPECT_NEAR(profile.depthAt(102), (centrePeak + peak104) * std::sqrt(0.84), 1e-12);
    EXPECT_DOUBLE_EQ(profile.depthAt(95.5), centrePeak * std::sqrt(1 - 4.5 * 4.5 / 25));
}

TEST(ApplicationProfile, SamplesEveryStepAsWaterDepths) {
    const ApplicationProfile profile({{100, 1, 5}}, 10);
    const auto points = profile.along(96, 104, 2);
    ASSERT_EQ(points.size(), 5U);
    EXPECT_EQ(points.back().first, 104);
    EXPECT_DOUBLE_EQ(points[2].second, centrePeak);
    const auto samples = profile.samples(96, 104, 2);
    ASSERT_EQ(samples.count(), 5);
    EXPECT_EQ(samples(1).distanceFromCenter, 96);
    EXPECT_DOUBLE_EQ(samples(3).depth, centrePeak);
    EXPECT_FALSE(samples(3).p_null);
    EXPECT_EQ(profile.samples(10, 5, 1).count(), 0);
}

TEST(ApplicationProfile, RefusesWhatItCannotDraw) {
    EXPECT_THROW(ApplicationProfile({{100, 1, 5}}, 0), std::invalid_argument);
    EXPECT_THROW(ApplicationProfile({{100, 1, 0}}, 10), std::invalid_argument);
    EXPECT_THROW(ApplicationProfile({{0, 1, 5}}, 10), std::invalid_argument);
    EXPECT_THROW(ApplicationProfile({{100, 1, 5}}, 10).along(0, 10, 0), std::invalid_argument);
}

TEST(ApplicationProfile, SamplesOfALongMachineStayWithinWhatTheStatisticsCount) {
    // 40 km every 0.5 m would be 80 001 points; the step widens so that the uniformity figures
    // can still be computed.
    const ApplicationProfile profile({{100, 1, 5}, {20000, 1, 5}, {39990, 1, 5}}, 10);
    const auto samples = profile.samples(0, 40000, 0.5);
    EXPECT_LE(samples.count(), ApplicationProfile::maxSamples);
    EXPECT_GT(samples.count(), ApplicationProfile::maxSamples - 3);
    EXPECT_EQ(samples(1).distanceFromCenter, 0);
    EXPECT_NEAR(samples(samples.count()).distanceFromCenter, 40000, 2);
    // Three sprinklers over 40 km water almost nothing: the formula falls below 0, but it runs.
    EXPECT_TRUE(Uniformity::heermannHeinFormula(samples).has_value());
    EXPECT_EQ(profile.samples(96, 104, 2).count(), 5);
}
