// The field-evaluation services: catch-can readings in text or CSV, and their evaluation.
#include "Bindings.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/fieldtests/CatchCanStatistics.hpp"
#include "caudalis/fieldtests/FieldEvaluationStore.hpp"
#include "caudalis/fieldtests/FieldEvaluator.hpp"
#include "caudalis/fieldtests/FieldReadingsCsv.hpp"
#include "caudalis/fieldtests/FieldReadingsText.hpp"
#include "caudalis/fieldtests/ReadingsError.hpp"
#include "caudalis/report/EvaluationPrintout.hpp"
#include "caudalis/report/HtmlReport.hpp"
#include "caudalis/design/TextFile.hpp"
#include "caudalis/fieldtests/CatchCanStatistics.hpp"
#include "caudalis/fieldtests/FieldEvaluator.hpp"
#include "caudalis/fieldtests/FieldReadingsCsv.hpp"
#include "caudalis/fieldtests/FieldReadingsText.hpp"
#include "caudalis/fieldtests/ReadingsError.hpp"

namespace caudalis::python {

namespace {

using namespace caudalis::design;

void bindReadings(py::module_& services) {
    py::register_exception<ReadingsError>(services, "ReadingsError", PyExc_ValueError);
    py::class_<ReadingsText>(services, "ReadingsText", doc("design.ReadingsText"))
        .def(py::init([](std::string source, std::string text) {
                 return ReadingsText{std::move(source), std::move(text)};
             }),
             py::arg("source"), py::arg("text"))
        .def_readonly("source", &ReadingsText::source)
        .def_readonly("text", &ReadingsText::text);
    py::class_<FieldReading>(services, "FieldReading", doc("design.FieldReading"))
        .def_readonly("line", &FieldReading::line, doc("design.FieldReading.line"))
        .def_readonly("collector", &FieldReading::collector, doc("design.FieldReading.collector"))
        .def_readonly("sample", &FieldReading::sample, doc("design.FieldReading.sample"))
        .def_readonly("depth", &FieldReading::depth, doc("design.FieldReading.depth"))
        .def_readonly("crewExclusion", &FieldReading::crewExclusion, doc("design.FieldReading.crewExclusion"))
        .def_readonly("source", &FieldReading::source, doc("design.FieldReading.source"))
        .def_readonly("sourceLine", &FieldReading::sourceLine);
    py::enum_<StoredAmount>(services, "StoredAmount", doc("design.StoredAmount"))
        .value("VolumeMl", StoredAmount::VolumeMl)
        .value("DepthMm", StoredAmount::DepthMm);
    py::class_<FieldReadings>(services, "FieldReadings", doc("design.FieldReadings"))
        .def_readonly("readings", &FieldReadings::readings)
        .def_readonly("lineNames", &FieldReadings::lineNames, doc("design.FieldReadings.lineNames"))
        .def_readonly("amounts", &FieldReadings::amounts)
        .def_readonly("gaugeDiameterM", &FieldReadings::gaugeDiameterM,
                      doc("design.FieldReadings.gaugeDiameterM"));
    py::class_<FieldReadingsText>(services, "FieldReadingsText", doc("design.FieldReadingsText"))
        .def_static("read", &FieldReadingsText::read, py::arg("texts"), py::arg("gaugeDiameterM"),
                    doc("design.FieldReadingsText.read"));
    py::class_<FieldReadingsCsv>(services, "FieldReadingsCsv", doc("design.FieldReadingsCsv"))
        .def_static("read", &FieldReadingsCsv::read, py::arg("text"), py::arg("gaugeDiameterM") = py::none(),
                    doc("design.FieldReadingsCsv.read"));
    services.def("readTextFile", &readTextFile, py::arg("path"), py::arg("kind"), doc("design.readTextFile"));
}

void bindFigures(py::module_& services) {
    py::class_<CatchCanFigures>(services, "CatchCanFigures", doc("design.CatchCanFigures"))
        .def_readonly("collectors", &CatchCanFigures::collectors)
        .def_readonly("meanDepthMm", &CatchCanFigures::meanDepthMm)
        .def_readonly("lowQuarterMeanMm", &CatchCanFigures::lowQuarterMeanMm)
        .def_readonly("cuHeermannHein", &CatchCanFigures::cuHeermannHein,
                      doc("design.CatchCanFigures.cuHeermannHein"))
        .def_readonly("duLowQuarter", &CatchCanFigures::duLowQuarter,
                      doc("design.CatchCanFigures.duLowQuarter"))
        .def_readonly("schedulingCoefficient", &CatchCanFigures::schedulingCoefficient,
                      doc("design.CatchCanFigures.schedulingCoefficient"))
        .def_readonly("schedulingCoefficient1Percent", &CatchCanFigures::schedulingCoefficient1Percent,
                      doc("design.CatchCanFigures.schedulingCoefficient1Percent"))
        .def_readonly("meanOverLowQuarterMean", &CatchCanFigures::meanOverLowQuarterMean,
                      doc("design.CatchCanFigures.meanOverLowQuarterMean"))
        .def_readonly("cuMovingAverage", &CatchCanFigures::cuMovingAverage,
                      doc("design.CatchCanFigures.cuMovingAverage"));
    py::class_<CatchCanStatistics>(services, "CatchCanStatistics", doc("design.CatchCanStatistics"))
        .def_static("of", &CatchCanStatistics::of, py::arg("lines"), doc("design.CatchCanStatistics.of"))
        .def_static("named", &CatchCanStatistics::named, py::arg("figures"),
                    doc("design.CatchCanStatistics.named"));
}

void bindEvaluator(py::module_& services) {
    py::class_<FieldEvaluationSettings>(services, "FieldEvaluationSettings",
                                        doc("design.FieldEvaluationSettings"))
        .def(py::init<>())
        .def_readwrite("innerRadiusM", &FieldEvaluationSettings::innerRadiusM,
                       doc("design.FieldEvaluationSettings.innerRadiusM"))
        .def_readwrite("lastSpanEndM", &FieldEvaluationSettings::lastSpanEndM,
                       doc("design.FieldEvaluationSettings.lastSpanEndM"))
        .def_readwrite("outlierPercent", &FieldEvaluationSettings::outlierPercent,
                       doc("design.FieldEvaluationSettings.outlierPercent"))
        .def_readwrite("expectedDepthMm", &FieldEvaluationSettings::expectedDepthMm,
                       doc("design.FieldEvaluationSettings.expectedDepthMm"));
    py::enum_<ExclusionReason>(services, "ExclusionReason", doc("design.ExclusionReason"))
        .value("Invalid", ExclusionReason::Invalid)
        .value("CrewFlag", ExclusionReason::CrewFlag)
        .value("InsideRadius", ExclusionReason::InsideRadius);
    py::class_<ExcludedReading>(services, "ExcludedReading")
        .def_readonly("reading", &ExcludedReading::reading)
        .def_readonly("reason", &ExcludedReading::reason);
    py::class_<LineFigures>(services, "LineFigures", doc("design.LineFigures"))
        .def_readonly("line", &LineFigures::line)
        .def_readonly("name", &LineFigures::name)
        .def_readonly("figures", &LineFigures::figures);
    py::class_<OutlierReading>(services, "OutlierReading", doc("design.OutlierReading"))
        .def_readonly("reading", &OutlierReading::reading)
        .def_readonly("deviationPercent", &OutlierReading::deviationPercent);
    py::class_<FieldEvaluationResult>(services, "FieldEvaluationResult", doc("design.FieldEvaluationResult"))
        .def_readonly("settings", &FieldEvaluationResult::settings)
        .def_readonly("readings", &FieldEvaluationResult::readings)
        .def_readonly("lines", &FieldEvaluationResult::lines, doc("design.FieldEvaluationResult.lines"))
        .def_readonly("lineAverage", &FieldEvaluationResult::lineAverage,
                      doc("design.FieldEvaluationResult.lineAverage"))
        .def_readonly("together", &FieldEvaluationResult::together,
                      doc("design.FieldEvaluationResult.together"))
        .def_readonly("endGunZone", &FieldEvaluationResult::endGunZone,
                      doc("design.FieldEvaluationResult.endGunZone"))
        .def_readonly("excluded", &FieldEvaluationResult::excluded)
        .def_readonly("outliers", &FieldEvaluationResult::outliers)
        .def_readonly("appliedPercentOfExpected", &FieldEvaluationResult::appliedPercentOfExpected,
                      doc("design.FieldEvaluationResult.appliedPercentOfExpected"))
        .def_readonly("counted", &FieldEvaluationResult::counted,
                      doc("design.FieldEvaluationResult.counted"));
    py::class_<FieldEvaluator>(services, "FieldEvaluator", doc("design.FieldEvaluator"))
        .def_readonly_static("maxReadings", &FieldEvaluator::maxReadings,
                             doc("design.FieldEvaluator.maxReadings"))
        .def_static("evaluate", &FieldEvaluator::evaluate, py::arg("readings"), py::arg("settings"),
                    doc("design.FieldEvaluator.evaluate"));
}

void bindStore(py::module_& services) {
    py::class_<StoredFigure>(services, "StoredFigure", doc("design.StoredFigure"))
        .def_readonly("scope", &StoredFigure::scope, doc("design.StoredFigure.scope"))
        .def_readonly("figure", &StoredFigure::figure)
        .def_readonly("value", &StoredFigure::value)
        .def_readonly("note", &StoredFigure::note);
    py::class_<StoredFieldEvaluation>(services, "StoredFieldEvaluation", doc("design.StoredFieldEvaluation"))
        .def_property_readonly("evaluation",
                               [](const StoredFieldEvaluation& self) { return self.evaluation; })
        .def_readonly("figures", &StoredFieldEvaluation::figures);
    py::class_<StoredEvaluationSummary>(services, "StoredEvaluationSummary",
                                        doc("design.StoredEvaluationSummary"))
        .def_readonly("id", &StoredEvaluationSummary::id)
        .def_readonly("name", &StoredEvaluationSummary::name)
        .def_readonly("cuHeermannHein", &StoredEvaluationSummary::cuHeermannHein)
        .def_readonly("duLowQuarter", &StoredEvaluationSummary::duLowQuarter);
    py::class_<FieldEvaluationStore>(services, "FieldEvaluationStore", doc("design.FieldEvaluationStore"))
        .def(py::init<Connection&>(), py::arg("connection"), py::keep_alive<1, 2>())
        .def("nameTaken", &FieldEvaluationStore::nameTaken, py::arg("name"),
             doc("design.FieldEvaluationStore.nameTaken"))
        .def("save", &FieldEvaluationStore::save, py::arg("readings"), py::arg("result"), py::arg("name"),
             doc("design.FieldEvaluationStore.save"))
        .def("list", &FieldEvaluationStore::list, doc("design.FieldEvaluationStore.list"))
        .def("find", &FieldEvaluationStore::find, py::arg("id"), doc("design.FieldEvaluationStore.find"));
    services.def(
        "evaluationReport",
        [](const std::string& name, const FieldReadings& readings, const FieldEvaluationResult& result) {
            return HtmlReport::render(
                EvaluationPrintout::document({name, readings, result, std::nullopt, Units(readings.units)}));
        },
        py::arg("name"), py::arg("readings"), py::arg("result"),
        "The HTML report of an evaluation without a design beside it, as the command line's --report writes "
        "it.");
}

}  // namespace

void bindFieldEvaluation(py::module_& services) {
    bindReadings(services);
    bindFigures(services);
    bindEvaluator(services);
    bindStore(services);
}

}  // namespace caudalis::python
