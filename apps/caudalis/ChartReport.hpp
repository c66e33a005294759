#pragma once

#include <ostream>
#include <vector>

#include "ChartStore.hpp"
#include "caudalis/design/UnitText.hpp"

namespace caudalis::cli {

/// Stored charts as text: the list of charts, and one chart's whole content with every figure in
/// the units of `text` (the chart keeps SI).
class ChartReport {
public:
    static void writeList(std::ostream& out, const std::vector<StoredChart>& charts);
    static void write(std::ostream& out, const LoadedChart& loaded, const design::UnitText& text);

private:
    static void writeAccessories(std::ostream& out, CartaAspersores& chart, const design::UnitText& text);
    /// Every mounted nozzle with its outlet's stored distance, pressures and flows.
    static void writeNozzles(std::ostream& out, const CartaAspersores& chart,
                             const std::optional<design::ChartFigures>& figures,
                             const design::UnitText& text);
    static std::string figuresText(const std::optional<design::ChartFigures>& figures,
                                   const std::string& label, const design::UnitText& text);
    static void writeTimer(std::ostream& out, const std::optional<design::ChartFigures>& figures,
                           const design::UnitText& text);
};

}  // namespace caudalis::cli
