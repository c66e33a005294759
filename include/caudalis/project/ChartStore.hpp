#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "caudalis/core/Records.hpp"
#include "caudalis/design/ChartFigures.hpp"
#include "caudalis/design/StoredChartDesign.hpp"

namespace caudalis {
class CartaAspersores;
}

namespace caudalis::project {

/// A stored chart as listed: its system, name and key.
struct StoredChart {
    Long system = 0;
    CartaInfo info;
};

/// A stored chart as loaded, with the number of its nozzles that the catalogue did not give
/// back (a chart shown with another catalogue than the one it was designed with).
struct LoadedChart {
    std::shared_ptr<CartaAspersores> chart;
    Long system = 0;
    long missingNozzles = 0;
    /// The design's timer table and outlet figures stored beside the chart, when there are any.
    std::optional<design::ChartFigures> figures;
};

/// Where sprinkler charts are kept: the project database through `CartaAspersoresStatic`
/// (`saveAsNew`, `enumerateAll`, `find`, `destroy`). Every failure raises `InputError`.
class ChartStore {
public:
    virtual ~ChartStore() = default;
    /// Raises `InputError` unless a new chart named `name` can be stored in `system`.
    virtual void requireNameIsFree(const std::string& name, Long system) = 0;
    /// Stores the chart under `name` as a new chart of `system`, with the design's figures
    /// beside it, and returns its key. Chart and figures are stored together or not at all.
    virtual Long saveAsNew(const std::shared_ptr<CartaAspersores>& chart, const std::string& name,
                           Long system, const design::ChartFigures& figures) = 0;
    /// The charts of `system`, or of every system.
    virtual std::vector<StoredChart> list(std::optional<Long> system) = 0;
    /// The chart `id`; raises `InputError` when there is none.
    virtual LoadedChart find(Long id) = 0;
    /// Deletes the chart `id`; raises `InputError` when there is none.
    virtual void destroy(Long id) = 0;
    /// The chart `id` computed again from the design kept with it, with the wetted diameters
    /// (m, by model id) of the catalogue; raises `InputError` when there is no such chart.
    virtual design::RebuiltChart rebuild(Long id, const std::map<Long, double>& wettedDiameters) = 0;
};

}  // namespace caudalis::project
