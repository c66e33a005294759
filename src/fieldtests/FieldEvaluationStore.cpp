#include "caudalis/fieldtests/FieldEvaluationStore.hpp"

#include <map>

#include "caudalis/db/Connection.hpp"
#include "caudalis/db/Recordset.hpp"
#include "caudalis/db/SqlText.hpp"
#include "caudalis/design/Uniformity.hpp"
#include "caudalis/evaluation/PivotEvaluations.hpp"
#include "caudalis/evaluation/Pluviometros.hpp"

namespace caudalis::design {

namespace {

std::string valueLiteral(const std::optional<double>& value) {
    return value ? sqlDouble(*value) : "null";
}

void addFigures(std::vector<StoredFigure>& figures, const std::string& scope, const CatchCanFigures& set) {
    for (const auto& [figure, value] : CatchCanStatistics::named(set)) {
        figures.push_back({scope, figure, value, ""});
    }
}

void addSettings(std::vector<StoredFigure>& figures, const FieldReadings& readings,
                 const FieldEvaluationResult& result) {
    const auto& settings = result.settings;
    figures.push_back(
        {"settings", "amounts", std::nullopt, readings.amounts == StoredAmount::VolumeMl ? "ml" : "mm"});
    for (std::size_t i = 0; i < readings.lineNames.size(); ++i) {
        figures.push_back(
            {"settings", "line " + std::to_string(i + 1) + " name", std::nullopt, readings.lineNames[i]});
    }
    figures.push_back({"settings", "inner_radius_m", settings.innerRadiusM, ""});
    figures.push_back({"settings", "last_span_end_m", settings.lastSpanEndM, ""});
    figures.push_back({"settings", "expected_depth_mm", settings.expectedDepthMm, ""});
    figures.push_back({"settings", "applied_percent_of_expected", result.appliedPercentOfExpected, ""});
    figures.push_back({"settings", "outlier_percent", settings.outlierPercent, ""});
}

/// The crew's exclusions by line name and position in the line's stored readings.
void addCrewExclusions(std::vector<StoredFigure>& figures, const FieldReadings& readings) {
    std::map<int, int> positions;
    for (const auto& reading : readings.readings) {
        const int position = ++positions[reading.line];
        if (!reading.crewExclusion.empty()) {
            figures.push_back({"crew", readings.lineName(reading.line) + ":" + std::to_string(position),
                               std::nullopt, reading.crewExclusion});
        }
    }
}

BoundedArray<FieldSample> samplesOfLine(const FieldReadings& readings, int line) {
    std::vector<FieldSample> samples;
    for (const auto& reading : readings.readings) {
        if (reading.line == line) {
            samples.push_back(reading.sample);
        }
    }
    return Uniformity::samples(samples);
}

std::optional<double> optionalNumber(const Variant& value) {
    return value.isNull() ? std::nullopt : std::optional<double>(value.toDouble());
}

}  // namespace

PivotEvaluation FieldEvaluationStore::record(const FieldReadings& readings, const std::string& name) {
    auto evaluation = PivotEvaluations::shared()->newEvaluation(name);
    const bool volumes = readings.amounts == StoredAmount::VolumeMl;
    evaluation.pluviometer = Pluviometros::shared()->newPluviometro(volumes ? readings.gaugeDiameterM : 0);
    evaluation.firstSample = samplesOfLine(readings, 1);
    evaluation.secondSample = samplesOfLine(readings, 2);
    return evaluation;
}

std::vector<StoredFigure> FieldEvaluationStore::figuresOf(const FieldReadings& readings,
                                                          const FieldEvaluationResult& result) {
    std::vector<StoredFigure> figures;
    addFigures(figures, "together", result.together);
    addFigures(figures, "lines", result.lineAverage);
    for (const auto& line : result.lines) {
        addFigures(figures, "line " + line.name, line.figures);
    }
    if (result.endGunZone) {
        addFigures(figures, "end gun", *result.endGunZone);
    }
    addSettings(figures, readings, result);
    addCrewExclusions(figures, readings);
    return figures;
}

bool FieldEvaluationStore::nameTaken(const std::string& name) {
    return PivotEvaluations::shared()->exists(connection_, "name=" + textLiteral(name));
}

Long FieldEvaluationStore::save(const FieldReadings& readings, const FieldEvaluationResult& result,
                                const std::string& name) {
    auto evaluation = record(readings, name);
    PivotEvaluations::shared()->save(connection_, evaluation);
    for (const auto& figure : figuresOf(readings, result)) {
        connection_.Execute(
            "INSERT INTO pivot_evaluation_figures (evaluation_id,scope,figure,value,note) VALUES (" +
            std::to_string(evaluation.id) + "," + textLiteral(figure.scope) + "," +
            textLiteral(figure.figure) + "," + valueLiteral(figure.value) + "," +
            (figure.note.empty() ? "null" : textLiteral(figure.note)) + ")");
    }
    return evaluation.id;
}

std::vector<StoredFigure> FieldEvaluationStore::storedFigures(const std::string& condition) {
    std::vector<StoredFigure> figures;
    const auto rows = connection_.Execute(
        "SELECT evaluation_id,scope,figure,value,note FROM pivot_evaluation_figures WHERE " + condition +
        " ORDER BY id");
    for (; !rows->EOF_(); rows->MoveNext()) {
        const auto note = rows->Fields("note");
        figures.push_back({rows->Fields("scope").toString(), rows->Fields("figure").toString(),
                           optionalNumber(rows->Fields("value")), note.isNull() ? "" : note.toString()});
    }
    return figures;
}

std::vector<StoredEvaluationSummary> FieldEvaluationStore::list() {
    std::vector<StoredEvaluationSummary> evaluations;
    const auto rows = connection_.Execute("SELECT id,name FROM pivot_evaluations ORDER BY id");
    for (; !rows->EOF_(); rows->MoveNext()) {
        evaluations.push_back({rows->Fields("id").toLong(), rows->Fields("name").toString(), {}, {}});
    }
    const auto figures = connection_.Execute(
        "SELECT evaluation_id,figure,value FROM pivot_evaluation_figures WHERE scope='together' AND figure "
        "IN "
        "('cu_hh_percent','du_lq_percent')");
    for (; !figures->EOF_(); figures->MoveNext()) {
        const Long id = figures->Fields("evaluation_id").toLong();
        for (auto& evaluation : evaluations) {
            if (evaluation.id == id) {
                const bool cu = figures->Fields("figure").toString() == "cu_hh_percent";
                (cu ? evaluation.cuHeermannHein : evaluation.duLowQuarter) =
                    optionalNumber(figures->Fields("value"));
            }
        }
    }
    return evaluations;
}

std::optional<StoredFieldEvaluation> FieldEvaluationStore::find(Long id) {
    const auto condition = "id=" + std::to_string(id);
    const auto evaluations = PivotEvaluations::shared();
    if (!evaluations->exists(connection_, condition)) {
        return std::nullopt;
    }
    return StoredFieldEvaluation{evaluations->find(connection_, condition),
                                 storedFigures("evaluation_id=" + std::to_string(id))};
}

}  // namespace caudalis::design
