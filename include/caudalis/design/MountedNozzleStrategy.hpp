#pragma once

#include <memory>

#include "caudalis/hydraulics/CalculosStrategy.hpp"

namespace caudalis::design {

/// Computes a machine with the nozzles already mounted on its outlets (a stored chart's, put on
/// with `CartaAspersores::mountAsperoresOn`) instead of choosing them: every outlet keeps its
/// nozzle, and an outlet without one stays without. The chart holds the accessories.
class MountedNozzleStrategy : public CalculosStrategy {
public:
    explicit MountedNozzleStrategy(std::shared_ptr<CartaAspersores> chart);

    std::shared_ptr<Aspersor> aspersorFor(const saida& aSaida) override;
    std::shared_ptr<CartaAspersores> carta() override { return chart_; }

private:
    std::shared_ptr<CartaAspersores> chart_;
};

}  // namespace caudalis::design
