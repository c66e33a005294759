#pragma once

#include "../machine/PipeFriction.hpp"
#include "caudalis/core/Checked.hpp"
#include "caudalis/core/Records.hpp"

namespace caudalis {

/// The pressure lost in a drop hose, J x hose length with the hose's Hazen-Williams unit loss J
/// (no factor 10, unlike the pipe); nothing for the null drop, whatever the flow. The hose's
/// numbers are taken once, when the object is made.
class DropLoss {
public:
    explicit DropLoss(const Drop& drop)
        : isNull_(drop.p_is_null),
          friction_(isNull_ ? 1.0 : drop.diametro),
          roughness_(static_cast<double>(drop.pipe_material.rugosidade)),
          length_(drop.longitud) {}

    double at(double discharge) const {
        if (isNull_) {
            return 0.0;
        }
        return checked::mul(friction_.unitLoss(discharge, roughness_), length_);
    }

    /// True when both give the same loss for every flow: the same numbers (none NaN).
    bool operator==(const DropLoss&) const = default;

private:
    bool isNull_;
    PipeFriction friction_;
    double roughness_;
    double length_;
};

}  // namespace caudalis
