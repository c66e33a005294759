#include "caudalis/report/HtmlReport.hpp"

#include <array>
#include <fstream>
#include <stdexcept>

#include "caudalis/report/ChartJsLibrary.hpp"
#include "caudalis/report/HtmlText.hpp"

namespace caudalis::design {

namespace {

constexpr std::array<const char*, 8> palette = {"#1f77b4", "#d62728", "#2ca02c", "#ff7f0e",
                                                "#9467bd", "#8c564b", "#e377c2", "#17becf"};

const char* const styleSheet = R"css(
:root { font-family: "DejaVu Sans", Arial, sans-serif; font-size: 10.5pt; color: #111; }
body { margin: 1.5em auto; max-width: 78em; padding: 0 1em; }
h1 { font-size: 1.5em; margin: 0 0 0.2em 0; }
.subtitle { margin: 0 0 1em 0; color: #444; }
.subtitle p { margin: 0.1em 0; }
h2 { font-size: 1.15em; border-bottom: 1px solid #888; margin: 1.4em 0 0.5em 0; break-after: avoid; }
p { margin: 0.4em 0; }
table { border-collapse: collapse; margin: 0.4em 0 0.9em 0; font-size: 0.88em; }
caption { text-align: left; font-weight: bold; padding: 0.2em 0; }
th, td { border: 1px solid #bbb; padding: 0.15em 0.45em; vertical-align: top; }
th { background: #eee; font-weight: bold; }
td.num { text-align: right; font-variant-numeric: tabular-nums; white-space: nowrap; }
table.pairs td:first-child { font-weight: bold; background: #f6f6f6; }
thead { display: table-header-group; }
tr { break-inside: avoid; }
figure.plot { margin: 0.6em 0 1.2em 0; break-inside: avoid; }
figure.plot canvas { width: 100%; max-width: 60em; height: auto; border: 1px solid #ddd; }
figcaption { font-weight: bold; margin-bottom: 0.2em; }
footer { margin-top: 2em; font-size: 0.8em; color: #555; }
@media print {
  body { margin: 0; max-width: none; padding: 0; }
  figure.plot canvas { max-width: 100%; }
}
@page { margin: 14mm 12mm 16mm 12mm;
  @bottom-right { content: "Page " counter(page) " of " counter(pages); font-size: 8.5pt; } }
)css";

const char* const plotScript = R"js(
function caudalisPlot(id, plot) {
  const datasets = plot.series.map(function (s) {
    return { label: s.label, data: s.points.map(function (p) { return { x: p[0], y: p[1] }; }),
      borderColor: s.colour, backgroundColor: s.style === 'band' ? s.colour + '40' : s.colour,
      yAxisID: s.axis, fill: s.style === 'band' ? '-1' : false,
      borderWidth: 2, borderDash: s.style === 'dashed' ? [6, 4] : [],
      showLine: s.style !== 'points', stepped: s.style === 'steps' ? 'before' : false,
      pointRadius: s.style === 'points' ? 3 : 0, spanGaps: false };
  });
  const scales = {
    x: { type: 'linear', title: { display: true, text: plot.x } },
    y: { type: 'linear', position: 'left', title: { display: true, text: plot.y } }
  };
  if (plot.series.some(function (s) { return s.axis === 'y2'; })) {
    scales.y2 = { type: 'linear', position: 'right', grid: { drawOnChartArea: false },
      title: { display: true, text: plot.y2 } };
  }
  new Chart(document.getElementById(id), { type: 'line', data: { datasets: datasets },
    options: { animation: false, responsive: false, devicePixelRatio: 2, parsing: false,
      plugins: { legend: { position: 'bottom' } }, scales: scales } });
}
)js";

std::string seriesStyle(SeriesStyle style) {
    switch (style) {
        case SeriesStyle::DashedLine:
            return "dashed";
        case SeriesStyle::Points:
            return "points";
        case SeriesStyle::Steps:
            return "steps";
        case SeriesStyle::Band:
            return "band";
        case SeriesStyle::Line:
            break;
    }
    return "line";
}

std::string pointsJson(const PlotSeries& series) {
    std::string json = "[";
    for (const auto& [x, y] : series.points) {
        json +=
            (json.size() > 1 ? ",[" : "[") + HtmlText::jsonNumber(x) + "," + HtmlText::jsonNumber(y) + "]";
    }
    return json + "]";
}

std::string seriesJson(const PlotSeries& series, std::size_t index) {
    const std::string colour = series.colour.empty() ? palette[index % palette.size()] : series.colour;
    return "{\"label\":" + HtmlText::jsonString(series.label) +
           ",\"colour\":" + HtmlText::jsonString(colour) + ",\"style\":\"" + seriesStyle(series.style) +
           "\",\"axis\":\"" + (series.axis == PlotAxis::Right ? "y2" : "y") +
           "\",\"points\":" + pointsJson(series) + "}";
}

std::string plotJson(const ReportPlot& plot) {
    std::string series;
    for (std::size_t i = 0; i < plot.series.size(); ++i) {
        series += (i > 0 ? "," : "") + seriesJson(plot.series[i], i);
    }
    return "{\"x\":" + HtmlText::jsonString(plot.xAxisLabel) +
           ",\"y\":" + HtmlText::jsonString(plot.leftAxisLabel) +
           ",\"y2\":" + HtmlText::jsonString(plot.rightAxisLabel) + ",\"series\":[" + series + "]}";
}

bool numericColumn(const ReportTable& table, std::size_t column) {
    return column < table.numericColumns.size() && table.numericColumns[column];
}

std::string tableRow(const ReportTable& table, const std::vector<std::string>& cells) {
    std::string row = "<tr>";
    for (std::size_t i = 0; i < cells.size(); ++i) {
        row += numericColumn(table, i) ? "<td class=\"num\">" : "<td>";
        row += HtmlText::escape(cells[i]) + "</td>";
    }
    return row + "</tr>\n";
}

std::string tableHtml(const ReportTable& table) {
    std::string html = table.headers.empty() ? "<table class=\"pairs\">\n" : "<table>\n";
    if (!table.caption.empty()) {
        html += "<caption>" + HtmlText::escape(table.caption) + "</caption>\n";
    }
    if (!table.headers.empty()) {
        html += "<thead><tr>";
        for (const auto& header : table.headers) {
            html += "<th>" + HtmlText::escape(header) + "</th>";
        }
        html += "</tr></thead>\n";
    }
    html += "<tbody>\n";
    for (const auto& cells : table.rows) {
        html += tableRow(table, cells);
    }
    return html + "</tbody></table>\n";
}

/// Renders one block; plots add their drawing call to `plotScripts`.
class BlockRenderer {
public:
    explicit BlockRenderer(std::string& plotScripts) : plotScripts_(plotScripts) {}

    std::string operator()(const ReportParagraph& paragraph) const {
        return "<p>" + HtmlText::escape(paragraph.text) + "</p>\n";
    }
    std::string operator()(const ReportTable& table) const { return tableHtml(table); }
    std::string operator()(const ReportPlot& plot) {
        const std::string id = "plot-" + std::to_string(++plots_);
        plotScripts_ += "caudalisPlot(\"" + id + "\", " + plotJson(plot) + ");\n";
        return "<figure class=\"plot\"><figcaption>" + HtmlText::escape(plot.title) +
               "</figcaption><canvas id=\"" + id +
               "\" width=\"960\" height=\"380\" role=\"img\" aria-label=\"" + HtmlText::escape(plot.title) +
               "\"></canvas></figure>\n";
    }

private:
    std::string& plotScripts_;
    int plots_ = 0;
};

}  // namespace

std::string HtmlReport::head(const ReportDocument& document) {
    const char* const pageSize = document.orientation == PageOrientation::Landscape
                                     ? "@page { size: A4 landscape; }\n"
                                     : "@page { size: A4; }\n";
    return "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
           "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; "
           "script-src 'unsafe-inline'; style-src 'unsafe-inline'; img-src data:\">\n"
           "<title>" +
           HtmlText::escape(document.title) + "</title>\n<style>" + styleSheet + pageSize +
           "</style>\n</head>\n";
}

std::string HtmlReport::body(const ReportDocument& document, std::string& plotScripts) {
    std::string html = "<body>\n<h1>" + HtmlText::escape(document.title) + "</h1>\n<div class=\"subtitle\">";
    for (const auto& line : document.subtitle) {
        html += "<p>" + HtmlText::escape(line) + "</p>";
    }
    html += "</div>\n";
    BlockRenderer renderer(plotScripts);
    for (const auto& section : document.sections) {
        html += "<section>\n<h2>" + HtmlText::escape(section.heading) + "</h2>\n";
        for (const auto& block : section.blocks) {
            html += std::visit(renderer, block);
        }
        html += "</section>\n";
    }
    return html + "<footer>Plots drawn by " + HtmlText::escape(ChartJsLibrary::version()) +
           " (MIT licence), embedded in this file.</footer>\n";
}

std::string HtmlReport::render(const ReportDocument& document) {
    std::string plotScripts;
    std::string html = head(document) + body(document, plotScripts);
    html += "<script>\n" + ChartJsLibrary::source() + "\n</script>\n";
    html += "<script>\n" + std::string(plotScript) + plotScripts + "</script>\n</body>\n</html>\n";
    return html;
}

void HtmlReport::writeFile(const std::string& path, const ReportDocument& document) {
    const std::string html = render(document);
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << html;
    out.close();
    if (!out) {
        throw std::runtime_error("cannot write the report " + path);
    }
}

}  // namespace caudalis::design
