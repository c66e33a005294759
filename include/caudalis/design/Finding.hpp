#pragma once

#include <string>

namespace caudalis::design {

/// How much a finding weighs: an error makes the design unusable, a warning is something a
/// dealer must look at before signing, a note is information.
enum class Severity { Error, Warning, Note };

/// "error", "warning" or "note".
std::string severityName(Severity severity);

/// One observation about a computed design, as the printout's findings block and the JSON list
/// it: a severity, a stable code a program can test ("outlets-without-nozzle") and a sentence
/// for the designer.
struct Finding {
    Severity severity = Severity::Note;
    std::string code;
    std::string message;
};

}  // namespace caudalis::design
