#include "caudalis/design/StarvedRegulators.hpp"

#include <algorithm>

#include "caudalis/catalogue/Aspersor.hpp"
#include "caudalis/design/Uniformity.hpp"

namespace caudalis::design {

double StarvedRegulators::actingPressure(double ratingKpa, double pipeKpa) {
    return std::max(0.0, std::min(ratingKpa, pipeKpa));
}

bool StarvedRegulators::reassessOutlet(OutletResult& row, double& flowChangeLps) {
    auto& outlet = row.outlet;
    if (!row.regulatorKpa || row.place == OutletPlace::EndGun || outlet.pressao_real >= *row.regulatorKpa) {
        return false;
    }
    const double pressure = actingPressure(*row.regulatorKpa, outlet.pressao_real);
    const double flow = outlet.obj_aspersor && pressure > 0 ? outlet.obj_aspersor->calculate(pressure) : 0;
    const double before = outlet.caudal_do_aspersor;
    row.depthMm = before > 0 ? row.depthMm * flow / before : 0;
    outlet.pressao_actuante = pressure;
    outlet.caudal_do_aspersor = flow;
    if (outlet.caudal != 0) {
        row.deviationPercent = (flow - outlet.caudal) / outlet.caudal * 100;
    }
    flowChangeLps += flow - before;
    return true;
}

void StarvedRegulators::reassessSummary(DesignResult& result, double flowChangeLps) {
    std::vector<WaterDepthSample> samples;
    for (const auto& row : result.outlets) {
        samples.push_back(WaterDepthSample{row.depthMm, row.outlet.distanciaAoPivot, false});
    }
    const auto depths = Uniformity::samples(samples);
    auto& summary = result.summary;
    summary.computedFlowLps += flowChangeLps;
    summary.depthMm = Uniformity::meanDepth(depths);
    summary.uniformityCoefficient = Uniformity::heermannHein(depths);
    summary.uniformityBelowZero = Uniformity::heermannHeinFormula(depths).value_or(0) < 0;
    summary.lowQuarterUniformity = Uniformity::lowQuarter(depths);
}

std::vector<std::string> StarvedRegulators::reassess(DesignResult& result) {
    double flowChangeLps = 0;
    long reworked = 0;
    for (auto& row : result.outlets) {
        reworked += reassessOutlet(row, flowChangeLps) ? 1 : 0;
    }
    if (reworked == 0) {
        return {};
    }
    reassessSummary(result, flowChangeLps);
    return {"acting pressure, flow and depth of " + std::to_string(reworked) +
                (reworked == 1 ? " outlet" : " outlets"),
            "delivered flow", "depth per revolution", "CU", "DU"};
}

}  // namespace caudalis::design
