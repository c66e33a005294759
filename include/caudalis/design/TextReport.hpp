#pragma once

#include <ostream>
#include <string>

#include "caudalis/design/DesignResult.hpp"
#include "caudalis/design/Units.hpp"

namespace caudalis::design {

/// The printed sprinkler chart: the package, spans, every outlet with its nozzle (and why it
/// has that nozzle or none, when that is not the plain closest match), the summary and the
/// findings, in the design's own units or in `units`.
class TextReport {
public:
    static void write(std::ostream& out, const DesignResult& result);
    static void write(std::ostream& out, const DesignResult& result, const Units& units);

private:
    static void writeHeader(std::ostream& out, const DesignResult& result, const Units& units);
    static void writeSpans(std::ostream& out, const DesignResult& result, const Units& units);
    static void writeOutlets(std::ostream& out, const DesignResult& result, const Units& units);
    static void writeSummary(std::ostream& out, const DesignResult& result, const Units& units);
    static void writeFindings(std::ostream& out, const DesignResult& result);
    static std::string outletNote(const OutletResult& row);
};

}  // namespace caudalis::design
