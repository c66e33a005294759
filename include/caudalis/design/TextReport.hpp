#pragma once

#include <ostream>

#include "caudalis/design/DesignResult.hpp"

namespace caudalis::design {

/// The printed sprinkler chart: spans, every outlet with its nozzle, the summary and the
/// findings.
/// Units: kPa, l/s, m, mm, mm/h.
class TextReport {
public:
    static void write(std::ostream& out, const DesignResult& result);

private:
    static void writeHeader(std::ostream& out, const DesignResult& result);
    static void writeSpans(std::ostream& out, const DesignResult& result);
    static void writeOutlets(std::ostream& out, const DesignResult& result);
    static void writeSummary(std::ostream& out, const DesignResult& result);
    static void writeFindings(std::ostream& out, const DesignResult& result);
};

}  // namespace caudalis::design
