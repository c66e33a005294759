#pragma once

#include <ostream>
#include <vector>

#include "caudalis/project/ChartStore.hpp"

namespace caudalis::project {

/// Stored charts as text: the list of charts, and one chart's whole content.
class ChartReport {
public:
    static void writeList(std::ostream& out, const std::vector<StoredChart>& charts);
    static void write(std::ostream& out, const LoadedChart& loaded);

private:
    static void writeAccessories(std::ostream& out, CartaAspersores& chart);
    /// Every mounted nozzle with its outlet's stored distance, pressures and flows.
    static void writeNozzles(std::ostream& out, const CartaAspersores& chart,
                             const std::optional<design::ChartFigures>& figures);
    static std::string figuresText(const std::optional<design::ChartFigures>& figures,
                                   const std::string& label);
    static void writeTimer(std::ostream& out, const std::optional<design::ChartFigures>& figures);
};

}  // namespace caudalis::project
