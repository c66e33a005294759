#pragma once

#include "caudalis/fieldtests/FieldEvaluationResult.hpp"
#include "caudalis/fieldtests/FieldReadings.hpp"

namespace caudalis::design {

/// Evaluates the readings of a catch-can test: leaves out the invalid readings, those the crew
/// struck out and those inside the inner radius, sets the end-gun zone apart, and computes each
/// line's figures, their average, the figures of both lines together, the applied depth
/// against the expected one, and the collectors far off the mean.
class FieldEvaluator {
public:
    /// The most readings (both lines together) that an evaluation can hold: the library's
    /// reading counts are 16-bit.
    static constexpr long maxReadings = 32767;

    /// Raises `ReadingsError` when no reading counts, or when there are more than
    /// `maxReadings`.
    static FieldEvaluationResult evaluate(const FieldReadings& readings,
                                          const FieldEvaluationSettings& settings);

private:
    static void sortOut(const FieldReadings& readings, FieldEvaluationResult& result,
                        std::vector<std::vector<FieldReading>>& endGun);
    static void findOutliers(FieldEvaluationResult& result);
};

}  // namespace caudalis::design
