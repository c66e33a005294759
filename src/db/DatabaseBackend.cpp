#include "caudalis/db/DatabaseBackend.hpp"

#include "caudalis/db/ConnectionSettings.hpp"
#include "caudalis/db/DatabaseErrors.hpp"
#include "caudalis/db/PostgresBackend.hpp"
#include "caudalis/db/PostgresConnectionString.hpp"
#include "caudalis/db/SqliteBackend.hpp"

namespace caudalis {
namespace {

std::string requireDataSource(const ConnectionSettings& settings) {
    const auto path = settings.dataSource();
    if (!path || path->empty()) {
        raiseEngineError("The connection string names no database file (Data Source).");
    }
    return *path;
}

}  // namespace

std::unique_ptr<DatabaseBackend> DatabaseBackend::open(const ConnectionSettings& settings) {
    if (const auto server = PostgresConnectionString::parse(settings.text())) {
        return std::make_unique<PostgresBackend>(*server);
    }
    const std::string provider = settings.provider();
    if (provider == "sqlite" || provider == "sqlite3") {
        return std::make_unique<SqliteBackend>(requireDataSource(settings));
    }
    raiseDatabaseError(DatabaseError::ProviderNotFound);
}

}  // namespace caudalis
