#include "caudalis/fieldtests/EvaluationDesign.hpp"

#include <algorithm>
#include <map>

#include "caudalis/catalogue/Aspersor.hpp"
#include "caudalis/fieldtests/DesignedMachineProfile.hpp"

namespace caudalis::fieldtests {

std::optional<std::pair<std::string, double>> EvaluationDesign::catalogueDiameter(
    const design::DesignResult& result, const std::map<Long, double>& wettedDiameters) {
    std::map<Long, long> fitted;
    std::map<Long, std::string> names;
    for (const auto& row : result.outlets) {
        const auto& nozzle = row.outlet.obj_aspersor;
        if (row.place != design::OutletPlace::EndGun && nozzle &&
            wettedDiameters.count(nozzle->modelo().id)) {
            ++fitted[nozzle->modelo().id];
            names[nozzle->modelo().id] = nozzle->marca().nome + " " + nozzle->modelo().nome;
        }
    }
    if (fitted.empty()) {
        return std::nullopt;
    }
    const auto most = std::max_element(fitted.begin(), fitted.end(),
                                       [](const auto& a, const auto& b) { return a.second < b.second; });
    return std::make_pair(names[most->first], wettedDiameters.at(most->first));
}

DesignReference EvaluationDesign::reference(const std::string& designPath, const design::DesignResult& result,
                                            double timerPercent, std::optional<double> wettedDiameterM,
                                            const std::map<Long, double>& wettedDiameters) {
    DesignReference reference;
    reference.designPath = designPath;
    reference.machine = design::DesignedMachineProfile::of(result);
    reference.timerPercent = timerPercent;
    reference.expectedDepthMm = result.summary.depthMm.value_or(0) * 100 / timerPercent;
    reference.lastSpanEndM = reference.machine.spans.empty() ? 0 : reference.machine.spans.back().toM;
    const auto& check = result.design.pluviometryCheck;
    const auto catalogue = catalogueDiameter(result, wettedDiameters);
    if (wettedDiameterM) {
        reference.wettedDiameterM = *wettedDiameterM;
        reference.wettedDiameterFrom = "--wetted-diameter";
    } else if (check && check->first.wetDiameterM > 0) {
        reference.wettedDiameterM = check->first.wetDiameterM;
        reference.wettedDiameterFrom = "the design's pluviometry check";
    } else if (catalogue) {
        reference.wettedDiameterM = catalogue->second;
        reference.wettedDiameterFrom = "the catalogue's " + catalogue->first;
    } else {
        reference.wettedDiameterM = defaultWettedDiameterM;
        reference.wettedDiameterFrom = "default";
    }
    return reference;
}

}  // namespace caudalis::fieldtests
