#include "SpanWalk.hpp"

#include "caudalis/core/Constants.hpp"
#include "caudalis/machine/Pivots.hpp"
#include "caudalis/machine/Types.hpp"

namespace caudalis {

using checked::mul;
using checked::sub;

SpanWalk::SpanWalk(tramo& aTramo, const ParPressaoCaudal& cond, Double start)
    : tramo_(aTramo),
      friction_(aTramo.diametro),
      p_(cond.pressao),
      q_(cond.caudal),
      prevCota_(aTramo.site.start_cota),
      dist_(start),
      s_(aTramo.separacionSaidas),
      dz_(mul(Types::placementsInstance()->Slope(aTramo.site), aTramo.separacionSaidas)),
      dzP_(mul(dz_, pressurePerMetre)) {}

Double SpanWalk::endStretchFriction(Double roughness) const {
    return mul(mul(unitLoss(roughness), sub(tramo_.longitude, walked_)), pressurePerMetre);
}

ParPressaoCaudal SpanWalk::exitConditions(Double friction) const {
    const double endP = mul(sub(tramo_.site.end_cota, prevCota_), pressurePerMetre);
    return Pivots::shared()->newParPressaoCaudal(sub(sub(p_, endP), friction), q_);
}

}  // namespace caudalis
