#include "caudalis/db/SqliteDialect.hpp"

#include <utility>

#include "TextHelpers.hpp"

namespace caudalis {

SqliteDialect::SqliteDialect(SchemaForFile schemaForFile) : schemaForFile_(std::move(schemaForFile)) {}

void SqliteDialect::appendWord(std::string_view word, std::string& out) const {
    if (texthelpers::equalsIgnoringCase(word, "@@identity")) {
        out += "last_insert_rowid()";
    } else if (texthelpers::equalsIgnoringCase(word, "true")) {
        out += '1';
    } else if (texthelpers::equalsIgnoringCase(word, "false")) {
        out += '0';
    } else {
        out.append(word);
    }
}

std::string SqliteDialect::schemaFor(const std::string& reference) const {
    return schemaForFile_(reference);
}

}  // namespace caudalis
