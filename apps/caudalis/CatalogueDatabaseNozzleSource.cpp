#include "CatalogueDatabaseNozzleSource.hpp"

#include "CliErrors.hpp"

namespace caudalis::cli {

CatalogueDatabaseNozzleSource::CatalogueDatabaseNozzleSource(std::string databasePath)
    : databasePath_(std::move(databasePath)) {}

CollectionRef CatalogueDatabaseNozzleSource::nozzles(const NozzleSelection& /*selection*/) {
    // To be written with the database layer: open `databasePath_` as a SQLite connection
    // string, then AspersoresStatic::find_by_modelo (model named), find_by_marca (brand named)
    // or find (whole catalogue), and requireSomeNozzles on the result.
    throw NotBuiltError("catalogue database");
}

}  // namespace caudalis::cli
