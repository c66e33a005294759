#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <sstream>

#include "TemporaryFolder.hpp"
#include "caudalis/report/ChartJsLibrary.hpp"
#include "caudalis/report/HtmlReport.hpp"
#include "caudalis/report/HtmlText.hpp"

using namespace caudalis::design;

namespace {

std::size_t occurrences(const std::string& text, const std::string& what) {
    std::size_t count = 0;
    for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) {
        ++count;
    }
    return count;
}

ReportDocument documentWithPlot() {
    ReportDocument document;
    document.title = "Pivot \"North\" <A&B>";
    ReportPlot plot{"Pressure", "distance (m)", "kPa", "m", {}};
    plot.series.push_back(
        PlotSeries{"pipe", {{0, 300}, {2.75, 299.5}}, SeriesStyle::Line, PlotAxis::Left, ""});
    plot.series.push_back(
        PlotSeries{"ground </script>", {{0, 112}}, SeriesStyle::DashedLine, PlotAxis::Right, "#123456"});
    document.sections.push_back(ReportSection{"Plots", {plot}});
    return document;
}

}  // namespace

TEST(HtmlText, EscapesMarkupCharacters) {
    EXPECT_EQ(HtmlText::escape("a<b & \"c\" 'd'>"), "a&lt;b &amp; &quot;c&quot; &#39;d&#39;&gt;");
    EXPECT_EQ(HtmlText::escape("plain 1.5 m"), "plain 1.5 m");
}

TEST(HtmlText, JsonStringsCannotCloseTheScriptElement) {
    EXPECT_EQ(HtmlText::jsonString("</script>"), "\"\\u003c/script\\u003e\"");
    EXPECT_EQ(HtmlText::jsonString("a\"b\\c\nd"), "\"a\\\"b\\\\c\\u000ad\"");
    EXPECT_EQ(HtmlText::jsonString("x\xE2\x80\xA8y"), "\"x\\u2028y\"");
    EXPECT_EQ(HtmlText::jsonString("30 \xC2\xB0"), "\"30 \xC2\xB0\"") << "other UTF-8 passes unchanged";
}

TEST(HtmlText, JsonNumbersReadBackExactlyAndAreNullWhenNotFinite) {
    EXPECT_EQ(HtmlText::jsonNumber(0.1), "0.1");
    EXPECT_EQ(HtmlText::jsonNumber(-2.5e-7), "-2.5e-07");
    EXPECT_EQ(HtmlText::jsonNumber(300), "300");
    EXPECT_EQ(HtmlText::jsonNumber(std::nan("")), "null");
    EXPECT_EQ(HtmlText::jsonNumber(HUGE_VAL), "null");
}

TEST(ChartJsLibrary, EmbedsTheWholePackagedScript) {
    std::ifstream packaged("/usr/share/javascript/chart.js/chart.min.js", std::ios::binary);
    ASSERT_TRUE(packaged) << "libjs-chart.js is installed";
    std::stringstream content;
    content << packaged.rdbuf();
    EXPECT_EQ(ChartJsLibrary::source(), content.str());
    EXPECT_EQ(ChartJsLibrary::version().rfind("Chart.js v3.", 0), 0U) << ChartJsLibrary::version();
}

TEST(HtmlReport, IsOneSelfContainedPage) {
    const auto html = HtmlReport::render(documentWithPlot());
    EXPECT_EQ(html.rfind("<!DOCTYPE html>", 0), 0U);
    EXPECT_NE(html.find(ChartJsLibrary::source()), std::string::npos);
    EXPECT_EQ(occurrences(html, " src="), 0U) << "no external script or image";
    EXPECT_EQ(occurrences(html, "<link"), 0U) << "no external style sheet";
    EXPECT_NE(html.find("default-src 'none'"), std::string::npos) << "the page forbids any fetch";
    EXPECT_EQ(occurrences(html, "</script>"), 2U) << "only the two script elements are closed";
}

TEST(HtmlReport, EscapesTextsAndPassesPlotDataAsJson) {
    const auto html = HtmlReport::render(documentWithPlot());
    EXPECT_NE(html.find("<title>Pivot &quot;North&quot; &lt;A&amp;B&gt;</title>"), std::string::npos);
    EXPECT_NE(html.find("caudalisPlot(\"plot-1\", {\"x\":\"distance (m)\",\"y\":\"kPa\",\"y2\":\"m\""),
              std::string::npos);
    EXPECT_NE(
        html.find(
            "\"colour\":\"#1f77b4\",\"style\":\"line\",\"axis\":\"y\",\"points\":[[0,300],[2.75,299.5]]"),
        std::string::npos);
    EXPECT_NE(
        html.find("\"label\":\"ground \\u003c/script\\u003e\",\"colour\":\"#123456\",\"style\":\"dashed\","
                  "\"axis\":\"y2\""),
        std::string::npos);
}

TEST(HtmlReport, RendersTablesWithNumericColumnsAndLabelValueLists) {
    ReportDocument document;
    document.orientation = PageOrientation::Landscape;
    ReportTable outlets{"Outlets", {"outlet", "flow l/s"}, {{"1-1", "0.012"}}, {false, true}};
    ReportTable summary{"", {}, {{"Irrigated area", "57.09 ha"}}, {}};
    document.sections.push_back(ReportSection{"Chart", {ReportParagraph{"1 < 2"}, outlets, summary}});
    const auto html = HtmlReport::render(document);
    EXPECT_NE(html.find("<h2>Chart</h2>\n<p>1 &lt; 2</p>"), std::string::npos);
    EXPECT_NE(
        html.find("<caption>Outlets</caption>\n<thead><tr><th>outlet</th><th>flow l/s</th></tr></thead>"),
        std::string::npos);
    EXPECT_NE(html.find("<tr><td>1-1</td><td class=\"num\">0.012</td></tr>"), std::string::npos);
    EXPECT_NE(html.find("<table class=\"pairs\">"), std::string::npos);
    EXPECT_NE(html.find("@page { size: A4 landscape; }"), std::string::npos);
    EXPECT_NE(html.find("counter(page) \" of \" counter(pages)"), std::string::npos);
}

TEST(HtmlReport, WriteFileNamesAFileItCannotWrite) {
    caudalis::testing::TemporaryFolder folder;
    const auto path = folder.file("missing-folder/report.html");
    try {
        HtmlReport::writeFile(path, documentWithPlot());
        FAIL() << "no error";
    } catch (const std::runtime_error& error) {
        EXPECT_NE(std::string(error.what()).find(path), std::string::npos);
    }
}
