#include "caudalis/db/SqliteDialect.hpp"

#include <utility>

#include "TextHelpers.hpp"

namespace caudalis {
namespace {

using Kind = JetSqlSegment::Kind;

bool isWordCharacter(char c) {
    const bool letterOrDigit = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    return letterOrDigit || c == '_' || c == '@' || c == '$';
}

/// The word as SQLite spells it: @@IDENTITY, TRUE and FALSE (any case) become SQLite's own.
std::string_view rewriteWord(std::string_view word) {
    if (texthelpers::equalsIgnoringCase(word, "@@identity")) {
        return "last_insert_rowid()";
    }
    if (texthelpers::equalsIgnoringCase(word, "true")) {
        return "1";
    }
    if (texthelpers::equalsIgnoringCase(word, "false")) {
        return "0";
    }
    return word;
}

/// The text literal for the date between the "#" at `start` and the next "#" on the same line;
/// empty when there is no such closing "#".
std::string dateLiteral(std::string_view code, std::size_t start, std::size_t& end) {
    const std::size_t close = code.find_first_of("#\r\n", start + 1);
    if (close == std::string_view::npos || code[close] != '#') {
        return {};
    }
    end = close + 1;
    return texthelpers::enclosed(code.substr(start + 1, close - start - 1), '\'');
}

std::string bracketContent(const std::string& bracketed) {
    const bool closed = bracketed.size() >= 2 && bracketed.back() == ']';
    return bracketed.substr(1, bracketed.size() - (closed ? 2 : 1));
}

}  // namespace

SqliteDialect::SqliteDialect(SchemaForFile schemaForFile) : schemaForFile_(std::move(schemaForFile)) {}

std::string SqliteDialect::rewrite(const JetStatement& statement) const {
    const auto& segments = statement.segments();
    std::string result;
    for (std::size_t i = 0; i < segments.size(); ++i) {
        const JetSqlSegment& segment = segments[i];
        const JetSqlSegment* next = i + 1 < segments.size() ? &segments[i + 1] : nullptr;
        switch (segment.kind) {
            case Kind::Code:
                result += rewriteCode(segment.text);
                break;
            case Kind::BracketedName:
                result += rewriteBracketed(segment, next);
                break;
            default:
                result += segment.text;
        }
    }
    return result;
}

bool SqliteDialect::namesDatabaseFile(std::string_view bracketed) {
    return bracketed.find_first_of("/\\:.") != std::string_view::npos;
}

std::string SqliteDialect::rewriteCode(std::string_view code) {
    std::string result;
    result.reserve(code.size());
    std::size_t i = 0;
    while (i < code.size()) {
        if (isWordCharacter(code[i])) {
            std::size_t end = i;
            while (end < code.size() && isWordCharacter(code[end])) {
                ++end;
            }
            result += rewriteWord(code.substr(i, end - i));
            i = end;
            continue;
        }
        std::size_t end = i + 1;
        const std::string date = code[i] == '#' ? dateLiteral(code, i, end) : std::string();
        if (date.empty()) {
            while (end < code.size() && code[end] != '#' && !isWordCharacter(code[end])) {
                ++end;
            }
            result.append(code.substr(i, end - i));
        } else {
            result += date;
        }
        i = end;
    }
    return result;
}

std::string SqliteDialect::rewriteBracketed(const JetSqlSegment& segment, const JetSqlSegment* next) const {
    const std::string content = bracketContent(segment.text);
    const bool qualifiesTable = next != nullptr && next->kind == Kind::Code && next->text.starts_with('.');
    if (qualifiesTable && namesDatabaseFile(content)) {
        return schemaForFile_(content);
    }
    return segment.text;
}

}  // namespace caudalis
