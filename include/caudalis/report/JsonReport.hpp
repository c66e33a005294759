#pragma once

#include <ostream>
#include <string>

#include "caudalis/design/DesignResult.hpp"
#include "caudalis/design/JsonVisitor.hpp"
#include "caudalis/design/Units.hpp"

namespace caudalis::design {

/// The whole result as JSON: name, units, package, summary, findings, spans and outlets.
/// Spans and outlets use the library's record field names (`distanciaAoPivot`,
/// `pressao_actuante`, `caudal_do_aspersor`, `entry_conditions`, ...); "units" says which units
/// every figure is in (the design's own, or `units`), and summary keys end in their unit
/// (`design_flow_lps` or `design_flow_gpm`).
class JsonReport {
public:
    /// The document, indented by two spaces.
    static std::string text(const DesignResult& result);
    static std::string text(const DesignResult& result, const Units& units);
    /// The document followed by a line break.
    static void write(std::ostream& out, const DesignResult& result);
    static void write(std::ostream& out, const DesignResult& result, const Units& units);
    /// The same document handed to `visitor` value by value, keys in the order of the text.
    static void visit(const DesignResult& result, const Units& units, JsonVisitor& visitor);
};

}  // namespace caudalis::design
