#include "ChartReport.hpp"

#include <fmt/format.h>
#include <fmt/ostream.h>

#include "caudalis/catalogue/Aspersor.hpp"
#include "caudalis/charts/CartaAspersores.hpp"
#include "caudalis/charts/MountedAspersor.hpp"
#include "caudalis/design/ResultLabels.hpp"
#include "caudalis/hydraulics/ReguladorPression.hpp"

namespace caudalis::cli {

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

void ChartReport::writeAccessories(std::ostream& out, CartaAspersores& chart, const design::UnitText& text) {
    line(out, "End-gun booster", text.general(Quantity::Pressure, chart.getEndGunBoost()));
    const auto indicators = chart.getIndicadores();
    line(out, "Indicators",
         fmt::format("{:g} h per revolution, {} blocked outlets", indicators.horasRevolucao,
                     indicators.numeroSaidasObturadas));
    const auto check = chart.getPluviometriaCheck();
    line(out, "Pluviometry check",
         fmt::format("{}; {}; Kostiakov k {:g}, a {:g}", pointText(check.firstSample, text),
                     pointText(check.secondSample, text), check.kostiakov.k, check.kostiakov.a));
    line(out, "Drop", dropText(chart.getDrop(), text));
    const auto regulators = chart.getReguladores();
    line(out, "Regulators", std::to_string(regulators->Count()));
    for (Long i = 1; i <= regulators->Count(); ++i) {
        const auto regulator = regulators->objectAt<ReguladorPression>(i);
        fmt::print(out, "    span {:>3}: {}, {}-{}{}\n", regulator->tramo(),
                   text.general(Quantity::Pressure, regulator->pression()),
                   fmt::format("{:g}", text.units().fromSI(Quantity::Flow, regulator->minimum_caudal())),
                   text.general(Quantity::Flow, regulator->maximum_caudal()),
                   regulator->installed() ? "" : " (not installed)");
    }
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

void ChartReport::write(std::ostream& out, const LoadedChart& loaded, const design::UnitText& text) {
    auto& chart = *loaded.chart;
    fmt::print(out, "Chart {}: {} (system {})\n", chart.id(), chart.getNome(), loaded.system);
    writeAccessories(out, chart, text);
    writeNozzles(out, chart, loaded.figures, text);
    writeTimer(out, loaded.figures, text);
}

}  // namespace caudalis::cli
