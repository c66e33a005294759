#include "caudalis/machine/Tramos.hpp"

#include <cmath>

#include "caudalis/core/Arrays.hpp"
#include "caudalis/core/Checked.hpp"
#include "caudalis/core/Doubles.hpp"
#include "caudalis/core/LazyInstance.hpp"
#include "caudalis/machine/IntegerArithmetic.hpp"
#include "caudalis/machine/Types.hpp"

namespace caudalis {

std::shared_ptr<Tramos> Tramos::shared() {
    static LazyInstance<Tramos> instance;
    return instance.get();
}

tramo Tramos::newTramo(Long id, const String& denominacion, Double longitud, Double diametro,
                       Double separationSaidas_cm, const Variant& cota) const {
    tramo span;
    span.id = id;
    span.denominacion = denominacion;
    span.longitude = longitud;
    span.diametro = diametro;
    span.separationSaidas_cm = separationSaidas_cm;
    span.separacionSaidas = percentToFraction(separationSaidas_cm);
    span.cota = cota.toDouble();
    sizeSaidas(span);
    return span;
}

void Tramos::sizeSaidas(tramo& self) const {
    if (self.separacionSaidas > 0) {
        const Integer count = integer::from(std::floor(checked::div(self.longitude, self.separacionSaidas)));
        self.Saidas.redim(1, count);
        self.p_complete = true;
    }
}

bool Tramos::AllComplete(const BoundedArray<tramo>& Tramos) const {
    const Integer count = Arrays::shared()->Length(Tramos);
    bool result = true;
    for (Long i = 1; i <= count && result; ++i) {
        result = result && isComplete(Tramos(i));
    }
    return result;
}

bool Tramos::AllEqual(const BoundedArray<tramo>& tramos_set_1,
                      const BoundedArray<tramo>& tramos_set_2) const {
    const auto arrays = Arrays::shared();
    const Integer count = arrays->Length(tramos_set_1);
    if (count != arrays->Length(tramos_set_2)) {
        return false;
    }
    bool result = true;
    for (Long i = 1; i <= count && result; ++i) {
        result = tramos_set_1(i).id == tramos_set_2(i).id;
    }
    return result;
}

bool Tramos::isComplete(const tramo& self) const {
    return Types::placementsInstance()->isValid(self.site) && self.p_complete;
}

void Tramos::BuildPlacements(BoundedArray<tramo>& Tramos, Double start_cota,
                             const BoundedArray<Double>& cotas) const {
    const auto placements = Types::placementsInstance();
    const Integer count = Arrays::shared()->Length(Tramos);
    Double current = start_cota;
    for (Long i = 1; i <= count; ++i) {
        Tramos(i).site = placements->newPlacement(current, cotas(i), Tramos(i).longitude);
        current = cotas(i);
    }
}

Double Tramos::IdealConsumedDischarge(const tramo& self) const {
    return checked::sub(self.ideal_entry_conditions.caudal, self.ideal_exit_conditions.caudal);
}

Double Tramos::ConsumedDischarge(const tramo& self) const {
    return checked::sub(self.entry_conditions.caudal, self.exit_condition.caudal);
}

Double Tramos::DischargeVariation(const tramo& self) const {
    const Double ideal = IdealConsumedDischarge(self);
    return std::abs(checked::div(checked::sub(ideal, ConsumedDischarge(self)), ideal));
}

Double Tramos::OutletCount(tramo& self) const {
    if (self.p_outlet_count == 0 || std::isnan(self.p_outlet_count)) {
        self.p_outlet_count = Arrays::shared()->Length(self.Saidas);
    }
    return self.p_outlet_count;
}

}  // namespace caudalis
