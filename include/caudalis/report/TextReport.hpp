#pragma once

#include <ostream>
#include <string>

#include "caudalis/design/DesignResult.hpp"
#include "caudalis/design/Units.hpp"

namespace caudalis::design {

/// The printed sprinkler chart: the findings, the summary, spans, every outlet with its nozzle,
/// the timer settings and the runoff check (`DesignPrintout` as plain text), in the units of the
/// design file.
class TextReport {
public:
    static void write(std::ostream& out, const DesignResult& result);
    static void write(std::ostream& out, const DesignResult& result, const Units& units);
};

}  // namespace caudalis::design
