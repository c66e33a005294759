#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "CliErrors.hpp"
#include "ProgramRun.hpp"
#include "SampleNozzles.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/design/ChartFigures.hpp"

// The built program designs the shipped examples against the sample catalogue that
// `caudalis init` made, and stores, lists, shows and deletes the charts.
using namespace caudalis::cli;
using namespace caudalis::cli::clitest;

namespace {

struct ExampleFigures {
    const char* name;
    long outlets;
    double designFlow;
};

class ProgramDesignTest : public ProgramTest {
protected:
    nlohmann::json designJson(const std::string& example) {
        const auto result = run("design " + ProgramTest::example("designs/" + example + ".json") + " --json");
        EXPECT_EQ(result.exitCode, 0) << result.err;
        return nlohmann::json::parse(result.out);
    }
};

}  // namespace

TEST_F(ProgramDesignTest, ExamplesMeetTheirDesignFlow) {
    for (const ExampleFigures& example :
         {ExampleFigures{"small", 32, 8}, ExampleFigures{"realistic", 141, 50},
          ExampleFigures{"hilly", 101, 32}}) {
        SCOPED_TRACE(example.name);
        const auto summary = designJson(example.name)["summary"];
        EXPECT_EQ(summary["outlets"], example.outlets);
        EXPECT_DOUBLE_EQ(summary["design_flow_lps"].get<double>(), example.designFlow);
        EXPECT_NEAR(summary["computed_flow_lps"].get<double>(), example.designFlow,
                    0.06 * example.designFlow);
        EXPECT_LE(summary["outlets_without_nozzle"].get<long>(), 4);
        const auto document = designJson(example.name);
        for (const auto& finding : document["findings"]) {
            EXPECT_EQ(finding["severity"], "note") << finding["message"];
        }
        for (const char* figure : {"cu_heermann_hein_percent", "du_low_quarter_percent"}) {
            const double value = summary[figure].get<double>();
            EXPECT_GT(value, 90) << figure;
            EXPECT_LE(value, 100) << figure;
        }
    }
}

TEST_F(ProgramDesignTest, DesignOnFileDatabasesLoadsNoPostgresClientLibrary) {
    // The dynamic loader lists every library it loads (LD_DEBUG=libs); libpq and the security
    // libraries behind it are loaded only for a PostgreSQL connection string.
    const auto result = run("design " + example("designs/small.json"), "LD_DEBUG=libs");
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_NE(result.err.find("libsqlite3.so"), std::string::npos) << result.err;
    EXPECT_EQ(result.err.find("libpq.so"), std::string::npos) << result.err;
    EXPECT_EQ(result.err.find("libkrb5"), std::string::npos) << result.err;
}

TEST_F(ProgramDesignTest, NozzlesComeFromTheCatalogueDatabase) {
    const auto document = designJson("hilly");
    for (const auto& outlet : document["outlets"]) {
        if (!outlet["aspersor"].is_null()) {
            EXPECT_EQ(outlet["aspersor"]["marca"], "Rotaflux");
            EXPECT_GT(outlet["aspersor"]["id"].get<long>(), 0);
        }
    }
    const auto text = run("design " + example("designs/realistic.json"));
    EXPECT_EQ(text.exitCode, 0);
    EXPECT_NE(text.out.find("Sprinkler chart: Home farm north pivot, 7 spans (system 400)"),
              std::string::npos);
    EXPECT_NE(text.out.find("Vellora Big Gun 85"), std::string::npos);
}

TEST_F(ProgramDesignTest, SavedChartIsListedShownAndDeleted) {
    const auto saved = run("design " + example("designs/realistic.json") + " --save 'North 2024'");
    ASSERT_EQ(saved.exitCode, 0) << saved.err;
    EXPECT_NE(saved.err.find("caudalis: chart \"North 2024\" stored in system 400 with id 1\n"),
              std::string::npos);
    ASSERT_EQ(run("design " + example("designs/small.json") + " --save Demo --system 7").exitCode, 0);

    EXPECT_EQ(run("chart list").out,
              "    system     id  name\n"
              "         7      2  Demo\n"
              "       400      1  North 2024\n");
    EXPECT_EQ(run("chart list --system 400").out, "    system     id  name\n       400      1  North 2024\n");

    const auto shown = run("chart show 1");
    ASSERT_EQ(shown.exitCode, 0) << shown.err;
    EXPECT_EQ(shown.out.rfind("Chart 1: North 2024 (system 400)\n", 0), 0u) << shown.out;
    EXPECT_NE(shown.out.find("End-gun booster     150 kPa"), std::string::npos);
    EXPECT_NE(shown.out.find("Kostiakov k 50, a 0.6"), std::string::npos);
    // 141 outlets, 3 of them plugged near the centre.
    EXPECT_NE(shown.out.find("Mounted nozzles: 138\n"), std::string::npos);
    EXPECT_NE(shown.out.find("Vellora      Big Gun 85"), std::string::npos);
    // The end gun by its address, with the stored distance, pressures and flows, and the timer.
    EXPECT_EQ(shown.out.find("-1--1"), std::string::npos);
    EXPECT_NE(shown.out.find("\n    gun  Vellora"), std::string::npos) << shown.out;
    EXPECT_NE(shown.out.find("distance m  pipe kPa"), std::string::npos);
    EXPECT_NE(shown.out.find("Timer settings"), std::string::npos);
    EXPECT_NE(shown.out.find("\n      50       40.0"), std::string::npos) << "50 % doubles the 20 h";

    const auto deleted = run("chart delete 1");
    EXPECT_EQ(deleted.exitCode, 0) << deleted.err;
    EXPECT_EQ(run("chart list").out, "    system     id  name\n         7      2  Demo\n");
    expectFailure(run("chart show 1"), ExitCode::BadInput,
                  "no chart with id 1 in project database project.db");
    execute("project.db", "SELECT 1");
    caudalis::Connection project("Provider=SQLite;Data Source=" + file("project.db"));
    project.Open();
    EXPECT_FALSE(caudalis::design::ChartFigures::load(project, 1).has_value())
        << "the figures went with the chart";
    EXPECT_TRUE(caudalis::design::ChartFigures::load(project, 2).has_value());
}

TEST_F(ProgramDesignTest, TakenChartNameLeavesTheDatabasesAsTheyWere) {
    ASSERT_EQ(run("design " + example("designs/small.json") + " --save Demo").exitCode, 0);
    const auto before = databases();
    const auto again = run("design " + example("designs/small.json") + " --save Demo");
    expectFailure(again, ExitCode::BadInput, "a chart named \"Demo\" already exists in system 2");
    EXPECT_TRUE(again.out.empty());
    EXPECT_EQ(databases(), before);
    // The same name in another system is free.
    EXPECT_EQ(run("design " + example("designs/small.json") + " --save Demo --system 3").exitCode, 0);
}

TEST_F(ProgramDesignTest, SaveNeedsASystem) {
    auto text = readFile(sourcePath("examples/designs/small.json"));
    text.replace(text.find("\"system_id\": 2,"), 15, "");
    const auto design = write("nosystem.json", text);
    const auto before = databases();
    expectFailure(run("design " + quoted(design) + " --save x"), ExitCode::Usage, "--save needs a system");
    EXPECT_EQ(databases(), before);
}
