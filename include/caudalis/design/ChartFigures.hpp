#pragma once

#include <optional>
#include <string>
#include <vector>

#include "caudalis/core/Records.hpp"
#include "caudalis/design/DesignResult.hpp"

namespace caudalis {
class Connection;
}

namespace caudalis::design {

/// One outlet's computed figures as stored beside a chart (SI: m, kPa, l/s).
struct OutletFigures {
    std::string outlet;
    double distanceM = 0;
    double groundM = 0;
    double pipeKpa = 0;
    double actingKpa = 0;
    double requiredLps = 0;
    double deliveredLps = 0;
};

/// What a stored chart keeps of its design beside the chart's own tables: the timer table (with
/// the chart's indicators), every outlet's figures and the design file the chart was computed
/// from, in the project database's side tables `chart_speed_table`, `chart_outlet_figures` and
/// `chart_design`.
struct ChartFigures {
    caixaVelocidades speeds;
    std::vector<OutletFigures> outlets;
    /// The design file (JSON) as it was run; empty when it was not kept.
    std::string design;

    /// Which side tables a project database has. Asked before a transaction begins, since a
    /// failed statement ends a PostgreSQL transaction.
    struct SideTables {
        bool figures = false;
        bool design = false;
    };

    static ChartFigures of(const DesignResult& result);
    static SideTables sideTablesOf(Connection& project);
    /// Replaces the figures of chart `chartId` inside the transaction that the caller has begun
    /// on `project`, so that they are stored together with the caller's own rows.
    static void replace(Connection& project, Long chartId, const ChartFigures& figures, SideTables tables);
    /// Deletes the figures of chart `chartId` inside the caller's transaction.
    static void remove(Connection& project, Long chartId, SideTables tables);
    /// Replaces the figures of chart `chartId` in one transaction; database errors pass
    /// unchanged and leave the tables as they were.
    static void save(Connection& project, Long chartId, const ChartFigures& figures);
    /// The figures of chart `chartId`; empty when none were stored or the project database has
    /// no side tables. A project database without `chart_design` gives no design.
    static std::optional<ChartFigures> load(Connection& project, Long chartId);
    /// Deletes the figures of chart `chartId` (nothing when the side tables are missing).
    static void erase(Connection& project, Long chartId);
};

}  // namespace caudalis::design
