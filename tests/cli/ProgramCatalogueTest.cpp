#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "CliErrors.hpp"
#include "ProgramRun.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/design/WettedDiameters.hpp"

// The built program lists the sample catalogue and imports CSV files into it, all or nothing.
using namespace caudalis::cli;
using namespace caudalis::cli::clitest;

namespace {

std::string csvRows(const std::string& brand, const std::string& model, int count) {
    std::string rows;
    for (int i = 1; i <= count; ++i) {
        rows += brand + "," + model + ",#" + std::to_string(i) + ",0.0" + std::to_string(10 + i) +
                ",0.5,50,300,0.1,0.3\n";
    }
    return rows;
}

}  // namespace

using ProgramCatalogueTest = ProgramTest;

TEST_F(ProgramCatalogueTest, InitReportsTheDatabasesAndLeavesThemAlone) {
    execute("project.db", "INSERT INTO tb_cartas (nome, boost, id_sistema) VALUES ('kept', 0, 1)");
    const auto again = run("init");
    EXPECT_EQ(again.exitCode, 0) << again.err;
    EXPECT_NE(again.out.find(
                  "project database: " + (std::filesystem::canonical(folder.path()) / "project.db").string() +
                  " (already there, left as it was, 1 charts)"),
              std::string::npos)
        << again.out;
    EXPECT_NE(again.out.find("(already there, left as it was, 398 nozzles)"), std::string::npos);
    const auto elsewhere = run("init sub/demo");
    EXPECT_EQ(elsewhere.exitCode, 0) << elsewhere.err;
    EXPECT_NE(elsewhere.out.find("sub/demo/catalogue.db (created, 398 nozzles)"), std::string::npos);
    expectFailure(run("init other --data-dir ."), ExitCode::BadInput,
                  "data folder . (--data-dir) does not hold");
    expectFailure(run("init other", "CAUDALIS_DATA_DIR=/nonexistent"), ExitCode::BadInput,
                  "data folder /nonexistent (CAUDALIS_DATA_DIR) does not hold");
    EXPECT_FALSE(std::filesystem::exists(file("other")));
}

TEST_F(ProgramCatalogueTest, BrandsModelsAndNozzles) {
    EXPECT_EQ(run("catalogue brands").out,
              "     1 Aquarion\n     2 Rotaflux\n     3 Nimbra\n     4 Vellora\n");
    const auto models = run("catalogue models --brand Vellora");
    EXPECT_EQ(models.out,
              "     7 Vellora      VS-10 Spray\n     9 Vellora      VI-20 Impact\n    12 Vellora      Big "
              "Gun 85\n");
    const auto all = nlohmann::json::parse(run("catalogue list --json").out);
    EXPECT_EQ(all.size(), 398u);
    const auto guns =
        nlohmann::json::parse(run("catalogue list --brand Vellora --model 'Big Gun 85' --json").out);
    ASSERT_FALSE(guns.empty());
    for (const auto& nozzle : guns) {
        EXPECT_EQ(nozzle["modelo"], "Big Gun 85");
    }
    expectFailure(run("catalogue models --brand Acme"), ExitCode::BadInput, "unknown brand \"Acme\"");
}

TEST_F(ProgramCatalogueTest, ImportReusesBrandsAndModels) {
    const auto csv =
        write("new.csv", "brand,model,nozzle,a,b,pmin,pmax,qmin,qmax\n" +
                             csvRows("Nimbra", "Drift D3 Spray", 2) + csvRows("Nimbra", "NX", 3) +
                             "\"Zephyr\",\"Z \"\"one\"\"\",z-1,0.02,0.5,100,400,0.2,0.4\n");
    const auto result = run("catalogue import " + quoted(csv));
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.out, "imported 6 nozzles into catalogue.db (1 new brands, 2 new models)\n");
    EXPECT_EQ(run("catalogue brands").out,
              "     1 Aquarion\n     2 Rotaflux\n     3 Nimbra\n     4 Vellora\n     5 Zephyr\n");
    EXPECT_EQ(run("catalogue models --brand Nimbra").out,
              "     6 Nimbra       Drift D3 Spray\n    10 Nimbra       SR-100 End Gun\n"
              "    11 Nimbra       SR-75 End Gun\n    13 Nimbra       NX\n");
    EXPECT_EQ(nlohmann::json::parse(run("catalogue list --model NX --json").out).size(), 3u);
    EXPECT_EQ(nlohmann::json::parse(run("catalogue list --json").out).size(), 404u);
    EXPECT_NE(run("catalogue list --brand Zephyr").out.find("Z \"one\""), std::string::npos);
}

TEST_F(ProgramCatalogueTest, ImportStoresTheModelsWettedDiameters) {
    // Model 6 is the sample's Drift D3 Spray (10 m); NX is new and becomes model 13.
    const auto csv = write("new.csv",
                           "Nimbra,Drift D3 Spray,#90,0.011,0.5,50,300,0.1,0.3,9.5\n"
                           "Nimbra,NX,#1,0.011,0.5,50,300,0.1,0.3,\n"
                           "Nimbra,NX,#2,0.012,0.5,50,300,0.1,0.3,21\n");
    const auto result = run("catalogue import " + quoted(csv));
    ASSERT_EQ(result.exitCode, 0) << result.err;
    caudalis::Connection catalogue("Provider=SQLite;Data Source=" + file("catalogue.db"));
    catalogue.Open();
    const auto diameters = caudalis::design::WettedDiameters::load(catalogue);
    EXPECT_EQ(diameters.size(), 13u);
    EXPECT_EQ(diameters.at(6), 9.5);
    EXPECT_EQ(diameters.at(13), 21);
    EXPECT_EQ(diameters.at(1), 12) << "the sample's own value stays";
}

TEST_F(ProgramCatalogueTest, ImportOfWettedDiametersNeedsTheSideTable) {
    execute("catalogue.db", "DROP TABLE model_wetted_diameters");
    const auto before = databases();
    const auto csv = write("new.csv", "Nimbra,NX,#1,0.011,0.5,50,300,0.1,0.3,14\n");
    expectFailure(run("catalogue import " + quoted(csv)), ExitCode::BadInput,
                  "catalogue database catalogue.db has no table for wetted diameters: load "
                  "data/schema/catalogue.sql into it again");
    EXPECT_EQ(databases(), before);
    const auto without = write("plain.csv", "Nimbra,NX,#1,0.011,0.5,50,300,0.1,0.3\n");
    EXPECT_EQ(run("catalogue import " + quoted(without)).exitCode, 0) << "nozzles alone still import";
}

TEST_F(ProgramCatalogueTest, FailedImportLeavesTheCatalogueAsItWas) {
    // The database itself refuses the fourth nozzle, after three were written.
    execute("catalogue.db",
            "CREATE TRIGGER refuse BEFORE INSERT ON Boquillas WHEN NEW.denominacion = '#4' "
            "BEGIN SELECT RAISE(ABORT, 'refused by the test'); END;");
    const auto before = databases();
    const auto csv = write("new.csv", csvRows("Nimbra", "NX", 6));
    expectFailure(run("catalogue import " + quoted(csv)), ExitCode::BadInput,
                  "cannot import the nozzle of CSV line 4 into catalogue.db: refused by the test");
    EXPECT_EQ(databases(), before);
    for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
        EXPECT_EQ(entry.path().filename().string().find("catalogue.db."), std::string::npos) << entry.path();
    }
}

TEST_F(ProgramCatalogueTest, BadCsvNamesTheLineAndColumn) {
    const auto before = databases();
    const auto cases = {
        std::pair{"Nimbra,NX,#1,0.01,0.5,50,300,0.1\n", "line 1: 8 fields, expected 9"},
        std::pair{"Nimbra,NX,#1,0.01,0.5,50,300,0.1,0.3\nNimbra,NX,#2,-1,0.5,50,300,0.1,0.3\n",
                  "line 2: a must be > 0"},
        std::pair{"Nimbra,NX,#1,abc,0.5,50,300,0.1,0.3\n", "line 1: a must be a number (\"abc\")"},
        std::pair{"Nimbra, ,#1,0.01,0.5,50,300,0.1,0.3\n", "line 1: model must not be blank"},
        std::pair{"Nimbra,NX,#1,0.01,0.5,300,50,0.1,0.3\n", "line 1: pmax must be >= pmin"},
        std::pair{"O'Brien,NX,#1,0.01,0.5,50,300,0.1,0.3\n", "brand \"O'Brien\" may not contain"},
        std::pair{"brand,model,nozzle,a,b,pmin,pmax,qmin,qmax\n", "holds no nozzles"}};
    for (const auto& [content, message] : cases) {
        SCOPED_TRACE(content);
        expectFailure(run("catalogue import " + quoted(write("bad.csv", content))), ExitCode::BadInput,
                      message);
    }
    expectFailure(run("catalogue import missing.csv"), ExitCode::BadInput,
                  "cannot open catalogue CSV file missing.csv: No such file or directory");
    EXPECT_EQ(databases(), before);
}
