#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <vector>

#include <nlohmann/json.hpp>

#include "CliErrors.hpp"
#include "CommandLine.hpp"
#include "SampleNozzles.hpp"
#include "caudalis/charts/CartaAspersores.hpp"
#include "caudalis/design/InMemoryNozzleSource.hpp"

using namespace caudalis;
using namespace caudalis::cli;
using namespace caudalis::project;

namespace {

/// A chart store that keeps what it is given, to see what `--save` hands over.
class RecordingChartStore : public ChartStore {
public:
    std::shared_ptr<CartaAspersores> saved;
    std::string savedName;
    Long savedSystem = 0;
    Long destroyed = 0;

    void requireNameIsFree(const std::string& name, Long system) override {
        if (name == "taken") {
            throw InputError("a chart named \"taken\" already exists in system " + std::to_string(system));
        }
    }
    Long saveAsNew(const std::shared_ptr<CartaAspersores>& chart, const std::string& name, Long system,
                   const design::ChartFigures& figures) override {
        savedFigures = figures;
        saved = chart;
        savedName = name;
        savedSystem = system;
        return 42;
    }
    std::vector<StoredChart> list(std::optional<Long> system) override {
        return {StoredChart{system.value_or(3), CartaInfo{"one", 1}},
                StoredChart{system.value_or(5), CartaInfo{"two", 2}}};
    }
    LoadedChart find(Long id) override {
        auto chart = makeCartaAspersores();
        chart->id(id);
        chart->setNome("found");
        chart->setEndGunBoost(120);
        return LoadedChart{chart, 8, 2, std::nullopt};
    }
    void destroy(Long id) override { destroyed = id; }
    design::RebuiltChart rebuild(Long id, const std::map<Long, double>&) override {
        throw InputError("the recording store keeps no design for chart " + std::to_string(id));
    }
    design::ChartFigures savedFigures;
};

struct Outcome {
    int exitCode;
    std::string out;
    std::string err;
};

class CommandLineTest : public ::testing::Test {
protected:
    std::shared_ptr<RecordingChartStore> store = std::make_shared<RecordingChartStore>();
    std::vector<std::string> paths;
    std::string lastCataloguePath;

    ~CommandLineTest() override {
        for (const auto& path : paths) {
            std::filesystem::remove(path);
        }
    }

    Services inMemory() {
        return {
            [this](const std::string& path) {
                lastCataloguePath = path;
                return std::make_unique<design::InMemoryNozzleSource>(caudalis::testing::sampleCatalogue());
            },
            [this](const std::string&, const std::string&) {
                struct Forwarding : ChartStore {
                    std::shared_ptr<RecordingChartStore> target;
                    void requireNameIsFree(const std::string& n, Long s) override {
                        target->requireNameIsFree(n, s);
                    }
                    Long saveAsNew(const std::shared_ptr<CartaAspersores>& c, const std::string& n, Long s,
                                   const design::ChartFigures& f) override {
                        return target->saveAsNew(c, n, s, f);
                    }
                    std::vector<StoredChart> list(std::optional<Long> s) override { return target->list(s); }
                    LoadedChart find(Long id) override { return target->find(id); }
                    void destroy(Long id) override { target->destroy(id); }
                    design::RebuiltChart rebuild(Long id, const std::map<Long, double>& w) override {
                        return target->rebuild(id, w);
                    }
                };
                auto forwarding = std::make_unique<Forwarding>();
                forwarding->target = store;
                return forwarding;
            }};
    }

    Outcome run(std::vector<std::string> args, Services services) {
        args.insert(args.begin(), "caudalis");
        std::vector<const char*> argv;
        for (const auto& arg : args) {
            argv.push_back(arg.c_str());
        }
        std::ostringstream out, err;
        CommandLine commandLine(std::move(services), out, err);
        const int code = commandLine.run(static_cast<int>(argv.size()), argv.data());
        return {code, out.str(), err.str()};
    }
    Outcome run(std::vector<std::string> args) { return run(std::move(args), inMemory()); }

    std::string example(const std::string& name) {
        return caudalis::testing::sourcePath("examples/designs/" + name + ".json");
    }
    std::string temporary(const std::string& name) {
        const auto path =
            (std::filesystem::temp_directory_path() / (std::to_string(::getpid()) + "-" + name)).string();
        paths.push_back(path);
        return path;
    }
};

std::string readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

}  // namespace

TEST_F(CommandLineTest, DesignPrintsTheSprinklerChart) {
    const auto result = run({"design", example("realistic")});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(lastCataloguePath, "catalogue.db");
    EXPECT_EQ(run({"design", example("small"), "--catalogue", "sample.db"}).exitCode, 0);
    EXPECT_EQ(lastCataloguePath, "sample.db");
    for (const char* expected :
         {"Sprinkler chart: Home farm north pivot, 7 spans (system 400)", "Spans", "Outlets", "Summary",
          "Computed discharge", "End gun", "Peak application rate", "CU Heermann-Hein, per-outlet depths",
          "DU low quarter, per-outlet depths", "CU Heermann-Hein, application profile", "\n7-19 ", "\ngun ",
          "Vellora Big Gun 85", "stay plugged", "Timer settings", "Runoff", "Verdict"}) {
        EXPECT_NE(result.out.find(expected), std::string::npos) << expected;
    }
    // Plugged outlets near the centre are a note, printed but not repeated as a warning.
    EXPECT_EQ(result.err, "");
}

TEST_F(CommandLineTest, DesignAsJsonUsesTheRecordFieldNames) {
    const auto result = run({"design", example("realistic"), "--catalogue", "c.db", "--json"});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    const auto document = nlohmann::json::parse(result.out);
    EXPECT_EQ(document["name"], "Home farm north pivot, 7 spans");
    ASSERT_EQ(document["outlets"].size(), 7u * 19 + 7 + 1);
    const auto& outlet = document["outlets"][100];
    for (const char* key :
         {"span", "outlet", "distanciaAoPivot", "cota", "caudal", "pressao_ideal", "pressao_real",
          "pressao_actuante", "caudal_do_aspersor", "over_pressure", "aspersor", "depth_mm"}) {
        EXPECT_TRUE(outlet.contains(key)) << key;
    }
    EXPECT_EQ(document["outlets"].back()["place"], "end_gun");
    EXPECT_EQ(document["outlets"].back()["aspersor"]["marca"], "Vellora");
    EXPECT_DOUBLE_EQ(document["outlets"].back()["aspersor"]["b"].get<double>(), 0.5);
    EXPECT_TRUE(document["spans"][0].contains("entry_conditions"));
    EXPECT_TRUE(document["spans"][0]["exit_condition"].contains("pressao"));
    EXPECT_TRUE(document["summary"]["cu_heermann_hein_percent"].is_number());
    EXPECT_EQ(document["summary"]["peak_application_rates"].size(), 2u);
}

TEST_F(CommandLineTest, DesignWritesCsv) {
    const auto csv = temporary("outlets.csv");
    ASSERT_EQ(run({"design", example("hilly"), "--catalogue", "c", "--csv", csv}).exitCode, 0);
    const auto table = readFile(csv);
    EXPECT_EQ(table.rfind(
                  "span,outlet,place,distanciaAoPivot_m,cota_m,caudal_lps,pressao_ideal_kpa,pressao_real_kpa,"
                  "pressao_actuante_kpa,",
                  0),
              0u);
    const auto lines = std::count(table.begin(), table.end(), '\n');
    EXPECT_EQ(lines, 1 + 4 * 20 + 17 + 4);
    EXPECT_NE(table.find("\"Rotaflux\",\"RX Spinner"), std::string::npos);
}

TEST_F(CommandLineTest, DesignWritesTheHtmlReport) {
    const auto html = temporary("report.html");
    const auto result = run({"design", example("hilly"), "--catalogue", "c", "--report", html});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    const auto page = readFile(html);
    EXPECT_EQ(page.rfind("<!DOCTYPE html>", 0), 0u);
    EXPECT_NE(
        page.find("<title>Sprinkler chart: Hillside pivot with regulators and drops (system 5)</title>"),
        std::string::npos);
    EXPECT_NE(page.find("caudalisPlot(\"plot-1\""), std::string::npos);
    EXPECT_NE(page.find("Vellora PR-20"), std::string::npos);
    const auto refused =
        run({"design", example("small"), "--catalogue", "c", "--report", "/nonexistent/r.html"});
    EXPECT_EQ(refused.exitCode, ExitCode::BadInput);
    EXPECT_NE(refused.err.find("cannot write HTML report file /nonexistent/r.html"), std::string::npos)
        << refused.err;
}

TEST_F(CommandLineTest, UnwritableOutputNamesTheFile) {
    const auto result = run({"design", example("small"), "--catalogue", "c", "--csv", "/nonexistent/x.csv"});
    EXPECT_EQ(result.exitCode, ExitCode::BadInput);
    EXPECT_EQ(result.err, "caudalis: cannot write CSV file /nonexistent/x.csv: No such file or directory\n");
}

TEST_F(CommandLineTest, TooFewPassesEndsWithExitCode3) {
    const auto result = run({"design", example("realistic"), "--catalogue", "c", "--max-passes", "1"});
    EXPECT_EQ(result.exitCode, ExitCode::NotSettled);
    EXPECT_EQ(result.err, "caudalis: the computation did not settle within 1 pass (--max-passes)\n");
    EXPECT_EQ(run({"design", example("small"), "--catalogue", "c", "--max-passes", "0"}).exitCode,
              ExitCode::Usage);
}

TEST_F(CommandLineTest, SaveHandsTheChartToTheStore) {
    const auto result = run({"design", example("realistic"), "--save", "North 2024", "--json"});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    ASSERT_NE(store->saved, nullptr);
    EXPECT_EQ(store->savedName, "North 2024");
    EXPECT_EQ(store->savedSystem, 400);
    EXPECT_DOUBLE_EQ(store->saved->getEndGunBoost(), 150);
    // The timer table and the outlet figures go with the chart.
    EXPECT_EQ(store->savedFigures.speeds.tempoH100, 20);
    ASSERT_FALSE(store->savedFigures.outlets.empty());
    EXPECT_EQ(store->savedFigures.outlets.back().outlet, "gun");
    EXPECT_NE(result.err.find("caudalis: chart \"North 2024\" stored in system 400 with id 42"),
              std::string::npos);
    // The JSON on stdout stays clean.
    EXPECT_NO_THROW(nlohmann::json::parse(result.out));
    ASSERT_EQ(run({"design", example("small"), "--save", "x", "--system", "9"}).exitCode, 0);
    EXPECT_EQ(store->savedSystem, 9);
}

TEST_F(CommandLineTest, TakenChartNameStopsBeforeTheComputation) {
    const auto result = run({"design", example("small"), "--save", "taken"});
    EXPECT_EQ(result.exitCode, ExitCode::BadInput);
    EXPECT_EQ(result.err, "caudalis: a chart named \"taken\" already exists in system 2\n");
    EXPECT_TRUE(result.out.empty());
    EXPECT_EQ(store->saved, nullptr);
}

TEST_F(CommandLineTest, CatalogueListsTheSelectedNozzles) {
    const auto result = run({"catalogue", "list", "--brand", "Vellora", "--json"});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    const auto list = nlohmann::json::parse(result.out);
    ASSERT_FALSE(list.empty());
    for (const auto& nozzle : list) {
        EXPECT_EQ(nozzle["marca"], "Vellora");
    }
    const auto text = run({"catalogue", "--catalogue", "c", "list", "--model", "RX Spinner"});
    EXPECT_NE(text.out.find("RX Spinner"), std::string::npos);
    EXPECT_EQ(text.out.find("Aquarion"), std::string::npos);
    const auto none = run({"catalogue", "list", "--brand", "X", "--model", "Y"});
    EXPECT_EQ(none.exitCode, ExitCode::BadInput);
    EXPECT_EQ(
        none.err,
        "caudalis: the catalogue holds no nozzles of brand \"X\" and of model \"Y\" (nozzle_selection)\n");
}

TEST_F(CommandLineTest, ChartCommandsUseTheStore) {
    const auto list = run({"chart", "--project", "p", "list"});
    EXPECT_EQ(list.exitCode, 0);
    EXPECT_EQ(list.out, "    system     id  name\n         3      1  one\n         5      2  two\n");
    EXPECT_EQ(run({"chart", "list", "--system", "4"}).out,
              "    system     id  name\n         4      1  one\n         4      2  two\n");
    const auto show = run({"chart", "show", "7", "--catalogue", "c"});
    EXPECT_EQ(show.out.rfind("Chart 7: found (system 8)\n  End-gun booster     120 kPa\n", 0), 0u)
        << show.out;
    EXPECT_NE(show.out.find("Mounted nozzles: 0\n"), std::string::npos);
    EXPECT_EQ(show.err, "caudalis: warning: 2 of the chart's nozzles are not in catalogue c\n");
    const auto deleted = run({"chart", "--project", "p", "delete", "9"});
    EXPECT_EQ(deleted.exitCode, 0);
    EXPECT_EQ(deleted.err, "caudalis: chart 9 deleted\n");
    EXPECT_EQ(store->destroyed, 9);
    EXPECT_EQ(run({"chart", "--project", "p"}).exitCode, ExitCode::Usage);
    EXPECT_EQ(run({"chart", "show", "0"}).exitCode, ExitCode::Usage);
}

TEST_F(CommandLineTest, HelpAndVersionSucceed) {
    const auto help = run({"--help"});
    EXPECT_EQ(help.exitCode, 0);
    for (const char* command : {"init", "design", "evaluate", "catalogue", "chart"}) {
        EXPECT_NE(help.out.find(command), std::string::npos) << command;
    }
    const auto designHelp = run({"design", "--help"});
    EXPECT_NE(designHelp.out.find("--max-passes"), std::string::npos);
    EXPECT_EQ(run({"--version"}).out, CAUDALIS_TEST_VERSION "\n");
}
