#pragma once

#include <ostream>
#include <string>

#include "caudalis/design/DesignResult.hpp"

namespace caudalis::design {

/// The whole result as JSON: name, summary, findings, spans and outlets. Spans and outlets use
/// the library's record field names (`distanciaAoPivot`, `pressao_actuante`,
/// `caudal_do_aspersor`, `entry_conditions`, ...).
class JsonReport {
public:
    /// The document, indented by two spaces.
    static std::string text(const DesignResult& result);
    /// The document followed by a line break.
    static void write(std::ostream& out, const DesignResult& result);
};

}  // namespace caudalis::design
