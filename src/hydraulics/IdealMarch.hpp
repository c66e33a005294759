#pragma once

#include <memory>
#include <optional>

#include "DropLoss.hpp"
#include "DropLossTable.hpp"
#include "caudalis/core/Records.hpp"

namespace caudalis {

class Pivots;

/// The ideal operation mode: every outlet's required flow (its share of the design inflow in
/// proportion to the ring it waters) and the pressures that flow would give.
class IdealMarch {
public:
    /// A march with `drop`, whose drop-hose losses it takes from and adds to `dropLosses`.
    IdealMarch(pivot& machine, const Drop& drop, DropLossTable& dropLosses);

    /// One pass from the pivot outwards over spans, overhang and end gun.
    void alongPivot();
    /// Required flow and ideal pressure of the end gun.
    void endGun(Gun& aGun, const ParPressaoCaudal& initial_conditions) const;

private:
    void alongTramo(tramo& aTramo, const ParPressaoCaudal& cond, Double start);
    /// The irrigated length squared, which shares the design inflow out among the outlets;
    /// worked out at its first use in the pass, as the machine does not change during it.
    double irrigatedSquared();

    pivot& machine_;
    DropLoss dropLoss_;
    DropLossTable& dropLosses_;
    std::shared_ptr<Pivots> pivots_;
    std::optional<double> irrigatedSquared_;
};

}  // namespace caudalis
