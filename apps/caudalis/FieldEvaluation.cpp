#include "FieldEvaluation.hpp"

#include <cmath>

#include "CliErrors.hpp"
#include "caudalis/core/Checked.hpp"
#include "caudalis/design/Uniformity.hpp"
#include "caudalis/evaluation/FieldSamples.hpp"
#include "caudalis/evaluation/PivotEvaluations.hpp"
#include "caudalis/evaluation/Pluviometros.hpp"

namespace caudalis::cli {

namespace {

BoundedArray<FieldSample> samplesOf(const std::vector<Reading>& readings) {
    BoundedArray<FieldSample> samples;
    if (!readings.empty()) {
        samples.redim(1, static_cast<Long>(readings.size()));
        for (Long i = 1; i <= samples.count(); ++i) {
            samples(i) = readings[static_cast<std::size_t>(i - 1)].sample;
        }
    }
    return samples;
}

/// The depths of a pass's valid readings, and those readings, in the same order.
struct PassDepths {
    std::vector<Reading> readings;
    BoundedArray<WaterDepthSample> depths;
};

PassDepths depthsOf(const std::vector<Reading>& readings, Pluviometro& gauge,
                    std::vector<Reading>& rejected) {
    const auto fieldSamples = FieldSamples::shared();
    PassDepths pass;
    for (const auto& reading : readings) {
        (fieldSamples->Valid(reading.sample) ? pass.readings : rejected).push_back(reading);
    }
    pass.depths = fieldSamples->CollectionToWaterDepth(fieldSamples->FilterValid(samplesOf(readings)), gauge);
    return pass;
}

BoundedArray<WaterDepthSample> joined(const BoundedArray<WaterDepthSample>& first,
                                      const BoundedArray<WaterDepthSample>& second) {
    BoundedArray<WaterDepthSample> all;
    if (first.count() + second.count() == 0) {
        return all;
    }
    all.redim(1, first.count() + second.count());
    Long i = 1;
    for (const auto* pass : {&first, &second}) {
        for (const auto& sample : *pass) {
            all(i++) = sample;
        }
    }
    return all;
}

void flagOutliers(const PassDepths& pass, int number, double mean, std::vector<FlaggedReading>& flagged) {
    for (Long i = 1; i <= pass.depths.count(); ++i) {
        const double depth = pass.depths(i).depth;
        const double deviation = checked::mul(checked::div(depth - mean, mean), 100.0);
        if (std::fabs(deviation) > FieldEvaluation::flagLimitPercent) {
            flagged.push_back(
                FlaggedReading{number, pass.readings[static_cast<std::size_t>(i - 1)], depth, deviation});
        }
    }
}

}  // namespace

EvaluationFigures FieldEvaluation::evaluate(const ReadingPasses& passes, double gaugeDiameterM,
                                            const std::string& name) {
    EvaluationFigures figures;
    figures.name = name;
    figures.gaugeDiameterM = gaugeDiameterM;
    figures.readings = static_cast<long>(passes.first.size() + passes.second.size());
    auto gauge = Pluviometros::shared()->newPluviometro(gaugeDiameterM);
    const auto first = depthsOf(passes.first, gauge, figures.rejected);
    const auto second = depthsOf(passes.second, gauge, figures.rejected);
    const auto all = joined(first.depths, second.depths);
    const auto mean = design::Uniformity::meanDepth(all);
    if (!mean) {
        throw InputError("no valid readings (an amount >= 0 at a distance > 0) to evaluate");
    }
    figures.gaugeAreaM2 = Pluviometros::shared()->Area(gauge);
    figures.firstPassMeanMm = design::Uniformity::meanDepth(first.depths);
    figures.secondPassMeanMm = design::Uniformity::meanDepth(second.depths);
    figures.meanDepthMm = *mean;
    figures.lowQuarterMeanMm = design::Uniformity::lowQuarterMean(all);
    figures.uniformityCoefficient = design::Uniformity::heermannHein(all);
    figures.lowQuarterUniformity = design::Uniformity::lowQuarter(all);
    if (*mean > 0) {
        flagOutliers(first, 1, *mean, figures.flagged);
        flagOutliers(second, 2, *mean, figures.flagged);
    }
    return figures;
}

PivotEvaluation FieldEvaluation::record(const ReadingPasses& passes, double gaugeDiameterM,
                                        const std::string& name) {
    auto evaluation = PivotEvaluations::shared()->newEvaluation(name);
    evaluation.pluviometer = Pluviometros::shared()->newPluviometro(gaugeDiameterM);
    evaluation.firstSample = samplesOf(passes.first);
    evaluation.secondSample = samplesOf(passes.second);
    return evaluation;
}

}  // namespace caudalis::cli
