#include "caudalis/hydraulics/ReguladorPression.hpp"

#include "caudalis/hydraulics/PivotWrapper.hpp"
#include "caudalis/machine/Pivots.hpp"

namespace caudalis {

void ReguladorPression::apply_to(PivotWrapper& pivot_wrapper) {
    pivot_wrapper.apply(*this);
}

void ReguladorPression::apply(pivot& apivot) {
    if (targetsOverhang(apivot)) {
        applyToTramo(apivot.tramoVOladizo);
    } else {
        applyToTramo(apivot.Tramos(tramo_));
    }
}

void ReguladorPression::initRegulador(Integer tramo, Double pression, Double caudal_max, Double caudal_min,
                                      bool installed) {
    tramo_ = tramo;
    pression_ = pression;
    maximum_caudal_ = caudal_max;
    minimum_caudal_ = caudal_min;
    installed_ = installed;
}

bool ReguladorPression::targetsOverhang(pivot& apivot) const {
    const auto pivots = Pivots::shared();
    return pivots->hasOverHang(apivot) && tramo_ == pivots->allSpansCount(apivot);
}

void ReguladorPression::applyToTramo(caudalis::tramo& aTramo) const {
    if (!installed_) {
        return;
    }
    aTramo.temRegulador = true;
    aTramo.regulador = asRegulador();
}

caudalis::regulador ReguladorPression::asRegulador() const {
    caudalis::regulador result;
    result.Preg = pression_;
    return result;
}

std::shared_ptr<ReguladorPression> makeReguladorPression(Integer tramo, Double pression, Double caudal_max,
                                                         Double caudal_min, bool installed) {
    auto regulator = std::make_shared<ReguladorPression>();
    regulator->initRegulador(tramo, pression, caudal_max, caudal_min, installed);
    return regulator;
}

}  // namespace caudalis
