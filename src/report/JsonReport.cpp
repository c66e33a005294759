#include "caudalis/report/JsonReport.hpp"

#include <cmath>
#include <optional>
#include <utility>

#include <nlohmann/json.hpp>

#include "caudalis/catalogue/Aspersor.hpp"
#include "caudalis/design/NozzleSize.hpp"
#include "caudalis/design/PipePressures.hpp"
#include "caudalis/design/ResultLabels.hpp"
#include "caudalis/report/ResultUnits.hpp"

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

nlohmann::json nozzleJson(const std::shared_ptr<Aspersor>& nozzle, const Units& units) {
    if (!nozzle) {
        return nullptr;
    }
    const double b = coefficientValue(nozzle->b());
    return {{"id", nozzle->id()},
            {"nome", nozzle->nome()},
            {"modelo", nozzle->modelo().nome},
            {"marca", nozzle->marca().nome},
            {"a", units.flowCoefficientFromSI(coefficientValue(nozzle->a()), b)},
            {"b", b},
            {"pmin", units.fromSI(Quantity::Pressure, nozzle->pmin())},
            {"pmax", units.fromSI(Quantity::Pressure, nozzle->pmax())},
            {"qmin", units.fromSI(Quantity::Flow, nozzle->qmin())},
            {"qmax", units.fromSI(Quantity::Flow, nozzle->qmax())}};
}

/// A summary key ending in its unit: key("design_flow", Quantity::Flow) is "design_flow_lps"
/// or "design_flow_gpm".
class Keys {
public:
    explicit Keys(const Units& units) : units_(units) {}
    std::string operator()(const std::string& base, Quantity quantity) const {
        return base + "_" + units_.suffix(quantity);
    }

private:
    const Units& units_;
};

/// The system, each quantity's unit symbol, the suffix its keys end in ("suffixes") and how many
/// SI units one of its units is ("si_factors"), so that a reader labels and converts without a
/// table of its own.
nlohmann::json unitsJson(const Units& units) {
    const std::pair<const char*, Quantity> quantities[] = {
        {"pressure", Quantity::Pressure}, {"flow", Quantity::Flow},       {"length", Quantity::Length},
        {"diameter", Quantity::Diameter}, {"spacing", Quantity::Spacing}, {"depth", Quantity::Depth},
        {"rate", Quantity::Rate},         {"area", Quantity::Area}};
    nlohmann::json document = {{"system", units.name()}};
    auto& suffixes = document["suffixes"] = nlohmann::json::object();
    auto& factors = document["si_factors"] = nlohmann::json::object();
    for (const auto& [name, quantity] : quantities) {
        document[name] = units.symbol(quantity);
        suffixes[name] = units.suffix(quantity);
        factors[name] = units.toSI(quantity, 1.0);
    }
    return document;
}

/// `row` is converted; `siSpan` is the same span in SI, for the figures worked out here.
nlohmann::json spanJson(const DesignResult& result, const SpanResult& row, const tramo& siSpan,
                        const Units& units) {
    const auto& span = row.span;
    const auto& described = row.overhang ? *result.design.overhang
                                         : result.design.spans[static_cast<std::size_t>(row.number - 1)];
    return {{"number", row.number},
            {Keys(units)("outside_diameter", Quantity::Diameter),
             described.outsideDiameterMm
                 ? nlohmann::json(units.fromSI(Quantity::Diameter, *described.outsideDiameterMm))
                 : nlohmann::json(nullptr)},
            {"c_factor", result.design.roughnessC},
            {Keys(units)("friction_loss", Quantity::Pressure),
             units.fromSI(Quantity::Pressure, PipePressures::frictionLoss(siSpan))},
            {Keys(units)("elevation_gain", Quantity::Length),
             units.fromSI(Quantity::Length, PipePressures::elevationGain(siSpan))},
            {"overhang", row.overhang},
            {"id", span.id},
            {"denominacion", span.denominacion},
            {"longitude", span.longitude},
            {"diametro", span.diametro},
            {Keys(units)("separationSaidas", Quantity::Spacing), span.separationSaidas_cm},
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

/// The bore under the key of its unit ("mm" or "in") and its number of 128ths of an inch.
nlohmann::json nozzleSizeJson(const saida& outlet, const Units& units) {
    const auto size =
        outlet.obj_aspersor ? NozzleSize::fromDesignation(outlet.obj_aspersor->nome()) : std::nullopt;
    return size ? nlohmann::json{{units.suffix(Quantity::Diameter),
                                  units.fromSI(Quantity::Diameter, size->millimetres)},
                                 {"inch_128ths", size->inch128ths}}
                : nlohmann::json(nullptr);
}

/// The rating of the outlet's regulator (from the converted result) and its listed model.
nlohmann::json regulatorJson(const DesignResult& result, const OutletResult& row, const Units& units) {
    if (!row.regulated) {
        return nullptr;
    }
    const auto* listed = regulatorOf(result, row);
    return {{"model", listed ? optionalJson(listed->model) : nlohmann::json(nullptr)},
            {Keys(units)("rating", Quantity::Pressure),
             result.spans[static_cast<std::size_t>(row.span - 1)].span.regulador.Preg}};
}

/// `pipePressureKpa` and the design's drop height are in SI; the rest of the result is converted.
nlohmann::json outletJson(const DesignResult& result, const OutletResult& row, double pipePressureKpa,
                          const Units& units) {
    const Keys key(units);
    const auto& drop = result.design.drop;
    const bool dropped = row.place != OutletPlace::EndGun && drop && drop->heightAboveGroundM;
    const auto& o = row.outlet;
    return {{key("pipe_pressure", Quantity::Pressure), units.fromSI(Quantity::Pressure, pipePressureKpa)},
            {"nozzle_size", nozzleSizeJson(o, units)},
            {key("drop_height", Quantity::Length),
             dropped ? nlohmann::json(units.fromSI(Quantity::Length, *drop->heightAboveGroundM))
                     : nlohmann::json(nullptr)},
            {"regulator", regulatorJson(result, row, units)},
            {"span", row.span},
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
            {key("depth", Quantity::Depth), row.depthMm},
            {key("ideal_depth", Quantity::Depth), row.idealDepthMm},
            {"reason", reasonCode(row.reason)},
            {key("regulator_rating", Quantity::Pressure), optionalJson(row.regulatorKpa)},
            {"starved_regulator", row.starvedRegulator},
            {"aspersor", nozzleJson(o.obj_aspersor, units)}};
}

nlohmann::json runoffJson(const std::vector<RunoffAtPoint>& points, const Units& units) {
    const Keys key(units);
    auto list = nlohmann::json::array();
    for (const auto& point : points) {
        const auto& e = point.estimate;
        list.push_back(
            {{"code", point.code},
             {key("distance", Quantity::Length), units.fromSI(Quantity::Length, e.distanceM)},
             {key("wetted_diameter", Quantity::Length), units.fromSI(Quantity::Length, e.wettedDiameterM)},
             {key("peak_rate", Quantity::Rate), units.fromSI(Quantity::Rate, e.peakRateMmH)},
             {"application_time_h", e.applicationTimeH},
             {key("applied", Quantity::Depth), units.fromSI(Quantity::Depth, e.appliedMm)},
             {key("infiltration_capacity", Quantity::Depth),
              units.fromSI(Quantity::Depth, e.infiltrationCapacityMm)},
             {key("runoff", Quantity::Depth), units.fromSI(Quantity::Depth, e.runoffMm)},
             {"runoff", e.verdict == RunoffVerdict::Runoff}});
    }
    return list;
}

/// The analysis is kept in SI in the result; its figures are converted here.
nlohmann::json analysisJson(const DesignAnalysis& a, const Units& units) {
    const Keys key(units);
    const auto length = [&](double value) { return units.fromSI(Quantity::Length, value); };
    const auto depth = [&](double value) { return units.fromSI(Quantity::Depth, value); };
    auto speeds = nlohmann::json::array();
    for (Long i = 1; a.speeds.tempoH100 > 0 && i <= 10; ++i) {
        const auto& row = a.speeds.velocidades(i);
        speeds.push_back({{"percentagem", row.percentagem},
                          {"velocidadeLinear_m_h", row.velocidadeLinear},
                          {"tempoDeUmaVolta_h", row.tempoDeUmaVolta},
                          {key("dotacao", Quantity::Depth), depth(row.dotacao)}});
    }
    nlohmann::json depths = nullptr;
    if (a.depths) {
        depths = {{key("volume_over_area", Quantity::Depth), depth(a.depths->volumeOverAreaMm)},
                  {key("distance_weighted_mean", Quantity::Depth), depth(a.depths->distanceWeightedMeanMm)},
                  {key("ring_area_mean", Quantity::Depth), depth(a.depths->ringAreaMeanMm)}};
    }
    return {{"elevation",
             {{key("highest", Quantity::Length), length(a.elevation.highestM)},
              {key("lowest", Quantity::Length), length(a.elevation.lowestM)},
              {key("at_pivot", Quantity::Length), length(a.elevation.atPivotM)},
              {key("highest_at", Quantity::Length), length(a.elevation.highestAtM)}}},
            {"depth_per_revolution", depths},
            {"speed_table", speeds},
            {"runoff",
             {{"check_points", runoffJson(a.runoffAtCheckPoints, units)},
              {"along_machine", runoffJson(a.runoffAlongMachine, units)}}},
            {"profile_cu_heermann_hein_percent", optionalJson(a.profileUniformityCoefficient)},
            {"profile_du_low_quarter_percent", optionalJson(a.profileLowQuarterUniformity)},
            {"models_without_wetted_diameter", a.modelsWithoutWettedDiameter}};
}

nlohmann::json summaryJson(const DesignSummary& s, const Units& units) {
    const Keys key(units);
    auto peaks = nlohmann::json::array();
    for (const auto& peak : s.peakRates) {
        peaks.push_back({{"code", peak.point.code},
                         {key("distance", Quantity::Length), peak.point.distanceToCenter},
                         {key("wet_diameter", Quantity::Length), peak.point.wetDiameter},
                         {key("rate", Quantity::Rate), peak.rateMmH}});
    }
    nlohmann::json endGun = nullptr;
    if (s.hasEndGun) {
        endGun = {{key("pressure", Quantity::Pressure), s.endGunPressureKpa},
                  {key("flow", Quantity::Flow), s.endGunFlowLps},
                  {key("booster", Quantity::Pressure), s.endGunBoosterKpa}};
    }
    return {{key("design_flow", Quantity::Flow), s.designFlowLps},
            {key("computed_flow", Quantity::Flow), s.computedFlowLps},
            {"passes", s.passes},
            {"end_gun", endGun},
            {key("irrigated_length", Quantity::Length), s.irrigatedLengthM},
            {key("irrigated_area", Quantity::Area), s.irrigatedAreaM2},
            {"revolution_time_h", s.revolutionTimeH},
            {"outlets", s.outlets},
            {"outlets_without_nozzle", s.unfittedOutlets},
            {"outlets_over_pressure", s.overPressureOutlets},
            {key("depth", Quantity::Depth), optionalJson(s.depthMm)},
            {key("ideal_depth", Quantity::Depth), optionalJson(s.idealDepthMm)},
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

nlohmann::json packageJson(const DesignResult& result) {
    const auto& package = result.package;
    return {{"spans", package.spans},
            {"inner", package.inner.empty() ? nlohmann::json(nullptr)
                                            : nlohmann::json{{"model", package.inner},
                                                             {"to_distance", package.innerToDistanceM}}},
            {"end_gun", result.summary.hasEndGun ? nlohmann::json(package.endGun) : nlohmann::json(nullptr)}};
}

/// `result` is the copy converted to `units`; `si` the result as computed.
nlohmann::json toJson(const DesignResult& result, const DesignResult& si, const Units& units) {
    auto spans = nlohmann::json::array();
    for (std::size_t i = 0; i < result.spans.size(); ++i) {
        spans.push_back(spanJson(result, result.spans[i], si.spans[i].span, units));
    }
    auto outlets = nlohmann::json::array();
    for (std::size_t i = 0; i < result.outlets.size(); ++i) {
        outlets.push_back(
            outletJson(result, result.outlets[i], result.analysis.pipePressuresKpa.at(i), units));
    }
    return {{"name", result.design.name},
            {"system_id", optionalJson(result.design.systemId)},
            {"units", unitsJson(units)},
            {"package", packageJson(result)},
            {"summary", summaryJson(result.summary, units)},
            {"analysis", analysisJson(result.analysis, units)},
            {"findings", findingsJson(result.findings)},
            {"spans", spans},
            {"outlets", outlets}};
}

void walk(const nlohmann::json& value, JsonVisitor& visitor) {
    switch (value.type()) {
        case nlohmann::json::value_t::object:
            visitor.beginObject(value.size());
            for (const auto& [name, field] : value.items()) {
                visitor.key(name);
                walk(field, visitor);
            }
            visitor.endObject();
            return;
        case nlohmann::json::value_t::array:
            visitor.beginArray(value.size());
            for (const auto& element : value) {
                walk(element, visitor);
            }
            visitor.endArray();
            return;
        case nlohmann::json::value_t::boolean:
            visitor.boolean(value.get<bool>());
            return;
        case nlohmann::json::value_t::number_integer:
        case nlohmann::json::value_t::number_unsigned:
            visitor.integer(value.get<long long>());
            return;
        case nlohmann::json::value_t::number_float:
            // The text writes a figure that is not finite as null; so does the walk.
            if (std::isfinite(value.get<double>())) {
                visitor.real(value.get<double>());
            } else {
                visitor.null();
            }
            return;
        case nlohmann::json::value_t::string:
            visitor.text(value.get_ref<const std::string&>());
            return;
        default:
            visitor.null();
    }
}

}  // namespace

void JsonReport::visit(const DesignResult& result, const Units& units, JsonVisitor& visitor) {
    walk(toJson(ResultUnits::convert(result, units), result, units), visitor);
}

std::string JsonReport::text(const DesignResult& result) {
    return text(result, Units(result.design.units));
}

std::string JsonReport::text(const DesignResult& result, const Units& units) {
    return toJson(ResultUnits::convert(result, units), result, units).dump(2);
}

void JsonReport::write(std::ostream& out, const DesignResult& result) {
    out << text(result) << '\n';
}

void JsonReport::write(std::ostream& out, const DesignResult& result, const Units& units) {
    out << text(result, units) << '\n';
}

}  // namespace caudalis::design
