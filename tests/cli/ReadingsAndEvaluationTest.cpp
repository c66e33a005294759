#include <gtest/gtest.h>

#include <cmath>

#include "CliErrors.hpp"
#include "FieldEvaluation.hpp"
#include "ReadingsFile.hpp"
#include "caudalis/core/Constants.hpp"

using namespace caudalis;
using namespace caudalis::cli;

namespace {

std::string messageOf(const std::string& text) {
    try {
        ReadingsFile::parse(text, "r.txt");
    } catch (const InputError& error) {
        return error.what();
    }
    return "";
}

ReadingPasses passesOf(const std::string& text) {
    const auto groups = ReadingsFile::parse(text, "r.txt");
    ReadingPasses passes;
    passes.first = groups.at(0);
    if (groups.size() > 1) {
        passes.second = groups[1];
    }
    return passes;
}

/// Readings of `amount` ml at distances 10, 20, ... in a gauge of 0.1 m.
double depthOf(double amountMl) {
    return amountMl / (0.05 * 0.05 * 3.14159265358979 * 1000);
}

}  // namespace

TEST(ReadingsFile, GroupsAreSeparatedByBlankLines) {
    const auto groups = ReadingsFile::parse("# field 7\n125.5 37\r\n  0 40  \n\n\n1e2 50\n\n", "r.txt");
    ASSERT_EQ(groups.size(), 2u);
    ASSERT_EQ(groups[0].size(), 2u);
    EXPECT_DOUBLE_EQ(groups[0][0].sample.collectedAmount, 125.5);
    EXPECT_DOUBLE_EQ(groups[0][0].sample.distanceFromCenter, 37);
    EXPECT_EQ(groups[0][1].line, 3);
    EXPECT_EQ(groups[0][1].file, "r.txt");
    EXPECT_DOUBLE_EQ(groups[1][0].sample.collectedAmount, 100);
    EXPECT_EQ(groups[1][0].line, 6);
}

TEST(ReadingsFile, EachLineIsTwoNumbersSeparatedByOneSpace) {
    EXPECT_EQ(
        messageOf("10 5\n10  6\n"),
        "r.txt line 2: \"10  6\" is not a reading (amount, one space, distance; \".\" as decimal point)");
    EXPECT_NE(messageOf("10\n").find("line 1: \"10\" is not a reading"), std::string::npos);
    EXPECT_NE(messageOf("10 5 6\n").find("line 1"), std::string::npos);
    EXPECT_NE(messageOf("10,5 6\n").find("line 1"), std::string::npos);
    EXPECT_NE(messageOf("ten 6\n").find("line 1"), std::string::npos);
    EXPECT_NE(messageOf("nan 6\n").find("line 1"), std::string::npos);
    EXPECT_EQ(messageOf("-1 0\n"), "");
}

TEST(FieldEvaluation, FiguresOfEvenReadingsAreComplete) {
    const auto figures = FieldEvaluation::evaluate(passesOf("100 10\n100 20\n100 30\n100 40\n"), 0.1, "even");
    EXPECT_NEAR(figures.meanDepthMm, depthOf(100), 1e-9);
    EXPECT_NEAR(*figures.lowQuarterMeanMm, depthOf(100), 1e-9);
    EXPECT_DOUBLE_EQ(*figures.uniformityCoefficient, 100);
    EXPECT_DOUBLE_EQ(*figures.lowQuarterUniformity, 100);
    EXPECT_TRUE(figures.flagged.empty());
    EXPECT_FALSE(figures.secondPassMeanMm);
    EXPECT_NEAR(figures.gaugeAreaM2, 0.0078539816339744, 1e-15);
}

TEST(FieldEvaluation, WeightsByDistanceAndFlagsOutliers) {
    // Depths d, 2d at 10 m and 30 m in two passes: mean (10 d + 60 d) / 40 = 1.75 d.
    const auto figures = FieldEvaluation::evaluate(passesOf("100 10\n\n200 30\n"), 0.1, "two");
    const double d = depthOf(100);
    EXPECT_NEAR(figures.meanDepthMm, 1.75 * d, 1e-9);
    EXPECT_NEAR(*figures.firstPassMeanMm, d, 1e-9);
    EXPECT_NEAR(*figures.secondPassMeanMm, 2 * d, 1e-9);
    // CU = 100 (1 - (0.75 d 10 + 0.25 d 30) / (70 d)).
    EXPECT_NEAR(*figures.uniformityCoefficient, 100 * (1 - 15.0 / 70), 1e-9);
    // The driest weighs 10 of 40: exactly a quarter, so it is the low quarter.
    EXPECT_NEAR(*figures.lowQuarterMeanMm, d, 1e-9);
    EXPECT_NEAR(*figures.lowQuarterUniformity, 100 / 1.75, 1e-9);
    ASSERT_EQ(figures.flagged.size(), 1u);
    EXPECT_EQ(figures.flagged[0].pass, 1);
    EXPECT_NEAR(figures.flagged[0].deviationPercent, (1 - 1.75) / 1.75 * 100, 1e-9);
}

TEST(FieldEvaluation, LowQuarterNeedsEnoughReadings) {
    // The driest weighs 30 of 40, more than a quarter.
    const auto figures = FieldEvaluation::evaluate(passesOf("100 30\n200 10\n"), 0.1, "few");
    EXPECT_FALSE(figures.lowQuarterMeanMm);
    EXPECT_FALSE(figures.lowQuarterUniformity);
    EXPECT_TRUE(figures.uniformityCoefficient);
}

TEST(FieldEvaluation, InvalidReadingsAreLeftOutButStored) {
    const auto passes = passesOf("100 10\n-1 20\n100 0\n100 30\n\n0 40\n");
    const auto figures = FieldEvaluation::evaluate(passes, 0.1, "mixed");
    EXPECT_EQ(figures.readings, 5);
    ASSERT_EQ(figures.rejected.size(), 2u);
    EXPECT_EQ(figures.rejected[0].line, 2);
    EXPECT_EQ(figures.rejected[1].line, 3);
    EXPECT_NEAR(*figures.firstPassMeanMm, depthOf(100), 1e-9);
    EXPECT_DOUBLE_EQ(*figures.secondPassMeanMm, 0);
    // A reading of 0 ml is valid: it counts in the mean.
    EXPECT_NEAR(figures.meanDepthMm, depthOf(100) * 40 / 80, 1e-9);

    const auto record = FieldEvaluation::record(passes, 0.1, "mixed");
    EXPECT_EQ(record.name, "mixed");
    EXPECT_EQ(record.id, 0);
    EXPECT_DOUBLE_EQ(record.pluviometer.diameter, 0.1);
    EXPECT_EQ(record.firstSample.count(), 4);
    EXPECT_EQ(record.secondSample.count(), 1);
}

TEST(FieldEvaluation, NoValidReadingIsAnError) {
    EXPECT_THROW(FieldEvaluation::evaluate(passesOf("-1 10\n5 0\n"), 0.1, "none"), InputError);
}
