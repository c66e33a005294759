#include "IdealMarch.hpp"

#include "OutletCount.hpp"
#include "caudalis/core/Checked.hpp"
#include "caudalis/core/Doubles.hpp"
#include "caudalis/hydraulics/Drops.hpp"
#include "caudalis/machine/HazenWilliams.hpp"
#include "caudalis/machine/Pivots.hpp"
#include "caudalis/machine/Types.hpp"

namespace caudalis {

using checked::add;
using checked::div;
using checked::mul;
using checked::sub;

IdealMarch::IdealMarch(pivot& machine, const Drop& drop)
    : machine_(machine),
      drop_(drop),
      pivots_(Pivots::shared()),
      placements_(Types::placementsInstance()),
      doubles_(Doubles::shared()),
      drops_(Drops::shared()) {}

void IdealMarch::alongPivot() {
    ParPressaoCaudal cond = pivots_->newParPressaoCaudal(machine_.presion, machine_.caudal);
    const Integer spans = pivots_->FixedSpansCount(machine_);
    for (Integer i = 1; i <= spans; ++i) {
        tramo& span = machine_.Tramos(i);
        alongTramo(span, cond, pivots_->tramoAte(machine_, static_cast<Integer>(i - 1)));
        cond = span.ideal_exit_conditions;
    }
    if (pivots_->hasOverHang(machine_)) {
        alongTramo(machine_.tramoVOladizo, cond, pivots_->tramoAte(machine_, spans));
        cond = machine_.tramoVOladizo.ideal_exit_conditions;
    }
    if (pivots_->hasEndGun(machine_)) {
        endGun(machine_.endGun, cond);
    }
}

void IdealMarch::endGun(Gun& aGun, const ParPressaoCaudal& initial_conditions) const {
    const double spanLength = pivots_->AllSpanLenght(machine_);
    aGun.saida.distanciaAoPivot = spanLength;
    const double irrigated = pivots_->AllIrrigatedLenght(machine_);
    aGun.saida.caudal =
        div(mul(mul(add(spanLength, spanLength), aGun.rs), machine_.caudal), checked::pow(irrigated, 2.0));
    aGun.saida.pressao_ideal = initial_conditions.pressao;
}

void IdealMarch::alongTramo(tramo& aTramo, const ParPressaoCaudal& cond, Double start) const {
    aTramo.ideal_entry_conditions = cond;
    double p = cond.pressao;
    double q = cond.caudal;
    double prevCota = aTramo.site.start_cota;
    double dist = start;
    double walked = 0.0;
    double loss = 0.0;
    const double s = aTramo.separacionSaidas;
    const double roughness = machine_.rugosidad;
    const double dz = mul(placements_->Slope(aTramo.site), s);
    const double dzP = mul(dz, 10.0);
    const Integer outlets = outletLoopCount(aTramo);
    for (Integer j = 1; j <= outlets; ++j) {
        saida& outlet = aTramo.Saidas(j);
        outlet.distanciaAoPivot = add(dist, s);
        walked = add(walked, s);
        const double friction =
            mul(mul(hazenWilliamsLoss(doubles_->Max(0.0, q), aTramo.diametro, roughness), s), 10.0);
        const double irrigated = pivots_->AllIrrigatedLenght(machine_);
        outlet.caudal = div(mul(mul(mul(2.0, outlet.distanciaAoPivot), s), machine_.caudal),
                            checked::pow(irrigated, 2.0));
        const double dropLoss = drops_->PressureLoss(drop_, outlet.caudal);
        loss = add(loss, friction);
        const double pPipe = sub(sub(p, dzP), friction);
        outlet.pressao_ideal = sub(pPipe, dropLoss);
        outlet.cota = add(prevCota, dz);
        p = pPipe;
        q = sub(q, outlet.caudal);
        prevCota = outlet.cota;
        dist = outlet.distanciaAoPivot;
    }
    const double endP = mul(sub(aTramo.site.end_cota, prevCota), 10.0);
    const double friction = mul(mul(hazenWilliamsLoss(doubles_->Max(0.0, q), aTramo.diametro, roughness),
                                    sub(aTramo.longitude, walked)),
                                10.0);
    loss = add(loss, friction);
    aTramo.ideal_exit_conditions = pivots_->newParPressaoCaudal(sub(sub(p, endP), friction), q);
    aTramo.perdaDeCargaIdeal = loss;
}

}  // namespace caudalis
