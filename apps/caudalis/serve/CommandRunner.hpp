#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "CommandLine.hpp"

namespace caudalis::web {

/// What one command of the program printed and how it ended.
struct CommandOutcome {
    int exitCode = 0;
    std::string out;
    /// The lines the command wrote on the error stream, without the "caudalis: " before each.
    std::vector<std::string> notes;

    /// The notes as one message (the command's error when it failed).
    std::string message() const;
};

/// Runs the program's own commands inside the server, so that every answer of the API is what
/// the command line prints, messages included. The library keeps shared state of its own, so
/// commands and direct reads run one at a time under `engineLock()`; requests themselves are
/// read, checked and answered concurrently.
class CommandRunner {
public:
    /// `args` without the program name, e.g. {"design", "file.json", "--json"}.
    static CommandOutcome run(const std::vector<std::string>& args);
    /// The services the commands use, for the reads that have no JSON form on the command line.
    static cli::Services services();
    /// Held while the library works.
    static std::mutex& engineLock();
};

}  // namespace caudalis::web
