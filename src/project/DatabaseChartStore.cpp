#include "caudalis/project/DatabaseChartStore.hpp"

#include "caudalis/charts/CartaAspersores.hpp"
#include "caudalis/charts/CartaAspersoresStatic.hpp"
#include "caudalis/core/Error.hpp"
#include "caudalis/core/Errors.hpp"
#include "caudalis/core/Statics.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/design/Limits.hpp"
#include "caudalis/project/CatalogueDatabase.hpp"
#include "caudalis/project/ServiceError.hpp"
#include "caudalis/project/StorableText.hpp"

namespace caudalis::project {

namespace {

std::shared_ptr<CartaAspersoresStatic> charts() {
    return Statics::application()->CartaAspersor();
}

std::string takenName(const std::string& name, Long system) {
    return "a chart named \"" + name + "\" already exists in system " + std::to_string(system);
}

/// A chart's id for the chart tables; the command line takes ids up to `limits::largestChartId` only.
Integer chartIdOf(Long id) {
    return static_cast<Integer>(id);
}

}  // namespace

DatabaseChartStore::DatabaseChartStore(std::string projectPath, std::string cataloguePath)
    : project_(std::move(projectPath), DatabaseKind::Project),
      catalogue_(std::move(cataloguePath), DatabaseKind::Catalogue) {}

template <class Work>
auto DatabaseChartStore::onProject(const std::string& what, Work work) {
    project_.requireUsable();
    try {
        return work(project_.connectionString());
    } catch (const Error& error) {
        throw InputError("cannot " + what + " in project database " + project_.path() + ": " +
                         error.description());
    }
}

void DatabaseChartStore::requireNameIsFree(const std::string& name, Long system) {
    requireStorableText(name, "chart name");
    for (const auto& stored : listOf(system)) {
        if (stored.info.nome == name) {
            throw InputError(takenName(name, system));
        }
    }
}

void DatabaseChartStore::storeTogether(CartaAspersores& chart, Long system,
                                       const design::ChartFigures& figures) {
    // Whatever fails, or however the process ends, before the commit, the connection's
    // transaction is abandoned with it and the project database keeps nothing of the chart.
    Connection project(project_.connectionString());
    project.Open();
    const auto tables = design::ChartFigures::sideTablesOf(project);
    project.BeginTrans();
    charts()->saveAsNewOn(project, system, chart);
    design::ChartFigures::replace(project, chart.id(), figures, tables);
    project.CommitTrans();
    project.Close();
}

Long DatabaseChartStore::saveAsNew(const std::shared_ptr<CartaAspersores>& chart, const std::string& name,
                                   Long system, const design::ChartFigures& figures) {
    requireNameIsFree(name, system);
    chart->setNome(name);
    try {
        storeTogether(*chart, system, figures);
    } catch (const Error& error) {
        if (error.number() == errorNumber(CartaExceptions::NomeDaCartaJaExistente)) {
            throw InputError(takenName(name, system));
        }
        if (error.number() == RuntimeError::Overflow) {
            throw InputError("cannot store the chart in project database " + project_.path() +
                             ": the database's next chart id is beyond " +
                             std::to_string(design::limits::largestChartId) +
                             ", the largest the chart tables take; nothing was stored (start a new "
                             "project database with caudalis init)");
        }
        throw InputError("cannot store the chart in project database " + project_.path() + ": " +
                         error.description() + "; the chart was not stored");
    }
    return chart->id();
}

std::vector<StoredChart> DatabaseChartStore::listOf(Long system) {
    return onProject("list the charts", [&](const std::string& connection) {
        std::vector<StoredChart> stored;
        const auto infos = charts()->enumerateAll(connection, system);
        for (const auto& item : *infos) {
            stored.push_back(StoredChart{system, item.toRecord<CartaInfo>()});
        }
        return stored;
    });
}

std::vector<StoredChart> DatabaseChartStore::list(std::optional<Long> system) {
    if (system) {
        return listOf(*system);
    }
    project_.requireUsable();
    std::vector<StoredChart> stored;
    for (const long each : project_.wholeNumbers(
             "SELECT DISTINCT id_sistema FROM tb_cartas ORDER BY id_sistema", "id_sistema")) {
        const auto ofSystem = listOf(static_cast<Long>(each));
        stored.insert(stored.end(), ofSystem.begin(), ofSystem.end());
    }
    return stored;
}

Long DatabaseChartStore::systemOf(Long id) {
    project_.requireUsable();
    const auto systems = project_.wholeNumbers(
        "SELECT id_sistema FROM tb_cartas WHERE id_carta=" + std::to_string(id), "id_sistema");
    if (systems.empty()) {
        throw InputError("no chart with id " + std::to_string(id) + " in project database " +
                         project_.path());
    }
    return static_cast<Long>(systems.front());
}

std::string DatabaseChartStore::catalogueName() {
    catalogue_.requireUsable();
    const auto catalogue = catalogue_.joinName();
    if (!catalogue_.onServer()) {
        requireStorableText(catalogue, "catalogue path");
    }
    return catalogue;
}

LoadedChart DatabaseChartStore::find(Long id) {
    const Long system = systemOf(id);
    const auto catalogue = catalogueName();
    auto chart = onProject("read the chart", [&](const std::string& connection) {
        return charts()->find(connection, catalogue, chartIdOf(id));
    });
    const auto stored = project_.wholeNumbers(
        "SELECT count(*) as n FROM tb_aspersores WHERE id_carta=" + std::to_string(id), "n");
    const long missing = stored.front() - static_cast<long>(chart->mountedAspersores()->Count());
    const auto figures = onProject("read the chart's figures", [&](const std::string& connection) {
        Connection project(connection);
        project.Open();
        return design::ChartFigures::load(project, id);
    });
    return LoadedChart{chart, system, missing, figures};
}

design::RebuiltChart DatabaseChartStore::rebuild(Long id, const std::map<Long, double>& wettedDiameters) {
    systemOf(id);
    const auto catalogue = catalogueName();
    return onProject("compute the chart again", [&](const std::string& connection) {
        return design::StoredChartDesign::rebuild(connection, catalogue, id, wettedDiameters);
    });
}

void DatabaseChartStore::destroy(Long id) {
    systemOf(id);
    onProject("delete the chart", [&](const std::string& connection) {
        Connection project(connection);
        project.Open();
        const auto tables = design::ChartFigures::sideTablesOf(project);
        project.BeginTrans();
        design::ChartFigures::remove(project, id, tables);
        charts()->destroyOn(project, chartIdOf(id));
        project.CommitTrans();
        project.Close();
        return 0;
    });
}

}  // namespace caudalis::project
