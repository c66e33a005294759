#include "caudalis/design/CsvReport.hpp"

#include <fmt/format.h>
#include <fmt/ostream.h>

#include "caudalis/catalogue/Aspersor.hpp"
#include "caudalis/design/NozzleSize.hpp"
#include "caudalis/design/ReportLabels.hpp"
#include "caudalis/design/ResultUnits.hpp"

namespace caudalis::design {

namespace {

std::string quoted(const std::string& text) {
    std::string result = "\"";
    for (const char c : text) {
        result += c;
        if (c == '"') {
            result += '"';
        }
    }
    return result + "\"";
}

std::string nozzleColumns(const saida& outlet) {
    if (!outlet.obj_aspersor) {
        return ",,";
    }
    const auto& nozzle = *outlet.obj_aspersor;
    return quoted(nozzle.marca().nome) + "," + quoted(nozzle.modelo().nome) + "," + quoted(nozzle.nome());
}

}  // namespace

void CsvReport::write(std::ostream& out, const DesignResult& result) {
    write(out, result, Units(result.design.units));
}

void CsvReport::write(std::ostream& out, const DesignResult& design, const Units& units) {
    const auto result = ResultUnits::convert(design, units);
    out << "span,outlet,place,distanciaAoPivot,cota,caudal,pressao_ideal,pressao_real,pressao_actuante,"
           "marca,modelo,aspersor,caudal_do_aspersor,deviation_percent,over_pressure,regulated,depth_mm,"
           "ideal_depth_mm,pipe_pressure_kpa,nozzle_mm,nozzle_inch_128ths\n";
    for (std::size_t i = 0; i < result.outlets.size(); ++i) {
        const auto& row = result.outlets[i];
        const auto& o = row.outlet;
        const auto size = o.obj_aspersor ? NozzleSize::fromDesignation(o.obj_aspersor->nome()) : std::nullopt;
        fmt::print(out, "{},{},{},{},{},{},{},{},{},{},{},{},{},{},{},{},{},{},{}\n", row.span, row.number,
                   placeName(row.place), o.distanciaAoPivot, o.cota, o.caudal, o.pressao_ideal,
                   o.pressao_real, o.pressao_actuante, nozzleColumns(o), o.caudal_do_aspersor,
                   row.deviationPercent ? fmt::format("{}", *row.deviationPercent) : "",
                   o.over_pressure ? 1 : 0, row.regulated ? 1 : 0, row.depthMm, row.idealDepthMm,
                   result.analysis.pipePressuresKpa.at(i), size ? fmt::format("{}", size->millimetres) : "",
                   size ? fmt::format("{}", size->inch128ths) : "");
    }
}

}  // namespace caudalis::design
