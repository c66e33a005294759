#include "caudalis/design/MountedNozzleStrategy.hpp"

namespace caudalis::design {

MountedNozzleStrategy::MountedNozzleStrategy(std::shared_ptr<CartaAspersores> chart)
    : chart_(std::move(chart)) {}

std::shared_ptr<Aspersor> MountedNozzleStrategy::aspersorFor(const saida& aSaida) {
    return aSaida.obj_aspersor;
}

}  // namespace caudalis::design
