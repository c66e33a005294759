#include "caudalis/db/PostgresDialect.hpp"

#include <utility>

#include "TextHelpers.hpp"
#include "caudalis/core/TextLiteral.hpp"
#include "caudalis/db/DatabaseErrors.hpp"

namespace caudalis {

PostgresDialect::PostgresDialect(std::string lastKey, SchemaForReference schemaFor)
    : lastKey_(std::move(lastKey)), schemaFor_(std::move(schemaFor)) {}

std::string PostgresDialect::quotedName(std::string_view name) {
    return quotedLiteral(name, '"');
}

void PostgresDialect::appendWord(std::string_view word, std::string& out) const {
    if (word.starts_with('$')) {
        raiseEngineError("\"" + std::string(word) +
                         "\": dollar-quoted strings and parameters are not accepted in a statement");
    }
    if (texthelpers::equalsIgnoringCase(word, "@@identity")) {
        out += lastKey_;
    } else {
        out.append(word);
    }
}

std::string PostgresDialect::schemaFor(const std::string& reference) const {
    return schemaFor_(reference);
}

bool PostgresDialect::namesOtherDatabase(std::string_view content) const {
    return namesDatabaseFile(content) || content.find('=') != std::string_view::npos;
}

std::string PostgresDialect::rewriteBracketedName(const std::string& bracketed) const {
    return quotedName(texthelpers::lowerCase(bracketContent(bracketed)));
}

std::string PostgresDialect::rewriteLiteral(const std::string& literal, const std::string& before) const {
    const bool joinsAWord = !before.empty() && isWordCharacter(before.back());
    return joinsAWord ? " " + literal : literal;
}

std::string PostgresDialect::rewriteComment(const std::string& /*comment*/) const {
    return " ";
}

}  // namespace caudalis
