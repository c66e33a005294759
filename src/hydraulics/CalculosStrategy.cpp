#include "caudalis/hydraulics/CalculosStrategy.hpp"

namespace caudalis {

void CalculosStrategy::setAvaillableAspersores(const CollectionRef& /*all_aspersores*/) {}

void CalculosStrategy::beforeCompute(PivotWrapper& /*pivot_wrapper*/) {}

void CalculosStrategy::afterCompute(PivotWrapper& /*pivot_wrapper*/) {}

std::shared_ptr<Aspersor> CalculosStrategy::aspersorFor(const saida& /*aSaida*/) {
    return nullptr;
}

std::shared_ptr<CartaAspersores> CalculosStrategy::carta() {
    return nullptr;
}

}  // namespace caudalis
