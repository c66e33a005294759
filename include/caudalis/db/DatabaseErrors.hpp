#pragma once

#include <cstdint>
#include <string>

namespace caudalis {

/// Numbers of the data-access errors raised by `Connection` and `Recordset`, beside the
/// runtime's `RuntimeError::DataAccess` (no current row) and `RuntimeError::DatabaseEngine`
/// (a failure reported by the database engine, with the engine's message as description).
namespace DatabaseError {
/// A statement text that holds no statement.
inline constexpr std::int32_t InvalidStatement = 3129;
/// A statement text holds more than one statement.
inline constexpr std::int32_t CharactersAfterStatement = 3142;
/// A statement text that the dialect cannot read: a comment, a NUL character, an unterminated
/// text or name, or a text value that ends the literal it was written into.
inline constexpr std::int32_t SyntaxError = 3075;
/// A "?" left outside quotes: a parameter that no value was given for.
inline constexpr std::int32_t ParameterWithoutValue = 3061;
/// A field name that the record set does not have.
inline constexpr std::int32_t ItemNotFound = 3265;
/// An operation that needs an open connection on a closed one.
inline constexpr std::int32_t ObjectClosed = 3704;
/// An operation that needs a closed connection on an open one.
inline constexpr std::int32_t ObjectOpen = 3705;
/// A connection string naming an engine the library has no backend for.
inline constexpr std::int32_t ProviderNotFound = 3706;
}  // namespace DatabaseError

/// The standard text of a data-access error number.
std::string databaseErrorText(std::int32_t number);

/// Raises a data-access error with its standard text.
[[noreturn]] void raiseDatabaseError(std::int32_t number);

/// Raises `DatabaseError::SyntaxError` with the reason after the standard text.
[[noreturn]] void raiseSyntaxError(const std::string& reason);

/// Raises `RuntimeError::DatabaseEngine` carrying the engine's own message.
[[noreturn]] void raiseEngineError(const std::string& message);

}  // namespace caudalis
