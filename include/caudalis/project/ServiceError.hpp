#pragma once

#include <stdexcept>
#include <string>

namespace caudalis::project {

/// What kind of failure a service reports; a host maps each to its own answer (the command
/// line ends with the code as its exit status).
namespace ErrorCode {
inline constexpr int Ok = 0;
inline constexpr int BadInput = 1;
inline constexpr int Usage = 2;
inline constexpr int NotSettled = 3;
/// A design with an error finding, or with a warning under strict checking.
inline constexpr int DesignFindings = 4;
}  // namespace ErrorCode

/// A failure of a service, reported as one line and mapped by the host from `code()`.
class ServiceError : public std::runtime_error {
public:
    ServiceError(int code, const std::string& message) : std::runtime_error(message), code_(code) {}
    int code() const noexcept { return code_; }

private:
    int code_;
};

/// The input (a file, a value in it, a database) cannot be used.
class InputError : public ServiceError {
public:
    explicit InputError(const std::string& message) : ServiceError(ErrorCode::BadInput, message) {}
};

/// The request itself is wrong (values that do not go together).
class UsageError : public ServiceError {
public:
    explicit UsageError(const std::string& message) : ServiceError(ErrorCode::Usage, message) {}
};

/// The hydraulic computation went on past the allowed number of passes.
class NotSettledError : public ServiceError {
public:
    explicit NotSettledError(const std::string& message) : ServiceError(ErrorCode::NotSettled, message) {}
};

}  // namespace caudalis::project
