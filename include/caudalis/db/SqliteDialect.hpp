#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "caudalis/db/JetStatement.hpp"

namespace caudalis {

/// Turns a statement of the Access (Jet) dialect into SQLite's, leaving literals untouched:
/// `@@IDENTITY` becomes `last_insert_rowid()`, `true`/`false` become 1/0, a date `#...#`
/// becomes a text literal, and a table of another database file, `[path].Table`, becomes
/// `schema.Table` with the schema under which the file is attached.
class SqliteDialect {
public:
    /// Attaches (once) the database file at the given path and returns its schema name.
    using SchemaForFile = std::function<std::string(const std::string& path)>;

    explicit SqliteDialect(SchemaForFile schemaForFile);

    std::string rewrite(const JetStatement& statement) const;

    /// Whether a bracketed name followed by "." names a database file rather than a table:
    /// it holds a path separator, a drive colon or a file extension point.
    static bool namesDatabaseFile(std::string_view bracketed);

    /// Rewrites identity, truth values and dates in a piece of code outside quotes.
    static std::string rewriteCode(std::string_view code);

private:
    std::string rewriteBracketed(const JetSqlSegment& segment, const JetSqlSegment* next) const;

    SchemaForFile schemaForFile_;
};

}  // namespace caudalis
