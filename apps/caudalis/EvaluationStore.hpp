#pragma once

#include <string>

#include "DatabaseFile.hpp"
#include "caudalis/core/Records.hpp"

namespace caudalis::cli {

/// Field evaluations in the project database's `pivot_evaluations`, written through
/// `PivotEvaluations` on a connection of its own inside one transaction.
class EvaluationStore {
public:
    explicit EvaluationStore(std::string projectPath);
    /// Raises `InputError` unless an evaluation named `name` can be stored.
    void requireNameIsFree(const std::string& name) const;
    /// Stores a new evaluation and returns its key. Evaluation names are unique: a taken name
    /// raises `InputError` and nothing is written.
    Long save(PivotEvaluation evaluation) const;

private:
    DatabaseFile project_;
};

}  // namespace caudalis::cli
