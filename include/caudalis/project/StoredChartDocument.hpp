#pragma once

#include <optional>

#include "caudalis/design/StoredChartDesign.hpp"
#include "caudalis/project/ChartStore.hpp"

namespace caudalis::project {

/// Everything a stored chart's printout shows, read once: the chart with its stored figures,
/// and, when the whole report is asked for, its design computed again from the design file kept
/// with it. The text and the HTML printouts are both drawn from it (`ChartReport`).
struct StoredChartDocument {
    LoadedChart stored;
    std::optional<design::RebuiltChart> design;
};

}  // namespace caudalis::project
