#pragma once

#include <vector>

#include "caudalis/core/Records.hpp"

namespace caudalis::design {

/// The pressure inside the pipe at each outlet of a computed machine, before the drop hose.
///
/// The outlet record keeps the pressure after the drop (`pressao_real`, never below 0) and the
/// pressure acting on the sprinkler, not the pipe pressure. This walks each span again from its
/// computed entry conditions with the same steps as the computation: per outlet interval s, the
/// elevation gain slope x s x 10 and the Hazen-Williams friction s x 10 x J(q) of the flow q that
/// reaches the outlet; then the outlet's delivered flow leaves the pipe. The end gun sees the
/// pipe pressure at the end of the last span.
class PipePressures {
public:
    /// One value per outlet in the order of the machine: fixed spans outwards, overhang, end gun.
    static std::vector<double> of(const pivot& machine);
    /// The pipe pressures of one computed span's outlets.
    static std::vector<double> ofSpan(const tramo& span, double roughnessC);
    /// The span's ground gain from its start to its end (m; negative downhill).
    static double elevationGain(const tramo& span);
    /// The span's friction loss: entry less exit pressure less the gain (x 10 kPa per m).
    static double frictionLoss(const tramo& span);
};

}  // namespace caudalis::design
