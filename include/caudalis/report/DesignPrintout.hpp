#pragma once

#include <string>

#include "caudalis/design/DesignResult.hpp"
#include "caudalis/design/UnitText.hpp"
#include "caudalis/report/ReportDocument.hpp"

namespace caudalis::design {

/// The printout of a computed design as a report document, in a unit system: the findings
/// first, then the summary, spans, outlets, timer settings, depth per revolution, runoff and,
/// for the HTML report, the plots. The text printout and the HTML report are both rendered from
/// it, so they hold the same fields.
class DesignPrintout {
public:
    /// With `withPlots` the document ends with the plots section (for the HTML report).
    static ReportDocument document(const DesignResult& result, const Units& units, bool withPlots = false);

    static ReportSection findings(const DesignResult& result);
    static ReportSection summary(const DesignResult& result, const UnitText& text);
    static ReportSection spans(const DesignResult& result, const UnitText& text);
    static ReportSection outlets(const DesignResult& result, const UnitText& text);
    static ReportSection timer(const DesignResult& result, const UnitText& text);
    static ReportSection runoff(const DesignResult& result, const UnitText& text);
    static ReportSection plots(const DesignResult& result, const UnitText& text);
    /// "Package: spans <model>[, up to <distance> <model>][, end gun <model>]".
    static std::string packageLine(const DesignResult& result, const UnitText& text);
    /// Why the outlet has its nozzle or none (when that is not the plain closest match), a
    /// starved regulator, over pressure; empty when there is nothing to say.
    static std::string outletNote(const OutletResult& row);
};

}  // namespace caudalis::design
