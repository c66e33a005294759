#include "caudalis/project/ChartReport.hpp"

#include <fmt/format.h>
#include <fmt/ostream.h>

#include "caudalis/catalogue/Aspersor.hpp"
#include "caudalis/charts/CartaAspersores.hpp"
#include "caudalis/charts/MountedAspersor.hpp"
#include "caudalis/design/DesignPrintout.hpp"
#include "caudalis/design/ReportLabels.hpp"
#include "caudalis/hydraulics/ReguladorPression.hpp"
#include "caudalis/project/ServiceError.hpp"

namespace caudalis::project {

namespace {

void line(std::ostream& out, const std::string& label, const std::string& value) {
    fmt::print(out, "  {:<20}{}\n", label, value);
}

std::string pointText(const PivotSample& point) {
    return fmt::format("{} at {:g} m (wetted diameter {:g} m)", point.code, point.distanceToCenter,
                       point.wetDiameter);
}

std::string dropText(const Drop& drop) {
    if (drop.p_is_null || drop.longitud == 0) {
        return "none";
    }
    return fmt::format("{:g} mm x {:g} m, material {} (C {}), {}", drop.diametro, drop.longitud,
                       drop.pipe_material.id, drop.pipe_material.rugosidade,
                       drop.p_installed ? "installed" : "not installed");
}

}  // namespace

void ChartReport::writeList(std::ostream& out, const std::vector<StoredChart>& charts) {
    fmt::print(out, "{:>10} {:>6}  {}\n", "system", "id", "name");
    for (const auto& stored : charts) {
        fmt::print(out, "{:>10} {:>6}  {}\n", stored.system, stored.info.id, stored.info.nome);
    }
}

std::vector<std::pair<std::string, std::string>> ChartReport::accessories(CartaAspersores& chart) {
    const auto indicators = chart.getIndicadores();
    const auto check = chart.getPluviometriaCheck();
    return {{"End-gun booster", fmt::format("{:g} kPa", chart.getEndGunBoost())},
            {"Indicators", fmt::format("{:g} h per revolution, {} blocked outlets", indicators.horasRevolucao,
                                       indicators.numeroSaidasObturadas)},
            {"Pluviometry check",
             fmt::format("{}; {}; Kostiakov k {:g}, a {:g}", pointText(check.firstSample),
                         pointText(check.secondSample), check.kostiakov.k, check.kostiakov.a)},
            {"Drop", dropText(chart.getDrop())},
            {"Regulators", std::to_string(chart.getReguladores()->Count())}};
}

std::vector<std::string> ChartReport::regulators(CartaAspersores& chart) {
    std::vector<std::string> lines;
    const auto regulators = chart.getReguladores();
    for (Long i = 1; i <= regulators->Count(); ++i) {
        const auto regulator = regulators->objectAt<ReguladorPression>(i);
        lines.push_back(fmt::format("span {:>3}: {:g} kPa, {:g}-{:g} l/s{}", regulator->tramo(),
                                    regulator->pression(), regulator->minimum_caudal(),
                                    regulator->maximum_caudal(),
                                    regulator->installed() ? "" : " (not installed)"));
    }
    return lines;
}

std::string ChartReport::heading(const StoredChartDocument& document) {
    const auto& chart = *document.stored.chart;
    return fmt::format("Chart {}: {} (system {})", chart.id(), chart.getNome(), document.stored.system);
}

void ChartReport::writeNozzles(std::ostream& out, const CartaAspersores& chart,
                               const std::optional<design::ChartFigures>& figures) {
    const auto& mounted = chart.mountedAspersores();
    fmt::print(out, "Mounted nozzles: {}\n", mounted->Count());
    fmt::print(out, "{:>7}  {:<12} {:<16} {:<14} {:>6} {:>10} {:>9} {:>9} {:>10} {:>10}\n", "outlet", "brand",
               "model", "nozzle", "id", "distance m", "pipe kPa", "act kPa", "req l/s", "q l/s");
    for (Long i = 1; i <= mounted->Count(); ++i) {
        const auto entry = mounted->objectAt<MountedAspersor>(i);
        const auto label = design::outletLabel(entry->saida());
        const auto nozzle = entry->Aspersor();
        fmt::print(out, "{:>7}  {:<12} {:<16} {:<14} {:>6} {}\n", label, nozzle->marca().nome,
                   nozzle->modelo().nome, nozzle->nome(), nozzle->id(), figuresText(figures, label));
    }
}

std::string ChartReport::figuresText(const std::optional<design::ChartFigures>& figures,
                                     const std::string& label) {
    if (!figures) {
        return "";
    }
    for (const auto& o : figures->outlets) {
        if (o.outlet == label) {
            return fmt::format("{:>10.2f} {:>9.1f} {:>9.1f} {:>10.4f} {:>10.4f}", o.distanceM, o.pipeKpa,
                               o.actingKpa, o.requiredLps, o.deliveredLps);
        }
    }
    return "";
}

void ChartReport::writeTimer(std::ostream& out, const std::optional<design::ChartFigures>& figures) {
    if (!figures || figures->speeds.tempoH100 <= 0) {
        return;
    }
    fmt::print(out, "Timer settings\n{:>8} {:>10} {:>12} {:>10}\n", "timer %", "hours", "tower m/h",
               "depth mm");
    for (Long i = 1; i <= 10; ++i) {
        const auto& row = figures->speeds.velocidades(i);
        fmt::print(out, "{:>8.0f} {:>10.1f} {:>12.1f} {:>10.2f}\n", row.percentagem, row.tempoDeUmaVolta,
                   row.velocidadeLinear, row.dotacao);
    }
}

void ChartReport::write(std::ostream& out, const StoredChartDocument& document) {
    const auto& loaded = document.stored;
    auto& chart = *loaded.chart;
    fmt::print(out, "{}\n", heading(document));
    for (const auto& [label, value] : accessories(chart)) {
        line(out, label, value);
    }
    for (const auto& regulator : regulators(chart)) {
        fmt::print(out, "    {}\n", regulator);
    }
    writeNozzles(out, chart, loaded.figures);
    writeTimer(out, loaded.figures);
}

design::ReportDocument ChartReport::document(const StoredChartDocument& document) {
    auto& chart = *document.stored.chart;
    if (!document.design) {
        throw InputError("chart " + std::to_string(chart.id()) +
                         " was read without its design, so it has no whole printout");
    }
    const auto& result = document.design->result;
    auto report = design::DesignPrintout::document(result, design::Units(result.design.units), true);
    report.subtitle.insert(report.subtitle.begin(), heading(document));
    // The stored chart's own lines, as `chart show` prints them, head the printout.
    design::ReportSection stored{"Stored chart", {}};
    for (const auto& [label, value] : accessories(chart)) {
        stored.blocks.emplace_back(design::ReportParagraph{label + ": " + value});
    }
    for (const auto& regulator : regulators(chart)) {
        stored.blocks.emplace_back(design::ReportParagraph{"Regulator of " + regulator});
    }
    report.sections.insert(report.sections.begin(), std::move(stored));
    return report;
}

}  // namespace caudalis::project
