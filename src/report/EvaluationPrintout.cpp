#include "caudalis/report/EvaluationPrintout.hpp"

#include <algorithm>

#include "caudalis/design/UnitText.hpp"
#include "caudalis/fieldtests/CatchCanStatistics.hpp"

namespace caudalis::design {

namespace {

using Points = std::vector<std::pair<double, double>>;

/// "distance (m)", "depth (in)".
std::string heading(const std::string& label, Quantity quantity, const UnitText& text) {
    std::string heading = label;
    heading += " (";
    heading += text.units().symbol(quantity);
    heading += ')';
    return heading;
}

std::string percent(double value) {
    return UnitText::fixed(value, 1);
}

ReportTable pairs(std::vector<std::vector<std::string>> rows) {
    return ReportTable{"", {}, std::move(rows), {}};
}

/// A section holding the table, or the sentence `none` when the table has no rows.
ReportSection tableOrNone(std::string heading, ReportTable table, std::string none) {
    if (table.rows.empty()) {
        return ReportSection{std::move(heading), {ReportParagraph{std::move(none)}}};
    }
    return ReportSection{std::move(heading), {std::move(table)}};
}

/// What a collector caught as it is stored: ml as they are, a depth in the units of `text`.
std::string amountText(const FieldReading& reading, const UnitText& text) {
    return reading.sample.collectedAmount == reading.depth.depth && !reading.depth.p_null
               ? text.number(Quantity::Depth, reading.sample.collectedAmount)
               : UnitText::fixed(reading.sample.collectedAmount, 2);
}

std::string collectorLabel(const FieldReading& reading) {
    return reading.collector.empty() ? "-" : reading.collector;
}

std::string where(const FieldReading& reading) {
    return reading.source + " line " + std::to_string(reading.sourceLine);
}

bool sameReading(const FieldReading& a, const FieldReading& b) {
    return a.line == b.line && a.sourceLine == b.sourceLine && a.source == b.source;
}

bool isLeftOut(const FieldEvaluationResult& result, const FieldReading& reading) {
    return std::any_of(result.excluded.begin(), result.excluded.end(), [&](const ExcludedReading& excluded) {
        return sameReading(excluded.reading, reading);
    });
}

/// The collectors of each line that count or stand in the end-gun zone, and those left out
/// that still have a depth, as (distance, depth) points.
struct PlottedCollectors {
    std::vector<Points> lines;
    Points leftOut;
    double fromM = 0;
    double toM = 0;
};

/// The collectors' points in SI; the plot converts them.
PlottedCollectors plottedCollectors(const EvaluationPrintoutInput& input) {
    PlottedCollectors plotted;
    plotted.lines.resize(std::max<std::size_t>(1, input.readings.lineNames.size()));
    bool first = true;
    for (const auto& reading : input.readings.readings) {
        if (reading.depth.p_null) {
            continue;
        }
        const std::pair<double, double> point{reading.depth.distanceFromCenter, reading.depth.depth};
        const auto line = static_cast<std::size_t>(std::max(1, reading.line) - 1);
        if (line >= plotted.lines.size()) {
            plotted.lines.resize(line + 1);
        }
        (isLeftOut(input.result, reading) ? plotted.leftOut : plotted.lines[line]).push_back(point);
        plotted.fromM = first ? point.first : std::min(plotted.fromM, point.first);
        plotted.toM = first ? point.first : std::max(plotted.toM, point.first);
        first = false;
    }
    for (auto& line : plotted.lines) {
        std::sort(line.begin(), line.end());
    }
    return plotted;
}

/// The distances of the collectors that count in the figures of both lines together.
std::pair<double, double> countedRange(const FieldEvaluationResult& result) {
    double from = 0;
    double to = 0;
    bool first = true;
    for (const auto& line : result.counted) {
        for (const auto& reading : line) {
            const double r = reading.depth.distanceFromCenter;
            from = first ? r : std::min(from, r);
            to = first ? r : std::max(to, r);
            first = false;
        }
    }
    return {from, to};
}

PlotSeries series(std::string label, Points points, SeriesStyle style, std::string colour = "") {
    return PlotSeries{std::move(label), std::move(points), style, PlotAxis::Left, std::move(colour)};
}

Points level(double depth, std::pair<double, double> range) {
    return {{range.first, depth}, {range.second, depth}};
}

double machineEndM(const DesignedMachine& machine) {
    double end = machine.spans.empty() ? 0 : machine.spans.back().toM;
    for (const auto& outlet : machine.outlets) {
        end = std::max(end, outlet.radiusM + (outlet.endGun ? outlet.ringWidthM : 0));
    }
    return end;
}

std::vector<std::pair<std::string, const CatchCanFigures*>> figureColumns(
    const FieldEvaluationResult& result) {
    std::vector<std::pair<std::string, const CatchCanFigures*>> columns;
    for (const auto& line : result.lines) {
        columns.emplace_back("line " + line.name, &line.figures);
    }
    if (result.lines.size() > 1) {
        columns.emplace_back("lines' mean", &result.lineAverage);
        columns.emplace_back("both lines together", &result.together);
    }
    if (result.endGunZone) {
        columns.emplace_back("end-gun zone", &*result.endGunZone);
    }
    return columns;
}

std::optional<double> figureNamed(const CatchCanFigures& figures, const std::string& name) {
    for (const auto& [figure, value] : CatchCanStatistics::named(figures)) {
        if (figure == name) {
            return value;
        }
    }
    return std::nullopt;
}

std::vector<std::string> subtitle(const EvaluationPrintoutInput& input, const UnitText& text) {
    const auto& result = input.result;
    const auto& settings = result.settings;
    const auto counted = result.together.collectors + (result.endGunZone ? result.endGunZone->collectors : 0);
    std::vector<std::string> lines{
        std::to_string(result.readings) + " readings: " + std::to_string(counted) + " counted, " +
        std::to_string(result.excluded.size()) + " left out; " +
        (input.readings.amounts == StoredAmount::VolumeMl
             ? "volumes in ml caught in gauges of " +
                   text.text(Quantity::Length, input.readings.gaugeDiameterM) + " opening"
             : std::string("depths in ").append(text.units().symbol(Quantity::Depth)))};
    std::string limits = "Collectors weighted by their distance from the centre";
    if (settings.innerRadiusM > 0) {
        limits += "; inner radius " + text.text(Quantity::Length, settings.innerRadiusM);
    }
    if (settings.lastSpanEndM) {
        limits += "; the last span ends at " + text.text(Quantity::Length, *settings.lastSpanEndM) +
                  " (beyond: end-gun zone)";
    }
    lines.push_back(limits);
    if (input.designed) {
        lines.push_back("Beside the design " + input.designed->source + " at a timer setting of " +
                        UnitText::fixed(input.designed->timerPercent, 0) + " %");
    }
    return lines;
}

}  // namespace

const std::vector<CatchCanFigureLabel>& EvaluationPrintout::figureLabels() {
    static const std::vector<CatchCanFigureLabel> labels{
        {"collectors", "Collectors", 0},
        {"mean_depth_mm", "Mean depth", 2, true},
        {"low_quarter_mean_mm", "Low-quarter mean depth", 2, true},
        {"cu_hh_percent", "CU Heermann-Hein (%)", 1},
        {"du_lq_percent", "DU low quarter (%)", 1},
        {"scheduling_coefficient_5_percent", "Scheduling coefficient 5 %", 2},
        {"scheduling_coefficient_1_percent", "Scheduling coefficient 1 %", 2},
        {"mean_over_low_quarter_mean", "Mean / low-quarter mean", 2},
        {"cu_moving_average_percent", "CU 3-collector average (%)", 1},
    };
    return labels;
}

std::string CatchCanFigureLabel::heading(const UnitText& text) const {
    return depth ? ::caudalis::design::heading(label, Quantity::Depth, text) : std::string(label);
}

std::string CatchCanFigureLabel::valueText(const std::optional<double>& value, const UnitText& text) const {
    if (!depth || !value) {
        return EvaluationPrintout::figureText(value, decimals);
    }
    return text.number(Quantity::Depth, *value);
}

std::string CatchCanFigureLabel::key(const Units& units) const {
    if (!depth) {
        return name;
    }
    std::string key = name;
    key.erase(key.rfind('_') + 1);
    key += units.suffix(Quantity::Depth);
    return key;
}

std::optional<double> CatchCanFigureLabel::value(const std::optional<double>& value,
                                                 const Units& units) const {
    if (!depth || !value) {
        return value;
    }
    return units.fromSI(Quantity::Depth, *value);
}

std::string EvaluationPrintout::reasonText(const ExcludedReading& excluded) {
    switch (excluded.reason) {
        case ExclusionReason::CrewFlag:
            return "struck out by the crew (" + excluded.reading.crewExclusion + ")";
        case ExclusionReason::InsideRadius:
            return "inside the inner radius";
        case ExclusionReason::Invalid:
            break;
    }
    return "not a valid reading";
}

std::string EvaluationPrintout::figureText(const std::optional<double>& value, int decimals) {
    return value ? UnitText::fixed(*value, decimals) : std::string("n/a");
}

std::vector<std::pair<double, double>> EvaluationPrintout::designedProfile(const DesignedBeside& designed,
                                                                           double fromM, double toM) {
    const double wettedRadius = designed.comparison.wettedDiameterM / 2;
    const double perPass = 100 / designed.timerPercent;
    Points profile;
    const double step = (toM - fromM) / profilePoints;
    for (int i = 0; i <= profilePoints; ++i) {
        const double r = fromM + step * i;
        profile.emplace_back(
            r, perPass * MeasuredDesignedComparison::designedDepthAt(designed.machine, r, wettedRadius));
    }
    return profile;
}

ReportSection EvaluationPrintout::depthPlot(const EvaluationPrintoutInput& input) {
    const auto plotted = plottedCollectors(input);
    const auto& result = input.result;
    const UnitText text(input.units);
    const auto converted = [&input](Points points) {
        for (auto& [r, depth] : points) {
            r = input.units.fromSI(Quantity::Length, r);
            depth = input.units.fromSI(Quantity::Depth, depth);
        }
        return points;
    };
    ReportPlot plot{"Depth caught along the radius",
                    heading("distance from the centre", Quantity::Length, text),
                    heading("depth", Quantity::Depth, text),
                    "",
                    {}};
    for (std::size_t i = 0; i < plotted.lines.size(); ++i) {
        if (!plotted.lines[i].empty()) {
            plot.series.push_back(series("line " + input.readings.lineName(static_cast<int>(i + 1)),
                                         converted(plotted.lines[i]), SeriesStyle::Points));
        }
    }
    if (!plotted.leftOut.empty()) {
        plot.series.push_back(series("left out", converted(plotted.leftOut), SeriesStyle::Points, "#9a9a9a"));
    }
    if (input.designed) {
        const auto& designed = *input.designed;
        const double from = std::max(0.5, plotted.fromM);
        const double to = std::max(plotted.toM, machineEndM(designed.machine));
        const auto profile = designedProfile(designed, from, to);
        plot.series.push_back(series("designed, timer " + UnitText::fixed(designed.timerPercent, 0) + " %",
                                     converted(profile), SeriesStyle::Line, "#2ca02c"));
        Points levelled;
        const double factor = designed.comparison.levelFactor * designed.timerPercent / 100;
        for (const auto& [r, depth] : profile) {
            levelled.emplace_back(r, depth * factor);
        }
        plot.series.push_back(series("designed, at the measured level", converted(levelled),
                                     SeriesStyle::DashedLine, "#8c564b"));
    }
    const auto range = countedRange(result);
    if (result.together.meanDepthMm) {
        plot.series.push_back(series("mean " + text.depth(*result.together.meanDepthMm),
                                     converted(level(*result.together.meanDepthMm, range)),
                                     SeriesStyle::DashedLine, "#000000"));
        if (result.together.lowQuarterMeanMm) {
            plot.series.push_back(series(
                "low quarter: mean " + text.depth(*result.together.lowQuarterMeanMm) + " up to the mean",
                converted(level(*result.together.lowQuarterMeanMm, range)), SeriesStyle::Band, "#ff7f0e"));
        }
    }
    return ReportSection{"Depth along the radius", {plot}};
}

ReportTable EvaluationPrintout::figuresTable(const FieldEvaluationResult& result, const UnitText& text) {
    const auto columns = figureColumns(result);
    ReportTable table{"Figures (distance-weighted)", {"figure"}, {}, {false}};
    for (const auto& column : columns) {
        table.headers.push_back(column.first);
        table.numericColumns.push_back(true);
    }
    for (const auto& label : figureLabels()) {
        std::vector<std::string> row{label.heading(text)};
        for (const auto& column : columns) {
            row.push_back(label.valueText(figureNamed(*column.second, label.name), text));
        }
        table.rows.push_back(std::move(row));
    }
    return table;
}

ReportSection EvaluationPrintout::figures(const FieldEvaluationResult& result, const UnitText& text) {
    ReportSection section{"Figures", {figuresTable(result, text)}};
    const auto& settings = result.settings;
    if (settings.expectedDepthMm) {
        section.blocks.push_back(
            pairs({{heading("Expected depth", Quantity::Depth, text),
                    text.number(Quantity::Depth, *settings.expectedDepthMm)},
                   {"Mean depth / expected (%)", result.appliedPercentOfExpected
                                                     ? percent(*result.appliedPercentOfExpected)
                                                     : std::string("n/a")}}));
    }
    return section;
}

ReportSection EvaluationPrintout::leftOut(const FieldEvaluationResult& result, const UnitText& text) {
    ReportTable table{
        "",
        {"line", "collector", heading("distance", Quantity::Length, text), "amount", "why", "read from"},
        {},
        {}};
    table.numericColumns = {false, false, true, true, false, false};
    for (const auto& excluded : result.excluded) {
        const auto& reading = excluded.reading;
        table.rows.push_back({result.lineName(reading.line), collectorLabel(reading),
                              text.number(Quantity::Length, reading.sample.distanceFromCenter),
                              amountText(reading, text), reasonText(excluded), where(reading)});
    }
    return tableOrNone("Collectors left out", std::move(table), "None: every reading counts.");
}

ReportSection EvaluationPrintout::outliers(const FieldEvaluationResult& result, const UnitText& text) {
    ReportTable table{"",
                      {"line", "collector", heading("distance", Quantity::Length, text),
                       heading("depth", Quantity::Depth, text), "off the mean (%)", "read from"},
                      {},
                      {}};
    table.numericColumns = {false, false, true, true, true, false};
    for (const auto& outlier : result.outliers) {
        const auto& reading = outlier.reading;
        table.rows.push_back({result.lineName(reading.line), collectorLabel(reading),
                              text.number(Quantity::Length, reading.depth.distanceFromCenter),
                              text.number(Quantity::Depth, reading.depth.depth),
                              (outlier.deviationPercent > 0 ? "+" : "") + percent(outlier.deviationPercent),
                              where(reading)});
    }
    return tableOrNone(
        "Collectors more than " + UnitText::fixed(result.settings.outlierPercent, 0) + " % off the mean",
        std::move(table), "None.");
}

ReportSection EvaluationPrintout::comparison(const DesignedBeside& designed, const UnitText& text) {
    const auto& comparison = designed.comparison;
    ReportSection section{"Measured beside designed", {}};
    section.blocks.push_back(pairs({
        {"Design", designed.source},
        {heading("Wetted diameter", Quantity::Length, text),
         text.number(Quantity::Length, comparison.wettedDiameterM) + " (" + designed.wettedDiameterFrom +
             ")"},
        {"Measured level (% of designed)", percent(100 * comparison.levelFactor)},
        {heading("Collector spacing", Quantity::Length, text),
         text.number(Quantity::Length, comparison.collectorSpacingM)},
    }));
    ReportTable spans{"Spans, the largest difference first",
                      {"span", heading("from", Quantity::Length, text), heading("to", Quantity::Length, text),
                       "collectors", "mean difference (%)"},
                      {},
                      {false, true, true, true, true}};
    for (const auto& span : comparison.spans) {
        spans.rows.push_back({std::to_string(span.span.number),
                              text.number(Quantity::Length, span.span.fromM),
                              text.number(Quantity::Length, span.span.toM), std::to_string(span.collectors),
                              percent(span.meanDifferencePercent)});
    }
    section.blocks.push_back(spans);
    if (!comparison.outletsResolved) {
        section.blocks.push_back(
            ReportParagraph{"Collectors " + text.text(Quantity::Length, comparison.collectorSpacingM) +
                            " apart cannot single out outlets of a " +
                            text.text(Quantity::Length, comparison.wettedDiameterM) + " wetted diameter."});
        return section;
    }
    ReportTable outlets{"Outlets, the largest difference first",
                        {"outlet", heading("distance", Quantity::Length, text), "flow from design (%)"},
                        {},
                        {false, true, true}};
    for (const auto& outlet : comparison.outlets) {
        const auto& o = outlet.outlet;
        outlets.rows.push_back(
            {o.endGun ? std::string("end gun") : std::to_string(o.span) + "-" + std::to_string(o.number),
             text.number(Quantity::Length, o.radiusM), percent(outlet.estimatedPercent)});
    }
    section.blocks.push_back(outlets);
    ReportPlot differences{"Measured against designed, collector by collector",
                           heading("distance from the centre", Quantity::Length, text),
                           "difference (%)",
                           "",
                           {}};
    Points points;
    for (const auto& collector : comparison.collectors) {
        points.emplace_back(text.units().fromSI(Quantity::Length, collector.reading.depth.distanceFromCenter),
                            collector.differencePercent);
    }
    differences.series.push_back(series("100 (measured - designed) / designed", points, SeriesStyle::Points));
    section.blocks.push_back(differences);
    return section;
}

ReportSection EvaluationPrintout::collectors(const EvaluationPrintoutInput& input) {
    const bool designed = input.designed.has_value();
    const UnitText text(input.units);
    ReportTable table{"",
                      {"line", "collector", heading("distance", Quantity::Length, text),
                       heading("depth", Quantity::Depth, text)},
                      {},
                      {false, false, true, true}};
    if (designed) {
        table.headers.insert(table.headers.end(),
                             {heading("designed", Quantity::Depth, text), "difference (%)"});
        table.numericColumns.insert(table.numericColumns.end(), {true, true});
    }
    for (const auto& reading : input.readings.readings) {
        std::vector<std::string> row{
            input.readings.lineName(reading.line), collectorLabel(reading),
            text.number(Quantity::Length, reading.sample.distanceFromCenter),
            reading.depth.p_null ? std::string("-") : text.number(Quantity::Depth, reading.depth.depth)};
        if (designed) {
            const auto& compared = input.designed->comparison.collectors;
            const auto match = std::find_if(compared.begin(), compared.end(),
                                            [&](const auto& c) { return sameReading(c.reading, reading); });
            row.push_back(match == compared.end() ? "-" : text.number(Quantity::Depth, match->designedMm));
            row.push_back(match == compared.end() ? "-" : percent(match->differencePercent));
        }
        table.rows.push_back(std::move(row));
    }
    return ReportSection{"Every collector", {table}};
}

ReportDocument EvaluationPrintout::document(const EvaluationPrintoutInput& input) {
    ReportDocument document;
    document.title = "Field evaluation: " + input.name;
    const UnitText text(input.units);
    document.subtitle = subtitle(input, text);
    document.sections = {depthPlot(input), figures(input.result, text), leftOut(input.result, text),
                         outliers(input.result, text)};
    if (input.designed) {
        document.sections.push_back(comparison(*input.designed, text));
    }
    document.sections.push_back(collectors(input));
    return document;
}

}  // namespace caudalis::design
