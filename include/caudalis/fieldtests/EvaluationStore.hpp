#pragma once

#include <optional>
#include <string>
#include <vector>

#include "caudalis/fieldtests/FieldEvaluationStore.hpp"
#include "caudalis/project/DatabaseFile.hpp"

namespace caudalis::fieldtests {

/// Field evaluations in the project database, through `design::FieldEvaluationStore` on a
/// connection of its own: the readings in `pivot_evaluations`, the figures beside them in
/// `pivot_evaluation_figures`, written in one transaction.
class EvaluationStore {
public:
    explicit EvaluationStore(std::string projectPath);
    /// Raises `InputError` unless an evaluation named `name` can be stored.
    void requireNameIsFree(const std::string& name) const;
    /// Stores a new evaluation with its figures and returns its key. Evaluation names are
    /// unique: a taken name raises `InputError` and nothing is written.
    Long save(const design::FieldReadings& readings, const design::FieldEvaluationResult& result,
              const std::string& name) const;
    std::vector<design::StoredEvaluationSummary> list() const;
    /// Raises `InputError` when there is no evaluation `id`.
    design::StoredFieldEvaluation find(Long id) const;

private:
    /// Raises `InputError` when the database lacks the figures' table.
    void requireFiguresTable() const;

    project::DatabaseFile project_;
};

}  // namespace caudalis::fieldtests
