#pragma once

#include <cmath>

#include "caudalis/core/Checked.hpp"

namespace caudalis {

/// The Hazen-Williams unit loss of one pipe diameter, for march loops that evaluate it at every
/// outlet: the diameter's power and the constant factor are worked out once, and each loss is
/// then computed in the formula's own order with the same roundings, so every value is the one
/// `hazenWilliamsLoss` gives. A diameter whose power fails (zero, negative or too small) raises
/// at the point of the formula where that power is used, after any fault of the flow's terms.
class PipeFriction {
public:
    explicit PipeFriction(double diameter)
        : diameterPower_(std::pow(diameter, -4.87)), diameterFault_(powerFault(diameter)) {}

    /// Friction loss per unit length for flow `q` and roughness coefficient `c`.
    double unitLoss(double q, double c) const {
        const double ratio = checked::div(q, c);
        const double powered = checked::pow(ratio, 1.852);
        const double factor = checked::mul(scale, powered);
        return checked::mul(diameterPower(), factor);
    }

    bool operator==(const PipeFriction&) const = default;

    /// 10^10 x 1.21, as the formula computes it (10^10 is exact as a power).
    static constexpr double scale = 1e10 * 1.21;

private:
    enum class Fault { None, InvalidCall, Overflow };

    static Fault powerFault(double diameter) {
        if (checked::isInvalidPower(diameter, -4.87)) {
            return Fault::InvalidCall;
        }
        const bool overflows = !std::isfinite(std::pow(diameter, -4.87)) && std::isfinite(diameter);
        return overflows ? Fault::Overflow : Fault::None;
    }

    double diameterPower() const {
        if (diameterFault_ != Fault::None) [[unlikely]] {
            raiseFault();
        }
        return diameterPower_;
    }

    [[noreturn]] void raiseFault() const {
        if (diameterFault_ == Fault::InvalidCall) {
            checked::raiseInvalidCall();
        }
        checked::raiseOverflow();
    }

    double diameterPower_;
    Fault diameterFault_;
};

}  // namespace caudalis
