#include "caudalis/db/SqliteDialect.hpp"

#include <utility>

#include "TextHelpers.hpp"

namespace caudalis {

SqliteDialect::SqliteDialect(SchemaForFile schemaForFile) : schemaForFile_(std::move(schemaForFile)) {}

std::string SqliteDialect::rewriteWord(std::string_view word) const {
    const std::string lower = texthelpers::lowerCase(word);
    if (lower == "@@identity") {
        return "last_insert_rowid()";
    }
    if (lower == "true") {
        return "1";
    }
    if (lower == "false") {
        return "0";
    }
    return std::string(word);
}

std::string SqliteDialect::schemaFor(const std::string& reference) const {
    return schemaForFile_(reference);
}

}  // namespace caudalis
