#pragma once

#include <ostream>

#include <nlohmann/json.hpp>

#include "FieldEvaluation.hpp"

namespace caudalis::cli {

/// The figures of a field evaluation as text or JSON.
class EvaluationReport {
public:
    static void write(std::ostream& out, const EvaluationFigures& figures);
    static nlohmann::json toJson(const EvaluationFigures& figures);
};

}  // namespace caudalis::cli
