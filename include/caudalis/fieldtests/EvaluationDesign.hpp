#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>

#include "caudalis/design/DesignResult.hpp"
#include "caudalis/fieldtests/MeasuredDesignedComparison.hpp"

namespace caudalis::fieldtests {

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
    /// check", "the catalogue's BRAND MODEL", "default").
    std::string wettedDiameterFrom;
};

/// What a field evaluation takes from the design it is compared with.
class EvaluationDesign {
public:
    /// A spray's typical wetted diameter, used when neither the option, the design nor the
    /// catalogue gives one.
    static constexpr double defaultWettedDiameterM = 12;

    /// `timerPercent` is the drive's timer setting during the test (the designed depth is for
    /// 100 %); `wettedDiameterM` overrides the design's; `wettedDiameters` are the catalogue's
    /// by model id.
    static DesignReference reference(const std::string& designPath, const design::DesignResult& result,
                                     double timerPercent, std::optional<double> wettedDiameterM,
                                     const std::map<Long, double>& wettedDiameters);
    /// The model fitted on most span outlets among those whose wetted diameter the catalogue
    /// gives, with that diameter.
    static std::optional<std::pair<std::string, double>> catalogueDiameter(
        const design::DesignResult& result, const std::map<Long, double>& wettedDiameters);
};

}  // namespace caudalis::fieldtests
