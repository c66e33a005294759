#include "caudalis/design/JsonReport.hpp"

#include <optional>

#include <nlohmann/json.hpp>

#include "caudalis/catalogue/Aspersor.hpp"
#include "caudalis/design/ReportLabels.hpp"

namespace caudalis::design {

namespace {

/// The value, or JSON null when there is none.
template <class T>
nlohmann::json optionalJson(const std::optional<T>& value) {
    return value ? nlohmann::json(*value) : nlohmann::json(nullptr);
}

nlohmann::json conditionsJson(const ParPressaoCaudal& conditions) {
    return {{"pressao", conditions.pressao}, {"caudal", conditions.caudal}};
}

nlohmann::json nozzleJson(const std::shared_ptr<Aspersor>& nozzle) {
    if (!nozzle) {
        return nullptr;
    }
    return {{"id", nozzle->id()},
            {"nome", nozzle->nome()},
            {"modelo", nozzle->modelo().nome},
            {"marca", nozzle->marca().nome},
            {"a", coefficientValue(nozzle->a())},
            {"b", coefficientValue(nozzle->b())},
            {"pmin", nozzle->pmin()},
            {"pmax", nozzle->pmax()},
            {"qmin", nozzle->qmin()},
            {"qmax", nozzle->qmax()}};
}

nlohmann::json spanJson(const SpanResult& row) {
    const auto& span = row.span;
    return {{"number", row.number},
            {"overhang", row.overhang},
            {"id", span.id},
            {"denominacion", span.denominacion},
            {"longitude", span.longitude},
            {"diametro", span.diametro},
            {"separationSaidas_cm", span.separationSaidas_cm},
            {"outlets", span.Saidas.count()},
            {"site", {{"start_cota", span.site.start_cota}, {"end_cota", span.site.end_cota}}},
            {"entry_conditions", conditionsJson(span.entry_conditions)},
            {"exit_condition", conditionsJson(span.exit_condition)},
            {"ideal_entry_conditions", conditionsJson(span.ideal_entry_conditions)},
            {"ideal_exit_conditions", conditionsJson(span.ideal_exit_conditions)},
            {"perdaDeCargaIdeal", span.perdaDeCargaIdeal},
            {"temRegulador", span.temRegulador},
            {"regulador",
             span.temRegulador ? nlohmann::json{{"Preg", span.regulador.Preg}} : nlohmann::json(nullptr)}};
}

nlohmann::json outletJson(const OutletResult& row) {
    const auto& o = row.outlet;
    return {{"span", row.span},
            {"outlet", row.number},
            {"place", placeName(row.place)},
            {"label", outletLabel(row)},
            {"distanciaAoPivot", o.distanciaAoPivot},
            {"cota", o.cota},
            {"caudal", o.caudal},
            {"pressao_ideal", o.pressao_ideal},
            {"pressao_real", o.pressao_real},
            {"pressao_actuante", o.pressao_actuante},
            {"caudal_do_aspersor", o.caudal_do_aspersor},
            {"over_pressure", o.over_pressure},
            {"regulated", row.regulated},
            {"deviation_percent", optionalJson(row.deviationPercent)},
            {"depth_mm", row.depthMm},
            {"ideal_depth_mm", row.idealDepthMm},
            {"aspersor", nozzleJson(o.obj_aspersor)}};
}

nlohmann::json summaryJson(const DesignSummary& s) {
    auto peaks = nlohmann::json::array();
    for (const auto& peak : s.peakRates) {
        peaks.push_back({{"code", peak.point.code},
                         {"distance_m", peak.point.distanceToCenter},
                         {"wet_diameter_m", peak.point.wetDiameter},
                         {"rate_mm_h", peak.rateMmH}});
    }
    nlohmann::json endGun = nullptr;
    if (s.hasEndGun) {
        endGun = {{"pressure_kpa", s.endGunPressureKpa},
                  {"flow_lps", s.endGunFlowLps},
                  {"booster_kpa", s.endGunBoosterKpa}};
    }
    return {{"design_flow_lps", s.designFlowLps},
            {"computed_flow_lps", s.computedFlowLps},
            {"passes", s.passes},
            {"end_gun", endGun},
            {"irrigated_length_m", s.irrigatedLengthM},
            {"irrigated_area_m2", s.irrigatedAreaM2},
            {"revolution_time_h", s.revolutionTimeH},
            {"outlets", s.outlets},
            {"outlets_without_nozzle", s.unfittedOutlets},
            {"outlets_over_pressure", s.overPressureOutlets},
            {"depth_mm", optionalJson(s.depthMm)},
            {"ideal_depth_mm", optionalJson(s.idealDepthMm)},
            {"peak_application_rates", peaks},
            {"cu_heermann_hein_percent", optionalJson(s.uniformityCoefficient)},
            {"ideal_cu_heermann_hein_percent", optionalJson(s.idealUniformityCoefficient)},
            {"du_low_quarter_percent", optionalJson(s.lowQuarterUniformity)},
            {"ideal_du_low_quarter_percent", optionalJson(s.idealLowQuarterUniformity)}};
}

nlohmann::json findingsJson(const std::vector<Finding>& findings) {
    auto list = nlohmann::json::array();
    for (const auto& finding : findings) {
        list.push_back({{"severity", severityName(finding.severity)},
                        {"code", finding.code},
                        {"message", finding.message}});
    }
    return list;
}

nlohmann::json toJson(const DesignResult& result) {
    auto spans = nlohmann::json::array();
    for (const auto& span : result.spans) {
        spans.push_back(spanJson(span));
    }
    auto outlets = nlohmann::json::array();
    for (const auto& outlet : result.outlets) {
        outlets.push_back(outletJson(outlet));
    }
    return {{"name", result.design.name},
            {"system_id", optionalJson(result.design.systemId)},
            {"summary", summaryJson(result.summary)},
            {"findings", findingsJson(result.findings)},
            {"spans", spans},
            {"outlets", outlets}};
}

}  // namespace

std::string JsonReport::text(const DesignResult& result) {
    return toJson(result).dump(2);
}

void JsonReport::write(std::ostream& out, const DesignResult& result) {
    out << text(result) << '\n';
}

}  // namespace caudalis::design
