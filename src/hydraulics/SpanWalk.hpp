#pragma once

#include "../machine/PipeFriction.hpp"
#include "caudalis/core/Checked.hpp"
#include "caudalis/core/Constants.hpp"
#include "caudalis/core/Doubles.hpp"
#include "caudalis/core/Records.hpp"
#include "caudalis/machine/Pivots.hpp"
#include "caudalis/machine/Types.hpp"

namespace caudalis {

/// The state of a march along one span, outlet after outlet: pressure and flow in the pipe,
/// the elevation and distance of the last outlet and the length walked. The ideal and the
/// actual march share it; each computes its own outlet values.
///
/// Every member is defined here, so that a march's walk never leaves the function that holds
/// it: its pressure and flow then stay in registers from outlet to outlet instead of going
/// through memory around every call the march makes.
class SpanWalk {
public:
    /// Starts at the span's entry with `cond`, `start` metres from the pivot centre.
    SpanWalk(tramo& aTramo, const ParPressaoCaudal& cond, Double start)
        : tramo_(aTramo),
          friction_(aTramo.diametro),
          p_(cond.pressao),
          q_(cond.caudal),
          prevCota_(aTramo.site.start_cota),
          dist_(start),
          s_(aTramo.separacionSaidas),
          dz_(checked::mul(Types::placementsInstance()->Slope(aTramo.site), aTramo.separacionSaidas)),
          dzP_(checked::mul(dz_, pressurePerMetre)) {}

    /// Pressure and flow in the pipe before the next outlet.
    Double pressure() const noexcept { return p_; }
    Double flow() const noexcept { return q_; }
    /// Outlet spacing, and the pressure lost to the rise of one outlet interval.
    Double spacing() const noexcept { return s_; }
    Double risePressure() const noexcept { return dzP_; }
    /// Distance from the centre of the next outlet.
    Double nextDistance() const { return checked::add(dist_, s_); }
    /// Hazen-Williams loss per metre of the current pipe flow (never below zero flow).
    Double unitLoss(Double roughness) const { return friction_.unitLoss(doubles_.Max(0.0, q_), roughness); }
    /// Moves past `outlet`, which leaves `pPipe` in the pipe and takes `consumed` from it.
    void passOutlet(saida& outlet, Double pPipe, Double consumed) {
        walked_ = checked::add(walked_, s_);
        outlet.cota = checked::add(prevCota_, dz_);
        p_ = pPipe;
        q_ = checked::sub(q_, consumed);
        prevCota_ = outlet.cota;
        dist_ = outlet.distanciaAoPivot;
    }
    /// Friction of the stretch from the last outlet to the span's end.
    Double endStretchFriction(Double roughness) const {
        return checked::mul(checked::mul(unitLoss(roughness), checked::sub(tramo_.longitude, walked_)),
                            pressurePerMetre);
    }
    /// Pressure and flow at the span's end, after `friction`.
    ParPressaoCaudal exitConditions(Double friction) const {
        const double endP = checked::mul(checked::sub(tramo_.site.end_cota, prevCota_), pressurePerMetre);
        return Pivots::shared()->newParPressaoCaudal(checked::sub(checked::sub(p_, endP), friction), q_);
    }

private:
    const tramo& tramo_;
    Doubles doubles_;
    PipeFriction friction_;
    Double p_;
    Double q_;
    Double prevCota_;
    Double dist_;
    Double walked_ = 0.0;
    Double s_;
    Double dz_;
    Double dzP_;
};

}  // namespace caudalis
