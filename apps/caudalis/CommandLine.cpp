#include "CommandLine.hpp"

#include <fmt/format.h>
#include <fmt/ostream.h>
#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "CatalogueDatabaseNozzleSource.hpp"
#include "CliErrors.hpp"
#include "CsvReport.hpp"
#include "DatabaseChartStore.hpp"
#include "DesignFile.hpp"
#include "DesignRunner.hpp"
#include "JsonReport.hpp"
#include "PlotReport.hpp"
#include "TextReport.hpp"
#include "caudalis/catalogue/Aspersor.hpp"
#include "caudalis/charts/CartaAspersores.hpp"
#include "caudalis/core/Error.hpp"

namespace caudalis::cli {

struct CommandLine::Options {
    std::string designPath;
    std::string cataloguePath;
    std::string projectPath;
    std::string csvPath;
    std::string plotPath;
    std::string chartName;
    bool json = false;
    long maxPasses = 1000;
    std::string brand;
    std::string model;
    long chartId = 0;
    std::string readingsPath;
    double gaugeDiameterMm = 0;
};

namespace {

std::string oneLine(std::string text) {
    for (auto& c : text) {
        if (c == '\n' || c == '\r') {
            c = ' ';
        }
    }
    return text;
}

std::optional<std::string> given(const std::string& text) {
    return text.empty() ? std::nullopt : std::optional<std::string>(text);
}

}  // namespace

Services Services::databases() {
    return {[](const std::string& path) { return std::make_unique<CatalogueDatabaseNozzleSource>(path); },
            [](const std::string& project, const std::string& catalogue) {
                return std::make_unique<DatabaseChartStore>(project, catalogue);
            }};
}

CommandLine::CommandLine(Services services, std::ostream& out, std::ostream& err)
    : services_(std::move(services)), out_(out), err_(err), options_(std::make_unique<Options>()) {}

CommandLine::~CommandLine() = default;

void CommandLine::note(const std::string& message) {
    err_ << "caudalis: " << oneLine(message) << '\n';
}

void CommandLine::defineCommands(CLI::App& app) {
    auto& o = *options_;
    app.set_version_flag("--version", CAUDALIS_VERSION);
    app.require_subcommand(1);

    auto* init =
        app.add_subcommand("init", "create a project database and a catalogue database with the sample data");
    init->add_option("--project", o.projectPath, "project database to create")->required();
    init->add_option("--catalogue", o.cataloguePath, "catalogue database to create")->required();

    auto* design =
        app.add_subcommand("design", "compute a machine from a design file and print its sprinkler chart");
    design->add_option("design-file", o.designPath, "design file (JSON, see docs/design-file.md)")
        ->required();
    design->add_option("--catalogue", o.cataloguePath, "catalogue database of nozzles")->required();
    design->add_flag("--json", o.json, "print the whole result as JSON instead of the chart");
    design->add_option("--csv", o.csvPath, "also write the outlets as CSV to this file");
    design->add_option("--plot", o.plotPath, "also draw pressure, flow and depth to this .png or .svg file");
    design->add_option("--max-passes", o.maxPasses, "give up after this many passes of the march")
        ->check(CLI::PositiveNumber)
        ->capture_default_str();
    auto* save = design->add_option("--save-chart", o.chartName, "store the chart under this name");
    design->add_option("--project", o.projectPath, "project database for --save-chart");
    save->needs(design->get_option("--project"));

    auto* evaluate = app.add_subcommand("evaluate", "evaluate catch-can readings of an installed machine");
    evaluate
        ->add_option("readings-file", o.readingsPath, "catch-can readings (amount, space, distance per line)")
        ->required();
    evaluate->add_option("--gauge-diameter-mm", o.gaugeDiameterMm, "opening diameter of the rain gauges")
        ->required()
        ->check(CLI::PositiveNumber);
    evaluate->add_option("--project", o.projectPath, "project database to store the evaluation in");

    auto* catalogue = app.add_subcommand("catalogue", "list the nozzles of a catalogue database");
    catalogue->add_option("--catalogue", o.cataloguePath, "catalogue database")->required();
    catalogue->add_option("--brand", o.brand, "only this brand");
    catalogue->add_option("--model", o.model, "only this model");
    catalogue->add_flag("--json", o.json, "print JSON");

    auto* chart = app.add_subcommand("chart", "list, show or delete stored sprinkler charts");
    chart->add_option("--project", o.projectPath, "project database")->required();
    chart->add_option("--catalogue", o.cataloguePath, "catalogue database (for show)");
    chart->require_subcommand(1);
    chart->add_subcommand("list", "list the stored charts");
    chart->add_subcommand("show", "print a stored chart")
        ->add_option("id", o.chartId, "chart key")
        ->required();
    chart->add_subcommand("delete", "delete a stored chart")
        ->add_option("id", o.chartId, "chart key")
        ->required();
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
        return error.exitCode();
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
        throw NotBuiltError("database");
    }
    if (app.got_subcommand("design")) {
        runDesign();
    } else if (app.got_subcommand("evaluate")) {
        throw NotBuiltError("field evaluation");
    } else if (app.got_subcommand("catalogue")) {
        runCatalogue();
    } else if (app.got_subcommand("chart")) {
        runChart(*app.get_subcommand("chart"));
    }
}

void CommandLine::runDesign() {
    const auto& o = *options_;
    if (!o.plotPath.empty()) {
        PlotReport::requireSupportedFormat(o.plotPath);
    }
    const auto design = DesignFile::load(o.designPath);
    const auto source = services_.nozzleSource(o.cataloguePath);
    const auto result = DesignRunner(o.maxPasses).run(design, *source);
    if (o.json) {
        JsonReport::write(out_, result);
    } else {
        TextReport::write(out_, result);
    }
    if (!o.csvPath.empty()) {
        CsvReport::writeFile(o.csvPath, result);
    }
    if (!o.plotPath.empty()) {
        PlotReport::writeFile(o.plotPath, result);
    }
    if (result.summary.unfittedOutlets > 0) {
        note(fmt::format("warning: {} outlets have no nozzle within the tolerance",
                         result.summary.unfittedOutlets));
    }
    if (!o.chartName.empty()) {
        const auto id =
            services_.chartStore(o.projectPath, o.cataloguePath)->saveAsNew(result.chart, o.chartName);
        note(fmt::format("chart \"{}\" stored with id {}", o.chartName, id));
    }
}

void CommandLine::runCatalogue() {
    const auto& o = *options_;
    const NozzleSelection selection{0, given(o.brand), given(o.model)};
    const auto nozzles = services_.nozzleSource(o.cataloguePath)->nozzles(selection);
    auto list = nlohmann::json::array();
    for (Long i = 1; i <= nozzles->Count(); ++i) {
        const auto nozzle = nozzles->objectAt<Aspersor>(i);
        if (o.json) {
            list.push_back({{"id", nozzle->id()},
                            {"marca", nozzle->marca().nome},
                            {"modelo", nozzle->modelo().nome},
                            {"nome", nozzle->nome()},
                            {"a", nozzle->a()},
                            {"b", nozzle->b()},
                            {"pmin", nozzle->pmin()},
                            {"pmax", nozzle->pmax()},
                            {"qmin", nozzle->qmin()},
                            {"qmax", nozzle->qmax()}});
        } else {
            fmt::print(out_, "{:>6} {:<12} {:<14} {:<14} a={} b={} p {:g}-{:g} kPa q {:g}-{:g} l/s\n",
                       nozzle->id(), nozzle->marca().nome, nozzle->modelo().nome, nozzle->nome(), nozzle->a(),
                       nozzle->b(), nozzle->pmin(), nozzle->pmax(), nozzle->qmin(), nozzle->qmax());
        }
    }
    if (o.json) {
        out_ << list.dump(2) << '\n';
    }
}

void CommandLine::runChart(const CLI::App& chart) {
    const auto& o = *options_;
    const auto store = services_.chartStore(o.projectPath, o.cataloguePath);
    if (chart.got_subcommand("list")) {
        for (const auto& info : store->list()) {
            fmt::print(out_, "{:>6} {}\n", info.id, info.nome);
        }
    } else if (chart.got_subcommand("show")) {
        const auto found = store->find(static_cast<Long>(o.chartId));
        fmt::print(out_, "{:>6} {}: {} mounted nozzles, end-gun booster {:g} kPa\n", found->id(),
                   found->getNome(), found->mountedAspersores()->Count(), found->getEndGunBoost());
    } else if (chart.got_subcommand("delete")) {
        store->destroy(static_cast<Long>(o.chartId));
    }
}

}  // namespace caudalis::cli
