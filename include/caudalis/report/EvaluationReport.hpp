#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "caudalis/fieldtests/EvaluationOutcome.hpp"
#include "caudalis/fieldtests/FieldEvaluationStore.hpp"
#include "caudalis/report/ReportDocument.hpp"

namespace caudalis::fieldtests {

/// A field evaluation as text or JSON, and the stored evaluations as a list or one by one.
class EvaluationReport {
public:
    /// How many outlets the text lists where measured and designed differ most.
    static constexpr std::size_t outletsListed = 5;

    static void write(std::ostream& out, const EvaluationOutcome& outcome);
    /// The evaluation as indented JSON, on one document.
    static void writeJson(std::ostream& out, const EvaluationOutcome& outcome);
    /// The evaluation as a report document, for `--report`.
    static design::ReportDocument document(const EvaluationOutcome& outcome);
    static void writeList(std::ostream& out, const std::vector<design::StoredEvaluationSummary>& evaluations);
    static void writeStored(std::ostream& out, const design::StoredFieldEvaluation& stored);
    static void writeStoredJson(std::ostream& out, const design::StoredFieldEvaluation& stored);

private:
    static void writeReadingNotes(std::ostream& out, const design::FieldEvaluationResult& result,
                                  const design::UnitText& text);
    static void writeComparison(std::ostream& out, const DesignReference& design,
                                const design::DesignComparison& comparison, const design::UnitText& text);
};

}  // namespace caudalis::fieldtests
