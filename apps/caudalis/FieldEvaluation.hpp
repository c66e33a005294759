#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ReadingsFile.hpp"
#include "caudalis/core/Records.hpp"

namespace caudalis::cli {

/// A reading whose depth lies more than `FieldEvaluation::flagLimitPercent` off the mean.
struct FlaggedReading {
    int pass = 0;
    Reading reading;
    double depthMm = 0;
    double deviationPercent = 0;
};

/// The figures of a field evaluation. Depths in mm (amounts in ml, gauge diameter in m).
struct EvaluationFigures {
    std::string name;
    double gaugeDiameterM = 0;
    double gaugeAreaM2 = 0;
    long readings = 0;
    /// Readings with a negative amount or a distance <= 0, left out of every figure.
    std::vector<Reading> rejected;
    /// Weighted mean depth of each pass's valid readings (empty for a pass without any).
    std::optional<double> firstPassMeanMm;
    std::optional<double> secondPassMeanMm;
    double meanDepthMm = 0;
    std::optional<double> lowQuarterMeanMm;
    std::optional<double> uniformityCoefficient;
    std::optional<double> lowQuarterUniformity;
    std::vector<FlaggedReading> flagged;
};

/// Evaluates catch-can readings: keeps the valid ones (`FieldSamples::FilterValid`), turns
/// them into depths through the gauge's opening (`FieldSamples::CollectionToWaterDepth`) and
/// computes, over both passes with every reading weighted by its distance from the centre,
/// the mean depth, the low-quarter mean, the Heermann-Hein coefficient and the low-quarter
/// distribution uniformity.
class FieldEvaluation {
public:
    static constexpr double flagLimitPercent = 20;
    /// The most readings (both passes together) that the library's 16-bit counts can hold.
    static constexpr long maxReadings = 32767;

    /// Raises `InputError` when no reading is valid.
    static EvaluationFigures evaluate(const ReadingPasses& passes, double gaugeDiameterM,
                                      const std::string& name);

    /// The evaluation record that `PivotEvaluations::save` stores: every reading as read.
    static PivotEvaluation record(const ReadingPasses& passes, double gaugeDiameterM,
                                  const std::string& name);
};

}  // namespace caudalis::cli
