#pragma once

#include <stdexcept>
#include <string>

namespace caudalis::cli {

/// Exit codes of the program.
namespace ExitCode {
inline constexpr int Ok = 0;
inline constexpr int BadInput = 1;
inline constexpr int Usage = 2;
inline constexpr int NotSettled = 3;
/// A design with an error finding, or with a warning under --strict.
inline constexpr int DesignFindings = 4;
}  // namespace ExitCode

/// A failure the program reports as one line on stderr and ends with `exitCode()`.
class CliError : public std::runtime_error {
public:
    CliError(int exitCode, const std::string& message) : std::runtime_error(message), exitCode_(exitCode) {}
    int exitCode() const noexcept { return exitCode_; }

private:
    int exitCode_;
};

/// The input (a file, a value in it, a database) cannot be used.
class InputError : public CliError {
public:
    explicit InputError(const std::string& message) : CliError(ExitCode::BadInput, message) {}
};

/// The command line itself is wrong.
class UsageError : public CliError {
public:
    explicit UsageError(const std::string& message) : CliError(ExitCode::Usage, message) {}
};

/// The hydraulic computation went on past the allowed number of passes.
class NotSettledError : public CliError {
public:
    explicit NotSettledError(const std::string& message) : CliError(ExitCode::NotSettled, message) {}
};

}  // namespace caudalis::cli
