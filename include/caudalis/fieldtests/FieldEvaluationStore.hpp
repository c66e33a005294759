#pragma once

#include <optional>
#include <string>
#include <vector>

#include "caudalis/core/Records.hpp"
#include "caudalis/fieldtests/FieldEvaluationResult.hpp"
#include "caudalis/fieldtests/FieldReadings.hpp"

namespace caudalis {
class Connection;
}

namespace caudalis::design {

/// One value kept beside an evaluation (a row of `pivot_evaluation_figures`).
struct StoredFigure {
    /// "together", "lines", "line NAME" (the crew's name of the line), "end gun", "settings" or
    /// "crew" (figure "NAME:POSITION", the line and the collector's place in its stored readings).
    std::string scope;
    std::string figure;
    std::optional<double> value;
    std::string note;
};

/// An evaluation as stored: the record `PivotEvaluations` keeps and the values beside it.
struct StoredFieldEvaluation {
    PivotEvaluation evaluation;
    std::vector<StoredFigure> figures;
};

/// A line of the list of stored evaluations.
struct StoredEvaluationSummary {
    Long id = 0;
    std::string name;
    std::optional<double> cuHeermannHein;
    std::optional<double> duLowQuarter;
};

/// Keeps field evaluations in a project database on a connection the host opened (and whose
/// transaction it runs): the readings as `PivotEvaluations` stores them in `pivot_evaluations`
/// (line 1 as the first samples, line 2 as the second), and the figures and settings in the
/// side table `pivot_evaluation_figures`. Evaluations stored by other hosts, without figures,
/// are listed and shown with their readings alone.
class FieldEvaluationStore {
public:
    explicit FieldEvaluationStore(Connection& connection) : connection_(connection) {}

    /// The record of the readings: every reading as read (amounts in ml with the gauge's
    /// diameter, or in mm with no diameter), line by line in the order read.
    static PivotEvaluation record(const FieldReadings& readings, const std::string& name);
    /// The figures and settings of an evaluation, as they are stored.
    static std::vector<StoredFigure> figuresOf(const FieldReadings& readings,
                                               const FieldEvaluationResult& result);

    /// Whether an evaluation of that name is stored.
    bool nameTaken(const std::string& name);
    /// Stores a new evaluation and returns its key.
    Long save(const FieldReadings& readings, const FieldEvaluationResult& result, const std::string& name);
    /// Every stored evaluation, by key.
    std::vector<StoredEvaluationSummary> list();
    /// The evaluation `id`, or nothing.
    std::optional<StoredFieldEvaluation> find(Long id);

private:
    std::vector<StoredFigure> storedFigures(const std::string& condition);

    Connection& connection_;
};

}  // namespace caudalis::design
