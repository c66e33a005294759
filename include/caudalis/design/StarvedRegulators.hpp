#pragma once

#include <string>
#include <vector>

#include "caudalis/design/DesignResult.hpp"

namespace caudalis::design {

/// A second look at a computed design whose regulators cannot all reach their rating. The
/// march lets every regulated outlet act at its regulator's rating whatever the pipe gives; a
/// regulator only lowers pressure, so where the pipe pressure at the outlet is below the rating
/// the sprinkler acts at the pipe pressure (0 when the pipe holds none). This pass sets those
/// outlets' acting pressure, flow, flow deviation and depth to what that pressure gives, and the
/// delivered flow, depth per revolution, CU and DU of the summary to the outlets' new depths.
/// The pipe pressures stay those of the march (less flow would lose a little less to friction),
/// so the new figures are an upper bound of what the starved machine delivers. The library's
/// own records (`DesignResult::machine`) are left as the march left them.
class StarvedRegulators {
public:
    /// Reworks `result`'s outlets and summary; returns what it changed (empty when no
    /// regulator acts above the pipe pressure).
    static std::vector<std::string> reassess(DesignResult& result);
    /// The pressure a regulated outlet acts at: its rating, or the pipe pressure when that is
    /// lower (never below 0).
    static double actingPressure(double ratingKpa, double pipeKpa);

private:
    static bool reassessOutlet(OutletResult& row, double& flowChangeLps);
    static void reassessSummary(DesignResult& result, double flowChangeLps);
};

}  // namespace caudalis::design
