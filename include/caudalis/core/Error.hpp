#pragma once

#include <cstdint>
#include <exception>
#include <string>

namespace caudalis {

/// The one exception type of the library: a numbered error with its source and description.
class Error : public std::exception {
public:
    Error(std::int32_t number, std::string description, std::string source = "Caudalis");

    std::int32_t number() const noexcept { return number_; }
    const std::string& source() const noexcept { return source_; }
    const std::string& description() const noexcept { return description_; }
    const char* what() const noexcept override { return what_.c_str(); }

private:
    std::int32_t number_;
    std::string source_;
    std::string description_;
    std::string what_;
};

/// Numbers of the runtime's standard errors.
namespace RuntimeError {
inline constexpr std::int32_t InvalidProcedureCall = 5;
inline constexpr std::int32_t Overflow = 6;
inline constexpr std::int32_t SubscriptOutOfRange = 9;
inline constexpr std::int32_t DivisionByZero = 11;
inline constexpr std::int32_t TypeMismatch = 13;
inline constexpr std::int32_t ObjectNotSet = 91;
inline constexpr std::int32_t InvalidUseOfNull = 94;
inline constexpr std::int32_t KeyAlreadyAssociated = 457;
/// Data-access errors (engine failures, reading a field with no current row).
inline constexpr std::int32_t DataAccess = 3021;
inline constexpr std::int32_t DatabaseEngine = 3146;
}  // namespace RuntimeError

/// The standard text of a runtime error number, or the generic application-defined text.
std::string standardErrorText(std::int32_t number);

/// Raises `number` with its standard text and the library as source.
[[noreturn]] void raiseError(std::int32_t number);

/// Raises `number` with a description of its own (used for data-access errors).
[[noreturn]] void raiseError(std::int32_t number, const std::string& description);

}  // namespace caudalis
