#include <gtest/gtest.h>

#include "caudalis/fieldtests/FieldReadingsCsv.hpp"
#include "caudalis/fieldtests/FieldReadingsText.hpp"
#include "caudalis/fieldtests/ReadingsError.hpp"

using namespace caudalis;
using namespace caudalis::design;

namespace {

// 785.398163397448 ml in a gauge of 0.1 m (area 0.00785398163397448 m2) is 100 mm.
constexpr double hundredMillimetresInMl = 785.398163397448;

std::string csvMessage(const std::string& text, std::optional<double> gauge = std::nullopt) {
    try {
        FieldReadingsCsv::read({"r.csv", text}, gauge);
    } catch (const ReadingsError& error) {
        return error.what();
    }
    return "";
}

std::string textMessage(const std::vector<ReadingsText>& texts) {
    try {
        FieldReadingsText::read(texts, 0.1);
    } catch (const ReadingsError& error) {
        return error.what();
    }
    return "";
}

}  // namespace

TEST(FieldReadingsText, TwoGroupsAreTwoLines) {
    const auto readings =
        FieldReadingsText::read({{"r.txt", "# field 7\n785.398163397448 10\n0 20\n\n-1 30\n"}}, 0.1);
    ASSERT_EQ(readings.readings.size(), 3u);
    EXPECT_EQ(readings.lineNames, (std::vector<std::string>{"1", "2"}));
    EXPECT_EQ(readings.amounts, StoredAmount::VolumeMl);
    EXPECT_DOUBLE_EQ(readings.gaugeDiameterM, 0.1);
    EXPECT_NEAR(readings.readings[0].depth.depth, 100, 1e-9);
    EXPECT_EQ(readings.readings[0].sourceLine, 2);
    EXPECT_EQ(readings.readings[1].line, 1);
    EXPECT_DOUBLE_EQ(readings.readings[1].depth.depth, 0);
    EXPECT_FALSE(readings.readings[1].depth.p_null);
    EXPECT_EQ(readings.readings[2].line, 2);
    EXPECT_TRUE(readings.readings[2].depth.p_null);
    EXPECT_DOUBLE_EQ(readings.readings[2].sample.collectedAmount, -1);
}

TEST(FieldReadingsText, TwoTextsAreOneLineEach) {
    const auto readings = FieldReadingsText::read({{"a.txt", "10 5\n"}, {"b.txt", "20 6\n"}}, 0.1);
    ASSERT_EQ(readings.readings.size(), 2u);
    EXPECT_EQ(readings.readings[1].line, 2);
    EXPECT_EQ(readings.readings[1].source, "b.txt");
}

TEST(FieldReadingsText, BadTextsAreNamed) {
    EXPECT_EQ(
        textMessage({{"r.txt", "10 5\n10  6\n"}}),
        "r.txt line 2: \"10  6\" is not a reading (amount, one space, distance; \".\" as decimal point)");
    EXPECT_EQ(
        textMessage({{"r.txt", "1 5\n\n2 6\n\n3 7\n"}}),
        "r.txt: holds 3 groups of readings separated by blank lines; a file holds at most two radial lines");
    EXPECT_EQ(textMessage({{"a.txt", "1 5\n"}, {"b.txt", "1 5\n\n2 6\n"}}),
              "b.txt: holds 2 groups of readings separated by blank lines; each of two files holds one "
              "radial line");
    EXPECT_EQ(textMessage({{"r.txt", "\n# nothing\n"}}), "r.txt: holds no readings");
    EXPECT_NE(textMessage({{"r.txt", "10,5 6\n"}}).find("line 1"), std::string::npos);
}

TEST(FieldReadingsCsv, VolumesInMlAndDistancesInFeetOnTwoLines) {
    const auto readings =
        FieldReadingsCsv::read({"r.csv",
                                "# crew sheet\nLine,Collector,Distance_ft,Volume_ml,Flag,Notes\n"
                                "north,N1,100,785.398163397448,,\nnorth,N2,110,0,wind,gusts\n\"south\",S1,"
                                "100,\"392.699081698724\",,\n"},
                               0.1);
    ASSERT_EQ(readings.readings.size(), 3u);
    EXPECT_EQ(readings.lineNames, (std::vector<std::string>{"north", "south"}));
    EXPECT_EQ(readings.amounts, StoredAmount::VolumeMl);
    const auto& first = readings.readings[0];
    EXPECT_EQ(first.collector, "N1");
    EXPECT_DOUBLE_EQ(first.depth.distanceFromCenter, 30.48);
    EXPECT_NEAR(first.depth.depth, 100, 1e-9);
    EXPECT_DOUBLE_EQ(first.sample.collectedAmount, hundredMillimetresInMl);
    EXPECT_EQ(first.sourceLine, 3);
    EXPECT_EQ(readings.readings[1].crewExclusion, "wind");
    EXPECT_EQ(readings.readings[2].line, 2);
    EXPECT_NEAR(readings.readings[2].depth.depth, 50, 1e-9);
}

TEST(FieldReadingsCsv, DepthsInInchesAndMillimetres) {
    const auto inches =
        FieldReadingsCsv::read({"r.csv", "distance_m,depth_in\n12,1\n15,0.5\n"}, std::nullopt);
    EXPECT_EQ(inches.amounts, StoredAmount::DepthMm);
    EXPECT_DOUBLE_EQ(inches.readings[0].depth.depth, 25.4);
    EXPECT_DOUBLE_EQ(inches.readings[0].sample.collectedAmount, 25.4);
    EXPECT_DOUBLE_EQ(inches.readings[1].depth.depth, 12.7);
    EXPECT_EQ(inches.lineNames, (std::vector<std::string>{"1"}));
    const auto invalid = FieldReadingsCsv::read({"r.csv", "distance_m,depth_mm\n0,3\n"}, std::nullopt);
    EXPECT_TRUE(invalid.readings[0].depth.p_null);
}

TEST(FieldReadingsCsv, EachCollectorsOwnOpening) {
    // 100 ml in 50 cm2 = 0.005 m2: 100 / (0.005 x 1000) = 20 mm; 1 in2 = 6.4516 cm2.
    const auto readings =
        FieldReadingsCsv::read({"r.csv", "distance_m,volume_ml,collector_area_cm2\n10,100,50\n"}, 0.1);
    EXPECT_EQ(readings.amounts, StoredAmount::DepthMm);
    EXPECT_NEAR(readings.readings[0].depth.depth, 20, 1e-12);
    EXPECT_NEAR(readings.readings[0].sample.collectedAmount, 20, 1e-12);
    const auto square = FieldReadingsCsv::read(
        {"r.csv", "distance_m,volume_ml,collector_area_in2\n10,6.4516,1\n"}, std::nullopt);
    EXPECT_NEAR(square.readings[0].depth.depth, 10, 1e-12);
}

TEST(FieldReadingsCsv, MessagesNameLineAndColumn) {
    EXPECT_EQ(csvMessage("distance_m,depth_mm\n10,1\n20,abc\n"),
              "r.csv line 3, column 2 (depth_mm): \"abc\" is not a number (\".\" as decimal point)");
    EXPECT_EQ(csvMessage("distance_m,depth_mm\n10,\n"),
              "r.csv line 2, column 2 (depth_mm): empty; write the value (0 for a dry collector)");
    EXPECT_EQ(csvMessage("distance_m,depth_mm\n10,1,5\n"), "");
    EXPECT_EQ(
        csvMessage("distance_m,deph_mm\n"),
        "r.csv line 1, column 2 (deph_mm): unknown column; known columns are distance_m, distance_ft, "
        "volume_ml, depth_mm, depth_in, collector_area_cm2, collector_area_in2, line, test, collector, flag, "
        "note");
    EXPECT_EQ(csvMessage("depth_mm\n"),
              "r.csv line 1: the header names no distance column (distance_m or distance_ft)");
    EXPECT_EQ(csvMessage("distance_m\n"),
              "r.csv line 1: the header names no amount column (volume_ml, depth_mm or depth_in)");
    EXPECT_EQ(csvMessage("distance_m,distance_ft,depth_mm\n"),
              "r.csv line 1, column 2 (distance_ft): a second distance column (the first is distance_m)");
    EXPECT_EQ(csvMessage("distance_m,depth_mm,collector_area_cm2\n"),
              "r.csv line 1: a collector area column goes with volume_ml only");
    EXPECT_EQ(csvMessage("distance_m,volume_ml\n10,5\n"),
              "r.csv: volume_ml needs the collectors' opening: a collector_area_cm2 (or _in2) column, or the "
              "gauge diameter");
    EXPECT_EQ(csvMessage("distance_m,volume_ml,collector_area_cm2\n10,5,0\n"),
              "r.csv line 2, column 3 (collector_area_cm2): a collector's opening must be more than 0");
    EXPECT_EQ(csvMessage("line,distance_m,depth_mm\na,1,1\nb,2,2\nc,3,3\n"),
              "r.csv line 4, column 1 (line): a third radial line \"c\" (a test has one or two: a, b)");
    EXPECT_EQ(csvMessage("distance_m,depth_mm\n\"10,1\n"), "r.csv line 2: a quoted field is not closed");
    EXPECT_EQ(csvMessage("distance_m,depth_mm\n"), "r.csv: holds no readings");
    EXPECT_EQ(csvMessage("distance_m,depth_mm\n1e400,1\n"),
              "r.csv line 2, column 1 (distance_m): \"1e400\" is not a number (\".\" as decimal point)");
}

TEST(FieldReadingsCsv, QuotedFieldsMayHoldCommasAndQuotes) {
    EXPECT_EQ(FieldReadingsCsv::fields("a,\"b,c\",\"say \"\"hi\"\"\"", "r.csv", 1),
              (std::vector<std::string>{"a", "b,c", "say \"hi\""}));
}
