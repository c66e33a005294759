#pragma once

#include <string_view>

#include "caudalis/db/JetStatement.hpp"

namespace caudalis {

/// Keeps every value inside the literal it is written into, so that no text value is ever read
/// as part of a statement, whatever engine runs it. Values are pasted into statements as they
/// are (quotes are not doubled); a value that would end its literal early, and a statement text
/// that the dialect cannot read, raise `DatabaseError::SyntaxError` before anything runs.
class StatementGuard {
public:
    /// Raises when `value`, written inside a literal or name that `closing` ends, would end it:
    /// a lone quote (a doubled one stands for itself), or any "]" in a bracketed name.
    static void requireStaysInLiteral(std::string_view value, char closing);

    /// Raises when a value text written into the code of a statement begins as a literal (with
    /// "'" or "\"") but is not exactly one literal, as a quoted text that holds a quote is.
    static void requireWholeLiteral(std::string_view valueText);

    /// Raises unless the statement holds only what the dialect reads: no comment
    /// (`DatabaseError::SyntaxError`), no NUL character, no unterminated text or name, and no
    /// "?" outside quotes (`DatabaseError::ParameterWithoutValue`: the dialect has no
    /// parameters that an engine would silently read as Null).
    static void requireReadableStatement(const JetStatement& statement);
};

}  // namespace caudalis
