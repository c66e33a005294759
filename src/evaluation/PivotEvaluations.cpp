#include "caudalis/evaluation/PivotEvaluations.hpp"

#include <string_view>

#include "caudalis/core/Arrays.hpp"
#include "caudalis/core/LazyInstance.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/db/Recordset.hpp"
#include "caudalis/db/SqlText.hpp"
#include "caudalis/db/TableSchema.hpp"
#include "caudalis/evaluation/FieldSamples.hpp"
#include "caudalis/evaluation/Pluviometros.hpp"

namespace caudalis {
namespace {

constexpr std::string_view lineBreak = "\r\n";

/// The pieces of `text` between the line breaks, empty ones included.
BoundedArray<String> splitLines(std::string_view text) {
    const auto& arrays = *Arrays::shared();
    BoundedArray<String> lines;
    for (;;) {
        const auto end = text.find(lineBreak);
        arrays.Push(lines, String(text.substr(0, end)));
        if (end == std::string_view::npos) {
            return lines;
        }
        text.remove_prefix(end + lineBreak.size());
    }
}

/// The text of the stored passes: quoted, and null for a pass without readings.
String samplesLiteral(const String& samplesText) {
    return emptyLiteralToNull(sqlQuote(Variant(samplesText)));
}

}  // namespace

std::shared_ptr<PivotEvaluations> PivotEvaluations::shared() {
    static LazyInstance<PivotEvaluations> instance;
    return instance.get();
}

PivotEvaluation PivotEvaluations::newEvaluation(const String& name) const {
    PivotEvaluation evaluation;
    evaluation.id = 0;
    evaluation.name = name;
    evaluation.pluviometer = Pluviometro{0, 0};
    return evaluation;
}

BoundedArray<String> PivotEvaluations::Enumerate(Connection& con) const {
    const auto& arrays = *Arrays::shared();
    const auto rows =
        con.Execute(evaluationSchema().selectSQL(std::nullopt, BoundedArray<Variant>::of({"name"})));
    BoundedArray<String> names;
    while (!rows->EOF_() && !rows->BOF()) {
        arrays.Push(names, rows->Fields("name").toString());
        rows->MoveNext();
    }
    return names;
}

void PivotEvaluations::save(Connection& con, PivotEvaluation& self) const {
    if (isNewRecord(self)) {
        insertEvaluation(con, self);
    } else {
        updateEvaluation(con, self);
    }
}

bool PivotEvaluations::exists(Connection& con, const String& conditions) const {
    const auto count = con.Execute(evaluationSchema().countSQL(Variant(conditions)));
    return count->Fields("result").toDouble() > 0;
}

PivotEvaluation PivotEvaluations::find(Connection& con, const String& conditions) const {
    const auto rows =
        con.Execute(evaluationSchema().selectSQL(std::nullopt, std::nullopt, Variant(conditions)));
    return evaluationFromRecord(*rows);
}

void PivotEvaluations::destroy(Connection& con, const PivotEvaluation& self) const {
    con.Execute(evaluationSchema().deleteSQL(Variant(self.id)));
}

const TableSchema& PivotEvaluations::evaluationSchema() const {
    if (!schema_) {
        schema_ = makeTableSchema(
            "pivot_evaluations",
            BoundedArray<Variant>::of({"name", "pluviometer_diameter", "first_samples", "second_samples"}),
            "id");
    }
    return *schema_;
}

void PivotEvaluations::insertEvaluation(Connection& con, PivotEvaluation& self) const {
    con.Execute(evaluationSchema().insertSQL(evaluationValues(self)));
    self.id = lastIdentity(con).toLong();
}

void PivotEvaluations::updateEvaluation(Connection& con, const PivotEvaluation& self) const {
    con.Execute(evaluationSchema().updateSQL(evaluationValues(self), Variant(self.id)));
}

BoundedArray<Variant> PivotEvaluations::evaluationValues(const PivotEvaluation& self) const {
    return BoundedArray<Variant>::of({
        sqlQuote(Variant(self.name)),
        zeroToNull(Variant(sqlDouble(self.pluviometer.diameter))),
        samplesLiteral(samplesText(self.firstSample)),
        samplesLiteral(samplesText(self.secondSample)),
    });
}

String PivotEvaluations::samplesText(const BoundedArray<FieldSample>& samples) const {
    const auto& arrays = *Arrays::shared();
    if (arrays.IsEmpty(samples)) {
        return {};
    }
    const auto& fieldSamples = *FieldSamples::shared();
    String text;
    const Integer length = arrays.Length(samples);
    for (Long i = 1; i <= length; ++i) {
        if (i > 1) {
            text += lineBreak;
        }
        text += fieldSamples.serialize(samples(i));
    }
    return text;
}

BoundedArray<FieldSample> PivotEvaluations::samplesFromText(const String& text) const {
    const auto& arrays = *Arrays::shared();
    BoundedArray<FieldSample> samples;
    if (isBlank(text)) {
        return samples;
    }
    const auto& fieldSamples = *FieldSamples::shared();
    const BoundedArray<String> lines = splitLines(text);
    for (Long i = lines.lbound(); i <= lines.ubound(); ++i) {
        arrays.Push(samples, fieldSamples.Parse(lines(i)));
    }
    return samples;
}

PivotEvaluation PivotEvaluations::evaluationFromRecord(const Recordset& row) const {
    PivotEvaluation evaluation;
    evaluation.id = row.Fields("id").toLong();
    evaluation.name = row.Fields("name").toString();
    evaluation.pluviometer =
        Pluviometros::shared()->newPluviometro(nullToZero(row.Fields("pluviometer_diameter")).toDouble());
    evaluation.firstSample = samplesFromText(nullToEmpty(row.Fields("first_samples")));
    evaluation.secondSample = samplesFromText(nullToEmpty(row.Fields("second_samples")));
    return evaluation;
}

}  // namespace caudalis
