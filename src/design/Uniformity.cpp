#include "caudalis/design/Uniformity.hpp"

#include "caudalis/core/Checked.hpp"
#include "caudalis/core/Errors.hpp"
#include "caudalis/evaluation/WaterDepths.hpp"

namespace caudalis::design {

namespace {

bool hasWeight(const BoundedArray<WaterDepthSample>& samples) {
    double weight = 0;
    for (const auto& sample : samples) {
        weight += sample.distanceFromCenter;
    }
    return weight > 0;
}

}  // namespace

std::optional<double> Uniformity::meanDepth(const BoundedArray<WaterDepthSample>& samples) {
    if (!hasWeight(samples)) {
        return std::nullopt;
    }
    return WaterDepths::shared()->Average(samples);
}

std::optional<double> Uniformity::heermannHein(const BoundedArray<WaterDepthSample>& samples) {
    const auto formula = heermannHeinFormula(samples);
    if (formula && *formula < 0) {
        return std::nullopt;
    }
    return formula;
}

std::optional<double> Uniformity::heermannHeinFormula(const BoundedArray<WaterDepthSample>& samples) {
    const auto mean = meanDepth(samples);
    if (!mean) {
        return std::nullopt;
    }
    const auto depths = WaterDepths::shared();
    double deviations = 0;
    double weighted = 0;
    for (const auto& sample : samples) {
        deviations = checked::add(deviations, depths->PonderatedDeviation(sample, *mean));
        weighted = checked::add(weighted, depths->PonderatedDepths(sample));
    }
    if (weighted == 0) {
        return std::nullopt;
    }
    return 100 * (1 - checked::div(deviations, weighted));
}

std::optional<double> Uniformity::lowQuarter(const BoundedArray<WaterDepthSample>& samples) {
    const auto mean = meanDepth(samples);
    if (!mean || *mean == 0) {
        return std::nullopt;
    }
    const auto quarterMean = lowQuarterMean(samples);
    if (!quarterMean) {
        return std::nullopt;
    }
    return 100 * checked::div(*quarterMean, *mean);
}

std::optional<double> Uniformity::lowQuarterMean(const BoundedArray<WaterDepthSample>& samples) {
    if (!hasWeight(samples)) {
        return std::nullopt;
    }
    const auto depths = WaterDepths::shared();
    try {
        return depths->Average(depths->LowQuarter(samples));
    } catch (const Error& error) {
        if (error.number() != errorNumber(WaterDepthSampleException::NotEnoughSamplesToComputeLowQuarter)) {
            throw;
        }
        return std::nullopt;
    }
}

}  // namespace caudalis::design
