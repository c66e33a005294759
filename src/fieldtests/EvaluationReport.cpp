#include "caudalis/fieldtests/EvaluationReport.hpp"

#include <fmt/format.h>
#include <fmt/ostream.h>

#include "JsonValue.hpp"
#include "caudalis/design/CatchCanStatistics.hpp"
#include "caudalis/design/EvaluationPrintout.hpp"
#include "caudalis/design/PlainTextReport.hpp"
#include "caudalis/fieldtests/StoredFigureText.hpp"

namespace caudalis::fieldtests {

namespace {

using design::CatchCanFigures;
using design::CatchCanStatistics;
using design::ExclusionReason;
using design::FieldReading;

using design::EvaluationPrintout;

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

nlohmann::json figuresJson(const CatchCanFigures& figures) {
    auto json = nlohmann::json::object();
    for (const auto& [name, value] : CatchCanStatistics::named(figures)) {
        json[name] = optionalJson(value);
    }
    return json;
}

nlohmann::json readingJson(const FieldReading& reading) {
    return {
        {"line", reading.line},
        {"collector", reading.collector},
        {"file", reading.source},
        {"file_line", reading.sourceLine},
        {"amount", reading.sample.collectedAmount},
        {"distance_m", reading.sample.distanceFromCenter},
        {"depth_mm", reading.depth.p_null ? nlohmann::json(nullptr) : nlohmann::json(reading.depth.depth)},
        {"crew_flag", reading.crewExclusion}};
}

nlohmann::json comparisonJson(const DesignReference& design, const design::DesignComparison& comparison) {
    auto collectors = nlohmann::json::array();
    for (const auto& collector : comparison.collectors) {
        auto entry = readingJson(collector.reading);
        entry["designed_mm"] = collector.designedMm;
        entry["difference_percent"] = collector.differencePercent;
        collectors.push_back(entry);
    }
    auto outlets = nlohmann::json::array();
    for (const auto& outlet : comparison.outlets) {
        outlets.push_back({{"span", outlet.outlet.span},
                           {"outlet", outlet.outlet.number},
                           {"end_gun", outlet.outlet.endGun},
                           {"radius_m", outlet.outlet.radiusM},
                           {"estimated_percent", outlet.estimatedPercent}});
    }
    auto spans = nlohmann::json::array();
    for (const auto& span : comparison.spans) {
        spans.push_back({{"span", span.span.number},
                         {"from_m", span.span.fromM},
                         {"to_m", span.span.toM},
                         {"collectors", span.collectors},
                         {"mean_difference_percent", span.meanDifferencePercent}});
    }
    return {{"design_file", design.designPath},
            {"timer_percent", design.timerPercent},
            {"wetted_diameter_m", comparison.wettedDiameterM},
            {"wetted_diameter_from", design.wettedDiameterFrom},
            {"level_factor", comparison.levelFactor},
            {"collector_spacing_m", comparison.collectorSpacingM},
            {"outlets_resolved", comparison.outletsResolved},
            {"collectors", collectors},
            {"outlets", outlets},
            {"spans", spans}};
}

nlohmann::json outcomeJson(const EvaluationOutcome& outcome) {
    const auto& result = outcome.result;
    auto lines = nlohmann::json::array();
    for (const auto& lineFigures : result.lines) {
        lines.push_back({{"line", lineFigures.line},
                         {"name", lineFigures.name},
                         {"figures", figuresJson(lineFigures.figures)}});
    }
    auto excluded = nlohmann::json::array();
    for (const auto& reading : result.excluded) {
        auto entry = readingJson(reading.reading);
        entry["reason"] = reasonName(reading.reason);
        excluded.push_back(entry);
    }
    auto outliers = nlohmann::json::array();
    for (const auto& outlier : result.outliers) {
        auto entry = readingJson(outlier.reading);
        entry["deviation_percent"] = outlier.deviationPercent;
        outliers.push_back(entry);
    }
    auto readings = nlohmann::json::array();
    for (const auto& reading : outcome.readings.readings) {
        readings.push_back(readingJson(reading));
    }
    const auto& settings = result.settings;
    return {{"name", outcome.name},
            {"readings", result.readings},
            {"amounts", outcome.readings.amounts == design::StoredAmount::VolumeMl ? "ml" : "mm"},
            {"gauge_diameter_m", outcome.readings.gaugeDiameterM},
            {"inner_radius_m", settings.innerRadiusM},
            {"last_span_end_m", optionalJson(settings.lastSpanEndM)},
            {"outlier_percent", settings.outlierPercent},
            {"expected_depth_mm", optionalJson(settings.expectedDepthMm)},
            {"applied_percent_of_expected", optionalJson(result.appliedPercentOfExpected)},
            {"lines", lines},
            {"lines_mean", figuresJson(result.lineAverage)},
            {"together", figuresJson(result.together)},
            {"end_gun_zone", result.endGunZone ? figuresJson(*result.endGunZone) : nlohmann::json(nullptr)},
            {"left_out", excluded},
            {"outliers", outliers},
            {"collectors", readings},
            {"comparison", outcome.design && outcome.comparison
                               ? comparisonJson(*outcome.design, *outcome.comparison)
                               : nlohmann::json(nullptr)}};
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

void EvaluationReport::writeFigures(std::ostream& out, const design::FieldEvaluationResult& result) {
    out << design::PlainTextReport::table(EvaluationPrintout::figuresTable(result));
}

void EvaluationReport::writeReadingNotes(std::ostream& out, const design::FieldEvaluationResult& result) {
    for (const auto& excluded : result.excluded) {
        fmt::print(out, "  left out: line {}{} {:g} at {:g} m, {} ({})\n",
                   result.lineName(excluded.reading.line), collectorName(excluded.reading),
                   excluded.reading.sample.collectedAmount, excluded.reading.sample.distanceFromCenter,
                   EvaluationPrintout::reasonText(excluded), where(excluded.reading));
    }
    fmt::print(out, "Collectors more than {:g} % off the mean: {}\n", result.settings.outlierPercent,
               result.outliers.size());
    for (const auto& outlier : result.outliers) {
        fmt::print(out, "  line {}{} at {:>8.2f} m: {:>8.2f} mm ({:+.1f} %)  {}\n",
                   result.lineName(outlier.reading.line), collectorName(outlier.reading),
                   outlier.reading.depth.distanceFromCenter, outlier.reading.depth.depth,
                   outlier.deviationPercent, where(outlier.reading));
    }
}

void EvaluationReport::writeComparison(std::ostream& out, const DesignReference& design,
                                       const design::DesignComparison& comparison) {
    fmt::print(out,
               "Measured beside designed ({}, wetted diameter {:g} m from {}; measured level {:.0f} % of "
               "designed):\n",
               design.designPath, comparison.wettedDiameterM, design.wettedDiameterFrom,
               100 * comparison.levelFactor);
    for (const auto& span : comparison.spans) {
        fmt::print(out, "  span {} ({:g}-{:g} m): {:+.1f} % over {} collectors\n", span.span.number,
                   span.span.fromM, span.span.toM, span.meanDifferencePercent, span.collectors);
    }
    if (!comparison.outletsResolved) {
        fmt::print(out, "  collectors {:g} m apart cannot single out outlets of a {:g} m wetted diameter\n",
                   comparison.collectorSpacingM, comparison.wettedDiameterM);
    }
    const auto shown = std::min(outletsListed, comparison.outlets.size());
    for (std::size_t i = 0; i < shown; ++i) {
        const auto& outlet = comparison.outlets[i].outlet;
        const auto name =
            outlet.endGun ? std::string("end gun") : fmt::format("outlet {}-{}", outlet.span, outlet.number);
        fmt::print(out, "  {} at {:.1f} m: flow about {:+.0f} % from design\n", name, outlet.radiusM,
                   comparison.outlets[i].estimatedPercent);
    }
}

void EvaluationReport::write(std::ostream& out, const EvaluationOutcome& outcome) {
    const auto& result = outcome.result;
    const auto& readings = outcome.readings;
    const auto counted = result.together.collectors + (result.endGunZone ? result.endGunZone->collectors : 0);
    fmt::print(out, "Field evaluation: {}\n", outcome.name);
    line(out, "Readings",
         fmt::format("{} ({} counted, {} left out)", result.readings, counted, result.excluded.size()));
    line(out, "Amounts",
         readings.amounts == design::StoredAmount::VolumeMl
             ? fmt::format("ml in gauges of {:g} m opening", readings.gaugeDiameterM)
             : std::string("depths in mm"));
    if (result.settings.innerRadiusM > 0) {
        line(out, "Inner radius", fmt::format("{:g} m", result.settings.innerRadiusM));
    }
    if (result.settings.lastSpanEndM) {
        line(out, "Last span ends at",
             fmt::format("{:g} m (beyond: end-gun zone)", *result.settings.lastSpanEndM));
    }
    writeFigures(out, result);
    if (result.settings.expectedDepthMm) {
        line(out, "Expected depth", fmt::format("{:.2f} mm", *result.settings.expectedDepthMm));
        if (result.appliedPercentOfExpected) {
            line(out, "Mean depth / expected", fmt::format("{:.1f} %", *result.appliedPercentOfExpected));
        }
    }
    writeReadingNotes(out, result);
    if (outcome.design && outcome.comparison) {
        writeComparison(out, *outcome.design, *outcome.comparison);
    }
}

design::ReportDocument EvaluationReport::document(const EvaluationOutcome& outcome) {
    design::EvaluationPrintoutInput input{outcome.name, outcome.readings, outcome.result, std::nullopt};
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
