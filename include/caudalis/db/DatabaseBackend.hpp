#pragma once

#include <memory>

#include "caudalis/db/DatabaseCursor.hpp"
#include "caudalis/db/JetStatement.hpp"

namespace caudalis {

class ConnectionSettings;

/// An open connection to one database engine. Each engine has one implementation, which adapts
/// the Access (Jet) dialect of the statements to its own. Destroying a backend closes the
/// connection and abandons (rolls back) an open transaction; it never throws.
///
/// A backend of the caller's own (see `Connection(std::unique_ptr<DatabaseBackend>)`) gets the
/// same checked statements; an engine that reads the Access dialect itself runs
/// `JetStatement::text()` as it is.
class DatabaseBackend {
public:
    virtual ~DatabaseBackend() = default;

    /// Opens the engine the connection string names: PostgreSQL for a string that libpq reads
    /// (see `PostgresConnectionString`), else the engine of the settings' provider;
    /// `DatabaseError::ProviderNotFound` for an engine without a backend.
    static std::unique_ptr<DatabaseBackend> open(const ConnectionSettings& settings);

    /// Runs one statement (already checked to be a single one). Its effects take place before
    /// this returns; rows are read from the cursor. Engine failures raise
    /// `RuntimeError::DatabaseEngine` with the engine's message.
    virtual std::unique_ptr<DatabaseCursor> execute(const JetStatement& statement) = 0;

    virtual void beginTransaction() = 0;
    virtual void commitTransaction() = 0;
    virtual void rollbackTransaction() = 0;
    virtual bool inTransaction() const noexcept = 0;
};

}  // namespace caudalis
