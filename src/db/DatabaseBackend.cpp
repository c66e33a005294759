#include "caudalis/db/DatabaseBackend.hpp"

#include "PostgresOpening.hpp"
#include "caudalis/db/ConnectionSettings.hpp"
#include "caudalis/db/DatabaseErrors.hpp"
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
    if (auto server = openPostgresServer(settings.text())) {
        return server;
    }
    const std::string provider = settings.provider();
    if (provider == "sqlite" || provider == "sqlite3") {
        return std::make_unique<SqliteBackend>(requireDataSource(settings));
    }
    raiseDatabaseError(DatabaseError::ProviderNotFound);
}

}  // namespace caudalis
