#pragma once

#include <sqlite3.h>

#include <memory>

#include "caudalis/db/DatabaseCursor.hpp"

namespace caudalis {

/// Owns a prepared SQLite statement and finalizes it.
struct SqliteStatementFinalizer {
    void operator()(sqlite3_stmt* statement) const noexcept { sqlite3_finalize(statement); }
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
