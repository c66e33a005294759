#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <string>

#include "ServeSettings.hpp"
#include "caudalis/design/NozzleSource.hpp"
#include "caudalis/fieldtests/FieldTestService.hpp"
#include "caudalis/project/ChartService.hpp"
#include "caudalis/project/ChartStore.hpp"

namespace CLI {
class App;
}

namespace caudalis::cli {

/// The data sources the commands use; tests may replace the nozzle source and chart store
/// with in-memory ones.
struct Services {
    /// The nozzles of the catalogue database at the path.
    std::function<std::unique_ptr<design::NozzleSource>(const std::string& cataloguePath)> nozzleSource;
    /// The charts of the project database, with models from the catalogue database.
    std::function<std::unique_ptr<project::ChartStore>(const std::string& projectPath,
                                                       const std::string& cataloguePath)>
        chartStore;
    /// Whether long imports draw a progress bar on the error stream (a terminal).
    bool progressOnErrorStream = false;

    /// The sources backed by the databases; progress shown when stderr is a terminal.
    static Services databases();
};

/// The `caudalis` program: parses the arguments, runs one command (`init`, `design`,
/// `evaluate`, `catalogue`, `chart`, `serve`) and turns every failure into one line on the error
/// stream, "caudalis: ...", and an exit code (see `ExitCode`).
class CommandLine {
public:
    CommandLine(Services services, std::ostream& out, std::ostream& err);
    ~CommandLine();
    int run(int argc, const char* const* argv);

    /// Serves the web app and its API until the process is stopped.
    using Server = std::function<void(const ServeSettings&, std::ostream& err)>;
    /// Gives `serve` its web server; without one, `serve` says the program has none.
    void serveWith(Server server) { server_ = std::move(server); }

    struct Options;

private:
    void defineCommands(CLI::App& app);
    void defineInit(CLI::App& app);
    void defineDesign(CLI::App& app);
    void defineEvaluate(CLI::App& app);
    void defineCatalogue(CLI::App& app);
    void defineChart(CLI::App& app);
    void defineServe(CLI::App& app);
    void dispatch(const CLI::App& app);

    void runInit();
    void runDesign();
    void runEvaluate(const CLI::App& evaluate);
    void evaluateReadings(const fieldtests::FieldTestService& fieldTests);
    /// The design the readings are laid over: --design FILE or --chart ID, or none.
    std::optional<fieldtests::DesignReference> designReference(
        const fieldtests::FieldTestService& fieldTests);
    /// The services on the databases the options name.
    project::ChartService chartService() const;
    fieldtests::FieldTestService fieldTestService() const;
    void runCatalogue(const CLI::App& catalogue);
    void listNozzles();
    void importCatalogue();
    void runChart(const CLI::App& chart);
    void runServe();
    void note(const std::string& message);

    Services services_;
    std::ostream& out_;
    std::ostream& err_;
    std::unique_ptr<Options> options_;
    Server server_;
};

}  // namespace caudalis::cli
