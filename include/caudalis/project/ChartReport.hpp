#pragma once

#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "caudalis/design/UnitText.hpp"
#include "caudalis/project/StoredChartDocument.hpp"
#include "caudalis/report/ReportDocument.hpp"

namespace caudalis::project {

/// Stored charts as text: the list of charts; and one chart's printout, drawn from its document
/// as text (the chart with its stored figures) or as a report document for HTML (the whole
/// printout of its design computed again, headed by the stored chart), every figure in the units
/// asked for (the chart keeps SI).
class ChartReport {
public:
    static void writeList(std::ostream& out, const std::vector<StoredChart>& charts);
    static void write(std::ostream& out, const StoredChartDocument& document, const design::UnitText& text);
    /// Raises `InputError` when the document was read without the chart's design.
    static design::ReportDocument document(const StoredChartDocument& document, const design::Units& units);

private:
    /// "Chart ID: NAME (system S)".
    static std::string heading(const StoredChartDocument& document);
    /// The chart's accessories, label and value, as stored.
    static std::vector<std::pair<std::string, std::string>> accessories(CartaAspersores& chart,
                                                                        const design::UnitText& text);
    /// One line per pressure regulator ("span   3: 140 kPa, 0.2-1.5 l/s").
    static std::vector<std::string> regulators(CartaAspersores& chart, const design::UnitText& text);
    /// Every mounted nozzle with its outlet's stored distance, pressures and flows.
    static void writeNozzles(std::ostream& out, const CartaAspersores& chart,
                             const std::optional<design::ChartFigures>& figures,
                             const design::UnitText& text);
    static std::string figuresText(const std::optional<design::ChartFigures>& figures,
                                   const std::string& label, const design::UnitText& text);
    static void writeTimer(std::ostream& out, const std::optional<design::ChartFigures>& figures,
                           const design::UnitText& text);
};

}  // namespace caudalis::project
