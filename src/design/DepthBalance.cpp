#include "caudalis/design/DepthBalance.hpp"

#include <algorithm>
#include <numbers>
#include <stdexcept>

#include <fmt/printf.h>

#include "caudalis/design/SpeedTable.hpp"

namespace caudalis::design {

namespace {

double ringArea(const OutletRing& ring) {
    return 2 * std::numbers::pi * ring.distanceM * ring.ringWidthM;
}

void requireUsable(const std::vector<OutletRing>& rings, double revolutionTimeH) {
    if (rings.empty()) {
        throw std::invalid_argument("no outlets to weigh the depth per revolution with");
    }
    if (revolutionTimeH <= 0) {
        throw std::invalid_argument("the revolution time must be greater than 0 h");
    }
    for (const auto& ring : rings) {
        if (ring.distanceM <= 0 || ring.ringWidthM <= 0) {
            throw std::invalid_argument("every outlet needs a distance and a ring width greater than 0 m");
        }
    }
}

}  // namespace

DepthFigures DepthBalance::compute(const std::vector<OutletRing>& rings, double dischargeLps,
                                   double revolutionTimeH, double irrigatedAreaM2) {
    requireUsable(rings, revolutionTimeH);
    DepthFigures figures;
    figures.irrigatedAreaM2 = irrigatedAreaM2;
    figures.volumeOverAreaMm =
        SpeedTable::depthPerRevolutionMm(dischargeLps, revolutionTimeH, irrigatedAreaM2);
    double weights = 0;
    double weightedDepths = 0;
    double volume = 0;
    for (const auto& ring : rings) {
        const double litres = ring.flowLps * 3600 * revolutionTimeH;
        weights += ring.distanceM;
        weightedDepths += ring.distanceM * litres / ringArea(ring);
        volume += litres;
        figures.ringsAreaM2 += ringArea(ring);
    }
    figures.distanceWeightedMeanMm = weightedDepths / weights;
    figures.ringAreaMeanMm = volume / figures.ringsAreaM2;
    const auto widest = *std::max_element(
        rings.begin(), rings.end(),
        [](const OutletRing& a, const OutletRing& b) { return a.ringWidthM < b.ringWidthM; });
    figures.widestRingWeightShare = widest.distanceM / weights;
    figures.widestRingAreaShare = ringArea(widest) / figures.ringsAreaM2;
    return figures;
}

std::string DepthBalance::explanation(const DepthFigures& f, const UnitText& text) {
    std::string paragraph = "Depth per revolution: ";
    paragraph += text.depth(f.volumeOverAreaMm);
    paragraph +=
        " as volume over area (discharge x revolution time / irrigated area). The mean of the "
        "outlets' depths weighted by distance, as the uniformity figures weigh them, is ";
    paragraph += text.depth(f.distanceWeightedMeanMm);
    paragraph += fmt::sprintf(
        ": it counts every outlet as if its ring were one outlet spacing wide, so the widest ring "
        "(the end gun's) has %.1f %% of the weight but %.1f %% of the watered ground. ",
        100 * f.widestRingWeightShare, 100 * f.widestRingAreaShare);
    paragraph += "Weighted by ring area the outlets give ";
    paragraph += text.depth(f.ringAreaMeanMm);
    paragraph += "; their rings cover ";
    paragraph += text.area(f.ringsAreaM2);
    paragraph += " of the ";
    paragraph += text.area(f.irrigatedAreaM2);
    paragraph += " circle, the rest being the gaps and overlaps near the centre and between spans.";
    return paragraph;
}

}  // namespace caudalis::design
