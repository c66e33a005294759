#include "CommandLine.hpp"

#include <unistd.h>

#include <limits>

#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include "CliErrors.hpp"
#include "CommandOptions.hpp"
#include "caudalis/core/Error.hpp"
#include "caudalis/design/DesignError.hpp"
#include "caudalis/design/Limits.hpp"
#include "caudalis/project/CatalogueDatabaseNozzleSource.hpp"
#include "caudalis/project/DatabaseChartStore.hpp"
#include "caudalis/project/PlainText.hpp"

namespace caudalis::cli {

using namespace caudalis::project;
using namespace caudalis::fieldtests;

namespace {

constexpr long maxSystem = std::numeric_limits<std::int32_t>::max();

/// Where a database option's help says what it takes.
std::string databaseHelp(const char* purpose) {
    return std::string(purpose) + ": a file, or a PostgreSQL connection string";
}

void addProjectOption(CLI::App& command, std::string& path, const char* purpose) {
    command.add_option("--project", path, databaseHelp(purpose))->capture_default_str();
}

void addCatalogueOption(CLI::App& command, std::string& path, const char* purpose) {
    command.add_option("--catalogue", path, databaseHelp(purpose))->capture_default_str();
}

/// A gauge opening in metres: above 0 and at most 1 m (a value in millimetres is refused).
CLI::Validator gaugeDiameter() {
    return CLI::Validator(
        [](std::string& text) {
            double value = 0;
            if (!CLI::detail::lexical_cast(text, value) || !(value > 0 && value <= 1)) {
                return "must be a diameter in metres, > 0 and at most 1 (0.1 for a 100 mm gauge), not " +
                       text;
            }
            return std::string();
        },
        "METRES");
}

void addChartId(CLI::App& command, long& id) {
    command.add_option("id", id, "chart key (see chart list)")
        ->required()
        ->check(CLI::Range(1L, design::limits::largestChartId));
}

}  // namespace

Services Services::databases() {
    return {[](const std::string& path) { return std::make_unique<CatalogueDatabaseNozzleSource>(path); },
            [](const std::string& project, const std::string& catalogue) {
                return std::make_unique<DatabaseChartStore>(project, catalogue);
            },
            ::isatty(STDERR_FILENO) == 1};
}

CommandLine::CommandLine(Services services, std::ostream& out, std::ostream& err)
    : services_(std::move(services)), out_(out), err_(err), options_(std::make_unique<Options>()) {}

CommandLine::~CommandLine() = default;

void CommandLine::note(const std::string& message) {
    err_ << "caudalis: " << oneLine(message) << '\n';
}

void CommandLine::defineInit(CLI::App& app) {
    auto& o = *options_;
    auto* init = app.add_subcommand(
        "init", "create project.db and catalogue.db (sample catalogue) in a folder, unless they exist");
    init->add_option("folder", o.folder, "folder of the databases (created when missing)")
        ->capture_default_str();
    init->add_option("--project", o.initProject,
                     "project database to create instead of FOLDER/project.db: a file, or a PostgreSQL "
                     "connection string (postgresql://... or key=value pairs; schema=NAME for a schema)");
    init->add_option("--catalogue", o.initCatalogue,
                     "catalogue database to create instead of FOLDER/catalogue.db: a file or a PostgreSQL "
                     "connection string");
    init->add_option("--data-dir", o.dataFolder,
                     "folder of the schema and sample SQL files (default: $CAUDALIS_DATA_DIR, the installed "
                     "share/caudalis, the source tree's data)");
}

void CommandLine::defineDesign(CLI::App& app) {
    auto& o = *options_;
    auto* design =
        app.add_subcommand("design", "compute a machine from a design file and print its sprinkler chart");
    design->add_option("design-file", o.designPath, "design file (JSON, see docs/design-file.md)")
        ->required();
    addCatalogueOption(*design, o.cataloguePath, "catalogue database of nozzles");
    addProjectOption(*design, o.projectPath, "project database for --save");
    design->add_option("--save", o.chartName, "store the chart under this name in the project database");
    design
        ->add_option("--system", o.system, "system the chart is stored under (default: the file's system_id)")
        ->check(CLI::Range(1L, maxSystem));
    design->add_flag("--json", o.json, "print the whole result as JSON instead of the chart");
    design->add_option("--csv", o.csvPath, "also write the outlets as CSV to this file");
    design->add_option("--report", o.reportPath,
                       "also write the whole printout with its plots as one HTML page (opens offline, prints "
                       "to PDF)");
    design
        ->add_option("--units", o.units,
                     "print in these units: si (kPa, l/s, m, mm) or us (psi, gpm, ft, in); "
                     "default: the design file's")
        ->check(CLI::IsMember({"si", "us"}));
    design->add_flag("--strict", o.strict,
                     "exit with status 4 when the design has a warning (errors always do)");
    design->add_option("--max-passes", o.maxPasses, "give up after this many passes of the march")
        ->check(CLI::PositiveNumber)
        ->capture_default_str();
}

void CommandLine::defineEvaluate(CLI::App& app) {
    auto& o = *options_;
    auto* evaluate = app.add_subcommand("evaluate", "evaluate the catch-can readings of a field test");
    evaluate->fallthrough();
    evaluate
        ->add_option("readings", o.readingsPaths,
                     "readings: a .csv file with named columns, or the text form (amount in ml, one space, "
                     "distance in m, per line; two radial lines separated by a blank line, or one file each)")
        ->expected(1, 2);
    evaluate
        ->add_option("--gauge-diameter", o.gaugeDiameterM, "opening diameter of the rain gauges, in metres")
        ->check(gaugeDiameter());
    evaluate->add_option("--test", o.readingsTest,
                         "the test to read from a CSV file whose test column names several");
    evaluate->add_option("--inner-radius", o.innerRadiusM, "leave out the collectors nearer the centre (m)")
        ->check(CLI::NonNegativeNumber);
    evaluate
        ->add_option(
            "--last-span-end", o.lastSpanEndM,
            "where the last span ends (m): collectors beyond are the end-gun zone (default: from --design)")
        ->check(CLI::PositiveNumber);
    evaluate->add_option("--outlier", o.outlierPercent, "list collectors more than this many % off the mean")
        ->check(CLI::PositiveNumber)
        ->capture_default_str();
    evaluate->add_option("--design", o.designPath, "lay the readings over this design file's depth profile");
    evaluate
        ->add_option("--chart", o.evaluationChartId,
                     "lay the readings over the depth profile of this stored chart (see chart list)")
        ->check(CLI::Range(1L, design::limits::largestChartId));
    addCatalogueOption(*evaluate, o.cataloguePath, "catalogue database of nozzles for --design and --chart");
    evaluate->add_option("--timer", o.timerPercent, "the drive's timer setting during the test, %")
        ->check(CLI::Range(1.0, 100.0))
        ->capture_default_str();
    evaluate
        ->add_option(
            "--wetted-diameter", o.wettedDiameterM,
            "the sprinklers' wetted diameter in m (default: the design's pluviometry check, else 12)")
        ->check(CLI::PositiveNumber);
    evaluate->add_option("--name", o.evaluationName,
                         "name of the evaluation (default: the readings file's name)");
    evaluate->add_flag("--save", o.saveEvaluation,
                       "store the evaluation and its figures in the project database");
    addProjectOption(*evaluate, o.projectPath, "project database for --chart, --save, list and show");
    evaluate->add_flag("--json", o.json, "print everything as JSON");
    evaluate
        ->add_option("--units", o.units,
                     "print distances and depths in si (m, mm) or us (ft, in); default: those of the "
                     "readings file")
        ->check(CLI::IsMember({"si", "us"}));
    evaluate->add_option("--report", o.reportPath,
                         "write the evaluation as one self-contained HTML page (plot and figures)");
    evaluate->add_subcommand("list", "list the stored evaluations with their CU and DU");
    evaluate->add_subcommand("show", "print a stored evaluation and its figures")
        ->add_option("id", o.evaluationId, "evaluation key (see evaluate list)")
        ->required()
        ->check(CLI::PositiveNumber);
}

void CommandLine::defineCatalogue(CLI::App& app) {
    auto& o = *options_;
    auto* catalogue = app.add_subcommand("catalogue", "list or import the nozzles of a catalogue database");
    catalogue->fallthrough();
    catalogue->require_subcommand(1);
    addCatalogueOption(*catalogue, o.cataloguePath, "catalogue database");
    catalogue->add_subcommand("brands", "list the brands");
    catalogue->add_subcommand("models", "list the models")->add_option("--brand", o.brand, "only this brand");
    auto* list = catalogue->add_subcommand("list", "list the nozzles");
    list->add_option("--brand", o.brand, "only this brand");
    list->add_option("--model", o.model, "only this model");
    list->add_flag("--json", o.json, "print JSON");
    list->add_option("--units", o.units, "print pressures and flows in si (kPa, l/s) or us (psi, gpm)")
        ->check(CLI::IsMember({"si", "us"}));
    auto* import = catalogue->add_subcommand("import", "add the nozzles of a CSV file, all or none");
    import->add_option("csv-file", o.csvImportPath, "brand,model,nozzle,a,b,pmin,pmax,qmin,qmax per row")
        ->required();
    import
        ->add_option("--units", o.units,
                     "units of the file: si (q = a p^b in l/s and kPa) or us (gpm and psi)")
        ->check(CLI::IsMember({"si", "us"}));
}

void CommandLine::defineChart(CLI::App& app) {
    auto& o = *options_;
    auto* chart = app.add_subcommand("chart", "list, show or delete stored sprinkler charts");
    chart->fallthrough();
    chart->require_subcommand(1);
    addProjectOption(*chart, o.projectPath, "project database");
    addCatalogueOption(*chart, o.cataloguePath, "catalogue database the charts' nozzles come from");
    chart->add_subcommand("list", "list the stored charts")
        ->add_option("--system", o.system, "only the charts of this system")
        ->check(CLI::Range(1L, maxSystem));
    auto* show = chart->add_subcommand("show", "print a stored chart");
    addChartId(*show, o.chartId);
    show->add_option("--report", o.reportPath,
                     "also write the chart computed again as one HTML page, as design --report does");
    show->add_option("--units", o.units,
                     "print in these units: si (kPa, l/s, m, mm) or us (psi, gpm, ft, in); "
                     "default: the stored design file's")
        ->check(CLI::IsMember({"si", "us"}));
    addChartId(*chart->add_subcommand("delete", "delete a stored chart"), o.chartId);
}

void CommandLine::defineCommands(CLI::App& app) {
    app.set_version_flag("--version", CAUDALIS_VERSION);
    app.require_subcommand(1);
    defineInit(app);
    defineDesign(app);
    defineEvaluate(app);
    defineCatalogue(app);
    defineChart(app);
    defineServe(app);
}

int CommandLine::run(int argc, const char* const* argv) {
    CLI::App app("caudalis: design and evaluation of centre-pivot irrigation machines", "caudalis");
    defineCommands(app);
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& success) {
        return app.exit(success, out_, err_);
    } catch (const CLI::ParseError& error) {
        note(std::string(error.what()) + " (see caudalis --help)");
        return ExitCode::Usage;
    }
    try {
        dispatch(app);
        return ExitCode::Ok;
    } catch (const CliError& error) {
        note(error.what());
        return error.code();
    } catch (const design::DesignError& error) {
        note(error.what());
        return error.kind() == design::DesignError::Kind::NotSettled ? ExitCode::NotSettled
                                                                     : ExitCode::BadInput;
    } catch (const Error& error) {
        note(fmt::format("the computation failed: {} (error {})", error.description(), error.number()));
        return ExitCode::BadInput;
    } catch (const std::exception& error) {
        note(error.what());
        return ExitCode::BadInput;
    }
}

void CommandLine::dispatch(const CLI::App& app) {
    if (app.got_subcommand("init")) {
        runInit();
    } else if (app.got_subcommand("design")) {
        runDesign();
    } else if (app.got_subcommand("evaluate")) {
        runEvaluate(*app.get_subcommand("evaluate"));
    } else if (app.got_subcommand("catalogue")) {
        runCatalogue(*app.get_subcommand("catalogue"));
    } else if (app.got_subcommand("chart")) {
        runChart(*app.get_subcommand("chart"));
    } else if (app.got_subcommand("serve")) {
        runServe();
    }
}

}  // namespace caudalis::cli
