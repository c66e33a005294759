#pragma once

#include <sqlite3.h>

#include <memory>

#include "caudalis/db/DatabaseCursor.hpp"

namespace caudalis {

/// A prepared statement kept by a `SqliteStatementCache`, and whether it is lent out.
struct SqliteCachedStatement {
    SqliteCachedStatement() = default;
    SqliteCachedStatement(const SqliteCachedStatement&) = delete;
    SqliteCachedStatement& operator=(const SqliteCachedStatement&) = delete;
    ~SqliteCachedStatement();

    sqlite3_stmt* statement = nullptr;
    bool lent = false;
};

/// Releases a prepared SQLite statement: finalizes one of its own, or resets a statement lent
/// by a cache, clears its bindings and hands it back.
struct SqliteStatementFinalizer {
    std::shared_ptr<SqliteCachedStatement> lentFrom;
    void operator()(sqlite3_stmt* statement) const noexcept;
};
using SqliteStatementHandle = std::unique_ptr<sqlite3_stmt, SqliteStatementFinalizer>;

/// Steps a prepared statement: the first step runs at construction, so the statement's effects
/// take place even if no row is ever read. Integers come back as Long (Double beyond 32 bits),
/// reals as Double, texts and blobs as String, NULL as Null.
class SqliteCursor : public DatabaseCursor {
public:
    SqliteCursor(sqlite3* db, SqliteStatementHandle statement);

    std::vector<std::string> columnNames() const override;
    bool fetch(std::vector<Variant>& row) override;

private:
    void step();
    Variant columnValue(int column) const;

    sqlite3* db_;
    SqliteStatementHandle statement_;
    bool hasRow_ = false;
};

}  // namespace caudalis
