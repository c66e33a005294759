#include "SqliteCursor.hpp"

#include <limits>

#include "caudalis/db/DatabaseErrors.hpp"

namespace caudalis {
namespace {

Variant wholeNumber(sqlite3_int64 value) {
    if (value < std::numeric_limits<Long>::min() || value > std::numeric_limits<Long>::max()) {
        return Variant(static_cast<double>(value));
    }
    return Variant(static_cast<Long>(value));
}

std::string columnText(sqlite3_stmt* statement, int column) {
    const auto* bytes = static_cast<const char*>(sqlite3_column_blob(statement, column));
    const int size = sqlite3_column_bytes(statement, column);
    return bytes == nullptr ? std::string() : std::string(bytes, static_cast<std::size_t>(size));
}

}  // namespace

SqliteCachedStatement::~SqliteCachedStatement() {
    sqlite3_finalize(statement);
}

void SqliteStatementFinalizer::operator()(sqlite3_stmt* statement) const noexcept {
    if (!lentFrom) {
        sqlite3_finalize(statement);
        return;
    }
    sqlite3_reset(statement);
    sqlite3_clear_bindings(statement);
    lentFrom->lent = false;
}

SqliteCursor::SqliteCursor(sqlite3* db, SqliteStatementHandle statement)
    : db_(db), statement_(std::move(statement)) {
    step();
}

std::vector<std::string> SqliteCursor::columnNames() const {
    std::vector<std::string> names;
    const int count = sqlite3_column_count(statement_.get());
    for (int column = 0; column < count; ++column) {
        names.emplace_back(sqlite3_column_name(statement_.get(), column));
    }
    return names;
}

bool SqliteCursor::fetch(std::vector<Variant>& row) {
    if (!hasRow_) {
        return false;
    }
    const int count = sqlite3_data_count(statement_.get());
    row.clear();
    for (int column = 0; column < count; ++column) {
        row.push_back(columnValue(column));
    }
    step();
    return true;
}

void SqliteCursor::step() {
    const int rc = sqlite3_step(statement_.get());
    if (rc != SQLITE_ROW && rc != SQLITE_DONE) {
        hasRow_ = false;
        raiseEngineError(sqlite3_errmsg(db_));
    }
    hasRow_ = rc == SQLITE_ROW;
}

Variant SqliteCursor::columnValue(int column) const {
    sqlite3_stmt* statement = statement_.get();
    switch (sqlite3_column_type(statement, column)) {
        case SQLITE_NULL:
            return Variant::null();
        case SQLITE_INTEGER:
            return wholeNumber(sqlite3_column_int64(statement, column));
        case SQLITE_FLOAT:
            return Variant(sqlite3_column_double(statement, column));
        default:
            return Variant(columnText(statement, column));
    }
}

}  // namespace caudalis
