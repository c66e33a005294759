#include "caudalis/fieldtests/FieldTestService.hpp"

#include <algorithm>
#include <filesystem>

#include "caudalis/design/DesignFile.hpp"
#include "caudalis/design/DesignRunner.hpp"
#include "caudalis/fieldtests/EvaluationDesign.hpp"
#include "caudalis/fieldtests/EvaluationStore.hpp"
#include "caudalis/fieldtests/FieldEvaluator.hpp"
#include "caudalis/fieldtests/ReadingsError.hpp"
#include "caudalis/fieldtests/ReadingsFile.hpp"
#include "caudalis/project/ServiceError.hpp"

namespace caudalis::fieldtests {

namespace {

long invalidCount(const design::FieldEvaluationResult& result) {
    return static_cast<long>(std::count_if(result.excluded.begin(), result.excluded.end(), [](const auto& e) {
        return e.reason == design::ExclusionReason::Invalid;
    }));
}

}  // namespace

FieldTestService::FieldTestService(std::string projectPath, CatalogueOpener catalogue, StoreOpener charts)
    : projectPath_(std::move(projectPath)),
      openCatalogue_(std::move(catalogue)),
      openCharts_(std::move(charts)) {}

std::string FieldTestService::nameOf(const EvaluationRequest& request) {
    if (request.name) {
        return *request.name;
    }
    auto stem = std::filesystem::path(request.readingsPaths.front()).stem().string();
    if (request.test) {
        stem += ' ';
        stem += *request.test;
    }
    return stem;
}

FieldTestResult FieldTestService::evaluate(const EvaluationRequest& request, const DesignLookup& design,
                                           bool storing) const {
    FieldTestResult found;
    auto& outcome = found.outcome;
    outcome.name = nameOf(request);
    if (storing) {
        EvaluationStore(projectPath_).requireNameIsFree(outcome.name);
    }
    outcome.readings = ReadingsFile::load(request.readingsPaths, request.gaugeDiameterM, request.test);
    outcome.units = request.units.value_or(design::Units(outcome.readings.units));
    design::FieldEvaluationSettings settings{request.innerRadiusM, request.lastSpanEndM,
                                             request.outlierPercent, std::nullopt};
    outcome.design = design();
    if (outcome.design) {
        settings.expectedDepthMm = outcome.design->expectedDepthMm;
        if (!settings.lastSpanEndM) {
            settings.lastSpanEndM = outcome.design->lastSpanEndM;
        }
    }
    try {
        outcome.result = design::FieldEvaluator::evaluate(outcome.readings, settings);
    } catch (const design::ReadingsError& error) {
        throw project::InputError(std::string("readings file ") + error.what());
    }
    if (outcome.design) {
        outcome.comparison = design::MeasuredDesignedComparison::compare(
            outcome.result.counted, outcome.design->machine, outcome.design->wettedDiameterM);
    }
    found.invalidReadings = invalidCount(outcome.result);
    return found;
}

Long FieldTestService::save(const FieldTestResult& result) const {
    const auto& outcome = result.outcome;
    return EvaluationStore(projectPath_).save(outcome.readings, outcome.result, outcome.name);
}

DesignReference FieldTestService::designFile(const std::string& path, long maxPasses, double timerPercent,
                                             std::optional<double> wettedDiameterM) const {
    const auto description = design::DesignFile::load(path);
    const auto source = openCatalogue_();
    const auto result =
        design::DesignRunner(design::DesignOptions{maxPasses, std::nullopt}).run(description, *source);
    return EvaluationDesign::reference(path, result, timerPercent, wettedDiameterM,
                                       source->wettedDiameters());
}

DesignReference FieldTestService::storedChart(Long id, double timerPercent,
                                              std::optional<double> wettedDiameterM) const {
    const auto wetted = openCatalogue_()->wettedDiameters();
    const auto rebuilt = openCharts_()->rebuild(id, wetted);
    return EvaluationDesign::reference("stored chart " + std::to_string(id), rebuilt.result, timerPercent,
                                       wettedDiameterM, wetted);
}

std::vector<design::StoredEvaluationSummary> FieldTestService::list() const {
    return EvaluationStore(projectPath_).list();
}

design::StoredFieldEvaluation FieldTestService::show(Long id) const {
    return EvaluationStore(projectPath_).find(id);
}

}  // namespace caudalis::fieldtests
