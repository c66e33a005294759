#pragma once

#include <memory>
#include <string>

#include "caudalis/core/Object.hpp"
#include "caudalis/db/Recordset.hpp"

namespace caudalis {

class DatabaseBackend;

/// A connection to a relational database, shaped like the ADO object: set the connection
/// string, `Open`, run statements of the Access (Jet) dialect one at a time with `Execute`,
/// bracket them in transactions, `Close`.
///
/// Connection strings: `Provider=SQLite;Data Source=<file>` (keys in any case, blanks around
/// keys and values allowed), a bare file path, or ":memory:" for the embedded SQLite engine; a
/// `postgresql://` URI or libpq `key=value` pairs (with an optional `schema`) for a PostgreSQL
/// server (see `PostgresBackend`). Closing or destroying a connection with an open transaction
/// rolls the transaction back.
///
/// A connection may also run over a backend that the caller supplies (a host's own database
/// connection, say): statements are checked exactly as on any other connection before the
/// backend sees them, and the backend decides what they become for its engine.
class Connection : public Object {
public:
    Connection();
    explicit Connection(std::string connectionString);
    /// A connection that is open over `backend` from the start, with an empty connection
    /// string. Closing it rolls back the transaction it began and lets the backend go; it
    /// may then be opened again by connection string like any other.
    explicit Connection(std::unique_ptr<DatabaseBackend> backend);
    ~Connection() override;
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /// Sets the connection string; `DatabaseError::ObjectOpen` while open.
    void ConnectionString(const std::string& text);
    const std::string& ConnectionString() const noexcept { return connectionString_; }

    /// Opens the database named by the connection string; `DatabaseError::ObjectOpen` when
    /// already open, `DatabaseError::ProviderNotFound` for an unknown engine.
    void Open();
    /// Sets the connection string and opens.
    void Open(const std::string& connectionString);

    /// Runs exactly one statement (a trailing ";" and blanks are allowed; a second statement
    /// raises `DatabaseError::CharactersAfterStatement` and nothing runs). Like the dialect it
    /// reads, it takes no comments, no NUL characters and no unterminated texts
    /// (`DatabaseError::SyntaxError`) and no "?" outside quotes
    /// (`DatabaseError::ParameterWithoutValue`); see `StatementGuard`.
    std::shared_ptr<Recordset> Execute(const std::string& sql);

    void BeginTrans();
    void CommitTrans();
    void RollbackTrans();

    /// Rolls back an open transaction and closes; `DatabaseError::ObjectClosed` when closed.
    void Close();
    bool isOpen() const noexcept { return backend_ != nullptr; }

private:
    /// The open backend, once the rows of the last record set are all read.
    DatabaseBackend& backend();

    std::string connectionString_;
    std::unique_ptr<DatabaseBackend> backend_;
    /// The record set of the last statement, while it may still have rows to read.
    std::weak_ptr<Recordset> unread_;
};

}  // namespace caudalis
