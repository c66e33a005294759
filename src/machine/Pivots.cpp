#include "caudalis/machine/Pivots.hpp"

#include <optional>

#include "caudalis/core/Arrays.hpp"
#include "caudalis/core/Checked.hpp"
#include "caudalis/core/Constants.hpp"
#include "caudalis/core/LazyInstance.hpp"
#include "caudalis/machine/IntegerArithmetic.hpp"
#include "caudalis/machine/Tramos.hpp"
#include "caudalis/machine/Types.hpp"

namespace caudalis {

std::shared_ptr<Pivots> Pivots::shared() {
    static LazyInstance<Pivots> instance;
    return instance.get();
}

BoundedArray<Integer> Pivots::saida2TramoeSaida(pivot& self, Integer numeroDaSaida) const {
    const auto tramos = Tramos::shared();
    Integer accumulated = 0;
    Integer span = 0;
    while (numeroDaSaida > accumulated) {
        span = integer::add(span, 1);
        accumulated = integer::add(accumulated, tramos->OutletCount(self.Tramos(span)));
    }
    const Integer count = integer::from(tramos->OutletCount(self.Tramos(span)));
    BoundedArray<Integer> result(1, 2);
    result(1) = span;
    result(2) = integer::sub(count, integer::sub(accumulated, numeroDaSaida));
    return result;
}

Variant Pivots::FixedSpanOutletCount(pivot& self) const {
    const auto tramos = Tramos::shared();
    const Integer count = FixedSpansCount(self);
    std::optional<Double> sum;
    for (Long i = 1; i <= count; ++i) {
        sum = checked::add(sum.value_or(0), tramos->OutletCount(self.Tramos(i)));
    }
    return sum ? Variant(*sum) : Variant();
}

Integer Pivots::AllSpanOutletCount(pivot& self) const {
    const Integer fixed = FixedSpanOutletCount(self).toInteger();
    if (!hasOverHang(self)) {
        return fixed;
    }
    return integer::add(fixed, Tramos::shared()->OutletCount(self.tramoVOladizo));
}

Integer Pivots::AllOutletCount(pivot& self) const {
    const Integer spanOutlets = AllSpanOutletCount(self);
    return hasEndGun(self) ? integer::add(spanOutlets, 1) : spanOutlets;
}

Double Pivots::tramoAte(const pivot& self, Integer tramo) const {
    Double distance = 0;
    for (Long i = 1; i <= tramo; ++i) {
        distance = checked::add(distance, self.Tramos(i).longitude);
    }
    return distance;
}

void Pivots::aplicaRegulador(pivot& self, const BoundedArray<Variant>& reguladores) const {
    const Integer count = FixedSpansCount(self);
    for (Long i = 1; i <= count; ++i) {
        const Variant& fitting = reguladores(i);
        tramo& span = self.Tramos(i);
        if (fitting.isEmpty()) {
            span.temRegulador = false;
        } else {
            span.regulador = fitting.toRecord<regulador>();
            span.temRegulador = true;
        }
    }
}

BoundedArray<Variant> Pivots::recolheReguladores(const pivot& self) const {
    const Integer count = FixedSpansCount(self);
    BoundedArray<Variant> fittings;
    if (count == 0) {
        return fittings;
    }
    fittings.redim(1, count);
    for (Long i = 1; i <= count; ++i) {
        const tramo& span = self.Tramos(i);
        if (span.temRegulador) {
            fittings(i) = Variant::record(span.regulador);
        }
    }
    return fittings;
}

Double Pivots::pluviosidadeMaxima(const pivot& self, const PivotSample& Sample) const {
    return peakApplicationRate(self.caudaDaCartaAssociada, AllIrrigatedLenght(self), Sample.distanceToCenter,
                               Sample.wetDiameter);
}

Double Pivots::peakApplicationRate(Double discharge, Double irrigatedLength, Double distance,
                                   Double wetDiameter) {
    const Double perArea = checked::div(discharge, checked::mul(irrigatedLength, irrigatedLength));
    const Double factor = checked::mul(checked::div(4, pi), secondsPerHour);
    const Double reach = checked::div(distance, checked::div(wetDiameter, 2));
    return checked::mul(checked::mul(perArea, factor), reach);
}

Double Pivots::AllSpanLenght(const pivot& self) const {
    const Double fixed = tramoAte(self, FixedSpansCount(self));
    return hasOverHang(self) ? checked::add(fixed, self.tramoVOladizo.longitude) : fixed;
}

Double Pivots::AllIrrigatedLenght(const pivot& self) const {
    const Double spans = AllSpanLenght(self);
    return hasEndGun(self) ? checked::add(spans, self.endGun.rs) : spans;
}

Double Pivots::IrrigatedArea(const pivot& self) const {
    const Double radius = AllIrrigatedLenght(self);
    return checked::mul(checked::mul(radius, radius), pi);
}

void Pivots::setFixedSpans(pivot& self, const BoundedArray<tramo>& spans,
                           const BoundedArray<Double>& endSpanHeights) const {
    self.Tramos = spans;
    Tramos::shared()->BuildPlacements(self.Tramos, self.cota, endSpanHeights);
    if (hasOverHang(self)) {
        placeOverhang(self);
    }
}

void Pivots::removeFixedSpans(pivot& self) const {
    self.Tramos.erase();
    if (hasOverHang(self)) {
        self.tramoVOladizo.site = Types::placementsInstance()->newPlacement(0, 0, 1);
    }
}

void Pivots::setOverhangSpan(pivot& self, const tramo& span) const {
    self.tramoVOladizo = span;
    self.p_has_overhang = true;
    if (Arrays::shared()->HasAny(self.Tramos)) {
        placeOverhang(self);
    }
}

// The overhang continues the last fixed span's slope from its end elevation; the last span's
// own cache is left alone (the angle is computed on a copy of its placement).
void Pivots::placeOverhang(pivot& self) const {
    const auto placements = Types::placementsInstance();
    Placement lastSite = Arrays::shared()->Last(self.Tramos).value().site;
    const Double angle = placements->SlopeAngle(lastSite);
    self.tramoVOladizo.site =
        placements->newVirtualPlacement(lastSite.end_cota, angle, self.tramoVOladizo.longitude);
}

void Pivots::removeOverhangSpan(pivot& self) const {
    self.p_has_overhang = false;
}

bool Pivots::hasOverHang(const pivot& self) const {
    return self.p_has_overhang;
}

Integer Pivots::FixedSpansCount(const pivot& self) const {
    return Arrays::shared()->Length(self.Tramos);
}

void Pivots::setEndGun(pivot& self, const Gun& aGun) const {
    self.endGun = aGun;
    self.p_has_end_gun = true;
}

Variant Pivots::removeEndGun(pivot& self) const {
    self.p_has_end_gun = false;
    return Variant();
}

bool Pivots::hasEndGun(const pivot& self) const {
    return self.p_has_end_gun;
}

Integer Pivots::allSpansCount(const pivot& self) const {
    const Integer fixed = FixedSpansCount(self);
    return hasOverHang(self) ? integer::add(fixed, 1) : fixed;
}

bool Pivots::isComplete(const pivot& self) const {
    const auto tramos = Tramos::shared();
    const bool operable = self.presion > 0 && self.caudal > 0 && self.rugosidad > 0;
    const bool spansComplete = tramos->AllComplete(self.Tramos);
    const bool overhangComplete = tramos->isComplete(self.tramoVOladizo);
    const bool gunComplete = Types::gunInstance()->isComplete(self.endGun);
    return operable && spansComplete && (!hasOverHang(self) || overhangComplete) &&
           (!hasEndGun(self) || gunComplete);
}

void Pivots::ResetIdealData(pivot& self) const {
    const Integer count = FixedSpansCount(self);
    for (Long i = 1; i <= count; ++i) {
        self.Tramos(i).perdaDeCargaIdeal = 0;
    }
    if (hasOverHang(self)) {
        self.tramoVOladizo.perdaDeCargaIdeal = 0;
    }
    if (hasEndGun(self)) {
        self.endGun.saida.caudal = 0;
        self.endGun.saida.pressao_ideal = 0;
    }
}

ParPressaoCaudal Pivots::newParPressaoCaudal(Double pressao, Double caudal) const {
    return ParPressaoCaudal{pressao, caudal};
}

saida Pivots::saidaAt(pivot& self, Long index) const {
    const BoundedArray<Integer> address = saida2TramoeSaida(self, integer::from(index));
    return self.Tramos(address(1)).Saidas(address(2));
}

}  // namespace caudalis
