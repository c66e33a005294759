#include "caudalis/db/DatabaseErrors.hpp"

#include "caudalis/core/Error.hpp"

namespace caudalis {

std::string databaseErrorText(std::int32_t number) {
    switch (number) {
        case DatabaseError::InvalidStatement:
            return "Invalid SQL statement; expected 'DELETE', 'INSERT', 'PROCEDURE', 'SELECT', or 'UPDATE'.";
        case DatabaseError::CharactersAfterStatement:
            return "Characters found after end of SQL statement.";
        case DatabaseError::SyntaxError:
            return "Syntax error in query expression.";
        case DatabaseError::ParameterWithoutValue:
            return "No value given for one or more required parameters.";
        case DatabaseError::ItemNotFound:
            return "Item cannot be found in the collection corresponding to the requested name or ordinal.";
        case DatabaseError::ObjectClosed:
            return "Operation is not allowed when the object is closed.";
        case DatabaseError::ObjectOpen:
            return "Operation is not allowed when the object is open.";
        case DatabaseError::ProviderNotFound:
            return "Provider cannot be found. It may not be properly installed.";
        default:
            return standardErrorText(number);
    }
}

void raiseDatabaseError(std::int32_t number) {
    raiseError(number, databaseErrorText(number));
}

void raiseSyntaxError(const std::string& reason) {
    raiseError(DatabaseError::SyntaxError, databaseErrorText(DatabaseError::SyntaxError) + " " + reason);
}

void raiseEngineError(const std::string& message) {
    raiseError(RuntimeError::DatabaseEngine, message);
}

}  // namespace caudalis
