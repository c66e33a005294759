#pragma once

#include <optional>
#include <string>

#include "caudalis/design/DesignResult.hpp"
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
    /// Where the wetted diameter came from ("--wetted-diameter", "the design's pluviometry
    /// check", "default").
    std::string wettedDiameterFrom;
};

/// What a field evaluation takes from the design it is compared with.
class EvaluationDesign {
public:
    /// A spray's typical wetted diameter, used when neither the option nor the design gives one.
    static constexpr double defaultWettedDiameterM = 12;

    /// `timerPercent` is the drive's timer setting during the test (the designed depth is for
    /// 100 %); `wettedDiameterM` overrides the design's.
    static DesignReference reference(const std::string& designPath, const design::DesignResult& result,
                                     double timerPercent, std::optional<double> wettedDiameterM);
};

}  // namespace caudalis::cli
