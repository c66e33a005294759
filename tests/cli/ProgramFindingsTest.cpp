#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "CliErrors.hpp"
#include "ProgramRun.hpp"

// Findings, exit statuses and units of the `design` command, and units of the catalogue.
using namespace caudalis::cli;
using namespace caudalis::cli::clitest;

namespace {

class ProgramFindingsTest : public ProgramTest {
protected:
    /// The small example with `from` replaced by `to`, written into the folder.
    std::string smallWith(const std::string& from, const std::string& to) const {
        auto text = readFile(sourcePath("examples/designs/small.json"));
        const auto at = text.find(from);
        EXPECT_NE(at, std::string::npos) << from;
        text.replace(at, from.size(), to);
        return quoted(write("changed.json", text));
    }
    /// The small example with 200 kPa regulators on both spans: the pipe cannot feed them.
    std::string starved() const {
        return smallWith(
            "\"nozzle_selection\"",
            "\"regulators\": [{\"span\": 1, \"pressure_kpa\": 200}, {\"span\": 2, \"pressure_kpa\": "
            "200}], \"nozzle_selection\"");
    }
};

}  // namespace

TEST_F(ProgramFindingsTest, WarningsArePrintedAndFailOnlyUnderStrict) {
    const auto relaxed = run("design " + starved());
    EXPECT_EQ(relaxed.exitCode, ExitCode::Ok) << relaxed.err;
    const auto starvedRow = relaxed.out.find("\nwarning   regulator-starved ");
    ASSERT_NE(starvedRow, std::string::npos) << relaxed.out;
    const auto row = relaxed.out.substr(starvedRow, relaxed.out.find('\n', starvedRow + 1) - starvedRow);
    EXPECT_NE(row.find("span 1: "), std::string::npos) << row;
    EXPECT_NE(relaxed.err.find("caudalis: warning: span 1: "), std::string::npos) << relaxed.err;
    const auto before = databases();
    const auto strict = run("design " + starved() + " --strict --save Starved");
    EXPECT_EQ(strict.exitCode, ExitCode::DesignFindings);
    EXPECT_NE(strict.err.find(
                  "caudalis: the design has warnings and --strict was given; the chart was not stored\n"),
              std::string::npos)
        << strict.err;
    EXPECT_EQ(databases(), before);
    EXPECT_EQ(run("design " + example("designs/small.json") + " --strict").exitCode, ExitCode::Ok);
}

TEST_F(ProgramFindingsTest, ErrorFindingsFailWithoutStrict) {
    // 8 kPa cannot lift the water the 1 m the ground rises: the pipe pressure goes negative.
    const auto result =
        run("design " + smallWith("\"inlet_pressure_kpa\": 220", "\"inlet_pressure_kpa\": 8") + " --json");
    EXPECT_EQ(result.exitCode, ExitCode::DesignFindings) << result.err;
    const auto document = nlohmann::json::parse(result.out);
    ASSERT_FALSE(document["findings"].empty());
    EXPECT_EQ(document["findings"][0]["severity"], "error");
    EXPECT_EQ(document["findings"][0]["code"], "pipe-pressure-negative");
}

TEST_F(ProgramFindingsTest, FindingsAndUnitsInJson) {
    const auto result = run("design " + starved() + " --json --units us");
    ASSERT_EQ(result.exitCode, ExitCode::Ok) << result.err;
    const auto document = nlohmann::json::parse(result.out);
    EXPECT_EQ(document["units"]["system"], "us");
    EXPECT_EQ(document["units"]["flow"], "gpm");
    EXPECT_NEAR(document["summary"]["design_flow_gpm"].get<double>(), 8 / 0.0630902, 1e-9);
    EXPECT_EQ(document["findings"][0]["code"], "regulator-starved");
    EXPECT_NE(document["findings"][0]["message"].get<std::string>().find("psi"), std::string::npos);
    EXPECT_EQ(document["package"]["spans"], "Rotaflux RX Spinner");
}

TEST_F(ProgramFindingsTest, UsExampleIsPrintedInItsOwnUnitsOrInSi) {
    const auto us = run("design " + example("designs/us-quarter-mile.json"));
    ASSERT_EQ(us.exitCode, ExitCode::Ok) << us.err;
    EXPECT_EQ(us.err, "");
    EXPECT_NE(us.out.find("Inlet 45.00 psi, design flow 800.00 gpm"), std::string::npos) << us.out;
    const auto si = run("design " + example("designs/us-quarter-mile.json") + " --units si");
    EXPECT_NE(si.out.find("Inlet 310.3 kPa, design flow 50.472 l/s"), std::string::npos) << si.out;
    expectFailure(run("design " + example("designs/us-quarter-mile.json") + " --units imperial"),
                  ExitCode::Usage, "--units");
}

TEST_F(ProgramFindingsTest, ANumberTooLargeNamesTheFileAndTheField) {
    const auto file = smallWith("\"design_flow_lps\": 8", "\"design_flow_lps\": 1e999");
    expectFailure(
        run("design " + file), ExitCode::BadInput,
        "changed.json: design_flow_lps (1e999) is too large (beyond the range of a double-precision "
        "number)");
}

TEST_F(ProgramFindingsTest, AbsurdInputsGetOneClearMessage) {
    expectFailure(run("design " + smallWith("\"design_flow_lps\": 8", "\"design_flow_lps\": 700")),
                  ExitCode::BadInput, "design_flow_lps must be above 0 and at most");
    expectFailure(run("design " + smallWith("\"outlet_spacing_cm\": 300", "\"outlet_spacing_cm\": 2.9")),
                  ExitCode::BadInput, "spans[0].outlet_spacing_cm must be between 30 and 1000 cm, not 2.9");
}

TEST_F(ProgramFindingsTest, CatalogueInUsUnits) {
    const auto si = nlohmann::json::parse(run("catalogue list --model 'LDN-360 Spray' --json").out);
    const auto us =
        nlohmann::json::parse(run("catalogue list --model 'LDN-360 Spray' --json --units us").out);
    ASSERT_EQ(si.size(), us.size());
    EXPECT_NEAR(us[0]["pmax"].get<double>() * 6.894757, si[0]["pmax"].get<double>(), 1e-9);
    EXPECT_NEAR(us[0]["qmax"].get<double>() * 0.0630902, si[0]["qmax"].get<double>(), 1e-9);
    EXPECT_NE(run("catalogue list --model 'LDN-360 Spray' --units us").out.find("psi"), std::string::npos);
    // A nozzle written in gpm and psi arrives in l/s and kPa: 5 gpm at 20 psi with b = 0.5.
    const auto csv = write("us.csv", "Acme,US Spray,#20,1.118034,0.5,6,20,2.7,5\n");
    ASSERT_EQ(run("catalogue import " + quoted(csv) + " --units us").exitCode, ExitCode::Ok);
    const auto imported = nlohmann::json::parse(run("catalogue list --brand Acme --json").out);
    ASSERT_EQ(imported.size(), 1u);
    EXPECT_NEAR(imported[0]["pmax"].get<double>(), 20 * 6.894757, 1e-9);
    EXPECT_NEAR(imported[0]["qmax"].get<double>(), 5 * 0.0630902, 1e-9);
}
