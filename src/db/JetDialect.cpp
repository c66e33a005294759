#include "caudalis/db/JetDialect.hpp"

#include "TextHelpers.hpp"

namespace caudalis {

using Kind = JetSqlSegment::Kind;

std::string JetDialect::rewrite(const JetStatement& statement) const {
    const auto& segments = statement.segments();
    std::string result;
    std::size_t length = 0;
    for (const JetSqlSegment& segment : segments) {
        length += segment.text.size();
    }
    result.reserve(length);
    for (std::size_t i = 0; i < segments.size(); ++i) {
        const JetSqlSegment& segment = segments[i];
        const JetSqlSegment* next = i + 1 < segments.size() ? &segments[i + 1] : nullptr;
        switch (segment.kind) {
            case Kind::Code:
                appendCode(segment.text, result);
                break;
            case Kind::BracketedName:
                result += rewriteBracketed(segment, next);
                break;
            case Kind::Text:
                result += rewriteLiteral(segment.text, result);
                break;
            case Kind::Comment:
                result += rewriteComment(segment.text);
                break;
            default:
                result += segment.text;
        }
    }
    return result;
}

bool JetDialect::namesDatabaseFile(std::string_view bracketed) {
    return bracketed.find_first_of("/\\:.") != std::string_view::npos;
}

std::string JetDialect::rewriteDate(std::string_view date) const {
    return texthelpers::enclosed(date, '\'');
}

bool JetDialect::namesOtherDatabase(std::string_view content) const {
    return namesDatabaseFile(content);
}

std::string JetDialect::rewriteBracketedName(const std::string& bracketed) const {
    return bracketed;
}

std::string JetDialect::rewriteLiteral(const std::string& literal, const std::string& /*before*/) const {
    return literal;
}

std::string JetDialect::rewriteComment(const std::string& comment) const {
    return comment;
}

std::string JetDialect::bracketContent(const std::string& bracketed) {
    const bool closed = bracketed.size() >= 2 && bracketed.back() == ']';
    return bracketed.substr(1, bracketed.size() - (closed ? 2 : 1));
}

void JetDialect::appendCode(std::string_view code, std::string& result) const {
    std::size_t i = 0;
    while (i < code.size()) {
        if (isWordCharacter(code[i])) {
            std::size_t end = i;
            while (end < code.size() && isWordCharacter(code[end])) {
                ++end;
            }
            appendWord(code.substr(i, end - i), result);
            i = end;
            continue;
        }
        std::size_t end = i + 1;
        const std::string date = code[i] == '#' ? dateAt(code, i, end) : std::string();
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
}

std::string JetDialect::dateAt(std::string_view code, std::size_t start, std::size_t& end) const {
    const std::size_t close = code.find_first_of("#\r\n", start + 1);
    if (close == std::string_view::npos || code[close] != '#') {
        return {};
    }
    end = close + 1;
    return rewriteDate(code.substr(start + 1, close - start - 1));
}

std::string JetDialect::rewriteBracketed(const JetSqlSegment& segment, const JetSqlSegment* next) const {
    const std::string content = bracketContent(segment.text);
    const bool qualifiesTable = next != nullptr && next->kind == Kind::Code && next->text.starts_with('.');
    if (qualifiesTable && namesOtherDatabase(content)) {
        return schemaFor(content);
    }
    return rewriteBracketedName(segment.text);
}

}  // namespace caudalis
