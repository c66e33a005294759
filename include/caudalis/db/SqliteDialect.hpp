#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "caudalis/db/JetDialect.hpp"

namespace caudalis {

/// Turns a statement of the Access (Jet) dialect into SQLite's, leaving literals untouched:
/// `@@IDENTITY` becomes `last_insert_rowid()`, `true`/`false` become 1/0, a date `#...#`
/// becomes a text literal, and a table of another database file, `[path].Table`, becomes
/// `schema.Table` with the schema under which the file is attached.
class SqliteDialect : public JetDialect {
public:
    /// Attaches (once) the database file at the given path and returns its schema name.
    using SchemaForFile = std::function<std::string(const std::string& path)>;

    explicit SqliteDialect(SchemaForFile schemaForFile);

protected:
    void appendWord(std::string_view word, std::string& out) const override;
    std::string schemaFor(const std::string& reference) const override;

private:
    SchemaForFile schemaForFile_;
};

}  // namespace caudalis
