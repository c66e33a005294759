#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "caudalis/design/NozzleSource.hpp"
#include "caudalis/design/Units.hpp"
#include "caudalis/fieldtests/EvaluationOutcome.hpp"
#include "caudalis/fieldtests/FieldEvaluationStore.hpp"
#include "caudalis/project/ChartStore.hpp"

namespace caudalis::fieldtests {

/// A field test to evaluate: its readings files and how to read and count them.
struct EvaluationRequest {
    std::vector<std::string> readingsPaths;
    /// The gauges' opening (m), for readings that are volumes.
    std::optional<double> gaugeDiameterM;
    /// The test to read from a CSV file that holds several.
    std::optional<std::string> test;
    /// The evaluation's name; the readings file's (and the test's) when empty.
    std::optional<std::string> name;
    double innerRadiusM = 0;
    std::optional<double> lastSpanEndM;
    double outlierPercent = 20;
    /// The units the outcome is printed in; the readings file's when not given.
    std::optional<design::Units> units;
};

/// What the evaluation of a field test found, with the number of readings left out as invalid.
struct FieldTestResult {
    EvaluationOutcome outcome;
    long invalidReadings = 0;
};

/// Field tests as every host evaluates them: the readings files read and counted, laid over the
/// depth profile of a design file or of a stored chart, stored in the project database, and the
/// stored evaluations listed and read back.
class FieldTestService {
public:
    using CatalogueOpener = std::function<std::unique_ptr<design::NozzleSource>()>;
    using StoreOpener = std::function<std::unique_ptr<project::ChartStore>()>;
    /// Gives the design the readings are laid over, or none; called once the readings are read.
    using DesignLookup = std::function<std::optional<DesignReference>()>;

    FieldTestService(std::string projectPath, CatalogueOpener catalogue, StoreOpener charts);

    /// The evaluation's name: the request's, else the readings file's and the test's.
    static std::string nameOf(const EvaluationRequest& request);
    /// Evaluates the readings (nothing is stored); with `storing`, first raises `InputError`
    /// when an evaluation of that name is already stored.
    FieldTestResult evaluate(const EvaluationRequest& request, const DesignLookup& design,
                             bool storing) const;
    /// Stores the evaluation with its figures and returns its key.
    Long save(const FieldTestResult& result) const;

    /// The design file at `path` computed as a design is (at most `maxPasses` passes), as the
    /// readings' reference; `timerPercent` and `wettedDiameterM` as `EvaluationDesign` takes them.
    DesignReference designFile(const std::string& path, long maxPasses, double timerPercent,
                               std::optional<double> wettedDiameterM) const;
    /// The stored chart `id` computed again from the design file kept with it.
    DesignReference storedChart(Long id, double timerPercent, std::optional<double> wettedDiameterM) const;

    std::vector<design::StoredEvaluationSummary> list() const;
    /// Raises `InputError` when there is no evaluation `id`.
    design::StoredFieldEvaluation show(Long id) const;

private:
    std::string projectPath_;
    CatalogueOpener openCatalogue_;
    StoreOpener openCharts_;
};

}  // namespace caudalis::fieldtests
