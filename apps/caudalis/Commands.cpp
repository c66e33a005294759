// The commands of the program, each run after the arguments are parsed.

#include <algorithm>
#include <filesystem>

#include <fmt/format.h>
#include <fmt/ostream.h>
#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "CliErrors.hpp"
#include "CommandOptions.hpp"
#include "OutputFile.hpp"
#include "caudalis/catalogue/Aspersor.hpp"
#include "caudalis/charts/CartaAspersores.hpp"
#include "caudalis/design/DesignError.hpp"
#include "caudalis/design/DesignFile.hpp"
#include "caudalis/design/DesignRunner.hpp"
#include "caudalis/design/ResultLabels.hpp"
#include "caudalis/design/TextFile.hpp"
#include "caudalis/report/EvaluationReport.hpp"
#include "caudalis/fieldtests/FieldTestService.hpp"
#include "caudalis/project/CatalogueService.hpp"
#include "caudalis/project/ChartReport.hpp"
#include "caudalis/project/ChartService.hpp"
#include "caudalis/project/DataFolder.hpp"
#include "caudalis/project/ProjectSetup.hpp"
#include "caudalis/report/CsvReport.hpp"
#include "caudalis/report/DesignPrintout.hpp"
#include "caudalis/report/HtmlReport.hpp"
#include "caudalis/report/JsonReport.hpp"
#include "caudalis/report/TextReport.hpp"

namespace caudalis::cli {

using namespace caudalis::project;
using namespace caudalis::fieldtests;

namespace {

/// The system a design's chart is stored under: --system, else the file's system_id.
Long systemFor(const std::optional<long>& given, const design::DesignDescription& description) {
    const auto system = given ? given : description.systemId;
    if (!system) {
        throw UsageError("--save needs a system: give --system ID or system_id in the design file");
    }
    return static_cast<Long>(*system);
}

/// The units the command's --units names; SI when it names none.
design::Units unitsOption(const std::optional<std::string>& name) {
    return design::Units(name ? *design::Units::parse(*name) : design::UnitSystem::SI);
}

/// The units a stored chart prints in: those of --units, else those of its design file, else SI.
design::Units chartUnits(const std::optional<std::string>& name, const LoadedChart& loaded) {
    if (name || !loaded.figures || loaded.figures->design.empty()) {
        return unitsOption(name);
    }
    return design::Units(design::DesignFile::parse(loaded.figures->design, "stored design file").units);
}

nlohmann::json nozzleJson(const Aspersor& nozzle, const design::Units& units) {
    using design::Quantity;
    if (units.system() == design::UnitSystem::SI) {
        return {{"id", nozzle.id()},
                {"marca", nozzle.marca().nome},
                {"modelo", nozzle.modelo().nome},
                {"nome", nozzle.nome()},
                {"a", nozzle.a()},
                {"b", nozzle.b()},
                {"pmin", nozzle.pmin()},
                {"pmax", nozzle.pmax()},
                {"qmin", nozzle.qmin()},
                {"qmax", nozzle.qmax()},
                {"units", units.name()}};
    }
    const double b = design::coefficientValue(nozzle.b());
    return {{"id", nozzle.id()},
            {"marca", nozzle.marca().nome},
            {"modelo", nozzle.modelo().nome},
            {"nome", nozzle.nome()},
            {"a", units.flowCoefficientFromSI(design::coefficientValue(nozzle.a()), b)},
            {"b", b},
            {"pmin", units.fromSI(Quantity::Pressure, nozzle.pmin())},
            {"pmax", units.fromSI(Quantity::Pressure, nozzle.pmax())},
            {"qmin", units.fromSI(Quantity::Flow, nozzle.qmin())},
            {"qmax", units.fromSI(Quantity::Flow, nozzle.qmax())},
            {"units", units.name()}};
}

void printNozzle(std::ostream& out, const Aspersor& nozzle, const design::Units& units) {
    using design::Quantity;
    const double b = design::coefficientValue(nozzle.b());
    const auto a =
        units.system() == design::UnitSystem::SI
            ? nozzle.a()
            : fmt::format("{:.6g}", units.flowCoefficientFromSI(design::coefficientValue(nozzle.a()), b));
    fmt::print(out, "{:>6} {:<12} {:<16} {:<14} a={} b={} p {:g}-{:g} {} q {:g}-{:g} {}\n", nozzle.id(),
               nozzle.marca().nome, nozzle.modelo().nome, nozzle.nome(), a, nozzle.b(),
               units.fromSI(Quantity::Pressure, nozzle.pmin()),
               units.fromSI(Quantity::Pressure, nozzle.pmax()), units.symbol(Quantity::Pressure),
               units.fromSI(Quantity::Flow, nozzle.qmin()), units.fromSI(Quantity::Flow, nozzle.qmax()),
               units.symbol(Quantity::Flow));
}

void writeCsv(const std::string& path, const design::DesignResult& result, const design::Units& units) {
    OutputFile file(path, "CSV");
    design::CsvReport::write(file.stream(), result, units);
    file.close();
}

void writeReport(const std::string& path, const design::ReportDocument& document) {
    OutputFile file(path, "HTML report");
    file.stream() << design::HtmlReport::render(document);
    file.close();
}

/// Runs `run`, naming the option that bounds the passes when the design does not settle.
template <class Run>
auto settled(Run run) {
    try {
        return run();
    } catch (const design::DesignError& error) {
        if (error.kind() == design::DesignError::Kind::NotSettled) {
            throw NotSettledError(std::string(error.what()) + " (--max-passes)");
        }
        throw;
    }
}

void printSetup(std::ostream& out, const SetupResult& setup) {
    for (const auto& database : setup.databases) {
        fmt::print(out, "{} database: {} ({}, {} {})\n", database.kind, database.path, database.state,
                   database.count, database.counted);
    }
}

}  // namespace

void CommandLine::runInit() {
    const auto& o = *options_;
    printSetup(
        out_,
        ProjectSetup({o.folder, o.initProject, o.initCatalogue}, DataFolder::locate(o.dataFolder)).run());
}

void CommandLine::runDesign() {
    const auto& o = *options_;
    const auto designText = design::readTextFile(o.designPath, "design file");
    const auto description = design::DesignFile::parse(designText, o.designPath);
    auto charts = chartService();
    Long system = 0;
    if (o.chartName) {
        system = systemFor(o.system, description);
        charts.requireNameIsFree(*o.chartName, system);
    }
    const auto source = services_.nozzleSource(o.cataloguePath);
    const design::Units units(o.units ? *design::Units::parse(*o.units) : description.units);
    const auto result = settled([&] {
        return design::DesignRunner(design::DesignOptions{o.maxPasses, units.system()})
            .run(description, *source);
    });
    if (o.json) {
        design::JsonReport::write(out_, result, units);
    } else {
        design::TextReport::write(out_, result, units);
    }
    if (!o.csvPath.empty()) {
        writeCsv(o.csvPath, result, units);
    }
    if (!o.reportPath.empty()) {
        writeReport(o.reportPath, design::DesignPrintout::document(result, units, true));
    }
    for (const auto& finding : result.findings) {
        if (finding.severity != design::Severity::Note) {
            note(design::severityName(finding.severity) + ": " + finding.message);
        }
    }
    if (result.fails(o.strict)) {
        throw CliError(ExitCode::DesignFindings,
                       std::string(result.has(design::Severity::Error)
                                       ? "the design has errors"
                                       : "the design has warnings and --strict was given") +
                           (o.chartName ? "; the chart was not stored" : ""));
    }
    if (o.chartName) {
        const auto id = charts.store(result, designText, *o.chartName, system);
        note(fmt::format("chart \"{}\" stored in system {} with id {}", *o.chartName, system, id));
    }
}

void CommandLine::runEvaluate(const CLI::App& command) {
    const auto& o = *options_;
    const auto fieldTests = fieldTestService();
    if (command.got_subcommand("list")) {
        EvaluationReport::writeList(out_, fieldTests.list());
    } else if (command.got_subcommand("show")) {
        const auto stored = fieldTests.show(static_cast<Long>(o.evaluationId));
        if (o.json) {
            EvaluationReport::writeStoredJson(out_, stored);
        } else {
            EvaluationReport::writeStored(out_, stored);
        }
    } else {
        evaluateReadings(fieldTests);
    }
}

void CommandLine::evaluateReadings(const FieldTestService& fieldTests) {
    const auto& o = *options_;
    if (o.readingsPaths.empty()) {
        throw UsageError("evaluate needs a readings file, or list or show ID");
    }
    const EvaluationRequest request{
        o.readingsPaths,  o.gaugeDiameterM,
        o.readingsTest,   o.evaluationName,
        o.innerRadiusM,   o.lastSpanEndM,
        o.outlierPercent, o.units ? std::optional(unitsOption(o.units)) : std::nullopt};
    const auto found = fieldTests.evaluate(
        request, [&] { return designReference(fieldTests); }, o.saveEvaluation);
    const auto& outcome = found.outcome;
    if (o.json) {
        EvaluationReport::writeJson(out_, outcome);
    } else {
        EvaluationReport::write(out_, outcome);
    }
    if (!o.reportPath.empty()) {
        writeReport(o.reportPath, EvaluationReport::document(outcome));
    }
    if (found.invalidReadings > 0) {
        note(fmt::format("warning: {} invalid readings left out", found.invalidReadings));
    }
    if (o.saveEvaluation) {
        const auto id = fieldTests.save(found);
        note(fmt::format("evaluation \"{}\" stored with id {}", outcome.name, id));
    }
}

std::optional<DesignReference> CommandLine::designReference(const FieldTestService& fieldTests) {
    const auto& o = *options_;
    if (o.evaluationChartId && !o.designPath.empty()) {
        throw UsageError("give --design FILE or --chart ID, not both");
    }
    if (o.evaluationChartId) {
        return fieldTests.storedChart(static_cast<Long>(*o.evaluationChartId), o.timerPercent,
                                      o.wettedDiameterM);
    }
    if (o.designPath.empty()) {
        return std::nullopt;
    }
    return settled(
        [&] { return fieldTests.designFile(o.designPath, o.maxPasses, o.timerPercent, o.wettedDiameterM); });
}

void CommandLine::listNozzles() {
    const auto& o = *options_;
    design::NozzleSelection selection;
    selection.brand = o.brand;
    selection.model = o.model;
    const auto nozzles = services_.nozzleSource(o.cataloguePath)->nozzles(selection);
    const auto units = unitsOption(o.units);
    auto list = nlohmann::json::array();
    for (Long i = 1; i <= nozzles->Count(); ++i) {
        const auto nozzle = nozzles->objectAt<Aspersor>(i);
        if (o.json) {
            list.push_back(nozzleJson(*nozzle, units));
        } else {
            printNozzle(out_, *nozzle, units);
        }
    }
    if (o.json) {
        out_ << list.dump(2) << '\n';
    }
}

void CommandLine::importCatalogue() {
    const auto& o = *options_;
    const auto summary =
        CatalogueService(o.cataloguePath)
            .importCsv(o.csvImportPath, unitsOption(o.units).system(), err_, services_.progressOnErrorStream);
    fmt::print(out_, "imported {} nozzles into {} ({} new brands, {} new models)\n", summary.nozzles,
               o.cataloguePath, summary.newBrands, summary.newModels);
}

void CommandLine::runCatalogue(const CLI::App& command) {
    const auto& o = *options_;
    const CatalogueService catalogue(o.cataloguePath);
    if (command.got_subcommand("brands")) {
        for (const auto& brand : catalogue.brands()) {
            fmt::print(out_, "{:>6} {}\n", brand.id, brand.nome);
        }
    } else if (command.got_subcommand("models")) {
        for (const auto& model : catalogue.models(o.brand).models) {
            fmt::print(out_, "{:>6} {:<12} {}\n", model.id, model.marca.nome, model.nome);
        }
    } else if (command.got_subcommand("list")) {
        listNozzles();
    } else if (command.got_subcommand("import")) {
        importCatalogue();
    }
}

ChartService CommandLine::chartService() const {
    const auto& o = *options_;
    return ChartService([this, project = o.projectPath,
                         catalogue = o.cataloguePath] { return services_.chartStore(project, catalogue); },
                        [this, catalogue = o.cataloguePath] { return services_.nozzleSource(catalogue); });
}

FieldTestService CommandLine::fieldTestService() const {
    const auto& o = *options_;
    return FieldTestService(
        o.projectPath, [this, catalogue = o.cataloguePath] { return services_.nozzleSource(catalogue); },
        [this, project = o.projectPath, catalogue = o.cataloguePath] {
            return services_.chartStore(project, catalogue);
        });
}

void CommandLine::runChart(const CLI::App& command) {
    const auto& o = *options_;
    auto charts = chartService();
    const auto id = static_cast<Long>(o.chartId);
    if (command.got_subcommand("list")) {
        ChartReport::writeList(
            out_, charts.list(o.system ? std::optional<Long>(static_cast<Long>(*o.system)) : std::nullopt));
    } else if (command.got_subcommand("show")) {
        const auto document = charts.show(id, !o.reportPath.empty());
        const auto units = chartUnits(o.units, document.stored);
        if (!o.reportPath.empty()) {
            writeReport(o.reportPath, ChartReport::document(document, units));
        }
        ChartReport::write(out_, document, design::UnitText(units));
        if (document.stored.missingNozzles > 0) {
            note(fmt::format("warning: {} of the chart's nozzles are not in catalogue {}",
                             document.stored.missingNozzles, o.cataloguePath));
        }
    } else if (command.got_subcommand("delete")) {
        charts.remove(id);
        note(fmt::format("chart {} deleted", id));
    }
}

}  // namespace caudalis::cli
