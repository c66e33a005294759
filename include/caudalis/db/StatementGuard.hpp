#pragma once

#include <string_view>

#include "caudalis/db/JetStatement.hpp"

namespace caudalis {

/// Keeps every value inside the literal it is written into, so that no text value is ever read
/// as part of a statement, whatever engine runs it, and every value is stored exactly as given.
/// Values are pasted into statements as they are (quotes are not doubled), so a value that holds
/// the quote of its literal (alone it would end the literal, doubled it would be stored as one
/// quote), and a statement text that the dialect cannot read, raise `DatabaseError::SyntaxError`
/// before anything runs; the message names the field (`field`) the value was meant for.
class StatementGuard {
public:
    /// Raises when `value`, written inside a literal or name that `closing` ends, holds that
    /// character at all: a quote in a quoted text, "]" in a bracketed name.
    static void requireStaysInLiteral(std::string_view value, char closing, std::string_view field);

    /// Raises when a value text written into the code of a statement begins as a literal (with
    /// "'" or "\"") but is not exactly one literal without its quote inside.
    static void requireWholeLiteral(std::string_view valueText, std::string_view field);

    /// Raises unless the statement holds only what the dialect reads: no comment
    /// (`DatabaseError::SyntaxError`), no NUL character, no unterminated text or name, and no
    /// "?" outside quotes (`DatabaseError::ParameterWithoutValue`: the dialect has no
    /// parameters that an engine would silently read as Null).
    static void requireReadableStatement(const JetStatement& statement);
};

}  // namespace caudalis
