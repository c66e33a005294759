#include "caudalis/db/StatementGuard.hpp"

#include <algorithm>

#include "caudalis/db/DatabaseErrors.hpp"

namespace caudalis {
namespace {

using Kind = JetSqlSegment::Kind;

[[noreturn]] void raiseValueEndsLiteral() {
    raiseSyntaxError("A text value ends the literal it was written into.");
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

void StatementGuard::requireStaysInLiteral(std::string_view value, char closing) {
    if (closing == ']') {
        if (value.find(']') != std::string_view::npos) {
            raiseValueEndsLiteral();
        }
        return;
    }
    for (std::size_t quote = value.find(closing); quote != std::string_view::npos;
         quote = value.find(closing, quote + 2)) {
        if (quote + 1 >= value.size() || value[quote + 1] != closing) {
            raiseValueEndsLiteral();
        }
    }
}

void StatementGuard::requireWholeLiteral(std::string_view valueText) {
    if (valueText.empty() || (valueText.front() != '\'' && valueText.front() != '"')) {
        return;
    }
    const char quote = valueText.front();
    if (valueText.size() < 2 || valueText.back() != quote) {
        raiseValueEndsLiteral();
    }
    requireStaysInLiteral(valueText.substr(1, valueText.size() - 2), quote);
}

void StatementGuard::requireReadableStatement(const JetStatement& statement) {
    for (const JetSqlSegment& segment : statement.segments()) {
        requireReadableSegment(segment);
    }
}

}  // namespace caudalis
