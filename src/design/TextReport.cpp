#include "caudalis/design/TextReport.hpp"

#include <fmt/format.h>
#include <fmt/ostream.h>

#include "caudalis/design/ReportLabels.hpp"
#include "caudalis/design/ResultUnits.hpp"

namespace caudalis::design {

namespace {

std::string orNotAvailable(const std::optional<double>& value, const char* format) {
    return value ? fmt::format(fmt::runtime(format), *value) : std::string("n/a");
}

void line(std::ostream& out, const std::string& label, const std::string& value) {
    fmt::print(out, "  {:<38}{}\n", label, value);
}

std::string beside(const std::optional<double>& actual, const std::optional<double>& ideal,
                   const char* format, const std::string& unit) {
    return fmt::format("{} {} (ideal {} {})", orNotAvailable(actual, format), unit,
                       orNotAvailable(ideal, format), unit);
}

/// Column headings: "in kPa", "q l/s", ...
std::string heading(const char* what, const Units& units, Quantity quantity) {
    return std::string(what) + " " + units.symbol(quantity);
}

std::string areaText(double area, const Units& units) {
    if (units.system() == UnitSystem::US) {
        return fmt::format("{:.2f} acre", area);
    }
    return fmt::format("{:.0f} m2 ({:.2f} ha)", area, area / 10000);
}

}  // namespace

void TextReport::writeHeader(std::ostream& out, const DesignResult& result, const Units& units) {
    const auto& design = result.design;
    fmt::print(out, "Sprinkler chart: {}{}\n", design.name,
               design.systemId ? " (system " + std::to_string(*design.systemId) + ")" : "");
    const auto& selection = design.nozzleSelection;
    fmt::print(out, "Inlet {:.1f} {}, design flow {:.3f} {}, pipe C {:g}, nozzles within ±{:g} %\n",
               design.inletPressureKpa, units.symbol(Quantity::Pressure), design.designFlowLps,
               units.symbol(Quantity::Flow), design.roughnessC, selection.tolerance * 100);
    const auto& package = result.package;
    fmt::print(out, "Package: spans {}", package.spans.empty() ? "-" : package.spans);
    if (!package.inner.empty()) {
        fmt::print(out, ", up to {:.1f} {} {}", package.innerToDistanceM, units.symbol(Quantity::Length),
                   package.inner);
    }
    if (!package.endGun.empty() && result.summary.hasEndGun) {
        fmt::print(out, ", end gun {}", package.endGun);
    }
    fmt::print(out, "\n\n");
}

void TextReport::writeSpans(std::ostream& out, const DesignResult& result, const Units& units) {
    fmt::print(out, "Spans\n");
    fmt::print(out, "{:>4} {:<16} {:>7} {:>7} {:>7} {:>7} {:>9} {:>9} {:>9} {:>9} {:>9} {:>9}\n", "span",
               "name", heading("len", units, Quantity::Length), heading("diam", units, Quantity::Diameter),
               heading("sp", units, Quantity::Spacing), "outlets", heading("in", units, Quantity::Pressure),
               heading("in", units, Quantity::Flow), heading("out", units, Quantity::Pressure),
               heading("out", units, Quantity::Flow), heading("loss", units, Quantity::Pressure),
               heading("reg", units, Quantity::Pressure));
    for (const auto& row : result.spans) {
        const auto& span = row.span;
        fmt::print(out,
                   "{:>4} {:<16} {:>7.2f} {:>7.2f} {:>7.1f} {:>7} {:>9.1f} {:>9.3f} {:>9.1f} {:>9.3f} "
                   "{:>9.2f} {:>9}\n",
                   row.number, span.denominacion.substr(0, 16), span.longitude, span.diametro,
                   span.separationSaidas_cm, span.Saidas.count(), span.entry_conditions.pressao,
                   span.entry_conditions.caudal, span.exit_condition.pressao, span.exit_condition.caudal,
                   span.perdaDeCargaIdeal,
                   span.temRegulador ? fmt::format("{:.1f}", span.regulador.Preg) : "-");
    }
    fmt::print(out, "\n");
}

void TextReport::writeOutlets(std::ostream& out, const DesignResult& result, const Units& units) {
    fmt::print(out, "Outlets\n");
    fmt::print(out, "{:>7} {:>8} {:>8} {:>8} {:>9} {:>9} {:>9}  {:<38} {:>8} {:>7} {:>8} {}\n", "outlet",
               heading("dist", units, Quantity::Length), heading("elev", units, Quantity::Length),
               heading("req", units, Quantity::Flow), heading("ideal", units, Quantity::Pressure),
               heading("real", units, Quantity::Pressure), heading("act", units, Quantity::Pressure),
               "nozzle", heading("q", units, Quantity::Flow), "dev %",
               heading("depth", units, Quantity::Depth), "note");
    for (const auto& row : result.outlets) {
        const auto& o = row.outlet;
        const bool gun = row.place == OutletPlace::EndGun;
        fmt::print(
            out,
            "{:>7} {:>8.2f} {:>8} {:>8.4f} {:>9.1f} {:>9.1f} {:>9.1f}  {:<38} {:>8.4f} {:>7} {:>8.2f} {}\n",
            outletLabel(row), o.distanciaAoPivot, gun ? "-" : fmt::format("{:.2f}", o.cota), o.caudal,
            o.pressao_ideal, o.pressao_real, o.pressao_actuante, nozzleLabel(o), o.caudal_do_aspersor,
            orNotAvailable(row.deviationPercent, "{:+.1f}"), row.depthMm, outletNote(row));
    }
    fmt::print(out, "\n");
}

std::string TextReport::outletNote(const OutletResult& row) {
    std::string note;
    if (row.reason != ChoiceReason::WithinTolerance) {
        note = reasonText(row.reason);
    }
    if (row.starvedRegulator) {
        note += std::string(note.empty() ? "" : "; ") + "regulator starved";
    }
    if (row.outlet.over_pressure) {
        note += std::string(note.empty() ? "" : "; ") + "over pressure";
    }
    return note;
}

void TextReport::writeSummary(std::ostream& out, const DesignResult& result, const Units& units) {
    const auto& s = result.summary;
    const auto flow = units.symbol(Quantity::Flow);
    const auto pressure = units.symbol(Quantity::Pressure);
    const auto length = units.symbol(Quantity::Length);
    fmt::print(out, "Summary\n");
    line(out, "Design discharge", fmt::format("{:.3f} {}", s.designFlowLps, flow));
    line(out, "Computed discharge", fmt::format("{:.3f} {}", s.computedFlowLps, flow));
    line(out, "Passes", std::to_string(s.passes));
    if (s.hasEndGun) {
        line(out, "End gun",
             fmt::format("{:.1f} {}, {:.3f} {} (booster {:.1f} {})", s.endGunPressureKpa, pressure,
                         s.endGunFlowLps, flow, s.endGunBoosterKpa, pressure));
    }
    line(out, "Irrigated length", fmt::format("{:.2f} {}", s.irrigatedLengthM, length));
    line(out, "Irrigated area", areaText(s.irrigatedAreaM2, units));
    line(out, "Revolution time", fmt::format("{:g} h", s.revolutionTimeH));
    line(out, "Depth per revolution",
         beside(s.depthMm, s.idealDepthMm, "{:.2f}", units.symbol(Quantity::Depth)));
    for (const auto& peak : s.peakRates) {
        line(out, "Peak application rate",
             fmt::format("{:.1f} {} at {} ({:.1f} {})", peak.rateMmH, units.symbol(Quantity::Rate),
                         peak.point.code, peak.point.distanceToCenter, length));
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
    fmt::print(out, "\nFindings\n");
    if (result.findings.empty()) {
        fmt::print(out, "  none\n");
    }
    for (const auto& finding : result.findings) {
        fmt::print(out, "  {:<8} {}\n", severityName(finding.severity), finding.message);
    }
}

void TextReport::write(std::ostream& out, const DesignResult& result) {
    write(out, result, Units(result.design.units));
}

void TextReport::write(std::ostream& out, const DesignResult& result, const Units& units) {
    const auto shown = ResultUnits::convert(result, units);
    writeHeader(out, shown, units);
    writeSpans(out, shown, units);
    writeOutlets(out, shown, units);
    writeSummary(out, shown, units);
    writeFindings(out, shown);
}

}  // namespace caudalis::design
