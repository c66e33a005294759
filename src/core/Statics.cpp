#include "caudalis/core/Statics.hpp"

#include "caudalis/catalogue/AspersoresStatic.hpp"
#include "caudalis/core/Arrays.hpp"
#include "caudalis/core/Doubles.hpp"
#include "caudalis/core/Factories.hpp"
#include "caudalis/core/LazyInstance.hpp"

namespace caudalis {

std::shared_ptr<Statics> Statics::application() {
    static LazyInstance<Statics> instance;
    return instance.get();
}

std::shared_ptr<AspersoresStatic> Statics::Aspersores() const {
    return aspersores_.get();
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

}  // namespace caudalis
