#pragma once

#include <map>
#include <memory>
#include <string>

#include "caudalis/db/DatabaseBackend.hpp"

struct sqlite3;
struct sqlite3_stmt;

namespace caudalis {

class SqliteStatementCache;
struct SqliteStatementFinalizer;

/// The embedded SQLite engine. The database file is created when missing (":memory:" gives a
/// private in-memory database); a second connection to the same file waits up to
/// `busyTimeoutMilliseconds` for a lock instead of failing; foreign keys are enforced.
/// Transactions take the write lock at `beginTransaction`. Other database files named in a
/// statement as `[path].Table` are attached under generated schema names, once per file; they
/// must exist, and (as the engine requires) no transaction may be open when one is first named.
class SqliteBackend : public DatabaseBackend {
public:
    static constexpr int busyTimeoutMilliseconds = 5000;

    explicit SqliteBackend(const std::string& path);
    ~SqliteBackend() override;
    SqliteBackend(const SqliteBackend&) = delete;
    SqliteBackend& operator=(const SqliteBackend&) = delete;

    std::unique_ptr<DatabaseCursor> execute(const JetStatement& statement) override;
    void beginTransaction() override;
    void commitTransaction() override;
    void rollbackTransaction() override;
    bool inTransaction() const noexcept override;

private:
    struct Closer {
        void operator()(sqlite3* db) const noexcept;
    };

    void run(const char* sql);
    /// `sql` prepared as a statement of its own; raises when it does not hold exactly one.
    std::unique_ptr<sqlite3_stmt, SqliteStatementFinalizer> prepare(const std::string& sql);
    std::string schemaForFile(const std::string& path);
    void attach(const std::string& path, const std::string& schema);

    std::unique_ptr<sqlite3, Closer> db_;
    std::map<std::string, std::string> attached_;
    /// INSERT ... VALUES statements of plain literals, prepared once per shape (see
    /// `SqliteLiteralLift`).
    std::unique_ptr<SqliteStatementCache> statements_;
};

}  // namespace caudalis
