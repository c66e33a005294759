#pragma once

#include <map>
#include <string>

#include "caudalis/core/Records.hpp"
#include "caudalis/design/DesignResult.hpp"

namespace caudalis::design {

/// A stored chart computed again: what a design run gives for it, and its depth profile.
struct RebuiltChart {
    /// The machine and accessories of the design file kept with the chart, carrying the chart's
    /// nozzles as stored (not chosen again), computed by the library's hydraulics; `chart` is
    /// the stored chart.
    DesignResult result;
    /// `PivotWrapper::WaterDepthsSamples` of the computed chart: the depth (mm) each outlet
    /// lays in one revolution at 100 % timer, by its distance from the centre (m).
    BoundedArray<WaterDepthSample> depths;
    /// Nozzles of the stored chart that the catalogue did not give back; their outlets are
    /// computed without a nozzle, and a warning among the findings says so.
    long missingNozzles = 0;
};

/// Rebuilds a chart stored by a design run (the chart's tables and the side tables that
/// `ChartFigures` writes, the design file among them) from the project database.
class StoredChartDesign {
public:
    /// `projectConnection` and `catalogue` are what `CartaAspersoresStatic::find` takes: the
    /// project database's connection string and the catalogue database that the nozzles are
    /// joined from. Raises `DesignError` (`InvalidInput`) when the project database has no
    /// chart `chartId`, when `chartId` is beyond the 16-bit ids the chart tables read, or when
    /// no design file was kept with it; the design file's own errors, the library's and the
    /// database's pass unchanged.
    static RebuiltChart rebuild(const std::string& projectConnection, const std::string& catalogue,
                                Long chartId, const std::map<Long, double>& wettedDiameters = {});
};

}  // namespace caudalis::design
