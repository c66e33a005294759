#include "caudalis/db/SqliteDialect.hpp"

#include <utility>

#include "TextHelpers.hpp"

namespace caudalis {

SqliteDialect::SqliteDialect(SchemaForFile schemaForFile) : schemaForFile_(std::move(schemaForFile)) {}

std::string SqliteDialect::rewriteWord(std::string_view word) const {
    if (texthelpers::equalsIgnoringCase(word, "@@identity")) {
        return "last_insert_rowid()";
    }
    if (texthelpers::equalsIgnoringCase(word, "true")) {
        return "1";
    }
    if (texthelpers::equalsIgnoringCase(word, "false")) {
        return "0";
    }
    return std::string(word);
}

std::string SqliteDialect::schemaFor(const std::string& reference) const {
    return schemaForFile_(reference);
}

}  // namespace caudalis
