#include "caudalis/design/MountedNozzleStrategy.hpp"

#include "caudalis/hydraulics/PivotWrapper.hpp"
#include "caudalis/machine/Pivots.hpp"

namespace caudalis::design {

MountedNozzleStrategy::MountedNozzleStrategy(std::shared_ptr<CartaAspersores> chart)
    : chart_(std::move(chart)) {}

void MountedNozzleStrategy::beforeCompute(PivotWrapper& pivot_wrapper) {
    pivot machine;
    pivot_wrapper.update(machine);
    outletsPerPass_ = Pivots::shared()->AllOutletCount(machine);
    calls_ = 0;
}

std::shared_ptr<Aspersor> MountedNozzleStrategy::aspersorFor(const saida& aSaida) {
    ++calls_;
    return aSaida.obj_aspersor;
}

long MountedNozzleStrategy::passes() const noexcept {
    return outletsPerPass_ > 0 ? (calls_ + outletsPerPass_ - 1) / outletsPerPass_ : 0;
}

}  // namespace caudalis::design
