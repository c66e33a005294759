#include "ChartReport.hpp"

#include <fmt/format.h>
#include <fmt/ostream.h>

#include "caudalis/catalogue/Aspersor.hpp"
#include "caudalis/charts/CartaAspersores.hpp"
#include "caudalis/charts/MountedAspersor.hpp"
#include "caudalis/hydraulics/ReguladorPression.hpp"

namespace caudalis::cli {

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

void ChartReport::writeAccessories(std::ostream& out, CartaAspersores& chart) {
    line(out, "End-gun booster", fmt::format("{:g} kPa", chart.getEndGunBoost()));
    const auto indicators = chart.getIndicadores();
    line(out, "Indicators",
         fmt::format("{:g} h per revolution, {} blocked outlets", indicators.horasRevolucao,
                     indicators.numeroSaidasObturadas));
    const auto check = chart.getPluviometriaCheck();
    line(out, "Pluviometry check",
         fmt::format("{}; {}; Kostiakov k {:g}, a {:g}", pointText(check.firstSample),
                     pointText(check.secondSample), check.kostiakov.k, check.kostiakov.a));
    line(out, "Drop", dropText(chart.getDrop()));
    const auto regulators = chart.getReguladores();
    line(out, "Regulators", std::to_string(regulators->Count()));
    for (Long i = 1; i <= regulators->Count(); ++i) {
        const auto regulator = regulators->objectAt<ReguladorPression>(i);
        fmt::print(out, "    span {:>3}: {:g} kPa, {:g}-{:g} l/s{}\n", regulator->tramo(),
                   regulator->pression(), regulator->minimum_caudal(), regulator->maximum_caudal(),
                   regulator->installed() ? "" : " (not installed)");
    }
}

void ChartReport::writeNozzles(std::ostream& out, const CartaAspersores& chart) {
    const auto& mounted = chart.mountedAspersores();
    fmt::print(out, "Mounted nozzles: {}\n", mounted->Count());
    fmt::print(out, "{:>7}  {:<12} {:<16} {:<14} {:>6}\n", "outlet", "brand", "model", "nozzle", "id");
    for (Long i = 1; i <= mounted->Count(); ++i) {
        const auto entry = mounted->objectAt<MountedAspersor>(i);
        const auto place = entry->saida();
        const auto nozzle = entry->Aspersor();
        fmt::print(out, "{:>7}  {:<12} {:<16} {:<14} {:>6}\n",
                   fmt::format("{}-{}", place.numeroTramo, place.saida), nozzle->marca().nome,
                   nozzle->modelo().nome, nozzle->nome(), nozzle->id());
    }
}

void ChartReport::write(std::ostream& out, const LoadedChart& loaded) {
    auto& chart = *loaded.chart;
    fmt::print(out, "Chart {}: {} (system {})\n", chart.id(), chart.getNome(), loaded.system);
    writeAccessories(out, chart);
    writeNozzles(out, chart);
}

}  // namespace caudalis::cli
