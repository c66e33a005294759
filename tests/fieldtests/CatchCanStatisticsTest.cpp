#include <gtest/gtest.h>

#include "caudalis/design/Uniformity.hpp"
#include "caudalis/fieldtests/CatchCanStatistics.hpp"

using namespace caudalis;
using namespace caudalis::design;

namespace {

std::vector<WaterDepthSample> line(std::initializer_list<std::pair<double, double>> depthsAndDistances) {
    std::vector<WaterDepthSample> samples;
    for (const auto& [depth, distance] : depthsAndDistances) {
        samples.push_back(WaterDepthSample{depth, distance, false});
    }
    return samples;
}

// Depths 8, 10, 12, 14 mm at 10, 20, 30, 40 m (weights sum to 100).
const auto rising = line({{8, 10}, {10, 20}, {12, 30}, {14, 40}});
const auto even = line({{12, 10}, {12, 20}, {12, 30}, {12, 40}});

}  // namespace

TEST(CatchCanStatistics, FiguresOfOneLineByHand) {
    const auto figures = CatchCanStatistics::of({rising});
    EXPECT_EQ(figures.collectors, 4);
    // m = (80 + 200 + 360 + 560) / 100 = 12.
    EXPECT_DOUBLE_EQ(*figures.meanDepthMm, 12);
    // Deviations 4*10 + 2*20 + 0*30 + 2*40 = 160 over sum d r = 1200.
    EXPECT_DOUBLE_EQ(*figures.cuHeermannHein, 100 * (1 - 160.0 / 1200));
    // A quarter of the weight is 25: only the driest (8 mm at 10 m) fits.
    EXPECT_DOUBLE_EQ(*figures.lowQuarterMeanMm, 8);
    EXPECT_DOUBLE_EQ(*figures.duLowQuarter, 100 * 8.0 / 12);
    // Every collector weighs more than 5 % (and 1 %) of the line: the driest run is the 8 mm one.
    EXPECT_DOUBLE_EQ(*figures.schedulingCoefficient, 1.5);
    EXPECT_DOUBLE_EQ(*figures.schedulingCoefficient1Percent, 1.5);
    EXPECT_DOUBLE_EQ(*figures.meanOverLowQuarterMean, 1.5);
    // Moving average 9, 10, 12, 13: mean (90 + 200 + 360 + 520) / 100 = 11.7; deviations
    // 2.7*10 + 1.7*20 + 0.3*30 + 1.3*40 = 122 over 1170.
    EXPECT_NEAR(*figures.cuMovingAverage, 100 * (1 - 122.0 / 1170), 1e-12);
}

TEST(CatchCanStatistics, MovingAverageTakesTwoAtTheEnds) {
    const auto smoothed = CatchCanStatistics::movingAverage(rising);
    ASSERT_EQ(smoothed.size(), 4u);
    EXPECT_DOUBLE_EQ(smoothed[0].depth, 9);
    EXPECT_DOUBLE_EQ(smoothed[1].depth, 10);
    EXPECT_DOUBLE_EQ(smoothed[2].depth, 12);
    EXPECT_DOUBLE_EQ(smoothed[3].depth, 13);
    EXPECT_DOUBLE_EQ(smoothed[3].distanceFromCenter, 40);
    EXPECT_TRUE(CatchCanStatistics::movingAverage({}).empty());
}

TEST(CatchCanStatistics, TwoLinesTogetherAndTheirAverage) {
    const auto together = CatchCanStatistics::of({rising, even});
    EXPECT_EQ(together.collectors, 8);
    EXPECT_DOUBLE_EQ(*together.meanDepthMm, 12);
    // Deviations 160 + 0 over 2400.
    EXPECT_NEAR(*together.cuHeermannHein, 100 * (1 - 160.0 / 2400), 1e-12);
    // A quarter of 200 is 50: 8 at 10, 10 at 20, 12 at 10 (weight 40); mean 400 / 40 = 10.
    EXPECT_DOUBLE_EQ(*together.lowQuarterMeanMm, 10);
    EXPECT_NEAR(*together.meanOverLowQuarterMean, 1.2, 1e-12);
    // The driest contiguous patch is the 8 mm collector of the rising line.
    EXPECT_DOUBLE_EQ(*together.schedulingCoefficient, 1.5);

    const auto average =
        CatchCanStatistics::averageOf({CatchCanStatistics::of({rising}), CatchCanStatistics::of({even})});
    EXPECT_EQ(average.collectors, 8);
    EXPECT_NEAR(*average.cuHeermannHein, (100 * (1 - 160.0 / 1200) + 100) / 2, 1e-12);
    EXPECT_NEAR(*average.duLowQuarter, (100 * 8.0 / 12 + 100) / 2, 1e-12);
    EXPECT_DOUBLE_EQ(*average.schedulingCoefficient, 1.25);
}

TEST(CatchCanStatistics, UndefinedFiguresAreEmpty) {
    const auto none = CatchCanStatistics::of({});
    EXPECT_EQ(none.collectors, 0);
    EXPECT_FALSE(none.meanDepthMm);
    EXPECT_FALSE(none.cuHeermannHein);
    const auto dry = CatchCanStatistics::of({line({{0, 5}, {0, 10}})});
    EXPECT_DOUBLE_EQ(*dry.meanDepthMm, 0);
    EXPECT_FALSE(dry.cuHeermannHein);
    EXPECT_FALSE(dry.schedulingCoefficient);
    EXPECT_FALSE(dry.schedulingCoefficient1Percent);
    // The driest collector alone outweighs a quarter: no low quarter, no DU, no mean over it;
    // the scheduling coefficient's driest patch is that collector: 100 / 70 over 1.
    const auto few = CatchCanStatistics::of({line({{1, 50}, {2, 10}, {3, 10}})});
    EXPECT_FALSE(few.lowQuarterMeanMm);
    EXPECT_FALSE(few.duLowQuarter);
    EXPECT_FALSE(few.meanOverLowQuarterMean);
    EXPECT_DOUBLE_EQ(*few.schedulingCoefficient, 100.0 / 70);
    EXPECT_TRUE(few.cuHeermannHein);
    // A figure missing in one set is missing in the average.
    EXPECT_FALSE(CatchCanStatistics::averageOf({few, CatchCanStatistics::of({even})}).duLowQuarter);
    EXPECT_FALSE(CatchCanStatistics::averageOf({}).meanDepthMm);
}

TEST(CatchCanStatistics, SchedulingCoefficientTakesTheDriestContiguousPatch) {
    // Five collectors of equal weight (10 each, 50 in all), mean 25 / 5 = 5 mm. The driest
    // quarter is the single 2 mm collector, so mean / low-quarter mean is 2.5; but the two dry
    // collectors do not touch, and no patch of 40 % of the area is that dry: the driest run of
    // two neighbours (weight 20) is 6 and 2, mean 4, so SC_40% = 5 / 4.
    const auto spotted = line({{6, 10}, {2, 10}, {9, 10}, {2, 10}, {6, 10}});
    EXPECT_DOUBLE_EQ(*CatchCanStatistics::driestRunMean(spotted, 0.4), 4);
    EXPECT_DOUBLE_EQ(*CatchCanStatistics::schedulingCoefficient({spotted}, 0.4), 1.25);
    EXPECT_DOUBLE_EQ(*CatchCanStatistics::meanOverLowQuarterMean(Uniformity::samples(spotted)), 2.5);
    // A share of 20 % is one collector: the driest one.
    EXPECT_DOUBLE_EQ(*CatchCanStatistics::schedulingCoefficient({spotted}, 0.2), 2.5);
    // The whole line is the only run of 100 %.
    EXPECT_DOUBLE_EQ(*CatchCanStatistics::schedulingCoefficient({spotted}, 1.0), 1);
    // A line without weight has no run at all.
    EXPECT_FALSE(CatchCanStatistics::driestRunMean(line({{3, 0}}), 0.05));
}
