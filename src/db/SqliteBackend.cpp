#include "caudalis/db/SqliteBackend.hpp"

#include <sqlite3.h>

#include <cctype>

#include "SqliteCursor.hpp"
#include "SqliteLiteralLift.hpp"
#include "SqliteStatementCache.hpp"
#include "caudalis/db/DatabaseErrors.hpp"
#include "caudalis/db/SqliteDialect.hpp"

namespace caudalis {
namespace {

constexpr const char* attachedSchemaPrefix = "jet_file_";

bool isUriSafe(unsigned char c) {
    return std::isalnum(c) != 0 || c == '-' || c == '.' || c == '_' || c == '~' || c == '/';
}

/// A "file:" URI for `path` that opens an existing file for reading and writing only, so that
/// a mistyped path fails instead of creating an empty database.
std::string existingFileUri(const std::string& path) {
    static constexpr char hex[] = "0123456789ABCDEF";
    std::string uri = "file:";
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        if (isUriSafe(byte)) {
            uri += c;
        } else {
            uri += '%';
            uri += hex[byte >> 4];
            uri += hex[byte & 0x0F];
        }
    }
    return uri + "?mode=rw";
}

[[noreturn]] void raiseFrom(sqlite3* db) {
    raiseEngineError(sqlite3_errmsg(db));
}

}  // namespace

void SqliteBackend::Closer::operator()(sqlite3* db) const noexcept {
    sqlite3_close_v2(db);
}

SqliteBackend::SqliteBackend(const std::string& path)
    : statements_(std::make_unique<SqliteStatementCache>()) {
    sqlite3* db = nullptr;
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_URI;
    const int rc = sqlite3_open_v2(path.c_str(), &db, flags, nullptr);
    db_.reset(db);
    if (rc != SQLITE_OK) {
        raiseFrom(db_.get());
    }
    sqlite3_extended_result_codes(db, 0);
    sqlite3_busy_timeout(db, busyTimeoutMilliseconds);
    run("PRAGMA foreign_keys=ON");
}

SqliteBackend::~SqliteBackend() {
    if (inTransaction()) {
        sqlite3_exec(db_.get(), "ROLLBACK", nullptr, nullptr, nullptr);
    }
}

std::unique_ptr<DatabaseCursor> SqliteBackend::execute(const JetStatement& statement) {
    const SqliteDialect dialect([this](const std::string& path) { return schemaForFile(path); });
    const std::string sql = dialect.rewrite(statement);
    if (const auto lifted = SqliteLiteralLift::of(sql)) {
        auto handle =
            statements_->lend(lifted->shape(), [this](const std::string& text) { return prepare(text); });
        lifted->bind(handle.get());
        return std::make_unique<SqliteCursor>(db_.get(), std::move(handle));
    }
    return std::make_unique<SqliteCursor>(db_.get(), prepare(sql));
}

SqliteStatementHandle SqliteBackend::prepare(const std::string& sql) {
    sqlite3_stmt* prepared = nullptr;
    const char* tail = nullptr;
    if (sqlite3_prepare_v2(db_.get(), sql.c_str(), static_cast<int>(sql.size() + 1), &prepared, &tail) !=
        SQLITE_OK) {
        raiseFrom(db_.get());
    }
    SqliteStatementHandle handle(prepared);
    if (!handle) {
        raiseDatabaseError(DatabaseError::InvalidStatement);
    }
    if (tail != nullptr && JetStatement(tail).holdsStatement()) {
        raiseDatabaseError(DatabaseError::CharactersAfterStatement);
    }
    return handle;
}

void SqliteBackend::beginTransaction() {
    run("BEGIN IMMEDIATE");
}

void SqliteBackend::commitTransaction() {
    run("COMMIT");
}

void SqliteBackend::rollbackTransaction() {
    run("ROLLBACK");
}

bool SqliteBackend::inTransaction() const noexcept {
    return sqlite3_get_autocommit(db_.get()) == 0;
}

void SqliteBackend::run(const char* sql) {
    if (sqlite3_exec(db_.get(), sql, nullptr, nullptr, nullptr) != SQLITE_OK) {
        raiseFrom(db_.get());
    }
}

std::string SqliteBackend::schemaForFile(const std::string& path) {
    const auto known = attached_.find(path);
    if (known != attached_.end()) {
        return known->second;
    }
    const std::string schema = attachedSchemaPrefix + std::to_string(attached_.size() + 1);
    attach(path, schema);
    attached_.emplace(path, schema);
    return schema;
}

void SqliteBackend::attach(const std::string& path, const std::string& schema) {
    const std::string sql = "ATTACH DATABASE ?1 AS " + schema;
    sqlite3_stmt* prepared = nullptr;
    if (sqlite3_prepare_v2(db_.get(), sql.c_str(), -1, &prepared, nullptr) != SQLITE_OK) {
        raiseFrom(db_.get());
    }
    const SqliteStatementHandle handle(prepared);
    const std::string uri = existingFileUri(path);
    sqlite3_bind_text(prepared, 1, uri.c_str(), static_cast<int>(uri.size()), SQLITE_TRANSIENT);
    if (sqlite3_step(prepared) != SQLITE_DONE) {
        raiseFrom(db_.get());
    }
}

}  // namespace caudalis
