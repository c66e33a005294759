#include "caudalis/evaluation/WaterDepths.hpp"

#include <gtest/gtest.h>

#include <limits>

#include "ErrorMatchers.hpp"
#include "caudalis/core/Arrays.hpp"
#include "caudalis/core/Doubles.hpp"
#include "caudalis/core/Errors.hpp"

using namespace caudalis;

namespace {

constexpr auto notEnoughSamples = errorNumber(WaterDepthSampleException::NotEnoughSamplesToComputeLowQuarter);

WaterDepthSample sample(Double depth, Double distance) {
    return WaterDepths::shared()->newWaterDepthSample(depth, distance);
}

BoundedArray<WaterDepthSample> samples(std::initializer_list<WaterDepthSample> items) {
    return BoundedArray<WaterDepthSample>::of(items);
}

BoundedArray<WaterDepthSample> equalDistanceSamples(std::initializer_list<Double> depths) {
    BoundedArray<WaterDepthSample> list;
    for (const Double depth : depths) {
        Arrays::shared()->Push(list, sample(depth, 10));
    }
    return list;
}

}  // namespace

TEST(WaterDepths, SharedInstanceIsOneObject) {
    EXPECT_EQ(WaterDepths::shared(), WaterDepths::shared());
}

TEST(WaterDepths, NewSampleKeepsTheValuesAndIsNotNull) {
    const auto made = sample(-3, 0);
    EXPECT_EQ(made.depth, -3);
    EXPECT_EQ(made.distanceFromCenter, 0);
    EXPECT_FALSE(made.p_null);
}

TEST(WaterDepths, NullSampleIsZeroAndNull) {
    const auto null = WaterDepths::shared()->NullWaterDepth();
    EXPECT_EQ(null.depth, 0);
    EXPECT_EQ(null.distanceFromCenter, 0);
    EXPECT_TRUE(null.p_null);
}

TEST(WaterDepths, ValidAcceptsZeroDepthButNotZeroDistance) {
    const auto depths = WaterDepths::shared();
    EXPECT_TRUE(depths->Valid(sample(0, 5)));
    EXPECT_FALSE(depths->Valid(sample(3, 0)));
    EXPECT_FALSE(depths->Valid(depths->NullWaterDepth()));
    EXPECT_FALSE(depths->Valid(sample(-0.1, 5)));
}

TEST(WaterDepths, ValidRejectsNaNInEitherField) {
    const auto depths = WaterDepths::shared();
    const double nan = Doubles::shared()->NaN();
    EXPECT_FALSE(depths->Valid(sample(nan, 5)));
    EXPECT_FALSE(depths->Valid(sample(1, nan)));
}

TEST(WaterDepths, ValidRejectsANullFlagWhateverTheValues) {
    auto flagged = sample(4, 7);
    flagged.p_null = true;
    EXPECT_FALSE(WaterDepths::shared()->Valid(flagged));
}

TEST(WaterDepths, PonderatedDepthIsDistanceTimesDepth) {
    EXPECT_EQ(WaterDepths::shared()->PonderatedDepths(sample(2, 3)), 6);
}

TEST(WaterDepths, PonderatedDeviationIsAbsoluteDifferenceTimesDistance) {
    const auto depths = WaterDepths::shared();
    EXPECT_EQ(depths->PonderatedDeviation(sample(2, 3), 5), 9);
    EXPECT_EQ(depths->PonderatedDeviation(sample(8, 3), 5), 9);
}

TEST(WaterDepths, WeightedFiguresDoNotCheckValidity) {
    const auto depths = WaterDepths::shared();
    auto null = depths->NullWaterDepth();
    null.depth = 4;
    null.distanceFromCenter = 2;
    EXPECT_EQ(depths->PonderatedDepths(null), 8);
    EXPECT_EQ(depths->PonderatedDeviation(null, 1), 6);
}

TEST(WaterDepths, AverageWithoutLimitWeighsByDistance) {
    const auto list = samples({sample(10, 1), sample(20, 2), sample(30, 3)});
    EXPECT_DOUBLE_EQ(WaterDepths::shared()->Average(list), 140.0 / 6.0);
}

TEST(WaterDepths, AverageWritesTheLimitUsedBack) {
    const auto list = samples({sample(10, 1), sample(20, 2), sample(30, 3)});
    Long limit = 2147483647;
    EXPECT_DOUBLE_EQ(WaterDepths::shared()->Average(list, limit), 140.0 / 6.0);
    EXPECT_EQ(limit, 3);
}

TEST(WaterDepths, AverageOfTheFirstSamplesOnly) {
    const auto list = samples({sample(10, 1), sample(20, 2), sample(30, 3)});
    Long limit = 2;
    EXPECT_DOUBLE_EQ(WaterDepths::shared()->Average(list, limit), 50.0 / 3.0);
    EXPECT_EQ(limit, 2);
}

TEST(WaterDepths, AverageOfAnEmptyListIsZeroOverZero) {
    EXPECT_RAISES(WaterDepths::shared()->Average(BoundedArray<WaterDepthSample>{}), RuntimeError::Overflow);
}

TEST(WaterDepths, AverageWithANonPositiveLimitFailsAndKeepsTheLimit) {
    const auto list = samples({sample(10, 1)});
    Long zero = 0;
    EXPECT_RAISES(WaterDepths::shared()->Average(list, zero), RuntimeError::Overflow);
    Long negative = -5;
    EXPECT_RAISES(WaterDepths::shared()->Average(list, negative), RuntimeError::Overflow);
    EXPECT_EQ(negative, -5);
}

TEST(WaterDepths, AverageWithZeroWeightSumDividesByZero) {
    const auto list = samples({sample(10, 1), sample(20, -1)});
    EXPECT_RAISES(WaterDepths::shared()->Average(list), RuntimeError::DivisionByZero);
}

TEST(WaterDepths, AverageDoesNotSkipNullSamples) {
    const auto depths = WaterDepths::shared();
    const auto list = samples({sample(10, 1), depths->NullWaterDepth(), sample(30, 1)});
    EXPECT_EQ(depths->Average(list), 20);
}

TEST(WaterDepths, LowQuarterOfFourEqualWeightsIsTheDriestSample) {
    const auto quarter = WaterDepths::shared()->LowQuarter(equalDistanceSamples({7, 3, 9, 5}));
    ASSERT_EQ(Arrays::shared()->Length(quarter), 1);
    EXPECT_EQ(quarter.lbound(), 1);
    EXPECT_EQ(quarter(1).depth, 3);
}

TEST(WaterDepths, LowQuarterOfEightEqualWeightsIsTheTwoDriest) {
    const auto quarter = WaterDepths::shared()->LowQuarter(equalDistanceSamples({8, 2, 6, 4, 7, 1, 5, 3}));
    ASSERT_EQ(Arrays::shared()->Length(quarter), 2);
    EXPECT_EQ(quarter(1).depth, 1);
    EXPECT_EQ(quarter(2).depth, 2);
}

TEST(WaterDepths, LowQuarterTakesASampleThatReachesExactlyAQuarter) {
    const auto list = samples({sample(1, 10), sample(2, 10), sample(3, 10), sample(4, 50)});
    const auto quarter = WaterDepths::shared()->LowQuarter(list);
    ASSERT_EQ(Arrays::shared()->Length(quarter), 2);
    EXPECT_EQ(quarter(1), sample(1, 10));
    EXPECT_EQ(quarter(2), sample(2, 10));
}

TEST(WaterDepths, LowQuarterLeavesTheCallersListAlone) {
    const auto list = equalDistanceSamples({7, 3, 9, 5});
    const auto before = list;
    (void)WaterDepths::shared()->LowQuarter(list);
    EXPECT_EQ(list, before);
}

TEST(WaterDepths, LowQuarterOfAnEmptyListRaisesNotEnoughSamples) {
    EXPECT_RAISES(WaterDepths::shared()->LowQuarter(BoundedArray<WaterDepthSample>{}), notEnoughSamples);
}

TEST(WaterDepths, LowQuarterRaisesWhenTheDriestSampleOutweighsAQuarter) {
    const auto list = samples({sample(1, 10), sample(2, 1), sample(3, 1)});
    EXPECT_RAISES(WaterDepths::shared()->LowQuarter(list), notEnoughSamples);
    EXPECT_EQ(notEnoughSamples, -2147220403);
}

TEST(WaterDepths, LowQuarterRunsPastTheEndWhenEverySampleFits) {
    const auto list = samples({sample(1, 0), sample(2, 0)});
    EXPECT_RAISES(WaterDepths::shared()->LowQuarter(list), RuntimeError::SubscriptOutOfRange);
}

TEST(WaterDepths, SortByDepthPutsEqualDepthsNearerTheCentreFirst) {
    const auto list = samples({sample(5, 30), sample(2, 10), sample(5, 20), sample(1, 40)});
    const auto sorted = WaterDepths::shared()->Sort(list, compareWhat::depth);
    const auto expected = samples({sample(1, 40), sample(2, 10), sample(5, 20), sample(5, 30)});
    EXPECT_EQ(sorted, expected);
    EXPECT_EQ(list(1), sample(5, 30));
}

TEST(WaterDepths, SortByDistanceIgnoresDepth) {
    const auto list = samples({sample(1, 30), sample(9, 10), sample(5, 20)});
    const auto sorted = WaterDepths::shared()->Sort(list, compareWhat::distance);
    EXPECT_EQ(sorted, samples({sample(9, 10), sample(5, 20), sample(1, 30)}));
}

TEST(WaterDepths, SortOfAnEmptyListIsEmpty) {
    const auto sorted = WaterDepths::shared()->Sort(BoundedArray<WaterDepthSample>{}, compareWhat::depth);
    EXPECT_FALSE(sorted.isAllocated());
}
