#include "caudalis/evaluation/Pluviometros.hpp"

#include "caudalis/core/Checked.hpp"
#include "caudalis/core/Constants.hpp"
#include "caudalis/core/Doubles.hpp"
#include "caudalis/core/Errors.hpp"
#include "caudalis/core/Exceptions.hpp"
#include "caudalis/core/LazyInstance.hpp"

namespace caudalis {

std::shared_ptr<Pluviometros> Pluviometros::shared() {
    static LazyInstance<Pluviometros> instance;
    return instance.get();
}

Pluviometro Pluviometros::newPluviometro(Double diameter) const {
    return Pluviometro{diameter, Doubles::shared()->NaN()};
}

Double Pluviometros::Area(Pluviometro& self) const {
    if (!Valid(self)) {
        Exceptions::shared()->throw_(
            Variant(errorNumber(PluviometroException::PluviometroIncompleteException)));
    }
    if (Doubles::shared()->isNaN(self.p_area)) {
        const Double radius = checked::div(self.diameter, 2);
        self.p_area = checked::mul(checked::pow(radius, 2), pi);
    }
    return self.p_area;
}

bool Pluviometros::Valid(const Pluviometro& self) const {
    return self.diameter > 0;
}

}  // namespace caudalis
