#include "EvaluationDesign.hpp"

#include "caudalis/design/DesignedMachineProfile.hpp"

namespace caudalis::cli {

DesignReference EvaluationDesign::reference(const std::string& designPath, const design::DesignResult& result,
                                            double timerPercent, std::optional<double> wettedDiameterM) {
    DesignReference reference;
    reference.designPath = designPath;
    reference.machine = design::DesignedMachineProfile::of(result);
    reference.timerPercent = timerPercent;
    reference.expectedDepthMm = result.summary.depthMm.value_or(0) * 100 / timerPercent;
    reference.lastSpanEndM = reference.machine.spans.empty() ? 0 : reference.machine.spans.back().toM;
    const auto& check = result.design.pluviometryCheck;
    if (wettedDiameterM) {
        reference.wettedDiameterM = *wettedDiameterM;
        reference.wettedDiameterFrom = "--wetted-diameter";
    } else if (check && check->first.wetDiameterM > 0) {
        reference.wettedDiameterM = check->first.wetDiameterM;
        reference.wettedDiameterFrom = "the design's pluviometry check";
    } else {
        reference.wettedDiameterM = defaultWettedDiameterM;
        reference.wettedDiameterFrom = "default";
    }
    return reference;
}

}  // namespace caudalis::cli
