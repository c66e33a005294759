#include "caudalis/db/StatementGuard.hpp"

#include <algorithm>
#include <string>

#include "caudalis/db/DatabaseErrors.hpp"

namespace caudalis {
namespace {

using Kind = JetSqlSegment::Kind;

[[noreturn]] void raiseValueNotStoredAsGiven(std::string_view field, char closing) {
    raiseSyntaxError("The value for " + std::string(field) + " holds " + std::string(1, closing) +
                     ", which the statement's text cannot store as given.");
}

/// Whether a quoted piece, as the statement splitter cut it, ends with its closing quote: the
/// opening quote, doubled quotes and the closing quote make an even count.
bool isTerminatedQuoted(const std::string& piece) {
    return std::count(piece.begin(), piece.end(), piece.front()) % 2 == 0;
}

bool isTerminated(const JetSqlSegment& segment) {
    switch (segment.kind) {
        case Kind::Text:
        case Kind::QuotedName:
            return isTerminatedQuoted(segment.text);
        case Kind::BracketedName:
            return segment.text.size() >= 2 && segment.text.back() == ']';
        default:
            return true;
    }
}

void requireReadableSegment(const JetSqlSegment& segment) {
    if (segment.kind == Kind::Comment) {
        raiseSyntaxError("Comments are not part of the statement dialect.");
    }
    if (segment.text.find('\0') != std::string::npos) {
        raiseSyntaxError("A statement may not hold a NUL character.");
    }
    if (segment.kind == Kind::Code && segment.text.find('?') != std::string::npos) {
        raiseDatabaseError(DatabaseError::ParameterWithoutValue);
    }
    if (!isTerminated(segment)) {
        raiseSyntaxError("A text or name is not closed.");
    }
}

}  // namespace

void StatementGuard::requireStaysInLiteral(std::string_view value, char closing, std::string_view field) {
    // A lone quote would end the literal; a doubled one would be stored as one quote.
    if (value.find(closing) != std::string_view::npos) {
        raiseValueNotStoredAsGiven(field, closing);
    }
}

void StatementGuard::requireWholeLiteral(std::string_view valueText, std::string_view field) {
    if (valueText.empty() || (valueText.front() != '\'' && valueText.front() != '"')) {
        return;
    }
    const char quote = valueText.front();
    if (valueText.size() < 2 || valueText.back() != quote) {
        raiseValueNotStoredAsGiven(field, quote);
    }
    requireStaysInLiteral(valueText.substr(1, valueText.size() - 2), quote, field);
}

void StatementGuard::requireReadableStatement(const JetStatement& statement) {
    for (const JetSqlSegment& segment : statement.segments()) {
        requireReadableSegment(segment);
    }
}

}  // namespace caudalis
