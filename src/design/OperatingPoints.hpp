#pragma once

#include <optional>
#include <vector>

#include "PackageChooser.hpp"
#include "caudalis/core/Records.hpp"
#include "caudalis/design/DesignDescription.hpp"

namespace caudalis::design {

/// Where the outlets of a machine are expected to work, read from its ideal march: the
/// required flow at the ideal pressure, or at the regulator's rating on a regulated span; the
/// end gun at its ideal pressure plus the booster.
class OperatingPoints {
public:
    OperatingPoints(pivot& machine, double boosterKpa);

    const std::vector<OperatingPoint>& spanOutlets() const noexcept { return spanOutlets_; }
    const std::optional<OperatingPoint>& endGun() const noexcept { return endGun_; }

    /// The regulators the design puts on its own: the rating on every span (fixed or overhang)
    /// with an outlet whose ideal pressure differs from the mean over all span outlets by more
    /// than the spread limit.
    static std::vector<RegulatorDescription> automaticRegulators(pivot& machine,
                                                                 const RegulationDescription& regulation);

private:
    void addSpan(const tramo& span);

    std::vector<OperatingPoint> spanOutlets_;
    std::optional<OperatingPoint> endGun_;
};

}  // namespace caudalis::design
