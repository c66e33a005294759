#include "caudalis/evaluation/FieldSamples.hpp"

#include <gtest/gtest.h>

#include "ErrorMatchers.hpp"
#include "LocaleGuard.hpp"
#include "caudalis/core/Arrays.hpp"
#include "caudalis/core/Doubles.hpp"
#include "caudalis/core/Errors.hpp"
#include "caudalis/evaluation/Pluviometros.hpp"
#include "caudalis/evaluation/WaterDepths.hpp"

using namespace caudalis;

namespace {

constexpr auto incompleteGauge = errorNumber(PluviometroException::PluviometroIncompleteException);

const FieldSamples& readings() {
    return *FieldSamples::shared();
}

FieldSample reading(Double amount, Double distance) {
    return readings().newFieldSample(amount, distance);
}

BoundedArray<FieldSample> readingList(std::initializer_list<FieldSample> items) {
    return BoundedArray<FieldSample>::of(items);
}

Pluviometro gaugeOfDiameter(Double diameter) {
    return Pluviometros::shared()->newPluviometro(diameter);
}

void expectReading(const FieldSample& actual, Double amount, Double distance) {
    EXPECT_EQ(actual.collectedAmount, amount);
    EXPECT_EQ(actual.distanceFromCenter, distance);
}

}  // namespace

TEST(FieldSamplesTest, NewFieldSampleTakesTheAmountFirst) {
    expectReading(reading(125.5, 37), 125.5, 37);
    expectReading(reading(-1, -2), -1, -2);
}

TEST(FieldSamplesTest, AnAmountOfZeroIsValidADistanceOfZeroIsNot) {
    EXPECT_TRUE(readings().Valid(reading(0, 5)));
    EXPECT_TRUE(readings().Valid(reading(12.5, 0.01)));
    EXPECT_FALSE(readings().Valid(reading(3, 0)));
    EXPECT_FALSE(readings().Valid(reading(-0.1, 5)));
    EXPECT_FALSE(readings().Valid(reading(3, -5)));
    EXPECT_FALSE(readings().Valid(reading(Doubles::shared()->NaN(), 5)));
    EXPECT_FALSE(readings().Valid(reading(3, Doubles::shared()->NaN())));
}

TEST(FieldSamplesTest, SerializeWritesAmountSpaceDistance) {
    EXPECT_EQ(readings().serialize(reading(0.5, 120)), "0.5 120");
    EXPECT_EQ(readings().serialize(reading(125.5, 37)), "125.5 37");
    EXPECT_EQ(readings().serialize(reading(-3, 0)), "-3 0");
}

TEST(FieldSamplesTest, SerializeWritesAPointWhateverTheLocale) {
    caudalis::testing::DecimalSeparatorGuard comma(',');
    EXPECT_EQ(readings().serialize(reading(0.5, 120)), "0.5 120");
    EXPECT_EQ(readings().serialize(reading(1.25, 37.5)), "1.25 37.5");
}

TEST(FieldSamplesTest, SerializeUsesExponentsForExtremeMagnitudes) {
    EXPECT_EQ(readings().serialize(reading(1e20, 1e-5)), "1E+20 1E-05");
}

TEST(FieldSamplesTest, ParseIgnoresSurroundingSpaces) {
    expectReading(readings().Parse("  0.5 120  "), 0.5, 120);
    expectReading(readings().Parse("0.5 120"), 0.5, 120);
}

TEST(FieldSamplesTest, ParseOfASingleNumberGivesTheZeroReading) {
    const FieldSample parsed = readings().Parse("0.5");
    expectReading(parsed, 0, 0);
    EXPECT_FALSE(readings().Valid(parsed));
    expectReading(readings().Parse(""), 0, 0);
    expectReading(readings().Parse("   "), 0, 0);
}

TEST(FieldSamplesTest, TwoSpacesLeaveAnEmptyDistance) {
    expectReading(readings().Parse("0.5  120"), 0.5, 0);
}

TEST(FieldSamplesTest, ParseIgnoresEverythingAfterTheSecondNumber) {
    expectReading(readings().Parse("7 8 9"), 7, 8);
    expectReading(readings().Parse("7 8 9 10 and more"), 7, 8);
}

TEST(FieldSamplesTest, ParseReadsTheLeadingNumberOfEachPiece) {
    expectReading(readings().Parse("abc 12"), 0, 12);
    expectReading(readings().Parse("1.5e2ml 3m"), 150, 3);
    expectReading(readings().Parse("0,5 120"), 0, 120);
    expectReading(readings().Parse("-2 .5"), -2, 0.5);
}

TEST(FieldSamplesTest, OnlySpacesSeparateThePieces) {
    // A tab is not a separator: the whole text is one piece.
    expectReading(readings().Parse("0.5\t120"), 0, 0);
}

TEST(FieldSamplesTest, ParseReadsAPointWhateverTheLocale) {
    caudalis::testing::DecimalSeparatorGuard comma(',');
    expectReading(readings().Parse("0.5 120.25"), 0.5, 120.25);
    expectReading(readings().Parse("0,5 120"), 0, 120);
}

TEST(FieldSamplesTest, ParseReadsWhatSerializeWrites) {
    for (const FieldSample& original :
         {reading(125.5, 37), reading(0, 40), reading(0.1, 1e-7), reading(1e20, 3)}) {
        EXPECT_EQ(readings().Parse(readings().serialize(original)), original);
    }
}

TEST(FieldSamplesTest, FilterValidOfAnEmptyArrayIsEmpty) {
    const BoundedArray<FieldSample> valid = readings().FilterValid(BoundedArray<FieldSample>{});
    EXPECT_EQ(Arrays::shared()->Length(valid), 0);
    EXPECT_FALSE(valid.isAllocated());
}

TEST(FieldSamplesTest, FilterValidKeepsTheValidReadingsInOrder) {
    const auto valid =
        readings().FilterValid(readingList({reading(1, 10), reading(2, 0), reading(0, 20), reading(-1, 30)}));
    ASSERT_EQ(Arrays::shared()->Length(valid), 2);
    EXPECT_EQ(valid.lbound(), 1);
    expectReading(valid(1), 1, 10);
    expectReading(valid(2), 0, 20);
}

TEST(FieldSamplesTest, FilterValidWithoutValidReadingsIsEmpty) {
    const auto valid = readings().FilterValid(readingList({reading(2, 0), reading(-1, 30)}));
    EXPECT_EQ(Arrays::shared()->Length(valid), 0);
}

TEST(FieldSamplesTest, ToWaterDepthDividesByTheGaugeAreaAndCachesIt) {
    Pluviometro gauge = gaugeOfDiameter(0.1);
    const WaterDepthSample depth = readings().ToWaterDepth(reading(785.398, 12), gauge);
    EXPECT_NEAR(depth.depth, 100.0, 1e-4);
    EXPECT_EQ(depth.distanceFromCenter, 12);
    EXPECT_FALSE(depth.p_null);
    EXPECT_NEAR(gauge.p_area, 0.0078539816339744, 1e-16);
}

TEST(FieldSamplesTest, AnAmountOfZeroGivesAValidDepthOfZero) {
    Pluviometro gauge = gaugeOfDiameter(0.1);
    const WaterDepthSample depth = readings().ToWaterDepth(reading(0, 7), gauge);
    EXPECT_EQ(depth.depth, 0);
    EXPECT_EQ(depth.distanceFromCenter, 7);
    EXPECT_TRUE(WaterDepths::shared()->Valid(depth));
}

TEST(FieldSamplesTest, AnInvalidReadingGivesTheNullSampleWithoutLookingAtTheGauge) {
    Pluviometro gauge = gaugeOfDiameter(0);
    const WaterDepthSample depth = readings().ToWaterDepth(reading(10, 0), gauge);
    EXPECT_TRUE(depth.p_null);
    EXPECT_EQ(depth.depth, 0);
    EXPECT_EQ(depth.distanceFromCenter, 0);
    EXPECT_TRUE(Doubles::shared()->isNaN(gauge.p_area));
}

TEST(FieldSamplesTest, AValidReadingThroughAnInvalidGaugeRaises) {
    Pluviometro gauge = gaugeOfDiameter(-1);
    EXPECT_RAISES(readings().ToWaterDepth(reading(10, 5), gauge), incompleteGauge);
}

TEST(FieldSamplesTest, AnAreaOfZeroSetByHandIsAFloatingPointFault) {
    Pluviometro gauge{0.1, 0};
    EXPECT_RAISES(readings().ToWaterDepth(reading(10, 5), gauge), RuntimeError::DivisionByZero);
    EXPECT_RAISES(readings().ToWaterDepth(reading(0, 5), gauge), RuntimeError::Overflow);
}

TEST(FieldSamplesTest, CollectionToWaterDepthKeepsOnePlacePerReading) {
    Pluviometro gauge = gaugeOfDiameter(0.1);
    const auto depths = readings().CollectionToWaterDepth(
        readingList({reading(785.398, 10), reading(5, 0), reading(0, 30)}), gauge);
    ASSERT_EQ(Arrays::shared()->Length(depths), 3);
    EXPECT_NEAR(depths(1).depth, 100.0, 1e-4);
    EXPECT_EQ(depths(1).distanceFromCenter, 10);
    EXPECT_TRUE(depths(2).p_null);
    EXPECT_FALSE(depths(3).p_null);
    EXPECT_EQ(depths(3).depth, 0);
    EXPECT_EQ(depths(3).distanceFromCenter, 30);
    EXPECT_FALSE(Doubles::shared()->isNaN(gauge.p_area));
}

TEST(FieldSamplesTest, CollectionToWaterDepthOfAnEmptyArrayIsEmpty) {
    Pluviometro gauge = gaugeOfDiameter(0.1);
    EXPECT_EQ(Arrays::shared()->Length(readings().CollectionToWaterDepth(BoundedArray<FieldSample>{}, gauge)),
              0);
    EXPECT_TRUE(Doubles::shared()->isNaN(gauge.p_area));
}

TEST(FieldSamplesTest, AnInvalidGaugeRaisesOnlyWhenAReadingIsValid) {
    Pluviometro gauge = gaugeOfDiameter(0);
    const auto depths =
        readings().CollectionToWaterDepth(readingList({reading(1, 0), reading(-1, 5)}), gauge);
    EXPECT_EQ(Arrays::shared()->Length(depths), 2);
    EXPECT_RAISES(readings().CollectionToWaterDepth(readingList({reading(1, 0), reading(1, 5)}), gauge),
                  incompleteGauge);
}

TEST(FieldSamplesTest, CaughtDepthsFeedTheLowQuarter) {
    Pluviometro gauge = gaugeOfDiameter(0.1);
    const auto depths = readings().CollectionToWaterDepth(
        readingList({reading(40, 10), reading(10, 10), reading(30, 10), reading(20, 10)}), gauge);
    const auto lowQuarter = WaterDepths::shared()->LowQuarter(depths);
    ASSERT_EQ(Arrays::shared()->Length(lowQuarter), 1);
    EXPECT_EQ(lowQuarter(1).depth, depths(2).depth);
}
