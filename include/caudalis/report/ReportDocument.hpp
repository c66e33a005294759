#pragma once

#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace caudalis::design {

/// A paragraph of plain text.
struct ReportParagraph {
    std::string text;
};

/// A table of text cells. Columns flagged in `numericColumns` are aligned to the right; a table
/// without headers prints as a list of label and value rows.
struct ReportTable {
    std::string caption;
    std::vector<std::string> headers;
    std::vector<std::vector<std::string>> rows;
    std::vector<bool> numericColumns;
};

/// Which vertical axis a plotted series is read against.
enum class PlotAxis { Left, Right };

/// How a series is drawn. A band is a line whose area down (or up) to the series before it is
/// shaded.
enum class SeriesStyle { Line, DashedLine, Points, Steps, Band };

/// One curve of a plot: (x, y) points in the order they are drawn.
struct PlotSeries {
    std::string label;
    std::vector<std::pair<double, double>> points;
    SeriesStyle style = SeriesStyle::Line;
    PlotAxis axis = PlotAxis::Left;
    /// A CSS colour; empty picks the next colour of the report's palette.
    std::string colour;
};

/// A line plot with numeric axes. `rightAxisLabel` is used when a series reads against the
/// right axis.
struct ReportPlot {
    std::string title;
    std::string xAxisLabel;
    std::string leftAxisLabel;
    std::string rightAxisLabel;
    std::vector<PlotSeries> series;
};

using ReportBlock = std::variant<ReportParagraph, ReportTable, ReportPlot>;

/// A headed part of a report: paragraphs, tables and plots in reading order.
struct ReportSection {
    std::string heading;
    std::vector<ReportBlock> blocks;
};

/// Page orientation of the printed report.
enum class PageOrientation { Portrait, Landscape };

/// A report as a sequence of sections, independent of how it is rendered. Hosts fill it and
/// hand it to a renderer (`HtmlReport`).
struct ReportDocument {
    std::string title;
    /// Lines under the title (machine, file, date, ...).
    std::vector<std::string> subtitle;
    std::vector<ReportSection> sections;
    PageOrientation orientation = PageOrientation::Portrait;
};

}  // namespace caudalis::design
