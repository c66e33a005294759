#include <gtest/gtest.h>

#include <algorithm>

#include "CrewReadings.hpp"
#include "caudalis/fieldtests/FieldEvaluator.hpp"
#include "caudalis/fieldtests/FieldReadingsCsv.hpp"
#include "caudalis/report/EvaluationPrintout.hpp"
#include "caudalis/report/HtmlReport.hpp"
#include "caudalis/report/PlainTextReport.hpp"

using namespace caudalis::design;

namespace {

using caudalis::testing::twoCrewLines;

EvaluationPrintoutInput evaluated(std::optional<double> expectedDepthMm = std::nullopt) {
    EvaluationPrintoutInput input;
    input.name = "North <pivot>";
    input.readings = FieldReadingsCsv::read({"crew.csv", twoCrewLines}, std::nullopt);
    FieldEvaluationSettings settings;
    settings.innerRadiusM = 5;
    settings.lastSpanEndM = 45;
    settings.expectedDepthMm = expectedDepthMm;
    input.result = FieldEvaluator::evaluate(input.readings, settings);
    return input;
}

/// Outlets every 3 m from 3 to 45 m, each laying 6 mm on its ring, on spans of 30 and 15 m.
DesignedMachine evenMachine() {
    DesignedMachine machine;
    for (int i = 1; i <= 15; ++i) {
        machine.outlets.push_back({i <= 10 ? 1 : 2, i <= 10 ? i : i - 10, false, 3.0 * i, 6, 3});
    }
    machine.spans = {{1, 0, 30}, {2, 30, 45}};
    return machine;
}

EvaluationPrintoutInput evaluatedBesideDesign() {
    auto input = evaluated(12);
    DesignedBeside designed{"north.json", 50, "default", evenMachine(), {}};
    designed.comparison = MeasuredDesignedComparison::compare(input.result.counted, designed.machine, 20);
    input.designed = designed;
    return input;
}

std::vector<std::string> headings(const ReportDocument& document) {
    std::vector<std::string> names;
    for (const auto& section : document.sections) {
        names.push_back(section.heading);
    }
    return names;
}

const UnitText si{Units(UnitSystem::SI)};

const ReportPlot& depthPlot(const ReportDocument& document) {
    return std::get<ReportPlot>(document.sections.at(0).blocks.at(0));
}

const PlotSeries& seriesLabelled(const ReportPlot& plot, const std::string& prefix) {
    const auto found = std::find_if(plot.series.begin(), plot.series.end(),
                                    [&](const PlotSeries& s) { return s.label.rfind(prefix, 0) == 0; });
    EXPECT_NE(found, plot.series.end()) << prefix;
    return found == plot.series.end() ? plot.series.front() : *found;
}

const ReportTable& table(const ReportSection& section, std::size_t index = 0) {
    return std::get<ReportTable>(section.blocks.at(index));
}

std::string cell(const ReportTable& table, const std::string& rowLabel, std::size_t column) {
    for (const auto& row : table.rows) {
        if (row.at(0) == rowLabel) {
            return row.at(column);
        }
    }
    return "(no row " + rowLabel + ")";
}

}  // namespace

TEST(EvaluationPrintout, SectionsInReadingOrder) {
    const auto document = EvaluationPrintout::document(evaluated());
    EXPECT_EQ(document.title, "Field evaluation: North <pivot>");
    EXPECT_EQ(headings(document),
              (std::vector<std::string>{"Depth along the radius", "Figures", "Collectors left out",
                                        "Collectors more than 20 % off the mean", "Every collector"}));
    ASSERT_EQ(document.subtitle.size(), 2u);
    EXPECT_EQ(document.subtitle[0], "13 readings: 10 counted, 3 left out; depths in mm");
    EXPECT_EQ(
        document.subtitle[1],
        "Collectors weighted by their distance from the centre; inner radius 5.00 m; the last span ends "
        "at 45.00 m (beyond: end-gun zone)");
}

TEST(EvaluationPrintout, PlotsEachLineTheLeftOutCollectorsTheMeanAndTheLowQuarterBand) {
    const auto input = evaluated();
    const auto document = EvaluationPrintout::document(input);
    const auto& plot = depthPlot(document);
    EXPECT_EQ(plot.xAxisLabel, "distance from the centre (m)");
    EXPECT_EQ(plot.leftAxisLabel, "depth (mm)");
    // The end-gun zone's collectors are drawn with their line; the invalid reading is not drawn.
    const auto& a = seriesLabelled(plot, "line a");
    EXPECT_EQ(a.style, SeriesStyle::Points);
    EXPECT_EQ(a.points,
              (std::vector<std::pair<double, double>>{{10, 8}, {20, 10}, {30, 12}, {40, 14}, {50, 20}}));
    EXPECT_EQ(seriesLabelled(plot, "line b").points,
              (std::vector<std::pair<double, double>>{{10, 12}, {20, 12}, {30, 12}, {40, 12}, {55, 10}}));
    EXPECT_EQ(seriesLabelled(plot, "left out").points,
              (std::vector<std::pair<double, double>>{{4, 30}, {35, 2}}));
    // Mean and low quarter of both lines together, across the collectors that count (10 to 40 m);
    // the band is drawn right after the mean, which it is shaded up to.
    const double mean = *input.result.together.meanDepthMm;
    const double lowQuarter = *input.result.together.lowQuarterMeanMm;
    ASSERT_GE(plot.series.size(), 2u);
    const auto& meanLine = plot.series[plot.series.size() - 2];
    const auto& band = plot.series.back();
    EXPECT_EQ(meanLine.label, "mean " + EvaluationPrintout::figureText(mean, 2) + " mm");
    EXPECT_EQ(meanLine.points, (std::vector<std::pair<double, double>>{{10, mean}, {40, mean}}));
    EXPECT_EQ(band.style, SeriesStyle::Band);
    EXPECT_EQ(band.points, (std::vector<std::pair<double, double>>{{10, lowQuarter}, {40, lowQuarter}}));
    EXPECT_LT(lowQuarter, mean);
    EXPECT_EQ(plot.series.size(), 5u) << "no designed profile without a design";
}

TEST(EvaluationPrintout, PrintsDistancesAndDepthsInTheUnitsAsked) {
    auto input = evaluated();
    input.units = Units(UnitSystem::US);
    const auto document = EvaluationPrintout::document(input);
    const auto& plot = depthPlot(document);
    EXPECT_EQ(plot.xAxisLabel, "distance from the centre (ft)");
    EXPECT_EQ(plot.leftAxisLabel, "depth (in)");
    const auto& a = seriesLabelled(plot, "line a");
    ASSERT_FALSE(a.points.empty());
    EXPECT_NEAR(a.points[0].first, 10 / 0.3048, 1e-9);
    EXPECT_NEAR(a.points[0].second, 8 / 25.4, 1e-9);
    const auto& figures = table(document.sections[1]);
    EXPECT_EQ(figures.rows[1][0], "Mean depth (in)");
    const auto rendered = PlainTextReport::render(document);
    EXPECT_EQ(rendered.find(" mm"), std::string::npos) << rendered;
    EXPECT_EQ(rendered.find("(m)"), std::string::npos) << rendered;
    const auto& label = EvaluationPrintout::figureLabels()[1];
    EXPECT_EQ(label.key(Units(UnitSystem::US)), "mean_depth_in");
    EXPECT_EQ(label.key(Units()), "mean_depth_mm");
    EXPECT_NEAR(*label.value(25.4, Units(UnitSystem::US)), 1.0, 1e-12);
}

TEST(EvaluationPrintout, FiguresOfEachLineTheirMeanBothTogetherAndTheEndGunZone) {
    const auto input = evaluated(12);
    const auto section = EvaluationPrintout::figures(input.result, si);
    const auto& figures = table(section);
    EXPECT_EQ(figures.headers, (std::vector<std::string>{"figure", "line a", "line b", "lines' mean",
                                                         "both lines together", "end-gun zone"}));
    ASSERT_EQ(figures.rows.size(), EvaluationPrintout::figureLabels().size());
    // Line a by hand: mean 1200 / 100 = 12 mm, sum |d - m| r = 160, CU = 100 (1 - 160 / 1200).
    EXPECT_EQ(cell(figures, "Mean depth (mm)", 1), "12.00");
    EXPECT_EQ(cell(figures, "CU Heermann-Hein (%)", 1), "86.7");
    EXPECT_EQ(cell(figures, "CU Heermann-Hein (%)", 2), "100.0");
    EXPECT_EQ(cell(figures, "Collectors", 4), "8");
    EXPECT_EQ(cell(figures, "Collectors", 5), "2");
    EXPECT_EQ(cell(figures, "DU low quarter (%)", 4),
              EvaluationPrintout::figureText(input.result.together.duLowQuarter, 1));
    EXPECT_EQ(cell(figures, "Scheduling coefficient 5 %", 3),
              EvaluationPrintout::figureText(input.result.lineAverage.schedulingCoefficient, 2));
    // The end-gun zone (20 mm at 50 m, 10 mm at 55 m): mean (1000 + 550) / 105.
    EXPECT_EQ(cell(figures, "Mean depth (mm)", 5), "14.76");
    const auto& applied = table(section, 1);
    EXPECT_EQ(cell(applied, "Expected depth (mm)", 1), "12.00");
    EXPECT_EQ(cell(applied, "Mean depth / expected (%)", 1), "100.0");
}

TEST(EvaluationPrintout, FigureNotDefinedIsNotAvailable) {
    EXPECT_EQ(EvaluationPrintout::figureText(std::nullopt, 1), "n/a");
    EXPECT_EQ(EvaluationPrintout::figureText(86.66666, 1), "86.7");
}

TEST(EvaluationPrintout, LeftOutCollectorsWithTheirReasonAndOutliers) {
    const auto input = evaluated();
    const auto leftOut = EvaluationPrintout::leftOut(input.result, si);
    const auto& left = table(leftOut);
    ASSERT_EQ(left.rows.size(), 3u);
    // The crew's name of the line, not its number.
    EXPECT_EQ(left.rows[0], (std::vector<std::string>{"a", "1", "4.00", "30.00", "inside the inner radius",
                                                      "crew.csv line 2"}));
    EXPECT_EQ(left.rows[1][4], "struck out by the crew (tipped)");
    EXPECT_EQ(left.rows[2][4], "not a valid reading");
    // Line a's 8 mm at 10 m is 1/3 below the mean of 12 mm.
    const auto section = EvaluationPrintout::outliers(input.result, si);
    EXPECT_EQ(section.heading, "Collectors more than 20 % off the mean");
    const auto& outliers = table(section);
    ASSERT_EQ(outliers.rows.size(), input.result.outliers.size());
    ASSERT_FALSE(outliers.rows.empty());
    EXPECT_EQ(outliers.rows[0][0], "a");
    EXPECT_EQ(outliers.rows[0][2], "10.00");
    EXPECT_EQ(outliers.rows[0][4], "-33.3");
}

TEST(EvaluationPrintout, NothingLeftOutSaysSo) {
    EvaluationPrintoutInput input;
    input.readings =
        FieldReadingsCsv::read({"even.csv", "distance_m,depth_mm\n10,5\n20,5\n30,5\n"}, std::nullopt);
    input.result = FieldEvaluator::evaluate(input.readings, {});
    const auto section = EvaluationPrintout::leftOut(input.result, si);
    ASSERT_EQ(section.blocks.size(), 1u);
    EXPECT_EQ(std::get<ReportParagraph>(section.blocks[0]).text, "None: every reading counts.");
    EXPECT_EQ(std::get<ReportParagraph>(EvaluationPrintout::outliers(input.result, si).blocks[0]).text,
              "None.");
}

TEST(EvaluationPrintout, DesignedProfileIsTheDesignedDepthAtTheTimerSetting) {
    const auto input = evaluatedBesideDesign();
    const auto& designed = *input.designed;
    const auto profile = EvaluationPrintout::designedProfile(designed, 10, 50);
    ASSERT_EQ(profile.size(), static_cast<std::size_t>(EvaluationPrintout::profilePoints + 1));
    EXPECT_DOUBLE_EQ(profile.front().first, 10);
    EXPECT_DOUBLE_EQ(profile.back().first, 50);
    // At a 50 % timer the machine lays twice its designed depth per pass.
    const auto middle = profile[profile.size() / 2];
    EXPECT_DOUBLE_EQ(middle.second,
                     2 * MeasuredDesignedComparison::designedDepthAt(designed.machine, middle.first, 10));
    EXPECT_NEAR(middle.second, 12, 0.5) << "6 mm a pass from overlapping patterns, doubled";

    const auto document = EvaluationPrintout::document(input);
    const auto& plot = depthPlot(document);
    const auto& drawn = seriesLabelled(plot, "designed, timer 50 %");
    EXPECT_EQ(drawn.style, SeriesStyle::Line);
    EXPECT_DOUBLE_EQ(drawn.points.front().first, 4) << "from the nearest collector that has a depth";
    EXPECT_DOUBLE_EQ(drawn.points.back().first, 55) << "to the farthest collector";
    const auto& levelled = seriesLabelled(plot, "designed, at the measured level");
    for (std::size_t i = 0; i < drawn.points.size(); i += 50) {
        EXPECT_NEAR(levelled.points[i].second, drawn.points[i].second * designed.comparison.levelFactor * 0.5,
                    1e-12);
    }
}

TEST(EvaluationPrintout, MeasuredBesideDesignedListsSpansOutletsAndEveryCollector) {
    const auto input = evaluatedBesideDesign();
    const auto document = EvaluationPrintout::document(input);
    const auto names = headings(document);
    ASSERT_EQ(names.size(), 6u);
    EXPECT_EQ(names[4], "Measured beside designed");
    EXPECT_EQ(document.subtitle.back(), "Beside the design north.json at a timer setting of 50 %");
    const auto& section = document.sections[4];
    const auto& settings = table(section, 0);
    EXPECT_EQ(cell(settings, "Design", 1), "north.json");
    EXPECT_EQ(cell(settings, "Wetted diameter (m)", 1), "20.00 (default)");
    const auto& comparison = input.designed->comparison;
    const auto& spans = table(section, 1);
    ASSERT_EQ(spans.rows.size(), comparison.spans.size());
    EXPECT_EQ(spans.rows[0][0], std::to_string(comparison.spans[0].span.number));
    ASSERT_TRUE(comparison.outletsResolved);
    const auto& outlets = table(section, 2);
    ASSERT_EQ(outlets.rows.size(), comparison.outlets.size());
    const auto& first = comparison.outlets[0].outlet;
    EXPECT_EQ(outlets.rows[0][0], std::to_string(first.span) + "-" + std::to_string(first.number));
    const auto& differences = std::get<ReportPlot>(section.blocks.at(3));
    EXPECT_EQ(differences.series.at(0).points.size(), comparison.collectors.size());

    const auto& collectors = table(document.sections.back());
    EXPECT_EQ(collectors.headers.size(), 6u);
    ASSERT_EQ(collectors.rows.size(), 13u) << "every reading, left out ones included";
    EXPECT_EQ(collectors.rows[0], (std::vector<std::string>{"a", "1", "4.00", "30.00", "-", "-"}));
    EXPECT_EQ(collectors.rows[11][3], "-") << "the invalid reading has no depth";
    const auto& counted = comparison.collectors.front();
    const auto row = std::find_if(collectors.rows.begin(), collectors.rows.end(), [&](const auto& r) {
        return r[1] == counted.reading.collector && r[0] == (counted.reading.line == 1 ? "a" : "b");
    });
    ASSERT_NE(row, collectors.rows.end());
    EXPECT_EQ((*row)[4], EvaluationPrintout::figureText(counted.designedMm, 2));
}

TEST(EvaluationPrintout, CollectorsCoarserThanTheWettedRadiusGiveSpansOnly) {
    auto input = evaluated();
    DesignedBeside designed{"north.json", 100, "--wetted-diameter", evenMachine(), {}};
    designed.comparison = MeasuredDesignedComparison::compare(input.result.counted, designed.machine, 3);
    input.designed = designed;
    const auto section = EvaluationPrintout::comparison(*input.designed, si);
    ASSERT_EQ(section.blocks.size(), 3u);
    EXPECT_EQ(std::get<ReportParagraph>(section.blocks[2]).text,
              "Collectors 10.00 m apart cannot single out outlets of a 3.00 m wetted diameter.");
}

TEST(EvaluationPrintout, RendersAsOneHtmlPageWithTheBandShaded) {
    const auto html = HtmlReport::render(EvaluationPrintout::document(evaluatedBesideDesign()));
    EXPECT_NE(html.find("<h1>Field evaluation: North &lt;pivot&gt;</h1>"), std::string::npos);
    EXPECT_NE(html.find("\"style\":\"band\""), std::string::npos);
    EXPECT_NE(html.find("fill: s.style === 'band' ? '-1' : false"), std::string::npos);
    EXPECT_NE(html.find("caudalisPlot(\"plot-2\""), std::string::npos) << "the depth and difference plots";
    EXPECT_NE(html.find("<td>CU Heermann-Hein (%)</td><td class=\"num\">86.7</td>"), std::string::npos);
    // The same document prints as text without its plots.
    const auto text = PlainTextReport::render(EvaluationPrintout::document(evaluated()));
    EXPECT_NE(text.find("CU Heermann-Hein (%)"), std::string::npos);
}
