// Opens HTML reports in headless Chromium: the plots must be drawn (checked on a screenshot),
// the printout must come out as PDF with numbered pages, and nothing may be loaded from the
// network.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "HeadlessChromium.hpp"
#include "SampleNozzles.hpp"
#include "ShippedDatabases.hpp"
#include "TemporaryFolder.hpp"
#include "caudalis/catalogue/AspersoresStatic.hpp"
#include "caudalis/charts/CartaAspersores.hpp"
#include "caudalis/charts/CartaAspersoresStatic.hpp"
#include "caudalis/core/Statics.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/design/ChartFigures.hpp"
#include "caudalis/design/DesignFile.hpp"
#include "caudalis/design/DesignRunner.hpp"
#include "caudalis/design/InMemoryNozzleSource.hpp"
#include "caudalis/design/StoredChartDesign.hpp"
#include "caudalis/design/TextFile.hpp"
#include "caudalis/fieldtests/DesignedMachineProfile.hpp"
#include "caudalis/fieldtests/FieldEvaluator.hpp"
#include "caudalis/fieldtests/FieldReadingsCsv.hpp"
#include "caudalis/report/DesignPrintout.hpp"
#include "caudalis/report/EvaluationPrintout.hpp"
#include "caudalis/report/HtmlReport.hpp"

using namespace caudalis::design;
using caudalis::testing::HeadlessChromium;
using caudalis::testing::TemporaryFolder;

namespace {

constexpr const char* blue = "1f77b4";
constexpr const char* red = "d62728";
constexpr const char* green = "2ca02c";
constexpr const char* orange = "ff7f0e";

/// A zigzag from 0 to 100 and back, so that the drawn line crosses the whole plot height.
std::vector<std::pair<double, double>> zigzag() {
    std::vector<std::pair<double, double>> points;
    for (int x = 0; x <= 40; ++x) {
        points.emplace_back(x * 10.0, x % 2 == 0 ? 0.0 : 100.0);
    }
    return points;
}

ReportTable longTable() {
    ReportTable table{"Outlets", {"outlet", "distance m", "flow l/s"}, {}, {false, true, true}};
    for (int i = 1; i <= 150; ++i) {
        table.rows.push_back({"1-" + std::to_string(i), std::to_string(i * 2.75), std::to_string(0.01 * i)});
    }
    return table;
}

ReportDocument sampleDocument() {
    ReportDocument document;
    document.title = "Browser check <report> & plots";
    document.subtitle = {"Machine: test pivot", "File: sample.json"};
    ReportPlot pressure{"Pressure along the machine", "distance (m)", "pressure (kPa)", "", {}};
    pressure.series.push_back(
        PlotSeries{"pipe", zigzag(), SeriesStyle::Line, PlotAxis::Left, "#" + std::string(blue)});
    ReportPlot ground{"Ground profile", "distance (m)", "elevation (m)", "flow (l/s)", {}};
    ground.series.push_back(
        PlotSeries{"ground", zigzag(), SeriesStyle::Line, PlotAxis::Right, "#" + std::string(red)});
    document.sections.push_back(
        ReportSection{"Plots", {ReportParagraph{"Two plots follow."}, pressure, ground}});
    document.sections.push_back(ReportSection{"Table", {longTable()}});
    return document;
}

struct ColourPixels {
    long count = 0;
    int firstRow = -1;
    int lastRow = -1;
};

std::vector<ColourPixels> colourPixels(const std::string& png, const std::vector<std::string>& colours) {
    std::string command =
        "python3 " +
        HeadlessChromium::quoted(std::string(CAUDALIS_SOURCE_DIR) + "/tests/browser/png_colour_pixels.py") +
        " " + HeadlessChromium::quoted(png);
    for (const auto& colour : colours) {
        command += " " + colour;
    }
    int status = 0;
    std::istringstream output(HeadlessChromium::capture(command, status));
    EXPECT_EQ(status, 0) << command;
    int width = 0;
    int height = 0;
    output >> width >> height;
    std::vector<ColourPixels> result(colours.size());
    for (auto& pixels : result) {
        output >> pixels.count >> pixels.firstRow >> pixels.lastRow;
    }
    return result;
}

std::string pdfText(const std::string& pdf) {
    int status = 0;
    auto text =
        HeadlessChromium::capture("pdftotext -layout " + HeadlessChromium::quoted(pdf) + " -", status);
    EXPECT_EQ(status, 0);
    return text;
}

int pdfPages(const std::string& pdf) {
    int status = 0;
    const auto info = HeadlessChromium::capture("pdfinfo " + HeadlessChromium::quoted(pdf), status);
    const auto at = info.find("Pages:");
    return at == std::string::npos ? -1 : std::stoi(info.substr(at + 6));
}

/// Checks that both plots of `sampleDocument` are drawn, the blue one above the red one, each as
/// a line that spans many rows (a legend swatch alone spans a dozen).
void expectBothPlotsDrawn(const std::string& png) {
    const auto pixels = colourPixels(png, {blue, red});
    ASSERT_EQ(pixels.size(), 2U);
    for (const auto& plot : pixels) {
        EXPECT_GT(plot.count, 1000);
        EXPECT_GT(plot.lastRow - plot.firstRow, 150);
    }
    EXPECT_LT(pixels[0].lastRow, pixels[1].firstRow + 20);
}

class HtmlReportInBrowser : public ::testing::Test {
protected:
    void SetUp() override { HtmlReport::writeFile(html, sampleDocument()); }

    TemporaryFolder folder;
    std::string html = folder.file("report.html");
};

}  // namespace

TEST_F(HtmlReportInBrowser, ScreenshotShowsEveryPlot) {
    const auto png = folder.file("shot.png");
    ASSERT_EQ(HeadlessChromium().screenshot(html, png, 1100, 1300), 0);
    expectBothPlotsDrawn(png);
}

TEST_F(HtmlReportInBrowser, PlotsAreMissingFromTheScreenshotWhenTheScriptCannotRun) {
    // The same page with the plotting script cut out: the check above must see the difference.
    auto page = HtmlReport::render(sampleDocument());
    const auto call = page.find("caudalisPlot(\"plot-1\"");
    ASSERT_NE(call, std::string::npos);
    page.insert(call, "throw new Error('stopped');\n");
    const auto broken = folder.file("broken.html");
    std::ofstream(broken) << page;
    const auto png = folder.file("broken.png");
    ASSERT_EQ(HeadlessChromium().screenshot(broken, png, 1100, 1300), 0);
    for (const auto& plot : colourPixels(png, {blue, red})) {
        EXPECT_EQ(plot.count, 0);
    }
}

TEST_F(HtmlReportInBrowser, DrawsItsPlotsWithTheNetworkUnreachable) {
    const auto png = folder.file("offline.png");
    const HeadlessChromium offline({"--host-resolver-rules=MAP * ~NOTFOUND"});
    ASSERT_EQ(offline.screenshot(html, png, 1100, 1300), 0);
    expectBothPlotsDrawn(png);
}

TEST_F(HtmlReportInBrowser, PrintsToPdfOnNumberedPages) {
    const auto pdf = folder.file("report.pdf");
    ASSERT_EQ(HeadlessChromium().printToPdf(html, pdf), 0);
    const int pages = pdfPages(pdf);
    ASSERT_GE(pages, 2);
    const auto text = pdfText(pdf);
    EXPECT_NE(text.find("Browser check <report> & plots"), std::string::npos);
    EXPECT_NE(text.find("1-150"), std::string::npos) << "the last table row is printed";
    EXPECT_NE(text.find("Page 1 of " + std::to_string(pages)), std::string::npos);
    EXPECT_NE(text.find("Page " + std::to_string(pages) + " of " + std::to_string(pages)), std::string::npos);
}

namespace {

/// A screenshot 1300 pixels wide of the page opened with the network unreachable.
std::string offlineScreenshot(TemporaryFolder& folder, const std::string& html, int height) {
    const auto png = folder.file("offline-shot.png");
    const HeadlessChromium offline({"--host-resolver-rules=MAP * ~NOTFOUND"});
    EXPECT_EQ(offline.screenshot(html, png, 1300, height), 0);
    return png;
}

/// Prints the page to PDF and checks that it has at least `minimumPages` numbered pages
/// ("Page N of N" on the last) and holds every text of `expected`.
void expectPrintedOnNumberedPages(TemporaryFolder& folder, const std::string& html, int minimumPages,
                                  const std::vector<std::string>& expected) {
    const auto pdf = folder.file("printed.pdf");
    ASSERT_EQ(HeadlessChromium().printToPdf(html, pdf), 0);
    const int pages = pdfPages(pdf);
    ASSERT_GE(pages, minimumPages);
    const auto text = pdfText(pdf);
    for (const auto& fragment : expected) {
        EXPECT_NE(text.find(fragment), std::string::npos) << fragment;
    }
    EXPECT_NE(text.find("Page " + std::to_string(pages) + " of " + std::to_string(pages)), std::string::npos);
}

std::string designReport(TemporaryFolder& folder) {
    using namespace caudalis::design;
    InMemoryNozzleSource source(caudalis::testing::sampleCatalogue(),
                                caudalis::testing::sampleWettedDiameters());
    const auto result = DesignRunner().run(
        DesignFile::load(caudalis::testing::sourcePath("examples/designs/realistic.json")), source);
    const auto path = folder.file("design.html");
    HtmlReport::writeFile(path, DesignPrintout::document(result, Units(UnitSystem::SI), true));
    return path;
}

}  // namespace

TEST(DesignReportInBrowser, DrawsThePlotsAndPrintsTheWholePrintoutOnNumberedPages) {
    TemporaryFolder folder;
    const auto html = designReport(folder);
    const auto png = offlineScreenshot(folder, html, 3200);
    // The first series of each plot (pipe pressure, required flow, ground, depth, peak rate)
    // is drawn in the palette's first colour, plot after plot down the page.
    const auto pixels = colourPixels(png, {blue, red});
    EXPECT_GT(pixels[0].count, 5000);
    EXPECT_GT(pixels[0].lastRow - pixels[0].firstRow, 1500);
    EXPECT_GT(pixels[1].count, 2000);
    expectPrintedOnNumberedPages(folder, html, 5,
                                 {"Verdict", "Timer settings", "Runoff", "7-19", "gun", "Outlets", "Spans",
                                  "CU Heermann-Hein, application profile"});
}

namespace {

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream content;
    content << in.rdbuf();
    return content.str();
}

/// The shipped crew sheet of the small demonstration pivot laid over its design, as
/// `caudalis evaluate --design --report` writes it.
std::string evaluationReport(TemporaryFolder& folder) {
    using namespace caudalis::design;
    const auto sheet = caudalis::testing::sourcePath("examples/evaluations/small-2025.csv");
    EvaluationPrintoutInput input;
    input.name = "small-2025";
    input.readings = FieldReadingsCsv::read({sheet, readFile(sheet)}, 0.1);
    InMemoryNozzleSource source(caudalis::testing::sampleCatalogue());
    const auto design = DesignRunner().run(
        DesignFile::load(caudalis::testing::sourcePath("examples/designs/small.json")), source);
    DesignedBeside designed{"small.json", 100, "default", DesignedMachineProfile::of(design), {}};
    FieldEvaluationSettings settings;
    settings.innerRadiusM = 10;
    settings.lastSpanEndM = designed.machine.spans.back().toM;
    settings.expectedDepthMm = design.summary.depthMm;
    input.result = FieldEvaluator::evaluate(input.readings, settings);
    designed.comparison = MeasuredDesignedComparison::compare(input.result.counted, designed.machine, 12);
    input.designed = designed;
    const auto path = folder.file("evaluation.html");
    HtmlReport::writeFile(path, EvaluationPrintout::document(input));
    return path;
}

}  // namespace

TEST(EvaluationReportInBrowser, DrawsTheDepthPlotAndPrintsEveryFigureOnNumberedPages) {
    TemporaryFolder folder;
    const auto html = evaluationReport(folder);
    const auto png = offlineScreenshot(folder, html, 1400);
    // Line 1's collectors (blue), line 2's (red), the designed profile (green) and the edge of
    // the low-quarter band (orange) are drawn in the depth plot at the top of the page; the
    // collector-by-collector differences (blue again) further down.
    const auto pixels = colourPixels(png, {blue, red, green, orange});
    EXPECT_GT(pixels[0].count, 300);
    EXPECT_GT(pixels[1].count, 300);
    EXPECT_GT(pixels[2].count, 500);
    EXPECT_GT(pixels[3].count, 300);
    EXPECT_LT(pixels[2].firstRow, 700) << "the designed profile is in the first plot";
    expectPrintedOnNumberedPages(
        folder, html, 2,
        {"Field evaluation: small-2025", "Depth along the radius", "CU Heermann-Hein (%)",
         "DU low quarter (%)", "Scheduling coefficient", "end-gun zone", "lines' mean", "Expected depth (mm)",
         "Collectors left out", "tipped", "Measured beside designed", "Every collector", "W34"});
}

namespace {

/// The realistic example designed with the sample catalogue database, stored as `design --save`
/// stores it, and its report written from the chart computed again.
std::string storedChartReport(TemporaryFolder& folder) {
    using namespace caudalis;
    caudalis::testing::createProjectDatabase(folder.file("project.db"));
    caudalis::testing::createCatalogueDatabase(folder.file("catalogue.db"));
    const auto project = "Provider=SQLite;Data Source=" + folder.file("project.db");
    const auto text =
        readTextFile(caudalis::testing::sourcePath("examples/designs/realistic.json"), "design file");
    InMemoryNozzleSource source(
        AspersoresStatic().find("Provider=SQLite;Data Source=" + folder.file("catalogue.db")));
    const auto designed = DesignRunner().run(DesignFile::parse(text, "realistic.json"), source);
    Statics::application()->CartaAspersor()->saveAsNew(project, 400, *designed.chart);
    auto figures = ChartFigures::of(designed);
    figures.design = text;
    Connection connection(project);
    connection.Open();
    ChartFigures::save(connection, designed.chart->id(), figures);
    connection.Close();
    const auto rebuilt =
        StoredChartDesign::rebuild(project, folder.file("catalogue.db"), designed.chart->id());
    const auto path = folder.file("chart.html");
    HtmlReport::writeFile(path, DesignPrintout::document(rebuilt.result, Units(UnitSystem::SI), true));
    return path;
}

}  // namespace

TEST(StoredChartReportInBrowser, OpensAndDrawsThePlots) {
    TemporaryFolder folder;
    const auto html = storedChartReport(folder);
    const auto png = offlineScreenshot(folder, html, 3200);
    // The same plots as the design's own report, drawn from the chart computed again.
    const auto pixels = colourPixels(png, {blue, red});
    EXPECT_GT(pixels[0].count, 5000);
    EXPECT_GT(pixels[0].lastRow - pixels[0].firstRow, 1500);
    EXPECT_GT(pixels[1].count, 2000);
}
