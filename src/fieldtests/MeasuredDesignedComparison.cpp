#include "caudalis/fieldtests/MeasuredDesignedComparison.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

namespace caudalis::design {

namespace {

std::vector<FieldReading> joined(const std::vector<std::vector<FieldReading>>& lines) {
    std::vector<FieldReading> all;
    for (const auto& line : lines) {
        all.insert(all.end(), line.begin(), line.end());
    }
    return all;
}

double weightedMean(const std::vector<FieldReading>& readings, bool designed,
                    const std::vector<double>& designedMm) {
    double weighted = 0;
    double weights = 0;
    for (std::size_t i = 0; i < readings.size(); ++i) {
        const double r = readings[i].depth.distanceFromCenter;
        weighted += r * (designed ? designedMm[i] : readings[i].depth.depth);
        weights += r;
    }
    return weights > 0 ? weighted / weights : 0;
}

template <typename Item, typename Size>
void largestFirst(std::vector<Item>& items, Size size) {
    std::stable_sort(items.begin(), items.end(),
                     [&](const Item& a, const Item& b) { return std::fabs(size(a)) > std::fabs(size(b)); });
}

}  // namespace

double MeasuredDesignedComparison::medianSpacing(const std::vector<std::vector<FieldReading>>& lines) {
    std::vector<double> gaps;
    for (const auto& line : lines) {
        for (std::size_t i = 1; i < line.size(); ++i) {
            gaps.push_back(
                std::fabs(line[i].depth.distanceFromCenter - line[i - 1].depth.distanceFromCenter));
        }
    }
    if (gaps.empty()) {
        return 0;
    }
    std::nth_element(gaps.begin(), gaps.begin() + static_cast<std::ptrdiff_t>(gaps.size() / 2), gaps.end());
    return gaps[gaps.size() / 2];
}

double MeasuredDesignedComparison::contribution(const DesignedOutlet& outlet, double radiusM,
                                                double wettedRadiusM) {
    if (radiusM <= 0) {
        return 0;
    }
    if (outlet.endGun) {
        const bool under = radiusM >= outlet.radiusM && radiusM <= outlet.radiusM + outlet.ringWidthM;
        return under ? outlet.depthMm : 0;
    }
    const double x = std::fabs(radiusM - outlet.radiusM);
    if (x >= wettedRadiusM) {
        return 0;
    }
    const double pattern = (1 - x / wettedRadiusM) / wettedRadiusM;
    return outlet.depthMm * outlet.ringWidthM * outlet.radiusM * pattern / radiusM;
}

double MeasuredDesignedComparison::designedDepthAt(const DesignedMachine& machine, double radiusM,
                                                   double wettedRadiusM) {
    double depth = 0;
    for (const auto& outlet : machine.outlets) {
        depth += contribution(outlet, radiusM, wettedRadiusM);
    }
    return depth;
}

std::vector<MeasuredDesignedComparison::OutletFit> MeasuredDesignedComparison::coveredOutlets(
    const DesignComparison& comparison, const DesignedMachine& machine, double wettedRadiusM) {
    std::vector<OutletFit> fits;
    double bestCovered = 0;
    for (const auto& outlet : machine.outlets) {
        OutletFit fit{&outlet, {}, 0, 0};
        for (std::size_t c = 0; c < comparison.collectors.size(); ++c) {
            const auto& collector = comparison.collectors[c];
            const double r = collector.reading.depth.distanceFromCenter;
            const double g = collector.designedMm <= 0 ? 0
                                                       : contribution(outlet, r, wettedRadiusM) *
                                                             comparison.levelFactor / collector.designedMm;
            if (g != 0) {
                fit.shares.emplace_back(c, g);
                fit.energy += g * g;
            }
        }
        bestCovered = std::max(bestCovered, fit.energy);
        fits.push_back(std::move(fit));
    }
    fits.erase(std::remove_if(fits.begin(), fits.end(),
                              [&](const OutletFit& fit) {
                                  return !(fit.energy > 0 && fit.energy >= minimumCoverage * bestCovered);
                              }),
               fits.end());
    return fits;
}

namespace {

double correlationOf(const std::vector<double>& residuals,
                     const std::vector<std::pair<std::size_t, double>>& shares) {
    double correlation = 0;
    for (const auto& [collector, share] : shares) {
        correlation += residuals[collector] * share;
    }
    return correlation;
}

}  // namespace

void MeasuredDesignedComparison::fitInTurn(std::vector<OutletFit>& fits, std::vector<double> residuals) {
    std::vector<OutletFit*> open;
    for (auto& fit : fits) {
        open.push_back(&fit);
    }
    while (!open.empty()) {
        auto best = open.end();
        double bestGain = -1;
        double bestEstimate = 0;
        for (auto it = open.begin(); it != open.end(); ++it) {
            const double correlation = correlationOf(residuals, (*it)->shares);
            const double estimate = std::max(-1.0, correlation / (*it)->energy);
            const double gain = 2 * estimate * correlation - estimate * estimate * (*it)->energy;
            if (gain > bestGain) {
                bestGain = gain;
                best = it;
                bestEstimate = estimate;
            }
        }
        (*best)->estimate = bestEstimate;
        for (const auto& [collector, share] : (*best)->shares) {
            residuals[collector] -= bestEstimate * share;
        }
        open.erase(best);
    }
}

std::vector<OutletDifference> MeasuredDesignedComparison::outletDifferences(
    const DesignComparison& comparison, const DesignedMachine& machine, double wettedRadiusM) {
    auto fits = coveredOutlets(comparison, machine, wettedRadiusM);
    std::vector<double> residuals;
    for (const auto& collector : comparison.collectors) {
        residuals.push_back(collector.designedMm <= 0 ? 0 : collector.differencePercent / 100);
    }
    fitInTurn(fits, residuals);
    std::vector<OutletDifference> outlets;
    for (const auto& fit : fits) {
        outlets.push_back({*fit.outlet, 100 * fit.estimate});
    }
    largestFirst(outlets, [](const OutletDifference& o) { return o.estimatedPercent; });
    return outlets;
}

std::vector<SpanDifference> MeasuredDesignedComparison::spanDifferences(const DesignComparison& comparison,
                                                                        const DesignedMachine& machine) {
    std::vector<SpanDifference> spans;
    for (const auto& span : machine.spans) {
        SpanDifference difference{span, 0, 0};
        for (const auto& collector : comparison.collectors) {
            const double r = collector.reading.depth.distanceFromCenter;
            if (r >= span.fromM && r < span.toM) {
                ++difference.collectors;
                difference.meanDifferencePercent += collector.differencePercent;
            }
        }
        if (difference.collectors > 0) {
            difference.meanDifferencePercent /= static_cast<double>(difference.collectors);
            spans.push_back(difference);
        }
    }
    largestFirst(spans, [](const SpanDifference& s) { return s.meanDifferencePercent; });
    return spans;
}

DesignComparison MeasuredDesignedComparison::compare(const std::vector<std::vector<FieldReading>>& lines,
                                                     const DesignedMachine& machine, double wettedDiameterM) {
    const double wettedRadius = wettedDiameterM / 2;
    const auto readings = joined(lines);
    std::vector<double> designed;
    for (const auto& reading : readings) {
        designed.push_back(designedDepthAt(machine, reading.depth.distanceFromCenter, wettedRadius));
    }
    DesignComparison comparison;
    comparison.wettedDiameterM = wettedDiameterM;
    const double designedMean = weightedMean(readings, true, designed);
    if (designedMean > 0) {
        comparison.levelFactor = weightedMean(readings, false, designed) / designedMean;
    }
    for (std::size_t i = 0; i < readings.size(); ++i) {
        const double expected = designed[i] * comparison.levelFactor;
        const double difference = expected > 0 ? 100 * (readings[i].depth.depth - expected) / expected : 0;
        comparison.collectors.push_back({readings[i], expected, difference});
    }
    comparison.collectorSpacingM = medianSpacing(lines);
    comparison.outletsResolved =
        comparison.collectorSpacingM > 0 && comparison.collectorSpacingM <= wettedRadius;
    if (comparison.outletsResolved) {
        comparison.outlets = outletDifferences(comparison, machine, wettedRadius);
    }
    comparison.spans = spanDifferences(comparison, machine);
    return comparison;
}

}  // namespace caudalis::design
