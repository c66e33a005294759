#include "SpanWalk.hpp"

#include "caudalis/core/Checked.hpp"
#include "caudalis/core/Constants.hpp"
#include "caudalis/core/Doubles.hpp"
#include "caudalis/machine/HazenWilliams.hpp"
#include "caudalis/machine/Pivots.hpp"
#include "caudalis/machine/Types.hpp"

namespace caudalis {

using checked::add;
using checked::mul;
using checked::sub;

SpanWalk::SpanWalk(tramo& aTramo, const ParPressaoCaudal& cond, Double start)
    : tramo_(aTramo),
      p_(cond.pressao),
      q_(cond.caudal),
      prevCota_(aTramo.site.start_cota),
      dist_(start),
      s_(aTramo.separacionSaidas),
      dz_(mul(Types::placementsInstance()->Slope(aTramo.site), aTramo.separacionSaidas)),
      dzP_(mul(dz_, pressurePerMetre)) {}

Double SpanWalk::nextDistance() const {
    return add(dist_, s_);
}

Double SpanWalk::unitLoss(Double roughness) const {
    return hazenWilliamsLoss(Doubles::shared()->Max(0.0, q_), tramo_.diametro, roughness);
}

void SpanWalk::passOutlet(saida& outlet, Double pPipe, Double consumed) {
    walked_ = add(walked_, s_);
    outlet.cota = add(prevCota_, dz_);
    p_ = pPipe;
    q_ = sub(q_, consumed);
    prevCota_ = outlet.cota;
    dist_ = outlet.distanciaAoPivot;
}

Double SpanWalk::endStretchFriction(Double roughness) const {
    return mul(mul(unitLoss(roughness), sub(tramo_.longitude, walked_)), pressurePerMetre);
}

ParPressaoCaudal SpanWalk::exitConditions(Double friction) const {
    const double endP = mul(sub(tramo_.site.end_cota, prevCota_), pressurePerMetre);
    return Pivots::shared()->newParPressaoCaudal(sub(sub(p_, endP), friction), q_);
}

}  // namespace caudalis
