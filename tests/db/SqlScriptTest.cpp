#include <gtest/gtest.h>

#include "ErrorMatchers.hpp"
#include "ShippedDatabases.hpp"
#include "TemporaryFolder.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/db/SqlScript.hpp"

using namespace caudalis;
using caudalis::testing::TemporaryFolder;

TEST(SqlScript, SplitsAtSemicolonsOutsideLiteralsNamesAndComments) {
    const auto statements = splitStatements(
        "-- a comment; with a semicolon and an apostrophe's\n"
        "CREATE TABLE t (a TEXT);\n"
        "INSERT INTO t VALUES ('x;y''z');  /* block; comment */\n"
        "SELECT [odd;name], \"q;q\" FROM t\n"
        ";;  \n");
    ASSERT_EQ(statements.size(), 3U);
    EXPECT_EQ(statements[0], "CREATE TABLE t (a TEXT)");
    EXPECT_EQ(statements[1], "INSERT INTO t VALUES ('x;y''z')");
    EXPECT_EQ(statements[2], "SELECT [odd;name], \"q;q\" FROM t");
}

TEST(SqlScript, EmptyScriptHasNoStatements) {
    EXPECT_TRUE(splitStatements("").empty());
    EXPECT_TRUE(splitStatements("  -- only a comment\n").empty());
}

TEST(SqlScript, RunsTheShippedSchemasIntoNewDatabases) {
    TemporaryFolder folder;
    const std::string project = folder.file("project.db");
    const std::string catalogue = folder.file("catalogue.db");
    caudalis::testing::createProjectDatabase(project);
    caudalis::testing::createCatalogueDatabase(catalogue);
    Connection connection("Provider=SQLite;Data Source=" + project);
    connection.Open();
    EXPECT_GT(connection.Execute("SELECT count(*) as n FROM pipe_materials")->Fields("n").toLong(), 0);
    EXPECT_EQ(connection.Execute("SELECT count(*) as n FROM tb_cartas")->Fields("n").toLong(), 0);
    connection.Close();
    connection.Open("Provider=SQLite;Data Source=" + catalogue);
    EXPECT_GT(connection.Execute("SELECT count(*) as n FROM Boquillas")->Fields("n").toLong(), 100);
}

TEST(SqlScript, MissingFileRaisesFileNotFound) {
    TemporaryFolder folder;
    Connection connection(":memory:");
    connection.Open();
    EXPECT_RAISES(runScriptFile(connection, folder.path() / "missing.sql"), 53);
}
