#include "caudalis/machine/Types.hpp"

#include <cmath>

#include "caudalis/core/Checked.hpp"
#include "caudalis/core/Constants.hpp"
#include "caudalis/core/Doubles.hpp"
#include "caudalis/core/LazyInstance.hpp"
#include "caudalis/evaluation/WaterDepths.hpp"

namespace caudalis {

std::shared_ptr<Types> Types::application() {
    static LazyInstance<Types> instance;
    return instance.get();
}

std::shared_ptr<Types> Types::gunInstance() {
    static LazyInstance<Types> instance;
    return instance.get();
}

std::shared_ptr<Types> Types::placementsInstance() {
    static LazyInstance<Types> instance;
    return instance.get();
}

std::shared_ptr<Types> Types::saidasInstance() {
    static LazyInstance<Types> instance;
    return instance.get();
}

Gun Types::newGun(Double rs) const {
    Gun gun;
    gun.rs = rs;
    return gun;
}

bool Types::isComplete(const Gun& self) const {
    return self.rs > 0;
}

Placement Types::newPlacement(Double start_cota, Double end_cota, Double Length) const {
    return Placement{start_cota, end_cota, Length, 0, 0};
}

Placement Types::newVirtualPlacement(Double start_cota, Double angle, Double Length) const {
    const auto doubles = Doubles::shared();
    Double end = doubles->NaN();
    if (!doubles->isNaN(angle)) {
        end = checked::add(checked::mul(checked::result(std::sin(angle), angle), Length), start_cota);
    }
    return newPlacement(start_cota, end, Length);
}

bool Types::isValid(const Placement& self) const {
    const Double rise = checked::sub(self.end_cota, self.start_cota);
    if (std::isnan(rise)) {
        return false;
    }
    return !(std::abs(rise) >= self.Length);
}

Double Types::SlopeAngle(Placement& self) const {
    if (std::isnan(self.p_angle) || !isValid(self)) {
        self.p_angle = Doubles::shared()->NaN();
    } else if (self.p_angle == 0) {
        self.p_angle = arcSin(checked::div(checked::sub(self.end_cota, self.start_cota), self.Length));
    }
    return self.p_angle;
}

Double Types::Slope(Placement& self) const {
    const Double angle = SlopeAngle(self);
    if (std::isnan(angle) || std::isnan(self.p_slope)) {
        self.p_slope = Doubles::shared()->NaN();
    } else if (self.p_slope == 0) {
        const Double recomputed = SlopeAngle(self);
        self.p_slope = checked::result(std::tan(recomputed), recomputed);
    }
    return self.p_slope;
}

WaterDepthSample Types::ActualWaterDepthSample(const saida& self, Double coroaLength,
                                               Double revolutionTime) const {
    return waterDepthSample(self, self.caudal_do_aspersor, coroaLength, revolutionTime);
}

WaterDepthSample Types::IdealWaterDepthSample(const saida& self, Double coroaLength,
                                              Double revolutionTime) const {
    return waterDepthSample(self, self.caudal, coroaLength, revolutionTime);
}

WaterDepthSample Types::waterDepthSample(const saida& self, Double q, Double coroaLength,
                                         Double revolutionTime) const {
    const Double depth = waterDepthFromFlow(self, q, coroaLength, revolutionTime);
    return WaterDepths::shared()->newWaterDepthSample(depth, self.distanciaAoPivot);
}

// Flow per second becomes flow per hour, spread over the ring of width coroaLength at the
// outlet's radius, once per revolution.
Double Types::waterDepthFromFlow(const saida& self, Double q, Double coroaLength, Double revolutionTime) {
    const Double perHour = checked::mul(q, secondsPerHour);
    const Double ring = checked::mul(checked::mul(coroaLength, twoPi), self.distanciaAoPivot);
    return checked::div(perHour, checked::div(ring, revolutionTime));
}

}  // namespace caudalis
