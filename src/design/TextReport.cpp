#include "caudalis/design/TextReport.hpp"

#include <fmt/format.h>
#include <fmt/ostream.h>

#include "caudalis/design/ReportLabels.hpp"

namespace caudalis::design {

namespace {

std::string orNotAvailable(const std::optional<double>& value, const char* format) {
    return value ? fmt::format(fmt::runtime(format), *value) : std::string("n/a");
}

void line(std::ostream& out, const std::string& label, const std::string& value) {
    fmt::print(out, "  {:<38}{}\n", label, value);
}

std::string beside(const std::optional<double>& actual, const std::optional<double>& ideal,
                   const char* format, const char* unit) {
    return fmt::format("{} {} (ideal {} {})", orNotAvailable(actual, format), unit,
                       orNotAvailable(ideal, format), unit);
}

}  // namespace

void TextReport::writeHeader(std::ostream& out, const DesignResult& result) {
    const auto& design = result.design;
    fmt::print(out, "Sprinkler chart: {}{}\n", design.name,
               design.systemId ? " (system " + std::to_string(*design.systemId) + ")" : "");
    const auto& selection = design.nozzleSelection;
    fmt::print(out, "Inlet {:.1f} kPa, design flow {:.3f} l/s, pipe C {:g}, nozzles within ±{:g} %{}{}\n\n",
               design.inletPressureKpa, design.designFlowLps, design.roughnessC, selection.tolerance * 100,
               selection.brand ? ", brand " + *selection.brand : "",
               selection.model ? ", model " + *selection.model : "");
}

void TextReport::writeSpans(std::ostream& out, const DesignResult& result) {
    fmt::print(out, "Spans\n");
    fmt::print(out, "{:>4} {:<16} {:>7} {:>7} {:>7} {:>7} {:>9} {:>9} {:>9} {:>9} {:>9} {:>9}\n", "span",
               "name", "len m", "diam mm", "sp cm", "outlets", "in kPa", "in l/s", "out kPa", "out l/s",
               "loss kPa", "reg kPa");
    for (const auto& row : result.spans) {
        const auto& span = row.span;
        fmt::print(out,
                   "{:>4} {:<16} {:>7.2f} {:>7.1f} {:>7.0f} {:>7} {:>9.1f} {:>9.3f} {:>9.1f} {:>9.3f} "
                   "{:>9.2f} {:>9}\n",
                   row.number, span.denominacion.substr(0, 16), span.longitude, span.diametro,
                   span.separationSaidas_cm, span.Saidas.count(), span.entry_conditions.pressao,
                   span.entry_conditions.caudal, span.exit_condition.pressao, span.exit_condition.caudal,
                   span.perdaDeCargaIdeal,
                   span.temRegulador ? fmt::format("{:.1f}", span.regulador.Preg) : "-");
    }
    fmt::print(out, "\n");
}

void TextReport::writeOutlets(std::ostream& out, const DesignResult& result) {
    fmt::print(out, "Outlets\n");
    fmt::print(out, "{:>7} {:>8} {:>8} {:>8} {:>9} {:>9} {:>9}  {:<38} {:>8} {:>7} {:>8} {}\n", "outlet",
               "dist m", "elev m", "req l/s", "ideal kPa", "real kPa", "act kPa", "nozzle", "q l/s", "dev %",
               "depth mm", "over");
    for (const auto& row : result.outlets) {
        const auto& o = row.outlet;
        const bool gun = row.place == OutletPlace::EndGun;
        fmt::print(
            out,
            "{:>7} {:>8.2f} {:>8} {:>8.4f} {:>9.1f} {:>9.1f} {:>9.1f}  {:<38} {:>8.4f} {:>7} {:>8.2f} {}\n",
            outletLabel(row), o.distanciaAoPivot, gun ? "-" : fmt::format("{:.2f}", o.cota), o.caudal,
            o.pressao_ideal, o.pressao_real, o.pressao_actuante, nozzleLabel(o), o.caudal_do_aspersor,
            orNotAvailable(row.deviationPercent, "{:+.1f}"), row.depthMm, o.over_pressure ? "yes" : "");
    }
    fmt::print(out, "\n");
}

void TextReport::writeSummary(std::ostream& out, const DesignResult& result) {
    const auto& s = result.summary;
    fmt::print(out, "Summary\n");
    line(out, "Design discharge", fmt::format("{:.3f} l/s", s.designFlowLps));
    line(out, "Computed discharge", fmt::format("{:.3f} l/s", s.computedFlowLps));
    line(out, "Passes", std::to_string(s.passes));
    if (s.hasEndGun) {
        line(out, "End gun",
             fmt::format("{:.1f} kPa, {:.3f} l/s (booster {:.1f} kPa)", s.endGunPressureKpa, s.endGunFlowLps,
                         s.endGunBoosterKpa));
    }
    line(out, "Irrigated length", fmt::format("{:.2f} m", s.irrigatedLengthM));
    line(out, "Irrigated area",
         fmt::format("{:.0f} m2 ({:.2f} ha)", s.irrigatedAreaM2, s.irrigatedAreaM2 / 10000));
    line(out, "Revolution time", fmt::format("{:g} h", s.revolutionTimeH));
    line(out, "Depth per revolution", beside(s.depthMm, s.idealDepthMm, "{:.2f}", "mm"));
    for (const auto& peak : s.peakRates) {
        line(out, "Peak application rate",
             fmt::format("{:.1f} mm/h at {} ({:.1f} m)", peak.rateMmH, peak.point.code,
                         peak.point.distanceToCenter));
    }
    line(out, "Uniformity CU (Heermann-Hein)",
         beside(s.uniformityCoefficient, s.idealUniformityCoefficient, "{:.1f}", "%"));
    line(out, "Uniformity DU (low quarter)",
         beside(s.lowQuarterUniformity, s.idealLowQuarterUniformity, "{:.1f}", "%"));
    line(out, "Outlets", std::to_string(s.outlets));
    line(out, "Outlets without a nozzle", std::to_string(s.unfittedOutlets));
    line(out, "Outlets over pressure", std::to_string(s.overPressureOutlets));
}

void TextReport::writeFindings(std::ostream& out, const DesignResult& result) {
    if (result.findings.empty()) {
        return;
    }
    fmt::print(out, "\nFindings\n");
    for (const auto& finding : result.findings) {
        fmt::print(out, "  {:<8} {}\n", severityName(finding.severity), finding.message);
    }
}

void TextReport::write(std::ostream& out, const DesignResult& result) {
    writeHeader(out, result);
    writeSpans(out, result);
    writeOutlets(out, result);
    writeSummary(out, result);
    writeFindings(out, result);
}

}  // namespace caudalis::design
