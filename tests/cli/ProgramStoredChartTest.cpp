#include <gtest/gtest.h>

#include <cmath>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "CliErrors.hpp"
#include "ProgramRun.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/db/Recordset.hpp"
#include "caudalis/design/StoredChartDesign.hpp"
#include "caudalis/fieldtests/DesignedMachineProfile.hpp"

// The built program computes stored charts again: `chart show ID --report` and
// `evaluate READINGS --chart ID`.
using namespace caudalis::cli;
using namespace caudalis::cli::clitest;

namespace {

class ProgramStoredChartTest : public ProgramTest {
protected:
    void SetUp() override {
        ProgramTest::SetUp();
        const auto saved =
            run("design " + example("designs/small.json") + " --save Designed --report design.html");
        ASSERT_EQ(saved.exitCode, 0) << saved.err;
    }

    std::string connectionTo(const std::string& database) const {
        return "Provider=SQLite;Data Source=" + file(database);
    }

    long number(const std::string& database, const std::string& sql) const {
        caudalis::Connection connection(connectionTo(database));
        connection.Open();
        const auto rows = connection.Execute(sql);
        return rows->EOF_() ? 0 : static_cast<long>(rows->Fields("n").toDouble());
    }

    /// Gives outlet `span`-`outlet` of chart `chart` the nozzle of the same model two sizes
    /// smaller; returns the nozzle's id.
    long fitTwoSizesSmaller(long chart, int span, int outlet) const {
        const auto where =
            fmt::format("WHERE id_carta = {} AND tramo = {} AND saida = {}", chart, span, outlet);
        const long mounted = number("project.db", "SELECT id_aspersor AS n FROM tb_aspersores " + where);
        const long smaller = number(
            "catalogue.db",
            fmt::format("SELECT ID_Boquillas AS n FROM Boquillas WHERE id_modelo = (SELECT id_modelo FROM "
                        "Boquillas WHERE ID_Boquillas = {0}) AND a < (SELECT a FROM Boquillas WHERE "
                        "ID_Boquillas = {0}) ORDER BY a DESC LIMIT 1 OFFSET 1",
                        mounted));
        execute("project.db", fmt::format("UPDATE tb_aspersores SET id_aspersor = {} {}", smaller, where));
        return smaller;
    }

    /// Collectors every 3 m on two lines catching what `profile` lays, 80 % of it, with a
    /// little scatter that differs between the lines.
    std::string synthesisedReadings(const caudalis::design::DesignedMachine& profile,
                                    double wettedRadius) const {
        std::string csv = "line,collector,distance_m,depth_mm\n";
        for (int line = 1; line <= 2; ++line) {
            for (int i = 4; i <= 31; ++i) {
                const double r = 3.0 * i;
                const double depth =
                    0.8 * (1 + 0.02 * std::sin(1.7 * r + line)) *
                    caudalis::design::MeasuredDesignedComparison::designedDepthAt(profile, r, wettedRadius);
                csv += fmt::format("{},{},{},{:.6f}\n", line, i, r, depth);
            }
        }
        return csv;
    }
};

}  // namespace

TEST_F(ProgramStoredChartTest, ChartShowWritesTheDesignsReport) {
    const auto shown = run("chart show 1 --report chart.html");
    ASSERT_EQ(shown.exitCode, 0) << shown.err;
    EXPECT_NE(shown.out.find("Mounted nozzles:"), std::string::npos) << shown.out;
    const auto report = readFile(file("chart.html"));
    ASSERT_FALSE(report.empty());
    // The same report but for the package line and the note that the chart was computed again.
    const auto design = readFile(file("design.html"));
    EXPECT_NE(report.find("<td>stored-chart</td>"), std::string::npos);
    const auto tablesOf = [](const std::string& html) { return html.substr(html.find("</table>")); };
    EXPECT_EQ(tablesOf(report).substr(tablesOf(report).find("<table")),
              tablesOf(design).substr(tablesOf(design).find("<table")));
}

TEST_F(ProgramStoredChartTest, AChartStoredWithoutItsDesignHasNoReport) {
    execute("project.db", "DELETE FROM chart_design");
    expectFailure(run("chart show 1 --report chart.html"), ExitCode::BadInput,
                  "chart 1 was stored without its design file, so its machine is unknown: store the design "
                  "again with caudalis design FILE --save NAME");
    EXPECT_TRUE(readFile(file("chart.html")).empty());
    EXPECT_EQ(run("chart show 1").exitCode, 0);
    expectFailure(run("chart show 5 --report chart.html"), ExitCode::BadInput, "no chart with id 5");
}

TEST_F(ProgramStoredChartTest, InitAddsTheDesignTableToAnOlderProject) {
    execute("project.db", "DROP TABLE chart_design");
    expectFailure(run("design " + example("designs/small.json") + " --save Again"), ExitCode::BadInput,
                  "the chart was not stored");
    EXPECT_EQ(number("project.db", "SELECT count(*) AS n FROM tb_cartas"), 1);
    const auto init = run("init .");
    ASSERT_EQ(init.exitCode, 0) << init.err;
    EXPECT_NE(init.out.find("already there, missing side tables added"), std::string::npos) << init.out;
    const auto stored = run("design " + example("designs/small.json") + " --save Again");
    ASSERT_EQ(stored.exitCode, 0) << stored.err;
    // The failed save was rolled back whole, so the chart gets the id it would have had anyway.
    EXPECT_NE(stored.err.find("stored in system 2 with id 2"), std::string::npos) << stored.err;
    EXPECT_EQ(run("chart show 2 --report again.html").exitCode, 0);
}

TEST_F(ProgramStoredChartTest, EvaluateAgainstAChartFindsANozzleTwoSizesSmaller) {
    // The crew's machine: the same chart with outlet 2-4 two nozzle sizes smaller.
    ASSERT_EQ(run("design " + example("designs/small.json") + " --save Installed").exitCode, 0);
    ASSERT_GT(fitTwoSizesSmaller(2, 2, 4), 0);
    const auto installed =
        caudalis::design::StoredChartDesign::rebuild(connectionTo("project.db"), file("catalogue.db"), 2);
    ASSERT_EQ(installed.missingNozzles, 0);
    const auto readings = write(
        "crew.csv", synthesisedReadings(caudalis::design::DesignedMachineProfile::of(installed.result), 7.5));

    const auto outcome = run("evaluate " + quoted(readings) + " --chart 1 --json");
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const auto comparison = nlohmann::json::parse(outcome.out)["comparison"];
    EXPECT_EQ(comparison["design_file"], "stored chart 1");
    // The sprinklers water 15 m across, as the catalogue gives for their model.
    EXPECT_EQ(comparison["wetted_diameter_from"], "the catalogue's Rotaflux RX Spinner");
    EXPECT_EQ(comparison["outlets"][0]["span"], 2);
    // The dip is put on outlet 4 or its inner neighbour (the sample catalogue's sizes are close).
    EXPECT_GE(comparison["outlets"][0]["outlet"].get<int>(), 3);
    EXPECT_LE(comparison["outlets"][0]["outlet"].get<int>(), 4);
    EXPECT_LT(comparison["outlets"][0]["estimated_percent"].get<double>(), -5);
    // Against the chart as designed the figures are those of the design file itself.
    const auto fromFile =
        run("evaluate " + quoted(readings) + " --design " + example("designs/small.json") + " --json");
    ASSERT_EQ(fromFile.exitCode, 0) << fromFile.err;
    const auto designed = nlohmann::json::parse(fromFile.out)["comparison"];
    EXPECT_EQ(comparison["outlets"], designed["outlets"]);
    EXPECT_EQ(comparison["spans"], designed["spans"]);
}

TEST_F(ProgramStoredChartTest, EvaluateNamesAMissingChartAndRefusesTwoDesigns) {
    const auto readings = write("r.csv", "distance_m,depth_mm\n10,5\n20,6\n30,5\n40,6\n50,5\n");
    expectFailure(run("evaluate " + quoted(readings) + " --chart 9"), ExitCode::BadInput,
                  "no chart with id 9 in project database");
    expectFailure(
        run("evaluate " + quoted(readings) + " --chart 1 --design " + example("designs/small.json")),
        ExitCode::Usage, "give --design FILE or --chart ID, not both");
    execute("project.db", "DELETE FROM chart_design");
    expectFailure(run("evaluate " + quoted(readings) + " --chart 1"), ExitCode::BadInput,
                  "chart 1 was stored without its design file");
}
