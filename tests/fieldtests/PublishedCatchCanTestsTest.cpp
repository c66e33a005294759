#include <gtest/gtest.h>

#include <cmath>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "caudalis/design/TextFile.hpp"
#include "caudalis/fieldtests/FieldEvaluator.hpp"
#include "caudalis/fieldtests/FieldReadingsCsv.hpp"
#include "caudalis/fieldtests/ReadingsError.hpp"

using namespace caudalis;
using namespace caudalis::design;

// Fourteen published centre-pivot catch-can tests, two radial lines of 157 collectors of 80 mm:
// Brito Oliveira, Federal University of Vicosa (2025), data of the paper on emitter clogging in
// centre pivots, DOI 10.5281/zenodo.18495332 (file UNIFORMITY_TESTS_WITHOUT_EVP_CORRECTION.xlsx
// of the repository britooliveira/Center_Pivot_Cloggins_Paper), converted to CSV with its values
// unchanged. Its header lists each test's published Heermann-Hein CU per line and their mean.

namespace {

const std::string sheetPath =
    std::string(CAUDALIS_SOURCE_DIR) + "/tests/data/field/pivot-catch-cans-vicosa-2025.csv";

struct Published {
    std::string test;
    double cuA = 0;
    double cuB = 0;
    double mean = 0;
};

const ReadingsText& sheet() {
    static const ReadingsText text{sheetPath, readTextFile(sheetPath, "readings file")};
    return text;
}

/// The published figures, from the sheet's header ("# published QT 2: CU_A=... CU_B=... mean=...").
std::vector<Published> published() {
    std::vector<Published> found;
    const std::regex line(R"(# published (\S+) (\S+): CU_A=([0-9.]+) CU_B=([0-9.]+) mean=([0-9.]+))");
    std::istringstream text(sheet().text);
    std::string row;
    while (std::getline(text, row)) {
        std::smatch match;
        if (std::regex_search(row, match, line)) {
            found.push_back({match[1].str() + "_" + match[2].str(), std::stod(match[3].str()),
                             std::stod(match[4].str()), std::stod(match[5].str())});
        }
    }
    return found;
}

/// The 80 mm collectors' opening, as a crew gives it.
constexpr double gaugeDiameterM = 0.08;

/// The source gives six decimals; the figures must agree to the fourth.
constexpr double fourDecimals = 0.5e-4;

}  // namespace

TEST(PublishedCatchCanTests, EveryPublishedCuIsReproducedToFourDecimals) {
    const auto tests = published();
    ASSERT_EQ(tests.size(), 14u);
    for (const auto& test : tests) {
        SCOPED_TRACE(test.test);
        const auto readings = FieldReadingsCsv::readTest(sheet(), gaugeDiameterM, test.test);
        ASSERT_EQ(readings.readings.size(), 314u);
        const auto result = FieldEvaluator::evaluate(readings, FieldEvaluationSettings{});
        ASSERT_EQ(result.lines.size(), 2u);
        EXPECT_EQ(result.lines[0].name, "A");
        EXPECT_EQ(result.lines[1].name, "B");
        EXPECT_EQ(result.lines[0].figures.collectors, 157);
        EXPECT_NEAR(*result.lines[0].figures.cuHeermannHein, test.cuA, fourDecimals);
        EXPECT_NEAR(*result.lines[1].figures.cuHeermannHein, test.cuB, fourDecimals);
        // The published mean is the mean of the two lines' CUs, not the CU of both pooled.
        EXPECT_NEAR(*result.lineAverage.cuHeermannHein, test.mean, fourDecimals);
    }
}

TEST(PublishedCatchCanTests, TheCrewsOwnDepthsGiveTheSameFiguresWithoutTheOpening) {
    // Without the collectors' opening the sheet's depth_mm column (rounded to 6 decimals) is read.
    const auto readings = FieldReadingsCsv::readTest(sheet(), std::nullopt, std::string("QT_2"));
    EXPECT_EQ(readings.amounts, StoredAmount::DepthMm);
    EXPECT_DOUBLE_EQ(readings.readings.front().depth.depth, 1.591549);
    const auto result = FieldEvaluator::evaluate(readings, FieldEvaluationSettings{});
    EXPECT_NEAR(*result.lines[0].figures.cuHeermannHein, 90.344077, fourDecimals);
    EXPECT_NEAR(*result.lines[1].figures.cuHeermannHein, 88.762901, fourDecimals);
}

TEST(PublishedCatchCanTests, SchedulingCoefficientOfTheDriestContiguousPatch) {
    const auto result = FieldEvaluator::evaluate(
        FieldReadingsCsv::readTest(sheet(), gaugeDiameterM, std::string("QT_2")), FieldEvaluationSettings{});
    const auto& a = result.lines[0].figures;
    // Mean over the low-quarter mean is only 1 / DU (about 1.22 on line A); the driest
    // contiguous 5 % of the line is drier than the low quarter's mean: SC about 1.27.
    EXPECT_NEAR(*a.meanOverLowQuarterMean, 100 / *a.duLowQuarter, 1e-12);
    EXPECT_NEAR(*a.meanOverLowQuarterMean, 1.22, 0.01);
    EXPECT_NEAR(*a.schedulingCoefficient, 1.27, 0.01);
    EXPECT_GT(*a.schedulingCoefficient, *a.meanOverLowQuarterMean + 0.03);
    EXPECT_GE(*a.schedulingCoefficient1Percent, *a.schedulingCoefficient);
}

TEST(PublishedCatchCanTests, ASheetOfSeveralTestsNeedsOneChosen) {
    try {
        FieldReadingsCsv::read(sheet(), gaugeDiameterM);
        FAIL() << "several tests were read as one";
    } catch (const ReadingsError& error) {
        EXPECT_NE(std::string(error.what()).find("holds 14 tests (QT_2, QT_3, Q0_E03"), std::string::npos)
            << error.what();
    }
    try {
        FieldReadingsCsv::readTest(sheet(), gaugeDiameterM, std::string("QT_9"));
        FAIL() << "a missing test was read";
    } catch (const ReadingsError& error) {
        EXPECT_NE(std::string(error.what()).find("holds no test \"QT_9\""), std::string::npos)
            << error.what();
    }
    try {
        FieldReadingsCsv::readTest({"r.csv", "distance_m,depth_mm\n10,3\n"}, std::nullopt,
                                   std::string("QT_2"));
        FAIL() << "a test was chosen in a sheet without tests";
    } catch (const ReadingsError& error) {
        EXPECT_NE(std::string(error.what()).find("names no test column"), std::string::npos) << error.what();
    }
}
