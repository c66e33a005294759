#include "caudalis/design/ChartFigures.hpp"

#include "caudalis/core/Error.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/db/SqlText.hpp"
#include "caudalis/design/ResultLabels.hpp"

namespace caudalis::design {

namespace {

bool hasTable(Connection& project, const std::string& table) {
    try {
        project.Execute("SELECT id_carta FROM " + table + " WHERE 1 = 0");
        return true;
    } catch (const Error&) {
        return false;
    }
}

bool hasSideTables(Connection& project) {
    return hasTable(project, "chart_speed_table") && hasTable(project, "chart_outlet_figures");
}

std::string values(const std::vector<double>& numbers) {
    std::string text;
    for (const double number : numbers) {
        text += ", " + sqlDouble(number);
    }
    return text;
}

/// `withDesign` tells whether the project database has the table `chart_design`; asked before a
/// transaction starts, since a failed statement ends a PostgreSQL transaction.
void deleteRows(Connection& project, const std::string& id, bool withDesign) {
    project.Execute("DELETE FROM chart_speed_table WHERE id_carta = " + id);
    project.Execute("DELETE FROM chart_outlet_figures WHERE id_carta = " + id);
    if (withDesign) {
        project.Execute("DELETE FROM chart_design WHERE id_carta = " + id);
    }
}

std::string loadDesign(Connection& project, const std::string& id) {
    if (!hasTable(project, "chart_design")) {
        return {};
    }
    const auto rows = project.Execute("SELECT design FROM chart_design WHERE id_carta = " + id);
    return rows->EOF_() ? std::string() : rows->Fields("design").toString();
}

void insertRows(Connection& project, const std::string& id, const ChartFigures& figures) {
    for (Long i = 1; figures.speeds.tempoH100 > 0 && i <= 10; ++i) {
        const auto& row = figures.speeds.velocidades(i);
        project.Execute(
            "INSERT INTO chart_speed_table (id_carta, percentagem, velocidade_linear, tempo_de_uma_volta, "
            "dotacao) VALUES (" +
            id + values({row.percentagem, row.velocidadeLinear, row.tempoDeUmaVolta, row.dotacao}) + ")");
    }
    long position = 0;
    for (const auto& o : figures.outlets) {
        project.Execute(
            "INSERT INTO chart_outlet_figures (id_carta, position, outlet, distance_m, ground_m, pipe_kpa, "
            "acting_kpa, required_lps, delivered_lps) VALUES (" +
            id + ", " + std::to_string(++position) + ", " + sqlQuote(Variant(o.outlet)) +
            values({o.distanceM, o.groundM, o.pipeKpa, o.actingKpa, o.requiredLps, o.deliveredLps}) + ")");
    }
    if (!figures.design.empty()) {
        project.Execute("INSERT INTO chart_design (id_carta, design) VALUES (" + id + ", " +
                        textLiteral(figures.design) + ")");
    }
}

}  // namespace

ChartFigures ChartFigures::of(const DesignResult& result) {
    ChartFigures figures;
    figures.speeds = result.analysis.speeds;
    for (std::size_t i = 0; i < result.outlets.size(); ++i) {
        const auto& row = result.outlets[i];
        const auto& o = row.outlet;
        figures.outlets.push_back({outletLabel(row), o.distanciaAoPivot, o.cota,
                                   result.analysis.pipePressuresKpa.at(i), o.pressao_actuante, o.caudal,
                                   o.caudal_do_aspersor});
    }
    return figures;
}

ChartFigures::SideTables ChartFigures::sideTablesOf(Connection& project) {
    return {hasSideTables(project), hasTable(project, "chart_design")};
}

void ChartFigures::replace(Connection& project, Long chartId, const ChartFigures& figures,
                           SideTables tables) {
    const auto id = std::to_string(chartId);
    deleteRows(project, id, tables.design);
    insertRows(project, id, figures);
}

void ChartFigures::remove(Connection& project, Long chartId, SideTables tables) {
    if (tables.figures) {
        deleteRows(project, std::to_string(chartId), tables.design);
    }
}

void ChartFigures::save(Connection& project, Long chartId, const ChartFigures& figures) {
    const auto tables = sideTablesOf(project);
    project.BeginTrans();
    try {
        replace(project, chartId, figures, tables);
    } catch (...) {
        project.RollbackTrans();
        throw;
    }
    project.CommitTrans();
}

std::optional<ChartFigures> ChartFigures::load(Connection& project, Long chartId) {
    if (!hasSideTables(project)) {
        return std::nullopt;
    }
    const auto id = std::to_string(chartId);
    ChartFigures figures;
    const auto speeds = project.Execute(
        "SELECT percentagem, velocidade_linear, tempo_de_uma_volta, dotacao FROM chart_speed_table WHERE "
        "id_carta = " +
        id + " ORDER BY percentagem");
    for (Long i = 1; !speeds->EOF_() && i <= 10; speeds->MoveNext(), ++i) {
        auto& row = figures.speeds.velocidades(i);
        row = {speeds->Fields("percentagem").toDouble(), speeds->Fields("velocidade_linear").toDouble(),
               speeds->Fields("tempo_de_uma_volta").toDouble(), speeds->Fields("dotacao").toDouble()};
        figures.speeds.tempoH100 = row.percentagem == 100 ? row.tempoDeUmaVolta : figures.speeds.tempoH100;
    }
    const auto outlets = project.Execute(
        "SELECT outlet, distance_m, ground_m, pipe_kpa, acting_kpa, required_lps, delivered_lps FROM "
        "chart_outlet_figures WHERE id_carta = " +
        id + " ORDER BY position");
    for (; !outlets->EOF_(); outlets->MoveNext()) {
        figures.outlets.push_back(
            {outlets->Fields("outlet").toString(), outlets->Fields("distance_m").toDouble(),
             outlets->Fields("ground_m").toDouble(), outlets->Fields("pipe_kpa").toDouble(),
             outlets->Fields("acting_kpa").toDouble(), outlets->Fields("required_lps").toDouble(),
             outlets->Fields("delivered_lps").toDouble()});
    }
    figures.design = loadDesign(project, id);
    if (figures.outlets.empty() && figures.speeds.tempoH100 == 0 && figures.design.empty()) {
        return std::nullopt;
    }
    return figures;
}

void ChartFigures::erase(Connection& project, Long chartId) {
    const auto tables = sideTablesOf(project);
    if (tables.figures) {
        project.BeginTrans();
        remove(project, chartId, tables);
        project.CommitTrans();
    }
}

}  // namespace caudalis::design
