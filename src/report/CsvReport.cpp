#include "caudalis/report/CsvReport.hpp"

#include <fmt/format.h>
#include <fmt/ostream.h>

#include "caudalis/catalogue/Aspersor.hpp"
#include "caudalis/core/TextLiteral.hpp"
#include "caudalis/design/NozzleSize.hpp"
#include "caudalis/design/ResultLabels.hpp"
#include "caudalis/report/ResultUnits.hpp"

namespace caudalis::design {

namespace {

std::string nozzleColumns(const saida& outlet) {
    if (!outlet.obj_aspersor) {
        return ",,";
    }
    const auto& nozzle = *outlet.obj_aspersor;
    return quotedLiteral(nozzle.marca().nome, '"') + "," + quotedLiteral(nozzle.modelo().nome, '"') + "," +
           quotedLiteral(nozzle.nome(), '"');
}

/// The header row: every column that holds a measure ends in its unit ("caudal_gpm", "depth_in").
std::string header(const Units& units) {
    const auto named = [&units](const char* name, Quantity quantity) {
        std::string column = name;
        column += '_';
        column += units.suffix(quantity);
        column += ',';
        return column;
    };
    std::string row = "span,outlet,place,";
    row += named("distanciaAoPivot", Quantity::Length);
    row += named("cota", Quantity::Length);
    row += named("caudal", Quantity::Flow);
    row += named("pressao_ideal", Quantity::Pressure);
    row += named("pressao_real", Quantity::Pressure);
    row += named("pressao_actuante", Quantity::Pressure);
    row += "marca,modelo,aspersor,";
    row += named("caudal_do_aspersor", Quantity::Flow);
    row += "deviation_percent,over_pressure,regulated,";
    row += named("depth", Quantity::Depth);
    row += named("ideal_depth", Quantity::Depth);
    row += named("pipe_pressure", Quantity::Pressure);
    row += named("nozzle", Quantity::Diameter);
    row += "nozzle_inch_128ths\n";
    return row;
}

}  // namespace

void CsvReport::write(std::ostream& out, const DesignResult& result) {
    write(out, result, Units(result.design.units));
}

void CsvReport::write(std::ostream& out, const DesignResult& design, const Units& units) {
    const auto result = ResultUnits::convert(design, units);
    out << header(units);
    for (std::size_t i = 0; i < result.outlets.size(); ++i) {
        const auto& row = result.outlets[i];
        const auto& o = row.outlet;
        const auto size = o.obj_aspersor ? NozzleSize::fromDesignation(o.obj_aspersor->nome()) : std::nullopt;
        fmt::print(out, "{},{},{},{},{},{},{},{},{},{},{},{},{},{},{},{},{},{},{}\n", row.span, row.number,
                   placeName(row.place), o.distanciaAoPivot, o.cota, o.caudal, o.pressao_ideal,
                   o.pressao_real, o.pressao_actuante, nozzleColumns(o), o.caudal_do_aspersor,
                   row.deviationPercent ? fmt::format("{}", *row.deviationPercent) : "",
                   o.over_pressure ? 1 : 0, row.regulated ? 1 : 0, row.depthMm, row.idealDepthMm,
                   units.fromSI(Quantity::Pressure, result.analysis.pipePressuresKpa.at(i)),
                   size ? fmt::format("{}", units.fromSI(Quantity::Diameter, size->millimetres)) : "",
                   size ? fmt::format("{}", size->inch128ths) : "");
    }
}

}  // namespace caudalis::design
