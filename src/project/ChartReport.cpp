#include "caudalis/project/ChartReport.hpp"

#include <fmt/format.h>
#include <fmt/ostream.h>

#include "caudalis/catalogue/Aspersor.hpp"
#include "caudalis/charts/CartaAspersores.hpp"
#include "caudalis/charts/MountedAspersor.hpp"
#include "caudalis/design/ResultLabels.hpp"
#include "caudalis/hydraulics/ReguladorPression.hpp"
#include "caudalis/project/ServiceError.hpp"
#include "caudalis/report/DesignPrintout.hpp"

namespace caudalis::project {

namespace {

using design::Quantity;

void line(std::ostream& out, const std::string& label, const std::string& value) {
    fmt::print(out, "  {:<20}{}\n", label, value);
}

std::string pointText(const PivotSample& point, const design::UnitText& text) {
    return fmt::format("{} at {} (wetted diameter {})", point.code,
                       text.general(Quantity::Length, point.distanceToCenter),
                       text.general(Quantity::Length, point.wetDiameter));
}

std::string dropText(const Drop& drop, const design::UnitText& text) {
    if (drop.p_is_null || drop.longitud == 0) {
        return "none";
    }
    return fmt::format("{} x {}, material {} (C {}), {}", text.general(Quantity::Diameter, drop.diametro),
                       text.general(Quantity::Length, drop.longitud), drop.pipe_material.id,
                       drop.pipe_material.rugosidade, drop.p_installed ? "installed" : "not installed");
}

}  // namespace

void ChartReport::writeList(std::ostream& out, const std::vector<StoredChart>& charts) {
    fmt::print(out, "{:>10} {:>6}  {}\n", "system", "id", "name");
    for (const auto& stored : charts) {
        fmt::print(out, "{:>10} {:>6}  {}\n", stored.system, stored.info.id, stored.info.nome);
    }
}

std::vector<std::pair<std::string, std::string>> ChartReport::accessories(CartaAspersores& chart,
                                                                          const design::UnitText& text) {
    const auto indicators = chart.getIndicadores();
    const auto check = chart.getPluviometriaCheck();
    return {{"End-gun booster", text.general(Quantity::Pressure, chart.getEndGunBoost())},
            {"Indicators", fmt::format("{:g} h per revolution, {} blocked outlets", indicators.horasRevolucao,
                                       indicators.numeroSaidasObturadas)},
            {"Pluviometry check",
             fmt::format("{}; {}; Kostiakov k {:g}, a {:g}", pointText(check.firstSample, text),
                         pointText(check.secondSample, text), check.kostiakov.k, check.kostiakov.a)},
            {"Drop", dropText(chart.getDrop(), text)},
            {"Regulators", std::to_string(chart.getReguladores()->Count())}};
}

std::vector<std::string> ChartReport::regulators(CartaAspersores& chart, const design::UnitText& text) {
    std::vector<std::string> lines;
    const auto regulators = chart.getReguladores();
    for (Long i = 1; i <= regulators->Count(); ++i) {
        const auto regulator = regulators->objectAt<ReguladorPression>(i);
        lines.push_back(
            fmt::format("span {:>3}: {}, {}-{}{}", regulator->tramo(),
                        text.general(Quantity::Pressure, regulator->pression()),
                        fmt::format("{:g}", text.units().fromSI(Quantity::Flow, regulator->minimum_caudal())),
                        text.general(Quantity::Flow, regulator->maximum_caudal()),
                        regulator->installed() ? "" : " (not installed)"));
    }
    return lines;
}

std::string ChartReport::heading(const StoredChartDocument& document) {
    const auto& chart = *document.stored.chart;
    return fmt::format("Chart {}: {} (system {})", chart.id(), chart.getNome(), document.stored.system);
}

void ChartReport::writeNozzles(std::ostream& out, const CartaAspersores& chart,
                               const std::optional<design::ChartFigures>& figures,
                               const design::UnitText& text) {
    const auto& mounted = chart.mountedAspersores();
    fmt::print(out, "Mounted nozzles: {}\n", mounted->Count());
    fmt::print(out, "{:>7}  {:<12} {:<16} {:<14} {:>6} {:>10} {:>9} {:>9} {:>10} {:>10}\n", "outlet", "brand",
               "model", "nozzle", "id", text.heading("distance", Quantity::Length),
               text.heading("pipe", Quantity::Pressure), text.heading("act", Quantity::Pressure),
               text.heading("req", Quantity::Flow), text.heading("q", Quantity::Flow));
    for (Long i = 1; i <= mounted->Count(); ++i) {
        const auto entry = mounted->objectAt<MountedAspersor>(i);
        const auto label = design::outletLabel(entry->saida());
        const auto nozzle = entry->Aspersor();
        fmt::print(out, "{:>7}  {:<12} {:<16} {:<14} {:>6} {}\n", label, nozzle->marca().nome,
                   nozzle->modelo().nome, nozzle->nome(), nozzle->id(), figuresText(figures, label, text));
    }
}

std::string ChartReport::figuresText(const std::optional<design::ChartFigures>& figures,
                                     const std::string& label, const design::UnitText& text) {
    if (!figures) {
        return "";
    }
    for (const auto& o : figures->outlets) {
        if (o.outlet == label) {
            return fmt::format("{:>10} {:>9} {:>9} {:>10} {:>10}", text.number(Quantity::Length, o.distanceM),
                               text.number(Quantity::Pressure, o.pipeKpa),
                               text.number(Quantity::Pressure, o.actingKpa),
                               text.number(Quantity::Flow, o.requiredLps, 1),
                               text.number(Quantity::Flow, o.deliveredLps, 1));
        }
    }
    return "";
}

void ChartReport::writeTimer(std::ostream& out, const std::optional<design::ChartFigures>& figures,
                             const design::UnitText& text) {
    if (!figures || figures->speeds.tempoH100 <= 0) {
        return;
    }
    fmt::print(out, "Timer settings\n{:>8} {:>10} {:>12} {:>10}\n", "timer %", "hours",
               text.units().symbol(Quantity::Length).insert(0, "tower ").append("/h"),
               text.heading("depth", Quantity::Depth));
    for (Long i = 1; i <= 10; ++i) {
        const auto& row = figures->speeds.velocidades(i);
        fmt::print(out, "{:>8.0f} {:>10.1f} {:>12} {:>10}\n", row.percentagem, row.tempoDeUmaVolta,
                   text.number(Quantity::Length, row.velocidadeLinear, -1),
                   text.number(Quantity::Depth, row.dotacao));
    }
}

void ChartReport::write(std::ostream& out, const StoredChartDocument& document,
                        const design::UnitText& text) {
    const auto& loaded = document.stored;
    auto& chart = *loaded.chart;
    fmt::print(out, "{}\n", heading(document));
    for (const auto& [label, value] : accessories(chart, text)) {
        line(out, label, value);
    }
    for (const auto& regulator : regulators(chart, text)) {
        fmt::print(out, "    {}\n", regulator);
    }
    writeNozzles(out, chart, loaded.figures, text);
    writeTimer(out, loaded.figures, text);
}

design::ReportDocument ChartReport::document(const StoredChartDocument& document,
                                             const design::Units& units) {
    auto& chart = *document.stored.chart;
    if (!document.design) {
        throw InputError("chart " + std::to_string(chart.id()) +
                         " was read without its design, so it has no whole printout");
    }
    const auto& result = document.design->result;
    auto report = design::DesignPrintout::document(result, units, true);
    const design::UnitText text(units);
    report.subtitle.insert(report.subtitle.begin(), heading(document));
    // The stored chart's own lines, as `chart show` prints them, head the printout.
    design::ReportSection stored{"Stored chart", {}};
    for (const auto& [label, value] : accessories(chart, text)) {
        stored.blocks.emplace_back(design::ReportParagraph{label + ": " + value});
    }
    for (const auto& regulator : regulators(chart, text)) {
        stored.blocks.emplace_back(design::ReportParagraph{"Regulator of " + regulator});
    }
    report.sections.insert(report.sections.begin(), std::move(stored));
    return report;
}

}  // namespace caudalis::project
