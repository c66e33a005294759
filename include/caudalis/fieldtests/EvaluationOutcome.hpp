#pragma once

#include <optional>
#include <string>

#include "caudalis/design/Units.hpp"
#include "caudalis/fieldtests/EvaluationDesign.hpp"
#include "caudalis/fieldtests/FieldEvaluationResult.hpp"
#include "caudalis/fieldtests/MeasuredDesignedComparison.hpp"

namespace caudalis::fieldtests {

/// Everything `caudalis evaluate` found for one field test.
struct EvaluationOutcome {
    std::string name;
    design::FieldReadings readings;
    design::FieldEvaluationResult result;
    std::optional<DesignReference> design;
    std::optional<design::DesignComparison> comparison;
    /// The units distances and depths are printed in.
    design::Units units;
};

}  // namespace caudalis::fieldtests
