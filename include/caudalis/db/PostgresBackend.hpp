#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>

#include "caudalis/db/DatabaseBackend.hpp"
#include "caudalis/db/PostgresConnectionString.hpp"

struct pg_conn;
struct pg_result;

namespace caudalis {

/// A PostgreSQL server, reached through libpq. Each statement runs alone through the extended
/// query protocol, so the server itself refuses a second statement. The session reads dates
/// month first, keeps backslashes in literals as they are, and looks for tables in the schema
/// the connection string names.
///
/// `@@IDENTITY` is the key generated last by an INSERT on this connection: an INSERT into a
/// table with a generated key (an identity or serial column) hands the key back, and a statement
/// that inserts no row leaves the last key as it was (0 before the first).
///
/// `BeginTrans` also takes the database's Caudalis write lock (an advisory lock held until the
/// transaction ends), so that saving transactions of several connections run one after the
/// other, as they do on the embedded engine: a check made inside one sees every transaction
/// that ended before it. A statement that fails inside a transaction leaves it able only to
/// roll back: later statements fail, and `CommitTrans` rolls back and raises.
///
/// `[reference].Table` names a table of another schema of the connected database: `reference`
/// is a connection string of that database (its `schema` key names the schema, `public`
/// without one) or a schema name; a connection string of another database is refused.
class PostgresBackend : public DatabaseBackend {
public:
    /// The advisory lock key that write transactions hold.
    static constexpr long long writeLockKey = 0x43617564616c6973;  // "Caudalis"

    explicit PostgresBackend(const PostgresConnectionString& target);
    ~PostgresBackend() override;
    PostgresBackend(const PostgresBackend&) = delete;
    PostgresBackend& operator=(const PostgresBackend&) = delete;

    std::unique_ptr<DatabaseCursor> execute(const JetStatement& statement) override;
    void beginTransaction() override;
    void commitTransaction() override;
    void rollbackTransaction() override;
    bool inTransaction() const noexcept override;

private:
    struct Finisher {
        void operator()(pg_conn* connection) const noexcept;
    };

    /// Runs `sql` (one or more statements, as written) and raises the server's error.
    void run(const std::string& sql);
    void startSession(const PostgresConnectionString& target);
    std::string schemaFor(const std::string& reference) const;
    /// The generated key column of the table that an INSERT statement writes to, if it has one.
    std::optional<std::string> generatedKeyOf(const std::string& insert);
    void rememberLastKey(const pg_result* returned);

    std::unique_ptr<pg_conn, Finisher> connection_;
    std::string lastKey_ = "0";
    std::map<std::string, std::optional<std::string>> keyColumns_;
};

}  // namespace caudalis
