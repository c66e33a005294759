#include <gtest/gtest.h>

#include <unistd.h>

#include <atomic>

#include "CliErrors.hpp"
#include "PersistenceDatabases.hpp"
#include "PostgresTestServer.hpp"
#include "ProgramRun.hpp"

// The built program keeps an office's databases on the tests' PostgreSQL server.
using namespace caudalis::cli;
using namespace caudalis::cli::clitest;
using caudalis::testing::executeAllOn;
using caudalis::testing::queryRowsText;

namespace {

/// The number after "port=" in a key=value connection string.
std::string portOf(const std::string& connection) {
    const auto start = connection.find("port=") + 5;
    return connection.substr(start, connection.find(' ', start) - start);
}

/// Two schemas of the server's `postgres` database that no test has used, named by URIs.
class ProgramPostgres : public ProgramTest {
protected:
    ProgramPostgres() {
        static std::atomic<int> counter{0};
        const std::string suffix = std::to_string(::getpid()) + "_" + std::to_string(++counter);
        projectSchema = "office_" + suffix;
        catalogueSchema = "catalogue_" + suffix;
        const std::string uri = "postgresql://caudalis@127.0.0.1:" + portOf(server) + "/postgres?schema=";
        project = uri + projectSchema;
        catalogue = uri + catalogueSchema;
    }

    ~ProgramPostgres() override {
        try {
            executeAllOn(server + " dbname=postgres",
                         {"DROP SCHEMA IF EXISTS " + projectSchema + " CASCADE",
                          "DROP SCHEMA IF EXISTS " + catalogueSchema + " CASCADE"});
        } catch (...) {
            // The server is thrown away after the tests anyway.
        }
    }

    Outcome initServer() const {
        return run("init --project " + quoted(project) + " --catalogue " + quoted(catalogue));
    }

    std::string databasesOnServer() const {
        std::string text;
        for (const char* table : {"marca", "Modelos", "Boquillas"}) {
            for (const auto& row :
                 queryRowsText(catalogue, std::string("SELECT * FROM ") + table + " ORDER BY 1")) {
                text += row + "\n";
            }
        }
        for (const auto& row : queryRowsText(project, "SELECT * FROM tb_cartas ORDER BY 1")) {
            text += row + "\n";
        }
        return text;
    }

    std::string server = caudalis::testing::PostgresTestServer::sharedConnection();
    std::string projectSchema;
    std::string catalogueSchema;
    std::string project;
    std::string catalogue;
};

TEST_F(ProgramPostgres, InitCreatesTheTablesInTheNamedSchemasAndThenLeavesThemAlone) {
    const auto created = initServer();
    ASSERT_EQ(created.exitCode, 0) << created.err;
    EXPECT_NE(created.out.find("project database: " + project + " (created, 0 charts)"), std::string::npos)
        << created.out;
    EXPECT_NE(created.out.find("catalogue database: " + catalogue + " (created, 398 nozzles)"),
              std::string::npos);
    EXPECT_EQ(queryRowsText(project, "SELECT count(*) FROM pipe_materials"), std::vector<std::string>{"5"});
    const auto again = initServer();
    ASSERT_EQ(again.exitCode, 0) << again.err;
    EXPECT_NE(again.out.find("(already there, left as it was, 0 charts)"), std::string::npos) << again.out;
    EXPECT_NE(again.out.find("(already there, left as it was, 398 nozzles)"), std::string::npos);
}

TEST_F(ProgramPostgres, ASchemaWithSomeOfTheTablesIsNotTakenForOurs) {
    executeAllOn(server + " dbname=postgres", {"CREATE SCHEMA " + projectSchema,
                                               "CREATE TABLE " + projectSchema + ".tb_cartas (id integer)"});
    expectFailure(initServer(), ExitCode::BadInput,
                  "is not a Caudalis project database (it has no table tb_aspersores");
}

TEST_F(ProgramPostgres, DesignSavesIntoTheServerAndChartShowJoinsItsCatalogue) {
    ASSERT_EQ(initServer().exitCode, 0);
    const std::string databases = " --project " + quoted(project) + " --catalogue " + quoted(catalogue);
    const auto saved =
        run("design " + example("designs/realistic.json") + databases + " --save 'North 2024'");
    ASSERT_EQ(saved.exitCode, 0) << saved.err;
    EXPECT_NE(saved.err.find("chart \"North 2024\" stored in system"), std::string::npos) << saved.err;
    EXPECT_NE(run("chart list" + databases).out.find("North 2024"), std::string::npos);
    const auto shown = run("chart show 1" + databases);
    ASSERT_EQ(shown.exitCode, 0) << shown.err;
    EXPECT_NE(shown.out.find("Chart 1: North 2024"), std::string::npos) << shown.out;
    EXPECT_EQ(shown.err.find("not in catalogue"), std::string::npos) << shown.err;
    expectFailure(run("design " + example("designs/realistic.json") + databases + " --save 'North 2024'"),
                  ExitCode::BadInput, "a chart named \"North 2024\" already exists");
    EXPECT_EQ(queryRowsText(project, "SELECT count(*) FROM tb_cartas"), std::vector<std::string>{"1"});
}

TEST_F(ProgramPostgres, AFailedImportLeavesTheServerCatalogueAsItWas) {
    ASSERT_EQ(initServer().exitCode, 0);
    executeAllOn(
        catalogue,
        {"CREATE FUNCTION refuse_fourth() RETURNS trigger LANGUAGE plpgsql AS 'BEGIN IF NEW.denominacion = "
         "''#4'' THEN RAISE EXCEPTION ''refused by the test''; END IF; RETURN NEW; END'",
         "CREATE TRIGGER refuse BEFORE INSERT ON Boquillas FOR EACH ROW EXECUTE FUNCTION refuse_fourth()"});
    const auto before = databasesOnServer();
    std::string rows;
    for (int i = 1; i <= 6; ++i) {
        rows += "Zephyr,NX,#" + std::to_string(i) + ",0.01,0.5,50,300,0.1,0.3\n";
    }
    expectFailure(
        run("catalogue import " + quoted(write("new.csv", rows)) + " --catalogue " + quoted(catalogue)),
        ExitCode::BadInput,
        "cannot import the nozzle of CSV line 4 into " + catalogue + ": refused by the test");
    EXPECT_EQ(databasesOnServer(), before);
    const auto imported =
        run("catalogue import " + quoted(write("good.csv", "Zephyr,NX,#1,0.01,0.5,50,300,0.1,0.3\n")) +
            " --catalogue " + quoted(catalogue));
    EXPECT_EQ(imported.exitCode, 0) << imported.err;
    EXPECT_NE(run("catalogue brands --catalogue " + quoted(catalogue)).out.find("Zephyr"), std::string::npos);
}

TEST_F(ProgramPostgres, AnUnreachableServerIsNamed) {
    const std::string nowhere = "postgresql://caudalis@127.0.0.1:1/postgres?connect_timeout=2";
    expectFailure(run("chart list --project " + quoted(nowhere)), ExitCode::BadInput,
                  "cannot open project database " + nowhere + ": ");
}

}  // namespace
