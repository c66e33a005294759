#include "caudalis/report/DesignPrintout.hpp"

#include <functional>

#include "caudalis/catalogue/Aspersor.hpp"
#include "caudalis/design/NozzleSize.hpp"
#include "caudalis/design/PipePressures.hpp"
#include "caudalis/design/ResultLabels.hpp"

namespace caudalis::design {

namespace {

std::string percent(const std::optional<double>& value) {
    return value ? UnitText::fixed(*value, 1) + " %" : "n/a";
}

ReportTable pairs(std::vector<std::vector<std::string>> rows) {
    return ReportTable{"", {}, std::move(rows), {}};
}

std::vector<bool> numericAfter(std::size_t textColumns, std::size_t columns) {
    std::vector<bool> numeric(columns, true);
    for (std::size_t i = 0; i < textColumns && i < columns; ++i) {
        numeric[i] = false;
    }
    return numeric;
}

std::string nozzleBore(const saida& outlet, const UnitText& text) {
    if (!outlet.obj_aspersor) {
        return "-";
    }
    const auto size = NozzleSize::fromDesignation(outlet.obj_aspersor->nome());
    return size ? text.number(Quantity::Diameter, size->millimetres, 1) : "-";
}

/// The Kostiakov law's units as the runoff check uses them; k is converted for US units.
std::string kostiakovUnits(const DesignResult& result, const UnitText& text) {
    std::string units = "(I = k t^a, ";
    units += text.units().symbol(Quantity::Depth);
    units += " and hours";
    const auto& check = result.design.pluviometryCheck;
    if (text.units().system() != UnitSystem::SI && check) {
        units += ": k = ";
        units += text.number(Quantity::Depth, check->kostiakov.k, 1);
    }
    units += ")";
    return units;
}

std::string nozzleSize128(const saida& outlet) {
    if (!outlet.obj_aspersor) {
        return "-";
    }
    const auto size = NozzleSize::fromDesignation(outlet.obj_aspersor->nome());
    return size ? UnitText::fixed(size->inch128ths, 1) : "-";
}

std::string modelOf(const saida& outlet) {
    return outlet.obj_aspersor ? outlet.obj_aspersor->marca().nome + " " + outlet.obj_aspersor->modelo().nome
                               : "-";
}

std::string nozzleOf(const saida& outlet) {
    return outlet.obj_aspersor ? outlet.obj_aspersor->nome() : "-";
}

std::string regulatorText(const DesignResult& result, const OutletResult& row, const UnitText& text) {
    const auto* regulator = regulatorOf(result, row);
    if (!row.regulated) {
        return "-";
    }
    const double rating = result.spans[static_cast<std::size_t>(row.span - 1)].span.regulador.Preg;
    const std::string model = regulator && regulator->model ? *regulator->model + " " : "";
    return model + text.text(Quantity::Pressure, rating);
}

std::string dropHeight(const DesignResult& result, const OutletResult& row, const UnitText& text) {
    const auto& drop = result.design.drop;
    if (row.place == OutletPlace::EndGun || !drop || !drop->heightAboveGroundM) {
        return "-";
    }
    return text.number(Quantity::Length, *drop->heightAboveGroundM);
}

std::string hoseText(const DesignResult& result, const OutletResult& row, const UnitText& text) {
    const auto& drop = result.design.drop;
    if (row.place == OutletPlace::EndGun || !drop || !drop->installed) {
        return "-";
    }
    return drop->material.name + " " + text.text(Quantity::Diameter, drop->diameterMm) + " x " +
           text.text(Quantity::Length, drop->lengthM);
}

std::string spanOutsideDiameter(const DesignResult& result, const SpanResult& row, const UnitText& text) {
    const auto& description = row.overhang ? *result.design.overhang
                                           : result.design.spans[static_cast<std::size_t>(row.number - 1)];
    return description.outsideDiameterMm ? text.number(Quantity::Diameter, *description.outsideDiameterMm)
                                         : "-";
}

std::vector<std::pair<double, double>> along(
    const DesignResult& result, const UnitText& text,
    const std::function<double(const OutletResult&, std::size_t)>& value, Quantity quantity,
    bool withGun = true) {
    std::vector<std::pair<double, double>> points;
    for (std::size_t i = 0; i < result.outlets.size(); ++i) {
        const auto& row = result.outlets[i];
        if (withGun || row.place != OutletPlace::EndGun) {
            points.emplace_back(text.units().fromSI(Quantity::Length, row.outlet.distanciaAoPivot),
                                text.units().fromSI(quantity, value(row, i)));
        }
    }
    return points;
}

PlotSeries series(std::string label, std::vector<std::pair<double, double>> points, SeriesStyle style,
                  PlotAxis axis = PlotAxis::Left) {
    return PlotSeries{std::move(label), std::move(points), style, axis, ""};
}

}  // namespace

ReportSection DesignPrintout::findings(const DesignResult& result) {
    ReportTable table{"", {"severity", "finding", "what it means"}, {}, {}};
    for (const auto& finding : result.findings) {
        table.rows.push_back({severityName(finding.severity), finding.code, finding.message});
    }
    if (table.rows.empty()) {
        return ReportSection{"Verdict", {ReportParagraph{"Nothing to report: every check passed."}}};
    }
    return ReportSection{"Verdict", {table}};
}

ReportSection DesignPrintout::summary(const DesignResult& result, const UnitText& text) {
    const auto& s = result.summary;
    const auto& a = result.analysis;
    std::vector<std::vector<std::string>> rows{
        {"Design discharge", text.text(Quantity::Flow, s.designFlowLps)},
        {"Computed discharge", text.text(Quantity::Flow, s.computedFlowLps) + " (" +
                                   UnitText::fixed((s.computedFlowLps / s.designFlowLps - 1) * 100, 1) +
                                   " % of the design)"},
        {"Passes", std::to_string(s.passes)}};
    if (s.hasEndGun) {
        rows.push_back({"End gun", text.text(Quantity::Pressure, s.endGunPressureKpa) + ", " +
                                       text.text(Quantity::Flow, s.endGunFlowLps) + " (booster " +
                                       text.text(Quantity::Pressure, s.endGunBoosterKpa) + ")"});
    }
    rows.push_back({"Irrigated length", text.text(Quantity::Length, s.irrigatedLengthM)});
    rows.push_back({"Irrigated area", text.area(s.irrigatedAreaM2)});
    rows.push_back({"Revolution time at 100 %", UnitText::fixed(s.revolutionTimeH, 2) + " h"});
    if (a.depths) {
        rows.push_back({"Depth per revolution (volume over area)", text.depth(a.depths->volumeOverAreaMm)});
        rows.push_back({"Mean of the outlets' depths (distance-weighted)",
                        text.depth(a.depths->distanceWeightedMeanMm)});
    }
    rows.push_back({"Elevation: highest, lowest, at the pivot",
                    text.text(Quantity::Length, a.elevation.highestM) + ", " +
                        text.text(Quantity::Length, a.elevation.lowestM) + ", " +
                        text.text(Quantity::Length, a.elevation.atPivotM)});
    rows.push_back(
        {"Highest point", text.text(Quantity::Length, a.elevation.highestAtM) + " from the centre"});
    for (const auto& peak : s.peakRates) {
        rows.push_back({"Peak application rate at " + peak.point.code,
                        text.text(Quantity::Rate, peak.rateMmH) + " at " +
                            text.text(Quantity::Length, peak.point.distanceToCenter)});
    }
    rows.push_back({"CU Heermann-Hein, per-outlet depths", percent(s.uniformityCoefficient) + " (ideal " +
                                                               percent(s.idealUniformityCoefficient) + ")"});
    rows.push_back({"DU low quarter, per-outlet depths", percent(s.lowQuarterUniformity) + " (ideal " +
                                                             percent(s.idealLowQuarterUniformity) + ")"});
    rows.push_back({"CU Heermann-Hein, application profile", percent(a.profileUniformityCoefficient)});
    rows.push_back({"DU low quarter, application profile", percent(a.profileLowQuarterUniformity)});
    rows.push_back({"Outlets / without nozzle / over pressure",
                    std::to_string(s.outlets) + " / " + std::to_string(s.unfittedOutlets) + " / " +
                        std::to_string(s.overPressureOutlets)});
    ReportSection section{"Summary", {pairs(std::move(rows))}};
    section.blocks.push_back(ReportParagraph{
        "Per-outlet depths give each outlet's water to its own ring of ground; the application profile "
        "spreads "
        "each sprinkler's water over its wetted diameter with an elliptical pattern and adds the overlapping "
        "patterns, from the first outlet to the end of the spans, as a catch-can line would measure it."});
    if (a.depths) {
        section.blocks.push_back(ReportParagraph{DepthBalance::explanation(*a.depths, text)});
    }
    return section;
}

ReportSection DesignPrintout::spans(const DesignResult& result, const UnitText& text) {
    ReportTable table{
        "",
        {"span", "name", text.heading("length", Quantity::Length), text.heading("OD", Quantity::Diameter),
         text.heading("ID", Quantity::Diameter), text.heading("spacing", Quantity::Spacing), "outlets", "C",
         text.heading("in", Quantity::Pressure), text.heading("in", Quantity::Flow),
         text.heading("out", Quantity::Pressure), text.heading("out", Quantity::Flow),
         text.heading("friction", Quantity::Pressure), text.heading("gain", Quantity::Length),
         text.heading("regulator", Quantity::Pressure)},
        {},
        numericAfter(2, 15)};
    for (const auto& row : result.spans) {
        const auto& span = row.span;
        const double gain = PipePressures::elevationGain(span);
        const double friction = PipePressures::frictionLoss(span);
        table.rows.push_back(
            {row.overhang ? "overhang" : std::to_string(row.number), span.denominacion,
             text.number(Quantity::Length, span.longitude), spanOutsideDiameter(result, row, text),
             text.number(Quantity::Diameter, span.diametro),
             text.number(Quantity::Spacing, span.separationSaidas_cm), std::to_string(span.Saidas.count()),
             UnitText::fixed(result.design.roughnessC, 0),
             text.number(Quantity::Pressure, span.entry_conditions.pressao),
             text.number(Quantity::Flow, span.entry_conditions.caudal),
             text.number(Quantity::Pressure, span.exit_condition.pressao),
             text.number(Quantity::Flow, span.exit_condition.caudal),
             text.number(Quantity::Pressure, friction), text.number(Quantity::Length, gain),
             span.temRegulador ? text.number(Quantity::Pressure, span.regulador.Preg) : "-"});
    }
    return ReportSection{"Spans", {table}};
}

ReportSection DesignPrintout::outlets(const DesignResult& result, const UnitText& text) {
    ReportTable table{
        "",
        {"outlet", text.heading("distance", Quantity::Length), text.heading("ground", Quantity::Length),
         text.heading("pipe", Quantity::Pressure), text.heading("after drop", Quantity::Pressure),
         text.heading("acting", Quantity::Pressure), text.heading("required", Quantity::Flow),
         text.heading("delivered", Quantity::Flow), "dev %", text.heading("nozzle", Quantity::Diameter),
         "nozzle /128 in", "model", "nozzle", text.heading("drop height", Quantity::Length), "hose",
         "regulator", text.heading("depth", Quantity::Depth), "note"},
        {},
        numericAfter(1, 11)};
    for (std::size_t i = 11; i < table.headers.size(); ++i) {
        table.numericColumns[i] = i == 16;
    }
    for (std::size_t i = 0; i < result.outlets.size(); ++i) {
        const auto& row = result.outlets[i];
        const auto& o = row.outlet;
        const bool gun = row.place == OutletPlace::EndGun;
        table.rows.push_back(
            {outletLabel(row), text.number(Quantity::Length, o.distanciaAoPivot),
             gun ? "-" : text.number(Quantity::Length, o.cota),
             text.number(Quantity::Pressure, result.analysis.pipePressuresKpa[i]),
             text.number(Quantity::Pressure, o.pressao_real),
             text.number(Quantity::Pressure, o.pressao_actuante), text.number(Quantity::Flow, o.caudal, 1),
             text.number(Quantity::Flow, o.caudal_do_aspersor, 1),
             row.deviationPercent ? UnitText::fixed(*row.deviationPercent, 1) : "n/a", nozzleBore(o, text),
             nozzleSize128(o), modelOf(o), nozzleOf(o), dropHeight(result, row, text),
             hoseText(result, row, text), regulatorText(result, row, text),
             text.number(Quantity::Depth, row.depthMm), outletNote(row)});
    }
    return ReportSection{"Outlets", {table}};
}

ReportSection DesignPrintout::timer(const DesignResult& result, const UnitText& text) {
    const auto& speeds = result.analysis.speeds;
    ReportTable table{"",
                      {"timer %", "hours per revolution", "end tower speed", "depth per revolution"},
                      {},
                      {true, true, true, true}};
    if (speeds.tempoH100 > 0) {
        for (Long i = 1; i <= 10; ++i) {
            const auto& row = speeds.velocidades(i);
            table.rows.push_back({UnitText::fixed(row.percentagem, 0),
                                  UnitText::fixed(row.tempoDeUmaVolta, 1), text.speed(row.velocidadeLinear),
                                  text.depth(row.dotacao)});
        }
    }
    return ReportSection{
        "Timer settings",
        {ReportParagraph{"The end tower runs the set percentage of the time; the revolution takes "
                         "100 / x times as long and lays 100 / x times the depth (volume over area)."},
         table}};
}

ReportSection DesignPrintout::runoff(const DesignResult& result, const UnitText& text) {
    ReportSection section{"Runoff", {}};
    const auto& a = result.analysis;
    if (a.runoffAtCheckPoints.empty() && a.runoffAlongMachine.empty()) {
        section.blocks.push_back(
            ReportParagraph{"Not checked: the design gives no usable Kostiakov infiltration law."});
        return section;
    }
    std::string explanation =
        "The application rate under the passing wetted strip follows an ellipse whose peak is the machine's "
        "peak rate; the soil takes water in at the Kostiakov rate a k t^(a-1) ";
    explanation += kostiakovUnits(result, text);
    explanation +=
        ". Water applied faster than that is potential runoff, with no credit for surface storage (Dillon, "
        "Hiler and Vittetoe, Trans. ASAE 15(5), 1972; Gilley, J. Irrig. Drain. Eng. 110(1), 1984).";
    section.blocks.push_back(ReportParagraph{explanation});
    ReportTable table{
        "",
        {"point", text.heading("distance", Quantity::Length),
         text.heading("wetted diameter", Quantity::Length), text.heading("peak", Quantity::Rate),
         "minutes under water", text.heading("applied", Quantity::Depth),
         text.heading("intake", Quantity::Depth), text.heading("runoff", Quantity::Depth), "verdict"},
        {},
        numericAfter(1, 9)};
    table.numericColumns[8] = false;
    const auto add = [&](const RunoffAtPoint& point) {
        const auto& e = point.estimate;
        table.rows.push_back(
            {point.code, text.number(Quantity::Length, e.distanceM),
             text.number(Quantity::Length, e.wettedDiameterM), text.number(Quantity::Rate, e.peakRateMmH),
             UnitText::fixed(e.applicationTimeH * 60, 1), text.number(Quantity::Depth, e.appliedMm),
             text.number(Quantity::Depth, e.infiltrationCapacityMm), text.number(Quantity::Depth, e.runoffMm),
             e.verdict == RunoffVerdict::Runoff ? "runoff" : "no runoff"});
    };
    for (const auto& point : a.runoffAtCheckPoints) {
        add(point);
    }
    if (!a.runoffAlongMachine.empty()) {
        add(a.runoffAlongMachine.back());
    }
    section.blocks.push_back(table);
    return section;
}

ReportSection DesignPrintout::plots(const DesignResult& result, const UnitText& text) {
    const auto& units = text.units();
    const auto x = text.heading("distance from the centre", Quantity::Length);
    const auto& a = result.analysis;
    ReportPlot pressure{
        "Pressure along the machine", x, text.heading("pressure", Quantity::Pressure), "", {}};
    pressure.series.push_back(
        series("pipe",
               along(
                   result, text, [&](const OutletResult&, std::size_t i) { return a.pipePressuresKpa[i]; },
                   Quantity::Pressure),
               SeriesStyle::Line));
    pressure.series.push_back(
        series("acting on the nozzle",
               along(
                   result, text, [](const OutletResult& r, std::size_t) { return r.outlet.pressao_actuante; },
                   Quantity::Pressure),
               SeriesStyle::Line));
    pressure.series.push_back(
        series("ideal",
               along(
                   result, text, [](const OutletResult& r, std::size_t) { return r.outlet.pressao_ideal; },
                   Quantity::Pressure),
               SeriesStyle::DashedLine));
    ReportPlot flow{"Flow per outlet", x, text.heading("flow", Quantity::Flow), "", {}};
    flow.series.push_back(
        series("required",
               along(
                   result, text, [](const OutletResult& r, std::size_t) { return r.outlet.caudal; },
                   Quantity::Flow, false),
               SeriesStyle::DashedLine));
    flow.series.push_back(series(
        "delivered",
        along(
            result, text, [](const OutletResult& r, std::size_t) { return r.outlet.caudal_do_aspersor; },
            Quantity::Flow, false),
        SeriesStyle::Points));
    ReportPlot ground{"Ground profile", x, text.heading("elevation", Quantity::Length), "", {}};
    auto groundPoints = along(
        result, text, [](const OutletResult& r, std::size_t) { return r.outlet.cota; }, Quantity::Length,
        false);
    groundPoints.insert(groundPoints.begin(), {0.0, units.fromSI(Quantity::Length, a.elevation.atPivotM)});
    ground.series.push_back(series("ground under the outlets", groundPoints, SeriesStyle::Line));
    ReportPlot depth{"Depth per revolution", x, text.heading("depth", Quantity::Depth), "", {}};
    depth.series.push_back(series(
        "per outlet",
        along(
            result, text, [](const OutletResult& r, std::size_t) { return r.depthMm; }, Quantity::Depth),
        SeriesStyle::Points));
    std::vector<std::pair<double, double>> profile;
    for (const auto& [distance, mm] : a.profile) {
        profile.emplace_back(units.fromSI(Quantity::Length, distance), units.fromSI(Quantity::Depth, mm));
    }
    depth.series.push_back(series("application profile (overlapping patterns)", profile, SeriesStyle::Line));
    ReportSection section{"Plots", {pressure, flow, ground, depth}};
    if (!a.runoffAlongMachine.empty()) {
        ReportPlot rate{"Application rate and soil intake",
                        x,
                        text.heading("rate", Quantity::Rate),
                        text.heading("runoff", Quantity::Depth),
                        {}};
        std::vector<std::pair<double, double>> peak;
        std::vector<std::pair<double, double>> intake;
        std::vector<std::pair<double, double>> runoff;
        for (const auto& point : a.runoffAlongMachine) {
            const auto& e = point.estimate;
            const double at = units.fromSI(Quantity::Length, e.distanceM);
            peak.emplace_back(at, units.fromSI(Quantity::Rate, e.peakRateMmH));
            intake.emplace_back(at,
                                units.fromSI(Quantity::Rate, e.infiltrationCapacityMm / e.applicationTimeH));
            runoff.emplace_back(at, units.fromSI(Quantity::Depth, e.runoffMm));
        }
        rate.series.push_back(series("peak application rate", peak, SeriesStyle::Line));
        rate.series.push_back(
            series("soil intake, mean over the time under water", intake, SeriesStyle::DashedLine));
        rate.series.push_back(
            series("potential runoff per revolution", runoff, SeriesStyle::Line, PlotAxis::Right));
        section.blocks.push_back(rate);
    }
    return section;
}

std::string DesignPrintout::packageLine(const DesignResult& result, const UnitText& text) {
    const auto& package = result.package;
    std::string line = "Package: spans " + (package.spans.empty() ? std::string("-") : package.spans);
    if (!package.inner.empty()) {
        line += ", up to " + text.text(Quantity::Length, package.innerToDistanceM) + " " + package.inner;
    }
    if (!package.endGun.empty() && result.summary.hasEndGun) {
        line += ", end gun " + package.endGun;
    }
    return line;
}

std::string DesignPrintout::outletNote(const OutletResult& row) {
    std::vector<std::string> notes;
    const bool fittedAsStored = row.reason == ChoiceReason::Stored && row.outlet.obj_aspersor;
    if (row.reason != ChoiceReason::WithinTolerance && !fittedAsStored) {
        notes.push_back(reasonText(row.reason));
    }
    if (row.starvedRegulator) {
        notes.push_back("regulator starved");
    }
    if (row.outlet.over_pressure) {
        notes.push_back("over pressure");
    }
    std::string note;
    for (const auto& part : notes) {
        note += (note.empty() ? "" : "; ") + part;
    }
    return note;
}

ReportDocument DesignPrintout::document(const DesignResult& result, const Units& units, bool withPlots) {
    const UnitText text(units);
    const auto& design = result.design;
    ReportDocument document;
    document.orientation = PageOrientation::Landscape;
    document.title = "Sprinkler chart: " + design.name +
                     (design.systemId ? " (system " + std::to_string(*design.systemId) + ")" : std::string());
    document.subtitle.push_back("Inlet " + text.text(Quantity::Pressure, design.inletPressureKpa) +
                                ", design flow " + text.text(Quantity::Flow, design.designFlowLps) +
                                ", pipe C " + UnitText::fixed(design.roughnessC, 0) + ", nozzles within " +
                                UnitText::fixed(design.nozzleSelection.tolerance * 100, 0) + " %");
    document.subtitle.push_back(packageLine(result, text));
    document.sections = {findings(result), summary(result, text)};
    if (withPlots) {
        document.sections.push_back(plots(result, text));
    }
    for (auto section :
         {spans(result, text), outlets(result, text), timer(result, text), runoff(result, text)}) {
        document.sections.push_back(std::move(section));
    }
    return document;
}

}  // namespace caudalis::design
