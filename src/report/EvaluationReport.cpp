#include "caudalis/report/EvaluationReport.hpp"

#include <algorithm>

#include <fmt/format.h>
#include <fmt/ostream.h>

#include "JsonValue.hpp"
#include "caudalis/fieldtests/CatchCanStatistics.hpp"
#include "caudalis/report/EvaluationPrintout.hpp"
#include "caudalis/report/PlainTextReport.hpp"
#include "caudalis/report/StoredFigureText.hpp"

namespace caudalis::fieldtests {

namespace {

using design::CatchCanFigures;
using design::CatchCanStatistics;
using design::ExclusionReason;
using design::FieldReading;

using design::EvaluationPrintout;
using design::Quantity;
using design::Units;
using design::UnitText;

void line(std::ostream& out, const std::string& label, const std::string& value) {
    fmt::print(out, "  {:<32}{}\n", label, value);
}

std::string where(const FieldReading& reading) {
    return fmt::format("{} line {}", reading.source, reading.sourceLine);
}

std::string collectorName(const FieldReading& reading) {
    return reading.collector.empty() ? std::string() : " collector " + reading.collector;
}

const char* reasonName(ExclusionReason reason) {
    switch (reason) {
        case ExclusionReason::CrewFlag:
            return "crew";
        case ExclusionReason::InsideRadius:
            return "inside_inner_radius";
        case ExclusionReason::Invalid:
            break;
    }
    return "invalid";
}

/// A key ending in the unit of its quantity: "distance_m", "depth_in".
std::string key(const char* base, Quantity quantity, const Units& units) {
    std::string key = base;
    key += '_';
    key += units.suffix(quantity);
    return key;
}

nlohmann::json figuresJson(const CatchCanFigures& figures, const Units& units) {
    auto json = nlohmann::json::object();
    for (const auto& [name, value] : CatchCanStatistics::named(figures)) {
        const auto& labels = EvaluationPrintout::figureLabels();
        const std::string& figure = name;
        const auto label =
            std::find_if(labels.begin(), labels.end(), [&](const auto& l) { return figure == l.name; });
        if (label == labels.end()) {
            json[name] = optionalJson(value);
        } else {
            json[label->key(units)] = optionalJson(label->value(value, units));
        }
    }
    return json;
}

/// What a reading holds, with its amount in ml or as a depth in `units`, as the readings' amounts are.
nlohmann::json readingJson(const FieldReading& reading, const Units& units, design::StoredAmount amounts) {
    const double amount = amounts == design::StoredAmount::DepthMm
                              ? units.fromSI(Quantity::Depth, reading.sample.collectedAmount)
                              : reading.sample.collectedAmount;
    return {{"line", reading.line},
            {"collector", reading.collector},
            {"file", reading.source},
            {"file_line", reading.sourceLine},
            {"amount", amount},
            {key("distance", Quantity::Length, units),
             units.fromSI(Quantity::Length, reading.sample.distanceFromCenter)},
            {key("depth", Quantity::Depth, units),
             reading.depth.p_null ? nlohmann::json(nullptr)
                                  : nlohmann::json(units.fromSI(Quantity::Depth, reading.depth.depth))},
            {"crew_flag", reading.crewExclusion}};
}

nlohmann::json comparisonJson(const DesignReference& design, const design::DesignComparison& comparison,
                              const Units& units, design::StoredAmount amounts) {
    const auto length = [&units](double metres) { return units.fromSI(Quantity::Length, metres); };
    auto collectors = nlohmann::json::array();
    for (const auto& collector : comparison.collectors) {
        auto entry = readingJson(collector.reading, units, amounts);
        entry[key("designed", Quantity::Depth, units)] = units.fromSI(Quantity::Depth, collector.designedMm);
        entry["difference_percent"] = collector.differencePercent;
        collectors.push_back(entry);
    }
    auto outlets = nlohmann::json::array();
    for (const auto& outlet : comparison.outlets) {
        outlets.push_back({{"span", outlet.outlet.span},
                           {"outlet", outlet.outlet.number},
                           {"end_gun", outlet.outlet.endGun},
                           {key("radius", Quantity::Length, units), length(outlet.outlet.radiusM)},
                           {"estimated_percent", outlet.estimatedPercent}});
    }
    auto spans = nlohmann::json::array();
    for (const auto& span : comparison.spans) {
        spans.push_back({{"span", span.span.number},
                         {key("from", Quantity::Length, units), length(span.span.fromM)},
                         {key("to", Quantity::Length, units), length(span.span.toM)},
                         {"collectors", span.collectors},
                         {"mean_difference_percent", span.meanDifferencePercent}});
    }
    return {{"design_file", design.designPath},
            {"timer_percent", design.timerPercent},
            {key("wetted_diameter", Quantity::Length, units), length(comparison.wettedDiameterM)},
            {"wetted_diameter_from", design.wettedDiameterFrom},
            {"level_factor", comparison.levelFactor},
            {key("collector_spacing", Quantity::Length, units), length(comparison.collectorSpacingM)},
            {"outlets_resolved", comparison.outletsResolved},
            {"collectors", collectors},
            {"outlets", outlets},
            {"spans", spans}};
}

nlohmann::json storedEvaluationJson(const design::StoredFieldEvaluation& stored) {
    auto figures = nlohmann::json::array();
    for (const auto& figure : stored.figures) {
        figures.push_back({{"scope", figure.scope},
                           {"figure", figure.figure},
                           {"value", optionalJson(figure.value)},
                           {"note", figure.note}});
    }
    const auto& evaluation = stored.evaluation;
    return {{"id", evaluation.id},
            {"name", evaluation.name},
            {"gauge_diameter_m", evaluation.pluviometer.diameter},
            {"first_line_readings", evaluation.firstSample.count()},
            {"second_line_readings", evaluation.secondSample.count()},
            {"figures", figures}};
}

}  // namespace

void EvaluationReport::writeReadingNotes(std::ostream& out, const design::FieldEvaluationResult& result,
                                         const UnitText& text) {
    for (const auto& excluded : result.excluded) {
        fmt::print(out, "  left out: line {}{} {:g} at {}, {} ({})\n", result.lineName(excluded.reading.line),
                   collectorName(excluded.reading), excluded.reading.sample.collectedAmount,
                   text.general(Quantity::Length, excluded.reading.sample.distanceFromCenter),
                   EvaluationPrintout::reasonText(excluded), where(excluded.reading));
    }
    fmt::print(out, "Collectors more than {:g} % off the mean: {}\n", result.settings.outlierPercent,
               result.outliers.size());
    for (const auto& outlier : result.outliers) {
        fmt::print(out, "  line {}{} at {:>8} {}: {:>8} {} ({:+.1f} %)  {}\n",
                   result.lineName(outlier.reading.line), collectorName(outlier.reading),
                   text.number(Quantity::Length, outlier.reading.depth.distanceFromCenter),
                   text.units().symbol(Quantity::Length),
                   text.number(Quantity::Depth, outlier.reading.depth.depth),
                   text.units().symbol(Quantity::Depth), outlier.deviationPercent, where(outlier.reading));
    }
}

void EvaluationReport::writeComparison(std::ostream& out, const DesignReference& design,
                                       const design::DesignComparison& comparison, const UnitText& text) {
    const auto length = [&text](double metres) { return text.general(Quantity::Length, metres); };
    fmt::print(out,
               "Measured beside designed ({}, wetted diameter {} from {}; measured level {:.0f} % of "
               "designed):\n",
               design.designPath, length(comparison.wettedDiameterM), design.wettedDiameterFrom,
               100 * comparison.levelFactor);
    for (const auto& span : comparison.spans) {
        fmt::print(out, "  span {} ({}-{}): {:+.1f} % over {} collectors\n", span.span.number,
                   fmt::format("{:g}", text.units().fromSI(Quantity::Length, span.span.fromM)),
                   length(span.span.toM), span.meanDifferencePercent, span.collectors);
    }
    if (!comparison.outletsResolved) {
        fmt::print(out, "  collectors {} apart cannot single out outlets of a {} wetted diameter\n",
                   length(comparison.collectorSpacingM), length(comparison.wettedDiameterM));
    }
    const auto shown = std::min(outletsListed, comparison.outlets.size());
    for (std::size_t i = 0; i < shown; ++i) {
        const auto& outlet = comparison.outlets[i].outlet;
        const auto name =
            outlet.endGun ? std::string("end gun") : fmt::format("outlet {}-{}", outlet.span, outlet.number);
        fmt::print(out, "  {} at {}: flow about {:+.0f} % from design\n", name,
                   text.text(Quantity::Length, outlet.radiusM, -1), comparison.outlets[i].estimatedPercent);
    }
}

void EvaluationReport::write(std::ostream& out, const EvaluationOutcome& outcome) {
    const auto& result = outcome.result;
    const auto& readings = outcome.readings;
    const UnitText text(outcome.units);
    const auto counted = result.together.collectors + (result.endGunZone ? result.endGunZone->collectors : 0);
    fmt::print(out, "Field evaluation: {}\n", outcome.name);
    line(out, "Readings",
         fmt::format("{} ({} counted, {} left out)", result.readings, counted, result.excluded.size()));
    line(out, "Amounts",
         readings.amounts == design::StoredAmount::VolumeMl
             ? fmt::format("ml in gauges of {} opening",
                           text.general(Quantity::Length, readings.gaugeDiameterM))
             : "depths in " + text.units().symbol(Quantity::Depth));
    if (result.settings.innerRadiusM > 0) {
        line(out, "Inner radius", text.general(Quantity::Length, result.settings.innerRadiusM));
    }
    if (result.settings.lastSpanEndM) {
        line(out, "Last span ends at",
             text.general(Quantity::Length, *result.settings.lastSpanEndM) + " (beyond: end-gun zone)");
    }
    out << design::PlainTextReport::table(EvaluationPrintout::figuresTable(result, text));
    if (result.settings.expectedDepthMm) {
        line(out, "Expected depth", text.depth(*result.settings.expectedDepthMm));
        if (result.appliedPercentOfExpected) {
            line(out, "Mean depth / expected", fmt::format("{:.1f} %", *result.appliedPercentOfExpected));
        }
    }
    writeReadingNotes(out, result, text);
    if (outcome.design && outcome.comparison) {
        writeComparison(out, *outcome.design, *outcome.comparison, text);
    }
}

namespace {

nlohmann::json outcomeJson(const EvaluationOutcome& outcome) {
    const auto& result = outcome.result;
    const auto& units = outcome.units;
    const auto length = [&units](double metres) { return units.fromSI(Quantity::Length, metres); };
    auto lines = nlohmann::json::array();
    for (const auto& lineFigures : result.lines) {
        lines.push_back({{"line", lineFigures.line},
                         {"name", lineFigures.name},
                         {"figures", figuresJson(lineFigures.figures, units)}});
    }
    auto excluded = nlohmann::json::array();
    for (const auto& reading : result.excluded) {
        auto entry = readingJson(reading.reading, units, outcome.readings.amounts);
        entry["reason"] = reasonName(reading.reason);
        excluded.push_back(entry);
    }
    auto outliers = nlohmann::json::array();
    for (const auto& outlier : result.outliers) {
        auto entry = readingJson(outlier.reading, units, outcome.readings.amounts);
        entry["deviation_percent"] = outlier.deviationPercent;
        outliers.push_back(entry);
    }
    auto readings = nlohmann::json::array();
    for (const auto& reading : outcome.readings.readings) {
        readings.push_back(readingJson(reading, units, outcome.readings.amounts));
    }
    const auto& settings = result.settings;
    return {
        {"name", outcome.name},
        {"units", units.name()},
        {"readings", result.readings},
        {"amounts",
         outcome.readings.amounts == design::StoredAmount::VolumeMl ? "ml" : units.symbol(Quantity::Depth)},
        {key("gauge_diameter", Quantity::Length, units), length(outcome.readings.gaugeDiameterM)},
        {key("inner_radius", Quantity::Length, units), length(settings.innerRadiusM)},
        {key("last_span_end", Quantity::Length, units),
         settings.lastSpanEndM ? nlohmann::json(length(*settings.lastSpanEndM)) : nlohmann::json(nullptr)},
        {"outlier_percent", settings.outlierPercent},
        {key("expected_depth", Quantity::Depth, units),
         settings.expectedDepthMm ? nlohmann::json(units.fromSI(Quantity::Depth, *settings.expectedDepthMm))
                                  : nlohmann::json(nullptr)},
        {"applied_percent_of_expected", optionalJson(result.appliedPercentOfExpected)},
        {"lines", lines},
        {"lines_mean", figuresJson(result.lineAverage, units)},
        {"together", figuresJson(result.together, units)},
        {"end_gun_zone",
         result.endGunZone ? figuresJson(*result.endGunZone, units) : nlohmann::json(nullptr)},
        {"left_out", excluded},
        {"outliers", outliers},
        {"collectors", readings},
        {"comparison",
         outcome.design && outcome.comparison
             ? comparisonJson(*outcome.design, *outcome.comparison, units, outcome.readings.amounts)
             : nlohmann::json(nullptr)}};
}

}  // namespace

design::ReportDocument EvaluationReport::document(const EvaluationOutcome& outcome) {
    design::EvaluationPrintoutInput input{outcome.name, outcome.readings, outcome.result, std::nullopt,
                                          outcome.units};
    if (outcome.design && outcome.comparison) {
        const auto& design = *outcome.design;
        input.designed =
            design::DesignedBeside{design.designPath, design.timerPercent, design.wettedDiameterFrom,
                                   design.machine, *outcome.comparison};
    }
    return design::EvaluationPrintout::document(input);
}

void EvaluationReport::writeList(std::ostream& out,
                                 const std::vector<design::StoredEvaluationSummary>& evaluations) {
    fmt::print(out, "{:>6}  {:<32}{:>8}{:>8}\n", "id", "name", "CU %", "DU %");
    for (const auto& evaluation : evaluations) {
        fmt::print(out, "{:>6}  {:<32}{:>8}{:>8}\n", evaluation.id, evaluation.name,
                   EvaluationPrintout::figureText(evaluation.cuHeermannHein, 1),
                   EvaluationPrintout::figureText(evaluation.duLowQuarter, 1));
    }
}

void EvaluationReport::writeStored(std::ostream& out, const design::StoredFieldEvaluation& stored) {
    const auto& evaluation = stored.evaluation;
    fmt::print(out, "Evaluation {}: {}\n", evaluation.id, evaluation.name);
    line(out, "Gauge diameter",
         evaluation.pluviometer.diameter > 0 ? fmt::format("{:g} m", evaluation.pluviometer.diameter)
                                             : std::string("none (amounts are depths in mm)"));
    const auto names = StoredFigureText::lineNames(stored.figures);
    line(out, "Readings",
         fmt::format("{} on line {}, {} on line {}", evaluation.firstSample.count(),
                     design::lineNameOf(names, 1), evaluation.secondSample.count(),
                     design::lineNameOf(names, 2)));
    if (stored.figures.empty()) {
        fmt::print(out, "  (stored without figures)\n");
    }
    std::string scope;
    for (const auto& figure : stored.figures) {
        if (figure.scope != scope) {
            scope = figure.scope;
            fmt::print(out, "{}:\n", StoredFigureText::scopeLabel(scope));
        }
        const auto [label, value] = StoredFigureText::labelled(figure);
        line(out, label, value);
    }
}

void EvaluationReport::writeJson(std::ostream& out, const EvaluationOutcome& outcome) {
    out << outcomeJson(outcome).dump(2) << '\n';
}

void EvaluationReport::writeStoredJson(std::ostream& out, const design::StoredFieldEvaluation& stored) {
    out << storedEvaluationJson(stored).dump(2) << '\n';
}

}  // namespace caudalis::fieldtests
