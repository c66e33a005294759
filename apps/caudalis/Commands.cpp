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
#include "caudalis/design/CsvReport.hpp"
#include "caudalis/design/DesignError.hpp"
#include "caudalis/design/DesignFile.hpp"
#include "caudalis/design/DesignPrintout.hpp"
#include "caudalis/design/DesignRunner.hpp"
#include "caudalis/design/FieldEvaluator.hpp"
#include "caudalis/design/HtmlReport.hpp"
#include "caudalis/design/JsonReport.hpp"
#include "caudalis/design/ReadingsError.hpp"
#include "caudalis/design/ReportLabels.hpp"
#include "caudalis/design/TextFile.hpp"
#include "caudalis/design/TextReport.hpp"
#include "caudalis/fieldtests/EvaluationDesign.hpp"
#include "caudalis/fieldtests/EvaluationReport.hpp"
#include "caudalis/fieldtests/EvaluationStore.hpp"
#include "caudalis/fieldtests/ReadingsFile.hpp"
#include "caudalis/project/CatalogueDatabase.hpp"
#include "caudalis/project/CatalogueImport.hpp"
#include "caudalis/project/ChartReport.hpp"
#include "caudalis/project/DataFolder.hpp"
#include "caudalis/project/ProjectSetup.hpp"

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

/// A catalogue row written in `units`, in SI.
CatalogueRow inSI(CatalogueRow row, const design::Units& units) {
    using design::Quantity;
    row.a = units.flowCoefficientToSI(row.a, row.b);
    row.pmin = units.toSI(Quantity::Pressure, row.pmin);
    row.pmax = units.toSI(Quantity::Pressure, row.pmax);
    row.qmin = units.toSI(Quantity::Flow, row.qmin);
    row.qmax = units.toSI(Quantity::Flow, row.qmax);
    return row;
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

/// Runs the design, naming the option that bounds the passes when it does not settle.
design::DesignResult computeDesign(const design::DesignDescription& description,
                                   design::NozzleSource& nozzles, const design::DesignOptions& options) {
    try {
        return design::DesignRunner(options).run(description, nozzles);
    } catch (const design::DesignError& error) {
        if (error.kind() == design::DesignError::Kind::NotSettled) {
            throw NotSettledError(std::string(error.what()) + " (--max-passes)");
        }
        throw;
    }
}

/// The readings file's name, and the test's when one test of a sheet of several is evaluated.
std::string defaultEvaluationName(const std::vector<std::string>& paths,
                                  const std::optional<std::string>& test) {
    const auto stem = std::filesystem::path(paths.front()).stem().string();
    return test ? stem + " " + *test : stem;
}

}  // namespace

void CommandLine::runInit() {
    const auto& o = *options_;
    ProjectSetup({o.folder, o.initProject, o.initCatalogue}, DataFolder::locate(o.dataFolder)).run(out_);
}

void CommandLine::runDesign() {
    const auto& o = *options_;
    const auto designText = design::readTextFile(o.designPath, "design file");
    const auto description = design::DesignFile::parse(designText, o.designPath);
    std::unique_ptr<ChartStore> store;
    Long system = 0;
    if (o.chartName) {
        system = systemFor(o.system, description);
        store = services_.chartStore(o.projectPath, o.cataloguePath);
        store->requireNameIsFree(*o.chartName, system);
    }
    const auto source = services_.nozzleSource(o.cataloguePath);
    const design::Units units(o.units ? *design::Units::parse(*o.units) : description.units);
    const auto result =
        computeDesign(description, *source, design::DesignOptions{o.maxPasses, units.system()});
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
                           (store ? "; the chart was not stored" : ""));
    }
    if (store) {
        auto figures = design::ChartFigures::of(result);
        figures.design = designText;
        const auto id = store->saveAsNew(result.chart, *o.chartName, system, figures);
        note(fmt::format("chart \"{}\" stored in system {} with id {}", *o.chartName, system, id));
    }
}

void CommandLine::runEvaluate(const CLI::App& command) {
    const auto& o = *options_;
    if (command.got_subcommand("list")) {
        EvaluationReport::writeList(out_, EvaluationStore(o.projectPath).list());
    } else if (command.got_subcommand("show")) {
        const auto stored = EvaluationStore(o.projectPath).find(static_cast<Long>(o.evaluationId));
        if (o.json) {
            EvaluationReport::writeStoredJson(out_, stored);
        } else {
            EvaluationReport::writeStored(out_, stored);
        }
    } else {
        evaluateReadings();
    }
}

void CommandLine::evaluateReadings() {
    const auto& o = *options_;
    if (o.readingsPaths.empty()) {
        throw UsageError("evaluate needs a readings file, or list or show ID");
    }
    const auto name = o.evaluationName.value_or(defaultEvaluationName(o.readingsPaths, o.readingsTest));
    const EvaluationStore store(o.projectPath);
    if (o.saveEvaluation) {
        store.requireNameIsFree(name);
    }
    EvaluationOutcome outcome{
        name, ReadingsFile::load(o.readingsPaths, o.gaugeDiameterM, o.readingsTest), {}, {}, {}};
    design::FieldEvaluationSettings settings;
    settings.innerRadiusM = o.innerRadiusM;
    settings.lastSpanEndM = o.lastSpanEndM;
    settings.outlierPercent = o.outlierPercent;
    outcome.design = designReference();
    if (outcome.design) {
        settings.expectedDepthMm = outcome.design->expectedDepthMm;
        if (!settings.lastSpanEndM) {
            settings.lastSpanEndM = outcome.design->lastSpanEndM;
        }
    }
    try {
        outcome.result = design::FieldEvaluator::evaluate(outcome.readings, settings);
    } catch (const design::ReadingsError& error) {
        throw InputError(std::string("readings file ") + error.what());
    }
    if (outcome.design) {
        outcome.comparison = design::MeasuredDesignedComparison::compare(
            outcome.result.counted, outcome.design->machine, outcome.design->wettedDiameterM);
    }
    if (o.json) {
        EvaluationReport::writeJson(out_, outcome);
    } else {
        EvaluationReport::write(out_, outcome);
    }
    if (!o.reportPath.empty()) {
        writeReport(o.reportPath, EvaluationReport::document(outcome));
    }
    const auto invalid =
        std::count_if(outcome.result.excluded.begin(), outcome.result.excluded.end(),
                      [](const auto& e) { return e.reason == design::ExclusionReason::Invalid; });
    if (invalid > 0) {
        note(fmt::format("warning: {} invalid readings left out", invalid));
    }
    if (o.saveEvaluation) {
        const auto id = store.save(outcome.readings, outcome.result, name);
        note(fmt::format("evaluation \"{}\" stored with id {}", name, id));
    }
}

std::optional<DesignReference> CommandLine::designReference() {
    const auto& o = *options_;
    if (o.evaluationChartId && !o.designPath.empty()) {
        throw UsageError("give --design FILE or --chart ID, not both");
    }
    if (o.evaluationChartId) {
        const auto id = static_cast<Long>(*o.evaluationChartId);
        const auto wetted = services_.nozzleSource(o.cataloguePath)->wettedDiameters();
        const auto rebuilt = services_.chartStore(o.projectPath, o.cataloguePath)->rebuild(id, wetted);
        return EvaluationDesign::reference("stored chart " + std::to_string(id), rebuilt.result,
                                           o.timerPercent, o.wettedDiameterM, wetted);
    }
    if (o.designPath.empty()) {
        return std::nullopt;
    }
    const auto description = design::DesignFile::load(o.designPath);
    const auto source = services_.nozzleSource(o.cataloguePath);
    return EvaluationDesign::reference(
        o.designPath, computeDesign(description, *source, design::DesignOptions{o.maxPasses, std::nullopt}),
        o.timerPercent, o.wettedDiameterM, source->wettedDiameters());
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
    auto rows = CatalogueCsv::load(o.csvImportPath);
    const auto units = unitsOption(o.units);
    for (auto& row : rows) {
        row = inSI(row, units);
    }
    const auto summary = CatalogueImport(o.cataloguePath, err_, services_.progressOnErrorStream).run(rows);
    fmt::print(out_, "imported {} nozzles into {} ({} new brands, {} new models)\n", summary.nozzles,
               o.cataloguePath, summary.newBrands, summary.newModels);
}

void CommandLine::runCatalogue(const CLI::App& command) {
    const auto& o = *options_;
    const CatalogueDatabase catalogue(o.cataloguePath);
    if (command.got_subcommand("brands")) {
        for (const auto& brand : catalogue.brands()) {
            fmt::print(out_, "{:>6} {}\n", brand.id, brand.nome);
        }
    } else if (command.got_subcommand("models")) {
        const auto brands = catalogue.brands();
        if (o.brand) {
            catalogue.requireBrand(brands, *o.brand);
        }
        for (const auto& model : catalogue.models()) {
            if (!o.brand || model.marca.nome == *o.brand) {
                fmt::print(out_, "{:>6} {:<12} {}\n", model.id, model.marca.nome, model.nome);
            }
        }
    } else if (command.got_subcommand("list")) {
        listNozzles();
    } else if (command.got_subcommand("import")) {
        importCatalogue();
    }
}

void CommandLine::runChart(const CLI::App& command) {
    const auto& o = *options_;
    const auto store = services_.chartStore(o.projectPath, o.cataloguePath);
    const auto id = static_cast<Long>(o.chartId);
    if (command.got_subcommand("list")) {
        ChartReport::writeList(
            out_, store->list(o.system ? std::optional<Long>(static_cast<Long>(*o.system)) : std::nullopt));
    } else if (command.got_subcommand("show")) {
        const auto loaded = store->find(id);
        if (!o.reportPath.empty()) {
            const auto rebuilt =
                store->rebuild(id, services_.nozzleSource(o.cataloguePath)->wettedDiameters());
            writeReport(o.reportPath, design::DesignPrintout::document(
                                          rebuilt.result, design::Units(rebuilt.result.design.units), true));
        }
        ChartReport::write(out_, loaded);
        if (loaded.missingNozzles > 0) {
            note(fmt::format("warning: {} of the chart's nozzles are not in catalogue {}",
                             loaded.missingNozzles, o.cataloguePath));
        }
    } else if (command.got_subcommand("delete")) {
        store->destroy(id);
        note(fmt::format("chart {} deleted", id));
    }
}

}  // namespace caudalis::cli
