#include "DatabaseChartStore.hpp"

#include "CliErrors.hpp"

namespace caudalis::cli {

// To be written with the database layer: each operation opens the project database at
// `projectPath_` (SQLite connection string) and calls CartaAspersoresStatic::saveAsNew,
// enumerateAll, find (joining models from `cataloguePath_`) or destroy.

DatabaseChartStore::DatabaseChartStore(std::string projectPath, std::string cataloguePath)
    : projectPath_(std::move(projectPath)), cataloguePath_(std::move(cataloguePath)) {}

Long DatabaseChartStore::saveAsNew(const std::shared_ptr<CartaAspersores>& /*chart*/,
                                   const std::string& /*name*/) {
    throw NotBuiltError("chart database");
}

std::vector<CartaInfo> DatabaseChartStore::list() {
    throw NotBuiltError("chart database");
}

std::shared_ptr<CartaAspersores> DatabaseChartStore::find(Long /*id*/) {
    throw NotBuiltError("chart database");
}

void DatabaseChartStore::destroy(Long /*id*/) {
    throw NotBuiltError("chart database");
}

}  // namespace caudalis::cli
