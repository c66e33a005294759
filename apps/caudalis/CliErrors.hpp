#pragma once

#include "caudalis/project/ServiceError.hpp"

namespace caudalis::cli {

/// Exit codes of the program: the services' error codes.
namespace ExitCode = project::ErrorCode;

/// A failure the program reports as one line on stderr and ends with its code.
using CliError = project::ServiceError;
using project::InputError;
using project::NotSettledError;
using project::UsageError;

}  // namespace caudalis::cli
