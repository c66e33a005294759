#include "EvaluationReport.hpp"

#include <fmt/format.h>
#include <fmt/ostream.h>

#include "JsonValue.hpp"

namespace caudalis::cli {

namespace {

std::string figure(const std::optional<double>& value, const char* unit) {
    return value ? fmt::format("{:.2f} {}", *value, unit) : std::string("n/a");
}

void line(std::ostream& out, const std::string& label, const std::string& value) {
    fmt::print(out, "  {:<32}{}\n", label, value);
}

std::string where(const Reading& reading) {
    return fmt::format("{} line {}", reading.file, reading.line);
}

nlohmann::json readingJson(const Reading& reading) {
    return {{"file", reading.file},
            {"line", reading.line},
            {"collectedAmount", reading.sample.collectedAmount},
            {"distanceFromCenter", reading.sample.distanceFromCenter}};
}

}  // namespace

void EvaluationReport::write(std::ostream& out, const EvaluationFigures& f) {
    fmt::print(out, "Field evaluation: {}\n", f.name);
    line(out, "Rain gauge", fmt::format("{:g} m opening ({:.6f} m2)", f.gaugeDiameterM, f.gaugeAreaM2));
    line(out, "Readings",
         fmt::format("{} ({} valid, {} left out)", f.readings,
                     f.readings - static_cast<long>(f.rejected.size()), f.rejected.size()));
    line(out, "Mean depth, first pass", figure(f.firstPassMeanMm, "mm"));
    line(out, "Mean depth, second pass", figure(f.secondPassMeanMm, "mm"));
    line(out, "Weighted mean depth", figure(f.meanDepthMm, "mm"));
    line(out, "Low-quarter mean depth", figure(f.lowQuarterMeanMm, "mm"));
    line(out, "Uniformity CU (Heermann-Hein)", figure(f.uniformityCoefficient, "%"));
    line(out, "Uniformity DU (low quarter)", figure(f.lowQuarterUniformity, "%"));
    for (const auto& rejected : f.rejected) {
        fmt::print(out, "  left out: {:g} at {:g} m ({})\n", rejected.sample.collectedAmount,
                   rejected.sample.distanceFromCenter, where(rejected));
    }
    fmt::print(out, "Readings more than {:g} % off the mean: {}\n", FieldEvaluation::flagLimitPercent,
               f.flagged.size());
    for (const auto& flagged : f.flagged) {
        fmt::print(out, "  pass {} at {:>8.2f} m: {:>8.2f} mm ({:+.1f} %)  {}\n", flagged.pass,
                   flagged.reading.sample.distanceFromCenter, flagged.depthMm, flagged.deviationPercent,
                   where(flagged.reading));
    }
}

nlohmann::json EvaluationReport::toJson(const EvaluationFigures& f) {
    auto rejected = nlohmann::json::array();
    for (const auto& reading : f.rejected) {
        rejected.push_back(readingJson(reading));
    }
    auto flagged = nlohmann::json::array();
    for (const auto& reading : f.flagged) {
        auto entry = readingJson(reading.reading);
        entry["pass"] = reading.pass;
        entry["depth_mm"] = reading.depthMm;
        entry["deviation_percent"] = reading.deviationPercent;
        flagged.push_back(entry);
    }
    return {{"name", f.name},
            {"gauge_diameter_m", f.gaugeDiameterM},
            {"gauge_area_m2", f.gaugeAreaM2},
            {"readings", f.readings},
            {"left_out", rejected},
            {"first_pass_mean_depth_mm", optionalJson(f.firstPassMeanMm)},
            {"second_pass_mean_depth_mm", optionalJson(f.secondPassMeanMm)},
            {"mean_depth_mm", f.meanDepthMm},
            {"low_quarter_mean_depth_mm", optionalJson(f.lowQuarterMeanMm)},
            {"cu_heermann_hein_percent", optionalJson(f.uniformityCoefficient)},
            {"du_low_quarter_percent", optionalJson(f.lowQuarterUniformity)},
            {"flag_limit_percent", FieldEvaluation::flagLimitPercent},
            {"flagged", flagged}};
}

}  // namespace caudalis::cli
