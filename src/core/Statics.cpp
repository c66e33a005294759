#include "caudalis/core/Statics.hpp"

#include "caudalis/core/Arrays.hpp"
#include "caudalis/core/Doubles.hpp"
#include "caudalis/core/Factories.hpp"
#include "caudalis/core/LazyInstance.hpp"
#include "caudalis/evaluation/WaterDepths.hpp"
#include "caudalis/machine/CoordenadasSaidas.hpp"
#include "caudalis/machine/Pivots.hpp"
#include "caudalis/machine/Tramos.hpp"
#include "caudalis/machine/Types.hpp"

namespace caudalis {

std::shared_ptr<Statics> Statics::application() {
    static LazyInstance<Statics> instance;
    return instance.get();
}

indicadores Statics::newIndicadores(Double horas, Integer nsaidas) const {
    return makeIndicadores(horas, nsaidas);
}

PivotSample Statics::newPivotSample(Double centerDistance, Double wetDiameter, const String& code) const {
    return makePivotSample(centerDistance, wetDiameter, code);
}

KostiakovParameters Statics::newKostiakovParameters(Double k, Double a) const {
    return makeKostiakovParameters(k, a);
}

caudalis::pivot Statics::newPivot() const {
    return caudalis::pivot{};
}

std::shared_ptr<caudalis::Arrays> Statics::Arrays() const {
    return caudalis::Arrays::shared();
}

std::shared_ptr<caudalis::Doubles> Statics::Doubles() const {
    return caudalis::Doubles::shared();
}

std::shared_ptr<caudalis::Tramos> Statics::Tramos() const {
    return caudalis::Tramos::shared();
}

std::shared_ptr<caudalis::Pivots> Statics::Pivots() const {
    return caudalis::Pivots::shared();
}

std::shared_ptr<caudalis::CoordenadasSaidas> Statics::CoordenadasSaidas() const {
    return caudalis::CoordenadasSaidas::shared();
}

std::shared_ptr<caudalis::WaterDepths> Statics::WaterDepths() const {
    return caudalis::WaterDepths::shared();
}

std::shared_ptr<caudalis::Types> Statics::Gun() const {
    return caudalis::Types::gunInstance();
}

std::shared_ptr<caudalis::Types> Statics::Placements() const {
    return caudalis::Types::placementsInstance();
}

std::shared_ptr<caudalis::Types> Statics::Saidas() const {
    return caudalis::Types::saidasInstance();
}

}  // namespace caudalis
