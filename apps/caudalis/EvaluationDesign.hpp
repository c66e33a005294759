#pragma once

#include <optional>
#include <string>

#include "DesignResult.hpp"
#include "NozzleSource.hpp"
#include "caudalis/design/MeasuredDesignedComparison.hpp"

namespace caudalis::cli {

/// The machine a field test is laid over: a design file computed as `caudalis design` computes
/// it, with what the evaluation takes from it.
struct DesignReference {
    std::string designPath;
    design::DesignedMachine machine;
    double timerPercent = 100;
    /// The designed mean depth per revolution at the timer setting, mm.
    double expectedDepthMm = 0;
    /// Where the last span (the overhang included) ends, m.
    double lastSpanEndM = 0;
    double wettedDiameterM = 0;
    /// Where the wetted diameter came from ("--wetted-diameter", "the design's pluviometry check",
    /// "default").
    std::string wettedDiameterFrom;
};

/// Computes the design a field test is compared with.
class EvaluationDesign {
public:
    /// A spray's typical wetted diameter, used when neither the option nor the design gives one.
    static constexpr double defaultWettedDiameterM = 12;

    /// `timerPercent` is the drive's timer setting during the test (the designed depth is for
    /// 100 %); `wettedDiameterM` overrides the design's.
    static DesignReference load(const std::string& designPath, NozzleSource& nozzles, long maxPasses,
                                double timerPercent, std::optional<double> wettedDiameterM);
    /// The outlets and spans of a computed design, as the comparison sees them.
    static design::DesignedMachine machineOf(const DesignResult& result);
};

}  // namespace caudalis::cli
