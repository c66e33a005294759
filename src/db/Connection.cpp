#include "caudalis/db/Connection.hpp"

#include <utility>

#include "StatementCountdown.hpp"
#include "caudalis/db/ConnectionSettings.hpp"
#include "caudalis/db/DatabaseBackend.hpp"
#include "caudalis/db/DatabaseErrors.hpp"
#include "caudalis/db/JetStatement.hpp"
#include "caudalis/db/StatementGuard.hpp"

namespace caudalis {

Connection::Connection() = default;

Connection::Connection(std::string connectionString) : connectionString_(std::move(connectionString)) {}

Connection::Connection(std::unique_ptr<DatabaseBackend> backend) : backend_(std::move(backend)) {
    if (!backend_) {
        raiseError(RuntimeError::ObjectNotSet);
    }
}

Connection::~Connection() {
    try {
        if (isOpen()) {
            Close();
        }
    } catch (...) {
        // The backend is released whatever happened; an engine abandons the transaction itself.
    }
}

void Connection::ConnectionString(const std::string& text) {
    if (isOpen()) {
        raiseDatabaseError(DatabaseError::ObjectOpen);
    }
    connectionString_ = text;
}

void Connection::Open() {
    if (isOpen()) {
        raiseDatabaseError(DatabaseError::ObjectOpen);
    }
    backend_ = DatabaseBackend::open(ConnectionSettings::parse(connectionString_));
}

void Connection::Open(const std::string& connectionString) {
    ConnectionString(connectionString);
    Open();
}

std::shared_ptr<Recordset> Connection::Execute(const std::string& sql) {
    DatabaseBackend& engine = backend();
    const JetStatement statement(sql);
    StatementGuard::requireReadableStatement(statement);
    statement.requireSingleStatement();
    auto rows = std::make_shared<Recordset>(engine.execute(statement));
    unread_ = rows;
    StatementCountdown::afterStatement();
    return rows;
}

void Connection::BeginTrans() {
    backend().beginTransaction();
    StatementCountdown::afterStatement();
}

void Connection::CommitTrans() {
    backend().commitTransaction();
    StatementCountdown::afterStatement();
}

void Connection::RollbackTrans() {
    backend().rollbackTransaction();
}

void Connection::Close() {
    if (const auto rows = unread_.lock()) {
        rows->readRemaining();
    }
    const std::unique_ptr<DatabaseBackend> closing = std::move(backend_);
    if (!closing) {
        raiseDatabaseError(DatabaseError::ObjectClosed);
    }
    if (closing->inTransaction()) {
        closing->rollbackTransaction();
    }
}

DatabaseBackend& Connection::backend() {
    if (!backend_) {
        raiseDatabaseError(DatabaseError::ObjectClosed);
    }
    if (const auto rows = unread_.lock()) {
        rows->readRemaining();
    }
    unread_.reset();
    return *backend_;
}

}  // namespace caudalis
