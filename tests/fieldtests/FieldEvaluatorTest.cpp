#include <gtest/gtest.h>

#include "CrewReadings.hpp"
#include "caudalis/fieldtests/FieldEvaluator.hpp"
#include "caudalis/fieldtests/FieldReadingsCsv.hpp"
#include "caudalis/fieldtests/ReadingsError.hpp"

using namespace caudalis;
using namespace caudalis::design;

namespace {

FieldReadings readingsOf(const std::string& csv) {
    return FieldReadingsCsv::read({"r.csv", csv}, std::nullopt);
}

using caudalis::testing::twoCrewLines;

}  // namespace

TEST(FieldEvaluator, ExclusionsAndEndGunZone) {
    FieldEvaluationSettings settings;
    settings.innerRadiusM = 5;
    settings.lastSpanEndM = 45;
    const auto result = FieldEvaluator::evaluate(readingsOf(twoCrewLines), settings);
    EXPECT_EQ(result.readings, 13);
    ASSERT_EQ(result.excluded.size(), 3u);
    EXPECT_EQ(result.excluded[0].reason, ExclusionReason::InsideRadius);
    EXPECT_EQ(result.excluded[0].reading.collector, "1");
    EXPECT_EQ(result.excluded[1].reason, ExclusionReason::CrewFlag);
    EXPECT_EQ(result.excluded[1].reading.crewExclusion, "tipped");
    EXPECT_EQ(result.excluded[2].reason, ExclusionReason::Invalid);

    ASSERT_EQ(result.lines.size(), 2u);
    EXPECT_EQ(result.lines[0].name, "a");
    EXPECT_NEAR(*result.lines[0].figures.cuHeermannHein, 100 * (1 - 160.0 / 1200), 1e-12);
    EXPECT_DOUBLE_EQ(*result.lines[1].figures.cuHeermannHein, 100);
    // Line b is ordered by distance before its moving average: all 12, CU 100.
    EXPECT_DOUBLE_EQ(*result.lines[1].figures.cuMovingAverage, 100);
    EXPECT_DOUBLE_EQ(result.counted[1].front().depth.distanceFromCenter, 10);
    EXPECT_DOUBLE_EQ(*result.lineAverage.schedulingCoefficient, 1.25);
    EXPECT_EQ(result.together.collectors, 8);
    EXPECT_NEAR(*result.together.cuHeermannHein, 100 * (1 - 160.0 / 2400), 1e-12);

    // End-gun zone: 20 at 50 m, 10 at 55 m; mean (1000 + 550) / 105.
    ASSERT_TRUE(result.endGunZone);
    EXPECT_EQ(result.endGunZone->collectors, 2);
    EXPECT_DOUBLE_EQ(*result.endGunZone->meanDepthMm, 1550.0 / 105);
}

TEST(FieldEvaluator, OutliersAndAppliedDepth) {
    FieldEvaluationSettings settings;
    settings.expectedDepthMm = 15;
    settings.outlierPercent = 20;
    const auto result =
        FieldEvaluator::evaluate(readingsOf("distance_m,depth_mm\n10,8\n20,10\n30,12\n40,14\n"), settings);
    // Mean 12: 8 is 33 % under; 14 is 16.7 % over and stays.
    ASSERT_EQ(result.outliers.size(), 1u);
    EXPECT_DOUBLE_EQ(result.outliers[0].reading.depth.depth, 8);
    EXPECT_NEAR(result.outliers[0].deviationPercent, -100.0 / 3, 1e-12);
    EXPECT_DOUBLE_EQ(*result.appliedPercentOfExpected, 80);
    EXPECT_FALSE(result.endGunZone);
    // A single line's average is its figures.
    EXPECT_DOUBLE_EQ(*result.lineAverage.cuHeermannHein, *result.together.cuHeermannHein);
}

TEST(FieldEvaluator, NothingCountingIsAnError) {
    FieldEvaluationSettings settings;
    settings.innerRadiusM = 100;
    try {
        FieldEvaluator::evaluate(readingsOf("distance_m,depth_mm\n10,8\n"), settings);
        FAIL();
    } catch (const ReadingsError& error) {
        EXPECT_EQ(
            std::string(error.what()),
            "r.csv: no reading counts (an amount >= 0 at a distance > 0, not struck out, beyond the inner "
            "radius and inside the last span)");
    }
}

TEST(FieldEvaluator, HoldsAtMostTheLargestNumberOfReadingsItCanStore) {
    std::string csv = "distance_m,depth_mm\n";
    for (long i = 1; i <= FieldEvaluator::maxReadings; ++i) {
        csv += std::to_string(i) + ",10\n";
    }
    EXPECT_EQ(FieldEvaluator::evaluate(readingsOf(csv), {}).readings, FieldEvaluator::maxReadings);
    csv += "40000,10\n";
    try {
        FieldEvaluator::evaluate(readingsOf(csv), {});
        FAIL();
    } catch (const ReadingsError& error) {
        EXPECT_EQ(std::string(error.what()),
                  "r.csv: 32768 readings, more than the 32767 an evaluation can hold");
    }
}
