#include "EvaluationDesign.hpp"

#include "DesignFile.hpp"
#include "DesignRunner.hpp"

namespace caudalis::cli {

design::DesignedMachine EvaluationDesign::machineOf(const DesignResult& result) {
    design::DesignedMachine machine;
    double from = 0;
    for (const auto& span : result.spans) {
        machine.spans.push_back({span.number, from, from + span.span.longitude});
        from += span.span.longitude;
    }
    const double gunRing = result.design.endGun ? result.design.endGun->ringWidthM : 0;
    for (const auto& outlet : result.outlets) {
        const bool gun = outlet.place == OutletPlace::EndGun;
        const double ring =
            gun ? gunRing : result.spans[static_cast<std::size_t>(outlet.span - 1)].span.separacionSaidas;
        machine.outlets.push_back(
            {outlet.span, outlet.number, gun, outlet.outlet.distanciaAoPivot, outlet.depthMm, ring});
    }
    return machine;
}

DesignReference EvaluationDesign::load(const std::string& designPath, NozzleSource& nozzles, long maxPasses,
                                       double timerPercent, std::optional<double> wettedDiameterM) {
    const auto design = DesignFile::load(designPath);
    const auto result = DesignRunner(maxPasses).run(design, nozzles);
    DesignReference reference;
    reference.designPath = designPath;
    reference.machine = machineOf(result);
    reference.timerPercent = timerPercent;
    reference.expectedDepthMm = result.summary.depthMm.value_or(0) * 100 / timerPercent;
    reference.lastSpanEndM = reference.machine.spans.empty() ? 0 : reference.machine.spans.back().toM;
    const auto& check = design.pluviometryCheck;
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
