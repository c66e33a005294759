#include "caudalis/core/Statics.hpp"

#include "caudalis/catalogue/AspersoresStatic.hpp"
#include "caudalis/charts/CartaAspersores.hpp"
#include "caudalis/charts/CartaAspersoresStatic.hpp"
#include "caudalis/core/Arrays.hpp"
#include "caudalis/core/Doubles.hpp"
#include "caudalis/core/Factories.hpp"
#include "caudalis/core/LazyInstance.hpp"
#include "caudalis/evaluation/FieldSamples.hpp"
#include "caudalis/evaluation/PivotEvaluations.hpp"
#include "caudalis/evaluation/Pluviometros.hpp"
#include "caudalis/evaluation/WaterDepths.hpp"
#include "caudalis/hydraulics/Drops.hpp"
#include "caudalis/hydraulics/PipeMaterials.hpp"
#include "caudalis/hydraulics/PivotWrapper.hpp"
#include "caudalis/hydraulics/ReguladorPression.hpp"
#include "caudalis/machine/CoordenadasSaidas.hpp"
#include "caudalis/machine/Pivots.hpp"
#include "caudalis/machine/Tramos.hpp"
#include "caudalis/machine/Types.hpp"

namespace caudalis {

std::shared_ptr<Statics> Statics::application() {
    static LazyInstance<Statics> instance;
    return instance.get();
}

std::shared_ptr<AspersoresStatic> Statics::Aspersores() const {
    return aspersores_.get();
}

std::shared_ptr<CartaAspersoresStatic> Statics::CartaAspersor() const {
    return cartaAspersor_.get();
}

std::shared_ptr<CartaAspersores> Statics::newCartaAspersores() const {
    return makeCartaAspersores();
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

std::shared_ptr<PivotWrapper> Statics::newPivotWrapper(
    const pivot& apivot_dt, const std::shared_ptr<CalculosStrategy>& strategy) const {
    auto wrapper = std::make_shared<PivotWrapper>();
    wrapper->initWrapper(apivot_dt, strategy);
    return wrapper;
}

std::shared_ptr<ReguladorPression> Statics::newReguladorPression(Integer tramo, Double pression,
                                                                 Double caudal_max, Double caudal_min,
                                                                 bool installed) const {
    return makeReguladorPression(tramo, pression, caudal_max, caudal_min, installed);
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

std::shared_ptr<caudalis::Drops> Statics::Drops() const {
    return caudalis::Drops::shared();
}

std::shared_ptr<caudalis::PipeMaterials> Statics::PipeMaterials() const {
    return caudalis::PipeMaterials::shared();
}

std::shared_ptr<caudalis::FieldSamples> Statics::FieldSamples() const {
    return caudalis::FieldSamples::shared();
}

std::shared_ptr<caudalis::Pluviometros> Statics::Pluviometros() const {
    return caudalis::Pluviometros::shared();
}

std::shared_ptr<caudalis::PivotEvaluations> Statics::PivotEvaluations() const {
    return caudalis::PivotEvaluations::shared();
}

}  // namespace caudalis
